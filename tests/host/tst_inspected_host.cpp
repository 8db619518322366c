// SPDX-License-Identifier: MIT
//
// The Workbench with the inspector beside it, as a process: what it does and says is what it does
// and says alone.

#include <QApplication>
#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QLineEdit>
#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>
#include <QTest>
#include <QWidget>

#include <algorithm>
#include <memory>

namespace {

struct Result
{
    int exitCode = -1;
    QString out;
    QString error;
    QStringList trace;
    QByteArray settings;
};

} // namespace

class InspectedHostTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void hostOfOtherTests();
    void hostWithoutALoopEnds();
    void linesAreThoseOfTheHostAlone();
    void commandSaysWhatIsWrong_data();
    void commandSaysWhatIsWrong();
    void commandLooksAtTheLibraries_data();
    void commandLooksAtTheLibraries();

private:
    static Result run(const QString& program, const QStringList& arguments);
};

/// Lines without their time and thread, with the addresses numbered as they come.
static QStringList normalized(const QString& text)
{
    QHash<QString, int> numbers;
    static const QRegularExpression address(QStringLiteral("0x[0-9a-f]+"));
    QStringList result;
    for (QString line : text.split(QLatin1Char('\n'))) {
        line = line.section(QLatin1Char(' '), 3);
        for (auto match = address.match(line); match.hasMatch();
             match = address.match(line, match.capturedStart() + 1)) {
            const QString found = match.captured();
            if (!numbers.contains(found))
                numbers.insert(found, static_cast<int>(numbers.size()));
            line.replace(match.capturedStart(), match.capturedLength(),
                QStringLiteral("@%1").arg(numbers.value(found)));
        }
        result.append(line);
    }
    return result;
}

/// The host's messages, without those of the platform, which depend on when windows are laid out.
static QStringList messages(const Result& result)
{
    QStringList lines;
    for (const QString& line : result.error.split(QLatin1Char('\n'))) {
        if (!line.startsWith(QLatin1String("This plugin does not support")))
            lines.append(QStringLiteral("- - - ") + line);
    }
    return normalized(lines.join(QLatin1Char('\n')));
}

static QByteArray content(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Result InspectedHostTest::run(const QString& program, const QStringList& arguments)
{
    const QTemporaryDir folder;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    const QString trace = folder.filePath(QStringLiteral("trace"));
    environment.insert(
        QStringLiteral("XDG_CONFIG_HOME"), folder.filePath(QStringLiteral("config")));
    environment.insert(QStringLiteral("XDG_RUNTIME_DIR"), folder.path());
    environment.insert(QStringLiteral("WISP_TRACE"), trace);
    environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("qt.*=false"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(program, arguments);
    Result result;
    if (!process.waitForFinished(60000))
        return result;
    result.exitCode = process.exitCode();
    result.out = QString::fromUtf8(process.readAllStandardOutput());
    result.error = QString::fromUtf8(process.readAllStandardError());
    QFile file(trace);
    if (file.open(QIODevice::ReadOnly))
        result.trace = normalized(QString::fromUtf8(file.readAll()));
    QDirIterator files(
        folder.filePath(QStringLiteral("config")), QDir::Files, QDirIterator::Subdirectories);
    while (files.hasNext())
        result.settings += content(files.next());
    return result;
}

// A window, which keeps the focus when there is an inspector's beside it.
void InspectedHostTest::hostOfOtherTests()
{
    QWidget window;
    QLineEdit edit(&window);
    window.show();
    edit.setFocus();
    // Without a screen, whatever is shown last is active.
    const bool hasFocus = QGuiApplication::platformName() != QLatin1String("offscreen");
    QVERIFY(!hasFocus || QTest::qWaitForWindowActive(&window));
    const auto isInspected = [] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return std::any_of(windows.begin(), windows.end(), [](const QWidget* shown) {
            return shown->objectName() == QLatin1String("zentu_inspector");
        });
    };
    if (qEnvironmentVariableIsSet("QT_QPA_GENERIC_PLUGINS"))
        QTRY_VERIFY(isInspected());
    QTest::qWait(100);
    QVERIFY(!hasFocus || (window.isActiveWindow() && edit.hasFocus()));
}

// The application's own loop never runs in a test, and so does not end. A test has a message
// handler of its own, too.
void InspectedHostTest::hostWithoutALoopEnds()
{
    const Result result = run(QStringLiteral(ZENTU_INSPECT),
        {QCoreApplication::applicationFilePath(), QStringLiteral("hostOfOtherTests")});
    QVERIFY2(result.exitCode == 0, qPrintable(result.out + result.error));
    QVERIFY2(!result.out.contains(QLatin1String("Zentu::")), qPrintable(result.out));
}

void InspectedHostTest::linesAreThoseOfTheHostAlone()
{
    const QTemporaryDir folder;
    const QString notes = folder.filePath(QStringLiteral("notes.txt"));
    QFile file(notes);
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write("some\nlines\n");
    file.close();
    const QStringList arguments{
        QStringLiteral("--snapshot"), folder.filePath(QStringLiteral("shot.png")), notes};
    const Result alone = run(QStringLiteral(ZENTU_WORKBENCH), arguments);
    const Result inspected = run(
        QStringLiteral(ZENTU_INSPECT), QStringList{QStringLiteral(ZENTU_WORKBENCH)} + arguments);
    QCOMPARE(alone.exitCode, 0);
    QCOMPARE(inspected.exitCode, 0);
    QVERIFY2(alone.trace.size() > 50, qPrintable(QString::number(alone.trace.size())));
    for (int i = 0; i < std::min(alone.trace.size(), inspected.trace.size()); ++i)
        QCOMPARE(inspected.trace.at(i), alone.trace.at(i));
    QCOMPARE(inspected.trace.size(), alone.trace.size());
    QCOMPARE(inspected.out, alone.out);
    QCOMPARE(messages(inspected), messages(alone));
    QVERIFY(!alone.settings.isEmpty());
    QCOMPARE(inspected.settings, alone.settings);
}

void InspectedHostTest::commandSaysWhatIsWrong_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("says");
    QTest::newRow("nothing") << QStringList() << 2 << "usage: zentu-inspect";
    QTest::newRow("no such program") << QStringList{QStringLiteral("/no/such/program")} << 2
                                     << "zentu-inspect: there is no program /no/such/program";
    QTest::newRow("without Qt") << QStringList{QStringLiteral("/bin/true")} << 2
                                << "zentu-inspect: /bin/true is not linked with a shared Qt";
    QTest::newRow("help") << QStringList{QStringLiteral("--help")} << 0 << "usage: zentu-inspect";
}

void InspectedHostTest::commandSaysWhatIsWrong()
{
    QFETCH(const QStringList, arguments);
    QFETCH(const int, exitCode);
    QFETCH(const QString, says);
    const Result result = run(QStringLiteral(ZENTU_INSPECT), arguments);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2((result.out + result.error).startsWith(says), qPrintable(result.error));
}

void InspectedHostTest::commandLooksAtTheLibraries_data()
{
    QTest::addColumn<QString>("libraries");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QString>("says");
    const QString core = QStringLiteral("libQt%1Core.so => /lib/libQt%1Core.so\n");
    QTest::newRow("another Qt") << core.arg(11 - QT_VERSION_MAJOR) << 2
                                << QStringLiteral(
                                       "zentu-inspect: there is no inspector for Qt %1 in")
                                       .arg(11 - QT_VERSION_MAJOR);
    QTest::newRow("another logger")
        << core.arg(QT_VERSION_MAJOR) + QStringLiteral("libwisp.so => /bin/true\n") << 0
        << "zentu-inspect: the logger /bin/true cannot be listened to, so no lines are seen";
    QTest::newRow("its own") << core.arg(QT_VERSION_MAJOR) << 0 << QString();
}

// What a program is linked with is asked of a command that has been put first.
void InspectedHostTest::commandLooksAtTheLibraries()
{
    QFETCH(const QString, libraries);
    QFETCH(const int, exitCode);
    QFETCH(const QString, says);
    const QTemporaryDir folder;
    QFile command(folder.filePath(QStringLiteral("ldd")));
    QVERIFY(command.open(QIODevice::WriteOnly));
    command.write("#!/bin/sh\ncat <<'END'\n" + libraries.toUtf8() + "END\n");
    command.close();
    command.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QFile::encodeName(folder.path()) + ':' + path);
    const Result result = run(QStringLiteral(ZENTU_INSPECT), {QStringLiteral("/bin/true")});
    qputenv("PATH", path);
    QCOMPARE(result.exitCode, exitCode);
    QVERIFY2(result.error.startsWith(says) && result.error.isEmpty() == says.isEmpty(),
        qPrintable(result.error));
}

QTEST_MAIN(InspectedHostTest)

#include "tst_inspected_host.moc"
