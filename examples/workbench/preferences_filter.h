// SPDX-License-Identifier: MIT
#pragma once

#include <QLineEdit>
#include <QStringList>

#include <functional>

class QTreeWidget;
class QTreeWidgetItem;

namespace Zentu {
class OptionDialog;
}

/// A field above the tree of an OptionDialog, which hides the pages that do not match. No page is
/// loaded before it is chosen: what stands on it is told by the host.
class PreferencesFilter : public QLineEdit
{
    Q_OBJECT

public:
    /// The texts of the page of a category, for people.
    using Texts = std::function<QStringList(const QStringList& category)>;

    /// Puts itself into @p dialog, which owns it.
    PreferencesFilter(Zentu::OptionDialog* dialog, Texts texts);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void filter();
    bool filterBelow(QTreeWidgetItem* item, const QStringList& path, bool isShown);
    bool matches(const QStringList& path) const;

    QTreeWidget* m_tree;
    Texts m_texts;
};
