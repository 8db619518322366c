// SPDX-License-Identifier: MIT
#include "page.h"

#include "html.h"
#include "own_lines.h"

#include <QAction>
#include <QCloseEvent>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSortFilterProxyModel>
#include <QSplitter>
#include <QTextBrowser>
#include <QTreeView>
#include <QVBoxLayout>

namespace Zentu::Inspect {

PageWindow::PageWindow(Session& session, const QString& name, const QString& title)
    : m_session(session)
    , m_name(name)
{
    OwnLines::add(this);
    setObjectName(name);
    setWindowTitle(title);
    setShortTitle(title);
    // A page stays where and as large as it is.
    setWindowFlags(Qt::SubWindow | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    connect(&session, &Session::changed, this, [this] {
        if (isVisible() && widget() && !widget()->visibleRegion().isEmpty())
            refresh();
    });
}

void PageWindow::currentChanged(bool current)
{
    if (current)
        refresh();
}

QString PageWindow::nothingYet() const
{
    return Html::paragraph(m_session.listener().hearsLines()
            ? tr("The program has not done anything yet that is shown here.")
            : tr("The program's logger cannot be listened to, so nothing is known of it."));
}

void PageWindow::closeEvent(QCloseEvent* event)
{
    event->ignore();
}

TablePage::TablePage(
    Session& session, const QString& name, const QString& title, const QStringList& columns)
    : PageWindow(session, name, title)
    , m_find(new QAction(this))
    , m_filter(new QLineEdit)
    , m_view(new QTreeView)
    , m_details(new QTextBrowser)
    , m_rows(new RowsModel(columns, this))
    , m_filtered(new QSortFilterProxyModel(this))
{
    m_filtered->setSourceModel(m_rows);
    m_filtered->setFilterCaseSensitivity(Qt::CaseInsensitive);
    m_filtered->setFilterKeyColumn(-1);
    m_filtered->setSortCaseSensitivity(Qt::CaseInsensitive);
    setWidget(makeContents());

    connect(m_find, &QAction::triggered, m_filter, [this] {
        m_filter->setFocus(Qt::ShortcutFocusReason);
        m_filter->selectAll();
    });
    connect(m_filter, &QLineEdit::textChanged, m_filtered,
        &QSortFilterProxyModel::setFilterFixedString);
    connect(m_details, &QTextBrowser::anchorClicked, this, &PageWindow::linkClicked);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex& index) {
            m_selected = index.data(RowsModel::IdRole).toString();
            showDetails();
        });
}

QWidget* TablePage::makeContents()
{
    m_filter->setPlaceholderText(tr("Filter"));
    m_filter->setClearButtonEnabled(true);
    m_filter->setAccessibleName(tr("Filter of %1").arg(windowTitle()));
    m_view->setModel(m_filtered);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setAccessibleName(windowTitle());
    m_details->setOpenLinks(false);
    m_details->setAccessibleName(tr("Details"));

    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_view);
    splitter->addWidget(m_details);
    splitter->setStretchFactor(0, 3);
    splitter->setStretchFactor(1, 2);
    auto* const contents = new QWidget;
    auto* const layout = new QVBoxLayout(contents);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->addWidget(m_filter);
    layout->addWidget(splitter);
    return contents;
}

void TablePage::select(const QString& id)
{
    refresh();
    const int row = m_rows->rowOf(id);
    if (row < 0)
        return;
    if (!m_filtered->mapFromSource(m_rows->index(row, 0)).isValid())
        m_filter->clear();
    m_view->setCurrentIndex(m_filtered->mapFromSource(m_rows->index(row, 0)));
    m_view->scrollTo(m_view->currentIndex());
}

void TablePage::refresh()
{
    const bool isFirst = m_rows->rowCount() == 0;
    m_rows->setRows(rows());
    if (isFirst && m_rows->rowCount() > 0) {
        for (int column = 0; column + 1 < m_rows->columnCount(); ++column)
            m_view->resizeColumnToContents(column);
    }
    if (!m_view->currentIndex().isValid() && m_filtered->rowCount() > 0)
        m_view->setCurrentIndex(m_filtered->index(0, 0));
    showDetails();
}

// Set only where it is different, so that what is being read neither jumps nor loses its selection.
void TablePage::showDetails()
{
    const QString text = m_rows->rowCount() == 0 ? nothingYet()
        : m_selected.isEmpty()                   ? QString()
                                                 : details(m_selected);
    if (text == m_shown)
        return;
    m_shown = text;
    const int position = m_details->verticalScrollBar()->value();
    m_details->setHtml(text);
    m_details->verticalScrollBar()->setValue(position);
}

} // namespace Zentu::Inspect
