// SPDX-License-Identifier: MIT
#include "action_mgr.h"

#include "action_mgr_p.h"
#include "trace_p.h"

#include <QDebug>
#include <QMenu>
#include <QMenuBar>
#include <QPointer>
#include <QToolBar>

#include <algorithm>

namespace Zentu {

// Menus, menubars and toolbars behave alike; the three functions below are all that is done with
// any of them.

template <typename Widget>
static void registerWidget(_action_mgr_private* d, QHash<QString, Widget*>& widgets,
    const char* text, const char* onDestroyed, const QString& id, Widget* widget)
{
    if (widgets.contains(id)) {
        qCritical() << d->owner << text << id << widget << "duplicated ID";
        return;
    }
    Trace() << d->owner << text << id << widget;
    widgets.insert(id, widget);
    QObject::connect(widget, SIGNAL(destroyed(QObject*)), d, onDestroyed);
}

// A widget with two identifiers is connected twice, so each call drops one entry.
template <typename Widget>
static void dropDestroyed(const _action_mgr_private* d, QHash<QString, Widget*>& widgets,
    const char* text, const QObject* obj)
{
    Trace() << d->owner << text << obj;
    const auto it = std::find(widgets.begin(), widgets.end(), obj);
    if (it != widgets.end())
        widgets.erase(it);
}

// A copy is walked, and the registry is looked at again after each step: a widget hears that it is
// disconnected, and may register another or delete the manager then.
template <typename Widget>
static void forgetAll(
    const QPointer<_action_mgr_private>& d, QHash<QString, Widget*> _action_mgr_private::*widgets)
{
    if (!d)
        return;
    const QList<Widget*> all = (d->*widgets).values();
    for (Widget* widget : all) {
        QObject::disconnect(widget, nullptr, d, nullptr);
        if (!d)
            return;
    }
    (d->*widgets).clear();
}

void _action_mgr_private::onMenuDestroyed(QObject* obj)
{
    dropDestroyed(this, menus, "menu destroyed", obj);
}

void _action_mgr_private::onMenubarDestroyed(QObject* obj)
{
    dropDestroyed(this, menubars, "menubar destroyed", obj);
}

void _action_mgr_private::onToolbarDestroyed(QObject* obj)
{
    dropDestroyed(this, toolbars, "toolbar destroyed", obj);
}

ActionManager* ActionManager::s_instance = nullptr;

ActionManager* ActionManager::instance()
{
    if (!s_instance)
        s_instance = new ActionManager;
    return s_instance;
}

ActionManager::ActionManager()
    : d(new _action_mgr_private(this))
{
}

ActionManager::~ActionManager()
{
    delete d;
    s_instance = nullptr;
}

void ActionManager::registerMenu(const QString& id, QMenu* menu)
{
    registerWidget(d, d->menus, "register menu", SLOT(onMenuDestroyed(QObject*)), id, menu);
}

void ActionManager::registerMenubar(const QString& id, QMenuBar* menubar)
{
    registerWidget(
        d, d->menubars, "register menubar", SLOT(onMenubarDestroyed(QObject*)), id, menubar);
}

void ActionManager::registerToolbar(const QString& id, QToolBar* toolbar)
{
    registerWidget(
        d, d->toolbars, "register toolbar", SLOT(onToolbarDestroyed(QObject*)), id, toolbar);
}

QMenu* ActionManager::getMenu(const QString& id) const
{
    return d->menus.value(id);
}

QMenuBar* ActionManager::getMenubar(const QString& id) const
{
    return d->menubars.value(id);
}

QToolBar* ActionManager::getToolbar(const QString& id) const
{
    return d->toolbars.value(id);
}

void ActionManager::clear()
{
    Trace() << this << "clear";
    const QPointer<_action_mgr_private> registry(d);
    forgetAll(registry, &_action_mgr_private::menus);
    forgetAll(registry, &_action_mgr_private::menubars);
    forgetAll(registry, &_action_mgr_private::toolbars);
}

} // namespace Zentu
