// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_host.h"

#include "recorder.h"

#include <QObject>
#include <QStringList>

#include <algorithm>
#include <memory>
#include <vector>

namespace Support {

/// The recorded lines that are neither of the trace nor news of an area; forgets all. The offscreen
/// platform has a warning of its own.
inline QStringList surprises(Recorder& recorder)
{
    QStringList lines = recorder.take();
    const QStringList usual = {QStringLiteral("trace|"), QStringLiteral("info|"),
        QStringLiteral("warning|This plugin does not support")};
    for (const QString& beginning : usual) {
        const auto begins = [&](const QString& line) { return line.startsWith(beginning); };
        lines.erase(std::remove_if(lines.begin(), lines.end(), begins), lines.end());
    }
    return lines;
}

/// What a window of a host has: managers of its own, and proxies that follow them.
struct HostWindow
{
    explicit HostWindow(const QStringList& ids)
    {
        for (const QString& id : ids) {
            proxies.push_back(std::make_unique<Zentu::ProxyAction>());
            proxies.back()->defaultProp()->setText(id);
            actions->registerProxyAction(proxies.back().get(), id);
        }
        Zentu::followContexts(until.get(), managers());
    }

    Zentu::Managers managers() const { return {contexts.get(), actions.get()}; }
    Zentu::ProxyAction* operator[](const QString& id) const { return actions->getProxyAction(id); }

    std::unique_ptr<Zentu::ContextManager> contexts = std::make_unique<Zentu::ContextManager>();
    std::unique_ptr<Zentu::ProxyActionManager> actions =
        std::make_unique<Zentu::ProxyActionManager>();
    std::unique_ptr<QObject> until = std::make_unique<QObject>();
    std::vector<std::unique_ptr<Zentu::ProxyAction>> proxies;
};

} // namespace Support
