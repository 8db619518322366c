// SPDX-License-Identifier: MIT
#include "object_pool.h"

#include "trace_p.h"

#include <QDebug>
#include <QEvent>
#include <QReadLocker>
#include <QScopedValueRollback>
#include <QWriteLocker>

#include <utility>

namespace Zentu {

// The pool whose queued call runs in this thread.
static thread_local const QObject* s_inQueuedCall = nullptr;

namespace {

/// Tells a call of the pool's slot that was queued from one that an object's destructor makes.
class QueuedCalls : public QObject
{
public:
    explicit QueuedCalls(ObjectPool* pool)
        : QObject(pool)
    {
        pool->installEventFilter(this);
    }

    // As the first filter it is the last one asked, so that what Qt would do next is done here.
    bool eventFilter(QObject* pool, QEvent* event) override
    {
        if (event->type() != QEvent::MetaCall)
            return false;
        const QScopedValueRollback<const QObject*> guard(s_inQueuedCall, pool);
        pool->event(event);
        return true;
    }
};

} // namespace

ObjectPool* ObjectPool::s_instance = nullptr;

ObjectPool* ObjectPool::instance()
{
    if (!s_instance)
        s_instance = new ObjectPool();
    return s_instance;
}

ObjectPool::ObjectPool()
{
    new QueuedCalls(this);
}

ObjectPool::~ObjectPool() = default;

void ObjectPool::addObject(QObject* obj)
{
    const QWriteLocker locker(&lock);
    if (objects.contains(obj)) {
        qWarning() << this << "add object:" << obj << "already exists";
        return;
    }
    Trace() << this << "add object:" << obj;
    objects.append(obj);
    connect(obj, SIGNAL(destroyed(QObject*)), this, SLOT(onObjectDestroyed(QObject*)));
}

void ObjectPool::removeObject(QObject* obj)
{
    const QWriteLocker locker(&lock);
    if (!objects.contains(obj)) {
        qWarning() << this << "remove object:" << obj << "not found";
        return;
    }
    Trace() << this << "remove object:" << obj;
    disconnect(obj, nullptr, this, nullptr);
    objects.removeAll(obj);
}

QList<QObject*> ObjectPool::allObjects()
{
    const QReadLocker locker(&lock);
    return objects;
}

void ObjectPool::clear()
{
    Trace() << this << "clear all objects";
    const QWriteLocker locker(&lock);
    for (QObject* obj : qAsConst(objects))
        disconnect(obj, nullptr, this, nullptr);
    objects.clear();
}

void ObjectPool::onObjectDestroyed(QObject* obj)
{
    {
        Trace line;
        line << this << "object destoryed:";
        // An object that was destroyed in another thread is gone, or about to go, when its signal
        // arrives through the event loop: nothing but the address is left to print.
        // It is the first call while the event is handled; others come from destructors.
        if (std::exchange(s_inQueuedCall, nullptr) != this)
            line << obj;
        else
            line << ("QObject(0x" + QByteArray::number(reinterpret_cast<quintptr>(obj), 16) + ')')
                        .constData();
    }
    const QWriteLocker locker(&lock);
    objects.removeAll(obj);
}

} // namespace Zentu
