// SPDX-License-Identifier: MIT
//
// Has listeners of a changed file call back into the watcher, and compares what comes of it with a
// model of its steps. No time passes by itself, and no file changes by itself.

#include "file_watcher.h"
#include "lambda_slot.h"

#include "recorder.h"
#include "story.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QFileSystemWatcher>
#include <QPointer>
#include <QTemporaryDir>

using namespace Support;

namespace {

struct Library
{
    using Watcher = Zentu::FileWatcher;

    static void tellTo(Watcher* /*watcher*/, Story* /*story*/) { }

    static void change(Watcher* watcher, const QString& path)
    {
        QVERIFY(QMetaObject::invokeMethod(watcher, "onFileChanged", Q_ARG(QString, path)));
    }

    static void endFirstDelay(Watcher* watcher)
    {
        if (auto* const rewatch = watcher->findChild<Zentu::LambdaSlotWrapper*>()) {
            rewatch->trigger();
            QCoreApplication::sendPostedEvents(rewatch, QEvent::DeferredDelete);
        }
    }
};

/// The watcher by its steps.
class ModelWatcher : public QObject
{
    Q_OBJECT

public:
    void addFile(const QString& path)
    {
        const QFileInfo info(path);
        if (!info.exists()) {
            story->say(critical(about("failed to watch:", path) + QLatin1String("not exist")));
        } else if (!info.isFile()) {
            story->say(critical(about("failed to watch:", path) + QLatin1String("not a file")));
        } else {
            story->say(trace(about("start watching", path)));
            m_watcher.addPath(path);
        }
    }

    void removeFile(const QString& path)
    {
        story->say(trace(about("stop watching:", path)));
        m_watcher.removePath(path);
    }

    void change(const QString& path)
    {
        story->say(trace(about("file changed:", path)));
        m_watcher.removePath(path);
        const QPointer<QObject> alive(this);
        Q_EMIT fileChanged(path);
        if (alive)
            m_delayed.append(path);
    }

    void endFirstDelay()
    {
        if (m_delayed.isEmpty())
            return;
        const QString path = m_delayed.takeFirst();
        if (QFile::exists(path)) {
            story->say(trace(about("re-watch:", path)));
            m_watcher.addPath(path);
        } else {
            story->say(trace(about("cancel re-watch:", path) + QLatin1String("file not exists ")));
        }
    }

    Story* story = nullptr;

Q_SIGNALS:
    void fileChanged(const QString& path);

private:
    QString about(const char* text, const QString& path) const
    {
        return QLatin1String("Zentu::FileWatcher(") + printed(static_cast<const void*>(this))
            + QLatin1String(") ") + QLatin1String(text) + QLatin1Char(' ') + quoted(path)
            + QLatin1Char(' ');
    }

    QFileSystemWatcher m_watcher{this};
    QStringList m_delayed;
};

struct Model
{
    using Watcher = ModelWatcher;

    static void tellTo(Watcher* watcher, Story* story) { watcher->story = story; }
    static void change(Watcher* watcher, const QString& path) { watcher->change(path); }
    static void endFirstDelay(Watcher* watcher) { watcher->endFirstDelay(); }
};

template <typename Kind>
class Tale : public Story
{
public:
    Tale(quint32 seed, const QString& folder)
        : Story(seed)
        , m_folder(folder)
    {
        for (const char* const name : {"a", "b", "\xc3\xa4"})
            m_paths.append(m_folder.filePath(QString::fromUtf8(name)));
        m_paths.append(folder);
        m_paths.append(QString());
        m_recorder.onEntry([this](const Entry& entry) { say(asLine(entry)); });
    }

private:
    using Watcher = typename Kind::Watcher;

    QString anyPath() { return m_paths.at(below(static_cast<int>(m_paths.size()))); }

    void create()
    {
        m_watcher = new Watcher;
        call(m_watcher, QStringLiteral("watcher"));
        Kind::tellTo(m_watcher, this);
        QObject::connect(m_watcher, &Watcher::fileChanged, m_watcher,
            [this](const QString& path) { calledBack(QLatin1String("changed: ") + path); });
    }

    void toggleFile()
    {
        const QString path = m_paths.at(below(3));
        if (QFile::remove(path))
            return;
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly));
    }

    void step() override
    {
        if (!m_watcher) {
            create();
            return;
        }
        const int what = below(12);
        switch (what) {
        case 0:
        case 1:
            toggleFile();
            break;
        case 2:
        case 3:
        case 4:
            m_watcher->addFile(anyPath());
            break;
        case 5:
            m_watcher->removeFile(anyPath());
            break;
        case 6:
        case 7:
        case 8:
            Kind::change(m_watcher, anyPath());
            break;
        case 9:
        case 10:
            Kind::endFirstDelay(m_watcher);
            break;
        default:
            if (onceIn(4))
                delete m_watcher;
            break;
        }
        if (m_watcher) {
            say(QLatin1String("watched: ")
                + m_watcher->template findChild<QFileSystemWatcher*>()->files().join(
                    QLatin1Char(' ')));
        }
    }

    void end() override
    {
        delete m_watcher;
        for (int i = 0; i < 3; ++i)
            QFile::remove(m_paths.at(i));
    }

    Recorder m_recorder;
    QDir m_folder;
    QStringList m_paths;
    QPointer<Watcher> m_watcher;
};

} // namespace

class FileWatcherRandomTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void callbacksEqualTheModel_data() { addSeeds(20); }
    void callbacksEqualTheModel();
};

void FileWatcherRandomTest::callbacksEqualTheModel()
{
    QFETCH(quint32, seed);
    const QTemporaryDir folder;
    const QStringList library = Tale<Library>(seed, folder.path()).tell(200);
    QVERIFY(library.size() > 100);
    compareAccounts(library, Tale<Model>(seed, folder.path()).tell(200));
}

QTEST_GUILESS_MAIN(FileWatcherRandomTest)
#include "tst_file_watcher_random.moc"
