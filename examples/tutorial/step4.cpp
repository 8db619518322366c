// SPDX-License-Identifier: MIT
#include <ZentuKit/ContextManager>
#include <ZentuKit/EventManager>
#include <ZentuKit/IEventHandler>
#include <ZentuKit/IMdiSubWindow>
#include <ZentuKit/MdiArea>
#include <ZentuKit/ProxyAction>
#include <ZentuKit/ProxyActionManager>
#include <ZentuKit/zentu_host.h>

#include <QApplication>
#include <QMainWindow>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QStatusBar>

// Shows what others say; it knows none of them.
class StatusLine : public Zentu::IEventHandler
{
public:
    explicit StatusLine(QStatusBar* bar)
        : m_bar(bar)
    {
        subscribe(QStringLiteral("notes.said"));
    }

    void handleEvent(Zentu::IEvent* event) override
    {
        m_bar->showMessage(event->data().value(QStringLiteral("text")).toString());
    }

private:
    QStatusBar* m_bar;
};

static void say(const QString& text)
{
    auto* const event = new Zentu::IEvent(QStringLiteral("notes.said"));
    event->data().insert(QStringLiteral("text"), text);
    Zentu::EventManager::instance()->postEvent(event);
}

class Note : public Zentu::IMdiSubWindow
{
public:
    explicit Note(const QString& text)
        : m_editor(new QPlainTextEdit(text))
    {
        setWidget(m_editor);
        setWindowTitle(QStringLiteral("Note"));
        // On a tab, an ampersand alone would underline the letter behind it.
        setShortTitle(text.left(20).replace(QLatin1Char('&'), QStringLiteral("&&")));
    }

private:
    QPlainTextEdit* m_editor;
};

class Window : public QMainWindow
{
public:
    Window()
    {
        setWindowTitle(QStringLiteral("Notes"));
        resize(640, 480);
        setCentralWidget(m_area);
        createFileMenu();
        createClearAction();
        say(QStringLiteral("Welcome"));
    }

    void addNote(const QString& text)
    {
        m_area->addWindow(new Note(text));
        say(QStringLiteral("A note more"));
    }

private:
    void createFileMenu()
    {
        QMenu* const file = menuBar()->addMenu(QStringLiteral("&File"));
        QAction* const add = file->addAction(QStringLiteral("&New"));
        add->setShortcut(QKeySequence::New);
        connect(add, &QAction::triggered, this, [this] { addNote(QString()); });
    }

    // What stands in the menu is one action; what it does depends on the contexts.
    void createClearAction()
    {
        Zentu::followContexts(this);
        m_clear->defaultProp()->setText(QStringLiteral("&Clear"));
        m_clear->defaultProp()->setShortcut(QKeySequence(QStringLiteral("Ctrl+L")));
        Zentu::ProxyActionManager::instance()->registerProxyAction(
            m_clear, QStringLiteral("edit.clear"));
        menuBar()->addMenu(QStringLiteral("&Edit"))->addAction(m_clear);

        // Where nothing else applies, the status line is cleared.
        auto* const clearStatus = new QAction(this);
        connect(clearStatus, &QAction::triggered, statusBar(), &QStatusBar::clearMessage);
        m_clear->addBackendAction(clearStatus, QStringLiteral("program"));
        Zentu::ContextManager::instance()->addGlobalContext(QStringLiteral("program"));
    }

    Zentu::MdiArea* m_area = new Zentu::MdiArea;
    Zentu::ProxyAction* m_clear = new Zentu::ProxyAction(this);
    StatusLine m_statusLine{statusBar()};
};

int main(int argc, char** argv)
{
    QApplication application(argc, argv);
    // The thread that asks for the bus first is the one in which it delivers.
    Zentu::EventManager::instance();
    Window window;
    window.show();
    return QApplication::exec();
}
