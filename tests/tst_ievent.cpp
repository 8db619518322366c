// SPDX-License-Identifier: MIT
#include "ievent.h"

#include "event_mgr.h"
#include "recorder.h"

#include <QSignalSpy>
#include <QTest>

using namespace Support;
using Zentu::IEvent;

class IEventTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keepsItsTypeAndStartsWithoutValues();
    void valuesAreReadAndWritten();
    void isAnObjectWithNothingOfItsOwn();
    void isKnownToTheMetaTypeSystemByItsShortName();
    void dyingEventWritesNothing();
    void isPrintedWithAddressAndType_data();
    void isPrintedWithAddressAndType();
    void nullEventIsPrintedInTheModeOfTheStream();
    void everyEventLeavesTheStreamSpaced();
};

void IEventTest::keepsItsTypeAndStartsWithoutValues()
{
    const IEvent event(QStringLiteral("document.opened"));
    QCOMPARE(event.type(), QStringLiteral("document.opened"));
    QVERIFY(event.data().isEmpty());
    QVERIFY(!event.parent());
    QCOMPARE(IEvent(QString()).type(), QString());
    QCOMPARE(sizeof event, sizeof(QObject) + sizeof(QString) + sizeof(QVariantMap));
}

void IEventTest::valuesAreReadAndWritten()
{
    IEvent event(QStringLiteral("x"));
    event.data().insert(QStringLiteral("bytes"), 12);
    const IEvent& same = event;
    QCOMPARE(same.data(), QVariantMap({{QStringLiteral("bytes"), 12}}));
}

void IEventTest::isAnObjectWithNothingOfItsOwn()
{
    const QMetaObject& meta = IEvent::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::IEvent");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(meta.enumeratorCount(), meta.enumeratorOffset());
}

void IEventTest::isKnownToTheMetaTypeSystemByItsShortName()
{
    Zentu::EventManager::instance();
    const int type = QMetaType::type("IEvent*");
    QVERIFY(type != QMetaType::UnknownType);
    QCOMPARE(type, qMetaTypeId<IEvent*>());
    QCOMPARE(QMetaType::type("Zentu::IEvent*"), type);
}

void IEventTest::dyingEventWritesNothing()
{
    Recorder recorder;
    auto* event = new IEvent(QStringLiteral("x"));
    QSignalSpy destroyed(event, &QObject::destroyed);
    delete static_cast<QObject*>(event);
    QCOMPARE(destroyed.count(), 1);
    QVERIFY(recorder.isEmpty());
}

void IEventTest::isPrintedWithAddressAndType_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QString>("quoted");
    QTest::newRow("plain") << QStringLiteral("x.y") << QStringLiteral("\"x.y\"");
    QTest::newRow("empty") << QString() << QStringLiteral("\"\"");
    QTest::newRow("quote") << QStringLiteral("a\"b") << QStringLiteral("\"a\\\"b\"");
}

void IEventTest::isPrintedWithAddressAndType()
{
    QFETCH(QString, type);
    QFETCH(QString, quoted);
    const IEvent event(type);
    const QString expected = QLatin1String("IEvent(") + printed(static_cast<const void*>(&event))
        + QLatin1String(", type = ") + quoted + QLatin1String(") ");
    QString spaced;
    QDebug(&spaced) << &event;
    QCOMPARE(spaced, expected);
    QString unspaced;
    QDebug(&unspaced).nospace() << &event;
    QCOMPARE(unspaced, expected);
}

void IEventTest::nullEventIsPrintedInTheModeOfTheStream()
{
    const IEvent* const none = nullptr;
    QString spaced;
    QDebug(&spaced) << none;
    QCOMPARE(spaced, QStringLiteral("IEvent(0x0)  "));
    QString unspaced;
    QDebug(&unspaced).nospace() << none;
    QCOMPARE(unspaced, QStringLiteral("IEvent(0x0) "));
}

void IEventTest::everyEventLeavesTheStreamSpaced()
{
    const IEvent event(QStringLiteral("x"));
    for (const IEvent* each : {&event, static_cast<const IEvent*>(nullptr)}) {
        QString text;
        QDebug debug(&text);
        debug.nospace() << each;
        QVERIFY(debug.autoInsertSpaces());
        debug << 1 << 2;
        QVERIFY(text.endsWith(QLatin1String(") 1 2 ")));
    }
}

QTEST_GUILESS_MAIN(IEventTest)
#include "tst_ievent.moc"
