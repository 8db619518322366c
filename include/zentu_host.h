// SPDX-License-Identifier: MIT
#pragma once

#include "cmdline_parser.h"
#include "context_mgr.h"
#include "file_watcher.h"
#include "mdi_area.h"
#include "proxy_act.h"

#include <QActionGroup>
#include <QCoreApplication>
#include <QFileInfo>
#include <QIcon>
#include <QMenu>
#include <QPointer>
#include <QSignalBlocker>
#include <QTabBar>
#include <QVector>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <utility>

/**
 * @file
 * What most hosts would write on top of the library: the actions of a document, the window menu,
 * files that change, and the beginning of main(). Everything here is inline and uses the public
 * interface only, so that a host may copy and change it. Nothing needs `moc`: there are callables
 * where there would be signals. For the GUI thread only.
 */

namespace Zentu {

/**
 * The managers that the parts of one window share; instance() of each by default.
 *
 * Two windows at once need managers of their own, as identifiers and contexts belong to a manager:
 *
 * @code
 * class MainWindow : public QMainWindow
 * {
 *     Zentu::ContextManager m_contexts; // before what uses them
 *     Zentu::ProxyActionManager m_proxies;
 *     Zentu::ActionManager m_menus;
 *     // {&m_contexts, &m_proxies} is given to all below
 * };
 * @endcode
 *
 * The destructor of a manager makes instance() forget its object, even if it is another one: the
 * next call of instance() creates an empty manager, and the one so far is lost for those who have
 * not kept its address. So a program whose windows have managers does not use instance() at all.
 *
 * A program with one window at a time that makes it again deletes the instances with it, in the
 * destructor of the window: the manager of the proxies would keep those of the dead window.
 */
struct Managers
{
    /// Not owned; must not be null.
    ContextManager* contexts = ContextManager::instance();
    /// Not owned; must not be null.
    ProxyActionManager* proxies = ProxyActionManager::instance();
};

/**
 * Hands the contexts to the proxies, now and whenever they change: the one connection from contexts
 * to actions.
 *
 * It ends with @p until, or with either manager. A window is a good choice, as the connection is
 * silent from the end of the window's own destructor on: the documents that go with the window do
 * not reach proxies that went before them. (That is seen by the meta-object, so a window that is a
 * plain QWidget, or of a class without Q_OBJECT directly above it, is no such choice.)
 */
inline void followContexts(QObject* until, const Managers& managers = Managers())
{
    const auto follow = [until, type = until->metaObject(), contexts = managers.contexts,
                            proxies = QPointer<ProxyActionManager>(managers.proxies)] {
        // In the destructor of its base class an object is not of its class any more.
        if (proxies && until->metaObject()->inherits(type))
            proxies->setCurrentContext(contexts->currentContexts());
    };
    QObject::connect(managers.contexts, &ContextManager::contextChanged, until, follow);
    follow();
}

/**
 * The backends of one document, or of one kind of document, with the context in which they apply.
 *
 * @code
 * class TextDocument : public Zentu::IMdiSubWindow
 * {
 *     void createActions()
 *     {
 *         m_actions.add(QStringLiteral("edit.clear"), [this] { m_editor->clear(); });
 *         m_actions.addCheckable(QStringLiteral("view.wrap"), true, [this](bool on) { wrap(on); });
 *     }
 *     void currentChanged(bool current) override { m_actions.setCurrent(current); }
 *
 *     Zentu::DocumentActions m_actions;
 * };
 * @endcode
 *
 * Proxies are named by their identifiers, and must have been registered before. Where there is
 * none, a warning `DocumentActions: no proxy action "..."` says so, and the backend is made all the
 * same. Backends are enabled, have no look of their own, and belong to this object; the proxies
 * follow them. All keys of defaultProp(), or of a backend that has some, reach the proxy, which
 * mirrors only the first by itself.
 *
 * Destroying it takes the context and the backends back. Proxies and managers may go before it or
 * after it.
 */
class DocumentActions : public QObject
{
public:
    /// Creates it without backends. An empty @p context stands for one that no other object has; a
    /// given one is for one object at a time.
    explicit DocumentActions(const QString& context = QString(),
        const Managers& managers = Managers(), QObject* parent = nullptr)
        : QObject(parent)
        , m_context(context.isEmpty() ? ownContext() : context)
        , m_contexts(managers.contexts)
        , m_proxies(managers.proxies)
    {
    }

    ~DocumentActions() override
    {
        leave();
        for (const Backend& backend : qAsConst(m_backends)) {
            if (backend.proxy && backend.action
                && backend.proxy->getBackendAction(m_context) == backend.action)
                backend.proxy->removeBackendContext(m_context);
        }
    }

    /// The name of the context.
    QString context() const { return m_context; }

    /// The backend that was added under @p id, or null.
    QAction* action(const QString& id) const
    {
        for (const Backend& backend : m_backends) {
            if (backend.id == id)
                return backend.action;
        }
        return nullptr;
    }

    /// Adds a backend that calls @p reaction, with or without a `bool`, when it is triggered.
    template <typename Reaction>
    QAction* add(const QString& id, Reaction reaction)
    {
        auto* const backend = new QAction(this);
        connect(backend, &QAction::triggered, this, reaction);
        attach(id, backend);
        return backend;
    }

    /// Adds a backend that calls a @p method of @p receiver, as long as that lives.
    template <typename Receiver, typename Method>
    QAction* add(const QString& id, const Receiver* receiver, Method method)
    {
        auto* const backend = new QAction(this);
        connect(backend, &QAction::triggered, receiver, method);
        attach(id, backend);
        return backend;
    }

    /// Adds an @p action that exists, such as one of a DocumentNavigator, and returns it. It stays
    /// its owner's, and may be added under one identifier of one object.
    QAction* add(const QString& id, QAction* action)
    {
        if (action->isCheckable())
            followClicks(action);
        attach(id, action);
        return action;
    }

    /**
     * Adds a backend that is @p checked or not, and calls @p reaction, with or without a `bool`,
     * when it is triggered.
     *
     * The backend follows a click on the proxy before the reaction and every listener of its
     * signals: its isChecked() is what is seen. To change it, call its setChecked().
     */
    template <typename Reaction>
    QAction* addCheckable(const QString& id, bool checked, Reaction reaction)
    {
        QAction* const backend = createCheckable(checked, nullptr);
        connect(backend, &QAction::triggered, this, reaction);
        attach(id, backend);
        return backend;
    }

    /**
     * Adds checkable backends of which one is checked, that of @p current at first, and calls
     * @p reaction with the identifier of the one that is triggered.
     *
     * The group of backends follows a click, and the proxies follow the group; a click on the one
     * that is checked leaves it so. To check another one, call its setChecked().
     */
    template <typename Reaction>
    QActionGroup* addExclusive(const QStringList& ids, const QString& current, Reaction reaction)
    {
        auto* const group = new QActionGroup(this);
        for (const QString& id : ids) {
            QAction* const backend = createCheckable(id == current, group);
            connect(backend, &QAction::triggered, this, [id, reaction] { reaction(id); });
            attach(id, backend);
        }
        return group;
    }

    /**
     * Brings the context in, or takes it out; for IMdiSubWindow::currentChanged().
     *
     * A context goes out when the next change of contexts has been made, so that actions that both
     * documents have are never without a backend in between; if there is none, with the next turn
     * of the event loop.
     */
    void setCurrent(bool current)
    {
        if (!m_contexts || current == m_isCurrent)
            return;
        m_isCurrent = current;
        if (current) {
            disconnect(m_successor);
            m_isIn = true;
            m_contexts->addContext(m_context);
        } else {
            const auto leaveNow = [this] { leaveIfLeft(); };
            m_successor = connect(m_contexts, &ContextManager::contextChanged, this, leaveNow);
            QMetaObject::invokeMethod(this, leaveNow, Qt::QueuedConnection);
        }
    }

private:
    struct Backend
    {
        QString id;
        QPointer<ProxyAction> proxy;
        QPointer<QAction> action;
        bool hadProxy;
    };

    QString ownContext() const
    {
        return QStringLiteral("document 0x") + QString::number(quintptr(this), 16);
    }

    void attach(const QString& id, QAction* action)
    {
        ProxyAction* const proxy = m_proxies ? m_proxies->getProxyAction(id) : nullptr;
        m_backends.append({id, proxy, action, proxy != nullptr});
        if (proxy) {
            followKeys(proxy);
            proxy->addBackendAction(action, m_context);
        } else {
            qWarning("DocumentActions: no proxy action \"%s\"", qUtf8Printable(id));
        }
    }

    QAction* createCheckable(bool checked, QActionGroup* group)
    {
        auto* const backend = new QAction(this);
        backend->setCheckable(true);
        backend->setActionGroup(group);
        backend->setChecked(checked);
        followClicks(backend);
        return backend;
    }

    // The signal of the proxy is repeated by the backend, whose state is another one still.
    static void followClicks(QAction* backend)
    {
        connect(backend, &QAction::toggled, backend, [backend](bool checked) {
            if (backend->isChecked() == checked)
                return;
            const QActionGroup* const group = backend->actionGroup();
            if (checked || !group || !group->isExclusive()) {
                const QSignalBlocker onceIsEnough(backend);
                backend->setChecked(checked);
            }
            // The group hears it, and the proxy if it was refused.
            Q_EMIT backend->changed();
        });
    }

    // Whatever changes the first key changes the proxy.
    static void followKeys(ProxyAction* proxy)
    {
        if (proxy->property("_zentu_all_keys").toBool())
            return;
        proxy->setProperty("_zentu_all_keys", true);
        const auto follow = [proxy] {
            const QAction* const active = proxy->currentActiveBackendAction();
            const QAction* const source =
                active && !active->shortcut().isEmpty() ? active : proxy->defaultProp();
            if (proxy->shortcuts() != source->shortcuts())
                proxy->setShortcuts(source->shortcuts());
        };
        connect(proxy, &QAction::changed, proxy, follow);
        follow();
    }

    void leaveIfLeft()
    {
        if (!m_isCurrent)
            leave();
    }

    void leave()
    {
        disconnect(m_successor);
        const bool wasIn = std::exchange(m_isIn, false);
        if (!wasIn || !m_contexts || !m_contexts->currentContexts().contains(m_context))
            return;
        // The manager of the proxies would go on to those that are dead.
        for (const Backend& backend : qAsConst(m_backends)) {
            if (backend.hadProxy && !backend.proxy)
                return;
        }
        m_contexts->removeContext(m_context);
    }

    QString m_context;
    QPointer<ContextManager> m_contexts;
    QPointer<ProxyActionManager> m_proxies;
    QVector<Backend> m_backends;
    QMetaObject::Connection m_successor;
    bool m_isCurrent = false;
    bool m_isIn = false;
};

/**
 * Goes through the documents of an area, closes them, and lists them in menus.
 *
 * @code
 * auto* const navigator = new Zentu::DocumentNavigator(area);
 * navigator->fillMenu(menuBar()->addMenu(tr("&Window")));
 * @endcode
 *
 * Its actions follow the documents; they can stand in menus, or be backends of proxies in a context
 * that is always there: `always.add("window.next", navigator->action(Navigator::Next))`.
 */
class DocumentNavigator : public QObject
{
public:
    /// What action() offers.
    enum Command {
        Close,
        CloseAll,
        CloseOthers,
        Tile,
        Cascade,
        Next,
        Previous,
        NextUsed,
        PreviousUsed,
        CommandCount
    };

    /// Asks once about documents that are to be closed; false keeps them all.
    using Question = std::function<bool(const QList<IMdiSubWindow*>& documents)>;

    /// Follows @p area, and is its child if no @p parent is given. The area may go before it.
    explicit DocumentNavigator(MdiArea* area, QObject* parent = nullptr)
        : QObject(parent ? parent : area)
        , m_area(area)
    {
        createActions();
        connect(area, &MdiArea::currentSubWindowChanged, this,
            [this](IMdiSubWindow* current) { onCurrentChanged(current); });
        onCurrentChanged(area->currentSubWindow());
    }

    /**
     * Called by closeAll() and closeOthers() before anything is closed. None by default.
     *
     * After a true each document is asked by its closeEvent() still. So that it does not ask the
     * user again, the callable saves it or clears its `windowModified`, or what else it looks at.
     */
    Question askBeforeClosing;

    /// The documents in the order of their tabs.
    QList<IMdiSubWindow*> documents() const
    {
        QList<IMdiSubWindow*> found;
        const MdiArea* const area = this->area();
        const QTabBar* const tabs =
            area ? area->findChild<QTabBar*>(QString(), Qt::FindDirectChildrenOnly) : nullptr;
        if (!tabs)
            return found;
        // A tab can have the address of a document that is dead.
        const QList<IMdiSubWindow*> alive = area->subWindows();
        for (int tab = 0; tab < tabs->count(); ++tab) {
            auto* const document = static_cast<IMdiSubWindow*>(tabs->tabData(tab).value<void*>());
            if (alive.contains(document))
                found.append(document);
        }
        return found;
    }

    /// The documents in the order of use, the last used first; those that never were current last.
    QList<IMdiSubWindow*> documentsByUse() const
    {
        QList<IMdiSubWindow*> left = documents();
        QList<IMdiSubWindow*> found;
        for (IMdiSubWindow* document : m_used) {
            if (left.removeOne(document))
                found.append(document);
        }
        return found + left;
    }

    /// Activates the document of the next tab, around the ends.
    void activateNext() { activate(1, documents()); }
    /// Activates the document of the tab before, around the ends.
    void activatePrevious() { activate(-1, documents()); }

    /// Activates the document that was used before the current one; called again, the one that was
    /// used before that. The order stays until a document is activated in another way.
    void activatePreviousUsed() { walk(1); }
    /// Goes back on the way of activatePreviousUsed().
    void activateNextUsed() { walk(-1); }

    /// Closes all documents in the order of their tabs, after askBeforeClosing. Stops at the first
    /// that refuses, or when this object is deleted on the way. Returns whether all were closed, as
    /// the closeEvent() of a window wants to know.
    bool closeAll() { return close(documents()); }

    /// Closes all documents but @p kept, as closeAll() does; but the current one, by default.
    bool closeOthers(IMdiSubWindow* kept = nullptr)
    {
        QList<IMdiSubWindow*> others = documents();
        others.removeOne(kept ? kept : current());
        return close(others);
    }

    /// The action of a command: with text, status tip, standard keys and the theme's icon. Belongs
    /// to the navigator; disabled where there is nothing to do.
    QAction* action(Command command) const { return m_actions.at(command); }

    /// Appends a whole window menu: all commands, and the documents.
    void fillMenu(QMenu* menu)
    {
        constexpr auto Separator = CommandCount;
        for (const Command command : {Close, CloseOthers, CloseAll, Separator, Tile, Cascade,
                 Separator, Next, Previous, PreviousUsed, NextUsed, Separator})
            menu->addAction(command == Separator ? menu->addSeparator() : action(command));
        addDocumentList(menu);
    }

    /// Appends a list of the documents in the order of their tabs, with icons, numbers and a mark
    /// at the current one. It keeps its place, and is made anew whenever the menu is shown.
    void addDocumentList(QMenu* menu)
    {
        // Marks the place. At an end of the menu a separator does not show.
        QAction* const end = menu->addSeparator();
        auto* const entries = new QActionGroup(end);
        const auto fill = [this, menu, end, entries] { fillDocumentList(menu, end, entries); };
        fill();
        const auto filling = connect(menu, &QMenu::aboutToShow, entries, fill);
        connect(this, &QObject::destroyed, entries, [filling] { disconnect(filling); });
    }

private:
    // In the destructor of its base class the area is none any more, while its documents go.
    MdiArea* area() const { return qobject_cast<MdiArea*>(m_area.data()); }

    IMdiSubWindow* current() const
    {
        const MdiArea* const area = this->area();
        return area ? area->currentSubWindow() : nullptr;
    }

    bool close(const QList<IMdiSubWindow*>& chosen)
    {
        // Who is asked, and who is told, may delete the area and with it this object.
        const QPointer<QObject> alive(this);
        const Question ask = askBeforeClosing;
        if (ask && !chosen.isEmpty() && !ask(chosen))
            return false;
        for (IMdiSubWindow* document : chosen) {
            if (!alive || (documents().contains(document) && !document->close()))
                return false;
        }
        return true;
    }

    void closeCurrent()
    {
        if (IMdiSubWindow* const document = current())
            document->close();
    }
    void closeEach() { closeAll(); }
    void closeEachOther() { closeOthers(); }
    void tile()
    {
        if (MdiArea* const area = this->area())
            area->tileSubWindows();
    }
    void cascade()
    {
        if (MdiArea* const area = this->area())
            area->cascadeSubWindows();
    }

    void activate(int step, const QList<IMdiSubWindow*>& order)
    {
        if (order.isEmpty())
            return;
        const auto count = order.size();
        const auto from = order.indexOf(current());
        area()->setCurrentSubWindow(order.at((from + step + count) % count));
    }

    void walk(int step)
    {
        const QPointer<QObject> alive(this);
        m_isWalking = true;
        activate(step, documentsByUse());
        if (alive)
            m_isWalking = false;
    }

    void onCurrentChanged(IMdiSubWindow* current)
    {
        updateActions();
        if (!current)
            return;
        if (!m_used.contains(current)) {
            m_used.append(current);
            connect(current, &IMdiSubWindow::closed, this, [this] { updateActions(); });
            connect(current, &QObject::destroyed, this, [this, current] {
                m_used.removeOne(current);
                if (m_last == current)
                    m_last = nullptr;
                updateActions();
            });
        }
        if (!m_isWalking) {
            // The walk, if there was one, ended where it had come to.
            use(m_last);
            use(current);
        }
        m_last = current;
    }

    void use(IMdiSubWindow* document)
    {
        if (m_used.removeOne(document))
            m_used.prepend(document);
    }

    struct Look
    {
        const char* text;
        const char* tip;
        const char* icon;
        int documents; ///< As many as there must be.
        void (DocumentNavigator::*reaction)();
    };

    // By Command.
    static const std::array<Look, CommandCount>& looks()
    {
        using N = DocumentNavigator;
        static const std::array<Look, CommandCount> looks{{
            {"Cl&ose", "Close the document", "window-close", 1, &N::closeCurrent},
            {"Close &All", "Close all documents", "", 1, &N::closeEach},
            {"Close Ot&hers", "Close all documents but this one", "", 2, &N::closeEachOther},
            {"&Tile", "Show the documents side by side", "", 1, &N::tile},
            {"&Cascade", "Show the documents one behind another", "", 1, &N::cascade},
            {"Ne&xt", "Go to the next tab", "go-next", 2, &N::activateNext},
            {"Pre&vious", "Go to the tab before", "go-previous", 2, &N::activatePrevious},
            {"&Forward in Use", "Go to the document used after this one", "", 2,
                &N::activateNextUsed},
            {"&Back in Use", "Go to the document used before this one", "", 2,
                &N::activatePreviousUsed},
        }};
        return looks;
    }

    static QString translated(const char* text)
    {
        return QCoreApplication::translate("Zentu::DocumentNavigator", text);
    }

    void createActions()
    {
        for (const Look& look : looks()) {
            const QIcon icon = QIcon::fromTheme(QLatin1String(look.icon));
            m_actions.append(new QAction(icon, translated(look.text), this));
            m_actions.constLast()->setStatusTip(translated(look.tip));
            connect(m_actions.constLast(), &QAction::triggered, this, look.reaction);
        }
        action(Next)->setShortcuts(QKeySequence::NextChild);
        action(Previous)->setShortcuts(QKeySequence::PreviousChild);
    }

    void updateActions()
    {
        const auto count = documents().size();
        for (int command = 0; command < CommandCount; ++command)
            m_actions.at(command)->setEnabled(count >= looks().at(size_t(command)).documents);
    }

    void fillDocumentList(QMenu* menu, QAction* end, QActionGroup* entries)
    {
        qDeleteAll(entries->actions());
        int number = 0;
        const QList<IMdiSubWindow*> all = documents();
        for (IMdiSubWindow* document : all) {
            QString title = document->shortTitle();
            title.replace(
                QLatin1String("[*]"), QLatin1String(document->isWindowModified() ? "*" : ""));
            title.replace(QLatin1Char('&'), QLatin1String("&&"));
            const QLatin1String mnemonic(++number < 10 ? "&" : "");
            auto* const entry = new QAction(document->windowIcon(),
                mnemonic + QString::number(number) + QLatin1Char(' ') + title, entries);
            entry->setCheckable(true);
            entry->setChecked(document == current());
            connect(entry, &QAction::triggered, this, [this, document] {
                if (documents().contains(document))
                    area()->setCurrentSubWindow(document);
            });
            menu->insertAction(end, entry);
        }
    }

    QPointer<QObject> m_area;
    QList<QAction*> m_actions;
    QList<IMdiSubWindow*> m_used;
    IMdiSubWindow* m_last = nullptr;
    bool m_isWalking = false;
};

/**
 * Tells of files that other programs change, once they have been quiet: a FileWatcher that neither
 * shows half a file nor loses one.
 *
 * @code
 * Zentu::FileReloader reloader([this](const QString& path) { reload(path); });
 * reloader.add(path);
 * @endcode
 *
 * A file is quiet when it has not changed for a moment (QuietMs). A writer that goes on longer than
 * that is waited for. A file that is removed is told once, too: whether it is there, QFileInfo
 * says. It is looked for until it is there again, and told then. Paths are compared as they are
 * written.
 */
class FileReloader : public QObject
{
public:
    /// How long a file stays as it is before it is told, in milliseconds: longer than a FileWatcher
    /// needs to watch it again.
    static constexpr int QuietMs = 300;

    /// Called with the path of a file that has changed. May add and remove files and delete the
    /// reloader.
    using Reaction = std::function<void(const QString& path)>;

    /// Watches no file yet; calls @p changed for those that are added.
    explicit FileReloader(Reaction changed, QObject* parent = nullptr)
        : QObject(parent)
        , m_changed(std::move(changed))
    {
        connect(&m_watcher, &FileWatcher::fileChanged, this, [this](const QString& path) {
            if (File* const file = find(path))
                file->onChanged();
        });
    }

    /// Watches a file from now on. One that is not there is told when it comes.
    void add(const QString& path)
    {
        remove(path);
        new File(this, path);
    }

    /// Ends that. Nothing that has not been told will be.
    void remove(const QString& path)
    {
        if (File* const file = find(path)) {
            delete file;
            m_watcher.removeFile(path);
        }
    }

    /// Takes the file as it is now for known: for a host that has just written or read it.
    void accept(const QString& path)
    {
        if (find(path))
            add(path);
    }

private:
    /// A file that is watched; known by its name, which is the path.
    class File : public QObject
    {
    public:
        File(FileReloader* reloader, const QString& path)
            : QObject(reloader)
            , m_reloader(reloader)
        {
            setObjectName(path);
            watch();
            m_isAwayTold = m_isAway;
            if (m_isAway)
                wait();
        }

        // The watcher pauses after a change. Watched at once, the file says when its writer goes
        // on.
        void onChanged()
        {
            watch();
            wait();
        }

    protected:
        void timerEvent(QTimerEvent* /*event*/) override
        {
            const bool wasAway = m_isAway;
            watch();
            if (m_isAway ? m_isAwayTold : wasAway)
                return; // Or it has come back, and may still be written.
            m_isAwayTold = m_isAway;
            if (!m_isAway)
                killTimer(std::exchange(m_timer, 0));
            // The call may remove the file or delete the reloader.
            const Reaction changed = m_reloader->m_changed;
            changed(QString(objectName()));
        }

    private:
        void watch()
        {
            m_isAway = !QFileInfo(objectName()).isFile();
            if (!m_isAway)
                m_reloader->m_watcher.addFile(objectName());
        }

        void wait()
        {
            if (m_timer)
                killTimer(m_timer);
            m_timer = startTimer(QuietMs);
        }

        FileReloader* m_reloader;
        int m_timer = 0;
        bool m_isAway = false;
        bool m_isAwayTold = false;
    };

    // The children are files only.
    File* find(const QString& path) const
    {
        return static_cast<File*>(findChild<QObject*>(path, Qt::FindDirectChildrenOnly));
    }

    FileWatcher m_watcher;
    Reaction m_changed;
};

/// How processCommandLine() parses: CmdLineParser::parse() or CmdLineParser::parseB().
using ParseOperation = bool (CmdLineParser::*)(const QStringList&);

/**
 * Parses a command line and does what every program does with it, as QCommandLineParser::process()
 * does: returns if the program is to go on, and ends the process otherwise.
 *
 * - An error is written to the standard error, behind the name of the program; the exit code is 1.
 * - The option `version`, if it is declared and given, writes QCoreApplication's name and version
 * to the standard output; so does `help` with the help.
 *
 * The texts are written in UTF-8.
 *
 * @code
 * Zentu::CmdLineParser parser;
 * parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
 * parser.addVersionOption({QStringLiteral("-v"), QStringLiteral("--version")});
 * Zentu::processCommandLine(parser);
 * @endcode
 *
 * @param parser has all declarations, and the results afterwards
 * @param parse which syntax, that of parse() or that of parseB()
 * @param args all arguments, the program's first; it is the name where QCoreApplication has none
 */
inline void processCommandLine(CmdLineParser& parser,
    const QStringList& args = QCoreApplication::arguments(),
    ParseOperation parse = &CmdLineParser::parse)
{
    const QString application = QCoreApplication::applicationName();
    const QString name = application.isEmpty() ? QFileInfo(args.value(0)).fileName() : application;

    if (!(parser.*parse)(args)) {
        std::fprintf(stderr, "%s: %s\n", qUtf8Printable(name),
            qUtf8Printable(parser.errorMessage().trimmed()));
        std::exit(EXIT_FAILURE);
    }
    if (parser.isSet(QStringLiteral("version"))) {
        std::printf("%s %s\n", qUtf8Printable(name),
            qUtf8Printable(QCoreApplication::applicationVersion()));
        std::exit(EXIT_SUCCESS);
    }
    if (parser.isSet(QStringLiteral("help"))) {
        std::fputs(qUtf8Printable(parser.helpMessage()), stdout);
        std::exit(EXIT_SUCCESS);
    }
}

/// The same for the arguments of main(), before there is an application: help and errors need no
/// display then.
inline void processCommandLine(
    CmdLineParser& parser, int argc, char** argv, ParseOperation parse = &CmdLineParser::parse)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args.append(QString::fromUtf8(argv[i]));
    processCommandLine(parser, args, parse);
}

} // namespace Zentu
