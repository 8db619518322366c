// SPDX-License-Identifier: MIT
#include "session.h"

#include "ievent_handler.h"

#include <QAction>

#include <unistd.h>

namespace Zentu::Inspect {

QString addressText(Address address)
{
    return QStringLiteral("0x%1").arg(address, 0, 16);
}

QString shortTime(std::string_view time)
{
    const QString text = decoded(time);
    return text.section(QLatin1Char('T'), 1).left(12);
}

Session::Session(Listener& listener, QObject* parent)
    : QObject(parent)
    , m_listener(listener)
{
    connect(&m_timer, &QTimer::timeout, this, &Session::takeLines);
    m_timer.start(500);
}

static QString textBehind(const QByteArray& label, const QByteArray& note)
{
    return QString::fromUtf8(note.mid(label.size()));
}

void Session::takeLines()
{
    std::vector<Record> records = m_listener.take();
    for (Record& record : records)
        replay(std::move(record));
    if (!records.empty())
        Q_EMIT changed();
}

void Session::replay(Record record)
{
    const QByteArray text = record.line();
    const Line line = readLine({text.constData(), static_cast<std::size_t>(text.size())});
    keepObjects(record);
    if (line.is(Text::Post))
        keepEvent(line, record);
    if (line.is(Text::Subscribe) && !record.notes.isEmpty()) {
        m_handlers.insert(
            line.items[0].address, {textBehind("handler: ", record.notes.first()), record.thread});
    }
    m_program.feed(line);
    if (line.is(Text::UnsubscribeAll))
        m_handlers.remove(line.items[0].address);

    m_records.push_back(std::move(record));
    if (m_records.size() > MostLines) {
        m_records.pop_front();
        ++m_firstLine;
    }
}

void Session::keepObjects(const Record& record)
{
    for (const auto& [address, object] : record.objects) {
        m_objects.insert(address, object);
        if (auto* const action = qobject_cast<QAction*>(object))
            watch(action);
    }
}

static QString nameOfMode(qint64 mode)
{
    static const char* const names[] = {"Auto", "Direct", "Queued", "BlockingQueued"};
    return mode >= 0 && mode < 4 ? QLatin1String(names[mode]) : QString::number(mode);
}

void Session::keepEvent(const Line& line, const Record& record)
{
    PostedEvent event;
    event.line = nextLine();
    const std::string_view type = line.items[0].field("type = ");
    event.type = plain(type);
    event.mode = nameOfMode(line.items[1].number);
    for (const QByteArray& note : record.notes)
        event.values.append(textBehind("value: ", note));
    const auto bus = m_program.buses().find(line.speaker.address);
    if (bus != m_program.buses().end()) {
        const auto known = bus->second.find(type);
        if (known != bus->second.end()) {
            for (const Subscription& subscription : known->second.subscribers)
                event.heardBy.append(handlerName(subscription.handler));
        }
    }
    event.thread = record.thread;
    event.stack = record.stack;
    m_events.push_back(std::move(event));
    if (m_events.size() > MostEvents)
        m_events.pop_front();
}

void Session::watch(QAction* action)
{
    if (m_enabled.contains(action))
        return;
    m_enabled.insert(action, {0, QString(), action->isEnabled()});
    connect(action, &QAction::changed, this, [this, action] {
        EnabledChange& last = m_enabled[action];
        if (last.isEnabled != action->isEnabled())
            last = {nextLine() - 1, shortTime(m_program.now().time()), action->isEnabled()};
    });
    connect(action, &QObject::destroyed, this, [this, action] { m_enabled.remove(action); });
}

bool Session::isGone(Address address) const
{
    const auto it = m_objects.find(address);
    return it != m_objects.end() && !it.value();
}

QString Session::handlerName(Address handler) const
{
    const auto it = m_handlers.find(handler);
    return it == m_handlers.end() ? addressText(handler) : it.value().name;
}

QString Session::objectName(Address address) const
{
    const QObject* const found = object(address);
    if (!found)
        return addressText(address);
    QString name = found->objectName();
    if (name.isEmpty()) {
        if (const auto* const action = qobject_cast<const QAction*>(found))
            name = action->text();
    }
    const QString className = QString::fromLatin1(found->metaObject()->className());
    return name.isEmpty() ? className : className + QStringLiteral(" “%1”").arg(name);
}

bool Session::isPaused(Address handler) const
{
    const auto it = m_handlers.find(handler);
    // One that was made in another thread may end there at any time.
    return it != m_handlers.end() && it.value().thread == gettid()
        && !reinterpret_cast<const IEventHandler*>(handler)->isReceiving();
}

} // namespace Zentu::Inspect
