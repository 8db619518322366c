// SPDX-License-Identifier: MIT
#include "lambda_slot.h"

#include "recorder.h"

#include <QMetaMethod>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <memory>
#include <type_traits>

using namespace Support;
using Zentu::LambdaSlotWrapper;

class LambdaSlotTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasOnePublicSlotAndNothingElse();
    void startsAsAChildThatStays();
    void everyEmissionCallsTheCallable();
    void callableIsCopied();
    void callableKeepsItsState();
    void argumentsAreNotPassedOn();
    void failedConnectionLeavesAnIdleChild();
    void connectionTypeIsHonoured();
    void wrapperDiesWithItsSender();
    void oneShotGoesAfterItsCall();
    void triggerCallsBeforeItDeletes();
    void emptyCallableThrows();
};

void LambdaSlotTest::hasOnePublicSlotAndNothingElse()
{
    const QMetaObject& meta = LambdaSlotWrapper::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::LambdaSlotWrapper");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod slot = meta.method(meta.methodOffset());
    QCOMPARE(slot.methodSignature(), QByteArray("trigger()"));
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Public);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
}

void LambdaSlotTest::startsAsAChildThatStays()
{
    QObject parent;
    int calls = 0;
    auto* wrapper = new LambdaSlotWrapper(&parent, [&] { ++calls; });
    QCOMPARE(wrapper->parent(), &parent);
    QCOMPARE(wrapper->autoDelete, false);
    QCOMPARE(reinterpret_cast<const char*>(&wrapper->autoDelete)
            - reinterpret_cast<const char*>(&*wrapper),
        std::ptrdiff_t(sizeof(QObject) + sizeof(std::function<void()>)));
    QCOMPARE(calls, 0);
    const QPointer<LambdaSlotWrapper> guard = wrapper;
    wrapper->trigger();
    wrapper->trigger();
    QCOMPARE(calls, 2);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(guard);
}

void LambdaSlotTest::everyEmissionCallsTheCallable()
{
    QPushButton button;
    int calls = 0;
    Recorder recorder;
    QVERIFY(LambdaSlotWrapper::connect(&button, SIGNAL(clicked()), [&] { ++calls; }));
    QVERIFY(LambdaSlotWrapper::connect(
        &button, "2clicked()", [&] { calls += 10; }, Qt::AutoConnection));
    button.click();
    QCOMPARE(calls, 11);
    button.click();
    QCOMPARE(calls, 22);
    const QList<LambdaSlotWrapper*> wrappers = button.findChildren<LambdaSlotWrapper*>();
    QCOMPARE(wrappers.size(), 2);
    QCOMPARE(wrappers.first()->parent(), &button);
    QCOMPARE(wrappers.first()->autoDelete, false);
    QVERIFY(recorder.isEmpty());
}

void LambdaSlotTest::callableIsCopied()
{
    QObject sender;
    int calls = 0;
    std::function<void()> callable = [&] { ++calls; };
    QVERIFY(LambdaSlotWrapper::connect(&sender, SIGNAL(objectNameChanged(QString)), callable));
    callable = nullptr;
    sender.setObjectName(QStringLiteral("a"));
    QCOMPARE(calls, 1);
}

void LambdaSlotTest::callableKeepsItsState()
{
    QList<int> counted;
    LambdaSlotWrapper wrapper(
        nullptr, [&counted, count = 0]() mutable { counted.append(++count); });
    wrapper.trigger();
    wrapper.trigger();
    QCOMPARE(counted, QList<int>({1, 2}));
}

void LambdaSlotTest::argumentsAreNotPassedOn()
{
    QPushButton button;
    int calls = 0;
    QVERIFY(LambdaSlotWrapper::connect(&button, SIGNAL(clicked(bool)), [&] { ++calls; }));
    button.click();
    QCOMPARE(calls, 1);
}

void LambdaSlotTest::failedConnectionLeavesAnIdleChild()
{
    QObject sender;
    int calls = 0;
    Recorder recorder;
    QVERIFY(!LambdaSlotWrapper::connect(&sender, "2noSuchSignal()", [&] { ++calls; }));
    QCOMPARE(recorder.take(),
        QStringList(
            warning(QStringLiteral("QObject::connect: No such signal QObject::noSuchSignal()"))));
    QCOMPARE(sender.findChildren<LambdaSlotWrapper*>().size(), 1);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(sender.findChildren<LambdaSlotWrapper*>().size(), 1);
    QCOMPARE(calls, 0);
}

void LambdaSlotTest::connectionTypeIsHonoured()
{
    QObject sender;
    int calls = 0;
    QVERIFY(LambdaSlotWrapper::connect(
        &sender, SIGNAL(objectNameChanged(QString)), [&] { ++calls; }, Qt::QueuedConnection));
    sender.setObjectName(QStringLiteral("a"));
    QCOMPARE(calls, 0);
    QTRY_COMPARE(calls, 1);
}

void LambdaSlotTest::wrapperDiesWithItsSender()
{
    auto sender = std::make_unique<QPushButton>();
    const auto token = std::make_shared<int>(0);
    LambdaSlotWrapper::connect(sender.get(), SIGNAL(clicked()), [token] { ++*token; });
    QCOMPARE(token.use_count(), 2L);
    const QPointer<LambdaSlotWrapper> guard = sender->findChild<LambdaSlotWrapper*>();
    QVERIFY(guard);
    sender.reset();
    QVERIFY(!guard);
    QCOMPARE(token.use_count(), 1L);
}

void LambdaSlotTest::oneShotGoesAfterItsCall()
{
    QObject parent;
    int calls = 0;
    const QPointer<LambdaSlotWrapper> wrapper = new LambdaSlotWrapper(&parent, [&] { ++calls; });
    wrapper->autoDelete = true;
    QTimer::singleShot(250, wrapper, "1trigger()");
    QVERIFY(wrapper);
    QTRY_COMPARE(calls, 1);
    QTRY_VERIFY(!wrapper);
    QVERIFY(parent.children().isEmpty());
    QCOMPARE(calls, 1);
}

void LambdaSlotTest::triggerCallsBeforeItDeletes()
{
    QObject parent;
    QPointer<LambdaSlotWrapper> wrapper;
    bool wasThere = false;
    wrapper = new LambdaSlotWrapper(&parent, [&] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        wasThere = wrapper;
    });
    wrapper->autoDelete = true;
    wrapper->trigger();
    QVERIFY(wasThere);
    QVERIFY(wrapper); // not before the event loop runs
    QTRY_VERIFY(!wrapper);
}

void LambdaSlotTest::emptyCallableThrows()
{
    QObject parent;
    auto* wrapper = new LambdaSlotWrapper(&parent, std::function<void()>());
    wrapper->autoDelete = true;
    const QPointer<LambdaSlotWrapper> guard = wrapper;
    QVERIFY_EXCEPTION_THROWN(wrapper->trigger(), std::bad_function_call);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(guard);
}

QTEST_MAIN(LambdaSlotTest)
#include "tst_lambda_slot.moc"
