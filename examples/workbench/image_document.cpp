// SPDX-License-Identifier: MIT
#include "image_document.h"

#include "actions.h"
#include "document_factory.h"
#include "file_change_bar.h"
#include "glyph_icon.h"
#include "settings.h"
#include "zentu_host.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QImageReader>
#include <QMessageBox>
#include <QMouseEvent>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>
#include <QScrollBar>

const QString ImageDocument::Kind = QStringLiteral("image");

/// Shows a picture in the size of the widget.
class PictureView : public QWidget
{
public:
    /// @p shown is the picture as it is drawn: no larger than itself, as a magnified copy could
    /// take any amount of memory. Magnifying is left to the painter, which does what is in sight.
    void show(const QPixmap& shown, const QSize& size, bool smooth)
    {
        m_shown = shown;
        m_smooth = smooth;
        resize(size);
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override
    {
        QPainter painter(this);
        painter.setRenderHint(QPainter::SmoothPixmapTransform, m_smooth);
        painter.drawPixmap(rect(), m_shown);
    }

private:
    QPixmap m_shown;
    bool m_smooth = true;
};

// 400 MB when decoded; a small file can claim any size.
static constexpr qint64 MostPixels = 100'000'000;

static QPixmap read(const QString& path, QString* error)
{
    QImageReader reader(path);
    reader.setDecideFormatFromContent(true);
    reader.setAutoTransform(true);
    const QSize size = reader.size();
    if (qint64(size.width()) * size.height() > MostPixels) {
        *error = ImageDocument::tr("a picture of %1 by %2 pixels is too large")
                     .arg(size.width())
                     .arg(size.height());
        return QPixmap();
    }
    const QImage image = reader.read();
    if (image.isNull())
        *error = reader.errorString();
    return QPixmap::fromImage(image);
}

ImageDocument* ImageDocument::open(const QString& path, QString* error)
{
    const QPixmap picture = read(path, error);
    return picture.isNull() ? nullptr : new ImageDocument(path, picture);
}

ImageDocument::ImageDocument(const QString& path, const QPixmap& picture)
    : Document(Kind, path)
    , m_picture(picture)
    , m_area(new QScrollArea)
    , m_view(new PictureView)
{
    m_view->setObjectName(QStringLiteral("image_view"));
    m_area->setObjectName(QStringLiteral("image_area"));
    m_area->setAccessibleName(tr("Picture %1").arg(shortTitle()));
    m_area->setAlignment(Qt::AlignCenter);
    m_area->setFrameShape(QFrame::NoFrame);
    m_area->setBackgroundRole(QPalette::Dark);
    m_area->setWidget(m_view);
    m_area->viewport()->installEventFilter(this);
    m_area->viewport()->setCursor(Qt::OpenHandCursor);
    setContent(m_area);
    setWindowIcon(glyphIcon(QStringLiteral("image-x-generic")));
    setBytes(QFileInfo(path).size());
    m_fittedByDefault = Settings::instance()->fitImages();
    m_fitted = m_fittedByDefault;
    update();
    connect(Settings::instance(), &Settings::changed, this, &ImageDocument::applySettings);
}

void ImageDocument::applySettings()
{
    // A zoom of one's own stays, whatever else is set.
    const bool fitted = Settings::instance()->fitImages();
    if (fitted != m_fittedByDefault)
        m_fitted = fitted;
    m_fittedByDefault = fitted;
    update();
}

// Fitted means no larger than the window and no larger than the picture.
void ImageDocument::update()
{
    if (m_fitted) {
        const QSizeF room = m_area->maximumViewportSize();
        const QSizeF size = m_picture.size();
        m_zoom = qMin(1.0, qMin(room.width() / size.width(), room.height() / size.height()));
    }
    const QSize size = (QSizeF(m_picture.size()) * m_zoom).toSize().expandedTo(QSize(1, 1));
    const bool smooth = Settings::instance()->smoothImages();
    const QSize device = (QSizeF(size) * devicePixelRatioF()).toSize();
    const bool smaller = device.width() < m_picture.width();
    m_view->show(smaller ? m_picture.scaled(device, Qt::IgnoreAspectRatio,
                     smooth ? Qt::SmoothTransformation : Qt::FastTransformation)
                         : m_picture,
        size, smooth);
    Q_EMIT zoomChanged();
}

void ImageDocument::setZoom(double factor)
{
    m_fitted = false;
    m_zoom = qBound(0.05, factor, 8.0);
    update();
}

void ImageDocument::zoomBy(double factor)
{
    setZoom(m_zoom * factor);
}

void ImageDocument::showActualSize()
{
    setZoom(1);
}

void ImageDocument::setFitted(bool fitted)
{
    m_fitted = fitted;
    update();
}

bool ImageDocument::saveAs()
{
    const QString chosen = QFileDialog::getSaveFileName(this, tr("Save As"), path());
    if (chosen.isEmpty())
        return false;
    if (m_picture.save(chosen))
        return true;
    QMessageBox::warning(
        this, tr("Save As"), tr("%1 could not be saved.").arg(QDir::toNativeSeparators(chosen)));
    return false;
}

// A picture is never edited here, so the new one simply takes its place.
bool ImageDocument::onFileChanged()
{
    QString error;
    const QPixmap picture = read(path(), &error);
    if (picture.isNull()) {
        changeBar()->showChange(tr("The file cannot be read any more: %1").arg(error), false);
        return true;
    }
    changeBar()->hide();
    m_picture = picture;
    setBytes(QFileInfo(path()).size());
    update();
    return true;
}

bool ImageDocument::eventFilter(QObject* watched, QEvent* event)
{
    if (watched != m_area->viewport())
        return Document::eventFilter(watched, event);
    if (event->type() == QEvent::Resize && m_fitted) {
        update();
    } else if (event->type() == QEvent::MouseButtonPress) {
        m_dragged = static_cast<QMouseEvent*>(event)->pos();
        m_area->viewport()->setCursor(Qt::ClosedHandCursor);
    } else if (event->type() == QEvent::MouseMove) {
        const QPoint position = static_cast<QMouseEvent*>(event)->pos();
        const QPoint way = position - m_dragged;
        m_dragged = position;
        m_area->horizontalScrollBar()->setValue(m_area->horizontalScrollBar()->value() - way.x());
        m_area->verticalScrollBar()->setValue(m_area->verticalScrollBar()->value() - way.y());
    } else if (event->type() == QEvent::MouseButtonRelease) {
        m_area->viewport()->setCursor(Qt::OpenHandCursor);
    }
    return Document::eventFilter(watched, event);
}

namespace {

/// Opens pictures, and directs the actions to the current one.
class ImageFactory : public DocumentFactory
{
public:
    explicit ImageFactory(QObject* parent)
        : DocumentFactory(parent)
        , m_actions(ImageDocument::Kind)
    {
        constexpr double Step = 1.25;
        m_fit = m_actions.addCheckable(
            Ids::Fit, false, [this](bool fitted) { m_current->setFitted(fitted); });
        m_all = {m_fit,
            m_actions.add(
                Ids::Copy, [this] { QApplication::clipboard()->setPixmap(m_current->picture()); }),
            m_actions.add(Ids::ZoomIn, [this] { m_current->zoomBy(Step); }),
            m_actions.add(Ids::ZoomOut, [this] { m_current->zoomBy(1 / Step); }),
            m_actions.add(Ids::ActualSize, [this] { m_current->showActualSize(); }),
            m_actions.add(Ids::SaveAs, [this] { m_current->saveAs(); }),
            m_actions.add(Ids::Close, [this] { m_current->close(); })};
    }

    QString kind() const override { return ImageDocument::Kind; }

    int rank(const QString& path) const override
    {
        QImageReader reader(path);
        reader.setDecideFormatFromContent(true);
        return QFileInfo(path).isFile() && reader.canRead() ? 2 : 0;
    }

    Document* open(const QString& path, QString* error) const override
    {
        return ImageDocument::open(path, error);
    }

    void setCurrent(Document* document) override
    {
        if (m_current)
            disconnect(m_current, nullptr, this, nullptr);
        m_current = qobject_cast<ImageDocument*>(document);
        if (m_current)
            connect(m_current, &ImageDocument::zoomChanged, this, &ImageFactory::update);
        update();
        m_actions.setCurrent(m_current);
    }

private:
    void update()
    {
        m_fit->setChecked(m_current && m_current->isFitted());
        for (QAction* action : qAsConst(m_all))
            action->setEnabled(m_current);
    }

    Zentu::DocumentActions m_actions;
    QPointer<ImageDocument> m_current;
    QAction* m_fit;
    QList<QAction*> m_all;
};

const DocumentKind s_kind([](QObject* parent) { return new ImageFactory(parent); });

} // namespace
