// SPDX-License-Identifier: MIT
#pragma once

#include <QList>
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
    ~_mdi_area_private() override;

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

private:
    IMdiSubWindow* livingDocumentAt(int index);
    void removeTab(IMdiSubWindow* window);
    void showTab(IMdiSubWindow* window);
    void release(IMdiSubWindow* window);
    void tellOf(QMdiSubWindow* window);

    // Nobody tells when a document dies without being closed, and another one can be created at
    // its address: these tell whether #current, and what a tab stands for, can still be called.
    QPointer<QObject> currentGuard;
    QList<QPointer<IMdiSubWindow>> documents;
    // Counted so that a change of the current document notices that another one has overtaken it.
    int changes = 0;
    // Whether the current document is just being told that it is not current any more.
    bool isLeaving = false;
    // The one that will be current then.
    QPointer<IMdiSubWindow> next;
    // Whether the area has told of the current document, which may have been left and come back.
    bool isReported = false;
    // Whether documents and listeners are being told of an activation.
    bool isTelling = false;
};

} // namespace Zentu
