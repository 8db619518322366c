// SPDX-License-Identifier: MIT
#include "main_window.h"

#include "document.h"

#include <QApplication>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFontComboBox>
#include <QFontDatabase>
#include <QFontInfo>
#include <QMenuBar>
#include <QMessageBox>
#include <QStatusBar>
#include <QToolBar>

static QKeySequence ctrl(Qt::Key key)
{
    return QKeySequence(static_cast<int>(Qt::CTRL) | static_cast<int>(key));
}

MainWindow::MainWindow()
    : m_area(new Zentu::MdiArea)
    , m_navigator(new Zentu::DocumentNavigator(m_area))
{
    setCentralWidget(m_area);
    setWindowTitle(QApplication::applicationName());
    setToolButtonStyle(Qt::ToolButtonFollowStyle);
    Zentu::followContexts(this, {&m_contexts, &m_proxies});
    createFileMenu();
    createEditMenu();
    createFormatMenu();
    createFormatBar();
    m_navigator->fillMenu(menuBar()->addMenu(tr("&Window")));
    createHelpMenu();
    connect(m_area, &Zentu::MdiArea::currentSubWindowChanged, this, &MainWindow::showFormat);
}

void MainWindow::createFileMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&File"));
    QToolBar* const bar = addToolBar(tr("File Actions"));
    QAction* const create = menu->addAction(
        QIcon::fromTheme(QStringLiteral("document-new")), tr("&New"), this, &MainWindow::openNew);
    create->setShortcut(QKeySequence::New);
    QAction* const open = menu->addAction(QIcon::fromTheme(QStringLiteral("document-open")),
        tr("&Open..."), this, &MainWindow::chooseFile);
    open->setShortcut(QKeySequence::Open);
    bar->addActions({create, open});
    menu->addSeparator();
    addProxies({{"file.save", QT_TR_NOOP("&Save"), QKeySequence::Save, "document-save"},
                   {"file.save_as", QT_TR_NOOP("Save &As..."), {}, ""}},
        menu, bar);
    menu->addSeparator();
    addProxies({{"file.print", QT_TR_NOOP("&Print..."), QKeySequence::Print, "document-print"},
                   {"file.preview", QT_TR_NOOP("Print Preview..."), {}, ""},
                   {"file.pdf", QT_TR_NOOP("&Export PDF..."), ctrl(Qt::Key_D), "exportpdf"}},
        menu, bar);
    menu->addSeparator();
    menu->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(ctrl(Qt::Key_Q));
}

void MainWindow::createEditMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Edit"));
    QToolBar* const bar = addToolBar(tr("Edit Actions"));
    addProxies({{"edit.undo", QT_TR_NOOP("&Undo"), QKeySequence::Undo, "edit-undo"},
                   {"edit.redo", QT_TR_NOOP("&Redo"), QKeySequence::Redo, "edit-redo"}},
        menu, bar);
    menu->addSeparator();
    addProxies({{"edit.cut", QT_TR_NOOP("Cu&t"), QKeySequence::Cut, "edit-cut"},
                   {"edit.copy", QT_TR_NOOP("&Copy"), QKeySequence::Copy, "edit-copy"},
                   {"edit.paste", QT_TR_NOOP("&Paste"), QKeySequence::Paste, "edit-paste"}},
        menu, bar);
}

void MainWindow::createFormatMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("F&ormat"));
    QToolBar* const bar = addToolBar(tr("Format Actions"));
    addProxies({{"format.bold", QT_TR_NOOP("&Bold"), ctrl(Qt::Key_B), "format-text-bold"},
                   {"format.italic", QT_TR_NOOP("&Italic"), ctrl(Qt::Key_I), "format-text-italic"},
                   {"format.underline", QT_TR_NOOP("&Underline"), ctrl(Qt::Key_U),
                       "format-text-underline"}},
        menu, bar);
    // Each shows what it does.
    const auto setFont = [this](const QString& id, void (QFont::*set)(bool)) {
        QFont font;
        (font.*set)(true);
        m_proxies.getProxyAction(id)->setFont(font);
    };
    setFont(QStringLiteral("format.bold"), &QFont::setBold);
    setFont(QStringLiteral("format.italic"), &QFont::setItalic);
    setFont(QStringLiteral("format.underline"), &QFont::setUnderline);
    menu->addSeparator();
    QList<Look> aligns = {
        {"align.left", QT_TR_NOOP("&Left"), ctrl(Qt::Key_L), "format-justify-left"},
        {"align.center", QT_TR_NOOP("C&enter"), ctrl(Qt::Key_E), "format-justify-center"},
        {"align.right", QT_TR_NOOP("&Right"), ctrl(Qt::Key_R), "format-justify-right"}};
    // Left is on the left.
    if (QApplication::isRightToLeft())
        std::reverse(aligns.begin(), aligns.end());
    addProxies(aligns, menu, bar);
    addProxies({{"align.justify", QT_TR_NOOP("&Justify"), ctrl(Qt::Key_J), "format-justify-fill"},
                   {"format.indent", QT_TR_NOOP("&Indent"), ctrl(Qt::Key_BracketRight),
                       "format-indent-more"},
                   {"format.unindent", QT_TR_NOOP("&Unindent"), ctrl(Qt::Key_BracketLeft),
                       "format-indent-less"}},
        menu, bar);
    menu->addSeparator();
    addProxies({{"format.color", QT_TR_NOOP("&Color..."), {}, "format-text-color"}}, menu, bar);
    menu->addSeparator();
    addProxies(
        {{"format.checked", QT_TR_NOOP("Chec&ked"), ctrl(Qt::Key_K), "status-checkbox-checked"}},
        menu, bar);
}

void MainWindow::createFormatBar()
{
    addToolBarBreak(Qt::TopToolBarArea);
    m_formats = addToolBar(tr("Formats"));
    m_formats->setAllowedAreas(Qt::TopToolBarArea | Qt::BottomToolBarArea);
    m_style = new QComboBox;
    for (const ParagraphStyle& style : Document::styles())
        m_style->addItem(Document::tr(style.name));
    m_font = new QFontComboBox;
    m_size = new QComboBox;
    m_size->setEditable(true);
    const QList<int> sizes = QFontDatabase::standardSizes();
    for (const int size : sizes)
        m_size->addItem(QString::number(size));
    for (QComboBox* const box : {m_style, static_cast<QComboBox*>(m_font), m_size})
        m_formats->addWidget(box);
    m_formats->setEnabled(false);
    connect(m_style, QOverload<int>::of(&QComboBox::activated), this,
        [this](int index) { current()->setStyle(index); });
    connect(m_font, &QComboBox::textActivated, this,
        [this](const QString& family) { current()->setFamily(family); });
    connect(m_size, &QComboBox::textActivated, this,
        [this](const QString& size) { current()->setSize(size.toDouble()); });
}

void MainWindow::createHelpMenu()
{
    QMenu* const menu = menuBar()->addMenu(tr("&Help"));
    menu->addAction(tr("&About"), this, [this] {
        QMessageBox::about(this, tr("About"),
            tr("Rich texts with Qt's editor, and with actions that belong to the document."));
    });
    menu->addAction(tr("About &Qt"), qApp, &QApplication::aboutQt);
}

void MainWindow::addProxies(const QList<Look>& looks, QMenu* menu, QToolBar* bar)
{
    for (const Look& look : looks) {
        const QString id = QLatin1String(look.id);
        auto* const proxy = new Zentu::ProxyAction(this);
        proxy->setObjectName(id);
        proxy->setPriority(QAction::LowPriority);
        proxy->defaultProp()->setText(tr(look.text));
        proxy->defaultProp()->setShortcut(look.key);
        proxy->defaultProp()->setIcon(QIcon::fromTheme(QLatin1String(look.icon)));
        menu->addAction(proxy);
        if (*look.icon)
            bar->addAction(proxy);
        m_proxies.registerProxyAction(proxy, id);
    }
}

Document* MainWindow::current() const
{
    return static_cast<Document*>(m_area->currentSubWindow());
}

void MainWindow::showFormat()
{
    const Document* const document = current();
    m_formats->setEnabled(document != nullptr);
    if (!document)
        return;
    const QFont font = document->currentFont();
    m_style->setCurrentIndex(document->currentStyle());
    m_font->setCurrentIndex(m_font->findText(QFontInfo(font).family()));
    m_size->setCurrentIndex(m_size->findText(QString::number(font.pointSize())));
}

void MainWindow::add(Document* document)
{
    connect(document, &Document::formatChanged, this, &MainWindow::showFormat);
    connect(document, &Document::message, this,
        [this](const QString& text) { statusBar()->showMessage(text); });
    m_area->addWindow(document);
}

void MainWindow::openNew()
{
    add(new Document({&m_contexts, &m_proxies}));
}

bool MainWindow::open(const QString& path)
{
    auto* const document = new Document({&m_contexts, &m_proxies});
    if (!document->load(path)) {
        delete document;
        return false;
    }
    add(document);
    return true;
}

void MainWindow::chooseFile()
{
    QFileDialog dialog(this, tr("Open File..."));
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setMimeTypeFilters({QStringLiteral("text/html"), QStringLiteral("text/markdown"),
        QStringLiteral("text/plain")});
    if (dialog.exec() != QDialog::Accepted)
        return;
    const QString path = dialog.selectedFiles().constFirst();
    const QString shown = QDir::toNativeSeparators(path);
    statusBar()->showMessage(
        open(path) ? tr("Opened \"%1\"").arg(shown) : tr("Could not open \"%1\"").arg(shown));
}

void MainWindow::closeEvent(QCloseEvent* event)
{
    event->setAccepted(m_navigator->closeAll());
}
