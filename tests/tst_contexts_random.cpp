// SPDX-License-Identifier: MIT
//
// Has listeners call back into the managers of contexts and of proxies at every signal, and
// compares what comes of it with models of their steps.

#include "context_mgr.h"
#include "proxy_act.h"

#include "recorder.h"
#include "story.h"

#include <QMap>

#include <functional>
#include <memory>
#include <vector>

using namespace Support;
using Zentu::ProxyAction;

namespace {

const QString s_names[] = {
    QString(), QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("c")};

/// As an object of the class is printed.
QString self(const char* className, const void* object)
{
    return QLatin1String(className) + QLatin1Char('(') + printed(object) + QLatin1Char(')');
}

/// The manager of contexts by its steps.
class ContextModel
{
public:
    using Listener = std::shared_ptr<std::function<void()>>;

    static ContextModel* instance()
    {
        if (!s_instance)
            s_instance = new ContextModel;
        return s_instance;
    }
    ~ContextModel() { s_instance = nullptr; }
    Q_DISABLE_COPY(ContextModel)

    void addContext(const QString& context) { add(" push context: ", m_contexts, context); }
    void addGlobalContext(const QString& context)
    {
        add(" add global context ", m_globalContexts, context);
    }
    void removeContext(const QString& context) { remove(" remove context ", m_contexts, context); }
    void removeGlobalContext(const QString& context)
    {
        remove(" remove global context ", m_globalContexts, context);
    }
    QStringList currentContexts() const { return m_contexts + m_globalContexts; }

    // One that is added during a signal does not hear that one, one that is removed no longer does.
    Listener listen(const std::function<void()>& call)
    {
        m_listeners.push_back(std::make_shared<std::function<void()>>(call));
        return m_listeners.back();
    }
    static void stop(const Listener& listener) { *listener = nullptr; }

    static Story* s_story;

private:
    ContextModel() = default;

    void add(const char* text, QStringList& list, const QString& context)
    {
        say(text, context);
        list.removeAll(context);
        list.prepend(context);
        contextChanged();
    }

    void remove(const char* text, QStringList& list, const QString& context)
    {
        say(text, context);
        if (list.removeAll(context) > 0) {
            contextChanged();
            return;
        }
        s_story->say(warning(self("Zentu::ContextManager", this)
            + QLatin1String(" context not found ") + quoted(context)));
    }

    void say(const char* text, const QString& context) const
    {
        s_story->say(trace(self("Zentu::ContextManager", this) + QLatin1String(text)
            + quoted(context) + QLatin1Char(' ')));
    }

    void contextChanged()
    {
        const std::weak_ptr<int> alive = m_life;
        const auto listeners = m_listeners;
        for (const Listener& listener : listeners) {
            const std::function<void()> call = *listener;
            if (call)
                call();
            if (alive.expired())
                return;
        }
    }

    static ContextModel* s_instance;

    std::shared_ptr<int> m_life = std::make_shared<int>();
    std::vector<Listener> m_listeners;
    QStringList m_contexts;
    QStringList m_globalContexts;
};

ContextModel* ContextModel::s_instance = nullptr;
Story* ContextModel::s_story = nullptr;

/// The manager itself, with the same way to listen.
struct ContextLibrary
{
    using Manager = Zentu::ContextManager;
    using Listener = QMetaObject::Connection;

    static Listener listen(Manager* manager, const std::function<void()>& call)
    {
        return QObject::connect(manager, &Manager::contextChanged, call);
    }
    static void stop(const Listener& listener) { QObject::disconnect(listener); }
};

struct ContextSteps
{
    using Manager = ContextModel;
    using Listener = ContextModel::Listener;

    static Listener listen(Manager* manager, const std::function<void()>& call)
    {
        return manager->listen(call);
    }
    static void stop(const Listener& listener) { Manager::stop(listener); }
};

template <typename Contexts>
class ContextTale : public Story
{
public:
    explicit ContextTale(quint32 seed)
        : Story(seed)
    {
        ContextModel::s_story = this;
        m_recorder.onEntry([this](const Entry& entry) { say(asLine(entry)); });
    }

private:
    using Manager = typename Contexts::Manager;

    Manager* manager()
    {
        call(Manager::instance(), QStringLiteral("contexts"));
        return Manager::instance();
    }

    void step() override
    {
        const QString name = s_names[below(4)];
        switch (below(12)) {
        case 0:
        case 1:
            manager()->addContext(name);
            break;
        case 2:
        case 3:
            manager()->addGlobalContext(name);
            break;
        case 4:
        case 5:
            manager()->removeContext(name);
            break;
        case 6:
        case 7:
            manager()->removeGlobalContext(name);
            break;
        case 8:
        case 9:
            listen(++m_listenersEver);
            break;
        case 10:
            if (m_listeners.size() > 2)
                Contexts::stop(m_listeners.at(std::size_t(below(int(m_listeners.size())))));
            break;
        default:
            if (onceIn(4)) {
                say(QStringLiteral("a new manager"));
                m_listeners.clear();
                delete manager();
            }
            break;
        }
        say(manager()->currentContexts().join(QLatin1Char(',')));
    }

    void listen(int number)
    {
        if (m_listeners.size() == 4)
            return;
        m_listeners.push_back(Contexts::listen(
            manager(), [this, number] { calledBack(QStringLiteral("listener %1").arg(number)); }));
    }

    void end() override { delete Manager::instance(); }

    Recorder m_recorder;
    std::vector<typename Contexts::Listener> m_listeners;
    int m_listenersEver = 0;
};

/// The manager of proxies by its steps; the proxies are those of the library.
class ProxyManagerModel
{
public:
    static ProxyManagerModel* instance()
    {
        if (!s_instance)
            s_instance = new ProxyManagerModel;
        return s_instance;
    }
    ~ProxyManagerModel() { s_instance = nullptr; }
    Q_DISABLE_COPY(ProxyManagerModel)

    void registerProxyAction(ProxyAction* action, const QString& id)
    {
        const QString text = self("Zentu::ProxyActionManager", this)
            + QLatin1String(" register proxy action ") + quoted(id) + QLatin1Char(' ')
            + printed(static_cast<const QAction*>(action)) + QLatin1Char(' ');
        if (m_actions.contains(id)) {
            s_story->say(critical(text + QLatin1String("duplicated ID")));
            return;
        }
        s_story->say(trace(text));
        m_actions.insert(id, action);
        action->setCurrentContext(m_contexts);
    }

    ProxyAction* getProxyAction(const QString& id) const { return m_actions.value(id); }

    // Ascending, with those that come meanwhile if their turn has not passed.
    void setCurrentContext(const QStringList& contexts)
    {
        if (m_contexts == contexts)
            return;
        s_story->say(trace(QStringLiteral("set context and update for all proxy actions ")));
        m_contexts = contexts;
        const std::weak_ptr<int> alive = m_life;
        for (auto it = m_actions.begin(); it != m_actions.end();) {
            const QString id = it.key();
            it.value()->setCurrentContext(m_contexts);
            if (alive.expired())
                return;
            it = m_actions.upperBound(id);
        }
    }

    static Story* s_story;

private:
    ProxyManagerModel() = default;

    static ProxyManagerModel* s_instance;

    std::shared_ptr<int> m_life = std::make_shared<int>();
    QMap<QString, ProxyAction*> m_actions;
    QStringList m_contexts;
};

ProxyManagerModel* ProxyManagerModel::s_instance = nullptr;
Story* ProxyManagerModel::s_story = nullptr;

template <typename Manager>
class ProxyTale : public Story
{
public:
    explicit ProxyTale(quint32 seed)
        : Story(seed)
        , m_backends(3)
        , m_proxies(5)
    {
        ProxyManagerModel::s_story = this;
        for (QAction& backend : m_backends) {
            const int number = ++m_number;
            backend.setText(QString::number(number));
            call(&backend, QStringLiteral("backend %1").arg(number));
        }
        for (ProxyAction& proxy : m_proxies) {
            const QString name = QStringLiteral("proxy %1").arg(++m_number);
            call(&proxy, name);
            for (std::size_t i = 0; i < m_backends.size(); ++i)
                proxy.addBackendAction(&m_backends[i], s_names[i]);
            QObject::connect(&proxy, &QAction::changed,
                [this, name] { calledBack(name + QLatin1String(" has changed")); });
        }
        m_recorder.onEntry([this](const Entry& entry) { say(asLine(entry)); });
    }

private:
    Manager* manager()
    {
        call(Manager::instance(), QStringLiteral("proxies"));
        return Manager::instance();
    }

    void step() override
    {
        ProxyAction& proxy = m_proxies[std::size_t(below(5))];
        const QString id = QString::number(below(4));
        const int first = below(4);
        switch (below(8)) {
        case 0:
        case 1:
            manager()->registerProxyAction(&proxy, id);
            break;
        case 2:
        case 3:
        case 4:
            manager()->setCurrentContext({s_names[first], s_names[(first + 1) % 4]});
            break;
        case 5:
            manager()->setCurrentContext({});
            break;
        case 6:
            proxy.setCurrentContext({s_names[first]});
            break;
        default:
            if (onceIn(6)) {
                say(QStringLiteral("a new manager"));
                delete manager();
            }
            break;
        }
        say(id + QLatin1String(" is ")
            + printed(static_cast<const void*>(manager()->getProxyAction(id))));
    }

    void end() override
    {
        m_recorder.onEntry({});
        delete Manager::instance();
    }

    Recorder m_recorder;
    std::vector<QAction> m_backends;
    std::vector<ProxyAction> m_proxies; // gone before their backends
    int m_number = 0;
};

} // namespace

class ContextsRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void listenersOfContextsEqualTheModel_data() { addSeeds(20); }
    void listenersOfContextsEqualTheModel();
    void listenersOfProxiesEqualTheModel_data() { addSeeds(10); }
    void listenersOfProxiesEqualTheModel();
};

void ContextsRandomTest::listenersOfContextsEqualTheModel()
{
    QFETCH(quint32, seed);
    const QStringList library = ContextTale<ContextLibrary>(seed).tell(200);
    QVERIFY(library.size() > 200);
    compareAccounts(library, ContextTale<ContextSteps>(seed).tell(200));
}

void ContextsRandomTest::listenersOfProxiesEqualTheModel()
{
    QFETCH(quint32, seed);
    const QStringList library = ProxyTale<Zentu::ProxyActionManager>(seed).tell(50);
    QVERIFY(library.size() > 75);
    compareAccounts(library, ProxyTale<ProxyManagerModel>(seed).tell(50));
}

QTEST_MAIN(ContextsRandomTest)
#include "tst_contexts_random.moc"
