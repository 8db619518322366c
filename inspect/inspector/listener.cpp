// SPDX-License-Identifier: MIT
#include "listener.h"

#include "notes.h"
#include "own_lines.h"
#include "stack.h"
#include "wisp_recorder.h"

#include <QCoreApplication>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSaveFile>

#include <dlfcn.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstring>
#include <utility>

namespace Zentu::Inspect {

std::atomic<Listener*> Listener::s_current = nullptr;

namespace {

/// What the logger of wisp/ has beside the two operations that every logger has.
struct Logger
{
    template <typename Function>
    static Function* find(const char* symbol)
    {
        return reinterpret_cast<Function*>(dlsym(RTLD_DEFAULT, symbol));
    }

    decltype(&wisp::addSink) addSink =
        find<decltype(wisp::addSink)>("_ZN4wisp7addSinkEPFviPKcPvES2_");
    decltype(&wisp::removeSink) removeSink =
        find<decltype(wisp::removeSink)>("_ZN4wisp10removeSinkEi");
    decltype(&wisp::setFilter) setFilter =
        find<decltype(wisp::setFilter)>("_ZN4wisp9setFilterEPFbiPKcPvES2_");
    decltype(&wisp::recordedLines) recordedLines =
        find<decltype(wisp::recordedLines)>("_ZN4wisp13recordedLinesEv");
};

} // namespace

// Looked up and not linked, since a host's own logger need not have them.
static const Logger& loggerOfHost()
{
    static const Logger logger;
    return logger;
}

static Record recordOf(QByteArray level, QByteArray text)
{
    Record record;
    record.microseconds = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::system_clock::now().time_since_epoch())
                              .count();
    record.thread = gettid();
    record.level = std::move(level);
    record.text = std::move(text);
    return record;
}

Listener::Listener()
{
    s_current = this;
    listenToLogger();
    m_previousHandler = qInstallMessageHandler(&Listener::hearMessage);
}

Listener::~Listener()
{
    s_current = nullptr;
    // A handler that the host has put before ours since then stays.
    const QtMessageHandler current = qInstallMessageHandler(m_previousHandler);
    if (current != &Listener::hearMessage)
        qInstallMessageHandler(current);
    if (m_sink != 0)
        loggerOfHost().removeSink(m_sink);
    if (loggerOfHost().setFilter)
        loggerOfHost().setFilter(nullptr, nullptr);
    stopRecording();
}

void Listener::listenToLogger()
{
    const Logger& logger = loggerOfHost();
    if (!logger.addSink || !logger.removeSink)
        return;
    // What these lines name may be gone, so nothing is read but the lines.
    if (logger.recordedLines) {
        for (const wisp::Line& line : logger.recordedLines())
            add(recordOf(QByteArray::number(line.level), QByteArray::fromStdString(line.text)));
    }
    if (logger.setFilter)
        logger.setFilter(&Listener::isHostsLine, this);
    m_sink = logger.addSink(&Listener::hearLine, this);
}

bool Listener::isHostsLine(int, const char* text, void*)
{
    return !OwnLines::contain(readLine(text));
}

void Listener::hearLine(int level, const char* text, void* self)
{
    const Line line = readLine(text);
    if (OwnLines::contain(line))
        return;
    auto* const listener = static_cast<Listener*>(self);
    Record record = recordOf(QByteArray::number(level), text);
    takeNotes(line, record);
    if (isCalledByHost(line))
        record.stack = Stack::capture(listener->m_stackDepth);
    listener->add(std::move(record));
}

static QByteArray nameOf(QtMsgType type)
{
    switch (type) {
    case QtDebugMsg:
        return "debug";
    case QtInfoMsg:
        return "info";
    case QtWarningMsg:
        return "warning";
    case QtCriticalMsg:
        return "critical";
    case QtFatalMsg:
        break;
    }
    return "fatal";
}

void Listener::hearMessage(QtMsgType type, const QMessageLogContext& context, const QString& text)
{
    Listener* const listener = s_current;
    const QByteArray bytes = text.toUtf8();
    const Line line = readLine(bytes.constData());
    if (!listener || OwnLines::contain(line))
        return;
    Record record = recordOf(nameOf(type), bytes);
    // A host may say its trace again as messages, when what a line names is gone.
    if (line.reading == Reading::Understood && line.info->channel != Channel::Trace)
        takeNotes(line, record);
    listener->add(std::move(record));
    if (listener->m_previousHandler)
        listener->m_previousHandler(type, context, text);
}

void Listener::add(Record record)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    if (m_file)
        write(record);
    m_records.push_back(std::move(record));
}

std::vector<Record> Listener::take()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return std::exchange(m_records, {});
}

static QByteArray fromLine(const QString& caller)
{
    return "    from " + caller.toUtf8() + '\n';
}

void Listener::write(const Record& record)
{
    QByteArray text = record.line() + '\n';
    for (const QByteArray& note : record.notes)
        text += "    " + note + '\n';
    const QStringList callers = Stack::functions(record.stack);
    for (const QString& caller : callers)
        text += fromLine(caller);
    m_stacks.insert(record.stack);
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), m_file);
    std::fflush(m_file);
}

QString Listener::startRecording(const QString& path)
{
    stopRecording();
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_path = path;
    m_file = std::fopen(path.toLocal8Bit().constData(), "w");
    return m_file ? QString() : QString::fromLocal8Bit(std::strerror(errno));
}

/// For each line that names a caller, the one that says where it is in the sources, too. A function
/// that calls from two places is only named.
static QHash<QByteArray, QByteArray> namedCallers(const std::set<std::vector<void*>>& stacks)
{
    QHash<QByteArray, QByteArray> result;
    for (const std::vector<void*>& stack : stacks) {
        const QStringList plain = Stack::functions(stack);
        const QStringList named = Stack::describe(stack);
        for (int i = 0; i < plain.size(); ++i) {
            const QByteArray before = fromLine(plain.at(i));
            const QByteArray after = fromLine(named.at(i));
            result[before] = result.value(before, after) == after ? after : before;
        }
    }
    return result;
}

static void nameCallers(const QString& path, const std::set<std::vector<void*>>& stacks)
{
    QFile before(path);
    QSaveFile after(path);
    if (!QFileInfo(path).isFile() || !before.open(QIODevice::ReadOnly)
        || !after.open(QIODevice::WriteOnly))
        return;
    const QHash<QByteArray, QByteArray> named = namedCallers(stacks);
    while (!before.atEnd()) {
        const QByteArray line = before.readLine();
        after.write(named.value(line, line));
    }
    after.commit();
}

void Listener::stopRecording()
{
    std::set<std::vector<void*>> stacks;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        if (!m_file)
            return;
        std::fclose(std::exchange(m_file, nullptr));
        stacks = std::exchange(m_stacks, {});
    }
    // Not while a line of another thread would have to wait for it.
    if (QCoreApplication::instance())
        nameCallers(m_path, stacks);
}

} // namespace Zentu::Inspect
