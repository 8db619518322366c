// SPDX-License-Identifier: MIT
// Linked to each step of the tutorial, which has main(): looks at the program from outside while it
// runs, and ends it. The step is the last digit of the program's name.
#include "mdi_area.h"
#include "option_dlg.h"
#include "proxy_act.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QMainWindow>
#include <QMenuBar>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QStatusBar>
#include <QTabBar>
#include <QTest>
#include <QTimer>

class TutorialTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();

    void windowIsShown();
    void statusLineShowsWhatTheBusTells();
    void actionDoesWhatAlwaysApplies();
    void newNoteHasATab();
    void actionFollowsTheCurrentNote();
    void changedNoteIsAskedFor();
    void preferencesAreApplied();
    void commandLineBringsTitleAndNotes();

private:
    QAction* entry(const QString& text) const;
    QAction* clear() const { return m_window->findChild<Zentu::ProxyAction*>(); }
    Zentu::MdiArea* area() const { return m_window->findChild<Zentu::MdiArea*>(); }
    QString message() const { return m_window->statusBar()->currentMessage(); }
    Zentu::IMdiSubWindow* addNote() const;

    int m_step = 0;
    QMainWindow* m_window = nullptr;
    QString m_titleAtFirst;
    QString m_messageAtFirst;
    QStringList m_tabsAtFirst;
};

void TutorialTest::initTestCase()
{
    m_step = QCoreApplication::applicationFilePath().right(1).toInt();
    const QWidgetList windows = QApplication::topLevelWidgets();
    for (QWidget* window : windows) {
        if (auto* const main = qobject_cast<QMainWindow*>(window))
            m_window = main;
    }
    QVERIFY(m_window);
    m_titleAtFirst = m_window->windowTitle();
    if (m_step < 2)
        return;
    m_messageAtFirst = message();
    if (m_step < 4)
        return;
    const auto* const tabs = area()->findChild<QTabBar*>();
    for (int tab = 0; tab < tabs->count(); ++tab)
        m_tabsAtFirst.append(tabs->tabText(tab));
}

// Each begins with an empty window.
void TutorialTest::init()
{
    if (m_step < 4)
        return;
    const QList<Zentu::IMdiSubWindow*> notes = area()->subWindows();
    for (Zentu::IMdiSubWindow* note : notes)
        QVERIFY(note->close());
    QTRY_VERIFY(area()->subWindows().isEmpty());
    QTRY_VERIFY(!area()->currentSubWindow());
}

QAction* TutorialTest::entry(const QString& text) const
{
    const QList<QAction*> all = m_window->findChildren<QAction*>();
    for (QAction* action : all) {
        if (action->text() == text)
            return action;
    }
    return nullptr;
}

Zentu::IMdiSubWindow* TutorialTest::addNote() const
{
    entry(QStringLiteral("&New"))->trigger();
    return area()->subWindows().constLast();
}

// Calls the function with the next dialog that waits for an answer.
template <typename Dialog, typename Answer>
static void answer(Answer give)
{
    QTimer::singleShot(0, qApp, [give] {
        auto* const dialog = qobject_cast<Dialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        give(dialog);
    });
}

static void press(QMessageBox::StandardButton button)
{
    answer<QMessageBox>([button](QMessageBox* question) { question->button(button)->click(); });
}

void TutorialTest::windowIsShown()
{
    QVERIFY(m_window->isVisible());
    QCOMPARE(m_window->size(), QSize(640, 480));
    if (m_step < 8)
        QCOMPARE(m_titleAtFirst, QStringLiteral("Notes"));
}

void TutorialTest::statusLineShowsWhatTheBusTells()
{
    if (m_step < 2)
        return;
    if (m_step < 8)
        QCOMPARE(m_messageAtFirst, QStringLiteral("Welcome"));
}

void TutorialTest::actionDoesWhatAlwaysApplies()
{
    if (m_step < 3)
        return;
    m_window->statusBar()->showMessage(QStringLiteral("something"));
    QCOMPARE(clear()->text(), QStringLiteral("&Clear"));
    QCOMPARE(clear()->shortcut(), QKeySequence(QStringLiteral("Ctrl+L")));
    QVERIFY(clear()->isEnabled());
    clear()->trigger();
    QCOMPARE(message(), QString());
}

void TutorialTest::newNoteHasATab()
{
    if (m_step < 4)
        return;
    const auto* const tabs = area()->findChild<QTabBar*>();
    addNote();
    addNote();
    QCOMPARE(tabs->count(), 2);
    QCOMPARE(message(), QStringLiteral("A note more"));
}

void TutorialTest::actionFollowsTheCurrentNote()
{
    if (m_step < 5)
        return;
    Zentu::IMdiSubWindow* const note = addNote();
    auto* const editor = note->findChild<QPlainTextEdit*>();
    QTRY_COMPARE(clear()->text(), QStringLiteral("&Clear Note"));
    editor->insertPlainText(QStringLiteral("milk"));
    clear()->trigger();
    QCOMPARE(editor->toPlainText(), QString());
    editor->undo();
    QCOMPARE(editor->toPlainText(), QStringLiteral("milk"));
    editor->document()->setModified(false);
    note->close();
    QTRY_COMPARE(clear()->text(), QStringLiteral("&Clear"));
}

void TutorialTest::changedNoteIsAskedFor()
{
    if (m_step < 6)
        return;
    addNote();
    Zentu::IMdiSubWindow* const changed = addNote();
    changed->findChild<QPlainTextEdit*>()->insertPlainText(QStringLiteral("bread"));
    press(QMessageBox::Cancel);
    QVERIFY(!changed->close());
    press(QMessageBox::Cancel);
    QVERIFY(!m_window->close());
    QCOMPARE(area()->subWindows().size(), 2);
    press(QMessageBox::Discard);
    QVERIFY(changed->close());
    QTRY_COMPARE(area()->subWindows().size(), 1);
}

void TutorialTest::preferencesAreApplied()
{
    if (m_step < 7)
        return;
    answer<Zentu::OptionDialog>([](Zentu::OptionDialog* dialog) {
        dialog->findChild<QSpinBox*>()->setValue(23);
        dialog->accept();
    });
    entry(QStringLiteral("&Preferences..."))->trigger();
    QCOMPARE(QApplication::font().pointSize(), 23);
}

void TutorialTest::commandLineBringsTitleAndNotes()
{
    if (m_step < 8)
        return;
    // Qt adds the title of the maximized note.
    QCOMPARE(m_titleAtFirst, QStringLiteral("My notes - [Note]"));
    QCOMPARE(m_tabsAtFirst, QStringList({QStringLiteral("R&&D"), QStringLiteral("Buy bread")}));
    QCOMPARE(m_messageAtFirst, QStringLiteral("A note more"));
}

static void testTheProgram()
{
    QTimer::singleShot(0, qApp, [] {
        TutorialTest test;
        QCoreApplication::exit(QTest::qExec(&test, {QStringLiteral("tutorial")}));
    });
}
Q_COREAPP_STARTUP_FUNCTION(testTheProgram)

#include "tst_tutorial.moc"
