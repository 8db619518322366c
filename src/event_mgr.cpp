// SPDX-License-Identifier: MIT
#include "event_mgr.h"

#include "event_mgr_p.h"
#include "ievent_handler.h"
#include "trace_p.h"

#include <QDebug>
#include <QHash>
#include <QMetaMethod>
#include <QMetaType>
#include <QMultiMap>
#include <QReadLocker>
#include <QReadWriteLock>
#include <QVarLengthArray>
#include <QWriteLocker>

#include <algorithm>
#include <atomic>
#include <memory>

namespace Zentu {

/// The subscriptions; of one type name the newest comes first.
class _event_mgr_private
{
public:
    using Subscribers = QMultiMap<QString, IEventHandler*>;

    bool contains(IEventHandler* handler, const QString& type) const
    {
        const auto own = places.constFind(handler);
        return own != places.constEnd()
            && std::any_of(own->begin(), own->end(), [&](auto it) { return it.key() == type; });
    }

    void add(IEventHandler* handler, const QString& type)
    {
        places[handler].append(subscribers.insert(type, handler));
    }

    /// Removes a subscription that there is.
    void remove(IEventHandler* handler, const QString& type)
    {
        Places& own = places[handler];
        const auto place =
            std::find_if(own.begin(), own.end(), [&](auto it) { return it.key() == type; });
        subscribers.erase(*place);
        *place = own.last();
        own.removeLast();
        if (own.isEmpty())
            places.remove(handler);
    }

    void removeAll(IEventHandler* handler)
    {
        const Places own = places.take(handler);
        for (const auto& place : own)
            subscribers.erase(place);
    }

    Subscribers subscribers;
    QReadWriteLock lock;

private:
    // Where the subscriptions of a handler stand. They stay there while others come and go, as the
    // map is never copied.
    using Places = QVarLengthArray<Subscribers::iterator, 4>;
    QHash<IEventHandler*, Places> places;
};

static Qt::ConnectionType connectionType(EventManager::PostMode mode)
{
    switch (mode) {
    case EventManager::Direct:
        return Qt::DirectConnection;
    case EventManager::Queued:
        return Qt::QueuedConnection;
    case EventManager::BlockingQueued:
        return Qt::BlockingQueuedConnection;
    case EventManager::Auto:
        break;
    }
    return Qt::AutoConnection;
}

namespace {

std::atomic<bool> s_hasEnded{false};

/// The bus, with a mark that outlives it.
struct Bus
{
    ~Bus() { s_hasEnded = true; }

    EventManager manager;
};

} // namespace

bool hasEventManagerEnded()
{
    return s_hasEnded;
}

EventManager* EventManager::instance()
{
    static Bus bus;
    return &bus.manager;
}

EventManager::EventManager()
    : d(new _event_mgr_private)
{
    qRegisterMetaType<IEvent*>("IEvent*");
}

EventManager::~EventManager()
{
    delete d;
}

// The three changes below write their lines while they hold the lock, so that the lines stand in
// the order of the changes whatever thread makes them.

void EventManager::subscribe(IEventHandler* handler, const QString& type)
{
    const QWriteLocker locker(&d->lock);
    if (d->contains(handler, type)) {
        qWarning() << this << "duplicated event subscription:" << handler << type;
        return;
    }
    Trace() << this << "new event subscription:" << handler << type;
    d->add(handler, type);
}

void EventManager::unsubscribe(IEventHandler* handler, const QString& type)
{
    const QWriteLocker locker(&d->lock);
    if (!d->contains(handler, type)) {
        qWarning() << this << "unsubscribe event:" << handler << type << "no match found";
        return;
    }
    Trace() << this << "unsubscribe event:" << handler << type;
    d->remove(handler, type);
}

void EventManager::unsubscribeAll(IEventHandler* handler)
{
    const QWriteLocker locker(&d->lock);
    Trace() << this << "unsubscribe all events for:" << handler;
    d->removeAll(handler);
}

QList<IEventHandler*> EventManager::getSubscribersFor(const QString& type)
{
    const QReadLocker locker(&d->lock);
    const auto entries = qAsConst(d->subscribers).equal_range(type);
    return QList<IEventHandler*>(entries.first, entries.second);
}

void EventManager::postEvent(IEvent* event, PostMode mode)
{
    static const QMetaMethod dispatchSlot =
        staticMetaObject.method(staticMetaObject.indexOfSlot("dispatch(IEvent*)"));

    Trace() << this << "post event" << event << static_cast<int>(mode);
    const Qt::ConnectionType type = connectionType(mode);
    // A derived class may have declared a slot of that name. For this one, it is looked up once, or
    // called without the copies of its argument that the event loop would need.
    if (metaObject() != &staticMetaObject)
        QMetaObject::invokeMethod(this, "dispatch", type, Q_ARG(IEvent*, event));
    else if (type == Qt::QueuedConnection)
        QMetaObject::invokeMethod(
            this, [=] { dispatch(event); }, type);
    else
        dispatchSlot.invoke(this, type, Q_ARG(IEvent*, event));
}

void EventManager::dispatch(IEvent* event)
{
    const QString type = event->type();
    const QList<IEventHandler*> handlers = getSubscribersFor(type);
    // Deleted before the list is, and also when a handler throws.
    const std::unique_ptr<IEvent> owner(event);
    for (IEventHandler* handler : handlers) {
        if (handler->isReceiving())
            handler->handleEvent(event);
    }
}

} // namespace Zentu
