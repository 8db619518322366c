// SPDX-License-Identifier: MIT
#include "zentu_host.h"

#include "host_window.h"
#include "recorder.h"

#include <QElapsedTimer>
#include <QFile>
#include <QSaveFile>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

using namespace Support;
using namespace Zentu;

class FileReloaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void changeIsToldOnceItIsQuiet();
    void slowWriterIsWaitedFor();
    void slowWriterIsWaitedForWhenTheFileWasAway();
    void changeInThePauseOfTheWatcherCounts();
    void replacedFileIsToldAgainAndAgain();
    void fileThatWasAwayIsFoundAgain();
    void fileThatIsNotThereIsToldWhenItComes();
    void acceptedChangeIsNotTold();
    void removedFileIsNotTold();
    void reactionMayDeleteTheReloader();

private:
    QString path() const { return m_folder->filePath(QStringLiteral("notes.txt")); }
    void write(const QByteArray& text, QIODevice::OpenMode mode = QIODevice::WriteOnly)
    {
        QFile file(path());
        QVERIFY(file.open(mode));
        QCOMPARE(file.write(text), qint64(text.size()));
    }
    QString writeSlowly();
    void replace(const QByteArray& text)
    {
        QSaveFile file(path());
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(text);
        QVERIFY(file.commit());
    }
    // What the host shows: the text of the file, or that it is gone.
    void reload(const QString& changed)
    {
        QCOMPARE(changed, path());
        QFile file(changed);
        m_told.append(file.open(QIODevice::ReadOnly) ? QString::fromLatin1(file.readAll())
                                                     : QStringLiteral("gone"));
    }

    std::unique_ptr<Recorder> m_recorder;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<FileReloader> m_reloader;
    QStringList m_told;
};

void FileReloaderTest::init()
{
    m_recorder = std::make_unique<Recorder>();
    m_folder = std::make_unique<QTemporaryDir>();
    m_reloader = std::make_unique<FileReloader>([this](const QString& path) { reload(path); });
    m_told.clear();
    write("one");
    m_reloader->add(path());
}

void FileReloaderTest::cleanup()
{
    m_reloader.reset();
    QCOMPARE(surprises(*m_recorder), QStringList());
    m_recorder.reset();
}

void FileReloaderTest::changeIsToldOnceItIsQuiet()
{
    write("two");
    QTRY_COMPARE(m_told, QStringList(QStringLiteral("two")));
    write("three");
    QTRY_COMPARE(m_told.size(), 2);
    QCOMPARE(m_told.last(), QStringLiteral("three"));
}

// Longer than the pause of the watcher, and never longer silent than a reloader waits.
QString FileReloaderTest::writeSlowly()
{
    QFile file(path());
    const bool isOpen = file.open(QIODevice::WriteOnly);
    QByteArray text;
    for (int line = 0; isOpen && line < 8; ++line) {
        text += "line\n";
        file.write("line\n");
        file.flush();
        QTest::qWait(60);
    }
    return QString::fromLatin1(text);
}

void FileReloaderTest::slowWriterIsWaitedFor()
{
    const QString text = writeSlowly();
    QCOMPARE(m_told, QStringList());
    QTRY_COMPARE(m_told, QStringList(text));
}

void FileReloaderTest::slowWriterIsWaitedForWhenTheFileWasAway()
{
    QVERIFY(QFile::remove(path()));
    QTRY_COMPARE(m_told, QStringList(QStringLiteral("gone")));
    m_told.clear();
    const QString text = writeSlowly();
    QCOMPARE(m_told, QStringList());
    QTRY_COMPARE(m_told, QStringList(text));
}

void FileReloaderTest::changeInThePauseOfTheWatcherCounts()
{
    write("half ");
    QTest::qWait(200);
    write("and half", QIODevice::Append);
    QElapsedTimer quiet;
    quiet.start();
    QTRY_COMPARE(m_told, QStringList(QStringLiteral("half and half")));
    // Timers may be a twentieth early.
    QVERIFY(quiet.elapsed() >= FileReloader::QuietMs * 9 / 10);
}

void FileReloaderTest::replacedFileIsToldAgainAndAgain()
{
    for (const char* const text : {"two", "three"}) {
        replace(text);
        QTRY_VERIFY(!m_told.isEmpty());
        QCOMPARE(m_told, QStringList(QString::fromLatin1(text)));
        m_told.clear();
    }
}

void FileReloaderTest::fileThatWasAwayIsFoundAgain()
{
    QVERIFY(QFile::remove(path()));
    QTRY_COMPARE(m_told, QStringList(QStringLiteral("gone")));
    // Longer than the watcher would look for it.
    QTest::qWait(FileReloader::QuietMs + 60);
    write("back");
    QTRY_COMPARE(m_told, QStringList({QStringLiteral("gone"), QStringLiteral("back")}));
    write("and on");
    QTRY_COMPARE(m_told.size(), 3);
    QCOMPARE(m_told.last(), QStringLiteral("and on"));
}

void FileReloaderTest::fileThatIsNotThereIsToldWhenItComes()
{
    m_reloader->remove(path());
    QVERIFY(QFile::remove(path()));
    m_reloader->add(path());
    QTest::qWait(FileReloader::QuietMs + 60);
    QVERIFY(m_told.isEmpty());
    write("new");
    QTRY_COMPARE(m_told, QStringList(QStringLiteral("new")));
}

void FileReloaderTest::acceptedChangeIsNotTold()
{
    replace("my own");
    m_reloader->accept(path());
    QTest::qWait(FileReloader::QuietMs + 60);
    QVERIFY(m_told.isEmpty());
    replace("another's");
    QTRY_COMPARE(m_told, QStringList(QStringLiteral("another's")));
}

void FileReloaderTest::removedFileIsNotTold()
{
    write("two");
    // The change has been heard, and is waited with.
    QTest::qWait(100);
    m_reloader->remove(path());
    m_reloader->remove(path());
    m_reloader->accept(path());
    // The watcher watches it again all the same.
    QTest::qWait(FileReloader::QuietMs);
    write("three");
    QTest::qWait(FileReloader::QuietMs + 60);
    QCOMPARE(m_told, QStringList());
}

void FileReloaderTest::reactionMayDeleteTheReloader()
{
    m_reloader = std::make_unique<FileReloader>(
        [this, text = QStringLiteral("told")](const QString& /*path*/) {
            m_reloader.reset();
            m_told.append(text);
        });
    m_reloader->add(path());
    write("two");
    QTRY_COMPARE(m_told, QStringList(QStringLiteral("told")));
}

QTEST_GUILESS_MAIN(FileReloaderTest)
#include "tst_file_reloader.moc"
