// SPDX-License-Identifier: MIT
#include "wisp_recorder.h"

#include "qlogstream.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <mutex>

namespace wisp {

namespace {

/// The newest lines in a ring, and where else lines go.
class Recorder
{
public:
    Recorder()
        : ring(RecordedLines)
        , file(openTraceFile())
    {
    }

    void log(int level, const char* text)
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        // A slot keeps its memory, so a line costs one copy and, once the ring is full of lines
        // of its length, nothing else.
        Line& line = ring[next % RecordedLines];
        ++next;
        line.level = level;
        line.text = text;

        if (file)
            write(level, text);
        if (sink && !sinkIsRunning) {
            sinkIsRunning = true;
            sink(level, text, sinkContext);
            sinkIsRunning = false;
        }
    }

    std::vector<Line> lines()
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        std::vector<Line> result;
        result.reserve(next - first());
        for (std::size_t i = first(); i < next; ++i)
            result.push_back(ring[i % RecordedLines]);
        return result;
    }

    void clear()
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        next = 0;
    }

    void setSink(Sink newSink, void* context)
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        sink = newSink;
        sinkContext = context;
    }

private:
    static std::FILE* openTraceFile()
    {
        const char* const target = std::getenv("WISP_TRACE");
        if (!target || !*target)
            return nullptr;
        if (std::strcmp(target, "stderr") == 0)
            return stderr;
        std::FILE* const opened = std::fopen(target, "a");
        if (opened)
            std::setvbuf(opened, nullptr, _IOLBF, BUFSIZ);
        else
            std::fprintf(
                stderr, "wisp: cannot write the trace to %s: %s\n", target, std::strerror(errno));
        return opened;
    }

    std::size_t first() const { return next > RecordedLines ? next - RecordedLines : 0; }

    void write(int level, const char* text) const
    {
        std::timespec now{};
        std::timespec_get(&now, TIME_UTC);
        std::tm utc{};
        gmtime_r(&now.tv_sec, &utc);
        char time[sizeof "2000-01-01T00:00:00"];
        std::strftime(time, sizeof time, "%Y-%m-%dT%H:%M:%S", &utc);
        std::fprintf(file, "%s.%06ldZ %d %ld %s\n", time, now.tv_nsec / 1000, level,
            static_cast<long>(gettid()), text);
    }

    // Recursive, because a sink may log.
    std::recursive_mutex mutex;
    std::vector<Line> ring;
    std::size_t next = 0;
    std::FILE* file;
    Sink sink = nullptr;
    void* sinkContext = nullptr;
    bool sinkIsRunning = false;
};

// Created by the first line, whoever writes it, and never destroyed: objects of static storage may
// log while the process ends.
Recorder& recorder()
{
    static auto* const instance = new Recorder;
    return *instance;
}

} // namespace

logger* logger::instance()
{
    static logger instance;
    return &instance;
}

void logger::log(int level, const char* text)
{
    recorder().log(level, text);
}

std::vector<Line> recordedLines()
{
    return recorder().lines();
}

void clearRecordedLines()
{
    recorder().clear();
}

void setSink(Sink sink, void* context)
{
    recorder().setSink(sink, context);
}

} // namespace wisp
