// SPDX-License-Identifier: MIT
#include "preferences_filter.h"

#include "option_dlg.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>

#include <algorithm>

PreferencesFilter::PreferencesFilter(Zentu::OptionDialog* dialog, Texts texts)
    : m_tree(dialog->findChild<QTreeWidget*>(QStringLiteral("catalog_tree")))
    , m_texts(std::move(texts))
{
    setObjectName(QStringLiteral("preferences_filter"));
    setPlaceholderText(tr("Filter"));
    setAccessibleName(tr("Filter the pages"));
    setClearButtonEnabled(true);

    // The tree's cell of the dialog has the field in it, too.
    auto* cell = new QWidget(dialog);
    cell->setMaximumWidth(m_tree->maximumWidth());
    delete dialog->layout()->replaceWidget(m_tree, cell);
    auto* layout = new QVBoxLayout(cell);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(this);
    layout->addWidget(m_tree);
    m_tree->setFocus();
    connect(this, &QLineEdit::textChanged, this, &PreferencesFilter::filter);
}

void PreferencesFilter::filter()
{
    filterBelow(m_tree->invisibleRootItem(), {}, text().isEmpty());
}

// A category that matches shows all that is in it. Returns whether anything is shown.
bool PreferencesFilter::filterBelow(QTreeWidgetItem* item, const QStringList& path, bool isShown)
{
    bool any = isShown;
    for (int row = 0; row < item->childCount(); ++row) {
        QTreeWidgetItem* const child = item->child(row);
        const QStringList childPath = path + QStringList(child->text(0));
        const bool shown = filterBelow(child, childPath, isShown || matches(childPath));
        child->setHidden(!shown);
        any = any || shown;
    }
    return any;
}

bool PreferencesFilter::matches(const QStringList& path) const
{
    const QStringList texts = m_texts(path) + QStringList(path.constLast());
    return std::any_of(texts.cbegin(), texts.cend(), [this](QString shown) {
        return shown.remove(QLatin1Char('&')).contains(text(), Qt::CaseInsensitive);
    });
}

// Down goes into the tree, Enter to the first page that is left.
void PreferencesFilter::keyPressEvent(QKeyEvent* event)
{
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter && event->key() != Qt::Key_Down) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    m_tree->setFocus();
    for (QTreeWidgetItemIterator item(m_tree, QTreeWidgetItemIterator::NotHidden); isEnter && *item;
         ++item) {
        if ((*item)->childCount() == 0) {
            m_tree->setCurrentItem(*item);
            break;
        }
    }
}
