// SPDX-License-Identifier: MIT
#pragma once

#include "record.h"

#include <QString>

#include <atomic>
#include <cstdio>
#include <mutex>
#include <set>
#include <vector>

namespace Zentu::Inspect {

/**
 * Hears every line and message of the process, in the thread that writes it, and keeps it until the
 * window's thread takes it. There is one at a time.
 *
 * At that moment the objects that a line names are alive, so what the line leaves out is read then;
 * the library is not called.
 */
class Listener
{
public:
    Listener();
    ~Listener();
    Listener(const Listener&) = delete;
    Listener& operator=(const Listener&) = delete;

    /// Whether the logger lets itself be listened to. One of the host's own may not.
    bool hearsLines() const { return m_sink != 0; }

    /// All that came since the last call, oldest first.
    std::vector<Record> take();

    /// How many callers of a line are kept: 8 by default, 0 for none.
    void setStackDepth(int depth) { m_stackDepth = depth; }
    int stackDepth() const { return m_stackDepth; }

    /// Writes all that comes from now on into a file, each line with what it leaves out below it,
    /// to the end of the process or of the recording. The names and lines of functions that another
    /// program has to be asked for come in at the end of the recording.
    /// @return what went wrong, empty if nothing did
    QString startRecording(const QString& path);
    void stopRecording();
    bool isRecording() const { return m_file != nullptr; }

private:
    static void hearLine(int level, const char* text, void* self);
    static bool isHostsLine(int level, const char* text, void* self);
    static void hearMessage(QtMsgType type, const QMessageLogContext& context, const QString& text);

    void listenToLogger();
    void add(Record record);
    void write(const Record& record);

    static std::atomic<Listener*> s_current;

    std::mutex m_mutex;
    std::vector<Record> m_records;
    std::FILE* m_file = nullptr;
    QString m_path;
    std::set<std::vector<void*>> m_stacks;
    std::atomic<int> m_stackDepth = 8;
    int m_sink = 0;
    QtMessageHandler m_previousHandler = nullptr;
};

} // namespace Zentu::Inspect
