// SPDX-License-Identifier: MIT
#pragma once

#include "mdi_area.h"

#include <QString>

/// A document of any kind: a view of the file at a path.
class Document : public Zentu::IMdiSubWindow
{
    Q_OBJECT

public:
    /// @p kind names the kind of document and the context in which its actions apply.
    Document(const QString& kind, const QString& path);

    QString kind() const { return m_kind; }
    QString path() const { return m_path; }
    qint64 bytes() const { return m_bytes; }

    /// The file changed on disk; by default nothing follows from that.
    virtual void onFileChanged();

Q_SIGNALS:
    /// The document shows another file than before.
    void pathChanged(const QString& path, const QString& previous);

protected:
    void setPath(const QString& path);
    void setBytes(qint64 bytes) { m_bytes = bytes; }

private:
    QString m_kind;
    QString m_path;
    qint64 m_bytes = 0;
};
