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
 * The pool hears at once of an object that is destroyed in the thread of the pool. Of one that is
 * destroyed in another thread it hears through its event loop; until then the object is listed,
 * but gone. Threads that delete what they publish therefore call removeObject() first: allObjects()
 * would give others a dead object, and removeObject() and clear() would read it. So does the thread
 * of the pool where another one may call clear(), which must not meet an object that is dying.
 *
 * The lines of the trace have the names of the pool and of the objects. These must not be changed
 * in one thread while another one uses the pool; give names before you publish.
 */
class ZENTU_EXPORT ObjectPool : public QObject
{
    Q_OBJECT

public:
    /// The pool, created by the first call, which must come before other threads use the pool. It
    /// belongs to the thread of that call. Never deleted by the library, and not to be deleted by
    /// a host: later calls would return the dead pool.
    static ObjectPool* instance();

    /// Creates an empty pool that instance() does not know. Hosts use instance().
    ObjectPool();

    /// Forgets the objects, which are left alone.
    ~ObjectPool() override;

    /// Appends @p obj. If it is listed, warns "add object:" ... "already exists" and changes
    /// nothing. A null pointer is listed like any other; Qt warns that it cannot be connected.
    void addObject(QObject* obj);

    /// Removes @p obj, which must still be there when this returns. If it is not listed, warns
    /// "remove object:" ... "not found" and changes nothing.
    void removeObject(QObject* obj);

    /// The listed objects in the order in which they were added; a copy.
    QList<QObject*> allObjects();

    /// Forgets every object; they are left alive, and must all still be there when this returns.
    void clear();

private Q_SLOTS:
    void onObjectDestroyed(QObject* obj);

private:
    static ObjectPool* s_instance;

    QReadWriteLock lock;
    QList<QObject*> objects;
};

} // namespace Zentu
