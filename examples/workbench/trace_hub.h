// SPDX-License-Identifier: MIT
#pragma once

#include <QFile>
#include <QObject>
#include <QString>

/// Passes the lines of the trace on to a file and to whoever listens.
class TraceHub : public QObject
{
    Q_OBJECT

public:
    explicit TraceHub(QObject* parent = nullptr);
    ~TraceHub() override;

    /// Appends every line from now on to a file; says so on standard error if it cannot be opened.
    void writeTo(const QString& path);

    /// The hub of this process, or null.
    static TraceHub* instance();

Q_SIGNALS:
    /// A line was traced, in whichever thread.
    void traced(const QString& line);

private:
    static void receive(int level, const char* text, void* hub);

    static TraceHub* s_instance;

    QFile m_file;
};
