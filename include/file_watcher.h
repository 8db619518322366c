// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QObject>
#include <QString>

class QFileSystemWatcher;

namespace Zentu {

/**
 * Tells when a file changes on disk, also after it has been replaced by another file.
 *
 * Many programs save by writing a new file and renaming it over the old one, which ends an ordinary
 * watch. After each change the path is therefore taken off the watch and put back 250 milliseconds
 * later if something is there again. A change within that time is never reported: read the file
 * again some 300 milliseconds after the signal if you must not miss it.
 *
 * For the thread whose event loop the watcher lives in.
 */
class ZENTU_EXPORT FileWatcher : public QObject
{
    Q_OBJECT

public:
    /// Creates a watcher that watches nothing.
    explicit FileWatcher(QObject* parent = nullptr);

    /// Ends all watches; a pending re-watch does not happen any more.
    ~FileWatcher() override;

    /**
     * Starts to watch the file at @p path.
     *
     * Reports "failed to watch:" ... "not exist" as critical if there is nothing at the path, and
     * "failed to watch:" ... "not a file" if it is no regular file; then nothing is watched. A path
     * that is watched already stays so. Whether the system can watch the file is not examined: Qt
     * warns if it cannot.
     */
    void addFile(const QString& path);

    /// Stops to watch the file at @p path, if it is watched. A re-watch that is already pending
    /// still happens.
    void removeFile(const QString& path);

Q_SIGNALS:
    /// The file at @p path was changed, replaced or removed. The path is off the watch at this
    /// moment; it is watched again 250 milliseconds later if it exists then. A slot that wants to
    /// delete the watcher calls its `deleteLater()`, as Qt has other files to tell of.
    void fileChanged(const QString& path);

private Q_SLOTS:
    void onFileChanged(QString path);

private:
    QFileSystemWatcher* watcher;
};

} // namespace Zentu
