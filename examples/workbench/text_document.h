// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"

#include <QByteArray>

class FileChangeBar;
class FindBar;
class QPlainTextEdit;

/// A plain-text file in an editor.
class TextDocument : public Document
{
    Q_OBJECT

public:
    static const QString Kind;

    /// Reads a file; null and the reason if it cannot be read or is no text.
    static TextDocument* open(const QString& path, QString* error);

    QPlainTextEdit* editor() const { return m_editor; }

    /// Writes the file, all of it or nothing. Asks for a name if @p path is empty.
    bool save(const QString& path);
    void saveAs();
    void find();
    void setWordWrap(bool wrap);
    void zoom(int steps);

    void onFileChanged() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    TextDocument(const QString& path, const QByteArray& content, const QString& text);

    bool readAgain(QByteArray* content, QString* text);
    bool maySafelyClose();
    void reload();
    void showDifference();
    void applySettings();

    QPlainTextEdit* m_editor;
    FindBar* m_findBar;
    FileChangeBar* m_changeBar;
    /// What the file held when it was last read or written.
    QByteArray m_content;
    int m_zoom = 0;
};
