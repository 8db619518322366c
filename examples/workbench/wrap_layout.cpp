// SPDX-License-Identifier: MIT
#include "wrap_layout.h"

#include <QStyle>
#include <QWidget>

WrapLayout::WrapLayout(QWidget* parent)
    : QLayout(parent)
{
    setContentsMargins(8, 4, 8, 4);
    setSpacing(6);
}

WrapLayout::~WrapLayout()
{
    qDeleteAll(m_items);
}

QLayoutItem* WrapLayout::takeAt(int index)
{
    return index >= 0 && index < m_items.size() ? m_items.takeAt(index) : nullptr;
}

// What is hidden takes no room.
QList<WrapLayout::Row> WrapLayout::rows(int width) const
{
    QList<Row> all;
    int left = -1;
    for (QLayoutItem* item : m_items) {
        if (item->isEmpty())
            continue;
        const int wanted = item->sizeHint().width();
        if (all.isEmpty() || left < wanted) {
            all.append(Row());
            left = width;
        }
        all.last().append(item);
        left -= wanted + spacing();
    }
    return all;
}

QList<int> WrapLayout::widths(const Row& row, int width) const
{
    QList<int> all;
    int left = width + spacing();
    int expanding = -1;
    for (const QLayoutItem* item : row) {
        if (expanding < 0 && item->expandingDirections() & Qt::Horizontal)
            expanding = static_cast<int>(all.size());
        all.append(qMin(width, item->sizeHint().width()));
        left -= all.constLast() + spacing();
    }
    if (expanding >= 0 && left > 0)
        all[expanding] += left;
    return all;
}

// Returns the height that it takes.
int WrapLayout::arrange(const QRect& rect, bool isReal) const
{
    const QRect inner = rect.marginsRemoved(contentsMargins());
    const Qt::LayoutDirection direction = parentWidget()->layoutDirection();
    int y = inner.top();
    for (const Row& row : rows(inner.width())) {
        const QList<int> widths = this->widths(row, inner.width());
        int height = 0;
        for (int i = 0; i < row.size(); ++i) {
            const QLayoutItem* const item = row.at(i);
            height = qMax(height,
                item->hasHeightForWidth() ? item->heightForWidth(widths.at(i))
                                          : item->sizeHint().height());
        }
        int x = inner.left();
        for (int i = 0; i < row.size() && isReal; ++i) {
            const QRect place(x, y, widths.at(i), height);
            row.at(i)->setGeometry(QStyle::visualRect(direction, inner, place));
            x += widths.at(i) + spacing();
        }
        y += height + spacing();
    }
    return y - spacing() - inner.top() + contentsMargins().top() + contentsMargins().bottom();
}

int WrapLayout::heightForWidth(int width) const
{
    return arrange(QRect(0, 0, width, 0), false);
}

void WrapLayout::setGeometry(const QRect& rect)
{
    QLayout::setGeometry(rect);
    arrange(rect, true);
}

// The widest widget alone in its row.
QSize WrapLayout::minimumSize() const
{
    QSize size;
    for (const QLayoutItem* item : m_items)
        size = size.expandedTo(item->minimumSize());
    const QMargins margins = contentsMargins();
    return size + QSize(margins.left() + margins.right(), margins.top() + margins.bottom());
}

QSize WrapLayout::sizeHint() const
{
    return minimumSize();
}
