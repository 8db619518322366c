// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QAction>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringList>

namespace Zentu {

class _proxy_act_private;

/**
 * An action that stands in for whichever action the active contexts select.
 *
 * A host puts the proxy into its menus and toolbars once. The parts of the host that do the work
 * register a backend action each, under the name of the context in which it applies:
 *
 * @code
 * auto* copy = new Zentu::ProxyAction(window);
 * copy->defaultProp()->setText(tr("&Copy"));
 * copy->defaultProp()->setShortcut(QKeySequence::Copy);
 * copy->addBackendAction(copyText, QStringLiteral("text"));
 * copy->addBackendAction(copyPicture, QStringLiteral("image"));
 * copy->setCurrentContext({QStringLiteral("image")}); // copyPicture is active
 * @endcode
 *
 * The proxy mirrors eleven properties of the active backend: enabled, visible, checkable, checked,
 * text, icon, iconText, shortcut, toolTip, statusTip and whatsThis. Where the backend leaves one of
 * the last seven empty, that of defaultProp() shows. Qt makes tool tip and icon text from the text
 * where they are not set, so that they are empty only where the text is. Without an active backend
 * the proxy is disabled and shows the properties of defaultProp().
 *
 * The proxy's own triggered(bool), toggled(bool) and hovered() are forwarded: the active backend
 * emits the same signal with the same argument. The proxy calls none of the backend's operations,
 * so the checked states of the two differ until the next change of the backend, which the proxy
 * takes over. A shortcut that the proxy mirrors is on two actions: keep such a backend out of the
 * windows that the proxy is in, or Qt finds the shortcut ambiguous and triggers neither.
 *
 * Backends are not owned; one that is destroyed is dropped, unless it is no longer watched (see
 * removeBackendAction()). Whoever listens to the proxy may switch, remove and delete backends, and
 * delete the proxy itself. Of switches within each other, the innermost one holds. For the GUI
 * thread only.
 */
class ZENTU_EXPORT ProxyAction : public QAction
{
    Q_OBJECT

public:
    /// Creates a proxy without backends and contexts: disabled, with an empty default look.
    explicit ProxyAction(QObject* parent = nullptr);

    /// Deletes defaultProp() with the proxy; the backends are left alone.
    ~ProxyAction() override;

    /**
     * Registers @p action as the backend for @p context; it becomes active at once if the current
     * contexts select it.
     *
     * If the context has a backend, warns "duplicated backend action register" and keeps that one.
     * One action may be registered under several names. A null action is stored but never selected.
     */
    void addBackendAction(QAction* action, const QString& context);

    /**
     * Removes one registration of @p action; if it was active, the backend is selected anew.
     *
     * Registrations of the same action under other names stay, but are no longer watched: such an
     * action must be removed before it is destroyed. If there is no registration, warns "remove
     * backend action" ... "not found".
     */
    void removeBackendAction(QAction* action);

    /**
     * Removes the registration of @p context; if its action was active, the backend is selected
     * anew.
     *
     * Other registrations of that action are no longer watched, as with removeBackendAction().
     *
     * @return the action, which stays the caller's; null, with the warning "remove backend context"
     *         ... "not found", if the context has none
     */
    QAction* removeBackendContext(const QString& context);

    /// The action registered for @p context, or null.
    QAction* getBackendAction(const QString& context) const;

    /// Selects the backend of the first context in @p contexts that has one. Does nothing if the
    /// list is the one that is already set.
    void setCurrentContext(const QStringList& contexts);

    /// The contexts last set, in the caller's order. Empty by default.
    QStringList currentContext() const;

    /// The backend that is mirrored and forwarded to, or null. Null by default.
    QAction* currentActiveBackendAction() const;

    /// The action whose properties show where the active backend has none; a child of the proxy,
    /// never null. Edit it freely: the proxy follows at once. Its own enabled state is not used.
    QAction* defaultProp() const;

protected:
    /// Selects the backend and switches to it if it is another one. @p oldBackendDead tells that
    /// the backend so far is being destroyed, so that it is not disconnected.
    void updateProxy(bool oldBackendDead);

private Q_SLOTS:
    void onBackendActionDestroyed(QObject* dead);
    void updateProxyProperties();

private:
    _proxy_act_private* d;
};

/**
 * The proxy actions of a host by identifier, and the one place that hands them new contexts.
 *
 * For the GUI thread only. Registered actions are neither owned nor watched: they must outlive the
 * manager, or at least every later call of setCurrentContext().
 */
class ZENTU_EXPORT ProxyActionManager : public QObject
{
    Q_OBJECT

public:
    /// The manager, created by the first call. Never deleted by the library; if the host deletes
    /// it, the next call creates an empty one.
    static ProxyActionManager* instance();

    /// Creates an empty manager that instance() does not know: for a window of several, which hands
    /// it on. A host with one window uses instance().
    ProxyActionManager();

    /// Makes instance() forget its manager, whichever object is destroyed. The actions live on.
    ~ProxyActionManager() override;

    /**
     * Registers @p action under @p id and sets the current contexts on it.
     *
     * If the identifier is taken, reports "register proxy action" ... "duplicated ID" as critical
     * and leaves @p action alone. The action must not be null.
     */
    void registerProxyAction(ProxyAction* action, const QString& id);

    /// The action registered under @p id, or null.
    ProxyAction* getProxyAction(const QString& id);

    /// Sets @p contexts on every registered action, in ascending order of identifiers. Does nothing
    /// if the list is the one that is already set. If a listener deletes the manager, the actions
    /// that remain are left alone.
    void setCurrentContext(const QStringList& contexts);

private:
    static ProxyActionManager* s_instance;

    QMap<QString, ProxyAction*> proxyActions;
    QStringList currentContext;
};

} // namespace Zentu
