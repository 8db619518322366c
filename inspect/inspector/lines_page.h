// SPDX-License-Identifier: MIT
#pragma once

#include "page.h"

#include <QAbstractTableModel>
#include <QSortFilterProxyModel>

class QComboBox;

namespace Zentu::Inspect {

/// The lines that the session keeps, without a copy of them.
class LinesModel : public QAbstractTableModel
{
    Q_OBJECT

public:
    explicit LinesModel(const Session& session, QObject* parent);

    void update();
    int rowOfLine(qint64 line) const { return static_cast<int>(line - m_first); }
    qint64 lineOfRow(int row) const { return m_first + row; }

    int rowCount(const QModelIndex& parent = {}) const override;
    int columnCount(const QModelIndex& parent = {}) const override;
    QVariant data(const QModelIndex& index, int role) const override;
    QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

private:
    const Session& m_session;
    qint64 m_first;
    qint64 m_next;
};

/// Lines of one level, that contain a text: of the line, of the thread or of an object.
class LinesFilter : public QSortFilterProxyModel
{
    Q_OBJECT

public:
    enum Level { All, Trace, Messages, Warnings };

    LinesFilter(const Session& session, LinesModel& lines, QObject* parent);

    void setLevel(Level level);
    void setText(const QString& text);

protected:
    bool filterAcceptsRow(int row, const QModelIndex& parent) const override;

private:
    const Session& m_session;
    const LinesModel& m_lines;
    Level m_level = All;
    QByteArray m_text;
};

/// All lines and messages in one list.
class LinesPage : public PageWindow
{
    Q_OBJECT

public:
    explicit LinesPage(Session& session);

    QAction* findAction() const override { return m_find; }
    void select(const QString& id) override;
    void refresh() override;

    QTreeView* view() const { return m_view; }
    QLineEdit* filter() const { return m_text; }
    QComboBox* levels() const { return m_levels; }

private:
    void showDetails(qint64 line);

    QAction* m_find;
    QLineEdit* m_text;
    QComboBox* m_levels;
    LinesModel* m_lines;
    LinesFilter* m_filter;
    QTreeView* m_view;
    QTextBrowser* m_details;
};

} // namespace Zentu::Inspect
