// SPDX-License-Identifier: MIT
#include "recorder.h"

#include "wisp_recorder.h"

#include <QAction>
#include <QDebug>
#include <QObject>
#include <QTest>
#include <QWidget>

namespace Support {

static Recorder* s_current = nullptr;

static QString channelName(Channel channel)
{
    switch (channel) {
    case Channel::Trace:
        return QStringLiteral("trace");
    case Channel::Debug:
        return QStringLiteral("debug");
    case Channel::Info:
        return QStringLiteral("info");
    case Channel::Warning:
        return QStringLiteral("warning");
    case Channel::Critical:
        return QStringLiteral("critical");
    }
    Q_UNREACHABLE();
}

QString asLine(const Entry& entry)
{
    return channelName(entry.channel) + QLatin1Char('|') + entry.text;
}

/// The two functions that the logger and Qt call.
struct RecorderHooks
{
    static void trace(int level, const char* text, void* context)
    {
        Entry entry;
        entry.text = QString::fromLatin1(text);
        entry.level = level;
        static_cast<Recorder*>(context)->add(entry);
    }

    static void message(QtMsgType type, const QMessageLogContext& context, const QString& text)
    {
        Entry entry;
        switch (type) {
        case QtDebugMsg:
            entry.channel = Channel::Debug;
            break;
        case QtInfoMsg:
            entry.channel = Channel::Info;
            break;
        case QtWarningMsg:
            entry.channel = Channel::Warning;
            break;
        case QtCriticalMsg:
            entry.channel = Channel::Critical;
            break;
        case QtFatalMsg:
            s_current->m_previousHandler(type, context, text);
            return;
        }
        entry.text = text;
        entry.category = QString::fromLatin1(context.category);
        entry.file = context.file;
        entry.function = context.function;
        entry.line = context.line;
        s_current->add(entry);
    }
};

bool operator==(const Entry& a, const Entry& b)
{
    return asLine(a) == asLine(b);
}

char* toString(const Entry& entry)
{
    return QTest::toString(asLine(entry));
}

Recorder::Recorder()
{
    Q_ASSERT(!s_current);
    s_current = this;
    m_previousHandler = qInstallMessageHandler(&RecorderHooks::message);
    wisp::setSink(&RecorderHooks::trace, this);
}

Recorder::~Recorder()
{
    wisp::setSink(nullptr);
    qInstallMessageHandler(m_previousHandler);
    s_current = nullptr;
}

QList<Entry> Recorder::entries() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_entries;
}

QStringList Recorder::take()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    QStringList lines;
    for (const Entry& entry : qAsConst(m_entries))
        lines.append(asLine(entry));
    m_entries.clear();
    return lines;
}

void Recorder::clear()
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_entries.clear();
}

bool Recorder::isEmpty() const
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    return m_entries.isEmpty();
}

void Recorder::onEntry(const std::function<void(const Entry&)>& callback)
{
    const std::lock_guard<std::mutex> guard(m_mutex);
    m_callback = callback;
}

void Recorder::add(const Entry& entry)
{
    std::function<void(const Entry&)> callback;
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        m_entries.append(entry);
        callback = m_callback;
    }
    if (callback)
        callback(entry);
}

QString trace(const QString& text)
{
    return QLatin1String("trace|") + text;
}

QString info(const QString& text)
{
    return QLatin1String("info|") + text;
}

QString warning(const QString& text)
{
    return QLatin1String("warning|") + text;
}

QString critical(const QString& text)
{
    return QLatin1String("critical|") + text;
}

template <typename T>
static QString asPrinted(const T& item)
{
    QString text;
    QDebug(&text).nospace() << item;
    return text;
}

QString printed(const QObject* object)
{
    return asPrinted(object);
}

QString printed(const QWidget* widget)
{
    return asPrinted(widget);
}

QString printed(const QAction* action)
{
    return asPrinted(action);
}

QString printed(const void* address)
{
    return asPrinted(address);
}

QString quoted(const QString& text)
{
    return asPrinted(text);
}

QString quoted(const QStringList& list)
{
    return asPrinted(list);
}

} // namespace Support
