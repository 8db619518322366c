#include "main_window.h"
#include "note.h"

#include <ZentuKit/ProxyAction>
#include <ZentuKit/wisp_recorder.h>

#include <QStatusBar>
#include <QTest>

#include <algorithm>

class MainWindowTest : public QObject
{
    Q_OBJECT

private slots:
    void actionFollowsTheCurrentNote();
};

void MainWindowTest::actionFollowsTheCurrentNote()
{
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* const clear = window.findChild<Zentu::ProxyAction*>("edit.clear");
    QVERIFY(!clear->isEnabled());

    wisp::clearRecordedLines();
    Note* const note = window.addNote(QStringLiteral("bread\nmilk"));
    QTRY_VERIFY(clear->isEnabled());
    QCOMPARE(window.statusBar()->currentMessage(), QStringLiteral("Added: bread"));
    clear->trigger();
    QCOMPARE(note->text(), QString());

    // All of it was traced, too.
    const std::vector<wisp::Line> lines = wisp::recordedLines();
    QVERIFY(std::any_of(lines.begin(), lines.end(), [](const wisp::Line& line) {
        return line.text.find("type = \"note.added\"") != std::string::npos;
    }));
}

QTEST_MAIN(MainWindowTest)
#include "tst_main_window.moc"
