// SPDX-License-Identifier: MIT
#include "trace_p.h"

#include "ievent.h"
#include "mdi_area.h"
#include "option_dlg.h"

#include <QAction>
#include <QKeySequence>
#include <QMetaEnum>
#include <QWidget>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <iterator>

namespace Zentu {

using namespace std::string_view_literals;

static bool isAscii(char c)
{
    return static_cast<unsigned char>(c) < 0x80;
}

// Whether QDebug writes a character of a string as it is. It does so with some beyond ASCII too;
// those take the longer way.
static bool isPlain(QChar c)
{
    return c >= QLatin1Char(' ') && c <= QLatin1Char('~') && c != QLatin1Char('"')
        && c != QLatin1Char('\\');
}

TraceText& TraceText::operator<<(char ascii)
{
    m_text.append(ascii);
    return *this;
}

TraceText& TraceText::operator<<(const char* text)
{
    if (!text)
        return *this;
    const char* const end = text + std::strlen(text);
    if (!std::all_of(text, end, isAscii))
        return byDebug(text);
    m_text.append(text, static_cast<int>(end - text));
    return *this;
}

TraceText& TraceText::operator<<(std::string_view ascii)
{
    // Qt asserts that there is a text, even one of no characters.
    if (!ascii.empty())
        m_text.append(ascii.data(), static_cast<int>(ascii.size()));
    return *this;
}

TraceText& TraceText::operator<<(const QString& string)
{
    const auto begin = m_text.size();
    m_text.resize(begin + string.size() + 2);
    char* to = m_text.data() + begin;
    *to++ = '"';
    bool allPlain = true;
    for (const QChar c : string) {
        allPlain &= isPlain(c);
        *to++ = static_cast<char>(c.unicode());
    }
    *to = '"';
    if (!allPlain) {
        m_text.resize(begin);
        byDebug(string);
    }
    return *this;
}

TraceText& TraceText::operator<<(const QStringList& list)
{
    // Each Qt has a name of its own for a list, or none.
    static const QByteArray empty = [] {
        QString text;
        QDebug(&text).nospace() << QStringList();
        return text.toLatin1();
    }();
    m_text.append(empty.constData(), empty.size() - 1);
    std::string_view separator;
    for (const QString& string : list) {
        *this << separator << string;
        separator = ", "sv;
    }
    return *this << ')';
}

TraceText& TraceText::operator<<(int number)
{
    return appendNumber(number, 10);
}

TraceText& TraceText::operator<<(const void* address)
{
    *this << "0x"sv;
    return appendNumber(reinterpret_cast<quintptr>(address), 16);
}

template <typename T>
TraceText& TraceText::byDebug(const T& item)
{
    QString text;
    QDebug(&text).nospace() << item;
    const QByteArray latin1 = text.toLatin1();
    m_text.append(latin1.constData(), latin1.size());
    return *this;
}

template <typename Number>
TraceText& TraceText::appendNumber(Number number, int base)
{
    char digits[24];
    const char* const end = std::to_chars(std::begin(digits), std::end(digits), number, base).ptr;
    m_text.append(digits, static_cast<int>(end - digits));
    return *this;
}

void TraceText::send()
{
    m_text.append('\0');
    wisp::logger::instance()->log(wisp::LogInfo, m_text.constData());
}

// What our classes, and then those of Qt that the trace is full of, are shown as. The printer of
// events, which hosts have in a header, says the same of them.

static void describe(TraceText& text, const IEvent& event)
{
    text << "IEvent("sv << static_cast<const void*>(&event) << ", type = "sv << event.type() << ')';
}

template <typename Stream>
static void describe(Stream& stream, const IMdiSubWindow& window)
{
    stream << "MdiWindow(" << static_cast<const void*>(&window);
    const QString title = window.shortTitle();
    if (!title.isEmpty())
        stream << ", " << title;
    stream << ")";
}

template <typename Stream>
static void describe(Stream& stream, const IOptionPage& page)
{
    stream << "IOptionPage(" << static_cast<const void*>(&page)
           << ", category = " << page.category().join(QLatin1Char('/')) << ")";
}

static void describe(
    TraceText& text, const QObject& object, std::string_view beforeName = ", name = "sv)
{
    text << object.metaObject()->className() << '(' << static_cast<const void*>(&object);
    const QString name = object.objectName();
    if (!name.isEmpty())
        text << beforeName << name;
    text << ')';
}

static void describe(TraceText& text, const QWidget& widget)
{
    describe(text, widget, ", name="sv);
}

#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)
static void describe(TraceText& text, const QAction& action)
{
    static const QMetaEnum roles = QMetaEnum::fromType<QAction::MenuRole>();

    text << "QAction("sv << static_cast<const void*>(&action) << " text="sv << action.text();
    const QString toolTip = action.toolTip();
    if (!toolTip.isEmpty())
        text << " toolTip="sv << toolTip;
    if (action.isCheckable())
        text << " checked="sv << (action.isChecked() ? "true"sv : "false"sv);
    // Not empty, a shortcut can still have no text, and a role can have no name.
    const QKeySequence shortcut = action.shortcut();
    if (!shortcut.isEmpty())
        text << " shortcut=QKeySequence("sv << shortcut.toString() << ')';
    text << " menuRole="sv;
    if (const char* const role = roles.valueToKey(action.menuRole()))
        text << role;
    else
        text << static_cast<int>(action.menuRole());
    text << " visible="sv << (action.isVisible() ? "true)"sv : "false)"sv);
}
#else
// What is shown of an action has changed more than once in this Qt.
static void describe(TraceText& text, const QAction& action)
{
    text.byDebug(&action);
}
#endif

QDebug operator<<(QDebug dbg, const IMdiSubWindow* window)
{
    dbg.nospace();
    if (window)
        describe(dbg, *window);
    else
        dbg << "MdiWindow(0x0)";
    return dbg.space();
}

QDebug operator<<(QDebug dbg, const IOptionPage* page)
{
    // A null page leaves the stream in the mode it is in.
    if (!page)
        return dbg << "IOptionPage(0x0)";
    describe(dbg.nospace(), *page);
    return dbg.space();
}

Trace::~Trace()
{
    m_text.send();
}

template <typename T>
Trace& Trace::item(const T& item)
{
    m_text << item << ' ';
    return *this;
}

template <typename T>
Trace& Trace::described(const T* object, const char* null)
{
    if (!object)
        return item(null);
    describe(m_text, *object);
    m_text << ' ';
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
    return described(object, "QObject(0x0)");
}

Trace& Trace::operator<<(const QWidget* widget)
{
    return described(widget, "QWidget(0x0)");
}

Trace& Trace::operator<<(const QAction* action)
{
    // The zero behind the address is Qt's.
    return described(action, "QAction(0x00)");
}

Trace& Trace::operator<<(const IEvent* event)
{
    // Qt's spacing leaves two blanks behind a null event.
    return described(event, "IEvent(0x0) ");
}

Trace& Trace::operator<<(const IEventHandler* handler)
{
    return item(static_cast<const void*>(handler));
}

Trace& Trace::operator<<(const IMdiSubWindow* window)
{
    return described(window, "MdiWindow(0x0)");
}

Trace& Trace::operator<<(const IOptionPage* page)
{
    return described(page, "IOptionPage(0x0)");
}

} // namespace Zentu
