// SPDX-License-Identifier: MIT
#include "proxy_act.h"

#include "recorder.h"

#include <QHash>
#include <QMenu>
#include <QMetaMethod>
#include <QPixmap>
#include <QPointer>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <iterator>
#include <memory>
#include <utility>

using namespace Support;
using Zentu::ProxyAction;

namespace {

const QString A = QStringLiteral("A");
const QString B = QStringLiteral("B");
const QString X = QStringLiteral("X");

QIcon icon(const QColor& color)
{
    QPixmap pixmap(4, 4);
    pixmap.fill(color);
    return QIcon(pixmap);
}

/// An action that tells how it is connected.
class Backend : public QAction
{
public:
    explicit Backend(QStringList* log = nullptr)
        : QAction(nullptr)
        , m_log(log)
    {
    }

protected:
    void connectNotify(const QMetaMethod& signal) override { note("connect ", signal); }
    void disconnectNotify(const QMetaMethod& signal) override { note("disconnect ", signal); }

private:
    void note(const char* what, const QMetaMethod& signal)
    {
        if (m_log)
            m_log->append(QLatin1String(what) + QString::fromLatin1(signal.methodSignature()));
    }

    QStringList* m_log;
};

/// A proxy that tells how it is connected.
class Proxy : public ProxyAction
{
public:
    explicit Proxy(QStringList* log)
        : m_log(log)
    {
    }

protected:
    void connectNotify(const QMetaMethod& signal) override
    {
        m_log->append(
            QLatin1String("proxy connect ") + QString::fromLatin1(signal.methodSignature()));
    }
    void disconnectNotify(const QMetaMethod& signal) override
    {
        m_log->append(
            QLatin1String("proxy disconnect ") + QString::fromLatin1(signal.methodSignature()));
    }

private:
    QStringList* m_log;
};

/// An action that tells of its own connections.
class Telling : public QAction
{
public:
    using Tell = std::function<void(const char* what, const QAction* action)>;

    explicit Telling(const Tell& tell)
        : QAction(nullptr)
        , m_tell(tell)
    {
    }

protected:
    void connectNotify(const QMetaMethod& signal) override { note("connect", signal); }
    void disconnectNotify(const QMetaMethod& signal) override { note("disconnect", signal); }

private:
    void note(const char* what, const QMetaMethod& signal)
    {
        if (signal.name() == "destroyed" || signal.name() == "changed")
            m_tell(what, this);
    }

    Tell m_tell;
};

/// An action whose class has declared signals anew.
class Shadow : public QAction
{
    Q_OBJECT

public:
    Shadow()
        : QAction(nullptr)
    {
    }

Q_SIGNALS:
    void changed();
    void destroyed(QObject* object);
};

/// A proxy whose class has declared a slot anew.
class ShadowProxy : public ProxyAction
{
    Q_OBJECT

public:
    int calls = 0;

public Q_SLOTS:
    void onBackendActionDestroyed(QObject* /*object*/) { ++calls; }
};

QString print(const QAction* action)
{
    return printed(action);
}

QString setContextLine(const QString& proxy, const QStringList& contexts)
{
    return proxy + QLatin1String(" set context ") + quoted(contexts) + QLatin1Char(' ');
}

// How often an action has emitted each of its signals.
struct Counts
{
    explicit Counts(QAction* action)
        : changed(action, &QAction::changed)
        , triggered(action, &QAction::triggered)
        , toggled(action, &QAction::toggled)
        , hovered(action, &QAction::hovered)
    {
    }

    QList<qsizetype> take()
    {
        const QList<qsizetype> result = {
            changed.count(), triggered.count(), toggled.count(), hovered.count()};
        for (QSignalSpy* spy : {&changed, &triggered, &toggled, &hovered})
            spy->clear();
        return result;
    }

    QSignalSpy changed;
    QSignalSpy triggered;
    QSignalSpy toggled;
    QSignalSpy hovered;
};

} // namespace

class ProxyActionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasTwoPrivateSlotsAndNothingElse();
    void startsDisabledWithTheDefaultLook();
    void followsTheDefaultAction();
    void firstContextWithABackendWins_data();
    void firstContextWithABackendWins();
    void copiesElevenProperties_data();
    void copiesElevenProperties();
    void copiesTheFirstShortcutOnly();
    void copiesNothingElse();
    void defaultActionsEnabledStateNeverCounts();
    void followsTheActiveBackendOnly();
    void registrationIsTracedFirst();
    void secondBackendOfAContextIsRefused();
    void refusedRegistrationStillSelects();
    void registrationForACurrentContextSwitches();
    void contextListIsTracedThenStored();
    void sameContextListDoesNothing();
    void listThatIsBeingSetIsTheSame();
    void sameBackendIsNotSwitchedTo();
    void switchIsTracedBeforeItHappens();
    void checkedStateEndsWithCheckability();
    void backendThatCannotBeCheckedForAWhileIsFollowed();
    void newerSignalsTellOfTheCopy();
    void switchDisconnectsCopiesAndConnects();
    void nothingEchoesInASwitch();
    void triggeringReachesTheBackendAlone();
    void programTriggersADisabledProxyInQt5Alone();
    void backendsCheckedStateComesBackAtTheNextCopy();
    void directToggleReachesListenersTwice();
    void hoverIsForwarded();
    void removalByActionSwitches();
    void removalOfAnUnknownActionIsRefused();
    void removalLeavesOtherRegistrationsUnwatched();
    void removalTakesTheFirstContextOfAnAction();
    void removalByContextReturnsTheAction();
    void removalOfAnUnknownContextReturnsNull();
    void dyingBackendIsDroppedWithoutADisconnect();
    void derivedSlotsCount();
    void dyingBackendOfTwoContextsIsDroppedTwice();
    void innermostOfNestedSwitchesHolds_data();
    void innermostOfNestedSwitchesHolds();
    void switchOvertakenWhileItDisconnectsConnectsNothing();
    void switchOvertakenThereAndBackDisconnectsNothingMore();
    void switchOvertakenWhileItConnectsConnectsNothingMore();
    void backendThatDiesBeforeItIsActiveIsPassedOver();
    void proxyMayGoAtEachChange();
    void backendThatDiesWhenItIsRemovedIsNotDisconnected_data();
    void backendThatDiesWhenItIsRemovedIsNotDisconnected();
    void changeOfAnInactiveBackendSwitchesNothing_data();
    void changeOfAnInactiveBackendSwitchesNothing();
    void dyingBackendCanBeRemoved_data();
    void dyingBackendCanBeRemoved();
    void dyingBackendIsNotSelected();
    void dyingBackendIsNotMirrored();
    void destructionOfAStrangerIsTracedOnly();
    void registrationsChangeBeforeConnections();
    void propertiesAreCopiedInOrder();
    void enabledIsCopiedBeforeVisible();
    void derivedSignalsAndSlotsCount();
    void dyingInactiveBackendChangesNothing();
    void nullBackendIsStoredAndNeverSelected();
    void connectionsAreThoseOfTheSignatures();
    void backendsOutliveTheProxy();
    void queriesAreCopies();
};

void ProxyActionTest::hasTwoPrivateSlotsAndNothingElse()
{
    const QMetaObject& meta = ProxyAction::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::ProxyAction");
    QCOMPARE(meta.superClass(), &QAction::staticMetaObject);
    QStringList slots_;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Private);
        slots_.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(slots_,
        QStringList({QStringLiteral("onBackendActionDestroyed(QObject*)"),
            QStringLiteral("updateProxyProperties()")}));
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(ProxyAction), sizeof(QAction) + sizeof(void*));
}

void ProxyActionTest::startsDisabledWithTheDefaultLook()
{
    Recorder recorder;
    QObject parent;
    const auto* proxy = new ProxyAction(&parent);
    QCOMPARE(proxy->parent(), &parent);
    QVERIFY(!proxy->isEnabled());
    QVERIFY(proxy->isVisible());
    QVERIFY(proxy->text().isEmpty());
    QVERIFY(proxy->currentContext().isEmpty());
    QVERIFY(!proxy->currentActiveBackendAction());
    QVERIFY(!proxy->getBackendAction(A));
    QVERIFY(proxy->defaultProp());
    QCOMPARE(proxy->defaultProp()->parent(), proxy);
    QVERIFY(!proxy->defaultProp()->isEnabled());
    QVERIFY(recorder.isEmpty());
}

void ProxyActionTest::followsTheDefaultAction()
{
    ProxyAction proxy;
    proxy.defaultProp()->setText(QStringLiteral("default"));
    QCOMPARE(proxy.text(), QStringLiteral("default"));
    proxy.defaultProp()->setVisible(false);
    QVERIFY(!proxy.isVisible());
    proxy.defaultProp()->setVisible(true);
    proxy.defaultProp()->setCheckable(true);
    proxy.defaultProp()->setChecked(true);
    QVERIFY(proxy.isVisible() && proxy.isCheckable() && proxy.isChecked());
    QVERIFY(!proxy.isEnabled());
}

void ProxyActionTest::firstContextWithABackendWins_data()
{
    QTest::addColumn<QStringList>("contexts");
    QTest::addColumn<QString>("active");
    QTest::newRow("first") << QStringList({B, A}) << B;
    QTest::newRow("other order") << QStringList({A, B}) << A;
    QTest::newRow("unknown first") << QStringList({X, A}) << A;
    QTest::newRow("unknown alone") << QStringList(X) << QString();
    QTest::newRow("none") << QStringList() << QString();
    QTest::newRow("case counts") << QStringList(QStringLiteral("a")) << QString();
    QTest::newRow("null registered") << QStringList({QStringLiteral("null"), B}) << B;
}

void ProxyActionTest::firstContextWithABackendWins()
{
    QFETCH(QStringList, contexts);
    QFETCH(QString, active);
    QAction a(A);
    QAction b(B);
    ProxyAction proxy;
    proxy.defaultProp()->setText(QStringLiteral("default"));
    Recorder recorder;
    proxy.addBackendAction(nullptr, QStringLiteral("null"));
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext(contexts);
    QCOMPARE(proxy.currentContext(), contexts);
    QCOMPARE(proxy.currentActiveBackendAction(),
        active.isEmpty()  ? nullptr
            : active == A ? &a
                          : &b);
    QCOMPARE(proxy.text(), active.isEmpty() ? QStringLiteral("default") : active);
    QCOMPARE(proxy.isEnabled(), !active.isEmpty());
    QCOMPARE(proxy.getBackendAction(A), &a);
}

void ProxyActionTest::copiesElevenProperties_data()
{
    QTest::addColumn<bool>("hasBackend");
    QTest::addColumn<bool>("backendIsSet");
    QTest::addColumn<bool>("defaultIsSet");
    for (const bool backend : {false, true}) {
        for (const bool set : {false, true}) {
            for (const bool fallback : {false, true})
                QTest::addRow("%s, %s, default %s", backend ? "backend" : "no backend",
                    set ? "set" : "empty", fallback ? "set" : "empty")
                    << backend << set << fallback;
        }
    }
}

void ProxyActionTest::copiesElevenProperties()
{
    QFETCH(bool, hasBackend);
    QFETCH(bool, backendIsSet);
    QFETCH(bool, defaultIsSet);
    const auto set = [](QAction* action, const QString& prefix, const QColor& color) {
        action->setText(prefix + QLatin1String("text"));
        action->setIcon(icon(color));
        action->setIconText(prefix + QLatin1String("iconText"));
        action->setShortcut(color == Qt::red ? Qt::Key_F1 : Qt::Key_F2);
        action->setToolTip(prefix + QLatin1String("toolTip"));
        action->setStatusTip(prefix + QLatin1String("statusTip"));
        action->setWhatsThis(prefix + QLatin1String("whatsThis"));
        action->setVisible(false);
        action->setCheckable(true);
        action->setChecked(true);
    };
    QAction backend;
    ProxyAction proxy;
    QAction* const fallback = proxy.defaultProp();
    if (backendIsSet)
        set(&backend, QStringLiteral("backend "), Qt::red);
    if (defaultIsSet)
        set(fallback, QStringLiteral("default "), Qt::blue);
    if (hasBackend) {
        proxy.addBackendAction(&backend, A);
        proxy.setCurrentContext({A});
    }

    const QAction* const state = hasBackend ? &backend : fallback;
    const QAction* const look = hasBackend && backendIsSet ? &backend : fallback;
    // Qt counts an action that cannot be seen as disabled.
    QCOMPARE(proxy.isEnabled(), hasBackend && !backendIsSet);
    QCOMPARE(proxy.isVisible(), state->isVisible());
    QCOMPARE(proxy.isCheckable(), state->isCheckable());
    QCOMPARE(proxy.isChecked(), state->isChecked());
    QCOMPARE(proxy.text(), look->text());
    QCOMPARE(proxy.icon().cacheKey(), look->icon().cacheKey());
    QCOMPARE(proxy.iconText(), look->iconText());
    QCOMPARE(proxy.shortcut(), look->shortcut());
    QCOMPARE(proxy.toolTip(), look->toolTip());
    QCOMPARE(proxy.statusTip(), look->statusTip());
    QCOMPARE(proxy.whatsThis(), look->whatsThis());
}

void ProxyActionTest::copiesTheFirstShortcutOnly()
{
    const QKeySequence first(Qt::Key_F1);
    const QKeySequence second(Qt::Key_F2);
    QAction a;
    a.setShortcuts({first, second});
    ProxyAction proxy;
    proxy.defaultProp()->setShortcuts({second, first});
    QCOMPARE(proxy.shortcuts(), QList<QKeySequence>({second}));
    proxy.addBackendAction(&a, A);
    proxy.setCurrentContext({A});
    QCOMPARE(proxy.shortcuts(), QList<QKeySequence>({first}));
    // One that is empty counts as none, whatever stands behind it.
    a.setShortcuts({QKeySequence(), first});
    QCOMPARE(proxy.shortcuts(), QList<QKeySequence>({second}));
}

void ProxyActionTest::copiesNothingElse()
{
    QMenu menu;
    QAction backend;
    QFont font;
    font.setPointSize(40);
    backend.setFont(font);
    backend.setMenu(&menu);
    backend.setMenuRole(QAction::QuitRole);
    backend.setPriority(QAction::HighPriority);
    backend.setShortcutContext(Qt::ApplicationShortcut);
    backend.setAutoRepeat(false);
    backend.setData(12);
    const QAction plain;
    ProxyAction proxy;
    proxy.addBackendAction(&backend, A);
    proxy.setCurrentContext({A});
    QCOMPARE(proxy.font(), plain.font());
    QVERIFY(!proxy.menu());
    QCOMPARE(proxy.menuRole(), plain.menuRole());
    QCOMPARE(proxy.priority(), plain.priority());
    QCOMPARE(proxy.shortcutContext(), plain.shortcutContext());
    QVERIFY(proxy.autoRepeat());
    QVERIFY(!proxy.data().isValid());
}

void ProxyActionTest::defaultActionsEnabledStateNeverCounts()
{
    QAction backend;
    ProxyAction proxy;
    proxy.defaultProp()->setEnabled(true);
    QVERIFY(!proxy.isEnabled());
    proxy.addBackendAction(&backend, A);
    proxy.setCurrentContext({A});
    QVERIFY(proxy.isEnabled());
    proxy.defaultProp()->setEnabled(false);
    QVERIFY(proxy.isEnabled());
    backend.setEnabled(false);
    proxy.defaultProp()->setEnabled(true);
    QVERIFY(!proxy.isEnabled());
}

void ProxyActionTest::followsTheActiveBackendOnly()
{
    QAction a;
    QAction b;
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A});
    proxy.defaultProp()->setText(QStringLiteral("default"));
    QCOMPARE(proxy.text(), QStringLiteral("default"));
    a.setEnabled(false);
    QVERIFY(!proxy.isEnabled());
    a.setText(QStringLiteral("a"));
    QCOMPARE(proxy.text(), QStringLiteral("a"));
    b.setText(QStringLiteral("b"));
    b.setEnabled(false);
    QCOMPARE(proxy.text(), QStringLiteral("a"));
    proxy.setCurrentContext({B});
    a.setText(QStringLiteral("other"));
    a.setEnabled(true);
    QCOMPARE(proxy.text(), QStringLiteral("b"));
    QVERIFY(!proxy.isEnabled());
}

void ProxyActionTest::registrationIsTracedFirst()
{
    QAction action;
    ProxyAction proxy;
    Recorder recorder;
    const QAction* atTheLine = &action;
    recorder.onEntry([&](const Entry&) { atTheLine = proxy.getBackendAction(A); });
    proxy.addBackendAction(&action, A);
    recorder.onEntry({});
    QVERIFY(!atTheLine);
    QCOMPARE(proxy.getBackendAction(A), &action);
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&proxy) + QLatin1String(" add backend action \"A\" ")
            + print(&action) + QLatin1Char(' '))));
}

void ProxyActionTest::secondBackendOfAContextIsRefused()
{
    QAction first;
    QStringList log;
    Backend second(&log);
    ProxyAction proxy;
    proxy.addBackendAction(&first, A);
    Recorder recorder;
    proxy.addBackendAction(&second, A);
    QCOMPARE(recorder.take(),
        QStringList(warning(print(&proxy)
            + QLatin1String(" duplicated backend action register \"A\" ") + print(&second))));
    QCOMPARE(proxy.getBackendAction(A), &first);
    QVERIFY(log.isEmpty());
}

// The context list may name a context whose null backend gave way to none; the last step of a
// registration runs also when it was refused, and changes nothing.
void ProxyActionTest::refusedRegistrationStillSelects()
{
    QAction first;
    QAction second;
    ProxyAction proxy;
    proxy.setCurrentContext({A});
    proxy.addBackendAction(&first, A);
    QCOMPARE(proxy.currentActiveBackendAction(), &first);
    Recorder recorder;
    proxy.addBackendAction(&second, A);
    QCOMPARE(recorder.take().size(), 1);
    QCOMPARE(proxy.currentActiveBackendAction(), &first);
}

void ProxyActionTest::registrationForACurrentContextSwitches()
{
    QAction a(QStringLiteral("a"));
    QAction b(QStringLiteral("b"));
    ProxyAction proxy;
    proxy.setCurrentContext({B, A});
    Recorder recorder;
    proxy.addBackendAction(&a, A);
    QCOMPARE(proxy.currentActiveBackendAction(), &a);
    const QStringList lines = recorder.take();
    QCOMPARE(lines.size(), 2);
    QVERIFY(lines.at(1).contains(QLatin1String(" change active backend action to ") + print(&a)));
    proxy.addBackendAction(&b, B);
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
    recorder.clear();
    QAction x;
    proxy.addBackendAction(&x, X);
    QCOMPARE(recorder.take().size(), 1);
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
}

void ProxyActionTest::contextListIsTracedThenStored()
{
    ProxyAction proxy;
    proxy.setCurrentContext({X});
    Recorder recorder;
    QStringList atTheLine;
    recorder.onEntry([&](const Entry&) { atTheLine = proxy.currentContext(); });
    proxy.setCurrentContext({B, A});
    recorder.onEntry({});
    QCOMPARE(atTheLine, QStringList(X));
    QCOMPARE(proxy.currentContext(), QStringList({B, A}));
    QCOMPARE(recorder.take(), QStringList(trace(setContextLine(print(&proxy), {B, A}))));
    proxy.setCurrentContext({});
    QCOMPARE(recorder.take(), QStringList(trace(setContextLine(print(&proxy), {}))));
}

void ProxyActionTest::sameContextListDoesNothing()
{
    QAction a;
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    Recorder recorder;
    proxy.setCurrentContext({});
    QVERIFY(recorder.isEmpty());
    proxy.setCurrentContext({A, B});
    QCOMPARE(recorder.take().size(), 2);
    proxy.setCurrentContext({A, B});
    QVERIFY(recorder.isEmpty());
    proxy.setCurrentContext({B, A});
    QCOMPARE(recorder.take().size(), 1);
}

void ProxyActionTest::listThatIsBeingSetIsTheSame()
{
    QAction a(QStringLiteral("a"));
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    int changes = 0;
    connect(&proxy, &QAction::changed, this, [&] {
        ++changes;
        proxy.setCurrentContext({A});
    });
    Recorder recorder;
    proxy.setCurrentContext({A});
    QVERIFY(changes > 0);
    QCOMPARE(recorder.take().filter(QStringLiteral("set context")).size(), 1);
}

void ProxyActionTest::sameBackendIsNotSwitchedTo()
{
    QStringList log;
    Backend a(&log);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&a, B);
    proxy.setCurrentContext({A});
    log.clear();
    Counts counts(&proxy);
    Recorder recorder;
    proxy.setCurrentContext({B});
    QCOMPARE(recorder.take().size(), 1);
    QCOMPARE(log, QStringList());
    QCOMPARE(counts.take(), QList<qsizetype>({0, 0, 0, 0}));
}

void ProxyActionTest::switchIsTracedBeforeItHappens()
{
    QAction a(QStringLiteral("a"));
    ProxyAction proxy;
    proxy.defaultProp()->setText(QStringLiteral("default"));
    proxy.addBackendAction(&a, A);
    Recorder recorder;
    QList<QAction*> atTheLines;
    recorder.onEntry([&](const Entry&) { atTheLines.append(proxy.currentActiveBackendAction()); });
    const QString before = print(&proxy);
    proxy.setCurrentContext({A});
    QCOMPARE(recorder.take(),
        QStringList({trace(setContextLine(before, {A})),
            trace(before + QLatin1String(" change active backend action to ") + print(&a)
                + QLatin1Char(' '))}));
    const QString active = print(&proxy);
    QVERIFY(active.contains(QLatin1String("text=\"a\"")));
    proxy.setCurrentContext({X});
    recorder.onEntry({});
    QCOMPARE(recorder.take(),
        QStringList({trace(setContextLine(active, {X})),
            trace(active + QLatin1String(" change active backend action to QAction(0x00) "))}));
    QCOMPARE(atTheLines, QList<QAction*>({nullptr, nullptr, &a, &a}));
}

void ProxyActionTest::checkedStateEndsWithCheckability()
{
    QAction a;
    a.setCheckable(true);
    a.setChecked(true);
    QAction b;
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A});
    QVERIFY(proxy.isChecked());
    QSignalSpy toggled(&proxy, &QAction::toggled);
    proxy.setCurrentContext({B});
    QVERIFY(!proxy.isCheckable() && !proxy.isChecked());
    // Qt 5 keeps to itself that what can no longer be checked is not.
    QCOMPARE(toggled.count(), QT_VERSION_MAJOR == 5 ? 0 : 1);
    toggled.clear();
    proxy.setCurrentContext({A});
    QVERIFY(proxy.isCheckable() && proxy.isChecked());
    QCOMPARE(toggled.count(), 1);
}

void ProxyActionTest::backendThatCannotBeCheckedForAWhileIsFollowed()
{
    QAction a;
    a.setCheckable(true);
    a.setChecked(true);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.setCurrentContext({A});
    QVERIFY(proxy.isChecked());
    const QSignalSpy ofBackend(&a, &QAction::toggled);
    const QSignalSpy ofProxy(&proxy, &QAction::toggled);

    // Qt 6 remembers that it was checked, and tells both times; the second signal of the backend is
    // that of the proxy, which it is connected to.
    a.setCheckable(false);
    QVERIFY(!a.isChecked() && !proxy.isCheckable() && !proxy.isChecked());
    QCOMPARE(ofBackend.count(), QT_VERSION_MAJOR == 5 ? 0 : 2);
    QCOMPARE(ofProxy.count(), QT_VERSION_MAJOR == 5 ? 0 : 1);
    a.setCheckable(true);
    QVERIFY(proxy.isCheckable());
    QCOMPARE(a.isChecked(), QT_VERSION_MAJOR != 5);
    QCOMPARE(proxy.isChecked(), QT_VERSION_MAJOR != 5);
    QCOMPARE(ofBackend.count(), QT_VERSION_MAJOR == 5 ? 0 : 4);
    QCOMPARE(ofProxy.count(), QT_VERSION_MAJOR == 5 ? 0 : 2);
}

void ProxyActionTest::newerSignalsTellOfTheCopy()
{
    if (QT_VERSION_MAJOR == 5)
        QSKIP("An action of Qt 5 has no such signals");
    QAction a;
    a.setCheckable(true);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    QSignalSpy enabled(&proxy, SIGNAL(enabledChanged(bool)));
    QSignalSpy checkable(&proxy, SIGNAL(checkableChanged(bool)));
    QSignalSpy visible(&proxy, SIGNAL(visibleChanged()));
    proxy.setCurrentContext({A});
    QCOMPARE(enabled.count(), 1);
    QCOMPARE(checkable.count(), 1);
    QCOMPARE(visible.count(), 0);
    a.setVisible(false);
    QCOMPARE(visible.count(), 1);
}

void ProxyActionTest::switchDisconnectsCopiesAndConnects()
{
    QStringList log;
    Backend a(&log);
    Backend b(&log);
    a.setText(QStringLiteral("a"));
    b.setText(QStringLiteral("b"));
    Proxy proxy(&log);
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A});
    log.clear();
    connect(&proxy, &QAction::changed, &proxy, [&] {
        if (proxy.text() == QLatin1String("b") && !log.contains(QLatin1String("copy")))
            log.append(QStringLiteral("copy"));
    });
    log.clear();
    proxy.setCurrentContext({B});
    QCOMPARE(log,
        QStringList({QStringLiteral("disconnect changed()"),
            QStringLiteral("proxy disconnect triggered(bool)"),
            QStringLiteral("proxy disconnect toggled(bool)"),
            QStringLiteral("proxy disconnect hovered()"), QStringLiteral("copy"),
            QStringLiteral("connect changed()"), QStringLiteral("proxy connect triggered(bool)"),
            QStringLiteral("proxy connect toggled(bool)"),
            QStringLiteral("proxy connect hovered()")}));
}

void ProxyActionTest::nothingEchoesInASwitch()
{
    QAction a;
    QAction b;
    for (QAction* action : {&a, &b})
        action->setCheckable(true);
    a.setChecked(true);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A});
    Counts ofProxy(&proxy);
    Counts ofA(&a);
    Counts ofB(&b);
    QVERIFY(proxy.isChecked());
    proxy.setCurrentContext({B});
    QVERIFY(!proxy.isChecked());
    const QList<qsizetype> proxyCounts = ofProxy.take();
    QCOMPARE(proxyCounts.mid(1), QList<qsizetype>({0, 1, 0}));
    QCOMPARE(ofA.take(), QList<qsizetype>({0, 0, 0, 0}));
    QCOMPARE(ofB.take(), QList<qsizetype>({0, 0, 0, 0}));
    proxy.setCurrentContext({A});
    QCOMPARE(ofA.take(), QList<qsizetype>({0, 0, 0, 0}));
    QCOMPARE(ofB.take(), QList<qsizetype>({0, 0, 0, 0}));
    QVERIFY(proxy.isChecked());
}

void ProxyActionTest::triggeringReachesTheBackendAlone()
{
    QAction a;
    QAction b;
    for (QAction* action : {&a, &b})
        action->setCheckable(true);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A});
    Counts ofA(&a);
    Counts ofB(&b);
    QSignalSpy triggered(&a, &QAction::triggered);
    QSignalSpy toggled(&a, &QAction::toggled);
    proxy.trigger();
    QVERIFY(proxy.isChecked());
    QVERIFY(!a.isChecked());
    QCOMPARE(ofA.take(), QList<qsizetype>({0, 1, 1, 0}));
    QCOMPARE(ofB.take(), QList<qsizetype>({0, 0, 0, 0}));
    QCOMPARE(triggered.takeFirst(), QVariantList{true});
    QCOMPARE(toggled.takeFirst(), QVariantList{true});

    proxy.setCurrentContext({B});
    proxy.trigger();
    QCOMPARE(ofA.take(), QList<qsizetype>({0, 0, 0, 0}));
    QCOMPARE(ofB.take(), QList<qsizetype>({0, 1, 1, 0}));
    proxy.setCurrentContext({});
    ofA.take();
    proxy.setEnabled(true);
    proxy.trigger();
    QCOMPARE(ofA.take(), QList<qsizetype>({0, 0, 0, 0}));
    QCOMPARE(ofB.take(), QList<qsizetype>({0, 0, 0, 0}));
}

void ProxyActionTest::programTriggersADisabledProxyInQt5Alone()
{
    QAction a;
    a.setEnabled(false);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.setCurrentContext({A});
    QVERIFY(!proxy.isEnabled());
    const QSignalSpy triggered(&a, &QAction::triggered);
    proxy.trigger();
    QCOMPARE(triggered.count(), QT_VERSION_MAJOR == 5 ? 1 : 0);
}

void ProxyActionTest::backendsCheckedStateComesBackAtTheNextCopy()
{
    QAction a;
    a.setCheckable(true);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.setCurrentContext({A});
    proxy.trigger();
    QVERIFY(proxy.isChecked() && !a.isChecked());
    proxy.defaultProp()->setStatusTip(QStringLiteral("tip"));
    QVERIFY(!proxy.isChecked());
    proxy.trigger();
    QVERIFY(proxy.isChecked());
    a.setText(QStringLiteral("a"));
    QVERIFY(!proxy.isChecked());
}

void ProxyActionTest::directToggleReachesListenersTwice()
{
    QAction a;
    a.setCheckable(true);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.setCurrentContext({A});
    QSignalSpy toggled(&a, &QAction::toggled);
    a.setChecked(true);
    QCOMPARE(toggled.count(), 2);
    QCOMPARE(toggled.at(0), QVariantList{true});
    QCOMPARE(toggled.at(1), QVariantList{true});
    QVERIFY(proxy.isChecked());
}

void ProxyActionTest::hoverIsForwarded()
{
    QAction a;
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.setCurrentContext({A});
    Counts counts(&a);
    proxy.hover();
    QCOMPARE(counts.take(), QList<qsizetype>({0, 0, 0, 1}));
}

void ProxyActionTest::removalByActionSwitches()
{
    QStringList log;
    Backend a(&log);
    QAction b;
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A, B});
    log.clear();
    Recorder recorder;
    const QAction* atTheLine = nullptr;
    recorder.onEntry([&](const Entry&) {
        if (!atTheLine)
            atTheLine = proxy.getBackendAction(A);
    });
    const QString before = print(&proxy);
    proxy.removeBackendAction(&a);
    recorder.onEntry({});
    QCOMPARE(atTheLine, &a);
    QVERIFY(!proxy.getBackendAction(A));
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
    QCOMPARE(recorder.take(),
        QStringList({trace(before + QLatin1String(" remove backend action ") + print(&a)
                         + QLatin1Char(' ')),
            trace(before + QLatin1String(" change active backend action to ") + print(&b)
                + QLatin1Char(' '))}));
    QCOMPARE(log,
        QStringList({QStringLiteral("disconnect destroyed(QObject*)"),
            QStringLiteral("disconnect changed()")}));
    proxy.removeBackendAction(&b);
    QVERIFY(!proxy.currentActiveBackendAction());
    QVERIFY(!proxy.isEnabled());
}

void ProxyActionTest::removalOfAnUnknownActionIsRefused()
{
    QAction a;
    QStringList log;
    Backend unknown(&log);
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    Recorder recorder;
    proxy.removeBackendAction(&unknown);
    QCOMPARE(recorder.take(),
        QStringList(warning(print(&proxy) + QLatin1String(" remove backend action ")
            + print(&unknown) + QLatin1String(" not found"))));
    QVERIFY(log.isEmpty());
    QCOMPARE(proxy.getBackendAction(A), &a);
}

void ProxyActionTest::removalLeavesOtherRegistrationsUnwatched()
{
    auto action = std::make_unique<QAction>();
    ProxyAction proxy;
    proxy.addBackendAction(action.get(), A);
    proxy.addBackendAction(action.get(), B);
    proxy.removeBackendAction(action.get());
    const bool staysAtA = proxy.getBackendAction(A);
    QCOMPARE(static_cast<bool>(proxy.getBackendAction(B)), !staysAtA);
    Recorder recorder;
    action.reset();
    QVERIFY(recorder.isEmpty());
    QVERIFY(proxy.getBackendAction(staysAtA ? A : B));
}

// The order is that of the table, which differs from run to run: several names try both.
void ProxyActionTest::removalTakesTheFirstContextOfAnAction()
{
    QAction action;
    for (int i = 0; i < 16; ++i) {
        ProxyAction proxy;
        QHash<QString, QAction*> table;
        for (const char* const name : {"one %1", "two %1"}) {
            const QString context = QString::fromLatin1(name).arg(i);
            proxy.addBackendAction(&action, context);
            table.insert(context, &action);
        }
        proxy.removeBackendAction(&action);
        const auto first = table.constBegin();
        QVERIFY(!proxy.getBackendAction(first.key()));
        QCOMPARE(proxy.getBackendAction(std::next(first).key()), &action);
    }
}

void ProxyActionTest::removalByContextReturnsTheAction()
{
    QStringList log;
    Backend a(&log);
    QAction b;
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&a, X);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A, B});
    log.clear();
    Recorder recorder;
    QList<QAction*> atTheLines;
    recorder.onEntry([&](const Entry&) { atTheLines.append(proxy.getBackendAction(A)); });
    const QString before = print(&proxy);
    QCOMPARE(proxy.removeBackendContext(A), &a);
    QCOMPARE(atTheLines, QList<QAction*>({&a, nullptr}));
    recorder.onEntry({});
    QCOMPARE(recorder.take(),
        QStringList({trace(before + QLatin1String(" remove backend context \"A\" ") + print(&a)
                         + QLatin1Char(' ')),
            trace(before + QLatin1String(" change active backend action to ") + print(&b)
                + QLatin1Char(' '))}));
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
    QVERIFY(!proxy.getBackendAction(A));
    QCOMPARE(proxy.getBackendAction(X), &a);
    QVERIFY(log.startsWith(QStringLiteral("disconnect destroyed(QObject*)")));
    // The registration that stays is not watched any more.
    QVERIFY(!QObject::disconnect(
        &a, SIGNAL(destroyed(QObject*)), &proxy, SLOT(onBackendActionDestroyed(QObject*))));
    QCOMPARE(proxy.removeBackendContext(X), &a);
}

void ProxyActionTest::removalOfAnUnknownContextReturnsNull()
{
    ProxyAction proxy;
    Recorder recorder;
    QVERIFY(!proxy.removeBackendContext(A));
    QCOMPARE(recorder.take(),
        QStringList(
            warning(print(&proxy) + QLatin1String(" remove backend context \"A\" not found"))));
}

void ProxyActionTest::dyingBackendIsDroppedWithoutADisconnect()
{
    QStringList log;
    auto a = std::make_unique<QAction>(QStringLiteral("a"));
    QAction b(QStringLiteral("b"));
    Proxy proxy(&log);
    proxy.addBackendAction(a.get(), A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A, B});
    log.clear();
    const QString address = printed(static_cast<const void*>(a.get()));
    Recorder recorder;
    const QString before = print(&proxy);
    QAction* atTheFirstLine = nullptr;
    recorder.onEntry([&](const Entry&) {
        if (!atTheFirstLine)
            atTheFirstLine = proxy.getBackendAction(A);
    });
    a.reset();
    recorder.onEntry({});
    QVERIFY(atTheFirstLine);
    QVERIFY(!proxy.getBackendAction(A));
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
    QCOMPARE(recorder.take(),
        QStringList({trace(before + QLatin1String(" backend action destroyed QObject(") + address
                         + QLatin1String(") ")),
            trace(before + QLatin1String(" change active backend action to ") + print(&b)
                + QLatin1Char(' '))}));
    // Qt itself cuts the connections of the dead action, when the switch has made the new ones.
    QCOMPARE(log.mid(0, 3),
        QStringList({QStringLiteral("proxy connect triggered(bool)"),
            QStringLiteral("proxy connect toggled(bool)"),
            QStringLiteral("proxy connect hovered()")}));
}

void ProxyActionTest::innermostOfNestedSwitchesHolds_data()
{
    QTest::addColumn<bool>("atToggled");
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("active");
    for (const bool atToggled : {false, true}) {
        const char* const signal = atToggled ? "toggled" : "changed";
        const auto row = [=](const char* what, const char* active) {
            QTest::addRow("%s, %s", signal, what)
                << atToggled << QString::fromLatin1(what) << QString::fromLatin1(active);
        };
        row("to b", "b");
        row("to b and back", "a");
        row("to none", "");
        row("a removed", "b");
        row("a deleted", "b");
        row("all deleted", "");
    }
}

void ProxyActionTest::innermostOfNestedSwitchesHolds()
{
    QFETCH(bool, atToggled);
    QFETCH(QString, what);
    QFETCH(QString, active);
    QPointer<QAction> a = new QAction(QStringLiteral("a"), this);
    QPointer<QAction> b = new QAction(QStringLiteral("b"), this);
    const QList<QPointer<QAction>> backends = {a, b};
    for (QAction* action : backends)
        action->setCheckable(true);
    a->setChecked(true);
    QStringList emitted;
    for (QAction* action : backends) {
        connect(action, &QAction::triggered, this, [&, name = action->text()](bool checked) {
            emitted.append(name + QLatin1String(checked ? " on" : " off"));
        });
    }
    ProxyAction proxy;
    proxy.addBackendAction(a, A);
    proxy.addBackendAction(b, B);
    bool isFirst = true;
    const auto interfere = [&] {
        if (!std::exchange(isFirst, false))
            return;
        if (what.startsWith(QLatin1String("to b")))
            proxy.setCurrentContext({B});
        if (what.endsWith(QLatin1String("back")))
            proxy.setCurrentContext({A});
        if (what == QLatin1String("to none"))
            proxy.setCurrentContext({});
        if (what == QLatin1String("a removed"))
            proxy.removeBackendAction(a);
        if (what.endsWith(QLatin1String("deleted")))
            delete a;
        if (what.startsWith(QLatin1String("all")))
            delete b;
    };
    if (atToggled)
        connect(&proxy, &QAction::toggled, this, interfere);
    else
        connect(&proxy, &QAction::changed, this, interfere);
    proxy.setCurrentContext({A, B});
    QVERIFY(!isFirst);

    QAction* const expected = active == QLatin1String("a") ? a : active.isEmpty() ? nullptr : b;
    QCOMPARE(proxy.currentActiveBackendAction(), expected);
    QCOMPARE(proxy.text(), active);
    QCOMPARE(proxy.isEnabled(), expected != nullptr);
    if (expected) {
        QCOMPARE(proxy.isChecked(), expected->isChecked());
        proxy.trigger();
        QCOMPARE(emitted, QStringList(active + QLatin1String(proxy.isChecked() ? " on" : " off")));
        expected->setText(QStringLiteral("followed"));
        QCOMPARE(proxy.text(), expected->text());
    }
    for (QAction* action : {a.data(), b.data()}) {
        if (action && action != expected) {
            action->setText(QStringLiteral("not followed"));
            QVERIFY(proxy.text() != action->text());
        }
        delete action;
    }
}

void ProxyActionTest::switchOvertakenWhileItDisconnectsConnectsNothing()
{
    ProxyAction proxy;
    Telling a([&](const char* what, const QAction*) {
        if (QLatin1String(what) == QLatin1String("disconnect"))
            proxy.setCurrentContext({X});
    });
    QAction b;
    QAction x;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.addBackendAction(&x, X);
    proxy.setCurrentContext({A});
    proxy.setCurrentContext({B});
    QCOMPARE(proxy.currentActiveBackendAction(), &x);
    const QSignalSpy ofA(&a, &QAction::triggered);
    const QSignalSpy ofB(&b, &QAction::triggered);
    const QSignalSpy ofX(&x, &QAction::triggered);
    proxy.trigger();
    QCOMPARE(
        QList<qsizetype>({ofA.count(), ofB.count(), ofX.count()}), QList<qsizetype>({0, 0, 1}));
}

void ProxyActionTest::switchOvertakenThereAndBackDisconnectsNothingMore()
{
    ProxyAction proxy;
    bool isFirst = true;
    Telling a([&](const char* what, const QAction*) {
        if (QLatin1String(what) == QLatin1String("disconnect") && std::exchange(isFirst, false)) {
            proxy.setCurrentContext({X});
            proxy.setCurrentContext({A});
        }
    });
    QAction b;
    QAction x;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&b, B);
    proxy.addBackendAction(&x, X);
    proxy.setCurrentContext({A});
    proxy.setCurrentContext({B});
    QCOMPARE(proxy.currentActiveBackendAction(), &a);
    const QSignalSpy triggered(&a, &QAction::triggered);
    const QSignalSpy hovered(&a, &QAction::hovered);
    proxy.trigger();
    proxy.hover();
    QCOMPARE(triggered.count(), 1);
    QCOMPARE(hovered.count(), 1);
}

void ProxyActionTest::switchOvertakenWhileItConnectsConnectsNothingMore()
{
    ProxyAction proxy;
    bool isSwitching = false;
    Telling a([&](const char* what, const QAction*) {
        if (QLatin1String(what) == QLatin1String("connect") && std::exchange(isSwitching, false))
            proxy.setCurrentContext({X});
    });
    QAction x;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(&x, X);
    isSwitching = true;
    proxy.setCurrentContext({A});
    QCOMPARE(proxy.currentActiveBackendAction(), &x);
    const QSignalSpy ofA(&a, &QAction::triggered);
    const QSignalSpy ofX(&x, &QAction::triggered);
    proxy.trigger();
    QCOMPARE(QList<qsizetype>({ofA.count(), ofX.count()}), QList<qsizetype>({0, 1}));
}

void ProxyActionTest::backendThatDiesBeforeItIsActiveIsPassedOver()
{
    ProxyAction proxy;
    auto b = std::make_unique<QAction>();
    Telling a([&](const char* what, const QAction*) {
        if (QLatin1String(what) == QLatin1String("disconnect"))
            b.reset();
    });
    QAction x(QStringLiteral("x"));
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(b.get(), B);
    proxy.addBackendAction(&x, X);
    proxy.setCurrentContext({A});
    proxy.setCurrentContext({B, X});
    QCOMPARE(proxy.currentActiveBackendAction(), &x);
    QCOMPARE(proxy.text(), x.text());
}

void ProxyActionTest::proxyMayGoAtEachChange()
{
    QAction backend(icon(Qt::red), QStringLiteral("text"), nullptr);
    backend.setVisible(false);
    backend.setCheckable(true);
    backend.setChecked(true);
    backend.setIconText(QStringLiteral("icon text"));
    backend.setShortcut(QKeySequence(Qt::Key_F5));
    backend.setToolTip(QStringLiteral("tool tip"));
    backend.setStatusTip(QStringLiteral("status tip"));
    backend.setWhatsThis(QStringLiteral("what is this"));
    int deleted = 0;
    for (bool isThere = false; !isThere; deleted += isThere ? 0 : 1) {
        auto proxy = std::make_unique<ProxyAction>();
        proxy->addBackendAction(&backend, A);
        connect(proxy.get(), &QAction::changed, this, [&, left = deleted]() mutable {
            if (left-- == 0)
                proxy.reset();
        });
        proxy->setCurrentContext({A});
        isThere = proxy != nullptr;
    }
    // What is invisible can be disabled, as the proxy is before.
    QVERIFY(deleted >= 10);
}

void ProxyActionTest::backendThatDiesWhenItIsRemovedIsNotDisconnected_data()
{
    QTest::addColumn<bool>("byContext");
    QTest::addColumn<int>("disconnects");
    QTest::newRow("by action, when its end is not followed") << false << 1;
    QTest::newRow("by context, when its end is not followed") << true << 1;
    QTest::newRow("by action, when its look is not followed") << false << 2;
    QTest::newRow("by context, when its look is not followed") << true << 2;
}

void ProxyActionTest::backendThatDiesWhenItIsRemovedIsNotDisconnected()
{
    QFETCH(bool, byContext);
    QFETCH(int, disconnects);
    ProxyAction proxy;
    auto* const a = new Telling([&](const char* what, const QAction* action) {
        if (QLatin1String(what) == QLatin1String("disconnect") && --disconnects == 0)
            delete action;
    });
    QAction b(QStringLiteral("b"));
    proxy.addBackendAction(a, A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A, B});
    if (byContext)
        proxy.removeBackendContext(A);
    else
        proxy.removeBackendAction(a);
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
    QCOMPARE(proxy.text(), b.text());
}

void ProxyActionTest::changeOfAnInactiveBackendSwitchesNothing_data()
{
    QTest::addColumn<QString>("how");
    for (const char* const how : {"removed by action", "removed by context", "destroyed", "added"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

// Even while the backend that is to be active is registered, but not switched to yet.
void ProxyActionTest::changeOfAnInactiveBackendSwitchesNothing()
{
    QFETCH(QString, how);
    ProxyAction proxy;
    auto b = std::make_unique<QAction>();
    QList<QAction*> activeAfterChange;
    Telling a([&](const char*, const QAction*) {
        if (!activeAfterChange.isEmpty())
            return;
        if (how == QLatin1String("removed by action"))
            proxy.removeBackendAction(b.get());
        else if (how == QLatin1String("removed by context"))
            proxy.removeBackendContext(B);
        else if (how == QLatin1String("destroyed"))
            b.reset();
        else
            proxy.addBackendAction(b.get(), X);
        activeAfterChange.append(proxy.currentActiveBackendAction());
    });
    proxy.addBackendAction(b.get(), B);
    proxy.setCurrentContext({A});
    proxy.addBackendAction(&a, A);
    QCOMPARE(activeAfterChange, QList<QAction*>{nullptr});
    QCOMPARE(proxy.currentActiveBackendAction(), &a);
}

void ProxyActionTest::dyingBackendCanBeRemoved_data()
{
    QTest::addColumn<QString>("how");
    for (const char* const how : {"by action", "by context", "by a switch"})
        QTest::newRow(how) << QString::fromLatin1(how);
}

// In a slot of its destroyed() that comes before the one of the proxy.
void ProxyActionTest::dyingBackendCanBeRemoved()
{
    QFETCH(QString, how);
#ifdef __SANITIZE_ADDRESS__
    QSKIP(
        "The sanitizer wants nothing of a QAction to be called any more, and a line has its look.");
#endif
    ProxyAction proxy;
    auto a = std::make_unique<QAction>();
    QAction b(QStringLiteral("b"));
    {
        const QPointer<QAction> guard = a.get(); // Qt gives up what it uses before destroyed().
    }
    connect(a.get(), &QObject::destroyed, this, [&, action = a.get()] {
        if (how == QLatin1String("by action"))
            proxy.removeBackendAction(action);
        else if (how == QLatin1String("by context"))
            proxy.removeBackendContext(A);
        else
            proxy.setCurrentContext({B});
    });
    proxy.addBackendAction(a.get(), A);
    proxy.addBackendAction(&b, B);
    proxy.setCurrentContext({A, B});
    a.reset();
    QVERIFY(!proxy.getBackendAction(A));
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
    QCOMPARE(proxy.text(), b.text());
}

// In a slot of its destroyed() between those of its two registrations.
void ProxyActionTest::dyingBackendIsNotSelected()
{
    ProxyAction proxy;
    auto a = std::make_unique<QAction>(QStringLiteral("a"));
    QAction b(QStringLiteral("b"));
    proxy.addBackendAction(a.get(), A);
    int told = 0;
    connect(a.get(), &QObject::destroyed, this, [&] {
        ++told;
        proxy.setCurrentContext({A, X, B});
        QCOMPARE(proxy.currentActiveBackendAction(), &b);
    });
    proxy.addBackendAction(a.get(), X);
    proxy.addBackendAction(&b, B);
    a.reset();
    QCOMPARE(told, 1);
    QCOMPARE(proxy.currentActiveBackendAction(), &b);
    QCOMPARE(proxy.text(), b.text());
}

// It stays the active one until its last registration has gone.
void ProxyActionTest::dyingBackendIsNotMirrored()
{
#ifdef __SANITIZE_ADDRESS__
    QSKIP("The sanitizer wants nothing of a QAction to be called any more, not even its address.");
#endif
    ProxyAction proxy;
    auto a = std::make_unique<QAction>(QStringLiteral("a"));
    proxy.addBackendAction(a.get(), A);
    connect(a.get(), &QObject::destroyed, this,
        [&] { proxy.defaultProp()->setText(QStringLiteral("default")); });
    proxy.addBackendAction(a.get(), X);
    proxy.setCurrentContext({A, X});
    QCOMPARE(proxy.text(), QStringLiteral("a"));
    int told = 0;
    connect(proxy.defaultProp(), &QAction::changed, this, [&] {
        ++told;
        QVERIFY(!proxy.isEnabled());
        QCOMPARE(proxy.text(), QStringLiteral("default"));
    });
    a.reset();
    QCOMPARE(told, 1);
    QVERIFY(!proxy.currentActiveBackendAction());
}

void ProxyActionTest::destructionOfAStrangerIsTracedOnly()
{
    QAction backend(QStringLiteral("text"), nullptr);
    ProxyAction proxy;
    proxy.setCurrentContext({A});
    proxy.addBackendAction(&backend, A);
    QObject stranger;
    Recorder recorder;
    QVERIFY(
        QMetaObject::invokeMethod(&proxy, "onBackendActionDestroyed", Q_ARG(QObject*, &stranger)));
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&proxy) + QLatin1String(" backend action destroyed ")
            + printed(&stranger) + QLatin1Char(' '))));
    QCOMPARE(proxy.currentActiveBackendAction(), &backend);
}

void ProxyActionTest::registrationsChangeBeforeConnections()
{
    // At each connection: is the backend registered, and is it the active one.
    QStringList log;
    const ProxyAction* watched = nullptr;
    const Telling::Tell tell = [&](const char* what, const QAction* backend) {
        if (watched)
            log.append(QStringLiteral("%1 %2%3")
                           .arg(QLatin1String(what))
                           .arg(watched->getBackendAction(A) == backend ? 1 : 0)
                           .arg(watched->currentActiveBackendAction() == backend ? 1 : 0));
    };
    for (const bool byContext : {false, true}) {
        Telling backend(tell);
        ProxyAction proxy;
        proxy.setCurrentContext({A});
        watched = &proxy;
        proxy.addBackendAction(&backend, A);
        QCOMPARE(log, QStringList({QStringLiteral("connect 10"), QStringLiteral("connect 11")}));
        log.clear();
        if (byContext)
            proxy.removeBackendContext(A);
        else
            proxy.removeBackendAction(&backend);
        QCOMPARE(
            log, QStringList({QStringLiteral("disconnect 01"), QStringLiteral("disconnect 01")}));
        log.clear();
        watched = nullptr;
    }
}

void ProxyActionTest::propertiesAreCopiedInOrder()
{
    ProxyAction proxy;
    QAction backend(nullptr);
    backend.setCheckable(true);
    backend.setChecked(true);
    backend.setText(QStringLiteral("text"));
    backend.setIcon(icon(Qt::red));
    backend.setIconText(QStringLiteral("icon text"));
    backend.setShortcut(QKeySequence(QStringLiteral("Ctrl+K")));
    backend.setToolTip(QStringLiteral("tool tip"));
    backend.setStatusTip(QStringLiteral("status tip"));
    backend.setWhatsThis(QStringLiteral("what"));
    proxy.defaultProp()->setVisible(false);
    proxy.addBackendAction(&backend, A);
    // A letter for each property that has arrived, at each change.
    QStringList steps;
    connect(&proxy, &QAction::changed, this, [&] {
        QString arrived;
        const auto note = [&](bool has, char letter) {
            if (has)
                arrived += QLatin1Char(letter);
        };
        note(proxy.isVisible(), 'v');
        note(proxy.isCheckable(), 'c');
        note(proxy.isChecked(), 'C');
        note(proxy.text() == backend.text(), 't');
        note(!proxy.icon().isNull(), 'i');
        note(proxy.iconText() == backend.iconText(), 'I');
        note(!proxy.shortcut().isEmpty(), 's');
        note(proxy.toolTip() == backend.toolTip(), 'T');
        note(!proxy.statusTip().isEmpty(), 'S');
        note(!proxy.whatsThis().isEmpty(), 'w');
        if (steps.isEmpty() || steps.last() != arrived)
            steps.append(arrived);
    });
    proxy.setCurrentContext({A});
    proxy.disconnect(this);
    QVERIFY(proxy.isEnabled());
    // Each step adds one letter behind those before.
    for (int i = 0; i < steps.size(); ++i)
        QVERIFY2(QStringLiteral("vcCtiIsTSw").startsWith(steps.at(i)),
            qPrintable(steps.join(QLatin1Char(' '))));
    QCOMPARE(steps.last(), QStringLiteral("vcCtiIsTSw"));
    QVERIFY2(steps.size() >= 10, qPrintable(steps.join(QLatin1Char(' '))));
}

void ProxyActionTest::enabledIsCopiedBeforeVisible()
{
    QAction shown;
    QAction hidden;
    hidden.setEnabled(false);
    hidden.setVisible(false);
    ProxyAction proxy;
    proxy.addBackendAction(&shown, A);
    proxy.addBackendAction(&hidden, B);
    proxy.setCurrentContext({A});
    QVERIFY(proxy.isEnabled() && proxy.isVisible());
    QList<QPair<bool, bool>> steps;
    connect(&proxy, &QAction::changed, this,
        [&] { steps.append(qMakePair(proxy.isEnabled(), proxy.isVisible())); });
    proxy.setCurrentContext({B});
    proxy.disconnect(this);
    QVERIFY(!steps.isEmpty());
    QCOMPARE(steps.first(), qMakePair(false, true));
    QCOMPARE(steps.last(), qMakePair(false, false));
}

void ProxyActionTest::derivedSignalsAndSlotsCount()
{
    ProxyAction proxy;
    Shadow backend;
    proxy.addBackendAction(&backend, A);
    proxy.setCurrentContext({A});
    backend.setText(QStringLiteral("text"));
    QCOMPARE(proxy.text(), QString());
    Q_EMIT backend.changed();
    QCOMPARE(proxy.text(), QStringLiteral("text"));
    Q_EMIT backend.destroyed(&backend);
    QVERIFY(!proxy.getBackendAction(A));
}

void ProxyActionTest::derivedSlotsCount()
{
    ShadowProxy proxy;
    auto backend = std::make_unique<QAction>();
    proxy.addBackendAction(backend.get(), A);
    proxy.removeBackendAction(backend.get());
    proxy.addBackendAction(backend.get(), A);
    backend.reset();
    QCOMPARE(proxy.calls, 1);
    QVERIFY(proxy.getBackendAction(A));
}

void ProxyActionTest::dyingBackendOfTwoContextsIsDroppedTwice()
{
    auto a = std::make_unique<QAction>();
    ProxyAction proxy;
    proxy.addBackendAction(a.get(), A);
    proxy.addBackendAction(a.get(), B);
    proxy.setCurrentContext({A, B});
    Recorder recorder;
    QList<int> registered;
    recorder.onEntry([&](const Entry&) {
        registered.append(
            (proxy.getBackendAction(A) ? 1 : 0) + (proxy.getBackendAction(B) ? 1 : 0));
    });
    a.reset();
    recorder.onEntry({});
    // At the two destructions, and at the switch.
    QCOMPARE(registered, QList<int>({2, 1, 0}));
    const QStringList lines = recorder.take();
    QCOMPARE(lines.filter(QStringLiteral(" backend action destroyed QObject(")).size(), 2);
    QVERIFY(!proxy.getBackendAction(A));
    QVERIFY(!proxy.getBackendAction(B));
    QVERIFY(!proxy.currentActiveBackendAction());
    QVERIFY(!proxy.isEnabled());
}

void ProxyActionTest::dyingInactiveBackendChangesNothing()
{
    QAction a;
    auto b = std::make_unique<QAction>();
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.addBackendAction(b.get(), B);
    proxy.setCurrentContext({A});
    Recorder recorder;
    b.reset();
    QCOMPARE(recorder.take().size(), 1);
    QVERIFY(!proxy.getBackendAction(B));
    QCOMPARE(proxy.currentActiveBackendAction(), &a);
}

void ProxyActionTest::nullBackendIsStoredAndNeverSelected()
{
    ProxyAction proxy;
    proxy.setCurrentContext({A});
    Recorder recorder;
    proxy.addBackendAction(nullptr, A);
    QCOMPARE(recorder.take(),
        QStringList(
            {trace(print(&proxy) + QLatin1String(" add backend action \"A\" QAction(0x00) ")),
                warning(QStringLiteral(
                    "QObject::connect: Cannot connect (nullptr)::destroyed(QObject*) to "
                    "Zentu::ProxyAction::onBackendActionDestroyed(QObject*)"))}));
    QVERIFY(!proxy.currentActiveBackendAction());
    QAction a;
    proxy.addBackendAction(&a, A);
    QVERIFY(recorder.take().first().startsWith(QLatin1String("warning|")));
    QVERIFY(!proxy.removeBackendContext(A));
    QCOMPARE(recorder.take(),
        QStringList(
            {trace(print(&proxy) + QLatin1String(" remove backend context \"A\" QAction(0x00) ")),
                warning(QStringLiteral("QObject::disconnect: Unexpected nullptr parameter"))}));
    proxy.addBackendAction(&a, A);
    QCOMPARE(proxy.currentActiveBackendAction(), &a);
}

void ProxyActionTest::connectionsAreThoseOfTheSignatures()
{
    QAction a;
    ProxyAction proxy;
    proxy.addBackendAction(&a, A);
    proxy.setCurrentContext({A});
    QVERIFY(disconnect(
        &a, SIGNAL(destroyed(QObject*)), &proxy, SLOT(onBackendActionDestroyed(QObject*))));
    QVERIFY(disconnect(&a, SIGNAL(changed()), &proxy, SLOT(updateProxyProperties())));
    QVERIFY(disconnect(&proxy, SIGNAL(triggered(bool)), &a, SIGNAL(triggered(bool))));
    QVERIFY(disconnect(&proxy, SIGNAL(toggled(bool)), &a, SIGNAL(toggled(bool))));
    QVERIFY(disconnect(&proxy, SIGNAL(hovered()), &a, SIGNAL(hovered())));
    QVERIFY(
        disconnect(proxy.defaultProp(), SIGNAL(changed()), &proxy, SLOT(updateProxyProperties())));
    // There were no others.
    QVERIFY(!disconnect(&a, nullptr, &proxy, nullptr));
    QVERIFY(!disconnect(&proxy, nullptr, &a, nullptr));
    QVERIFY(!disconnect(proxy.defaultProp(), nullptr, &proxy, nullptr));
}

void ProxyActionTest::backendsOutliveTheProxy()
{
    QAction a;
    QPointer<QAction> fallback;
    {
        ProxyAction proxy;
        fallback = proxy.defaultProp();
        proxy.addBackendAction(&a, A);
        proxy.setCurrentContext({A});
    }
    QVERIFY(!fallback);
    Recorder recorder;
    a.setText(QStringLiteral("a"));
    a.trigger();
    QVERIFY(recorder.isEmpty());
}

void ProxyActionTest::queriesAreCopies()
{
    ProxyAction proxy;
    proxy.setCurrentContext({A});
    QStringList list = proxy.currentContext();
    list.append(B);
    QCOMPARE(proxy.currentContext(), QStringList(A));
}

QTEST_MAIN(ProxyActionTest)
#include "tst_proxy_action.moc"
