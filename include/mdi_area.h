// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QDebug>
#include <QList>
#include <QMdiSubWindow>
#include <QString>
#include <QWidget>

namespace Zentu {

class MdiArea;
class _mdi_area_private;

/**
 * The base class of the documents that an MdiArea shows.
 *
 * Derive from it, set an editor with setWidget(), a windowTitle and, for the tab, a shorter title:
 *
 * @code
 * auto* document = new TextDocument;
 * document->setWindowTitle(QDir::toNativeSeparators(path));
 * document->setShortTitle(QFileInfo(path).fileName());
 * area->addWindow(document);
 * @endcode
 *
 * A document that has been closed deletes itself later, as `Qt::WA_DeleteOnClose` is set. Without
 * that attribute a closed document has no tab, but is still one of MdiArea::subWindows(): call
 * MdiArea::removeWindow() before you add it again.
 *
 * To refuse a close, override closeEvent() and ignore the event without calling this
 * implementation. To accept it, call this implementation: after `accept()` alone nobody hears of
 * the close, and the document leaves its tab behind. For the GUI thread only.
 */
class ZENTU_EXPORT IMdiSubWindow : public QMdiSubWindow
{
    Q_OBJECT
    /// The title for the document's tab. Falls back to windowTitle. Empty by default.
    Q_PROPERTY(QString shortTitle READ shortTitle WRITE setShortTitle)

public:
    /// Creates a document that is in no area, with `Qt::WA_DeleteOnClose` set.
    explicit IMdiSubWindow(QWidget* parent = nullptr);

    /// Destroys the document. An area is not told: documents leave it by being closed or removed.
    ~IMdiSubWindow() override;

    /// The short title, or windowTitle() if it is empty.
    QString shortTitle() const;

    /// Sets the short title and sends a `QEvent::WindowTitleChange` to the document, by which the
    /// tab follows. Does nothing if @p title is the one that is already set.
    void setShortTitle(const QString& title);

    /// The area that shows the document, or null. An area that is being destroyed owns none.
    MdiArea* ownerArea() const;

    /**
     * Called by the area when the document becomes (true) or stops being (false) the current one.
     * Does nothing by default.
     *
     * Another document may be activated here: then the innermost activation holds, and those that
     * it has overtaken tell nobody any more. No document may be deleted here, not in an event loop
     * that runs here either, as Qt still looks at it: use `deleteLater()`, and show questions from
     * the event loop. The area or its window may be, but for one whose show() is just running;
     * the documents in it follow when control is back in the event loop that the change came from,
     * and stay if there is none.
     */
    virtual void currentChanged(bool current);

Q_SIGNALS:
    /// The document was closed: the close has been accepted. Emitted by each close() that is, so
    /// twice if it is called twice before the document is deleted. A slot that wants to delete the
    /// document, its area or the window calls `deleteLater()`, as Qt may still look at them.
    void closed();

protected:
    /// Lets QMdiSubWindow decide and emits closed() if the close is accepted.
    void closeEvent(QCloseEvent* event) override;

private:
    friend class _mdi_area_private;

    MdiArea* m_ownerArea = nullptr;
    QString m_shortTitle;
};

/**
 * Writes a document as `MdiWindow(0x..., "short title")`, without the title if there is none, and a
 * null document as `MdiWindow(0x0)`.
 *
 * Leaves @p dbg in space mode with one blank written.
 */
ZENTU_EXPORT QDebug operator<<(QDebug dbg, const IMdiSubWindow* window);

/**
 * A document area: sub-windows that can be cascaded and tiled, with a tab bar at the bottom edge.
 *
 * Each document has a tab that shows its icon and short title, with its window title as tool tip.
 * A click on a tab activates the document, its close button closes it, and a right click opens the
 * document's system menu. Tabs can be dragged into another order.
 *
 * Documents are added with addWindow(), belong to the area from then on, and leave it when they are
 * closed or removed. A document that is deleted in any other way leaves its tab behind, which does
 * nothing any more.
 *
 * For the GUI thread only. No operation but those that say so checks for null.
 */
class ZENTU_EXPORT MdiArea : public QWidget
{
    Q_OBJECT

public:
    /// Creates an empty area.
    explicit MdiArea(QWidget* parent = nullptr);

    /// Destroys the area and the documents in it; see IMdiSubWindow::currentChanged() for when.
    ~MdiArea() override;

    /**
     * Adds @p window with a tab at the end and shows it; the first document of an empty area is
     * shown maximized.
     *
     * If it is in the area, warns "add view:" ... "already added" and changes nothing. If it is in
     * another area, remove it there first, or that one keeps its tab.
     */
    void addWindow(IMdiSubWindow* window);

    /**
     * Takes @p window out of the area without closing or deleting it; it has no parent then.
     *
     * currentSubWindow() follows with the next activation. If the document is not in the area,
     * warns "remove view:" ... "not belong to this area" and changes nothing.
     */
    void removeWindow(IMdiSubWindow* window);

    /// Closes @p window, wherever it is. Its tab goes when the close has been accepted.
    void closeWindow(IMdiSubWindow* window);

    /// Activates @p window. If it is not in the area (null included), warns "set current window:"
    /// ... "not belong to this area" and changes nothing.
    void setCurrentSubWindow(IMdiSubWindow* window);

    /// The document that was last reported by currentSubWindowChanged(), also if it was deleted
    /// since without being closed. Null by default.
    IMdiSubWindow* currentSubWindow() const;

    /// The documents in the order in which they were added, whatever the order of the tabs.
    QList<IMdiSubWindow*> subWindows() const;

    /// Lays the documents out in a cascade.
    void cascadeSubWindows();

    /// Lays the documents out as tiles.
    void tileSubWindows();

Q_SIGNALS:
    /// Another document is current, or none (null). The documents concerned have been told by
    /// IMdiSubWindow::currentChanged(), and the tab bar shows the new one. A slot may
    /// delete what the documents may delete there.
    void currentSubWindowChanged(IMdiSubWindow* current);

private:
    _mdi_area_private* d;
};

} // namespace Zentu
