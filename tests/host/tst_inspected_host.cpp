// SPDX-License-Identifier: MIT
//
// The Workbench with the inspector beside it, as a process: what it does and says is what it does
// and says alone.

#include <QApplication>
#include <QFile>
#include <QHash>
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
    return result;
}

// A window, and where there is an inspector, the inspector's.
void InspectedHostTest::hostOfOtherTests()
{
    QWidget window;
    window.show();
    const auto isInspected = [] {
        const QWidgetList windows = QApplication::topLevelWidgets();
        return std::any_of(windows.begin(), windows.end(), [](const QWidget* shown) {
            return shown->objectName() == QLatin1String("zentu_inspector");
        });
    };
    if (qEnvironmentVariableIsSet("QT_QPA_GENERIC_PLUGINS"))
        QTRY_VERIFY(isInspected());
}

// The application's own loop never runs in a test, and so does not end.
void InspectedHostTest::hostWithoutALoopEnds()
{
    const Result result = run(QStringLiteral(ZENTU_INSPECT),
        {QCoreApplication::applicationFilePath(), QStringLiteral("hostOfOtherTests")});
    QVERIFY2(result.exitCode == 0, qPrintable(result.out + result.error));
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

QTEST_MAIN(InspectedHostTest)

#include "tst_inspected_host.moc"
