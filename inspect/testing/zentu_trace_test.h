// SPDX-License-Identifier: MIT
#pragma once

#include "wisp_recorder.h"
#include "zentu_trace_normal.h"

#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QString>
#include <QStringList>
#include <QtTest/QTest>

#include <algorithm>
#include <mutex>
#include <string>
#include <vector>

/**
 * @file
 * For the tests of a program that uses ZentuKit, with QtTest: what did it do, and does it still do
 * it?
 *
 * @code
 * Zentu::TraceRecording recording;
 * window.openNote();
 * ZENTU_VERIFY_POSTED(recording, "note.opened");
 * ZENTU_VERIFY_BECAME_ACTIVE(recording, saveAction, "note");
 * ZENTU_COMPARE_TRACE(recording, "open_note.trace");
 * @endcode
 *
 * The test links ZentuKit::wisp, the logger beside the library.
 */

namespace Zentu {

/**
 * The lines of the trace from its construction on, of all threads. Any number can record at a time.
 *
 * Qt's messages, which warnings are, are not among them: QTest::ignoreMessage() is for those.
 */
class TraceRecording
{
public:
    /// Records from now on.
    TraceRecording()
        : m_sink(wisp::addSink(&TraceRecording::add, this))
    {
    }

    /// Ends the recording.
    ~TraceRecording() { wisp::removeSink(m_sink); }
    Q_DISABLE_COPY(TraceRecording)

    /// The lines so far in normal form, as TraceNormalizer has it.
    QStringList lines() const
    {
        TraceNormalizer normalizer;
        QStringList result;
        for (const std::string& line : rawLines())
            result.append(QString::fromLatin1(normalizer.normalized(line).c_str()));
        return result;
    }

    /// How many events of the type were posted.
    int postCount(const QString& type) const
    {
        const std::string text = "type = " + quoted(type) + ')';
        return count(" post event IEvent(", text);
    }

    /**
     * Whether a backend of the proxy became active because the context was added, or the backend
     * for it.
     *
     * The newest change of contexts or backends before the proxy's line counts as the reason.
     */
    bool becameActive(const QAction* proxy, const QString& context) const
    {
        const std::string speaker = printed(proxy);
        std::string reason;
        for (const std::string& line : rawLines()) {
            if (changesSomething(line))
                reason = line;
            const bool isActive = startsWith(line, speaker)
                && contains(line, " change active backend action to QAction(0x")
                && !contains(line, " change active backend action to QAction(0x0");
            if (isActive && contains(reason, ' ' + quoted(context) + ' ')
                && !contains(reason, " remove "))
                return true;
        }
        return false;
    }

    /**
     * What differs between the recording and the golden file, line by line: `-` is expected, `+`
     * is there. Empty if nothing does.
     *
     * With ZENTU_UPDATE_TRACES=1 in the environment the file is written anew instead.
     */
    QString differenceTo(const QString& goldenFile) const
    {
        QFile file(goldenFile);
        if (qEnvironmentVariableIntValue("ZENTU_UPDATE_TRACES") != 0) {
            const QByteArray text = (lines().join(QLatin1Char('\n')) + QLatin1Char('\n')).toUtf8();
            if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size())
                return {};
            return QStringLiteral("cannot write %1: %2").arg(goldenFile, file.errorString());
        }
        if (!file.open(QIODevice::ReadOnly))
            return QStringLiteral("cannot read %1: %2; ZENTU_UPDATE_TRACES=1 writes it")
                .arg(goldenFile, file.errorString());
        QStringList expected = QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'));
        expected.removeLast();
        return difference(expected, lines());
    }

    /// A file beside a source file, as the compiler names that.
    static QString beside(const char* source, const QString& file)
    {
#ifdef QT_TESTCASE_BUILDDIR
        QDir folder(QStringLiteral(QT_TESTCASE_BUILDDIR));
#else
        QDir folder;
#endif
        // The compiler ran there or in a folder above, by the version of Qt.
        const QString name = QString::fromLocal8Bit(source);
        while (!folder.exists(name) && folder.cdUp()) { }
        const QFileInfo info(folder.absoluteFilePath(name));
        return QDir::cleanPath(info.dir().absoluteFilePath(file));
    }

private:
    static void add(int /*level*/, const char* text, void* context)
    {
        auto* const recording = static_cast<TraceRecording*>(context);
        const std::lock_guard<std::mutex> guard(recording->m_mutex);
        recording->m_lines.emplace_back(text);
    }

    std::vector<std::string> rawLines() const
    {
        const std::lock_guard<std::mutex> guard(m_mutex);
        return m_lines;
    }

    static bool contains(const std::string& line, const std::string& text)
    {
        return line.find(text) != std::string::npos;
    }

    static bool startsWith(const std::string& line, const std::string& text)
    {
        return line.compare(0, text.size(), text) == 0;
    }

    int count(const std::string& text, const std::string& other) const
    {
        const std::vector<std::string> lines = rawLines();
        return static_cast<int>(
            std::count_if(lines.begin(), lines.end(), [&](const std::string& line) {
                return contains(line, text) && contains(line, other);
            }));
    }

    static bool changesSomething(const std::string& line)
    {
        return contains(line, " push context: ") || contains(line, " remove context ")
            || contains(line, " add global context ") || contains(line, " remove global context ")
            || contains(line, " add backend action ") || contains(line, " remove backend ");
    }

    static std::string quoted(const QString& text)
    {
        QString result;
        QDebug(&result).nospace() << text;
        return result.toLatin1().toStdString();
    }

    /// How a line that the action speaks begins.
    static std::string printed(const QAction* action)
    {
        QString result;
        QDebug(&result).nospace() << static_cast<const void*>(action);
        return "QAction(" + result.toStdString() + ' ';
    }

    // The longest common rest of both, by where it begins in either.
    static std::vector<std::vector<int>> commonRests(const QStringList& a, const QStringList& b)
    {
        std::vector<std::vector<int>> result(static_cast<std::size_t>(a.size()) + 1,
            std::vector<int>(static_cast<std::size_t>(b.size()) + 1));
        for (auto i = static_cast<std::size_t>(a.size()); i-- > 0;) {
            for (auto j = static_cast<std::size_t>(b.size()); j-- > 0;) {
                const bool isSame = a.at(static_cast<int>(i)) == b.at(static_cast<int>(j));
                result[i][j] = isSame ? result[i + 1][j + 1] + 1
                                      : std::max(result[i + 1][j], result[i][j + 1]);
            }
        }
        return result;
    }

    static QString difference(const QStringList& expected, const QStringList& found)
    {
        if (expected == found)
            return {};
        const auto rests = commonRests(expected, found);
        QString result = QStringLiteral("the trace differs (- expected, + found):");
        int i = 0;
        int j = 0;
        while (i < expected.size() || j < found.size()) {
            const auto& row = rests[static_cast<std::size_t>(i)];
            const auto at = static_cast<std::size_t>(j);
            if (i < expected.size() && j < found.size() && expected.at(i) == found.at(j)) {
                ++i;
                ++j;
            } else if (j == found.size()
                || (i < expected.size() && rests[static_cast<std::size_t>(i) + 1][at] >= row[at])) {
                result += QStringLiteral("\n-%1: %2").arg(i + 1).arg(expected.at(i));
                ++i;
            } else {
                result += QStringLiteral("\n+%1: %2").arg(j + 1).arg(found.at(j));
                ++j;
            }
        }
        return result;
    }

    mutable std::mutex m_mutex;
    std::vector<std::string> m_lines;
    int m_sink;
};

} // namespace Zentu

/// What the macros below are made of: fails the test, with the message, unless it holds.
#define ZENTU_VERIFY_TRACE(holds, what, message)                                                   \
    do {                                                                                           \
        if (!QTest::qVerify(holds, what, qPrintable(message), __FILE__, __LINE__))                 \
            return;                                                                                \
    } while (false)

/// Fails the test, with what differs, unless the recording is what the file beside the test's
/// source says. ZENTU_UPDATE_TRACES=1 writes that file.
#define ZENTU_COMPARE_TRACE(recording, file)                                                       \
    do {                                                                                           \
        const QString zentuDifference = (recording).differenceTo(                                  \
            Zentu::TraceRecording::beside(__FILE__, QString::fromUtf8(file)));                     \
        ZENTU_VERIFY_TRACE(                                                                        \
            zentuDifference.isEmpty(), "the trace is as in " #file, zentuDifference);              \
    } while (false)

/// Fails the test, with the recording, unless an event of the type (UTF-8) was posted.
#define ZENTU_VERIFY_POSTED(recording, type)                                                       \
    ZENTU_VERIFY_TRACE((recording).postCount(QString::fromUtf8(type)) > 0, #type " was posted",    \
        (recording).lines().join(QLatin1Char('\n')))

/// Fails the test, with the recording, unless a backend of the proxy became active because of the
/// context (UTF-8).
#define ZENTU_VERIFY_BECAME_ACTIVE(recording, proxy, context)                                      \
    ZENTU_VERIFY_TRACE((recording).becameActive(proxy, QString::fromUtf8(context)),                \
        #proxy " became active because of " #context, (recording).lines().join(QLatin1Char('\n')))
