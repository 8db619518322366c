// SPDX-License-Identifier: MIT
#include "document.h"
#include "main_window.h"

#include "drive.h"
#include "recorder.h"

#include <QClipboard>
#include <QMdiArea>
#include <QSettings>
#include <QTabBar>
#include <QTemporaryDir>
#include <QTextEdit>

#include <memory>

class PortedMdiTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();

    void newDocumentsAreNumbered();
    void fileIsOpened();
    void openFileIsNotOpenedTwice();
    void missingFileIsToldAndLeavesNothing();
    void changeIsMarked();
    void changesAreSaved();
    void newDocumentAsksWhereToSave();
    void saveAsGivesAnotherName();
    void failedSaveIsTold();
    void cancelledDialogsChangeNothing();
    void clipboardActionsFollowTheSelection();
    void actionsBelongToTheDocument();
    void everyStandardKeyIsThere();
    void documentsAreWalkedByTabs();
    void windowMenuListsTheDocuments();
    void documentsAreLaidOut();
    void modifiedDocumentAsks_data();
    void modifiedDocumentAsks();
    void cancelEndsCloseAll();
    void quitAsksAndRemembersThePlace();
    void recentFilesAreOpened();
    void layoutDirectionIsSwitched();
    void aboutIsShown();
    void twoWindowsAtOnce();

private:
    QString path(const char* name) const { return m_folder->filePath(QLatin1String(name)); }
    QString file(const char* name, const QByteArray& text = "text")
    {
        Drive::write(path(name), text);
        return path(name);
    }
    Zentu::MdiArea* area() const { return m_window->findChild<Zentu::MdiArea*>(); }
    Document* current() const { return static_cast<Document*>(area()->currentSubWindow()); }
    int count() const { return static_cast<int>(area()->subWindows().size()); }
    bool isOn(const char* text) const
    {
        return Drive::action(*m_window, QLatin1String(text))->isEnabled();
    }
    void choose(const char* text) const { Drive::choose(*m_window, QLatin1String(text)); }
    QString title() const { return current()->shortTitle(); }

    std::unique_ptr<Support::Recorder> m_recorder;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
};

void PortedMdiTest::initTestCase()
{
    QApplication::setOrganizationName(QStringLiteral("ZentuKit"));
    QApplication::setApplicationName(QStringLiteral("ported"));
}

void PortedMdiTest::init()
{
    m_recorder = std::make_unique<Support::Recorder>();
    m_folder = std::make_unique<QTemporaryDir>();
    QSettings::setPath(QSettings::NativeFormat, QSettings::UserScope, m_folder->path());
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
}

void PortedMdiTest::cleanup()
{
    m_window.reset();
    QApplication::setLayoutDirection(Qt::LeftToRight);
    const QStringList lines = m_recorder->take();
    m_recorder.reset();
    for (const QString& line : lines)
        QVERIFY2(!line.contains(QLatin1String("Zentu")) || !line.startsWith(QLatin1String("warn")),
            qPrintable(line));
}

void PortedMdiTest::newDocumentsAreNumbered()
{
    QVERIFY(!isOn("Save") && !isOn("Paste") && !isOn("Close"));
    choose("New");
    const int number = title().mid(8).section(QLatin1Char('.'), 0, 0).toInt();
    QCOMPARE(title(), QStringLiteral("document%1.txt").arg(number));
    choose("New");
    QCOMPARE(title(), QStringLiteral("document%1.txt").arg(number + 1));
    QVERIFY(isOn("Save") && isOn("Paste") && isOn("Close"));
    QVERIFY(!isOn("Cut") && !isOn("Copy"));
}

void PortedMdiTest::fileIsOpened()
{
    Drive::chooseFile(file("a.txt", "hello"));
    choose("Open...");
    QCOMPARE(current()->editor()->toPlainText(), QStringLiteral("hello"));
    QCOMPARE(title(), QStringLiteral("a.txt"));
    QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("File loaded"));
}

void PortedMdiTest::openFileIsNotOpenedTwice()
{
    m_window->open(file("a.txt"));
    m_window->open(file("b.txt"));
    m_window->open(path("a.txt"));
    QCOMPARE(count(), 2);
    QCOMPARE(title(), QStringLiteral("a.txt"));
}

void PortedMdiTest::missingFileIsToldAndLeavesNothing()
{
    m_window->open(file("a.txt"));
    Drive::answer(QMessageBox::Ok);
    m_window->open(path("missing.txt"));
    QCOMPARE(count(), 1);
    choose("Close All");
    QCOMPARE(count(), 0);
}

void PortedMdiTest::changeIsMarked()
{
    m_window->open(file("a.txt"));
    QTest::keyClicks(current()->editor(), QStringLiteral("x"));
    QVERIFY(current()->isWindowModified());
    QCOMPARE(area()->findChild<QTabBar*>()->tabText(0), QStringLiteral("a.txt"));
    current()->editor()->undo();
    QVERIFY(!current()->isWindowModified());
}

void PortedMdiTest::changesAreSaved()
{
    m_window->open(file("a.txt"));
    QTest::keyClicks(current()->editor(), QStringLiteral("more "));
    choose("Save");
    QCOMPARE(Drive::read(path("a.txt")), QByteArray("more text"));
    QVERIFY(!current()->isWindowModified());
    QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("File saved"));
}

void PortedMdiTest::newDocumentAsksWhereToSave()
{
    choose("New");
    QTest::keyClicks(current()->editor(), QStringLiteral("new"));
    Drive::chooseFile(path("new.txt"));
    choose("Save");
    QCOMPARE(Drive::read(path("new.txt")), QByteArray("new"));
    QCOMPARE(title(), QStringLiteral("new.txt"));
}

void PortedMdiTest::saveAsGivesAnotherName()
{
    m_window->open(file("a.txt"));
    Drive::chooseFile(path("b.txt"));
    choose("Save As...");
    QCOMPARE(Drive::read(path("b.txt")), QByteArray("text"));
    QCOMPARE(title(), QStringLiteral("b.txt"));
    QCOMPARE(area()->findChild<QTabBar*>()->tabText(0), QStringLiteral("b.txt"));
}

void PortedMdiTest::failedSaveIsTold()
{
    QVERIFY(QDir(m_folder->path()).mkdir(QStringLiteral("sub")));
    m_window->open(file("sub/a.txt"));
    QVERIFY(QDir(path("sub")).removeRecursively());
    QTest::keyClicks(current()->editor(), QStringLiteral("x"));
    Drive::answer(QMessageBox::Ok);
    choose("Save");
    QVERIFY(current()->isWindowModified());
}

void PortedMdiTest::cancelledDialogsChangeNothing()
{
    m_window->open(file("a.txt"));
    Drive::cancel();
    choose("Open...");
    Drive::cancel();
    choose("Save As...");
    QCOMPARE(count(), 1);
    QCOMPARE(title(), QStringLiteral("a.txt"));
}

void PortedMdiTest::clipboardActionsFollowTheSelection()
{
    m_window->open(file("a.txt"));
    QTextEdit* const editor = current()->editor();
    editor->selectAll();
    QVERIFY(isOn("Cut") && isOn("Copy"));
    choose("Copy");
    choose("Cut");
    QVERIFY(editor->toPlainText().isEmpty());
    QVERIFY(!isOn("Cut") && !isOn("Copy"));
    choose("Paste");
    choose("Paste");
    QCOMPARE(editor->toPlainText(), QStringLiteral("texttext"));
}

void PortedMdiTest::actionsBelongToTheDocument()
{
    m_window->open(file("a.txt"));
    current()->editor()->selectAll();
    m_window->open(file("b.txt"));
    QVERIFY(!isOn("Copy"));
    choose("Next");
    QCOMPARE(title(), QStringLiteral("a.txt"));
    QVERIFY(isOn("Copy"));
}

void PortedMdiTest::everyStandardKeyIsThere()
{
    choose("New");
    for (const char* const text : {"New", "Open...", "Save", "Cut", "Copy", "Paste", "Next"}) {
        static const QHash<QByteArray, QKeySequence::StandardKey> keys = {
            {"New", QKeySequence::New}, {"Open...", QKeySequence::Open},
            {"Save", QKeySequence::Save}, {"Cut", QKeySequence::Cut}, {"Copy", QKeySequence::Copy},
            {"Paste", QKeySequence::Paste}, {"Next", QKeySequence::NextChild}};
        QCOMPARE(Drive::action(*m_window, QLatin1String(text))->shortcuts(),
            QKeySequence::keyBindings(keys.value(text)));
    }
}

void PortedMdiTest::documentsAreWalkedByTabs()
{
    for (const char* const name : {"a.txt", "b.txt", "c.txt"})
        m_window->open(file(name));
    area()->findChild<QTabBar*>()->moveTab(0, 2);
    choose("Next");
    QCOMPARE(title(), QStringLiteral("a.txt"));
    choose("Next");
    QCOMPARE(title(), QStringLiteral("b.txt"));
    choose("Previous");
    QCOMPARE(title(), QStringLiteral("a.txt"));
}

void PortedMdiTest::windowMenuListsTheDocuments()
{
    m_window->open(file("a.txt"));
    m_window->open(file("b.txt"));
    auto* const menu = qobject_cast<QMenu*>(m_window->menuBar()->actions().at(2)->menu());
    Q_EMIT menu->aboutToShow();
    QVERIFY(Drive::action(*m_window, QStringLiteral("2 b.txt"))->isChecked());
    choose("1 a.txt");
    QCOMPARE(title(), QStringLiteral("a.txt"));
}

void PortedMdiTest::documentsAreLaidOut()
{
    m_window->open(file("a.txt"));
    m_window->open(file("b.txt"));
    choose("Tile");
    const QList<Zentu::IMdiSubWindow*> documents = area()->subWindows();
    QVERIFY(!documents.at(0)->geometry().intersects(documents.at(1)->geometry()));
    choose("Cascade");
    QVERIFY(documents.at(0)->geometry().intersects(documents.at(1)->geometry()));
}

void PortedMdiTest::modifiedDocumentAsks_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("left");
    QTest::addColumn<QByteArray>("saved");
    QTest::newRow("save") << int(QMessageBox::Save) << 0 << QByteArray("xtext");
    QTest::newRow("discard") << int(QMessageBox::Discard) << 0 << QByteArray("text");
    QTest::newRow("cancel") << int(QMessageBox::Cancel) << 1 << QByteArray("text");
}

void PortedMdiTest::modifiedDocumentAsks()
{
    QFETCH(int, button);
    m_window->open(file("a.txt"));
    QTest::keyClicks(current()->editor(), QStringLiteral("x"));
    Drive::answer(QMessageBox::StandardButton(button));
    choose("Close");
    QTEST(count(), "left");
    QTEST(Drive::read(path("a.txt")), "saved");
}

void PortedMdiTest::cancelEndsCloseAll()
{
    for (const char* const name : {"a.txt", "b.txt", "c.txt"})
        m_window->open(file(name));
    QTest::keyClicks(current()->editor(), QStringLiteral("x"));
    Drive::answer(QMessageBox::Cancel);
    choose("Close All");
    QCOMPARE(count(), 1);
    QCOMPARE(title(), QStringLiteral("c.txt"));
}

void PortedMdiTest::quitAsksAndRemembersThePlace()
{
    m_window->open(file("a.txt"));
    QTest::keyClicks(current()->editor(), QStringLiteral("x"));
    Drive::answer(QMessageBox::Cancel);
    choose("Exit");
    QVERIFY(m_window->isVisible());
    m_window->resize(611, 433);
    Drive::answer(QMessageBox::Discard);
    choose("Exit");
    QVERIFY(!m_window->isVisible());
    QCOMPARE(MainWindow().size(), QSize(611, 433));
}

void PortedMdiTest::recentFilesAreOpened()
{
    auto* const menu =
        qobject_cast<QMenu*>(Drive::action(*m_window, QStringLiteral("Recent..."))->menu());
    QVERIFY(!menu->menuAction()->isVisible());
    m_window->open(file("a.txt"));
    m_window->open(file("b.txt"));
    QVERIFY(menu->menuAction()->isVisible());
    choose("Close All");
    Q_EMIT menu->aboutToShow();
    QCOMPARE(menu->actions().first()->text(), QStringLiteral("&1 b.txt"));
    choose("2 a.txt");
    QCOMPARE(title(), QStringLiteral("a.txt"));
}

void PortedMdiTest::layoutDirectionIsSwitched()
{
    choose("Switch layout direction");
    QCOMPARE(m_window->layoutDirection(), Qt::RightToLeft);
    choose("Switch layout direction");
    QCOMPARE(m_window->layoutDirection(), Qt::LeftToRight);
}

void PortedMdiTest::aboutIsShown()
{
    Drive::answer(QMessageBox::Ok);
    choose("About");
}

void PortedMdiTest::twoWindowsAtOnce()
{
    auto other = std::make_unique<MainWindow>();
    other->show();
    other->open(file("b.txt"));
    QVERIFY(!isOn("Save"));
    m_window->open(file("a.txt"));
    QVERIFY(isOn("Save"));
    other.reset();
    QVERIFY(isOn("Save"));
    choose("Save");
}

QTEST_MAIN(PortedMdiTest)
#include "tst_ported_mdi.moc"
