// SPDX-License-Identifier: MIT
#include "event_mgr.h"

#include "event_mgr_p.h"
#include "ievent_handler.h"
#include "trace_p.h"

#include <QDebug>
#include <QMetaMethod>
#include <QMetaType>
#include <QMultiMap>
#include <QReadLocker>
#include <QReadWriteLock>
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

    /// The entry of the handler among those of the type name, or the end.
    Subscribers::iterator find(IEventHandler* handler, const QString& type)
    {
        const auto entries = subscribers.equal_range(type);
        const auto it = std::find(entries.first, entries.second, handler);
        return it == entries.second ? subscribers.end() : it;
    }

    Subscribers subscribers;
    QReadWriteLock lock;
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
    if (d->find(handler, type) != d->subscribers.end()) {
        qWarning() << this << "duplicated event subscription:" << handler << type;
        return;
    }
    Trace() << this << "new event subscription:" << handler << type;
    d->subscribers.insert(type, handler);
}

void EventManager::unsubscribe(IEventHandler* handler, const QString& type)
{
    const QWriteLocker locker(&d->lock);
    const auto it = d->find(handler, type);
    if (it == d->subscribers.end()) {
        qWarning() << this << "unsubscribe event:" << handler << type << "no match found";
        return;
    }
    Trace() << this << "unsubscribe event:" << handler << type;
    d->subscribers.erase(it);
}

void EventManager::unsubscribeAll(IEventHandler* handler)
{
    const QWriteLocker locker(&d->lock);
    Trace() << this << "unsubscribe all events for:" << handler;
    auto& subscribers = d->subscribers;
    for (auto it = subscribers.begin(); it != subscribers.end();) {
        if (it.value() == handler)
            it = subscribers.erase(it);
        else
            ++it;
    }
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
