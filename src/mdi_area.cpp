// SPDX-License-Identifier: MIT
#include "mdi_area.h"

#include "link_p.h"
#include "mdi_area_p.h"
#include "trace_p.h"

#include <QCloseEvent>
#include <QCoreApplication>
#include <QMdiArea>
#include <QMenu>
#include <QTabBar>
#include <QVBoxLayout>
#include <QVariant>

#include <algorithm>
#include <array>

namespace Zentu {

IMdiSubWindow::IMdiSubWindow(QWidget* parent)
    : QMdiSubWindow(parent)
{
    setAttribute(Qt::WA_DeleteOnClose);
}

IMdiSubWindow::~IMdiSubWindow()
{
    Trace() << this << "destroying";
}

QString IMdiSubWindow::shortTitle() const
{
    return m_shortTitle.isEmpty() ? windowTitle() : m_shortTitle;
}

void IMdiSubWindow::setShortTitle(const QString& title)
{
    if (m_shortTitle == title)
        return;
    m_shortTitle = title;
    // The area listens to title changes; one event serves both titles.
    QEvent event(QEvent::WindowTitleChange);
    QCoreApplication::sendEvent(this, &event);
}

MdiArea* IMdiSubWindow::ownerArea() const
{
    return m_ownerArea;
}

void IMdiSubWindow::currentChanged(bool /*current*/) { }

void IMdiSubWindow::closeEvent(QCloseEvent* event)
{
    Trace() << this << "try to close";
    QMdiSubWindow::closeEvent(event);
    if (!event->isAccepted())
        return;
    qInfo() << this << "closed";
    Q_EMIT closed();
}

_mdi_area_private::_mdi_area_private(MdiArea* area)
    : q(area)
    , mdiArea(new QMdiArea(area))
    , tabBar(new QTabBar(area))
{
    mdiArea->setViewMode(QMdiArea::SubWindowView);
    mdiArea->setActivationOrder(QMdiArea::ActivationHistoryOrder);
    mdiArea->setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    mdiArea->setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);

    tabBar->setMovable(true);
    tabBar->setTabsClosable(true);
    tabBar->setShape(QTabBar::RoundedSouth);
    tabBar->setContextMenuPolicy(Qt::CustomContextMenu);
}

using TabBarLink = Link<QTabBar, _mdi_area_private>;

// In the order in which they are made and broken.
static const std::array<TabBarLink, 3>& tabBarLinks()
{
    static const std::array<TabBarLink, 3> links = {
        TabBarLink{SIGNAL(currentChanged(int)), SLOT(onCurrentTabChanged(int))},
        TabBarLink{SIGNAL(tabCloseRequested(int)), SLOT(onTabClosedRequest(int))},
        TabBarLink{SIGNAL(customContextMenuRequested(QPoint)),
            SLOT(onTabBarContextMenuRequested(QPoint))}};
    return links;
}

void _mdi_area_private::connectTabbar()
{
    for (const TabBarLink& link : tabBarLinks())
        link.connect(tabBar, this);
}

void _mdi_area_private::disconnectTabbar()
{
    for (const TabBarLink& link : tabBarLinks())
        link.disconnect(tabBar, this);
}

bool _mdi_area_private::contains(const IMdiSubWindow* window) const
{
    const QList<QMdiSubWindow*> windows = mdiArea->subWindowList(QMdiArea::CreationOrder);
    return std::find(windows.cbegin(), windows.cend(), window) != windows.cend();
}

void _mdi_area_private::addWindow(IMdiSubWindow* window)
{
    if (contains(window)) {
        qWarning() << q << "add view:" << window << "already added";
        return;
    }
    qInfo() << q << "add view" << window;

    disconnectTabbar();
    const int index = tabBar->addTab(window->windowIcon(), window->shortTitle());
    tabBar->setTabToolTip(index, window->windowTitle());
    tabBar->setTabData(index, QVariant::fromValue(static_cast<void*>(window)));
    connectTabbar();

    window->m_ownerArea = q;
    window->installEventFilter(this);
    connect(window, SIGNAL(closed()), this, SLOT(onSubWindowClosed()));

    mdiArea->addSubWindow(window);
    window->show();
    if (mdiArea->subWindowList(QMdiArea::CreationOrder).size() == 1)
        window->showMaximized();
}

void _mdi_area_private::removeWindow(IMdiSubWindow* window)
{
    if (!contains(window)) {
        qWarning() << q << "remove view:" << window << "not belong to this area";
        return;
    }
    qInfo() << q << "remove view:" << window;
    release(window);
    mdiArea->removeSubWindow(window);
    removeTab(window);
}

void _mdi_area_private::removeTab(IMdiSubWindow* window)
{
    disconnectTabbar();
    tabBar->removeTab(window2tab(window));
    connectTabbar();
}

void _mdi_area_private::release(IMdiSubWindow* window)
{
    window->m_ownerArea = nullptr;
    window->removeEventFilter(this);
    disconnect(window, nullptr, this, nullptr);
}

// A document that died without being closed leaves its address in its tab, so the address is not
// looked at here.
IMdiSubWindow* _mdi_area_private::tab2window(int index)
{
    return static_cast<IMdiSubWindow*>(tabBar->tabData(index).value<void*>());
}

int _mdi_area_private::window2tab(IMdiSubWindow* window)
{
    for (int index = 0; index < tabBar->count(); ++index) {
        if (tab2window(index) == window)
            return index;
    }
    return -1;
}

void _mdi_area_private::onSubwindowActivated(QMdiSubWindow* window)
{
    Trace() << q << "active window:" << qobject_cast<IMdiSubWindow*>(window);
    auto* const activated = qobject_cast<IMdiSubWindow*>(mdiArea->currentSubWindow());
    if (activated == current)
        return;

    qInfo() << q << "current window changed:" << activated;
    // One that is being destroyed may be no document any more.
    if (auto* const previous = qobject_cast<IMdiSubWindow*>(currentGuard.data()))
        previous->currentChanged(false);
    current = activated;
    currentGuard = activated;
    if (activated)
        activated->currentChanged(true);

    disconnectTabbar();
    tabBar->setCurrentIndex(window2tab(activated));
    connectTabbar();
    Q_EMIT q->currentSubWindowChanged(activated);
}

void _mdi_area_private::onCurrentTabChanged(int index)
{
    if (index != -1)
        mdiArea->setActiveSubWindow(tab2window(index));
}

void _mdi_area_private::onTabClosedRequest(int index)
{
    if (index != -1)
        tab2window(index)->close();
}

void _mdi_area_private::onTabBarContextMenuRequested(const QPoint& pos)
{
    const int index = tabBar->tabAt(pos);
    if (index != -1)
        tab2window(index)->systemMenu()->exec(tabBar->mapToGlobal(pos));
}

// The document deletes itself, and the inner area drops it then.
void _mdi_area_private::onSubWindowClosed()
{
    auto* const window = qobject_cast<IMdiSubWindow*>(sender());
    if (!window)
        return;
    removeTab(window);
    release(window);
}

bool _mdi_area_private::eventFilter(QObject* watched, QEvent* event)
{
    auto* const window = qobject_cast<IMdiSubWindow*>(watched);
    if (!window)
        return false;
    if (event->type() == QEvent::WindowTitleChange) {
        const int index = window2tab(window);
        tabBar->setTabText(index, window->shortTitle());
        tabBar->setTabToolTip(index, window->windowTitle());
    } else if (event->type() == QEvent::WindowIconChange) {
        tabBar->setTabIcon(window2tab(window), window->windowIcon());
    }
    return false;
}

MdiArea::MdiArea(QWidget* parent)
    : QWidget(parent)
    , d(new _mdi_area_private(this))
{
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(d->mdiArea);
    layout->addWidget(d->tabBar);

    connect(d->mdiArea, SIGNAL(subWindowActivated(QMdiSubWindow*)), d,
        SLOT(onSubwindowActivated(QMdiSubWindow*)));
    d->connectTabbar();
}

MdiArea::~MdiArea()
{
    delete d;
}

void MdiArea::addWindow(IMdiSubWindow* window)
{
    d->addWindow(window);
}

void MdiArea::removeWindow(IMdiSubWindow* window)
{
    d->removeWindow(window);
}

void MdiArea::closeWindow(IMdiSubWindow* window)
{
    window->close();
}

void MdiArea::setCurrentSubWindow(IMdiSubWindow* window)
{
    if (d->contains(window))
        d->mdiArea->setActiveSubWindow(window);
    else
        qWarning() << this << "set current window:" << window << "not belong to this area";
}

IMdiSubWindow* MdiArea::currentSubWindow() const
{
    return d->current;
}

QList<IMdiSubWindow*> MdiArea::subWindows() const
{
    const QList<QMdiSubWindow*> inner = d->mdiArea->subWindowList(QMdiArea::CreationOrder);
    QList<IMdiSubWindow*> windows;
    windows.reserve(inner.size());
    for (QMdiSubWindow* window : inner)
        windows.append(qobject_cast<IMdiSubWindow*>(window));
    return windows;
}

void MdiArea::cascadeSubWindows()
{
    d->mdiArea->cascadeSubWindows();
}

void MdiArea::tileSubWindows()
{
    d->mdiArea->tileSubWindows();
}

} // namespace Zentu
