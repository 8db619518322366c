// SPDX-License-Identifier: MIT
#include "document.h"

#include <QDir>
#include <QFileInfo>
#include <QMenu>

Document::Document(const QString& kind, const QString& path)
    : m_kind(kind)
{
    setPath(path);
    // Ctrl+W belongs to the action in the file menu.
    const QList<QAction*> actions = systemMenu()->actions();
    for (QAction* action : actions)
        action->setShortcuts(QList<QKeySequence>());
}

// The tab has room for a name; its tool tip, the window's title, shows the whole path.
void Document::setPath(const QString& path)
{
    const QString previous = m_path;
    m_path = path;
    setWindowTitle(QDir::toNativeSeparators(path) + QStringLiteral("[*]"));
    setShortTitle(QFileInfo(path).fileName());
    Q_EMIT pathChanged(path, previous);
}

void Document::onFileChanged() { }
