// SPDX-License-Identifier: MIT
#pragma once

#include "qlogstream.h"

#include <type_traits>

class QAction;
class QWidget;

namespace Zentu {

class IEvent;
class IEventHandler;
class IMdiSubWindow;
class IOptionPage;

/// One line of the trace. Its overloads choose the printer that `QDebug` would choose.
class Trace : public wisp::qlogstream
{
public:
    Trace()
        : qlogstream(wisp::LogInfo)
    {
    }

    Trace& operator<<(const QObject* object);
    Trace& operator<<(const QWidget* widget);
    Trace& operator<<(const QAction* action);
    Trace& operator<<(const IEvent* event);
    Trace& operator<<(const IEventHandler* handler);
    Trace& operator<<(const IMdiSubWindow* window);
    Trace& operator<<(const IOptionPage* page);

    template <typename T,
        typename = std::enable_if_t<!std::is_convertible_v<const T&, const QObject*>>>
    Trace& operator<<(const T& item)
    {
        qlogstream::operator<<(item);
        return *this;
    }
};

} // namespace Zentu
