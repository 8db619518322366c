// SPDX-License-Identifier: MIT
#pragma once

#include <QRegularExpression>
#include <QWidget>

class QCheckBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;
class QTextCursor;

/// Finds a text in an editor while it is typed, forwards and backwards, starting over at its end,
/// and replaces it.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    FindBar(QPlainTextEdit* editor, QWidget* parent);

    /// Shows the bar, with the editor's selection as the text to find.
    void open(bool withReplace);
    /// Goes to the next or the previous hit; asks for a text if there is none.
    void find(bool backwards);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QPushButton* createButton(const QString& text, const char* name);
    QRegularExpression expression() const;
    void findTyped();
    void findFrom(const QTextCursor& start, bool backwards);
    bool isHit(const QTextCursor& cursor) const;
    void showResult();
    void replace();
    void replaceAll();
    void close();

    QPlainTextEdit* m_editor;
    QWidget* m_findRow;
    QWidget* m_replaceRow;
    QLineEdit* m_text;
    QLineEdit* m_replacement;
    QLabel* m_result;
    QCheckBox* m_case;
    QCheckBox* m_words;
    QPushButton* m_replace;
    QPushButton* m_replaceAll;
};
