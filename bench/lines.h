// SPDX-License-Identifier: MIT
#pragma once

#include "ievent.h"
#include "mdi_area.h"
#include "option_dlg.h"
#include "qlogstream.h"

#include <QAction>
#include <QMetaEnum>
#include <QVarLengthArray>

#include <charconv>
#include <cstring>

namespace Bench {

/// No line at all: what is left is the work itself.
struct NoLine
{
    template <typename T>
    NoLine& operator<<(const T& /*item*/)
    {
        return *this;
    }
};

/// A line by the shortest way to write one with Qt.
struct PlainLine
{
    PlainLine() = default;
    Q_DISABLE_COPY(PlainLine)

    ~PlainLine() { wisp::logger::instance()->log(wisp::LogInfo, text.toLatin1().constData()); }

    template <typename T>
    PlainLine& operator<<(const T& item)
    {
        debug << item;
        return *this;
    }

    QString text;
    QDebug debug{&text};
};

/// A line put together character by character, as one would where every nanosecond counts. Texts
/// hold nothing that needs an escape.
class HandLine
{
public:
    HandLine() = default;
    Q_DISABLE_COPY(HandLine)

    ~HandLine()
    {
        text.append('\0');
        wisp::logger::instance()->log(wisp::LogInfo, text.constData());
    }

    HandLine& operator<<(const char* item) { return put(item).put(" "); }
    HandLine& operator<<(const QString& item) { return put(item).put(" "); }
    HandLine& operator<<(int item) { return put(item, 10).put(" "); }
    HandLine& operator<<(const void* item) { return put(item).put(" "); }

    HandLine& operator<<(const QStringList& items)
    {
        put(isQt5 ? "(" : "QList(");
        for (int i = 0; i < items.size(); ++i)
            put(i ? ", " : "").put(items.at(i));
        return put(") ");
    }

    HandLine& operator<<(const QObject* object)
    {
        put(object->metaObject()->className()).put("(").put(static_cast<const void*>(object));
        if (!object->objectName().isEmpty())
            put(", name = ").put(object->objectName());
        return put(") ");
    }

    HandLine& operator<<(const QWidget* widget)
    {
        put(widget->metaObject()->className()).put("(").put(static_cast<const void*>(widget));
        if (!widget->objectName().isEmpty())
            put(", name=").put(widget->objectName());
        return put(") ");
    }

    HandLine& operator<<(const QAction* action)
    {
        if (!action)
            return put("QAction(0x00) ");
        put("QAction(").put(static_cast<const void*>(action)).put(" text=").put(action->text());
        const QString toolTip = action->toolTip();
        if (!toolTip.isEmpty())
            put(" toolTip=").put(toolTip);
        if (action->isCheckable())
            put(action->isChecked() ? " checked=true" : " checked=false");
        if (!action->shortcut().isEmpty()) {
            put(isQt5 ? " shortcut=" : " shortcuts=QList(");
            put("QKeySequence(").put(action->shortcut().toString()).put(isQt5 ? ")" : "))");
        }
        static const QMetaEnum roles = QMetaEnum::fromType<QAction::MenuRole>();
        put(" menuRole=").put(roles.valueToKey(action->menuRole()));
        if (!isQt5)
            put(action->isEnabled() ? " enabled=true" : " enabled=false");
        return put(action->isVisible() ? " visible=true) " : " visible=false) ");
    }

    HandLine& operator<<(const Zentu::IEvent* event)
    {
        put("IEvent(").put(static_cast<const void*>(event)).put(", type = ").put(event->type());
        return put(") ");
    }

    HandLine& operator<<(const Zentu::IMdiSubWindow* window)
    {
        put("MdiWindow(").put(static_cast<const void*>(window));
        const QString title = window->shortTitle();
        if (!title.isEmpty())
            put(", ").put(title);
        return put(") ");
    }

    HandLine& operator<<(const Zentu::IOptionPage* page)
    {
        put("IOptionPage(").put(static_cast<const void*>(page)).put(", category = ");
        return put(page->category().join(QLatin1Char('/'))).put(") ");
    }

private:
    static constexpr bool isQt5 = QT_VERSION_MAJOR == 5;

    HandLine& put(const char* item)
    {
        text.append(item, static_cast<int>(std::strlen(item)));
        return *this;
    }

    HandLine& put(const QString& item)
    {
        const auto begin = text.size();
        text.resize(begin + item.size() + 2);
        char* to = text.data() + begin;
        *to++ = '"';
        for (QChar c : item)
            *to++ = c.toLatin1();
        *to = '"';
        return *this;
    }

    HandLine& put(const void* item) { return put("0x").put(reinterpret_cast<quintptr>(item), 16); }

    template <typename Number>
    HandLine& put(Number number, int base)
    {
        char digits[24];
        const auto result = std::to_chars(digits, digits + sizeof digits, number, base);
        text.append(digits, static_cast<int>(result.ptr - digits));
        return *this;
    }

    QVarLengthArray<char, 512> text;
};

} // namespace Bench
