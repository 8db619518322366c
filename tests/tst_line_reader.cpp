// SPDX-License-Identifier: MIT
#include "line_reader.h"

#include "event_mgr.h"
#include "ievent.h"

#include "recorder.h"

#include <QAction>
#include <QDebug>
#include <QFile>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

#include <map>
#include <set>

using namespace Zentu::Inspect;

namespace {

std::string printed(const QAction* action)
{
    return Support::printed(action).toStdString();
}

QString text(std::string_view view)
{
    return QString::fromLatin1(view.data(), static_cast<int>(view.size()));
}

/// What stands for an item of the kind.
std::string sample(char kind)
{
    switch (kind) {
    case 'o':
        return "QObject(0x1f, name = \"a) \\\"b\")";
    case 'h':
        return "0x2f";
    case 's':
        return "\"a \\\" b)\"";
    case 'l':
        return "(\"a, \", \"b)\")";
    default:
        return "-7";
    }
}

std::string sampleLine(const TextInfo& info)
{
    std::string line;
    if (!info.speaker.empty())
        line = std::string(info.speaker) + "(0xabc, name=\"x (\") ";
    line += info.text;
    for (const char kind : info.items)
        line += ' ' + sample(kind);
    if (!info.end.empty())
        line += ' ' + std::string(info.end);
    return line;
}

} // namespace

class LineReaderTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tableAndPageNameTheSameTexts();
    void everyTextIsUnderstood_data();
    void everyTextIsUnderstood();
    void anEndMakesTheDifference();
    void cutLineIsDamaged_data();
    void cutLineIsDamaged();
    void columnsBeforeTheText_data();
    void columnsBeforeTheText();
    void whoseLineItIs_data();
    void whoseLineItIs();
    void bothFormsOfLists();
    void actionsAsThisQtPrintsThem();
    void fieldsAreNotFoundInsideOfStrings();
    void enabledOfAnAction_data();
    void enabledOfAnAction();
    void stringsComeBack_data();
    void stringsComeBack();
    void nullEventHasTwoBlanksBehindIt();
    void randomBytesAreRead();
};

void LineReaderTest::tableAndPageNameTheSameTexts()
{
    QFile page(QStringLiteral(ZENTU_MESSAGES));
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QStringList channels = {QStringLiteral("trace"), QStringLiteral("info"),
        QStringLiteral("warning"), QStringLiteral("critical")};

    std::map<int, std::set<QString>> onPage;
    const QRegularExpression row(QStringLiteral(R"(^\|[^|]*\| (\w+) \| (.*) \|$)"));
    const QRegularExpression code(QStringLiteral("`([^`]+)`"));
    const QStringList lines = QString::fromUtf8(page.readAll()).split(QLatin1Char('\n'));
    for (const QString& line : lines) {
        const auto match = row.match(line);
        const int channel = static_cast<int>(channels.indexOf(match.captured(1)));
        if (!match.hasMatch() || channel < 0)
            continue;
        for (auto it = code.globalMatch(match.captured(2)); it.hasNext();) {
            const QString found = it.next().captured(1);
            if (found != QLatin1String("this"))
                onPage[channel].insert(found);
        }
    }

    std::map<int, std::set<QString>> inTable;
    for (const TextInfo& info : TextTable) {
        auto& texts = inTable[static_cast<int>(info.channel)];
        texts.insert(text(info.text));
        if (!info.end.empty())
            texts.insert(text(info.end));
    }
    for (int channel = 0; channel < channels.size(); ++channel) {
        QStringList differences;
        for (const QString& found : onPage[channel]) {
            if (!inTable[channel].count(found))
                differences += QLatin1String("page only: ") + found;
        }
        for (const QString& found : inTable[channel]) {
            if (!onPage[channel].count(found))
                differences += QLatin1String("table only: ") + found;
        }
        QCOMPARE(differences.join(QLatin1String("; ")), QString());
    }
    QVERIFY(onPage[0].size() > 30);
}

void LineReaderTest::everyTextIsUnderstood_data()
{
    QTest::addColumn<int>("row");
    for (int row = 0; row < static_cast<int>(TextTable.size()); ++row) {
        const TextInfo& info = TextTable[static_cast<std::size_t>(row)];
        QTest::addRow("%d %s", row, info.text.data()) << row;
    }
}

void LineReaderTest::everyTextIsUnderstood()
{
    QFETCH(int, row);
    const TextInfo& info = TextTable[static_cast<std::size_t>(row)];
    const std::string whole = sampleLine(info);
    for (const char* const blanks : {"", " ", " \r", "\n"}) {
        const std::string withEnd = whole + blanks;
        const Line line = readLine(withEnd);
        QVERIFY2(line.is(info.id), whole.c_str());
        QVERIFY(line.isOwnSpeaker);
        QCOMPARE(line.speaker.address, info.speaker.empty() ? Address(0) : Address(0xabc));
        for (std::size_t i = 0; i < info.items.size(); ++i)
            QCOMPARE(text(line.items[i].raw).toLatin1(),
                QByteArray::fromStdString(sample(info.items[i])));
    }
}

void LineReaderTest::anEndMakesTheDifference()
{
    const std::string line = "Zentu::ObjectPool(0x1) add object: QObject(0x2)";
    QVERIFY(readLine(line).is(Text::AddObject));
    QVERIFY(readLine(line + " already exists").is(Text::DuplicateObject));
    QCOMPARE(readLine(line + " already").reading, Reading::Damaged);
}

void LineReaderTest::cutLineIsDamaged_data()
{
    everyTextIsUnderstood_data();
}

void LineReaderTest::cutLineIsDamaged()
{
    QFETCH(int, row);
    const TextInfo& info = TextTable[static_cast<std::size_t>(row)];
    const std::string text = sampleLine(info);
    // What a shorter text says can be a line, too, as "clear" is; nothing else is made of it.
    for (std::size_t size = 0; size < text.size(); ++size) {
        const std::string part = text.substr(0, size);
        const Line line = readLine(part);
        if (line.reading == Reading::Understood)
            QVERIFY2(line.info->family == info.family || line.info->items.empty(), part.c_str());
        const bool isWhole = !info.speaker.empty() && size > info.speaker.size() + 3;
        if (isWhole)
            QVERIFY2(line.reading != Reading::Foreign, part.c_str());
    }
}

void LineReaderTest::columnsBeforeTheText_data()
{
    QTest::addColumn<QByteArray>("columns");
    QTest::addColumn<QByteArray>("time");
    QTest::addColumn<QByteArray>("level");
    QTest::addColumn<QByteArray>("thread");
    const QByteArray time = "2026-11-22T12:03:04.000001Z";
    QTest::newRow("none") << QByteArray() << QByteArray() << QByteArray() << QByteArray();
    QTest::newRow("logger") << time + " 1 4711 " << time << QByteArray("1") << QByteArray("4711");
    QTest::newRow("message") << QByteArray("2026-11-22T12:03:04 warning 0x7f ")
                             << QByteArray("2026-11-22T12:03:04") << QByteArray("warning")
                             << QByteArray("0x7f");
    QTest::newRow("level below zero")
        << time + " -1 1 " << time << QByteArray("-1") << QByteArray("1");
}

void LineReaderTest::columnsBeforeTheText()
{
    QFETCH(QByteArray, columns);
    QFETCH(QByteArray, time);
    QFETCH(QByteArray, level);
    QFETCH(QByteArray, thread);
    const std::string whole =
        (columns + "Zentu::ContextManager(0x1) push context: \"a\" ").toStdString();
    const Line line = readLine(whole);
    QVERIFY(line.is(Text::PushContext));
    QCOMPARE(text(line.time), QString::fromLatin1(time));
    QCOMPARE(text(line.level), QString::fromLatin1(level));
    QCOMPARE(text(line.thread), QString::fromLatin1(thread));
    QCOMPARE(text(line.body), QStringLiteral("Zentu::ContextManager(0x1) push context: \"a\""));
}

void LineReaderTest::whoseLineItIs_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("reading");
    const auto row = [](const char* line, Reading reading) {
        QTest::newRow(line) << QByteArray(line) << static_cast<int>(reading);
    };
    row("", Reading::Foreign);
    row("opened \"notes.txt\" 3", Reading::Foreign);
    row("push context: \"a\"", Reading::Foreign);
    row("QAction(0x1 text=\"a\") was added", Reading::Foreign);
    row("Window(0x1) clear", Reading::Understood);
    row("MyArea(0x1, name=\"area\") add view MdiWindow(0x2, \"t\")", Reading::Understood);
    row("QAction(0x1) add view MdiWindow(0x2, \"t\")", Reading::Foreign);
    row("Zentu::ObjectPool(0x1) push context: \"a\"", Reading::Unknown);
    row("Zentu::ObjectPool(0x1) said something", Reading::Unknown);
    row("Zentu::Obj", Reading::Damaged);
    row("Zentu::ObjectPool(0x1) add obj", Reading::Damaged);
    row("Zentu::ObjectPool(0x1) add object: QObject", Reading::Damaged);
    row("Zentu::ObjectPool(0x1) add object: QObject(0x2) 2026", Reading::Damaged);
    row("QAction(0x1 text=\"a", Reading::Damaged);
    row("2026-11-22T12:03:04", Reading::Foreign);
    row("2026-11-22 12:03:04 1 2 hello", Reading::Foreign);
}

void LineReaderTest::whoseLineItIs()
{
    QFETCH(QByteArray, text);
    QFETCH(int, reading);
    QCOMPARE(static_cast<int>(readLine(text.toStdString()).reading), reading);
}

void LineReaderTest::bothFormsOfLists()
{
    for (const std::string list :
        {"(\"a, \\\"\", \"\", \"b)\")", "QList(\"a, \\\"\", \"\", \"b)\")"}) {
        const std::string whole = "QAction(0x1 text=\"t\") set context " + list;
        const Line line = readLine(whole);
        QVERIFY(line.is(Text::SetContexts));
        std::string_view strings = line.items[0].text;
        QCOMPARE(text(*takeString(strings)), QStringLiteral("a, \\\""));
        QCOMPARE(text(*takeString(strings)), QString());
        QCOMPARE(text(*takeString(strings)), QStringLiteral("b)"));
        QVERIFY(!takeString(strings));
    }
    QVERIFY(readLine("CmdLineParser parse ()").is(Text::ParseArguments));
    QVERIFY(readLine("CmdLineParser parse QList()").is(Text::ParseArguments));
    QVERIFY(!readLine("CmdLineParser parse (1, 2)").is(Text::ParseArguments));
}

void LineReaderTest::actionsAsThisQtPrintsThem()
{
    QAction action;
    action.setText(QStringLiteral("S\"ave) enabled=false"));
    action.setShortcut(QKeySequence(QStringLiteral("Ctrl+S")));
    action.setCheckable(true);
    const std::string whole =
        printed(&action) + " change active backend action to " + printed(nullptr);
    const Line line = readLine(whole);
    QVERIFY(line.is(Text::ActiveBackend));
    QCOMPARE(line.speaker.address, reinterpret_cast<Address>(&action));
    QCOMPARE(unescaped(line.speaker.field("text=")), action.text());
    QCOMPARE(text(line.speaker.field("checked=")), QStringLiteral("false"));
    QCOMPARE(line.items[0].address, Address(0));
}

void LineReaderTest::fieldsAreNotFoundInsideOfStrings()
{
    Item item;
    item.text = R"( text="enabled=true" toolTip="x" visible=true)";
    QVERIFY(item.field("enabled=").data() == nullptr);
    QCOMPARE(text(item.field("toolTip=")), QStringLiteral("x"));
    QCOMPARE(text(item.field("visible=")), QStringLiteral("true"));
    QCOMPARE(text(item.quoted()), QStringLiteral("enabled=true"));
}

void LineReaderTest::enabledOfAnAction_data()
{
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QString>("enabled");
    QTest::newRow("Qt 5") << QByteArray("QAction(0x1 text=\"a\" visible=true)") << QString();
    QTest::newRow("Qt 6") << QByteArray(
        "QAction(0x1 text=\"a\" shortcuts=QList(QKeySequence(\"Ctrl+S\"))"
        " menuRole=NoRole enabled=false visible=true)")
                          << QStringLiteral("false");
}

void LineReaderTest::enabledOfAnAction()
{
    QFETCH(QByteArray, action);
    QFETCH(QString, enabled);
    const std::string whole =
        ("QAction(0x2 text=\"\") change active backend action to " + action).toStdString();
    QCOMPARE(text(readLine(whole).items[0].field("enabled=")), enabled);
}

void LineReaderTest::stringsComeBack_data()
{
    QTest::addColumn<QString>("string");
    QTest::newRow("empty") << QString();
    QTest::newRow("quotes") << QStringLiteral("\"a\" \\ \"");
    QTest::newRow("controls") << QStringLiteral("\a\b\f\n\r\t\v\x01 1\x7f g");
    QTest::newRow("Latin-1") << QStringLiteral("\u00e4\u00ad\u00a0\u00ff");
    QTest::newRow("not printable") << QStringLiteral("\u200b"
                                                     "a\u2060");
    QTest::newRow("digits behind an escape") << QStringLiteral("\u0001"
                                                               "aF");
}

void LineReaderTest::stringsComeBack()
{
    QFETCH(QString, string);
    const QByteArray whole =
        "Zentu::ContextManager(0x1) push context: " + Support::quoted(string).toLatin1() + ' ';
    const Line line = readLine(std::string_view(whole.constData(), std::size_t(whole.size())));
    QVERIFY(line.is(Text::PushContext));
    QCOMPARE(unescaped(line.items[0].text), string);
}

void LineReaderTest::nullEventHasTwoBlanksBehindIt()
{
    const Line line = readLine("Zentu::EventManager(0x1) post event IEvent(0x0)  2 ");
    QVERIFY(line.is(Text::Post));
    QCOMPARE(line.items[1].number, 2);
}

void LineReaderTest::randomBytesAreRead()
{
    QRandomGenerator random(7);
    const std::string pieces = "()\"\\, 0x1fZentu::EventManager post event QList\n\xff\x01";
    for (int run = 0; run < 20000; ++run) {
        const TextInfo& info = TextTable[random.bounded(quint32(TextTable.size()))];
        std::string bytes = sampleLine(info);
        for (int changes = random.bounded(6); changes > 0; --changes) {
            const std::size_t at = random.bounded(quint32(bytes.size()));
            bytes.replace(
                at, random.bounded(quint32(3)), 1, pieces[random.bounded(quint32(pieces.size()))]);
        }
        const Line line = readLine(bytes);
        for (const Item& item : line.items) {
            unescaped(item.text);
            item.field("text=");
            item.quoted();
        }
        decoded(line.body);
    }
}

QTEST_MAIN(LineReaderTest)
#include "tst_line_reader.moc"
