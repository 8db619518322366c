// SPDX-License-Identifier: MIT
#pragma once

#include <QAbstractTableModel>
#include <QIcon>
#include <QStringList>

#include <vector>

namespace Zentu::Inspect {

/// A row of a page: what it stands for, and what is seen of it.
struct Row
{
    QString id;
    QStringList cells;
    QIcon icon;
    bool isGrey = false;
    bool standsOut = false;

    bool operator==(const Row& other) const
    {
        return id == other.id && cells == other.cells && isGrey == other.isGrey
            && standsOut == other.standsOut;
    }
};

/// Rows that are given anew again and again, of which few change.
class RowsModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    static constexpr int IdRole = Qt::UserRole;

    explicit RowsModel(QStringList titles, QObject* parent = nullptr);

    /// Tells the view no more than what is different.
    void setRows(std::vector<Row> rows);
    /// The row with an identifier, -1 if there is none.
    int rowOf(const QString& id) const;

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    QStringList m_titles;
    std::vector<Row> m_rows;
};

} // namespace Zentu::Inspect
