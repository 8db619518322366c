// SPDX-License-Identifier: MIT
//
// Runs itself as a small tool, to see what reaches the standard output.

#include "cmdline_parser.h"

#include <QProcess>
#include <QTest>

#include <cstdio>

using Zentu::CmdLineParser;

namespace {

int runTool(const QStringList& arguments)
{
    CmdLineParser parser(QStringLiteral("tool"));
    parser.setBrief(qEnvironmentVariable("ZENTU_TEST_BRIEF"));
    // Written by the host, and still in the buffer when the parser writes.
    std::fputs(qgetenv("ZENTU_TEST_BEFORE").constData(), stdout);
    parser.addHelpOption({QStringLiteral("-h")});
    const bool parsed = parser.parse(arguments);
    if (parser.isSet(QStringLiteral("h"))) {
        parser.printHelpMessage();
        return 0;
    }
    parser.printErrorMessage();
    return parsed ? 0 : 2;
}

} // namespace

class CmdLineOutputTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void errorsAreWrittenWithANewline_data();
    void errorsAreWrittenWithANewline();
    void outputStandsBehindTheHosts();
    void helpIsWrittenWithANewline_data();
    void helpIsWrittenWithANewline();
};

static void compareOutput(
    const QStringList& arguments, const QString& brief, int exitCode, const QByteArray& output)
{
    QProcess tool;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("ZENTU_TEST_TOOL"), QStringLiteral("1"));
    environment.insert(QStringLiteral("ZENTU_TEST_BRIEF"), brief);
    tool.setProcessEnvironment(environment);
    tool.start(QCoreApplication::applicationFilePath(), arguments);
    QVERIFY(tool.waitForFinished());
    QCOMPARE(tool.exitStatus(), QProcess::NormalExit);
    QCOMPARE(tool.readAllStandardError(), QByteArray());
    QCOMPARE(tool.readAllStandardOutput(), output);
    QCOMPARE(tool.exitCode(), exitCode);
}

void CmdLineOutputTest::errorsAreWrittenWithANewline_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArray>("output");
    QTest::newRow("none") << QStringList() << QByteArray("\n");
    const auto row = [](const char* name, const QString& argument, const char* printed) {
        QTest::newRow(name) << QStringList(argument)
                            << QByteArray(QByteArray("unknown option: ") + printed + " \n");
    };
    row("plain", QStringLiteral("-z"), "-z");
    row("conversions", QStringLiteral("-%s%n%d%*c"), "-%s%n%d%*c");
    row("positional conversion", QStringLiteral("-%1$s%2$n"), "-%1$s%2$n");
    row("pair", QStringLiteral("-%%"), "-%");
    row("three", QStringLiteral("-%%%"), "-%%");
    row("four", QStringLiteral("-%%%%"), "-%%");
    row("pair and conversion", QStringLiteral("-%%s%%%s"), "-%s%%s");
    row("after a digit", QStringLiteral("-%5%"), "-%5%");
    row("last", QStringLiteral("-100%"), "-100%");
    row("Latin-1", QStringLiteral("-\u00e4%\u00e4"), "-\xe4%\xe4");
    row("beyond Latin-1", QStringLiteral("-\u4e2d"), "-?");
}

void CmdLineOutputTest::errorsAreWrittenWithANewline()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArray, output);
    compareOutput(arguments, QString(), arguments.isEmpty() ? 0 : 2, output);
}

void CmdLineOutputTest::outputStandsBehindTheHosts()
{
    qputenv("ZENTU_TEST_BEFORE", "before ");
    compareOutput({}, QString(), 0, "before \n");
    compareOutput({QStringLiteral("-h")}, QString(), 0,
        "before Usage:\n  tool [options]\nOptions:\n  -h  Show this help.\n\n");
    qunsetenv("ZENTU_TEST_BEFORE");
}

void CmdLineOutputTest::helpIsWrittenWithANewline_data()
{
    QTest::addColumn<QString>("brief");
    QTest::addColumn<QByteArray>("printed");
    QTest::newRow("plain") << QStringLiteral("Does it.") << QByteArray("Does it.");
    QTest::newRow("percent") << QStringLiteral("%s at 100%% of %n")
                             << QByteArray("%s at 100% of %n");
    QTest::newRow("beyond Latin-1") << QStringLiteral("\u00e4\u4e2d") << QByteArray("\xe4?");
}

void CmdLineOutputTest::helpIsWrittenWithANewline()
{
    QFETCH(QString, brief);
    QFETCH(QByteArray, printed);
    compareOutput({QStringLiteral("-h")}, brief, 0,
        "Brief:\n  " + printed + "\nUsage:\n  tool [options]\nOptions:\n  -h  Show this help.\n\n");
}

int main(int argc, char* argv[])
{
    QCoreApplication application(argc, argv);
    if (qEnvironmentVariableIsSet("ZENTU_TEST_TOOL"))
        return runTool(QCoreApplication::arguments());
    CmdLineOutputTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_cmdline_output.moc"
