#include "note.h"

#include <QCloseEvent>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QTextCursor>

const QString Note::Added = QStringLiteral("note.added");

Note::Note(const QString& text)
    : m_editor(new QPlainTextEdit(text))
{
    setWidget(m_editor);
    const QString title = text.section(QLatin1Char('\n'), 0, 0);
    setWindowTitle(title);
    setShortTitle(title.isEmpty() ? tr("New note") : title.left(20));
    // What the actions in the menus do while this note is the current one.
    m_actions.add(QStringLiteral("edit.clear"), this, &Note::clear);
}

QString Note::text() const
{
    return m_editor->toPlainText();
}

// Can be undone, as the editor's own clear() cannot.
void Note::clear()
{
    QTextCursor all(m_editor->document());
    all.select(QTextCursor::Document);
    all.removeSelectedText();
}

bool Note::mayClose()
{
    if (!m_editor->document()->isModified())
        return true;
    const auto answer = QMessageBox::question(this, shortTitle(),
        tr("This note has changed. Close it and lose the changes?"),
        QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Cancel);
    return answer == QMessageBox::Discard;
}

void Note::currentChanged(bool current)
{
    m_actions.setCurrent(current);
}

// A close that is accepted must reach the base class: it tells the area.
void Note::closeEvent(QCloseEvent* event)
{
    if (mayClose())
        IMdiSubWindow::closeEvent(event);
    else
        event->ignore();
}
