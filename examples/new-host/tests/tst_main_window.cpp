#include "main_window.h"
#include "note.h"

#include <ZentuKit/ProxyAction>
#include <ZentuKit/zentu_trace_test.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMessageBox>
#include <QStatusBar>
#include <QTest>
#include <QTimer>

class MainWindowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void actionFollowsTheCurrentNote();
    void changedNoteIsAskedFor();
};

// Answers the next question that is shown.
static void answer(QMessageBox::StandardButton button)
{
    QTimer::singleShot(0, qApp, [button] {
        auto* const question = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(question);
        question->button(button)->click();
    });
}

void MainWindowTest::actionFollowsTheCurrentNote()
{
    MainWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    auto* const clear = window.findChild<Zentu::ProxyAction*>("edit.clear");
    QVERIFY(!clear->isEnabled());

    const Zentu::TraceRecording recording;
    Note* const note = window.addNote(QStringLiteral("bread\nmilk"));
    QTRY_VERIFY(clear->isEnabled());
    QCOMPARE(window.statusBar()->currentMessage(), QStringLiteral("Added: bread"));
    clear->trigger();
    QCOMPARE(note->text(), QString());

    // All of it was traced, too. ZENTU_UPDATE_TRACES=1 writes the file anew.
    ZENTU_VERIFY_POSTED(recording, "note.added");
    ZENTU_COMPARE_TRACE(recording, "add_note.trace");
}

void MainWindowTest::changedNoteIsAskedFor()
{
    MainWindow window;
    window.show();
    window.addNote(QStringLiteral("milk"));
    Note* const changed = window.addNote(QStringLiteral("bread"));
    changed->clear();

    answer(QMessageBox::Cancel);
    QVERIFY(!changed->close());
    answer(QMessageBox::Cancel);
    QVERIFY(!window.close());
    QCOMPARE(window.findChildren<Note*>().size(), 2);
    answer(QMessageBox::Discard);
    QVERIFY(window.close());
}

QTEST_MAIN(MainWindowTest)
#include "tst_main_window.moc"
