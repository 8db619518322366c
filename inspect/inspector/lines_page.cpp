// SPDX-License-Identifier: MIT
#include "lines_page.h"

#include "html.h"
#include "stack.h"

#include <QAction>
#include <QComboBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLineEdit>
#include <QScrollBar>
#include <QSplitter>
#include <QTextBrowser>
#include <QTreeView>

namespace Zentu::Inspect {

LinesModel::LinesModel(const Session& session, QObject* parent)
    : QAbstractTableModel(parent)
    , m_session(session)
    , m_first(session.firstLine())
    , m_next(m_first)
{
}

void LinesModel::update()
{
    const qint64 kept = std::min(m_session.firstLine(), m_next);
    if (kept > m_first) {
        beginRemoveRows({}, 0, static_cast<int>(kept - m_first) - 1);
        m_first = kept;
        endRemoveRows();
    }
    if (m_first == m_next)
        m_first = m_next = m_session.firstLine();
    if (m_session.nextLine() > m_next) {
        beginInsertRows({}, rowOfLine(m_next), rowOfLine(m_session.nextLine()) - 1);
        m_next = m_session.nextLine();
        endInsertRows();
    }
}

int LinesModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_next - m_first);
}

int LinesModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : 5;
}

QVariant LinesModel::data(const QModelIndex& index, int role) const
{
    const qint64 line = lineOfRow(index.row());
    if (line < m_session.firstLine() || (role != Qt::DisplayRole && role != Qt::ToolTipRole))
        return {};
    const Record& record = m_session.record(line);
    switch (index.column()) {
    case 0:
        return line;
    case 1:
        return shortTime(record.time().constData());
    case 2:
        return QString::fromLatin1(record.level == "1" ? "trace" : record.level);
    case 3:
        return record.thread;
    default:
        return QString::fromUtf8(record.text).trimmed();
    }
}

QVariant LinesModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    const QStringList titles{tr("Line"), tr("Time"), tr("Level"), tr("Thread"), tr("Text")};
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? titles.value(section)
                                                                    : QVariant();
}

LinesFilter::LinesFilter(const Session& session, LinesModel& lines, QObject* parent)
    : QSortFilterProxyModel(parent)
    , m_session(session)
    , m_lines(lines)
{
    setSourceModel(&lines);
}

void LinesFilter::setLevel(Level level)
{
    m_level = level;
    invalidateFilter();
}

void LinesFilter::setText(const QString& text)
{
    m_text = text.toUtf8().toLower();
    invalidateFilter();
}

bool LinesFilter::filterAcceptsRow(int row, const QModelIndex&) const
{
    const qint64 line = m_lines.lineOfRow(row);
    if (line < m_session.firstLine())
        return false;
    const Record& record = m_session.record(line);
    const bool isTrace = record.level == "1";
    const bool isWarning =
        record.level == "warning" || record.level == "critical" || record.level == "fatal";
    if ((m_level == Trace && !isTrace) || (m_level == Messages && isTrace)
        || (m_level == Warnings && !isWarning))
        return false;
    return m_text.isEmpty() || record.text.toLower().contains(m_text)
        || QByteArray::number(record.thread) == m_text;
}

LinesPage::LinesPage(Session& session)
    : PageWindow(session, QStringLiteral("line"), tr("Lines"))
    , m_find(new QAction(this))
    , m_text(new QLineEdit)
    , m_levels(new QComboBox)
    , m_lines(new LinesModel(session, this))
    , m_filter(new LinesFilter(session, *m_lines, this))
    , m_view(new QTreeView)
    , m_details(new QTextBrowser)
{
    m_text->setPlaceholderText(tr("Text, object or thread"));
    m_text->setClearButtonEnabled(true);
    m_text->setAccessibleName(tr("Filter of the lines"));
    m_levels->addItems({tr("All"), tr("Trace"), tr("Messages"), tr("Warnings")});
    m_levels->setAccessibleName(tr("Level"));
    m_view->setModel(m_filter);
    m_view->setRootIsDecorated(false);
    m_view->setUniformRowHeights(true);
    m_view->setAlternatingRowColors(true);
    m_view->setAccessibleName(windowTitle());
    m_view->setTextElideMode(Qt::ElideRight);
    const QStringList widest{QStringLiteral("0000000"), QStringLiteral("00:00:00.000"),
        QStringLiteral("warning"), QStringLiteral("0000000")};
    for (int column = 0; column < widest.size(); ++column)
        m_view->setColumnWidth(
            column, fontMetrics().horizontalAdvance(widest.at(column) + QStringLiteral("    ")));
    m_details->setOpenLinks(false);
    m_details->setAccessibleName(tr("Details"));

    auto* const splitter = new QSplitter(Qt::Vertical);
    splitter->addWidget(m_view);
    splitter->addWidget(m_details);
    splitter->setStretchFactor(0, 4);
    splitter->setStretchFactor(1, 1);
    auto* const contents = new QWidget;
    auto* const layout = new QVBoxLayout(contents);
    layout->setContentsMargins(4, 4, 4, 4);
    auto* const bar = new QHBoxLayout;
    bar->addWidget(m_text);
    bar->addWidget(m_levels);
    layout->addLayout(bar);
    layout->addWidget(splitter);
    setWidget(contents);

    connect(
        m_find, &QAction::triggered, m_text, [this] { m_text->setFocus(Qt::ShortcutFocusReason); });
    connect(m_text, &QLineEdit::textChanged, m_filter, &LinesFilter::setText);
    connect(m_levels, QOverload<int>::of(&QComboBox::currentIndexChanged), m_filter,
        [this](int index) { m_filter->setLevel(static_cast<LinesFilter::Level>(index)); });
    connect(m_details, &QTextBrowser::anchorClicked, this, &PageWindow::linkClicked);
    connect(m_view->selectionModel(), &QItemSelectionModel::currentChanged, this,
        [this](const QModelIndex& index) {
            if (index.isValid())
                showDetails(m_lines->lineOfRow(m_filter->mapToSource(index).row()));
        });
}

void LinesPage::refresh()
{
    const QScrollBar* const bar = m_view->verticalScrollBar();
    const bool isAtEnd = bar->value() == bar->maximum();
    m_lines->update();
    if (!m_view->currentIndex().isValid())
        m_details->setHtml(m_lines->rowCount() == 0 ? nothingYet() : QString());
    if (isAtEnd)
        m_view->scrollToBottom();
}

void LinesPage::select(const QString& id)
{
    m_lines->update();
    const int row = m_lines->rowOfLine(id.toLongLong());
    if (row < 0 || row >= m_lines->rowCount())
        return;
    if (!m_filter->mapFromSource(m_lines->index(row, 0)).isValid()) {
        m_text->clear();
        m_levels->setCurrentIndex(LinesFilter::All);
    }
    m_view->setCurrentIndex(m_filter->mapFromSource(m_lines->index(row, 0)));
    m_view->scrollTo(m_view->currentIndex(), QAbstractItemView::PositionAtCenter);
}

/// The page on which an object of a line is found, for a link.
static QString linkTo(const Session& session, const Item& item)
{
    const QString text = decoded(item.raw);
    const auto proxy = session.program().proxies().find(item.address);
    if (proxy != session.program().proxies().end() && !proxy->second.ids.empty())
        return Html::link(QStringLiteral("action"), plain(proxy->second.ids.front()), text);
    return Html::link(QStringLiteral("address"), addressText(item.address), text);
}

void LinesPage::showDetails(qint64 number)
{
    if (number < session().firstLine() || number >= session().nextLine())
        return;
    const Record& record = session().record(number);
    QString html = Html::paragraph(QString::fromUtf8(record.text).toHtmlEscaped());
    const QByteArray text = record.line();
    const Line line = readLine({text.constData(), static_cast<std::size_t>(text.size())});
    QStringList objects;
    for (const Item& item : {line.speaker, line.items[0], line.items[1]}) {
        if (item.address != 0)
            objects.append(linkTo(session(), item));
    }
    if (line.is(Text::Post)) {
        const QString type = plain(line.items[0].field("type = "));
        objects.append(Html::link(QStringLiteral("event"), type, type));
    }
    if (!objects.isEmpty())
        html += Html::list(objects);
    for (const QByteArray& note : record.notes)
        html += Html::paragraph(QString::fromUtf8(note).toHtmlEscaped());
    QStringList callers;
    for (const QString& caller : Stack::functions(record.stack))
        callers.append(caller.toHtmlEscaped());
    if (!callers.isEmpty())
        html += Html::paragraph(tr("called by")) + Html::list(callers);
    m_details->setHtml(html);
}

} // namespace Zentu::Inspect
