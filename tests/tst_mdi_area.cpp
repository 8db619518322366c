// SPDX-License-Identifier: MIT
#include "mdi_area.h"
#include "mdi_area_p.h"

#include "recorder.h"

#include <QApplication>
#include <QCloseEvent>
#include <QCoreApplication>
#include <QEventLoop>
#include <QMdiArea>
#include <QMenu>
#include <QMetaMethod>
#include <QPointer>
#include <QRegularExpression>
#include <QSignalSpy>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include <cstddef>
#include <cstring>
#include <functional>
#include <memory>
#include <utility>

using namespace Support;
using namespace Zentu;

namespace {

/// A document that notes what the area tells it.
class Document : public IMdiSubWindow
{
public:
    explicit Document(const QString& title, QStringList* log = nullptr)
        : m_log(log)
    {
        setWidget(new QWidget);
        setShortTitle(title);
    }

    void currentChanged(bool current) override
    {
        if (m_log)
            log(current);
        if (const auto call = std::exchange(current ? onCurrent : onNotCurrent, {}))
            call();
    }

    bool refuses = false;
    // Called once.
    std::function<void()> onCurrent;
    std::function<void()> onNotCurrent;
    QList<QEvent::Type> seen;
    std::function<void()> onParentChange;
    std::function<void()> onConnected;
    std::function<void()> onDisconnected;

protected:
    void connectNotify(const QMetaMethod& signal) override
    {
        if (onConnected && signal == QMetaMethod::fromSignal(&IMdiSubWindow::closed))
            onConnected();
    }

    void disconnectNotify(const QMetaMethod& /*signal*/) override
    {
        if (onDisconnected)
            onDisconnected();
    }

    bool event(QEvent* event) override
    {
        if (event->type() == QEvent::WindowTitleChange || event->type() == QEvent::WindowIconChange)
            seen.append(event->type());
        if (event->type() == QEvent::ParentChange && onParentChange)
            onParentChange();
        return IMdiSubWindow::event(event);
    }

    void closeEvent(QCloseEvent* event) override
    {
        if (refuses)
            event->ignore();
        else
            IMdiSubWindow::closeEvent(event);
    }

private:
    void log(bool current)
    {
        const MdiArea* area = ownerArea();
        const auto* tabs = area ? area->findChild<QTabBar*>() : nullptr;
        m_log->append(
            QStringLiteral("%1 %2, current %3, tab %4")
                .arg(shortTitle(), current ? QStringLiteral("on") : QStringLiteral("off"),
                    area && area->currentSubWindow() ? area->currentSubWindow()->shortTitle()
                                                     : QStringLiteral("none"))
                .arg(tabs ? tabs->currentIndex() : -2));
    }

    QStringList* m_log;
};

/// A document that accepts its close by itself, so that nobody hears of it.
class SilentlyClosing : public IMdiSubWindow
{
protected:
    void closeEvent(QCloseEvent* event) override { event->accept(); }
};

/// A document that is created where the last one was.
class AtOneAddress : public Document
{
public:
    using Document::Document;

    static void* operator new(std::size_t /*size*/) { return s_storage; }
    static void operator delete(void* /*storage*/) { }

private:
    static char s_storage[];
};
alignas(std::max_align_t) char AtOneAddress::s_storage[sizeof(AtOneAddress)];

/// A document that asks in its end where it is.
class AskingInItsEnd : public IMdiSubWindow
{
public:
    explicit AskingInItsEnd(QList<MdiArea*>* answers)
        : m_answers(answers)
    {
    }
    ~AskingInItsEnd() override { m_answers->append(ownerArea()); }

private:
    QList<MdiArea*>* m_answers;
};

} // namespace

class MdiAreaTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void hasOneSignalAndOneField();
    void isBuiltOfAnAreaAboveATabBar();
    void documentIsAddedWithItsTab();
    void secondAdditionIsRefused();
    void firstDocumentIsMaximized();
    void removalLeavesTheDocumentAlive();
    void foreignDocumentIsNotRemoved();
    void foreignDocumentIsNotMadeCurrent();
    void activationOfNothingIsTracedOnly();
    void activationIsTracedAndToldOnce();
    void changeOfTheCurrentDocumentHasItsOrder();
    void titlesReachTheTab();
    void iconReachesTheTab();
    void removedDocumentsTitlesDoNotReachTabs();
    void clickOnATabActivates();
    void closeButtonClosesWhatAccepts();
    void closedDocumentsTabGoesWithTheSignal();
    void closeWindowOnlyCloses();
    void menuOpensOnATabOnly();
    void signalsAboutNoTabDoNothing();
    void draggedTabsKeepTheirDocuments();
    void listKeepsForeignWindowsAsNull();
    void tabSignalsDoNotFeedBack();
    void tabBarIsHeardOnceAfterEachChange();
    void tabBarIsNotHeardWhileTheAreaChangesIt();
    void deletedDocumentLeavesItsTab();
    void deadDocumentIsNotCalled_data();
    void deadDocumentIsNotCalled();
    void documentAtTheAddressOfADeadOneIsTold();
    void tabOfADeadDocumentCallsNobody();
    void innermostActivationHolds_data();
    void innermostActivationHolds();
    void documentThatComesBackWhileItIsLeftIsToldOnly();
    void documentThatIsLeftMayEmptyTheArea();
    void hiddenAreaTellsTheDocumentThatIsLeftOnce();
    void dyingAreaOwnsNoDocument();
    void windowsAreCascadedAndTiled();
    void areaDiesWithItsDocuments();
    void connectionsAreThoseOfTheSignatures();
    void privateObjectHasFiveSlots();
    void whatIsNoDocumentIsLeftAlone();
    void documentSeesWhatTheAreaSees();
    void tabIsThereBeforeTheSubWindow();
    void titleIsFollowedBeforeTheCloseIsHeard();
    void titleIsNotFollowedWhenTheCloseIsNotHeardAnyMore();
    void removedDocumentIsReleasedBeforeItLeavesTheInnerArea();
    void removalAndCloseHaveTheirOrder();
    void documentThatLeavesIsReachedByItsTab();
    void documentThatLeftIsNotConnected();
    void foreignWindowThatBecomesCurrentIsNone();
    void firstTabActivatesNothing();
    void firstDocumentBesideAForeignWindowIsNotMaximized();

private:
    Document* add(const char* title)
    {
        auto* document = new Document(QString::fromLatin1(title), &m_log);
        m_area->addWindow(document);
        return document;
    }

    QString area() const { return printed(static_cast<const QWidget*>(m_area.get())); }

    static QString window(const IMdiSubWindow* document)
    {
        QString text;
        QDebug(&text) << document;
        return text.trimmed();
    }

    /// How often each signal of the tab bar that the area hears is connected.
    QList<int> tabConnections() const
    {
        struct Open : QTabBar
        {
            using QTabBar::receivers;
        };
        constexpr auto receivers = &Open::receivers;
        return {(m_tabs->*receivers)(SIGNAL(currentChanged(int))),
            (m_tabs->*receivers)(SIGNAL(tabCloseRequested(int))),
            (m_tabs->*receivers)(SIGNAL(customContextMenuRequested(QPoint)))};
    }

    QString firstTabAfterRetitling(Document* document) const
    {
        document->setShortTitle(QStringLiteral("retitled"));
        return m_tabs->tabText(0);
    }

    QPoint centre(int tab) const { return m_tabs->tabRect(tab).center(); }

    std::unique_ptr<MdiArea> m_area;
    QMdiArea* m_inner = nullptr;
    QTabBar* m_tabs = nullptr;
    QStringList m_log;
};

void MdiAreaTest::init()
{
    m_area = std::make_unique<MdiArea>();
    // Widgets and objects are printed alike but for the name.
    m_area->setObjectName(QStringLiteral("area"));
    m_area->resize(600, 400);
    m_inner = m_area->findChild<QMdiArea*>(QString(), Qt::FindDirectChildrenOnly);
    m_tabs = m_area->findChild<QTabBar*>(QString(), Qt::FindDirectChildrenOnly);
    QVERIFY(m_inner && m_tabs);
    m_area->show();
    QVERIFY(QTest::qWaitForWindowActive(m_area.get()));
    m_log.clear();
}

void MdiAreaTest::cleanup()
{
    m_area.reset();
}

void MdiAreaTest::hasOneSignalAndOneField()
{
    const QMetaObject& meta = MdiArea::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::MdiArea");
    QCOMPARE(meta.superClass(), &QWidget::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 1);
    const QMetaMethod signal = meta.method(meta.methodOffset());
    QCOMPARE(signal.methodSignature(), QByteArray("currentSubWindowChanged(IMdiSubWindow*)"));
    QCOMPARE(signal.methodType(), QMetaMethod::Signal);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(MdiArea), sizeof(QWidget) + sizeof(void*));
}

void MdiAreaTest::isBuiltOfAnAreaAboveATabBar()
{
    QCOMPARE(m_inner->viewMode(), QMdiArea::SubWindowView);
    QCOMPARE(m_inner->activationOrder(), QMdiArea::ActivationHistoryOrder);
    QCOMPARE(m_inner->horizontalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QCOMPARE(m_inner->verticalScrollBarPolicy(), Qt::ScrollBarAsNeeded);
    QVERIFY(m_tabs->isMovable());
    QVERIFY(m_tabs->tabsClosable());
    QCOMPARE(m_tabs->shape(), QTabBar::RoundedSouth);
    QCOMPARE(m_tabs->contextMenuPolicy(), Qt::CustomContextMenu);
    const auto* layout = qobject_cast<QVBoxLayout*>(m_area->layout());
    QVERIFY(layout);
    QCOMPARE(layout->contentsMargins(), QMargins());
    QCOMPARE(layout->spacing(), 0);
    QCOMPARE(layout->count(), 2);
    QCOMPARE(layout->itemAt(0)->widget(), m_inner);
    QCOMPARE(layout->itemAt(1)->widget(), m_tabs);
    QCOMPARE(layout->stretch(0), 0);
    QCOMPARE(layout->itemAt(0)->alignment(), Qt::Alignment());
    QVERIFY(!m_area->currentSubWindow());
    QVERIFY(m_area->subWindows().isEmpty());
    QWidget parent;
    QCOMPARE((new MdiArea(&parent))->parent(), &parent);
}

void MdiAreaTest::documentIsAddedWithItsTab()
{
    auto* document = new Document(QStringLiteral("short"));
    document->setWindowTitle(QStringLiteral("long"));
    QPixmap pixmap(8, 8);
    pixmap.fill(Qt::red);
    document->setWindowIcon(QIcon(pixmap));
    Recorder recorder;
    bool insideAtTheLine = true;
    recorder.onEntry([&](const Entry& entry) {
        if (entry.channel == Channel::Info && entry.text.contains(QLatin1String(" add view ")))
            insideAtTheLine = m_tabs->count() > 0 || document->ownerArea();
    });
    m_area->addWindow(document);
    recorder.onEntry({});
    QVERIFY(!insideAtTheLine);
    QCOMPARE(
        recorder.take().first(), info(area() + QLatin1String(" add view ") + window(document)));
    QCOMPARE(m_tabs->count(), 1);
    QCOMPARE(m_tabs->tabText(0), QStringLiteral("short"));
    QCOMPARE(m_tabs->tabToolTip(0), QStringLiteral("long"));
    QCOMPARE(m_tabs->tabIcon(0).cacheKey(), document->windowIcon().cacheKey());
    QCOMPARE(m_tabs->tabData(0).userType(), static_cast<int>(QMetaType::VoidStar));
    QCOMPARE(m_tabs->tabData(0).value<void*>(), static_cast<void*>(document));
    QCOMPARE(document->ownerArea(), m_area.get());
    QVERIFY(document->isVisible());
    QCOMPARE(m_area->subWindows(), QList<IMdiSubWindow*>({document}));
    QTRY_COMPARE(m_area->currentSubWindow(), document);
}

void MdiAreaTest::secondAdditionIsRefused()
{
    Document* const document = add("a");
    Recorder recorder;
    m_area->addWindow(document);
    QCOMPARE(recorder.take(),
        QStringList(warning(area() + QLatin1String(" add view: ") + window(document)
            + QLatin1String(" already added"))));
    QCOMPARE(m_tabs->count(), 1);
}

void MdiAreaTest::firstDocumentIsMaximized()
{
    Document* const first = add("a");
    QVERIFY(first->isMaximized());
    first->showNormal();
    Document* const second = add("b");
    QVERIFY(!second->isMaximized());
    m_area->removeWindow(first);
    m_area->removeWindow(second);
    delete first;
    delete second;
    QVERIFY(add("c")->isMaximized());
}

void MdiAreaTest::removalLeavesTheDocumentAlive()
{
    Document* const a = add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    Recorder recorder;
    bool insideAtTheLine = false;
    recorder.onEntry([&](const Entry& entry) {
        if (entry.text.contains(QLatin1String(" remove view: ")))
            insideAtTheLine = m_tabs->count() == 2 && b->ownerArea();
    });
    m_area->removeWindow(b);
    recorder.onEntry({});
    QVERIFY(insideAtTheLine);
    QCOMPARE(recorder.take().first(), info(area() + QLatin1String(" remove view: ") + window(b)));
    QVERIFY(!b->ownerArea());
    QVERIFY(!b->parent());
    QCOMPARE(m_tabs->count(), 1);
    QCOMPARE(m_tabs->tabText(0), QStringLiteral("a"));
    QCOMPARE(m_area->subWindows(), QList<IMdiSubWindow*>({a}));
    b->setAttribute(Qt::WA_DeleteOnClose, false);
    b->close();
    QCOMPARE(m_tabs->count(), 1);
    delete b;
}

void MdiAreaTest::foreignDocumentIsNotRemoved()
{
    Document foreign(QStringLiteral("foreign"));
    add("a");
    Recorder recorder;
    m_area->removeWindow(&foreign);
    QCOMPARE(recorder.take(),
        QStringList(warning(area() + QLatin1String(" remove view: ") + window(&foreign)
            + QLatin1String(" not belong to this area"))));
    QCOMPARE(m_tabs->count(), 1);
}

void MdiAreaTest::foreignDocumentIsNotMadeCurrent()
{
    Document foreign(QStringLiteral("foreign"));
    Document* const a = add("a");
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    Recorder recorder;
    m_area->setCurrentSubWindow(&foreign);
    m_area->setCurrentSubWindow(nullptr);
    QCOMPARE(recorder.take(),
        QStringList({warning(area() + QLatin1String(" set current window: ") + window(&foreign)
                         + QLatin1String(" not belong to this area")),
            warning(area()
                + QLatin1String(" set current window: MdiWindow(0x0) not belong "
                                "to this area"))}));
    QCOMPARE(m_area->currentSubWindow(), a);
}

void MdiAreaTest::activationOfNothingIsTracedOnly()
{
    const QSignalSpy changed(m_area.get(), &MdiArea::currentSubWindowChanged);
    Recorder recorder;
    QVERIFY(
        QMetaObject::invokeMethod(m_inner, "subWindowActivated", Q_ARG(QMdiSubWindow*, nullptr)));
    QCOMPARE(recorder.take(),
        QStringList(trace(area() + QLatin1String(" active window: MdiWindow(0x0) "))));
    QVERIFY(changed.isEmpty());
}

void MdiAreaTest::activationIsTracedAndToldOnce()
{
    Document* const a = add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    QSignalSpy changed(m_area.get(), &MdiArea::currentSubWindowChanged);
    Recorder recorder;
    m_area->setCurrentSubWindow(a);
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    QCOMPARE(changed.count(), 1);
    QStringList lines = recorder.take();
    QVERIFY(lines.contains(
        trace(area() + QLatin1String(" active window: ") + window(a) + QLatin1Char(' '))));
    const QString told = info(area() + QLatin1String(" current window changed: ") + window(a));
    QCOMPARE(lines.count(told), 1);
    QVERIFY(lines.indexOf(told) > 0);

    // The same document again: a line, and nothing else.
    m_log.clear();
    QVERIFY(QMetaObject::invokeMethod(m_inner, "subWindowActivated", Q_ARG(QMdiSubWindow*, a)));
    QCOMPARE(recorder.take(),
        QStringList(
            trace(area() + QLatin1String(" active window: ") + window(a) + QLatin1Char(' '))));
    // What counts is the inner area's current window, not the one that is named.
    QVERIFY(QMetaObject::invokeMethod(m_inner, "subWindowActivated", Q_ARG(QMdiSubWindow*, b)));
    QVERIFY(
        QMetaObject::invokeMethod(m_inner, "subWindowActivated", Q_ARG(QMdiSubWindow*, nullptr)));
    QCOMPARE(
        recorder.take().last(), trace(area() + QLatin1String(" active window: MdiWindow(0x0) ")));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_log, QStringList());
    QCOMPARE(m_area->currentSubWindow(), a);
}

void MdiAreaTest::changeOfTheCurrentDocumentHasItsOrder()
{
    Document* const a = add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    QTRY_COMPARE(m_tabs->currentIndex(), 1);
    m_log.clear();
    connect(m_area.get(), &MdiArea::currentSubWindowChanged, this, [&](IMdiSubWindow* current) {
        m_log.append(QStringLiteral("signal %1, current %2, tab %3")
                         .arg(current ? current->shortTitle() : QStringLiteral("none"),
                             m_area->currentSubWindow() ? m_area->currentSubWindow()->shortTitle()
                                                        : QStringLiteral("none"))
                         .arg(m_tabs->currentIndex()));
    });
    Recorder recorder;
    QString currentAtTheLine;
    recorder.onEntry([&](const Entry& entry) {
        if (entry.channel == Channel::Info)
            currentAtTheLine = m_area->currentSubWindow()->shortTitle();
    });
    m_area->setCurrentSubWindow(a);
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    recorder.onEntry({});
    QCOMPARE(currentAtTheLine, QStringLiteral("b"));
    QCOMPARE(m_log,
        QStringList(
            {QStringLiteral("b off, current b, tab 1"), QStringLiteral("a on, current a, tab 1"),
                QStringLiteral("signal a, current a, tab 0")}));
}

void MdiAreaTest::titlesReachTheTab()
{
    add("first");
    Document* const document = add("short");
    document->setWindowTitle(QStringLiteral("title"));
    QCOMPARE(m_tabs->tabText(1), QStringLiteral("short"));
    QCOMPARE(m_tabs->tabToolTip(1), QStringLiteral("title"));
    document->setShortTitle(QStringLiteral("shorter"));
    QCOMPARE(m_tabs->tabText(1), QStringLiteral("shorter"));
    document->setShortTitle(QString());
    QCOMPARE(m_tabs->tabText(1), QStringLiteral("title"));
    document->setWindowTitle(QStringLiteral("other"));
    QCOMPARE(m_tabs->tabText(1), QStringLiteral("other"));
    QCOMPARE(m_tabs->tabToolTip(1), QStringLiteral("other"));
    QCOMPARE(m_tabs->tabText(0), QStringLiteral("first"));
}

void MdiAreaTest::iconReachesTheTab()
{
    add("first");
    Document* const document = add("a");
    QPixmap pixmap(8, 8);
    pixmap.fill(Qt::blue);
    document->setWindowIcon(QIcon(pixmap));
    QCOMPARE(m_tabs->tabIcon(1).cacheKey(), document->windowIcon().cacheKey());
    QVERIFY(m_tabs->tabIcon(0).cacheKey() != m_tabs->tabIcon(1).cacheKey());
    // Only when it changes.
    m_tabs->setTabIcon(1, QIcon());
    QEvent other(QEvent::User);
    QCoreApplication::sendEvent(document, &other);
    QVERIFY(m_tabs->tabIcon(1).isNull());
}

void MdiAreaTest::removedDocumentsTitlesDoNotReachTabs()
{
    add("a");
    Document* const b = add("b");
    m_area->removeWindow(b);
    b->setShortTitle(QStringLiteral("changed"));
    QCOMPARE(m_tabs->tabText(0), QStringLiteral("a"));
    // It is not even looked for: a tab that happens to have it stays as it is.
    const int tab = m_tabs->addTab(QStringLiteral("other"));
    m_tabs->setTabData(tab, QVariant::fromValue(static_cast<void*>(b)));
    b->setShortTitle(QStringLiteral("changed again"));
    QCOMPARE(m_tabs->tabText(tab), QStringLiteral("other"));
    m_tabs->removeTab(tab);
    delete b;
}

void MdiAreaTest::clickOnATabActivates()
{
    Document* const a = add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    QSignalSpy changed(m_area.get(), &MdiArea::currentSubWindowChanged);
    QTest::mouseClick(m_tabs, Qt::LeftButton, Qt::NoModifier, centre(0));
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    QCOMPARE(m_inner->currentSubWindow(), a);
    QTest::mouseClick(m_tabs, Qt::LeftButton, Qt::NoModifier, centre(0));
    QCOMPARE(changed.count(), 1);
    QTest::mouseClick(m_tabs, Qt::LeftButton, Qt::NoModifier, centre(1));
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    QCOMPARE(changed.count(), 2);
}

void MdiAreaTest::closeButtonClosesWhatAccepts()
{
    QPointer<Document> a = add("a");
    QPointer<Document> b = add("b");
    const auto press = [&](int tab) {
        QWidget* button = m_tabs->tabButton(tab, QTabBar::RightSide);
        if (!button)
            button = m_tabs->tabButton(tab, QTabBar::LeftSide);
        QTest::mouseClick(button, Qt::LeftButton);
    };
    a->refuses = true;
    press(0);
    QCOMPARE(m_tabs->count(), 2);
    QVERIFY(a);
    QCOMPARE(a->ownerArea(), m_area.get());
    a->refuses = false;
    press(0);
    QCOMPARE(m_tabs->count(), 1);
    QCOMPARE(m_tabs->tabText(0), QStringLiteral("b"));
    QTRY_VERIFY(!a);
    QCOMPARE(m_area->subWindows(), QList<IMdiSubWindow*>({b}));
    QTRY_COMPARE(m_area->currentSubWindow(), b);
}

void MdiAreaTest::closedDocumentsTabGoesWithTheSignal()
{
    Document* const a = add("a");
    add("b");
    int tabsAtTheLine = 0;
    int tabsAtTheSignal = 0;
    bool ownedAtTheSignal = true;
    connect(a, &IMdiSubWindow::closed, this, [&] {
        tabsAtTheSignal = m_tabs->count();
        ownedAtTheSignal = a->ownerArea();
    });
    Recorder recorder;
    recorder.onEntry([&](const Entry& entry) {
        if (entry.text.endsWith(QLatin1String(" closed")))
            tabsAtTheLine = m_tabs->count();
    });
    a->close();
    recorder.onEntry({});
    QCOMPARE(tabsAtTheLine, 2);
    QCOMPARE(tabsAtTheSignal, 1);
    QVERIFY(!ownedAtTheSignal);
    // The area itself says nothing of it.
    for (const QString& line : recorder.take())
        QVERIFY2(!line.contains(QLatin1String("remove view")), qPrintable(line));
    a->setShortTitle(QStringLiteral("changed"));
    QCOMPARE(m_tabs->tabText(0), QStringLiteral("b"));
}

void MdiAreaTest::closeWindowOnlyCloses()
{
    Document foreign(QStringLiteral("foreign"));
    foreign.setAttribute(Qt::WA_DeleteOnClose, false);
    foreign.show();
    Document* const a = add("a");
    Recorder recorder;
    m_area->closeWindow(&foreign);
    QVERIFY(!foreign.isVisible());
    QCOMPARE(recorder.take().size(), 2);
    a->refuses = true;
    m_area->closeWindow(a);
    QVERIFY(recorder.isEmpty());
    QCOMPARE(m_tabs->count(), 1);
    a->refuses = false;
    m_area->closeWindow(a);
    QCOMPARE(m_tabs->count(), 0);
}

void MdiAreaTest::menuOpensOnATabOnly()
{
    add("a");
    Document* const b = add("b");
    // With room for the menu below the tabs.
    m_area->move(0, 0);
    m_area->resize(600, 300);
    QPoint where;
    bool isPreselected = true;
    QMenu* menu = nullptr;
    const auto watch = [&] {
        menu = nullptr;
        QTimer::singleShot(100, this, [&] {
            menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            if (menu) {
                where = menu->pos();
                isPreselected = menu->activeAction();
                menu->close();
            }
        });
    };
    const auto rightClick = [&](const QPoint& pos) {
        QContextMenuEvent event(QContextMenuEvent::Mouse, pos, m_tabs->mapToGlobal(pos));
        QApplication::sendEvent(m_tabs, &event);
    };
    watch();
    rightClick(centre(1));
    QCOMPARE(menu, b->systemMenu());
    QCOMPARE(where, m_tabs->mapToGlobal(centre(1)));
    QVERIFY(!isPreselected);

    m_tabs->setExpanding(false);
    m_tabs->resize(m_area->width(), m_tabs->height());
    const QPoint beside(m_tabs->width() - 2, m_tabs->height() / 2);
    QCOMPARE(m_tabs->tabAt(beside), -1);
    watch();
    rightClick(beside);
    bool waited = false;
    QTimer::singleShot(150, this, [&] { waited = true; });
    QTRY_VERIFY(waited);
    QVERIFY(!menu);
}

void MdiAreaTest::signalsAboutNoTabDoNothing()
{
    add("a");
    Document* const b = add("b");
    Recorder recorder;
    Q_EMIT m_tabs->currentChanged(-1);
    Q_EMIT m_tabs->tabCloseRequested(-1);
    QVERIFY(recorder.isEmpty());
    QCOMPARE(m_area->currentSubWindow(), b);
    QCOMPARE(m_area->subWindows().size(), 2);
}

void MdiAreaTest::draggedTabsKeepTheirDocuments()
{
    Document* const a = add("a");
    Document* const b = add("b");
    Document* const c = add("c");
    m_tabs->moveTab(0, 2);
    QCOMPARE(m_tabs->tabText(2), QStringLiteral("a"));
    QCOMPARE(m_area->subWindows(), QList<IMdiSubWindow*>({a, b, c}));
    QTest::mouseClick(m_tabs, Qt::LeftButton, Qt::NoModifier, centre(2));
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    a->setShortTitle(QStringLiteral("renamed"));
    QCOMPARE(m_tabs->tabText(2), QStringLiteral("renamed"));

    // With the mouse: b, first by now, is pulled behind c.
    QTest::mousePress(m_tabs, Qt::LeftButton, Qt::NoModifier, centre(0));
    for (int x = centre(0).x(); x <= m_tabs->tabRect(1).right(); x += 10) {
        QMouseEvent move(QEvent::MouseMove, QPointF(x, centre(0).y()), Qt::LeftButton,
            Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(m_tabs, &move);
    }
    QTest::mouseRelease(m_tabs, Qt::LeftButton, Qt::NoModifier, m_tabs->tabRect(1).center());
    QTRY_COMPARE(m_tabs->tabText(1), QStringLiteral("b"));
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    m_area->removeWindow(b);
    QCOMPARE(m_tabs->count(), 2);
    QCOMPARE(m_tabs->tabText(0), QStringLiteral("c"));
    QCOMPARE(m_tabs->tabText(1), QStringLiteral("renamed"));
    delete b;
}

void MdiAreaTest::listKeepsForeignWindowsAsNull()
{
    Document* const a = add("a");
    m_inner->addSubWindow(new QMdiSubWindow)->show();
    Document* const b = add("b");
    QCOMPARE(m_area->subWindows(), QList<IMdiSubWindow*>({a, nullptr, b}));
    QCOMPARE(m_tabs->count(), 2);
}

void MdiAreaTest::tabSignalsDoNotFeedBack()
{
    QList<int> heard;
    connect(m_tabs, &QTabBar::currentChanged, this, [&](int index) { heard.append(index); });
    Document* const a = add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    QVERIFY(!heard.isEmpty());
    // Closing the current document moves the tab bar to a neighbour, which must not activate that
    // one: the inner area goes back in its history.
    Document* const c = add("c");
    m_area->setCurrentSubWindow(a);
    m_area->setCurrentSubWindow(c);
    QTRY_COMPARE(m_area->currentSubWindow(), c);
    Recorder recorder;
    m_area->closeWindow(c);
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    for (const QString& line : recorder.take())
        QVERIFY2(!line.contains(QLatin1String("changed: ") + window(b)), qPrintable(line));
}

// An activation that follows would put right what an addition or a removal left wrong, so each is
// looked at before one can follow.
void MdiAreaTest::tabBarIsHeardOnceAfterEachChange()
{
    const QList<int> once{1, 1, 1};
    QCOMPARE(tabConnections(), once);

    auto* const a = new Document(QStringLiteral("a"));
    QList<QList<int>> whileAdded;
    a->onParentChange = [&] { whileAdded.append(tabConnections()); };
    m_area->addWindow(a);
    a->onParentChange = {};
    QVERIFY(!whileAdded.isEmpty());
    QCOMPARE(whileAdded.first(), once);

    Document* const b = add("b");
    Document* const c = add("c");
    QTRY_COMPARE(m_area->currentSubWindow(), c);
    QCOMPARE(tabConnections(), once);

    QList<QList<int>> whenClosed;
    connect(b, &IMdiSubWindow::closed, this, [&] { whenClosed.append(tabConnections()); });
    m_area->closeWindow(b);
    QCOMPARE(whenClosed, QList<QList<int>>{once});

    m_area->removeWindow(a);
    QCOMPARE(m_area->currentSubWindow(), c);
    QCOMPARE(tabConnections(), once);
    delete a;
}

void MdiAreaTest::tabBarIsNotHeardWhileTheAreaChangesIt()
{
    const QList<int> once{1, 1, 1};
    QList<QList<int>> whileChanged;
    QList<QList<int>> whenCurrent;
    Document* const a = add("a");
    connect(m_tabs, &QTabBar::currentChanged, this, [&] {
        QList<int> connections = tabConnections();
        --connections.first(); // the one that asks
        whileChanged.append(connections);
    });
    connect(m_area.get(), &MdiArea::currentSubWindowChanged, this, [&] {
        QList<int> connections = tabConnections();
        --connections.first();
        whenCurrent.append(connections);
    });
    const auto compare = [&] {
        const QList<int> none{0, 0, 0};
        QVERIFY(!whileChanged.isEmpty());
        QCOMPARE(whileChanged.count(none), whileChanged.size());
        QVERIFY(!whenCurrent.isEmpty());
        QCOMPARE(whenCurrent.count(once), whenCurrent.size());
        whileChanged.clear();
        whenCurrent.clear();
    };

    Document* const b = add("b");
    QTRY_COMPARE(m_tabs->currentIndex(), 1);
    compare();

    m_area->closeWindow(b);
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    compare();

    // The tab bar stays at the last tab until that is removed.
    m_area->closeWindow(a);
    QTRY_COMPARE(m_area->currentSubWindow(), nullptr);
    compare();
}

void MdiAreaTest::deletedDocumentLeavesItsTab()
{
    add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    b->deleteLater();
    QPointer<Document> guard = b;
    QTRY_VERIFY(!guard);
    QCOMPARE(m_tabs->count(), 2);
    QCOMPARE(m_tabs->tabText(1), QStringLiteral("b"));
    QCOMPARE(m_area->subWindows().size(), 1);
}

void MdiAreaTest::deadDocumentIsNotCalled_data()
{
    QTest::addColumn<bool>("removed");
    QTest::newRow("deleted while it is current") << false;
    QTest::newRow("deleted after it was removed") << true;
}

void MdiAreaTest::deadDocumentIsNotCalled()
{
    QFETCH(bool, removed);
    QStringList log;
    auto* const a = new Document(QStringLiteral("a"), &log);
    m_area->addWindow(a);
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    log.clear();
    QSignalSpy changes(m_area.get(), &MdiArea::currentSubWindowChanged);
    if (removed) {
        m_area->removeWindow(a);
        log.clear();
        delete a;
        Document* const b = add("b");
        QTRY_COMPARE(m_area->currentSubWindow(), b);
    } else {
        delete a;
        QTRY_COMPARE(m_area->currentSubWindow(), nullptr);
    }
    QVERIFY(!changes.isEmpty());
    QCOMPARE(log, QStringList());
}

void MdiAreaTest::documentAtTheAddressOfADeadOneIsTold()
{
    auto* const first = new AtOneAddress(QStringLiteral("first"));
    m_area->addWindow(first);
    QTRY_COMPARE(m_area->currentSubWindow(), first);
    {
        // The area is not always told of the end of a hidden one.
        const QSignalBlocker blocker(m_inner);
        delete first;
    }
    auto* const second = new AtOneAddress(QStringLiteral("second"), &m_log);
    m_area->addWindow(second);
    QTRY_COMPARE(m_inner->currentSubWindow(), second);
    m_log.clear();
    Document* const third = add("third");
    QTRY_COMPARE(m_area->currentSubWindow(), third);
    QCOMPARE(m_log.first().section(QLatin1Char(','), 0, 0), QStringLiteral("second off"));
}

void MdiAreaTest::tabOfADeadDocumentCallsNobody()
{
    const QPointer<IMdiSubWindow> document = new SilentlyClosing;
    m_area->addWindow(document);
    add("other");
    document->close();
    QTRY_VERIFY(!document);
    QCOMPARE(m_tabs->count(), 2);
    IMdiSubWindow* const current = m_area->currentSubWindow();
    const Recorder recorder;
    for (const char* const signal : {"currentChanged", "tabCloseRequested"})
        QVERIFY(QMetaObject::invokeMethod(m_tabs, signal, Q_ARG(int, 0)));
    QVERIFY(
        QMetaObject::invokeMethod(m_tabs, "customContextMenuRequested", Q_ARG(QPoint, centre(0))));
    QCOMPARE(m_area->currentSubWindow(), current);
    QVERIFY(recorder.isEmpty());
}

void MdiAreaTest::innermostActivationHolds_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QString>("current");
    const auto row = [](const char* what, const char* current) {
        QTest::newRow(what) << QString::fromLatin1(what) << QString::fromLatin1(current);
    };
    row("a activates b", "b");
    row("a activates b and itself", "a");
    row("a runs a loop in which a new one comes", "new");
    row("a closes itself", "c");
    row("a activates b, and itself when it is left", "a");
    row("a is deleted a moment later", "c");
    row("a is removed", "c");
    row("c activates b when it is left", "b");
    row("c activates itself when it is left", "c");
    row("c activates itself and b when it is left", "b");
}

void MdiAreaTest::innermostActivationHolds()
{
    QFETCH(QString, what);
    QFETCH(QString, current);
    const QPointer<Document> a = add("a");
    const QPointer<Document> b = add("b");
    const QPointer<Document> c = add("c");
    QTRY_COMPARE(m_area->currentSubWindow(), c.data());
    if (what == QLatin1String("a activates b, and itself when it is left"))
        a->onNotCurrent = [&] { m_area->setCurrentSubWindow(a); };
    a->onCurrent = [&] {
        if (what.startsWith(QLatin1String("a activates b")))
            m_area->setCurrentSubWindow(b);
        if (what == QLatin1String("a activates b and itself"))
            m_area->setCurrentSubWindow(a);
        if (what.startsWith(QLatin1String("a runs a loop"))) {
            QEventLoop loop;
            QTimer::singleShot(0, &loop, [&] {
                add("new");
                loop.quit();
            });
            loop.exec();
        }
        if (what == QLatin1String("a closes itself"))
            a->close();
        if (what == QLatin1String("a is deleted a moment later"))
            a->deleteLater();
        if (what == QLatin1String("a is removed")) {
            m_area->removeWindow(a);
            a->deleteLater();
        }
    };
    c->onNotCurrent = [&] {
        if (what.startsWith(QLatin1String("c activates itself")))
            m_area->setCurrentSubWindow(c);
        if (what.startsWith(QLatin1String("c activates")) && what.contains(QLatin1String("b when")))
            m_area->setCurrentSubWindow(b);
    };
    QString last = QStringLiteral("c");
    connect(m_area.get(), &MdiArea::currentSubWindowChanged, this,
        [&](IMdiSubWindow* document) { last = document ? document->shortTitle() : QString(); });
    m_log.clear();
    QTest::mouseClick(m_tabs, Qt::LeftButton, Qt::NoModifier, centre(0));

    QTRY_COMPARE(last, current);
    QCOMPARE(m_area->currentSubWindow()->shortTitle(), current);
    QCOMPARE(m_inner->currentSubWindow(), m_area->currentSubWindow());
    QCOMPARE(m_tabs->tabText(m_tabs->currentIndex()), current);
    // The one that is current has heard so last, any other one that it is not.
    for (const char* const title : {"a", "b", "c", "new"}) {
        const QString name = QString::fromLatin1(title);
        const QStringList lines = m_log.filter(QRegularExpression(QLatin1Char('^') + name));
        if (!lines.isEmpty() && (name != QLatin1String("a") || a))
            QCOMPARE(lines.last().startsWith(name + QLatin1String(" on")), name == current);
    }
    QCOMPARE(tabConnections(), QList<int>({1, 1, 1}));
}

void MdiAreaTest::documentThatComesBackWhileItIsLeftIsToldOnly()
{
    Document* const a = add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    b->onNotCurrent = [&] { m_area->setCurrentSubWindow(b); };
    const QSignalSpy changed(m_area.get(), &MdiArea::currentSubWindowChanged);
    m_log.clear();
    Recorder recorder;
    m_area->setCurrentSubWindow(a);
    QTRY_COMPARE(m_log.size(), 2);
    QCOMPARE(m_log,
        QStringList(
            {QStringLiteral("b off, current b, tab 1"), QStringLiteral("b on, current b, tab 1")}));
    QCOMPARE(recorder.take().filter(QStringLiteral("current window changed:")),
        QStringList(info(area() + QLatin1String(" current window changed: ") + window(a))));
    QVERIFY(changed.isEmpty());
    QCOMPARE(m_area->currentSubWindow(), b);
    m_area->setCurrentSubWindow(a);
    QCOMPARE(m_area->currentSubWindow(), a);
}

void MdiAreaTest::documentThatIsLeftMayEmptyTheArea()
{
    const std::unique_ptr<Document> a(add("a"));
    const std::unique_ptr<Document> b(add("b"));
    QTRY_COMPARE(m_area->currentSubWindow(), b.get());
    b->onNotCurrent = [&] {
        m_area->removeWindow(b.get());
        m_area->removeWindow(a.get());
    };
    QList<IMdiSubWindow*> signalled;
    connect(m_area.get(), &MdiArea::currentSubWindowChanged, this,
        [&](IMdiSubWindow* document) { signalled.append(document); });
    m_area->setCurrentSubWindow(a.get());
    QCOMPARE(m_area->currentSubWindow(), nullptr);
    QCOMPARE(m_inner->currentSubWindow(), nullptr);
    QCOMPARE(m_tabs->count(), 0);
    QVERIFY(!signalled.isEmpty() && !signalled.last());
}

// As it is hidden where its window is deleted.
void MdiAreaTest::hiddenAreaTellsTheDocumentThatIsLeftOnce()
{
    Document* const a = add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_area->currentSubWindow(), b);
    b->onNotCurrent = [&] { m_area->hide(); };
    const QSignalSpy changed(m_area.get(), &MdiArea::currentSubWindowChanged);
    m_log.clear();
    Recorder recorder;
    m_area->setCurrentSubWindow(a);
    QCOMPARE(m_log,
        QStringList(
            {QStringLiteral("b off, current b, tab 1"), QStringLiteral("a on, current a, tab 1")}));
    QCOMPARE(recorder.take().filter(QStringLiteral("current window changed:")),
        QStringList(info(area() + QLatin1String(" current window changed: ") + window(a))));
    QCOMPARE(changed.count(), 1);
    QCOMPARE(m_area->currentSubWindow(), a);
    QCOMPARE(m_tabs->currentIndex(), 0);
}

void MdiAreaTest::dyingAreaOwnsNoDocument()
{
    QList<MdiArea*> answers;
    auto area = std::make_unique<MdiArea>();
    auto* const inside = new AskingInItsEnd(&answers);
    auto* const outside = new AskingInItsEnd(&answers);
    auto* const elsewhere = new AskingInItsEnd(&answers);
    for (IMdiSubWindow* document : {inside, outside, elsewhere})
        area->addWindow(document);
    outside->setParent(nullptr);
    m_area->addWindow(elsewhere);
    area.reset();
    QCOMPARE(answers, QList<MdiArea*>({nullptr}));
    QCOMPARE(outside->ownerArea(), nullptr);
    QCOMPARE(elsewhere->ownerArea(), m_area.get());
    delete outside;
    m_area.reset(); // before the list of the answers
}

void MdiAreaTest::windowsAreCascadedAndTiled()
{
    Document* const a = add("a");
    Document* const b = add("b");
    m_area->tileSubWindows();
    QVERIFY(!a->geometry().intersects(b->geometry()));
    m_area->cascadeSubWindows();
    QVERIFY(a->geometry().intersects(b->geometry()));
}

void MdiAreaTest::privateObjectHasFiveSlots()
{
    const QMetaObject& meta = _mdi_area_private::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::_mdi_area_private");
    QStringList slotNames;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i) {
        QCOMPARE(meta.method(i).methodType(), QMetaMethod::Slot);
        QCOMPARE(meta.method(i).access(), QMetaMethod::Public);
        slotNames.append(QString::fromLatin1(meta.method(i).methodSignature()));
    }
    QCOMPARE(slotNames,
        QStringList({QStringLiteral("onSubwindowActivated(QMdiSubWindow*)"),
            QStringLiteral("onCurrentTabChanged(int)"), QStringLiteral("onTabClosedRequest(int)"),
            QStringLiteral("onTabBarContextMenuRequested(QPoint)"),
            QStringLiteral("onSubWindowClosed()")}));
}

void MdiAreaTest::whatIsNoDocumentIsLeftAlone()
{
    Document* const a = add("a");
    // The area's one field.
    _mdi_area_private* d = nullptr;
    std::memcpy(&d, reinterpret_cast<const char*>(m_area.get()) + sizeof(QWidget), sizeof d);
    QObject other;
    connect(&other, SIGNAL(objectNameChanged(QString)), d, SLOT(onSubWindowClosed()));
    Recorder recorder;
    other.setObjectName(QStringLiteral("other"));
    QVERIFY(recorder.isEmpty());
    QCOMPARE(m_tabs->count(), 1);
    QEvent change(QEvent::WindowTitleChange);
    QVERIFY(!d->eventFilter(&other, &change));
    QCOMPARE(d->tab2window(0), a);
    QCOMPARE(d->window2tab(a), 0);
    QVERIFY(!d->tab2window(7));
    m_tabs->setTabData(0, QVariant(7));
    QVERIFY(!d->tab2window(0));
    QCOMPARE(d->window2tab(a), -1);
    m_tabs->setTabData(0, QVariant::fromValue(static_cast<void*>(a)));
}

void MdiAreaTest::documentSeesWhatTheAreaSees()
{
    Document* const a = add("a");
    a->seen.clear();
    a->setShortTitle(QStringLiteral("b"));
    QPixmap pixmap(4, 4);
    pixmap.fill(Qt::red);
    a->setWindowIcon(QIcon(pixmap));
    QCOMPARE(a->seen, QList<QEvent::Type>({QEvent::WindowTitleChange, QEvent::WindowIconChange}));
}

void MdiAreaTest::tabIsThereBeforeTheSubWindow()
{
    auto* const document = new Document(QStringLiteral("a"));
    QStringList moments;
    document->onParentChange = [&] {
        moments.append(QStringLiteral("%1 %2 %3")
                           .arg(m_tabs->count())
                           .arg(m_tabs->tabData(0).value<void*>() == document ? 1 : 0)
                           .arg(document->ownerArea() == m_area.get() ? 1 : 0));
    };
    m_area->addWindow(document);
    document->onParentChange = {};
    QVERIFY(!moments.isEmpty());
    QCOMPARE(moments.first(), QStringLiteral("1 1 1"));
}

void MdiAreaTest::titleIsFollowedBeforeTheCloseIsHeard()
{
    auto* const document = new Document(QStringLiteral("a"));
    QStringList tabs;
    document->onConnected = [&] { tabs.append(firstTabAfterRetitling(document)); };
    m_area->addWindow(document);
    document->onConnected = {};
    QCOMPARE(tabs, QStringList(QStringLiteral("retitled")));
}

void MdiAreaTest::titleIsNotFollowedWhenTheCloseIsNotHeardAnyMore()
{
    Document* const document = add("a");
    QStringList tabs;
    document->onDisconnected = [&] { tabs.append(firstTabAfterRetitling(document)); };
    m_area->removeWindow(document);
    document->onDisconnected = {};
    QVERIFY(!tabs.isEmpty());
    QCOMPARE(tabs.first(), QStringLiteral("a"));
    delete document;
}

void MdiAreaTest::removedDocumentIsReleasedBeforeItLeavesTheInnerArea()
{
    Document* const document = add("a");
    QList<const MdiArea*> owners;
    document->onParentChange = [&] { owners.append(document->ownerArea()); };
    m_area->removeWindow(document);
    document->onParentChange = {};
    QVERIFY(!owners.isEmpty());
    QCOMPARE(owners.first(), nullptr);
    delete document;
}

void MdiAreaTest::removalAndCloseHaveTheirOrder()
{
    add("a");
    Document* const b = add("b");
    QTRY_COMPARE(m_tabs->currentIndex(), 1);
    // The tab bar moves on when the last tab goes; that is a moment to look at.
    QString moment;
    connect(m_tabs, &QTabBar::currentChanged, this, [&] {
        moment = QStringLiteral("%1 %2")
                     .arg(b->ownerArea() ? 1 : 0)
                     .arg(m_area->subWindows().contains(b) ? 1 : 0);
    });
    b->setAttribute(Qt::WA_DeleteOnClose, false);
    m_area->closeWindow(b);
    QCOMPARE(moment.at(0), QLatin1Char('1'));
    QVERIFY(!b->ownerArea());

    Document* const c = add("c");
    QTRY_COMPARE(m_area->currentSubWindow(), c);
    QTRY_COMPARE(m_tabs->currentIndex(), m_tabs->count() - 1);
    m_tabs->disconnect(this);
    moment.clear();
    connect(m_tabs, &QTabBar::currentChanged, this, [&] {
        moment = QStringLiteral("%1 %2")
                     .arg(c->ownerArea() ? 1 : 0)
                     .arg(m_area->subWindows().contains(c) ? 1 : 0);
    });
    m_area->removeWindow(c);
    QVERIFY(moment.isEmpty() || moment == QLatin1String("0 0"));
    m_tabs->disconnect(this);
    delete b;
    delete c;
}

void MdiAreaTest::documentThatLeavesIsReachedByItsTab()
{
    Document* const a = add("a");
    const auto b = std::make_unique<Document>(QStringLiteral("b"));
    b->setAttribute(Qt::WA_DeleteOnClose, false);
    m_area->addWindow(b.get());
    QTRY_COMPARE(m_area->currentSubWindow(), b.get());
    const QSignalSpy closed(b.get(), &IMdiSubWindow::closed);
    a->onCurrent = [&] {
        QCOMPARE(m_tabs->count(), 2);
        Q_EMIT m_tabs->tabCloseRequested(1);
    };
    m_area->removeWindow(b.get());
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    QCOMPARE(closed.count(), 1);
    QCOMPARE(m_tabs->count(), 1);
}

void MdiAreaTest::documentThatLeftIsNotConnected()
{
    Document* const a = add("a");
    Document* const b = add("b");
    a->setAttribute(Qt::WA_DeleteOnClose, false);
    m_area->closeWindow(a);
    m_area->removeWindow(b);
    for (Document* document : {a, b})
        QVERIFY(!QObject::disconnect(document, SIGNAL(closed()), nullptr, nullptr));
    delete a;
    delete b;
}

void MdiAreaTest::foreignWindowThatBecomesCurrentIsNone()
{
    Document* const a = add("a");
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    QSignalSpy changes(m_area.get(), &MdiArea::currentSubWindowChanged);
    QCOMPARE(QByteArray(QMetaType::typeName(
                 QMetaMethod::fromSignal(&MdiArea::currentSubWindowChanged).parameterType(0))),
        QByteArray("Zentu::IMdiSubWindow*"));
    auto* const foreign = new QMdiSubWindow;
    foreign->setWidget(new QWidget);
    m_inner->addSubWindow(foreign);
    Recorder recorder;
    foreign->show();
    m_inner->setActiveSubWindow(foreign);
    QTRY_COMPARE(changes.count(), 1);
    QVERIFY(!changes.first().first().value<IMdiSubWindow*>());
    QCOMPARE(m_tabs->currentIndex(), 0);
    const QStringList lines = recorder.take();
    QVERIFY(lines.contains(trace(area() + QLatin1String(" active window: MdiWindow(0x0) "))));
    QVERIFY(
        lines.contains(info(area() + QLatin1String(" current window changed: MdiWindow(0x0)"))));
}

// The tab bar says that its first tab is current before the tab has its document.
void MdiAreaTest::firstTabActivatesNothing()
{
    auto* const foreign = new QMdiSubWindow;
    foreign->setWidget(new QWidget);
    m_inner->addSubWindow(foreign);
    foreign->show();
    m_inner->setActiveSubWindow(foreign);
    QTRY_COMPARE(m_inner->activeSubWindow(), foreign);
    Recorder recorder;
    Document* const a = add("a");
    QTRY_COMPARE(m_area->currentSubWindow(), a);
    QVERIFY(!recorder.take().contains(
        trace(area() + QLatin1String(" active window: MdiWindow(0x0) "))));
}

void MdiAreaTest::firstDocumentBesideAForeignWindowIsNotMaximized()
{
    auto* const foreign = new QMdiSubWindow;
    foreign->setWidget(new QWidget);
    m_inner->addSubWindow(foreign);
    foreign->show();
    QVERIFY(!add("a")->isMaximized());
}

void MdiAreaTest::areaDiesWithItsDocuments()
{
    QPointer<Document> a = add("a");
    QPointer<Document> b = add("b");
    Recorder recorder;
    m_area.reset();
    QVERIFY(!a && !b);
    const QStringList lines = recorder.take();
    QCOMPARE(lines.filter(QStringLiteral(" destroying ")).size(), 2);
    QCOMPARE(lines.size(), 2);
}

void MdiAreaTest::connectionsAreThoseOfTheSignatures()
{
    Document* const a = add("a");
    // What listens is a private object without a name: it is whoever the signals go to.
    QVERIFY(QObject::disconnect(a, SIGNAL(closed()), nullptr, nullptr));
    QVERIFY(!QObject::disconnect(a, SIGNAL(closed()), nullptr, nullptr));
    for (const char* signal : {SIGNAL(currentChanged(int)), SIGNAL(tabCloseRequested(int)),
             SIGNAL(customContextMenuRequested(QPoint))}) {
        QVERIFY2(QObject::disconnect(m_tabs, signal, nullptr, nullptr), signal);
        QVERIFY2(!QObject::disconnect(m_tabs, signal, nullptr, nullptr), signal);
    }
    QVERIFY(
        QObject::disconnect(m_inner, SIGNAL(subWindowActivated(QMdiSubWindow*)), nullptr, nullptr));
}

QTEST_MAIN(MdiAreaTest)
#include "tst_mdi_area.moc"
