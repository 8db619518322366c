// SPDX-License-Identifier: MIT
#include "find_bar.h"

#include "lambda_slot.h"

#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QToolButton>

FindBar::FindBar(QPlainTextEdit* editor, QWidget* parent)
    : QWidget(parent)
    , m_editor(editor)
    , m_text(new QLineEdit(this))
    , m_result(new QLabel(this))
{
    setObjectName(QStringLiteral("find_bar"));
    m_text->setObjectName(QStringLiteral("find_text"));
    m_text->setPlaceholderText(tr("Find"));
    m_text->setAccessibleName(tr("Text to find"));
    auto* next = new QPushButton(tr("&Next"), this);
    auto* previous = new QPushButton(tr("&Previous"), this);
    auto* closer = new QToolButton(this);
    closer->setText(QStringLiteral("\u00d7"));
    closer->setAutoRaise(true);
    closer->setToolTip(tr("Close the find bar"));
    closer->setAccessibleName(closer->toolTip());

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(6, 4, 6, 4);
    layout->addWidget(m_text, 1);
    layout->addWidget(previous);
    layout->addWidget(next);
    layout->addWidget(m_result);
    layout->addStretch(1);
    layout->addWidget(closer);

    using Zentu::LambdaSlotWrapper;
    LambdaSlotWrapper::connect(m_text, SIGNAL(returnPressed()), [this] { find(false); });
    LambdaSlotWrapper::connect(next, SIGNAL(clicked()), [this] { find(false); });
    LambdaSlotWrapper::connect(previous, SIGNAL(clicked()), [this] { find(true); });
    LambdaSlotWrapper::connect(closer, SIGNAL(clicked()), [this] { close(); });
    hide();
}

void FindBar::open()
{
    const QString selected = m_editor->textCursor().selectedText();
    if (!selected.isEmpty())
        m_text->setText(selected);
    m_result->clear();
    show();
    m_text->setFocus();
    m_text->selectAll();
}

void FindBar::close()
{
    hide();
    m_editor->setFocus();
}

void FindBar::find(bool backwards)
{
    const auto flags = backwards ? QTextDocument::FindFlags(QTextDocument::FindBackward)
                                 : QTextDocument::FindFlags();
    bool found = m_editor->find(m_text->text(), flags);
    if (!found) {
        const QTextCursor before = m_editor->textCursor();
        m_editor->moveCursor(backwards ? QTextCursor::End : QTextCursor::Start);
        found = m_editor->find(m_text->text(), flags);
        if (!found)
            m_editor->setTextCursor(before);
    }
    m_result->setText(found ? QString() : tr("Not found"));
}

void FindBar::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Escape)
        close();
    else
        QWidget::keyPressEvent(event);
}
