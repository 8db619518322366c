// SPDX-License-Identifier: MIT
//
// What the trace alone tells of each entry of the Workbench, while it is driven.

#include "actions.h"
#include "answers.h"
#include "text_document.h"
#include "wisp_recorder.h"
#include "workbench_fixture.h"

#include <QPlainTextEdit>

using namespace Zentu::Inspect;

class WorkbenchWhyTest : public WorkbenchFixture
{
    Q_OBJECT

public:
    WorkbenchWhyTest()
        : m_sink(wisp::addSink(&WorkbenchWhyTest::feed, &m_program))
    {
    }
    ~WorkbenchWhyTest() override { wisp::removeSink(m_sink); }

private Q_SLOTS:
    void everyEntryIsExplained();

private:
    static void feed(int /*level*/, const char* text, void* program)
    {
        static_cast<Program*>(program)->feed(text);
    }

    void compareAll();

    Program m_program;
    int m_sink;
    int m_grey = 0;
    int m_withoutBackend = 0;
};

void WorkbenchWhyTest::compareAll()
{
    const QStringList ids = actionIds(m_program);
    QVERIFY(ids.contains(Ids::Save));
    for (const QString& id : ids) {
        const Zentu::ProxyAction* const proxy = action(id);
        const auto why = whyIsIt(m_program, id);
        QVERIFY2(proxy && why, qPrintable(id));
        const QAction* const backend = proxy->currentActiveBackendAction();
        QCOMPARE(why->active.value(), reinterpret_cast<Address>(backend));
        QCOMPARE(why->contexts, proxy->currentContext());
        if (proxy->isEnabled())
            continue;
        ++m_grey;
        m_withoutBackend += backend ? 0 : 1;
        // Without a backend it is known to be grey, with one that is as far as Qt prints it.
        if (!backend)
            QVERIFY2(why->isEnabled == false && why->reason.contains(QLatin1String("backend")),
                qPrintable(id));
        else
            QVERIFY2(why->context && why->reason.contains(*why->context), qPrintable(id));
    }
}

void WorkbenchWhyTest::everyEntryIsExplained()
{
    const auto step = [this](const auto& change) {
        change();
        compareAll();
    };
    step([] {});
    step([&] { m_window->open({file("a.txt", "one\ntwo\n")}); });
    step([&] { QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("more")); });
    step([&] { action(Ids::Undo)->trigger(); });
    step([&] { m_window->open({picture()}); });
    step([&] { m_window->open({file("b.txt", "")}); });
    step([&] { action(Ids::Close)->trigger(); });
    step([&] { action(Ids::Close)->trigger(); });
    QVERIFY(m_withoutBackend > 20);
    QVERIFY(m_grey > m_withoutBackend);
    QCOMPARE(m_program.counts().contradictions, 0);
}

QTEST_MAIN(WorkbenchWhyTest)
#include "tst_workbench_why.moc"
