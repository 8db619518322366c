// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>

namespace Zentu {

/**
 * Writes lines of the trace so that two runs that behave alike give the same text.
 *
 * An address becomes a name, by the class it was first printed with: `QAction-1`, `QAction-2`,
 * `handler-1`. Whoever comes to an address after its owner was seen to go gets a name of its own.
 * Events, which live for one post, are all `event`. Time, level and thread go away, but for the
 * threads that are not the first one to speak: their lines begin with `thread-2: `. In a string,
 * what looks like an address (six digits and more) becomes `address-1`. Of an action its text and
 * its checked state stay, and a list is `("a", "b")`, so that the form does not depend on the
 * version of Qt.
 *
 * The form itself is an interface: golden files keep it.
 */
class TraceNormalizer
{
public:
    /// Whether names have numbers. Without, an object more does not change the lines of others.
    enum Numbers { Numbered, Unnumbered };

    /// Begins without names.
    explicit TraceNormalizer(Numbers numbers = Numbered)
        : m_numbers(numbers)
    {
    }

    /// The line in normal form, without a blank at its end. Lines are given in their order.
    std::string normalized(std::string_view line)
    {
        std::string result;
        appendThread(result, takeColumns(line));
        while (!line.empty() && isBlank(line.back()))
            line.remove_suffix(1);

        result.reserve(result.size() + line.size());
        for (std::size_t at = 0; at < line.size();) {
            if (line[at] == '"') {
                const std::size_t end = stringEnd(line, at);
                appendString(result, line.substr(at, end - at));
                at = end;
            } else if (isAddress(line, at)) {
                const std::size_t end = addressEnd(line, at);
                const std::string_view className = classBefore(line, at);
                appendName(result, line.substr(at, end - at), className);
                at = className == "QAction" ? appendFields(result, line, end) : end;
            } else if (line.substr(at, 6) == "QList(" && at > 0 && isBlank(line[at - 1])) {
                at += 5;
            } else {
                const std::size_t end = plainEnd(line, at);
                result += line.substr(at, end - at);
                at = end;
            }
        }
        forgetWhoGoes(line);
        return result;
    }

private:
    static bool isBlank(char c) { return c == ' ' || c == '\r' || c == '\n'; }
    static bool isDigit(char c) { return c >= '0' && c <= '9'; }
    static bool isHex(char c) { return isDigit(c) || (c >= 'a' && c <= 'f'); }

    static std::string_view takeWord(std::string_view& text)
    {
        const std::string_view word = text.substr(0, text.find(' '));
        text.remove_prefix(word.size() + (word.size() < text.size() ? 1 : 0));
        return word;
    }

    // The thread's column, if there are any; the line loses them.
    static std::string_view takeColumns(std::string_view& line)
    {
        constexpr std::string_view form = "0000-00-00T00:00:00";
        for (std::size_t i = 0; i < form.size(); ++i) {
            if (i >= line.size() || (form[i] == '0' ? !isDigit(line[i]) : line[i] != form[i]))
                return {};
        }
        takeWord(line);
        takeWord(line);
        return takeWord(line);
    }

    // What an action prints behind its address: of ` key=value` some stay. Returns where it ends.
    static std::size_t appendFields(std::string& result, std::string_view line, std::size_t at)
    {
        while (at < line.size() && line[at] == ' ') {
            const std::size_t begin = at++;
            for (int depth = 0; at < line.size(); ++at) {
                if (line[at] == '"')
                    at = stringEnd(line, at) - 1;
                else if (depth == 0 && (line[at] == ' ' || line[at] == ')'))
                    break;
                else if (line[at] == '(' || line[at] == ')')
                    depth += line[at] == '(' ? 1 : -1;
            }
            const std::string_view field = line.substr(begin, at - begin);
            if (field.substr(0, 6) == " text=" || field.substr(0, 9) == " checked=")
                result += field;
        }
        return at;
    }

    // Names are made of addresses, too: such as those of the contexts of documents.
    void appendString(std::string& result, std::string_view text)
    {
        constexpr std::size_t fewestDigits = 6;
        for (std::size_t at = 0; at < text.size();) {
            const std::size_t end = text.substr(at, 2) == "0x" ? addressEnd(text, at) : at + 1;
            if (end >= at + 2 + fewestDigits)
                appendName(result, text.substr(at, end - at), "address");
            else
                result += text.substr(at, end - at);
            at = end;
        }
    }

    void appendThread(std::string& result, std::string_view thread)
    {
        if (thread.empty())
            return;
        const auto number = m_threads.emplace(thread, m_threads.size() + 1).first->second;
        if (number > 1)
            result = "thread-" + std::to_string(number) + ": ";
    }

    // Up to what may be a string, an address or a list.
    static std::size_t plainEnd(std::string_view line, std::size_t at)
    {
        do
            ++at;
        while (at < line.size() && line[at] != '"' && line[at] != '0' && line[at] != 'Q');
        return at;
    }

    static std::size_t stringEnd(std::string_view line, std::size_t at)
    {
        for (++at; at < line.size() && line[at] != '"'; ++at) {
            if (line[at] == '\\')
                ++at;
        }
        return at < line.size() ? at + 1 : line.size();
    }

    // An address stands behind a parenthesis or a blank, so that a text's 0x stays.
    static bool isAddress(std::string_view line, std::size_t at)
    {
        return line.substr(at, 2) == "0x" && at + 2 < line.size() && isHex(line[at + 2])
            && (at == 0 || line[at - 1] == '(' || line[at - 1] == ' ');
    }

    static std::size_t addressEnd(std::string_view line, std::size_t at)
    {
        at += 2;
        while (at < line.size() && isHex(line[at]))
            ++at;
        return at;
    }

    /// What stands before the parenthesis, without the namespace.
    static std::string_view classBefore(std::string_view line, std::size_t at)
    {
        if (at == 0 || line[at - 1] != '(')
            return "handler";
        const std::size_t blank = line.substr(0, at - 1).find_last_of(" :(");
        const std::size_t begin = blank == std::string_view::npos ? 0 : blank + 1;
        return line.substr(begin, at - 1 - begin);
    }

    void appendName(std::string& result, std::string_view address, std::string_view className)
    {
        if (address.find_first_not_of("0x") == std::string_view::npos) {
            result += "0x0";
        } else if (className == "IEvent") {
            result += "event";
        } else {
            auto known = m_names.find(address);
            if (known == m_names.end())
                known = m_names.emplace(address, newName(className)).first;
            result += known->second;
        }
    }

    std::string newName(std::string_view className)
    {
        std::string name(className);
        if (m_numbers == Numbered)
            name += '-' + std::to_string(++m_counts[name]);
        return name;
    }

    // The address that the line names last belongs to nobody after a line that tells of an end.
    void forgetWhoGoes(std::string_view line)
    {
        const bool isEnd = contains(line, " dest")
            && (contains(line, " destroyed ") || contains(line, " destoryed: ")
                || (line.size() > 12 && line.substr(line.size() - 12) == ") destroying"));
        if (!isEnd && !contains(line, " unsubscribe all events for: "))
            return;
        std::size_t last = std::string_view::npos;
        for (std::size_t at = 0; at < line.size();) {
            if (isAddress(line, at))
                last = at;
            at = line[at] == '"' ? stringEnd(line, at) : at + 1;
        }
        if (last == std::string_view::npos)
            return;
        const auto name = m_names.find(line.substr(last, addressEnd(line, last) - last));
        if (name != m_names.end())
            m_names.erase(name);
    }

    static bool contains(std::string_view line, std::string_view text)
    {
        return line.find(text) != std::string_view::npos;
    }

    Numbers m_numbers;
    std::map<std::string, std::string, std::less<>> m_names;
    std::map<std::string, int> m_counts;
    std::map<std::string, std::size_t, std::less<>> m_threads;
};

} // namespace Zentu
