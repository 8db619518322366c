// SPDX-License-Identifier: MIT
//
// Starts the Workbench with real files and looks at what it leaves: its exit code, what it says and
// its picture.

#include <QDir>
#include <QFile>
#include <QImage>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <memory>

namespace {

struct Result
{
    int exitCode = -1;
    QString out;
    QString error;
};

enum class XServer { Given, None, Dead };

} // namespace

Q_DECLARE_METATYPE(XServer)

class WorkbenchProcessTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();

    void helpAndVersionNeedNoDisplay_data();
    void helpAndVersionNeedNoDisplay();
    void badCommandLineEndsWithTwo_data();
    void badCommandLineEndsWithTwo();
    void withoutADisplayItSaysSo_data();
    void withoutADisplayItSaysSo();
    void snapshotShowsTheWindow();
    void snapshotThatCannotBeWrittenFails();
    void openingIsTraced();
    void traceThatCannotBeWrittenIsReported();
    void filesThatCannotBeOpenedAreNamed();
    void largeFileIsRefused();
    void listOfFilesIsOpened();

private:
    /// @p display stands for the environment's own, none, or one that nobody answers at.
    Result run(const QStringList& arguments, XServer display = XServer::Given);
    QString path(const char* name) const { return m_folder->filePath(QString::fromUtf8(name)); }
    QString file(const char* name, const QByteArray& content) const
    {
        QFile file(path(name));
        if (file.open(QIODevice::WriteOnly))
            file.write(content);
        return file.fileName();
    }
    QString trace() const
    {
        QFile file(path("trace"));
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
    }

    std::unique_ptr<QTemporaryDir> m_folder;
};

void WorkbenchProcessTest::init()
{
    m_folder = std::make_unique<QTemporaryDir>();
}

Result WorkbenchProcessTest::run(const QStringList& arguments, XServer display)
{
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("XDG_CONFIG_HOME"), path("config"));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), m_folder->path());
    if (display != XServer::Given) {
        for (const char* name : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"})
            environment.remove(QString::fromLatin1(name));
    }
    if (display == XServer::Dead)
        environment.insert(QStringLiteral("DISPLAY"), QStringLiteral(":12345"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(ZENTU_WORKBENCH), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit)
        return {};
    return {process.exitCode(), QString::fromLatin1(process.readAllStandardOutput()),
        QString::fromUtf8(process.readAllStandardError())};
}

void WorkbenchProcessTest::helpAndVersionNeedNoDisplay_data()
{
    QTest::addColumn<QString>("option");
    QTest::addColumn<QString>("start");
    const QString help =
        QStringLiteral("Brief:\n  Opens text and image files in one window.\nUsage:\n");
    const QString version = QStringLiteral("zentu-workbench 1.0.0\n");
    QTest::newRow("-h") << QStringLiteral("-h") << help;
    QTest::newRow("--help") << QStringLiteral("--help") << help;
    QTest::newRow("-v") << QStringLiteral("-v") << version;
    QTest::newRow("--version") << QStringLiteral("--version") << version;
}

void WorkbenchProcessTest::helpAndVersionNeedNoDisplay()
{
    QFETCH(QString, option);
    QFETCH(QString, start);
    const Result result = run({option}, XServer::None);
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(result.error, QString());
    QVERIFY2(result.out.startsWith(start), qPrintable(result.out));
}

void WorkbenchProcessTest::badCommandLineEndsWithTwo_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QString>("text");
    QTest::newRow("unknown") << QStringList(QStringLiteral("--bad"))
                             << QStringLiteral("unknown option: --bad \n");
    QTest::newRow("conversions") << QStringList(QStringLiteral("-%s%n"))
                                 << QStringLiteral("unknown option: -%s%n \n");
    QTest::newRow("missing") << QStringList(QStringLiteral("--snapshot"))
                             << QStringLiteral("missing value: --snapshot \n");
}

void WorkbenchProcessTest::badCommandLineEndsWithTwo()
{
    QFETCH(QStringList, arguments);
    QFETCH(QString, text);
    const Result result = run(arguments);
    QCOMPARE(result.exitCode, 2);
    QCOMPARE(result.out, text);
    QCOMPARE(result.error, QString());
}

void WorkbenchProcessTest::withoutADisplayItSaysSo_data()
{
    QTest::addColumn<XServer>("display");
    QTest::newRow("none") << XServer::None;
    QTest::newRow("dead") << XServer::Dead;
}

void WorkbenchProcessTest::withoutADisplayItSaysSo()
{
    QFETCH(XServer, display);
    const Result window = run({}, display);
    QCOMPARE(window.exitCode, 1);
    // Qt has its say about a dead display first.
    QVERIFY2(window.error.endsWith(QLatin1String(
                 "zentu-workbench: there is no display; --snapshot works without one\n")),
        qPrintable(window.error));

    const Result picture = run({QStringLiteral("--snapshot"), path("a.png")}, display);
    QCOMPARE(picture.exitCode, 0);
    QVERIFY2(picture.error.contains(
                 QLatin1String("zentu-workbench: there is no display; drawing off the screen\n")),
        qPrintable(picture.error));
    QVERIFY(!QImage(path("a.png")).isNull());
}

void WorkbenchProcessTest::snapshotShowsTheWindow()
{
    QImage red(200, 100, QImage::Format_RGB32);
    red.fill(QColor(250, 10, 20));
    QVERIFY(red.save(path("red.png")));
    const QString text = file("text.txt", "some text\n");
    const Result result = run({QStringLiteral("--snapshot"), path("a.png"), text, path("red.png")});
    QVERIFY2(result.exitCode == 0, qPrintable(result.error));
    const QImage picture(path("a.png"));
    QVERIFY(picture.width() > 600 && picture.height() > 400);
    // The picture that was opened last is in front.
    int pixels = 0;
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x)
            pixels += picture.pixelColor(x, y) == QColor(250, 10, 20);
    }
    QCOMPARE(pixels, 200 * 100);
}

void WorkbenchProcessTest::snapshotThatCannotBeWrittenFails()
{
    const Result result = run({QStringLiteral("--snapshot"), path("no/such/folder.png")});
    QCOMPARE(result.exitCode, 1);
    QVERIFY(result.error.contains(path("no/such/folder.png")));
}

void WorkbenchProcessTest::openingIsTraced()
{
    const QString text = file("a b \xc3\xa4.txt", "text");
    const Result result = run({QStringLiteral("--trace"), path("trace"),
        QStringLiteral("--snapshot"), path("a.png"), text});
    QCOMPARE(result.exitCode, 0);
    const QString lines = trace();
    QVERIFY(lines.contains(QLatin1String("type = \"document.opened\") 0\n")));
    QVERIFY(!lines.contains(QLatin1String("type = \"document.failed\"")));
    QVERIFY(lines.contains(QLatin1String("start watching \"") + text));
    QVERIFY(lines.contains(QLatin1String("push context: \"text\"\n")));
}

void WorkbenchProcessTest::traceThatCannotBeWrittenIsReported()
{
    const Result result = run({QStringLiteral("--trace"), path("no/such/folder"),
        QStringLiteral("--snapshot"), path("a.png")});
    QCOMPARE(result.exitCode, 0);
    const QStringList lines = result.error.split(QLatin1Char('\n'));
    QCOMPARE(lines.filter(path("no/such/folder")).size(), 1);
}

void WorkbenchProcessTest::filesThatCannotBeOpenedAreNamed()
{
    const QString good = file("good.txt", "text");
    const QString bad = file("bad.bin", "\xff\xfe\xfa");
    // A picture in ten characters, of more pixels than any memory holds.
    const QString huge = file("huge.pbm", "P4\n30000 30000\n");
    // Opens, and then cannot be read.
    const QString broken = QStringLiteral("/proc/self/mem");
    const Result result =
        run({QStringLiteral("--trace"), path("trace"), QStringLiteral("--snapshot"), path("a.png"),
            path("no/such/file"), bad, m_folder->path(), huge, broken, good});
    QCOMPARE(result.exitCode, 0);
    const QStringList lines = result.error.split(QLatin1Char('\n'));
    const auto failure = [](const QString& path, const char* reason) {
        return path + QLatin1String(" could not be opened: ") + QLatin1String(reason);
    };
    QVERIFY(lines.contains(failure(path("no/such/file"), "there is no such file")));
    QVERIFY(lines.contains(failure(bad, "not a text in UTF-8")));
    QVERIFY(lines.contains(failure(m_folder->path(), "it is a folder")));
    QVERIFY(lines.contains(failure(huge, "a picture of 30000 by 30000 pixels is too large")));
    QVERIFY(lines.contains(failure(broken, "Input/output error")));
    const QString traced = trace();
    QCOMPARE(traced.count(QLatin1String("type = \"document.failed\")")), 5);
    QCOMPARE(traced.count(QLatin1String("type = \"document.opened\")")), 1);
}

void WorkbenchProcessTest::largeFileIsRefused()
{
    const auto sized = [this](const char* name, qint64 size) {
        QFile file(path(name));
        return file.open(QIODevice::WriteOnly) && file.resize(size) ? file.fileName() : QString();
    };
    constexpr qint64 Limit = 64LL * 1024 * 1024;
    const QString large = sized("large.txt", Limit + 1);
    const Result result = run({QStringLiteral("--snapshot"), path("a.png"), large});
    QCOMPARE(result.exitCode, 0);
    QVERIFY(result.error.contains(
        large + QLatin1String(" could not be opened: it is larger than 64 MiB")));
}

void WorkbenchProcessTest::listOfFilesIsOpened()
{
    const QString a = file("a.txt", "a");
    const QString b = file("b.txt", "b");
    const QString c = file("c.txt", "c");
    const Result result = run({c, QStringLiteral("--open"), a, b, QStringLiteral("--trace"),
        path("trace"), QStringLiteral("--snapshot"), path("a.png")});
    QCOMPARE(result.exitCode, 0);
    QCOMPARE(trace().count(QLatin1String("type = \"document.opened\")")), 3);
}

QTEST_GUILESS_MAIN(WorkbenchProcessTest)
#include "tst_workbench_process.moc"
