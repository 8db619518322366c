// SPDX-License-Identifier: MIT
#pragma once

#include "line_reader.h"

#include <algorithm>
#include <map>
#include <string>

namespace Zentu::Inspect {

/// When something happened: the number of its line, from 1, and the line's time.
struct Moment
{
    qint64 line = 0;
    std::array<char, 32> timeText = {};

    std::string_view time() const { return timeText.data(); }
    void setTime(std::string_view text)
    {
        const std::size_t size = std::min(text.size(), timeText.size() - 1);
        std::copy_n(text.data(), size, timeText.data());
        timeText[size] = '\0';
    }
};

/**
 * What stands under which name, where lines do not always say which name is meant.
 *
 * What stands under several names can lose one of them without a word about which. From then on
 * its names are uncertain, until later lines leave one possibility.
 */
class Registrations
{
public:
    struct Entry
    {
        Address value = 0;
        Moment since;
        bool isCertain = true;
    };
    using Entries = std::map<std::string, Entry, std::less<>>;

    const Entries& entries() const { return m_entries; }

    const Entry* find(std::string_view name) const
    {
        const auto it = m_entries.find(name);
        return it == m_entries.end() ? nullptr : &it->second;
    }

    /// Adds what was added. False if the name is taken for certain, so that it cannot have been.
    bool add(std::string_view name, Address value, const Moment& since)
    {
        const auto it = m_entries.find(name);
        if (it == m_entries.end()) {
            m_entries.emplace(name, Entry{value, since});
            return true;
        }
        if (it->second.isCertain)
            return false;
        // Then it was this name that went.
        const Address before = it->second.value;
        it->second = Entry{value, since};
        --m_lost[before];
        settle(before);
        return true;
    }

    /// Removes a name. False if it was not there.
    bool removeName(std::string_view name)
    {
        const auto it = m_entries.find(name);
        if (it == m_entries.end())
            return false;
        const Address value = it->second.value;
        m_entries.erase(it);
        settle(value);
        return true;
    }

    /// Removes one of the names of a value. False if it had none.
    bool removeOne(Address value)
    {
        const int names = count(value, false);
        if (names == 0)
            return false;
        if (names == 1) {
            erase(value);
            return true;
        }
        for (auto& [name, entry] : m_entries) {
            if (entry.value == value)
                entry.isCertain = false;
        }
        ++m_lost[value];
        settle(value);
        return true;
    }

    void clear() { *this = Registrations(); }

private:
    int count(Address value, bool uncertainOnly) const
    {
        return static_cast<int>(
            std::count_if(m_entries.begin(), m_entries.end(), [=](const auto& entry) {
                return entry.second.value == value && !(uncertainOnly && entry.second.isCertain);
            }));
    }

    void erase(Address value)
    {
        for (auto it = m_entries.begin(); it != m_entries.end();)
            it = it->second.value == value ? m_entries.erase(it) : std::next(it);
        m_lost.erase(value);
    }

    // As many uncertain names as went: all of them did. None went: all are left.
    void settle(Address value)
    {
        const auto lost = m_lost.find(value);
        if (lost == m_lost.end())
            return;
        if (lost->second > 0 && lost->second < count(value, true))
            return;
        const bool allLeft = lost->second == 0;
        m_lost.erase(lost);
        for (auto it = m_entries.begin(); it != m_entries.end();) {
            const bool isMeant = it->second.value == value && !it->second.isCertain;
            if (isMeant && allLeft)
                it->second.isCertain = true;
            it = isMeant && !allLeft ? m_entries.erase(it) : std::next(it);
        }
    }

    Entries m_entries;
    std::map<Address, int> m_lost; ///< How many of a value's uncertain names went
};

} // namespace Zentu::Inspect
