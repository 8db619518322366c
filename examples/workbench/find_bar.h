// SPDX-License-Identifier: MIT
#pragma once

#include <QWidget>

class QLabel;
class QLineEdit;
class QPlainTextEdit;

/// Finds a text in an editor, forwards and backwards, starting over at its end.
class FindBar : public QWidget
{
    Q_OBJECT

public:
    FindBar(QPlainTextEdit* editor, QWidget* parent);

    /// Shows the bar, with the editor's selection as the text to find.
    void open();

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    void find(bool backwards);
    void close();

    QPlainTextEdit* m_editor;
    QLineEdit* m_text;
    QLabel* m_result;
};
