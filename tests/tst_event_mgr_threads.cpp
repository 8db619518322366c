// SPDX-License-Identifier: MIT
#include "event_mgr.h"
#include "ievent_handler.h"

#include <QTest>

#include <atomic>
#include <functional>
#include <thread>
#include <utility>
#include <vector>

using namespace Zentu;

namespace {

/// A handler that counts.
class Counter : public IEventHandler
{
public:
    void handleEvent(IEvent* event) override
    {
        sum += event->data().value(QStringLiteral("value")).toInt();
        ++count;
    }

    std::atomic<int> count{0};
    std::atomic<int> sum{0};
};

/// A handler that does what the test says.
class Doing : public IEventHandler
{
public:
    explicit Doing(std::function<void()> reaction)
        : m_react(std::move(reaction))
    {
    }
    void handleEvent(IEvent* /*event*/) override { m_react(); }

private:
    std::function<void()> m_react;
};

void runInThreads(int threads, const std::function<void(int)>& work)
{
    std::vector<std::thread> all;
    for (int i = 0; i < threads; ++i)
        all.emplace_back(work, i);
    for (std::thread& thread : all)
        thread.join();
}

} // namespace

class EventManagerThreadsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void subscriptionsChangeFromAllThreads();
    void handlersComeAndGoInAllThreads();
    void eventsArriveFromAllThreads_data();
    void eventsArriveFromAllThreads();
    void handlersArePausedFromAnotherThread();
    void deliveryKeepsItsListWhateverThreadChangesIt();
};

void EventManagerThreadsTest::subscriptionsChangeFromAllThreads()
{
    constexpr int Threads = 4;
    EventManager* const bus = EventManager::instance();
    std::vector<Counter> counters(Threads);
    runInThreads(Threads, [&](int i) {
        Counter& counter = counters[static_cast<std::size_t>(i)];
        for (int round = 0; round < 200; ++round) {
            const QString type = QStringLiteral("type %1").arg(round % 5);
            counter.subscribe(type);
            QVERIFY(bus->getSubscribersFor(type).contains(&counter));
            if (round % 5 == 4)
                bus->unsubscribeAll(&counter);
        }
        counter.subscribe(QStringLiteral("end"));
    });
    QCOMPARE(bus->getSubscribersFor(QStringLiteral("end")).size(), Threads);
    for (int type = 0; type < 5; ++type)
        QVERIFY(bus->getSubscribersFor(QStringLiteral("type %1").arg(type)).isEmpty());
}

void EventManagerThreadsTest::handlersComeAndGoInAllThreads()
{
    runInThreads(4, [](int i) {
        for (int round = 0; round < 100; ++round) {
            Counter counter;
            counter.subscribe(QStringLiteral("own %1").arg(i));
            EventManager::instance()->postEvent(
                new IEvent(QStringLiteral("own %1").arg(i)), EventManager::Direct);
            QCOMPARE(counter.count.load(), 1);
        }
    });
}

void EventManagerThreadsTest::eventsArriveFromAllThreads_data()
{
    QTest::addColumn<int>("mode");
    QTest::newRow("auto") << int(EventManager::Auto);
    QTest::newRow("direct") << int(EventManager::Direct);
    QTest::newRow("queued") << int(EventManager::Queued);
    QTest::newRow("blocking") << int(EventManager::BlockingQueued);
}

void EventManagerThreadsTest::eventsArriveFromAllThreads()
{
    QFETCH(int, mode);
    constexpr int Threads = 4;
    constexpr int Events = 250;
    const QString type = QStringLiteral("count");
    Counter counter;
    counter.subscribe(type);
    std::atomic<int> running{Threads};
    std::thread posters([&] {
        runInThreads(Threads, [&](int) {
            for (int i = 0; i < Events; ++i) {
                auto* event = new IEvent(type);
                event->data().insert(QStringLiteral("value"), 2);
                EventManager::instance()->postEvent(
                    event, static_cast<EventManager::PostMode>(mode));
            }
            --running;
        });
    });
    QTRY_COMPARE_WITH_TIMEOUT(counter.count.load(), Threads * Events, 60000);
    posters.join();
    QCOMPARE(counter.sum.load(), 2 * Threads * Events);
}

void EventManagerThreadsTest::handlersArePausedFromAnotherThread()
{
    Counter counter;
    counter.subscribe(QStringLiteral("pause"));
    std::atomic<bool> stop{false};
    std::thread pauser([&] {
        for (bool receiving = false; !stop; receiving = !receiving)
            counter.setReceiving(receiving);
        counter.setReceiving(true);
    });
    for (int i = 0; i < 500; ++i)
        EventManager::instance()->postEvent(new IEvent(QStringLiteral("pause")));
    stop = true;
    pauser.join();
    const int before = counter.count;
    EventManager::instance()->postEvent(new IEvent(QStringLiteral("pause")));
    QCOMPARE(counter.count.load(), before + 1);
}

void EventManagerThreadsTest::deliveryKeepsItsListWhateverThreadChangesIt()
{
    const QString type = QStringLiteral("held");
    EventManager* const bus = EventManager::instance();
    Counter left;
    Counter paused;
    Counter added;
    Doing first([&] {
        std::thread([&] {
            bus->unsubscribeAll(&left);
            paused.setReceiving(false);
            if (!bus->getSubscribersFor(type).contains(&added))
                added.subscribe(type);
        }).join();
    });
    left.subscribe(type);
    paused.subscribe(type);
    first.subscribe(type);
    for (const int counted : {0, 1}) {
        bus->postEvent(new IEvent(type), EventManager::Direct);
        QCOMPARE(left.count.load(), 1);
        QCOMPARE(paused.count.load(), 0);
        QCOMPARE(added.count.load(), counted);
    }
}

QTEST_GUILESS_MAIN(EventManagerThreadsTest)
#include "tst_event_mgr_threads.moc"
