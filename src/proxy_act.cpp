// SPDX-License-Identifier: MIT
#include "proxy_act.h"

#include "trace_p.h"

#include <QDebug>
#include <QHash>
#include <QMetaMethod>
#include <QPointer>

#include <algorithm>
#include <array>

namespace Zentu {

// The action, or null while it is being destroyed: then all that is left of it is a QObject.
static QAction* whole(QAction* action)
{
    const QObject* const object = action;
    return object && object->metaObject() != &QObject::staticMetaObject ? action : nullptr;
}

/// What a proxy action knows of its contexts and backends.
class _proxy_act_private
{
public:
    using Backend = QHash<QString, QAction*>::iterator;

    QAction* select() const;
    Backend findBackend(const QObject* action);
    void insert(const QString& context, QAction* action);
    void erase(Backend backend);
    void copyProperties(QAction* proxy) const;

    QStringList currentContext;
    QAction* defaultProp = nullptr;
    QAction* activeBackend = nullptr;
    QHash<QString, QAction*> backends;
    // To look through all backends for each one that dies would take the square of their number.
    QMultiHash<const QObject*, QString> contextsOf;
    // Counted so that a switch notices that another one has overtaken it.
    int switches = 0;
};

namespace {

/// A connection by signatures, which are looked up once. An object whose class has a meta-object of
/// its own may have declared anew what they name, so there they are looked up each time.
template <typename Sender, typename Receiver>
class Link
{
public:
    /// The signatures as SIGNAL() and SLOT() make them; @p method may be a signal too.
    Link(const char* signal, const char* method)
        : m_signal(signal)
        , m_method(method)
        , m_senderMethod(find(Sender::staticMetaObject, signal))
        , m_receiverMethod(find(Receiver::staticMetaObject, method))
    {
    }

    void connect(const Sender* sender, const Receiver* receiver) const
    {
        if (areKnown(sender, receiver))
            QObject::connect(sender, m_senderMethod, receiver, m_receiverMethod);
        else
            QObject::connect(sender, m_signal, receiver, m_method);
    }

    void disconnect(const Sender* sender, const Receiver* receiver) const
    {
        if (areKnown(sender, receiver))
            QObject::disconnect(sender, m_senderMethod, receiver, m_receiverMethod);
        else
            QObject::disconnect(sender, m_signal, receiver, m_method);
    }

private:
    static QMetaMethod find(const QMetaObject& metaObject, const char* signature)
    {
        const bool isSignal = *signature == '0' + QSIGNAL_CODE;
        const char* const name = signature + 1;
        return metaObject.method(
            isSignal ? metaObject.indexOfSignal(name) : metaObject.indexOfSlot(name));
    }

    static bool areKnown(const Sender* sender, const Receiver* receiver)
    {
        return sender && sender->metaObject() == &Sender::staticMetaObject
            && receiver->metaObject() == &Receiver::staticMetaObject;
    }

    const char* m_signal;
    const char* m_method;
    QMetaMethod m_senderMethod;
    QMetaMethod m_receiverMethod;
};

/// Notices that an action is deleted. One that is in its destructor already counts as there, and
/// can be disconnected, but Qt has let go of what a QPointer to it would use.
class ActionGuard
{
public:
    explicit ActionGuard(QAction* action)
        : m_pointer(whole(action))
        , m_isWatching(m_pointer)
    {
    }

    bool isGone() const { return m_isWatching && !m_pointer; }

private:
    QPointer<QAction> m_pointer;
    bool m_isWatching;
};

} // namespace

/// How a proxy and its backends are connected.
struct ProxyLinks
{
    using FromBackend = Link<QAction, ProxyAction>;
    using ToBackend = Link<ProxyAction, QAction>;

    const FromBackend destroyed{
        SIGNAL(destroyed(QObject*)), SLOT(onBackendActionDestroyed(QObject*))};
    const FromBackend changed{SIGNAL(changed()), SLOT(updateProxyProperties())};
    // In the order in which they are made and broken.
    const std::array<ToBackend, 3> forwarding{
        ToBackend{SIGNAL(triggered(bool)), SIGNAL(triggered(bool))},
        ToBackend{SIGNAL(toggled(bool)), SIGNAL(toggled(bool))},
        ToBackend{SIGNAL(hovered()), SIGNAL(hovered())}};
};

static const ProxyLinks& links()
{
    static const ProxyLinks links;
    return links;
}

// One that is being destroyed can still be active, until its last registration has gone.
QAction* _proxy_act_private::select() const
{
    if (backends.isEmpty())
        return nullptr;
    for (const QString& context : currentContext) {
        QAction* const action = backends.value(context);
        if (action && (action == activeBackend || whole(action)))
            return action;
    }
    return nullptr;
}

// Of several contexts of one action, the one that comes first among all backends.
_proxy_act_private::Backend _proxy_act_private::findBackend(const QObject* action)
{
    if (contextsOf.count(action) == 1)
        return backends.find(contextsOf.value(action));
    return std::find(backends.begin(), backends.end(), action);
}

void _proxy_act_private::insert(const QString& context, QAction* action)
{
    backends.insert(context, action);
    contextsOf.insert(action, context);
}

void _proxy_act_private::erase(Backend backend)
{
    contextsOf.remove(backend.value(), backend.key());
    backends.erase(backend);
}

// Each setter emits signals whose listeners may switch to another backend, so each value is read
// from the one of that moment, or may delete the proxy.
void _proxy_act_private::copyProperties(QAction* proxy) const
{
    const auto source = [this] {
        QAction* const backend = whole(activeBackend);
        return backend ? backend : defaultProp;
    };
    const auto text = [&](QString (QAction::*read)() const) {
        const QString value = (source()->*read)();
        return value.isEmpty() ? (defaultProp->*read)() : value;
    };
    const QPointer<QAction> alive(proxy);
    const auto isThereAfter = [&](auto set, const auto& value) {
        (proxy->*set)(value);
        return !alive.isNull();
    };

    static_cast<void>(
        isThereAfter(&QAction::setEnabled, whole(activeBackend) && activeBackend->isEnabled())
        && isThereAfter(&QAction::setVisible, source()->isVisible())
        && isThereAfter(&QAction::setCheckable, source()->isCheckable())
        && isThereAfter(&QAction::setChecked, source()->isChecked())
        && isThereAfter(&QAction::setText, text(&QAction::text))
        && isThereAfter(
            &QAction::setIcon, source()->icon().isNull() ? defaultProp->icon() : source()->icon())
        && isThereAfter(&QAction::setIconText, text(&QAction::iconText))
        && isThereAfter(&QAction::setShortcut,
            source()->shortcut().isEmpty() ? defaultProp->shortcut() : source()->shortcut())
        && isThereAfter(&QAction::setToolTip, text(&QAction::toolTip))
        && isThereAfter(&QAction::setStatusTip, text(&QAction::statusTip))
        && isThereAfter(&QAction::setWhatsThis, text(&QAction::whatsThis)));
}

ProxyAction::ProxyAction(QObject* parent)
    : QAction(parent)
    , d(new _proxy_act_private)
{
    d->defaultProp = new QAction(this);
    d->defaultProp->setEnabled(false);
    updateProxyProperties();
    connect(d->defaultProp, SIGNAL(changed()), this, SLOT(updateProxyProperties()));
}

ProxyAction::~ProxyAction()
{
    delete d;
}

void ProxyAction::addBackendAction(QAction* action, const QString& context)
{
    if (d->backends.contains(context)) {
        qWarning() << this << "duplicated backend action register" << context << action;
    } else {
        Trace() << this << "add backend action" << context << action;
        d->insert(context, action);
        const QPointer<QObject> alive(this);
        links().destroyed.connect(action, this);
        if (!alive)
            return;
    }
    if (d->currentContext.contains(context))
        updateProxy(false);
}

void ProxyAction::removeBackendAction(QAction* action)
{
    const auto it = d->findBackend(action);
    if (it == d->backends.end()) {
        qWarning() << this << "remove backend action" << action << "not found";
        return;
    }
    Trace() << this << "remove backend action" << action;
    d->erase(it);
    const QPointer<QObject> alive(this);
    const ActionGuard guard(action);
    links().destroyed.disconnect(action, this);
    if (alive && d->activeBackend == action)
        updateProxy(guard.isGone());
}

QAction* ProxyAction::removeBackendContext(const QString& context)
{
    const auto it = d->backends.find(context);
    if (it == d->backends.end()) {
        qWarning() << this << "remove backend context" << context << "not found";
        return nullptr;
    }
    QAction* const action = it.value();
    Trace() << this << "remove backend context" << context << action;
    d->erase(it);
    const QPointer<QObject> alive(this);
    const ActionGuard guard(action);
    links().destroyed.disconnect(action, this);
    if (alive && d->activeBackend == action)
        updateProxy(guard.isGone());
    return action;
}

QAction* ProxyAction::getBackendAction(const QString& context) const
{
    return d->backends.value(context);
}

void ProxyAction::setCurrentContext(const QStringList& contexts)
{
    if (d->currentContext == contexts)
        return;
    Trace() << this << "set context" << contexts;
    d->currentContext = contexts;
    updateProxy(false);
}

QStringList ProxyAction::currentContext() const
{
    return d->currentContext;
}

QAction* ProxyAction::currentActiveBackendAction() const
{
    return d->activeBackend;
}

QAction* ProxyAction::defaultProp() const
{
    return d->defaultProp;
}

// The old backend is disconnected before the properties are copied and the new one is connected
// after: the copy sets the checked state, which must not echo into either of them. Whoever is told
// on the way may begin another switch, which then holds, or delete the proxy.
void ProxyAction::updateProxy(bool oldBackendDead)
{
    const QAction* const candidate = d->select();
    if (candidate == d->activeBackend)
        return;
    Trace() << this << "change active backend action to" << candidate;

    const auto isOvertaken = [this, alive = QPointer<QObject>(this), own = ++d->switches] {
        return !alive || d->switches != own;
    };
    if (QAction* const old = oldBackendDead ? nullptr : d->activeBackend) {
        const ActionGuard guard(old);
        links().changed.disconnect(old, this);
        for (const ProxyLinks::ToBackend& link : links().forwarding) {
            if (isOvertaken())
                return;
            if (!guard.isGone())
                link.disconnect(this, old);
        }
    }
    if (isOvertaken())
        return;
    // Not the candidate, which can be gone by now.
    d->activeBackend = d->select();
    updateProxyProperties();
    if (isOvertaken() || !d->activeBackend)
        return;
    links().changed.connect(d->activeBackend, this);
    for (const ProxyLinks::ToBackend& link : links().forwarding) {
        if (isOvertaken())
            return;
        link.connect(this, d->activeBackend);
    }
}

void ProxyAction::onBackendActionDestroyed(QObject* dead)
{
    Trace() << this << "backend action destroyed" << dead;
    const auto it = d->findBackend(dead);
    if (it == d->backends.end())
        return;
    d->erase(it);
    if (d->activeBackend == dead)
        updateProxy(true);
}

void ProxyAction::updateProxyProperties()
{
    d->copyProperties(this);
}

ProxyActionManager* ProxyActionManager::s_instance = nullptr;

ProxyActionManager* ProxyActionManager::instance()
{
    if (!s_instance)
        s_instance = new ProxyActionManager;
    return s_instance;
}

ProxyActionManager::ProxyActionManager() = default;

ProxyActionManager::~ProxyActionManager()
{
    s_instance = nullptr;
}

void ProxyActionManager::registerProxyAction(ProxyAction* action, const QString& id)
{
    if (proxyActions.contains(id)) {
        qCritical() << this << "register proxy action" << id << action << "duplicated ID";
        return;
    }
    Trace() << this << "register proxy action" << id << action;
    proxyActions.insert(id, action);
    action->setCurrentContext(currentContext);
}

ProxyAction* ProxyActionManager::getProxyAction(const QString& id)
{
    return proxyActions.value(id);
}

void ProxyActionManager::setCurrentContext(const QStringList& contexts)
{
    if (currentContext == contexts)
        return;
    Trace() << "set context and update for all proxy actions";
    currentContext = contexts;
    const QPointer<ProxyActionManager> self(this);
    for (ProxyAction* action : qAsConst(proxyActions)) {
        action->setCurrentContext(currentContext);
        if (!self) // deleted by a listener of the action
            return;
    }
}

} // namespace Zentu
