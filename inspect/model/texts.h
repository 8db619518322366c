// SPDX-License-Identifier: MIT
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace Zentu::Inspect {

/// Whose line it is.
enum class Family {
    Bus,
    Contexts,
    Proxy,
    Proxies,
    Registry,
    Document,
    Area,
    Dialog,
    CommandLine,
    Pool,
    Watcher
};

/// Where a line goes: to the trace, or to Qt's message handler.
enum class Channel { Trace, Info, Warning, Critical };

/// Every text that the library writes, in the order of TextTable.
enum class Text : unsigned char {
    Subscribe,
    Unsubscribe,
    UnsubscribeAll,
    Post,
    DuplicateSubscription,
    UnmatchedUnsubscribe,
    PushContext,
    RemoveContext,
    AddGlobalContext,
    RemoveGlobalContext,
    UnknownContext,
    AddBackend,
    RemoveBackend,
    RemoveBackendContext,
    SetContexts,
    ActiveBackend,
    BackendDestroyed,
    DuplicateBackend,
    UnknownBackend,
    UnknownBackendContext,
    RegisterProxy,
    UpdateProxies,
    DuplicateProxy,
    RegisterMenu,
    RegisterMenubar,
    RegisterToolbar,
    MenuDestroyed,
    MenubarDestroyed,
    ToolbarDestroyed,
    ClearRegistry,
    DuplicateMenu,
    DuplicateMenubar,
    DuplicateToolbar,
    TryToClose,
    Destroying,
    Closed,
    ActiveWindow,
    AddView,
    RemoveView,
    CurrentWindow,
    DuplicateView,
    ForeignView,
    ForeignCurrentWindow,
    BuildTree,
    ItemChanged,
    InitializePage,
    ShowPage,
    ApplyPage,
    FinalizePage,
    Done,
    Accept,
    Reject,
    Apply,
    DuplicateCategory,
    NoPageWidget,
    ParseArguments,
    IncorrectOption,
    DuplicateOption,
    AddObject,
    RemoveObject,
    ClearPool,
    ObjectDestroyed,
    DuplicateObject,
    UnknownObject,
    StartWatching,
    StopWatching,
    FileChanged,
    Rewatch,
    CancelRewatch,
    MissingFile,
    NotAFile,
    Count
};

/// How a line is put together.
struct TextInfo
{
    Text id;
    Family family;
    Channel channel;
    /// The class that the speaker prints as where a host has not derived from it; empty where
    /// nobody speaks. Classes that print as a class of Qt's stand with that one.
    std::string_view speaker;
    std::string_view text;
    /// The items behind it: o an object in parentheses, h an address, s a string, l a list of
    /// strings, n a number.
    std::string_view items;
    /// What follows the items.
    std::string_view end;
};

namespace Speakers {
inline constexpr std::string_view bus = "Zentu::EventManager";
inline constexpr std::string_view contexts = "Zentu::ContextManager";
inline constexpr std::string_view proxy = "QAction";
inline constexpr std::string_view proxies = "Zentu::ProxyActionManager";
inline constexpr std::string_view registry = "Zentu::ActionManager";
inline constexpr std::string_view document = "MdiWindow";
inline constexpr std::string_view area = "Zentu::MdiArea";
inline constexpr std::string_view dialog = "Zentu::OptionDialog";
inline constexpr std::string_view nobody;
inline constexpr std::string_view pool = "Zentu::ObjectPool";
inline constexpr std::string_view watcher = "Zentu::FileWatcher";
} // namespace Speakers

// clang-format off
inline constexpr std::array<TextInfo, static_cast<std::size_t>(Text::Count)> TextTable = {{
    {Text::Subscribe, Family::Bus, Channel::Trace, Speakers::bus, "new event subscription:", "hs", ""},
    {Text::Unsubscribe, Family::Bus, Channel::Trace, Speakers::bus, "unsubscribe event:", "hs", ""},
    {Text::UnsubscribeAll, Family::Bus, Channel::Trace, Speakers::bus, "unsubscribe all events for:", "h", ""},
    {Text::Post, Family::Bus, Channel::Trace, Speakers::bus, "post event", "on", ""},
    {Text::DuplicateSubscription, Family::Bus, Channel::Warning, Speakers::bus, "duplicated event subscription:", "hs", ""},
    {Text::UnmatchedUnsubscribe, Family::Bus, Channel::Warning, Speakers::bus, "unsubscribe event:", "hs", "no match found"},
    {Text::PushContext, Family::Contexts, Channel::Trace, Speakers::contexts, "push context:", "s", ""},
    {Text::RemoveContext, Family::Contexts, Channel::Trace, Speakers::contexts, "remove context", "s", ""},
    {Text::AddGlobalContext, Family::Contexts, Channel::Trace, Speakers::contexts, "add global context", "s", ""},
    {Text::RemoveGlobalContext, Family::Contexts, Channel::Trace, Speakers::contexts, "remove global context", "s", ""},
    {Text::UnknownContext, Family::Contexts, Channel::Warning, Speakers::contexts, "context not found", "s", ""},
    {Text::AddBackend, Family::Proxy, Channel::Trace, Speakers::proxy, "add backend action", "so", ""},
    {Text::RemoveBackend, Family::Proxy, Channel::Trace, Speakers::proxy, "remove backend action", "o", ""},
    {Text::RemoveBackendContext, Family::Proxy, Channel::Trace, Speakers::proxy, "remove backend context", "so", ""},
    {Text::SetContexts, Family::Proxy, Channel::Trace, Speakers::proxy, "set context", "l", ""},
    {Text::ActiveBackend, Family::Proxy, Channel::Trace, Speakers::proxy, "change active backend action to", "o", ""},
    {Text::BackendDestroyed, Family::Proxy, Channel::Trace, Speakers::proxy, "backend action destroyed", "o", ""},
    {Text::DuplicateBackend, Family::Proxy, Channel::Warning, Speakers::proxy, "duplicated backend action register", "so", ""},
    {Text::UnknownBackend, Family::Proxy, Channel::Warning, Speakers::proxy, "remove backend action", "o", "not found"},
    {Text::UnknownBackendContext, Family::Proxy, Channel::Warning, Speakers::proxy, "remove backend context", "s", "not found"},
    {Text::RegisterProxy, Family::Proxies, Channel::Trace, Speakers::proxies, "register proxy action", "so", ""},
    {Text::UpdateProxies, Family::Proxies, Channel::Trace, Speakers::nobody, "set context and update for all proxy actions", "", ""},
    {Text::DuplicateProxy, Family::Proxies, Channel::Critical, Speakers::proxies, "register proxy action", "so", "duplicated ID"},
    {Text::RegisterMenu, Family::Registry, Channel::Trace, Speakers::registry, "register menu", "so", ""},
    {Text::RegisterMenubar, Family::Registry, Channel::Trace, Speakers::registry, "register menubar", "so", ""},
    {Text::RegisterToolbar, Family::Registry, Channel::Trace, Speakers::registry, "register toolbar", "so", ""},
    {Text::MenuDestroyed, Family::Registry, Channel::Trace, Speakers::registry, "menu destroyed", "o", ""},
    {Text::MenubarDestroyed, Family::Registry, Channel::Trace, Speakers::registry, "menubar destroyed", "o", ""},
    {Text::ToolbarDestroyed, Family::Registry, Channel::Trace, Speakers::registry, "toolbar destroyed", "o", ""},
    {Text::ClearRegistry, Family::Registry, Channel::Trace, Speakers::registry, "clear", "", ""},
    {Text::DuplicateMenu, Family::Registry, Channel::Critical, Speakers::registry, "register menu", "so", "duplicated ID"},
    {Text::DuplicateMenubar, Family::Registry, Channel::Critical, Speakers::registry, "register menubar", "so", "duplicated ID"},
    {Text::DuplicateToolbar, Family::Registry, Channel::Critical, Speakers::registry, "register toolbar", "so", "duplicated ID"},
    {Text::TryToClose, Family::Document, Channel::Trace, Speakers::document, "try to close", "", ""},
    {Text::Destroying, Family::Document, Channel::Trace, Speakers::document, "destroying", "", ""},
    {Text::Closed, Family::Document, Channel::Info, Speakers::document, "closed", "", ""},
    {Text::ActiveWindow, Family::Area, Channel::Trace, Speakers::area, "active window:", "o", ""},
    {Text::AddView, Family::Area, Channel::Info, Speakers::area, "add view", "o", ""},
    {Text::RemoveView, Family::Area, Channel::Info, Speakers::area, "remove view:", "o", ""},
    {Text::CurrentWindow, Family::Area, Channel::Info, Speakers::area, "current window changed:", "o", ""},
    {Text::DuplicateView, Family::Area, Channel::Warning, Speakers::area, "add view:", "o", "already added"},
    {Text::ForeignView, Family::Area, Channel::Warning, Speakers::area, "remove view:", "o", "not belong to this area"},
    {Text::ForeignCurrentWindow, Family::Area, Channel::Warning, Speakers::area, "set current window:", "o", "not belong to this area"},
    {Text::BuildTree, Family::Dialog, Channel::Trace, Speakers::dialog, "initialze catalog tree", "", ""},
    {Text::ItemChanged, Family::Dialog, Channel::Trace, Speakers::dialog, "item changed", "", ""},
    {Text::InitializePage, Family::Dialog, Channel::Trace, Speakers::dialog, "initialize", "o", ""},
    {Text::ShowPage, Family::Dialog, Channel::Trace, Speakers::dialog, "show option page", "o", ""},
    {Text::ApplyPage, Family::Dialog, Channel::Trace, Speakers::dialog, "apply for", "o", ""},
    {Text::FinalizePage, Family::Dialog, Channel::Trace, Speakers::dialog, "finalize", "o", ""},
    {Text::Done, Family::Dialog, Channel::Trace, Speakers::dialog, "done", "n", ""},
    {Text::Accept, Family::Dialog, Channel::Info, Speakers::dialog, "accept", "", ""},
    {Text::Reject, Family::Dialog, Channel::Info, Speakers::dialog, "reject", "", ""},
    {Text::Apply, Family::Dialog, Channel::Info, Speakers::dialog, "apply", "", ""},
    {Text::DuplicateCategory, Family::Dialog, Channel::Critical, Speakers::dialog, "category already exists", "o", ""},
    {Text::NoPageWidget, Family::Dialog, Channel::Critical, Speakers::dialog, "can not get page widget from", "o", ""},
    {Text::ParseArguments, Family::CommandLine, Channel::Trace, Speakers::nobody, "CmdLineParser parse", "l", ""},
    {Text::IncorrectOption, Family::CommandLine, Channel::Critical, Speakers::nobody, "CmdLineParser incorrect option form", "s", ""},
    {Text::DuplicateOption, Family::CommandLine, Channel::Critical, Speakers::nobody, "CmdLineParser duplicated option form", "s", ""},
    {Text::AddObject, Family::Pool, Channel::Trace, Speakers::pool, "add object:", "o", ""},
    {Text::RemoveObject, Family::Pool, Channel::Trace, Speakers::pool, "remove object:", "o", ""},
    {Text::ClearPool, Family::Pool, Channel::Trace, Speakers::pool, "clear all objects", "", ""},
    {Text::ObjectDestroyed, Family::Pool, Channel::Trace, Speakers::pool, "object destoryed:", "o", ""},
    {Text::DuplicateObject, Family::Pool, Channel::Warning, Speakers::pool, "add object:", "o", "already exists"},
    {Text::UnknownObject, Family::Pool, Channel::Warning, Speakers::pool, "remove object:", "o", "not found"},
    {Text::StartWatching, Family::Watcher, Channel::Trace, Speakers::watcher, "start watching", "s", ""},
    {Text::StopWatching, Family::Watcher, Channel::Trace, Speakers::watcher, "stop watching:", "s", ""},
    {Text::FileChanged, Family::Watcher, Channel::Trace, Speakers::watcher, "file changed:", "s", ""},
    {Text::Rewatch, Family::Watcher, Channel::Trace, Speakers::watcher, "re-watch:", "s", ""},
    {Text::CancelRewatch, Family::Watcher, Channel::Trace, Speakers::watcher, "cancel re-watch:", "s", "file not exists"},
    {Text::MissingFile, Family::Watcher, Channel::Critical, Speakers::watcher, "failed to watch:", "s", "not exist"},
    {Text::NotAFile, Family::Watcher, Channel::Critical, Speakers::watcher, "failed to watch:", "s", "not a file"},
}};
// clang-format on

constexpr bool isInOrder()
{
    for (std::size_t i = 0; i < TextTable.size(); ++i) {
        if (TextTable[i].id != static_cast<Text>(i))
            return false;
    }
    return true;
}
static_assert(isInOrder(), "the table is looked up by the number of its text");

constexpr const TextInfo& infoOf(Text text)
{
    return TextTable[static_cast<std::size_t>(text)];
}

} // namespace Zentu::Inspect
