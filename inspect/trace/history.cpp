// SPDX-License-Identifier: MIT
//
// The commands that go through a trace line by line and keep little of it.

#include "command.h"
#include "zentu_trace_normal.h"

#include <QJsonArray>
#include <QThread>

#include <unistd.h>

#include <cstdio>
#include <deque>

namespace Zentu::Inspect {

// Contexts

static QString nameOf(const Switch& change)
{
    const std::string_view text = infoOf(change.what).text;
    const QString verb = decoded(text.back() == ':' ? text.substr(0, text.size() - 1) : text);
    return QStringLiteral("%1 \"%2\"").arg(verb, unescaped(change.context));
}

static QStringList textsOf(const std::vector<std::string>& strings)
{
    QStringList result;
    for (const std::string& string : strings)
        result.append(unescaped(string));
    return result;
}

static QJsonObject json(const Switch& change)
{
    QJsonObject entry = json(change.at);
    entry.insert(QStringLiteral("change"), decoded(infoOf(change.what).text));
    entry.insert(QStringLiteral("context"), unescaped(change.context));
    entry.insert(QStringLiteral("contexts"), QJsonArray::fromStringList(textsOf(change.now)));
    entry.insert(QStringLiteral("asked"), change.asked);
    entry.insert(QStringLiteral("gone"), change.gone);
    entry.insert(QStringLiteral("came"), change.came);
    entry.insert(QStringLiteral("changed"), change.changed);
    return entry;
}

static void printSwitch(const Switch& change)
{
    print(QStringLiteral("%1: %2").arg(inWords(change.at), nameOf(change)));
    const QStringList now = textsOf(change.now);
    print(QStringLiteral("  in force: %1")
              .arg(now.isEmpty() ? QStringLiteral("nothing") : now.join(QLatin1String(", "))));
    if (change.asked > 0)
        print(QStringLiteral("  %1 asked, %2 gone, %3 come, %4 changed")
                  .arg(counted(change.asked, "proxy action"))
                  .arg(change.gone)
                  .arg(change.came)
                  .arg(change.changed));
}

int contexts(const Request& request)
{
    Program program;
    std::optional<JsonList> list;
    if (request.json)
        list.emplace();
    const auto tell = [&](const Switch& change) {
        if (list)
            list->add(json(change));
        else
            printSwitch(change);
    };
    // What a change did is known when the next one begins.
    qint64 told = 0;
    const bool isRead = readLines(request, [&](const Line& line) {
        program.feed(line);
        if (program.switchCount() > told + 1) {
            ++told;
            tell(program.switches()[program.switches().size() - 2]);
        }
    });
    if (!isRead)
        return Failed;
    if (program.switchCount() > told)
        tell(program.switches().back());
    return Fine;
}

// Normal form

int normal(const Request& request)
{
    TraceNormalizer normalizer;
    std::optional<JsonList> list;
    if (request.json)
        list.emplace();
    qint64 number = 0;
    const bool isRead = readTexts(request, [&](std::string_view text) {
        ++number;
        if (isNote(text))
            return;
        const std::string normalized = normalizer.normalized(text);
        if (list)
            list->add(QJsonObject{
                {QStringLiteral("line"), number}, {QStringLiteral("text"), decoded(normalized)}});
        else
            std::fwrite((normalized + '\n').data(), 1, normalized.size() + 1, stdout);
    });
    return isRead ? Fine : Failed;
}

// Differences

namespace {

/// A trace in normal form, of which some lines are looked at ahead.
class Side
{
public:
    explicit Side(char mark)
        : m_mark(mark)
    {
    }

    bool open(const QString& path) { return m_source.open(path); }

    /// The line so many behind the next one, or null behind the end.
    const std::string* peek(std::size_t ahead)
    {
        std::string_view text;
        while (m_ahead.size() <= ahead && m_source.next(text)) {
            ++m_read;
            if (!isNote(text))
                m_ahead.emplace_back(m_normalizer.normalized(text), m_read);
        }
        return ahead < m_ahead.size() ? &m_ahead[ahead].first : nullptr;
    }

    void drop() { m_ahead.pop_front(); }

    char mark() const { return m_mark; }
    /// The number of the next line.
    qint64 line() const { return m_ahead.front().second; }

private:
    char m_mark;
    LineSource m_source;
    TraceNormalizer m_normalizer{TraceNormalizer::Unnumbered};
    std::deque<std::pair<std::string, qint64>> m_ahead;
    qint64 m_read = 0;
};

/// Tells the differences, and how many there are.
class Differences
{
public:
    explicit Differences(bool asJson)
    {
        if (asJson)
            m_list.emplace();
    }

    void take(Side& side, std::size_t lines)
    {
        for (; lines > 0 && side.peek(0); --lines, side.drop()) {
            ++m_count;
            const QString text = decoded(*side.peek(0));
            if (m_list)
                m_list->add(QJsonObject{{QStringLiteral("side"), QString(QLatin1Char(side.mark()))},
                    {QStringLiteral("line"), side.line()}, {QStringLiteral("text"), text}});
            else
                print(QStringLiteral("%1%2: %3")
                          .arg(QLatin1Char(side.mark()))
                          .arg(side.line())
                          .arg(text));
        }
    }

    qint64 count() const { return m_count; }

private:
    std::optional<JsonList> m_list;
    qint64 m_count = 0;
};

} // namespace

// Whether so many lines, or all that are left, are the same from there on.
static bool agree(Side& a, std::size_t fromA, Side& b, std::size_t fromB)
{
    constexpr std::size_t enough = 3;
    for (std::size_t i = 0; i < enough; ++i) {
        const std::string* const lineOfA = a.peek(fromA + i);
        const std::string* const lineOfB = b.peek(fromB + i);
        if (!lineOfA || !lineOfB)
            return !lineOfA && !lineOfB;
        if (*lineOfA != *lineOfB)
            return false;
    }
    return true;
}

// Takes the fewest lines after which both go on alike. Both are looked at that far ahead, so that
// the traces may be of any size.
static void takeDifference(Side& a, Side& b, Differences& differences)
{
    constexpr std::size_t farthest = 300;
    for (std::size_t lines = 1; lines <= farthest; ++lines) {
        for (std::size_t ofA = 0; ofA <= lines; ++ofA) {
            if (agree(a, ofA, b, lines - ofA)) {
                differences.take(a, ofA);
                differences.take(b, lines - ofA);
                return;
            }
        }
    }
    differences.take(a, farthest);
    differences.take(b, farthest);
}

int diff(const Request& request)
{
    Side a('-');
    Side b('+');
    if (!a.open(request.arguments.at(0)) || !b.open(request.arguments.at(1)))
        return Failed;
    Differences differences(request.json);
    for (;;) {
        const std::string* const lineOfA = a.peek(0);
        const std::string* const lineOfB = b.peek(0);
        if (!lineOfA && !lineOfB)
            break;
        if (lineOfA && lineOfB && *lineOfA == *lineOfB) {
            a.drop();
            b.drop();
        } else {
            takeDifference(a, b, differences);
        }
    }
    return differences.count() == 0 ? Fine : Found;
}

// As it happens

static const char* colour(const Line& line)
{
    if (line.reading == Reading::Note)
        return "\033[2m";
    if (line.reading == Reading::Damaged || line.reading == Reading::Unknown)
        return "\033[35m";
    if (line.reading == Reading::Foreign)
        return "\033[2m";
    if (line.info->channel == Channel::Warning || line.info->channel == Channel::Critical)
        return "\033[31m";
    switch (line.info->family) {
    case Family::Bus:
        return "\033[36m";
    case Family::Contexts:
        return "\033[33m";
    case Family::Proxy:
    case Family::Proxies:
        return "\033[32m";
    default:
        return "";
    }
}

static void tell(
    const Line& line, std::string_view body, qint64 number, const Request& request, bool isColoured)
{
    const QString text = decoded(body);
    if (request.json) {
        printJson(QJsonObject{{QStringLiteral("line"), number},
            {QStringLiteral("time"), decoded(line.time)},
            {QStringLiteral("thread"), decoded(line.thread)}, {QStringLiteral("text"), text}});
        return;
    }
    QString columns = clock(line.time);
    if (!line.thread.empty())
        columns += QLatin1Char(' ') + decoded(line.thread);
    if (!columns.isEmpty())
        columns += QLatin1Char(' ');
    if (isColoured)
        print(columns + QLatin1String(colour(line)) + text + QLatin1String("\033[0m"));
    else
        print(columns + text);
}

int follow(const Request& request)
{
    const QStringList& arguments = request.arguments;
    const QString filter = arguments.size() > 1 ? arguments.at(1) : QString();
    LineSource source(LineSource::Growing);
    if (!source.open(arguments.first()))
        return Failed;
    const bool isColoured = isatty(STDOUT_FILENO) != 0;
    const bool isStream = arguments.first() == QLatin1String("-");
    qint64 number = 0;
    for (;;) {
        std::string_view text;
        while (source.next(text)) {
            const Line line = readLine(text);
            const bool isNote = line.reading == Reading::Note;
            ++number;
            if (filter.isEmpty() || decoded(line.body).contains(filter, Qt::CaseInsensitive))
                tell(line, isNote ? text : line.body, number, request, isColoured);
        }
        std::fflush(stdout);
        while (!source.resume()) {
            if (isStream)
                return Fine;
            QThread::msleep(100);
        }
    }
}

} // namespace Zentu::Inspect
