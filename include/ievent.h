// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QDebug>
#include <QObject>
#include <QString>
#include <QVariantMap>

namespace Zentu {

/**
 * An event that travels over the bus: a type name and named values.
 *
 * A sender creates the event on the heap, fills in its values and hands it to
 * EventManager::postEvent(), which owns it from then on:
 *
 * @code
 * auto* event = new Zentu::IEvent(QStringLiteral("document.opened"));
 * event->data().insert(QStringLiteral("path"), path);
 * Zentu::EventManager::instance()->postEvent(event);
 * @endcode
 *
 * A posted event must not be deleted, changed or posted again by its sender: the manager deletes it
 * after the last handler has returned. Hosts may derive event classes of their own.
 *
 * `IEvent*` is known to Qt's meta-type system under the name "IEvent*" once the event manager
 * exists.
 */
class ZENTU_EXPORT IEvent : public QObject
{
    Q_OBJECT

public:
    /// Creates an event of the given type name without values. Any text is a valid name, the empty
    /// one too. The event has no parent.
    explicit IEvent(const QString& type)
        : m_type(type)
    {
    }

    /// Releases the values and the name; nothing else happens.
    ~IEvent() override = default;

    /// The type name, under which handlers subscribe. Compared exactly and case-sensitively.
    QString type() const { return m_type; }

    /// The named values, for reading and writing. The bus never looks at them. Empty by default.
    QVariantMap& data() { return m_data; }

    /// The named values, for reading.
    const QVariantMap& data() const { return m_data; }

private:
    QString m_type;
    QVariantMap m_data;
};

/**
 * Writes an event as `IEvent(0x..., type = "name")`, a null event as `IEvent(0x0)`.
 *
 * Leaves @p dbg in space mode with one blank written. A null event is written in the mode in which
 * the stream is found, so in space mode two blanks follow it.
 */
inline QDebug operator<<(QDebug dbg, const IEvent* event)
{
    if (event) {
        dbg.nospace() << "IEvent(" << static_cast<const void*>(event)
                      << ", type = " << event->type() << ")";
    } else {
        dbg << "IEvent(0x0)";
    }
    return dbg.space();
}

} // namespace Zentu
