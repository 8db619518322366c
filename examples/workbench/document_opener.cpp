// SPDX-License-Identifier: MIT
#include "document_opener.h"

#include "document.h"
#include "document_factory.h"
#include "events.h"
#include "object_pool.h"
#include "settings.h"

#include <QDir>
#include <QFileInfo>

DocumentOpener* DocumentOpener::s_instance = nullptr;

static constexpr qint64 LargestFile = 64LL * 1024 * 1024;

// The factory that suits a path best, or null.
static DocumentFactory* factoryFor(const QString& path)
{
    DocumentFactory* best = nullptr;
    const QList<QObject*> published = Zentu::ObjectPool::instance()->allObjects();
    for (QObject* object : published) {
        auto* factory = qobject_cast<DocumentFactory*>(object);
        if (factory && factory->rank(path) > (best ? best->rank(path) : 0))
            best = factory;
    }
    return best;
}

DocumentOpener::DocumentOpener(QObject* parent)
    : QObject(parent)
    , m_reloader([this](const QString& path) { onFileChanged(path); })
    , m_watching(Settings::instance()->watchFiles())
{
    s_instance = this;
    connect(Settings::instance(), &Settings::changed, this, &DocumentOpener::applySettings);
}

DocumentOpener::~DocumentOpener()
{
    s_instance = nullptr;
}

void DocumentOpener::openPath(const QString& path)
{
    s_instance->openOne(path);
}

void DocumentOpener::open(const QStringList& paths)
{
    for (const QString& path : paths)
        openOne(QDir::cleanPath(QFileInfo(path).absoluteFilePath()));
}

void DocumentOpener::openNew()
{
    openOne(QString());
}

void DocumentOpener::openOne(const QString& path)
{
    if (Document* const shown = m_documents.value(path)) {
        Q_EMIT requested(shown);
        return;
    }
    QString error;
    Document* const document = create(path, &error);
    if (!document) {
        Events::post(Events::DocumentFailed,
            {{Events::Path, path}, {Events::Kind, QString()},
                {Events::Bytes, QFileInfo(path).size()},
                {Events::Message,
                    tr("%1 could not be opened: %2").arg(QDir::toNativeSeparators(path), error)}});
        return;
    }
    remember(document);
    Q_EMIT opened(document);
    document->tell(Events::DocumentOpened);
}

Document* DocumentOpener::create(const QString& path, QString* error) const
{
    const QFileInfo info(path);
    DocumentFactory* const factory = factoryFor(path);
    if (info.isDir())
        *error = tr("it is a folder");
    else if (info.exists() && info.size() > LargestFile)
        *error = tr("it is larger than 64 MiB");
    else if (factory)
        return factory->open(path, error);
    else
        *error = info.exists() ? tr("it is no file") : tr("there is no such file");
    return nullptr;
}

void DocumentOpener::remember(Document* document)
{
    const auto add = [this, document](const QString& path) {
        if (path.isEmpty())
            return;
        m_documents.insert(path, document);
        watch(path);
    };
    const auto remove = [this](const QString& path) {
        m_documents.remove(path);
        m_reloader.remove(path);
    };
    add(document->path());
    connect(document, &Document::pathChanged, this,
        [add, remove](const QString& path, const QString& previous) {
            remove(previous);
            add(path);
        });
    connect(document, &Document::closed, this, [document, remove] {
        remove(document->path());
        document->tell(Events::DocumentClosed);
    });
}

void DocumentOpener::watch(const QString& path)
{
    if (m_watching)
        m_reloader.add(path);
}

void DocumentOpener::applySettings()
{
    if (m_watching == Settings::instance()->watchFiles())
        return;
    m_watching = !m_watching;
    const QStringList paths = m_documents.keys();
    for (const QString& path : paths) {
        m_reloader.remove(path);
        watch(path);
    }
}

// The document knows what it has written itself.
void DocumentOpener::onFileChanged(const QString& path)
{
    Document* const document = m_documents.value(path);
    const bool isThere = QFileInfo::exists(path);
    if (!isThere)
        document->onFileDeleted();
    else if (!document->onFileChanged())
        return;
    Events::post(isThere ? Events::DocumentChanged : Events::DocumentDeleted,
        {{Events::Path, path}, {Events::Kind, document->kind()},
            {Events::Bytes, QFileInfo(path).size()}});
}
