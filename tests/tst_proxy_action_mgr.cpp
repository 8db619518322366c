// SPDX-License-Identifier: MIT
#include "proxy_act.h"

#include "recorder.h"

#include <QPointer>
#include <QTest>

#include <memory>

using namespace Support;
using namespace Zentu;

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString E = QStringLiteral("E");

QString print(const QObject* object)
{
    return printed(object);
}

QString printAction(const QAction* action)
{
    return printed(action);
}

// What a proxy traces that gets the context E.
QString line(const QAction& action)
{
    return trace(printAction(&action) + QLatin1String(" set context ") + quoted(QStringList(E))
        + QLatin1Char(' '));
}

} // namespace

class ProxyActionManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasNothingOfItsOwn();
    void deletedSingletonIsMadeAnew();
    void anyManagerThatDiesClearsTheSingleton();
    void registrationIsTracedThenDone();
    void takenIdentifierIsRefused();
    void registeredActionGetsTheContexts();
    void registeredActionLosesItsContexts();
    void actionIsStoredBeforeItGetsTheContexts();
    void contextsReachActionsInOrderOfIdentifiers();
    void sameContextsDoNothing();
    void contextsAreTracedBeforeTheyAreStored();
    void contextsAreStoredBeforeTheyAreHandedOn();
    void actionRegisteredMeanwhileIsReachedOnce_data();
    void actionRegisteredMeanwhileIsReachedOnce();
    void walkReachesWhatIsRegisteredBehindIt_data();
    void walkReachesWhatIsRegisteredBehindIt();
    void listSetWhileAnotherOneIsHandedOnHolds();
    void managerMayBeDeletedByAnActionThatIsRegistered();
    void managerMayBeDeletedWhileItHandsOn();
    void actionsOutliveTheManager();
};

void ProxyActionManagerTest::hasNothingOfItsOwn()
{
    const QMetaObject& meta = ProxyActionManager::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::ProxyActionManager");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(ProxyActionManager),
        sizeof(QObject) + sizeof(QMap<QString, ProxyAction*>) + sizeof(QStringList));
}

void ProxyActionManagerTest::deletedSingletonIsMadeAnew()
{
    ProxyAction action;
    ProxyActionManager* const first = ProxyActionManager::instance();
    QCOMPARE(ProxyActionManager::instance(), first);
    QVERIFY(!first->parent());
    first->registerProxyAction(&action, A);
    delete first;
    QVERIFY(!ProxyActionManager::instance()->getProxyAction(A));
    delete ProxyActionManager::instance();
}

void ProxyActionManagerTest::anyManagerThatDiesClearsTheSingleton()
{
    ProxyActionManager* const first = ProxyActionManager::instance();
    const std::unique_ptr<ProxyActionManager> owner(first);
    {
        const ProxyActionManager other;
        QCOMPARE(ProxyActionManager::instance(), first);
    }
    ProxyActionManager* const second = ProxyActionManager::instance();
    QVERIFY(second != first);
    delete second;
}

void ProxyActionManagerTest::registrationIsTracedThenDone()
{
    ProxyActionManager manager;
    ProxyAction action;
    Recorder recorder;
    const ProxyAction* atTheLine = &action;
    recorder.onEntry([&](const Entry&) { atTheLine = manager.getProxyAction(A); });
    manager.registerProxyAction(&action, A);
    recorder.onEntry({});
    QVERIFY(!atTheLine);
    QCOMPARE(manager.getProxyAction(A), &action);
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&manager) + QLatin1String(" register proxy action \"A\" ")
            + printAction(&action) + QLatin1Char(' '))));
    QVERIFY(!manager.getProxyAction(QStringLiteral("a")));
    QVERIFY(recorder.isEmpty());
}

void ProxyActionManagerTest::takenIdentifierIsRefused()
{
    ProxyActionManager manager;
    ProxyAction first;
    ProxyAction second;
    manager.registerProxyAction(&first, A);
    manager.setCurrentContext({E});
    second.setCurrentContext({B});
    Recorder recorder;
    manager.registerProxyAction(&second, A);
    QCOMPARE(recorder.take(),
        QStringList(critical(print(&manager) + QLatin1String(" register proxy action \"A\" ")
            + printAction(&second) + QLatin1String(" duplicated ID"))));
    QCOMPARE(manager.getProxyAction(A), &first);
    QCOMPARE(second.currentContext(), QStringList(B));
}

void ProxyActionManagerTest::registeredActionGetsTheContexts()
{
    ProxyActionManager manager;
    manager.setCurrentContext({E});
    QAction backend;
    ProxyAction action;
    action.addBackendAction(&backend, E);
    action.setCurrentContext({B});
    manager.registerProxyAction(&action, A);
    QCOMPARE(action.currentContext(), QStringList(E));
    QCOMPARE(action.currentActiveBackendAction(), &backend);
}

void ProxyActionManagerTest::registeredActionLosesItsContexts()
{
    ProxyActionManager manager;
    ProxyAction action;
    action.setCurrentContext({B});
    manager.registerProxyAction(&action, A);
    QVERIFY(action.currentContext().isEmpty());
}

void ProxyActionManagerTest::actionIsStoredBeforeItGetsTheContexts()
{
    ProxyActionManager manager;
    manager.setCurrentContext({E});
    QAction backend(QStringLiteral("text"), nullptr);
    ProxyAction action;
    action.addBackendAction(&backend, E);
    const ProxyAction* registered = nullptr;
    connect(&action, &QAction::changed, this, [&] { registered = manager.getProxyAction(A); });
    manager.registerProxyAction(&action, A);
    QCOMPARE(registered, &action);
}

void ProxyActionManagerTest::contextsReachActionsInOrderOfIdentifiers()
{
    ProxyActionManager manager;
    ProxyAction b;
    ProxyAction a;
    ProxyAction lower;
    manager.registerProxyAction(&lower, QStringLiteral("a"));
    manager.registerProxyAction(&b, B);
    manager.registerProxyAction(&a, A);
    Recorder recorder;
    manager.setCurrentContext({E});
    QCOMPARE(recorder.take(),
        QStringList({trace(QStringLiteral("set context and update for all proxy actions ")),
            line(a), line(b), line(lower)}));
}

void ProxyActionManagerTest::sameContextsDoNothing()
{
    ProxyActionManager manager;
    ProxyAction action;
    manager.registerProxyAction(&action, A);
    Recorder recorder;
    manager.setCurrentContext({});
    QVERIFY(recorder.isEmpty());
    manager.setCurrentContext({A, B});
    QCOMPARE(recorder.take().size(), 2);
    action.setCurrentContext({E});
    recorder.clear();
    manager.setCurrentContext({A, B});
    QVERIFY(recorder.isEmpty());
    QCOMPARE(action.currentContext(), QStringList(E));
    manager.setCurrentContext({B, A});
    QCOMPARE(recorder.take().size(), 2);
}

void ProxyActionManagerTest::contextsAreTracedBeforeTheyAreStored()
{
    ProxyActionManager manager;
    manager.setCurrentContext({E});
    ProxyAction registered;
    QStringList atTheLine;
    Recorder recorder;
    recorder.onEntry([&](const Entry&) {
        if (manager.getProxyAction(A))
            return;
        manager.registerProxyAction(&registered, A);
        atTheLine = registered.currentContext();
    });
    manager.setCurrentContext({B});
    recorder.onEntry({});
    QCOMPARE(atTheLine, QStringList(E));
    QCOMPARE(registered.currentContext(), QStringList(B));
}

void ProxyActionManagerTest::contextsAreStoredBeforeTheyAreHandedOn()
{
    ProxyActionManager manager;
    QAction backend;
    ProxyAction action;
    ProxyAction late;
    action.addBackendAction(&backend, E);
    manager.registerProxyAction(&action, A);
    connect(&action, &QAction::changed, this, [&] {
        if (!manager.getProxyAction(B))
            manager.registerProxyAction(&late, B);
    });
    manager.setCurrentContext({E});
    QCOMPARE(late.currentContext(), QStringList(E));
}

void ProxyActionManagerTest::actionRegisteredMeanwhileIsReachedOnce_data()
{
    QTest::addColumn<QString>("id");
    QTest::newRow("before the one that is told") << A;
    QTest::newRow("behind it") << QStringLiteral("D");
}

void ProxyActionManagerTest::actionRegisteredMeanwhileIsReachedOnce()
{
    QFETCH(QString, id);
    ProxyActionManager manager;
    QAction backend;
    ProxyAction told;
    ProxyAction last;
    ProxyAction late;
    told.addBackendAction(&backend, E);
    manager.registerProxyAction(&told, B);
    manager.registerProxyAction(&last, E);
    connect(&told, &QAction::changed, this, [&] {
        if (!manager.getProxyAction(id))
            manager.registerProxyAction(&late, id);
    });
    Recorder recorder;
    manager.setCurrentContext({E});
    const QStringList lines = recorder.take();
    QCOMPARE(lines.count(line(late)), 1);
    QCOMPARE(lines.last(), line(last));
    QCOMPARE(manager.getProxyAction(id), &late);
}

void ProxyActionManagerTest::walkReachesWhatIsRegisteredBehindIt_data()
{
    QTest::addColumn<QString>("id");
    QTest::addColumn<QStringList>("contexts");
    QTest::newRow("before the one that is told") << A << QStringList();
    QTest::newRow("behind it") << QStringLiteral("D") << QStringList(E);
}

void ProxyActionManagerTest::walkReachesWhatIsRegisteredBehindIt()
{
    QFETCH(QString, id);
    QFETCH(QStringList, contexts);
    ProxyActionManager manager;
    QAction backend;
    ProxyAction told;
    ProxyAction late;
    told.addBackendAction(&backend, E);
    manager.registerProxyAction(&told, B);
    connect(&told, &QAction::changed, this, [&] {
        if (manager.getProxyAction(id))
            return;
        manager.registerProxyAction(&late, id);
        late.setCurrentContext({});
    });
    manager.setCurrentContext({E});
    QCOMPARE(manager.getProxyAction(id), &late);
    QCOMPARE(late.currentContext(), contexts);
}

void ProxyActionManagerTest::listSetWhileAnotherOneIsHandedOnHolds()
{
    ProxyActionManager manager;
    QAction backend;
    ProxyAction told;
    ProxyAction next;
    ProxyAction late;
    told.addBackendAction(&backend, E);
    manager.registerProxyAction(&told, A);
    manager.registerProxyAction(&next, B);
    connect(&told, &QAction::changed, this, [&] { manager.setCurrentContext({B}); });
    manager.setCurrentContext({E});
    manager.registerProxyAction(&late, E);
    for (const ProxyAction* action : {&told, &next, &late})
        QCOMPARE(action->currentContext(), QStringList(B));
}

void ProxyActionManagerTest::managerMayBeDeletedByAnActionThatIsRegistered()
{
    const QPointer<ProxyActionManager> manager = new ProxyActionManager;
    manager->setCurrentContext({E});
    QAction backend;
    ProxyAction action;
    action.addBackendAction(&backend, E);
    connect(&action, &QAction::changed, this, [&] { delete manager; });
    manager->registerProxyAction(&action, A);
    QVERIFY(!manager);
    QCOMPARE(action.currentActiveBackendAction(), &backend);
    QCOMPARE(action.currentContext(), QStringList(E));
}

void ProxyActionManagerTest::managerMayBeDeletedWhileItHandsOn()
{
    auto* const manager = new ProxyActionManager;
    QAction backend;
    ProxyAction deletes;
    ProxyAction isLeftOut;
    deletes.addBackendAction(&backend, E);
    manager->registerProxyAction(&deletes, A);
    manager->registerProxyAction(&isLeftOut, B);
    const QPointer<ProxyActionManager> watched(manager);
    connect(&deletes, &QAction::changed, this, [&] { delete watched; });
    manager->setCurrentContext({E});
    QVERIFY(!watched);
    QCOMPARE(deletes.currentActiveBackendAction(), &backend);
    QVERIFY(isLeftOut.currentContext().isEmpty());
}

void ProxyActionManagerTest::actionsOutliveTheManager()
{
    ProxyAction action;
    {
        ProxyActionManager manager;
        manager.registerProxyAction(&action, A);
    }
    action.setText(QStringLiteral("alive"));
    QCOMPARE(action.text(), QStringLiteral("alive"));
}

QTEST_MAIN(ProxyActionManagerTest)
#include "tst_proxy_action_mgr.moc"
