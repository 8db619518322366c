// SPDX-License-Identifier: MIT
#include "file_guard.h"

#include "document.h"
#include "events.h"
#include "lambda_slot.h"
#include "settings.h"

#include <QFileInfo>
#include <QTimer>

// A program that saves by deleting and writing anew has finished by then, and the path is watched
// again.
static constexpr int SettleMs = 300;

FileGuard::FileGuard(QObject* parent)
    : QObject(parent)
    , m_watching(Settings::instance()->watchFiles())
{
    connect(&m_watcher, &Zentu::FileWatcher::fileChanged, this, &FileGuard::onFileChanged);
    connect(Settings::instance(), &Settings::changed, this, &FileGuard::applySettings);
}

void FileGuard::add(Document* document)
{
    if (!document->path().isEmpty()) {
        m_documents.insert(document->path(), document);
        watch(document->path());
    }
    connect(document, &Document::pathChanged, this,
        [this, document](const QString& path, const QString& previous) {
            unwatch(previous);
            m_documents.remove(previous);
            m_documents.insert(path, document);
            watch(path);
        });
    connect(document, &Document::closed, this, [this, document] {
        unwatch(document->path());
        m_documents.remove(document->path());
    });
}

void FileGuard::watch(const QString& path)
{
    if (m_watching && QFileInfo(path).isFile())
        m_watcher.addFile(path);
}

void FileGuard::unwatch(const QString& path)
{
    if (m_watching && QFileInfo(path).isFile())
        m_watcher.removeFile(path);
}

void FileGuard::applySettings()
{
    if (m_watching == Settings::instance()->watchFiles())
        return;
    const QStringList paths = m_documents.keys();
    if (m_watching) {
        for (const QString& path : paths)
            unwatch(path);
    }
    m_watching = !m_watching;
    for (const QString& path : paths)
        watch(path);
}

// Several changes in a row are one for the user.
void FileGuard::onFileChanged(const QString& path)
{
    if (!m_documents.contains(path))
        return;
    QTimer*& timer = m_pending[path];
    if (!timer) {
        timer = new QTimer(this);
        timer->setSingleShot(true);
        Zentu::LambdaSlotWrapper::connect(timer, SIGNAL(timeout()), [this, path] { tell(path); });
    }
    timer->start(SettleMs);
}

void FileGuard::tell(const QString& path)
{
    m_pending.take(path)->deleteLater();
    Document* const document = m_documents.value(path);
    if (!document)
        return;
    const bool isThere = QFileInfo::exists(path);
    if (!isThere)
        document->onFileDeleted();
    else if (!document->onFileChanged())
        return;
    Events::post(isThere ? Events::DocumentChanged : Events::DocumentDeleted,
        {{Events::Path, path}, {Events::Kind, document->kind()},
            {Events::Bytes, QFileInfo(path).size()}});
}
