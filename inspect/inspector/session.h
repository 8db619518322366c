// SPDX-License-Identifier: MIT
#pragma once

#include "listener.h"
#include "program.h"

#include <QHash>
#include <QObject>
#include <QStringList>
#include <QTimer>

#include <deque>

class QAction;

namespace Zentu {
class ProxyAction;
}

namespace Zentu::Inspect {

/// A text of the model, as it was before it was printed.
inline QString plain(std::string_view text)
{
    return unescaped(text);
}

QString addressText(Address address);

/// The time of a day, as far as a line of the list has it.
QString shortTime(std::string_view time);

/// When an action was switched on or off, as seen from here.
struct EnabledChange
{
    qint64 line = 0; ///< The newest line before it
    QString time;
    bool isEnabled = false;
};

/// What was posted to the bus, with what the line leaves out.
struct PostedEvent
{
    qint64 line = 0;
    QString type;
    QString mode;
    QStringList values;
    QStringList heardBy; ///< Who was subscribed then, in the order of delivery
    qint64 thread = 0;
    std::vector<void*> stack;
};

/**
 * What is known of the running program: the model of its lines, and the objects that they named as
 * long as these live. It takes what the listener has heard twice a second, and tells once.
 */
class Session : public QObject
{
    Q_OBJECT

public:
    static constexpr int MostLines = 10000;
    static constexpr int MostEvents = 1000;

    explicit Session(Listener& listener, QObject* parent = nullptr);

    Listener& listener() { return m_listener; }
    const Program& program() const { return m_program; }

    /// Number of the oldest line that is kept, from 1, and of the one that comes next.
    qint64 firstLine() const { return m_firstLine; }
    qint64 nextLine() const { return m_firstLine + static_cast<qint64>(m_records.size()); }
    const Record& record(qint64 line) const
    {
        return m_records[static_cast<std::size_t>(line - m_firstLine)];
    }

    const std::deque<PostedEvent>& events() const { return m_events; }

    /// The object at an address, null once it is gone or where none was named.
    QObject* object(Address address) const { return m_objects.value(address); }
    /// Whether there was one, and it is gone.
    bool isGone(Address address) const;

    /// A handler by class and name, or by its address where nothing was read.
    QString handlerName(Address handler) const;
    /// An object by class and name or text, or by its address.
    QString objectName(Address address) const;
    /// Whether a handler is paused. Only those of the windows' thread are asked.
    bool isPaused(Address handler) const;

    /// The newest change of an action's enabled state; its line is 0 if there was none.
    EnabledChange enabledSince(const QObject* action) const { return m_enabled.value(action); }

public Q_SLOTS:
    void takeLines();

Q_SIGNALS:
    void changed();

private:
    struct Handler
    {
        QString name;
        qint64 thread = 0;
    };

    void replay(Record record);
    void keepObjects(const Record& record);
    void keepEvent(const Line& line, const Record& record);
    void watch(QAction* action);

    Listener& m_listener;
    Program m_program;
    std::deque<Record> m_records;
    qint64 m_firstLine = 1;
    std::deque<PostedEvent> m_events;
    QHash<Address, QPointer<QObject>> m_objects;
    QHash<Address, Handler> m_handlers;
    QHash<const QObject*, EnabledChange> m_enabled;
    QTimer m_timer;
};

} // namespace Zentu::Inspect
