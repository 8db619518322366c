// SPDX-License-Identifier: MIT
#include "file_watcher.h"

#include "lambda_slot.h"
#include "trace_p.h"

#include <QDebug>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>
#include <QTimer>

namespace Zentu {

// Long enough for a program that saves by deleting and writing anew.
static constexpr int RewatchDelayMs = 250;

FileWatcher::FileWatcher(QObject* parent)
    : QObject(parent)
    , watcher(new QFileSystemWatcher(this))
{
    connect(watcher, SIGNAL(fileChanged(QString)), this, SLOT(onFileChanged(QString)));
}

FileWatcher::~FileWatcher() = default;

void FileWatcher::addFile(const QString& path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        qCritical() << this << "failed to watch:" << path << "not exist";
        return;
    }
    if (!info.isFile()) {
        qCritical() << this << "failed to watch:" << path << "not a file";
        return;
    }
    Trace() << this << "start watching" << path;
    watcher->addPath(path);
}

void FileWatcher::removeFile(const QString& path)
{
    Trace() << this << "stop watching:" << path;
    watcher->removePath(path);
}

// The path is a copy: that which Qt passes goes with the watcher. NOLINTNEXTLINE(performance-*)
void FileWatcher::onFileChanged(QString path)
{
    Trace() << this << "file changed:" << path;
    watcher->removePath(path);
    const QPointer<QObject> alive(this);
    Q_EMIT fileChanged(path);
    if (!alive)
        return;

    auto* rewatch = new LambdaSlotWrapper(this, [this, path] {
        if (QFile::exists(path)) {
            Trace() << this << "re-watch:" << path;
            watcher->addPath(path);
        } else {
            Trace() << this << "cancel re-watch:" << path << "file not exists";
        }
    });
    rewatch->autoDelete = true;
    QTimer::singleShot(RewatchDelayMs, rewatch, SLOT(trigger()));
}

} // namespace Zentu
