// SPDX-License-Identifier: MIT
#pragma once

#include "option_dlg.h"

#include <QHash>
#include <QKeySequence>
#include <QList>
#include <QStringList>

class QAction;
class QKeySequenceEdit;
class QLabel;
class QPushButton;
class QTreeWidget;

/// The shortcuts of registered proxy actions: changes the default look of the proxies, and keeps
/// what differs from the program's own choice in the settings.
class ShortcutsPage : public Zentu::IOptionPage
{
    Q_OBJECT

public:
    /// @p ids are the identifiers of the proxies, in the order of the list; @p others are actions
    /// whose shortcuts are taken and cannot be changed here.
    ShortcutsPage(
        const QStringList& category, const QStringList& ids, const QList<QAction*>& others = {});

    /// What stands on the page, for a filter of pages.
    QStringList texts() const;

    /// Gives the proxies the shortcuts that the settings keep; once, when all are registered.
    static void restore(const QStringList& ids);

    QStringList category() const override { return m_category; }
    QWidget* pageWidget() override { return m_widget; }
    void initialize() override;
    void finalize() override { }
    void apply() override;

private:
    QString currentId() const;
    void showCurrent();
    void edit(const QKeySequence& shortcut);
    void tellConflict();
    void fillRow(int row);

    QStringList m_category;
    QStringList m_ids;
    QList<QAction*> m_others;
    QHash<QString, QKeySequence> m_shortcuts;
    QWidget* m_widget = nullptr;
    QTreeWidget* m_list = nullptr;
    QKeySequenceEdit* m_edit = nullptr;
    QPushButton* m_clear = nullptr;
    QPushButton* m_reset = nullptr;
    QLabel* m_conflict = nullptr;
};
