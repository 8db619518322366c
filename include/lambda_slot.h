// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QObject>

#include <functional>
#include <memory>

namespace Zentu {

/**
 * Lets a callable without arguments be the receiver of a signal that is named by its signature.
 *
 * @code
 * Zentu::LambdaSlotWrapper::connect(button, SIGNAL(clicked()), [=] { document->save(); });
 * @endcode
 *
 * The arguments of the signal are not passed on. The callable may delete the sender, and the
 * wrapper with it: the callable itself is there until it has returned.
 *
 * A wrapper lives in the thread of its parent, which must be the one that creates it. Its callable
 * runs there, but for a `Qt::DirectConnection`, which calls it in the thread of the signal.
 */
class ZENTU_EXPORT LambdaSlotWrapper : public QObject
{
    Q_OBJECT

public:
    /// Creates a wrapper that belongs to @p parent and holds a copy of @p callable.
    LambdaSlotWrapper(QObject* parent, const std::function<void()>& callable)
        : QObject(parent)
        , func(shared(callable))
    {
    }

    /// Destroys the callable, unless it is running.
    ~LambdaSlotWrapper() override = default;

    /**
     * Calls @p func at every emission of @p signal by @p sender.
     *
     * The connection lasts as long as @p sender, whose child the wrapper becomes. To end it before,
     * as a plug-in must that is unloaded, delete the wrapper: it is one of the sender's
     * `findChildren<LambdaSlotWrapper*>()`.
     *
     * @param sender the object that emits the signal; it must live in the thread that calls, or Qt
     *               warns, and the wrapper has no parent and is never deleted
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
    // A call in which the wrapper is deleted goes on with the callable, of which it has a share.
    static std::function<void()> shared(const std::function<void()>& callable)
    {
        const auto owned = std::make_shared<const std::function<void()>>(callable);
        return [owned] { (*owned)(); };
    }

    std::function<void()> func;

public:
    /// Whether the wrapper deletes itself after a call. False by default.
    bool autoDelete = false;
};

} // namespace Zentu
