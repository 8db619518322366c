// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QList>
#include <QMap>
#include <QObject>

class QDialog;
class QDialogButtonBox;
class QGridLayout;
class QStackedWidget;
class QTreeWidget;
class QTreeWidgetItem;

namespace Zentu {

class IOptionPage;
class OptionDialog;

/// The form of the options dialog.
class ZENTU_EXPORT Ui_OptionDialog
{
public:
    void setupUi(QDialog* dialog);

    QGridLayout* gridLayout = nullptr;
    QTreeWidget* catalog_tree = nullptr;
    QDialogButtonBox* btn_box = nullptr;
    QStackedWidget* stacked_widget = nullptr;
};

/// The pages of an options dialog and what has been done with them.
class _opt_dlg_private : public QObject
{
    Q_OBJECT

public:
    explicit _opt_dlg_private(OptionDialog* dialog)
        : q(dialog)
    {
    }

    void initCatalogTree();
    void finalizePages();

public Q_SLOTS:
    void onCatalogItemChanged();
    void apply();

public:
    OptionDialog* q;
    Ui_OptionDialog ui;
    QList<IOptionPage*> pages;
    QList<IOptionPage*> initializedPages;
    QMap<QTreeWidgetItem*, IOptionPage*> pageMap;

private:
    IOptionPage* firstPageAt(QTreeWidgetItem* item) const;
    void showPage(IOptionPage* page);
};

} // namespace Zentu
