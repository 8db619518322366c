// SPDX-License-Identifier: MIT
#include "text_document.h"

#include "actions.h"
#include "document_actions.h"
#include "document_factory.h"
#include "file_change_bar.h"
#include "find_bar.h"
#include "glyph_icon.h"
#include "settings.h"

#include <QApplication>
#include <QClipboard>
#include <QCloseEvent>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPointer>
#include <QSaveFile>
#include <QTextCodec>
#include <QVBoxLayout>

#include <algorithm>
#include <memory>

const QString TextDocument::Kind = QStringLiteral("text");

static bool read(const QString& path, QByteArray* content, QString* text, QString* error)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        *error = file.errorString();
        return false;
    }
    *content = file.readAll();
    // A file that breaks off is not an empty or a shorter one.
    if (file.error() != QFileDevice::NoError) {
        *error = file.errorString();
        return false;
    }
    QTextCodec::ConverterState state;
    *text =
        QTextCodec::codecForName("UTF-8")->toUnicode(content->constData(), content->size(), &state);
    if (state.invalidChars > 0 || state.remainingChars > 0) {
        *error = TextDocument::tr("not a text in UTF-8");
        return false;
    }
    return true;
}

TextDocument* TextDocument::open(const QString& path, QString* error)
{
    QByteArray content;
    QString text;
    return read(path, &content, &text, error) ? new TextDocument(path, content, text) : nullptr;
}

TextDocument::TextDocument(const QString& path, const QByteArray& content, const QString& text)
    : Document(Kind, path)
    , m_content(content)
{
    auto* view = new QWidget;
    m_editor = new QPlainTextEdit(text, view);
    m_editor->setObjectName(QStringLiteral("text_editor"));
    m_editor->setAccessibleName(tr("Text of %1").arg(shortTitle()));
    m_editor->setFrameShape(QFrame::NoFrame);
    m_findBar = new FindBar(m_editor, view);
    m_changeBar = new FileChangeBar(view);
    auto* layout = new QVBoxLayout(view);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_changeBar);
    layout->addWidget(m_editor);
    layout->addWidget(m_findBar);
    view->setFocusProxy(m_editor);
    setWidget(view);
    setWindowIcon(glyphIcon(QStringLiteral("text-x-generic")));
    setBytes(content.size());
    setWordWrap(false);
    applySettings();

    connect(m_editor->document(), &QTextDocument::modificationChanged, this, [this](bool modified) {
        setWindowModified(modified);
        const QString name = QFileInfo(this->path()).fileName();
        setShortTitle(modified ? name + QLatin1Char('*') : name);
    });
    connect(m_changeBar, &FileChangeBar::reloadRequested, this, &TextDocument::reload);
    connect(m_changeBar, &FileChangeBar::differenceRequested, this, &TextDocument::showDifference);
    connect(m_changeBar, &FileChangeBar::keepRequested, this, [this] {
        m_changeBar->hide();
        m_editor->document()->setModified(true);
    });
    connect(Settings::instance(), &Settings::changed, this, &TextDocument::applySettings);
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

void TextDocument::find()
{
    m_findBar->open();
}

bool TextDocument::save(const QString& path)
{
    const QByteArray content = m_editor->toPlainText().toUtf8();
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()
        || !file.commit()) {
        QMessageBox::warning(this, tr("Save"),
            tr("%1 could not be saved: %2")
                .arg(QDir::toNativeSeparators(path), file.errorString()));
        return false;
    }
    m_content = content;
    setBytes(content.size());
    m_changeBar->hide();
    m_editor->document()->setModified(false);
    if (path != this->path())
        setPath(path);
    return true;
}

void TextDocument::saveAs()
{
    const QString chosen = QFileDialog::getSaveFileName(this, tr("Save As"), path());
    if (!chosen.isEmpty())
        save(chosen);
}

bool TextDocument::maySafelyClose()
{
    if (!m_editor->document()->isModified())
        return true;
    const auto answer = QMessageBox::question(this, tr("Close"),
        tr("%1 has changes that are not saved.").arg(QFileInfo(path()).fileName()),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    return answer == QMessageBox::Discard || (answer == QMessageBox::Save && save(path()));
}

void TextDocument::closeEvent(QCloseEvent* event)
{
    if (maySafelyClose())
        Document::closeEvent(event);
    else
        event->ignore();
}

// Says so above the text if the file cannot be read any more.
bool TextDocument::readAgain(QByteArray* content, QString* text)
{
    QString error;
    if (read(path(), content, text, &error))
        return true;
    m_changeBar->showChange(tr("The file cannot be read any more: %1").arg(error), false);
    return false;
}

// What the document itself has written is no change.
void TextDocument::onFileChanged()
{
    QByteArray content;
    QString text;
    if (!readAgain(&content, &text))
        return;
    if (content == m_content) {
        m_changeBar->hide();
        return;
    }
    if (Settings::instance()->reloadUnmodified() && !m_editor->document()->isModified())
        reload();
    else
        m_changeBar->showChange(tr("The file has changed on disk."), true);
}

void TextDocument::reload()
{
    QByteArray content;
    QString text;
    if (!readAgain(&content, &text))
        return;
    m_content = content;
    const int position = m_editor->textCursor().position();
    m_editor->setPlainText(text);
    QTextCursor cursor = m_editor->textCursor();
    cursor.setPosition(qMin(position, text.size()));
    m_editor->setTextCursor(cursor);
    setBytes(m_content.size());
    m_changeBar->hide();
}

void TextDocument::showDifference()
{
    QByteArray content;
    QString text;
    if (!readAgain(&content, &text))
        return;
    QStringList theirs = text.split(QLatin1Char('\n'));
    QStringList ours = m_editor->toPlainText().split(QLatin1Char('\n'));
    std::sort(theirs.begin(), theirs.end());
    std::sort(ours.begin(), ours.end());
    QStringList onDisk;
    QStringList here;
    std::set_difference(
        theirs.cbegin(), theirs.cend(), ours.cbegin(), ours.cend(), std::back_inserter(onDisk));
    std::set_difference(
        ours.cbegin(), ours.cend(), theirs.cbegin(), theirs.cend(), std::back_inserter(here));
    m_changeBar->showDifference(
        tr("Lines only on disk: %1. Lines only here: %2.").arg(onDisk.size()).arg(here.size()));
}

namespace {

/// Opens text files, and directs the actions to the current one.
class TextFactory : public DocumentFactory
{
public:
    explicit TextFactory(QObject* parent)
        : DocumentFactory(parent)
        , m_actions(TextDocument::Kind, this)
    {
        const auto edit = [this](const QString& id, void (QPlainTextEdit::*operation)()) {
            return m_actions.add(id, [this, operation] { (m_current->editor()->*operation)(); });
        };
        m_undo = edit(Ids::Undo, &QPlainTextEdit::undo);
        m_redo = edit(Ids::Redo, &QPlainTextEdit::redo);
        m_cut = edit(Ids::Cut, &QPlainTextEdit::cut);
        m_copy = edit(Ids::Copy, &QPlainTextEdit::copy);
        m_paste = edit(Ids::Paste, &QPlainTextEdit::paste);
        m_selectAll = edit(Ids::SelectAll, &QPlainTextEdit::selectAll);
        m_save = m_actions.add(Ids::Save, [this] { m_current->save(m_current->path()); });
        m_wrap = m_actions.add(Ids::WordWrap, [this](bool wrap) {
            m_current->setWordWrap(wrap);
            update();
        });
        m_wrap->setCheckable(true);
        m_always = {m_selectAll, m_wrap,
            m_actions.add(Ids::SaveAs, [this] { m_current->saveAs(); }),
            m_actions.add(Ids::Close, [this] { m_current->close(); }),
            m_actions.add(Ids::Find, [this] { m_current->find(); }),
            m_actions.add(Ids::ZoomIn, [this] { m_current->zoom(1); }),
            m_actions.add(Ids::ZoomOut, [this] { m_current->zoom(-1); }),
            m_actions.add(Ids::ActualSize, [this] { m_current->zoom(0); })};
        connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &TextFactory::update);
    }

    QString kind() const override { return TextDocument::Kind; }

    // Any file may be a text; opening it tells.
    int rank(const QString& path) const override { return QFileInfo(path).isFile() ? 1 : 0; }

    Document* open(const QString& path, QString* error) const override
    {
        return TextDocument::open(path, error);
    }

    void setCurrent(Document* document) override
    {
        if (m_current) {
            disconnect(m_current->editor(), nullptr, this, nullptr);
            disconnect(m_current->editor()->document(), nullptr, this, nullptr);
        }
        m_current = qobject_cast<TextDocument*>(document);
        if (m_current) {
            QPlainTextEdit* const editor = m_current->editor();
            connect(editor, &QPlainTextEdit::selectionChanged, this, &TextFactory::update);
            connect(editor, &QPlainTextEdit::undoAvailable, this, &TextFactory::update);
            connect(editor, &QPlainTextEdit::redoAvailable, this, &TextFactory::update);
            connect(editor->document(), &QTextDocument::modificationChanged, this,
                &TextFactory::update);
        }
        update();
    }

private:
    void update()
    {
        const QPlainTextEdit* const editor = m_current ? m_current->editor() : nullptr;
        const bool selected = editor && editor->textCursor().hasSelection();
        m_cut->setEnabled(selected);
        m_copy->setEnabled(selected);
        m_paste->setEnabled(editor && editor->canPaste());
        m_undo->setEnabled(editor && editor->document()->isUndoAvailable());
        m_redo->setEnabled(editor && editor->document()->isRedoAvailable());
        m_save->setEnabled(editor && editor->document()->isModified());
        m_wrap->setChecked(editor && editor->lineWrapMode() == QPlainTextEdit::WidgetWidth);
        for (QAction* action : qAsConst(m_always))
            action->setEnabled(editor);
    }

    DocumentActions m_actions;
    QPointer<TextDocument> m_current;
    QAction* m_undo;
    QAction* m_redo;
    QAction* m_cut;
    QAction* m_copy;
    QAction* m_paste;
    QAction* m_selectAll;
    QAction* m_save;
    QAction* m_wrap;
    QList<QAction*> m_always;
};

const DocumentKind s_kind([](QObject* parent) { return new TextFactory(parent); });

} // namespace
