// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QString>

namespace Zentu::Inspect {

/// A picture as SVG, that needs nothing beside itself. Its colours suit light and dark.
class Picture
{
public:
    enum Align { Left, Right };

    void text(double x, double y, const QString& text, Align align = Left);
    void heading(double x, double y, const QString& text);
    void line(double x1, double y1, double x2, double y2, const char* colour, double width = 1);
    void box(double x, double y, double width, double height, const char* style,
        const QString& title = QString());
    /// An arrow that leaves and arrives level.
    void arrow(double x1, double y1, double x2, double y2, double width, const QString& title);
    /// What comes until the end belongs together, and is found by the name.
    void beginGroup(const QString& name);
    void endGroup();

    /// The whole, of the size.
    QByteArray svg(double width, double height) const;

private:
    void write(const QString& element);

    QByteArray m_body;
};

/// A page around a picture, in which one can zoom with the wheel and search.
QByteArray page(const QString& title, const QByteArray& svg);

} // namespace Zentu::Inspect
