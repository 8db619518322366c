// SPDX-License-Identifier: MIT
#pragma once

#include "file_watcher.h"

#include <QHash>
#include <QObject>
#include <QString>

class Document;
class QTimer;

/// Watches the files of the open documents and tells a document, and the bus, when its file has
/// changed.
class FileGuard : public QObject
{
    Q_OBJECT

public:
    explicit FileGuard(QObject* parent);

    /// Watches the document's file until the document is closed.
    void add(Document* document);

private:
    void watch(const QString& path);
    void unwatch(const QString& path);
    void onFileChanged(const QString& path);
    void tell(const QString& path);
    void applySettings();

    Zentu::FileWatcher m_watcher;
    QHash<QString, Document*> m_documents;
    QHash<QString, QTimer*> m_pending;
    bool m_watching;
};
