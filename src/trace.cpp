// SPDX-License-Identifier: MIT
#include "trace_p.h"

#include "ievent.h"
#include "mdi_area.h"
#include "option_dlg.h"

#include <QAction>
#include <QKeySequence>
#include <QMetaEnum>
#include <QWidget>

namespace Zentu {

using namespace std::string_view_literals;
using Ascii = wisp::item_text::Ascii;
using Labelled = wisp::item_text::Labelled;

static const void* address(const void* object)
{
    return object;
}

Trace::~Trace()
{
    m_text.send(wisp::LogInfo);
}

template <typename... Parts>
Trace& Trace::item(const Parts&... parts)
{
    m_text.write(parts...);
    return *this;
}

Trace& Trace::operator<<(const char* text)
{
    return item(text);
}

Trace& Trace::operator<<(const QString& string)
{
    return item(string);
}

Trace& Trace::operator<<(const QStringList& list)
{
    return item(list);
}

Trace& Trace::operator<<(int number)
{
    return item(number);
}

Trace& Trace::operator<<(const QObject* object)
{
    return item(object);
}

Trace& Trace::operator<<(const QWidget* widget)
{
    if (!widget)
        return item("QWidget(0x0)"sv);
    return item(widget->metaObject()->className(), '(', address(widget),
        Labelled{", name=", widget->objectName()}, ')');
}

Trace& Trace::operator<<(const QAction* action)
{
    static const QMetaEnum roles = QMetaEnum::fromType<QAction::MenuRole>();

    // The zero behind the address of a null action is Qt's.
    if (!action)
        return item("QAction("sv, address(action), "0)"sv);
    const Ascii checked = action->isChecked() ? " checked=true"sv : " checked=false"sv;
    // Not empty, a shortcut can still have no text, and a role can have no name.
    const QKeySequence shortcut = action->shortcut();
    const bool hasShortcut = !shortcut.isEmpty();
    const QString keys = hasShortcut ? shortcut.toString() : QString();
    const char* const role = roles.valueToKey(action->menuRole());
    const QByteArray number = role ? QByteArray() : QByteArray::number(action->menuRole());
    return item("QAction("sv, address(action), " text="sv, action->text(),
        Labelled{" toolTip=", action->toolTip()}, action->isCheckable() ? checked : ""sv,
        Labelled{" shortcut=QKeySequence(", keys, hasShortcut}, hasShortcut ? ")"sv : ""sv,
        " menuRole="sv, role ? Ascii(role) : Ascii(number.constData()),
        action->isVisible() ? " visible=true)"sv : " visible=false)"sv);
}

Trace& Trace::operator<<(const IEvent* event)
{
    // Qt's spacing leaves two blanks behind a null event.
    if (!event)
        return item("IEvent(0x0) "sv);
    return item("IEvent("sv, address(event), ", type = "sv, event->type(), ')');
}

Trace& Trace::operator<<(const IEventHandler* handler)
{
    return item(static_cast<const void*>(handler));
}

Trace& Trace::operator<<(const IMdiSubWindow* window)
{
    if (!window)
        return item("MdiWindow(0x0)"sv);
    return item("MdiWindow("sv, address(window), Labelled{", ", window->shortTitle()}, ')');
}

Trace& Trace::operator<<(const IOptionPage* page)
{
    if (!page)
        return item("IOptionPage(0x0)"sv);
    return item("IOptionPage("sv, address(page), ", category = "sv,
        page->category().join(QLatin1Char('/')), ')');
}

} // namespace Zentu
