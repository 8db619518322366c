// SPDX-License-Identifier: MIT
#include "event_mgr.h"
#include "file_watcher.h"
#include "ievent_handler.h"
#include "object_pool.h"

#include <QCoreApplication>

#include <thread>

using namespace Zentu;

// What a plug-in does with the library, by names that its host finds.

namespace {

class Handler : public IEventHandler
{
public:
    void handleEvent(IEvent* /*event*/) override { ++count; }

    int count = 0;
};

} // namespace

extern "C" {

/// Has an event of another thread delivered, and leaves the bus. Returns how often it was heard.
Q_DECL_EXPORT int useBus()
{
    Handler handler;
    handler.subscribe(QStringLiteral("guest"));
    std::thread([] {
        EventManager::instance()->postEvent(new IEvent(QStringLiteral("guest")));
    }).join();
    QCoreApplication::sendPostedEvents(EventManager::instance());
    return handler.count;
}

/// Leaves an object of the host in the pool.
Q_DECL_EXPORT int publish(QObject* object)
{
    ObjectPool::instance()->addObject(object);
    return static_cast<int>(ObjectPool::instance()->allObjects().count(object));
}

/// Leaves a watcher to its parent.
Q_DECL_EXPORT int watch(QObject* parent)
{
    new FileWatcher(parent);
    return static_cast<int>(parent->children().size());
}
}
