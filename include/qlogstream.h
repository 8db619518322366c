// SPDX-License-Identifier: MIT
#pragma once

#include <QDebug>
#include <QString>

#include <cstddef>
#include <type_traits>
#include <utility>

namespace wisp {

/// The one level at which the library traces.
constexpr int LogInfo = 1;

/**
 * The process-wide logger of `libwisp.so`.
 *
 * Only these two operations are used, so any library that offers them can take the place of the
 * logger that is built beside ZentuKit.
 */
class Q_DECL_IMPORT logger
{
public:
    /// The logger; valid at any time, also while the process starts or ends. Never null.
    static logger* instance();

    /**
     * Records one finished line.
     *
     * @param level the line's level; the library passes only wisp::LogInfo
     * @param text  NUL-terminated Latin-1, owned by the caller and valid only during the call
     *
     * May be called from any thread. Must not call back into ZentuKit: some lines are written while
     * a lock is held.
     */
    void log(int level, const char* text);
};

/**
 * Gathers one line of the trace and hands it to wisp::logger when the statement ends.
 *
 * @code
 * wisp::qlogstream(wisp::LogInfo) << this << "document opened:" << path;
 * @endcode
 *
 * Items are formatted by Qt's `QDebug`: a blank after each item, strings in quotes. The blank after
 * the last item stays. Characters outside Latin-1 reach the logger as question marks.
 *
 * Streaming into #debug and streaming into the object itself is the same.
 *
 * A stream lives for one statement on one thread. It is not copyable.
 */
class qlogstream
{
public:
    /// Starts an empty line that will be sent at @p lineLevel, normally wisp::LogInfo.
    explicit qlogstream(int lineLevel)
        : level(lineLevel)
        , debug(&buffer)
    {
    }

    /// Sends the line.
    ~qlogstream()
    {
        logger* const sink = logger::instance();
        const QByteArray text = buffer.toLatin1();
        sink->log(level, text.constData());
    }

    Q_DISABLE_COPY(qlogstream)

    /// Appends @p item exactly as #debug would write it.
    template <typename T, std::enable_if_t<!std::is_scalar_v<std::decay_t<T>>, int> = 0>
    qlogstream& operator<<(T&& item)
    {
        debug << std::forward<T>(item);
        return *this;
    }

    /// Numbers and pointers are taken by value, and with them bit-fields and constants that a class
    /// declares without defining them, to which there are no references.
    template <typename T, std::enable_if_t<std::is_scalar_v<T>, int> = 0>
    qlogstream& operator<<(T item)
    {
        debug << item;
        return *this;
    }

    /// Arrays are taken as such: one may have a printer of its own.
    template <typename T, std::size_t Size>
    qlogstream& operator<<(T (&items)[Size])
    {
        debug << items;
        return *this;
    }

    /// The level handed to the logger.
    int level;
    /// The text gathered so far.
    QString buffer;
    /// Writes into #buffer, in space mode and with quoting unless told otherwise.
    QDebug debug;
};

} // namespace wisp
