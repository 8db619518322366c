// SPDX-License-Identifier: MIT
#include "line_ends.h"

#include <QPlainTextEdit>
#include <QTextBlock>
#include <QTextDocument>
#include <QVector>

#include <algorithm>

namespace {

/// Of a block's format: which end the line has. The format of a line survives the removal of whole
/// lines beside it.
constexpr int LineEnd = QTextFormat::UserProperty;

/// All that begins a new line in an editor; the last two are marks of Qt's own around a frame.
const QVector<QString>& ends()
{
    static const QVector<QString> all = {QStringLiteral("\n"), QStringLiteral("\r\n"),
        QStringLiteral("\r"), QString(QChar::ParagraphSeparator), QString(QChar(0xfdd0)),
        QString(QChar(0xfdd1))};
    return all;
}

/// Goes from the end of one line to the next.
class Ends
{
public:
    explicit Ends(const QString& text)
        : m_next(text.constData())
        , m_last(m_next + text.size())
    {
    }

    /// The index of the next end, -1 behind the last.
    int next()
    {
        while (m_next != m_last) {
            const int end = endOf(*m_next++);
            if (end < 0)
                continue;
            const bool isPair = end == 2 && m_next != m_last && *m_next == QLatin1Char('\n');
            if (!isPair)
                return end;
            ++m_next;
            return 1;
        }
        return -1;
    }

private:
    static int endOf(QChar character)
    {
        switch (character.unicode()) {
        case '\n':
            return 0;
        case '\r':
            return 2;
        case QChar::ParagraphSeparator:
            return 3;
        case 0xfdd0:
            return 4;
        case 0xfdd1:
            return 5;
        default:
            return -1;
        }
    }

    const QChar* m_next;
    const QChar* m_last;
};

} // namespace

QString LineEnds::fill(QPlainTextEdit* editor, const QString& text)
{
    QVector<int> counts(ends().size(), 0);
    int lines = 0;
    Ends counted(text);
    for (int end = counted.next(); end >= 0; end = counted.next(), ++lines)
        ++counts[end];
    const auto most = std::max_element(counts.cbegin(), counts.cend());
    const int usual = static_cast<int>(most - counts.cbegin());

    editor->setPlainText(text);
    if (*most == lines)
        return ends().at(usual);
    QTextDocument* const document = editor->document();
    document->setUndoRedoEnabled(false);
    QTextCursor whole(document);
    whole.beginEditBlock();
    QTextBlock block = document->begin();
    Ends marked(text);
    for (int end = marked.next(); end >= 0; end = marked.next(), block = block.next()) {
        if (end == usual)
            continue;
        QTextBlockFormat format = block.blockFormat();
        format.setProperty(LineEnd, end);
        QTextCursor(block).setBlockFormat(format);
    }
    whole.endEditBlock();
    document->setUndoRedoEnabled(true);
    document->setModified(false);
    return ends().at(usual);
}

// Block by block, as the document's own plain text has blanks where no-break spaces were.
QString LineEnds::text(const QTextDocument* document, const QString& usual)
{
    QString text;
    text.reserve(document->characterCount());
    for (QTextBlock block = document->begin(); block.isValid(); block = block.next()) {
        text += block.text();
        const QTextBlockFormat format = block.blockFormat();
        if (block == document->lastBlock())
            break;
        text += format.hasProperty(LineEnd) ? ends().at(format.intProperty(LineEnd)) : usual;
    }
    return text;
}

QString LineEnds::name(const QString& end)
{
    static const QVector<QString> names = {
        QStringLiteral("LF"), QStringLiteral("CRLF"), QStringLiteral("CR")};
    return names.value(ends().indexOf(end));
}
