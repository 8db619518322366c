// SPDX-License-Identifier: MIT
#include "own_lines.h"

#include <QObject>

#include <atomic>
#include <mutex>
#include <unordered_set>

namespace Zentu::Inspect::OwnLines {

static thread_local int s_scopes = 0;

namespace {

/// The addresses of the inspector's objects. Other threads ask, too.
struct Speakers
{
    std::mutex mutex;
    std::unordered_set<Address> addresses;
};

} // namespace

// Never destroyed: objects of static storage may log while the process ends.
static Speakers& speakers()
{
    static auto* const instance = new Speakers;
    return *instance;
}

static std::atomic<QtMessageHandler> s_hostsHandler = nullptr;

// Other threads' messages are the host's as ever.
static void passOn(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    if (s_scopes == 0)
        s_hostsHandler.load()(type, context, text);
}

// A handler that the host has put before the listener's would get the messages otherwise.
Scope::Scope()
{
    if (s_scopes++ == 0) {
        const QtMessageHandler handler = qInstallMessageHandler(nullptr);
        s_hostsHandler = handler;
        qInstallMessageHandler(passOn);
    }
}

Scope::~Scope()
{
    if (--s_scopes == 0)
        qInstallMessageHandler(s_hostsHandler);
}

void add(QObject* object)
{
    const auto address = reinterpret_cast<Address>(object);
    {
        const std::lock_guard<std::mutex> guard(speakers().mutex);
        speakers().addresses.insert(address);
    }
    // As late as can be, since a document speaks in its destructor.
    QObject::connect(object, &QObject::destroyed, [address] {
        const std::lock_guard<std::mutex> guard(speakers().mutex);
        speakers().addresses.erase(address);
    });
}

bool contain(const Line& line)
{
    if (s_scopes > 0)
        return true;
    if (line.reading != Reading::Understood)
        return false;
    const std::lock_guard<std::mutex> guard(speakers().mutex);
    return speakers().addresses.count(line.speaker.address) > 0;
}

} // namespace Zentu::Inspect::OwnLines
