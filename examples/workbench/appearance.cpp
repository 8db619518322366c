// SPDX-License-Identifier: MIT
#include "appearance.h"

#include "glyph_icon.h"
#include "settings.h"

#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>

namespace {

/// Fusion, but for the small buttons of tabs and windows: its pictures of them are dark on any
/// palette.
class Style : public QProxyStyle
{
public:
    Style()
        : QProxyStyle(QStringLiteral("Fusion"))
    {
    }

    QIcon standardIcon(
        StandardPixmap which, const QStyleOption* option, const QWidget* widget) const override
    {
        switch (which) {
        case SP_TitleBarCloseButton:
            return glyphIcon(QStringLiteral("document-close"));
        case SP_TitleBarNormalButton:
            return glyphIcon(QStringLiteral("window-restore"));
        case SP_TitleBarMinButton:
            return glyphIcon(QStringLiteral("window-minimize"));
        default:
            return QProxyStyle::standardIcon(which, option, widget);
        }
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override
    {
        if (element != PE_IndicatorTabClose) {
            QProxyStyle::drawPrimitive(element, option, painter, widget);
            return;
        }
        if (option->state & State_MouseOver)
            painter->fillRect(option->rect, option->palette.color(QPalette::Midlight));
        glyphIcon(QStringLiteral("document-close")).paint(painter, option->rect);
    }
};

} // namespace

static QPalette palette(
    const QColor& window, const QColor& base, const QColor& text, const QColor& link)
{
    QPalette result(window);
    result.setColor(QPalette::Window, window);
    result.setColor(QPalette::Base, base);
    result.setColor(QPalette::AlternateBase, window);
    result.setColor(QPalette::Button, window);
    for (const auto role :
        {QPalette::WindowText, QPalette::Text, QPalette::ButtonText, QPalette::ToolTipText}) {
        result.setColor(role, text);
        result.setColor(QPalette::Disabled, role, QColor(128, 128, 128));
    }
    result.setColor(QPalette::PlaceholderText, QColor(128, 128, 128));
    result.setColor(QPalette::ToolTipBase, base);
    result.setColor(QPalette::Link, link);
    result.setColor(QPalette::Highlight, QColor(0x00, 0x78, 0xd7));
    result.setColor(QPalette::HighlightedText, Qt::white);
    return result;
}

static void applyAppearance()
{
    switch (Settings::instance()->appearance()) {
    case Settings::Appearance::System:
        QApplication::setPalette(QApplication::style()->standardPalette());
        break;
    case Settings::Appearance::Light:
        QApplication::setPalette(
            palette(QColor(0xf2, 0xf2, 0xf2), Qt::white, Qt::black, QColor(0x00, 0x57, 0xae)));
        break;
    case Settings::Appearance::Dark:
        QApplication::setPalette(palette(QColor(0x2d, 0x2f, 0x33), QColor(0x1e, 0x1f, 0x22),
            QColor(0xe6, 0xe6, 0xe6), QColor(0x6c, 0xb4, 0xff)));
        break;
    }
}

void followAppearanceSetting()
{
    QApplication::setStyle(new Style);
    applyAppearance();
    QObject::connect(Settings::instance(), &Settings::changed, qApp, &applyAppearance);
}
