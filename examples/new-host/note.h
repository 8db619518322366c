#pragma once

#include <ZentuKit/DocumentActions>
#include <ZentuKit/IMdiSubWindow>

class QPlainTextEdit;

/// A document: some text.
class Note : public Zentu::IMdiSubWindow
{
    Q_OBJECT

public:
    /// The event that a note was added; with its "title".
    static const QString Added;

    explicit Note(const QString& text);

    QString text() const;
    void clear();
    /// Whether the note is as it was, or the user does not need what was written since.
    bool mayClose();

    void currentChanged(bool current) override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    QPlainTextEdit* m_editor;
    Zentu::DocumentActions m_actions;
};
