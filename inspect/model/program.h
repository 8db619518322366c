// SPDX-License-Identifier: MIT
#pragma once

#include "registrations.h"

#include <deque>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <unordered_map>
#include <vector>

namespace Zentu::Inspect {

/// A handler on the list of a type.
struct Subscription
{
    Address handler = 0;
    Moment since;
};

/// How often a type was posted from a thread in a mode.
struct PostCount
{
    std::string thread;
    int mode = 0;
    qint64 posts = 0;
};

/// What happens with one type of events.
struct EventType
{
    std::vector<Subscription> subscribers; ///< In the order of delivery: the newest first
    std::vector<PostCount> posts;
    qint64 postCount = 0;
    qint64 unheard = 0; ///< Posts at a moment when nobody was subscribed
    Moment lastPost;
    Moment lastUnheard;
    bool hadSubscriber = false;
};

using EventTypes = std::map<std::string, EventType, std::less<>>;

/// The two lists of a context manager, newest first.
struct Contexts
{
    std::vector<std::string> ordinary;
    std::vector<std::string> global;

    std::vector<std::string> all() const;
};

/// One change of the active backend.
struct BackendChange
{
    Moment at;
    Address backend = 0;                ///< Null where none became active
    std::optional<std::string> context; ///< Whose backend it is, where that is known
    Moment cause;                       ///< The line before it that changed contexts or backends
    std::string causeText;              ///< That line's text and name
};

/// A proxy action.
struct Proxy
{
    Moment seen;
    std::string look; ///< Its text as last printed, escaped
    std::vector<std::string> ids;
    std::optional<std::vector<std::string>> contexts; ///< None if it was never given any
    Moment contextsSince;
    Registrations backends;
    std::optional<Address> active;     ///< Null for none; none if no line told
    std::deque<BackendChange> history; ///< The newest Program::HistorySize changes
};

/// What a printed action told of itself.
struct ActionLook
{
    std::string text;              ///< Escaped
    std::optional<bool> isEnabled; ///< Where the running Qt prints it
    Moment at;
};

/// Menus, menubars or toolbars of one registry.
enum class WidgetKind { Menu, Menubar, Toolbar };

struct Registry
{
    std::array<Registrations, 3> widgets;

    const Registrations& of(WidgetKind kind) const
    {
        return widgets[static_cast<std::size_t>(kind)];
    }
};

/// An object in a pool.
struct PoolEntry
{
    Address object = 0;
    std::string className;
    std::string name; ///< Escaped
    Moment since;
};

struct Document
{
    std::string title;           ///< Escaped
    std::optional<Address> area; ///< Where it was added to one
    Moment since;
    bool isClosed = false;
};

struct Area
{
    std::vector<Address> documents; ///< In the order of their addition
    std::optional<Address> current; ///< Null for none; none if no line told
    Moment currentSince;
};

struct Page
{
    Address page = 0;
    std::string category; ///< Escaped
    Moment since;
    bool isFinalized = false;
};

struct Dialog
{
    Moment since;
    std::vector<Page> pages; ///< Those that were initialized, in that order
    Address shown = 0;
    bool isDone = false;
};

struct Watch
{
    Moment since;
    bool isPaused = false; ///< Between a change and the time when it is watched again
};

using Watches = std::map<std::string, Watch, std::less<>>;

/// A change of the contexts, and what it did to the proxies.
struct Switch
{
    Moment at;
    Text what = Text::PushContext;
    std::string context; ///< Escaped
    Address manager = 0;
    std::vector<std::string> now; ///< All contexts after it
    int asked = 0;                ///< Proxies that were given another list
    int came = 0;                 ///< Proxies that have a backend now, and had none
    int gone = 0;                 ///< Proxies that have none now, and had one
    int changed = 0;              ///< Proxies that have another one
};

/// A message, or a line that could not be read.
struct Remark
{
    Moment at;
    Reading reading = Reading::Understood;
    Channel channel = Channel::Warning;
    std::string text;
};

/// What a line said that cannot be after the lines before it.
struct Contradiction
{
    Moment at;
    std::string what;
};

/// How many lines of which kind there were.
struct Counts
{
    qint64 lines = 0;
    std::array<qint64, 5> readings = {};
    std::array<qint64, TextTable.size()> texts = {};
    qint64 remarks = 0;
    qint64 contradictions = 0;

    qint64 of(Reading reading) const { return readings[static_cast<std::size_t>(reading)]; }
    qint64 of(Text text) const { return texts[static_cast<std::size_t>(text)]; }
};

/**
 * The state of a program that uses the library, replayed from its lines.
 *
 * Feed it all lines in their order, the host's own included. What the lines do not tell is left
 * open: whoever was there before the first line is known from the moment when a line names it. A
 * line that cannot follow those before it is believed, what it contradicts is forgotten, and
 * contradictions() tells.
 *
 * Texts are kept as they are printed, escaped; unescaped() gives what they were. What has been is
 * remembered up to HistorySize entries each, so that the memory grows with what the program
 * registers, and not with the lines.
 */
class Program
{
public:
    static constexpr std::size_t HistorySize = 200;

    /// Replays one line, as readLine() gives it.
    void feed(const Line& line);
    /// Reads and replays one line.
    void feed(std::string_view text) { feed(readLine(text)); }

    const Counts& counts() const { return m_counts; }
    /// Line and time of the newest line.
    const Moment& now() const { return m_now; }

    const std::map<Address, EventTypes>& buses() const { return m_buses; }
    const std::map<Address, Contexts>& contextManagers() const { return m_contexts; }
    const std::unordered_map<Address, Proxy>& proxies() const { return m_proxies; }
    /// Identifiers by the manager in which they are registered.
    const std::map<Address, Registrations>& proxyManagers() const { return m_proxyManagers; }
    const std::unordered_map<Address, ActionLook>& actions() const { return m_actions; }
    /// Class and name of a handler, where a recording has them; else empty.
    std::string_view handlerName(Address handler) const;
    const std::map<Address, Registry>& registries() const { return m_registries; }
    const std::map<Address, std::vector<PoolEntry>>& pools() const { return m_pools; }
    const std::map<Address, Document>& documents() const { return m_documents; }
    const std::map<Address, Area>& areas() const { return m_areas; }
    const std::map<Address, Dialog>& dialogs() const { return m_dialogs; }
    const std::map<Address, Watches>& watchers() const { return m_watchers; }

    /// The newest changes of contexts, the one under way last.
    const std::deque<Switch>& switches() const { return m_switches; }
    qint64 switchCount() const { return m_switchCount; }
    /// The newest messages and lines that could not be read.
    const std::deque<Remark>& remarks() const { return m_remarks; }
    const std::deque<Contradiction>& contradictions() const { return m_contradictions; }
    /// Classes of speakers whose lines were understood by their form alone.
    const std::set<std::string, std::less<>>& derivedSpeakers() const { return m_derived; }

    /// The proxy with the identifier, in whichever manager; null if there is none.
    const Proxy* proxyById(std::string_view id) const;
    /// The context for which a backend is active, if there is one and the lines tell.
    static std::optional<std::string> activeContext(const Proxy& proxy);

private:
    bool isOurs(const Line& line) const;
    void replay(const Line& line);
    void replayBus(const Line& line);
    void replayContexts(const Line& line);
    void replayProxy(const Line& line);
    void setActive(Proxy& proxy, Address backend);
    void replayProxies(const Line& line);
    void replayRegistry(const Line& line);
    void replayDocument(const Line& line);
    void replayArea(const Line& line);
    void replayDialog(const Line& line);
    void replayPool(const Line& line);
    void replayWatcher(const Line& line);

    Proxy& proxyAt(const Item& item);
    Document& documentAt(const Item& item);
    void dropDocument(Address document);
    void look(const Item& action);
    void takeNote(const Line& note);
    void remark(const Line& line);
    void contradict(std::string what);

    Counts m_counts;
    Moment m_now;
    std::map<Address, EventTypes> m_buses;
    std::map<Address, Contexts> m_contexts;
    std::unordered_map<Address, Proxy> m_proxies;
    std::map<Address, Registrations> m_proxyManagers;
    std::unordered_map<Address, ActionLook> m_actions;
    std::unordered_map<Address, std::string> m_handlerNames;
    Address m_noted = 0; ///< Of the newest line, what a note is about
    std::map<Address, Registry> m_registries;
    std::map<Address, std::vector<PoolEntry>> m_pools;
    std::map<Address, Document> m_documents;
    std::map<Address, Area> m_areas;
    std::map<Address, Dialog> m_dialogs;
    std::map<Address, Watches> m_watchers;

    std::deque<Switch> m_switches;
    qint64 m_switchCount = 0;
    Moment m_cause;
    std::string m_causeText;
    std::deque<Remark> m_remarks;
    std::deque<Contradiction> m_contradictions;
    std::set<std::string, std::less<>> m_derived;
};

} // namespace Zentu::Inspect
