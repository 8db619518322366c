// SPDX-License-Identifier: MIT
//
// What the inspector says of each entry of the Workbench, while that is driven.

#include "actions.h"
#include "session.h"
#include "text_document.h"
#include "why.h"
#include "wisp_recorder.h"
#include "workbench_fixture.h"

#include <QActionGroup>
#include <QMenu>
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

QTEST_MAIN(InspectedEntriesTest)
#include "tst_inspected_entries.moc"
