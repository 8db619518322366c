// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>

class QMainWindow;

/// The identifiers under which menus, toolbars and proxy actions are registered.
namespace Ids {

extern const QString MenuBar;
extern const QString MenuFile;
extern const QString MenuEdit;
extern const QString MenuView;
extern const QString MenuWindow;
extern const QString MenuTools;
extern const QString MenuHelp;
extern const QString ToolBar;

extern const QString New;
extern const QString Open;
extern const QString Save;
extern const QString SaveAs;
extern const QString Close;
extern const QString Undo;
extern const QString Redo;
extern const QString Cut;
extern const QString Copy;
extern const QString Paste;
extern const QString SelectAll;
extern const QString Find;
extern const QString FindNext;
extern const QString FindPrevious;
extern const QString Replace;
extern const QString ZoomIn;
extern const QString ZoomOut;
extern const QString ActualSize;
extern const QString WordWrap;
extern const QString Fit;

extern const QString WorkbenchContext;

} // namespace Ids

/// The identifiers of all proxy actions, in the order of the menus.
QStringList actionIds();

/// Creates the menus, the toolbar and the proxy actions in them, and registers them all.
void createActions(QMainWindow* window);
