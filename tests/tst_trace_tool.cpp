// SPDX-License-Identifier: MIT
//
// Runs zentu-trace on small traces.

#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QXmlStreamReader>

#include <initializer_list>

namespace {

struct Answer
{
    int exit = -1;
    QByteArray text;
    QByteArray errors;

    QJsonValue json() const
    {
        const auto document = QJsonDocument::fromJson(text);
        return document.isArray() ? QJsonValue(document.array()) : QJsonValue(document.object());
    }
};

const QByteArray Save = "QAction(0x1 text=\"&Save\" menuRole=TextHeuristicRole visible=true)";
const QByteArray TextSave = "QAction(0xa text=\"Save text\" visible=true)";
const QByteArray ImageSave = "QAction(0xb text=\"Save image\" enabled=false visible=true)";

/// Lines with times, a tenth of a second apart, of the thread 7.
QByteArray timed(const QList<QByteArray>& lines)
{
    QByteArray result;
    int tenths = 0;
    for (const QByteArray& line : lines) {
        result += "2026-11-22T12:00:" + QByteArray::number(tenths / 10).rightJustified(2, '0') + '.'
            + QByteArray::number(tenths % 10) + "00000Z 1 7 " + line + " \n";
        ++tenths;
    }
    return result;
}

QByteArray contentOf(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/// A session with an action for two kinds of documents.
QByteArray session()
{
    return timed({
        "Zentu::ProxyActionManager(0x9) register proxy action \"file.save\" " + Save,
        Save + " add backend action \"text\" " + TextSave,
        Save + " add backend action \"image\" " + ImageSave,
        "Zentu::EventManager(0x8) new event subscription: 0xc1 \"document.opened\"",
        "Zentu::EventManager(0x8) new event subscription: 0xc2 \"document.opened\"",
        "Zentu::EventManager(0x8) post event IEvent(0xe, type = \"document.opened\") 0",
        "Zentu::ContextManager(0x7) push context: \"text\"",
        "set context and update for all proxy actions",
        Save + " set context (\"text\")",
        Save + " change active backend action to " + TextSave,
        "Zentu::EventManager(0x8) post event IEvent(0xe, type = \"document.opend\") 2",
        "Zentu::ContextManager(0x7) remove context \"text\"",
        "set context and update for all proxy actions",
        Save + " set context ()",
        Save + " change active backend action to QAction(0x00)",
        "Zentu::EventManager(0x8) unsubscribe all events for: 0xc1",
    });
}

} // namespace

class TraceToolTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void helpNamesEveryCommand();
    void wrongCommandLines_data();
    void wrongCommandLines();
    void summaryCounts();
    void strictSummaryExits_data();
    void strictSummaryExits();
    void whyInJson_data();
    void whyInJson();
    void whySaysSinceWhenAndBecauseOfWhat();
    void whyKnowsADisabledBackend();
    void unknownActionIsNotGuessed();
    void eventsInJson();
    void eventsTellWhatNobodyCouldHear();
    void recordingHasNamesAndStates();
    void contextsTellWhatEachChangeDid();
    void leaksInJsonHaveEveryKind();
    void nothingLeft();
    void normalFormIsTheSameForOtherAddresses();
    void normalFormKnowsWhoIsGone();
    void diffTellsOnlyWhatDiffers();
    void diffOfTheSameBehaviour();
    void drawingsAreWholeAndStandAlone_data();
    void drawingsAreWholeAndStandAlone();
    void graphInJson();
    void timelineInJson();
    void timelineKnowsTheTime_data();
    void timelineKnowsTheTime();
    void timelineGoesOnBehindManyPosts();
    void followGoesOnWithTheFile();
    void followWaitsForTheEndOfALine();
    void followTellsWhatAPipeHasAlready();
    void standardInput();
    void cutTracesDoNoHarm();
    void randomBytesDoNoHarm();

private:
    QString file(const QByteArray& text);
    Answer run(const QStringList& arguments, const QByteArray& input = QByteArray());

    QTemporaryDir m_folder;
    int m_files = 0;
};

QString TraceToolTest::file(const QByteArray& text)
{
    QFile file(m_folder.filePath(QStringLiteral("%1.trace").arg(++m_files)));
    if (!file.open(QIODevice::WriteOnly))
        return {};
    file.write(text);
    return file.fileName();
}

Answer TraceToolTest::run(const QStringList& arguments, const QByteArray& input)
{
    QProcess process;
    process.start(QStringLiteral(ZENTU_TRACE), arguments);
    process.write(input);
    process.closeWriteChannel();
    Answer answer;
    if (process.waitForFinished() && process.exitStatus() == QProcess::NormalExit)
        answer.exit = process.exitCode();
    answer.text = process.readAllStandardOutput();
    answer.errors = process.readAllStandardError();
    return answer;
}

void TraceToolTest::helpNamesEveryCommand()
{
    const Answer answer = run({QStringLiteral("--help")});
    QCOMPARE(answer.exit, 0);
    const QByteArray manual = contentOf(QStringLiteral(ZENTU_TRACE_MANUAL));
    const QByteArray completion = contentOf(QStringLiteral(ZENTU_TRACE_COMPLETION));
    for (const char* const command : {"summary", "why", "events", "contexts", "leaks", "timeline",
             "graph", "normal", "diff", "follow"}) {
        QVERIFY2(answer.text.contains(QByteArray("\n  ") + command + ' '), command);
        QVERIFY2(manual.contains(QByteArray(".BI ") + command + " \""), command);
        QVERIFY2(manual.contains(QByteArray("zentu-trace ") + command + ' '), command);
        QVERIFY2(completion.contains(command), command);
    }
}

void TraceToolTest::wrongCommandLines_data()
{
    QTest::addColumn<QStringList>("arguments");
    QTest::newRow("nothing") << QStringList();
    QTest::newRow("no such command") << QStringList({QStringLiteral("guess"), QStringLiteral("-")});
    QTest::newRow("no such option") << QStringList(QStringLiteral("--guess"));
    QTest::newRow("no file") << QStringList(QStringLiteral("summary"));
    QTest::newRow("too many") << QStringList(
        {QStringLiteral("leaks"), QStringLiteral("a"), QStringLiteral("b")});
    QTest::newRow("no such file") << QStringList(
        {QStringLiteral("summary"), QStringLiteral("/nowhere")});
    QTest::newRow("neither a line nor a time") << QStringList({QStringLiteral("leaks"),
        QStringLiteral("-"), QStringLiteral("--at"), QStringLiteral("noon")});
    QTest::newRow("a time in lines without") << QStringList({QStringLiteral("leaks"),
        QStringLiteral("-"), QStringLiteral("--at"), QStringLiteral("12:00")});
    QTest::newRow("an option of others") << QStringList({QStringLiteral("diff"),
        QStringLiteral("-"), QStringLiteral("-"), QStringLiteral("--at"), QStringLiteral("2")});
}

void TraceToolTest::wrongCommandLines()
{
    QFETCH(QStringList, arguments);
    const Answer answer = run(arguments);
    QCOMPARE(answer.exit, 2);
    QCOMPARE(answer.text, QByteArray());
    QVERIFY(answer.errors.startsWith("zentu-trace: "));
}

void TraceToolTest::summaryCounts()
{
    const QByteArray trace = session() + "opened by the host\nZentu::ObjectPool(0x1) add obj";
    const Answer answer = run({QStringLiteral("summary"), QStringLiteral("--json"), file(trace)});
    QCOMPARE(answer.exit, 0);
    const QJsonObject object = answer.json().toObject();
    QCOMPARE(object.value(QStringLiteral("lines")).toInt(), 18);
    QCOMPARE(object.value(QStringLiteral("understood")).toInt(), 16);
    QCOMPARE(object.value(QStringLiteral("foreign")).toInt(), 1);
    QCOMPARE(object.value(QStringLiteral("damaged")).toInt(), 1);
    QCOMPARE(object.value(QStringLiteral("posts")).toInt(), 2);
    QCOMPARE(object.value(QStringLiteral("unheard")).toInt(), 1);
    QCOMPARE(object.value(QStringLiteral("contextChanges")).toInt(), 2);
    QCOMPARE(object.value(QStringLiteral("left"))
                 .toObject()
                 .value(QStringLiteral("subscriptions"))
                 .toInt(),
        1);
    QVERIFY(run({QStringLiteral("summary"), file(trace)})
                .text.startsWith(
                    "18 lines: 16 understood, 1 of the host's own, 0 unknown, 1 damaged\n"));
}

void TraceToolTest::strictSummaryExits_data()
{
    QTest::addColumn<QByteArray>("trace");
    QTest::addColumn<int>("exit");
    QTest::newRow("empty") << QByteArray() << 0;
    QTest::newRow("nothing amiss")
        << QByteArray("Zentu::ContextManager(0x1) push context: \"a\" \nhost") << 0;
    QTest::newRow("left over") << QByteArray("Zentu::ObjectPool(0x1) add object: QObject(0x2) ")
                               << 1;
    QTest::newRow("message") << QByteArray(
        "Zentu::ObjectPool(0x1) remove object: QObject(0x2) not found")
                             << 1;
    QTest::newRow("unheard") << QByteArray(
        "Zentu::EventManager(0x8) post event IEvent(0xe, type = \"t\") 0 ")
                             << 1;
    QTest::newRow("unknown") << QByteArray("Zentu::ObjectPool(0x1) is new ") << 1;
}

void TraceToolTest::strictSummaryExits()
{
    QFETCH(QByteArray, trace);
    QFETCH(int, exit);
    const QString path = file(trace);
    QCOMPARE(run({QStringLiteral("summary"), QStringLiteral("--strict"), path}).exit, exit);
    QCOMPARE(run({QStringLiteral("summary"), path}).exit, 0);
}

void TraceToolTest::whyInJson_data()
{
    QTest::addColumn<QString>("at");
    QTest::addColumn<QByteArray>("contexts");
    QTest::addColumn<QByteArray>("active");
    QTest::addColumn<QByteArray>("enabled");
    QTest::addColumn<QByteArray>("since");
    const QByteArray active = R"({"action":"0xa","context":"text"})";
    const QByteArray ten = R"({"line":10,"time":"2026-11-22T12:00:00.900000Z"})";
    QTest::newRow("at the end") << QString() << QByteArray("[]") << QByteArray("null")
                                << QByteArray("false")
                                << QByteArray(
                                       R"({"line":15,"time":"2026-11-22T12:00:01.400000Z"})");
    QTest::newRow("at a line") << QStringLiteral("12") << QByteArray("[\"text\"]") << active
                               << QByteArray("null") << ten;
    QTest::newRow("at a time") << QStringLiteral("12:00:00") << QByteArray("[\"text\"]") << active
                               << QByteArray("null") << ten;
    QTest::newRow("at a date and time")
        << QStringLiteral("2026-11-22T12:00:00.9") << QByteArray("[\"text\"]") << active
        << QByteArray("null") << ten;
    QTest::newRow("before any context")
        << QStringLiteral("5") << QByteArray("[]") << QByteArray("null") << QByteArray("false")
        << QByteArray(R"({"line":1,"time":"2026-11-22T12:00:00.000000Z"})");
}

void TraceToolTest::whyInJson()
{
    QFETCH(QString, at);
    QFETCH(QByteArray, contexts);
    QFETCH(QByteArray, active);
    QFETCH(QByteArray, enabled);
    QFETCH(QByteArray, since);
    QStringList arguments = {QStringLiteral("why"), QStringLiteral("file.save"), file(session()),
        QStringLiteral("--json")};
    if (!at.isEmpty())
        arguments += {QStringLiteral("--at"), at};
    const Answer answer = run(arguments);
    QCOMPARE(answer.exit, 0);
    const QJsonObject object = answer.json().toObject();
    QCOMPARE(object.keys(),
        QStringList({QStringLiteral("active"), QStringLiteral("backends"),
            QStringLiteral("contexts"), QStringLiteral("enabled"), QStringLiteral("id"),
            QStringLiteral("reason"), QStringLiteral("since")}));
    QCOMPARE(answer.text.trimmed().replace(
                 QJsonDocument(QJsonArray{object.value(QStringLiteral("reason"))})
                     .toJson(QJsonDocument::Compact)
                     .mid(1)
                     .chopped(1),
                 "\"\""),
        "{\"active\":" + active
            + R"(,"backends":[{"action":"0xb","context":"image"},{"action":"0xa","context":"text"}],"contexts":)"
            + contexts + ",\"enabled\":" + enabled + R"(,"id":"file.save","reason":"","since":)"
            + since + "}");
}

void TraceToolTest::whySaysSinceWhenAndBecauseOfWhat()
{
    const Answer answer =
        run({QStringLiteral("why"), QStringLiteral("file.save"), file(session())});
    QCOMPARE(answer.exit, 0);
    QVERIFY2(answer.text.contains(
                 "No context is in force; it has backends for \"image\", \"text\". So it is "
                 "since line 15, by line 12: remove context \"text\"."),
        answer.text.constData());
    QVERIFY2(answer.text.contains(
                 "\n  line 10, 12:00:00.900000Z: \"text\", by line 7: push context: \"text\"\n"),
        answer.text.constData());
}

void TraceToolTest::whyKnowsADisabledBackend()
{
    const QByteArray trace = session()
        + timed({Save + " set context QList(\"image\")",
            Save + " change active backend action to " + ImageSave});
    const Answer answer = run({QStringLiteral("why"), QStringLiteral("file.save"),
        QStringLiteral("--json"), file(trace)});
    const QJsonObject object = answer.json().toObject();
    QCOMPARE(object.value(QStringLiteral("enabled")), QJsonValue(false));
    QVERIFY(object.value(QStringLiteral("reason"))
                .toString()
                .startsWith(QStringLiteral("Its backend for \"image\", \"Save image\" (0xb), is "
                                           "active and was disabled when line 18 was written.")));
}

void TraceToolTest::unknownActionIsNotGuessed()
{
    const Answer answer = run({QStringLiteral("why"), QStringLiteral("file.sav"), file(session())});
    QCOMPARE(answer.exit, 2);
    QCOMPARE(answer.text, QByteArray());
    QCOMPARE(answer.errors,
        QByteArray("zentu-trace: no proxy action is registered as \"file.sav\"; did you mean "
                   "file.save?\n"));
}

void TraceToolTest::eventsInJson()
{
    const QString path = file(session());
    const QByteArray opened =
        R"({"posts":1,"subscribers":[{"handler":"0xc2","name":null,"since":{"line":5,"time":"2026-11-22T12:00:00.400000Z"}},)"
        R"({"handler":"0xc1","name":null,"since":{"line":4,"time":"2026-11-22T12:00:00.300000Z"}}],"type":"document.opened","unheard":0})";
    const QStringList one = {QStringLiteral("events"), QStringLiteral("document.opened"), path,
        QStringLiteral("--json"), QStringLiteral("--at"), QStringLiteral("8")};
    QCOMPARE(run(one).text, '[' + opened + "]\n");
    const QJsonArray all =
        run({QStringLiteral("events"), path, QStringLiteral("--json")}).json().toArray();
    QCOMPARE(all.size(), 2);
    QCOMPARE(all.at(0).toObject().value(QStringLiteral("unheard")).toInt(), 1);
    QCOMPARE(all.at(1).toObject().value(QStringLiteral("subscribers")).toArray().size(), 1);
}

void TraceToolTest::eventsTellWhatNobodyCouldHear()
{
    const Answer answer =
        run({QStringLiteral("events"), QStringLiteral("document.opend"), file(session())});
    QCOMPARE(answer.text,
        QByteArray("document.opend\n  1 post from thread 7, queued\n  1 post that nobody could "
                   "hear, the last at line 11, "
                   "12:00:01.000000Z\n  somebody hears document.opened\n"));
}

void TraceToolTest::recordingHasNamesAndStates()
{
    QByteArray trace = session().left(session().lastIndexOf("2026"));
    trace.replace("0xc2 \"document.opened\" \n",
        "0xc2 \"document.opened\" \n    handler: (anonymous namespace)::Log \"log\"\n    from "
        "main\n");
    trace.replace("change active backend action to " + TextSave + " \n",
        "change active backend action to " + TextSave + " \n    backend: disabled, of Editor\n");
    const QString path = file(trace);
    const QJsonArray events = run({QStringLiteral("events"), QStringLiteral("document.opened"),
                                      path, QStringLiteral("--json")})
                                  .json()
                                  .toArray();
    const QJsonArray subscribers =
        events.at(0).toObject().value(QStringLiteral("subscribers")).toArray();
    QCOMPARE(subscribers.at(0).toObject().value(QStringLiteral("name")).toString(),
        QStringLiteral("(anonymous namespace)::Log \"log\""));
    QVERIFY(subscribers.at(1).toObject().value(QStringLiteral("name")).isNull());
    const QJsonArray hearing = run({QStringLiteral("graph"), path, QStringLiteral("--json")})
                                   .json()
                                   .toObject()
                                   .value(QStringLiteral("hearing"))
                                   .toArray();
    QCOMPARE(hearing.size(), 2);
    QCOMPARE(hearing.at(0).toObject().value(QStringLiteral("to")).toString(),
        QStringLiteral("(anonymous namespace)::Log \"log\""));
    QCOMPARE(
        hearing.at(1).toObject().value(QStringLiteral("to")).toString(), QStringLiteral("0xc1"));
    QVERIFY(run({QStringLiteral("events"), path})
                .text.contains("  heard by (anonymous namespace)::Log \"log\" 0xc2 since line 5"));

    const QJsonObject why =
        run({QStringLiteral("why"), QStringLiteral("file.save"), path, QStringLiteral("--at"),
                QStringLiteral("13"), QStringLiteral("--json")})
            .json()
            .toObject();
    QCOMPARE(why.value(QStringLiteral("enabled")), QJsonValue(false));
    // What it adds makes no difference.
    QByteArray plain = session().left(session().lastIndexOf("2026"));
    QCOMPARE(run({QStringLiteral("diff"), path, file(plain)}).text, QByteArray());
    QCOMPARE(run({QStringLiteral("normal"), path}).text,
        run({QStringLiteral("normal"), file(plain)}).text);
}

void TraceToolTest::contextsTellWhatEachChangeDid()
{
    const QString path = file(session());
    QCOMPARE(run({QStringLiteral("contexts"), path}).text,
        QByteArray("line 7, 12:00:00.600000Z: push context \"text\"\n  in force: text\n"
                   "  1 proxy action asked, 0 gone, 1 come, 0 changed\n"
                   "line 12, 12:00:01.100000Z: remove context \"text\"\n  in force: nothing\n"
                   "  1 proxy action asked, 1 gone, 0 come, 0 changed\n"));
    const QJsonArray list =
        run({QStringLiteral("contexts"), QStringLiteral("--json"), path}).json().toArray();
    QCOMPARE(list.size(), 2);
    QCOMPARE(list.at(1).toObject().value(QStringLiteral("gone")).toInt(), 1);
}

void TraceToolTest::leaksInJsonHaveEveryKind()
{
    const Answer answer = run({QStringLiteral("leaks"), QStringLiteral("--json"), file(session())});
    QCOMPARE(answer.exit, 1);
    const QJsonObject object = answer.json().toObject();
    QCOMPARE(object.size(), 8);
    const QJsonArray left = object.value(QStringLiteral("subscriptions")).toArray();
    QCOMPARE(left.size(), 1);
    QCOMPARE(
        left.at(0).toObject().value(QStringLiteral("what")).toString(), QStringLiteral("0xc2"));
    QVERIFY(object.value(QStringLiteral("documents")).toArray().isEmpty());
    QCOMPARE(run({QStringLiteral("leaks"), file(session())}).text,
        QByteArray("subscriptions\n  \"document.opened\" 0xc2 in Zentu::EventManager(0x8), since "
                   "line 5, 12:00:00.400000Z\n"));
}

void TraceToolTest::nothingLeft()
{
    const Answer answer =
        run({QStringLiteral("leaks"), file("Zentu::ContextManager(0x1) push context: \"a\" \n")});
    QCOMPARE(answer.exit, 0);
    QCOMPARE(answer.text, QByteArray("nothing was left\n"));
}

void TraceToolTest::normalFormIsTheSameForOtherAddresses()
{
    QByteArray other = session();
    other.replace("(0x8)", "(0x7f00)")
        .replace("0xc1", "0xdd1")
        .replace("(0xe,", "(0xff,")
        .replace(" 1 7 ", " 1 12 ")
        .replace("T12:", "T13:");
    const QByteArray normal = run({QStringLiteral("normal"), file(session())}).text;
    QCOMPARE(run({QStringLiteral("normal"), file(other)}).text, normal);
    QVERIFY2(normal.contains("\nEventManager(EventManager-1)")
            || normal.contains("\nZentu::EventManager(EventManager-1) new event subscription: "
                               "handler-1 \"document.opened\"\n"),
        normal.constData());
    QVERIFY(!normal.contains("2026"));
}

void TraceToolTest::normalFormKnowsWhoIsGone()
{
    const QByteArray trace = "Zentu::ObjectPool(0x1) add object: QTimer(0x2, name = \"at 0x2\") \n"
                             "Zentu::ObjectPool(0x1) object destoryed: QObject(0x2) \n"
                             "Zentu::ObjectPool(0x1) add object: QTimer(0x2) \n"
                             "2026-11-22T12:00:00.000000Z 1 1 by the host 0x2\n"
                             "2026-11-22T12:00:00.000000Z 1 2 QAction(0x00)\n";
    QCOMPARE(run({QStringLiteral("normal"), QStringLiteral("-")}, trace).text,
        QByteArray(
            "Zentu::ObjectPool(ObjectPool-1) add object: QTimer(QTimer-1, name = \"at 0x2\")\n"
            "Zentu::ObjectPool(ObjectPool-1) object destoryed: QObject(QTimer-1)\n"
            "Zentu::ObjectPool(ObjectPool-1) add object: QTimer(QTimer-2)\n"
            "by the host QTimer-2\n"
            "thread-2: QAction(0x0)\n"));
}

void TraceToolTest::diffTellsOnlyWhatDiffers()
{
    QByteArray other = session();
    other.replace("(0x8)", "(0x7f00)").replace("document.opend", "document.opened");
    other += timed({"Zentu::ContextManager(0x7) push context: \"more\""});
    const Answer answer = run({QStringLiteral("diff"), file(session()), file(other)});
    QCOMPARE(answer.exit, 1);
    QCOMPARE(answer.text,
        QByteArray("-11: Zentu::EventManager(EventManager) post event IEvent(event, type = "
                   "\"document.opend\") 2\n"
                   "+11: Zentu::EventManager(EventManager) post event IEvent(event, type = "
                   "\"document.opened\") 2\n"
                   "+17: Zentu::ContextManager(ContextManager) push context: \"more\"\n"));
}

void TraceToolTest::diffOfTheSameBehaviour()
{
    QByteArray other = session();
    other.replace("0xc1", "0xf1");
    const Answer answer = run({QStringLiteral("diff"), file(session()), file(other)});
    QCOMPARE(answer.exit, 0);
    QCOMPARE(answer.text, QByteArray());
}

void TraceToolTest::drawingsAreWholeAndStandAlone_data()
{
    QTest::addColumn<QString>("command");
    QTest::addColumn<QStringList>("names");
    QTest::newRow("timeline") << QStringLiteral("timeline")
                              << QStringList({QStringLiteral("7"), QStringLiteral("a<b>&\"c\""),
                                     QStringLiteral("document.opend"), QStringLiteral("text"),
                                     QStringLiteral("file.save")});
    QTest::newRow("graph") << QStringLiteral("graph")
                           << QStringList({QStringLiteral("thread 7"), QStringLiteral("a<b>&\"c\""),
                                  QStringLiteral("0xc1")});
}

void TraceToolTest::drawingsAreWholeAndStandAlone()
{
    QFETCH(QString, command);
    QFETCH(QStringList, names);
    const QString trace = file(session()
        + timed({R"(Zentu::EventManager(0x8) post event IEvent(0xe, type = "a<b>&\"c\"") 0)"}));
    const QString svg = m_folder.filePath(QStringLiteral("drawing.svg"));
    const QString html = m_folder.filePath(QStringLiteral("drawing.html"));
    QCOMPARE(run({command, trace, QStringLiteral("-o"), svg}).exit, 0);
    QCOMPARE(run({command, trace, QStringLiteral("-o"), html}).exit, 0);

    QFile drawing(svg);
    QVERIFY(drawing.open(QIODevice::ReadOnly));
    const QByteArray text = drawing.readAll();
    QXmlStreamReader reader(text);
    QStringList found;
    while (!reader.atEnd()) {
        if (reader.readNext() == QXmlStreamReader::StartElement)
            found.append(reader.attributes().value(QLatin1String("data-name")).toString());
    }
    QVERIFY2(!reader.hasError(), qPrintable(reader.errorString()));
    for (const QString& name : names)
        QVERIFY2(found.contains(name), qPrintable(name));

    QFile page(html);
    QVERIFY(page.open(QIODevice::ReadOnly));
    const QByteArray pageText = page.readAll();
    QVERIFY(pageText.startsWith("<!DOCTYPE html>"));
    QVERIFY(pageText.contains(text));
    QCOMPARE(pageText.count("://"), 1);
    QVERIFY(!pageText.contains("src="));
    QCOMPARE(run({command, trace, QStringLiteral("-o"), QStringLiteral("/nowhere/x.svg")}).exit, 2);
}

void TraceToolTest::graphInJson()
{
    const QJsonObject graph =
        run({QStringLiteral("graph"), QStringLiteral("--json"), file(session())}).json().toObject();
    QCOMPARE(QJsonDocument(graph).toJson(QJsonDocument::Compact),
        QByteArray(R"({"hearing":[{"from":"document.opened","posts":1,"to":"0xc1"},)"
                   R"({"from":"document.opened","posts":1,"to":"0xc2"}],)"
                   R"("posts":[{"from":"thread 7","posts":1,"to":"document.opend"},)"
                   R"({"from":"thread 7","posts":1,"to":"document.opened"}]})"));
}

void TraceToolTest::timelineInJson()
{
    // Without times the lines are counted.
    QByteArray trace = session();
    trace.replace(QByteArray("Z 1 7 "), QByteArray("Z\n"));
    QByteArray plain;
    for (const QByteArray& line : trace.split('\n')) {
        if (!line.startsWith("2026"))
            plain += line + '\n';
    }
    const QJsonObject timeline =
        run({QStringLiteral("timeline"), QStringLiteral("--json"), QStringLiteral("-")}, plain)
            .json()
            .toObject();
    QCOMPARE(QJsonDocument(timeline.value(QStringLiteral("actions")).toArray())
                 .toJson(QJsonDocument::Compact),
        QByteArray(
            R"([{"name":"file.save","spans":[{"from":10,"to":15,"what":"text"}],"ticks":[]}])"));
    QCOMPARE(QJsonDocument(timeline.value(QStringLiteral("contexts")).toArray())
                 .toJson(QJsonDocument::Compact),
        QByteArray(R"([{"name":"text","spans":[{"from":7,"to":12,"what":"text"}],"ticks":[]}])"));
}

void TraceToolTest::timelineKnowsTheTime_data()
{
    QTest::addColumn<QByteArray>("stamp");
    QTest::addColumn<double>("seconds");
    QTest::newRow("the beginning") << QByteArray("1970-01-01T00:00:00Z") << 0.0;
    QTest::newRow("a fraction") << QByteArray("1970-01-01T00:01:02.250000Z") << 62.25;
    QTest::newRow("after a leap day") << QByteArray("2024-03-01T12:00:00Z") << 1709294400.0;
    QTest::newRow("no such day") << QByteArray("2024-13-99T01:00:00Z") << 3600.0;
}

void TraceToolTest::timelineKnowsTheTime()
{
    QFETCH(const QByteArray, stamp);
    QFETCH(const double, seconds);
    const QJsonObject timeline =
        run({QStringLiteral("timeline"), QStringLiteral("--json"), QStringLiteral("-")},
            stamp + " 1 7 hello")
            .json()
            .toObject();
    const QJsonObject thread = timeline.value(QStringLiteral("threads")).toArray().at(0).toObject();
    QCOMPARE(thread.value(QStringLiteral("ticks")).toArray(), QJsonArray{seconds});
}

void TraceToolTest::timelineGoesOnBehindManyPosts()
{
    // More than can be told apart: they get sparser, from the first to the last.
    QByteArray trace;
    for (int i = 0; i < 50000; ++i)
        trace += "Zentu::EventManager(0x8) post event IEvent(0xe, type = \"a\") 0\n";
    const QJsonObject timeline =
        run({QStringLiteral("timeline"), QStringLiteral("--json"), file(trace)}).json().toObject();
    const QJsonArray ticks = timeline.value(QStringLiteral("unheard"))
                                 .toArray()
                                 .at(0)
                                 .toObject()
                                 .value(QStringLiteral("ticks"))
                                 .toArray();
    QVERIFY2(
        ticks.size() > 5000 && ticks.size() <= 20000, qPrintable(QString::number(ticks.size())));
    QCOMPARE(ticks.first().toInt(), 1);
    QVERIFY(ticks.last().toInt() > 49990);
}

void TraceToolTest::followGoesOnWithTheFile()
{
    const QString path = file("first line\n2026-11-22T12:00:00.500000Z 1 7 second line\n");
    QProcess process;
    process.start(
        QStringLiteral(ZENTU_TRACE), {QStringLiteral("follow"), path, QStringLiteral("LINE")});
    QByteArray text;
    const auto received = [&] { return text += process.readAllStandardOutput(); };
    QTRY_COMPARE(received(), QByteArray("first line\n12:00:00.500000Z 7 second line\n"));
    QFile more(path);
    QVERIFY(more.open(QIODevice::Append));
    more.write("something else\nthird line\n");
    more.close();
    QTRY_COMPARE(
        received(), QByteArray("first line\n12:00:00.500000Z 7 second line\nthird line\n"));
    process.kill();
    QVERIFY(process.waitForFinished());
}

void TraceToolTest::followWaitsForTheEndOfALine()
{
    const QString path = file("first\nsec");
    QProcess process;
    process.start(QStringLiteral(ZENTU_TRACE), {QStringLiteral("follow"), path});
    QByteArray text;
    const auto received = [&] { return text += process.readAllStandardOutput(); };
    QTRY_COMPARE(received(), QByteArray("first\n"));
    QFile more(path);
    QVERIFY(more.open(QIODevice::Append));
    more.write("ond\n");
    more.close();
    QTRY_COMPARE(received(), QByteArray("first\nsecond\n"));
    process.kill();
    QVERIFY(process.waitForFinished());
}

void TraceToolTest::followTellsWhatAPipeHasAlready()
{
    QProcess process;
    process.start(QStringLiteral(ZENTU_TRACE), {QStringLiteral("follow"), QStringLiteral("-")});
    QByteArray text;
    const auto received = [&] { return text += process.readAllStandardOutput(); };
    process.write("first\nsec");
    QTRY_COMPARE(received(), QByteArray("first\n"));
    process.write("ond");
    process.closeWriteChannel();
    QTRY_COMPARE(received(), QByteArray("first\nsecond\n"));
    QTRY_COMPARE(process.state(), QProcess::NotRunning);
    QCOMPARE(process.exitCode(), 0);
}

void TraceToolTest::standardInput()
{
    QCOMPARE(
        run({QStringLiteral("follow"), QStringLiteral("-")}, "a\nb").text, QByteArray("a\nb\n"));
    QCOMPARE(run({QStringLiteral("leaks"), QStringLiteral("-")}, session()).exit, 1);
}

void TraceToolTest::cutTracesDoNoHarm()
{
    const QByteArray whole = session();
    for (const int size : {0, 1, 300, 777, static_cast<int>(whole.size()) - 3}) {
        for (const char* const command : {"summary", "events", "contexts", "leaks", "normal"}) {
            const Answer answer =
                run({QString::fromLatin1(command), QStringLiteral("-")}, whole.left(size));
            QVERIFY2(answer.exit == 0 || answer.exit == 1, command);
        }
    }
}

void TraceToolTest::randomBytesDoNoHarm()
{
    QRandomGenerator random(11);
    QByteArray bytes(100000, '\0');
    for (char& byte : bytes)
        byte = static_cast<char>(random.bounded(256));
    const QString path = file(bytes);
    for (const char* const command :
        {"summary", "events", "contexts", "leaks", "timeline", "graph", "normal"}) {
        for (const char* const form : {"", "--json"}) {
            QStringList arguments{QString::fromLatin1(command), path};
            if (*form != '\0')
                arguments.append(QString::fromLatin1(form));
            const Answer answer = run(arguments);
            QCOMPARE(answer.exit, 0);
            QCOMPARE(answer.errors, QByteArray());
        }
    }
    QCOMPARE(run({QStringLiteral("diff"), path, path}).exit, 0);
    QCOMPARE(run({QStringLiteral("diff"), path, file(session())}).exit, 1);
    QCOMPARE(run({QStringLiteral("why"), QStringLiteral("file.save"), path}).exit, 2);
    QCOMPARE(run({QStringLiteral("follow"), QStringLiteral("-")}, bytes).exit, 0);
}

QTEST_GUILESS_MAIN(TraceToolTest)
#include "tst_trace_tool.moc"
