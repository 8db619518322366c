// SPDX-License-Identifier: MIT
#pragma once

#include <QAction>
#include <QHash>
#include <QString>
#include <QStringList>

namespace Support {

/**
 * What a proxy action should show, worked out anew from the backends each time.
 *
 * The checked state is left to the caller: a proxy that is triggered has its own for a while.
 */
class ProxyModel
{
public:
    explicit ProxyModel(const QAction* fallback)
        : m_fallback(fallback)
    {
    }

    QAction* active() const
    {
        for (const QString& context : contexts) {
            if (QAction* action = backends.value(context))
                return action;
        }
        return nullptr;
    }

    /// Whether the proxy and its backend act when a program triggers the proxy. A disabled action
    /// does so in Qt 5 alone.
    bool isTriggered() const { return active() && (QT_VERSION_MAJOR == 5 || isEnabled()); }
    bool isEnabled() const { return active() && active()->isEnabled(); }
    bool isVisible() const { return state()->isVisible(); }
    bool isCheckable() const { return state()->isCheckable(); }
    bool isChecked() const { return state()->isChecked(); }

    QString text(QString (QAction::*property)() const) const
    {
        const QString own = (state()->*property)();
        return own.isEmpty() ? (m_fallback->*property)() : own;
    }

    QKeySequence shortcut() const
    {
        return state()->shortcut().isEmpty() ? m_fallback->shortcut() : state()->shortcut();
    }

    QStringList contexts;
    QHash<QString, QAction*> backends;

private:
    const QAction* state() const { return active() ? active() : m_fallback; }

    const QAction* m_fallback;
};

} // namespace Support
