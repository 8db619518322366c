// SPDX-License-Identifier: MIT
//
// The inspector's window beside objects of the library, in one process.

#include "context_mgr.h"
#include "event_mgr.h"
#include "ievent_handler.h"
#include "inspector.h"
#include "lines_page.h"
#include "mdi_area.h"
#include "object_pool.h"
#include "own_lines.h"
#include "pages.h"
#include "picker.h"
#include "proxy_act.h"
#include "try_page.h"
#include "why.h"
#include "wisp_recorder.h"

#include <QAccessible>
#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QSpinBox>
#include <QStandardPaths>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTest>
#include <QTextBrowser>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>
#include <QTreeView>

#include <memory>

using namespace Zentu;
using namespace Zentu::Inspect;

namespace {

/// A subscriber whose class is to be read in the window.
class Listening : public IEventHandler
{
public:
    void handleEvent(IEvent*) override { ++count; }

    int count = 0;
};

} // namespace

class InspectorTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void ownLinesAreNobodysBusiness();
    void linesOfBeforeAreRead();
    void proxySaysWhy_data();
    void proxySaysWhy();
    void disabledSinceIsKnown();
    void plainActionSaysWhy();
    void actionsPageShowsWhatIsSeen();
    void deletedProxyIsNotShown();
    void eventsNameTheirHandlersAndValues();
    void postsTellTheFunctionThatPosted();
    void eventThatNobodyHeardStandsOut();
    void contextsTellWhatAChangeDid();
    void objectThatWasNeverLetGoStandsOut();
    void linesAreFiltered_data();
    void linesAreFiltered();
    void linkOfALineLeadsToThePage();
    void nothingCanBeTriedUntilItIsSwitchedOn();
    void eventIsPosted();
    void contextIsAddedAndRemoved();
    void actionIsTriggeredUnlessDisabled();
    void clickLeadsToTheAction_data();
    void clickLeadsToTheAction();
    void escapeEndsPicking();
    void recordingIsUnderstood();
    void pagesStay();
    void everyPageHasAKey();
    void everyControlHasAName();
    void preferencesAreNobodysBusiness();
    void emptyPageSaysSo();
    void hostsMessageHandlerIsCalled();

private:
    template <typename Page>
    Page* page(const char* name) const
    {
        return static_cast<Page*>(m_window->page(QString::fromLatin1(name)));
    }
    QStringList cells(const char* page, const QString& id) const;
    QString details(const char* page, const QString& id) const;
    void update()
    {
        m_session->takeLines();
        for (const char* name : {"action", "event", "context", "object", "line", "try"})
            m_window->page(QString::fromLatin1(name))->refresh();
    }
    ProxyAction* makeProxy(const QString& id)
    {
        auto* const proxy = new ProxyAction(m_host.get());
        proxy->defaultProp()->setText(id);
        m_proxies->registerProxyAction(proxy, id);
        return proxy;
    }

    std::unique_ptr<QWidget> m_host;
    std::unique_ptr<ProxyActionManager> m_proxies;
    std::unique_ptr<ContextManager> m_contexts;
    std::unique_ptr<Listener> m_listener;
    std::unique_ptr<Session> m_session;
    std::unique_ptr<Window> m_window;
};

void InspectorTest::init()
{
    wisp::clearRecordedLines();
    m_host = std::make_unique<QWidget>();
    m_host->setObjectName(QStringLiteral("host"));
    m_proxies = std::make_unique<ProxyActionManager>();
    m_contexts = std::make_unique<ContextManager>();
    m_listener = std::make_unique<Listener>();
    m_session = std::make_unique<Session>(*m_listener);
    m_window = std::make_unique<Window>(*m_session);
    const OwnLines::Scope own;
    m_window->show();
}

void InspectorTest::cleanup()
{
    m_window.reset();
    m_session.reset();
    m_listener.reset();
    m_host.reset();
    m_contexts.reset();
    m_proxies.reset();
}

QStringList InspectorTest::cells(const char* name, const QString& id) const
{
    const QAbstractItemModel* const model = page<TablePage>(name)->view()->model();
    for (int row = 0; row < model->rowCount(); ++row) {
        if (model->index(row, 0).data(RowsModel::IdRole).toString() != id)
            continue;
        QStringList result;
        for (int column = 0; column < model->columnCount(); ++column)
            result.append(model->index(row, column).data().toString());
        return result;
    }
    return {};
}

QString InspectorTest::details(const char* name, const QString& id) const
{
    page<TablePage>(name)->select(id);
    return page<TablePage>(name)->detailsView()->toPlainText();
}

void InspectorTest::ownLinesAreNobodysBusiness()
{
    for (const char* name : {"event", "context", "object", "line", "try", "action"})
        m_window->go(QString::fromLatin1(name), QString());
    m_window.reset();
    QCOMPARE(wisp::recordedLines().size(), std::size_t(0));
    m_session->takeLines();
    QCOMPARE(m_session->nextLine(), qint64(1));
}

void InspectorTest::linesOfBeforeAreRead()
{
    m_window.reset();
    m_session.reset();
    m_listener.reset();
    m_contexts->addContext(QStringLiteral("before"));
    m_listener = std::make_unique<Listener>();
    m_session = std::make_unique<Session>(*m_listener);
    m_window = std::make_unique<Window>(*m_session);
    update();
    QCOMPARE(cells("context", QStringLiteral("before")).value(1), QStringLiteral("yes, number 1"));
}

namespace {
enum class Given {
    NoBackend,
    NoContexts,
    OtherContext,
    DisabledBackend,
    DisabledProxy,
    SameKey,
    Enabled
};
}
Q_DECLARE_METATYPE(Given)

void InspectorTest::proxySaysWhy_data()
{
    QTest::addColumn<Given>("given");
    QTest::addColumn<QString>("sentence");
    QTest::newRow("no backend") << Given::NoBackend << "Nobody has added a backend to it.";
    QTest::newRow("no contexts")
        << Given::NoContexts
        << "No contexts are in force for it: either none was added, or nothing hands them on with "
           "setCurrentContext(). It has backends for “text”.";
    QTest::newRow("another context")
        << Given::OtherContext
        << "No context of it is in force. It has backends for “text”; in force: “image”.";
    QTest::newRow("disabled backend")
        << Given::DisabledBackend
        << "Its backend for “text”, of QWidget “host”, is disabled since it became active.";
    QTest::newRow("disabled proxy")
        << Given::DisabledProxy
        << "The proxy itself was disabled, while its backend for “text” is enabled.";
    QTest::newRow("same key") << Given::SameKey
                              << "It is enabled: its backend for “text”, of QWidget “host”, is "
                                 "active. Its key Ctrl+K does nothing, because “Other” of QWidget "
                                 "“host” has the same one.";
    QTest::newRow("enabled") << Given::Enabled
                             << "It is enabled: its backend for “text”, of QWidget “host”, is "
                                "active.";
}

void InspectorTest::proxySaysWhy()
{
    QFETCH(const Given, given);
    QFETCH(const QString, sentence);
    ProxyAction* const proxy = makeProxy(QStringLiteral("edit.copy"));
    auto* const backend = new QAction(m_host.get());
    backend->setShortcut(QKeySequence(QStringLiteral("Ctrl+K")));
    if (given != Given::NoBackend)
        proxy->addBackendAction(backend, QStringLiteral("text"));
    if (given == Given::DisabledBackend)
        backend->setEnabled(false);
    if (given != Given::NoContexts)
        proxy->setCurrentContext(
            {given == Given::OtherContext ? QStringLiteral("image") : QStringLiteral("text")});
    if (given == Given::DisabledProxy)
        proxy->setEnabled(false);
    auto* const widget = new QWidget(m_host.get());
    widget->addAction(proxy);
    if (given == Given::SameKey) {
        auto* const other = new QAction(QStringLiteral("&Other"), m_host.get());
        other->setShortcut(QKeySequence(QStringLiteral("Ctrl+K")));
        widget->addAction(other);
    }
    update();
    QCOMPARE(cells("action", QStringLiteral("edit.copy")).value(5), sentence);
    QVERIFY(details("action", QStringLiteral("edit.copy")).contains(sentence));
}

void InspectorTest::disabledSinceIsKnown()
{
    ProxyAction* const proxy = makeProxy(QStringLiteral("edit.copy"));
    QAction backend;
    proxy->addBackendAction(&backend, QStringLiteral("text"));
    proxy->setCurrentContext({QStringLiteral("text")});
    update();
    const qint64 line = m_session->nextLine() - 1;
    backend.setEnabled(false);
    update();
    const QString why = cells("action", QStringLiteral("edit.copy")).value(5);
    QVERIFY2(
        why.startsWith(QStringLiteral("Its backend for “text”, of nobody, is disabled since ")),
        qPrintable(why));
    QVERIFY2(why.endsWith(QStringLiteral(", line %1.").arg(line)), qPrintable(why));
}

void InspectorTest::plainActionSaysWhy()
{
    QAction action(m_host.get());
    QCOMPARE(why(action).sentence, QStringLiteral("It is enabled."));
    action.setEnabled(false);
    QCOMPARE(why(action).sentence,
        QStringLiteral("QWidget “host” has disabled it. No proxy stands behind it."));
    QVERIFY(!why(action).isEnabled);
}

void InspectorTest::actionsPageShowsWhatIsSeen()
{
    ProxyAction* const proxy = makeProxy(QStringLiteral("edit.copy"));
    QAction backend(QStringLiteral("Cop&y"), nullptr);
    backend.setShortcut(QKeySequence(QStringLiteral("Ctrl+C")));
    proxy->addBackendAction(&backend, QStringLiteral("text"));
    proxy->setCurrentContext({QStringLiteral("a"), QStringLiteral("text")});
    update();
    const QStringList seen = cells("action", QStringLiteral("edit.copy"));
    QCOMPARE(seen.mid(0, 5),
        (QStringList{QStringLiteral("edit.copy"), QStringLiteral("Copy"), QStringLiteral("Ctrl+C"),
            QStringLiteral("yes"), QStringLiteral("text")}));
    const QString text = details("action", QStringLiteral("edit.copy"));
    QVERIFY2(text.contains(QStringLiteral("Contexts in force: a, text")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("History")), qPrintable(text));
}

void InspectorTest::deletedProxyIsNotShown()
{
    const ProxyAction* const proxy = makeProxy(QStringLiteral("edit.copy"));
    update();
    QVERIFY(!cells("action", QStringLiteral("edit.copy")).isEmpty());
    delete proxy;
    update();
    QVERIFY(cells("action", QStringLiteral("edit.copy")).isEmpty());
}

void InspectorTest::eventsNameTheirHandlersAndValues()
{
    Listening first;
    Listening second;
    first.subscribe(QStringLiteral("document.opened"));
    second.subscribe(QStringLiteral("document.opened"));
    first.setReceiving(false);
    auto* const event = new IEvent(QStringLiteral("document.opened"));
    event->data().insert(QStringLiteral("path"), QStringLiteral("/tmp/a"));
    event->data().insert(QStringLiteral("size"), 12);
    EventManager::instance()->postEvent(event, EventManager::Direct);
    update();
    QCOMPARE(cells("event", QStringLiteral("document.opened")),
        (QStringList{QStringLiteral("document.opened"), QStringLiteral("1"), QStringLiteral("0"),
            QStringLiteral("(anonymous namespace)::Listening, (anonymous namespace)::Listening")}));
    const QString text = details("event", QStringLiteral("document.opened"));
    QVERIFY2(text.contains(QStringLiteral("path = /tmp/a")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("size = 12")), qPrintable(text));
    QVERIFY2(text.contains(QStringLiteral("Direct")), qPrintable(text));
    QCOMPARE(text.count(QStringLiteral("paused")), 1);
    QVERIFY2(text.contains(QStringLiteral("posted by")), qPrintable(text));
}

void InspectorTest::postsTellTheFunctionThatPosted()
{
    if (QStandardPaths::findExecutable(QStringLiteral("addr2line")).isEmpty())
        QSKIP("needs addr2line");
    EventManager::instance()->postEvent(new IEvent(QStringLiteral("lost")));
    update();
    QString posters = details("event", QStringLiteral("lost")).section(QLatin1String("by\n"), 1);
    QVERIFY2(posters.startsWith(QLatin1String("tst_inspector+0x")), qPrintable(posters));
    page<EventsPage>("event")->setShowsLines(true);
    posters = details("event", QStringLiteral("lost")).section(QLatin1String("by\n"), 1);
    QVERIFY2(posters.startsWith(QLatin1String("InspectorTest::postsTellTheFunctionThatPosted()")),
        qPrintable(posters));
}

void InspectorTest::eventThatNobodyHeardStandsOut()
{
    EventManager::instance()->postEvent(new IEvent(QStringLiteral("lost")));
    update();
    QCOMPARE(cells("event", QStringLiteral("lost")).mid(1),
        (QStringList{QStringLiteral("1"), QStringLiteral("1"), QString()}));
    QVERIFY(details("event", QStringLiteral("lost")).contains(QStringLiteral("nobody heard it")));
}

void InspectorTest::contextsTellWhatAChangeDid()
{
    ProxyAction* const proxy = makeProxy(QStringLiteral("edit.copy"));
    QAction backend;
    proxy->addBackendAction(&backend, QStringLiteral("text"));
    connect(m_contexts.get(), &ContextManager::contextChanged, this,
        [this] { m_proxies->setCurrentContext(m_contexts->currentContexts()); });
    m_contexts->addContext(QStringLiteral("text"));
    m_contexts->addGlobalContext(QStringLiteral("host"));
    m_contexts->removeContext(QStringLiteral("text"));
    update();
    QCOMPARE(cells("context", QStringLiteral("text")).mid(0, 3),
        (QStringList{QStringLiteral("text"), QStringLiteral("no"), QStringLiteral("2")}));
    QCOMPARE(cells("context", QStringLiteral("host")).value(1), QStringLiteral("yes, global"));
    const QString text = details("context", QStringLiteral("text"));
    QVERIFY2(text.contains(QStringLiteral("Backends for: edit.copy")), qPrintable(text));
}

void InspectorTest::objectThatWasNeverLetGoStandsOut()
{
    ObjectPool pool;
    QObject pooled;
    pooled.setObjectName(QStringLiteral("tool"));
    pool.addObject(&pooled);
    auto* const document = new IMdiSubWindow;
    document->setShortTitle(QStringLiteral("notes"));
    MdiArea area;
    area.addWindow(document);
    update();
    page<TablePage>("object")->filter()->setText(QStringLiteral("tool"));
    QCOMPARE(page<TablePage>("object")->view()->model()->rowCount(), 1);
    page<TablePage>("object")->filter()->setText(QStringLiteral("notes"));
    QCOMPARE(page<TablePage>("object")->view()->model()->rowCount(), 1);
    QCOMPARE(page<TablePage>("object")->view()->model()->index(0, 2).data().toString(),
        QStringLiteral("Zentu::IMdiSubWindow"));
    page<TablePage>("object")->filter()->setText(QStringLiteral("never let go"));
    QCOMPARE(page<TablePage>("object")->view()->model()->rowCount(), 0);
}

void InspectorTest::linesAreFiltered_data()
{
    QTest::addColumn<int>("level");
    QTest::addColumn<QString>("text");
    QTest::addColumn<int>("count");
    QTest::newRow("all") << int(LinesFilter::All) << "" << 4;
    QTest::newRow("trace") << int(LinesFilter::Trace) << "" << 2;
    QTest::newRow("messages") << int(LinesFilter::Messages) << "" << 2;
    QTest::newRow("warnings") << int(LinesFilter::Warnings) << "" << 1;
    QTest::newRow("text") << int(LinesFilter::All) << "PUSH" << 1;
    QTest::newRow("text and level") << int(LinesFilter::Messages) << "context" << 1;
    QTest::newRow("thread") << int(LinesFilter::All) << "thread" << 4;
}

void InspectorTest::linesAreFiltered()
{
    QFETCH(const int, level);
    QFETCH(const QString, text);
    QFETCH(const int, count);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("context not found")));
    m_contexts->addContext(QStringLiteral("a"));
    m_contexts->removeContext(QStringLiteral("b"));
    qInfo("of the host");
    update();
    auto* const lines = page<LinesPage>("line");
    lines->levels()->setCurrentIndex(level);
    lines->filter()->setText(
        text == QLatin1String("thread") ? QString::number(m_session->record(1).thread) : text);
    QCOMPARE(lines->view()->model()->rowCount(), count);
}

void InspectorTest::linkOfALineLeadsToThePage()
{
    makeProxy(QStringLiteral("edit.copy"));
    update();
    m_window->go(QUrl(QStringLiteral("line:1")));
    QCOMPARE(page<LinesPage>("line")->view()->currentIndex().row(), 0);
    QSignalSpy clicked(page<LinesPage>("line"), &PageWindow::linkClicked);
    const QString html = page<LinesPage>("line")->findChild<QTextBrowser*>()->toHtml();
    QVERIFY2(html.contains(QStringLiteral("action:edit.copy")), qPrintable(html));
    m_window->go(QUrl(QStringLiteral("action:edit.copy")));
    QCOMPARE(page<TablePage>("action")->view()->currentIndex().data(RowsModel::IdRole).toString(),
        QStringLiteral("edit.copy"));
}

void InspectorTest::nothingCanBeTriedUntilItIsSwitchedOn()
{
    auto* const page = m_window->page(QStringLiteral("try"));
    auto* const post = page->findChild<QPushButton*>(QStringLiteral("post"));
    QVERIFY(!post->isEnabled());
    page->findChild<QCheckBox*>()->click();
    QVERIFY(post->isEnabled());
}

/// What is said below the tools.
static QString answerOf(const PageWindow* page)
{
    const QList<QLabel*> labels = page->findChildren<QLabel*>();
    return labels.last()->text().isEmpty() ? labels.first()->text() : labels.last()->text();
}

void InspectorTest::eventIsPosted()
{
    Listening listening;
    listening.subscribe(QStringLiteral("tried"));
    update();
    auto* const page = m_window->page(QStringLiteral("try"));
    page->findChild<QCheckBox*>()->click();
    page->findChildren<QComboBox*>().first()->setEditText(QStringLiteral("tried"));
    page->findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("[1"));
    page->findChild<QPushButton*>(QStringLiteral("post"))->click();
    QCOMPARE(listening.count, 0);
    page->findChild<QPlainTextEdit*>()->setPlainText(QStringLiteral("{\"size\": 3}"));
    page->findChild<QPushButton*>(QStringLiteral("post"))->click();
    QTRY_COMPARE(listening.count, 1);
    update();
    QVERIFY(details("event", QStringLiteral("tried")).contains(QStringLiteral("size = 3")));
}

void InspectorTest::contextIsAddedAndRemoved()
{
    m_contexts->addContext(QStringLiteral("first"));
    update();
    auto* const page = m_window->page(QStringLiteral("try"));
    page->findChild<QCheckBox*>()->click();
    for (QComboBox* const box : page->findChildren<QComboBox*>()) {
        if (box->accessibleName() == QLatin1String("Context"))
            box->setEditText(QStringLiteral("mine"));
    }
    page->findChild<QPushButton*>(QStringLiteral("add"))->click();
    QCOMPARE(m_contexts->currentContexts(),
        (QStringList{QStringLiteral("mine"), QStringLiteral("first")}));
    page->findChild<QPushButton*>(QStringLiteral("remove"))->click();
    QCOMPARE(m_contexts->currentContexts(), QStringList{QStringLiteral("first")});
}

void InspectorTest::actionIsTriggeredUnlessDisabled()
{
    ProxyAction* const proxy = makeProxy(QStringLiteral("edit.copy"));
    QAction backend;
    QSignalSpy triggered(&backend, &QAction::triggered);
    proxy->addBackendAction(&backend, QStringLiteral("text"));
    update();
    auto* const page = m_window->page(QStringLiteral("try"));
    page->findChild<QCheckBox*>()->click();
    for (QComboBox* const box : page->findChildren<QComboBox*>()) {
        if (box->accessibleName() == QLatin1String("Action"))
            box->setEditText(QStringLiteral("edit.copy"));
    }
    page->findChild<QPushButton*>(QStringLiteral("trigger"))->click();
    QCOMPARE(triggered.count(), 0);
    QVERIFY2(answerOf(page).contains(QStringLiteral("is disabled. No contexts are in force")),
        qPrintable(answerOf(page)));
    proxy->setCurrentContext({QStringLiteral("text")});
    page->findChild<QPushButton*>(QStringLiteral("trigger"))->click();
    QCOMPARE(triggered.count(), 1);
}

void InspectorTest::clickLeadsToTheAction_data()
{
    QTest::addColumn<QString>("kind");
    QTest::newRow("menu entry") << "menu";
    QTest::newRow("tool button") << "button";
    QTest::newRow("plain action") << "plain";
    QTest::newRow("tab") << "tab";
    QTest::newRow("widget") << "widget";
}

void InspectorTest::clickLeadsToTheAction()
{
    QFETCH(const QString, kind);
    m_host->resize(400, 300);
    ProxyAction* const proxy = makeProxy(QStringLiteral("edit.copy"));
    makeProxy(QStringLiteral("another"));
    auto* const plainAction = new QAction(QStringLiteral("Plain"), m_host.get());
    plainAction->setEnabled(false);
    QSignalSpy triggered(proxy, &QAction::triggered);
    QMenu menu(m_host.get());
    menu.addAction(proxy);
    menu.addAction(plainAction);
    auto* const bar = new QToolBar(m_host.get());
    bar->addAction(proxy);
    auto* const area = new MdiArea(m_host.get());
    area->setGeometry(0, 60, 400, 200);
    for (const char* title : {"one", "two"}) {
        auto* const document = new IMdiSubWindow;
        document->setWindowTitle(QString::fromLatin1(title));
        document->setShortTitle(QString::fromLatin1(title));
        area->addWindow(document);
    }
    m_host->show();
    const IMdiSubWindow* const current = area->currentSubWindow();
    update();

    m_window->go(QStringLiteral("line"), QString());
    m_window->picker()->start();
    if (kind == QLatin1String("menu") || kind == QLatin1String("plain")) {
        menu.popup(QPoint(0, 0));
        QAction* const action = kind == QLatin1String("menu") ? proxy : plainAction;
        QTest::mouseClick(&menu, Qt::LeftButton, {}, menu.actionGeometry(action).center());
        QVERIFY(menu.isVisible());
    } else if (kind == QLatin1String("button")) {
        QTest::mouseClick(bar->widgetForAction(proxy), Qt::LeftButton);
    } else if (kind == QLatin1String("tab")) {
        auto* const tabs = area->findChild<QTabBar*>();
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(0).center());
    } else {
        QTest::mouseClick(m_host.get(), Qt::LeftButton, {}, QPoint(390, 290));
    }
    QVERIFY(!m_window->picker()->isActive());
    QCOMPARE(triggered.count(), 0);
    QVERIFY(area->currentSubWindow() == current);
    if (kind == QLatin1String("plain")) {
        QVERIFY(
            m_window->answer()->text().contains(QStringLiteral("QWidget “host” has disabled it")));
    } else if (kind == QLatin1String("widget")) {
        QVERIFY(m_window->answer()->text().contains(QStringLiteral("QWidget “host”")));
    } else if (kind == QLatin1String("tab")) {
        QVERIFY(page<TablePage>("object")->widget()->isVisible());
        QCOMPARE(
            page<TablePage>("object")->view()->currentIndex().siblingAtColumn(1).data().toString(),
            QStringLiteral("one"));
    } else {
        QVERIFY(page<TablePage>("action")->widget()->isVisible());
        QCOMPARE(
            page<TablePage>("action")->view()->currentIndex().data(RowsModel::IdRole).toString(),
            QStringLiteral("edit.copy"));
    }
}

void InspectorTest::escapeEndsPicking()
{
    m_host->show();
    m_window->picker()->start();
    QTest::keyClick(m_host.get(), Qt::Key_Escape);
    QVERIFY(!m_window->picker()->isActive());
}

void InspectorTest::recordingIsUnderstood()
{
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("trace.txt"));
    QCOMPARE(m_listener->startRecording(path), QString());
    Listening listening;
    listening.subscribe(QStringLiteral("opened"));
    auto* const event = new IEvent(QStringLiteral("opened"));
    event->data().insert(QStringLiteral("path"), QStringLiteral("/a"));
    EventManager::instance()->postEvent(event, EventManager::Direct);
    m_listener->stopRecording();
    m_contexts->addContext(QStringLiteral("later"));

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray text = file.readAll();
    QVERIFY2(text.contains("\n    handler: (anonymous namespace)::Listening\n"), text.constData());
    QVERIFY2(text.contains("\n    value: path = /a\n"), text.constData());
    QVERIFY2(text.contains("\n    from "), text.constData());
    if (!QStandardPaths::findExecutable(QStringLiteral("addr2line")).isEmpty())
        QVERIFY2(
            text.contains("\n    from InspectorTest::recordingIsUnderstood()"), text.constData());
    QVERIFY2(!text.contains("later"), text.constData());
    Program program;
    for (const QByteArray& line : text.split('\n'))
        program.feed(std::string_view(line.constData(), static_cast<std::size_t>(line.size())));
    QCOMPARE(program.counts().of(Reading::Understood), qint64(2));
    QCOMPARE(program.counts().of(Reading::Unknown), qint64(0));
    QCOMPARE(program.counts().of(Reading::Damaged), qint64(0));
    QVERIFY(m_listener->startRecording(folder.filePath(QStringLiteral("no/folder"))) != QString());
}

void InspectorTest::pagesStay()
{
    PageWindow* const page = m_window->page(QStringLiteral("event"));
    page->close();
    QCOMPARE(m_window->page(QStringLiteral("event")), page);
}

void InspectorTest::everyPageHasAKey()
{
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    int key = Qt::Key_6;
    for (const char* name : {"try", "line", "object", "context", "event", "action"}) {
        const OwnLines::Scope own;
        QTest::keyClick(m_window.get(), static_cast<Qt::Key>(key--), Qt::AltModifier);
        QVERIFY2(m_window->page(QString::fromLatin1(name))->widget()->isVisible(), name);
        QWidget* const focus = QApplication::focusWidget();
        QVERIFY2(m_window->page(QString::fromLatin1(name))->isAncestorOf(focus), name);
    }
}

/// Those of which a screen reader would say nothing.
static QStringList namelessControls(const QWidget* window)
{
    QStringList result;
    const auto widgets = window->findChildren<QWidget*>();
    for (QWidget* const widget : widgets) {
        QAccessibleInterface* const heard = QAccessible::queryAccessibleInterface(widget);
        if (widget->isVisible() && widget->focusPolicy() & Qt::TabFocus && heard
            && !widget->focusProxy() && heard->text(QAccessible::Name).isEmpty())
            result.append(QLatin1String(widget->metaObject()->className()));
    }
    return result;
}

void InspectorTest::everyControlHasAName()
{
    for (const char* name : {"event", "context", "object", "line", "try", "action"}) {
        m_window->go(QString::fromLatin1(name), QString());
        QCOMPARE(namelessControls(m_window.get()), QStringList());
    }
}

void InspectorTest::preferencesAreNobodysBusiness()
{
    QStringList nameless;
    QTimer::singleShot(0, m_window.get(), [&] {
        auto* const dialog = qobject_cast<QDialog*>(QApplication::activeModalWidget());
        nameless = namelessControls(dialog);
        dialog->findChild<QSpinBox*>()->setValue(3);
        dialog->accept();
    });
    const auto actions = m_window->findChildren<QAction*>();
    for (QAction* const action : actions) {
        if (action->text().startsWith(QStringLiteral("Pr&eferences")))
            action->trigger();
    }
    QCOMPARE(nameless.join(QLatin1Char(' ')), QString());
    QCOMPARE(m_listener->stackDepth(), 3);
    QCOMPARE(wisp::recordedLines().size(), std::size_t(0));
    m_session->takeLines();
    QCOMPARE(m_session->program().counts().of(Reading::Understood), qint64(0));
}

void InspectorTest::emptyPageSaysSo()
{
    for (const char* name : {"event", "context", "object", "line", "action"}) {
        PageWindow* const page = m_window->page(QString::fromLatin1(name));
        page->refresh();
        QVERIFY2(page->findChild<QTextBrowser*>()->toPlainText().contains(
                     QStringLiteral("has not done anything yet")),
            name);
    }
}

void InspectorTest::hostsMessageHandlerIsCalled()
{
    QTest::ignoreMessage(QtInfoMsg, "heard");
    qInfo("heard");
    m_session->takeLines();
    QCOMPARE(m_session->record(m_session->nextLine() - 1).text, QByteArray("heard"));
}

QTEST_MAIN(InspectorTest)

#include "tst_inspector.moc"
