// SPDX-License-Identifier: MIT
#include "main_window.h"

#include "action_mgr.h"
#include "actions.h"
#include "context_mgr.h"
#include "document.h"
#include "document_factory.h"
#include "empty_page.h"
#include "event_log.h"
#include "find_action.h"
#include "glyph_icon.h"
#include "lambda_slot.h"
#include "mdi_area.h"
#include "notice_bar.h"
#include "object_pool.h"
#include "preferences_dialog.h"
#include "recent_files.h"
#include "status_reporter.h"
#include "unsaved_dialog.h"
#include "word_count.h"
#include "zentu_host.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QLabel>
#include <QMenu>
#include <QMessageBox>
#include <QMimeData>
#include <QSettings>
#include <QStackedWidget>
#include <QStatusBar>
#include <QVBoxLayout>

using Zentu::LambdaSlotWrapper;

// A header and a few lines.
static constexpr int LogHeight = 130;

MainWindow::MainWindow()
    : m_opener(this)
{
    setObjectName(QStringLiteral("main_window"));
    setWindowIcon(glyphIcon(QStringLiteral("workbench")));
    setAcceptDrops(true);
    createCentre();
    updateTitle();
    createActions(this);
    createNavigator();
    DocumentKind::publishAll(this);
    fillMenus();
    m_statusReporter = std::make_unique<StatusReporter>(statusBar());
    m_status = new QLabel(this);
    m_status->setObjectName(QStringLiteral("document_status"));
    statusBar()->addPermanentWidget(m_status);
    addWordCount(this);

    Zentu::followContexts(this);
    Zentu::ContextManager::instance()->addGlobalContext(Ids::WorkbenchContext);

    connect(m_area, &Zentu::MdiArea::currentSubWindowChanged, this,
        &MainWindow::onCurrentDocumentChanged);
    connect(&m_opener, &DocumentOpener::opened, this, &MainWindow::showDocument);
    connect(&m_opener, &DocumentOpener::requested, m_area, &Zentu::MdiArea::setCurrentSubWindow);
    restore();
}

MainWindow::~MainWindow()
{
    // The documents go with the area, after this window has ceased to be one.
    disconnect(m_area, nullptr, this, nullptr);
}

void MainWindow::createCentre()
{
    auto* centre = new QWidget(this);
    auto* layout = new QVBoxLayout(centre);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(new NoticeBar(centre));

    m_centre = new QStackedWidget(centre);
    m_empty = new EmptyPage(m_centre);
    m_empty->showRecentFiles(RecentFiles::files());
    const auto openChosen = [this](const QString& path) { m_opener.open({path}); };
    connect(m_empty, &EmptyPage::chosen, this, openChosen);
    m_area = new Zentu::MdiArea(m_centre);
    m_area->setObjectName(QStringLiteral("documents"));
    m_area->setAccessibleName(tr("Documents"));
    m_centre->addWidget(m_empty);
    m_centre->addWidget(m_area);
    layout->addWidget(m_centre, 1);
    setCentralWidget(centre);
}

void MainWindow::createNavigator()
{
    using Navigator = Zentu::DocumentNavigator;
    m_navigator = new Navigator(m_area, this);
    m_navigator->askBeforeClosing = [this](const QList<Zentu::IMdiSubWindow*>& windows) {
        QList<Document*> documents;
        for (Zentu::IMdiSubWindow* window : windows)
            documents.append(qobject_cast<Document*>(window));
        return UnsavedDialog::mayClose(documents, this);
    };
    m_navigator->action(Navigator::Tile)->setObjectName(QStringLiteral("window.tile"));
    m_navigator->action(Navigator::Cascade)->setObjectName(QStringLiteral("window.cascade"));
}

void MainWindow::fillMenus()
{
    auto* registry = Zentu::ActionManager::instance();
    // Opening files works whatever the document, in the context that is always there.
    auto* always = new Zentu::DocumentActions(Ids::WorkbenchContext, Zentu::Managers(), this);
    always->add(Ids::New, [this] { m_opener.openNew(); });
    always->add(Ids::Open, [this] { chooseFiles(); });

    QMenu* const file = registry->getMenu(Ids::MenuFile);
    auto* recentMenu = new QMenu(tr("Open &Recent"), file);
    recentMenu->setObjectName(QStringLiteral("menu.recent"));
    file->insertMenu(file->actions().at(2), recentMenu);
    auto* recent = new RecentFiles(recentMenu, this);
    connect(
        recent, &RecentFiles::chosen, this, [this](const QString& path) { m_opener.open({path}); });

    connect(recent, &RecentFiles::changed, m_empty, &EmptyPage::showRecentFiles);

    const auto add = [](QMenu* menu, const QString& text, const QString& name,
                         const std::function<void()>& reaction,
                         const QKeySequence& shortcut = QKeySequence()) {
        QAction* const action = menu->addAction(text);
        action->setObjectName(name);
        action->setShortcut(shortcut);
        LambdaSlotWrapper::connect(action, SIGNAL(triggered(bool)), reaction);
    };
    file->addSeparator();
    add(
        file, tr("&Quit"), QStringLiteral("file.quit"), [this] { close(); }, QKeySequence::Quit);

    QMenu* const edit = registry->getMenu(Ids::MenuEdit);
    edit->addSeparator();
    add(
        edit, tr("Pr&eferences..."), QStringLiteral("edit.preferences"),
        [this] { showPreferences(); }, QKeySequence(QStringLiteral("Ctrl+,")));

    auto* log = new EventLog(this);
    addDockWidget(Qt::BottomDockWidgetArea, log);
    resizeDocks({log}, {LogHeight}, Qt::Vertical);
    QMenu* const view = registry->getMenu(Ids::MenuView);
    view->addSeparator();
    log->toggleViewAction()->setText(tr("&Events"));
    view->addAction(log->toggleViewAction());

    m_navigator->fillMenu(registry->getMenu(Ids::MenuWindow));

    add(
        registry->getMenu(Ids::MenuTools), tr("&Find Action..."),
        QStringLiteral("tools.find_action"),
        [this] { FindActionDialog(Ids::MenuBar, this).exec(); },
        QKeySequence(QStringLiteral("Ctrl+Shift+P")));

    add(registry->getMenu(Ids::MenuHelp), tr("&About"), QStringLiteral("help.about"), [this] {
        QMessageBox::about(this, tr("About the Workbench"),
            tr("<p><b>Workbench 1.0</b></p>"
               "<p>Opens text and image files, and shows the services of ZentuKit "
               "at work.</p>"));
    });
}

void MainWindow::open(const QStringList& files)
{
    m_opener.open(files);
}

void MainWindow::showDocument(Document* document)
{
    connect(document, &Document::closeOthersRequested, this,
        [this, document] { m_navigator->closeOthers(document); });
    // The area goes out of sight with its last document, which is deleted later.
    connect(document, &QObject::destroyed, this, &MainWindow::updateCentre, Qt::QueuedConnection);
    connect(document, &Document::statusChanged, this, &MainWindow::updateStatus);
    connect(document, &Document::statusChanged, this, &MainWindow::updateTitle);
    connect(document, &QWidget::windowTitleChanged, this, &MainWindow::updateTitle);
    m_centre->setCurrentWidget(m_area);
    m_area->addWindow(document);
}

// The file first, whether its window is maximized or not.
void MainWindow::updateTitle()
{
    const auto* document = qobject_cast<Document*>(m_area->currentSubWindow());
    const QString program = tr("Workbench");
    const QString title =
        document ? document->windowTitle() + QStringLiteral(" - ") + program : program;
    if (title != windowTitle())
        setWindowTitle(title);
    setWindowModified(document && document->hasChanges());
}

// A maximized document puts its title behind ours.
void MainWindow::changeEvent(QEvent* event)
{
    QMainWindow::changeEvent(event);
    if (event->type() == QEvent::WindowTitleChange)
        updateTitle();
}

void MainWindow::updateStatus()
{
    const auto* document = qobject_cast<Document*>(m_area->currentSubWindow());
    m_status->setText(document ? document->status() : QString());
}

void MainWindow::updateCentre()
{
    if (m_area->subWindows().isEmpty())
        m_centre->setCurrentIndex(0);
}

void MainWindow::onCurrentDocumentChanged(Zentu::IMdiSubWindow* current)
{
    auto* document = qobject_cast<Document*>(current);
    const QString kind = document ? document->kind() : QString();
    const QList<QObject*> published = Zentu::ObjectPool::instance()->allObjects();
    const auto direct = [&](bool isCurrent) {
        for (QObject* object : published) {
            auto* factory = qobject_cast<DocumentFactory*>(object);
            if (factory && (factory->kind() == kind) == isCurrent)
                factory->setCurrent(isCurrent ? document : nullptr);
        }
    };
    // What both kinds have stays enabled all the time: the new context comes before the old one
    // goes.
    direct(true);
    direct(false);
    updateStatus();
    updateTitle();
}

void MainWindow::chooseFiles()
{
    m_opener.open(QFileDialog::getOpenFileNames(this, tr("Open")));
}

void MainWindow::showPreferences()
{
    PreferencesDialog(this).exec();
}

void MainWindow::restore()
{
    const QSettings settings;
    if (!restoreGeometry(settings.value(QStringLiteral("window/geometry")).toByteArray()))
        resize(1000, 700);
    restoreState(settings.value(QStringLiteral("window/state")).toByteArray());
}

// All are asked for before any is closed.
void MainWindow::closeEvent(QCloseEvent* event)
{
    if (!m_navigator->closeAll()) {
        event->ignore();
        return;
    }
    QSettings settings;
    settings.setValue(QStringLiteral("window/geometry"), saveGeometry());
    settings.setValue(QStringLiteral("window/state"), saveState());
    QMainWindow::closeEvent(event);
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event)
{
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event)
{
    QStringList files;
    const QList<QUrl> urls = event->mimeData()->urls();
    for (const QUrl& url : urls) {
        if (url.isLocalFile())
            files.append(url.toLocalFile());
    }
    m_opener.open(files);
    event->acceptProposedAction();
}
