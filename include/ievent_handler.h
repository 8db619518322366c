// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QString>

namespace Zentu {

class IEvent;
class _ievent_handler_private;

/**
 * A subscriber of the event bus.
 *
 * Derive from it, implement handleEvent() and subscribe to type names:
 *
 * @code
 * class StatusReporter : public Zentu::IEventHandler
 * {
 * public:
 *     StatusReporter() { subscribe(QStringLiteral("document.opened")); }
 *     void handleEvent(Zentu::IEvent* event) override;
 * };
 * @endcode
 *
 * Subscriptions are kept by EventManager, not by the handler. All operations may be called from any
 * thread while the handler lives. Its end is not guarded: a delivery that is under way in another
 * thread would call what is gone. So a handler is destroyed in the thread in which its events are
 * delivered, or when nobody posts them.
 */
class ZENTU_EXPORT IEventHandler
{
public:
    /// Creates a handler that is receiving and is subscribed to nothing.
    IEventHandler();

    /**
     * Leaves the bus: unsubscribes from everything, which the event manager traces as
     * "unsubscribe all events for:" even if there was nothing to unsubscribe from.
     *
     * A handler must not be destroyed from inside handleEvent() of any handler of the same event.
     * One of static storage may outlive the bus; there is nothing to leave then, and nothing is
     * traced.
     */
    virtual ~IEventHandler();

    IEventHandler(const IEventHandler&) = delete;
    IEventHandler& operator=(const IEventHandler&) = delete;

    /// Subscribes to @p type. Same as EventManager::subscribe() with this handler: a repeated
    /// subscription is refused with a warning.
    void subscribe(const QString& type);

    /// Ends the subscription to @p type. Same as EventManager::unsubscribe() with this handler: a
    /// subscription that does not exist gives a warning.
    void unsubscribe(const QString& type);

    /**
     * Pauses (false) or resumes (true) delivery to this handler. True by default.
     *
     * Subscriptions stay in place meanwhile; events that are delivered during a pause are not
     * delivered later. The flag is read when the handler's turn comes, so a handler may be paused
     * by an earlier handler of the same event.
     */
    void setReceiving(bool receiving);

    /// Whether events are delivered to this handler.
    bool isReceiving() const;

    /**
     * Called once for each delivered event of a type that the handler has subscribed to.
     *
     * Runs in the thread that EventManager::PostMode selects, with no lock held: it may subscribe,
     * unsubscribe and post. It runs in several threads at once if several post with
     * EventManager::Direct. The event must neither be deleted nor kept beyond the call.
     */
    virtual void handleEvent(IEvent* event) = 0;

private:
    _ievent_handler_private* d;
};

} // namespace Zentu
