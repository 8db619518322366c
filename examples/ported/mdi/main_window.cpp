// SPDX-License-Identifier: MIT
#include "main_window.h"

#include "document.h"

#include <QApplication>
#include <QCloseEvent>
#include <QFileDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QSettings>
#include <QStatusBar>
#include <QToolBar>

static constexpr int MessageMs = 2000;
static constexpr int MostRecent = 5;

MainWindow::MainWindow()
    : m_area(new Zentu::MdiArea)
    , m_navigator(new Zentu::DocumentNavigator(m_area))
{
    setCentralWidget(m_area);
    setWindowTitle(tr("MDI"));
    Zentu::followContexts(this, {&m_contexts, &m_proxies});
    createFileMenu();
    createEditMenu();
    createOtherMenus();
    statusBar()->showMessage(tr("Ready"));
    restore();
}

void MainWindow::createFileMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&File"));
    QToolBar* const bar = addToolBar(tr("File"));
    auto* const create = new QAction(tr("&New"), this);
    connect(create, &QAction::triggered, this, [this] {
        Document* const document = createDocument();
        document->beginNew();
        m_area->addWindow(document);
    });
    add(create, tr("Create a new file"), QKeySequence::New, QStringLiteral("document-new"),
        {menu, bar});
    auto* const open = new QAction(tr("&Open..."), this);
    connect(open, &QAction::triggered, this, &MainWindow::chooseFile);
    add(open, tr("Open an existing file"), QKeySequence::Open, QStringLiteral("document-open"),
        {menu, bar});
    addProxy(QStringLiteral("file.save"), tr("&Save"), tr("Save the document to disk"),
        QKeySequence::Save, QStringLiteral("document-save"), {menu, bar});
    addProxy(QStringLiteral("file.save_as"), tr("Save &As..."),
        tr("Save the document under a new name"), QKeySequence::SaveAs,
        QStringLiteral("document-save-as"), {menu});
    menu->addSeparator();
    m_recent = createRecentMenu();
    menu->addMenu(m_recent);
    menu->addSeparator();
    menu->addAction(tr("Switch layout direction"), this, [this] {
        QApplication::setLayoutDirection(isLeftToRight() ? Qt::RightToLeft : Qt::LeftToRight);
    });
    menu->addSeparator();
    auto* const quit = new QAction(tr("E&xit"), this);
    connect(quit, &QAction::triggered, qApp, &QApplication::closeAllWindows);
    add(quit, tr("Exit the application"), QKeySequence::Quit, QStringLiteral("application-exit"),
        {menu});
}

void MainWindow::createEditMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Edit"));
    QToolBar* const bar = addToolBar(tr("Edit"));
    addProxy(QStringLiteral("edit.cut"), tr("Cu&t"), tr("Cut the selection to the clipboard"),
        QKeySequence::Cut, QStringLiteral("edit-cut"), {menu, bar});
    addProxy(QStringLiteral("edit.copy"), tr("&Copy"), tr("Copy the selection to the clipboard"),
        QKeySequence::Copy, QStringLiteral("edit-copy"), {menu, bar});
    addProxy(QStringLiteral("edit.paste"), tr("&Paste"),
        tr("Paste the clipboard in place of the selection"), QKeySequence::Paste,
        QStringLiteral("edit-paste"), {menu, bar});
}

void MainWindow::createOtherMenus()
{
    m_navigator->fillMenu(menuBar()->addMenu(tr("&Window")));
    menuBar()->addSeparator();
    QMenu* const help = menuBar()->addMenu(tr("&Help"));
    help->addAction(tr("&About"), this, [this] {
        QMessageBox::about(this, tr("About MDI"),
            tr("<b>MDI</b> shows how little a program with several documents has to say itself."));
    });
    help->addAction(tr("About &Qt"), qApp, &QApplication::aboutQt);
}

void MainWindow::add(QAction* action, const QString& tip, QKeySequence::StandardKey keys,
    const QString& icon, const QList<QWidget*>& places)
{
    action->setStatusTip(tip);
    action->setShortcuts(keys);
    action->setIcon(QIcon::fromTheme(icon));
    for (QWidget* const place : places)
        place->addAction(action);
}

void MainWindow::addProxy(const QString& id, const QString& text, const QString& tip,
    QKeySequence::StandardKey keys, const QString& icon, const QList<QWidget*>& places)
{
    auto* const proxy = new Zentu::ProxyAction(this);
    proxy->setObjectName(id);
    proxy->defaultProp()->setText(text);
    add(proxy->defaultProp(), tip, keys, icon, {});
    for (QWidget* const place : places)
        place->addAction(proxy);
    m_proxies.registerProxyAction(proxy, id);
}

Document* MainWindow::createDocument()
{
    auto* const document = new Document({&m_contexts, &m_proxies});
    connect(document, &Document::saved, this, [this, document](bool underNewName) {
        statusBar()->showMessage(tr("File saved"), MessageMs);
        if (underNewName)
            remember(document->path());
    });
    return document;
}

void MainWindow::chooseFile()
{
    const QString path = QFileDialog::getOpenFileName(this);
    if (!path.isEmpty())
        open(path);
}

void MainWindow::open(const QString& path)
{
    const QString canonical = QFileInfo(path).canonicalFilePath();
    const QList<Zentu::IMdiSubWindow*> documents = m_area->subWindows();
    for (Zentu::IMdiSubWindow* const open : documents) {
        if (!canonical.isEmpty() && static_cast<Document*>(open)->path() == canonical) {
            m_area->setCurrentSubWindow(open);
            return;
        }
    }
    remember(path);
    Document* const document = createDocument();
    if (!document->load(path)) {
        delete document;
        return;
    }
    m_area->addWindow(document);
    statusBar()->showMessage(tr("File loaded"), MessageMs);
}

static QString recentKey()
{
    return QStringLiteral("recent");
}

QMenu* MainWindow::createRecentMenu()
{
    auto* const menu = new QMenu(tr("Recent..."), this);
    menu->menuAction()->setVisible(QSettings().contains(recentKey()));
    connect(menu, &QMenu::aboutToShow, this, [this, menu] {
        menu->clear();
        const QStringList paths = QSettings().value(recentKey()).toStringList();
        for (const QString& path : paths.mid(0, MostRecent)) {
            const QString name = QFileInfo(path).fileName();
            menu->addAction(tr("&%1 %2").arg(menu->actions().size() + 1).arg(name), this,
                [this, path] { open(path); });
        }
    });
    return menu;
}

void MainWindow::remember(const QString& path)
{
    QSettings settings;
    QStringList paths = settings.value(recentKey()).toStringList();
    paths.removeAll(path);
    paths.prepend(path);
    settings.setValue(recentKey(), paths);
    m_recent->menuAction()->setVisible(true);
}

void MainWindow::restore()
{
    if (restoreGeometry(QSettings().value(QStringLiteral("geometry")).toByteArray()))
        return;
    const QRect available = screen()->availableGeometry();
    resize(available.width() / 3, available.height() / 2);
    move((available.width() - width()) / 2, (available.height() - height()) / 2);
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(m_navigator->closeAll());
    if (event->isAccepted())
        QSettings().setValue(QStringLiteral("geometry"), saveGeometry());
}
