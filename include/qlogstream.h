// SPDX-License-Identifier: MIT
#pragma once

#include <QDebug>
#include <QLocale>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTextStream>

#include <algorithm>
#include <charconv>
#include <iterator>
#include <type_traits>

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
     * @param level the line's level; the library passes only #LogInfo
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
 * Streaming into #debug and streaming into the object itself write the same text into the same
 * line; the latter is cheaper for the items that make up most lines (text, strings, lists of
 * strings, numbers, addresses and `QObject` pointers).
 *
 * A stream lives for one statement on one thread. It is not copyable.
 */
class qlogstream
{
public:
    /// Starts an empty line that will be sent at @p lineLevel, normally #LogInfo.
    explicit qlogstream(int lineLevel)
        : level(lineLevel)
        , debug(&buffer)
    {
        buffer.reserve(TypicalLength);
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
    template <typename T>
    qlogstream& operator<<(T&& item)
    {
        if constexpr (hasShortcut<std::decay_t<T>>()) {
            const int start = buffer.size();
            if (isAsConstructed() && append(item)) {
                buffer += QLatin1Char(' ');
                return *this;
            }
            buffer.truncate(start);
        }
        debug << std::forward<T>(item);
        return *this;
    }

    /// The level handed to the logger.
    int level;
    /// The text gathered so far.
    QString buffer;
    /// Writes into #buffer, in space mode and with quoting unless told otherwise.
    QDebug debug;

protected:
    // Room for all but the longest lines, so that a line grows its buffer once.
    static constexpr int TypicalLength = 160;

    // Whether items still come out as from a fresh QDebug: spaced, and no base, width, padding or
    // locale asked for. QDebug keeps its text stream to itself but hands it to a manipulator; this
    // one leaves a mark in the line if it finds the stream altered.
    bool isAsConstructed()
    {
        if (!debug.autoInsertSpaces() || debug.verbosity() != QDebug::DefaultVerbosity)
            return false;
        const int start = buffer.size();
        debug << markAltered;
        return buffer.size() == start;
    }

    // Each append() writes one item without its closing blank, or gives up with false; then what it
    // has written so far is to be taken back and the item left to QDebug.
    bool append(const char* text)
    {
        const char* end = text;
        for (; end && *end; ++end) {
            if (static_cast<unsigned char>(*end) > 0x7f)
                return false;
        }
        buffer.append(QLatin1String(text, static_cast<int>(end - text)));
        return true;
    }

    bool append(const QString& string)
    {
        const auto needsEscape = [](QChar c) {
            return c < QLatin1Char(' ') || c > QLatin1Char('~') || c == QLatin1Char('"')
                || c == QLatin1Char('\\');
        };
        if (std::any_of(string.cbegin(), string.cend(), needsEscape))
            return false;
        const int start = buffer.size();
        debug.maybeQuote();
        if (buffer.size() == start)
            return false;
        buffer.append(string);
        buffer += QLatin1Char('"');
        return true;
    }

    bool append(const QStringList& list)
    {
        buffer += QLatin1Char('(');
        const char* separator = "";
        for (const QString& string : list) {
            buffer.append(QLatin1String(separator));
            if (!append(string))
                return false;
            separator = ", ";
        }
        buffer += QLatin1Char(')');
        return true;
    }

    bool append(int number) { return appendNumber(number, 10); }

    bool append(const void* address)
    {
        buffer.append(QLatin1String("0x"));
        return appendNumber(reinterpret_cast<quintptr>(address), 16);
    }

    bool append(const QObject* object)
    {
        if (!object)
            return append("QObject(0x0)");
        if (!append(object->metaObject()->className()))
            return false;
        buffer += QLatin1Char('(');
        append(static_cast<const void*>(object));
        const QString name = object->objectName();
        if (!name.isEmpty()) {
            buffer.append(QLatin1String(", name = "));
            if (!append(name))
                return false;
        }
        buffer += QLatin1Char(')');
        return true;
    }

private:
    // The exact types only: a pointer to a class of its own may have a printer of its own.
    template <typename Item>
    static constexpr bool hasShortcut()
    {
        return std::
                   is_same_v<
                       Item, const char*> || std::is_same_v<Item, char*> || std::is_same_v<Item, QString> || std::is_same_v<Item, QStringList> || std::is_same_v<Item, int> || std::is_same_v<Item, const void*> || std::is_same_v<Item, void*> || std::is_same_v<Item, const QObject*> || std::is_same_v<Item, QObject*>;
    }

    static QTextStream& markAltered(QTextStream& stream)
    {
        if (stream.fieldWidth() != 0 || stream.integerBase() != 0 || stream.numberFlags() != 0
            || stream.locale() != QLocale::c())
            *stream.string() += QLatin1Char('!');
        return stream;
    }

    template <typename Number>
    bool appendNumber(Number number, int base)
    {
        char digits[24];
        const auto result = std::to_chars(std::begin(digits), std::end(digits), number, base);
        buffer.append(QLatin1String(digits, static_cast<int>(result.ptr - digits)));
        return true;
    }
};

} // namespace wisp
