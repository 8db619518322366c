// SPDX-License-Identifier: MIT
#pragma once

#include "document.h"
#include "text_file.h"

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

    /// An empty text; without a path, saving asks for one.
    static TextDocument* create(const QString& path);

    QPlainTextEdit* editor() const { return m_editor; }
    QString status() const override;

    bool hasChanges() const override;
    bool save() override;
    void dropChanges() override;
    bool saveAs();
    FindBar* findBar() const { return m_findBar; }
    void setWordWrap(bool wrap);
    void zoom(int steps);

    bool onFileChanged() override;
    void onFileDeleted() override;

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    TextDocument(const QString& path, const TextFile& file, const QString& text);

    QString text() const;
    bool saveTo(const QString& path);
    bool mayOverwrite();
    bool mayEncode(const QString& text);
    bool maySafelyClose();
    bool readAgain(TextFile* file, QString* text);
    void keepMine();
    void reload();
    void showDifference();
    void markModified(bool modified);
    void applySettings();

    QPlainTextEdit* m_editor;
    FindBar* m_findBar;
    TextFile m_file;
    QString m_lineEnd;
    int m_zoom = 0;
};
