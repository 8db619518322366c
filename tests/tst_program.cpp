// SPDX-License-Identifier: MIT
#include "answers.h"
#include "program.h"

#include <QRandomGenerator>
#include <QTest>

#include <numeric>

using namespace Zentu::Inspect;

namespace {

Program replayed(const std::vector<const char*>& lines)
{
    Program program;
    for (const char* const line : lines)
        program.feed(line);
    return program;
}

QStringList texts(const std::vector<std::string>& strings)
{
    QStringList result;
    for (const std::string& string : strings)
        result.append(QString::fromStdString(string));
    return result;
}

QStringList namesOf(const Registrations& registrations)
{
    QStringList result;
    for (const auto& [name, entry] : registrations.entries())
        result.append(QString::fromStdString(name) + QLatin1String(entry.isCertain ? "" : "?"));
    return result;
}

const Proxy& onlyProxy(const Program& program)
{
    return program.proxies().begin()->second;
}

} // namespace

class ProgramTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newestSubscriberComesFirst();
    void postsAreCountedByThreadAndMode();
    void postThatNobodyCouldHear();
    void eachManagerHasItsOwn();
    void contextsAreGlobalOnesLast();
    void activeBackendHasItsContextAndItsCause();
    void whatASwitchCosts();
    void backendOfTwoContextsLeavesOneOfThem();
    void laterLinesTellWhichNameWent_data();
    void laterLinesTellWhichNameWent();
    void otherProxyAtTheSameAddress();
    void enabledIsWhatWasPrintedLast();
    void widgetWithTwoNames();
    void documentsUntilTheyAreDestroyed();
    void pagesOfADialog();
    void poolKeepsTheOrder();
    void watchIsPausedAfterAChange();
    void beginningThatIsMissing();
    void messagesChangeNothingAndAreKept();
    void derivedSpeakersAreTold();
    void textWithoutItemsNeedsAKnownSpeaker();
    void historyIsBounded();
    void randomBytesAndCutTraces();
};

void ProgramTest::newestSubscriberComesFirst()
{
    const Program program = replayed({
        "Zentu::EventManager(0x1) new event subscription: 0xa \"t\" ",
        "Zentu::EventManager(0x1) new event subscription: 0xb \"t\" ",
        "something else",
        "Zentu::EventManager(0x1) new event subscription: 0xc \"t\" ",
        "Zentu::EventManager(0x1) unsubscribe event: 0xb \"t\" ",
        "Zentu::EventManager(0x1) new event subscription: 0xa \"u\" ",
        "Zentu::EventManager(0x1) unsubscribe all events for: 0xd ",
    });
    const EventTypes& types = program.buses().at(1);
    const auto& subscribers = types.find("t")->second.subscribers;
    QCOMPARE(subscribers.size(), std::size_t(2));
    QCOMPARE(subscribers[0].handler, Address(0xc));
    QCOMPARE(subscribers[0].since.line, 4);
    QCOMPARE(subscribers[1].handler, Address(0xa));
    QCOMPARE(program.counts().of(Reading::Foreign), 1);
    QCOMPARE(program.counts().contradictions, 0);
}

void ProgramTest::postsAreCountedByThreadAndMode()
{
    const Program program = replayed({
        "2026-11-22T12:00:00.000000Z 1 7 Zentu::EventManager(0x1) post event IEvent(0x5, type = "
        "\"t\") 0 ",
        "2026-11-22T12:00:01.000000Z 1 7 Zentu::EventManager(0x1) post event IEvent(0x5, type = "
        "\"t\") 0 ",
        "2026-11-22T12:00:02.000000Z 1 8 Zentu::EventManager(0x1) post event IEvent(0x5, type = "
        "\"t\") 2 ",
        "2026-11-22T12:00:02.500000Z 1 8 Zentu::EventManager(0x1) post event IEvent(0x5, type = "
        "\"t\") 0 ",
        "2026-11-22T12:00:03.000000Z 1 8 Zentu::EventManager(0x1) post event IEvent(0x0)  2 ",
    });
    const EventType& type = program.buses().at(1).find("t")->second;
    QCOMPARE(type.postCount, 4);
    QCOMPARE(type.posts.size(), std::size_t(3));
    QCOMPARE(type.posts[0].thread, std::string("7"));
    QCOMPARE(type.posts[0].posts, 2);
    QCOMPARE(type.posts[1].thread, std::string("8"));
    QCOMPARE(type.posts[1].mode, 2);
    QCOMPARE(type.posts[2].thread, std::string("8"));
    QCOMPARE(type.posts[2].mode, 0);
    QCOMPARE(std::string(type.lastPost.time()), std::string("2026-11-22T12:00:02.500000Z"));
    QCOMPARE(program.buses().at(1).size(), std::size_t(1));
}

void ProgramTest::postThatNobodyCouldHear()
{
    const Program program = replayed({
        "Zentu::EventManager(0x1) post event IEvent(0x5, type = \"t\") 0 ",
        "Zentu::EventManager(0x1) new event subscription: 0xa \"t\" ",
        "Zentu::EventManager(0x1) post event IEvent(0x5, type = \"t\") 0 ",
        "Zentu::EventManager(0x1) unsubscribe all events for: 0xa ",
        "Zentu::EventManager(0x1) post event IEvent(0x5, type = \"t\") 0 ",
    });
    const EventType& type = program.buses().at(1).find("t")->second;
    QCOMPARE(type.unheard, 2);
    QCOMPARE(type.lastUnheard.line, 5);
    QVERIFY(type.hadSubscriber);
}

void ProgramTest::eachManagerHasItsOwn()
{
    const Program program = replayed({
        "Zentu::EventManager(0x1) new event subscription: 0xa \"t\" ",
        "Zentu::EventManager(0x2) unsubscribe all events for: 0xa ",
        "Zentu::ContextManager(0x1) push context: \"a\" ",
        "Zentu::ContextManager(0x2) push context: \"b\" ",
    });
    QCOMPARE(program.buses().at(1).find("t")->second.subscribers.size(), std::size_t(1));
    QCOMPARE(texts(program.contextManagers().at(1).all()), QStringList(QStringLiteral("a")));
    QCOMPARE(texts(program.contextManagers().at(2).all()), QStringList(QStringLiteral("b")));
}

void ProgramTest::contextsAreGlobalOnesLast()
{
    const Program program = replayed({
        "Zentu::ContextManager(0x1) add global context \"g\" ",
        "Zentu::ContextManager(0x1) push context: \"a\" ",
        "Zentu::ContextManager(0x1) push context: \"b\" ",
        "Zentu::ContextManager(0x1) add global context \"h\" ",
        "Zentu::ContextManager(0x1) push context: \"a\" ",
        "Zentu::ContextManager(0x1) remove global context \"g\" ",
        "Zentu::ContextManager(0x1) remove context \"none\" ",
        "Zentu::ContextManager(0x1) context not found \"none\"",
    });
    QCOMPARE(texts(program.contextManagers().at(1).all()),
        QStringList({QStringLiteral("a"), QStringLiteral("b"), QStringLiteral("h")}));
}

void ProgramTest::activeBackendHasItsContextAndItsCause()
{
    const Program program = replayed({
        "Zentu::ProxyActionManager(0x9) register proxy action \"save\" QAction(0x1 text=\"S\") ",
        "QAction(0x1 text=\"S\") add backend action \"a\" QAction(0xa text=\"\") ",
        "QAction(0x1 text=\"S\") add backend action \"b\" QAction(0xb text=\"\") ",
        "Zentu::ContextManager(0x2) push context: \"b\" ",
        "set context and update for all proxy actions ",
        "QAction(0x1 text=\"S\") set context (\"x\", \"b\", \"a\") ",
        "QAction(0x1 text=\"S\") change active backend action to QAction(0xb text=\"\") ",
    });
    const Proxy* const proxy = program.proxyById("save");
    QVERIFY(proxy);
    QCOMPARE(proxy->active.value(), Address(0xb));
    QCOMPARE(Program::activeContext(*proxy).value(), std::string("b"));
    QCOMPARE(proxy->history.back().at.line, 7);
    QCOMPARE(proxy->history.back().cause.line, 4);
    QCOMPARE(proxy->history.back().causeText, std::string("push context: \"b\""));
    QVERIFY(!program.proxyById("other"));
}

void ProgramTest::whatASwitchCosts()
{
    const Program program = replayed({
        "QAction(0x1 text=\"S\") change active backend action to QAction(0xa text=\"\") ",
        "Zentu::ContextManager(0x9) push context: \"b\" ",
        "QAction(0x1 text=\"S\") set context (\"b\") ",
        "QAction(0x1 text=\"S\") change active backend action to QAction(0x00) ",
        "QAction(0x2 text=\"T\") set context (\"b\") ",
        "QAction(0x2 text=\"T\") change active backend action to QAction(0xc text=\"\") ",
        "QAction(0x3 text=\"U\") set context (\"b\") ",
        "QAction(0x2 text=\"T\") backend action destroyed QObject(0xc) ",
        "QAction(0x2 text=\"T\") change active backend action to QAction(0x00) ",
        "Zentu::ContextManager(0x9) remove context \"b\" ",
    });
    QCOMPARE(program.switchCount(), 2);
    const Switch& change = program.switches().front();
    QCOMPARE(change.asked, 3);
    QCOMPARE(change.gone, 1);
    QCOMPARE(change.came, 1);
    QCOMPARE(change.changed, 0);
    QCOMPARE(change.at.line, 2);
    QCOMPARE(program.switches().back().asked, 0);
}

void ProgramTest::backendOfTwoContextsLeavesOneOfThem()
{
    const Program program = replayed({
        "QAction(0x1 text=\"S\") add backend action \"a\" QAction(0xa text=\"\") ",
        "QAction(0x1 text=\"S\") add backend action \"b\" QAction(0xa text=\"\") ",
        "QAction(0x1 text=\"S\") add backend action \"c\" QAction(0xc text=\"\") ",
        "QAction(0x1 text=\"S\") remove backend action QAction(0xa text=\"\") ",
    });
    QCOMPARE(namesOf(onlyProxy(program).backends),
        QStringList({QStringLiteral("a?"), QStringLiteral("b?"), QStringLiteral("c")}));
}

void ProgramTest::laterLinesTellWhichNameWent_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QStringList>("left");
    QTest::newRow("other one in its place")
        << QByteArray("QAction(0x1 text=\"S\") add backend action \"a\" QAction(0xe text=\"\") ")
        << QStringList({QStringLiteral("a"), QStringLiteral("b")});
    QTest::newRow("the one that was left goes") << QByteArray(
        "QAction(0x1 text=\"S\") remove backend context \"a\" QAction(0xa text=\"\") ")
                                                << QStringList();
    QTest::newRow("both go") << QByteArray(
        "QAction(0x1 text=\"S\") remove backend action QAction(0xa text=\"\") ")
                             << QStringList();
}

void ProgramTest::laterLinesTellWhichNameWent()
{
    QFETCH(QByteArray, line);
    QFETCH(QStringList, left);
    const Program program = replayed({
        "QAction(0x1 text=\"S\") add backend action \"a\" QAction(0xa text=\"\") ",
        "QAction(0x1 text=\"S\") add backend action \"b\" QAction(0xa text=\"\") ",
        "QAction(0x1 text=\"S\") remove backend action QAction(0xa text=\"\") ",
        line.constData(),
    });
    QCOMPARE(namesOf(onlyProxy(program).backends), left);
    QCOMPARE(program.counts().contradictions, 0);
}

void ProgramTest::otherProxyAtTheSameAddress()
{
    const Program program = replayed({
        "QAction(0x1 text=\"S\") add backend action \"a\" QAction(0xa text=\"\") ",
        "QAction(0x1 text=\"S\") add backend action \"b\" QAction(0xb text=\"\") ",
        "QAction(0x1 text=\"T\") add backend action \"a\" QAction(0xc text=\"\") ",
    });
    const Proxy& proxy = onlyProxy(program);
    QCOMPARE(namesOf(proxy.backends), QStringList(QStringLiteral("a")));
    QCOMPARE(proxy.backends.find("a")->value, Address(0xc));
    QCOMPARE(proxy.seen.line, 3);
    QCOMPARE(program.counts().contradictions, 1);
    QCOMPARE(program.contradictions().front().at.line, 3);
}

void ProgramTest::enabledIsWhatWasPrintedLast()
{
    const Program program = replayed({
        "QAction(0x1 text=\"S\" enabled=false) add backend action \"a\" QAction(0xa text=\"x\" "
        "enabled=true) ",
        "QAction(0x1 text=\"S\" enabled=false) change active backend action to QAction(0xa "
        "text=\"x\" enabled=false) ",
        "QAction(0x1 text=\"S\") add backend action \"b\" QAction(0xb text=\"y\") ",
    });
    QCOMPARE(program.actions().at(0xa).isEnabled.value(), false);
    QCOMPARE(program.actions().at(0xa).at.line, 2);
    QVERIFY(!program.actions().at(0xb).isEnabled);
}

void ProgramTest::widgetWithTwoNames()
{
    Program program = replayed({
        "Zentu::ActionManager(0x1) register menu \"file\" QMenu(0xa, name=\"m\") ",
        "Zentu::ActionManager(0x1) register menu \"edit\" QMenu(0xa, name=\"m\") ",
        "Zentu::ActionManager(0x1) register toolbar \"file\" QToolBar(0xb) ",
        "Zentu::ActionManager(0x1) menu destroyed QObject(0xa) ",
    });
    const Registry& registry = program.registries().at(1);
    QCOMPARE(namesOf(registry.of(WidgetKind::Menu)),
        QStringList({QStringLiteral("edit?"), QStringLiteral("file?")}));
    program.feed("Zentu::ActionManager(0x1) menu destroyed QObject(0xa) ");
    QCOMPARE(namesOf(registry.of(WidgetKind::Menu)), QStringList());
    QCOMPARE(namesOf(registry.of(WidgetKind::Toolbar)), QStringList(QStringLiteral("file")));
    program.feed("Zentu::ActionManager(0x1) clear ");
    QCOMPARE(namesOf(registry.of(WidgetKind::Toolbar)), QStringList());
}

void ProgramTest::documentsUntilTheyAreDestroyed()
{
    Program program = replayed({
        "Zentu::MdiArea(0x1, name=\"area\") add view MdiWindow(0xa, \"one\")",
        "Zentu::MdiArea(0x1, name=\"area\") active window: MdiWindow(0xa, \"one\") ",
        "Zentu::MdiArea(0x1, name=\"area\") current window changed: MdiWindow(0xa, \"one\")",
        "Zentu::MdiArea(0x1, name=\"area\") add view MdiWindow(0xb)",
        "MdiWindow(0xa, \"one*\") try to close ",
        "MdiWindow(0xa, \"one*\") closed",
    });
    const Area& area = program.areas().at(1);
    QCOMPARE(area.documents, std::vector<Address>({0xa, 0xb}));
    QCOMPARE(area.current.value(), Address(0xa));
    QVERIFY(program.documents().at(0xa).isClosed);
    QCOMPARE(program.documents().at(0xa).title, std::string("one*"));
    program.feed("MdiWindow(0xa, \"one*\") destroying ");
    QCOMPARE(area.documents, std::vector<Address>({0xb}));
    QVERIFY(!program.documents().count(0xa));
    program.feed("Zentu::MdiArea(0x1, name=\"area\") current window changed: MdiWindow(0x0)");
    QCOMPARE(area.current.value(), Address(0));
}

void ProgramTest::pagesOfADialog()
{
    Program program = replayed({
        "Zentu::OptionDialog(0x1) initialze catalog tree ",
        "Preferences(0x1, name=\"p\") item changed ",
        "Preferences(0x1, name=\"p\") initialize IOptionPage(0xa, category = \"View/Font\") ",
        "Preferences(0x1, name=\"p\") show option page IOptionPage(0xa, category = \"View/Font\") ",
    });
    const Dialog& dialog = program.dialogs().at(1);
    QCOMPARE(dialog.shown, Address(0xa));
    QCOMPARE(dialog.pages.size(), std::size_t(1));
    QCOMPARE(dialog.pages[0].category, std::string("View/Font"));
    QVERIFY(!dialog.isDone && !dialog.pages[0].isFinalized);
    program.feed("Preferences(0x1, name=\"p\") done 1 ");
    program.feed(
        "Preferences(0x1, name=\"p\") finalize IOptionPage(0xa, category = \"View/Font\") ");
    QVERIFY(dialog.isDone && dialog.pages[0].isFinalized);
    QCOMPARE(program.counts().of(Reading::Foreign), 0);
}

void ProgramTest::poolKeepsTheOrder()
{
    Program program = replayed({
        "Zentu::ObjectPool(0x1) add object: QTimer(0xa, name = \"t\") ",
        "Zentu::ObjectPool(0x1) add object: QObject(0xb) ",
        "Zentu::ObjectPool(0x1) add object: QObject(0xc) ",
        "Zentu::ObjectPool(0x1) object destoryed: QObject(0xb) ",
        "Zentu::ObjectPool(0x1) add object: QObject(0xc) already exists",
    });
    const auto& pool = program.pools().at(1);
    QCOMPARE(pool.size(), std::size_t(2));
    QCOMPARE(pool[0].className, std::string("QTimer"));
    QCOMPARE(pool[0].name, std::string("t"));
    QCOMPARE(pool[1].object, Address(0xc));
    program.feed("Zentu::ObjectPool(0x1) clear all objects ");
    QVERIFY(pool.empty());
}

void ProgramTest::watchIsPausedAfterAChange()
{
    Program program = replayed({
        "Zentu::FileWatcher(0x1) start watching \"/a\" ",
        "Zentu::FileWatcher(0x1) start watching \"/b\" ",
        "Zentu::FileWatcher(0x1) file changed: \"/a\" ",
    });
    const Watches& watches = program.watchers().at(1);
    QVERIFY(watches.find("/a")->second.isPaused);
    program.feed("Zentu::FileWatcher(0x1) re-watch: \"/a\" ");
    QVERIFY(!watches.find("/a")->second.isPaused);
    QCOMPARE(watches.find("/a")->second.since.line, 1);
    program.feed("Zentu::FileWatcher(0x1) stop watching: \"/b\" ");
    QCOMPARE(watches.size(), std::size_t(1));
}

void ProgramTest::beginningThatIsMissing()
{
    const Program program = replayed({
        "Zentu::EventManager(0x1) unsubscribe event: 0xb \"t\" ",
        "Zentu::ObjectPool(0x1) remove object: QObject(0xb) ",
        "QAction(0x1 text=\"S\") set context (\"a\") ",
        "QAction(0x1 text=\"S\") change active backend action to QAction(0xb text=\"\") ",
    });
    QCOMPARE(program.counts().contradictions, 2);
    const Proxy& proxy = onlyProxy(program);
    QCOMPARE(proxy.active.value(), Address(0xb));
    QVERIFY(!Program::activeContext(proxy));
}

void ProgramTest::messagesChangeNothingAndAreKept()
{
    const Program program = replayed({
        "Zentu::EventManager(0x1) new event subscription: 0xa \"t\" ",
        "Zentu::EventManager(0x1) duplicated event subscription: 0xa \"t\"",
        "Zentu::EventManager(0x1) unsubscribe event: 0xb \"t\" no match found",
        "Zentu::EventManager(0x1) something new",
    });
    QCOMPARE(program.buses().at(1).find("t")->second.subscribers.size(), std::size_t(1));
    QCOMPARE(program.counts().remarks, 3);
    QCOMPARE(program.remarks()[1].at.line, 3);
    QVERIFY(program.remarks()[2].reading == Reading::Unknown);
}

void ProgramTest::derivedSpeakersAreTold()
{
    const Program program = replayed({
        "MyPool(0x1) add object: QObject(0xa) ",
        "Zentu::ObjectPool(0x2) add object: QObject(0xa) ",
    });
    QCOMPARE(program.pools().size(), std::size_t(2));
    QCOMPARE(program.derivedSpeakers().size(), std::size_t(1));
    QCOMPARE(*program.derivedSpeakers().begin(), std::string("MyPool"));
}

void ProgramTest::textWithoutItemsNeedsAKnownSpeaker()
{
    const Program program = replayed({
        "MyRegistry(0x1) register menu \"file\" QMenu(0xa) ",
        "MyBoard(0x2) clear ",
        "MyRegistry(0x1) clear ",
    });
    QCOMPARE(program.registries().size(), std::size_t(1));
    QVERIFY(program.registries().at(1).of(WidgetKind::Menu).entries().empty());
    QCOMPARE(program.counts().of(Reading::Foreign), 1);
}

void ProgramTest::historyIsBounded()
{
    Program program;
    for (int i = 0; i < 1000; ++i) {
        program.feed("Zentu::ContextManager(0x9) push context: \"b\" ");
        program.feed("QAction(0x1 text=\"S\") change active backend action to QAction(0x00) ");
        program.feed("Zentu::EventManager(0x1) nothing that is known");
    }
    QCOMPARE(onlyProxy(program).history.size(), Program::HistorySize);
    QCOMPARE(program.switches().size(), Program::HistorySize);
    QCOMPARE(program.remarks().size(), Program::HistorySize);
    QCOMPARE(program.counts().remarks, 1000);
    QCOMPARE(program.switchCount(), 1000);
}

// A trace of every text, cut and with bytes changed, in any order.
void ProgramTest::randomBytesAndCutTraces()
{
    QRandomGenerator random(3);
    std::string trace;
    for (int i = 0; i < 400; ++i) {
        const TextInfo& info = TextTable[random.bounded(static_cast<quint32>(TextTable.size()))];
        if (!info.speaker.empty())
            trace += std::string(info.speaker) + "(0x" + std::to_string(random.bounded(3)) + ") ";
        trace += info.text;
        for (const char kind : info.items) {
            const std::string number = std::to_string(random.bounded(3));
            trace += ' ';
            trace += kind == 's' ? '"' + number + '"'
                : kind == 'l'    ? "(\"" + number + "\")"
                : kind == 'o'    ? "QObject(0x" + number + ')'
                                 : "0x" + number;
        }
        trace += ' ' + std::string(info.end) + '\n';
    }
    for (int run = 0; run < 1000; ++run) {
        std::string cut = trace.substr(random.bounded(static_cast<quint32>(trace.size())));
        cut.resize(std::min<std::size_t>(cut.size(), 3000));
        for (int changes = random.bounded(20); changes > 0 && !cut.empty(); --changes)
            cut[random.bounded(static_cast<quint32>(cut.size()))] =
                static_cast<char>(random.bounded(256));
        Program program;
        std::string_view rest = cut;
        while (!rest.empty()) {
            const std::string_view line = rest.substr(0, rest.find('\n'));
            program.feed(line);
            rest.remove_prefix(std::min(line.size() + 1, rest.size()));
        }
        const QStringList ids = actionIds(program);
        for (const QString& id : ids)
            QVERIFY(!whyIsIt(program, id)->reason.isEmpty());
        leaks(program);
        const Counts& counts = program.counts();
        QCOMPARE(std::accumulate(counts.readings.begin(), counts.readings.end(), qint64(0)),
            counts.lines);
    }
}

QTEST_APPLESS_MAIN(ProgramTest)
#include "tst_program.moc"
