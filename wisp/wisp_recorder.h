// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#if defined(__GNUC__)
#define WISP_EXPORT __attribute__((visibility("default")))
#else
#define WISP_EXPORT
#endif

/**
 * @file
 * What the logger beside ZentuKit remembers, and how a host or a test listens to it.
 *
 * The logger keeps the newest 10,000 lines in memory, and fewer if they are long. With the
 * environment variable `WISP_TRACE` set to `stderr` or to the path of a file it also writes each
 * line there, with time, level and thread. The write is made by the thread that logs: it waits for
 * the reader of a pipe, and a pipe without a reader ends the process as it ends any that writes.
 *
 * All functions may be called from any thread, before `main` and after it.
 */

namespace wisp {

/// A line as it was logged.
struct Line
{
    int level = 0;    ///< As it was passed to the logger
    std::string text; ///< Latin-1
};

/// How many lines are remembered at most.
constexpr std::size_t RecordedLines = 10000;

/// How many characters they have together at most; older lines are forgotten sooner then. The
/// newest line is remembered whatever its length.
constexpr std::size_t RecordedCharacters = std::size_t(16) * 1024 * 1024;

/// The remembered lines, oldest first; a copy.
WISP_EXPORT std::vector<Line> recordedLines();

/// Forgets all lines and releases their memory.
WISP_EXPORT void clearRecordedLines();

/**
 * Receives each line as it is logged, in the thread that logs it.
 *
 * The text is NUL-terminated Latin-1 and valid only during the call. Calls come one at a time, so a
 * sink must not wait for a thread that logs. Lines that are logged from inside a sink are
 * remembered, but passed to none. A sink may set, add and remove sinks, itself too: one that is new
 * hears the next line first, one that is removed hears no more.
 *
 * An exception passes through to whoever logs, and the sinks that have not been called miss the
 * line. Lines that are written in a destructor end the process then.
 */
using Sink = void (*)(int level, const char* text, void* context);

/// Sets the one sink that is called before the added ones, or none (null, the default). When the
/// function returns, no call of the sink before is in progress, unless it is called from a sink.
WISP_EXPORT void setSink(Sink sink, void* context = nullptr);

/// Adds a sink to those that there are; they are called in the order in which they were added.
/// Returns the number by which it is removed, never 0. The same sink may be added again.
WISP_EXPORT int addSink(Sink sink, void* context = nullptr);

/// Removes an added sink; a number that is not known is ignored. When the function returns, no call
/// of the sink is in progress, unless it is called from a sink.
WISP_EXPORT void removeSink(int number);

/**
 * Says whether a line is logged at all; called before anything else is done with it, in the thread
 * that logs it and one call at a time. It must neither log nor call anything of this header.
 */
using Filter = bool (*)(int level, const char* text, void* context);

/// Sets the one filter, or none (null, the default): for a tool that runs inside of a host and uses
/// the library for itself, so that its lines are not taken for the host's. When the function
/// returns, no call of the filter before is in progress.
WISP_EXPORT void setFilter(Filter filter, void* context = nullptr);

} // namespace wisp
