// SPDX-License-Identifier: MIT
#include "file_watcher.h"

#include "lambda_slot.h"
#include "recorder.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QMetaMethod>
#include <QSaveFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Support;
using Zentu::FileWatcher;

class FileWatcherTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void hasItsSignalAndItsSlot();
    void missingFileIsRefused();
    void folderIsRefused();
    void otherKindsOfFilesAreRefused();
    void fileIsWatchedAfterTheLine();
    void fileWatchedTwiceIsWatchedOnce();
    void removedFileIsUnwatchedAfterTheLine();
    void fileThatWasNeverAddedIsRemovedQuietly();
    void changeIsToldWhenThePathIsOffTheWatch();
    void pathIsWatchedAgainAfterTheDelay();
    void rewatchIsTimedExactly();
    void severalChangesGiveSeveralRewatches();
    void removalDoesNotCancelTheRewatch();
    void rewatchTestsForExistenceOnly();
    void deletionOfTheWatcherEndsTheRewatch();
    void programsSaveInTheirWays_data();
    void programsSaveInTheirWays();
    void deletedFileIsGivenUp();
    void recreatedWithinTheDelayIsWatchedAgain();
    void recreatedAfterTheDelayIsNot();
    void lostFolderLosesTheFile();
    void hundredFilesAtOnce();

private:
    QString path(const char* name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    QString file(const char* name)
    {
        write(path(name), "first");
        return path(name);
    }

    static void write(const QString& path, const char* text)
    {
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    QStringList watched() const
    {
        QStringList files = m_inner->files();
        files.sort();
        return files;
    }

    QString line(const char* text, const QString& path, const char* end = "") const
    {
        return printed(static_cast<const QObject*>(m_watcher.get())) + QLatin1Char(' ')
            + QLatin1String(text) + QLatin1Char(' ') + quoted(path) + QLatin1String(end);
    }

    // The lines of a change, and what became of the path.
    QStringList changeAnd(const QString& path, const char* text, const char* end = " ") const
    {
        return {trace(line("file changed:", path, " ")), trace(line(text, path, end))};
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileWatcher> m_watcher;
    QFileSystemWatcher* m_inner = nullptr;
    std::unique_ptr<Recorder> m_recorder;
    std::unique_ptr<QSignalSpy> m_changed;
};

void FileWatcherTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
    m_watcher = std::make_unique<FileWatcher>();
    m_inner = m_watcher->findChild<QFileSystemWatcher*>();
    QVERIFY(m_inner);
    m_changed = std::make_unique<QSignalSpy>(m_watcher.get(), &FileWatcher::fileChanged);
    m_recorder = std::make_unique<Recorder>();
}

void FileWatcherTest::cleanup()
{
    m_watcher.reset();
    const QStringList unexpected = m_recorder->take();
    m_recorder.reset();
    QCOMPARE(unexpected, QStringList());
}

void FileWatcherTest::hasItsSignalAndItsSlot()
{
    const QMetaObject& meta = FileWatcher::staticMetaObject;
    QCOMPARE(meta.className(), "Zentu::FileWatcher");
    QCOMPARE(meta.superClass(), &QObject::staticMetaObject);
    QCOMPARE(meta.methodCount() - meta.methodOffset(), 2);
    const QMetaMethod signal = meta.method(meta.methodOffset());
    QCOMPARE(signal.methodSignature(), QByteArray("fileChanged(QString)"));
    QCOMPARE(signal.methodType(), QMetaMethod::Signal);
    const QMetaMethod slot = meta.method(meta.methodOffset() + 1);
    QCOMPARE(slot.methodSignature(), QByteArray("onFileChanged(QString)"));
    QCOMPARE(slot.methodType(), QMetaMethod::Slot);
    QCOMPARE(slot.access(), QMetaMethod::Private);
    QCOMPARE(meta.propertyCount(), meta.propertyOffset());
    QCOMPARE(sizeof(FileWatcher), sizeof(QObject) + sizeof(void*));
    QCOMPARE(m_inner->parent(), m_watcher.get());
    QVERIFY(!m_watcher->parent());
    QVERIFY(watched().isEmpty());
    QVERIFY(QObject::disconnect(
        m_inner, SIGNAL(fileChanged(QString)), m_watcher.get(), SLOT(onFileChanged(QString))));
}

void FileWatcherTest::missingFileIsRefused()
{
    m_watcher->addFile(path("missing"));
    QCOMPARE(m_recorder->take(),
        QStringList(critical(line("failed to watch:", path("missing"), " not exist"))));
    QVERIFY(watched().isEmpty());
    m_watcher->addFile(QString());
    QCOMPARE(m_recorder->take(),
        QStringList(critical(line("failed to watch:", QString(), " not exist"))));
}

void FileWatcherTest::folderIsRefused()
{
    m_watcher->addFile(m_folder->path());
    QCOMPARE(m_recorder->take(),
        QStringList(critical(line("failed to watch:", m_folder->path(), " not a file"))));
    QVERIFY(watched().isEmpty());
    QVERIFY(m_inner->directories().isEmpty());
}

void FileWatcherTest::otherKindsOfFilesAreRefused()
{
    const QString device = QStringLiteral("/dev/null");
    m_watcher->addFile(device);
    QCOMPARE(
        m_recorder->take(), QStringList(critical(line("failed to watch:", device, " not a file"))));
    QVERIFY(watched().isEmpty());
}

void FileWatcherTest::fileIsWatchedAfterTheLine()
{
    const QString name = file("a \u00e4\u4e2d\"b");
    bool watchedAtTheLine = true;
    m_recorder->onEntry([&](const Entry&) { watchedAtTheLine = !watched().isEmpty(); });
    m_watcher->addFile(name);
    m_recorder->onEntry({});
    QVERIFY(!watchedAtTheLine);
    QCOMPARE(watched(), QStringList(name));
    QString expected = trace(line("start watching", name, " "));
    QCOMPARE(m_recorder->take(), QStringList(expected.replace(QChar(0x4e2d), QLatin1Char('?'))));
}

void FileWatcherTest::fileWatchedTwiceIsWatchedOnce()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    m_watcher->addFile(name);
    QCOMPARE(watched(), QStringList(name));
    const QString expected = trace(line("start watching", name, " "));
    QCOMPARE(m_recorder->take(), QStringList({expected, expected}));
}

void FileWatcherTest::removedFileIsUnwatchedAfterTheLine()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    m_recorder->clear();
    bool watchedAtTheLine = false;
    m_recorder->onEntry([&](const Entry&) { watchedAtTheLine = !watched().isEmpty(); });
    m_watcher->removeFile(name);
    m_recorder->onEntry({});
    QVERIFY(watchedAtTheLine);
    QVERIFY(watched().isEmpty());
    QCOMPARE(m_recorder->take(), QStringList(trace(line("stop watching:", name, " "))));
}

void FileWatcherTest::fileThatWasNeverAddedIsRemovedQuietly()
{
    m_watcher->removeFile(path("missing"));
    QCOMPARE(m_recorder->take(), QStringList(trace(line("stop watching:", path("missing"), " "))));
}

void FileWatcherTest::changeIsToldWhenThePathIsOffTheWatch()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    m_recorder->clear();
    QStringList order;
    m_recorder->onEntry([&](const Entry&) {
        order.append(
            watched().isEmpty() ? QStringLiteral("line, off") : QStringLiteral("line, on"));
    });
    connect(m_watcher.get(), &FileWatcher::fileChanged, this, [&] {
        order.append(
            watched().isEmpty() ? QStringLiteral("signal, off") : QStringLiteral("signal, on"));
        QCOMPARE(m_watcher->findChildren<Zentu::LambdaSlotWrapper*>().size(), 0);
    });
    write(name, "second");
    QTRY_COMPARE(m_changed->count(), 1);
    m_recorder->onEntry({});
    QCOMPARE(m_changed->first(), QVariantList{name});
    QCOMPARE(
        order.mid(0, 2), QStringList({QStringLiteral("line, on"), QStringLiteral("signal, off")}));
    QCOMPARE(m_watcher->findChildren<Zentu::LambdaSlotWrapper*>().size(), 1);
    QVERIFY(m_watcher->findChild<Zentu::LambdaSlotWrapper*>()->autoDelete);
    QTRY_COMPARE(watched(), QStringList(name));
    QCOMPARE(m_recorder->take(), changeAnd(name, "re-watch:"));
    QTRY_COMPARE(m_watcher->findChildren<Zentu::LambdaSlotWrapper*>().size(), 0);
}

void FileWatcherTest::pathIsWatchedAgainAfterTheDelay()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    m_recorder->clear();
    QElapsedTimer sinceChange;
    qint64 delay = -1;
    bool watchedAtTheLine = true;
    connect(m_watcher.get(), &FileWatcher::fileChanged, this, [&] { sinceChange.start(); });
    m_recorder->onEntry([&](const Entry& entry) {
        if (entry.text.contains(QLatin1String("re-watch:"))) {
            delay = sinceChange.elapsed();
            watchedAtTheLine = !watched().isEmpty();
        }
    });
    write(name, "second");
    QTRY_COMPARE(watched(), QStringList());
    QTRY_COMPARE(watched(), QStringList(name));
    m_recorder->onEntry({});
    // A coarse timer may be early by a twentieth.
    QVERIFY2(delay >= 237 && delay < 1000, qPrintable(QString::number(delay)));
    QVERIFY(!watchedAtTheLine);
    QCOMPARE(m_recorder->take(), changeAnd(name, "re-watch:"));

    write(name, "third");
    QTRY_COMPARE(m_changed->count(), 2);
    QTRY_COMPARE(watched(), QStringList(name));
    m_recorder->clear();
}

void FileWatcherTest::rewatchIsTimedExactly()
{
    QVERIFY(QMetaObject::invokeMethod(
        m_watcher.get(), "onFileChanged", Q_ARG(QString, QStringLiteral("/no/such/file"))));
    auto* const dispatcher = QAbstractEventDispatcher::instance();
    QList<int> intervals;
    const QList<QObject*> timers = dispatcher->findChildren<QObject*>();
    for (QObject* timer : timers) {
        if (qstrcmp(timer->metaObject()->className(), "QSingleShotTimer") != 0)
            continue;
        const auto registered = dispatcher->registeredTimers(timer);
        for (const auto& info : registered)
            intervals.append(info.interval);
    }
    QCOMPARE(intervals, QList<int>({250}));
    QTRY_COMPARE(m_recorder->entries().size(), 2);
    m_recorder->clear();
}

void FileWatcherTest::severalChangesGiveSeveralRewatches()
{
    const QString name = file("a");
    for (int i = 0; i < 3; ++i)
        QVERIFY(QMetaObject::invokeMethod(m_watcher.get(), "onFileChanged", Q_ARG(QString, name)));
    QCOMPARE(m_changed->count(), 3);
    QCOMPARE(m_watcher->findChildren<Zentu::LambdaSlotWrapper*>().size(), 3);
    const QString again = trace(line("re-watch:", name, " "));
    QTRY_COMPARE(m_recorder->entries().size(), 6);
    QCOMPARE(m_recorder->take().mid(3), QStringList({again, again, again}));
    QCOMPARE(watched(), QStringList(name));
}

void FileWatcherTest::removalDoesNotCancelTheRewatch()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    write(name, "second");
    QTRY_COMPARE(m_changed->count(), 1);
    m_watcher->removeFile(name);
    m_recorder->clear();
    QTRY_COMPARE(watched(), QStringList(name));
    QCOMPARE(m_recorder->take(), QStringList(trace(line("re-watch:", name, " "))));
}

void FileWatcherTest::rewatchTestsForExistenceOnly()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    m_recorder->clear();
    connect(m_watcher.get(), &FileWatcher::fileChanged, this, [&] {
        QFile::remove(name);
        QDir().mkdir(name);
    });
    write(name, "second");
    QTRY_COMPARE(m_inner->directories(), QStringList(name));
    QCOMPARE(m_recorder->take(), changeAnd(name, "re-watch:"));
}

void FileWatcherTest::deletionOfTheWatcherEndsTheRewatch()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    write(name, "second");
    QTRY_COMPARE(m_changed->count(), 1);
    m_watcher.reset();
    m_recorder->clear();
    // Another watcher's re-watch comes later than the one that is gone.
    FileWatcher other;
    QVERIFY(QMetaObject::invokeMethod(&other, "onFileChanged", Q_ARG(QString, name)));
    QTRY_COMPARE(m_recorder->entries().size(), 2);
    for (const QString& entry : m_recorder->take())
        QVERIFY(entry.contains(printed(static_cast<const QObject*>(&other))));
}

void FileWatcherTest::programsSaveInTheirWays_data()
{
    QTest::addColumn<QString>("way");
    for (const char* way :
        {"in place", "truncate", "append", "rename over", "save file", "symbolic link", "touch"})
        QTest::newRow(way) << QString::fromLatin1(way);
}

// Each way is heard of, and the path is watched again: a second change is heard of too.
void FileWatcherTest::programsSaveInTheirWays()
{
    QFETCH(QString, way);
    const QString name = file("a b \u00e4");
    const auto save = [&](const char* text) {
        if (way == QLatin1String("in place")) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::ReadWrite));
            file.write(text);
        } else if (way == QLatin1String("truncate")) {
            write(name, text);
        } else if (way == QLatin1String("append")) {
            QFile file(name);
            QVERIFY(file.open(QIODevice::Append));
            file.write(text);
        } else if (way == QLatin1String("rename over")) {
            write(path("new"), text);
            QCOMPARE(std::rename(QFile::encodeName(path("new")).constData(),
                         QFile::encodeName(name).constData()),
                0);
        } else if (way == QLatin1String("save file")) {
            QSaveFile file(name);
            QVERIFY(file.open(QIODevice::WriteOnly));
            file.write(text);
            QVERIFY(file.commit());
        } else if (way == QLatin1String("symbolic link") && QFileInfo(name).isSymLink()) {
            // What is watched by now is the file behind the link.
            write(name, text);
        } else if (way == QLatin1String("symbolic link")) {
            write(path(text), text);
            QFile::remove(name);
            QVERIFY(QFile::link(path(text), name));
        } else {
            QFile file(name);
            QVERIFY(file.open(QIODevice::ReadWrite));
            QVERIFY(file.setFileTime(
                QDateTime::currentDateTime().addSecs(60), QFileDevice::FileModificationTime));
        }
    };
    m_watcher->addFile(name);
    QCOMPARE(m_recorder->take(), QStringList(trace(line("start watching", name, " "))));
    int round = 0;
    for (const char* text : {"second", "third"}) {
        save(text);
        ++round;
        QTRY_COMPARE(m_changed->count(), round);
        QCOMPARE(m_changed->last(), QVariantList{name});
        QTRY_COMPARE(watched(), QStringList(name));
        QCOMPARE(m_recorder->take(), changeAnd(name, "re-watch:"));
    }
}

void FileWatcherTest::deletedFileIsGivenUp()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    m_recorder->clear();
    QFile::remove(name);
    QTRY_COMPARE(m_recorder->entries().size(), 2);
    QCOMPARE(m_recorder->take(), changeAnd(name, "cancel re-watch:", " file not exists "));
    QCOMPARE(m_changed->count(), 1);
    QVERIFY(watched().isEmpty());
}

void FileWatcherTest::recreatedWithinTheDelayIsWatchedAgain()
{
    const QString name = file("a");
    m_watcher->addFile(name);
    m_recorder->clear();
    connect(m_watcher.get(), &FileWatcher::fileChanged, this, [&] { write(name, "second"); });
    QFile::remove(name);
    QTRY_COMPARE(m_recorder->entries().size(), 2);
    QCOMPARE(m_recorder->take(), changeAnd(name, "re-watch:"));
    QCOMPARE(watched(), QStringList(name));
    QCOMPARE(m_changed->count(), 1);
}

void FileWatcherTest::recreatedAfterTheDelayIsNot()
{
    const QString name = file("a");
    const QString other = file("other");
    m_watcher->addFile(name);
    m_watcher->addFile(other);
    QFile::remove(name);
    QTRY_COMPARE(m_recorder->entries().size(), 4);
    write(name, "second");
    write(other, "second");
    QTRY_COMPARE(m_changed->count(), 2);
    QCOMPARE(m_changed->last(), QVariantList{other});
    QTRY_COMPARE(watched(), QStringList(other));
    m_recorder->clear();
}

void FileWatcherTest::lostFolderLosesTheFile()
{
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("sub")));
    const QString name = file("sub/a");
    m_watcher->addFile(name);
    m_recorder->clear();
    QVERIFY(QDir(path("sub")).removeRecursively());
    QTRY_COMPARE(m_recorder->entries().size(), 2);
    QCOMPARE(m_recorder->take(), changeAnd(name, "cancel re-watch:", " file not exists "));
    QVERIFY(watched().isEmpty());
}

void FileWatcherTest::hundredFilesAtOnce()
{
    QStringList names;
    for (int i = 100; i < 200; ++i) {
        names.append(file(qPrintable(QString::number(i))));
        m_watcher->addFile(names.last());
    }
    QCOMPARE(watched(), names);
    for (const QString& name : qAsConst(names))
        write(name, "second");
    QTRY_VERIFY(m_changed->count() >= 100);
    QStringList told;
    for (const QVariantList& arguments : qAsConst(*m_changed))
        told.append(arguments.first().toString());
    told.removeDuplicates();
    told.sort();
    QCOMPARE(told, names);
    QTRY_COMPARE(watched(), names);
    QTRY_COMPARE(m_watcher->findChildren<Zentu::LambdaSlotWrapper*>().size(), 0);
    m_recorder->clear();
}

QTEST_GUILESS_MAIN(FileWatcherTest)
#include "tst_file_watcher.moc"
