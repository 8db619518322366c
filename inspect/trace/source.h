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
    /// Opens a file, or the standard input for "-". Tells the standard error if it cannot.
    bool open(const QString& path);

    /// The next line without its break, valid until the one after it. False at the end.
    bool next(std::string_view& line);

    /// Goes on where the end was: reads what has been added since, or a new file from its
    /// beginning. False if there is nothing new.
    bool resume();

private:
    // A longer line is read in pieces.
    static constexpr std::size_t LongestLine = std::size_t{64} * 1024 * 1024;

    bool fill();
    void showProgress();
    void hideProgress();

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
