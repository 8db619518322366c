// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QDebug>
#include <QDialog>
#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>

class QTreeWidgetItem;

namespace Zentu {

class _opt_dlg_private;

/**
 * One page of an OptionDialog.
 *
 * A page that the user never selects costs nothing: it is only asked for its category. The order of
 * calls is category(), then on the first selection initialize(), pageWidget() each time the page is
 * to be shown, apply() any number of times, and finalize() whenever the dialog is done. All of them
 * but category() may end with the dialog deleted; what would come next is left out then.
 *
 * Pages belong to the host, which keeps them alive as long as the dialog. For the GUI thread only.
 */
class ZENTU_EXPORT IOptionPage : public QObject
{
    Q_OBJECT

public:
    /// Creates a page.
    explicit IOptionPage(QObject* parent = nullptr)
        : QObject(parent)
    {
    }

    /// Destroys the page. The widget of pageWidget() is its own business.
    ~IOptionPage() override = default;

    /// The page's path in the category tree, outermost name first, such as "Editor", "Font". A page
    /// with an empty path cannot be reached.
    virtual QStringList category() const = 0;

    /// The widget that edits the settings. The dialog puts it into its stack, which becomes its
    /// parent and destroys it with the dialog. Null if the page cannot be shown.
    virtual QWidget* pageWidget() = 0;

    /// Loads the settings; called by each dialog when the page is selected for the first time,
    /// before pageWidget(). It counts as done when it returns: if it runs an event loop in which
    /// the page is left and selected again, it is called again, and so are apply() and finalize()
    /// from then on.
    virtual void initialize() = 0;

    /// Ends the editing; called by each OptionDialog::done(). A dialog that is deleted or hidden,
    /// or whose event loop is quit, does not call it.
    virtual void finalize() = 0;

    /// Stores the edited values; called by Apply and by OK. There is no way to refuse.
    virtual void apply() = 0;
};

/**
 * Writes a page as `IOptionPage(0x..., category = "Editor/Font")` and leaves @p dbg in space mode
 * with one blank written. A null page is written as `IOptionPage(0x0)` and leaves the mode of
 * @p dbg as it is.
 */
ZENTU_EXPORT QDebug operator<<(QDebug dbg, const IOptionPage* page);

/// The first direct child of @p parent whose text in column 0 equals @p text, or null. The
/// comparison is exact. @p parent must not be null.
ZENTU_EXPORT QTreeWidgetItem* findChildItemByText(QTreeWidgetItem* parent, const QString& text);

/// The item at the end of the path @p category below @p root. Items that are missing on the way are
/// appended; they belong to their parent items. An empty path gives @p root, which must not be
/// null.
ZENTU_EXPORT QTreeWidgetItem* createItemForCategory(
    QTreeWidgetItem* root, const QStringList& category);

/**
 * An options dialog made of pages: their categories as a tree on the left, the selected page on the
 * right, and OK, Cancel and Apply below.
 *
 * @code
 * FontPage font;
 * ColorsPage colors;
 * Zentu::OptionDialog dialog({&font, &colors}, window);
 * dialog.exec();
 * @endcode
 *
 * Pages are initialized when they are first selected, the first one by the constructor. Apply and
 * OK apply the pages that were initialized, in the order of their first selection; done(), which
 * OK, Cancel and the closing of the window come to, finalizes them. Deletion, `hide()` and the end
 * of the event loop do not. For the GUI thread only.
 */
class ZENTU_EXPORT OptionDialog : public QDialog
{
    Q_OBJECT

public:
    /**
     * Builds the dialog and shows the first page in it.
     *
     * @param pages  not owned; must live as long as the dialog. Of pages with the same category the
     *               first is kept, each other one is reported with "category already exists" as
     *               critical.
     * @param parent as for QDialog
     */
    explicit OptionDialog(const QList<IOptionPage*>& pages, QWidget* parent = nullptr);

    /// Destroys the dialog and the page widgets that have been shown; the pages live on.
    ~OptionDialog() override;

public Q_SLOTS:
    /// Applies the initialized pages and ends the dialog.
    void accept() override;

    /// Ends the dialog without applying.
    void reject() override;

    /// Finalizes the initialized pages and closes the dialog with @p result.
    void done(int result) override;

private:
    _opt_dlg_private* d;
};

} // namespace Zentu
