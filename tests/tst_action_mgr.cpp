// SPDX-License-Identifier: MIT
#include "action_mgr.h"

#include "action_mgr_p.h"
#include "recorder.h"

#include <QMenu>
#include <QMenuBar>
#include <QMetaMethod>
#include <QTest>
#include <QToolBar>

#include <functional>
#include <memory>
#include <utility>
#include <vector>

using namespace Support;
using Zentu::ActionManager;

namespace {

const QString F = QStringLiteral("F");
const QString G = QStringLiteral("G");

/// One of the three kinds of widgets, and what is done with it.
struct Family
{
    QString name;
    std::function<QWidget*()> create;
    std::function<void(ActionManager*, const QString&, QWidget*)> add;
    std::function<QWidget*(ActionManager*, const QString&)> get;
};

QList<Family> families()
{
    return {
        {QStringLiteral("menu"), [] { return new QMenu; },
            [](ActionManager* m, const QString& id, QWidget* w) {
                m->registerMenu(id, static_cast<QMenu*>(w));
            },
            [](ActionManager* m, const QString& id) -> QWidget* { return m->getMenu(id); }},
        {QStringLiteral("menubar"), [] { return new QMenuBar; },
            [](ActionManager* m, const QString& id, QWidget* w) {
                m->registerMenubar(id, static_cast<QMenuBar*>(w));
            },
            [](ActionManager* m, const QString& id) -> QWidget* { return m->getMenubar(id); }},
        {QStringLiteral("toolbar"), [] { return new QToolBar; },
            [](ActionManager* m, const QString& id, QWidget* w) {
                m->registerToolbar(id, static_cast<QToolBar*>(w));
            },
            [](ActionManager* m, const QString& id) -> QWidget* { return m->getToolbar(id); }},
    };
}

/// A widget that tells when it is connected or disconnected.
template <typename Widget>
class Telling : public Widget
{
public:
    explicit Telling(const std::function<void()>& tell)
        : m_tell(tell)
    {
    }

protected:
    void connectNotify(const QMetaMethod& /*signal*/) override { m_tell(); }
    void disconnectNotify(const QMetaMethod& /*signal*/) override { m_tell(); }

private:
    std::function<void()> m_tell;
};

QString print(const QObject* object)
{
    return printed(object);
}

QString printWidget(const QWidget* widget)
{
    return printed(widget);
}

} // namespace

class ActionManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hasNothingOfItsOwn();
    void privateObjectHasThreePublicSlots();
    void deletedSingletonIsMadeAnew();
    void anyManagerThatDiesClearsTheSingleton();
    void registrationIsTracedThenDone_data() { familyRows(); }
    void registrationIsTracedThenDone();
    void familiesAreStoredThenWatchedAndForgottenInTurn();
    void takenIdentifierIsRefused_data() { familyRows(); }
    void takenIdentifierIsRefused();
    void destroyedWidgetLeaves_data() { familyRows(); }
    void destroyedWidgetLeaves();
    void widgetWithTwoIdentifiersLeavesTwice_data() { familyRows(); }
    void widgetWithTwoIdentifiersLeavesTwice();
    void refusedWidgetIsNotWatched_data() { familyRows(); }
    void refusedWidgetIsNotWatched();
    void nullWidgetIsStored_data() { familyRows(); }
    void nullWidgetIsStored();
    void familiesAreIndependent();
    void unknownIdentifiersGiveNull();
    void clearForgetsEverything();
    void clearIsTracedFirst();
    void clearForgetsWhatIsRegisteredMeanwhile();
    void managerMayBeDeletedByAWidgetThatIsConnected();
    void managerMayBeDeletedByAWidgetThatIsDisconnected();
    void managerForgetsItsWidgets();

private:
    static void familyRows()
    {
        QTest::addColumn<int>("index");
        QTest::newRow("menu") << 0;
        QTest::newRow("menubar") << 1;
        QTest::newRow("toolbar") << 2;
    }

    static Family family()
    {
        QFETCH(int, index);
        return families().at(index);
    }
};

void ActionManagerTest::hasNothingOfItsOwn()
{
    const QMetaObject& meta = ActionManager::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::ActionManager");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount(), meta.methodOffset());
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(ActionManager), sizeof(QObject) + sizeof(void*));
}

void ActionManagerTest::privateObjectHasThreePublicSlots()
{
    const QMetaObject& meta = Zentu::_action_mgr_private::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::_action_mgr_private");
    QStringList names;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        names.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(names,
        QStringList({QStringLiteral("onMenuDestroyed(QObject*)"),
            QStringLiteral("onMenubarDestroyed(QObject*)"),
            QStringLiteral("onToolbarDestroyed(QObject*)")}));
}

void ActionManagerTest::deletedSingletonIsMadeAnew()
{
    QMenu menu;
    ActionManager* const first = ActionManager::instance();
    QCOMPARE(ActionManager::instance(), first);
    QVERIFY(!first->parent());
    first->registerMenu(F, &menu);
    delete first;
    QVERIFY(!ActionManager::instance()->getMenu(F));
    delete ActionManager::instance();
}

void ActionManagerTest::anyManagerThatDiesClearsTheSingleton()
{
    ActionManager* const first = ActionManager::instance();
    const std::unique_ptr<ActionManager> owner(first);
    {
        const ActionManager other;
        QCOMPARE(ActionManager::instance(), first);
    }
    ActionManager* const second = ActionManager::instance();
    QVERIFY(second != first);
    delete second;
}

void ActionManagerTest::registrationIsTracedThenDone()
{
    const Family family = this->family();
    ActionManager manager;
    const std::unique_ptr<QWidget> widget(family.create());
    widget->setObjectName(QStringLiteral("name"));
    Recorder recorder;
    const QWidget* atTheLine = widget.get();
    recorder.onEntry([&](const Entry&) { atTheLine = family.get(&manager, F); });
    family.add(&manager, F, widget.get());
    recorder.onEntry({});
    QVERIFY(!atTheLine);
    QCOMPARE(family.get(&manager, F), widget.get());
    QVERIFY(printWidget(widget.get()).endsWith(QLatin1String(", name=\"name\")")));
    QCOMPARE(recorder.take(),
        QStringList(trace(print(&manager) + QLatin1String(" register ") + family.name
            + QLatin1String(" \"F\" ") + printWidget(widget.get()) + QLatin1Char(' '))));
}

void ActionManagerTest::familiesAreStoredThenWatchedAndForgottenInTurn()
{
    ActionManager manager;
    QStringList log;
    const auto teller = [&](const char* who) {
        return [&, who] {
            log.append(QStringLiteral("%1: %2%3%4")
                           .arg(QLatin1String(who))
                           .arg(manager.getMenu(F) ? 1 : 0)
                           .arg(manager.getMenubar(F) ? 1 : 0)
                           .arg(manager.getToolbar(F) ? 1 : 0));
        };
    };
    Telling<QMenu> menu(teller("menu"));
    Telling<QMenuBar> menubar(teller("menubar"));
    Telling<QToolBar> toolbar(teller("toolbar"));
    log.clear();
    manager.registerMenu(F, &menu);
    manager.registerMenubar(F, &menubar);
    manager.registerToolbar(F, &toolbar);
    QCOMPARE(log,
        QStringList({QStringLiteral("menu: 100"), QStringLiteral("menubar: 110"),
            QStringLiteral("toolbar: 111")}));
    log.clear();
    manager.clear();
    QCOMPARE(log,
        QStringList({QStringLiteral("menu: 111"), QStringLiteral("menubar: 011"),
            QStringLiteral("toolbar: 001")}));
}

void ActionManagerTest::takenIdentifierIsRefused()
{
    const Family family = this->family();
    ActionManager manager;
    const std::unique_ptr<QWidget> first(family.create());
    const std::unique_ptr<QWidget> second(family.create());
    family.add(&manager, F, first.get());
    // The printers of widgets and of objects differ in the name.
    second->setObjectName(QStringLiteral("second"));
    Recorder recorder;
    family.add(&manager, F, second.get());
    QCOMPARE(recorder.take(),
        QStringList(critical(print(&manager) + QLatin1String(" register ") + family.name
            + QLatin1String(" \"F\" ") + printWidget(second.get())
            + QLatin1String(" duplicated ID"))));
    QCOMPARE(family.get(&manager, F), first.get());
}

void ActionManagerTest::destroyedWidgetLeaves()
{
    const Family family = this->family();
    ActionManager manager;
    std::unique_ptr<QWidget> widget(family.create());
    const std::unique_ptr<QWidget> other(family.create());
    family.add(&manager, F, widget.get());
    family.add(&manager, G, other.get());
    const QString address = printed(static_cast<const void*>(widget.get()));
    Recorder recorder;
    bool listedAtTheLine = false;
    recorder.onEntry([&](const Entry&) { listedAtTheLine = family.get(&manager, F); });
    widget.reset();
    recorder.onEntry({});
    QVERIFY(listedAtTheLine);
    QVERIFY(!family.get(&manager, F));
    QCOMPARE(family.get(&manager, G), other.get());
    // What is left of a widget at that moment is printed as an object.
    const QStringList lines = recorder.take();
    QCOMPARE(lines.size(), 1);
    QVERIFY2(lines.first().startsWith(trace(
                 print(&manager) + QLatin1Char(' ') + family.name + QLatin1String(" destroyed "))),
        qPrintable(lines.first()));
    QVERIFY2(lines.first().endsWith(QLatin1Char('(') + address + QLatin1String(") ")),
        qPrintable(lines.first()));
}

void ActionManagerTest::widgetWithTwoIdentifiersLeavesTwice()
{
    const Family family = this->family();
    ActionManager manager;
    std::unique_ptr<QWidget> widget(family.create());
    family.add(&manager, F, widget.get());
    family.add(&manager, G, widget.get());
    Recorder recorder;
    QList<int> registered;
    recorder.onEntry([&](const Entry&) {
        registered.append((family.get(&manager, F) ? 1 : 0) + (family.get(&manager, G) ? 1 : 0));
    });
    widget.reset();
    recorder.onEntry({});
    QCOMPARE(registered, QList<int>({2, 1}));
    QCOMPARE(recorder.take().filter(family.name + QLatin1String(" destroyed ")).size(), 2);
    QVERIFY(!family.get(&manager, F));
    QVERIFY(!family.get(&manager, G));
}

void ActionManagerTest::refusedWidgetIsNotWatched()
{
    const Family family = this->family();
    ActionManager manager;
    const std::unique_ptr<QWidget> first(family.create());
    std::unique_ptr<QWidget> second(family.create());
    family.add(&manager, F, first.get());
    family.add(&manager, F, second.get());
    Recorder recorder;
    second.reset();
    QVERIFY(recorder.isEmpty());
    QCOMPARE(family.get(&manager, F), first.get());
}

void ActionManagerTest::nullWidgetIsStored()
{
    const Family family = this->family();
    const QString slot = QLatin1String("on") + family.name.at(0).toUpper() + family.name.mid(1)
        + QLatin1String("Destroyed(QObject*)");
    ActionManager manager;
    Recorder recorder;
    family.add(&manager, F, nullptr);
    QCOMPARE(recorder.take(),
        QStringList({trace(print(&manager) + QLatin1String(" register ") + family.name
                         + QLatin1String(" \"F\" QWidget(0x0) ")),
            warning(QLatin1String("QObject::connect: Cannot connect "
                                  "(nullptr)::destroyed(QObject*) to "
                                  "Zentu::_action_mgr_private::")
                + slot)}));
    QVERIFY(!family.get(&manager, F));
    const std::unique_ptr<QWidget> widget(family.create());
    family.add(&manager, F, widget.get());
    QVERIFY(recorder.take().first().startsWith(QLatin1String("critical|")));
    manager.clear();
    QCOMPARE(recorder.take(),
        QStringList({trace(print(&manager) + QLatin1String(" clear ")),
            warning(QStringLiteral("QObject::disconnect: Unexpected nullptr parameter"))}));
}

void ActionManagerTest::familiesAreIndependent()
{
    ActionManager manager;
    QMenu menu;
    QMenuBar menuBar;
    QToolBar toolBar;
    manager.registerMenu(F, &menu);
    manager.registerMenubar(F, &menuBar);
    manager.registerToolbar(F, &toolBar);
    QCOMPARE(manager.getMenu(F), &menu);
    QCOMPARE(manager.getMenubar(F), &menuBar);
    QCOMPARE(manager.getToolbar(F), &toolBar);
}

void ActionManagerTest::unknownIdentifiersGiveNull()
{
    ActionManager manager;
    QMenu menu;
    manager.registerMenu(F, &menu);
    Recorder recorder;
    QVERIFY(!manager.getMenu(QStringLiteral("f")));
    QVERIFY(!manager.getMenubar(F));
    QVERIFY(!manager.getToolbar(F));
    QVERIFY(recorder.isEmpty());
}

void ActionManagerTest::clearForgetsEverything()
{
    ActionManager manager;
    QList<QWidget*> widgets;
    for (const Family& family : families()) {
        for (const QString& id : {F, G}) {
            widgets.append(family.create());
            family.add(&manager, id, widgets.last());
        }
    }
    manager.clear();
    for (const Family& family : families()) {
        QVERIFY(!family.get(&manager, F));
        QVERIFY(!family.get(&manager, G));
    }
    Recorder recorder;
    qDeleteAll(widgets);
    QVERIFY(recorder.isEmpty());
}

void ActionManagerTest::clearIsTracedFirst()
{
    ActionManager manager;
    QMenu menu;
    manager.registerMenu(F, &menu);
    Recorder recorder;
    const QMenu* atTheLine = nullptr;
    recorder.onEntry([&](const Entry&) { atTheLine = manager.getMenu(F); });
    manager.clear();
    recorder.onEntry({});
    QCOMPARE(atTheLine, &menu);
    QCOMPARE(recorder.take(), QStringList(trace(print(&manager) + QLatin1String(" clear "))));
}

void ActionManagerTest::clearForgetsWhatIsRegisteredMeanwhile()
{
    constexpr int Menus = 12; // enough for the table of identifiers to grow
    ActionManager manager;
    std::vector<std::unique_ptr<QMenu>> later;
    const auto registerAnother = [&] {
        later.push_back(std::make_unique<QMenu>());
        manager.registerMenu(QStringLiteral("later %1").arg(later.size()), later.back().get());
    };
    std::vector<std::unique_ptr<Telling<QMenu>>> menus;
    bool isClearing = false;
    for (int i = 0; i < Menus; ++i) {
        menus.push_back(std::make_unique<Telling<QMenu>>([&] {
            if (isClearing)
                registerAnother();
        }));
        manager.registerMenu(QString::number(i), menus.back().get());
    }
    isClearing = true;
    manager.clear();
    QCOMPARE(later.size(), std::size_t(Menus));
    for (int i = 0; i < Menus; ++i) {
        QVERIFY(!manager.getMenu(QString::number(i)));
        QVERIFY(!manager.getMenu(QStringLiteral("later %1").arg(i + 1)));
    }
    Recorder recorder;
    menus.clear();
    QVERIFY(recorder.isEmpty());
}

void ActionManagerTest::managerMayBeDeletedByAWidgetThatIsConnected()
{
    ActionManager* manager = nullptr;
    Telling<QMenu> menu([&] { delete std::exchange(manager, nullptr); });
    manager = new ActionManager;
    manager->registerMenu(F, &menu);
    QVERIFY(!manager);
}

void ActionManagerTest::managerMayBeDeletedByAWidgetThatIsDisconnected()
{
    auto* const manager = new ActionManager;
    bool isClearing = false;
    int disconnected = 0;
    const auto deleteManager = [&] {
        if (isClearing && ++disconnected == 1)
            delete manager;
    };
    Telling<QMenu> first(deleteManager);
    Telling<QMenu> second(deleteManager);
    Telling<QToolBar> toolbar(deleteManager);
    manager->registerMenu(F, &first);
    manager->registerMenu(G, &second);
    manager->registerToolbar(F, &toolbar);
    isClearing = true;
    manager->clear();
    QCOMPARE(disconnected, 3); // each once, the last two by the end of the manager
}

void ActionManagerTest::managerForgetsItsWidgets()
{
    auto menu = std::make_unique<QMenu>();
    {
        ActionManager manager;
        manager.registerMenu(F, menu.get());
    }
    menu->setTitle(QStringLiteral("alive"));
    Recorder recorder;
    menu.reset();
    QVERIFY(recorder.isEmpty());
}

QTEST_MAIN(ActionManagerTest)
#include "tst_action_mgr.moc"
