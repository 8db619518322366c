// SPDX-License-Identifier: MIT
#include "cmdline_model.h"

namespace Support {

using Text = CmdLineModel::Text;

static bool dashed(const Text& text)
{
    return !text.empty() && text[0] == U'-';
}

static Text bare(Text text)
{
    while (dashed(text))
        text.erase(0, 1);
    return text;
}

static Text joined(const std::vector<Text>& parts, const Text& glue)
{
    Text result;
    for (std::size_t i = 0; i < parts.size(); ++i)
        result += (i ? glue : Text()) + parts[i];
    return result;
}

static std::vector<Text> lines(const Text& text)
{
    std::vector<Text> result(1);
    for (char32_t c : text) {
        if (c == U'\n')
            result.emplace_back();
        else
            result.back() += c;
    }
    return result;
}

static bool blank(char32_t c)
{
    return (c >= 9 && c <= 13) || c == U' ' || c == 0x85 || c == 0xa0 || c == 0x1680
        || (c >= 0x2000 && c <= 0x200a) || c == 0x2028 || c == 0x2029 || c == 0x202f || c == 0x205f
        || c == 0x3000;
}

static std::vector<Text> words(const Text& text)
{
    std::vector<Text> result;
    bool inWord = false;
    for (char32_t c : text) {
        if (blank(c)) {
            inWord = false;
        } else {
            if (!inWord)
                result.emplace_back();
            inWord = true;
            result.back() += c;
        }
    }
    return result;
}

bool CmdLineModel::addOption(
    const std::vector<Text>& names, const Text& description, const Text& valueName)
{
    if (names.empty())
        return false;
    for (const Text& name : names) {
        if (!dashed(name) || bare(name).empty() || find(name))
            return false;
    }
    options.push_back({names, description, valueName, false, {}});
    return true;
}

const CmdLineModel::Option* CmdLineModel::find(const Text& name) const
{
    for (const Option& option : options) {
        for (const Text& form : option.names) {
            if (bare(form) == bare(name))
                return &option;
        }
    }
    return nullptr;
}

bool CmdLineModel::parse(const std::vector<Text>& args, bool lists)
{
    positional.clear();
    m_unknown.clear();
    m_missing.clear();
    for (Option& option : options) {
        option.isSet = false;
        option.value.clear();
    }

    std::size_t i = 1;
    while (i < args.size()) {
        const Text& arg = args[i];
        if (!dashed(arg)) {
            positional.push_back(arg);
            i += 1;
            continue;
        }
        auto* option = bare(arg).empty() ? nullptr : const_cast<Option*>(find(arg));
        if (!option) {
            m_unknown.push_back(arg);
            i += 1;
            continue;
        }
        if (option->valueName.empty()) {
            option->isSet = true;
            option->value = U"true";
            i += 1;
            continue;
        }
        std::vector<Text> taken;
        const std::size_t most = lists && option->valueName == U"ValueList" ? args.size() : 1;
        while (taken.size() < most && i + 1 + taken.size() < args.size()
            && !dashed(args[i + 1 + taken.size()]))
            taken.push_back(args[i + 1 + taken.size()]);
        if (taken.empty()) {
            m_missing.push_back(arg);
            i += 2;
        } else {
            option->isSet = true;
            option->value = joined(taken, U"&&");
            i += 1 + taken.size();
        }
    }
    return m_unknown.empty() && m_missing.empty();
}

Text CmdLineModel::errorMessage() const
{
    Text result;
    if (!m_unknown.empty())
        result += U"unknown option: " + joined(m_unknown, U" ") + U" ";
    if (!m_missing.empty())
        result += U"missing value: " + joined(m_missing, U" ") + U" ";
    return result;
}

Text CmdLineModel::table(const std::vector<std::pair<Text, Text>>& rows)
{
    int nameWidth = 0;
    for (const auto& row : rows)
        nameWidth = std::max(nameWidth, int(row.first.size()));
    const int textWidth = 70 - nameWidth;

    Text result;
    for (const auto& [name, description] : rows) {
        std::vector<Text> output;
        for (const Text& paragraph : lines(description)) {
            if (paragraph.empty()) {
                output.emplace_back();
                continue;
            }
            std::vector<Text> pending;
            int running = 0;
            for (const Text& word : words(paragraph)) {
                const int length = int(word.size());
                if (length > textWidth) {
                    const std::size_t cut = std::size_t(std::max(0, textWidth - running - 1));
                    pending.push_back(word.substr(0, cut));
                    output.push_back(joined(pending, U" "));
                    pending.assign(1, word.substr(cut));
                    running = int(pending[0].size());
                } else if (running + 1 + length > textWidth) {
                    output.push_back(joined(pending, U" "));
                    pending.assign(1, word);
                    running = length;
                } else {
                    pending.push_back(word);
                    running += 1 + length;
                    if (running >= textWidth) {
                        output.push_back(joined(pending, U" "));
                        pending.clear();
                        running = 0;
                    }
                }
            }
            if (!pending.empty())
                output.push_back(joined(pending, U" "));
        }

        result += U"  " + name + Text(std::size_t(nameWidth) - name.size(), U' ');
        if (output.empty()) {
            result += U"\n";
        } else {
            result += U"  " + output[0] + U"\n";
            for (std::size_t i = 1; i < output.size(); ++i)
                result += Text(std::size_t(nameWidth) + 4, U' ') + output[i] + U"\n";
        }
    }
    return result;
}

Text CmdLineModel::helpMessage() const
{
    Text result;
    if (!brief.empty())
        result += U"Brief:\n  " + brief + U"\n";
    result += U"Usage:\n  " + appName;
    if (!options.empty())
        result += U" [options]";
    for (const auto& argument : arguments)
        result += U" " + argument.first;
    result += U"\n";
    if (!arguments.empty())
        result += U"Arguments:\n" + table(arguments);
    if (!options.empty()) {
        std::vector<std::pair<Text, Text>> rows;
        for (const Option& option : options) {
            Text name = joined(option.names, U", ");
            if (!option.valueName.empty())
                name += U" <" + option.valueName + U">";
            rows.emplace_back(name, option.description);
        }
        result += U"Options:\n" + table(rows);
    }
    return result;
}

} // namespace Support
