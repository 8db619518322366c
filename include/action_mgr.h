// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QObject>
#include <QString>

class QMenu;
class QMenuBar;
class QToolBar;

namespace Zentu {

class _action_mgr_private;

/**
 * The menus, menubars and toolbars of a host by identifier, so that its parts find them without
 * knowing each other.
 *
 * The three families are independent: one identifier may name a menu, a menubar and a toolbar.
 * Widgets are not owned; one that is destroyed leaves the registry by itself. For the GUI thread
 * only.
 */
class ZENTU_EXPORT ActionManager : public QObject
{
    Q_OBJECT

public:
    /// The registry, created by the first call. Never deleted by the library; if the host deletes
    /// it, the next call creates an empty one.
    static ActionManager* instance();

    /// Creates an empty registry that instance() does not know: for a window of several, which
    /// hands it on. A host with one window uses instance().
    ActionManager();

    /// Makes instance() forget its registry, whichever object is destroyed. The widgets live on.
    ~ActionManager() override;

    /**
     * Registers @p menu under @p id. One menu may have several identifiers.
     *
     * If the identifier is taken, reports "register menu" ... "duplicated ID" as critical; the
     * first registration stays.
     */
    void registerMenu(const QString& id, QMenu* menu);

    /// Registers @p menubar under @p id, as registerMenu() does; the message is "register menubar".
    void registerMenubar(const QString& id, QMenuBar* menubar);

    /// Registers @p toolbar under @p id, as registerMenu() does; the message is "register toolbar".
    void registerToolbar(const QString& id, QToolBar* toolbar);

    /// The menu registered under @p id, or null.
    QMenu* getMenu(const QString& id) const;

    /// The menubar registered under @p id, or null.
    QMenuBar* getMenubar(const QString& id) const;

    /// The toolbar registered under @p id, or null.
    QToolBar* getToolbar(const QString& id) const;

    /// Forgets every registration; the widgets are left alone. What a widget registers while it is
    /// disconnected is forgotten too, if its family is the same or has been forgotten; another
    /// registered widget must not be deleted then.
    void clear();

private:
    static ActionManager* s_instance;

    _action_mgr_private* d;
};

} // namespace Zentu
