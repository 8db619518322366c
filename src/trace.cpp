// SPDX-License-Identifier: MIT
#include "trace_p.h"

#include "ievent.h"
#include "mdi_area.h"
#include "option_dlg.h"

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

Trace& Trace::operator<<(const IMdiSubWindow* window)
{
    debug << window;
    return *this;
}

Trace& Trace::operator<<(const IOptionPage* page)
{
    debug << page;
    return *this;
}

} // namespace Zentu
