// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>
#include <vector>

namespace Support {

/**
 * A second opinion on command lines, in plain C++: what a parser has to make of declarations and
 * arguments. Texts are UTF-32, one element a character, of the basic plane only.
 */
class CmdLineModel
{
public:
    using Text = std::u32string;

    struct Option
    {
        std::vector<Text> names;
        Text description;
        Text valueName;
        bool isSet = false;
        Text value;
    };

    /// Returns whether the declaration is accepted.
    bool addOption(const std::vector<Text>& names, const Text& description, const Text& valueName);
    bool parse(const std::vector<Text>& args, bool lists);
    const Option* find(const Text& name) const;
    Text errorMessage() const;
    Text helpMessage() const;

    static Text table(const std::vector<std::pair<Text, Text>>& rows);

    Text appName;
    Text brief;
    std::vector<std::pair<Text, Text>> arguments;
    std::vector<Option> options;
    std::vector<Text> positional;

private:
    std::vector<Text> m_unknown;
    std::vector<Text> m_missing;
};

} // namespace Support
