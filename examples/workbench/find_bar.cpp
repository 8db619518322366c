// SPDX-License-Identifier: MIT
#include "find_bar.h"

#include "wrap_layout.h"

#include <QCheckBox>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QTextBlock>
#include <QToolButton>
#include <QVBoxLayout>

FindBar::FindBar(QPlainTextEdit* editor, QWidget* parent)
    : QWidget(parent)
    , m_editor(editor)
    , m_findRow(new QWidget(this))
    , m_replaceRow(new QWidget(this))
    , m_text(new QLineEdit(this))
    , m_replacement(new QLineEdit(this))
    , m_result(new QLabel(this))
    , m_case(new QCheckBox(tr("&Case"), this))
    , m_words(new QCheckBox(tr("&Whole Words"), this))
{
    setObjectName(QStringLiteral("find_bar"));
    auto* rows = new QVBoxLayout(this);
    rows->setContentsMargins(0, 0, 0, 0);
    rows->setSpacing(0);
    rows->addWidget(m_findRow);
    rows->addWidget(m_replaceRow);
    auto* row = new WrapLayout(m_findRow);
    auto* replaceRow = new WrapLayout(m_replaceRow);
    m_text->setObjectName(QStringLiteral("find_text"));
    m_text->setPlaceholderText(tr("Find"));
    m_text->setAccessibleName(tr("Text to find"));
    m_replacement->setObjectName(QStringLiteral("find_replacement"));
    m_replacement->setPlaceholderText(tr("Replace with"));
    m_replacement->setAccessibleName(m_replacement->placeholderText());
    m_result->setObjectName(QStringLiteral("find_result"));
    m_case->setObjectName(QStringLiteral("find_case"));
    m_words->setObjectName(QStringLiteral("find_words"));

    QPushButton* const previous = createButton(tr("&Previous"), "find_previous");
    QPushButton* const next = createButton(tr("&Next"), "find_next");
    auto* closer = new QToolButton(this);
    closer->setText(QStringLiteral("\u00d7"));
    closer->setAutoRaise(true);
    closer->setToolTip(tr("Close the find bar"));
    closer->setAccessibleName(closer->toolTip());
    m_replace = createButton(tr("&Replace"), "find_replace");
    m_replaceAll = createButton(tr("Replace &All"), "find_replace_all");
    for (QWidget* part : QWidgetList{m_text, m_result, previous, next, m_case, m_words, closer})
        row->addWidget(part);
    for (QWidget* part : QWidgetList{m_replacement, m_replace, m_replaceAll})
        replaceRow->addWidget(part);
    // As wide as a button is not.
    for (QLineEdit* field : {m_text, m_replacement})
        field->setMinimumWidth(2 * m_replaceAll->sizeHint().width());

    connect(m_text, &QLineEdit::textChanged, this, &FindBar::findTyped);
    connect(m_case, &QCheckBox::toggled, this, &FindBar::findTyped);
    connect(m_words, &QCheckBox::toggled, this, &FindBar::findTyped);
    connect(m_text, &QLineEdit::returnPressed, this, [this] { find(false); });
    connect(next, &QPushButton::clicked, this, [this] { find(false); });
    connect(previous, &QPushButton::clicked, this, [this] { find(true); });
    connect(m_replacement, &QLineEdit::returnPressed, this, &FindBar::replace);
    connect(m_replace, &QPushButton::clicked, this, &FindBar::replace);
    connect(m_replaceAll, &QPushButton::clicked, this, &FindBar::replaceAll);
    connect(closer, &QToolButton::clicked, this, &FindBar::close);
    hide();
}

QPushButton* FindBar::createButton(const QString& text, const char* name)
{
    auto* const button = new QPushButton(text, this);
    button->setObjectName(QLatin1String(name));
    return button;
}

void FindBar::open(bool withReplace)
{
    m_replaceRow->setVisible(withReplace);
    const QString selected = m_editor->textCursor().selectedText();
    if (!selected.isEmpty() && !selected.contains(QChar::ParagraphSeparator))
        m_text->setText(selected);
    show();
    m_text->setFocus();
    m_text->selectAll();
    showResult();
}

void FindBar::close()
{
    hide();
    m_editor->setFocus();
}

QRegularExpression FindBar::expression() const
{
    QString pattern = QRegularExpression::escape(m_text->text());
    if (m_words->isChecked())
        pattern = QStringLiteral("(?<!\\w)%1(?!\\w)").arg(pattern);
    QRegularExpression expression(pattern, QRegularExpression::UseUnicodePropertiesOption);
    if (!m_case->isChecked())
        expression.setPatternOptions(
            expression.patternOptions() | QRegularExpression::CaseInsensitiveOption);
    return expression;
}

void FindBar::findFrom(const QTextCursor& start, bool backwards)
{
    const auto flags = backwards ? QTextDocument::FindFlags(QTextDocument::FindBackward)
                                 : QTextDocument::FindFlags();
    QTextCursor found = m_editor->document()->find(expression(), start, flags);
    if (found.isNull()) {
        QTextCursor edge = start;
        edge.movePosition(backwards ? QTextCursor::End : QTextCursor::Start);
        found = m_editor->document()->find(expression(), edge, flags);
    }
    if (!found.isNull())
        m_editor->setTextCursor(found);
    showResult();
}

void FindBar::find(bool backwards)
{
    if (m_text->text().isEmpty())
        open(m_replaceRow->isVisible());
    else
        findFrom(m_editor->textCursor(), backwards);
}

// The hit grows while it is typed.
void FindBar::findTyped()
{
    QTextCursor start = m_editor->textCursor();
    start.setPosition(start.selectionStart());
    if (m_text->text().isEmpty()) {
        m_editor->setTextCursor(start);
        showResult();
    } else {
        findFrom(start, false);
    }
}

bool FindBar::isHit(const QTextCursor& cursor) const
{
    QTextCursor start = cursor;
    start.setPosition(cursor.selectionStart());
    const QTextCursor hit = m_editor->document()->find(expression(), start);
    return hit == cursor && hit.selectionStart() == cursor.selectionStart();
}

// Which of how many.
void FindBar::showResult()
{
    const QRegularExpression expression = this->expression();
    const int current = m_editor->textCursor().selectionStart();
    int hits = 0;
    int before = 0;
    QTextBlock block = m_editor->document()->begin();
    for (; block.isValid() && !m_text->text().isEmpty(); block = block.next()) {
        auto matches = expression.globalMatch(block.text());
        while (matches.hasNext()) {
            before += block.position() + matches.next().capturedStart() < current ? 1 : 0;
            ++hits;
        }
    }
    QString result;
    if (!m_text->text().isEmpty()) {
        result = hits == 0                  ? tr("Not found")
            : isHit(m_editor->textCursor()) ? tr("%1 of %2").arg(before + 1).arg(hits)
                                            : tr("%n hit(s)", nullptr, hits);
    }
    m_result->setText(result);
    m_replace->setEnabled(hits > 0);
    m_replaceAll->setEnabled(hits > 0);
}

void FindBar::replace()
{
    QTextCursor cursor = m_editor->textCursor();
    if (isHit(cursor)) {
        cursor.insertText(m_replacement->text());
        m_editor->setTextCursor(cursor);
    }
    find(false);
}

// One step to undo.
void FindBar::replaceAll()
{
    const QRegularExpression expression = this->expression();
    QTextDocument* const document = m_editor->document();
    QTextCursor whole(document);
    whole.beginEditBlock();
    int replaced = 0;
    QTextCursor hit = document->find(expression, 0);
    for (; !hit.isNull(); hit = document->find(expression, hit), ++replaced)
        hit.insertText(m_replacement->text());
    whole.endEditBlock();
    showResult();
    m_result->setText(tr("%n replaced", nullptr, replaced));
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}
