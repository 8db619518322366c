// SPDX-License-Identifier: MIT
#include "object_pool.h"

#include "recorder.h"

#include <QCoreApplication>
#include <QTest>
#include <QThread>

#include <atomic>
#include <memory>
#include <thread>
#include <vector>

using Zentu::ObjectPool;

class ObjectPoolThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void objectsComeAndGoInAllThreads();
    void objectsDieInTheirOwnThreads();
    void objectsDieInAnotherThreadWhileThePoolHearsOfIt();
    void poolIsClearedWhileObjectsComeAndGo();
};

void ObjectPoolThreadsTest::objectsComeAndGoInAllThreads()
{
    ObjectPool pool;
    QObject lasting;
    pool.addObject(&lasting);
    // Qt looks at the count of owners by a relaxed load before it writes to a list, which the
    // sanitizer takes for a race with whoever gave up a copy just before. So none is given up.
    constexpr int Threads = 4;
    std::vector<QList<QObject*>> copies[Threads];
    std::vector<std::thread> threads;
    for (auto& kept : copies) {
        threads.emplace_back([&pool, &kept] {
            for (int i = 0; i < 200; ++i) {
                QObject object;
                pool.addObject(&object);
                kept.push_back(pool.allObjects());
                QVERIFY(kept.back().contains(&object));
                pool.removeObject(&object);
                kept.push_back(pool.allObjects());
                QVERIFY(!kept.back().contains(&object));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(pool.allObjects(), QList<QObject*>({&lasting}));
}

void ObjectPoolThreadsTest::objectsDieInTheirOwnThreads()
{
    constexpr int Threads = 4;
    constexpr int Objects = 200;
    ObjectPool pool;
    std::atomic<int> added{0};
    std::vector<std::thread> threads;
    for (int t = 0; t < Threads; ++t) {
        threads.emplace_back([&] {
            std::vector<std::unique_ptr<QObject>> objects;
            for (int i = 0; i < Objects; ++i) {
                objects.push_back(std::make_unique<QObject>());
                objects.back()->setObjectName(QStringLiteral("object %1").arg(i));
                pool.addObject(objects.back().get());
            }
            // No object is created at the address of one that the pool has not heard the end of.
            ++added;
            while (added < Threads)
                std::this_thread::yield();
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    QCOMPARE(pool.allObjects().size(), Threads * Objects);
    // What died is told by the event loop of this thread, which prints the addresses of the dead.
    QTRY_VERIFY(pool.allObjects().isEmpty());
}

// Each is told of while it is destroyed: the pool must not look at it any more.
void ObjectPoolThreadsTest::objectsDieInAnotherThreadWhileThePoolHearsOfIt()
{
    const Support::Recorder recorder; // An address can be added again before its end was heard of.
    ObjectPool pool;
    std::atomic<bool> done{false};
    std::thread thread([&] {
        for (int i = 0; i < 2000; ++i) {
            const auto object = std::make_unique<QObject>();
            object->setObjectName(QStringLiteral("object %1").arg(i));
            pool.addObject(object.get());
        }
        done = true;
    });
    while (!done)
        QCoreApplication::processEvents();
    thread.join();
    QTRY_VERIFY(pool.allObjects().isEmpty());
}

void ObjectPoolThreadsTest::poolIsClearedWhileObjectsComeAndGo()
{
    const Support::Recorder recorder; // What has been cleared is not found any more.
    ObjectPool pool;
    std::atomic<bool> stop{false};
    std::thread clearing([&] {
        while (!stop)
            pool.clear();
    });
    for (int i = 0; i < 500; ++i) {
        const auto object = std::make_unique<QObject>();
        pool.addObject(object.get());
        pool.removeObject(object.get());
    }
    stop = true;
    clearing.join();
    QVERIFY(pool.allObjects().isEmpty());
}

QTEST_GUILESS_MAIN(ObjectPoolThreadsTest)
#include "tst_object_pool_threads.moc"
