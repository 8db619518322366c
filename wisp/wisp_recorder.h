// SPDX-License-Identifier: MIT
#pragma once

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
 * The logger keeps the newest 10,000 lines in memory. With the environment variable `WISP_TRACE`
 * set to `stderr` or to the path of a file it also writes each line there, with time, level and
 * thread.
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

/// How many lines are remembered.
constexpr std::size_t RecordedLines = 10000;

/// The remembered lines, oldest first; a copy.
WISP_EXPORT std::vector<Line> recordedLines();

/// Forgets all lines.
WISP_EXPORT void clearRecordedLines();

/**
 * Receives each line as it is logged, in the thread that logs it.
 *
 * The text is NUL-terminated Latin-1 and valid only during the call. Calls come one at a time.
 * Lines that are logged from inside a sink are remembered, but not passed to it.
 */
using Sink = void (*)(int level, const char* text, void* context);

/// Sets the one sink, or none (null, the default). When the function returns, no call of the sink
/// before is in progress, unless it is called from that sink itself.
WISP_EXPORT void setSink(Sink sink, void* context = nullptr);

} // namespace wisp
