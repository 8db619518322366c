// SPDX-License-Identifier: MIT
#pragma once

#include <QLayout>
#include <QList>

/// A row of widgets that goes on in the next row where there is no more room. In each row, the
/// first widget that can expand takes what is left.
class WrapLayout : public QLayout
{
    Q_OBJECT

public:
    explicit WrapLayout(QWidget* parent);
    ~WrapLayout() override;

    void addItem(QLayoutItem* item) override { m_items.append(item); }
    int count() const override { return static_cast<int>(m_items.size()); }
    QLayoutItem* itemAt(int index) const override { return m_items.value(index); }
    QLayoutItem* takeAt(int index) override;
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int width) const override;
    QSize minimumSize() const override;
    QSize sizeHint() const override;
    void setGeometry(const QRect& rect) override;

private:
    using Row = QList<QLayoutItem*>;

    QList<Row> rows(int width) const;
    QList<int> widths(const Row& row, int width) const;
    int arrange(const QRect& rect, bool isReal) const;

    QList<QLayoutItem*> m_items;
};
