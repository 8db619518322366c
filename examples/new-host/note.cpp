#include "note.h"

#include <QPlainTextEdit>

const QString Note::Context = QStringLiteral("note");
const QString Note::Added = QStringLiteral("note.added");

Note::Note(const QString& text)
    : m_editor(new QPlainTextEdit(text))
{
    setWidget(m_editor);
    const QString title = text.section(QLatin1Char('\n'), 0, 0);
    setWindowTitle(title);
    setShortTitle(title.isEmpty() ? tr("New note") : title.left(20));
}

QString Note::text() const
{
    return m_editor->toPlainText();
}

void Note::clear()
{
    m_editor->clear();
}
