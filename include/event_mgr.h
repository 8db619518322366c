// SPDX-License-Identifier: MIT
#pragma once

#include "ievent.h"
#include "zentu_global.h"

#include <QList>
#include <QObject>
#include <QString>

namespace Zentu {

class IEventHandler;
class _event_mgr_private;

/**
 * The event bus: routes posted events to the handlers that have subscribed to their type name.
 *
 * For one type name the handlers are called from the most recently subscribed to the oldest: a
 * later subscriber sees an event before an earlier one.
 *
 * All operations may be called from any thread, up to the end of `main`: a thread that still posts
 * then finds no bus. The thread that calls instance() first is the manager's thread, in whose event
 * loop queued events are delivered; a host makes that call from its GUI thread.
 *
 * What QObject offers is for the manager's thread alone. Each line shows the object name, so the
 * bus is given one before there are threads, or none.
 *
 * Subscriptions are traced, and refused, while the lock of the bus is held: a logger or a message
 * handler that is called for that must neither use the bus nor run an event loop.
 */
class ZENTU_EXPORT EventManager : public QObject
{
    Q_OBJECT

public:
    /// How postEvent() delivers. Any other value counts as #Auto.
    enum PostMode : int {
        Auto = 0,   ///< At once in the manager's thread, otherwise queued to it.
        Direct = 1, ///< At once, in the caller's thread.
        Queued = 2, ///< Later, from the event loop of the manager's thread.
        /// In the manager's thread while the caller waits. Not from the manager's own thread: Qt
        /// warns of a deadlock and waits for itself, and the event is never delivered nor deleted.
        /// The same happens when that thread has ended, or waits for the caller.
        BlockingQueued = 3
    };

    /// The bus. Created by the first call, which is safe from any thread, and destroyed when the
    /// process exits; not to be called by what is destroyed later.
    static EventManager* instance();

    /// Creates a manager of its own, which instance() does not know, and registers the meta-type
    /// "IEvent*". Hosts use instance().
    EventManager();

    /// Forgets all subscriptions; handlers and pending events are left alone.
    ~EventManager() override;

    /**
     * Subscribes @p handler, which is not owned, to events of the given type name.
     *
     * Refused with the warning "duplicated event subscription:" if it is subscribed already; the
     * existing subscription keeps its place.
     */
    void subscribe(IEventHandler* handler, const QString& type);

    /// Ends a subscription. If there is none, warns "unsubscribe event:" ... "no match found" and
    /// changes nothing.
    void unsubscribe(IEventHandler* handler, const QString& type);

    /// Ends all subscriptions of @p handler, if it has any.
    void unsubscribeAll(IEventHandler* handler);

    /// The handlers of a type name, most recently subscribed first; a copy, empty if there are
    /// none.
    QList<IEventHandler*> getSubscribersFor(const QString& type);

    /**
     * Takes ownership of @p event and delivers it to the receiving handlers of its type.
     *
     * Each delivery works on the handlers that are subscribed when it begins. The event is deleted
     * when the last of them has returned, also if there were none. If a handler throws, the others
     * are not called, and the event is deleted all the same. An event that a handler posts
     * with #Direct, or with #Auto in the manager's thread, is delivered and deleted before the
     * delivery that posted it goes on.
     *
     * @param event created with new; must not be null
     * @param mode  when and in which thread the handlers are called
     */
    void postEvent(IEvent* event, PostMode mode = Auto);

private Q_SLOTS:
    void dispatch(IEvent* event);

private:
    _event_mgr_private* d;
};

} // namespace Zentu
