// SPDX-License-Identifier: MIT
#include "context_mgr.h"

#include "recorder.h"

#include <QMetaMethod>
#include <QSignalSpy>
#include <QTest>

#include <memory>

using namespace Support;
using Zentu::ContextManager;

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString G = QStringLiteral("G");

using Change = void (ContextManager::*)(const QString&);

} // namespace

Q_DECLARE_METATYPE(Change)

class ContextManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasOneSignalAndNothingElse();
    void freshManagerHasNoContexts();
    void deletedSingletonIsMadeAnew();
    void anyManagerThatDiesClearsTheSingleton();
    void managersOfTheirOwnAreIndependent();
    void additionIsTracedThenDoneThenSignalled_data();
    void additionIsTracedThenDoneThenSignalled();
    void addedContextMovesToTheFront_data();
    void addedContextMovesToTheFront();
    void everyAdditionIsSignalled();
    void removalIsTracedThenDoneThenSignalled_data();
    void removalIsTracedThenDoneThenSignalled();
    void unknownContextIsNotRemoved_data();
    void unknownContextIsNotRemoved();
    void ordinaryContextsComeBeforeGlobalOnes();
    void currentContextsAreACopy();
    void namesAreComparedExactly();
};

void ContextManagerTest::hasOneSignalAndNothingElse()
{
    const QMetaObject& meta = ContextManager::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::ContextManager");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod method = meta.method(meta.methodOffset());
    QCOMPARE(method.methodType(), QMetaMethod::Signal);
    QCOMPARE(method.methodSignature(), QByteArray("contextChanged()"));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(ContextManager), sizeof(QObject) + sizeof(void*));
}

void ContextManagerTest::freshManagerHasNoContexts()
{
    Recorder recorder;
    const ContextManager manager;
    QVERIFY(manager.currentContexts().isEmpty());
    QVERIFY(!manager.parent());
    QVERIFY(recorder.isEmpty());
}

void ContextManagerTest::deletedSingletonIsMadeAnew()
{
    ContextManager* const first = ContextManager::instance();
    QCOMPARE(ContextManager::instance(), first);
    QVERIFY(!first->parent());
    first->addContext(A);
    first->addGlobalContext(G);
    QCOMPARE(ContextManager::instance()->currentContexts(), QStringList({A, G}));
    delete first;
    QVERIFY(ContextManager::instance()->currentContexts().isEmpty());
    delete ContextManager::instance();
}

void ContextManagerTest::anyManagerThatDiesClearsTheSingleton()
{
    ContextManager* const first = ContextManager::instance();
    const std::unique_ptr<ContextManager> owner(first);
    {
        const ContextManager other;
        QCOMPARE(ContextManager::instance(), first);
    }
    ContextManager* const second = ContextManager::instance();
    QVERIFY(second != first);
    delete second;
}

void ContextManagerTest::managersOfTheirOwnAreIndependent()
{
    ContextManager one;
    ContextManager two;
    one.addContext(A);
    QVERIFY(two.currentContexts().isEmpty());
}

void ContextManagerTest::additionIsTracedThenDoneThenSignalled_data()
{
    QTest::addColumn<Change>("add");
    QTest::addColumn<QString>("text");
    QTest::newRow("ordinary") << &ContextManager::addContext << QStringLiteral(" push context: ");
    QTest::newRow("global") << &ContextManager::addGlobalContext
                            << QStringLiteral(" add global context ");
}

void ContextManagerTest::additionIsTracedThenDoneThenSignalled()
{
    QFETCH(Change, add);
    QFETCH(QString, text);
    ContextManager manager;
    Recorder recorder;
    QStringList atTheLine(QStringLiteral("never"));
    recorder.onEntry([&](const Entry&) { atTheLine = manager.currentContexts(); });
    QStringList atTheSignal;
    qsizetype linesAtTheSignal = 0;
    connect(&manager, &ContextManager::contextChanged, this, [&] {
        atTheSignal = manager.currentContexts();
        linesAtTheSignal = recorder.entries().size();
    });
    (manager.*add)(QStringLiteral("a\"b"));
    recorder.onEntry({});
    QVERIFY(atTheLine.isEmpty());
    QCOMPARE(atTheSignal, QStringList(QStringLiteral("a\"b")));
    QCOMPARE(linesAtTheSignal, 1);
    QCOMPARE(recorder.take(),
        QStringList(trace(
            printed(static_cast<const QObject*>(&manager)) + text + QLatin1String("\"a\\\"b\" "))));
}

void ContextManagerTest::addedContextMovesToTheFront_data()
{
    additionIsTracedThenDoneThenSignalled_data();
}

void ContextManagerTest::addedContextMovesToTheFront()
{
    QFETCH(Change, add);
    ContextManager manager;
    QSignalSpy changed(&manager, &ContextManager::contextChanged);
    (manager.*add)(A);
    (manager.*add)(B);
    QCOMPARE(manager.currentContexts(), QStringList({B, A}));
    (manager.*add)(A);
    QCOMPARE(manager.currentContexts(), QStringList({A, B}));
    QCOMPARE(changed.count(), 3);
    (manager.*add)(QString());
    QCOMPARE(manager.currentContexts(), QStringList({QString(), A, B}));
}

void ContextManagerTest::everyAdditionIsSignalled()
{
    ContextManager manager;
    QSignalSpy changed(&manager, &ContextManager::contextChanged);
    for (int i = 1; i <= 2; ++i) {
        manager.addContext(A);
        QCOMPARE(changed.count(), 2 * i - 1);
        manager.addGlobalContext(G);
        QCOMPARE(changed.count(), 2 * i);
    }
    QCOMPARE(manager.currentContexts(), QStringList({A, G}));
}

void ContextManagerTest::removalIsTracedThenDoneThenSignalled_data()
{
    QTest::addColumn<Change>("add");
    QTest::addColumn<Change>("remove");
    QTest::addColumn<QString>("text");
    QTest::newRow("ordinary") << &ContextManager::addContext << &ContextManager::removeContext
                              << QStringLiteral(" remove context ");
    QTest::newRow("global") << &ContextManager::addGlobalContext
                            << &ContextManager::removeGlobalContext
                            << QStringLiteral(" remove global context ");
}

void ContextManagerTest::removalIsTracedThenDoneThenSignalled()
{
    QFETCH(Change, add);
    QFETCH(Change, remove);
    QFETCH(QString, text);
    ContextManager manager;
    (manager.*add)(A);
    (manager.*add)(B);
    Recorder recorder;
    QStringList atTheLine;
    recorder.onEntry([&](const Entry&) { atTheLine = manager.currentContexts(); });
    QList<QStringList> atTheSignal;
    connect(&manager, &ContextManager::contextChanged, this,
        [&] { atTheSignal.append(manager.currentContexts()); });
    (manager.*remove)(A);
    recorder.onEntry({});
    QCOMPARE(atTheLine, QStringList({B, A}));
    QCOMPARE(atTheSignal, QList<QStringList>({QStringList(B)}));
    QCOMPARE(recorder.take(),
        QStringList(trace(
            printed(static_cast<const QObject*>(&manager)) + text + QLatin1String("\"A\" "))));
}

void ContextManagerTest::unknownContextIsNotRemoved_data()
{
    removalIsTracedThenDoneThenSignalled_data();
}

// A name in the other list is unknown as well.
void ContextManagerTest::unknownContextIsNotRemoved()
{
    QFETCH(Change, remove);
    QFETCH(QString, text);
    ContextManager manager;
    const bool global = text.contains(QLatin1String("global"));
    if (global)
        manager.addContext(G);
    else
        manager.addGlobalContext(G);
    QSignalSpy changed(&manager, &ContextManager::contextChanged);
    Recorder recorder;
    (manager.*remove)(G);
    const QString object = printed(static_cast<const QObject*>(&manager));
    QCOMPARE(recorder.take(),
        QStringList({trace(object + text + QLatin1String("\"G\" ")),
            warning(object + QLatin1String(" context not found \"G\""))}));
    QCOMPARE(changed.count(), 0);
    QCOMPARE(manager.currentContexts(), QStringList(G));
}

void ContextManagerTest::ordinaryContextsComeBeforeGlobalOnes()
{
    ContextManager manager;
    manager.addGlobalContext(A);
    manager.addGlobalContext(G);
    manager.addContext(A);
    manager.addContext(B);
    QCOMPARE(manager.currentContexts(), QStringList({B, A, G, A}));
    manager.removeContext(A);
    QCOMPARE(manager.currentContexts(), QStringList({B, G, A}));
}

void ContextManagerTest::currentContextsAreACopy()
{
    ContextManager manager;
    manager.addContext(A);
    const QStringList list = manager.currentContexts();
    manager.addContext(B);
    QCOMPARE(list, QStringList(A));
}

void ContextManagerTest::namesAreComparedExactly()
{
    ContextManager manager;
    manager.addContext(A);
    manager.addContext(QStringLiteral("a"));
    manager.addContext(QStringLiteral("A "));
    QCOMPARE(manager.currentContexts().size(), 3);
}

QTEST_GUILESS_MAIN(ContextManagerTest)
#include "tst_context_mgr.moc"
