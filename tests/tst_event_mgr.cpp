// SPDX-License-Identifier: MIT
#include "event_mgr.h"

#include "ievent_handler.h"
#include "lock_probe.h"
#include "recorder.h"

#include <QMetaMethod>
#include <QPointer>
#include <QProcess>
#include <QTest>
#include <QThread>

#include <atomic>
#include <cstdio>
#include <functional>
#include <memory>
#include <stdexcept>
#include <type_traits>

using namespace Support;
using namespace Zentu;

Q_DECLARE_METATYPE(EventManager::PostMode)

namespace {

const QString X = QStringLiteral("x");
const QString Y = QStringLiteral("y");

/// A handler that does what the test says, and nothing by default.
class Handler : public IEventHandler
{
public:
    explicit Handler(const std::function<void(IEvent*)>& reaction = {})
        : react(reaction)
    {
    }

    void handleEvent(IEvent* event) override
    {
        ++count;
        thread = QThread::currentThread();
        // A copy, as it may delete the handler.
        if (const std::function<void(IEvent*)> reaction = react)
            reaction(event);
    }

    std::atomic<int> count{0};
    std::atomic<QThread*> thread{nullptr};
    std::function<void(IEvent*)> react;
};

/// An event that tells when it is deleted, and what then stood in a list.
class Event : public IEvent
{
public:
    explicit Event(const QString& type, std::atomic<int>* deletions = nullptr)
        : IEvent(type)
        , m_deletions(deletions)
    {
    }

    ~Event() override
    {
        if (m_deletions)
            ++*m_deletions;
    }

private:
    std::atomic<int>* m_deletions;
};

EventManager* bus()
{
    return EventManager::instance();
}

QString busPrinted()
{
    return printed(static_cast<const QObject*>(bus()));
}

QString address(const IEventHandler* handler)
{
    return printed(static_cast<const void*>(handler));
}

QList<IEventHandler*> handlers(std::initializer_list<IEventHandler*> list)
{
    return list;
}

LockProbe subscriptionsProbe()
{
    return LockProbe([] { bus()->getSubscribersFor(X); });
}

} // namespace

static_assert(std::is_same_v<decltype(&EventManager::getSubscribersFor),
    QList<IEventHandler*> (EventManager::*)(const QString&)>);
static_assert(std::is_same_v<decltype(&EventManager::subscribe),
    void (EventManager::*)(IEventHandler*, const QString&)>);
static_assert(std::is_same_v<decltype(&EventManager::postEvent),
    void (EventManager::*)(IEvent*, EventManager::PostMode)>);
static_assert(std::is_same_v<std::underlying_type_t<EventManager::PostMode>, int>);
static_assert(std::is_convertible_v<EventManager::PostMode, int>);

class EventManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isOneObjectWithAPrivateSlot();
    void subscriptionIsTracedBeforeItExists();
    void repeatedSubscriptionIsRefused();
    void unsubscriptionIsTracedBeforeItHappens();
    void unknownSubscriptionIsNotEnded();
    void allSubscriptionsOfAHandlerEndAtOnce();
    void changesAreTracedUnderTheLock_data();
    void changesAreTracedUnderTheLock();
    void subscribersAreListedNewestFirst();
    void listOfSubscribersIsACopy();
    void typesAreComparedExactly();
    void nullHandlerIsAnOrdinaryValue();
    void laterSubscriberSeesTheEventFirst();
    void postIsTracedWithEventAndRawMode_data();
    void postIsTracedWithEventAndRawMode();
    void postIsTracedBeforeDelivery();
    void nullEventIsTracedWithTwoBlanks();
    void directAndAutoDeliverBeforeTheyReturn_data();
    void directAndAutoDeliverBeforeTheyReturn();
    void queuedIsDeliveredByTheEventLoop();
    void queueIsEmptiedInOrder();
    void modesFromAnotherThread_data();
    void modesFromAnotherThread();
    void blockingPostWaitsForTheHandler();
    void eventWithoutSubscribersIsDeleted();
    void eventIsDeletedAfterTheLastHandler();
    void eventIsDeletedWhenAHandlerThrows_data();
    void eventIsDeletedWhenAHandlerThrows();
    void managerMayBeDeletedByAHandler_data();
    void managerMayBeDeletedByAHandler();
    void handlerMayDeleteItself();
    void pausedHandlerIsSkippedAlone();
    void handlerCanBePausedDuringTheDelivery();
    void changesDuringDeliveryDoNotAffectIt();
    void handlerUnsubscribedDuringDeliveryIsStillCalled();
    void postFromAHandlerNests();
    void deliveryTakesNoLock();
    void blockingPostFromTheManagersThreadIsNotDelivered();
    void derivedManagerDispatchesItself();
    void managerEndsWithTheProcess();
    void managerLivesInTheThreadThatAskedFirst();
    void messagesCarryNoContext();
    void managersAreIndependent();
};

void EventManagerTest::isOneObjectWithAPrivateSlot()
{
    QCOMPARE(EventManager::instance(), bus());
    QVERIFY(!bus()->parent());
    const QMetaObject& meta = EventManager::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::EventManager");
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod slot = meta.method(meta.methodOffset());
    QCOMPARE(slot.methodSignature(), QByteArray("dispatch(IEvent*)"));
    QCOMPARE(slot.access(), QMetaMethod::Private);
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(int(EventManager::Auto), 0);
    QCOMPARE(int(EventManager::Direct), 1);
    QCOMPARE(int(EventManager::Queued), 2);
    QCOMPARE(int(EventManager::BlockingQueued), 3);
}

void EventManagerTest::subscriptionIsTracedBeforeItExists()
{
    Handler handler;
    Recorder recorder;
    bus()->subscribe(&handler, QStringLiteral("a\"b"));
    QCOMPARE(recorder.take(),
        QStringList(trace(busPrinted() + QLatin1String(" new event subscription: ")
            + address(&handler) + QLatin1String(" \"a\\\"b\" "))));
    QCOMPARE(bus()->getSubscribersFor(QStringLiteral("a\"b")), handlers({&handler}));
}

void EventManagerTest::repeatedSubscriptionIsRefused()
{
    Handler first;
    Handler second;
    bus()->subscribe(&first, X);
    bus()->subscribe(&second, X);
    Recorder recorder;
    bus()->subscribe(&first, X);
    QCOMPARE(recorder.take(),
        QStringList(warning(busPrinted() + QLatin1String(" duplicated event subscription: ")
            + address(&first) + QLatin1String(" \"x\""))));
    QCOMPARE(bus()->getSubscribersFor(X), handlers({&second, &first}));

    bus()->subscribe(&first, Y);
    QCOMPARE(bus()->getSubscribersFor(Y), handlers({&first}));
}

void EventManagerTest::unsubscriptionIsTracedBeforeItHappens()
{
    Handler handler;
    Handler other;
    bus()->subscribe(&handler, X);
    bus()->subscribe(&other, X);
    bus()->subscribe(&handler, Y);
    Recorder recorder;
    bus()->unsubscribe(&handler, X);
    QCOMPARE(recorder.take(),
        QStringList(trace(busPrinted() + QLatin1String(" unsubscribe event: ") + address(&handler)
            + QLatin1String(" \"x\" "))));
    QCOMPARE(bus()->getSubscribersFor(X), handlers({&other}));
    QCOMPARE(bus()->getSubscribersFor(Y), handlers({&handler}));
}

void EventManagerTest::unknownSubscriptionIsNotEnded()
{
    Handler handler;
    Handler other;
    bus()->subscribe(&other, X);
    bus()->subscribe(&handler, Y);
    Recorder recorder;
    bus()->unsubscribe(&handler, X);
    QCOMPARE(recorder.take(),
        QStringList(warning(busPrinted() + QLatin1String(" unsubscribe event: ") + address(&handler)
            + QLatin1String(" \"x\" no match found"))));
    QCOMPARE(bus()->getSubscribersFor(X), handlers({&other}));
    QCOMPARE(bus()->getSubscribersFor(Y), handlers({&handler}));
}

void EventManagerTest::allSubscriptionsOfAHandlerEndAtOnce()
{
    Handler handler;
    Handler other;
    for (const QString& type : {X, Y, QString()}) {
        bus()->subscribe(&other, type);
        bus()->subscribe(&handler, type);
    }
    Recorder recorder;
    bus()->unsubscribeAll(&handler);
    const QString line = trace(busPrinted() + QLatin1String(" unsubscribe all events for: ")
        + address(&handler) + QLatin1Char(' '));
    QCOMPARE(recorder.take(), QStringList(line));
    for (const QString& type : {X, Y, QString()})
        QCOMPARE(bus()->getSubscribersFor(type), handlers({&other}));

    bus()->unsubscribeAll(&handler);
    QCOMPARE(recorder.take(), QStringList(line));
    QCOMPARE(bus()->getSubscribersFor(X), handlers({&other}));
}

void EventManagerTest::changesAreTracedUnderTheLock_data()
{
    QTest::addColumn<QString>("change");
    for (const char* name :
        {"subscribe", "subscribe twice", "unsubscribe", "unsubscribe unknown", "unsubscribe all"})
        QTest::newRow(name) << QString::fromLatin1(name);
}

void EventManagerTest::changesAreTracedUnderTheLock()
{
    QFETCH(QString, change);
    Handler handler;
    if (change == QLatin1String("subscribe twice") || change == QLatin1String("unsubscribe")
        || change == QLatin1String("unsubscribe all"))
        bus()->subscribe(&handler, X);

    Recorder recorder;
    LockProbe probe = subscriptionsProbe();
    int lines = 0;
    bool couldRead = false;
    recorder.onEntry([&](const Entry&) {
        ++lines;
        couldRead = probe.canRead(WhenLocked);
    });
    if (change.startsWith(QLatin1String("subscribe")))
        bus()->subscribe(&handler, X);
    else if (change == QLatin1String("unsubscribe all"))
        bus()->unsubscribeAll(&handler);
    else
        bus()->unsubscribe(&handler, X);
    recorder.onEntry({});
    QCOMPARE(lines, 1);
    QVERIFY(!couldRead);
    QVERIFY(probe.canRead(WhenFree));
}

void EventManagerTest::subscribersAreListedNewestFirst()
{
    Handler a;
    Handler b;
    Handler c;
    for (Handler* handler : {&a, &b, &c})
        bus()->subscribe(handler, X);
    QCOMPARE(bus()->getSubscribersFor(X), handlers({&c, &b, &a}));
    QVERIFY(bus()->getSubscribersFor(QStringLiteral("unknown")).isEmpty());
}

void EventManagerTest::listOfSubscribersIsACopy()
{
    Handler a;
    bus()->subscribe(&a, X);
    const QList<IEventHandler*> list = bus()->getSubscribersFor(X);
    bus()->unsubscribe(&a, X);
    QCOMPARE(list, handlers({&a}));
}

void EventManagerTest::typesAreComparedExactly()
{
    Handler handler;
    bus()->subscribe(&handler, X);
    for (const char* type : {"X", "x ", "", "xx"})
        bus()->postEvent(new IEvent(QString::fromLatin1(type)));
    QCOMPARE(handler.count.load(), 0);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(handler.count.load(), 1);
}

void EventManagerTest::nullHandlerIsAnOrdinaryValue()
{
    Recorder recorder;
    bus()->subscribe(nullptr, X);
    QCOMPARE(bus()->getSubscribersFor(X), handlers({nullptr}));
    bus()->unsubscribe(nullptr, X);
    QCOMPARE(recorder.take(),
        QStringList({trace(busPrinted() + QLatin1String(" new event subscription: 0x0 \"x\" ")),
            trace(busPrinted() + QLatin1String(" unsubscribe event: 0x0 \"x\" "))}));
}

void EventManagerTest::laterSubscriberSeesTheEventFirst()
{
    QStringList order;
    Handler a([&](IEvent*) { order.append(QStringLiteral("a")); });
    Handler b([&](IEvent*) { order.append(QStringLiteral("b")); });
    bus()->subscribe(&a, X);
    bus()->subscribe(&b, X);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(order, QStringList({QStringLiteral("b"), QStringLiteral("a")}));
}

void EventManagerTest::postIsTracedWithEventAndRawMode_data()
{
    QTest::addColumn<int>("mode");
    for (int mode : {0, 1, 2, 7, -1, 4})
        QTest::addRow("%d", mode) << mode;
}

void EventManagerTest::postIsTracedWithEventAndRawMode()
{
    QFETCH(int, mode);
    std::atomic<int> deletions{0};
    auto* event = new Event(X, &deletions);
    const QString line = trace(busPrinted() + QLatin1String(" post event IEvent(")
        + printed(static_cast<const void*>(event)) + QLatin1String(", type = \"x\") ")
        + QString::number(mode) + QLatin1Char(' '));
    Recorder recorder;
    bus()->postEvent(event, static_cast<EventManager::PostMode>(mode));
    QCOMPARE(deletions.load(), mode == EventManager::Queued ? 0 : 1);
    QCoreApplication::processEvents();
    QCOMPARE(deletions.load(), 1);
    QCOMPARE(recorder.take(), QStringList(line));
}

void EventManagerTest::postIsTracedBeforeDelivery()
{
    Recorder recorder;
    qsizetype before = -1;
    Handler handler([&](IEvent*) { before = recorder.entries().size(); });
    bus()->subscribe(&handler, X);
    recorder.clear();
    bus()->postEvent(new IEvent(X), EventManager::Direct);
    QCOMPARE(before, 1);
    QCOMPARE(recorder.entries().size(), 1);
}

void EventManagerTest::nullEventIsTracedWithTwoBlanks()
{
    // Queued and taken back, as a null event must not be delivered.
    EventManager manager;
    Recorder recorder;
    manager.postEvent(nullptr, EventManager::Queued);
    QCoreApplication::removePostedEvents(&manager);
    QCOMPARE(recorder.take(),
        QStringList(trace(printed(static_cast<const QObject*>(&manager))
            + QLatin1String(" post event IEvent(0x0)  2 "))));
}

void EventManagerTest::directAndAutoDeliverBeforeTheyReturn_data()
{
    QTest::addColumn<EventManager::PostMode>("mode");
    QTest::newRow("auto") << EventManager::Auto;
    QTest::newRow("direct") << EventManager::Direct;
    QTest::newRow("7") << static_cast<EventManager::PostMode>(7);
}

void EventManagerTest::directAndAutoDeliverBeforeTheyReturn()
{
    QFETCH(EventManager::PostMode, mode);
    Handler handler;
    bus()->subscribe(&handler, X);
    QPointer<IEvent> event = new IEvent(X);
    bus()->postEvent(event, mode);
    QCOMPARE(handler.count.load(), 1);
    QVERIFY(!event);
}

void EventManagerTest::queuedIsDeliveredByTheEventLoop()
{
    Handler handler;
    bus()->subscribe(&handler, X);
    QPointer<IEvent> event = new IEvent(X);
    bus()->postEvent(event, EventManager::Queued);
    QCOMPARE(handler.count.load(), 0);
    QVERIFY(event);
    QTRY_COMPARE(handler.count.load(), 1);
    QVERIFY(!event);
}

void EventManagerTest::queueIsEmptiedInOrder()
{
    QStringList order;
    const auto note = [&](IEvent* event) { order.append(event->objectName()); };
    Handler x(note);
    Handler y(note);
    bus()->subscribe(&x, X);
    bus()->subscribe(&y, Y);
    QStringList expected;
    for (int i = 0; i < 20; ++i) {
        auto* event = new IEvent(i % 3 == 0 ? Y : X);
        event->setObjectName(QString::number(i));
        expected.append(event->objectName());
        bus()->postEvent(event, EventManager::Queued);
    }
    QTRY_COMPARE(order.size(), expected.size());
    QCOMPARE(order, expected);
}

void EventManagerTest::modesFromAnotherThread_data()
{
    QTest::addColumn<EventManager::PostMode>("mode");
    QTest::addColumn<bool>("inManagersThread");
    QTest::newRow("auto") << EventManager::Auto << true;
    QTest::newRow("direct") << EventManager::Direct << false;
    QTest::newRow("queued") << EventManager::Queued << true;
    QTest::newRow("blocking") << EventManager::BlockingQueued << true;
    QTest::newRow("7") << static_cast<EventManager::PostMode>(7) << true;
}

void EventManagerTest::modesFromAnotherThread()
{
    QFETCH(EventManager::PostMode, mode);
    QFETCH(bool, inManagersThread);
    std::atomic<int> deletions{0};
    std::atomic<int> deletedOnReturn{-1};
    Handler handler;
    bus()->subscribe(&handler, X);
    QScopedPointer<QThread> poster(QThread::create([&] {
        bus()->postEvent(new Event(X, &deletions), mode);
        deletedOnReturn = deletions.load();
    }));
    poster->start();
    if (mode == EventManager::BlockingQueued) {
        QTRY_COMPARE(deletions.load(), 1);
        QVERIFY(poster->wait());
        QCOMPARE(deletedOnReturn.load(), 1);
    } else {
        // This thread does not deliver while it waits.
        QVERIFY(poster->wait());
        QCOMPARE(deletedOnReturn.load(), inManagersThread ? 0 : 1);
        QTRY_COMPARE(deletions.load(), 1);
    }
    QCOMPARE(handler.count.load(), 1);
    QCOMPARE(handler.thread.load() == thread(), inManagersThread);
}

void EventManagerTest::blockingPostWaitsForTheHandler()
{
    std::atomic<bool> returned{false};
    bool returnedEarly = true;
    Handler handler([&](IEvent*) { returnedEarly = returned; });
    bus()->subscribe(&handler, X);
    QScopedPointer<QThread> poster(QThread::create([&] {
        bus()->postEvent(new IEvent(X), EventManager::BlockingQueued);
        returned = true;
    }));
    poster->start();
    QTRY_VERIFY(returned);
    QVERIFY(poster->wait());
    QVERIFY(!returnedEarly);
}

void EventManagerTest::eventWithoutSubscribersIsDeleted()
{
    QPointer<IEvent> event = new IEvent(QStringLiteral("nobody"));
    bus()->postEvent(event, EventManager::Direct);
    QVERIFY(!event);
}

void EventManagerTest::eventIsDeletedAfterTheLastHandler()
{
    std::atomic<int> deletions{0};
    QList<int> seen;
    Handler a([&](IEvent*) { seen.append(deletions); });
    Handler b([&](IEvent*) { seen.append(deletions); });
    bus()->subscribe(&a, X);
    bus()->subscribe(&b, X);
    bus()->postEvent(new Event(X, &deletions));
    QCOMPARE(seen, QList<int>({0, 0}));
    QCOMPARE(deletions.load(), 1);
}

void EventManagerTest::eventIsDeletedWhenAHandlerThrows_data()
{
    QTest::addColumn<EventManager::PostMode>("mode");
    QTest::newRow("direct") << EventManager::Direct;
    QTest::newRow("queued") << EventManager::Queued;
}

void EventManagerTest::eventIsDeletedWhenAHandlerThrows()
{
    QFETCH(EventManager::PostMode, mode);
    Handler older;
    Handler newer([](IEvent*) { throw std::runtime_error("from a handler"); });
    bus()->subscribe(&older, X);
    bus()->subscribe(&newer, X);
    std::atomic<int> deletions{0};
    const auto deliver = [&] {
        bus()->postEvent(new Event(X, &deletions), mode);
        QCoreApplication::sendPostedEvents(bus());
    };
    QVERIFY_EXCEPTION_THROWN(deliver(), std::runtime_error);
    QCOMPARE(deletions.load(), 1);
    QCOMPARE(older.count.load(), 0);
    newer.react = {};
    deliver();
    QCOMPARE(deletions.load(), 2);
    QCOMPARE(older.count.load(), 1);
}

void EventManagerTest::managerMayBeDeletedByAHandler_data()
{
    eventIsDeletedWhenAHandlerThrows_data();
}

// A delivery that has begun is ended all the same.
void EventManagerTest::managerMayBeDeletedByAHandler()
{
    QFETCH(EventManager::PostMode, mode);
    auto* const manager = new EventManager;
    Handler older;
    Handler newer([=](IEvent*) { delete manager; });
    manager->subscribe(&older, X);
    manager->subscribe(&newer, X);
    std::atomic<int> deletions{0};
    manager->postEvent(new Event(X, &deletions), mode);
    QCoreApplication::sendPostedEvents();
    QCOMPARE(older.count.load(), 1);
    QCOMPARE(deletions.load(), 1);
}

void EventManagerTest::handlerMayDeleteItself()
{
    Handler older;
    auto* const newer = new Handler;
    newer->react = [=](IEvent*) { delete newer; };
    bus()->subscribe(&older, X);
    bus()->subscribe(newer, X);
    std::atomic<int> deletions{0};
    bus()->postEvent(new Event(X, &deletions));
    QCOMPARE(older.count.load(), 1);
    QCOMPARE(deletions.load(), 1);
    QCOMPARE(bus()->getSubscribersFor(X), handlers({&older}));
}

void EventManagerTest::pausedHandlerIsSkippedAlone()
{
    Handler a;
    Handler b;
    Handler c;
    for (Handler* handler : {&a, &b, &c})
        bus()->subscribe(handler, X);
    b.setReceiving(false);
    std::atomic<int> deletions{0};
    bus()->postEvent(new Event(X, &deletions));
    QCOMPARE(a.count.load(), 1);
    QCOMPARE(b.count.load(), 0);
    QCOMPARE(c.count.load(), 1);
    QCOMPARE(deletions.load(), 1);
}

void EventManagerTest::handlerCanBePausedDuringTheDelivery()
{
    Handler older;
    Handler newer([&](IEvent*) { older.setReceiving(false); });
    bus()->subscribe(&older, X);
    bus()->subscribe(&newer, X);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(older.count.load(), 0);
}

void EventManagerTest::changesDuringDeliveryDoNotAffectIt()
{
    Handler late;
    Handler handler([&](IEvent*) {
        if (late.count == 0 && !bus()->getSubscribersFor(X).contains(&late))
            bus()->subscribe(&late, X);
    });
    bus()->subscribe(&handler, X);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(late.count.load(), 0);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(late.count.load(), 1);
}

void EventManagerTest::handlerUnsubscribedDuringDeliveryIsStillCalled()
{
    Handler older;
    Handler newer([&](IEvent*) { bus()->unsubscribeAll(&older); });
    bus()->subscribe(&older, X);
    bus()->subscribe(&newer, X);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(older.count.load(), 1);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(older.count.load(), 1);
}

void EventManagerTest::postFromAHandlerNests()
{
    QStringList order;
    std::atomic<int> deletions{0};
    Handler inner([&](IEvent*) { order.append(QStringLiteral("inner")); });
    Handler older([&](IEvent*) { order.append(QStringLiteral("older")); });
    Handler newer([&](IEvent*) {
        bus()->postEvent(new Event(Y, &deletions));
        order.append(QStringLiteral("deleted %1").arg(deletions.load()));
    });
    bus()->subscribe(&inner, Y);
    bus()->subscribe(&older, X);
    bus()->subscribe(&newer, X);
    bus()->postEvent(new IEvent(X));
    QCOMPARE(order,
        QStringList(
            {QStringLiteral("inner"), QStringLiteral("deleted 1"), QStringLiteral("older")}));
}

void EventManagerTest::deliveryTakesNoLock()
{
    LockProbe probe = subscriptionsProbe();
    bool couldRead = false;
    Handler handler([&](IEvent*) { couldRead = probe.canRead(WhenFree); });
    bus()->subscribe(&handler, X);
    Recorder recorder;
    bool couldReadAtTheLine = false;
    recorder.onEntry([&](const Entry&) { couldReadAtTheLine = probe.canRead(WhenFree); });
    bus()->postEvent(new IEvent(X));
    recorder.onEntry({});
    QVERIFY(couldRead);
    QVERIFY(couldReadAtTheLine);
}

/// A manager whose class has declared the slot anew.
class OtherManager : public EventManager
{
    Q_OBJECT

public:
    int dispatched = 0;

private Q_SLOTS:
    void dispatch(IEvent* event)
    {
        ++dispatched;
        delete event;
    }
};

void EventManagerTest::derivedManagerDispatchesItself()
{
    OtherManager manager;
    manager.postEvent(new IEvent(X));
    QCOMPARE(manager.dispatched, 1);
}

// Runs one of the tests below in a process of its own, and gives what it says.
static QByteArray outputOfChild()
{
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZENTU_TEST_CHILD"), QStringLiteral("1"));
    child.setProcessEnvironment(environment);
    child.start(
        QCoreApplication::applicationFilePath(), {QLatin1String(QTest::currentTestFunction())});
    return child.waitForFinished() ? child.readAllStandardOutput() : QByteArray();
}

static bool isChild()
{
    return qEnvironmentVariableIsSet("ZENTU_TEST_CHILD");
}

void EventManagerTest::managerEndsWithTheProcess()
{
    if (isChild()) {
        connect(bus(), &QObject::destroyed, [] { std::puts("the bus is gone"); });
        return;
    }
    const QByteArray output = outputOfChild();
    QVERIFY2(output.endsWith("the bus is gone\n"), output.constData());
}

void EventManagerTest::managerLivesInTheThreadThatAskedFirst()
{
    if (isChild()) {
        const std::unique_ptr<QThread> thread(QThread::create([] {
            std::puts(EventManager::instance()->thread() == QThread::currentThread()
                    ? "the thread is that of the caller"
                    : "the thread is another one");
        }));
        thread->start();
        thread->wait();
        return;
    }
    QVERIFY(outputOfChild().contains("the thread is that of the caller\n"));
}

// Runs itself, as the one that posts never returns with the Qt of today.
void EventManagerTest::blockingPostFromTheManagersThreadIsNotDelivered()
{
    const char* const variable = "ZENTU_TEST_DEADLOCK";
    if (qEnvironmentVariableIsSet(variable)) {
        Handler handler([](IEvent*) { qInfo("delivered"); });
        bus()->subscribe(&handler, X);
        bus()->postEvent(new IEvent(X), EventManager::BlockingQueued);
        QCoreApplication::processEvents();
        return;
    }
    QProcess other;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QLatin1String(variable), QStringLiteral("1"));
    other.setProcessEnvironment(environment);
    other.start(
        QCoreApplication::applicationFilePath(), {QLatin1String(QTest::currentTestFunction())});
    QByteArray output;
    const auto warned = [&] {
        output += other.readAllStandardOutput();
        return output.contains("Dead lock detected in BlockingQueuedConnection: "
                               "Receiver is Zentu::EventManager(");
    };
    QTRY_VERIFY(warned());
    other.kill();
    QVERIFY(other.waitForFinished());
    output += other.readAllStandardOutput();
    QVERIFY(!output.contains("delivered"));
}

void EventManagerTest::messagesCarryNoContext()
{
    Handler handler;
    Recorder recorder;
    bus()->unsubscribe(&handler, X);
    bus()->subscribe(&handler, X);
    const QList<Entry> entries = recorder.entries();
    QCOMPARE(entries.size(), 2);
    QCOMPARE(entries.first().category, QStringLiteral("default"));
    QVERIFY(entries.first().file.isNull());
    QVERIFY(entries.first().function.isNull());
    QCOMPARE(entries.first().line, 0);
    QCOMPARE(entries.last().level, 1);
}

void EventManagerTest::managersAreIndependent()
{
    Handler handler;
    {
        EventManager manager;
        manager.subscribe(&handler, X);
        QVERIFY(bus()->getSubscribersFor(X).isEmpty());
        manager.postEvent(new IEvent(X));
        QCOMPARE(handler.count.load(), 1);
    }
    handler.setReceiving(true);
}

QTEST_GUILESS_MAIN(EventManagerTest)
#include "tst_event_mgr.moc"
