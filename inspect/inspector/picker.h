// SPDX-License-Identifier: MIT
#pragma once

#include <QObject>
#include <QPoint>

class QAction;
class QWidget;

namespace Zentu::Inspect {

/// Turns the next click into a question: what stands behind this? The host does not see the click.
/// Escape ends it.
class Picker : public QObject
{
    Q_OBJECT

public:
    /// @param own the window whose own widgets are not asked about
    explicit Picker(QWidget* own);

    bool isActive() const { return m_isActive; }
    void start();
    void stop();

    bool eventFilter(QObject* watched, QEvent* event) override;

    /// The action that a widget shows at a point, null if it shows none.
    static QAction* actionAt(QWidget* widget, const QPoint& position);
    /// The document whose tab is at a point, or in which the widget is; null if there is none.
    static QObject* documentAt(QWidget* widget, const QPoint& position);

Q_SIGNALS:
    void picked(QWidget* widget, const QPoint& position);
    void activeChanged(bool active);

private:
    QWidget* m_own;
    bool m_isActive = false;
    bool m_swallowsRelease = false;
};

} // namespace Zentu::Inspect
