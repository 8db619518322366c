// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_host.h"

#include <QTextBlockFormat>
#include <QTextListFormat>
#include <QVector>

class QPrinter;
class QTextCharFormat;
class QTextEdit;

/// A kind of paragraph.
struct ParagraphStyle
{
    const char* name = nullptr;
    QTextListFormat::Style list = QTextListFormat::ListStyleUndefined;
    QTextBlockFormat::MarkerType marker = QTextBlockFormat::MarkerType::NoMarker;
    int heading = 0;
};

/// A rich text with its file and its actions.
class Document : public Zentu::IMdiSubWindow
{
    Q_OBJECT

public:
    explicit Document(const Zentu::Managers& managers);

    static const QVector<ParagraphStyle>& styles();

    bool load(const QString& path);
    QTextEdit* editor() const { return m_editor; }
    QFont currentFont() const;
    int currentStyle() const;

    void setFamily(const QString& family);
    void setSize(qreal size);
    void setStyle(int index);

    void currentChanged(bool current) override { m_actions.setCurrent(current); }

Q_SIGNALS:
    void message(const QString& text);
    void formatChanged();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void createFileActions();
    void createEditActions();
    void createFormatActions();
    template <typename Change>
    void addFormat(const QString& id, Change change);
    QAction* addIfAvailable(const QString& id, void (QTextEdit::*reaction)());

    void setPath(const QString& path);
    bool save();
    bool saveAs();
    bool mayClose();
    void print();
    void preview();
    void exportPdf();

    void merge(const QTextCharFormat& format);
    void setHeading(QTextCursor* cursor, int level);
    void setList(QTextCursor* cursor, const ParagraphStyle& style);
    void indent(int amount);
    void align(const QString& id);
    void chooseColor();
    void showFormat();
    void showColor(const QColor& color);

    Zentu::DocumentActions m_actions;
    QTextEdit* m_editor;
    QString m_path;
};
