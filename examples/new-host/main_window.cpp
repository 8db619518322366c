#include "main_window.h"

#include "font_page.h"
#include "note.h"

#include <ZentuKit/ContextManager>
#include <ZentuKit/EventManager>
#include <ZentuKit/MdiArea>
#include <ZentuKit/OptionDialog>
#include <ZentuKit/ProxyAction>
#include <ZentuKit/ProxyActionManager>

#include <QCloseEvent>
#include <QMenu>
#include <QMenuBar>
#include <QStatusBar>

#include <algorithm>

MainWindow::MainWindow()
    : m_area(new Zentu::MdiArea)
    , m_statusLine(statusBar())
{
    setWindowTitle(tr("Notes"));
    resize(800, 600);
    setCentralWidget(m_area);

    // Actions follow the contexts through this one connection.
    auto* const contexts = Zentu::ContextManager::instance();
    connect(contexts, &Zentu::ContextManager::contextChanged, this, [contexts] {
        Zentu::ProxyActionManager::instance()->setCurrentContext(contexts->currentContexts());
    });
    // The context of notes applies while one is current.
    connect(m_area, &Zentu::MdiArea::currentSubWindowChanged, this,
        [contexts](Zentu::IMdiSubWindow* current) {
            if (current)
                contexts->addContext(Note::Context);
            else if (contexts->currentContexts().contains(Note::Context))
                contexts->removeContext(Note::Context);
        });
    createActions();
}

MainWindow::~MainWindow()
{
    // The notes go with the area, after this window has ceased to be one.
    disconnect(m_area, nullptr, this, nullptr);
}

void MainWindow::createActions()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->addAction(
        tr("&New Note"), this, [this] { addNote(QString()); }, QKeySequence::New);
    file->addAction(tr("&Preferences..."), this, &MainWindow::showPreferences);
    file->addAction(tr("&Quit"), this, &QWidget::close, QKeySequence::Quit);

    // One action in the menu; what it does is said by whatever belongs to the current context.
    auto* const clear = new Zentu::ProxyAction(this);
    clear->setObjectName(QStringLiteral("edit.clear"));
    clear->defaultProp()->setText(tr("&Clear"));
    clear->defaultProp()->setShortcut(QKeySequence(QStringLiteral("Ctrl+L")));
    menuBar()->addMenu(tr("&Edit"))->addAction(clear);
    auto* const clearNote = new QAction(this);
    connect(clearNote, &QAction::triggered, this,
        [this] { static_cast<Note*>(m_area->currentSubWindow())->clear(); });
    clear->addBackendAction(clearNote, Note::Context);
    Zentu::ProxyActionManager::instance()->registerProxyAction(clear, QStringLiteral("edit.clear"));
}

Note* MainWindow::addNote(const QString& text)
{
    auto* const note = new Note(text);
    m_area->addWindow(note);
    auto* const event = new Zentu::IEvent(Note::Added);
    event->data().insert(QStringLiteral("title"), note->shortTitle());
    Zentu::EventManager::instance()->postEvent(event);
    return note;
}

// Every note is asked for before one is lost.
void MainWindow::closeEvent(QCloseEvent* event)
{
    const QList<Zentu::IMdiSubWindow*> notes = m_area->subWindows();
    event->setAccepted(std::all_of(notes.begin(), notes.end(),
        [](Zentu::IMdiSubWindow* note) { return static_cast<Note*>(note)->mayClose(); }));
}

void MainWindow::showPreferences()
{
    FontPage page;
    Zentu::OptionDialog(QList<Zentu::IOptionPage*>({&page}), this).exec();
}
