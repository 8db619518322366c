// SPDX-License-Identifier: MIT
#pragma once

#include "qlogstream.h"

class QAction;
class QWidget;

namespace Zentu {

class IEvent;
class IEventHandler;
class IMdiSubWindow;
class IOptionPage;

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

private:
    template <typename... Parts>
    Trace& item(const Parts&... parts);

    wisp::item_text m_text;
};

} // namespace Zentu
