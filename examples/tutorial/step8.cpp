// SPDX-License-Identifier: MIT
#include <ZentuKit/CmdLineParser>
#include <ZentuKit/ContextManager>
#include <ZentuKit/EventManager>
#include <ZentuKit/IEventHandler>
#include <ZentuKit/IMdiSubWindow>
#include <ZentuKit/IOptionPage>
#include <ZentuKit/MdiArea>
#include <ZentuKit/OptionDialog>
#include <ZentuKit/ProxyAction>
#include <ZentuKit/ProxyActionManager>
#include <ZentuKit/zentu_host.h>

#include <QApplication>
#include <QCloseEvent>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QSpinBox>
#include <QStatusBar>

#include <algorithm>

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
        m_actions.add(QStringLiteral("edit.clear"), [this] { clear(); })
            ->setText(QStringLiteral("&Clear Note"));
    }

    // What belongs to the note applies while it is current.
    void currentChanged(bool current) override { m_actions.setCurrent(current); }

    bool mayClose()
    {
        if (!m_editor->document()->isModified())
            return true;
        return QMessageBox::question(this, shortTitle(), QStringLiteral("Lose the changes?"),
                   QMessageBox::Discard | QMessageBox::Cancel)
            == QMessageBox::Discard;
    }

    // Can be undone, as the editor's own clear() cannot.
    void clear()
    {
        QTextCursor all(m_editor->document());
        all.select(QTextCursor::Document);
        all.removeSelectedText();
    }

protected:
    // A close that is accepted must reach the base class: it tells the area.
    void closeEvent(QCloseEvent* event) override
    {
        if (mayClose())
            IMdiSubWindow::closeEvent(event);
        else
            event->ignore();
    }

private:
    QPlainTextEdit* m_editor;
    Zentu::DocumentActions m_actions;
};

// A page of the preferences. It is made when it is looked at for the first time.
class FontPage : public Zentu::IOptionPage
{
public:
    QStringList category() const override { return {QStringLiteral("Font")}; }
    QWidget* pageWidget() override { return m_size; }

    void initialize() override
    {
        m_size = new QSpinBox;
        m_size->setRange(6, 72);
        m_size->setValue(QApplication::font().pointSize());
    }

    void apply() override
    {
        QFont font = QApplication::font();
        font.setPointSize(m_size->value());
        QApplication::setFont(font);
    }

    void finalize() override { }

private:
    QSpinBox* m_size = nullptr; // the dialog takes it
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

protected:
    // Every note is asked for before one is lost.
    void closeEvent(QCloseEvent* event) override
    {
        const QList<Zentu::IMdiSubWindow*> notes = m_area->subWindows();
        event->setAccepted(std::all_of(notes.begin(), notes.end(),
            [](Zentu::IMdiSubWindow* note) { return static_cast<Note*>(note)->mayClose(); }));
    }

private:
    void createFileMenu()
    {
        QMenu* const file = menuBar()->addMenu(QStringLiteral("&File"));
        QAction* const add = file->addAction(QStringLiteral("&New"));
        add->setShortcut(QKeySequence::New);
        connect(add, &QAction::triggered, this, [this] { addNote(QString()); });
        QAction* const preferences = file->addAction(QStringLiteral("&Preferences..."));
        connect(preferences, &QAction::triggered, this, [this] {
            FontPage page;
            Zentu::OptionDialog({&page}, this).exec();
        });
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
    // Before Qt looks for a display, so that help needs none.
    Zentu::CmdLineParser parser(QStringLiteral("notes"));
    parser.setBrief(QStringLiteral("Keeps notes."));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addOption(QStringLiteral("--title"), QStringLiteral("The title of the window."),
        QStringLiteral("text"));
    parser.addPositionalArgument(QStringLiteral("NOTE..."), QStringLiteral("Texts to begin with."));
    Zentu::processCommandLine(parser, argc, argv);

    int qtArgc = 1; // all options are ours
    QApplication application(qtArgc, argv);
    // The thread that asks for the bus first is the one in which it delivers.
    Zentu::EventManager::instance();
    Window window;
    if (parser.isSet(QStringLiteral("title")))
        window.setWindowTitle(parser.getValue(QStringLiteral("title")));
    const QStringList texts = parser.positionalArguments();
    for (const QString& text : texts)
        window.addNote(text);
    window.show();
    return QApplication::exec();
}
