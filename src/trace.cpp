// SPDX-License-Identifier: MIT
#include "trace_p.h"

#include "ievent.h"

#include <QAction>
#include <QWidget>

namespace Zentu {

Trace& Trace::operator<<(const QObject* object)
{
    qlogstream::operator<<(object);
    return *this;
}

Trace& Trace::operator<<(const QWidget* widget)
{
    debug << widget;
    return *this;
}

Trace& Trace::operator<<(const QAction* action)
{
    debug << action;
    return *this;
}

Trace& Trace::operator<<(const IEvent* event)
{
    debug << event;
    return *this;
}

Trace& Trace::operator<<(const IEventHandler* handler)
{
    qlogstream::operator<<(static_cast<const void*>(handler));
    return *this;
}

} // namespace Zentu
