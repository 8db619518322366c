// SPDX-License-Identifier: MIT
#include "wisp_recorder.h"

#include "qlogstream.h"

#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <map>
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
        if (filter && !filter(level, text, filterContext))
            return;
        remember(level, text);
        if (file)
            write(level, text);
        if (!sinksAreRunning)
            tellSinks(level, text);
    }

    std::vector<Line> lines()
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        std::vector<Line> result;
        result.reserve(next - first);
        for (std::size_t i = first; i < next; ++i)
            result.push_back(slot(i));
        return result;
    }

    void clear()
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        ring = std::vector<Line>(RecordedLines);
        first = next = characters = 0;
    }

    void setSink(Sink sink, void* context)
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        if (sink)
            sinks[0] = {sink, context};
        else
            sinks.erase(0);
    }

    int addSink(Sink sink, void* context)
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        ++lastNumber;
        if (sink)
            sinks[lastNumber] = {sink, context};
        return lastNumber;
    }

    void removeSink(int number)
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        if (number != 0)
            sinks.erase(number);
    }

    void setFilter(Filter newFilter, void* context)
    {
        const std::lock_guard<std::recursive_mutex> guard(mutex);
        filter = newFilter;
        filterContext = context;
    }

private:
    struct Listener
    {
        Sink sink;
        void* context;
    };

    /// Holds a flag, also while a sink throws.
    struct Running
    {
        explicit Running(bool& running)
            : flag(running)
        {
            flag = true;
        }
        ~Running() { flag = false; }
        Running(const Running&) = delete;
        Running& operator=(const Running&) = delete;

        bool& flag;
    };

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

    Line& slot(std::size_t i) { return ring[i % RecordedLines]; }

    // A slot keeps its memory unless it is large, so a line costs one copy and, once the ring is
    // full of lines of its length, nothing else.
    void remember(int level, const char* text)
    {
        const std::size_t length = std::strlen(text);
        while (first < next
            && (next - first == RecordedLines || characters + length > RecordedCharacters))
            forgetOldest();
        Line& line = slot(next++);
        line.level = level;
        line.text.assign(text, length);
        characters += length;
    }

    void forgetOldest()
    {
        constexpr std::size_t large = 1024;
        std::string& text = slot(first++).text;
        characters -= text.size();
        if (text.size() > large)
            std::string().swap(text);
    }

    // By numbers and not by iterators, as each sink may change the sinks.
    void tellSinks(int level, const char* text)
    {
        const Running running(sinksAreRunning);
        const int last = lastNumber;
        for (auto it = sinks.begin(); it != sinks.end() && it->first <= last;) {
            const int number = it->first;
            const Listener listener = it->second;
            listener.sink(level, text, listener.context);
            it = sinks.upper_bound(number);
        }
    }

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
    std::size_t first = 0;
    std::size_t next = 0;
    std::size_t characters = 0;
    std::FILE* file;
    // The set one has the number 0.
    std::map<int, Listener> sinks;
    int lastNumber = 0;
    Filter filter = nullptr;
    void* filterContext = nullptr;
    bool sinksAreRunning = false;
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

int addSink(Sink sink, void* context)
{
    return recorder().addSink(sink, context);
}

void removeSink(int number)
{
    recorder().removeSink(number);
}

void setFilter(Filter filter, void* context)
{
    recorder().setFilter(filter, context);
}

} // namespace wisp
