// SPDX-License-Identifier: MIT
#include "answers.h"

#include <algorithm>

namespace Zentu::Inspect {

QString hex(Address address)
{
    return QLatin1String("0x") + QString::number(address, 16);
}

static QString inQuotes(const QString& text)
{
    return QLatin1Char('"') + text + QLatin1Char('"');
}

static QString listed(const QStringList& texts)
{
    QStringList quoted;
    for (const QString& text : texts)
        quoted.append(inQuotes(text));
    return quoted.join(QLatin1String(", "));
}

static QStringList textsOf(const std::vector<std::string>& strings)
{
    QStringList result;
    for (const std::string& string : strings)
        result.append(unescaped(string));
    return result;
}

/// An action as one calls it: by its text without the mark of its key, and its address.
static QString actionName(const Program& program, Address action)
{
    const auto look = program.actions().find(action);
    QString text = look == program.actions().end() ? QString() : unescaped(look->second.text);
    text.remove(QLatin1Char('&'));
    return text.isEmpty() ? hex(action)
                          : inQuotes(text) + QLatin1String(" (") + hex(action) + QLatin1Char(')');
}

static QString reasonWithoutBackend(const Why& why, const Proxy& proxy)
{
    if (!proxy.contexts && proxy.backends.entries().empty())
        return QStringLiteral("It has no backend, and was given no contexts.");
    if (why.backends.isEmpty())
        return QStringLiteral("It has no backend.");
    QStringList having;
    for (const Why::Backend& backend : why.backends)
        having.append(backend.context);
    const QString has = QStringLiteral("it has backends for %1").arg(listed(having));
    if (!proxy.contexts)
        return QStringLiteral("It was given no contexts; %1. Nobody has called "
                              "ProxyActionManager::setCurrentContext() with one.")
            .arg(has);
    if (why.contexts.isEmpty())
        return QStringLiteral("No context is in force; %1.").arg(has);
    return QStringLiteral("No context in force has a backend for it: in force is %1, and %2.")
        .arg(listed(why.contexts), has);
}

static QString reasonWithBackend(const Program& program, const Why& why)
{
    const QString backend = why.context
        ? QStringLiteral("Its backend for %1, %2,")
              .arg(inQuotes(*why.context), actionName(program, *why.active))
        : QStringLiteral("Its backend %1").arg(actionName(program, *why.active));
    const auto look = program.actions().find(*why.active);
    if (!why.isEnabled)
        return QStringLiteral("%1 is active. The lines do not tell whether that is enabled: where "
                              "the entry is grey, it is disabled.")
            .arg(backend);
    return QStringLiteral("%1 is active and was %2 when line %3 was written.")
        .arg(backend, *why.isEnabled ? QStringLiteral("enabled") : QStringLiteral("disabled"))
        .arg(look->second.at.line);
}

static QString sinceWhen(const Proxy& proxy)
{
    if (proxy.history.empty())
        return {};
    const BackendChange& last = proxy.history.back();
    if (last.cause.line == 0)
        return QStringLiteral(" So it is since line %1.").arg(last.at.line);
    return QStringLiteral(" So it is since line %1, by line %2: %3.")
        .arg(last.at.line)
        .arg(last.cause.line)
        .arg(decoded(last.causeText));
}

std::optional<Why> whyIsIt(const Program& program, const QString& id)
{
    const Proxy* found = nullptr;
    for (const auto& [manager, ids] : program.proxyManagers()) {
        for (const auto& [name, entry] : ids.entries()) {
            const auto proxy = program.proxies().find(entry.value);
            if (unescaped(name) == id && proxy != program.proxies().end())
                found = &proxy->second;
        }
    }
    if (!found)
        return std::nullopt;

    Why why;
    why.id = id;
    why.proxy = found;
    if (found->contexts)
        why.contexts = textsOf(*found->contexts);
    for (const auto& [context, entry] : found->backends.entries())
        why.backends.append(Why::Backend{unescaped(context), entry.value, entry.isCertain});
    why.since = found->history.empty() ? found->seen : found->history.back().at;
    // One of which no line told a backend has none, as it had when it was made, unless that was
    // before the first line.
    if (!found->active && program.counts().contradictions > 0) {
        why.reason = QStringLiteral("No line tells whether it has an active backend, and not all "
                                    "lines fit together: it may have got one before the first.");
        return why;
    }
    why.active = found->active.value_or(0);
    if (const auto context = Program::activeContext(*found))
        why.context = unescaped(*context);
    if (*why.active == 0) {
        why.isEnabled = false;
        why.reason = reasonWithoutBackend(why, *found);
    } else {
        const auto look = program.actions().find(*why.active);
        if (look != program.actions().end())
            why.isEnabled = look->second.isEnabled;
        why.reason = reasonWithBackend(program, why);
    }
    why.reason += sinceWhen(*found);
    return why;
}

QStringList actionIds(const Program& program)
{
    QStringList result;
    for (const auto& [manager, ids] : program.proxyManagers()) {
        for (const auto& [id, entry] : ids.entries())
            result.append(unescaped(id));
    }
    result.sort();
    result.removeDuplicates();
    return result;
}

/// How many characters have to be added, removed or changed.
static int distance(const QString& a, const QString& b)
{
    std::vector<int> row(static_cast<std::size_t>(b.size()) + 1);
    for (std::size_t j = 0; j < row.size(); ++j)
        row[j] = static_cast<int>(j);
    for (int i = 0; i < a.size(); ++i) {
        int diagonal = std::exchange(row[0], i + 1);
        for (std::size_t j = 1; j < row.size(); ++j) {
            const int change = diagonal + (a.at(i) == b.at(static_cast<int>(j) - 1) ? 0 : 1);
            diagonal = row[j];
            row[j] = std::min({row[j] + 1, row[j - 1] + 1, change});
        }
    }
    return row.back();
}

QStringList nearestNames(const QString& name, const QStringList& names)
{
    QStringList result;
    int best = std::max(2, static_cast<int>(name.size()) / 3);
    for (const QString& candidate : names) {
        const int changes = distance(name, candidate);
        if (changes < best)
            result.clear();
        if (changes <= best)
            result.append(candidate);
        best = std::min(best, changes);
    }
    return result;
}

QString leakKindName(Leak::Kind kind)
{
    static const std::array<const char*, Leak::KindCount> names = {"subscriptions", "menus",
        "menubars", "toolbars", "objects", "watches", "documents", "pages"};
    return QLatin1String(names[kind]);
}

static QString described(std::string_view className, Address address, std::string_view name)
{
    const QString object = decoded(className) + QLatin1Char('(') + hex(address) + QLatin1Char(')');
    return name.empty() ? object : object + QLatin1Char(' ') + inQuotes(unescaped(name));
}

static void addRegistrations(
    QList<Leak>& result, Leak::Kind kind, const Registrations& registrations, const QString& holder)
{
    for (const auto& [name, entry] : registrations.entries())
        result.append(Leak{kind, unescaped(name), holder, entry.value, entry.since});
}

QList<Leak> leaks(const Program& program)
{
    QList<Leak> result;
    for (const auto& [bus, types] : program.buses()) {
        for (const auto& [name, type] : types) {
            for (const Inspect::Subscription& subscription : type.subscribers)
                result.append(Leak{Leak::Subscription, unescaped(name),
                    described(Speakers::bus, bus, {}), subscription.handler, subscription.since});
        }
    }
    for (const auto& [address, registry] : program.registries()) {
        const QString holder = described(Speakers::registry, address, {});
        addRegistrations(result, Leak::Menu, registry.of(WidgetKind::Menu), holder);
        addRegistrations(result, Leak::Menubar, registry.of(WidgetKind::Menubar), holder);
        addRegistrations(result, Leak::Toolbar, registry.of(WidgetKind::Toolbar), holder);
    }
    for (const auto& [address, pool] : program.pools()) {
        for (const PoolEntry& entry : pool)
            result.append(Leak{Leak::Object, described(entry.className, entry.object, entry.name),
                described(Speakers::pool, address, {}), entry.object, entry.since});
    }
    for (const auto& [address, watches] : program.watchers()) {
        for (const auto& [path, watch] : watches)
            result.append(Leak{Leak::Watch, unescaped(path),
                described(Speakers::watcher, address, {}), 0, watch.since});
    }
    for (const auto& [address, document] : program.documents()) {
        const QString holder =
            document.area ? described(Speakers::area, *document.area, {}) : QString();
        result.append(
            Leak{Leak::Document, unescaped(document.title), holder, address, document.since});
    }
    for (const auto& [address, dialog] : program.dialogs()) {
        for (const Inspect::Page& page : dialog.pages) {
            if (!page.isFinalized)
                result.append(Leak{Leak::Page, unescaped(page.category),
                    described(Speakers::dialog, address, {}), page.page, page.since});
        }
    }
    std::stable_sort(result.begin(), result.end(), [](const Leak& a, const Leak& b) {
        return std::make_pair(a.kind, a.since.line) < std::make_pair(b.kind, b.since.line);
    });
    return result;
}

} // namespace Zentu::Inspect
