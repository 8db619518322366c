#include "main_window.h"

#include "font_page.h"
#include "note.h"

#include <ZentuKit/EventManager>
#include <ZentuKit/MdiArea>
#include <ZentuKit/OptionDialog>
#include <ZentuKit/ProxyAction>
#include <ZentuKit/ProxyActionManager>
#include <ZentuKit/zentu_host.h>

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

    Zentu::followContexts(this);
    createActions();
}

MainWindow::~MainWindow()
{
    // It would keep the actions of this window, which go now.
    delete Zentu::ProxyActionManager::instance();
}

void MainWindow::createActions()
{
    QMenu* const file = menuBar()->addMenu(tr("&File"));
    file->addAction(tr("&New Note"), this, [this] { addNote(QString()); })
        ->setShortcut(QKeySequence::New);
    file->addAction(tr("&Preferences..."), this, &MainWindow::showPreferences);
    file->addAction(tr("&Quit"), this, &QWidget::close)->setShortcut(QKeySequence::Quit);

    // One action in the menu; what it does is said by the current document.
    auto* const clear = new Zentu::ProxyAction(this);
    clear->setObjectName(QStringLiteral("edit.clear"));
    clear->defaultProp()->setText(tr("&Clear"));
    clear->defaultProp()->setShortcut(QKeySequence(QStringLiteral("Ctrl+L")));
    menuBar()->addMenu(tr("&Edit"))->addAction(clear);
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
