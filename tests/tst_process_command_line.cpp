// SPDX-License-Identifier: MIT
//
// Runs itself as a small tool, to see what it writes where, and how it ends.

#include "zentu_host.h"

#include <QProcess>
#include <QTest>

#include <memory>

using namespace Zentu;

namespace {

int runTool(int argc, char** argv)
{
    std::unique_ptr<QCoreApplication> application;
    if (!qEnvironmentVariableIsSet("ZENTU_TEST_NO_APPLICATION"))
        application = std::make_unique<QCoreApplication>(argc, argv);
    if (qEnvironmentVariableIsSet("ZENTU_TEST_NAME"))
        QCoreApplication::setApplicationName(qEnvironmentVariable("ZENTU_TEST_NAME"));
    QCoreApplication::setApplicationVersion(QStringLiteral("2.5"));

    CmdLineParser parser(QStringLiteral("tool"));
    parser.setBrief(QStringLiteral("Handles 100% of it: größer."));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addVersionOption({QStringLiteral("-v"), QStringLiteral("--version")});
    parser.addOption(
        QStringLiteral("--list"), QStringLiteral("Some."), QStringLiteral("ValueList"));
    if (qEnvironmentVariableIsSet("ZENTU_TEST_LISTS"))
        processCommandLine(parser, QCoreApplication::arguments(), &CmdLineParser::parseB);
    else if (application)
        processCommandLine(parser);
    else
        processCommandLine(parser, argc, argv);
    std::printf("list: %s\n", qPrintable(parser.getValue(QStringLiteral("list"))));
    return 3;
}

} // namespace

class ProcessCommandLineTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void programEndsOrGoesOn_data();
    void programEndsOrGoesOn();
};

void ProcessCommandLineTest::programEndsOrGoesOn_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::addColumn<QByteArrayList>("environment");
    QTest::addColumn<int>("exitCode");
    QTest::addColumn<QByteArray>("output");
    QTest::addColumn<QByteArray>("error");
    const auto row = [](const char* name, const QString& arguments, int exitCode,
                         const QByteArray& output, const QByteArray& error,
                         const QByteArrayList& environment = {}) {
        QTest::newRow(name) << arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts) << environment
                            << exitCode << output << error;
    };
    const QByteArray help = "Brief:\n  Handles 100% of it: größer.\nUsage:\n  tool [options]\n"
                            "Options:\n  -h, --help          Show this help.\n"
                            "  -v, --version       Show version information.\n"
                            "  --list <ValueList>  Some.\n";
    row("nothing to say", QString(), 3, "list: \n", "");
    row("a list takes one", QStringLiteral("--list a b"), 3, "list: a\n", "");
    row("or all", QStringLiteral("--list a b"), 3, "list: a&&b\n", "", {"ZENTU_TEST_LISTS"});
    row("help", QStringLiteral("--help"), 0, help, "");
    row("version", QStringLiteral("-v"), 0, "tst_process_command_line 2.5\n", "");
    row("version comes before help", QStringLiteral("-h -v"), 0, "tst_process_command_line 2.5\n",
        "");
    row("name of the application", QStringLiteral("-v"), 0, "A Tool 2.5\n", "",
        {"ZENTU_TEST_NAME=A Tool"});
    row("unknown option", QStringLiteral("--nope"), 1, "",
        "tst_process_command_line: unknown option: --nope\n");
    row("error comes before help", QStringLiteral("--help --größer"), 1, "",
        "tst_process_command_line: unknown option: --größer\n");
    row("error before the application", QStringLiteral("--größer"), 1, "",
        "tst_process_command_line: unknown option: --größer\n", {"ZENTU_TEST_NO_APPLICATION"});
    row("version before the application", QStringLiteral("-v"), 0, "A Tool 2.5\n", "",
        {"ZENTU_TEST_NO_APPLICATION", "ZENTU_TEST_NAME=A Tool"});
    row("missing value", QStringLiteral("--list"), 1, "", "A Tool: missing value: --list\n",
        {"ZENTU_TEST_NAME=A Tool"});
}

void ProcessCommandLineTest::programEndsOrGoesOn()
{
    QFETCH(QStringList, arguments);
    QFETCH(QByteArrayList, environment);
    QProcess tool;
    QProcessEnvironment variables = QProcessEnvironment::systemEnvironment();
    variables.insert(QStringLiteral("ZENTU_TEST_TOOL"), QStringLiteral("1"));
    variables.insert(QStringLiteral("LC_ALL"), QStringLiteral("C.UTF-8"));
    for (const QByteArray& variable : qAsConst(environment)) {
        const QString text = QString::fromLatin1(variable);
        variables.insert(text.section(QLatin1Char('='), 0, 0), text.section(QLatin1Char('='), 1));
    }
    tool.setProcessEnvironment(variables);
    tool.start(QCoreApplication::applicationFilePath(), arguments);
    QVERIFY(tool.waitForFinished());
    QCOMPARE(tool.exitStatus(), QProcess::NormalExit);
    QTEST(tool.exitCode(), "exitCode");
    QTEST(tool.readAllStandardOutput(), "output");
    QTEST(tool.readAllStandardError(), "error");
}

int main(int argc, char** argv)
{
    if (qEnvironmentVariableIsSet("ZENTU_TEST_TOOL"))
        return runTool(argc, argv);
    const QCoreApplication application(argc, argv);
    ProcessCommandLineTest test;
    return QTest::qExec(&test, argc, argv);
}

#include "tst_process_command_line.moc"
