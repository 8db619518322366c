// SPDX-License-Identifier: MIT
//
// Nothing is lost: what the Workbench reads and writes, and what other programs write meanwhile.

#include "actions.h"
#include "file_change_bar.h"
#include "image_document.h"
#include "text_document.h"
#include "workbench_fixture.h"

#include <QApplication>
#include <QFile>
#include <QFileInfo>
#include <QLabel>
#include <QListWidget>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QProcess>
#include <QPushButton>
#include <QRandomGenerator>
#include <QStatusBar>
#include <QTabBar>
#include <QTextBlock>

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

class WorkbenchFilesTest : public WorkbenchFixture
{
    Q_OBJECT

private Q_SLOTS:
    void untouchedBytesStay_data();
    void untouchedBytesStay();
    void untouchedBytesStayInRandomFiles();
    void linesKeepTheirEndsWhenOthersGo();
    void bytesThatAreNoTextAreRefused_data();
    void bytesThatAreNoTextAreRefused();
    void characterThatTheEncodingLacksIsTold();
    void saveAsksBeforeItOverwritesAnother();
    void keptTextIsSavedWithoutAnotherQuestion();
    void quitAsksOnceAndClosesAfterwards();
    void quitSavesWhatIsTicked();
    void ownSaveIsNoChange();
    void deletedFileIsTold();
    void deletedPictureIsTold();
    void savingKeepsPermissionsAndLinks();
    void fullDiskLeavesTheOldFile();

private:
    QPlainTextEdit* editor() const { return current<TextDocument>()->editor(); }
    // Types a character at the beginning and saves.
    void touchAndSave()
    {
        QTest::keyClick(editor(), Qt::Key_Home, Qt::ControlModifier);
        QTest::keyClicks(editor(), QStringLiteral("x"));
        action(Ids::Save)->trigger();
    }
};

void WorkbenchFilesTest::untouchedBytesStay_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::addColumn<QString>("status");
    const auto row = [](const char* name, const QByteArray& bytes, const char* status) {
        QTest::newRow(name) << bytes << QString::fromLatin1(status);
    };
    row("empty", "", "UTF-8    LF");
    row("unix", "one\ntwo\n", "UTF-8    LF");
    row("dos", "one\r\ntwo\r\n", "UTF-8    CRLF");
    row("mac", "one\rtwo\r", "UTF-8    CR");
    row("mixed", "one\r\ntwo\nthree\rfour\r\n\r\n", "UTF-8    CRLF");
    row("no last newline", "one\ntwo", "UTF-8    LF");
    row("byte order mark", "\xef\xbb\xbfone\n", "UTF-8 BOM    LF");
    row("two byte order marks", "\xef\xbb\xbf\xef\xbb\xbfone\n", "ISO-8859-1    LF");
    row("no-break space", "one\xc2\xa0two\n", "UTF-8    LF");
    row("separators",
        "a\xe2\x80\xa8"
        "b\xe2\x80\xa9"
        "c\xef\xb7\x90"
        "d\n\n\n",
        "UTF-8    LF");
    row("beyond the first plane", "\xf0\x9f\x98\x80\n", "UTF-8    LF");
    row("zero", QByteArray("one \0 two\n", 10), "UTF-8    LF");
    row("latin-1", "gr\xfc\xdf\n", "ISO-8859-1    LF");
    row("utf-16 le",
        QByteArray("\xff\xfe"
                   "a\0\n\0",
            6),
        "UTF-16 LE    LF");
    row("utf-16 be", QByteArray("\xfe\xff\0a\0\n", 6), "UTF-16 BE    LF");
    row("half a pair in utf-16", QByteArray("\xff\xfe\x00\xd8\n\0", 6), "UTF-16 LE    LF");
}

void WorkbenchFilesTest::untouchedBytesStay()
{
    QFETCH(QByteArray, bytes);
    QFETCH(QString, status);
    const QString name = file("a.txt", bytes);
    m_window->open({name});
    const QString told = child<QLabel>("document_status")->text();
    QVERIFY2(told.endsWith(status), qPrintable(told));
    touchAndSave();
    QVERIFY(content(name) != bytes);
    QTest::keyClick(editor(), Qt::Key_Backspace);
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), bytes);
}

void WorkbenchFilesTest::untouchedBytesStayInRandomFiles()
{
    const quint32 seed = qEnvironmentVariableIsSet("ZENTU_SEED")
        ? qEnvironmentVariable("ZENTU_SEED").toUInt()
        : QRandomGenerator::global()->generate();
    QRandomGenerator random(seed);
    const QVector<QByteArray> parts = {"\n", "\r", "\r\n", "a", "line", " ", "\t", "\xc3\xa4",
        "\xe4", "\xef\xbb\xbf", "\xe2\x80\xa8", "\xe2\x80\xa9", "\xef\xb7\x90", "\xef\xb7\x91",
        "\xc2\xa0", "\xef\xbf\xbc", "\xf0\x9f\x98\x80", "\xff\xfe", QByteArray("\0", 1), "\x1b"};
    const int kinds[] = {4, 7, static_cast<int>(parts.size())};
    for (int i = 0; i < 150; ++i) {
        QByteArray bytes;
        const int kind = kinds[random.bounded(3)];
        for (int length = random.bounded(40); length > 0; --length)
            bytes += parts.at(random.bounded(kind));
        const QString name = file("a.txt", bytes);
        QString error;
        const std::unique_ptr<TextDocument> document(TextDocument::open(name, &error));
        if (!document)
            continue;
        QPlainTextEdit* const editor = document->editor();
        editor->textCursor().insertText(QStringLiteral("x"));
        editor->textCursor().deletePreviousChar();
        // A line goes and comes back.
        QTextCursor cursor(editor->document()->findBlockByNumber(
            random.bounded(editor->document()->blockCount())));
        cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
        if (cursor.hasSelection()) {
            cursor.removeSelectedText();
            editor->undo();
        }
        QVERIFY(document->save());
        QVERIFY2(content(name) == bytes,
            qPrintable(QStringLiteral("seed %1, file %2: ").arg(seed).arg(i)
                + QString::fromLatin1(bytes.toHex(' '))));
    }
}

void WorkbenchFilesTest::linesKeepTheirEndsWhenOthersGo()
{
    const QString name = file("a.txt", "one\r\ntwo\nthree\rfour\nfive\r\n");
    m_window->open({name});
    // The second line goes, and a line is split.
    QTextCursor cursor(editor()->document()->findBlockByNumber(1));
    cursor.movePosition(QTextCursor::NextBlock, QTextCursor::KeepAnchor);
    cursor.removeSelectedText();
    cursor.movePosition(QTextCursor::End);
    cursor.movePosition(QTextCursor::PreviousBlock);
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::MoveAnchor, 2);
    cursor.insertBlock();
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("one\r\nthree\rfour\nfi\r\nve\r\n"));
    editor()->undo();
    editor()->undo();
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("one\r\ntwo\nthree\rfour\nfive\r\n"));
}

void WorkbenchFilesTest::bytesThatAreNoTextAreRefused_data()
{
    QTest::addColumn<QByteArray>("bytes");
    QTest::newRow("half a character in utf-16") << QByteArray("\xff\xfe\xfa");
    QTest::newRow("a program") << QByteArray("\x7f"
                                             "ELF\x02\x01\x01\0\xff",
        9);
}

void WorkbenchFilesTest::bytesThatAreNoTextAreRefused()
{
    QFETCH(QByteArray, bytes);
    m_window->open({file("a.bin", bytes)});
    QCOMPARE(m_bus->types, QStringList(Events::DocumentFailed));
    QVERIFY(m_bus->last.value(Events::Message)
                .toString()
                .endsWith(QLatin1String("not a text in UTF-8")));
}

void WorkbenchFilesTest::characterThatTheEncodingLacksIsTold()
{
    const QString name = file("a.txt", "gr\xfc\xdf");
    m_window->open({name});
    editor()->textCursor().insertText(QStringLiteral("\u20ac"));
    QString question;
    whenAsked([&](QWidget* dialog) {
        question = qobject_cast<QMessageBox*>(dialog)->text();
        qobject_cast<QMessageBox*>(dialog)->button(QMessageBox::Cancel)->click();
    });
    action(Ids::Save)->trigger();
    QCOMPARE(question,
        QStringLiteral(
            "a.txt is written in ISO-8859-1, which has no \u201c\u20ac\u201d. Save it in "
            "UTF-8?"));
    QCOMPARE(content(name), QByteArray("gr\xfc\xdf"));
    QVERIFY(current<TextDocument>()->hasChanges());
    answer(QDialogButtonBox::Save);
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("\xe2\x82\xacgr\xc3\xbc\xc3\x9f"));
    QVERIFY(child<QLabel>("document_status")->text().contains(QLatin1String("UTF-8")));
}

void WorkbenchFilesTest::saveAsksBeforeItOverwritesAnother()
{
    const QString name = file("a.txt", "one\n");
    m_window->open({name});
    const auto changeBoth = [&] {
        file("a.txt", "theirs\n");
        QTest::keyClicks(editor(), QStringLiteral("x"));
    };
    changeBoth();
    answer(QDialogButtonBox::Cancel);
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("theirs\n"));
    QVERIFY(action(Ids::Save)->isEnabled());

    press(QStringLiteral("save_difference"));
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("theirs\n"));
    QCOMPARE(child<QLabel>("file_change_text")->text(),
        QStringLiteral("Lines only on disk: 1. Lines only here: 1."));
    QVERIFY(child<QWidget>("file_change_bar")->isVisible());

    press(QStringLiteral("save_overwrite"));
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("xone\n"));
    QVERIFY(!child<QWidget>("file_change_bar")->isVisible());

    changeBoth();
    press(QStringLiteral("save_reload"));
    action(Ids::Save)->trigger();
    QCOMPARE(editor()->toPlainText(), QStringLiteral("theirs\n"));
    QVERIFY(!current<TextDocument>()->hasChanges());
}

void WorkbenchFilesTest::keptTextIsSavedWithoutAnotherQuestion()
{
    const QString name = file("a.txt", "one\n");
    m_window->open({name});
    replace(name, "theirs\n");
    QTRY_VERIFY(child<QWidget>("file_change_bar")->isVisible());
    QTest::mouseClick(child<QPushButton>("file_change_keep"), Qt::LeftButton);
    QVERIFY(!child<QWidget>("file_change_bar")->isVisible());
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("one\n"));
}

void WorkbenchFilesTest::quitAsksOnceAndClosesAfterwards()
{
    for (const char* name : {"a", "b", "c", "d", "e", "f"})
        m_window->open({file(name, name)});
    auto* area = m_window->findChild<Zentu::MdiArea*>();
    for (int changed : {4, 1}) {
        area->setCurrentSubWindow(area->subWindows().at(changed));
        QTest::keyClicks(editor(), QStringLiteral("x"));
    }
    QStringList listed;
    whenAsked([&](QWidget* dialog) {
        auto* list = dialog->findChild<QListWidget*>(QStringLiteral("unsaved_list"));
        for (int row = 0; row < list->count(); ++row)
            listed.append(list->item(row)->text());
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Cancel)->click();
    });
    QVERIFY(!m_window->close());
    QCOMPARE(listed, QStringList({QStringLiteral("b"), QStringLiteral("e")}));
    QCOMPARE(area->subWindows().size(), 6);
    QVERIFY(m_window->isVisible());
    answer(QDialogButtonBox::Discard);
    QVERIFY(m_window->close());
    QCOMPARE(m_bus->types.count(Events::DocumentClosed), 6);
    QCOMPARE(content(path("b")), QByteArray("b"));
}

void WorkbenchFilesTest::quitSavesWhatIsTicked()
{
    for (const char* name : {"a", "b"}) {
        m_window->open({file(name, name)});
        QTest::keyClicks(editor(), QStringLiteral("x"));
    }
    whenAsked([](QWidget* dialog) {
        dialog->findChild<QListWidget*>()->item(0)->setCheckState(Qt::Unchecked);
        dialog->findChild<QDialogButtonBox*>()->button(QDialogButtonBox::Save)->click();
    });
    QVERIFY(m_window->close());
    QCOMPARE(content(path("a")), QByteArray("a"));
    QCOMPARE(content(path("b")), QByteArray("xb"));
}

void WorkbenchFilesTest::ownSaveIsNoChange()
{
    const QString name = file("a.txt", "one\n");
    m_window->open({name});
    touchAndSave();
    // The change that comes next is told, so the watcher has seen the save before.
    QTest::qWait(700);
    QCOMPARE(m_bus->types, QStringList({Events::DocumentOpened, Events::DocumentSaved}));
    QCOMPARE(m_window->statusBar()->currentMessage(), QStringLiteral("Saved ") + name);
    replace(name, "theirs\n");
    QTRY_COMPARE(m_bus->types.last(), Events::DocumentChanged);
    QCOMPARE(m_bus->types.size(), 3);
}

void WorkbenchFilesTest::deletedFileIsTold()
{
    const QString name = file("a.txt", "one\n");
    m_window->open({name});
    QVERIFY(QFile::remove(name));
    QTRY_VERIFY(child<QWidget>("file_change_bar")->isVisible());
    QCOMPARE(child<QLabel>("file_change_text")->text(),
        QStringLiteral("The file has been deleted on disk."));
    QCOMPARE(m_bus->types.last(), Events::DocumentDeleted);
    QCOMPARE(m_window->statusBar()->currentMessage(),
        name + QStringLiteral(" has been deleted on disk"));
    // The text is nowhere else, so it can be saved and is not closed unasked.
    action(Ids::Save)->trigger();
    QCOMPARE(content(name), QByteArray("one\n"));
    QVERIFY(!child<QWidget>("file_change_bar")->isVisible());
}

void WorkbenchFilesTest::deletedPictureIsTold()
{
    const QString name = picture();
    m_window->open({name});
    QVERIFY(QFile::remove(name));
    QTRY_VERIFY(child<QWidget>("file_change_bar")->isVisible());
    QCOMPARE(child<QLabel>("file_change_text")->text(),
        QStringLiteral("The file has been deleted on disk."));
    QVERIFY(!child<QPushButton>("file_change_reload")->isVisible());
}

void WorkbenchFilesTest::savingKeepsPermissionsAndLinks()
{
    const QString name = file("a.txt", "one\n");
    const QByteArray native = QFile::encodeName(name);
    QCOMPARE(chmod(native.constData(), 0640), 0);
    const bool otherOwner = geteuid() == 0 && chown(native.constData(), 1234, 4321) == 0;
    // The owner may write, user 99 may read.
    const unsigned char list[] = {2, 0, 0, 0, 1, 0, 6, 0, 255, 255, 255, 255, 2, 0, 4, 0, 99, 0, 0,
        0, 4, 0, 4, 0, 255, 255, 255, 255, 16, 0, 4, 0, 255, 255, 255, 255, 32, 0, 0, 0, 255, 255,
        255, 255};
    const char* const key = "system.posix_acl_access";
    const bool hasList = setxattr(native.constData(), key, list, sizeof list, 0) == 0;
    const QString link = path("link.txt");
    const QString longer = path("link of a link.txt");
    QVERIFY(QFile::link(QStringLiteral("a.txt"), link));
    QVERIFY(QFile::link(link, longer));
    m_window->open({longer});
    touchAndSave();
    QVERIFY(QFileInfo(longer).isSymLink());
    QVERIFY(QFileInfo(link).isSymLink());
    QCOMPARE(content(name), QByteArray("xone\n"));
    struct stat after = {};
    QCOMPARE(stat(native.constData(), &after), 0);
    QCOMPARE(after.st_mode & 07777, 0640U);
    if (otherOwner) {
        QCOMPARE(after.st_uid, 1234U);
        QCOMPARE(after.st_gid, 4321U);
    }
    if (hasList) {
        QByteArray kept(100, 0);
        const ssize_t size = getxattr(native.constData(), key, kept.data(), 100);
        QCOMPARE(kept.left(static_cast<int>(size)),
            QByteArray(reinterpret_cast<const char*>(list), sizeof list));
    }
}

void WorkbenchFilesTest::fullDiskLeavesTheOldFile()
{
    constexpr int Room = 256 * 1024;
    const bool mounted = geteuid() == 0
        && QProcess::execute(QStringLiteral("mount"),
               {QStringLiteral("-t"), QStringLiteral("tmpfs"), QStringLiteral("-o"),
                   QStringLiteral("size=256k"), QStringLiteral("tmpfs"), m_folder->path()})
            == 0;
    rlimit before = {};
    getrlimit(RLIMIT_FSIZE, &before);
    const QByteArray old(Room * 2 / 3, 'a');
    const QString name = file("a.txt", old);
    m_window->open({name});
    if (!mounted) {
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small = {Room / 2, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
    }
    QString told;
    whenAsked([&](QWidget* dialog) {
        told = qobject_cast<QMessageBox*>(dialog)->text();
        dialog->close();
    });
    touchAndSave();
    setrlimit(RLIMIT_FSIZE, &before);
    const QByteArray after = content(name);
    const bool isKept = current<TextDocument>()->hasChanges();
    destroyWindow();
    if (mounted)
        QProcess::execute(QStringLiteral("umount"), {m_folder->path()});
    QVERIFY2(told.startsWith(name + QLatin1String(" could not be saved: ")), qPrintable(told));
    QCOMPARE(after, old);
    QVERIFY(isKept);
}

QTEST_MAIN(WorkbenchFilesTest)
#include "tst_workbench_files.moc"
