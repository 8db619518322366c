// SPDX-License-Identifier: MIT
#include "actions.h"

#include "action_mgr.h"
#include "glyph_icon.h"
#include "proxy_act.h"
#include "shortcuts_page.h"

#include <QCoreApplication>
#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QToolBar>

namespace Ids {

const QString MenuBar = QStringLiteral("menubar.main");
const QString MenuFile = QStringLiteral("menu.file");
const QString MenuEdit = QStringLiteral("menu.edit");
const QString MenuView = QStringLiteral("menu.view");
const QString MenuWindow = QStringLiteral("menu.window");
const QString MenuTools = QStringLiteral("menu.tools");
const QString MenuHelp = QStringLiteral("menu.help");
const QString ToolBar = QStringLiteral("toolbar.main");

const QString New = QStringLiteral("file.new");
const QString Open = QStringLiteral("file.open");
const QString Save = QStringLiteral("file.save");
const QString SaveAs = QStringLiteral("file.save_as");
const QString Close = QStringLiteral("file.close");
const QString Undo = QStringLiteral("edit.undo");
const QString Redo = QStringLiteral("edit.redo");
const QString Cut = QStringLiteral("edit.cut");
const QString Copy = QStringLiteral("edit.copy");
const QString Paste = QStringLiteral("edit.paste");
const QString SelectAll = QStringLiteral("edit.select_all");
const QString Find = QStringLiteral("edit.find");
const QString FindNext = QStringLiteral("edit.find_next");
const QString FindPrevious = QStringLiteral("edit.find_previous");
const QString Replace = QStringLiteral("edit.replace");
const QString ZoomIn = QStringLiteral("view.zoom_in");
const QString ZoomOut = QStringLiteral("view.zoom_out");
const QString ActualSize = QStringLiteral("view.actual_size");
const QString WordWrap = QStringLiteral("view.word_wrap");
const QString Fit = QStringLiteral("view.fit");

const QString WorkbenchContext = QStringLiteral("workbench");

} // namespace Ids

namespace {

/// A proxy action's place and its look where the active backend has none.
struct Look
{
    QString id;
    QString menu;
    const char* text;
    const char* tip;
    const char* icon; ///< In the toolbar too, if it has one.
    QKeySequence shortcut;
    bool separatorBefore;
};

QString translated(const char* text)
{
    return QCoreApplication::translate("Actions", text);
}

QList<Look> looks()
{
    using namespace Ids;
    return {
        {New, MenuFile, QT_TRANSLATE_NOOP("Actions", "&New"),
            QT_TRANSLATE_NOOP("Actions", "Begin an empty text"), "document-new", QKeySequence::New,
            false},
        {Open, MenuFile, QT_TRANSLATE_NOOP("Actions", "&Open..."),
            QT_TRANSLATE_NOOP("Actions", "Open files"), "document-open", QKeySequence::Open, false},
        {Save, MenuFile, QT_TRANSLATE_NOOP("Actions", "&Save"),
            QT_TRANSLATE_NOOP("Actions", "Save the document"), "document-save", QKeySequence::Save,
            true},
        {SaveAs, MenuFile, QT_TRANSLATE_NOOP("Actions", "Save &As..."),
            QT_TRANSLATE_NOOP("Actions", "Save the document under another name"),
            "document-save-as", QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_S), false},
        {Close, MenuFile, QT_TRANSLATE_NOOP("Actions", "&Close"),
            QT_TRANSLATE_NOOP("Actions", "Close the document"), nullptr,
            QKeySequence(QStringLiteral("Ctrl+W")), false},
        {Undo, MenuEdit, QT_TRANSLATE_NOOP("Actions", "&Undo"),
            QT_TRANSLATE_NOOP("Actions", "Take the last change back"), "edit-undo",
            QKeySequence::Undo, true},
        {Redo, MenuEdit, QT_TRANSLATE_NOOP("Actions", "&Redo"),
            QT_TRANSLATE_NOOP("Actions", "Make the last change again"), "edit-redo",
            QKeySequence::Redo, false},
        {Cut, MenuEdit, QT_TRANSLATE_NOOP("Actions", "Cu&t"),
            QT_TRANSLATE_NOOP("Actions", "Move the selection to the clipboard"), "edit-cut",
            QKeySequence::Cut, true},
        {Copy, MenuEdit, QT_TRANSLATE_NOOP("Actions", "&Copy"),
            QT_TRANSLATE_NOOP("Actions", "Copy the selection or the picture to the clipboard"),
            "edit-copy", QKeySequence::Copy, false},
        {Paste, MenuEdit, QT_TRANSLATE_NOOP("Actions", "&Paste"),
            QT_TRANSLATE_NOOP("Actions", "Insert what is on the clipboard"), "edit-paste",
            QKeySequence::Paste, false},
        {SelectAll, MenuEdit, QT_TRANSLATE_NOOP("Actions", "Select &All"),
            QT_TRANSLATE_NOOP("Actions", "Select the whole document"), nullptr,
            QKeySequence::SelectAll, false},
        {Find, MenuEdit, QT_TRANSLATE_NOOP("Actions", "&Find..."),
            QT_TRANSLATE_NOOP("Actions", "Find a text in the document"), "edit-find",
            QKeySequence::Find, true},
        {FindNext, MenuEdit, QT_TRANSLATE_NOOP("Actions", "Find &Next"),
            QT_TRANSLATE_NOOP("Actions", "Go to the next place where the text is found"), nullptr,
            QKeySequence(QStringLiteral("F3")), false},
        {FindPrevious, MenuEdit, QT_TRANSLATE_NOOP("Actions", "Find Pre&vious"),
            QT_TRANSLATE_NOOP("Actions", "Go to the place before where the text is found"), nullptr,
            QKeySequence(QStringLiteral("Shift+F3")), false},
        {Replace, MenuEdit, QT_TRANSLATE_NOOP("Actions", "R&eplace..."),
            QT_TRANSLATE_NOOP("Actions", "Find a text and put another in its place"), nullptr,
            QKeySequence(QStringLiteral("Ctrl+H")), false},
        {ZoomIn, MenuView, QT_TRANSLATE_NOOP("Actions", "Zoom &In"),
            QT_TRANSLATE_NOOP("Actions", "Show the document larger"), "zoom-in",
            QKeySequence(QStringLiteral("Ctrl++")), true},
        {ZoomOut, MenuView, QT_TRANSLATE_NOOP("Actions", "Zoom &Out"),
            QT_TRANSLATE_NOOP("Actions", "Show the document smaller"), "zoom-out",
            QKeySequence(QStringLiteral("Ctrl+-")), false},
        {ActualSize, MenuView, QT_TRANSLATE_NOOP("Actions", "&Actual Size"),
            QT_TRANSLATE_NOOP("Actions", "Show the document in its own size"), "zoom-original",
            QKeySequence(QStringLiteral("Ctrl+0")), false},
        {Fit, MenuView, QT_TRANSLATE_NOOP("Actions", "&Fit to Window"),
            QT_TRANSLATE_NOOP("Actions", "Show the whole picture"), nullptr,
            QKeySequence(QStringLiteral("Ctrl+9")), false},
        {WordWrap, MenuView, QT_TRANSLATE_NOOP("Actions", "&Word Wrap"),
            QT_TRANSLATE_NOOP("Actions", "Break long lines at the edge of the window"), nullptr,
            QKeySequence(QStringLiteral("Alt+Z")), true},
    };
}

void createMenus(QMainWindow* window)
{
    const QList<QPair<QString, const char*>> titles = {
        {Ids::MenuFile, QT_TRANSLATE_NOOP("Actions", "&File")},
        {Ids::MenuEdit, QT_TRANSLATE_NOOP("Actions", "&Edit")},
        {Ids::MenuView, QT_TRANSLATE_NOOP("Actions", "&View")},
        {Ids::MenuWindow, QT_TRANSLATE_NOOP("Actions", "&Window")},
        {Ids::MenuTools, QT_TRANSLATE_NOOP("Actions", "&Tools")},
        {Ids::MenuHelp, QT_TRANSLATE_NOOP("Actions", "&Help")},
    };
    auto* registry = Zentu::ActionManager::instance();
    registry->registerMenubar(Ids::MenuBar, window->menuBar());
    for (const auto& title : titles) {
        QMenu* const menu = window->menuBar()->addMenu(translated(title.second));
        menu->setObjectName(title.first);
        registry->registerMenu(title.first, menu);
    }
    QToolBar* const toolBar = window->addToolBar(translated("Main Toolbar"));
    toolBar->setObjectName(Ids::ToolBar);
    registry->registerToolbar(Ids::ToolBar, toolBar);
}

} // namespace

QStringList actionIds()
{
    QStringList ids;
    const QList<Look> all = looks();
    for (const Look& look : all)
        ids.append(look.id);
    return ids;
}

void createActions(QMainWindow* window)
{
    createMenus(window);
    auto* registry = Zentu::ActionManager::instance();
    QToolBar* const toolBar = registry->getToolbar(Ids::ToolBar);
    for (const Look& look : looks()) {
        auto* proxy = new Zentu::ProxyAction(window);
        proxy->setObjectName(look.id);
        QAction* const shown = proxy->defaultProp();
        shown->setText(translated(look.text));
        shown->setStatusTip(translated(look.tip));
        shown->setShortcut(look.shortcut);
        if (look.icon)
            shown->setIcon(glyphIcon(QLatin1String(look.icon)));

        QMenu* const menu = registry->getMenu(look.menu);
        if (look.separatorBefore && !menu->isEmpty())
            menu->addSeparator();
        menu->addAction(proxy);
        if (look.icon) {
            if (look.separatorBefore)
                toolBar->addSeparator();
            toolBar->addAction(proxy);
        }
        Zentu::ProxyActionManager::instance()->registerProxyAction(proxy, look.id);
    }
    ShortcutsPage::restore(actionIds());
}
