// SPDX-License-Identifier: MIT
#pragma once

#include "qlogstream.h"

#include <QStringList>
#include <QVarLengthArray>

#include <string_view>

class QAction;
class QObject;
class QWidget;

namespace Zentu {

class IEvent;
class IEventHandler;
class IMdiSubWindow;
class IOptionPage;

/// Latin-1 text as a fresh `QDebug` without blanks writes it, made by one only where something has
/// to be escaped or decoded.
class TraceText
{
public:
    TraceText& operator<<(char ascii);
    TraceText& operator<<(std::string_view ascii);
    TraceText& operator<<(const char* text);
    TraceText& operator<<(const QString& string);
    TraceText& operator<<(const QStringList& list);
    TraceText& operator<<(int number);
    TraceText& operator<<(const void* address);

    /// Writes an item as Qt's printer does.
    template <typename T>
    TraceText& byDebug(const T& item);

    /// Hands the text to the logger. Nothing is to be written after that.
    void send();

private:
    template <typename Number>
    TraceText& appendNumber(Number number, int base);

    // On the stack, with room for all but the longest lines.
    QVarLengthArray<char, 400> m_text;
};

/**
 * One line of the trace: what wisp::qlogstream writes, without the `QDebug` that our items can do
 * without.
 *
 * Its overloads write what the printers that `QDebug` would choose write. They are not inline, as
 * the library is full of lines.
 */
class Trace
{
public:
    Trace() = default;
    ~Trace();
    Q_DISABLE_COPY(Trace)

    Trace& operator<<(const char* text);
    Trace& operator<<(const QString& string);
    Trace& operator<<(const QStringList& list);
    Trace& operator<<(int number);
    Trace& operator<<(const QObject* object);
    Trace& operator<<(const QWidget* widget);
    Trace& operator<<(const QAction* action);
    Trace& operator<<(const IEvent* event);
    Trace& operator<<(const IEventHandler* handler);
    Trace& operator<<(const IMdiSubWindow* window);
    Trace& operator<<(const IOptionPage* page);

    // Nothing is converted: it would come out otherwise than from QDebug.
    template <typename T, std::enable_if_t<!std::is_pointer_v<T>, int> = 0>
    Trace& operator<<(T other) = delete;

private:
    template <typename T>
    Trace& item(const T& item);
    template <typename T>
    Trace& described(const T* object, const char* null);

    TraceText m_text;
};

} // namespace Zentu
