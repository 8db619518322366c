// SPDX-License-Identifier: MIT
//
// The commands that draw.

#include "answers.h"
#include "command.h"
#include "picture.h"

#include <QDate>
#include <QJsonArray>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <map>
#include <set>

namespace Zentu::Inspect {

static int writePicture(const Request& request, const QString& title, const QByteArray& svg)
{
    const bool isPage = request.output.endsWith(QLatin1String(".html"), Qt::CaseInsensitive);
    return writeOutput(request, isPage ? page(title, svg) : svg) ? Fine : Failed;
}

// Over time

namespace {

constexpr double LabelWidth = 240;
constexpr double Width = 1200;
constexpr double RowHeight = 20;
// As fine as one can zoom in.
constexpr int Columns = 20000;
constexpr const char* Heard = "#0b7285";

/// Seconds where the lines have times, else the numbers of the lines.
struct Scale
{
    double first = 0;
    double last = 0;
    bool isTime = false;

    double x(double at) const
    {
        const double span = std::max(last - first, 1e-6);
        return LabelWidth + (at - first) / span * Width;
    }
};

/// From when to when something was so.
struct Span
{
    double from = 0;
    double to = -1; ///< Before from while it is still so
    QString what;
};

struct Row
{
    /// Adds a mark, unless the one before it is too close to be told apart at the finest.
    void tick(double at, const QString& what);

    std::vector<Span> spans;
    std::vector<Span> ticks; ///< Of no length

private:
    void thinOut();

    double m_distance = 0; ///< That of ticks, as far as the row goes by now
};

using Rows = std::map<QString, Row>;

/// What a timeline shows, gathered line by line.
class Timeline
{
public:
    void add(const Line& line);
    void finish();

    Picture draw(double& height) const;
    QJsonObject json() const;

private:
    void begin(Rows& rows, const QString& name, const QString& what);
    void end(Rows& rows, const QString& name);
    void addProxyLine(const Line& line);
    Row& threadRow(std::string_view thread);
    void drawRows(Picture& picture, const QString& title, const Rows& rows, const char* tickColour,
        const char* spanStyle, double& y) const;
    static QJsonArray jsonOf(const Rows& rows);

    Scale m_scale;
    double m_now = 0;
    qint64 m_number = 0;
    Program m_program;
    Rows m_threads;
    std::string m_thread; ///< That of the line before, with its row
    Row* m_threadRow = nullptr;
    Rows m_events;
    Rows m_unheard;
    Rows m_contexts;
    Rows m_actions;
};

} // namespace

/// The number that the digits from a place on are; other characters end it.
static int numberAt(std::string_view text, std::size_t at, std::size_t digits)
{
    int number = 0;
    const std::string_view part = text.substr(std::min(at, text.size()), digits);
    std::from_chars(part.data(), part.data() + part.size(), number);
    return number;
}

/// Seconds since 1970, of the time as it stands there.
static double seconds(std::string_view time)
{
    constexpr qint64 firstDay = 2440588;
    const QDate date(numberAt(time, 0, 4), numberAt(time, 5, 2), numberAt(time, 8, 2));
    const qint64 days = date.isValid() ? date.toJulianDay() - firstDay : 0;
    const qint64 hours = days * 24 + numberAt(time, 11, 2);
    const qint64 whole = (hours * 60 + numberAt(time, 14, 2)) * 60 + numberAt(time, 17, 2);
    double fraction = 0;
    double place = 1;
    if (time.substr(19, 1) == ".") {
        for (const char digit : time.substr(20)) {
            if (digit < '0' || digit > '9')
                break;
            place /= 10;
            fraction += (digit - '0') * place;
        }
    }
    return static_cast<double>(whole) + fraction;
}

void Row::tick(double at, const QString& what)
{
    // Lines of several threads can go back a little.
    if (!ticks.empty() && std::abs(at - ticks.back().from) < m_distance)
        return;
    if (ticks.size() >= Columns)
        thinOut();
    ticks.push_back(Span{at, at, what});
}

// Each second one stays, so that it is not done again soon whatever their times are.
void Row::thinOut()
{
    m_distance = 2 * std::abs(ticks.back().from - ticks.front().from) / Columns;
    for (std::size_t i = 1; 2 * i < ticks.size(); ++i)
        ticks[i] = std::move(ticks[2 * i]);
    ticks.resize((ticks.size() + 1) / 2);
}

void Timeline::begin(Rows& rows, const QString& name, const QString& what)
{
    end(rows, name);
    rows[name].spans.push_back(Span{m_now, -1, what});
}

void Timeline::end(Rows& rows, const QString& name)
{
    std::vector<Span>& spans = rows[name].spans;
    if (!spans.empty() && spans.back().to < spans.back().from)
        spans.back().to = m_now;
}

void Timeline::addProxyLine(const Line& line)
{
    const auto proxy = m_program.proxies().find(line.speaker.address);
    if (proxy == m_program.proxies().end() || proxy->second.ids.empty())
        return;
    const QString id = unescaped(proxy->second.ids.front());
    const Address active = proxy->second.active.value_or(0);
    const auto context = Program::activeContext(proxy->second);
    if (active == 0)
        end(m_actions, id);
    else
        begin(m_actions, id, context ? unescaped(*context) : hex(active));
}

Row& Timeline::threadRow(std::string_view thread)
{
    if (!m_threadRow || m_thread != thread) {
        m_thread = thread;
        m_threadRow = &m_threads[decoded(thread)];
    }
    return *m_threadRow;
}

void Timeline::add(const Line& line)
{
    ++m_number;
    if (!line.time.empty()) {
        m_now = seconds(line.time);
        if (!m_scale.isTime)
            m_scale.first = m_now;
        m_scale.isTime = true;
    } else if (!m_scale.isTime) {
        m_now = static_cast<double>(m_number);
        if (m_number == 1)
            m_scale.first = m_now;
    }
    m_scale.last = std::max(m_scale.last, m_now);
    m_program.feed(line);
    if (!line.thread.empty())
        threadRow(line.thread).tick(m_now, {});
    if (line.reading != Reading::Understood)
        return;

    const auto name = [&] { return unescaped(line.items[0].text); };
    const auto global = [&] { return name() + QStringLiteral(" (global)"); };
    switch (line.info->id) {
    case Text::Post: {
        const std::string_view escapedType = line.items[0].field("type = ");
        const EventTypes& types = m_program.buses().at(line.speaker.address);
        const auto type = types.find(escapedType);
        const bool isUnheard = type != types.end() && type->second.subscribers.empty();
        (isUnheard ? m_unheard : m_events)[unescaped(escapedType)].tick(
            m_now, QStringLiteral("line %1").arg(m_number));
        break;
    }
    case Text::PushContext:
        begin(m_contexts, name(), name());
        break;
    case Text::RemoveContext:
        end(m_contexts, name());
        break;
    case Text::AddGlobalContext:
        begin(m_contexts, global(), global());
        break;
    case Text::RemoveGlobalContext:
        end(m_contexts, global());
        break;
    case Text::ActiveBackend:
        addProxyLine(line);
        break;
    default:
        break;
    }
}

void Timeline::finish()
{
    m_now = m_scale.last;
    for (Rows* const rows : {&m_contexts, &m_actions}) {
        for (const auto& row : *rows)
            end(*rows, row.first);
    }
}

void Timeline::drawRows(Picture& picture, const QString& title, const Rows& rows,
    const char* tickColour, const char* spanStyle, double& y) const
{
    if (rows.empty())
        return;
    y += RowHeight;
    picture.heading(10, y, title);
    for (const auto& [name, row] : rows) {
        y += RowHeight;
        picture.beginGroup(name);
        picture.text(LabelWidth - 8, y, name, Picture::Right);
        picture.line(LabelWidth, y + 4, LabelWidth + Width, y + 4, "#868e96", 0.5);
        for (const Span& span : row.spans) {
            const double from = m_scale.x(span.from);
            picture.box(
                from, y - 11, std::max(m_scale.x(span.to) - from, 1.0), 14, spanStyle, span.what);
        }
        double last = -1;
        for (const Span& tick : row.ticks) {
            const double x = m_scale.x(tick.from);
            if (x - last >= Width / Columns)
                picture.line(x, y - 11, x, y + 3, tickColour);
            last = x;
        }
        picture.endGroup();
    }
}

Picture Timeline::draw(double& height) const
{
    Picture picture;
    double y = 6;
    drawRows(picture, QStringLiteral("Threads"), m_threads, Heard, "held", y);
    drawRows(picture, QStringLiteral("Events"), m_events, Heard, "held", y);
    drawRows(
        picture, QStringLiteral("Events that nobody could hear"), m_unheard, "#d9480f", "held", y);
    drawRows(picture, QStringLiteral("Contexts"), m_contexts, Heard, "held", y);
    drawRows(picture, QStringLiteral("Active backends"), m_actions, Heard, "active", y);
    y += 1.5 * RowHeight;
    const QString length = m_scale.isTime
        ? QStringLiteral("%1 s").arg(m_scale.last - m_scale.first, 0, 'f', 3)
        : QStringLiteral("line %1").arg(m_number);
    picture.text(LabelWidth, y, m_scale.isTime ? QStringLiteral("0 s") : QStringLiteral("line 1"));
    picture.text(LabelWidth + Width, y, length, Picture::Right);
    height = y + 10;
    return picture;
}

QJsonArray Timeline::jsonOf(const Rows& rows)
{
    QJsonArray list;
    for (const auto& [name, row] : rows) {
        QJsonArray spans;
        for (const Span& span : row.spans)
            spans.append(QJsonObject{{QStringLiteral("from"), span.from},
                {QStringLiteral("to"), span.to}, {QStringLiteral("what"), span.what}});
        QJsonArray ticks;
        for (const Span& tick : row.ticks)
            ticks.append(tick.from);
        list.append(QJsonObject{{QStringLiteral("name"), name}, {QStringLiteral("spans"), spans},
            {QStringLiteral("ticks"), ticks}});
    }
    return list;
}

QJsonObject Timeline::json() const
{
    return {{QStringLiteral("threads"), jsonOf(m_threads)},
        {QStringLiteral("events"), jsonOf(m_events)},
        {QStringLiteral("unheard"), jsonOf(m_unheard)},
        {QStringLiteral("contexts"), jsonOf(m_contexts)},
        {QStringLiteral("actions"), jsonOf(m_actions)}};
}

int timeline(const Request& request)
{
    Timeline timeline;
    const bool isRead = readLines(request, [&](const Line& line) { timeline.add(line); });
    if (!isRead)
        return Failed;
    timeline.finish();
    if (request.json) {
        printJson(timeline.json());
        return Fine;
    }
    double height = 0;
    const Picture picture = timeline.draw(height);
    return writePicture(request, QStringLiteral("Timeline of %1").arg(request.file()),
        picture.svg(LabelWidth + Width + 10, height));
}

// Who posts to whom

namespace {

/// One column of a graph: names from top to bottom.
class Column
{
public:
    void add(const QString& name)
    {
        if (m_rows.contains(name))
            return;
        m_rows.append(name);
        m_width = std::max(m_width, 16 + 7.0 * static_cast<int>(name.size()));
    }

    /// Spreads the names over a height.
    void place(double x, double height)
    {
        m_x = x;
        m_distance = height / std::max(size(), 1);
    }

    double left() const { return m_x; }
    double right() const { return m_x + m_width; }
    double y(const QString& name) const
    {
        return 46 + (static_cast<int>(m_rows.indexOf(name)) + 0.5) * m_distance;
    }
    int size() const { return static_cast<int>(m_rows.size()); }

    void draw(Picture& picture, const QString& title) const
    {
        picture.heading(m_x, 34, title);
        for (const QString& name : m_rows) {
            picture.beginGroup(name);
            picture.box(m_x, y(name) - 15, m_width, 22, "node", name);
            picture.text(m_x + 8, y(name), name);
            picture.endGroup();
        }
    }

private:
    double m_x = 0;
    double m_width = 220;
    double m_distance = 0;
    QStringList m_rows;
};

struct Edge
{
    QString from;
    QString to;
    qint64 posts = 0;
};

/// Who posts what, and who heard what.
class Graph
{
public:
    void add(const Line& line);
    void finish() { takeSubscription(); }
    QList<Edge> posts() const { return edges(m_posts); }
    QList<Edge> hearing() const { return edges(m_hearing); }

private:
    using Counts = std::map<std::pair<QString, QString>, qint64>;

    static QList<Edge> edges(const Counts& counts)
    {
        QList<Edge> result;
        for (const auto& [ends, posts] : counts)
            result.append(Edge{ends.first, ends.second, posts});
        return result;
    }

    QString handler(Address address) const
    {
        const std::string_view name = m_program.handlerName(address);
        return name.empty() ? hex(address) : decoded(name);
    }

    // The notes behind its line have told who it is.
    void takeSubscription()
    {
        if (m_subscription)
            m_hearing[{m_subscription->first, handler(m_subscription->second)}];
        m_subscription.reset();
    }

    Program m_program;
    Counts m_posts;
    Counts m_hearing;
    std::optional<std::pair<QString, Address>> m_subscription;
};

} // namespace

void Graph::add(const Line& line)
{
    if (line.reading != Reading::Note)
        takeSubscription();
    m_program.feed(line);
    if (line.is(Text::Subscribe))
        m_subscription.emplace(unescaped(line.items[1].text), line.items[0].address);
    if (!line.is(Text::Post) || line.items[0].address == 0)
        return;
    const std::string_view escapedType = line.items[0].field("type = ");
    const EventTypes& types = m_program.buses().at(line.speaker.address);
    const QString type = unescaped(escapedType);
    ++m_posts[{QStringLiteral("thread %1")
                   .arg(line.thread.empty() ? QStringLiteral("?") : decoded(line.thread)),
        type}];
    const auto known = types.find(escapedType);
    if (known == types.end())
        return;
    for (const Subscription& subscription : known->second.subscribers)
        ++m_hearing[{type, handler(subscription.handler)}];
}

static QJsonArray json(const QList<Edge>& edges)
{
    QJsonArray list;
    for (const Edge& edge : edges)
        list.append(QJsonObject{{QStringLiteral("from"), edge.from},
            {QStringLiteral("to"), edge.to}, {QStringLiteral("posts"), edge.posts}});
    return list;
}

static void drawEdges(
    Picture& picture, const QList<Edge>& edges, const Column& from, const Column& to)
{
    for (const Edge& edge : edges) {
        const double stroke =
            edge.posts == 0 ? 0.5 : 1 + std::log10(static_cast<double>(edge.posts));
        picture.arrow(from.right(), from.y(edge.from) - 4, to.left(), to.y(edge.to) - 4, stroke,
            QStringLiteral("%1 > %2: %3").arg(edge.from, edge.to, counted(edge.posts, "post")));
    }
}

int graph(const Request& request)
{
    Graph graph;
    if (!readLines(request, [&](const Line& line) { graph.add(line); }))
        return Failed;
    graph.finish();
    const QList<Edge> posts = graph.posts();
    const QList<Edge> hearing = graph.hearing();
    if (request.json) {
        printJson(QJsonObject{
            {QStringLiteral("posts"), json(posts)}, {QStringLiteral("hearing"), json(hearing)}});
        return Fine;
    }
    Column threads;
    Column types;
    Column handlers;
    for (const Edge& edge : posts) {
        threads.add(edge.from);
        types.add(edge.to);
    }
    for (const Edge& edge : hearing) {
        types.add(edge.from);
        handlers.add(edge.to);
    }
    constexpr double between = 160;
    const double height = std::max({threads.size(), types.size(), handlers.size()}) * 28.0;
    threads.place(20, height);
    types.place(threads.right() + between, height);
    handlers.place(types.right() + between, height);
    Picture picture;
    drawEdges(picture, posts, threads, types);
    drawEdges(picture, hearing, types, handlers);
    threads.draw(picture, QStringLiteral("Who posts"));
    types.draw(picture, QStringLiteral("Events"));
    handlers.draw(picture, QStringLiteral("Who hears"));
    return writePicture(request, QStringLiteral("Events of %1").arg(request.file()),
        picture.svg(handlers.right() + 20, 60 + height));
}

} // namespace Zentu::Inspect
