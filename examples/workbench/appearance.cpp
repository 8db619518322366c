// SPDX-License-Identifier: MIT
#include "appearance.h"

#include "glyph_icon.h"
#include "settings.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QPainter>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleOption>

namespace {

/// Fusion, but for what it draws in dark colors on any palette (the small buttons of tabs and
/// windows, the outline of boxes), and with a frame around the list that has the focus.
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
        if (element == PE_IndicatorTabClose) {
            if (option->state & State_MouseOver)
                painter->fillRect(option->rect, option->palette.color(QPalette::Midlight));
            glyphIcon(QStringLiteral("document-close")).paint(painter, option->rect);
            return;
        }
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        // The outline of a box is darker than what is around it.
        if (element == PE_IndicatorCheckBox && isDark(option)
            && !(option->state & State_HasFocus)) {
            painter->setPen(option->palette.color(QPalette::Disabled, QPalette::Text));
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        }
    }

    // What is selected in a list looks the same whether the list has the focus or not.
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
        const QWidget* widget) const override
    {
        QProxyStyle::drawControl(element, option, painter, widget);
        if (element == CE_TabBarTabShape && option->state & State_Selected)
            painter->fillRect(edgeOf(option), option->palette.color(QPalette::Highlight));
        if (element == CE_ShapedFrame && option->state & State_HasFocus
            && qobject_cast<const QAbstractItemView*>(widget)) {
            painter->setPen(option->palette.color(QPalette::Highlight));
            painter->drawRect(option->rect.adjusted(0, 0, -1, -1));
        }
    }

    // The buttons of a window that is not active are black, which a dark one hides; those of the
    // active one are white.
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option,
        QPainter* painter, const QWidget* widget) const override
    {
        const auto* const bar = qstyleoption_cast<const QStyleOptionTitleBar*>(option);
        if (!bar || bar->titleBarState & State_Active || !isDark(option)) {
            QProxyStyle::drawComplexControl(control, option, painter, widget);
            return;
        }
        QStyleOptionTitleBar light = *bar;
        light.titleBarState |= State_Active;
        light.palette.setColor(QPalette::Highlight, bar->palette.color(QPalette::Window));
        light.palette.setColor(QPalette::HighlightedText, bar->palette.color(QPalette::Text));
        QProxyStyle::drawComplexControl(control, &light, painter, widget);
    }

private:
    // The tabs are below the documents.
    static QRect edgeOf(const QStyleOption* tab)
    {
        return QRect(tab->rect.left(), tab->rect.bottom() - 3, tab->rect.width(), 3);
    }

    static bool isDark(const QStyleOption* option)
    {
        return option->palette.color(QPalette::Window).lightness() < 128;
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

void followScreenScale()
{
    // Qt 6 always does, and deprecates the question.
#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
    QCoreApplication::setAttribute(Qt::AA_EnableHighDpiScaling);
    QCoreApplication::setAttribute(Qt::AA_UseHighDpiPixmaps);
#endif
}

void followAppearanceSetting()
{
    QApplication::setStyle(new Style);
    applyAppearance();
    QObject::connect(Settings::instance(), &Settings::changed, qApp, &applyAppearance);
}
