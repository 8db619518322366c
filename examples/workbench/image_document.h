// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

#include <QPixmap>
#include <QPoint>

class PictureView;
class QScrollArea;

/// A picture, in its own size, zoomed or fitted into the window; dragged with the mouse.
class ImageDocument : public Document
{
    Q_OBJECT

public:
    static const QString Kind;

    /// Reads a file; null and the reason if it cannot be read.
    static ImageDocument* open(const QString& path, QString* error);

    QPixmap picture() const { return m_picture; }
    double zoomFactor() const { return m_zoom; }
    bool isFitted() const { return m_fitted; }

    void zoomBy(double factor);
    void showActualSize();
    void setFitted(bool fitted);
    bool saveAs();

    bool onFileChanged() override;

Q_SIGNALS:
    void zoomChanged();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    ImageDocument(const QString& path, const QPixmap& picture);

    void setZoom(double factor);
    void applySettings();
    void update();

    QPixmap m_picture;
    QScrollArea* m_area;
    PictureView* m_view;
    double m_zoom = 1;
    bool m_fitted = false;
    bool m_fittedByDefault = false;
    QPoint m_dragged;
};
