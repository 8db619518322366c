// SPDX-License-Identifier: MIT
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>
#include <QtGlobal>

#include <functional>
#include <mutex>

class QAction;
class QObject;
class QWidget;

namespace Support {

/// Where a line went.
enum class Channel { Trace, Debug, Info, Warning, Critical };

/// One trace line or Qt message, as the logger or the message handler got it.
struct Entry
{
    Channel channel = Channel::Trace;
    QString text;
    int level = 0;    ///< Trace lines only.
    QString category; ///< Qt messages only, as are the context's file, function and line.
    QByteArray file;
    QByteArray function;
    int line = 0;
};

bool operator==(const Entry& a, const Entry& b);

/// An entry as Recorder::take() gives it.
QString asLine(const Entry& entry);

/// Shows an entry in the output of a failed comparison.
char* toString(const Entry& entry);

/**
 * Records trace lines and Qt messages of all threads in one list, in the order of their arrival,
 * from its construction to its destruction. One recorder at a time.
 *
 * A message that a test neither takes nor forgets is a surprise; end a test with
 * `QVERIFY(recorder.isEmpty())` or let expectNothingElse() in cleanup() say so.
 */
class Recorder
{
public:
    Recorder();
    ~Recorder();

    Recorder(const Recorder&) = delete;
    Recorder& operator=(const Recorder&) = delete;

    /// Everything recorded so far.
    QList<Entry> entries() const;
    /// Everything recorded so far, each as "channel|text", and forgets it.
    QStringList take();
    /// Forgets what has been recorded.
    void clear();
    bool isEmpty() const;

    /// Called with each entry at the moment it arrives, in the thread in which it arrives; what is
    /// true at that moment can be looked at there. Must not trace.
    void onEntry(const std::function<void(const Entry&)>& callback);

private:
    friend struct RecorderHooks;
    void add(const Entry& entry);

    mutable std::mutex m_mutex;
    QList<Entry> m_entries;
    std::function<void(const Entry&)> m_callback;
    QtMessageHandler m_previousHandler;
};

// Whole lines, as take() gives them. A trace line ends with the blank that its last item leaves; a
// Qt message does not.

QString trace(const QString& text);
QString info(const QString& text);
QString warning(const QString& text);
QString critical(const QString& text);

/// What Qt's printers write for an object, without the blank after it. Chosen by type.
QString printed(const QObject* object);
QString printed(const QWidget* widget);
QString printed(const QAction* action);
/// An address as QDebug writes it.
QString printed(const void* address);
/// A quoted string or list as QDebug writes it.
QString quoted(const QString& text);
QString quoted(const QStringList& list);

} // namespace Support
