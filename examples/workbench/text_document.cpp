// SPDX-License-Identifier: MIT
#include "text_document.h"

#include "events.h"
#include "file_change_bar.h"
#include "find_bar.h"
#include "glyph_icon.h"
#include "line_ends.h"
#include "settings.h"

#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QVBoxLayout>

#include <algorithm>

const QString TextDocument::Kind = QStringLiteral("text");

TextDocument* TextDocument::open(const QString& path, QString* error)
{
    TextFile file;
    QString text;
    return file.read(path, &text, error) ? new TextDocument(path, file, text) : nullptr;
}

TextDocument* TextDocument::create(const QString& path)
{
    return new TextDocument(path, TextFile(), QString());
}

TextDocument::TextDocument(const QString& path, const TextFile& file, const QString& text)
    : Document(Kind, path)
    , m_file(file)
{
    auto* view = new QWidget;
    m_editor = new QPlainTextEdit(view);
    m_lineEnd = LineEnds::fill(m_editor, text);
    m_editor->setObjectName(QStringLiteral("text_editor"));
    m_editor->setAccessibleName(tr("Text of %1").arg(shortTitle()));
    m_editor->setFrameShape(QFrame::NoFrame);
    m_findBar = new FindBar(m_editor, view);
    auto* layout = new QVBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_editor, 1);
    layout->addWidget(m_findBar);
    view->setFocusProxy(m_editor);
    setContent(view);
    setWindowIcon(glyphIcon(QStringLiteral("text-x-generic")));
    setBytes(m_file.bytes().size());
    setWordWrap(false);
    applySettings();

    connect(m_editor->document(), &QTextDocument::modificationChanged, this,
        &TextDocument::markModified);
    connect(m_editor, &QPlainTextEdit::cursorPositionChanged, this, &Document::statusChanged);
    connect(changeBar(), &FileChangeBar::reloadRequested, this, &TextDocument::reload);
    connect(changeBar(), &FileChangeBar::differenceRequested, this, &TextDocument::showDifference);
    connect(changeBar(), &FileChangeBar::keepRequested, this, &TextDocument::keepMine);
    connect(Settings::instance(), &Settings::changed, this, &TextDocument::applySettings);
}

void TextDocument::markModified(bool modified)
{
    setWindowModified(modified);
    setShortTitle(modified ? name() + QLatin1Char('*') : name());
    Q_EMIT statusChanged();
}

void TextDocument::applySettings()
{
    QFont font = Settings::instance()->editorFont();
    font.setPointSize(qMax(4, font.pointSize() + m_zoom));
    m_editor->setFont(font);
    m_editor->setTabStopDistance(4 * m_editor->fontMetrics().horizontalAdvance(QLatin1Char(' ')));
}

void TextDocument::zoom(int steps)
{
    m_zoom = steps == 0 ? 0 : m_zoom + steps;
    applySettings();
}

void TextDocument::setWordWrap(bool wrap)
{
    m_editor->setLineWrapMode(wrap ? QPlainTextEdit::WidgetWidth : QPlainTextEdit::NoWrap);
}

QString TextDocument::text() const
{
    return LineEnds::text(m_editor->document(), m_lineEnd);
}

QString TextDocument::status() const
{
    const QTextCursor cursor = m_editor->textCursor();
    return tr("Line %1, column %2    %3    %4")
        .arg(cursor.blockNumber() + 1)
        .arg(cursor.positionInBlock() + 1)
        .arg(m_file.encodingName(), LineEnds::name(m_lineEnd));
}

bool TextDocument::hasChanges() const
{
    return m_editor->document()->isModified();
}

void TextDocument::dropChanges()
{
    m_editor->document()->setModified(false);
}

bool TextDocument::save()
{
    return path().isEmpty() ? saveAs() : mayOverwrite() && saveTo(path());
}

bool TextDocument::saveAs()
{
    const QString chosen =
        QFileDialog::getSaveFileName(this, tr("Save As"), path().isEmpty() ? name() : path());
    return !chosen.isEmpty() && saveTo(chosen);
}

bool TextDocument::saveTo(const QString& path)
{
    const QString text = this->text();
    if (!mayEncode(text))
        return false;
    QString error;
    if (!m_file.write(path, text, &error)) {
        QMessageBox::warning(this, tr("Save"),
            tr("%1 could not be saved: %2").arg(QDir::toNativeSeparators(path), error));
        return false;
    }
    setBytes(m_file.bytes().size());
    changeBar()->hide();
    m_editor->document()->setModified(false);
    if (path != this->path())
        setPath(path);
    Q_EMIT statusChanged();
    tell(Events::DocumentSaved);
    return true;
}

// What another program has written since is not overwritten unasked, whether it was noticed or not.
bool TextDocument::mayOverwrite()
{
    QByteArray onDisk;
    QString error;
    if (!QFileInfo::exists(path())
        || (readBytes(path(), &onDisk, &error) && onDisk == m_file.bytes()))
        return true;
    QMessageBox question(QMessageBox::Warning, tr("Save"),
        tr("Another program has changed %1. What should become of its changes?").arg(name()),
        QMessageBox::Cancel, this);
    QPushButton* const overwrite =
        question.addButton(tr("&Overwrite"), QMessageBox::DestructiveRole);
    overwrite->setObjectName(QStringLiteral("save_overwrite"));
    QPushButton* const reloading = question.addButton(tr("&Reload"), QMessageBox::ResetRole);
    reloading->setObjectName(QStringLiteral("save_reload"));
    QPushButton* const difference =
        question.addButton(tr("Show &Differences"), QMessageBox::HelpRole);
    difference->setObjectName(QStringLiteral("save_difference"));
    question.setDefaultButton(QMessageBox::Cancel);
    question.exec();
    if (question.clickedButton() == reloading)
        reload();
    else if (question.clickedButton() == difference)
        showDifference();
    return question.clickedButton() == overwrite;
}

bool TextDocument::mayEncode(const QString& text)
{
    const QString character = m_file.firstUnwritable(text);
    if (character.isEmpty())
        return true;
    QMessageBox question(QMessageBox::Question, tr("Save"),
        tr("%1 is written in %2, which has no \u201c%3\u201d. Save it in UTF-8?")
            .arg(name(), m_file.encodingName(), character),
        QMessageBox::Save | QMessageBox::Cancel, this);
    if (question.exec() != QMessageBox::Save)
        return false;
    m_file.useUtf8();
    return true;
}

bool TextDocument::maySafelyClose()
{
    if (!hasChanges())
        return true;
    const auto answer = QMessageBox::question(this, tr("Close"),
        tr("Save the changes to %1 before closing?").arg(name()),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save());
}

void TextDocument::closeEvent(QCloseEvent* event)
{
    if (maySafelyClose())
        Document::closeEvent(event);
    else
        event->ignore();
}

// Says so above the text if the file cannot be read any more.
bool TextDocument::readAgain(TextFile* file, QString* text)
{
    QString error;
    if (file->read(path(), text, &error))
        return true;
    changeBar()->showChange(tr("The file cannot be read any more: %1").arg(error), false);
    return false;
}

bool TextDocument::onFileChanged()
{
    TextFile file;
    QString text;
    if (!readAgain(&file, &text))
        return true;
    if (file.bytes() == m_file.bytes()) {
        changeBar()->hide();
        return false;
    }
    if (Settings::instance()->reloadUnmodified() && !hasChanges())
        reload();
    else
        changeBar()->showChange(tr("The file has changed on disk."), true);
    return true;
}

// The text is nowhere else now.
void TextDocument::onFileDeleted()
{
    m_editor->document()->setModified(true);
    Document::onFileDeleted();
}

// The user knows what the file holds, so a save does not ask again.
void TextDocument::keepMine()
{
    QByteArray onDisk;
    QString error;
    if (readBytes(path(), &onDisk, &error))
        m_file.setBytes(onDisk);
    m_editor->document()->setModified(true);
}

void TextDocument::reload()
{
    TextFile file;
    QString text;
    if (!readAgain(&file, &text))
        return;
    m_file = file;
    const int position = m_editor->textCursor().position();
    m_lineEnd = LineEnds::fill(m_editor, text);
    QTextCursor cursor = m_editor->textCursor();
    cursor.setPosition(qMin(position, m_editor->document()->characterCount() - 1));
    m_editor->setTextCursor(cursor);
    setBytes(m_file.bytes().size());
    changeBar()->hide();
    Q_EMIT statusChanged();
}

void TextDocument::showDifference()
{
    TextFile file;
    QString text;
    if (!readAgain(&file, &text))
        return;
    QStringList theirs = text.split(QLatin1Char('\n'));
    QStringList ours = this->text().split(QLatin1Char('\n'));
    std::sort(theirs.begin(), theirs.end());
    std::sort(ours.begin(), ours.end());
    QStringList onDisk;
    QStringList here;
    std::set_difference(
        theirs.cbegin(), theirs.cend(), ours.cbegin(), ours.cend(), std::back_inserter(onDisk));
    std::set_difference(
        ours.cbegin(), ours.cend(), theirs.cbegin(), theirs.cend(), std::back_inserter(here));
    changeBar()->showDifference(
        tr("Lines only on disk: %1. Lines only here: %2.").arg(onDisk.size()).arg(here.size()));
}
