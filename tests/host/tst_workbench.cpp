// SPDX-License-Identifier: MIT
//
// Drives the Workbench's window with keys and files.

#include "action_mgr.h"
#include "actions.h"
#include "context_mgr.h"
#include "document_factory.h"
#include "file_change_bar.h"
#include "image_document.h"
#include "object_pool.h"
#include "option_dlg.h"
#include "proxy_act.h"
#include "settings.h"
#include "text_document.h"
#include "trace_hub.h"
#include "translations.h"
#include "workbench_fixture.h"

#include <QAccessible>
#include <QApplication>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDropEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>
#include <QTimer>
#include <QTranslator>
#include <QTreeWidget>

class WorkbenchTest : public WorkbenchFixture
{
    Q_OBJECT

private Q_SLOTS:
    void emptyWindowTellsWhatToDo();
    void proxiesShowTheirDefaultsWithoutADocument();
    void keysCopyTextOrThePicture();
    void everyActionHasAKeyAndEveryWidgetAName();
    void pathsKeepTheirDirection();
    void menusAreFoundByTheirIdentifiers();
    void wordCountFollowsTheBus();
    void fileIsOpenedOnce();
    void subscribersShowWhatTheBusSays();
    void recentFilesAreReopened();
    void droppedFilesAreOpened();
    void modifiedDocumentIsMarkedSavedAndClosed();
    void refusedCloseKeepsDocumentAndWindow();
    void findBarFindsAroundTheEnd();
    void picturesAreZoomedAndFitted();
    void wrapAndZoomApplyToTexts();
    void tabsShowShortTitlesAndWholePaths();
    void preferencesApplyToOpenDocuments();
    void translationsFollowTheLocale();
    void windowStateSurvives();
    void kindsOfDocumentsArePublished();
    void traceIsADocument();
    void changedFileIsReloadedKeptOrCompared();
    void unmodifiedTextReloadsByItself();
    void twoReplacementsAreBothSeen();
};

void WorkbenchTest::emptyWindowTellsWhatToDo()
{
    auto* hint = child<QWidget>("empty_hint");
    QVERIFY(hint->isVisible());
    m_window->open({file("a.txt", "a")});
    QVERIFY(!hint->isVisible());
    QVERIFY(child<QWidget>("documents")->isVisible());
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(hint->isVisible());
}

void WorkbenchTest::proxiesShowTheirDefaultsWithoutADocument()
{
    for (const QString& id :
        {Ids::Cut, Ids::Copy, Ids::Paste, Ids::Undo, Ids::Redo, Ids::Find, Ids::SelectAll,
            Ids::ZoomIn, Ids::ZoomOut, Ids::ActualSize, Ids::Save, Ids::SaveAs, Ids::Close}) {
        QVERIFY2(action(id), qPrintable(id));
        QVERIFY2(!action(id)->isEnabled(), qPrintable(id));
        QCOMPARE(action(id)->text(), action(id)->defaultProp()->text());
        QVERIFY2(!action(id)->text().isEmpty(), qPrintable(id));
        QVERIFY2(!action(id)->shortcut().isEmpty(), qPrintable(id));
        QVERIFY2(!action(id)->statusTip().isEmpty(), qPrintable(id));
    }
    QVERIFY(action(Ids::Open)->isEnabled());
    QCOMPARE(
        Zentu::ContextManager::instance()->currentContexts(), QStringList(Ids::WorkbenchContext));
}

void WorkbenchTest::keysCopyTextOrThePicture()
{
    QClipboard* const clipboard = QApplication::clipboard();
    m_window->open({picture(), file("a.txt", "some text")});
    QTRY_COMPARE(Zentu::ContextManager::instance()->currentContexts(),
        QStringList({TextDocument::Kind, Ids::WorkbenchContext}));
    QVERIFY(!action(Ids::Copy)->isEnabled()); // nothing is selected
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_A, Qt::ControlModifier);
    QVERIFY(action(Ids::Copy)->isEnabled());
    clipboard->clear();
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_C, Qt::ControlModifier);
    QTRY_COMPARE(clipboard->text(), QStringLiteral("some text"));

    m_window->findChild<QTabBar*>()->setCurrentIndex(0);
    QTRY_VERIFY(current<ImageDocument>());
    QVERIFY(action(Ids::Copy)->isEnabled());
    QVERIFY(!action(Ids::Find)->isEnabled());
    QTest::keyClick(m_window.get(), Qt::Key_C, Qt::ControlModifier);
    QTRY_COMPARE(clipboard->pixmap().size(), QSize(400, 300));

    QTest::keyClick(m_window.get(), Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(current<TextDocument>());
    QTest::keyClick(m_window.get(), Qt::Key_W, Qt::ControlModifier);
    QTRY_VERIFY(!action(Ids::Copy)->isEnabled());
    QCOMPARE(action(Ids::Copy)->text(), QStringLiteral("&Copy"));
}

static void checkKeys(const QMenu* menu)
{
    const QList<QAction*> actions = menu->actions();
    for (const QAction* action : actions) {
        if (action->isSeparator())
            continue;
        QVERIFY2(action->text().contains(QLatin1Char('&')) || !action->shortcut().isEmpty(),
            qPrintable(action->text()));
        if (action->menu())
            checkKeys(action->menu());
    }
}

void WorkbenchTest::everyActionHasAKeyAndEveryWidgetAName()
{
    m_window->open({picture(), file("a.txt", "some text")});
    const QList<QAction*> menus = m_window->menuBar()->actions();
    for (const QAction* menu : menus) {
        QVERIFY2(menu->text().contains(QLatin1Char('&')), qPrintable(menu->text()));
        checkKeys(menu->menu());
    }
    // What can have the focus can be read out.
    const QList<QWidget*> widgets = m_window->findChildren<QWidget*>();
    for (QWidget* widget : widgets) {
        const bool isOurs = widget->objectName().contains(QLatin1Char('_'))
            && !widget->objectName().startsWith(QLatin1String("qt_"));
        if (!isOurs || !(widget->focusPolicy() & Qt::TabFocus))
            continue;
        const QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(widget);
        QVERIFY2(
            read && !read->text(QAccessible::Name).isEmpty(), qPrintable(widget->objectName()));
    }
}

void WorkbenchTest::pathsKeepTheirDirection()
{
    const QVariantMap values = {{Events::Path, QStringLiteral("/a/b.txt")}, {Events::Bytes, 3}};
    QCOMPARE(Events::pathOf(values), QStringLiteral("/a/b.txt"));
    QApplication::setLayoutDirection(Qt::RightToLeft);
    const QString path = Events::pathOf(values);
    const QString size = Events::sizeOf(values);
    QApplication::setLayoutDirection(Qt::LeftToRight);
    QCOMPARE(path, QStringLiteral("\u200e/a/b.txt"));
    QVERIFY(size.startsWith(QChar(0x200e)));
}

void WorkbenchTest::menusAreFoundByTheirIdentifiers()
{
    auto* registry = Zentu::ActionManager::instance();
    for (const QString& id : {Ids::MenuFile, Ids::MenuEdit, Ids::MenuView, Ids::MenuWindow,
             Ids::MenuTools, Ids::MenuHelp}) {
        QVERIFY2(registry->getMenu(id), qPrintable(id));
        // Each title and each entry has its own key.
        QVERIFY(registry->getMenu(id)->title().contains(QLatin1Char('&')));
        for (const QAction* entry : registry->getMenu(id)->actions())
            QVERIFY2(entry->isSeparator() || entry->text().contains(QLatin1Char('&')),
                qPrintable(entry->text()));
    }
    QVERIFY(registry->getMenubar(Ids::MenuBar));
    QVERIFY(registry->getToolbar(Ids::ToolBar));
}

void WorkbenchTest::wordCountFollowsTheBus()
{
    auto* count = child<QAction>("tools.word_count");
    QVERIFY(Zentu::ActionManager::instance()->getMenu(Ids::MenuTools)->actions().contains(count));
    QVERIFY(!count->isEnabled());
    m_window->open({picture()});
    QVERIFY(!count->isEnabled());
    m_window->open({file("a.txt", "one two\nthree")});
    QVERIFY(count->isEnabled());
    QString text;
    QTimer::singleShot(50, this, [&] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        QVERIFY(box);
        text = box->text();
        box->accept();
    });
    count->trigger();
    QVERIFY2(text.startsWith(QLatin1String("3 words")), qPrintable(text));
    m_window->activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(m_window.get()));
    QTest::keyClick(m_window.get(), Qt::Key_W, Qt::ControlModifier);
    QVERIFY(!count->isEnabled());
}

void WorkbenchTest::fileIsOpenedOnce()
{
    const QString a = file("a.txt", "a");
    m_window->open({a, file("b.txt", "b")});
    m_window->open({a});
    QCOMPARE(m_window->findChild<QTabBar*>()->count(), 2);
    QTRY_COMPARE(current<TextDocument>()->path(), a);
}

void WorkbenchTest::subscribersShowWhatTheBusSays()
{
    const QString missing = path("no/such/file");
    m_window->open({file("a.txt", "abc"), missing});
    QCOMPARE(m_bus->types, QStringList({Events::DocumentOpened, Events::DocumentFailed}));
    QCOMPARE(m_bus->last.value(Events::Path).toString(), missing);
    auto* list = child<QTreeWidget>("event_list");
    QCOMPARE(list->topLevelItemCount(), 2);
    QCOMPARE(list->topLevelItem(0)->text(1), Events::DocumentOpened);
    QCOMPARE(list->topLevelItem(1)->text(4), missing);
    QVERIFY(child<QWidget>("notice_bar")->isVisible());
    QTest::keyClick(m_window.get(), Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(m_bus->types.last(), Events::DocumentClosed);
    QCOMPARE(m_bus->last.value(Events::Kind).toString(), TextDocument::Kind);
    QCOMPARE(m_bus->last.value(Events::Bytes).toInt(), 3);
}

void WorkbenchTest::recentFilesAreReopened()
{
    const QString a = file("a.txt", "a");
    m_window->open({a, file("b.txt", "b")});
    auto* menu = child<QMenu>("menu.recent");
    QVERIFY(menu->isEnabled());
    QVERIFY(menu->actions().at(0)->text().endsWith(QLatin1String("b.txt")));
    QVERIFY(menu->actions().at(1)->text().endsWith(QLatin1String("a.txt")));
    for (int i = 0; i < 2; ++i)
        QTest::keyClick(m_window.get(), Qt::Key_W, Qt::ControlModifier);
    menu->actions().at(1)->trigger();
    QCOMPARE(current<TextDocument>()->path(), a);
    QTRY_VERIFY(menu->actions().at(0)->text().endsWith(QLatin1String("a.txt")));
    menu->actions().constLast()->trigger();
    QVERIFY(!menu->isEnabled());
}

void WorkbenchTest::droppedFilesAreOpened()
{
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(file("a.txt", "a")), QUrl::fromLocalFile(picture())});
    QDragEnterEvent enter(QPoint(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &enter);
    QVERIFY(enter.isAccepted());
    QDropEvent drop(QPointF(5, 5), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QApplication::sendEvent(m_window.get(), &drop);
    QCOMPARE(m_window->findChild<QTabBar*>()->count(), 2);
}

void WorkbenchTest::modifiedDocumentIsMarkedSavedAndClosed()
{
    const QString path = file("a.txt", "text");
    m_window->open({path});
    QVERIFY(!action(Ids::Save)->isEnabled());
    QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("more "));
    QCOMPARE(m_window->findChild<QTabBar*>()->tabText(0), QStringLiteral("a.txt*"));
    QVERIFY(current<TextDocument>()->isWindowModified());
    QVERIFY(action(Ids::Undo)->isEnabled());
    QVERIFY(action(Ids::Save)->isEnabled());
    QTest::keyClick(m_window.get(), Qt::Key_S, Qt::ControlModifier);
    QCOMPARE(m_window->findChild<QTabBar*>()->tabText(0), QStringLiteral("a.txt"));
    QCOMPARE(content(path), QByteArray("more text"));
    QVERIFY(!action(Ids::Save)->isEnabled());
    QTest::keyClick(m_window.get(), Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(m_window->findChild<QTabBar*>()->count(), 0);
}

void WorkbenchTest::refusedCloseKeepsDocumentAndWindow()
{
    m_window->open({file("a.txt", "text")});
    QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("x"));
    answer(QDialogButtonBox::Cancel);
    QTest::keyClick(m_window.get(), Qt::Key_W, Qt::ControlModifier);
    QCOMPARE(m_window->findChild<QTabBar*>()->count(), 1);
    answer(QDialogButtonBox::Cancel);
    QVERIFY(!m_window->close());
    QVERIFY(m_window->isVisible());
    QVERIFY(!m_bus->types.contains(Events::DocumentClosed));
    answer(QDialogButtonBox::Discard);
    QVERIFY(m_window->close());
    QVERIFY(m_bus->types.contains(Events::DocumentClosed));
}

void WorkbenchTest::findBarFindsAroundTheEnd()
{
    m_window->open({file("a.txt", "one two one")});
    QTest::keyClick(m_window.get(), Qt::Key_F, Qt::ControlModifier);
    auto* text = child<QLineEdit>("find_text");
    QTRY_VERIFY(text->hasFocus());
    QTest::keyClicks(text, QStringLiteral("one"));
    QPlainTextEdit* const editor = current<TextDocument>()->editor();
    for (const int end : {11, 3, 11}) {
        QTest::keyClick(text, Qt::Key_Return);
        QCOMPARE(editor->textCursor().position(), end);
    }
    QTest::keyClick(text, Qt::Key_Escape);
    QVERIFY(!text->isVisible());
    QVERIFY(editor->hasFocus());
}

void WorkbenchTest::picturesAreZoomedAndFitted()
{
    m_window->open({picture()});
    auto* document = current<ImageDocument>();
    QVERIFY(document->isFitted());
    QVERIFY(action(Ids::Fit)->isChecked());
    action(Ids::ActualSize)->trigger();
    QCOMPARE(document->zoomFactor(), 1.0);
    QVERIFY(!action(Ids::Fit)->isChecked());
    action(Ids::ZoomIn)->trigger();
    QCOMPARE(document->zoomFactor(), 1.25);
    QCOMPARE(child<QWidget>("image_view")->size(), QSize(500, 375));
    action(Ids::ZoomOut)->trigger();
    QCOMPARE(document->zoomFactor(), 1.0);
    action(Ids::Fit)->trigger();
    QVERIFY(document->isFitted());
    QVERIFY(action(Ids::Fit)->isChecked());
}

void WorkbenchTest::wrapAndZoomApplyToTexts()
{
    m_window->open({file("a.txt", "text")});
    QPlainTextEdit* const editor = current<TextDocument>()->editor();
    const int size = editor->font().pointSize();
    action(Ids::ZoomIn)->trigger();
    QCOMPARE(editor->font().pointSize(), size + 1);
    action(Ids::ActualSize)->trigger();
    QCOMPARE(editor->font().pointSize(), size);
    QCOMPARE(editor->lineWrapMode(), QPlainTextEdit::NoWrap);
    action(Ids::WordWrap)->trigger();
    QCOMPARE(editor->lineWrapMode(), QPlainTextEdit::WidgetWidth);
    QVERIFY(action(Ids::WordWrap)->isChecked());
    action(Ids::WordWrap)->trigger();
    QCOMPARE(editor->lineWrapMode(), QPlainTextEdit::NoWrap);
    QVERIFY(!action(Ids::WordWrap)->isChecked());
}

void WorkbenchTest::tabsShowShortTitlesAndWholePaths()
{
    const QString path = file("a.txt", "text");
    m_window->open({path});
    const QTabBar* const tabs = m_window->findChild<QTabBar*>();
    QCOMPARE(tabs->tabText(0), QStringLiteral("a.txt"));
    QVERIFY2(tabs->tabToolTip(0).startsWith(QStringLiteral("a.txt - ") + m_folder->path()),
        qPrintable(tabs->tabToolTip(0)));
    QVERIFY(!tabs->tabIcon(0).isNull());
}

void WorkbenchTest::preferencesApplyToOpenDocuments()
{
    m_window->open({picture(), file("a.txt", "text")});
    bool looked = false;
    QTimer::singleShot(100, this, [&] {
        auto* dialog = qobject_cast<Zentu::OptionDialog*>(QApplication::activeModalWidget());
        QVERIFY(dialog);
        auto* tree = dialog->findChild<QTreeWidget*>(QStringLiteral("catalog_tree"));
        QCOMPARE(tree->topLevelItemCount(), 4);
        dialog->findChild<QSpinBox*>(QStringLiteral("font_size"))->setValue(21);
        QTest::keyClick(tree, Qt::Key_Down);
        for (int i = 0; i < 8 && !dialog->findChild<QCheckBox*>(QStringLiteral("watch_files")); ++i)
            QTest::keyClick(tree, Qt::Key_Down);
        dialog->findChild<QCheckBox*>(QStringLiteral("fit_images"))->setChecked(false);
        dialog->findChild<QComboBox*>(QStringLiteral("appearance"))->setCurrentIndex(2);
        auto* buttons = dialog->findChild<QDialogButtonBox*>(QStringLiteral("btn_box"));
        buttons->button(QDialogButtonBox::Apply)->click();
        QCOMPARE(current<TextDocument>()->editor()->font().pointSize(), 21);
        QVERIFY(!m_window->findChild<ImageDocument*>()->isFitted());
        looked = true;
        buttons->button(QDialogButtonBox::Cancel)->click();
    });
    child<QAction>("edit.preferences")->trigger();
    QVERIFY(looked);
    QCOMPARE(Settings::instance()->editorFont().pointSize(), 21);
    QCOMPARE(Settings::instance()->appearance(), Settings::Appearance::Dark);
    QVERIFY(!Settings::instance()->fitImages());
}

void WorkbenchTest::translationsFollowTheLocale()
{
    const QLocale previous;
    const auto options = [] {
        return QCoreApplication::translate("Zentu::OptionDialog", "Options");
    };
    QCOMPARE(options(), QStringLiteral("Options"));
    QLocale::setDefault(QLocale(QLocale::German, QLocale::Austria));
    loadTranslations();
    QLocale::setDefault(previous);
    QCOMPARE(options(), QStringLiteral("Optionen"));
    delete qApp->findChild<QTranslator*>();
}

void WorkbenchTest::windowStateSurvives()
{
    child<QWidget>("event_log")->hide();
    m_window->resize(777, 555);
    QVERIFY(m_window->close());
    destroyWindow();
    m_window = std::make_unique<MainWindow>();
    QCOMPARE(m_window->size(), QSize(777, 555));
    QVERIFY(child<QWidget>("event_log")->isHidden());
}

void WorkbenchTest::kindsOfDocumentsArePublished()
{
    QStringList kinds;
    for (QObject* object : Zentu::ObjectPool::instance()->allObjects()) {
        if (const auto* factory = qobject_cast<DocumentFactory*>(object))
            kinds.append(factory->kind());
    }
    kinds.sort();
    QCOMPARE(kinds,
        QStringList({QStringLiteral("image"), QStringLiteral("text"), QStringLiteral("trace")}));
}

void WorkbenchTest::traceIsADocument()
{
    const TraceHub hub;
    child<QAction>("tools.trace")->trigger();
    QCOMPARE(m_bus->last.value(Events::Kind).toString(), QStringLiteral("trace"));
    auto* lines = child<QPlainTextEdit>("trace_lines");
    QVERIFY(lines);
    Zentu::ContextManager::instance()->addContext(QStringLiteral("a context of its own"));
    QTRY_VERIFY(
        lines->toPlainText().contains(QLatin1String("push context: \"a context of its own\"")));
    child<QLineEdit>("trace_filter")->setText(QStringLiteral("a CONTEXT of"));
    QTRY_VERIFY(lines->blockCount() > 0);
    for (const QString& line : lines->toPlainText().split(QLatin1Char('\n')))
        QVERIFY2(line.contains(QLatin1String("a context of")), qPrintable(line));
    QVERIFY(action(Ids::Close)->isEnabled());
    QVERIFY(!action(Ids::Save)->isEnabled());
}

void WorkbenchTest::changedFileIsReloadedKeptOrCompared()
{
    const QString path = file("a.txt", "one\ntwo\n");
    m_window->open({path});
    auto* bar = child<FileChangeBar>("file_change_bar");
    QPlainTextEdit* const editor = current<TextDocument>()->editor();
    replace(path, "one\nthree\nfour\n");
    QTRY_VERIFY(bar->isVisible());
    QVERIFY(m_bus->types.contains(Events::DocumentChanged));
    QCOMPARE(editor->toPlainText(), QStringLiteral("one\ntwo\n"));
    QTest::mouseClick(child<QPushButton>("file_change_difference"), Qt::LeftButton);
    QVERIFY(child<QLabel>("file_change_text")
                ->text()
                .contains(QLatin1String("Lines only on disk: 2. Lines only here: 1.")));
    QTest::mouseClick(child<QPushButton>("file_change_keep"), Qt::LeftButton);
    QVERIFY(!bar->isVisible());
    QVERIFY(editor->document()->isModified());
    QCOMPARE(editor->toPlainText(), QStringLiteral("one\ntwo\n"));

    replace(path, "five\n");
    QTRY_VERIFY(bar->isVisible());
    QTest::mouseClick(child<QPushButton>("file_change_reload"), Qt::LeftButton);
    QVERIFY(!bar->isVisible());
    QCOMPARE(editor->toPlainText(), QStringLiteral("five\n"));
    QVERIFY(!editor->document()->isModified());
}

void WorkbenchTest::unmodifiedTextReloadsByItself()
{
    Settings::instance()->setReloadUnmodified(true);
    const QString path = file("a.txt", "one");
    m_window->open({path});
    QPlainTextEdit* const editor = current<TextDocument>()->editor();
    replace(path, "two");
    QTRY_COMPARE(editor->toPlainText(), QStringLiteral("two"));
    QVERIFY(!child<FileChangeBar>("file_change_bar")->isVisible());
    QTest::keyClicks(editor, QStringLiteral("mine "));
    replace(path, "three");
    QTRY_VERIFY(child<FileChangeBar>("file_change_bar")->isVisible());
    QCOMPARE(editor->toPlainText(), QStringLiteral("mine two"));
}

void WorkbenchTest::twoReplacementsAreBothSeen()
{
    Settings::instance()->setReloadUnmodified(true);
    const QString path = file("a.txt", "one");
    m_window->open({path});
    QPlainTextEdit* const editor = current<TextDocument>()->editor();
    replace(path, "two");
    QTRY_COMPARE(editor->toPlainText(), QStringLiteral("two"));
    // The document is told when the path is watched again, so the next change is more than the
    // delay later.
    replace(path, "three");
    QTRY_COMPARE(editor->toPlainText(), QStringLiteral("three"));
    QCOMPARE(m_bus->types.count(Events::DocumentChanged), 2);
}

QTEST_MAIN(WorkbenchTest)
#include "tst_workbench.moc"
