// SPDX-License-Identifier: MIT
#include "cmdline_parser.h"
#include "cmdline_parser_p.h"

#include <QHash>
#include <QPair>
#include <QTest>

#include <algorithm>
#include <cstring>
#include <iterator>

using namespace Zentu;

namespace {

QString latin(const char* text)
{
    return QString::fromLatin1(text);
}

CmdOption option(const QStringList& keys, quint32 id = 1)
{
    CmdOption result;
    result.id = id;
    result.keys = keys;
    return result;
}

quint32 identityOf(const QString& key)
{
    return static_cast<quint32>(qHash(key, 0));
}

// Two keys that an option of each would share its value by, in the Qt that runs.
QPair<QString, QString> keysOfOneIdentity()
{
    QHash<quint32, QString> seen;
    for (int number = 0;; ++number) {
        const QString key = latin("k") + QString::number(number, 36);
        const QString other = seen.value(identityOf(key));
        if (!other.isEmpty())
            return {other, key};
        seen.insert(identityOf(key), key);
    }
}

// A key whose identity is zero, in the Qt that runs. It takes minutes to find one, so those that
// were found in Qt 5 and in Qt 6 are tried first.
QString keyOfIdentityZero()
{
    for (const QString& key : {QString(1, QChar(0)), latin("bchfiv")}) {
        if (identityOf(key) == 0)
            return key;
    }
    QString key = latin("aaaaaaaa");
    while (identityOf(key) != 0) {
        auto letter = key.begin();
        while (*letter == QLatin1Char('z'))
            *letter++ = QLatin1Char('a');
        letter->unicode()++;
    }
    return key;
}

// A parser is one pointer.
const _cmdline_parser_private& privateOf(const CmdLineParser& parser)
{
    static_assert(sizeof(parser) == sizeof(void*));
    const _cmdline_parser_private* d = nullptr;
    std::memcpy(&d, &parser, sizeof d);
    return *d;
}

} // namespace

class CmdLineParserPrivateTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void defaultOptionIsNoOption();
    void undeclaredKeyGivesNoOption();
    void firstOptionWithAKeyIsFound();
    void keysAreComparedExactly();
    void foundOptionIsACopy();
    void laterDeclarationsAreFound();
    void declarationsAreStoredAsGiven();
    void valuesAreStoredUnderTheHashOfTheFirstKey();
    void optionWhoseHashIsZeroIsNeverSet();
    void optionsOfOneHashShareTheirValue();
    void fieldsStandInOrder();
    void changedDeclarationsAreFoundAnew();
    void tableAlignsItsColumns();
    void emptyTableIsEmpty();
    void namesWiderThanTheTableLeaveNoRoom();
};

void CmdLineParserPrivateTest::defaultOptionIsNoOption()
{
    const CmdOption none;
    QCOMPARE(none.id, 0U);
    QVERIFY(none.names.isEmpty() && none.keys.isEmpty());
    QVERIFY(none.description.isEmpty() && none.valueName.isEmpty());
}

void CmdLineParserPrivateTest::undeclaredKeyGivesNoOption()
{
    const _cmdline_parser_private d;
    QVERIFY(!d.hasOption(latin("x")));
    const CmdOption none = d.findOptionDefine(latin("x"));
    QCOMPARE(none.id, 0U);
    QVERIFY(none.names.isEmpty() && none.keys.isEmpty());
    QVERIFY(d.appName.isEmpty() && d.brief.isEmpty() && d.posArguments.isEmpty());
    QVERIFY(d.values.isEmpty() && d.posValues.isEmpty() && d.unknownOptions.isEmpty()
        && d.missingValues.isEmpty());
}

void CmdLineParserPrivateTest::firstOptionWithAKeyIsFound()
{
    _cmdline_parser_private d;
    d.options = {option({latin("a")}, 1), option({latin("b"), latin("c")}, 2),
        option({latin("c"), latin("c")}, 3)};
    QCOMPARE(d.findOptionDefine(latin("c")).id, 2U);
    QCOMPARE(d.findOptionDefine(latin("a")).id, 1U);
    QVERIFY(d.hasOption(latin("b")));
}

void CmdLineParserPrivateTest::keysAreComparedExactly()
{
    _cmdline_parser_private d;
    d.options = {option({latin("help")})};
    for (const char* key : {"Help", "-help", "hel", "help ", ""})
        QVERIFY(!d.hasOption(latin(key)));
}

void CmdLineParserPrivateTest::foundOptionIsACopy()
{
    _cmdline_parser_private d;
    d.options = {option({latin("a")})};
    CmdOption copy = d.findOptionDefine(latin("a"));
    copy.description = latin("changed");
    QVERIFY(d.options.first().description.isEmpty());
}

void CmdLineParserPrivateTest::laterDeclarationsAreFound()
{
    _cmdline_parser_private d;
    QVERIFY(!d.hasOption(latin("a")));
    d.options.append(option({latin("a")}, 5));
    QCOMPARE(d.findOptionDefine(latin("a")).id, 5U);
}

void CmdLineParserPrivateTest::declarationsAreStoredAsGiven()
{
    CmdLineParser parser(latin("tool"));
    parser.setBrief(latin("brief"));
    parser.addOption({latin("-o"), latin("--output"), latin("---o")}, latin("text"), latin("file"));
    parser.addOption(latin("-v"));
    parser.addPositionalArgument(latin("input"), latin("what to read"));
    const _cmdline_parser_private& d = privateOf(parser);
    QCOMPARE(d.appName, latin("tool"));
    QCOMPARE(d.brief, latin("brief"));
    QCOMPARE(d.options.size(), 2);
    const CmdOption output = d.findOptionDefine(latin("output"));
    QCOMPARE(output.id, identityOf(latin("o")));
    QCOMPARE(output.names, QStringList({latin("-o"), latin("--output"), latin("---o")}));
    QCOMPARE(output.keys, QStringList({latin("o"), latin("output"), latin("o")}));
    QCOMPARE(output.description, latin("text"));
    QCOMPARE(output.valueName, latin("file"));
    QCOMPARE(d.options.last().id, identityOf(latin("v")));
    QVERIFY(d.options.last().description.isEmpty() && d.options.last().valueName.isEmpty());
    QCOMPARE(d.posArguments.size(), 1);
    QCOMPARE(d.posArguments.first().name, latin("input"));
    QCOMPARE(d.posArguments.first().description, latin("what to read"));
}

void CmdLineParserPrivateTest::valuesAreStoredUnderTheHashOfTheFirstKey()
{
    CmdLineParser parser(latin("tool"));
    parser.addOption({latin("-o"), latin("--output")}, QString(), latin("file"));
    parser.addOption(latin("-v"));
    parser.parse({latin("tool"), latin("a"), latin("--output"), latin("x"), latin("-v"),
        latin("-z"), latin("-o")});
    const _cmdline_parser_private& d = privateOf(parser);
    const QMap<unsigned int, QString> expected = {
        {identityOf(latin("o")), latin("x")}, {identityOf(latin("v")), latin("true")}};
    QCOMPARE(d.values, expected);
    QCOMPARE(d.posValues, QStringList(latin("a")));
    QCOMPARE(d.unknownOptions, QStringList(latin("-z")));
    QCOMPARE(d.missingValues, QStringList(latin("-o")));
}

void CmdLineParserPrivateTest::optionWhoseHashIsZeroIsNeverSet()
{
    const QString key = keyOfIdentityZero();
    CmdLineParser parser(latin("tool"));
    parser.addOption(latin("--") + key, QString(), latin("file"));
    QVERIFY(parser.parse({latin("tool"), latin("--") + key, latin("x")}));
    QCOMPARE(privateOf(parser).values.value(0), latin("x"));
    QVERIFY(!parser.isSet(key));
    QCOMPARE(parser.getValue(key), QString());
}

void CmdLineParserPrivateTest::optionsOfOneHashShareTheirValue()
{
    const auto [first, second] = keysOfOneIdentity();
    CmdLineParser parser(latin("tool"));
    parser.addOption(latin("--") + first, QString(), latin("file"));
    parser.addOption(latin("--") + second, QString(), latin("file"));
    QVERIFY(parser.parse({latin("tool"), latin("--") + second, latin("x")}));
    QVERIFY(parser.isSet(first));
    QCOMPARE(parser.getValue(first), latin("x"));
    QCOMPARE(privateOf(parser).values.size(), 1);
}

template <typename... Fields>
static bool areInOrder(const Fields&... fields)
{
    const void* const addresses[] = {&fields...};
    return std::is_sorted(std::begin(addresses), std::end(addresses));
}

void CmdLineParserPrivateTest::fieldsStandInOrder()
{
    const _cmdline_parser_private d;
    QVERIFY(areInOrder(d.appName, d.brief, d.options, d.posArguments, d.values, d.posValues,
        d.unknownOptions, d.missingValues));
    const CmdOption o;
    QVERIFY(areInOrder(o.id, o.names, o.keys, o.description, o.valueName));
    const PosArgument a;
    QVERIFY(areInOrder(a.name, a.description));
    const DescriptionTable t;
    QVERIFY(areInOrder(t.names, t.descriptions));
}

void CmdLineParserPrivateTest::changedDeclarationsAreFoundAnew()
{
    _cmdline_parser_private d;
    d.options = {option({latin("a")})};
    QVERIFY(d.hasOption(latin("a")));
    d.options = {option({latin("b")}, 2)};
    QVERIFY(!d.hasOption(latin("a")));
    QCOMPARE(d.findOptionDefine(latin("b")).id, 2U);
    d.options.first().keys = QStringList(latin("c"));
    QVERIFY(!d.hasOption(latin("b")));
    QVERIFY(d.hasOption(latin("c")));
    d.declare(option({latin("c"), latin("d")}, 3));
    QCOMPARE(d.findOptionDefine(latin("c")).id, 2U);
    QCOMPARE(d.findOptionDefine(latin("d")).id, 3U);
    d.options.clear();
    QVERIFY(!d.hasOption(latin("c")));
    d.declare(option({latin("e")}, 4));
    QCOMPARE(d.findOptionDefine(latin("e")).id, 4U);
    QVERIFY(!d.hasOption(latin("d")));
    d.options.append(option({latin("f")}, 5));
    d.declare(option({latin("g")}, 6));
    d.options.clear();
    QVERIFY(!d.hasOption(latin("f")) && !d.hasOption(latin("g")));
}

void CmdLineParserPrivateTest::tableAlignsItsColumns()
{
    DescriptionTable table;
    table.names = QStringList({latin("a"), latin("long")});
    table.descriptions = QStringList({latin("one\ntwo"), latin(" ")});
    QCOMPARE(table.format(), latin("  a     one\n        two\n  long\n"));
}

void CmdLineParserPrivateTest::emptyTableIsEmpty()
{
    QCOMPARE(DescriptionTable().format(), QString());
}

void CmdLineParserPrivateTest::namesWiderThanTheTableLeaveNoRoom()
{
    const QString name(75, QLatin1Char('n'));
    DescriptionTable table;
    table.names = QStringList(name);
    table.descriptions = QStringList(latin("ab cd"));
    const QString indent(79, QLatin1Char(' '));
    // Nothing of a word fits, and each line ends where nothing of the next one was put.
    QCOMPARE(table.format(),
        QLatin1String("  ") + name + QLatin1String("  \n") + indent + QLatin1String("ab \n")
            + indent + QLatin1String("cd\n"));
}

QTEST_GUILESS_MAIN(CmdLineParserPrivateTest)
#include "tst_cmdline_parser_private.moc"
