// SPDX-License-Identifier: MIT
#include "mdi_area.h"

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
#include <utility>

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
    // Other documents are told before Qt returns, and can delete this one.
    const QPointer<QObject> alive(this);
    QMdiSubWindow::closeEvent(event);
    if (!alive || !event->isAccepted())
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

_mdi_area_private::~_mdi_area_private()
{
    for (IMdiSubWindow* document : qAsConst(documents)) {
        if (document && document->m_ownerArea == q)
            document->m_ownerArea = nullptr;
    }
    if (isTelling) {
        // It tells of having been hidden.
        mdiArea->disconnect(this);
        mdiArea->setParent(nullptr);
        tabBar->setParent(nullptr);
    }
}

void _mdi_area_private::connectTabbar()
{
    connect(tabBar, SIGNAL(currentChanged(int)), this, SLOT(onCurrentTabChanged(int)));
    connect(tabBar, SIGNAL(tabCloseRequested(int)), this, SLOT(onTabClosedRequest(int)));
    connect(tabBar, SIGNAL(customContextMenuRequested(QPoint)), this,
        SLOT(onTabBarContextMenuRequested(QPoint)));
}

void _mdi_area_private::disconnectTabbar()
{
    disconnect(tabBar, SIGNAL(currentChanged(int)), this, SLOT(onCurrentTabChanged(int)));
    disconnect(tabBar, SIGNAL(tabCloseRequested(int)), this, SLOT(onTabClosedRequest(int)));
    disconnect(tabBar, SIGNAL(customContextMenuRequested(QPoint)), this,
        SLOT(onTabBarContextMenuRequested(QPoint)));
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

    documents.removeAll(nullptr);
    documents.removeAll(window);
    documents.append(window);
    window->m_ownerArea = q;
    window->installEventFilter(this);
    connect(window, SIGNAL(closed()), this, SLOT(onSubWindowClosed()));

    // Documents are told what is current on the way, and can delete the area or this document.
    const QPointer<QObject> alive(this);
    const QPointer<QObject> added(window);
    mdiArea->addSubWindow(window);
    if (alive && added)
        window->show();
    if (alive && added && mdiArea->subWindowList(QMdiArea::CreationOrder).size() == 1)
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
    const QPointer<QObject> alive(this);
    mdiArea->removeSubWindow(window);
    if (alive)
        removeTab(window);
}

void _mdi_area_private::removeTab(IMdiSubWindow* window)
{
    disconnectTabbar();
    tabBar->removeTab(window2tab(window));
    connectTabbar();
}

void _mdi_area_private::showTab(IMdiSubWindow* window)
{
    disconnectTabbar();
    tabBar->setCurrentIndex(window2tab(window));
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

// The document of a tab, or null if it has died.
IMdiSubWindow* _mdi_area_private::livingDocumentAt(int index)
{
    IMdiSubWindow* const window = index == -1 ? nullptr : tab2window(index);
    const auto it = std::find(documents.cbegin(), documents.cend(), window);
    return it == documents.cend() ? nullptr : window;
}

// Qt goes on in the inner area, in the tab bar and in documents when it has told of an activation.
// If somebody who hears of it deletes the area, these stay until control is back in the event loop
// from which it came.
void _mdi_area_private::onSubwindowActivated(QMdiSubWindow* window)
{
    const QPointer<QObject> alive(this);
    const bool isOutermost = !std::exchange(isTelling, true);
    QMdiArea* const inner = mdiArea;
    QTabBar* const tabs = tabBar;
    tellOf(window);
    if (alive) {
        isTelling = !isOutermost;
    } else if (isOutermost) {
        inner->deleteLater();
        tabs->deleteLater();
    }
}

// A document that is told may activate another one, which then holds, or delete itself, the other
// one or the area.
void _mdi_area_private::tellOf(QMdiSubWindow* window)
{
    Trace() << q << "active window:" << qobject_cast<IMdiSubWindow*>(window);
    auto* const activated = qobject_cast<IMdiSubWindow*>(mdiArea->currentSubWindow());
    // An area that is hidden, as one whose window is deleted, activates its document once more.
    if (isLeaving && activated && activated == next)
        return;
    const bool isBack = activated == current && std::exchange(isLeaving, false);
    if (activated == current && !isBack) {
        currentGuard = activated;
        return;
    }

    const auto isOvertaken = [this, alive = QPointer<QObject>(this), own = ++changes,
                                 hasTarget = activated != nullptr,
                                 target = QPointer<QObject>(activated)] {
        return !alive || changes != own || (hasTarget && !target);
    };
    if (!isBack) {
        qInfo() << q << "current window changed:" << activated;
        // One that is being destroyed may be no document any more.
        if (auto* const previous = qobject_cast<IMdiSubWindow*>(currentGuard.data())) {
            isLeaving = true;
            next = activated;
            previous->currentChanged(false);
            if (isOvertaken())
                return;
        }
        isLeaving = false;
        current = activated;
        currentGuard = activated;
        isReported = false;
    }
    if (activated)
        activated->currentChanged(true);
    if (isOvertaken())
        return;
    showTab(activated);
    if (!std::exchange(isReported, true))
        Q_EMIT q->currentSubWindowChanged(activated);
}

void _mdi_area_private::onCurrentTabChanged(int index)
{
    if (IMdiSubWindow* const window = livingDocumentAt(index))
        mdiArea->setActiveSubWindow(window);
}

void _mdi_area_private::onTabClosedRequest(int index)
{
    if (IMdiSubWindow* const window = livingDocumentAt(index))
        window->close();
}

void _mdi_area_private::onTabBarContextMenuRequested(const QPoint& pos)
{
    if (IMdiSubWindow* const window = livingDocumentAt(tabBar->tabAt(pos)))
        window->systemMenu()->exec(tabBar->mapToGlobal(pos));
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
