// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_host.h"

class QTextEdit;

/// A plain text with its file and its actions.
class Document : public Zentu::IMdiSubWindow
{
    Q_OBJECT

public:
    explicit Document(const Zentu::Managers& managers);

    void beginNew();
    bool load(const QString& path);
    QString path() const { return m_path; }
    QTextEdit* editor() const { return m_editor; }

    void currentChanged(bool current) override { m_actions.setCurrent(current); }

Q_SIGNALS:
    void saved(bool underNewName);

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    bool save();
    bool saveAs();
    bool write(const QString& path);
    bool mayClose();
    void setPath(const QString& path);
    void showName(const QString& name);
    bool fail(const QString& text);

    Zentu::DocumentActions m_actions;
    QTextEdit* m_editor;
    QString m_path;
};
