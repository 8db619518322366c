// SPDX-License-Identifier: MIT
#include "line_reader.h"

#include <charconv>
#include <cstring>
#include <vector>

namespace Zentu::Inspect {

using namespace std::string_view_literals;

static bool startsWith(std::string_view text, std::string_view begin)
{
    return text.size() >= begin.size() && std::memcmp(text.data(), begin.data(), begin.size()) == 0;
}

static bool isDigit(char c)
{
    return c >= '0' && c <= '9';
}

/// Reads a text from its front.
class Cursor
{
public:
    explicit Cursor(std::string_view text)
        : m_text(text)
    {
    }

    std::string_view rest() const { return m_text.substr(m_at); }
    bool atEnd() const { return m_at >= m_text.size(); }
    char peek() const { return atEnd() ? '\0' : m_text[m_at]; }
    std::size_t position() const { return m_at; }

    void skipBlanks()
    {
        while (peek() == ' ')
            ++m_at;
    }

    bool skip(std::string_view expected)
    {
        if (!startsWith(rest(), expected))
            return false;
        m_at += expected.size();
        return true;
    }

    std::string_view word()
    {
        const std::size_t end = std::min(m_text.find(' ', m_at), m_text.size());
        const std::string_view result = m_text.substr(m_at, end - m_at);
        m_at = end;
        return result;
    }

    // A quote that follows a quote at once goes on with the string: so Qt separates what would be
    // read as one escape.
    bool string(Item& item)
    {
        if (!skip(R"(")"sv))
            return false;
        const std::size_t begin = m_at;
        while (!atEnd()) {
            const char c = m_text[m_at];
            if (c == '\\' || (c == '"' && startsWith(rest(), R"("")"sv))) {
                m_at += 2;
            } else if (c != '"') {
                ++m_at;
            } else {
                item.text = m_text.substr(begin, m_at - begin);
                ++m_at;
                return true;
            }
        }
        m_at = m_text.size();
        return false;
    }

    bool address(Address& value) { return skip("0x"sv) && parse(value, 16); }

    template <typename Number>
    bool parse(Number& number, int base)
    {
        const char* const end = m_text.data() + m_text.size();
        const auto result =
            std::from_chars(m_text.data() + std::min(m_at, m_text.size()), end, number, base);
        if (result.ec != std::errc())
            return false;
        m_at = static_cast<std::size_t>(result.ptr - m_text.data());
        return true;
    }

    /// Up to the parenthesis that closes what was opened before.
    bool enclosed(std::string_view& text)
    {
        const std::size_t begin = m_at;
        for (int depth = 1; !atEnd();) {
            const char c = m_text[m_at];
            if (c == '"') {
                Item ignored;
                if (!string(ignored))
                    return false;
                continue;
            }
            ++m_at;
            if (c == '(') {
                ++depth;
            } else if (c == ')' && --depth == 0) {
                text = m_text.substr(begin, m_at - 1 - begin);
                return true;
            }
        }
        return false;
    }

    /// Class(0xaddress and more).
    bool object(Item& item)
    {
        const std::size_t end = m_text.find_first_of(R"(( ")"sv, m_at);
        if (end == std::string_view::npos || m_text[end] != '(' || end == m_at)
            return false;
        item.name = m_text.substr(m_at, end - m_at);
        m_at = end + 1;
        return address(item.address) && enclosed(item.text);
    }

    bool list(Item& item)
    {
        skip("QList"sv);
        if (!skip("("sv) || !enclosed(item.text))
            return false;
        std::string_view strings = item.text;
        while (takeString(strings)) { }
        return strings.empty();
    }

    bool item(char kind, Item& item)
    {
        const std::size_t begin = m_at;
        if (!itemOf(kind, item))
            return false;
        item.raw = m_text.substr(begin, m_at - begin);
        return atEnd() || peek() == ' ';
    }

private:
    bool itemOf(char kind, Item& item)
    {
        switch (kind) {
        case 'o':
            return object(item);
        case 'h':
            return address(item.address);
        case 's':
            return string(item);
        case 'l':
            return list(item);
        default:
            return parse(item.number, 10);
        }
    }

    std::string_view m_text;
    std::size_t m_at = 0;
};

std::string_view Item::field(std::string_view label) const
{
    for (std::string_view rest = text;;) {
        const std::size_t found = rest.find(label);
        if (found == std::string_view::npos)
            return {};
        Item value;
        const std::size_t quote = rest.find('"');
        if (found < quote) {
            Cursor cursor(rest.substr(found + label.size()));
            if (cursor.peek() != '"')
                return cursor.word();
            return cursor.string(value) ? value.text : std::string_view();
        }
        // It may stand in the string, which is passed over.
        Cursor cursor(rest.substr(quote));
        cursor.string(value);
        rest = cursor.rest();
    }
}

std::string_view Item::quoted() const
{
    const std::size_t quote = text.find('"');
    Item value;
    if (quote == std::string_view::npos || !Cursor(text.substr(quote)).string(value))
        return {};
    return value.text;
}

std::optional<std::string_view> takeString(std::string_view& list)
{
    Cursor cursor(list);
    cursor.skip(", "sv);
    Item item;
    if (!cursor.string(item))
        return std::nullopt;
    list = cursor.rest();
    return item.text;
}

bool isTime(std::string_view text)
{
    constexpr std::string_view form = "0000-00-00T00:00:00"sv;
    if (text.size() < form.size())
        return false;
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i] == '0' ? !isDigit(text[i]) : text[i] != form[i])
            return false;
    }
    return true;
}

static bool isLevel(std::string_view text)
{
    if (text.empty())
        return false;
    if (isDigit(text.front()) || text.front() == '-')
        return text.find_first_not_of("-0123456789"sv) == std::string_view::npos;
    return text == "debug"sv || text == "info"sv || text == "warning"sv || text == "critical"sv
        || text == "fatal"sv;
}

static std::string_view trimmed(std::string_view text)
{
    while (!text.empty() && (text.back() == ' ' || text.back() == '\r' || text.back() == '\n'))
        text.remove_suffix(1);
    return text;
}

static void readColumns(Line& line, std::string_view text)
{
    line.body = trimmed(text);
    if (line.body.empty() || !isDigit(line.body.front()))
        return;
    Cursor cursor(line.body);
    const std::string_view time = cursor.word();
    if (!isTime(time))
        return;
    cursor.skipBlanks();
    const std::string_view level = cursor.word();
    cursor.skipBlanks();
    const std::string_view thread = cursor.word();
    if (!isLevel(level) || thread.empty())
        return;
    line.time = time;
    line.level = level;
    line.thread = thread;
    // One blank is the column's, more are the text's.
    cursor.skip(" "sv);
    line.body = cursor.rest();
}

/// The rows of the table by the first letter of their text.
static const std::vector<const TextInfo*>& rowsFor(char letter)
{
    static const auto rows = [] {
        std::array<std::vector<const TextInfo*>, 256> result;
        for (const TextInfo& info : TextTable)
            result[static_cast<unsigned char>(info.text.front())].push_back(&info);
        return result;
    }();
    return rows[static_cast<unsigned char>(letter)];
}

/// Whether the text has the form of the row, its items included.
static bool matches(const TextInfo& info, Cursor cursor, std::array<Item, 2>& items)
{
    for (std::size_t i = 0; i < info.items.size(); ++i) {
        cursor.skipBlanks();
        if (!cursor.item(info.items[i], items[i]))
            return false;
    }
    cursor.skipBlanks();
    return cursor.rest() == info.end;
}

// Of classes that print as one of Qt's no other is the library's; of the rest a host may derive.
static bool canSpeak(const TextInfo& info, const Item& speaker)
{
    if (info.speaker.empty() || speaker.name.empty())
        return info.speaker.empty() && speaker.name.empty();
    if (speaker.name == info.speaker)
        return true;
    const bool isFixed = info.speaker == Speakers::proxy || info.speaker == Speakers::document;
    return !isFixed && !startsWith(speaker.name, "Zentu::"sv) && speaker.name != Speakers::proxy
        && speaker.name != Speakers::document;
}

static void readText(Line& line, Cursor cursor)
{
    const std::string_view text = cursor.rest();
    for (const TextInfo* info : rowsFor(cursor.peek())) {
        if (!canSpeak(*info, line.speaker) || !startsWith(text, info->text)
            || (text.size() > info->text.size() && text[info->text.size()] != ' '))
            continue;
        std::array<Item, 2> items;
        Cursor behind = cursor;
        behind.skip(info->text);
        if (matches(*info, behind, items)) {
            line.reading = Reading::Understood;
            line.info = info;
            line.items = items;
            break;
        }
        if (line.speaker.name == info->speaker && !(info->items.empty() && info->end.empty())) {
            line.reading = Reading::Damaged;
            line.info = info;
        }
    }
    line.isOwnSpeaker = line.info && line.speaker.name == line.info->speaker;
}

/// What a line is that stands in no row: ours, with its end or its middle missing, or not ours.
static Reading readingOfRest(const Line& line, std::string_view rest)
{
    for (const TextInfo& info : TextTable) {
        if (info.speaker.empty() || !startsWith(line.body, info.speaker))
            continue;
        const std::string_view behind = line.body.substr(info.speaker.size());
        if (line.speaker.name.empty()
                ? startsWith(behind, "(0x"sv) || behind == "("sv
                : line.speaker.name == info.speaker && startsWith(info.text, rest))
            return Reading::Damaged;
    }
    if (!startsWith(line.body, "Zentu::"sv))
        return Reading::Foreign;
    return line.speaker.name.empty() ? Reading::Damaged : Reading::Unknown;
}

// In the order of Note.
static constexpr std::array<std::string_view, 4> NoteLabels = {
    "    handler: "sv, "    value: "sv, "    backend: "sv, "    from "sv};

static std::size_t noteOf(std::string_view text)
{
    std::size_t note = 0;
    while (note < NoteLabels.size() && !startsWith(text, NoteLabels[note]))
        ++note;
    return note;
}

bool isNote(std::string_view text)
{
    return noteOf(text) < NoteLabels.size();
}

static bool readNote(Line& line, std::string_view text)
{
    const std::size_t note = noteOf(text);
    if (note == NoteLabels.size())
        return false;
    line.reading = Reading::Note;
    line.note = static_cast<Note>(note);
    line.body = trimmed(text.substr(NoteLabels[note].size()));
    return true;
}

Line readLine(std::string_view text)
{
    Line line;
    if (readNote(line, text))
        return line;
    readColumns(line, text);

    Cursor cursor(line.body);
    Item speaker;
    if (cursor.object(speaker)) {
        speaker.raw = line.body.substr(0, cursor.position());
        line.speaker = speaker;
        cursor.skipBlanks();
    } else {
        cursor = Cursor(line.body);
    }
    readText(line, cursor);
    if (line.reading == Reading::Foreign)
        line.reading = readingOfRest(line, cursor.rest());
    return line;
}

QString decoded(std::string_view bytes)
{
    const int size = static_cast<int>(bytes.size());
    const QString text = QString::fromUtf8(bytes.data(), size);
    return text.contains(QChar::ReplacementCharacter) ? QString::fromLatin1(bytes.data(), size)
                                                      : text;
}

/// The character of an escape of hexadecimal digits, behind its letter.
static QString escapedCharacter(Cursor& cursor, std::size_t digits)
{
    uint code = 0;
    const std::string_view number = cursor.rest().substr(0, digits);
    if (!Cursor(number).parse(code, 16))
        return {};
    cursor.skip(number);
    const char32_t character = code;
    return QString::fromUcs4(&character, 1);
}

QString unescaped(std::string_view text)
{
    QString result;
    for (Cursor cursor(text); !cursor.atEnd();) {
        const std::string_view plain = cursor.rest().substr(
            0, std::min(cursor.rest().find_first_of(R"(\")"sv), cursor.rest().size()));
        result += decoded(plain);
        cursor.skip(plain);
        if (cursor.skip(R"("")"sv) || cursor.atEnd())
            continue;
        cursor.skip(cursor.rest().substr(0, 1));
        const char letter = cursor.peek();
        cursor.skip(cursor.rest().substr(0, 1));
        constexpr std::string_view letters = "abfnrtv"sv;
        constexpr std::string_view controls = "\a\b\f\n\r\t\v"sv;
        if (letter == 'x')
            result += escapedCharacter(cursor, 2);
        else if (letter == 'u')
            result += escapedCharacter(cursor, 4);
        else if (letter == 'U')
            result += escapedCharacter(cursor, 8);
        else if (const std::size_t at = letters.find(letter); at != std::string_view::npos)
            result += QLatin1Char(controls[at]);
        else
            result += QLatin1Char(letter);
    }
    return result;
}

} // namespace Zentu::Inspect
