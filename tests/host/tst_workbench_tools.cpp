// SPDX-License-Identifier: MIT
//
// What a host's author copies: finding an action, shortcuts, and the filter of preferences.

#include "actions.h"
#include "preference_pages.h"
#include "text_document.h"
#include "workbench_fixture.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialog>
#include <QKeySequenceEdit>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSettings>
#include <QStackedWidget>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>

class WorkbenchToolsTest : public WorkbenchFixture
{
    Q_OBJECT

private Q_SLOTS:
    void actionIsFoundByAnyPartOfItsText();
    void enterTriggersWhatIsChosen();
    void listTellsWhyAnActionIsDisabled();
    void shortcutIsChangedKeptAndReset();
    void shortcutIsCleared();
    void conflictIsToldBeforehand_data();
    void conflictIsToldBeforehand();
    void filterHidesWhatDoesNotMatch_data();
    void filterHidesWhatDoesNotMatch();
    void filterLoadsNoPage();
    void filterKnowsEveryTextOfThePages();

private:
    /// Opens the find-action dialog with a text in its field.
    void findAction(const QString& text, const std::function<void(QTreeWidget*)>& look)
    {
        bool looked = false;
        whenAsked([&](QWidget* dialog) {
            auto* field = dialog->findChild<QLineEdit*>(QStringLiteral("find_action_text"));
            QTest::keyClicks(field, text);
            look(dialog->findChild<QTreeWidget*>());
            looked = true;
            dialog->close();
        });
        m_window->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
        QTest::keyClick(m_window.get(), Qt::Key_P, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(looked);
    }

    void inPreferences(const std::function<void(QDialog*)>& look)
    {
        bool looked = false;
        whenAsked([&](QWidget* dialog) {
            look(qobject_cast<QDialog*>(dialog));
            looked = true;
            if (dialog->isVisible())
                dialog->close();
        });
        child<QAction>("edit.preferences")->trigger();
        QVERIFY(looked);
    }

    void onShortcut(const QString& name, const std::function<void(QDialog*)>& look)
    {
        inPreferences([&](QDialog* dialog) {
            auto* tree = dialog->findChild<QTreeWidget*>(QStringLiteral("catalog_tree"));
            tree->setCurrentItem(
                tree->findItems(QStringLiteral("Shortcuts"), Qt::MatchExactly | Qt::MatchRecursive)
                    .constFirst());
            auto* list = dialog->findChild<QTreeWidget*>(QStringLiteral("shortcut_list"));
            list->setCurrentItem(list->findItems(name, Qt::MatchExactly).constFirst());
            look(dialog);
        });
    }

    static QStringList shown(const QTreeWidget* tree)
    {
        QStringList texts;
        QTreeWidgetItemIterator item(
            const_cast<QTreeWidget*>(tree), QTreeWidgetItemIterator::NotHidden);
        for (; *item; ++item)
            texts.append((*item)->text(0));
        return texts;
    }
};

void WorkbenchToolsTest::actionIsFoundByAnyPartOfItsText()
{
    m_window->open({file("a.txt", "text")});
    findAction(QStringLiteral("CLO"), [](QTreeWidget* list) {
        QVERIFY(shown(list).contains(QStringLiteral("Close")));
        QVERIFY(!shown(list).contains(QStringLiteral("Copy")));
        const QTreeWidgetItem* const item = list->currentItem();
        QCOMPARE(item->text(0), QStringLiteral("Close"));
        QCOMPARE(item->text(1), QStringLiteral("File"));
        QCOMPARE(item->text(2), QStringLiteral("Ctrl+W"));
        QCOMPARE(item->text(3), QString());
    });
    findAction(QStringLiteral("a.txt"), [](QTreeWidget* list) {
        QVERIFY(list->currentItem()->text(1).startsWith(QStringLiteral("File \u25b8 Open Recent")));
    });
}

void WorkbenchToolsTest::enterTriggersWhatIsChosen()
{
    m_window->open({file("a.txt", "text")});
    findAction(QStringLiteral("zoom"), [](QTreeWidget* list) {
        auto* field = list->window()->findChild<QLineEdit*>();
        QCOMPARE(list->currentItem()->text(0), QStringLiteral("Zoom In"));
        QTest::keyClick(field, Qt::Key_Down);
        QCOMPARE(list->currentItem()->text(0), QStringLiteral("Zoom Out"));
        QTest::keyClick(field, Qt::Key_Up);
        QTest::keyClick(field, Qt::Key_Return);
        QVERIFY(!list->window()->isVisible());
    });
    const int size = current<TextDocument>()->editor()->font().pointSize();
    QTRY_COMPARE(current<TextDocument>()->editor()->font().pointSize(), size + 1);
}

void WorkbenchToolsTest::listTellsWhyAnActionIsDisabled()
{
    m_window->open({file("a.txt", "text")});
    const auto obstacle = [this](const QString& text) {
        QString told;
        findAction(text, [&](QTreeWidget* list) {
            told = list->currentItem()->text(3);
            // It cannot be triggered.
            QTest::keyClick(list->window()->findChild<QLineEdit*>(), Qt::Key_Return);
            QVERIFY(list->window()->isVisible());
        });
        return told;
    };
    QCOMPARE(obstacle(QStringLiteral("Fit to")), QStringLiteral("no context of it is in force"));
    QCOMPARE(obstacle(QStringLiteral("Cut")), QStringLiteral("its backend is disabled"));
    m_window->open({picture()});
    // The context that is left goes with the next turn of the event loop.
    QTRY_VERIFY(!action(Ids::Cut)->currentActiveBackendAction());
    QCOMPARE(obstacle(QStringLiteral("Cut")), QStringLiteral("no context of it is in force"));
}

void WorkbenchToolsTest::shortcutIsChangedKeptAndReset()
{
    m_window->open({file("a.txt", "text")});
    const QKeySequence own(QStringLiteral("Ctrl+0"));
    const QKeySequence other(QStringLiteral("Ctrl+Alt+Z"));
    onShortcut(QStringLiteral("Actual Size"), [&](QDialog* dialog) {
        auto* edit = dialog->findChild<QKeySequenceEdit*>();
        QCOMPARE(edit->keySequence(), own);
        edit->setKeySequence(other);
        QCOMPARE(
            dialog->findChild<QLabel*>(QStringLiteral("shortcut_conflict"))->text(), QString());
        dialog->accept();
    });
    QCOMPARE(action(Ids::ActualSize)->shortcut(), other);
    // A window made anew has it from the settings.
    QVERIFY(m_window->close());
    destroyWindow();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QCOMPARE(action(Ids::ActualSize)->shortcut(), other);
    onShortcut(QStringLiteral("Actual Size"), [&](QDialog* dialog) {
        dialog->findChild<QPushButton*>(QStringLiteral("shortcut_reset"))->click();
        QVERIFY(!dialog->findChild<QPushButton*>(QStringLiteral("shortcut_reset"))->isEnabled());
        dialog->accept();
    });
    QCOMPARE(action(Ids::ActualSize)->shortcut(), own);
    QVERIFY(!QSettings().contains(QStringLiteral("shortcuts/view.actual_size")));
}

void WorkbenchToolsTest::shortcutIsCleared()
{
    onShortcut(QStringLiteral("Find..."), [&](QDialog* dialog) {
        dialog->findChild<QPushButton*>(QStringLiteral("shortcut_clear"))->click();
        dialog->accept();
    });
    QVERIFY(action(Ids::Find)->shortcut().isEmpty());
    onShortcut(QStringLiteral("Find..."), [&](QDialog* dialog) {
        dialog->findChild<QPushButton*>(QStringLiteral("shortcut_reset"))->click();
        dialog->reject();
    });
    QVERIFY(action(Ids::Find)->shortcut().isEmpty());
}

void WorkbenchToolsTest::conflictIsToldBeforehand_data()
{
    QTest::addColumn<QString>("keys");
    QTest::addColumn<QString>("told");
    QTest::newRow("another proxy") << QStringLiteral(
        "Ctrl+W") << QStringLiteral("Ctrl+W is the shortcut of Close already; neither will work.");
    QTest::newRow("a fixed action")
        << QStringLiteral("Ctrl+,")
        << QStringLiteral("Ctrl+, is the shortcut of Preferences... already; neither will work.");
    QTest::newRow("none") << QStringLiteral("Ctrl+Alt+F") << QString();
}

void WorkbenchToolsTest::conflictIsToldBeforehand()
{
    QFETCH(QString, keys);
    QFETCH(QString, told);
    onShortcut(QStringLiteral("Find..."), [&](QDialog* dialog) {
        dialog->findChild<QKeySequenceEdit*>()->setKeySequence(QKeySequence(keys));
        QCOMPARE(dialog->findChild<QLabel*>(QStringLiteral("shortcut_conflict"))->text(), told);
        dialog->reject();
    });
    QCOMPARE(action(Ids::Find)->shortcut(), QKeySequence(QStringLiteral("Ctrl+F")));
}

void WorkbenchToolsTest::filterHidesWhatDoesNotMatch_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("shown");
    const auto row = [](const char* text, const QString& shown) {
        QTest::newRow(text) << QString::fromLatin1(text)
                            << shown.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    };
    row("", QStringLiteral("Editor Font Colors Images Scaling Files Watching Keyboard Shortcuts"));
    row("IMAGES", QStringLiteral("Images Scaling"));
    row("family", QStringLiteral("Editor Font"));
    row("smooth", QStringLiteral("Images Scaling"));
    row("select all", QStringLiteral("Keyboard Shortcuts"));
    row("nothing like it", QString());
}

void WorkbenchToolsTest::filterHidesWhatDoesNotMatch()
{
    QFETCH(QString, text);
    QFETCH(QStringList, shown);
    inPreferences([&](QDialog* dialog) {
        auto* tree = dialog->findChild<QTreeWidget*>(QStringLiteral("catalog_tree"));
        dialog->findChild<QLineEdit*>(QStringLiteral("preferences_filter"))->setText(text);
        QCOMPARE(this->shown(tree), shown);
    });
}

void WorkbenchToolsTest::filterLoadsNoPage()
{
    inPreferences([&](QDialog* dialog) {
        auto* filter = dialog->findChild<QLineEdit*>(QStringLiteral("preferences_filter"));
        const auto* pages = dialog->findChild<QStackedWidget*>();
        for (const char* text : {"a", "smooth", "zoom", ""})
            filter->setText(QLatin1String(text));
        QCOMPARE(pages->count(), 1);
        filter->setText(QStringLiteral("smooth"));
        QTest::keyClick(filter, Qt::Key_Return);
        QCOMPARE(pages->count(), 2);
        QVERIFY(dialog->findChild<QWidget*>(QStringLiteral("smooth_images"))->isVisible());
    });
}

void WorkbenchToolsTest::filterKnowsEveryTextOfThePages()
{
    for (const auto& page : preferencePages()) {
        page->initialize();
        const std::unique_ptr<QWidget> widget(page->pageWidget());
        QStringList shown;
        for (const QLabel* label : widget->findChildren<QLabel*>())
            shown.append(label->text());
        for (const QAbstractButton* button : widget->findChildren<QAbstractButton*>())
            shown.append(button->text());
        for (const QString& text : shown)
            QVERIFY2(text.isEmpty() || page->texts().contains(text), qPrintable(text));
    }
}

QTEST_MAIN(WorkbenchToolsTest)
#include "tst_workbench_tools.moc"
