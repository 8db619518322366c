// SPDX-License-Identifier: MIT
#include "lines.h"
#include "measure.h"

#include "proxy_act.h"

#include <QHash>
#include <QMap>
#include <QMetaMethod>

#include <memory>

namespace Bench {
namespace {

/// The properties of a proxy action by hand; the slot needs a class that is no template.
class ProxyBase : public QAction
{
    Q_OBJECT

public:
    ProxyBase()
        : QAction(nullptr)
        , fallback(new QAction(this))
    {
    }

    void addBackendAction(QAction* action, const QString& context)
    {
        backends.insert(context, action);
    }

    QAction* defaultProp() const { return fallback; }

public Q_SLOTS:
    void updateProxyProperties()
    {
        const QAction* const b = active;
        const QAction* const d = fallback;
        setEnabled(b && b->isEnabled());
        setVisible(b ? b->isVisible() : d->isVisible());
        setCheckable(b ? b->isCheckable() : d->isCheckable());
        setChecked(b ? b->isChecked() : d->isChecked());
        setText(b && !b->text().isEmpty() ? b->text() : d->text());
        setIcon(b && !b->icon().isNull() ? b->icon() : d->icon());
        setIconText(b && !b->iconText().isEmpty() ? b->iconText() : d->iconText());
        setShortcut(b && !b->shortcut().isEmpty() ? b->shortcut() : d->shortcut());
        setToolTip(b && !b->toolTip().isEmpty() ? b->toolTip() : d->toolTip());
        setStatusTip(b && !b->statusTip().isEmpty() ? b->statusTip() : d->statusTip());
        setWhatsThis(b && !b->whatsThis().isEmpty() ? b->whatsThis() : d->whatsThis());
    }

protected:
    QAction* select() const
    {
        for (const QString& context : contexts) {
            if (QAction* action = backends.value(context))
                return action;
        }
        return nullptr;
    }

    QStringList contexts;
    QAction* fallback;
    QAction* active = nullptr;
    QHash<QString, QAction*> backends;
};

/// Connected by methods that are looked up once.
struct ByMethod
{
    static void link(QAction* backend, ProxyBase* proxy)
    {
        QObject::connect(backend, changed(), proxy, update());
        QObject::connect(proxy, triggered(), backend, triggered());
        QObject::connect(proxy, toggled(), backend, toggled());
        QObject::connect(proxy, hovered(), backend, hovered());
    }

    static void unlink(QAction* backend, ProxyBase* proxy)
    {
        QObject::disconnect(backend, changed(), proxy, update());
        QObject::disconnect(proxy, triggered(), backend, triggered());
        QObject::disconnect(proxy, toggled(), backend, toggled());
        QObject::disconnect(proxy, hovered(), backend, hovered());
    }

private:
    static QMetaMethod method(const char* signature)
    {
        const QMetaObject& metaObject = ProxyBase::staticMetaObject;
        return metaObject.method(metaObject.indexOfMethod(signature));
    }

    static const QMetaMethod& changed()
    {
        static const QMetaMethod result = method("changed()");
        return result;
    }
    static const QMetaMethod& triggered()
    {
        static const QMetaMethod result = method("triggered(bool)");
        return result;
    }
    static const QMetaMethod& toggled()
    {
        static const QMetaMethod result = method("toggled(bool)");
        return result;
    }
    static const QMetaMethod& hovered()
    {
        static const QMetaMethod result = method("hovered()");
        return result;
    }
    static const QMetaMethod& update()
    {
        static const QMetaMethod result = method("updateProxyProperties()");
        return result;
    }
};

struct ByName
{
    static void link(QAction* backend, ProxyBase* proxy)
    {
        QObject::connect(backend, SIGNAL(changed()), proxy, SLOT(updateProxyProperties()));
        QObject::connect(proxy, SIGNAL(triggered(bool)), backend, SIGNAL(triggered(bool)));
        QObject::connect(proxy, SIGNAL(toggled(bool)), backend, SIGNAL(toggled(bool)));
        QObject::connect(proxy, SIGNAL(hovered()), backend, SIGNAL(hovered()));
    }

    static void unlink(QAction* backend, ProxyBase* proxy)
    {
        QObject::disconnect(backend, SIGNAL(changed()), proxy, SLOT(updateProxyProperties()));
        QObject::disconnect(proxy, SIGNAL(triggered(bool)), backend, SIGNAL(triggered(bool)));
        QObject::disconnect(proxy, SIGNAL(toggled(bool)), backend, SIGNAL(toggled(bool)));
        QObject::disconnect(proxy, SIGNAL(hovered()), backend, SIGNAL(hovered()));
    }
};

template <typename Line, typename Link>
class Proxy : public ProxyBase
{
public:
    void setCurrentContext(const QStringList& list)
    {
        if (contexts == list)
            return;
        Line() << self() << "set context" << list;
        contexts = list;
        QAction* const candidate = select();
        if (candidate == active)
            return;
        Line() << self() << "change active backend action to"
               << static_cast<const QAction*>(candidate);
        if (active)
            Link::unlink(active, this);
        active = candidate;
        updateProxyProperties();
        if (active)
            Link::link(active, this);
    }

private:
    const QAction* self() const { return this; }
};

template <typename Line, typename Link>
struct Manager
{
    using Action = Proxy<Line, Link>;

    void registerProxyAction(Action* action, const QString& id) { proxies.insert(id, action); }

    void setCurrentContext(const QStringList& list)
    {
        if (contexts == list)
            return;
        Line() << "set context and update for all proxy actions";
        contexts = list;
        for (Action* action : qAsConst(proxies))
            action->setCurrentContext(list);
    }

    QMap<QString, Action*> proxies;
    QStringList contexts;
};

struct Zentus : Zentu::ProxyActionManager
{
    using Action = Zentu::ProxyAction;
};

// Proxies with a backend for each of two contexts.
template <typename M>
struct Menu
{
    explicit Menu(int count)
    {
        for (int i = 0; i < count; ++i) {
            auto proxy = std::make_unique<typename M::Action>();
            proxy->defaultProp()->setText(QStringLiteral("&Copy"));
            for (const QString& context : {QStringLiteral("text"), QStringLiteral("image")}) {
                backends.push_back(std::make_unique<QAction>());
                backends.back()->setText(QLatin1String("Copy ") + context);
                backends.back()->setStatusTip(QLatin1String("Copies the ") + context);
                proxy->addBackendAction(backends.back().get(), context);
            }
            manager.registerProxyAction(proxy.get(), QStringLiteral("edit.copy.%1").arg(i));
            proxies.push_back(std::move(proxy));
        }
    }

    M manager;
    std::vector<std::unique_ptr<QAction>> backends;
    std::vector<std::unique_ptr<typename M::Action>> proxies;
};

// Sets two lists by turns; one step is two calls.
template <typename M>
void alternate(benchmark::State& state, const QStringList& first, const QStringList& second)
{
    Menu<M> menu(static_cast<int>(state.range(0)));
    repeat(state, [&] {
        menu.manager.setCurrentContext(first);
        menu.manager.setCurrentContext(second);
    });
}

// The lists are copies, so that comparing them is comparing their texts.
QStringList contextList(const char* first)
{
    return {QString::fromLatin1(first), QStringLiteral("document"), QStringLiteral("global")};
}

template <typename M>
void allSwitch(benchmark::State& state)
{
    alternate<M>(state, contextList("text"), contextList("image"));
}

template <typename M>
void noneSwitches(benchmark::State& state)
{
    alternate<M>(state, contextList("sound"), contextList("video"));
}

template <typename M>
void sameList(benchmark::State& state)
{
    alternate<M>(state, contextList("text"), contextList("text"));
}

} // namespace

void addContextRows()
{
    using Core = Manager<NoLine, ByMethod>;
    using Hand = Manager<HandLine, ByMethod>;
    using Plain = Manager<PlainLine, ByName>;
    const std::vector<int> sizes = {10, 100, 1000};
    add("contexts/all switch", "zentu", sizes, allSwitch<Zentus>);
    add("contexts/all switch", "core", sizes, allSwitch<Core>);
    add("contexts/all switch", "hand", sizes, allSwitch<Hand>);
    add("contexts/all switch", "plain", sizes, allSwitch<Plain>);
    add("contexts/none switches", "zentu", sizes, noneSwitches<Zentus>);
    add("contexts/none switches", "core", sizes, noneSwitches<Core>);
    add("contexts/none switches", "hand", sizes, noneSwitches<Hand>);
    add("contexts/none switches", "plain", sizes, noneSwitches<Plain>);
    add("contexts/same list", "zentu", sizes, sameList<Zentus>);
    add("contexts/same list", "core", sizes, sameList<Core>);
}

} // namespace Bench

#include "contexts.moc"
