// SPDX-License-Identifier: MIT
//
// The commands that replay a trace and tell what is so at its end.

#include "answers.h"
#include "command.h"

#include <QJsonArray>

#include <algorithm>
#include <cstdio>

namespace Zentu::Inspect {

static QString orUnknown(std::string_view text)
{
    return text.empty() ? QStringLiteral("?") : decoded(text);
}

static QString modeName(int mode)
{
    static const std::array<const char*, 4> names = {"auto", "direct", "queued", "blocking"};
    if (mode < 0 || mode >= static_cast<int>(names.size()))
        return QStringLiteral("auto (%1)").arg(mode);
    return QLatin1String(names[static_cast<std::size_t>(mode)]);
}

// What it is about

namespace {

/// What a summary counts.
struct Totals
{
    qint64 posts = 0;
    qint64 unheard = 0;
    int types = 0;
    std::array<int, Leak::KindCount> left = {};
    int leftAtAll = 0;
};

} // namespace

static Totals totalsOf(const Program& program)
{
    Totals totals;
    for (const auto& [bus, types] : program.buses()) {
        totals.types += static_cast<int>(types.size());
        for (const auto& [name, type] : types) {
            totals.posts += type.postCount;
            totals.unheard += type.unheard;
        }
    }
    const QList<Leak> left = leaks(program);
    for (const Leak& leak : left)
        ++totals.left[leak.kind];
    totals.leftAtAll = static_cast<int>(left.size());
    return totals;
}

static QJsonObject leftJson(const Totals& totals)
{
    QJsonObject left;
    for (int kind = 0; kind < Leak::KindCount; ++kind)
        left.insert(leakKindName(static_cast<Leak::Kind>(kind)),
            totals.left[static_cast<std::size_t>(kind)]);
    return left;
}

static void printRemarks(const Program& program)
{
    const Counts& counts = program.counts();
    if (counts.remarks > 0)
        print(QStringLiteral("\nMessages, and lines that could not be read (%1)")
                  .arg(counts.remarks));
    constexpr std::size_t shown = 12;
    const auto& remarks = program.remarks();
    for (std::size_t i = remarks.size() - std::min(shown, remarks.size()); i < remarks.size(); ++i)
        print(QStringLiteral("  %1: %2").arg(inWords(remarks[i].at), decoded(remarks[i].text)));
    if (counts.contradictions == 0)
        return;
    print(QStringLiteral(
        "\nLines that do not follow from those before them (%1): the trace begins in the "
        "middle, or misses some")
              .arg(counts.contradictions));
    const auto& contradictions = program.contradictions();
    for (std::size_t i = 0; i < std::min<std::size_t>(3, contradictions.size()); ++i)
        print(QStringLiteral("  %1: %2")
                  .arg(inWords(contradictions[i].at), decoded(contradictions[i].what)));
}

static void printSummary(const Program& program, const Totals& totals)
{
    const Counts& counts = program.counts();
    print(QStringLiteral("%1: %2 understood, %3 of the host's own, %4 unknown, %5 damaged")
              .arg(counted(counts.lines, "line"))
              .arg(counts.of(Reading::Understood))
              .arg(counts.of(Reading::Foreign))
              .arg(counts.of(Reading::Unknown))
              .arg(counts.of(Reading::Damaged)));
    if (!program.now().time().empty())
        print(QStringLiteral("last line at %1").arg(decoded(program.now().time())));
    for (const std::string& name : program.derivedSpeakers())
        print(QStringLiteral("%1 speaks as a class of the library does").arg(decoded(name)));
    print(QStringLiteral("\nevents     %1 of %2, %3 that nobody could hear")
              .arg(counted(totals.posts, "post"), counted(totals.types, "type"))
              .arg(totals.unheard));
    print(QStringLiteral("contexts   %1").arg(counted(program.switchCount(), "change")));
    print(QStringLiteral("actions    %1, %2 of the active backend")
              .arg(counted(static_cast<qint64>(program.proxies().size()), "proxy action"),
                  counted(counts.of(Text::ActiveBackend), "change")));
    print(QStringLiteral("documents  %1 added, %2 destroyed")
              .arg(counts.of(Text::AddView))
              .arg(counts.of(Text::Destroying)));
    print(QStringLiteral("dialogs    %1").arg(counts.of(Text::BuildTree)));
    if (totals.leftAtAll > 0)
        print(QStringLiteral("\nLeft over (zentu-trace leaks tells which)"));
    for (int kind = 0; kind < Leak::KindCount; ++kind) {
        if (const int number = totals.left[static_cast<std::size_t>(kind)])
            print(QStringLiteral("  %1 %2").arg(number).arg(
                leakKindName(static_cast<Leak::Kind>(kind))));
    }
    printRemarks(program);
}

int summary(const Request& request)
{
    Program program;
    if (!replay(request, program))
        return Failed;
    const Totals totals = totalsOf(program);
    const Counts& counts = program.counts();
    if (request.json) {
        QJsonArray remarks;
        for (const Remark& remark : program.remarks()) {
            QJsonObject entry = json(remark.at);
            entry.insert(QStringLiteral("text"), decoded(remark.text));
            remarks.append(entry);
        }
        printJson(QJsonObject{{QStringLiteral("lines"), counts.lines},
            {QStringLiteral("understood"), counts.of(Reading::Understood)},
            {QStringLiteral("foreign"), counts.of(Reading::Foreign)},
            {QStringLiteral("unknown"), counts.of(Reading::Unknown)},
            {QStringLiteral("damaged"), counts.of(Reading::Damaged)},
            {QStringLiteral("contradictions"), counts.contradictions},
            {QStringLiteral("posts"), totals.posts}, {QStringLiteral("unheard"), totals.unheard},
            {QStringLiteral("contextChanges"), program.switchCount()},
            {QStringLiteral("actions"), static_cast<qint64>(program.proxies().size())},
            {QStringLiteral("remarks"), remarks}, {QStringLiteral("left"), leftJson(totals)}});
    } else {
        printSummary(program, totals);
    }
    const bool isFound = counts.remarks > 0 || totals.unheard > 0 || totals.leftAtAll > 0;
    return request.strict && isFound ? Found : Fine;
}

// Why an action is as it is

template <typename T>
static QJsonValue orNull(const std::optional<T>& value)
{
    return value ? QJsonValue(*value) : QJsonValue();
}

static QJsonObject json(const Why& why)
{
    QJsonArray backends;
    for (const Why::Backend& backend : why.backends)
        backends.append(QJsonObject{{QStringLiteral("context"), backend.context},
            {QStringLiteral("action"), hex(backend.action)}});
    QJsonValue active;
    if (why.active.value_or(0) != 0)
        active = QJsonObject{{QStringLiteral("context"), orNull(why.context)},
            {QStringLiteral("action"), hex(*why.active)}};
    return {{QStringLiteral("id"), why.id},
        {QStringLiteral("contexts"), QJsonArray::fromStringList(why.contexts)},
        {QStringLiteral("backends"), backends}, {QStringLiteral("active"), active},
        {QStringLiteral("enabled"), orNull(why.isEnabled)},
        {QStringLiteral("since"), json(why.since)}, {QStringLiteral("reason"), why.reason}};
}

static void printHistory(const std::deque<BackendChange>& history)
{
    if (history.empty())
        return;
    print(QStringLiteral("\nBefore, newest first"));
    constexpr std::size_t shown = 20;
    for (std::size_t i = 0; i < std::min(shown, history.size()); ++i) {
        const BackendChange& change = history[history.size() - 1 - i];
        QString backend = QStringLiteral("no backend");
        if (change.backend != 0)
            backend = change.context
                ? QLatin1Char('"') + unescaped(*change.context) + QLatin1Char('"')
                : hex(change.backend);
        QString line = QStringLiteral("  %1: %2").arg(inWords(change.at), backend);
        if (change.cause.line > 0)
            line += QStringLiteral(", by line %1: %2")
                        .arg(change.cause.line)
                        .arg(decoded(change.causeText));
        print(line);
    }
}

static void printWhy(const Why& why)
{
    print(why.id);
    print(QStringLiteral("  %1").arg(why.reason));
    QStringList contexts;
    for (const QString& context : why.contexts)
        contexts.append(QLatin1Char('"') + context + QLatin1Char('"'));
    print(
        QStringLiteral("  contexts in force: %1")
            .arg(contexts.isEmpty() ? QStringLiteral("none") : contexts.join(QLatin1String(", "))));
    for (const Why::Backend& backend : why.backends) {
        const bool isActive = why.context == backend.context;
        const char* const note = isActive ? ", active" : backend.isCertain ? "" : ", or gone";
        print(QStringLiteral("  backend for \"%1\": %2%3")
                  .arg(backend.context, hex(backend.action), QLatin1String(note)));
    }
    print(QStringLiteral("  since %1").arg(inWords(why.since)));
    printHistory(why.proxy->history);
}

static int complain(const QString& what, const QString& name, const QStringList& names)
{
    const QStringList nearest = nearestNames(name, names);
    std::fprintf(stderr, "zentu-trace: %s\n",
        qPrintable(what
            + (nearest.isEmpty() ? QString()
                                 : QStringLiteral("; did you mean %1?")
                                       .arg(nearest.join(QLatin1String(" or "))))));
    return Failed;
}

int why(const Request& request)
{
    Program program;
    if (!replay(request, program))
        return Failed;
    const QString& id = request.arguments.first();
    const std::optional<Why> answer = whyIsIt(program, id);
    if (!answer)
        return complain(QStringLiteral("no proxy action is registered as \"%1\"").arg(id), id,
            actionIds(program));
    if (request.json)
        printJson(json(*answer));
    else
        printWhy(*answer);
    return Fine;
}

// Who posts and who hears

static QJsonObject json(const Program& program, const QString& name, const EventType& type)
{
    QJsonArray subscribers;
    for (const Subscription& subscription : type.subscribers) {
        const std::string_view handlerName = program.handlerName(subscription.handler);
        subscribers.append(QJsonObject{{QStringLiteral("handler"), hex(subscription.handler)},
            {QStringLiteral("name"), handlerName.empty() ? QJsonValue() : decoded(handlerName)},
            {QStringLiteral("since"), json(subscription.since)}});
    }
    return {{QStringLiteral("type"), name}, {QStringLiteral("posts"), type.postCount},
        {QStringLiteral("unheard"), type.unheard}, {QStringLiteral("subscribers"), subscribers}};
}

static void printType(
    const Program& program, const QString& name, const EventType& type, const QStringList& heard)
{
    print(name);
    QStringList ways;
    for (const PostCount& count : type.posts)
        ways.append(
            QStringLiteral("%1 from thread %2, %3")
                .arg(counted(count.posts, "post"), orUnknown(count.thread), modeName(count.mode)));
    print(QLatin1String("  ")
        + (ways.isEmpty() ? QStringLiteral("never posted") : ways.join(QLatin1String("; "))));
    if (type.unheard > 0) {
        print(QStringLiteral("  %1 that nobody could hear, the last at %2")
                  .arg(counted(type.unheard, "post"), inWords(type.lastUnheard)));
        const QStringList nearest = type.hadSubscriber ? QStringList() : nearestNames(name, heard);
        if (!nearest.isEmpty())
            print(QStringLiteral("  somebody hears %1").arg(nearest.join(QLatin1String(" and "))));
    }
    for (const Subscription& subscription : type.subscribers) {
        const QString handler = decoded(program.handlerName(subscription.handler));
        print(QStringLiteral("  heard by %1 since %2")
                  .arg(handler.isEmpty() ? hex(subscription.handler)
                                         : handler + QLatin1Char(' ') + hex(subscription.handler),
                      inWords(subscription.since)));
    }
}

int events(const Request& request)
{
    Program program;
    if (!replay(request, program))
        return Failed;
    const QString wanted = request.arguments.size() > 1 ? request.arguments.first() : QString();
    QStringList names;
    QStringList heard;
    for (const auto& [bus, types] : program.buses()) {
        for (const auto& [name, type] : types) {
            names.append(unescaped(name));
            if (type.hadSubscriber)
                heard.append(names.last());
        }
    }
    if (!wanted.isEmpty() && !names.contains(wanted))
        return complain(
            QStringLiteral("no event of type \"%1\" was posted or subscribed to").arg(wanted),
            wanted, names);

    QJsonArray list;
    for (const auto& [bus, types] : program.buses()) {
        for (const auto& [escapedName, type] : types) {
            const QString name = unescaped(escapedName);
            if (!wanted.isEmpty() && name != wanted)
                continue;
            if (request.json)
                list.append(json(program, name, type));
            else
                printType(program, name, type, heard);
        }
    }
    if (request.json)
        printJson(list);
    return Fine;
}

// What was never let go

int leaks(const Request& request)
{
    Program program;
    if (!replay(request, program))
        return Failed;
    const QList<Leak> left = leaks(program);
    if (request.json) {
        QJsonObject object;
        for (int kind = 0; kind < Leak::KindCount; ++kind)
            object.insert(leakKindName(static_cast<Leak::Kind>(kind)), QJsonArray());
        for (const Leak& leak : left) {
            QJsonArray list = object.value(leakKindName(leak.kind)).toArray();
            list.append(QJsonObject{{QStringLiteral("name"), leak.name},
                {QStringLiteral("what"),
                    leak.what != 0 ? QJsonValue(hex(leak.what)) : QJsonValue()},
                {QStringLiteral("holder"), leak.holder},
                {QStringLiteral("since"), json(leak.since)}});
            object.insert(leakKindName(leak.kind), list);
        }
        printJson(object);
    } else {
        int kind = -1;
        for (const Leak& leak : left) {
            if (std::exchange(kind, leak.kind) != leak.kind)
                print(leakKindName(leak.kind));
            QString line = QStringLiteral("  \"%1\"").arg(leak.name);
            if (leak.kind == Leak::Object)
                line = QStringLiteral("  %1").arg(leak.name);
            else if (leak.what != 0)
                line += QStringLiteral(" %1").arg(hex(leak.what));
            if (!leak.holder.isEmpty())
                line += QStringLiteral(" in %1").arg(leak.holder);
            print(line + QStringLiteral(", since %1").arg(inWords(leak.since)));
        }
        if (left.isEmpty())
            print(QStringLiteral("nothing was left"));
    }
    return left.isEmpty() ? Fine : Found;
}

} // namespace Zentu::Inspect
