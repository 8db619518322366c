// SPDX-License-Identifier: MIT
#include "picker.h"

#include "mdi_area.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QMenuBar>
#include <QMouseEvent>
#include <QTabBar>
#include <QToolButton>

namespace Zentu::Inspect {

Picker::Picker(QWidget* own)
    : QObject(own)
    , m_own(own)
{
}

void Picker::start()
{
    if (m_isActive)
        return;
    m_isActive = true;
    qApp->installEventFilter(this);
    Q_EMIT activeChanged(true);
}

void Picker::stop()
{
    if (!m_isActive)
        return;
    m_isActive = false;
    Q_EMIT activeChanged(false);
}

// The release that belongs to a picked press is the host's as little as the press.
bool Picker::eventFilter(QObject* watched, QEvent* event)
{
    auto* const widget = qobject_cast<QWidget*>(watched);
    if (!widget)
        return false;
    if (event->type() == QEvent::MouseButtonRelease && m_swallowsRelease) {
        m_swallowsRelease = false;
        if (!m_isActive)
            qApp->removeEventFilter(this);
        return true;
    }
    if (!m_isActive || widget->window() == m_own)
        return false;
    const bool isKey =
        event->type() == QEvent::KeyPress || event->type() == QEvent::ShortcutOverride;
    if (isKey && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        stop();
        qApp->removeEventFilter(this);
        return true;
    }
    if (event->type() != QEvent::MouseButtonPress)
        return event->type() == QEvent::MouseButtonDblClick;
    m_swallowsRelease = true;
    stop();
    Q_EMIT picked(widget, static_cast<QMouseEvent*>(event)->pos());
    return true;
}

QAction* Picker::actionAt(QWidget* widget, const QPoint& position)
{
    if (auto* const menu = qobject_cast<QMenu*>(widget))
        return menu->actionAt(position);
    if (auto* const bar = qobject_cast<QMenuBar*>(widget))
        return bar->actionAt(position);
    if (auto* const button = qobject_cast<QToolButton*>(widget))
        return button->defaultAction();
    return nullptr;
}

/// The area that a widget is a part of.
static MdiArea* areaOf(QWidget* widget)
{
    for (QWidget* parent = widget; parent; parent = parent->parentWidget()) {
        if (auto* const area = qobject_cast<MdiArea*>(parent))
            return area;
    }
    return nullptr;
}

QObject* Picker::documentAt(QWidget* widget, const QPoint& position)
{
    for (QWidget* parent = widget; parent; parent = parent->parentWidget()) {
        if (auto* const document = qobject_cast<IMdiSubWindow*>(parent))
            return document;
    }
    auto* const bar = qobject_cast<QTabBar*>(widget);
    MdiArea* const area = areaOf(widget);
    if (!bar || !area)
        return nullptr;
    // A tab shows the window title of its document as tool tip.
    const QString title = bar->tabToolTip(bar->tabAt(position));
    const QList<IMdiSubWindow*> documents = area->subWindows();
    for (IMdiSubWindow* const document : documents) {
        if (document->windowTitle() == title
            && bar->tabText(bar->tabAt(position)) == document->shortTitle())
            return document;
    }
    return nullptr;
}

} // namespace Zentu::Inspect
