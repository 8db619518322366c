// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPointer>

class QMdiArea;
class QMdiSubWindow;
class QPoint;
class QTabBar;

namespace Zentu {

class IMdiSubWindow;
class MdiArea;

/// Keeps the tabs, the sub-windows and the current document of an area in step.
class _mdi_area_private : public QObject
{
    Q_OBJECT

public:
    explicit _mdi_area_private(MdiArea* area);

    void addWindow(IMdiSubWindow* window);
    void removeWindow(IMdiSubWindow* window);
    bool contains(const IMdiSubWindow* window) const;

    void connectTabbar();
    void disconnectTabbar();

    IMdiSubWindow* tab2window(int index);
    int window2tab(IMdiSubWindow* window);

    bool eventFilter(QObject* watched, QEvent* event) override;

public Q_SLOTS:
    void onSubwindowActivated(QMdiSubWindow* window);
    void onCurrentTabChanged(int index);
    void onTabClosedRequest(int index);
    void onTabBarContextMenuRequested(const QPoint& pos);
    void onSubWindowClosed();

public:
    MdiArea* q;
    QMdiArea* mdiArea;
    QTabBar* tabBar;
    IMdiSubWindow* current = nullptr;
    /// Whether #current can still be called: nobody tells when a document dies without being
    /// closed.
    QPointer<QObject> currentGuard;

private:
    void removeTab(IMdiSubWindow* window);
    void release(IMdiSubWindow* window);
};

} // namespace Zentu
