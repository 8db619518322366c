// SPDX-License-Identifier: MIT
#include "program.h"

#include <algorithm>

namespace Zentu::Inspect {

template <typename T>
static void keepNewest(std::deque<T>& list, T entry)
{
    if (list.size() >= Program::HistorySize)
        list.pop_front();
    list.push_back(std::move(entry));
}

/// The value under a name, made if there is none; the name is copied only then.
template <typename Map>
static auto& valueAt(Map& map, std::string_view name)
{
    const auto it = map.find(name);
    return it == map.end() ? map[std::string(name)] : it->second;
}

static std::vector<std::string> stringsOf(std::string_view list)
{
    std::vector<std::string> result;
    while (const auto string = takeString(list))
        result.emplace_back(*string);
    return result;
}

static bool isList(const std::vector<std::string>& strings, std::string_view list)
{
    for (const std::string& expected : strings) {
        if (takeString(list) != expected)
            return false;
    }
    return list.empty();
}

static void assign(std::string& to, std::string_view text)
{
    if (to != text)
        to = text;
}

std::vector<std::string> Contexts::all() const
{
    std::vector<std::string> result = ordinary;
    result.insert(result.end(), global.begin(), global.end());
    return result;
}

const Proxy* Program::proxyById(std::string_view id) const
{
    for (const auto& [manager, ids] : m_proxyManagers) {
        const Registrations::Entry* const entry = ids.find(id);
        const auto proxy = entry ? m_proxies.find(entry->value) : m_proxies.end();
        if (proxy != m_proxies.end())
            return &proxy->second;
    }
    return nullptr;
}

std::optional<std::string> Program::activeContext(const Proxy& proxy)
{
    if (!proxy.active.value_or(0) || !proxy.contexts)
        return std::nullopt;
    for (const std::string& context : *proxy.contexts) {
        const Registrations::Entry* const entry = proxy.backends.find(context);
        if (!entry || entry->value == 0)
            continue;
        // The first one with a backend is the active one's, unless something is amiss.
        if (entry->value == *proxy.active && entry->isCertain)
            return context;
        if (entry->isCertain)
            return std::nullopt;
    }
    return std::nullopt;
}

void Program::feed(const Line& line)
{
    ++m_counts.lines;
    m_now.line = m_counts.lines;
    if (!line.time.empty())
        m_now.setTime(line.time);

    if (line.reading == Reading::Note) {
        ++m_counts.readings[static_cast<std::size_t>(line.reading)];
        takeNote(line);
        return;
    }
    m_noted = 0;
    const bool isOurLine = line.reading != Reading::Understood || isOurs(line);
    const Reading reading = isOurLine ? line.reading : Reading::Foreign;
    ++m_counts.readings[static_cast<std::size_t>(reading)];
    if (reading == Reading::Understood) {
        ++m_counts.texts[static_cast<std::size_t>(line.info->id)];
        if (!line.isOwnSpeaker && m_derived.size() < HistorySize
            && m_derived.find(line.speaker.name) == m_derived.end())
            m_derived.emplace(line.speaker.name);
        replay(line);
    }
    const bool isMessage = reading == Reading::Understood
        && (line.info->channel == Channel::Warning || line.info->channel == Channel::Critical);
    if (isMessage || reading == Reading::Damaged || reading == Reading::Unknown)
        remark(line);
}

void Program::takeNote(const Line& note)
{
    if (m_noted == 0)
        return;
    if (note.note == Note::Handler) {
        m_handlerNames[m_noted] = note.body;
    } else if (note.note == Note::Backend) {
        const std::string_view state = note.body.substr(0, note.body.find(','));
        if (state == "enabled" || state == "disabled")
            m_actions[m_noted].isEnabled = state == "enabled";
    }
}

std::string_view Program::handlerName(Address handler) const
{
    const auto name = m_handlerNames.find(handler);
    return name == m_handlerNames.end() ? std::string_view() : name->second;
}

// A text without items could be anybody's, so its speaker must have said more before.
bool Program::isOurs(const Line& line) const
{
    if (line.isOwnSpeaker || !line.info->items.empty())
        return true;
    const Address speaker = line.speaker.address;
    switch (line.info->family) {
    case Family::Dialog:
        return m_dialogs.count(speaker) > 0;
    case Family::Registry:
        return m_registries.count(speaker) > 0;
    case Family::Pool:
        return m_pools.count(speaker) > 0;
    default:
        return false;
    }
}

void Program::replay(const Line& line)
{
    switch (line.info->family) {
    case Family::Bus:
        replayBus(line);
        break;
    case Family::Contexts:
        replayContexts(line);
        break;
    case Family::Proxy:
        replayProxy(line);
        break;
    case Family::Proxies:
        replayProxies(line);
        break;
    case Family::Registry:
        replayRegistry(line);
        break;
    case Family::Document:
        replayDocument(line);
        break;
    case Family::Area:
        replayArea(line);
        break;
    case Family::Dialog:
        replayDialog(line);
        break;
    case Family::CommandLine:
        break;
    case Family::Pool:
        replayPool(line);
        break;
    case Family::Watcher:
        replayWatcher(line);
        break;
    }
}

static bool removeHandler(std::vector<Subscription>& subscribers, Address handler)
{
    const auto it = std::find_if(subscribers.begin(), subscribers.end(),
        [=](const Subscription& subscription) { return subscription.handler == handler; });
    if (it == subscribers.end())
        return false;
    subscribers.erase(it);
    return true;
}

static void countPost(EventType& type, std::string_view thread, int mode)
{
    ++type.postCount;
    for (PostCount& count : type.posts) {
        if (count.mode == mode && count.thread == thread) {
            ++count.posts;
            return;
        }
    }
    type.posts.push_back(PostCount{std::string(thread), mode, 1});
}

void Program::replayBus(const Line& line)
{
    EventTypes& types = m_buses[line.speaker.address];
    const Address handler = line.items[0].address;
    const std::string_view name = line.items[1].text;
    switch (line.info->id) {
    case Text::Subscribe: {
        EventType& type = valueAt(types, name);
        if (removeHandler(type.subscribers, handler))
            contradict("subscribed twice to \"" + std::string(name) + '"');
        type.subscribers.insert(type.subscribers.begin(), Subscription{handler, m_now});
        type.hadSubscriber = true;
        m_noted = handler;
        break;
    }
    case Text::Unsubscribe:
        if (!removeHandler(valueAt(types, name).subscribers, handler))
            contradict("unsubscribed from \"" + std::string(name) + "\" without a subscription");
        break;
    case Text::UnsubscribeAll:
        for (auto& [key, type] : types)
            removeHandler(type.subscribers, handler);
        m_handlerNames.erase(handler);
        break;
    case Text::Post: {
        // A null event has no type.
        if (line.items[0].address == 0)
            break;
        EventType& type = valueAt(types, line.items[0].field("type = "));
        countPost(type, line.thread, static_cast<int>(line.items[1].number));
        type.lastPost = m_now;
        if (type.subscribers.empty()) {
            ++type.unheard;
            type.lastUnheard = m_now;
        }
        break;
    }
    default:
        break;
    }
}

static void removeContext(std::vector<std::string>& list, std::string_view context)
{
    list.erase(std::remove(list.begin(), list.end(), context), list.end());
}

static void moveToFront(std::vector<std::string>& list, std::string_view context)
{
    removeContext(list, context);
    list.emplace(list.begin(), context);
}

void Program::replayContexts(const Line& line)
{
    Contexts& contexts = m_contexts[line.speaker.address];
    const std::string_view context = line.items[0].text;
    switch (line.info->id) {
    case Text::PushContext:
        moveToFront(contexts.ordinary, context);
        break;
    case Text::RemoveContext:
        removeContext(contexts.ordinary, context);
        break;
    case Text::AddGlobalContext:
        moveToFront(contexts.global, context);
        break;
    case Text::RemoveGlobalContext:
        removeContext(contexts.global, context);
        break;
    default:
        return;
    }
    Switch change;
    change.at = m_now;
    change.what = line.info->id;
    change.context = context;
    change.manager = line.speaker.address;
    change.now = contexts.all();
    keepNewest(m_switches, std::move(change));
    ++m_switchCount;
    m_cause = m_now;
    m_causeText = line.body.substr(line.speaker.raw.size() + 1);
}

Proxy& Program::proxyAt(const Item& item)
{
    Proxy& proxy = m_proxies[item.address];
    if (proxy.seen.line == 0)
        proxy.seen = m_now;
    return proxy;
}

void Program::look(const Item& action)
{
    m_noted = action.address;
    if (action.address == 0)
        return;
    ActionLook& known = m_actions[action.address];
    assign(known.text, action.field("text="));
    const std::string_view enabled = action.field("enabled=");
    known.isEnabled = enabled.empty() ? std::nullopt : std::optional<bool>(enabled == "true");
    known.at = m_now;
}

void Program::replayProxy(const Line& line)
{
    Proxy* proxy = &proxyAt(line.speaker);
    const Item& first = line.items[0];
    const Item& second = line.items[1];
    const auto startAnew = [&](const char* why) {
        contradict(why);
        std::vector<std::string> ids = std::move(proxy->ids);
        *proxy = Proxy();
        proxy->seen = m_now;
        proxy->ids = std::move(ids);
    };
    assign(proxy->look, line.speaker.field("text="));

    switch (line.info->id) {
    case Text::AddBackend:
        look(second);
        if (!proxy->backends.add(first.text, second.address, m_now)) {
            startAnew("a proxy got a second backend for a context");
            proxy->backends.add(first.text, second.address, m_now);
        }
        break;
    case Text::RemoveBackend:
        if (!proxy->backends.removeOne(first.address))
            contradict("a backend was removed that was not there");
        break;
    case Text::RemoveBackendContext:
        if (!proxy->backends.removeName(first.text))
            contradict("a backend was removed that was not there");
        break;
    case Text::BackendDestroyed:
        // What was not registered any more is no contradiction: nobody stopped listening to it.
        proxy->backends.removeOne(first.address);
        m_actions.erase(first.address);
        break;
    case Text::SetContexts:
        if (proxy->contexts && isList(*proxy->contexts, first.text))
            startAnew("a proxy was given the contexts that it had");
        proxy->contexts = stringsOf(first.text);
        proxy->contextsSince = m_now;
        if (!m_switches.empty())
            ++m_switches.back().asked;
        return;
    case Text::ActiveBackend:
        look(first);
        setActive(*proxy, first.address);
        return;
    default:
        return;
    }
    m_cause = m_now;
    m_causeText = std::string(infoOf(line.info->id).text) + ' ' + std::string(first.raw);
}

void Program::setActive(Proxy& proxy, Address backend)
{
    const Address before = proxy.active.value_or(0);
    proxy.active = backend;
    // What a backend's coming or going does is none of the contexts' doing.
    if (!m_switches.empty() && m_cause.line == m_switches.back().at.line) {
        Switch& current = m_switches.back();
        ++(before == 0 ? current.came : backend == 0 ? current.gone : current.changed);
    }
    keepNewest(
        proxy.history, BackendChange{m_now, backend, activeContext(proxy), m_cause, m_causeText});
}

void Program::replayProxies(const Line& line)
{
    if (line.info->id != Text::RegisterProxy)
        return;
    const std::string_view id = line.items[0].text;
    Registrations& ids = m_proxyManagers[line.speaker.address];
    Proxy& proxy = proxyAt(line.items[1]);
    assign(proxy.look, line.items[1].field("text="));
    if (!ids.add(id, line.items[1].address, m_now)) {
        // Where it stood is another manager now.
        contradict("an identifier was registered twice");
        ids.clear();
        ids.add(id, line.items[1].address, m_now);
    }
    if (std::find(proxy.ids.begin(), proxy.ids.end(), id) == proxy.ids.end())
        proxy.ids.emplace_back(id);
}

static WidgetKind widgetKind(Text text)
{
    switch (text) {
    case Text::RegisterMenubar:
    case Text::MenubarDestroyed:
        return WidgetKind::Menubar;
    case Text::RegisterToolbar:
    case Text::ToolbarDestroyed:
        return WidgetKind::Toolbar;
    default:
        return WidgetKind::Menu;
    }
}

void Program::replayRegistry(const Line& line)
{
    Registry& registry = m_registries[line.speaker.address];
    Registrations& widgets = registry.widgets[static_cast<std::size_t>(widgetKind(line.info->id))];
    const Item& first = line.items[0];
    switch (line.info->id) {
    case Text::RegisterMenu:
    case Text::RegisterMenubar:
    case Text::RegisterToolbar:
        if (!widgets.add(first.text, line.items[1].address, m_now)) {
            contradict("an identifier was registered twice");
            registry = Registry();
            widgets.add(first.text, line.items[1].address, m_now);
        }
        break;
    case Text::MenuDestroyed:
    case Text::MenubarDestroyed:
    case Text::ToolbarDestroyed:
        widgets.removeOne(first.address);
        break;
    case Text::ClearRegistry:
        registry = Registry();
        break;
    default:
        break;
    }
}

Document& Program::documentAt(const Item& item)
{
    Document& document = m_documents[item.address];
    if (document.since.line == 0)
        document.since = m_now;
    assign(document.title, item.quoted());
    return document;
}

void Program::dropDocument(Address document)
{
    const auto it = m_documents.find(document);
    if (it == m_documents.end())
        return;
    if (it->second.area) {
        std::vector<Address>& documents = m_areas[*it->second.area].documents;
        documents.erase(std::remove(documents.begin(), documents.end(), document), documents.end());
    }
    m_documents.erase(it);
}

void Program::replayDocument(const Line& line)
{
    if (line.speaker.address == 0)
        return;
    if (line.info->id == Text::Destroying)
        dropDocument(line.speaker.address);
    else if (line.info->id == Text::Closed)
        documentAt(line.speaker).isClosed = true;
    else
        documentAt(line.speaker);
}

void Program::replayArea(const Line& line)
{
    Area& area = m_areas[line.speaker.address];
    const Item& window = line.items[0];
    switch (line.info->id) {
    case Text::AddView: {
        // Its end is traced, so one that is added again was taken out before.
        if (std::find(area.documents.begin(), area.documents.end(), window.address)
            != area.documents.end()) {
            contradict("a document was added twice");
            dropDocument(window.address);
        }
        Document& document = documentAt(window);
        document.area = line.speaker.address;
        document.since = m_now;
        document.isClosed = false;
        area.documents.push_back(window.address);
        break;
    }
    case Text::RemoveView: {
        documentAt(window).area.reset();
        area.documents.erase(
            std::remove(area.documents.begin(), area.documents.end(), window.address),
            area.documents.end());
        break;
    }
    case Text::CurrentWindow:
        area.current = window.address;
        area.currentSince = m_now;
        break;
    case Text::ActiveWindow:
        if (window.address != 0)
            documentAt(window);
        break;
    default:
        break;
    }
}

static Page* pageOf(Dialog& dialog, Address page)
{
    const auto it = std::find_if(dialog.pages.begin(), dialog.pages.end(),
        [=](const Page& candidate) { return candidate.page == page; });
    return it == dialog.pages.end() ? nullptr : &*it;
}

void Program::replayDialog(const Line& line)
{
    Dialog& dialog = m_dialogs[line.speaker.address];
    const Item& page = line.items[0];
    switch (line.info->id) {
    case Text::BuildTree:
        dialog = Dialog();
        break;
    case Text::InitializePage:
        dialog.pages.push_back(Page{page.address, std::string(page.field(", category = ")), m_now});
        dialog.isDone = false;
        break;
    case Text::ShowPage:
        dialog.shown = page.address;
        dialog.isDone = false;
        break;
    case Text::FinalizePage:
        if (Page* const known = pageOf(dialog, page.address))
            known->isFinalized = true;
        break;
    case Text::Done:
        dialog.isDone = true;
        break;
    default:
        break;
    }
    if (dialog.since.line == 0)
        dialog.since = m_now;
}

static bool removeObject(std::vector<PoolEntry>& pool, Address object)
{
    const auto it = std::find_if(
        pool.begin(), pool.end(), [=](const PoolEntry& entry) { return entry.object == object; });
    if (it == pool.end())
        return false;
    pool.erase(it);
    return true;
}

void Program::replayPool(const Line& line)
{
    std::vector<PoolEntry>& pool = m_pools[line.speaker.address];
    const Item& object = line.items[0];
    switch (line.info->id) {
    case Text::AddObject:
        if (removeObject(pool, object.address))
            contradict("an object was added twice");
        pool.push_back(PoolEntry{object.address, std::string(object.name),
            std::string(object.field(", name = ")), m_now});
        break;
    case Text::RemoveObject:
        if (!removeObject(pool, object.address))
            contradict("an object was removed that was not there");
        break;
    case Text::ObjectDestroyed:
        removeObject(pool, object.address);
        break;
    case Text::ClearPool:
        pool.clear();
        break;
    default:
        break;
    }
}

void Program::replayWatcher(const Line& line)
{
    Watches& watches = m_watchers[line.speaker.address];
    const std::string_view path = line.items[0].text;
    switch (line.info->id) {
    case Text::StartWatching:
    case Text::Rewatch: {
        Watch& watch = valueAt(watches, path);
        watch.isPaused = false;
        if (watch.since.line == 0)
            watch.since = m_now;
        break;
    }
    case Text::FileChanged: {
        Watch& watch = valueAt(watches, path);
        watch.isPaused = true;
        if (watch.since.line == 0)
            watch.since = m_now;
        break;
    }
    // One that was begun anew during the pause is watched, whatever becomes of the pause.
    case Text::CancelRewatch:
    case Text::StopWatching:
        if (const auto it = watches.find(path);
            it != watches.end() && (line.is(Text::StopWatching) || it->second.isPaused))
            watches.erase(it);
        break;
    default:
        break;
    }
}

void Program::remark(const Line& line)
{
    ++m_counts.remarks;
    const Channel channel = line.info ? line.info->channel : Channel::Trace;
    keepNewest(m_remarks, Remark{m_now, line.reading, channel, std::string(line.body)});
}

void Program::contradict(std::string what)
{
    ++m_counts.contradictions;
    keepNewest(m_contradictions, Contradiction{m_now, std::move(what)});
}

} // namespace Zentu::Inspect
