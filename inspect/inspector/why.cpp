// SPDX-License-Identifier: MIT
#include "why.h"

#include "notes.h"
#include "proxy_act.h"

#include <QActionGroup>
#include <QApplication>
#include <QMenu>
#include <QWidget>

#include <algorithm>

namespace Zentu::Inspect {

static QString tr(const char* text)
{
    return QCoreApplication::translate("Zentu::Inspect::Why", text);
}

static QString quoted(const QStringList& names)
{
    QStringList result;
    for (const QString& name : names)
        result.append(QStringLiteral("“%1”").arg(name));
    return result.join(QLatin1String(", "));
}

/// The contexts for which the proxy has a backend, as it answers for itself.
static QStringList contextsWithBackend(const Session& session, const ProxyAction& proxy)
{
    QStringList names;
    const auto known = session.program().proxies().find(
        reinterpret_cast<Address>(static_cast<const QAction*>(&proxy)));
    if (known == session.program().proxies().end())
        return names;
    for (const auto& [name, entry] : known->second.backends.entries()) {
        if (proxy.getBackendAction(plain(name)))
            names.append(plain(name));
    }
    return names;
}

/// The first of the contexts in force that has a backend.
static QString activeContext(const ProxyAction& proxy)
{
    const QStringList contexts = proxy.currentContext();
    const auto it = std::find_if(contexts.begin(), contexts.end(),
        [&](const QString& context) { return proxy.getBackendAction(context) != nullptr; });
    return it == contexts.end() ? QString() : *it;
}

static QString ownersName(const QAction& action)
{
    const QObject* const owner = ownerOf(action);
    if (!owner)
        return tr("nobody");
    const QString className = QString::fromLatin1(owner->metaObject()->className());
    return owner->objectName().isEmpty()
        ? className
        : className + QStringLiteral(" “%1”").arg(owner->objectName());
}

static QString sinceText(const EnabledChange& change)
{
    if (change.line == 0)
        return tr("since it became active");
    return tr("since %1, line %2").arg(change.time).arg(change.line);
}

static QString withoutBackend(const Session& session, const ProxyAction& proxy)
{
    const QStringList contexts = contextsWithBackend(session, proxy);
    if (contexts.isEmpty())
        return tr("Nobody has added a backend to it.");
    if (proxy.currentContext().isEmpty())
        return tr(
            "No contexts are in force for it: either none was added, or nothing hands them on "
            "with setCurrentContext(). It has backends for %1.")
            .arg(quoted(contexts));
    return tr("No context of it is in force. It has backends for %1; in force: %2.")
        .arg(quoted(contexts), quoted(proxy.currentContext()));
}

/// The enabled actions of a window's widgets that have one of the keys.
static void addActions(const QWidget& window, const QAction& action, QList<QAction*>& result)
{
    const QList<QKeySequence> keys = action.shortcuts();
    for (const QWidget* const widget : window.findChildren<QWidget*>()) {
        const QList<QAction*> actions = widget->actions();
        for (QAction* const other : actions) {
            const QList<QKeySequence> others = other->shortcuts();
            const bool isShared = std::any_of(keys.begin(), keys.end(),
                [&](const QKeySequence& key) { return !key.isEmpty() && others.contains(key); });
            if (other != &action && isShared && other->isEnabled() && !result.contains(other))
                result.append(other);
        }
    }
}

QList<QAction*> actionsWithTheSameKey(const QAction& action)
{
    QList<QAction*> result;
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (const QWidget* const window : windows) {
        const auto widgets = window->findChildren<QWidget*>();
        const bool isHere = std::any_of(widgets.begin(), widgets.end(), [&](const QWidget* widget) {
            return widget->actions().contains(const_cast<QAction*>(&action));
        });
        if (isHere && !qobject_cast<const QMenu*>(window))
            addActions(*window, action, result);
    }
    return result;
}

static QString whyEnabled(const QAction& action, const QString& sentence)
{
    const QList<QAction*> rivals = actionsWithTheSameKey(action);
    if (rivals.isEmpty())
        return sentence;
    return sentence + QLatin1Char(' ')
        + tr("Its key %1 does nothing, because “%2” of %3 has the same one.")
              .arg(action.shortcut().toString(QKeySequence::NativeText),
                  rivals.first()->text().remove(QLatin1Char('&')), ownersName(*rivals.first()));
}

Reason why(const Session& session, const ProxyAction& proxy)
{
    const QAction* const backend = proxy.currentActiveBackendAction();
    Reason result;
    result.isEnabled = proxy.isEnabled();
    result.activeContext = backend ? activeContext(proxy) : QString();
    if (!backend) {
        result.sentence = withoutBackend(session, proxy);
    } else if (!backend->isEnabled()) {
        result.sentence = tr("Its backend for “%1”, of %2, is disabled %3.")
                              .arg(result.activeContext, ownersName(*backend),
                                  sinceText(session.enabledSince(backend)));
    } else if (!proxy.isEnabled()) {
        result.sentence =
            tr("The proxy itself was disabled, while its backend for “%1” is enabled.")
                .arg(result.activeContext);
    } else {
        result.sentence = whyEnabled(proxy,
            tr("It is enabled: its backend for “%1”, of %2, is active.")
                .arg(result.activeContext, ownersName(*backend)));
    }
    return result;
}

Reason why(const QAction& action)
{
    Reason result;
    result.isEnabled = action.isEnabled();
    const QActionGroup* const group = action.actionGroup();
    if (result.isEnabled)
        result.sentence = whyEnabled(action, tr("It is enabled."));
    else if (group && !group->isEnabled())
        result.sentence = tr("Its group is disabled. No proxy stands behind it.");
    else
        result.sentence =
            tr("%1 has disabled it. No proxy stands behind it.").arg(ownersName(action));
    return result;
}

} // namespace Zentu::Inspect
