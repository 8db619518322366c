// SPDX-License-Identifier: MIT
#pragma once

#include "mdi_area.h"

#include <QString>

class FileChangeBar;

/// A document of any kind: a view of the file at a path.
class Document : public Zentu::IMdiSubWindow
{
    Q_OBJECT

public:
    /// @p kind names the kind of document and the context in which its actions apply. A document
    /// without a path has no file yet.
    Document(const QString& kind, const QString& path);

    QString kind() const { return m_kind; }
    QString path() const { return m_path; }
    /// The last part of the path, or a name of its own.
    QString name() const;
    qint64 bytes() const { return m_bytes; }
    /// What is worth a place in the status bar.
    /// Cascaded, as large as one can work in.
    QSize sizeHint() const override;
    virtual QString status() const { return QString(); }

    virtual bool hasChanges() const { return false; }
    /// Writes the changes to the file; false if they are not written.
    virtual bool save() { return true; }
    /// Closing does not ask any more.
    virtual void dropChanges() { }

    /// The file changed on disk. False if it holds what it held before, as after a save.
    virtual bool onFileChanged();
    /// There is no file any more.
    virtual void onFileDeleted();

    /// Tells the bus what has become of the document.
    void tell(const QString& type) const;

Q_SIGNALS:
    /// The document shows another file than before.
    void pathChanged(const QString& path, const QString& previous);
    void statusChanged();
    /// All other documents are to be closed.
    void closeOthersRequested();

protected:
    void changeEvent(QEvent* event) override;
    /// Shows @p content, with the bar for changes of the file above it.
    void setContent(QWidget* content);
    FileChangeBar* changeBar() const { return m_changeBar; }
    void setPath(const QString& path);
    void setBytes(qint64 bytes) { m_bytes = bytes; }

private:
    QString m_kind;
    QString m_path;
    QString m_untitled;
    qint64 m_bytes = 0;
    FileChangeBar* m_changeBar = nullptr;
};
