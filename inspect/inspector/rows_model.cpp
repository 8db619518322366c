// SPDX-License-Identifier: MIT
#include "rows_model.h"

#include <QFont>
#include <QGuiApplication>
#include <QPalette>

#include <algorithm>

namespace Zentu::Inspect {

RowsModel::RowsModel(QStringList titles, QObject* parent)
    : QAbstractTableModel(parent)
    , m_titles(std::move(titles))
{
}

int RowsModel::rowOf(const QString& id) const
{
    const auto it =
        std::find_if(m_rows.begin(), m_rows.end(), [&](const Row& row) { return row.id == id; });
    return it == m_rows.end() ? -1 : static_cast<int>(it - m_rows.begin());
}

// What both begin and end with stays; what lies between is taken out and put in.
void RowsModel::setRows(std::vector<Row> rows)
{
    const auto sameId = [](const Row& a, const Row& b) { return a.id == b.id; };
    const auto begins =
        std::mismatch(m_rows.begin(), m_rows.end(), rows.begin(), rows.end(), sameId);
    const auto head = static_cast<int>(begins.first - m_rows.begin());
    const auto ends =
        std::mismatch(m_rows.rbegin(), std::vector<Row>::reverse_iterator(begins.first),
            rows.rbegin(), std::vector<Row>::reverse_iterator(begins.second), sameId);
    const auto tail = static_cast<int>(ends.first - m_rows.rbegin());
    const int gone = static_cast<int>(m_rows.size()) - head - tail;
    const int come = static_cast<int>(rows.size()) - head - tail;
    if (gone > 0) {
        beginRemoveRows({}, head, head + gone - 1);
        m_rows.erase(m_rows.begin() + head, m_rows.begin() + head + gone);
        endRemoveRows();
    }
    if (come > 0) {
        beginInsertRows({}, head, head + come - 1);
        m_rows.insert(m_rows.begin() + head, rows.begin() + head, rows.begin() + head + come);
        endInsertRows();
    }
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (m_rows[i] == rows[i])
            continue;
        m_rows[i] = std::move(rows[i]);
        const int row = static_cast<int>(i);
        Q_EMIT dataChanged(index(row, 0), index(row, columnCount() - 1));
    }
}

int RowsModel::rowCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_rows.size());
}

int RowsModel::columnCount(const QModelIndex& parent) const
{
    return parent.isValid() ? 0 : static_cast<int>(m_titles.size());
}

QVariant RowsModel::data(const QModelIndex& index, int role) const
{
    const Row& row = m_rows[static_cast<std::size_t>(index.row())];
    switch (role) {
    case Qt::DisplayRole:
    case Qt::ToolTipRole:
        return row.cells.value(index.column());
    case Qt::DecorationRole:
        return index.column() == 0 && !row.icon.isNull() ? QVariant(row.icon) : QVariant();
    case Qt::ForegroundRole:
        return row.isGrey
            ? QVariant(QGuiApplication::palette().color(QPalette::Disabled, QPalette::Text))
            : QVariant();
    case Qt::FontRole:
        if (row.standsOut) {
            QFont font;
            font.setBold(true);
            return font;
        }
        return {};
    case IdRole:
        return row.id;
    default:
        return {};
    }
}

QVariant RowsModel::headerData(int section, Qt::Orientation orientation, int role) const
{
    return orientation == Qt::Horizontal && role == Qt::DisplayRole ? m_titles.value(section)
                                                                    : QVariant();
}

} // namespace Zentu::Inspect
