// SPDX-License-Identifier: MIT
//
// The kind of document that texts are: its factory, and the backends of its actions.

#include "actions.h"
#include "document_factory.h"
#include "find_bar.h"
#include "text_document.h"
#include "zentu_host.h"

#include <QApplication>
#include <QClipboard>
#include <QDir>
#include <QFileInfo>
#include <QPlainTextEdit>
#include <QPointer>

namespace {

/// Opens text files, and directs the actions to the current one.
class TextFactory : public DocumentFactory
{
public:
    explicit TextFactory(QObject* parent)
        : DocumentFactory(parent)
        , m_actions(TextDocument::Kind)
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
        m_save = m_actions.add(Ids::Save, [this] { m_current->save(); });
        m_wrap = m_actions.addCheckable(
            Ids::WordWrap, false, [this](bool wrap) { m_current->setWordWrap(wrap); });
        m_always = {m_selectAll, m_wrap,
            m_actions.add(Ids::SaveAs, [this] { m_current->saveAs(); }),
            m_actions.add(Ids::Close, [this] { m_current->close(); }),
            m_actions.add(Ids::Find, [this] { m_current->findBar()->open(false); }),
            m_actions.add(Ids::Replace, [this] { m_current->findBar()->open(true); }),
            m_actions.add(Ids::FindNext, [this] { m_current->findBar()->find(false); }),
            m_actions.add(Ids::FindPrevious, [this] { m_current->findBar()->find(true); }),
            m_actions.add(Ids::ZoomIn, [this] { m_current->zoom(1); }),
            m_actions.add(Ids::ZoomOut, [this] { m_current->zoom(-1); }),
            m_actions.add(Ids::ActualSize, [this] { m_current->zoom(0); })};
        connect(QApplication::clipboard(), &QClipboard::dataChanged, this, &TextFactory::update);
    }

    QString kind() const override { return TextDocument::Kind; }

    // Any file may be a text; opening it tells. What is not there yet begins as one.
    int rank(const QString& path) const override
    {
        const QFileInfo info(path);
        return info.isFile() || isNew(info) ? 1 : 0;
    }

    Document* open(const QString& path, QString* error) const override
    {
        return isNew(QFileInfo(path)) ? TextDocument::create(path)
                                      : TextDocument::open(path, error);
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
        m_actions.setCurrent(m_current);
    }

private:
    static bool isNew(const QFileInfo& info)
    {
        return info.filePath().isEmpty() || (!info.exists() && info.dir().exists());
    }

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

    Zentu::DocumentActions m_actions;
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
