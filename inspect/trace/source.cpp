// SPDX-License-Identifier: MIT
#include "source.h"

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace Zentu::Inspect {

static constexpr std::size_t PieceSize = std::size_t{1024} * 1024;

bool LineSource::open(const QString& path)
{
    m_path = path;
    m_running.start();
    m_buffer.resize(2 * PieceSize);
    if (isStandardInput())
        return true;
    m_file.setFileName(path);
    if (m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
        return true;
    std::fprintf(stderr, "zentu-trace: cannot read %s: %s\n", qPrintable(path),
        qPrintable(m_file.errorString()));
    return false;
}

bool LineSource::next(std::string_view& line)
{
    std::size_t searched = m_begin;
    for (;;) {
        const void* const found = std::memchr(m_buffer.data() + searched, '\n', m_end - searched);
        if (found) {
            const char* const lineEnd = static_cast<const char*>(found);
            line = std::string_view(m_buffer.data() + m_begin,
                static_cast<std::size_t>(lineEnd - m_buffer.data()) - m_begin);
            m_begin += line.size() + 1;
            return true;
        }
        if (m_kind == Growing)
            return false;
        const std::size_t rest = m_end - m_begin;
        if (m_isAtEnd || rest >= LongestLine) {
            line = std::string_view(m_buffer.data() + m_begin, rest);
            m_begin = m_end;
            if (m_isAtEnd)
                hideProgress();
            return rest > 0;
        }
        fill();
        searched = m_begin + rest;
    }
}

// Moves the piece of a line to the front and reads on behind it.
bool LineSource::fill()
{
    std::copy(m_buffer.begin() + static_cast<std::ptrdiff_t>(m_begin),
        m_buffer.begin() + static_cast<std::ptrdiff_t>(m_end), m_buffer.begin());
    m_end -= m_begin;
    m_begin = 0;
    if (m_buffer.size() - m_end < PieceSize)
        m_buffer.resize(m_buffer.size() * 2);
    // Of a pipe what is there already; a QFile waits for the whole piece.
    const qint64 size = isStandardInput()
        ? ::read(STDIN_FILENO, m_buffer.data() + m_end, PieceSize)
        : m_file.read(m_buffer.data() + m_end, static_cast<qint64>(PieceSize));
    m_isAtEnd = size <= 0;
    if (m_isAtEnd)
        return false;
    m_end += static_cast<std::size_t>(size);
    m_read += size;
    showProgress();
    return true;
}

bool LineSource::resume()
{
    if (!isStandardInput() && QFile(m_path).size() < m_file.pos()) {
        m_file.close();
        m_begin = m_end = 0;
        if (!m_file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            return false;
    }
    if (fill())
        return true;
    if (!isStandardInput() || m_begin == m_end)
        return false;
    // Nothing will end the last line but the end.
    m_buffer[m_end++] = '\n';
    return true;
}

void LineSource::showProgress()
{
    if (m_kind == Growing || m_running.elapsed() < 1000 + m_shown * 100
        || isatty(STDERR_FILENO) == 0)
        return;
    ++m_shown;
    // Back at the beginning of its line, so that what comes next stands over it.
    const qint64 size = m_file.size();
    if (size > m_read)
        std::fprintf(stderr, "%3d %%\r", static_cast<int>(100 * m_read / size));
    else
        std::fprintf(stderr, "%lld MiB\r", static_cast<long long>(m_read / 1024 / 1024));
}

void LineSource::hideProgress()
{
    if (m_shown > 0)
        std::fputs("          \r", stderr);
    m_shown = 0;
}

} // namespace Zentu::Inspect
