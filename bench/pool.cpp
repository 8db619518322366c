// SPDX-License-Identifier: MIT
#include "lines.h"
#include "measure.h"

#include "object_pool.h"

#include <QMetaMethod>
#include <QReadWriteLock>
#include <QWriteLocker>

#include <memory>

namespace Bench {
namespace {

/// The steps of the pool with the connection of its choice.
class PoolBase : public QObject
{
    Q_OBJECT

public:
    virtual void forget(QObject* object) = 0;

public Q_SLOTS:
    void onDestroyed(QObject* object) { forget(object); }
};

template <typename Line, bool ByName = false>
class Pool : public PoolBase
{
public:
    void addObject(QObject* object)
    {
        static const QMetaMethod destroyed = QMetaMethod::fromSignal(&QObject::destroyed);
        static const QMetaMethod onDestroyed =
            staticMetaObject.method(staticMetaObject.indexOfSlot("onDestroyed(QObject*)"));

        const QWriteLocker locker(&lock);
        if (objects.contains(object))
            return;
        Line() << static_cast<const QObject*>(this) << "add object:" << object;
        objects.append(object);
        if (ByName)
            connect(object, SIGNAL(destroyed(QObject*)), this, SLOT(onDestroyed(QObject*)));
        else
            connect(object, destroyed, this, onDestroyed);
    }

    void forget(QObject* object) override
    {
        Line() << static_cast<const QObject*>(this) << "object destoryed:" << object;
        const QWriteLocker locker(&lock);
        objects.removeAll(object);
    }

private:
    QReadWriteLock lock;
    QList<QObject*> objects;
};

// Adds all objects and destroys them, the first one first.
template <typename P>
void addAndDestroy(benchmark::State& state)
{
    P pool;
    const auto count = static_cast<std::size_t>(state.range(0));
    const auto prepare = [=] {
        std::vector<std::unique_ptr<QObject>> objects(count);
        for (auto& object : objects)
            object = std::make_unique<QObject>();
        return objects;
    };
    repeat(state, prepare, [&pool](auto& objects) {
        for (const auto& object : objects)
            pool.addObject(object.get());
        for (auto& object : objects)
            object.reset();
    });
}

} // namespace

void addPoolRows()
{
    const std::string row = "pool/add and destroy";
    const std::vector<int> sizes = {10, 100, 1000, 10000};
    add(row, "zentu", sizes, addAndDestroy<Zentu::ObjectPool>)->UseManualTime();
    add(row, "core", sizes, addAndDestroy<Pool<NoLine>>)->UseManualTime();
    add(row, "hand", sizes, addAndDestroy<Pool<HandLine>>)->UseManualTime();
    add(row, "plain", sizes, addAndDestroy<Pool<PlainLine, true>>)->UseManualTime();
}

} // namespace Bench

#include "pool.moc"
