// SPDX-License-Identifier: MIT
#include "zentu_host.h"

#include "host_window.h"
#include "recorder.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

using namespace Support;
using namespace Zentu;

namespace {

const QString Bold = QStringLiteral("format.bold");
const QString Copy = QStringLiteral("edit.copy");
const QString Left = QStringLiteral("align.left");
const QString Middle = QStringLiteral("align.middle");
const QString Right = QStringLiteral("align.right");
const QStringList All = {Bold, Copy, Left, Middle, Right};

} // namespace

class DocumentActionsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_recorder = std::make_unique<Recorder>(); }
    void cleanup();

    void reactionIsCalledWhileCurrent();
    void methodsAndActionsThatExistAreBackendsToo();
    void contextIsOwnOrGiven();
    void unknownIdentifierIsTold();
    void identifierIsUnknownToAManagerThatHasGone();
    void checkableBackendFollowsTheClick();
    void toggleIsHeardOnceWithTheStateThatIsSeen();
    void laterChangeThrowsNoClickAway();
    void groupFollowsTheClick();
    void checkedOneOfAGroupStaysChecked();
    void actionOfAGroupThatIsNotExclusiveIsUnchecked();
    void groupsOfDocumentsAreTheirOwn();
    void everyKeyReachesTheProxy();
    void backendsOwnKeysComeFirst();
    void sharedActionsDoNotFlicker();
    void lastDocumentLeavesWithTheEventLoop();
    void documentThatComesBackAtOnceStays();
    void destructionTakesEverythingBack();
    void destructionLeavesWhatTheHostPutInstead();
    void contextThatTheHostRemovedIsNoSurprise();
    void contextsThatHaveGoneAreNoSurprise();
    void windowsHaveActionsOfTheirOwn();
    void everyOrderOfDestruction_data();
    void everyOrderOfDestruction();
    void documentMayGoInItsReaction();

private:
    std::unique_ptr<Recorder> m_recorder;
};

void DocumentActionsTest::cleanup()
{
    QCOMPARE(surprises(*m_recorder), QStringList());
    m_recorder.reset();
}

void DocumentActionsTest::reactionIsCalledWhileCurrent()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    int copies = 0;
    QAction* const copy = actions.add(Copy, [&] { ++copies; });
    QCOMPARE(actions.action(Copy), copy);
    QVERIFY(!actions.action(Bold));
    QVERIFY(!window[Copy]->isEnabled());

    actions.setCurrent(true);
    QVERIFY(window[Copy]->isEnabled());
    QCOMPARE(window[Copy]->text(), Copy);
    window[Copy]->trigger();
    QCOMPARE(copies, 1);
    copy->setEnabled(false);
    QVERIFY(!window[Copy]->isEnabled());
}

void DocumentActionsTest::methodsAndActionsThatExistAreBackendsToo()
{
    HostWindow window(All);
    QAction existing(nullptr);
    existing.setCheckable(true);
    DocumentActions actions(QString(), window.managers());
    actions.setCurrent(true);
    QObject receiver;
    actions.add(Copy, &receiver, [&] { receiver.setObjectName(Copy); });
    QCOMPARE(actions.add(Bold, &existing), &existing);

    window[Copy]->trigger();
    QCOMPARE(receiver.objectName(), Copy);
    window[Bold]->trigger();
    QVERIFY(existing.isChecked());
}

void DocumentActionsTest::contextIsOwnOrGiven()
{
    HostWindow window(All);
    const DocumentActions one(QString(), window.managers());
    const DocumentActions other(QString(), window.managers());
    QVERIFY(one.context() != other.context());

    DocumentActions kind(QStringLiteral("text"), window.managers());
    kind.setCurrent(true);
    QCOMPARE(window.contexts->currentContexts(), QStringList({QStringLiteral("text")}));
}

void DocumentActionsTest::unknownIdentifierIsTold()
{
    HostWindow window({});
    DocumentActions actions(QString(), window.managers());
    m_recorder->clear();
    QAction* const backend = actions.add(Copy, [] {});
    QCOMPARE(m_recorder->take(),
        {warning(QStringLiteral("DocumentActions: no proxy action \"edit.copy\""))});
    QCOMPARE(actions.action(Copy), backend);
    actions.setCurrent(true);
    actions.setCurrent(false);
    QTRY_VERIFY(window.contexts->currentContexts().isEmpty());
}

void DocumentActionsTest::identifierIsUnknownToAManagerThatHasGone()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    window.actions.reset();
    m_recorder->clear();
    QAction* const backend = actions.add(Copy, [] {});
    QCOMPARE(m_recorder->take(),
        {warning(QStringLiteral("DocumentActions: no proxy action \"edit.copy\""))});
    QCOMPARE(actions.action(Copy), backend);
}

void DocumentActionsTest::checkableBackendFollowsTheClick()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.setCurrent(true);
    QStringList states;
    QAction* const bold = actions.addCheckable(Bold, true, [&](bool on) {
        states.append(QStringLiteral("%1 %2").arg(on).arg(actions.action(Bold)->isChecked()));
    });
    QVERIFY(window[Bold]->isChecked());
    window[Bold]->trigger();
    window[Bold]->trigger();
    QCOMPARE(states, QStringList({QStringLiteral("0 0"), QStringLiteral("1 1")}));
    // A proxy that is set, not clicked.
    window[Bold]->setChecked(false);
    QVERIFY(!bold->isChecked());
    QCOMPARE(states.size(), 2);
}

void DocumentActionsTest::toggleIsHeardOnceWithTheStateThatIsSeen()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.setCurrent(true);
    const QAction* const bold = actions.addCheckable(Bold, false, [] {});
    QStringList heard;
    connect(bold, &QAction::toggled, bold,
        [&](bool on) { heard.append(QStringLiteral("%1 %2").arg(on).arg(bold->isChecked())); });
    window[Bold]->trigger();
    QCOMPARE(heard, QStringList(QStringLiteral("1 1")));
}

void DocumentActionsTest::laterChangeThrowsNoClickAway()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.setCurrent(true);
    QAction* const bold = actions.addCheckable(Bold, false, [] {});
    window[Bold]->trigger();
    const QSignalSpy toggled(bold, &QAction::toggled);
    bold->setEnabled(false);
    bold->setEnabled(true);
    QVERIFY(bold->isChecked() && window[Bold]->isChecked());
    QCOMPARE(toggled.count(), 0);
}

static QString checkedOf(const HostWindow& window)
{
    QStringList checked;
    for (const QString& id : {Left, Middle, Right}) {
        if (window[id]->isChecked())
            checked.append(id);
    }
    return checked.join(QLatin1Char(' '));
}

void DocumentActionsTest::groupFollowsTheClick()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.setCurrent(true);
    QStringList chosen;
    const QActionGroup* const group = actions.addExclusive(
        {Left, Middle, Right}, Middle, [&](const QString& id) { chosen.append(id); });
    QCOMPARE(checkedOf(window), Middle);
    window[Right]->trigger();
    QCOMPARE(chosen, QStringList(Right));
    QCOMPARE(group->checkedAction(), actions.action(Right));
    QCOMPARE(checkedOf(window), Right);
    actions.action(Left)->setChecked(true);
    QCOMPARE(checkedOf(window), Left);
    QCOMPARE(chosen, QStringList(Right));
}

void DocumentActionsTest::checkedOneOfAGroupStaysChecked()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.setCurrent(true);
    const QActionGroup* const group =
        actions.addExclusive({Left, Right}, Left, [](const QString& /*id*/) {});
    window[Left]->trigger();
    QCOMPARE(checkedOf(window), Left);
    QCOMPARE(group->checkedAction(), actions.action(Left));
}

void DocumentActionsTest::actionOfAGroupThatIsNotExclusiveIsUnchecked()
{
    HostWindow window(All);
    QActionGroup group(nullptr);
    group.setExclusive(false);
    QAction* const bold = group.addAction(Bold);
    bold->setCheckable(true);
    bold->setChecked(true);
    DocumentActions actions(QString(), window.managers());
    actions.add(Bold, bold);
    actions.setCurrent(true);
    QVERIFY(window[Bold]->isChecked());
    window[Bold]->trigger();
    QVERIFY(!bold->isChecked());
    QVERIFY(!window[Bold]->isChecked());
}

void DocumentActionsTest::groupsOfDocumentsAreTheirOwn()
{
    HostWindow window(All);
    DocumentActions first(QString(), window.managers());
    DocumentActions second(QString(), window.managers());
    for (DocumentActions* actions : {&first, &second})
        actions->addExclusive({Left, Right}, Left, [](const QString& /*id*/) {});
    first.setCurrent(true);
    window[Right]->trigger();
    first.setCurrent(false);
    second.setCurrent(true);
    QCOMPARE(checkedOf(window), Left);
    second.setCurrent(false);
    first.setCurrent(true);
    QCOMPARE(checkedOf(window), Right);
    QVERIFY(first.action(Right)->isChecked());
    QVERIFY(second.action(Left)->isChecked());
}

void DocumentActionsTest::everyKeyReachesTheProxy()
{
    const QList<QKeySequence> keys = {QKeySequence(QStringLiteral("Ctrl+X")),
        QKeySequence(QStringLiteral("Shift+Del")), QKeySequence(QStringLiteral("F20"))};
    HostWindow window(All);
    window[Copy]->defaultProp()->setShortcuts(keys);
    DocumentActions first(QString(), window.managers());
    DocumentActions second(QString(), window.managers());
    first.add(Copy, [] {});
    second.add(Copy, [] {});
    QCOMPARE(window[Copy]->shortcuts(), keys);
    first.setCurrent(true);
    QCOMPARE(window[Copy]->shortcuts(), keys);
    first.setCurrent(false);
    second.setCurrent(true);
    second.action(Copy)->setEnabled(false);
    second.action(Copy)->setText(QStringLiteral("Copy"));
    QCOMPARE(window[Copy]->shortcuts(), keys);
    // The first one is the same as before.
    window[Copy]->defaultProp()->setShortcuts(keys.mid(0, 2));
    QCOMPARE(window[Copy]->shortcuts(), keys.mid(0, 2));
}

void DocumentActionsTest::backendsOwnKeysComeFirst()
{
    const QList<QKeySequence> shown = {
        QKeySequence(QStringLiteral("Ctrl+X")), QKeySequence(QStringLiteral("F20"))};
    const QList<QKeySequence> own = {
        QKeySequence(QStringLiteral("Ctrl+Y")), QKeySequence(QStringLiteral("F19"))};
    HostWindow window(All);
    window[Copy]->defaultProp()->setShortcuts(shown);
    DocumentActions actions(QString(), window.managers());
    actions.add(Copy, [] {})->setShortcuts(own);
    actions.setCurrent(true);
    QCOMPARE(window[Copy]->shortcuts(), own);
    actions.setCurrent(false);
    QTRY_COMPARE(window[Copy]->shortcuts(), shown);
}

void DocumentActionsTest::sharedActionsDoNotFlicker()
{
    HostWindow window(All);
    DocumentActions first(QString(), window.managers());
    DocumentActions second(QString(), window.managers());
    first.add(Copy, [] {});
    first.add(Bold, [] {});
    second.add(Copy, [] {});
    first.setCurrent(true);
    int off = 0;
    connect(window[Copy], &QAction::changed, this,
        [&, copy = window[Copy]] { off += copy->isEnabled() ? 0 : 1; });
    // In the order in which an area tells its documents.
    first.setCurrent(false);
    second.setCurrent(true);
    QCOMPARE(off, 0);
    QCOMPARE(window[Copy]->currentActiveBackendAction(), second.action(Copy));
    QVERIFY(!window[Bold]->isEnabled());
    QCOMPARE(window.contexts->currentContexts(), QStringList(second.context()));
}

void DocumentActionsTest::lastDocumentLeavesWithTheEventLoop()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.add(Copy, [] {});
    actions.setCurrent(true);
    actions.setCurrent(true);
    actions.setCurrent(false);
    actions.setCurrent(false);
    QTRY_VERIFY(!window[Copy]->isEnabled());
    QVERIFY(window.contexts->currentContexts().isEmpty());
}

void DocumentActionsTest::documentThatComesBackAtOnceStays()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.add(Copy, [] {});
    actions.setCurrent(true);
    actions.setCurrent(false);
    actions.setCurrent(true);
    QCoreApplication::processEvents();
    window.contexts->addContext(QStringLiteral("other"));
    QVERIFY(window[Copy]->isEnabled());
}

void DocumentActionsTest::destructionTakesEverythingBack()
{
    HostWindow window(All);
    auto actions = std::make_unique<DocumentActions>(QString(), window.managers());
    const QString context = actions->context();
    QAction existing(nullptr);
    actions->add(Copy, &existing);
    actions->addCheckable(Bold, true, [] {});
    actions->setCurrent(true);
    actions.reset();
    QVERIFY(window.contexts->currentContexts().isEmpty());
    QVERIFY(!window[Copy]->isEnabled());
    QVERIFY(!window[Copy]->getBackendAction(context));
    QVERIFY(!window[Bold]->getBackendAction(context));
    QVERIFY(!window[Bold]->isChecked());
}

void DocumentActionsTest::destructionLeavesWhatTheHostPutInstead()
{
    HostWindow window(All);
    QAction instead(nullptr);
    auto actions = std::make_unique<DocumentActions>(QString(), window.managers());
    const QString context = actions->context();
    actions->add(Copy, [] {});
    window[Copy]->removeBackendContext(context);
    window[Copy]->addBackendAction(&instead, context);
    actions.reset();
    QCOMPARE(window[Copy]->getBackendAction(context), &instead);
}

void DocumentActionsTest::contextThatTheHostRemovedIsNoSurprise()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.setCurrent(true);
    window.contexts->removeContext(actions.context());
    actions.setCurrent(false);
    QCoreApplication::processEvents();
}

void DocumentActionsTest::contextsThatHaveGoneAreNoSurprise()
{
    HostWindow window(All);
    DocumentActions actions(QString(), window.managers());
    actions.add(Copy, [] {});
    window.contexts.reset();
    actions.setCurrent(true);
    QVERIFY(!window[Copy]->isEnabled());
}

void DocumentActionsTest::windowsHaveActionsOfTheirOwn()
{
    HostWindow one(All);
    HostWindow other(All);
    DocumentActions inOne(QString(), one.managers());
    DocumentActions inOther(QString(), other.managers());
    QStringList called;
    inOne.add(Copy, [&] { called.append(QStringLiteral("one")); });
    inOther.add(Copy, [&] { called.append(QStringLiteral("other")); });
    inOne.setCurrent(true);
    QVERIFY(!other[Copy]->isEnabled());
    inOther.setCurrent(true);
    QVERIFY(one[Copy]->isEnabled());
    one[Copy]->trigger();
    other[Copy]->trigger();
    QCOMPARE(called, QStringList({QStringLiteral("one"), QStringLiteral("other")}));
}

void DocumentActionsTest::everyOrderOfDestruction_data()
{
    QTest::addColumn<int>("windows");
    QTest::addColumn<bool>("isCurrent");
    QTest::newRow("one window, current") << 1 << true;
    QTest::newRow("one window, leaving") << 1 << false;
    QTest::newRow("two windows, current") << 2 << true;
    QTest::newRow("two windows, leaving") << 2 << false;
}

void DocumentActionsTest::everyOrderOfDestruction()
{
    QFETCH(int, windows);
    QFETCH(bool, isCurrent);
    std::array<int, 5> order{0, 1, 2, 3, 4};
    do {
        std::unique_ptr<HostWindow> other;
        if (windows == 2)
            other = std::make_unique<HostWindow>(All);
        HostWindow window(All);
        auto first = std::make_unique<DocumentActions>(QString(), window.managers());
        // Outlives them all.
        DocumentActions second(QString(), window.managers());
        for (DocumentActions* actions : {first.get(), &second}) {
            actions->add(Copy, [] {});
            actions->addExclusive({Left, Right}, Left, [](const QString& /*id*/) {});
            actions->setCurrent(true);
        }
        if (!isCurrent)
            first->setCurrent(false);
        const std::array<std::function<void()>, 5> steps{[&] { first.reset(); },
            [&] { window.proxies.clear(); }, [&] { window.actions.reset(); },
            [&] { window.contexts.reset(); }, [&] { window.until.reset(); }};
        for (const int step : order)
            steps.at(size_t(step))();
        if (other) {
            DocumentActions actions(QString(), other->managers());
            actions.add(Copy, [] {});
            actions.setCurrent(true);
            QVERIFY((*other)[Copy]->isEnabled());
        }
    } while (std::next_permutation(order.begin(), order.end()));
    m_recorder->clear();
}

void DocumentActionsTest::documentMayGoInItsReaction()
{
    HostWindow window(All);
    auto actions = std::make_unique<DocumentActions>(QString(), window.managers());
    actions->add(Copy, [&] { actions.reset(); });
    actions->setCurrent(true);
    window[Copy]->trigger();
    QVERIFY(!actions);
    QVERIFY(!window[Copy]->isEnabled());
}

QTEST_MAIN(DocumentActionsTest)
#include "tst_document_actions.moc"
