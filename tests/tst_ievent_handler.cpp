// SPDX-License-Identifier: MIT
#include "ievent_handler.h"

#include "event_mgr.h"
#include "recorder.h"

#include <QProcess>
#include <QTest>

#include <memory>
#include <type_traits>

using namespace Support;
using namespace Zentu;

namespace {

/// A handler that counts.
class Handler : public IEventHandler
{
public:
    void handleEvent(IEvent* event) override
    {
        ++count;
        lastType = event->type();
    }

    int count = 0;
    QString lastType;
};

QString bus()
{
    return printed(static_cast<const QObject*>(EventManager::instance()));
}

QString address(const IEventHandler* handler)
{
    return printed(static_cast<const void*>(handler));
}

} // namespace

class IEventHandlerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsReceivingAndSubscribedToNothing();
    void subscribesAtTheManager();
    void unsubscribesAtTheManager();
    void destructionLeavesEverything();
    void destructionWithoutSubscriptionIsTracedAllTheSame();
    void isWholeUntilItIsUnsubscribed();
    void pausedHandlerKeepsItsSubscriptions();
    void handlerMayOutliveTheBus();
    void emptyTypeNameIsDelivered();
    void pausedHandlerStaysPausedWhenItSubscribesAgain();
    void isNotCopied();
};

void IEventHandlerTest::startsReceivingAndSubscribedToNothing()
{
    Recorder recorder;
    const Handler handler;
    QVERIFY(handler.isReceiving());
    QVERIFY(recorder.isEmpty());
}

void IEventHandlerTest::subscribesAtTheManager()
{
    Handler handler;
    Recorder recorder;
    handler.subscribe(QStringLiteral("x"));
    handler.subscribe(QStringLiteral("x"));
    QCOMPARE(recorder.take(),
        QStringList({trace(bus() + QLatin1String(" new event subscription: ") + address(&handler)
                         + QLatin1String(" \"x\" ")),
            warning(bus() + QLatin1String(" duplicated event subscription: ") + address(&handler)
                + QLatin1String(" \"x\""))}));
    QCOMPARE(EventManager::instance()->getSubscribersFor(QStringLiteral("x")),
        QList<IEventHandler*>({&handler}));
}

void IEventHandlerTest::unsubscribesAtTheManager()
{
    Handler handler;
    handler.subscribe(QString());
    Recorder recorder;
    handler.unsubscribe(QString());
    QVERIFY(EventManager::instance()->getSubscribersFor(QString()).isEmpty());
    handler.unsubscribe(QString());
    const QString line =
        bus() + QLatin1String(" unsubscribe event: ") + address(&handler) + QLatin1String(" \"\" ");
    QCOMPARE(recorder.take(),
        QStringList({trace(line), warning(line + QLatin1String("no match found"))}));
}

void IEventHandlerTest::destructionLeavesEverything()
{
    auto handler = std::make_unique<Handler>();
    handler->subscribe(QStringLiteral("x"));
    handler->subscribe(QStringLiteral("y"));
    const QString line = trace(bus() + QLatin1String(" unsubscribe all events for: ")
        + address(handler.get()) + QLatin1Char(' '));
    Recorder recorder;
    handler.reset();
    QCOMPARE(recorder.take(), QStringList(line));
    QVERIFY(EventManager::instance()->getSubscribersFor(QStringLiteral("x")).isEmpty());
    QVERIFY(EventManager::instance()->getSubscribersFor(QStringLiteral("y")).isEmpty());
}

void IEventHandlerTest::destructionWithoutSubscriptionIsTracedAllTheSame()
{
    auto handler = std::make_unique<Handler>();
    const QString line = trace(bus() + QLatin1String(" unsubscribe all events for: ")
        + address(handler.get()) + QLatin1Char(' '));
    Recorder recorder;
    handler.reset();
    QCOMPARE(recorder.take(), QStringList(line));
}

// A thread that is about to deliver asks it until the manager has let it go.
void IEventHandlerTest::isWholeUntilItIsUnsubscribed()
{
    auto handler = std::make_unique<Handler>();
    handler->setReceiving(false);
    const IEventHandler* const dying = handler.get();
    QList<bool> receiving;
    Recorder recorder;
    recorder.onEntry([&](const Entry&) { receiving.append(dying->isReceiving()); });
    handler.reset();
    QCOMPARE(receiving, QList<bool>{false});
}

void IEventHandlerTest::pausedHandlerKeepsItsSubscriptions()
{
    Handler handler;
    handler.subscribe(QStringLiteral("x"));
    handler.setReceiving(false);
    QVERIFY(!handler.isReceiving());
    EventManager::instance()->postEvent(new IEvent(QStringLiteral("x")));
    QCOMPARE(handler.count, 0);
    QCOMPARE(EventManager::instance()->getSubscribersFor(QStringLiteral("x")),
        QList<IEventHandler*>({&handler}));

    handler.setReceiving(true);
    QVERIFY(handler.isReceiving());
    EventManager::instance()->postEvent(new IEvent(QStringLiteral("x")));
    QCOMPARE(handler.count, 1);
    QCOMPARE(handler.lastType, QStringLiteral("x"));
}

// Runs itself, as the bus ends with the process.
void IEventHandlerTest::handlerMayOutliveTheBus()
{
    static std::unique_ptr<IEventHandler> handler;
    const QString variable = QStringLiteral("ZENTU_TEST_CHILD");
    if (qEnvironmentVariableIsSet(qPrintable(variable))) {
        // Destroyed in reverse: the variable comes before the bus, which comes with the first
        // subscription.
        handler = std::make_unique<Handler>();
        handler->subscribe(QStringLiteral("x"));
        return;
    }
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(variable, QStringLiteral("1"));
    child.setProcessEnvironment(environment);
    child.start(
        QCoreApplication::applicationFilePath(), {QLatin1String(QTest::currentTestFunction())});
    const bool ended = child.waitForFinished(20000);
    child.kill();
    QVERIFY2(ended, "hangs at the end of the process");
    QCOMPARE(child.exitStatus(), QProcess::NormalExit);
    QCOMPARE(child.exitCode(), 0);
}

void IEventHandlerTest::emptyTypeNameIsDelivered()
{
    Handler handler;
    Handler other;
    handler.subscribe(QString());
    other.subscribe(QStringLiteral(" "));
    EventManager::instance()->postEvent(new IEvent(QLatin1String("")));
    EventManager::instance()->postEvent(new IEvent(QString()));
    QCOMPARE(handler.count, 2);
    QCOMPARE(other.count, 0);
    handler.unsubscribe(QLatin1String(""));
    EventManager::instance()->postEvent(new IEvent(QString()));
    QCOMPARE(handler.count, 2);
}

void IEventHandlerTest::pausedHandlerStaysPausedWhenItSubscribesAgain()
{
    Handler handler;
    handler.subscribe(QStringLiteral("x"));
    handler.setReceiving(false);
    handler.unsubscribe(QStringLiteral("x"));
    handler.subscribe(QStringLiteral("x"));
    QVERIFY(!handler.isReceiving());
    EventManager::instance()->unsubscribeAll(&handler);
    handler.subscribe(QStringLiteral("x"));
    QVERIFY(!handler.isReceiving());
    EventManager::instance()->postEvent(new IEvent(QStringLiteral("x")));
    QCOMPARE(handler.count, 0);
}

void IEventHandlerTest::isNotCopied()
{
    QVERIFY(!std::is_copy_constructible_v<Handler>);
    QVERIFY(!std::is_copy_assignable_v<Handler>);
    QVERIFY(std::has_virtual_destructor_v<IEventHandler>);
    // The virtual table and the private object, no more.
    QCOMPARE(sizeof(IEventHandler), 2 * sizeof(void*));
}

QTEST_GUILESS_MAIN(IEventHandlerTest)
#include "tst_ievent_handler.moc"
