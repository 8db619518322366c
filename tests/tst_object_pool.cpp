// SPDX-License-Identifier: MIT
#include "object_pool.h"

#include "lock_probe.h"
#include "recorder.h"

#include <QMetaMethod>
#include <QSemaphore>
#include <QTest>
#include <QThread>

#include <functional>
#include <memory>
#include <type_traits>
#include <vector>

using namespace Support;
using Zentu::ObjectPool;

namespace {

QString print(const QObject* object)
{
    return printed(object);
}

using Objects = QList<QObject*>;

/// An object that tells when it is connected or disconnected.
class Telling : public QObject
{
public:
    int connections() const { return receivers(SIGNAL(destroyed(QObject*))); }

    std::function<void(const QObject*)> tell;

protected:
    void connectNotify(const QMetaMethod& /*signal*/) override
    {
        if (tell)
            tell(this);
    }
    void disconnectNotify(const QMetaMethod& /*signal*/) override
    {
        if (tell)
            tell(this);
    }
};

/// An object whose class has declared the signal anew.
class Shadow : public QObject
{
    Q_OBJECT

Q_SIGNALS:
    void destroyed(QObject* object);
};

} // namespace

class ObjectPoolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasOnePrivateSlotAndNothingElse();
    void thereIsOneSingleton();
    void additionIsTracedThenDone();
    void secondAdditionIsRefused();
    void removalIsTracedThenDone();
    void unknownObjectIsNotRemoved();
    void destroyedObjectLeaves();
    void removedObjectIsNotHeardOf();
    void clearForgetsAllObjects();
    void linesAreWrittenUnderTheLockOrBeforeIt_data();
    void linesAreWrittenUnderTheLockOrBeforeIt();
    void listIsACopyInOrderOfAddition();
    void nullIsListedOnce();
    void connectionIsThatOfTheSignatures();
    void derivedSignalIsTheOneThatCounts();
    void objectIsConnectedUnderTheLockAndInTurn();
    void allConnectionsToThePoolAreCut_data();
    void allConnectionsToThePoolAreCut();
    void destroyedObjectIsNotDisconnected();
    void dyingPoolLeavesItsObjectsAlone();
    void objectOfAnotherThreadIsPrintedByItsAddress();
    void objectThatIsStillDyingIsPrintedByItsAddress_data();
    void objectThatIsStillDyingIsPrintedByItsAddress();
    void objectDeletedInTheThreadOfThePoolIsPrintedWithItsName_data();
    void objectDeletedInTheThreadOfThePoolIsPrintedWithItsName();
    void objectDeletedAfterAQueuedCallIsPrintedWithItsName();
    void objectsDeletedInAQueuedFunctionArePrintedWithTheirNames();
    void objectDeletedInAnEventThatIsNoCallIsPrintedWithItsName();
    void slotCalledByNameTakesNull_data();
    void slotCalledByNameTakesNull();
    void deadSingletonIsStillReturned();
};

static_assert(std::is_same_v<decltype(&ObjectPool::allObjects), QList<QObject*> (ObjectPool::*)()>);
static_assert(std::is_same_v<decltype(&ObjectPool::addObject), void (ObjectPool::*)(QObject*)>);
static_assert(std::is_same_v<decltype(&ObjectPool::removeObject), void (ObjectPool::*)(QObject*)>);

void ObjectPoolTest::hasOnePrivateSlotAndNothingElse()
{
    const QMetaObject& meta = ObjectPool::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::ObjectPool");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod slot = meta.method(meta.methodOffset());
    QCOMPARE(slot.methodSignature(), QByteArray("onObjectDestroyed(QObject*)"));
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Private);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(
        sizeof(ObjectPool), sizeof(QObject) + sizeof(QReadWriteLock) + sizeof(QList<QObject*>));
}

void ObjectPoolTest::thereIsOneSingleton()
{
    Recorder recorder;
    ObjectPool* const pool = ObjectPool::instance();
    QCOMPARE(ObjectPool::instance(), pool);
    QVERIFY(!pool->parent());
    QVERIFY(pool->allObjects().isEmpty());
    {
        const ObjectPool other;
    }
    QCOMPARE(ObjectPool::instance(), pool);
    QVERIFY(recorder.isEmpty());
}

void ObjectPoolTest::additionIsTracedThenDone()
{
    ObjectPool pool;
    QObject object;
    object.setObjectName(QStringLiteral("name"));
    Recorder recorder;
    pool.addObject(&object);
    QCOMPARE(recorder.take(),
        QStringList(trace(
            print(&pool) + QLatin1String(" add object: ") + print(&object) + QLatin1Char(' '))));
    QCOMPARE(pool.allObjects(), Objects({&object}));
}

void ObjectPoolTest::secondAdditionIsRefused()
{
    ObjectPool pool;
    auto object = std::make_unique<QObject>();
    pool.addObject(object.get());
    Recorder recorder;
    pool.addObject(object.get());
    QCOMPARE(recorder.take(),
        QStringList(warning(print(&pool) + QLatin1String(" add object: ") + print(object.get())
            + QLatin1String(" already exists"))));
    QCOMPARE(pool.allObjects(), Objects({object.get()}));
    object.reset();
    QCOMPARE(recorder.take().size(), 1); // one connection
}

void ObjectPoolTest::removalIsTracedThenDone()
{
    ObjectPool pool;
    QObject a;
    QObject b;
    pool.addObject(&a);
    pool.addObject(&b);
    Recorder recorder;
    pool.removeObject(&a);
    QCOMPARE(recorder.take(),
        QStringList(trace(
            print(&pool) + QLatin1String(" remove object: ") + print(&a) + QLatin1Char(' '))));
    QCOMPARE(pool.allObjects(), Objects({&b}));
}

void ObjectPoolTest::unknownObjectIsNotRemoved()
{
    ObjectPool pool;
    QObject a;
    QObject b;
    pool.addObject(&a);
    Recorder recorder;
    pool.removeObject(&b);
    QCOMPARE(recorder.take(),
        QStringList(warning(print(&pool) + QLatin1String(" remove object: ") + print(&b)
            + QLatin1String(" not found"))));
    QCOMPARE(pool.allObjects(), Objects({&a}));
}

void ObjectPoolTest::destroyedObjectLeaves()
{
    ObjectPool pool;
    QObject a;
    auto b = std::make_unique<QThread>();
    b->setObjectName(QStringLiteral("b"));
    QObject c;
    pool.addObject(&a);
    pool.addObject(b.get());
    pool.addObject(&c);
    const QString address = printed(static_cast<const void*>(b.get()));
    Recorder recorder;
    Objects atTheLine;
    recorder.onEntry([&](const Entry&) { atTheLine = pool.allObjects(); });
    b.reset();
    recorder.onEntry({});
    QCOMPARE(atTheLine.size(), 3);
    QCOMPARE(pool.allObjects(), Objects({&a, &c}));
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&pool) + QLatin1String(" object destoryed: QObject(") + address
            + QLatin1String(", name = \"b\") "))));
}

void ObjectPoolTest::removedObjectIsNotHeardOf()
{
    ObjectPool pool;
    auto object = std::make_unique<QObject>();
    pool.addObject(object.get());
    pool.removeObject(object.get());
    Recorder recorder;
    object.reset();
    QVERIFY(recorder.isEmpty());
}

void ObjectPoolTest::clearForgetsAllObjects()
{
    ObjectPool pool;
    auto a = std::make_unique<QObject>();
    QObject b;
    pool.addObject(a.get());
    pool.addObject(&b);
    Recorder recorder;
    qsizetype atTheLine = 0;
    recorder.onEntry([&](const Entry&) { atTheLine = pool.allObjects().size(); });
    pool.clear();
    recorder.onEntry({});
    QCOMPARE(atTheLine, 2);
    QVERIFY(pool.allObjects().isEmpty());
    QCOMPARE(
        recorder.take(), QStringList(trace(print(&pool) + QLatin1String(" clear all objects "))));
    a.reset();
    QVERIFY(recorder.isEmpty());
    pool.addObject(&b);
    QCOMPARE(pool.allObjects(), Objects({&b}));
}

void ObjectPoolTest::linesAreWrittenUnderTheLockOrBeforeIt_data()
{
    QTest::addColumn<QString>("operation");
    QTest::addColumn<bool>("locked");
    QTest::newRow("add") << QStringLiteral("add") << true;
    QTest::newRow("add twice") << QStringLiteral("add twice") << true;
    QTest::newRow("remove") << QStringLiteral("remove") << true;
    QTest::newRow("remove unknown") << QStringLiteral("remove unknown") << true;
    QTest::newRow("clear") << QStringLiteral("clear") << false;
    QTest::newRow("destroy") << QStringLiteral("destroy") << false;
}

void ObjectPoolTest::linesAreWrittenUnderTheLockOrBeforeIt()
{
    QFETCH(QString, operation);
    QFETCH(bool, locked);
    ObjectPool pool;
    LockProbe probe([&] { pool.allObjects(); });
    auto object = std::make_unique<QObject>();
    if (operation != QLatin1String("add") && operation != QLatin1String("remove unknown"))
        pool.addObject(object.get());
    Recorder recorder;
    int lines = 0;
    bool couldRead = false;
    recorder.onEntry([&](const Entry&) {
        ++lines;
        couldRead = probe.canRead(locked ? WhenLocked : WhenFree);
    });
    if (operation.startsWith(QLatin1String("add")))
        pool.addObject(object.get());
    else if (operation.startsWith(QLatin1String("remove")))
        pool.removeObject(object.get());
    else if (operation == QLatin1String("clear"))
        pool.clear();
    else
        object.reset();
    recorder.onEntry({});
    QCOMPARE(lines, 1);
    QCOMPARE(couldRead, !locked);
    QVERIFY(probe.canRead(WhenFree));
}

void ObjectPoolTest::listIsACopyInOrderOfAddition()
{
    ObjectPool pool;
    QObject a;
    QObject b;
    QObject c;
    for (QObject* object : {&b, &a, &c})
        pool.addObject(object);
    const Objects list = pool.allObjects();
    pool.removeObject(&a);
    QCOMPARE(list, Objects({&b, &a, &c}));
    pool.addObject(&a);
    QCOMPARE(pool.allObjects(), Objects({&b, &c, &a}));
}

void ObjectPoolTest::nullIsListedOnce()
{
    ObjectPool pool;
    Recorder recorder;
    pool.addObject(nullptr);
    QCOMPARE(recorder.take(),
        QStringList({trace(print(&pool) + QLatin1String(" add object: QObject(0x0) ")),
            warning(
                QStringLiteral("QObject::connect: Cannot connect (nullptr)::destroyed(QObject*) to "
                               "Zentu::ObjectPool::onObjectDestroyed(QObject*)"))}));
    pool.addObject(nullptr);
    QCOMPARE(recorder.take(),
        QStringList(
            warning(print(&pool) + QLatin1String(" add object: QObject(0x0) already exists"))));
    QCOMPARE(pool.allObjects(), Objects({nullptr}));
    pool.removeObject(nullptr);
    QCOMPARE(recorder.take(),
        QStringList({trace(print(&pool) + QLatin1String(" remove object: QObject(0x0) ")),
            warning(QStringLiteral("QObject::disconnect: Unexpected nullptr parameter"))}));
    QVERIFY(pool.allObjects().isEmpty());
}

void ObjectPoolTest::connectionIsThatOfTheSignatures()
{
    ObjectPool pool;
    QObject object;
    pool.addObject(&object);
    QVERIFY(
        disconnect(&object, SIGNAL(destroyed(QObject*)), &pool, SLOT(onObjectDestroyed(QObject*))));
    QVERIFY(!disconnect(&object, nullptr, &pool, nullptr));
}

void ObjectPoolTest::dyingPoolLeavesItsObjectsAlone()
{
    auto object = std::make_unique<QObject>();
    {
        ObjectPool pool;
        pool.addObject(object.get());
    }
    object->setObjectName(QStringLiteral("alive"));
    Recorder recorder;
    object.reset();
    QVERIFY(recorder.isEmpty());
}

void ObjectPoolTest::objectOfAnotherThreadIsPrintedByItsAddress()
{
    ObjectPool pool;
    auto* object = new QObject;
    object->setObjectName(QStringLiteral("gone by then"));
    const QString address = printed(static_cast<const void*>(object));
    QThread thread;
    thread.start();
    object->moveToThread(&thread);
    pool.addObject(object);
    Recorder recorder;
    object->deleteLater();
    thread.quit();
    QVERIFY(thread.wait());
    QVERIFY(recorder.isEmpty());
    QCOMPARE(pool.allObjects(), Objects({object}));
    QTRY_VERIFY(pool.allObjects().isEmpty());
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&pool) + QLatin1String(" object destoryed: QObject(") + address
            + QLatin1String(") "))));
}

void ObjectPoolTest::objectThatIsStillDyingIsPrintedByItsAddress_data()
{
    QTest::addColumn<bool>("livesThere");
    QTest::newRow("in its own thread") << true;
    QTest::newRow("in a thread that it does not live in") << false;
}

// It is still there when the pool hears of it, but not to be read any more.
void ObjectPoolTest::objectThatIsStillDyingIsPrintedByItsAddress()
{
    QFETCH(bool, livesThere);
    ObjectPool pool;
    auto* object = new QObject;
    object->setObjectName(QStringLiteral("dying"));
    const QString address = printed(static_cast<const void*>(object));
    pool.addObject(object);
    QSemaphore heard;
    connect(object, &QObject::destroyed, [&] { heard.tryAcquire(1, 10000); });
    const std::unique_ptr<QThread> thread(QThread::create([=] { delete object; }));
    if (livesThere)
        object->moveToThread(thread.get());
    Recorder recorder;
    thread->start();
    QTRY_VERIFY(pool.allObjects().isEmpty());
    heard.release();
    QVERIFY(thread->wait());
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&pool) + QLatin1String(" object destoryed: QObject(") + address
            + QLatin1String(") "))));
}

void ObjectPoolTest::objectDeletedInTheThreadOfThePoolIsPrintedWithItsName_data()
{
    QTest::addColumn<bool>("hasThread");
    QTest::newRow("its thread has ended") << true;
    QTest::newRow("it has no thread") << false;
}

void ObjectPoolTest::objectDeletedInTheThreadOfThePoolIsPrintedWithItsName()
{
    QFETCH(bool, hasThread);
    ObjectPool pool;
    auto object = std::make_unique<QObject>();
    object->setObjectName(QStringLiteral("worker"));
    const QString line = trace(print(&pool) + QLatin1String(" object destoryed: ")
        + print(object.get()) + QLatin1Char(' '));
    pool.addObject(object.get());
    QThread thread;
    thread.start();
    object->moveToThread(hasThread ? &thread : nullptr);
    thread.quit();
    QVERIFY(thread.wait());
    Recorder recorder;
    object.reset();
    QCOMPARE(recorder.take(), QStringList(line));
    QVERIFY(pool.allObjects().isEmpty());
}

// Whatever the queued call was, it is over.
void ObjectPoolTest::objectDeletedAfterAQueuedCallIsPrintedWithItsName()
{
    ObjectPool pool;
    auto object = std::make_unique<QObject>();
    object->setObjectName(QStringLiteral("late"));
    pool.addObject(object.get());
    bool called = false;
    QMetaObject::invokeMethod(
        &pool, [&] { called = true; }, Qt::QueuedConnection);
    QTRY_VERIFY(called);
    const QString line = trace(print(&pool) + QLatin1String(" object destoryed: ")
        + print(object.get()) + QLatin1Char(' '));
    Recorder recorder;
    object.reset();
    QCOMPARE(recorder.take(), QStringList(line));
}

// All but the first one, which the pool cannot tell from one that died elsewhere.
void ObjectPoolTest::objectsDeletedInAQueuedFunctionArePrintedWithTheirNames()
{
    ObjectPool pool;
    QStringList lines;
    QList<QObject*> objects;
    for (const char* const name : {"first", "second", "third"}) {
        objects.append(new QObject);
        objects.last()->setObjectName(QString::fromLatin1(name));
        pool.addObject(objects.last());
        const QString object = objects.size() > 1
            ? print(objects.last())
            : QStringLiteral("QObject(%1)").arg(printed(static_cast<void*>(objects.last())));
        lines.append(
            trace(print(&pool) + QLatin1String(" object destoryed: ") + object + QLatin1Char(' ')));
    }
    Recorder recorder;
    QMetaObject::invokeMethod(
        &pool, [&] { qDeleteAll(objects); }, Qt::QueuedConnection);
    QTRY_VERIFY(pool.allObjects().isEmpty());
    QCOMPARE(recorder.take(), lines);
}

void ObjectPoolTest::objectDeletedInAnEventThatIsNoCallIsPrintedWithItsName()
{
    struct Deleting : ObjectPool
    {
        std::unique_ptr<QObject> object = std::make_unique<QObject>();
        void customEvent(QEvent* /*event*/) override { object.reset(); }
    };
    Deleting pool;
    pool.object->setObjectName(QStringLiteral("object"));
    pool.addObject(pool.object.get());
    const QString line = trace(print(&pool) + QLatin1String(" object destoryed: ")
        + print(pool.object.get()) + QLatin1Char(' '));
    Recorder recorder;
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(&pool, &event);
    QCOMPARE(recorder.take(), QStringList(line));
}

void ObjectPoolTest::slotCalledByNameTakesNull_data()
{
    QTest::addColumn<Qt::ConnectionType>("type");
    QTest::newRow("direct") << Qt::DirectConnection;
    QTest::newRow("queued") << Qt::QueuedConnection;
}

void ObjectPoolTest::slotCalledByNameTakesNull()
{
    QFETCH(Qt::ConnectionType, type);
    ObjectPool pool;
    Recorder recorder;
    pool.addObject(nullptr);
    recorder.clear();
    QVERIFY(QMetaObject::invokeMethod(
        &pool, "onObjectDestroyed", type, Q_ARG(QObject*, static_cast<QObject*>(nullptr))));
    QTRY_VERIFY(pool.allObjects().isEmpty());
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&pool) + QLatin1String(" object destoryed: QObject(0x0) "))));
}

void ObjectPoolTest::derivedSignalIsTheOneThatCounts()
{
    ObjectPool pool;
    Shadow object;
    pool.addObject(&object);
    Q_EMIT object.destroyed(&object);
    QVERIFY(pool.allObjects().isEmpty());
}

void ObjectPoolTest::objectIsConnectedUnderTheLockAndInTurn()
{
    ObjectPool pool;
    LockProbe probe([&] { pool.allObjects(); });
    Telling a;
    Telling b;
    QStringList order;
    bool locked = true;
    const auto note = [&](const QObject* object) {
        order.append(object->objectName());
        locked = locked && !probe.canRead(WhenLocked);
    };
    a.setObjectName(QStringLiteral("a"));
    b.setObjectName(QStringLiteral("b"));
    a.tell = note;
    b.tell = note;
    Recorder recorder;
    QList<int> atTheLines;
    recorder.onEntry([&](const Entry&) { atTheLines.append(a.connections()); });
    pool.addObject(&b);
    pool.addObject(&a);
    pool.removeObject(&a);
    pool.addObject(&a);
    pool.clear();
    recorder.onEntry({});
    a.tell = {};
    b.tell = {};
    QVERIFY(locked);
    QCOMPARE(order.join(QLatin1Char(' ')), QStringLiteral("b a a a b a"));
    QCOMPARE(atTheLines, QList<int>({0, 0, 1, 0, 1}));
}

void ObjectPoolTest::allConnectionsToThePoolAreCut_data()
{
    QTest::addColumn<bool>("clear");
    QTest::newRow("removed") << false;
    QTest::newRow("cleared") << true;
}

void ObjectPoolTest::allConnectionsToThePoolAreCut()
{
    QFETCH(bool, clear);
    ObjectPool pool;
    ObjectPool other;
    QObject object;
    pool.addObject(&object);
    other.addObject(&object);
    connect(&object, SIGNAL(objectNameChanged(QString)), &pool, SLOT(deleteLater()));
    if (clear)
        pool.clear();
    else
        pool.removeObject(&object);
    QVERIFY(!disconnect(&object, nullptr, &pool, nullptr));
    QVERIFY(disconnect(&object, nullptr, &other, nullptr));
}

void ObjectPoolTest::destroyedObjectIsNotDisconnected()
{
    ObjectPool pool;
    QObject object;
    pool.addObject(&object);
    Recorder recorder;
    Q_EMIT object.destroyed(&object);
    QVERIFY(pool.allObjects().isEmpty());
    Q_EMIT object.destroyed(&object);
    QCOMPARE(recorder.take().size(), 2);
}

// The last test of all: nobody may ask for the singleton after it.
void ObjectPoolTest::deadSingletonIsStillReturned()
{
    const void* const first = ObjectPool::instance();
    delete ObjectPool::instance();
    // A new one would not be made where the old one was.
    std::vector<std::unique_ptr<ObjectPool>> others(16);
    for (auto& other : others)
        other = std::make_unique<ObjectPool>();
    QCOMPARE(static_cast<const void*>(ObjectPool::instance()), first);
}

QTEST_GUILESS_MAIN(ObjectPoolTest)
#include "tst_object_pool.moc"
