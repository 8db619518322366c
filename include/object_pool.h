// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QList>
#include <QObject>
#include <QReadWriteLock>

namespace Zentu {

/**
 * A list of objects that one part of a host publishes and others look up.
 *
 * The pool does not own the objects. An object leaves it by removeObject(), by clear() or when it
 * is destroyed. Users filter allObjects() for what they need:
 *
 * @code
 * for (QObject* object : Zentu::ObjectPool::instance()->allObjects()) {
 *     if (auto* factory = qobject_cast<DocumentFactory*>(object))
 *         ...
 * }
 * @endcode
 *
 * All operations may be called from any thread, once instance() has been called in the GUI thread.
 * The destruction of an object that lives in another thread reaches the pool through the event loop
 * of the pool's thread.
 */
class ZENTU_EXPORT ObjectPool : public QObject
{
    Q_OBJECT

public:
    /// The pool, created by the first call, which must come before other threads use the pool.
    /// Never deleted by the library.
    static ObjectPool* instance();

    /// Creates an empty pool that instance() does not know. Hosts use instance().
    ObjectPool();

    /// Forgets the objects, which are left alone.
    ~ObjectPool() override;

    /// Appends @p obj. If it is listed, warns "add object:" ... "already exists" and changes
    /// nothing.
    void addObject(QObject* obj);

    /// Removes @p obj. If it is not listed, warns "remove object:" ... "not found" and changes
    /// nothing.
    void removeObject(QObject* obj);

    /// The listed objects in the order in which they were added; a copy.
    QList<QObject*> allObjects();

    /// Forgets every object; they are left alive.
    void clear();

private Q_SLOTS:
    void onObjectDestroyed(QObject* obj);

private:
    static ObjectPool* s_instance;

    QReadWriteLock lock;
    QList<QObject*> objects;
};

} // namespace Zentu
