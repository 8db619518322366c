// SPDX-License-Identifier: MIT
//
// Runs made-up operations on the library, replays the lines that it writes, and compares what the
// model says with what the library says after each operation. ZENTU_INSPECT_STEPS=100000 runs
// longer than every day, ZENTU_INSPECT_SEED another program.

#include "answers.h"
#include "program.h"

#include "action_mgr.h"
#include "context_mgr.h"
#include "event_mgr.h"
#include "file_watcher.h"
#include "ievent.h"
#include "ievent_handler.h"
#include "lambda_slot.h"
#include "mdi_area.h"
#include "object_pool.h"
#include "option_dlg.h"
#include "proxy_act.h"

#include "recorder.h"

#include <QAction>
#include <QCoreApplication>
#include <QEvent>
#include <QFile>
#include <QFileSystemWatcher>
#include <QMenu>
#include <QMenuBar>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>

#include <memory>

using namespace Zentu;
using Inspect::Address;
using Inspect::Program;

namespace {

// Names of every sort but those that the trace cannot tell apart.
const QStringList Names = {QStringLiteral("a"), QStringLiteral("b"), QString(),
    QStringLiteral("with \"quotes\" (and, more)"), QStringLiteral("\\ \n\x01\u00e4\u00ad")};

template <typename T>
Address addressOf(const T* object)
{
    return reinterpret_cast<Address>(object);
}

class Handler : public IEventHandler
{
public:
    void handleEvent(IEvent* /*event*/) override { }
};

/// An action that tells how often its end is listened to.
class Backend : public QAction
{
public:
    int watchers() const { return receivers(SIGNAL(destroyed(QObject*))); }
};

class OptionPage : public IOptionPage
{
public:
    explicit OptionPage(const QString& name)
        : m_name(name)
    {
    }
    QStringList category() const override { return {m_name}; }
    QWidget* pageWidget() override { return m_widget; }
    void initialize() override { m_widget = new QWidget; }
    void finalize() override { }
    void apply() override { }

private:
    QString m_name;
    QWidget* m_widget = nullptr;
};

/// The library with a handful of everything, and the model that hears of it.
class World
{
public:
    explicit World(quint32 seed)
        : m_random(seed)
    {
        m_recorder.onEntry([this](const Support::Entry& entry) {
            const QByteArray line = entry.text.toLatin1();
            m_program.feed(
                std::string_view(line.constData(), static_cast<std::size_t>(line.size())));
        });
        QObject::connect(&m_contexts, &ContextManager::contextChanged, &m_contexts,
            [this] { m_proxyManager.setCurrentContext(m_contexts.currentContexts()); });
        for (int i = 0; i < 4; ++i) {
            m_handlers.push_back(std::make_unique<Handler>());
            m_actions.push_back(std::make_unique<Backend>());
            m_objects.push_back(std::make_unique<QObject>());
            m_menus.push_back(std::make_unique<QMenu>());
            m_toolbars.push_back(std::make_unique<QToolBar>());
        }
        for (int i = 0; i < 3; ++i)
            m_proxies.push_back(std::make_unique<ProxyAction>());
        for (std::size_t i = 0; i < 2; ++i)
            m_proxyManager.registerProxyAction(m_proxies[i].get(), Names.at(int(i)));
    }

    ~World()
    {
        // One that lost one of its contexts is not watched any more, so the proxies go first.
        m_proxies.clear();
    }

    void step()
    {
        switch (m_random.bounded(9)) {
        case 0:
            onBus();
            break;
        case 1:
            onContexts();
            break;
        case 2:
        case 3:
            onProxies();
            break;
        case 4:
            onRegistry();
            break;
        case 5:
            onPool();
            break;
        case 6:
            onArea();
            break;
        case 7:
            onFiles();
            break;
        default:
            onDialog();
            break;
        }
        m_recorder.clear();
    }

    QString difference() const
    {
        const struct
        {
            const char* name;
            bool isSame;
        } parts[] = {{"bus", sameBus()}, {"contexts", sameContexts()}, {"proxies", sameProxies()},
            {"registry", sameRegistry()}, {"pool", samePool()}, {"area", sameArea()},
            {"dialog", sameDialog()}, {"watcher", sameWatcher()},
            {"contradictions", m_program.counts().contradictions == 0},
            {"lines",
                m_program.counts().of(Inspect::Reading::Unknown)
                        + m_program.counts().of(Inspect::Reading::Damaged)
                        + m_program.counts().of(Inspect::Reading::Foreign)
                    == 0}};
        for (const auto& part : parts) {
            if (!part.isSame)
                return QLatin1String(part.name);
        }
        return {};
    }

    const Program& program() const { return m_program; }

private:
    const QString& anyName() { return Names.at(m_random.bounded(Names.size())); }

    template <typename T>
    std::unique_ptr<T>& any(std::vector<std::unique_ptr<T>>& list)
    {
        return list[m_random.bounded(static_cast<quint32>(list.size()))];
    }

    // Destroys one and makes another, often at the same address.
    template <typename T>
    void replace(std::vector<std::unique_ptr<T>>& list)
    {
        auto& entry = any(list);
        entry.reset();
        entry = std::make_unique<T>();
    }

    void onBus()
    {
        EventManager* const bus = EventManager::instance();
        switch (m_random.bounded(6)) {
        case 0:
        case 1:
            bus->subscribe(any(m_handlers).get(), anyName());
            break;
        case 2:
            bus->unsubscribe(any(m_handlers).get(), anyName());
            break;
        case 3:
            bus->unsubscribeAll(any(m_handlers).get());
            break;
        case 4:
            replace(m_handlers);
            break;
        default: {
            const QString& type = anyName();
            m_posts[type] += 1;
            m_unheard[type] += bus->getSubscribersFor(type).isEmpty() ? 1 : 0;
            bus->postEvent(new IEvent(type),
                m_random.bounded(2) == 0 ? EventManager::Auto : EventManager::Queued);
            QCoreApplication::processEvents();
        }
        }
    }

    bool sameBus() const
    {
        const auto bus = m_program.buses().find(addressOf(EventManager::instance()));
        if (bus == m_program.buses().end())
            return m_posts.isEmpty();
        std::map<QString, const Inspect::EventType*> types;
        for (const auto& [name, type] : bus->second)
            types[Inspect::unescaped(name)] = &type;
        for (const QString& name : Names) {
            std::vector<Address> expected;
            const auto subscribers = EventManager::instance()->getSubscribersFor(name);
            for (const IEventHandler* handler : subscribers)
                expected.push_back(addressOf(handler));
            std::vector<Address> found;
            const Inspect::EventType* const type = types[name];
            if (type) {
                for (const Inspect::Subscription& subscription : type->subscribers)
                    found.push_back(subscription.handler);
            }
            if (found != expected || (type ? type->postCount : 0) != m_posts.value(name)
                || (type ? type->unheard : 0) != m_unheard.value(name))
                return false;
        }
        return true;
    }

    void onContexts()
    {
        const QString& name = anyName();
        switch (m_random.bounded(5)) {
        case 0:
        case 1:
            m_contexts.addContext(name);
            break;
        case 2:
            m_contexts.removeContext(name);
            break;
        case 3:
            m_contexts.addGlobalContext(name);
            break;
        default:
            m_contexts.removeGlobalContext(name);
        }
    }

    static QStringList texts(const std::vector<std::string>& strings)
    {
        QStringList result;
        for (const std::string& string : strings)
            result.append(Inspect::unescaped(string));
        return result;
    }

    bool sameContexts() const
    {
        const auto contexts = m_program.contextManagers().find(addressOf(&m_contexts));
        return contexts == m_program.contextManagers().end()
            || texts(contexts->second.all()) == m_contexts.currentContexts();
    }

    void onProxies()
    {
        ProxyAction* const proxy = any(m_proxies).get();
        switch (m_random.bounded(8)) {
        case 0:
        case 1:
        case 2:
            proxy->addBackendAction(any(m_actions).get(), anyName());
            break;
        case 3:
            proxy->removeBackendAction(any(m_actions).get());
            break;
        case 4:
            proxy->removeBackendContext(anyName());
            break;
        case 5:
            m_proxies[2]->setCurrentContext({anyName(), anyName()});
            break;
        case 6:
            m_proxyManager.registerProxyAction(proxy, anyName());
            break;
        default:
            replaceAction();
        }
    }

    // A proxy that lost one of an action's contexts does not watch it for the others, which would
    // dangle.
    void replaceAction()
    {
        auto& action = any(m_actions);
        int registrations = 0;
        for (const auto& proxy : m_proxies) {
            registrations += static_cast<int>(
                std::count_if(Names.begin(), Names.end(), [&](const QString& name) {
                    return proxy->getBackendAction(name) == action.get();
                }));
        }
        if (action->watchers() < registrations)
            takeOut(action.get());
        action.reset();
        action = std::make_unique<Backend>();
    }

    void takeOut(const QAction* action)
    {
        for (const auto& proxy : m_proxies) {
            for (const QString& name : Names) {
                if (proxy->getBackendAction(name) == action)
                    proxy->removeBackendContext(name);
            }
        }
    }

    bool sameProxies() const
    {
        for (const auto& proxy : m_proxies) {
            const auto known =
                m_program.proxies().find(addressOf(static_cast<QAction*>(proxy.get())));
            if (known == m_program.proxies().end())
                continue;
            if (!sameProxy(*proxy, known->second))
                return false;
        }
        for (const QString& name : Names) {
            const QByteArray printed = Support::quoted(name).toLatin1();
            const Inspect::Proxy* const found = m_program.proxyById(std::string_view(
                printed.constData() + 1, static_cast<std::size_t>(printed.size() - 2)));
            const ProxyAction* const expected =
                const_cast<ProxyActionManager&>(m_proxyManager).getProxyAction(name);
            if (!expected != !found)
                return false;
            if (expected && !sameReason(name, *expected))
                return false;
            if (expected
                && &m_program.proxies().at(addressOf(static_cast<const QAction*>(expected)))
                    != found)
                return false;
        }
        return true;
    }

    // What is said of an action is so; what cannot be known is left open.
    bool sameReason(const QString& name, const ProxyAction& proxy) const
    {
        const auto why = Inspect::whyIsIt(m_program, name);
        const QAction* const active = proxy.currentActiveBackendAction();
        return why && why->active == addressOf(active) && why->contexts == proxy.currentContext()
            && why->isEnabled.value_or(proxy.isEnabled()) == proxy.isEnabled()
            && (active || why->isEnabled == false);
    }

    static bool sameProxy(const ProxyAction& proxy, const Inspect::Proxy& known)
    {
        std::map<QString, Inspect::Registrations::Entry> backends;
        for (const auto& [name, entry] : known.backends.entries())
            backends[Inspect::unescaped(name)] = entry;
        for (const QString& name : Names) {
            const Address expected = addressOf(proxy.getBackendAction(name));
            const auto found = backends.find(name);
            if (found == backends.end()
                    ? expected != 0
                    : found->second.isCertain && found->second.value != expected)
                return false;
            // It may be gone, but then nothing else stands there.
            if (found != backends.end() && expected != 0 && found->second.value != expected)
                return false;
        }
        const bool sameContexts = known.contexts ? texts(*known.contexts) == proxy.currentContext()
                                                 : proxy.currentContext().isEmpty();
        const auto context = Program::activeContext(known);
        return sameContexts
            && known.active.value_or(0) == addressOf(proxy.currentActiveBackendAction())
            && (!context
                || proxy.getBackendAction(Inspect::unescaped(*context))
                    == proxy.currentActiveBackendAction());
    }

    void onRegistry()
    {
        switch (m_random.bounded(12)) {
        case 0:
        case 1:
        case 2:
            m_registry.registerMenu(anyName(), any(m_menus).get());
            break;
        case 3:
        case 4:
        case 5:
            m_registry.registerToolbar(anyName(), any(m_toolbars).get());
            break;
        case 6:
        case 7:
        case 8:
            replace(m_menus);
            break;
        case 9:
        case 10:
            replace(m_toolbars);
            break;
        default:
            m_registry.clear();
        }
    }

    template <typename Get>
    static bool sameWidgets(const Inspect::Registrations& known, Get get)
    {
        int found = 0;
        for (const auto& [name, entry] : known.entries()) {
            ++found;
            if (!entry.isCertain || get(Inspect::unescaped(name)) != entry.value)
                return false;
        }
        return found == std::count_if(Names.begin(), Names.end(), get);
    }

    bool sameRegistry() const
    {
        const auto known = m_program.registries().find(addressOf(&m_registry));
        return known == m_program.registries().end()
            || (sameWidgets(known->second.of(Inspect::WidgetKind::Menu),
                    [this](const QString& name) { return addressOf(m_registry.getMenu(name)); })
                && sameWidgets(
                    known->second.of(Inspect::WidgetKind::Toolbar), [this](const QString& name) {
                        return addressOf(m_registry.getToolbar(name));
                    }));
    }

    void onPool()
    {
        switch (m_random.bounded(8)) {
        case 0:
        case 1:
        case 2:
            m_pool.addObject(any(m_objects).get());
            break;
        case 3:
            m_pool.removeObject(any(m_objects).get());
            break;
        case 4:
            m_pool.clear();
            break;
        case 5:
            any(m_objects)->setObjectName(anyName());
            break;
        default:
            replace(m_objects);
        }
    }

    bool samePool() const
    {
        std::vector<Address> expected;
        const auto objects = const_cast<ObjectPool&>(m_pool).allObjects();
        for (const QObject* object : objects)
            expected.push_back(addressOf(object));
        const auto known = m_program.pools().find(addressOf(&m_pool));
        std::vector<Address> found;
        if (known != m_program.pools().end()) {
            for (const Inspect::PoolEntry& entry : known->second)
                found.push_back(entry.object);
        }
        return found == expected;
    }

    void onArea()
    {
        const QList<IMdiSubWindow*> windows = m_area.subWindows();
        if (windows.size() < 3 && m_random.bounded(2) == 0) {
            auto* const window = new IMdiSubWindow;
            window->setShortTitle(anyName());
            m_area.addWindow(window);
            return;
        }
        if (windows.isEmpty())
            return;
        IMdiSubWindow* const window = windows.at(m_random.bounded(windows.size()));
        switch (m_random.bounded(6)) {
        case 0:
            m_area.closeWindow(window);
            QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
            break;
        case 1:
            m_area.removeWindow(window);
            delete window;
            break;
        case 2:
            delete window;
            break;
        case 3:
            window->setShortTitle(anyName());
            break;
        case 4:
            m_area.addWindow(window);
            break;
        default:
            m_area.setCurrentSubWindow(window);
        }
    }

    bool sameArea() const
    {
        const auto known = m_program.areas().find(addressOf(&m_area));
        if (known == m_program.areas().end())
            return m_area.subWindows().isEmpty();
        std::vector<Address> expected;
        const auto windows = m_area.subWindows();
        for (const IMdiSubWindow* window : windows)
            expected.push_back(addressOf(window));
        return known->second.documents == expected
            && known->second.current.value_or(0) == addressOf(m_area.currentSubWindow());
    }

    void onDialog()
    {
        if (!m_dialog) {
            m_dialog = std::make_unique<OptionDialog>(QList<IOptionPage*>{&m_first, &m_second});
            m_isDone = false;
            return;
        }
        switch (m_random.bounded(4)) {
        case 0:
            m_dialog->done(1);
            m_isDone = true;
            break;
        case 1:
            m_dialog.reset();
            break;
        default:
            if (auto* const tree = m_dialog->findChild<QWidget*>(QStringLiteral("catalog_tree")))
                QTest::keyClick(tree, m_random.bounded(2) == 0 ? Qt::Key_Down : Qt::Key_Up);
        }
    }

    bool sameDialog() const
    {
        if (!m_dialog)
            return true;
        const Inspect::Dialog& known = m_program.dialogs().at(addressOf(m_dialog.get()));
        const auto* const shown =
            qobject_cast<QWidget*>(m_dialog->findChild<QWidget*>(QStringLiteral("stacked_widget")));
        const bool isSecondShown = known.shown == addressOf(&m_second);
        return shown && (!m_isDone || known.isDone || !known.pages.empty())
            && (isSecondShown || known.shown == addressOf(&m_first));
    }

    // A change and the end of the pause after it come from here, too, since both are waited for
    // otherwise.
    void onFiles()
    {
        const QString path = m_folder.filePath(QString::number(m_random.bounded(3)));
        switch (m_random.bounded(8)) {
        case 0:
        case 1:
            m_watcher.addFile(path);
            break;
        case 2:
            m_watcher.removeFile(path);
            break;
        case 3:
            m_watcher.addFile(m_folder.path());
            break;
        case 4:
            if (watchedFiles().contains(path))
                QMetaObject::invokeMethod(&m_watcher, "onFileChanged", Q_ARG(QString, path));
            break;
        case 5:
            QFile::remove(path);
            break;
        case 6:
            if (QFile file(path); file.open(QIODevice::Append))
                file.write("more");
            break;
        default:
            if (auto* const pause = m_watcher.findChild<LambdaSlotWrapper*>())
                QMetaObject::invokeMethod(pause, "trigger");
        }
    }

    QStringList watchedFiles() const { return m_watcher.findChild<QFileSystemWatcher*>()->files(); }

    bool sameWatcher() const
    {
        QStringList expected = watchedFiles();
        QStringList found;
        const auto known = m_program.watchers().find(addressOf(&m_watcher));
        if (known != m_program.watchers().end()) {
            for (const auto& [path, watch] : known->second) {
                if (!watch.isPaused)
                    found.append(Inspect::unescaped(path));
            }
        }
        expected.sort();
        found.sort();
        return found == expected;
    }

    QRandomGenerator m_random;
    Support::Recorder m_recorder;
    Program m_program;

    std::vector<std::unique_ptr<Handler>> m_handlers;
    QMap<QString, qint64> m_posts;
    QMap<QString, qint64> m_unheard;
    ContextManager m_contexts;
    ProxyActionManager m_proxyManager;
    std::vector<std::unique_ptr<Backend>> m_actions;
    std::vector<std::unique_ptr<ProxyAction>> m_proxies;
    ActionManager m_registry;
    std::vector<std::unique_ptr<QMenu>> m_menus;
    std::vector<std::unique_ptr<QToolBar>> m_toolbars;
    ObjectPool m_pool;
    std::vector<std::unique_ptr<QObject>> m_objects;
    MdiArea m_area;
    QTemporaryDir m_folder;
    FileWatcher m_watcher;
    OptionPage m_first{QStringLiteral("first")};
    OptionPage m_second{QStringLiteral("second")};
    std::unique_ptr<OptionDialog> m_dialog;
    bool m_isDone = false;
};

} // namespace

class InspectRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void modelSaysWhatTheLibrarySays();
};

void InspectRandomTest::modelSaysWhatTheLibrarySays()
{
    const int steps = qEnvironmentVariableIsSet("ZENTU_INSPECT_STEPS")
        ? qEnvironmentVariableIntValue("ZENTU_INSPECT_STEPS")
        : 5000;
    const auto seed = static_cast<quint32>(qEnvironmentVariableIntValue("ZENTU_INSPECT_SEED"));
    World world(seed);
    for (int step = 0; step < steps; ++step) {
        world.step();
        const QString difference = world.difference();
        QVERIFY2(difference.isEmpty(),
            qPrintable(QStringLiteral("seed %1, step %2: %3, line %4")
                           .arg(seed)
                           .arg(step)
                           .arg(difference)
                           .arg(world.program().now().line)));
    }
}

QTEST_MAIN(InspectRandomTest)
#include "tst_inspect_random.moc"
