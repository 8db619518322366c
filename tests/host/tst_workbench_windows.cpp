// SPDX-License-Identifier: MIT
//
// The window around the documents: what it shows without one, and how it goes from one to another.

#include "actions.h"
#include "image_document.h"
#include "recorder.h"
#include "settings.h"
#include "text_document.h"
#include "trace_hub.h"
#include "workbench_fixture.h"

#include <QApplication>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QSet>
#include <QTabBar>
#include <QTreeWidget>

Q_DECLARE_METATYPE(Settings::Appearance)

class WorkbenchWindowsTest : public WorkbenchFixture
{
    Q_OBJECT

private Q_SLOTS:
    void hintIsReadOnEveryPalette_data();
    void hintIsReadOnEveryPalette();
    void hintOffersRecentFiles();
    void newTextAsksForItsName();
    void nameWithoutFileBeginsAnEmptyText();
    void titleNamesTheFileFirst();
    void sharedActionsStayEnabledBetweenDocuments();
    void cascadeLeavesRoomToWork();
    void zoomSurvivesOtherPreferences();
    void traceBeginsAtTheLeft();
    void currentTabIsMarked_data();
    void currentTabIsMarked();
    void iconsFollowThePalette();
    void tabGoesFromTheTreeToThePage();
    void everyOneOfManyTabsIsReachedByKey();
    void othersAreClosedFromATabsMenu();

private:
    void openTwoKinds() { m_window->open({picture(), file("a.txt", "text")}); }
};

static void addPalettes()
{
    QTest::addColumn<Settings::Appearance>("appearance");
    QTest::newRow("system") << Settings::Appearance::System;
    QTest::newRow("light") << Settings::Appearance::Light;
    QTest::newRow("dark") << Settings::Appearance::Dark;
}

void WorkbenchWindowsTest::hintIsReadOnEveryPalette_data()
{
    addPalettes();
}

void WorkbenchWindowsTest::hintIsReadOnEveryPalette()
{
    QFETCH(Settings::Appearance, appearance);
    Settings::instance()->setAppearance(appearance);
    const QImage image = child<QLabel>("empty_text")->grab().toImage();
    int darkest = 255;
    int lightest = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            darkest = qMin(darkest, qGray(image.pixel(x, y)));
            lightest = qMax(lightest, qGray(image.pixel(x, y)));
        }
    }
    QVERIFY2(lightest - darkest > 100, qPrintable(QString::number(lightest - darkest)));
}

void WorkbenchWindowsTest::hintOffersRecentFiles()
{
    auto* hint = child<QWidget>("empty_hint");
    QVERIFY(!hint->findChild<QPushButton*>());
    const QString name = file("a&b.txt", "text");
    m_window->open({name, file("c.txt", "text")});
    action(Ids::Close)->trigger();
    action(Ids::Close)->trigger();
    QTRY_VERIFY(hint->isVisible());
    const QList<QPushButton*> links = hint->findChildren<QPushButton*>();
    QCOMPARE(links.size(), 2);
    QVERIFY(links.at(0)->text().startsWith(QLatin1String("c.txt")));
    QVERIFY(links.at(1)->text().startsWith(QLatin1String("a&&b.txt")));
    links.at(1)->click();
    QTRY_VERIFY(current<TextDocument>());
    QCOMPARE(current<TextDocument>()->path(), name);
}

void WorkbenchWindowsTest::newTextAsksForItsName()
{
    QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
    auto* document = current<TextDocument>();
    QVERIFY(document);
    QVERIFY2(document->name().startsWith(QLatin1String("Untitled ")), qPrintable(document->name()));
    QTest::keyClick(m_window.get(), Qt::Key_N, Qt::ControlModifier);
    QCOMPARE(m_window->findChild<QTabBar*>()->count(), 2);
    QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("new"));
    const QString name = path("new.txt");
    whenAsked([&](QWidget* dialog) {
        auto* chooser = qobject_cast<QFileDialog*>(dialog);
        chooser->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"))->setText(name);
        QMetaObject::invokeMethod(chooser, "accept");
    });
    QApplication::setAttribute(Qt::AA_DontUseNativeDialogs);
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("new"));
    QCOMPARE(current<TextDocument>()->path(), name);
    QCOMPARE(m_window->findChild<QTabBar*>()->tabText(1), QStringLiteral("new.txt"));
}

void WorkbenchWindowsTest::nameWithoutFileBeginsAnEmptyText()
{
    const QString name = path("later.txt");
    m_window->open({name});
    QCOMPARE(m_bus->types, QStringList(Events::DocumentOpened));
    QCOMPARE(current<TextDocument>()->path(), name);
    QVERIFY(!QFile::exists(name));
    QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("now"));
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("now"));
}

void WorkbenchWindowsTest::titleNamesTheFileFirst()
{
    QCOMPARE(m_window->windowTitle(), QStringLiteral("Workbench"));
    openTwoKinds();
    const QString title =
        QStringLiteral("a.txt - ") + m_folder->path() + QStringLiteral("[*] - Workbench");
    QCOMPARE(m_window->windowTitle(), title);
    QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("x"));
    QVERIFY(m_window->isWindowModified());
    child<QAction>("window.tile")->trigger();
    QCOMPARE(m_window->windowTitle(), title);
    m_window->findChild<QTabBar*>()->setCurrentIndex(0);
    QTRY_VERIFY(m_window->windowTitle().startsWith(QLatin1String("picture.png - ")));
    QVERIFY(!m_window->isWindowModified());
}

void WorkbenchWindowsTest::sharedActionsStayEnabledBetweenDocuments()
{
    openTwoKinds();
    int disabled = 0;
    for (const QString& id : {Ids::Close, Ids::SaveAs, Ids::ZoomIn})
        connect(action(id), &QAction::changed, m_window.get(),
            [&disabled, id] { disabled += action(id)->isEnabled() ? 0 : 1; });
    QTabBar* const tabs = m_window->findChild<QTabBar*>();
    for (const int tab : {0, 1, 0}) {
        tabs->setCurrentIndex(tab);
        QTRY_VERIFY(action(Ids::Find)->isEnabled() == (tab == 1));
    }
    QCOMPARE(disabled, 0);
}

void WorkbenchWindowsTest::cascadeLeavesRoomToWork()
{
    m_window->resize(1000, 700);
    openTwoKinds();
    child<QAction>("window.cascade")->trigger();
    const auto* area = m_window->findChild<Zentu::MdiArea*>();
    for (const Zentu::IMdiSubWindow* document : area->subWindows()) {
        QVERIFY2(document->width() >= 500, qPrintable(QString::number(document->width())));
        QVERIFY2(document->height() >= 250, qPrintable(QString::number(document->height())));
    }
}

void WorkbenchWindowsTest::zoomSurvivesOtherPreferences()
{
    m_window->open({picture()});
    action(Ids::ActualSize)->trigger();
    action(Ids::ZoomIn)->trigger();
    Settings::instance()->setSmoothImages(false);
    Settings::instance()->setAppearance(Settings::Appearance::Dark);
    QCOMPARE(current<ImageDocument>()->zoomFactor(), 1.25);
    QVERIFY(!current<ImageDocument>()->isFitted());
}

void WorkbenchWindowsTest::traceBeginsAtTheLeft()
{
    m_window->resize(400, 500);
    const TraceHub hub;
    Events::post(QString(500, QLatin1Char('x')), {});
    child<QAction>("tools.trace")->trigger();
    auto* lines = child<QPlainTextEdit>("trace_lines");
    QTRY_VERIFY(lines->horizontalScrollBar()->maximum() > 0);
    QCOMPARE(lines->horizontalScrollBar()->value(), 0);
    Events::post(QString(500, QLatin1Char('y')), {});
    QTRY_VERIFY(lines->toPlainText().contains(QLatin1String("yyy")));
    QCOMPARE(lines->horizontalScrollBar()->value(), 0);
}

void WorkbenchWindowsTest::currentTabIsMarked_data()
{
    addPalettes();
}

void WorkbenchWindowsTest::currentTabIsMarked()
{
    QFETCH(Settings::Appearance, appearance);
    Settings::instance()->setAppearance(appearance);
    openTwoKinds();
    QTabBar* const tabs = m_window->findChild<QTabBar*>();
    const auto marked = [&](int tab) {
        const QImage image = m_window->grab().toImage();
        const QRect rect = tabs->tabRect(tab).translated(tabs->mapTo(m_window.get(), QPoint()));
        const QColor color = tabs->palette().color(QPalette::Highlight);
        for (int y = rect.top(); y <= rect.bottom(); ++y) {
            if (image.pixelColor(rect.center().x(), y) == color)
                return true;
        }
        return false;
    };
    QTRY_VERIFY(marked(1));
    QVERIFY(!marked(0));
}

void WorkbenchWindowsTest::iconsFollowThePalette()
{
    Settings::instance()->setAppearance(Settings::Appearance::Light);
    // Qt 6 tells windows of a palette from the event loop.
    QTRY_COMPARE(m_window->palette().color(QPalette::ButtonText), QColor(Qt::black));
    m_window->open({file("a.txt", "text")});
    QWidget* const icon = m_window->menuBar()->cornerWidget(Qt::TopLeftCorner);
    QVERIFY(icon);
    Settings::instance()->setAppearance(Settings::Appearance::Dark);
    const auto lightest = [](const QImage& image) {
        int found = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                found = qMax(found, qGray(image.pixel(x, y)));
        }
        return found;
    };
    QTRY_VERIFY(lightest(icon->grab().toImage()) > 200);
}

void WorkbenchWindowsTest::tabGoesFromTheTreeToThePage()
{
    bool looked = false;
    const Support::Recorder recorder;
    whenAsked([&](QWidget* dialog) {
        auto* tree = dialog->findChild<QTreeWidget*>();
        QCOMPARE(tree->accessibleName(), QStringLiteral("Pages"));
        const auto tab = [](const char* name) {
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            const QString got = QApplication::focusWidget()->objectName();
            QVERIFY2(got == QLatin1String(name), qPrintable(got));
        };
        tree->setFocus();
        tab("font_family");
        for (const int group : {1, 2}) {
            tree->setCurrentItem(tree->topLevelItem(group)->child(0));
            tree->setFocus();
            tab(group == 1 ? "fit_images" : "watch_files");
            tab(group == 1 ? "smooth_images" : "reload_unmodified");
            QTest::keyClick(QApplication::focusWidget(), Qt::Key_Tab);
            QVERIFY(
                dialog->findChild<QDialogButtonBox*>()->isAncestorOf(QApplication::focusWidget()));
        }
        looked = true;
        dialog->close();
    });
    child<QAction>("edit.preferences")->trigger();
    QVERIFY(looked);
    const QList<Support::Entry> said = recorder.entries();
    for (const Support::Entry& entry : said)
        QVERIFY2(
            !entry.text.startsWith(QLatin1String("QWidget::setTabOrder")), qPrintable(entry.text));
}

void WorkbenchWindowsTest::everyOneOfManyTabsIsReachedByKey()
{
    QStringList names;
    for (int i = 0; i < 46; ++i)
        names.append(file(qPrintable(QStringLiteral("%1.txt").arg(i)), "text"));
    m_window->open(names);
    QSet<QString> reached;
    for (int i = 0; i < 46; ++i) {
        QTest::keyClick(m_window.get(), Qt::Key_Tab, Qt::ControlModifier);
        reached.insert(current<TextDocument>()->path());
    }
    QCOMPARE(reached.size(), 46);
    // And from the list of the window menu.
    QMenu* const menu = child<QMenu>("menu.window");
    Q_EMIT menu->aboutToShow();
    for (QAction* entry : menu->actions()) {
        if (entry->text().endsWith(QLatin1String(" 31.txt")))
            entry->trigger();
    }
    QTRY_COMPARE(current<TextDocument>()->name(), QStringLiteral("31.txt"));
}

void WorkbenchWindowsTest::othersAreClosedFromATabsMenu()
{
    m_window->open({file("a.txt", "a"), file("b.txt", "b"), file("c.txt", "c")});
    auto* area = m_window->findChild<Zentu::MdiArea*>();
    auto* kept = area->subWindows().at(1);
    QTest::keyClicks(current<TextDocument>()->editor(), QStringLiteral("x"));
    auto* closeOthers = kept->systemMenu()->findChild<QAction*>(QStringLiteral("close_others"));
    answer(QDialogButtonBox::Cancel);
    closeOthers->trigger();
    QCOMPARE(area->subWindows().size(), 3);
    answer(QDialogButtonBox::Discard);
    closeOthers->trigger();
    QCOMPARE(area->subWindows(), QList<Zentu::IMdiSubWindow*>({kept}));
}

QTEST_MAIN(WorkbenchWindowsTest)
#include "tst_workbench_windows.moc"
