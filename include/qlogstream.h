// SPDX-License-Identifier: MIT
#pragma once

#include <QDebug>
#include <QLocale>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QTextStream>
#include <QVarLengthArray>

#include <array>
#include <charconv>
#include <iterator>
#include <string_view>
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
     * @param level the line's level; the library passes only wisp::LogInfo
     * @param text  NUL-terminated Latin-1, owned by the caller and valid only during the call
     *
     * May be called from any thread. Must not call back into ZentuKit: some lines are written while
     * a lock is held.
     */
    void log(int level, const char* text);
};

namespace detail {

/// For each Latin-1 character whether `QDebug` writes it as it is: if it prints, but is no quote
/// and no backslash.
constexpr std::array<bool, 256> plainCharacters()
{
    std::array<bool, 256> result = {};
    for (unsigned code = 0; code < result.size(); ++code) {
        result[code] =
            code < 0x7f ? code >= ' ' && code != '"' && code != '\\' : code >= 0xa0 && code != 0xad;
    }
    return result;
}

inline constexpr std::array<bool, 256> isPlain = plainCharacters();

} // namespace detail

/**
 * Latin-1 text to which items are appended as a fresh `QDebug` writes them, most of them without
 * making one.
 */
class item_text
{
public:
    /// Text that is known to be plain ASCII, and so is written as it is.
    using Ascii = std::string_view;

    /// A string with a label before it, both written only if it is to be shown.
    struct Labelled
    {
        Ascii label;                      ///< What to write before the string
        const QString& string;            ///< Written in quotes
        bool isShown = !string.isEmpty(); ///< By default, unless the string is empty
    };

    /// Writes an item by its parts, and the blank that closes it.
    template <typename... Parts>
    void write(const Parts&... parts)
    {
        (append(parts), ...);
        m_text.append(' ');
    }

    /// Whether Qt's help was not needed, so that no character can have been lost.
    bool isPlain() const { return m_isPlain; }

    /// What was written, valid until more is.
    QLatin1String toLatin1String() const { return QLatin1String(m_text.data(), m_text.size()); }

    /// Hands the text to the logger. Nothing is to be written after that.
    void send(int level)
    {
        m_text.append('\0');
        logger::instance()->log(level, m_text.constData());
    }

private:
    void append(const char* text)
    {
        if (!text)
            return;
        const char* end = text;
        while (*end && static_cast<unsigned char>(*end) < 0x80)
            ++end;
        if (*end)
            appendByDebug(text);
        else
            appendLatin1(text, end);
    }

    void append(char ascii) { m_text.append(ascii); }

    void append(Ascii ascii) { m_text.append(ascii.data(), static_cast<int>(ascii.size())); }

    void append(const QString& string)
    {
        const int begin = m_text.size();
        m_text.resize(begin + string.size() + 2);
        char* to = m_text.data() + begin;
        *to++ = '"';
        bool allPlain = true;
        for (const QChar c : string) {
            allPlain &= c.unicode() < detail::isPlain.size() && detail::isPlain[c.unicode()];
            *to++ = static_cast<char>(c.unicode());
        }
        *to = '"';
        if (!allPlain) {
            m_text.resize(begin);
            appendByDebug(string);
        }
    }

    void append(const QStringList& list)
    {
        append('(');
        for (int i = 0; i < list.size(); ++i) {
            if (i > 0)
                append(Ascii(", "));
            append(list.at(i));
        }
        append(')');
    }

    void append(int number) { appendNumber(number, 10); }

    void append(const void* address)
    {
        append(Ascii("0x"));
        appendNumber(reinterpret_cast<quintptr>(address), 16);
    }

    void append(const Labelled& part)
    {
        if (!part.isShown)
            return;
        append(part.label);
        append(part.string);
    }

    void append(const QObject* object)
    {
        if (!object) {
            append(Ascii("QObject(0x0)"));
            return;
        }
        append(object->metaObject()->className());
        append('(');
        append(static_cast<const void*>(object));
        append(Labelled{", name = ", object->objectName()});
        append(')');
    }

    template <typename Number>
    void appendNumber(Number number, int base)
    {
        char digits[24];
        appendLatin1(digits, std::to_chars(std::begin(digits), std::end(digits), number, base).ptr);
    }

    void appendLatin1(const char* begin, const char* end)
    {
        m_text.append(begin, static_cast<int>(end - begin));
    }

    // What has to be escaped or decoded.
    template <typename T>
    void appendByDebug(const T& item)
    {
        m_isPlain = false;
        QString text;
        QDebug(&text).nospace() << item;
        const QByteArray latin1 = text.toLatin1();
        appendLatin1(latin1.begin(), latin1.end());
    }

    // On the stack, with room for all but the longest lines.
    QVarLengthArray<char, 400> m_text;
    bool m_isPlain = true;
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
    /// Starts an empty line that will be sent at @p lineLevel, normally wisp::LogInfo.
    explicit qlogstream(int lineLevel)
        : level(lineLevel)
        , debug(&buffer)
    {
        // Room for all but the longest lines, so that a line grows its buffer once.
        buffer.reserve(160);
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
        using Item = std::decay_t<T>;
        // These types exactly: a pointer to a class of its own may have a printer of its own.
        if constexpr (isOneOf<Item, const char*, char*, QString, QStringList, int, const void*,
                          void*, const QObject*, QObject*>) {
            item_text text;
            text.write(item);
            if (text.isPlain() && isAsConstructed()) {
                buffer.append(text.toLatin1String());
                return *this;
            }
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

private:
    template <typename T, typename... Types>
    static constexpr bool isOneOf = (std::is_same_v<T, Types> || ...);

    // Whether items still come out as from a fresh QDebug: spaced, quoted, and no base, width or
    // locale asked for. QDebug tells the latter to nobody but manipulators: this one leaves a mark
    // in the line if it finds the text stream altered. All that a fresh one writes is the quote.
    bool isAsConstructed()
    {
        const int start = buffer.size();
        debug.maybeQuote() << markAltered;
        const bool result = debug.autoInsertSpaces() && buffer.size() == start + 1
            && buffer.endsWith(QLatin1Char('"'));
        buffer.truncate(start);
        return result;
    }

    static QTextStream& markAltered(QTextStream& stream)
    {
        if (stream.fieldWidth() != 0 || stream.integerBase() != 0 || stream.numberFlags() != 0
            || stream.locale() != QLocale::c())
            *stream.string() += QLatin1Char('!');
        return stream;
    }
};

} // namespace wisp
