// SPDX-License-Identifier: MIT
#include "document.h"

#include "events.h"
#include "file_change_bar.h"

#include <QDir>
#include <QEvent>
#include <QFileInfo>
#include <QMenu>
#include <QVBoxLayout>

Document::Document(const QString& kind, const QString& path)
    : m_kind(kind)
{
    static int s_untitled = 0;
    if (path.isEmpty())
        m_untitled = tr("Untitled %1").arg(++s_untitled);
    setPath(path);
    QAction* const closeOthers = systemMenu()->addAction(tr("Close O&thers"));
    closeOthers->setObjectName(QStringLiteral("close_others"));
    connect(closeOthers, &QAction::triggered, this, &Document::closeOthersRequested);
    // Ctrl+W belongs to the action in the file menu.
    const QList<QAction*> actions = systemMenu()->actions();
    for (QAction* action : actions)
        action->setShortcuts(QList<QKeySequence>());
}

void Document::setContent(QWidget* content)
{
    auto* view = new QWidget;
    m_changeBar = new FileChangeBar(view);
    auto* layout = new QVBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_changeBar);
    layout->addWidget(content, 1);
    view->setFocusProxy(content);
    setWidget(view);
    connect(m_changeBar, &FileChangeBar::keepRequested, m_changeBar, &QWidget::hide);
}

QString Document::name() const
{
    return m_path.isEmpty() ? m_untitled : QFileInfo(m_path).fileName();
}

// The tab has room for a name; its tool tip, the window's title, tells the folder too.
void Document::setPath(const QString& path)
{
    const QString previous = m_path;
    m_path = path;
    setWindowTitle(
        QStringLiteral("%1 - %2[*]").arg(name(), QDir::toNativeSeparators(QFileInfo(path).path())));
    setShortTitle(name());
    Q_EMIT pathChanged(path, previous);
}

QSize Document::sizeHint() const
{
    return parentWidget() ? parentWidget()->size() * 2 / 3 : Zentu::IMdiSubWindow::sizeHint();
}

// The menu bar and the tab have a picture of the icon.
void Document::changeEvent(QEvent* event)
{
    if (event->type() == QEvent::PaletteChange)
        setWindowIcon(windowIcon());
    Zentu::IMdiSubWindow::changeEvent(event);
}

bool Document::onFileChanged()
{
    return false;
}

void Document::onFileDeleted()
{
    if (m_changeBar)
        m_changeBar->showChange(tr("The file has been deleted on disk."), false);
}

void Document::tell(const QString& type) const
{
    Events::post(type,
        {{Events::Path, m_path.isEmpty() ? name() : m_path}, {Events::Kind, m_kind},
            {Events::Bytes, m_bytes}});
}
