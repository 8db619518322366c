// SPDX-License-Identifier: MIT
#include "object_pool.h"

#include "link_p.h"
#include "trace_p.h"

#include <QDebug>
#include <QReadLocker>
#include <QWriteLocker>

namespace Zentu {

ObjectPool* ObjectPool::s_instance = nullptr;

ObjectPool* ObjectPool::instance()
{
    if (!s_instance)
        s_instance = new ObjectPool();
    return s_instance;
}

ObjectPool::ObjectPool() = default;

ObjectPool::~ObjectPool() = default;

void ObjectPool::addObject(QObject* obj)
{
    static const Link<QObject, ObjectPool> destroyed(
        SIGNAL(destroyed(QObject*)), SLOT(onObjectDestroyed(QObject*)));

    const QWriteLocker locker(&lock);
    if (objects.contains(obj)) {
        qWarning() << this << "add object:" << obj << "already exists";
        return;
    }
    Trace() << this << "add object:" << obj;
    objects.append(obj);
    destroyed.connect(obj, this);
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
        // An object of another thread is gone, or about to go, when its signal arrives through the
        // event loop: nothing but the address is left to print.
        if (sender() == obj && obj->thread() == thread())
            line << obj;
        else
            line << ("QObject(0x" + QByteArray::number(reinterpret_cast<quintptr>(obj), 16) + ')')
                        .constData();
    }
    const QWriteLocker locker(&lock);
    objects.removeAll(obj);
}

} // namespace Zentu
