// SPDX-License-Identifier: MIT
#include "document.h"
#include "main_window.h"

#include "drive.h"
#include "recorder.h"

#include <QClipboard>
#include <QColorDialog>
#include <QFontComboBox>
#include <QPrintPreviewDialog>
#include <QTemporaryDir>
#include <QTextEdit>
#include <QTextList>
#include <QToolBar>

#include <memory>

class PortedTextEditTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void newDocumentIsUntitled();
    void kindsOfFilesAreRead_data();
    void kindsOfFilesAreRead();
    void fileThatIsNotThereIsTold();
    void textIsSavedInTheKindOfItsName();
    void newDocumentAsksWhereToSave();
    void modifiedDocumentAsks();
    void undoAndRedo();
    void clipboard();
    void charactersAreFormatted_data();
    void charactersAreFormatted();
    void marksFollowTheCursor();
    void alignmentFollowsTheClick();
    void alignmentBelongsToTheDocument();
    void styles_data();
    void styles();
    void taskIsChecked();
    void listsAreIndented();
    void paragraphsAreIndented();
    void colorIsChosen();
    void fontAndSizeAreChosen();
    void pdfIsExported();
    void previewIsShown();
    void twoWindowsAtOnce();

private:
    QString path(const char* name) const { return m_folder->filePath(QLatin1String(name)); }
    Document* current() const
    {
        return static_cast<Document*>(m_window->findChild<Zentu::MdiArea*>()->currentSubWindow());
    }
    QTextEdit* editor() const { return current()->editor(); }
    QAction* action(const char* text) const
    {
        return Drive::action(*m_window, QLatin1String(text));
    }
    void choose(const char* text) const { Drive::choose(*m_window, QLatin1String(text)); }
    QComboBox* styleBox() const { return m_window->findChildren<QComboBox*>().first(); }
    void type(const char* text) const { QTest::keyClicks(editor(), QLatin1String(text)); }

    void moveTo(int position) const
    {
        QTextCursor cursor = editor()->textCursor();
        cursor.setPosition(position);
        editor()->setTextCursor(cursor);
    }

    std::unique_ptr<Support::Recorder> m_recorder;
    std::unique_ptr<QTemporaryDir> m_folder;
    std::unique_ptr<MainWindow> m_window;
};

void PortedTextEditTest::init()
{
    m_recorder = std::make_unique<Support::Recorder>();
    m_folder = std::make_unique<QTemporaryDir>();
    m_window = std::make_unique<MainWindow>();
    m_window->show();
    QVERIFY(QTest::qWaitForWindowExposed(m_window.get()));
    m_window->openNew();
}

void PortedTextEditTest::cleanup()
{
    m_window.reset();
    const QStringList lines = m_recorder->take();
    m_recorder.reset();
    for (const QString& line : lines)
        QVERIFY2(!line.contains(QLatin1String("Zentu")) || !line.startsWith(QLatin1String("warn")),
            qPrintable(line));
}

void PortedTextEditTest::newDocumentIsUntitled()
{
    choose("New");
    QCOMPARE(current()->shortTitle(), QStringLiteral("untitled.txt"));
    QVERIFY(!action("Save")->isEnabled());
    QVERIFY(action("Save As...")->isEnabled());
    QVERIFY(!action("Bold")->isChecked());
    type("x");
    QVERIFY(action("Save")->isEnabled());
    QVERIFY(current()->isWindowModified());
}

void PortedTextEditTest::kindsOfFilesAreRead_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<bool>("bold");
    QTest::newRow("plain") << "a.txt" << QByteArray("**plain**") << "**plain**" << false;
    QTest::newRow("markdown") << "a.md" << QByteArray("**bold**\n") << "bold" << true;
    QTest::newRow("html") << "a.html" << QByteArray("<html><b>bold</b></html>") << "bold" << true;
}

void PortedTextEditTest::kindsOfFilesAreRead()
{
    QFETCH(QString, name);
    QFETCH(QByteArray, text);
    Drive::write(path(name.toLatin1().constData()), text);
    Drive::chooseFile(path(name.toLatin1().constData()));
    choose("Open...");
    QTEST(editor()->toPlainText(), "shown");
    moveTo(2);
    QTEST(action("Bold")->isChecked(), "bold");
    QCOMPARE(current()->shortTitle(), name);
}

void PortedTextEditTest::fileThatIsNotThereIsTold()
{
    QVERIFY(!m_window->open(path("missing.txt")));
    QCOMPARE(current()->shortTitle(), QStringLiteral("untitled.txt"));
}

void PortedTextEditTest::textIsSavedInTheKindOfItsName()
{
    type("hello");
    Drive::chooseFile(path("a.html"));
    choose("Save As...");
    QVERIFY(Drive::read(path("a.html")).contains("hello"));
    QVERIFY(Drive::read(path("a.html")).startsWith("<!DOCTYPE HTML"));
    QCOMPARE(current()->shortTitle(), QStringLiteral("a.html"));
    type("x");
    choose("Save");
    QCOMPARE(m_window->statusBar()->currentMessage(),
        QStringLiteral("Wrote \"%1\"").arg(path("a.html")));
    QVERIFY(!action("Save")->isEnabled());
}

void PortedTextEditTest::newDocumentAsksWhereToSave()
{
    type("hello");
    Drive::cancel();
    choose("Save");
    QVERIFY(current()->isWindowModified());
    Drive::chooseFile(path("a.txt"));
    choose("Save");
    QCOMPARE(Drive::read(path("a.txt")), QByteArray("hello"));
}

void PortedTextEditTest::modifiedDocumentAsks()
{
    type("x");
    Drive::answer(QMessageBox::Cancel);
    QVERIFY(!m_window->close());
    Drive::answer(QMessageBox::Discard);
    QVERIFY(m_window->close());
}

void PortedTextEditTest::undoAndRedo()
{
    QVERIFY(!action("Undo")->isEnabled() && !action("Redo")->isEnabled());
    type("x");
    choose("Undo");
    QVERIFY(editor()->toPlainText().isEmpty());
    choose("Redo");
    QCOMPARE(editor()->toPlainText(), QStringLiteral("x"));
}

void PortedTextEditTest::clipboard()
{
    type("hello");
    QVERIFY(!action("Cut")->isEnabled());
    editor()->selectAll();
    choose("Cut");
    QTRY_VERIFY(action("Paste")->isEnabled());
    choose("Paste");
    choose("Paste");
    QCOMPARE(editor()->toPlainText(), QStringLiteral("hellohello"));
}

void PortedTextEditTest::charactersAreFormatted_data()
{
    QTest::addColumn<QString>("text");
    for (const char* const text : {"Bold", "Italic", "Underline"})
        QTest::newRow(text) << QString::fromLatin1(text);
}

void PortedTextEditTest::charactersAreFormatted()
{
    QFETCH(QString, text);
    const auto isOn = [&] {
        const QFont font = editor()->currentCharFormat().font();
        return text == QLatin1String("Bold")  ? font.bold()
            : text == QLatin1String("Italic") ? font.italic()
                                              : font.underline();
    };
    type("hello");
    editor()->selectAll();
    Drive::choose(*m_window, text);
    QVERIFY(isOn());
    QVERIFY(Drive::action(*m_window, text)->isChecked());
    Drive::choose(*m_window, text);
    QVERIFY(!isOn());
    QVERIFY(!Drive::action(*m_window, text)->isChecked());
}

void PortedTextEditTest::marksFollowTheCursor()
{
    choose("Bold");
    type("bold ");
    choose("Bold");
    type("thin");
    QVERIFY(!action("Bold")->isChecked());
    moveTo(2);
    QVERIFY(action("Bold")->isChecked());
    choose("New");
    QVERIFY(!action("Bold")->isChecked());
    choose("Previous");
    QVERIFY(action("Bold")->isChecked());
}

void PortedTextEditTest::alignmentFollowsTheClick()
{
    QVERIFY(action("Left")->isChecked());
    const QList<QPair<const char*, Qt::Alignment>> all = {{"Center", Qt::AlignHCenter},
        {"Right", Qt::AlignRight | Qt::AlignAbsolute}, {"Justify", Qt::AlignJustify},
        {"Left", Qt::AlignLeft | Qt::AlignAbsolute}};
    for (const auto& one : all) {
        choose(one.first);
        QCOMPARE(editor()->alignment(), one.second);
        for (const auto& other : all)
            QCOMPARE(action(other.first)->isChecked(), one.first == other.first);
    }
}

void PortedTextEditTest::alignmentBelongsToTheDocument()
{
    choose("Right");
    choose("New");
    QVERIFY(action("Left")->isChecked() && !action("Right")->isChecked());
    choose("Previous");
    QVERIFY(action("Right")->isChecked() && !action("Left")->isChecked());
    QCOMPARE(editor()->alignment(), Qt::AlignRight | Qt::AlignAbsolute);
}

void PortedTextEditTest::styles_data()
{
    QTest::addColumn<int>("index");
    for (int index = 0; index < Document::styles().size(); ++index)
        QTest::newRow(Document::styles().at(index).name) << index;
}

void PortedTextEditTest::styles()
{
    QFETCH(int, index);
    type("hello");
    Q_EMIT styleBox()->activated(index);
    QCOMPARE(styleBox()->currentIndex(), index);
    const ParagraphStyle& style = Document::styles().at(index);
    const QTextCursor cursor = editor()->textCursor();
    QCOMPARE(cursor.blockFormat().headingLevel(), style.heading);
    QCOMPARE(cursor.blockFormat().marker(), style.marker);
    QCOMPARE(cursor.currentList() != nullptr, style.list != QTextListFormat::ListStyleUndefined);
    if (cursor.currentList())
        QCOMPARE(cursor.currentList()->format().style(), style.list);
    QCOMPARE(cursor.charFormat().font().bold(), style.heading > 0);
}

void PortedTextEditTest::taskIsChecked()
{
    type("task");
    choose("Checked");
    QCOMPARE(styleBox()->currentIndex(), 5);
    QVERIFY(action("Checked")->isChecked());
    choose("Checked");
    QCOMPARE(styleBox()->currentIndex(), 4);
    QVERIFY(!action("Checked")->isChecked());
}

void PortedTextEditTest::listsAreIndented()
{
    Q_EMIT styleBox()->activated(1);
    type("one");
    QTest::keyClick(editor(), Qt::Key_Return);
    type("two");
    QTextList* const list = editor()->textCursor().currentList();
    choose("Indent");
    QCOMPARE(editor()->textCursor().currentList()->format().indent(), 2);
    choose("Unindent");
    QCOMPARE(editor()->textCursor().currentList(), list);
}

void PortedTextEditTest::paragraphsAreIndented()
{
    type("hello");
    choose("Indent");
    choose("Indent");
    choose("Unindent");
    QCOMPARE(editor()->textCursor().blockFormat().indent(), 1);
}

void PortedTextEditTest::colorIsChosen()
{
    type("hello");
    editor()->selectAll();
    Drive::inDialog<QColorDialog>([](QColorDialog* dialog) {
        dialog->setCurrentColor(Qt::red);
        static_cast<QDialog*>(dialog)->accept();
    });
    choose("Color...");
    QCOMPARE(editor()->textColor(), QColor(Qt::red));
    QCOMPARE(action("Color...")->icon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::red));
    choose("New");
    QCOMPARE(
        action("Color...")->icon().pixmap(16, 16).toImage().pixelColor(8, 8), QColor(Qt::black));
}

void PortedTextEditTest::fontAndSizeAreChosen()
{
    type("hello");
    editor()->selectAll();
    QComboBox* const size = m_window->findChildren<QComboBox*>().last();
    Q_EMIT size->textActivated(QStringLiteral("24"));
    QCOMPARE(editor()->fontPointSize(), 24.0);
    QCOMPARE(size->currentText(), QStringLiteral("24"));
    Q_EMIT size->textActivated(QStringLiteral("none"));
    QCOMPARE(editor()->fontPointSize(), 24.0);
    auto* const font = m_window->findChild<QFontComboBox*>();
    const QString family = font->itemText(font->count() - 1);
    Q_EMIT static_cast<QComboBox*>(font)->textActivated(family);
    QCOMPARE(editor()->currentCharFormat().fontFamilies().toStringList(), QStringList(family));
}

void PortedTextEditTest::pdfIsExported()
{
    type("hello");
    Drive::chooseFile(path("a.pdf"));
    choose("Export PDF...");
    QVERIFY(Drive::read(path("a.pdf")).startsWith("%PDF"));
}

void PortedTextEditTest::previewIsShown()
{
    type("hello");
    Drive::inDialog<QPrintPreviewDialog>([](QPrintPreviewDialog* dialog) { dialog->reject(); });
    choose("Print Preview...");
}

void PortedTextEditTest::twoWindowsAtOnce()
{
    auto other = std::make_unique<MainWindow>();
    other->show();
    QVERIFY(!Drive::action(*other, QStringLiteral("Bold"))->isEnabled());
    other->openNew();
    Drive::choose(*other, QStringLiteral("Bold"));
    QVERIFY(!action("Bold")->isChecked());
    other.reset();
    choose("Bold");
    QVERIFY(action("Bold")->isChecked());
}

QTEST_MAIN(PortedTextEditTest)
#include "tst_ported_textedit.moc"
