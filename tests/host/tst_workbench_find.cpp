// SPDX-License-Identifier: MIT
//
// Finding and replacing in a text, and the bars around it.

#include "actions.h"
#include "text_document.h"
#include "workbench_fixture.h"

#include <QApplication>
#include <QCheckBox>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

class WorkbenchFindTest : public WorkbenchFixture
{
    Q_OBJECT

private Q_SLOTS:
    void hitsAreFoundAndCountedWhileTyping();
    void keysGoFromHitToHit();
    void caseAndWholeWordsNarrowTheHits_data();
    void caseAndWholeWordsNarrowTheHits();
    void hitIsReplaced();
    void allHitsAreReplacedInOneStep();
    void statusTellsLineAndColumn();
    void fieldIsWiderThanItsButtons_data();
    void fieldIsWiderThanItsButtons();
    void nothingIsCutInATile();

private:
    void openFind(const QByteArray& text, const QString& id = Ids::Find)
    {
        m_window->open({file("a.txt", text)});
        action(id)->trigger();
        field()->clear();
    }

    QLineEdit* field() const { return child<QLineEdit>("find_text"); }
    QString result() const { return child<QLabel>("find_result")->text(); }
    QPlainTextEdit* editor() const { return current<TextDocument>()->editor(); }
    int begin() const { return editor()->textCursor().selectionStart(); }
};

void WorkbenchFindTest::hitsAreFoundAndCountedWhileTyping()
{
    openFind("tea toe two toe");
    QTest::keyClicks(field(), QStringLiteral("t"));
    QCOMPARE(result(), QStringLiteral("1 of 4"));
    QTest::keyClicks(field(), QStringLiteral("o"));
    QCOMPARE(result(), QStringLiteral("1 of 2"));
    QCOMPARE(editor()->textCursor().selectedText(), QStringLiteral("to"));
    QCOMPARE(begin(), 4);
    QTest::keyClicks(field(), QStringLiteral("x"));
    QCOMPARE(result(), QStringLiteral("Not found"));
    QTest::keyClick(field(), Qt::Key_Backspace);
    QCOMPARE(result(), QStringLiteral("1 of 2"));
    field()->clear();
    QCOMPARE(result(), QString());
}

void WorkbenchFindTest::keysGoFromHitToHit()
{
    openFind("one two one two one");
    QTest::keyClicks(field(), QStringLiteral("one"));
    for (const int hit : {8, 16, 0}) {
        QTest::keyClick(m_window.get(), Qt::Key_F3);
        QCOMPARE(begin(), hit);
    }
    QCOMPARE(result(), QStringLiteral("1 of 3"));
    QTest::keyClick(field(), Qt::Key_Escape);
    QVERIFY(!field()->isVisible());
    QTest::keyClick(m_window.get(), Qt::Key_F3, Qt::ShiftModifier);
    QCOMPARE(begin(), 16);
    QCOMPARE(result(), QStringLiteral("3 of 3"));
}

void WorkbenchFindTest::caseAndWholeWordsNarrowTheHits_data()
{
    QTest::addColumn<bool>("matchCase");
    QTest::addColumn<bool>("wholeWords");
    QTest::addColumn<QString>("result");
    QTest::newRow("neither") << false << false << QStringLiteral("1 of 4");
    QTest::newRow("case") << true << false << QStringLiteral("1 of 2");
    QTest::newRow("words") << false << true << QStringLiteral("1 of 3");
    QTest::newRow("both") << true << true << QStringLiteral("1 of 1");
}

void WorkbenchFindTest::caseAndWholeWordsNarrowTheHits()
{
    QFETCH(bool, matchCase);
    QFETCH(bool, wholeWords);
    QFETCH(QString, result);
    openFind("\xc3\x84rger, \xc3\xa4rger, \xc3\xa4rgerlich, \xc3\x84RGER.");
    child<QCheckBox>("find_case")->setChecked(matchCase);
    child<QCheckBox>("find_words")->setChecked(wholeWords);
    field()->setText(QStringLiteral("\u00e4rger"));
    QCOMPARE(this->result(), result);
}

void WorkbenchFindTest::hitIsReplaced()
{
    openFind("a.c abc a.c", Ids::Replace);
    field()->setText(QStringLiteral("a.c"));
    auto* replacement = child<QLineEdit>("find_replacement");
    QVERIFY(replacement->isVisible());
    replacement->setText(QStringLiteral("$1\\"));
    QTest::mouseClick(child<QPushButton>("find_replace"), Qt::LeftButton);
    QCOMPARE(editor()->toPlainText(), QStringLiteral("$1\\ abc a.c"));
    QCOMPARE(result(), QStringLiteral("1 of 1"));
    QTest::keyClick(replacement, Qt::Key_Return);
    QCOMPARE(editor()->toPlainText(), QStringLiteral("$1\\ abc $1\\"));
    QVERIFY(!child<QPushButton>("find_replace")->isEnabled());
    action(Ids::Find)->trigger();
    QVERIFY(!replacement->isVisible());
}

void WorkbenchFindTest::allHitsAreReplacedInOneStep()
{
    openFind("one\none two\nONE", Ids::Replace);
    field()->setText(QStringLiteral("one"));
    child<QLineEdit>("find_replacement")->setText(QStringLiteral("one more"));
    QTest::mouseClick(child<QPushButton>("find_replace_all"), Qt::LeftButton);
    QCOMPARE(editor()->toPlainText(), QStringLiteral("one more\none more two\none more"));
    QCOMPARE(result(), QStringLiteral("3 replaced"));
    editor()->undo();
    QCOMPARE(editor()->toPlainText(), QStringLiteral("one\none two\nONE"));
}

void WorkbenchFindTest::statusTellsLineAndColumn()
{
    m_window->open({file("a.txt", "one\ntwo\n")});
    auto* status = child<QLabel>("document_status");
    QVERIFY(status->text().startsWith(QLatin1String("Line 1, column 1 ")));
    QTest::keyClick(editor(), Qt::Key_Down);
    QTest::keyClick(editor(), Qt::Key_Right);
    QVERIFY2(
        status->text().startsWith(QLatin1String("Line 2, column 2 ")), qPrintable(status->text()));
    action(Ids::Close)->trigger();
    QTRY_COMPARE(status->text(), QString());
}

void WorkbenchFindTest::fieldIsWiderThanItsButtons_data()
{
    QTest::addColumn<int>("width");
    QTest::newRow("wide") << 1000;
    QTest::newRow("narrow") << 420;
}

void WorkbenchFindTest::fieldIsWiderThanItsButtons()
{
    QFETCH(int, width);
    m_window->resize(width, 500);
    openFind("text", Ids::Replace);
    auto* bar = child<QWidget>("find_bar");
    QTRY_VERIFY(bar->width() <= width);
    for (const QPushButton* button : bar->findChildren<QPushButton*>())
        QVERIFY2(field()->width() > button->width(), qPrintable(button->objectName()));
}

void WorkbenchFindTest::nothingIsCutInATile()
{
    m_window->resize(1100, 900);
    m_window->open({file("b.txt", "b"), file("c.txt", "c"), file("d.txt", "d")});
    openFind("text", Ids::Replace);
    child<QAction>("window.tile")->trigger();
    current<TextDocument>()->onFileDeleted();
    for (const char* name : {"find_bar", "file_change_bar"}) {
        auto* bar = current<TextDocument>()->findChild<QWidget*>(QLatin1String(name));
        QTRY_VERIFY(bar->isVisible());
        // It takes no more room than it needs.
        QTRY_VERIFY(bar->height() <= bar->heightForWidth(bar->width()));
        for (const QWidget* part : bar->findChildren<QWidget*>()) {
            const bool isControl = part->inherits("QAbstractButton") || part->inherits("QLineEdit");
            if (!part->isVisible() || !isControl)
                continue;
            const QRect place(part->mapTo(bar, QPoint()), part->size());
            QTRY_VERIFY2(bar->rect().contains(place), qPrintable(part->objectName()));
            QVERIFY2(
                part->width() >= part->minimumSizeHint().width(), qPrintable(part->objectName()));
        }
    }
}

QTEST_MAIN(WorkbenchFindTest)
#include "tst_workbench_find.moc"
