// SPDX-License-Identifier: MIT
#include "cmdline_parser.h"

#include "recorder.h"

#include <QFileInfo>
#include <QTest>

#include <type_traits>

using namespace Support;
using Zentu::CmdLineParser;

namespace {

QStringList split(const char* line)
{
    return QString::fromLatin1(line).split(QLatin1Char(' '), Qt::SkipEmptyParts);
}

QString latin(const char* text)
{
    return QString::fromLatin1(text);
}

// Of seven words, the first six fill the line.
QString repeated(const QString& word, int times)
{
    return QStringList(QVector<QString>(times, word).toList()).join(QLatin1Char(' '));
}

QString parseLine(const QStringList& args)
{
    return trace(latin("CmdLineParser parse ") + quoted(args) + QLatin1Char(' '));
}

/// A parser with an option for a file, a flag and a list.
struct Parser : CmdLineParser
{
    Parser()
        : CmdLineParser(QStringLiteral("tool"))
    {
        addOption(split("-o --output"), QString(), QStringLiteral("file"));
        addOption(QStringLiteral("-v"));
        addOption(QStringLiteral("--inc"), QString(), QStringLiteral("ValueList"));
    }
};

} // namespace

class CmdLineParserTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void isAPlainClassWithOneMember();
    void emptyNameIsThatOfTheProgram();
    void badFormsAreReportedAndNothingIsDeclared_data();
    void badFormsAreReportedAndNothingIsDeclared();
    void formsOfOneOptionMayHaveOneKey();
    void parsesWithTheTables_data();
    void parsesWithTheTables();
    void parseIsTracedFirst();
    void programPathIsSkippedWhateverItIs();
    void resultsOfAnEarlierParseAreCleared();
    void lastOccurrenceCounts();
    void dashesOfANameDoNotMatter();
    void unknownNamesAreNotSet();
    void valuesNotGivenAreNull();
    void resultsAreForgottenAfterTheLine();
    void listOfOneEmptyArgumentIsWhatJoinGives();
    void declarationsAfterAParseCount();
    void argumentsOfMainAreUtf8();
    void messageOfUnknownOptionsIsKeptAsItIs();
    void emptyParserExplainsItsUsage();
    void helpHasItsSectionsInOrder();
    void helpWrapsDescriptions_data();
    void helpWrapsDescriptions();
    void helpAndVersionOptionsAreFlagsWithATextOfTheirOwn();
    void briefIsReplaced();
    void valueListIsShownLikeAnyValue();
};

void CmdLineParserTest::isAPlainClassWithOneMember()
{
    QCOMPARE(sizeof(CmdLineParser), sizeof(void*));
    QVERIFY(!std::is_polymorphic_v<CmdLineParser>);
    QVERIFY(!std::is_copy_constructible_v<CmdLineParser>);
    QVERIFY(!std::is_copy_assignable_v<CmdLineParser>);
}

void CmdLineParserTest::emptyNameIsThatOfTheProgram()
{
    const QString program = QFileInfo(QCoreApplication::applicationFilePath()).fileName();
    const QString usage = QLatin1String("Usage:\n  ") + program + QLatin1Char('\n');
    QCOMPARE(CmdLineParser().helpMessage(), usage);
    QCOMPARE(CmdLineParser(QString()).helpMessage(), usage);
    QCOMPARE(CmdLineParser(QStringLiteral("a/b")).helpMessage(), latin("Usage:\n  a/b\n"));
}

void CmdLineParserTest::badFormsAreReportedAndNothingIsDeclared_data()
{
    QTest::addColumn<QStringList>("names");
    QTest::addColumn<QString>("line");
    QTest::addColumn<QString>("undeclared");
    QTest::newRow("no dash") << split("-x y") << latin("incorrect option form \"y\"") << latin("x");
    QTest::newRow("one dash") << split("-") << latin("incorrect option form \"-\"") << QString();
    QTest::newRow("two dashes") << split("--") << latin("incorrect option form \"--\"")
                                << QString();
    QTest::newRow("empty") << QStringList(QString()) << latin("incorrect option form \"\"")
                           << QString();
    QTest::newRow("no forms") << QStringList() << latin("incorrect option form \"\"") << QString();
    QTest::newRow("duplicate") << split("-x --help") << latin("duplicated option form \"--help\"")
                               << latin("x");
    QTest::newRow("first fault counts")
        << split("--help y") << latin("duplicated option form \"--help\"") << latin("y");
    QTest::newRow("quoted") << QStringList(latin("a\"b"))
                            << latin("incorrect option form \"a\\\"b\"") << latin("a\"b");
}

void CmdLineParserTest::badFormsAreReportedAndNothingIsDeclared()
{
    QFETCH(QStringList, names);
    QFETCH(QString, line);
    QFETCH(QString, undeclared);
    CmdLineParser parser(latin("tool"));
    parser.addOption(latin("-help"));
    const QString help = parser.helpMessage();
    Recorder recorder;
    parser.addOption(names, latin("text"), latin("value"));
    QCOMPARE(recorder.take(), QStringList(critical(latin("CmdLineParser ") + line)));
    QCOMPARE(parser.helpMessage(), help);
    QVERIFY(!parser.parse({latin("tool"), latin("-") + undeclared, latin("x")}));
    QVERIFY(!parser.isSet(undeclared));
}

void CmdLineParserTest::formsOfOneOptionMayHaveOneKey()
{
    CmdLineParser parser(latin("tool"));
    Recorder recorder;
    parser.addOption(split("-v --v"));
    QVERIFY(recorder.isEmpty());
    QVERIFY(parser.parse(split("tool ---v")));
    QVERIFY(parser.isSet(latin("v")));
    QCOMPARE(parser.helpMessage(), latin("Usage:\n  tool [options]\nOptions:\n  -v, --v  \n"));
}

void CmdLineParserTest::parsesWithTheTables_data()
{
    QTest::addColumn<bool>("lists");
    QTest::addColumn<QString>("line");
    QTest::addColumn<bool>("result");
    QTest::addColumn<QString>("output");
    QTest::addColumn<bool>("verbose");
    QTest::addColumn<QString>("inc");
    QTest::addColumn<QStringList>("positional");
    QTest::addColumn<QString>("error");

    const QString none;
    const QStringList nothing;
    const auto row = [](bool lists, const char* line, bool result, const char* output, bool verbose,
                         const char* inc, const char* positional, const char* error) {
        QTest::addRow("%s%s", lists ? "lists: " : "", line)
            << lists << latin(line) << result << latin(output) << verbose << latin(inc)
            << split(positional) << latin(error);
    };
    for (const bool lists : {false, true}) {
        row(lists, "", true, "", false, "", "", "");
        row(lists, "prog", true, "", false, "", "", "");
        row(lists, "prog a -v b", true, "", true, "", "a b", "");
        row(lists, "prog -o x --output y", true, "y", false, "", "", "");
        row(lists, "prog -o -v", false, "", false, "", "", "missing value: -o ");
        row(lists, "prog -o", false, "", false, "", "", "missing value: -o ");
        row(lists, "prog -o -v -v", false, "", true, "", "", "missing value: -o ");
        row(lists, "prog -z -- -o", false, "", false, "", "",
            "unknown option: -z -- missing value: -o ");
        row(lists, "prog --output=x", false, "", false, "", "", "unknown option: --output=x ");
        row(lists, "prog -vo x", false, "", false, "", "x", "unknown option: -vo ");
        row(lists, "prog -o x y", true, "x", false, "", "y", "");
        row(lists, "prog -o x -o", false, "x", false, "", "", "missing value: -o ");
        row(lists, "prog --inc", false, "", false, "", "", "missing value: --inc ");
        row(lists, "prog --inc -v c", false, "", false, "", "c", "missing value: --inc ");
        row(lists, "prog --inc a --inc b", true, "", false, "b", "", "");
        row(lists, "prog - -V", false, "", false, "", "", "unknown option: - -V ");
        row(lists, "-v a", true, "", false, "", "a", "");
    }
    row(false, "prog --inc a b -v", true, "", true, "a", "b", "");
    row(true, "prog --inc a b -v", true, "", true, "a&&b", "", "");
    row(true, "prog --inc a b", true, "", false, "a&&b", "", "");
    row(true, "prog --inc a b --inc c d e", true, "", false, "c&&d&&e", "", "");
    row(true, "prog x --inc a -v b", true, "", true, "a", "x b", "");
}

void CmdLineParserTest::parsesWithTheTables()
{
    QFETCH(bool, lists);
    QFETCH(QString, line);
    QFETCH(bool, result);
    QFETCH(QString, output);
    QFETCH(bool, verbose);
    QFETCH(QString, inc);
    QFETCH(QStringList, positional);
    QFETCH(QString, error);
    Parser parser;
    const QStringList args = line.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    QCOMPARE(lists ? parser.parseB(args) : parser.parse(args), result);
    QCOMPARE(parser.getValue(latin("o")), output);
    QCOMPARE(parser.isSet(latin("o")), !output.isEmpty());
    QCOMPARE(parser.isSet(latin("v")), verbose);
    QCOMPARE(parser.getValue(latin("v")), verbose ? latin("true") : QString());
    QCOMPARE(parser.getValue(latin("inc")), inc);
    QCOMPARE(parser.positionalArguments(), positional);
    QCOMPARE(parser.errorMessage(), error);
}

void CmdLineParserTest::parseIsTracedFirst()
{
    Parser parser;
    Recorder recorder;
    parser.parse(split("first -v"));
    recorder.clear();
    bool stillSet = false;
    recorder.onEntry([&](const Entry&) { stillSet = parser.isSet(latin("v")); });
    parser.parse(split("prog in.txt"));
    recorder.onEntry({});
    QVERIFY(stillSet);
    QCOMPARE(recorder.take(), QStringList(parseLine({latin("prog"), latin("in.txt")})));
    parser.parseB({latin("prog"), latin("a\"b"), QString()});
    const char* argv[] = {"prog"};
    parser.parse(1, argv);
    parser.parse(QStringList());
    QCOMPARE(recorder.take(),
        QStringList({parseLine({latin("prog"), latin("a\"b"), QString()}),
            parseLine({latin("prog")}), parseLine({})}));
}

void CmdLineParserTest::programPathIsSkippedWhateverItIs()
{
    Parser parser;
    QVERIFY(parser.parse(split("-unknown")));
    QVERIFY(parser.parse(split("-v")));
    QVERIFY(!parser.isSet(latin("v")));
    QVERIFY(parser.positionalArguments().isEmpty());
}

void CmdLineParserTest::resultsOfAnEarlierParseAreCleared()
{
    Parser parser;
    QVERIFY(!parser.parse(split("prog a -v -z --inc x -o")));
    QVERIFY(parser.parse(split("prog")));
    QVERIFY(!parser.isSet(latin("v")));
    QVERIFY(!parser.isSet(latin("inc")));
    QVERIFY(parser.positionalArguments().isEmpty());
    QVERIFY(parser.errorMessage().isEmpty());
}

void CmdLineParserTest::lastOccurrenceCounts()
{
    Parser parser;
    QVERIFY(parser.parse(split("prog --output a -output b ---o c")));
    QCOMPARE(parser.getValue(latin("--output")), latin("c"));
}

void CmdLineParserTest::dashesOfANameDoNotMatter()
{
    Parser parser;
    parser.parse(split("prog -v -o x"));
    for (const char* name : {"v", "-v", "--v", "---v"})
        QVERIFY(parser.isSet(latin(name)));
    for (const char* name : {"output", "-output", "--output", "o", "-o"})
        QCOMPARE(parser.getValue(latin(name)), latin("x"));
}

void CmdLineParserTest::unknownNamesAreNotSet()
{
    Parser parser;
    parser.parse(split("prog -v -z"));
    Recorder recorder;
    for (const char* name : {"z", "V", "", "-", "ver"}) {
        QVERIFY(!parser.isSet(latin(name)));
        QVERIFY(parser.getValue(latin(name)).isEmpty());
        QVERIFY(!parser.getValue(latin(name)).isNull());
    }
    QVERIFY(recorder.isEmpty());
}

void CmdLineParserTest::valuesNotGivenAreNull()
{
    Parser parser;
    parser.parse(split("prog"));
    QVERIFY(parser.getValue(latin("output")).isNull());
    QVERIFY(parser.getValue(latin("v")).isNull());
}

void CmdLineParserTest::resultsAreForgottenAfterTheLine()
{
    Parser parser;
    QVERIFY(!parser.parse(split("prog a -v -z -o")));
    Recorder recorder;
    QString error;
    QStringList positional;
    bool isSet = false;
    recorder.onEntry([&](const Entry&) {
        error = parser.errorMessage();
        positional = parser.positionalArguments();
        isSet = parser.isSet(latin("v"));
    });
    QVERIFY(parser.parse(split("prog")));
    recorder.onEntry({});
    QCOMPARE(error, latin("unknown option: -z missing value: -o "));
    QCOMPARE(positional, QStringList(latin("a")));
    QVERIFY(isSet);
    QVERIFY(parser.errorMessage().isEmpty());
    QVERIFY(parser.positionalArguments().isEmpty());
    QVERIFY(!parser.isSet(latin("v")));
}

void CmdLineParserTest::listOfOneEmptyArgumentIsWhatJoinGives()
{
    Parser parser;
    QVERIFY(parser.parseB({latin("prog"), latin("--inc"), latin("")}));
    QVERIFY(parser.isSet(latin("inc")));
    QCOMPARE(
        parser.getValue(latin("inc")).isNull(), QStringList(latin("")).join(latin("&&")).isNull());
    QVERIFY(parser.parseB({latin("prog"), latin("-o"), latin("")}));
    QVERIFY(!parser.getValue(latin("o")).isNull());
}

void CmdLineParserTest::declarationsAfterAParseCount()
{
    Parser parser;
    QVERIFY(!parser.parse(split("prog -n")));
    parser.addOption(latin("-n"));
    QVERIFY(parser.parse(split("prog -n")));
    QVERIFY(parser.isSet(latin("n")));
}

void CmdLineParserTest::argumentsOfMainAreUtf8()
{
    Parser parser;
    const char* argv[] = {"prog", "\xc3\xa4\xe4\xb8\xad", nullptr, "-v", "--inc", "a", "b", "-z"};
    QVERIFY(parser.parse(7, argv));
    QCOMPARE(parser.positionalArguments(),
        QStringList({QStringLiteral("\u00e4\u4e2d"), QString(), latin("b")}));
    QVERIFY(parser.positionalArguments().at(1).isNull());
    QVERIFY(parser.isSet(latin("v")));
    QCOMPARE(parser.getValue(latin("inc")), latin("a"));
    QVERIFY(parser.parse(1, argv));
    QVERIFY(parser.positionalArguments().isEmpty());
    QVERIFY(parser.parse(0, argv));
}

void CmdLineParserTest::messageOfUnknownOptionsIsKeptAsItIs()
{
    Parser parser;
    QVERIFY(!parser.parse({latin("prog"), latin("-%1"), latin("-%2 %s"), latin("-o")}));
    QCOMPARE(parser.errorMessage(), latin("unknown option: -%1 -%2 %s missing value: -o "));
}

void CmdLineParserTest::emptyParserExplainsItsUsage()
{
    QCOMPARE(CmdLineParser(latin("tool")).helpMessage(), latin("Usage:\n  tool\n"));
}

void CmdLineParserTest::helpHasItsSectionsInOrder()
{
    CmdLineParser parser(latin("tool"));
    parser.setBrief(latin("Converts files."));
    parser.addHelpOption(split("-h --help"));
    parser.addOption(split("-o --output"), latin("Write the result to this file."), latin("file"));
    parser.addPositionalArgument(latin("input"), latin("The file to read."));
    QCOMPARE(parser.helpMessage(),
        latin("Brief:\n"
              "  Converts files.\n"
              "Usage:\n"
              "  tool [options] input\n"
              "Arguments:\n"
              "  input  The file to read.\n"
              "Options:\n"
              "  -h, --help           Show this help.\n"
              "  -o, --output <file>  Write the result to this file.\n"));
    parser.addPositionalArgument(latin("input"), QString());
    QVERIFY(parser.helpMessage().contains(
        latin("  tool [options] input input\n"
              "Arguments:\n  input  The file to read.\n  input  \nOptions:\n")));
}

// A row named by ten letters leaves sixty for the text.
void CmdLineParserTest::helpWrapsDescriptions_data()
{
    QTest::addColumn<QString>("description");
    QTest::addColumn<QStringList>("lines");
    const QString nine(9, QLatin1Char('n'));
    const auto word = [](int length) { return QString(length, QLatin1Char('w')); };
    const QString space(QLatin1Char(' '));
    const auto join = [&](const QStringList& words) { return words.join(space); };

    QTest::newRow("empty") << QString() << QStringList(QString());
    QTest::newRow("blank") << latin("  \t ") << QStringList();
    QTest::newRow("paragraphs") << latin("first\n\nsecond")
                                << QStringList({latin("first"), QString(), latin("second")});
    QTest::newRow("closing break") << latin("first\n") << QStringList({latin("first"), QString()});
    QTest::newRow("blank paragraph")
        << latin("first\n \nsecond") << QStringList({latin("first"), latin("second")});
    QTest::newRow("runs of blanks") << latin("  a \t b  ") << QStringList(latin("a b"));
    QTest::newRow("six words fill a line")
        << repeated(nine, 7) << QStringList({repeated(nine, 6), nine});
    QTest::newRow("first line is one shorter")
        << join({word(29), word(30)}) << QStringList({word(29), word(30)});
    QTest::newRow("first line full")
        << join({word(29), word(29)}) << QStringList(join({word(29), word(29)}));
    QTest::newRow("later line full")
        << join({word(50), word(29), word(30), word(5)})
        << QStringList({word(50), join({word(29), word(30)}), word(5)});
    QTest::newRow("59 letters") << word(59) << QStringList(word(59));
    QTest::newRow("60 letters") << word(60) << QStringList({QString(), word(60)});
    QTest::newRow("61 letters") << word(61) << QStringList({word(59), word(2)});
    QTest::newRow("75 letters, more words")
        << join({word(75), latin("and"), latin("more")})
        << QStringList({word(59), join({word(16), latin("and"), latin("more")})});
    QTest::newRow("word before a long one")
        << join({latin("ab"), word(75)}) << QStringList({join({latin("ab"), word(56)}), word(19)});
    QTest::newRow("rest is not cut again") << word(200) << QStringList({word(59), word(141)});
    QTest::newRow("long after a long rest")
        << join({word(200), word(70)}) << QStringList({word(59), word(141) + space, word(70)});
    QTest::newRow("short after a long rest")
        << join({word(200), latin("a")}) << QStringList({word(59), word(141), latin("a")});
    QTest::newRow("60 after a full line") << repeated(nine, 6) + space + word(60)
                                          << QStringList({repeated(nine, 6), QString(), word(60)});
}

void CmdLineParserTest::helpWrapsDescriptions()
{
    QFETCH(QString, description);
    QFETCH(QStringList, lines);
    CmdLineParser parser(latin("tool"));
    parser.addPositionalArgument(latin("abcdefghij"), description);
    parser.addPositionalArgument(latin("x"), latin("next"));
    QString expected = latin("Usage:\n  tool abcdefghij x\nArguments:\n  abcdefghij");
    if (lines.isEmpty())
        expected += QLatin1Char('\n');
    for (int i = 0; i < lines.size(); ++i)
        expected += QString(i == 0 ? 2 : 14, QLatin1Char(' ')) + lines.at(i) + QLatin1Char('\n');
    expected += latin("  x           next\n");
    QCOMPARE(parser.helpMessage(), expected);
}

void CmdLineParserTest::helpAndVersionOptionsAreFlagsWithATextOfTheirOwn()
{
    CmdLineParser parser(latin("tool"));
    parser.addHelpOption(split("-h --help"));
    parser.addVersionOption(split("-v"));
    QCOMPARE(parser.helpMessage(),
        latin("Usage:\n  tool [options]\nOptions:\n"
              "  -h, --help  Show this help.\n"
              "  -v          Show version information.\n"));
    QVERIFY(parser.parse(split("tool -help -v x")));
    QCOMPARE(parser.getValue(latin("h")), latin("true"));
    QCOMPARE(parser.getValue(latin("v")), latin("true"));
    QCOMPARE(parser.positionalArguments(), split("x"));
}

void CmdLineParserTest::briefIsReplaced()
{
    CmdLineParser parser(latin("tool"));
    parser.setBrief(latin("one"));
    parser.setBrief(latin("two"));
    QCOMPARE(parser.helpMessage(), latin("Brief:\n  two\nUsage:\n  tool\n"));
    parser.setBrief(QString());
    QCOMPARE(parser.helpMessage(), latin("Usage:\n  tool\n"));
}

void CmdLineParserTest::valueListIsShownLikeAnyValue()
{
    CmdLineParser parser(latin("tool"));
    parser.addOption(latin("--inc"), latin("Files."), latin("ValueList"));
    QCOMPARE(parser.helpMessage(),
        latin("Usage:\n  tool [options]\nOptions:\n  --inc <ValueList>  Files.\n"));
}

QTEST_GUILESS_MAIN(CmdLineParserTest)
#include "tst_cmdline_parser.moc"
