// SPDX-License-Identifier: MIT
//
// What the inspector says of each entry of the Workbench, while that is driven.

#include "actions.h"
#include "answers.h"
#include "session.h"
#include "text_document.h"
#include "why.h"
#include "wisp_recorder.h"
#include "workbench_fixture.h"

#include <QFile>
#include <QPlainTextEdit>

using namespace Zentu::Inspect;

class InspectedEntriesTest : public WorkbenchFixture
{
    Q_OBJECT

public:
    InspectedEntriesTest()
        : m_session(m_listener)
    {
    }

private Q_SLOTS:
    void everyGreyEntryIsExplained();
    void recordingTellsWhetherBackendsAreEnabled();

private:
    void explainAll();
    void explainProxy(const Zentu::ProxyAction& proxy);

    Zentu::Inspect::Listener m_listener;
    Session m_session;
    int m_withoutBackend = 0;
    int m_withBackend = 0;
    int m_plain = 0;
};

// Both parts of the reason are asked of the library, and stand in the sentence.
void InspectedEntriesTest::explainProxy(const Zentu::ProxyAction& proxy)
{
    const QString sentence = why(m_session, proxy).sentence;
    const QAction* const backend = proxy.currentActiveBackendAction();
    ++(backend ? m_withBackend : m_withoutBackend);
    if (backend) {
        QVERIFY2(!backend->isEnabled(), qPrintable(sentence));
        QVERIFY2(sentence.startsWith(QStringLiteral("Its backend for “")), qPrintable(sentence));
        QVERIFY2(sentence.contains(QLatin1String(", is disabled since ")), qPrintable(sentence));
        const QByteArray owner = backend->parent()->metaObject()->className();
        QVERIFY2(
            sentence.contains(QLatin1String(", of ") + QLatin1String(owner)), qPrintable(sentence));
        return;
    }
    const QStringList contexts = proxy.currentContext();
    for (const QString& context : contexts) {
        QVERIFY(!proxy.getBackendAction(context));
        QVERIFY2(sentence.section(QLatin1String("in force"), -1).contains(context),
            qPrintable(sentence));
    }
    QVERIFY2(sentence.contains(QLatin1String("backend")), qPrintable(sentence));
}

void InspectedEntriesTest::explainAll()
{
    m_session.takeLines();
    const QList<QAction*> actions = m_window->findChildren<QAction*>();
    for (const QAction* const action : actions) {
        if (action->isEnabled() || action->isSeparator())
            continue;
        if (const auto* const proxy = qobject_cast<const Zentu::ProxyAction*>(action)) {
            explainProxy(*proxy);
            continue;
        }
        ++m_plain;
        const QString sentence = why(*action).sentence;
        QVERIFY2(sentence.contains(QLatin1String("disabled")), qPrintable(sentence));
        QVERIFY2(!sentence.contains(QLatin1String("nobody")), qPrintable(sentence));
    }
}

void InspectedEntriesTest::everyGreyEntryIsExplained()
{
    const auto step = [this](const auto& change) {
        change();
        explainAll();
    };
    step([] {});
    step([&] { m_window->open({file("a.txt", "one\ntwo\n")}); });
    step([&] { QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("more")); });
    step([&] { action(Ids::Undo)->trigger(); });
    step([&] { m_window->open({picture()}); });
    step([&] { m_window->open({file("b.txt", "")}); });
    step([&] { action(Ids::Close)->trigger(); });
    step([&] { action(Ids::Close)->trigger(); });
    QVERIFY2(m_withoutBackend > 20, qPrintable(QString::number(m_withoutBackend)));
    QVERIFY2(m_withBackend > 20, qPrintable(QString::number(m_withBackend)));
    QVERIFY2(m_plain > 0, qPrintable(QString::number(m_plain)));
}

// From before the window, and to be asked without the program.
void InspectedEntriesTest::recordingTellsWhetherBackendsAreEnabled()
{
    destroyWindow();
    QFile recording(path("trace"));
    QCOMPARE(m_listener.startRecording(recording.fileName()), QString());
    m_window = std::make_unique<MainWindow>();
    m_window->open({file("a.txt", "one\ntwo\n"), picture()});
    m_listener.stopRecording();
    QVERIFY(recording.open(QIODevice::ReadOnly));
    Program program;
    while (!recording.atEnd()) {
        const QByteArray line = recording.readLine();
        program.feed({line.constData(), static_cast<std::size_t>(line.size())});
    }
    QCOMPARE(program.counts().of(Reading::Unknown), qint64(0));
    QCOMPARE(program.counts().of(Reading::Damaged), qint64(0));
    int known = 0;
    const QStringList ids = actionIds(program);
    for (const QString& id : ids) {
        const auto answer = whyIsIt(program, id);
        QVERIFY2(answer && answer->active && answer->isEnabled, qPrintable(id));
        QCOMPARE(answer->active.value(),
            reinterpret_cast<Address>(action(id)->currentActiveBackendAction()));
        known += *answer->isEnabled == action(id)->isEnabled() ? 1 : 0;
    }
    // What was switched on or off since then has left no line.
    QVERIFY2(known > ids.size() / 2, qPrintable(QString::number(known)));
}

QTEST_MAIN(InspectedEntriesTest)
#include "tst_inspected_entries.moc"
