// SPDX-License-Identifier: MIT
#include <ZentuKit/FileWatcher>
#include <ZentuKit/LambdaSlotWrapper>

#include <QCoreApplication>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

static void save(const QString& path, const char* text)
{
    QSaveFile file(path);
    if (file.open(QIODevice::WriteOnly)) {
        file.write(text);
        file.commit();
    }
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("notes.txt"));
    save(path, "one");

    Zentu::FileWatcher watcher;
    watcher.addFile(path);
    int changes = 0;
    // A callable behind a signal that is named by its signature.
    Zentu::LambdaSlotWrapper::connect(&watcher, SIGNAL(fileChanged(QString)), [&] {
        std::printf("change %d\n", ++changes);
        if (changes == 2)
            QCoreApplication::quit();
    });

    // The file is replaced, which a plain QFileSystemWatcher sees once.
    save(path, "two");
    QTimer::singleShot(1000, &watcher, [&] { save(path, "three"); });
    return QCoreApplication::exec();
}
