// SPDX-License-Identifier: MIT
#include <ZentuKit/FileReloader>
#include <ZentuKit/LambdaSlotWrapper>

#include <QCoreApplication>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>

static void write(const QString& path, QIODevice::OpenMode mode, const char* text)
{
    QFile file(path);
    if (file.open(mode))
        file.write(text);
}

static void replace(const QString& path, const char* text)
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
    write(path, QIODevice::WriteOnly, "one");

    int changes = 0;
    Zentu::FileReloader reloader([&](const QString& changed) {
        QFile file(changed);
        if (file.open(QIODevice::ReadOnly))
            std::printf("%s\n", file.readAll().constData());
        // The file is replaced, which ends an ordinary watch.
        if (++changes == 1)
            replace(path, "three");
        else
            QCoreApplication::quit();
    });
    reloader.add(path);

    // Another program takes its time.
    write(path, QIODevice::WriteOnly, "half, ");
    QTimer writer;
    writer.setSingleShot(true);
    writer.start(100);
    // A callable behind a signal that is named by its signature.
    Zentu::LambdaSlotWrapper::connect(
        &writer, SIGNAL(timeout()), [&] { write(path, QIODevice::Append, "and half"); });
    return QCoreApplication::exec();
}
