// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_host.h"

#include <QHash>
#include <QObject>
#include <QString>
#include <QStringList>

class Document;
class DocumentFactory;

/// Opens files as documents, watches them, and tells the bus what comes of it.
class DocumentOpener : public QObject
{
    Q_OBJECT

public:
    explicit DocumentOpener(QObject* parent);
    ~DocumentOpener() override;

    /// Opens each file; one that is open already becomes current again. A file that cannot be
    /// opened is told to the bus, and the others are opened all the same.
    void open(const QStringList& paths);

    /// Begins a document that has no file yet.
    void openNew();

    /// Opens one path with the opener of this process.
    static void openPath(const QString& path);

Q_SIGNALS:
    /// A document is to be shown.
    void opened(Document* document);
    /// A document that is shown was asked for again.
    void requested(Document* document);

private:
    void openOne(const QString& path);
    Document* create(const QString& path, QString* error) const;
    void remember(Document* document);
    void watch(const QString& path);
    void onFileChanged(const QString& path);
    void applySettings();

    static DocumentOpener* s_instance;

    QHash<QString, Document*> m_documents;
    Zentu::FileReloader m_reloader;
    bool m_watching;
};
