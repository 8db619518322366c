// SPDX-License-Identifier: MIT
#pragma once

#include <QElapsedTimer>
#include <QFile>
#include <QString>

#include <string_view>
#include <vector>

namespace Zentu::Inspect {

/// Lines of a file or of the standard input, one after the other, whatever the size of the whole.
class LineSource
{
public:
    /// One that grows has its lines when they are whole, and reads on only by resume().
    enum Kind { Complete, Growing };

    explicit LineSource(Kind kind = Complete)
        : m_kind(kind)
    {
    }

    /// Opens a file, or the standard input for "-". Tells the standard error if it cannot.
    bool open(const QString& path);

    /// The next line without its break, valid until the one after it. False at the end.
    bool next(std::string_view& line);

    /// Reads on in one that grows, in a new file from its beginning. Waits for the standard input;
    /// false if there is nothing new, or the standard input has ended.
    bool resume();

private:
    // A longer line is read in pieces.
    static constexpr std::size_t LongestLine = std::size_t{64} * 1024 * 1024;

    bool isStandardInput() const { return m_path == QLatin1String("-"); }
    bool fill();
    void showProgress();
    void hideProgress();

    Kind m_kind;
    QString m_path;
    QFile m_file;
    std::vector<char> m_buffer;
    std::size_t m_begin = 0;
    std::size_t m_end = 0;
    bool m_isAtEnd = false;
    qint64 m_read = 0;
    QElapsedTimer m_running;
    qint64 m_shown = 0;
};

} // namespace Zentu::Inspect
