// SPDX-License-Identifier: MIT
#include "glyph_icon.h"

#include <QApplication>
#include <QHash>
#include <QIconEngine>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <QPixmap>
#include <QStringList>

namespace {

// Drawings on a grid of 16 by 16: "M x y" moves, "L x y" draws a line, "O x y r" a circle.
const QHash<QString, QString>& drawings()
{
    static const QHash<QString, QString> all = {
        {QStringLiteral("document-new"),
            QStringLiteral("M 3 1 L 10 1 L 13 4 L 13 15 L 3 15 L 3 1 M 10 1 L 10 4 L 13 4 "
                           "M 8 7 L 8 12 M 5.5 9.5 L 10.5 9.5")},
        {QStringLiteral("document-open"),
            QStringLiteral(
                "M 2 13 L 2 3 L 6 3 L 8 5 L 13 5 L 13 7 M 2 13 L 4 7 L 15 7 L 13 13 L 2 13")},
        {QStringLiteral("document-save"),
            QStringLiteral("M 2 2 L 12 2 L 14 4 L 14 14 L 2 14 L 2 2 M 5 2 L 5 6 L 11 6 L 11 2 "
                           "M 4 14 L 4 9 L 12 9 L 12 14")},
        {QStringLiteral("document-save-as"),
            QStringLiteral("M 8 14 L 2 14 L 2 2 L 12 2 L 14 4 L 14 7 M 5 2 L 5 6 L 11 6 L 11 2 "
                           "M 9 14 L 10 11 L 14 7 L 16 9 L 12 13 L 9 14")},
        {QStringLiteral("document-close"), QStringLiteral("M 4 4 L 12 12 M 12 4 L 4 12")},
        {QStringLiteral("edit-undo"),
            QStringLiteral("M 6 3 L 3 6 L 6 9 M 3 6 L 10 6 L 13 8 L 13 11 L 10 13 L 6 13")},
        {QStringLiteral("edit-redo"),
            QStringLiteral("M 10 3 L 13 6 L 10 9 M 13 6 L 6 6 L 3 8 L 3 11 L 6 13 L 10 13")},
        {QStringLiteral("edit-cut"),
            QStringLiteral("O 4 12 2 O 12 12 2 M 5 10 L 11 2 M 11 10 L 5 2")},
        {QStringLiteral("edit-copy"),
            QStringLiteral(
                "M 2 2 L 10 2 L 10 11 L 2 11 L 2 2 M 10 5 L 14 5 L 14 14 L 6 14 L 6 11")},
        {QStringLiteral("edit-paste"),
            QStringLiteral(
                "M 5 3 L 3 3 L 3 14 L 13 14 L 13 3 L 11 3 M 5 2 L 11 2 L 11 5 L 5 5 L 5 2 "
                "M 5 8 L 11 8 M 5 11 L 9 11")},
        {QStringLiteral("edit-select-all"),
            QStringLiteral("M 2 5 L 2 2 L 5 2 M 11 2 L 14 2 L 14 5 M 14 11 L 14 14 L 11 14 "
                           "M 5 14 L 2 14 L 2 11 M 5 5 L 11 5 L 11 11 L 5 11 L 5 5")},
        {QStringLiteral("edit-find"), QStringLiteral("O 7 7 4.5 M 10 10 L 14 14")},
        {QStringLiteral("zoom-in"),
            QStringLiteral("O 7 7 4.5 M 10 10 L 14 14 M 5 7 L 9 7 M 7 5 L 7 9")},
        {QStringLiteral("zoom-out"), QStringLiteral("O 7 7 4.5 M 10 10 L 14 14 M 5 7 L 9 7")},
        {QStringLiteral("zoom-original"),
            QStringLiteral("M 2 3 L 14 3 L 14 13 L 2 13 L 2 3 M 5 6 L 5 10 M 11 6 L 11 10 "
                           "M 8 7 L 8 7.4 M 8 9 L 8 9.4")},
        {QStringLiteral("text-x-generic"),
            QStringLiteral("M 3 1 L 10 1 L 13 4 L 13 15 L 3 15 L 3 1 M 5 6 L 11 6 M 5 9 L 11 9 "
                           "M 5 12 L 9 12")},
        {QStringLiteral("image-x-generic"),
            QStringLiteral("M 1 3 L 15 3 L 15 13 L 1 13 L 1 3 O 5 6 1.3 M 2 12 L 7 8 L 9 10 L 12 6 "
                           "L 14 9")},
        {QStringLiteral("utilities-log-viewer"),
            QStringLiteral("M 2 2 L 14 2 L 14 14 L 2 14 L 2 2 M 4 5 L 6 7 L 4 9 M 7 10 L 11 10")},
        {QStringLiteral("window-minimize"), QStringLiteral("M 4 12 L 12 12")},
        {QStringLiteral("window-restore"),
            QStringLiteral("M 3 6 L 10 6 L 10 13 L 3 13 L 3 6 M 6 6 L 6 3 L 13 3 L 13 10 L 10 10")},
        {QStringLiteral("workbench"),
            QStringLiteral("M 1 3 L 15 3 L 15 13 L 1 13 L 1 3 M 1 10 L 15 10 M 6 10 L 6 13 "
                           "M 10 10 L 10 13")},
    };
    return all;
}

QPainterPath pathOf(const QString& drawing)
{
    QPainterPath path;
    const QStringList words = drawing.split(QLatin1Char(' '));
    for (int i = 0; i + 2 < words.size(); i += 3) {
        const QPointF point(words.at(i + 1).toDouble(), words.at(i + 2).toDouble());
        if (words.at(i) == QLatin1String("M")) {
            path.moveTo(point);
        } else if (words.at(i) == QLatin1String("L")) {
            path.lineTo(point);
        } else {
            const double radius = words.at(i + 3).toDouble();
            path.addEllipse(point, radius, radius);
            ++i;
        }
    }
    return path;
}

/// Draws with the palette of the moment, so that a change of appearance reaches every icon.
class GlyphEngine : public QIconEngine
{
public:
    explicit GlyphEngine(const QPainterPath& path)
        : m_path(path)
    {
    }

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State) override
    {
        const auto group = mode == QIcon::Disabled ? QPalette::Disabled : QPalette::Active;
        QColor color = QApplication::palette().color(group, QPalette::ButtonText);
        if (mode == QIcon::Disabled)
            color.setAlpha(115);
        const double scale = qMin(rect.width(), rect.height()) / 16.0;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->translate(rect.topLeft());
        painter->scale(scale, scale);
        painter->setPen(QPen(color, 1.3, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
        painter->drawPath(m_path);
        painter->restore();
    }

    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override
    {
        QPixmap result(size);
        result.fill(Qt::transparent);
        QPainter painter(&result);
        paint(&painter, QRect(QPoint(), size), mode, state);
        return result;
    }

    QIconEngine* clone() const override { return new GlyphEngine(m_path); }

private:
    QPainterPath m_path;
};

} // namespace

QIcon glyphIcon(const QString& name)
{
    if (QIcon::hasThemeIcon(name))
        return QIcon::fromTheme(name);
    const auto drawing = drawings().constFind(name);
    return drawing == drawings().constEnd() ? QIcon() : QIcon(new GlyphEngine(pathOf(*drawing)));
}
