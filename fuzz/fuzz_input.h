// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QStringList>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

namespace Fuzz {

/// Reads decisions and texts from the bytes that the fuzzer makes up; zeros behind their end.
class Input
{
public:
    Input(const std::uint8_t* data, std::size_t size)
        : m_data(data)
        , m_size(size)
    {
    }

    bool atEnd() const { return m_position >= m_size; }

    /// A number from 0 to limit - 1.
    int number(int limit) { return atEnd() ? 0 : m_data[m_position++] % limit; }

    bool flag() { return number(2) == 1; }

    /// A text of the bytes up to the next zero, as UTF-8.
    QString text()
    {
        const std::size_t begin = m_position;
        while (!atEnd() && m_data[m_position] != 0)
            ++m_position;
        const QString result = QString::fromUtf8(
            reinterpret_cast<const char*>(m_data + begin), static_cast<int>(m_position - begin));
        ++m_position;
        return result;
    }

    QStringList texts(int limit)
    {
        QStringList result;
        for (int count = number(limit + 1); count > 0; --count)
            result.append(text());
        return result;
    }

private:
    const std::uint8_t* m_data;
    std::size_t m_size;
    std::size_t m_position = 0;
};

/// Stops the fuzzer with a crash if the library and the model differ.
inline void expect(bool holds, const char* what)
{
    if (holds)
        return;
    std::fprintf(stderr, "difference: %s\n", what);
    std::abort();
}

} // namespace Fuzz
