// SPDX-License-Identifier: MIT
#include "cmdline_parser_p.h"

#include <QTest>

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
