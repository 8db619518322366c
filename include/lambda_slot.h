// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QObject>

#include <functional>

namespace Zentu {

/**
 * Lets a callable without arguments be the receiver of a signal that is named by its signature.
 *
 * @code
 * Zentu::LambdaSlotWrapper::connect(button, SIGNAL(clicked()), [=] { document->save(); });
 * @endcode
 *
 * The arguments of the signal are not passed on. A wrapper lives, and its callable runs, in the
 * thread of its parent. As the wrapper dies with its parent, a callable must not delete the sender,
 * but may call its `deleteLater()`.
 */
class ZENTU_EXPORT LambdaSlotWrapper : public QObject
{
    Q_OBJECT

public:
    /// Creates a wrapper that belongs to @p parent and holds a copy of @p callable.
    LambdaSlotWrapper(QObject* parent, const std::function<void()>& callable)
        : QObject(parent)
        , func(callable)
    {
    }

    /// Destroys the callable.
    ~LambdaSlotWrapper() override = default;

    /**
     * Calls @p func at every emission of @p signal by @p sender.
     *
     * The connection lasts as long as @p sender, whose child the wrapper becomes.
     *
     * @param sender the object that emits the signal
     * @param signal the signature, as SIGNAL() makes it
     * @param func   the callable, of which a copy is kept
     * @param type   as for QObject::connect()
     * @return whether the connection was made; if not, Qt has warned and the wrapper stays an idle
     *         child of @p sender
     */
    static bool connect(QObject* sender, const char* signal, const std::function<void()>& func,
        Qt::ConnectionType type = Qt::AutoConnection);

public Q_SLOTS:
    /// Calls the callable, then deletes the wrapper through the event loop if #autoDelete is set.
    /// An empty callable throws `std::bad_function_call`.
    void trigger();

private:
    std::function<void()> func;

public:
    /// Whether the wrapper deletes itself after a call. False by default.
    bool autoDelete = false;
};

} // namespace Zentu
