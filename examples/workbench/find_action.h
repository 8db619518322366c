// SPDX-License-Identifier: MIT
#pragma once

#include <QDialog>

class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

/// Finds the actions in the menus of the registered menu bar by any part of their text, shows where
/// each is, its shortcut and, if it is disabled, why. Enter triggers the chosen one.
class FindActionDialog : public QDialog
{
    Q_OBJECT

public:
    /// @p menuBar is the identifier under which the menu bar is registered.
    FindActionDialog(const QString& menuBar, QWidget* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void fill(const QList<QAction*>& actions, const QString& path);
    void filter();
    void choose(QTreeWidgetItem* item);
    void triggerChosen();

    QLineEdit* m_field;
    QTreeWidget* m_list;
};
