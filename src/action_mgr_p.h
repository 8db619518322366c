// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QObject>
#include <QString>

class QMenu;
class QMenuBar;
class QToolBar;

namespace Zentu {

class ActionManager;

/// The registered widgets, and the slots by which they leave when they are destroyed.
class _action_mgr_private : public QObject
{
    Q_OBJECT

public:
    explicit _action_mgr_private(ActionManager* manager)
        : owner(manager)
    {
    }

public Q_SLOTS:
    void onMenuDestroyed(QObject* obj);
    void onMenubarDestroyed(QObject* obj);
    void onToolbarDestroyed(QObject* obj);

public:
    ActionManager* owner;
    QHash<QString, QMenu*> menus;
    QHash<QString, QMenuBar*> menubars;
    QHash<QString, QToolBar*> toolbars;
};

} // namespace Zentu
