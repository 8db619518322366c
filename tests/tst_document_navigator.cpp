// SPDX-License-Identifier: MIT
#include "zentu_host.h"

#include "host_window.h"
#include "recorder.h"

#include <QCloseEvent>
#include <QMainWindow>
#include <QMenu>
#include <QPixmap>
#include <QTabBar>
#include <QTest>

#include <algorithm>
#include <array>
#include <functional>
#include <memory>

using namespace Support;
using namespace Zentu;
using Navigator = DocumentNavigator;

namespace {

/// A document that may refuse to be closed, and counts how often it was asked.
class Document : public IMdiSubWindow
{
public:
    explicit Document(const QString& title)
    {
        setWidget(new QWidget);
        setShortTitle(title);
    }

    bool refuses = false;
    int asked = 0;

protected:
    void closeEvent(QCloseEvent* event) override
    {
        ++asked;
        if (refuses)
            event->ignore();
        else
            IMdiSubWindow::closeEvent(event);
    }
};

QString titles(const QList<IMdiSubWindow*>& documents)
{
    QString text;
    for (const IMdiSubWindow* document : documents)
        text += document->shortTitle();
    return text;
}

QString titles(const QList<QAction*>& actions)
{
    QStringList texts;
    for (const QAction* action : actions) {
        const QString text = action->isSeparator() ? QStringLiteral("-") : action->text();
        texts.append(action->isChecked() ? QLatin1Char('*') + text : text);
    }
    return texts.join(QLatin1Char('|'));
}

} // namespace

class DocumentNavigatorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void tabsAreWalkedInTheirOrder();
    void documentsAreWalkedInTheOrderOfUse();
    void walkEndsWhereItCame();
    void nothingHappensWithoutDocuments();
    void closeAllStopsAtTheFirstRefusal();
    void questionIsAskedOnceAndFirst();
    void questionMayCloseDocumentsItself();
    void othersAreClosed();
    void actionsFollowTheDocuments();
    void actionsAreBackendsOfProxies();
    void windowMenuHasEverything();
    void listKeepsItsPlace();
    void listSaysWhatTheTabsSay();
    void listOutlivesWhatItStoodFor();
    void deadDocumentIsNotTouched();
    void areasAreApart();
    void nothingHappensWithoutAnArea();
    void everyOrderOfDestruction();

private:
    Document* open(const QString& title)
    {
        auto* const document = new Document(title);
        m_area->addWindow(document);
        return document;
    }
    QTabBar* tabs() const { return m_area->findChild<QTabBar*>(); }
    QString current() const
    {
        const IMdiSubWindow* const document = m_area->currentSubWindow();
        return document ? document->shortTitle() : QString();
    }

    std::unique_ptr<Recorder> m_recorder;
    std::unique_ptr<MdiArea> m_area;
    DocumentNavigator* m_navigator = nullptr;
};

void DocumentNavigatorTest::init()
{
    m_recorder = std::make_unique<Recorder>();
    m_area = std::make_unique<MdiArea>();
    m_navigator = new DocumentNavigator(m_area.get());
    m_area->show();
}

void DocumentNavigatorTest::cleanup()
{
    m_area.reset();
    QCOMPARE(surprises(*m_recorder), QStringList());
    m_recorder.reset();
}

void DocumentNavigatorTest::tabsAreWalkedInTheirOrder()
{
    for (const char title : {'a', 'b', 'c', 'd'})
        open(QString(QLatin1Char(title)));
    tabs()->moveTab(0, 2);
    QCOMPARE(titles(m_navigator->documents()), QStringLiteral("bcad"));
    QString seen;
    for (int step = 0; step < 5; ++step) {
        m_navigator->activateNext();
        seen += current();
    }
    QCOMPARE(seen, QStringLiteral("bcadb"));
    for (int step = 0; step < 2; ++step) {
        m_navigator->activatePrevious();
        seen += current();
    }
    QCOMPARE(seen, QStringLiteral("bcadbda"));
}

void DocumentNavigatorTest::documentsAreWalkedInTheOrderOfUse()
{
    for (const char title : {'a', 'b', 'c'})
        open(QString(QLatin1Char(title)));
    m_area->setCurrentSubWindow(m_navigator->documents().at(0));
    QCOMPARE(titles(m_navigator->documentsByUse()), QStringLiteral("acb"));
    QString seen;
    for (int step = 0; step < 4; ++step) {
        m_navigator->activatePreviousUsed();
        seen += current();
    }
    QCOMPARE(seen, QStringLiteral("cbac"));
    QCOMPARE(titles(m_navigator->documentsByUse()), QStringLiteral("acb"));
    m_navigator->activateNextUsed();
    QCOMPARE(current(), QStringLiteral("a"));
}

void DocumentNavigatorTest::walkEndsWhereItCame()
{
    for (const char title : {'a', 'b', 'c', 'd'})
        open(QString(QLatin1Char(title)));
    m_navigator->activatePreviousUsed();
    m_navigator->activatePreviousUsed();
    QCOMPARE(current(), QStringLiteral("b"));
    // Chosen by the user: it and the one before it are the last used now.
    m_area->setCurrentSubWindow(m_navigator->documents().at(0));
    QCOMPARE(titles(m_navigator->documentsByUse()), QStringLiteral("abdc"));
    m_area->currentSubWindow()->close();
    QTRY_COMPARE(titles(m_navigator->documentsByUse()).size(), 3);
}

void DocumentNavigatorTest::nothingHappensWithoutDocuments()
{
    m_navigator->activateNext();
    m_navigator->activatePreviousUsed();
    for (int command = 0; command < Navigator::CommandCount; ++command)
        m_navigator->action(Navigator::Command(command))->trigger();
    m_navigator->askBeforeClosing = [](const QList<IMdiSubWindow*>& /*documents*/) {
        QTest::qFail("asked", __FILE__, __LINE__);
        return false;
    };
    QVERIFY(m_navigator->closeAll());
    QVERIFY(m_navigator->closeOthers());
    QVERIFY(m_navigator->documents().isEmpty());
}

void DocumentNavigatorTest::closeAllStopsAtTheFirstRefusal()
{
    open(QStringLiteral("a"));
    Document* const b = open(QStringLiteral("b"));
    const Document* const c = open(QStringLiteral("c"));
    b->refuses = true;
    QVERIFY(!m_navigator->closeAll());
    QCOMPARE(titles(m_navigator->documents()), QStringLiteral("bc"));
    QCOMPARE(c->asked, 0);
    b->refuses = false;
    QVERIFY(m_navigator->closeAll());
    QVERIFY(m_navigator->documents().isEmpty());
}

void DocumentNavigatorTest::questionIsAskedOnceAndFirst()
{
    for (const char title : {'a', 'b', 'c'})
        open(QString(QLatin1Char(title)));
    QStringList asked;
    bool answer = false;
    m_navigator->askBeforeClosing = [&](const QList<IMdiSubWindow*>& documents) {
        asked.append(titles(documents));
        return answer;
    };
    QVERIFY(!m_navigator->closeAll());
    QCOMPARE(titles(m_navigator->documents()), QStringLiteral("abc"));
    answer = true;
    QVERIFY(m_navigator->closeAll());
    QCOMPARE(asked, QStringList({QStringLiteral("abc"), QStringLiteral("abc")}));
    QVERIFY(m_navigator->documents().isEmpty());
}

void DocumentNavigatorTest::questionMayCloseDocumentsItself()
{
    for (const char title : {'a', 'b', 'c'})
        open(QString(QLatin1Char(title)));
    m_navigator->askBeforeClosing = [](const QList<IMdiSubWindow*>& documents) {
        documents.first()->close();
        delete documents.last();
        return true;
    };
    QVERIFY(m_navigator->closeAll());
    QVERIFY(m_navigator->documents().isEmpty());
}

void DocumentNavigatorTest::othersAreClosed()
{
    for (const char title : {'a', 'b', 'c'})
        open(QString(QLatin1Char(title)));
    QVERIFY(m_navigator->closeOthers(m_navigator->documents().at(1)));
    QCOMPARE(titles(m_navigator->documents()), QStringLiteral("b"));
    open(QStringLiteral("d"));
    QVERIFY(m_navigator->closeOthers());
    QCOMPARE(titles(m_navigator->documents()), QStringLiteral("d"));
}

void DocumentNavigatorTest::actionsFollowTheDocuments()
{
    const auto enabled = [this] {
        QString text;
        for (int command = 0; command < Navigator::CommandCount; ++command)
            text += QLatin1Char(
                m_navigator->action(Navigator::Command(command))->isEnabled() ? '1' : '0');
        return text;
    };
    QCOMPARE(enabled(), QStringLiteral("000000000"));
    Document* const a = open(QStringLiteral("a"));
    QCOMPARE(enabled(), QStringLiteral("110110000"));
    open(QStringLiteral("b"));
    QCOMPARE(enabled(), QStringLiteral("111111111"));
    // Not the current one.
    a->close();
    QCOMPARE(enabled(), QStringLiteral("110110000"));
    m_navigator->action(Navigator::Close)->trigger();
    QCOMPARE(enabled(), QStringLiteral("000000000"));
}

void DocumentNavigatorTest::actionsAreBackendsOfProxies()
{
    const QString next = QStringLiteral("window.next");
    HostWindow window({next});
    DocumentActions always(QStringLiteral("always"), window.managers());
    always.add(next, m_navigator->action(Navigator::Next));
    always.setCurrent(true);
    QVERIFY(!window[next]->isEnabled());
    open(QStringLiteral("a"));
    open(QStringLiteral("b"));
    QVERIFY(window[next]->isEnabled());
    QCOMPARE(window[next]->shortcuts(), QKeySequence::keyBindings(QKeySequence::NextChild));
    window[next]->trigger();
    QCOMPARE(current(), QStringLiteral("a"));
    m_area.reset();
    QVERIFY(!window[next]->isEnabled());
}

void DocumentNavigatorTest::windowMenuHasEverything()
{
    QMenu menu;
    m_navigator->fillMenu(&menu);
    open(QStringLiteral("a"));
    open(QStringLiteral("b"));
    Q_EMIT menu.aboutToShow();
    QCOMPARE(titles(menu.actions()),
        QStringLiteral("Cl&ose|Close Ot&hers|Close &All|-|&Tile|&Cascade|-|Ne&xt|Pre&vious|"
                       "&Back in Use|&Forward in Use|-|&1 a|*&2 b|-"));
    menu.actions().at(12)->trigger();
    QCOMPARE(current(), QStringLiteral("a"));
}

void DocumentNavigatorTest::listKeepsItsPlace()
{
    QMenu menu;
    menu.addAction(QStringLiteral("before"));
    m_navigator->addDocumentList(&menu);
    menu.addAction(QStringLiteral("after"));
    open(QStringLiteral("a"));
    for (int time = 0; time < 2; ++time) {
        Q_EMIT menu.aboutToShow();
        QCOMPARE(titles(menu.actions()), QStringLiteral("before|*&1 a|-|after"));
    }
}

void DocumentNavigatorTest::listSaysWhatTheTabsSay()
{
    QMenu menu;
    for (int number = 1; number < 10; ++number)
        open(QStringLiteral("R&D"));
    Document* const last = open(QStringLiteral("last[*]"));
    last->setWindowModified(true);
    QPixmap pixmap(16, 16);
    pixmap.fill(Qt::red);
    last->setWindowIcon(QIcon(pixmap));
    tabs()->moveTab(9, 0);
    m_navigator->addDocumentList(&menu);
    QCOMPARE(titles(menu.actions().mid(0, 2)), QStringLiteral("*&1 last*|&2 R&&D"));
    QCOMPARE(menu.actions().first()->icon().cacheKey(), last->windowIcon().cacheKey());
    last->setWindowModified(false);
    tabs()->moveTab(0, 9);
    Q_EMIT menu.aboutToShow();
    QCOMPARE(menu.actions().at(9)->text(), QStringLiteral("10 last"));
}

void DocumentNavigatorTest::listOutlivesWhatItStoodFor()
{
    QMenu menu;
    const Document* const a = open(QStringLiteral("a"));
    open(QStringLiteral("b"));
    m_navigator->addDocumentList(&menu);
    delete a;
    menu.actions().first()->trigger();
    QCOMPARE(current(), QStringLiteral("b"));
    menu.clear();
    Q_EMIT menu.aboutToShow();
    QVERIFY(menu.isEmpty());
    m_navigator->addDocumentList(&menu);
    m_area.reset();
    Q_EMIT menu.aboutToShow();
    menu.actions().first()->trigger();
}

void DocumentNavigatorTest::deadDocumentIsNotTouched()
{
    const Document* const a = open(QStringLiteral("a"));
    open(QStringLiteral("b"));
    open(QStringLiteral("c"));
    delete a;
    QCOMPARE(tabs()->count(), 3);
    QCOMPARE(titles(m_navigator->documents()), QStringLiteral("bc"));
    m_navigator->activateNext();
    QCOMPARE(current(), QStringLiteral("b"));
    QVERIFY(m_navigator->closeAll());
}

void DocumentNavigatorTest::areasAreApart()
{
    MdiArea other;
    DocumentNavigator inOther(&other);
    other.show();
    open(QStringLiteral("a"));
    QVERIFY(inOther.documents().isEmpty());
    QVERIFY(!inOther.action(Navigator::Close)->isEnabled());
    other.addWindow(new Document(QStringLiteral("x")));
    other.addWindow(new Document(QStringLiteral("y")));
    QVERIFY(inOther.closeAll());
    QCOMPARE(titles(m_navigator->documents()), QStringLiteral("a"));
}

void DocumentNavigatorTest::nothingHappensWithoutAnArea()
{
    QObject owner;
    auto* const navigator = new DocumentNavigator(m_area.get(), &owner);
    open(QStringLiteral("a"));
    m_area.reset();
    for (int number = 0; number < Navigator::CommandCount; ++number) {
        QAction* const command = navigator->action(Navigator::Command(number));
        QVERIFY(!command->isEnabled());
        command->setEnabled(true);
        command->trigger();
    }
    QVERIFY(navigator->documents().isEmpty());
    QVERIFY(navigator->closeOthers());
}

void DocumentNavigatorTest::everyOrderOfDestruction()
{
    std::array<int, 4> order{0, 1, 2, 3};
    do {
        auto area = std::make_unique<MdiArea>();
        auto menu = std::make_unique<QMenu>();
        auto owner = std::make_unique<QObject>();
        auto navigator = new DocumentNavigator(area.get(), owner.get());
        navigator->fillMenu(menu.get());
        area->show();
        QPointer<Document> document = new Document(QStringLiteral("a"));
        area->addWindow(document);
        area->addWindow(new Document(QStringLiteral("b")));
        Q_EMIT menu->aboutToShow();
        const std::array<std::function<void()>, 4> steps{[&] { area.reset(); },
            [&] { menu.reset(); }, [&] { owner.reset(); }, [&] { delete document; }};
        for (const int step : order) {
            steps.at(size_t(step))();
            if (menu)
                Q_EMIT menu->aboutToShow();
        }
    } while (std::next_permutation(order.begin(), order.end()));
}

QTEST_MAIN(DocumentNavigatorTest)
#include "tst_document_navigator.moc"
