// SPDX-License-Identifier: MIT
#pragma once

#include "mdi_area.h"
#include "rows_model.h"
#include "session.h"

#include <QUrl>

class QAction;
class QLineEdit;
class QSortFilterProxyModel;
class QSplitter;
class QTextBrowser;
class QTreeView;

namespace Zentu::Inspect {

/// A document of the inspector, which shows one side of the program. It is brought up to date while
/// it is seen.
class PageWindow : public Zentu::IMdiSubWindow
{
    Q_OBJECT

public:
    /// @param name as links name the page
    PageWindow(Session& session, const QString& name, const QString& title);

    QString name() const { return m_name; }
    Session& session() const { return m_session; }
    /// The backend of "Find", null if the page has nothing to filter.
    virtual QAction* findAction() const { return nullptr; }
    /// Selects what a link names.
    virtual void select(const QString& id) { Q_UNUSED(id) }
    virtual void refresh() = 0;

    void currentChanged(bool current) override;

Q_SIGNALS:
    void linkClicked(const QUrl& link);

protected:
    /// HTML for a page that has nothing to show.
    QString nothingYet() const;
    /// A page stays as long as the window.
    void closeEvent(QCloseEvent* event) override;

private:
    Session& m_session;
    QString m_name;
};

/// A page of rows with a filter above them and the details of the selected one below.
class TablePage : public PageWindow
{
    Q_OBJECT

public:
    TablePage(
        Session& session, const QString& name, const QString& title, const QStringList& columns);

    QAction* findAction() const override { return m_find; }
    void select(const QString& id) override;
    void refresh() override;

    QTreeView* view() const { return m_view; }
    QTextBrowser* detailsView() const { return m_details; }
    QLineEdit* filter() const { return m_filter; }

protected:
    virtual std::vector<Row> rows() const = 0;
    /// HTML about a row.
    virtual QString details(const QString& id) const = 0;

    void showDetails();

private:
    QWidget* makeContents();

    QAction* m_find;
    QLineEdit* m_filter;
    QTreeView* m_view;
    QTextBrowser* m_details;
    RowsModel* m_rows;
    QSortFilterProxyModel* m_filtered;
    QString m_selected;
    QString m_shown;
};

} // namespace Zentu::Inspect
