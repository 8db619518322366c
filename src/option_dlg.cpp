// SPDX-License-Identifier: MIT
#include "option_dlg.h"

#include "option_dlg_p.h"
#include "trace_p.h"

#include <QCoreApplication>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHash>
#include <QPair>
#include <QPointer>
#include <QPushButton>
#include <QStackedWidget>
#include <QTreeWidget>

#include <memory>

namespace Zentu {

QTreeWidgetItem* findChildItemByText(QTreeWidgetItem* parent, const QString& text)
{
    for (int index = 0; index < parent->childCount(); ++index) {
        QTreeWidgetItem* const child = parent->child(index);
        if (child->data(0, Qt::DisplayRole).toString() == text)
            return child;
    }
    return nullptr;
}

// Follows a category from the root. Where findChild finds no child, one is made; if what it
// returned is a reference, it refers to that one then.
template <typename FindChild>
static QTreeWidgetItem* itemForCategory(
    QTreeWidgetItem* root, const QStringList& category, FindChild findChild)
{
    QTreeWidgetItem* item = root;
    for (const QString& name : category) {
        auto&& child = findChild(item, name);
        if (!child)
            child = new QTreeWidgetItem(item, QStringList(name));
        item = child;
    }
    return item;
}

QTreeWidgetItem* createItemForCategory(QTreeWidgetItem* root, const QStringList& category)
{
    return itemForCategory(root, category, findChildItemByText);
}

void Ui_OptionDialog::setupUi(QDialog* dialog)
{
    if (dialog->objectName().isEmpty())
        dialog->setObjectName(QStringLiteral("Zentu__OptionDialog"));
    dialog->resize(700, 435);

    gridLayout = new QGridLayout(dialog);
    gridLayout->setObjectName(QStringLiteral("gridLayout"));

    catalog_tree = new QTreeWidget(dialog);
    catalog_tree->headerItem()->setText(0, QString());
    catalog_tree->setObjectName(QStringLiteral("catalog_tree"));
    catalog_tree->setMaximumSize(180, QWIDGETSIZE_MAX);
    catalog_tree->setTextElideMode(Qt::ElideNone);
    catalog_tree->setHeaderHidden(true);
    gridLayout->addWidget(catalog_tree, 0, 0, 1, 1);

    btn_box = new QDialogButtonBox(dialog);
    btn_box->setObjectName(QStringLiteral("btn_box"));
    btn_box->setOrientation(Qt::Horizontal);
    btn_box->setStandardButtons(
        QDialogButtonBox::Ok | QDialogButtonBox::Cancel | QDialogButtonBox::Apply);
    gridLayout->addWidget(btn_box, 1, 0, 1, 2);

    stacked_widget = new QStackedWidget(dialog);
    stacked_widget->setObjectName(QStringLiteral("stacked_widget"));
    stacked_widget->setFrameShape(QFrame::StyledPanel);
    stacked_widget->setFrameShadow(QFrame::Sunken);
    gridLayout->addWidget(stacked_widget, 0, 1, 1, 1);

    dialog->setWindowTitle(QCoreApplication::translate("Zentu::OptionDialog", "Options"));
    stacked_widget->setCurrentIndex(-1);
    QMetaObject::connectSlotsByName(dialog);
}

void _opt_dlg_private::initCatalogTree()
{
    Trace() << q << "initialze catalog tree";

    // Built aside, so that the tree widget takes all items at once. A page without a category maps
    // to the root itself, which nobody can select. Nobody else sees these items, so a name is found
    // without asking every sibling for its text.
    QTreeWidgetItem root;
    QHash<QPair<QTreeWidgetItem*, QString>, QTreeWidgetItem*> children;
    for (IOptionPage* page : qAsConst(pages)) {
        QTreeWidgetItem* const item = itemForCategory(&root, page->category(),
            [&](QTreeWidgetItem* parent, const QString& name) -> QTreeWidgetItem*& {
                return children[{parent, name}];
            });
        if (pageMap.contains(item))
            qCritical() << q << "category already exists" << page;
        else
            pageMap.insert(item, page);
    }
    ui.catalog_tree->addTopLevelItems(root.takeChildren());
    ui.catalog_tree->expandAll();
}

void _opt_dlg_private::onCatalogItemChanged()
{
    Trace() << q << "item changed";
    if (IOptionPage* const page = firstPageAt(ui.catalog_tree->currentItem()))
        showPage(page);
}

// The page of the item, or of the first item with a page on the way down the first children.
IOptionPage* _opt_dlg_private::firstPageAt(QTreeWidgetItem* item) const
{
    while (item && !pageMap.contains(item))
        item = item->child(0);
    return pageMap.value(item);
}

// What a page does in any of its operations can end with the dialog deleted.

void _opt_dlg_private::showPage(IOptionPage* page)
{
    const QPointer<QObject> alive(this);
    if (!initializedPages.contains(page)) {
        Trace() << q << "initialize" << page;
        page->initialize();
        if (!alive)
            return;
        initializedPages.append(page);
    }

    QWidget* const widget = page->pageWidget();
    if (!alive)
        return;
    if (!widget) {
        qCritical() << q << "can not get page widget from" << page;
        return;
    }
    if (widget == ui.stacked_widget->currentWidget())
        return;
    Trace() << q << "show option page" << page;
    ui.stacked_widget->addWidget(widget);
    ui.stacked_widget->setCurrentWidget(widget);
}

// Pages may be selected, and so be initialized, by what a page does here: both loops go over a
// copy.

void _opt_dlg_private::apply()
{
    qInfo() << q << "apply";
    const QPointer<QObject> alive(this);
    const QList<IOptionPage*> initialized = initializedPages;
    for (IOptionPage* page : initialized) {
        Trace() << q << "apply for" << page;
        page->apply();
        if (!alive)
            return;
    }
}

void _opt_dlg_private::finalizePages()
{
    const QPointer<QObject> alive(this);
    const QList<IOptionPage*> initialized = initializedPages;
    for (IOptionPage* page : initialized) {
        Trace() << q << "finalize" << page;
        page->finalize();
        if (!alive)
            return;
    }
}

OptionDialog::OptionDialog(const QList<IOptionPage*>& pages, QWidget* parent)
    : QDialog(parent)
    , d(new _opt_dlg_private(this))
{
    // A page that throws leaves no dialog.
    std::unique_ptr<_opt_dlg_private> guard(d);
    d->pages = pages;
    d->ui.setupUi(this);
    // The name was the form's; the host gives the dialog its own, or none.
    setObjectName(QString());
    setWindowFlags(windowFlags() & ~Qt::WindowContextHelpButtonHint);

    QTreeWidget* const tree = d->ui.catalog_tree;
    tree->setStyleSheet(
        QStringLiteral("QTreeWidget {selection-background-color: #0078d7; }"
                       "QTreeWidget::item { height: 22px; }"
                       "QTreeWidget::item:selected { background-color: #0078d7; color: white; }"));

    QDialogButtonBox* const buttons = d->ui.btn_box;
    connect(buttons, SIGNAL(accepted()), this, SLOT(accept()));
    connect(buttons, SIGNAL(rejected()), this, SLOT(reject()));
    connect(buttons->button(QDialogButtonBox::Apply), SIGNAL(clicked()), d, SLOT(apply()));
    connect(tree, SIGNAL(itemSelectionChanged()), d, SLOT(onCatalogItemChanged()));

    d->initCatalogTree();
    tree->setFocus(Qt::OtherFocusReason);
    if (tree->topLevelItemCount() > 0)
        tree->setCurrentItem(tree->topLevelItem(0), 0, QItemSelectionModel::Select);
    static_cast<void>(guard.release());
}

OptionDialog::~OptionDialog()
{
    delete d;
}

void OptionDialog::accept()
{
    qInfo() << this << "accept";
    const QPointer<QObject> alive(this);
    d->apply();
    if (alive)
        QDialog::accept();
}

void OptionDialog::reject()
{
    qInfo() << this << "reject";
    QDialog::reject();
}

void OptionDialog::done(int result)
{
    Trace() << this << "done" << result;
    const QPointer<QObject> alive(this);
    d->finalizePages();
    if (alive)
        QDialog::done(result);
}

} // namespace Zentu
