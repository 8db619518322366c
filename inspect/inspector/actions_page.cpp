// SPDX-License-Identifier: MIT
#include "html.h"
#include "pages.h"
#include "proxy_act.h"
#include "why.h"

namespace Zentu::Inspect {

ActionsPage::ActionsPage(Session& session)
    : TablePage(session, QStringLiteral("action"), tr("Actions"),
        {tr("Identifier"), tr("Text"), tr("Key"), tr("Enabled"), tr("Context"), tr("Why")})
{
}

/// An action as people see it.
static QString seen(const QAction& action)
{
    return action.text().remove(QLatin1Char('&'));
}

static Row rowOf(const Session& session, const QString& id, const ProxyAction& proxy)
{
    const Reason answer = why(session, proxy);
    Row row;
    row.id = id;
    row.cells = QStringList{id, seen(proxy), proxy.shortcut().toString(QKeySequence::NativeText),
        answer.isEnabled ? ActionsPage::tr("yes") : ActionsPage::tr("no"), answer.activeContext,
        answer.sentence};
    row.icon = proxy.icon();
    row.isGrey = !answer.isEnabled;
    return row;
}

std::vector<Row> ActionsPage::rows() const
{
    std::vector<Row> result;
    for (const auto& [manager, ids] : session().program().proxyManagers()) {
        for (const auto& [id, entry] : ids.entries()) {
            if (const auto* const proxy = qobject_cast<ProxyAction*>(session().object(entry.value)))
                result.push_back(rowOf(session(), plain(id), *proxy));
        }
    }
    return result;
}

ProxyAction* ActionsPage::proxy(const QString& id) const
{
    for (const auto& [manager, ids] : session().program().proxyManagers()) {
        for (const auto& [name, entry] : ids.entries()) {
            if (plain(name) == id)
                return qobject_cast<ProxyAction*>(session().object(entry.value));
        }
    }
    return nullptr;
}

QString ActionsPage::backends(const ProxyAction& proxy, Address address) const
{
    const auto known = session().program().proxies().find(address);
    if (known == session().program().proxies().end())
        return {};
    QList<QStringList> table;
    for (const auto& [name, entry] : known->second.backends.entries()) {
        const QString context = plain(name);
        const QAction* const backend = proxy.getBackendAction(context);
        if (!backend)
            continue;
        const bool isActive = backend == proxy.currentActiveBackendAction();
        table.append({Html::link(QStringLiteral("context"), context, context),
            session().objectName(reinterpret_cast<Address>(backend)).toHtmlEscaped(),
            backend->isEnabled() ? tr("enabled") : tr("disabled"),
            isActive ? Html::strong(tr("active")) : QString(), Html::linkToLine(entry.since.line)});
    }
    return Html::heading(tr("Backends")) + Html::table(table);
}

QString ActionsPage::history(Address address) const
{
    const auto known = session().program().proxies().find(address);
    if (known == session().program().proxies().end())
        return {};
    QList<QStringList> table;
    const auto& changes = known->second.history;
    for (auto it = changes.rbegin(); it != changes.rend() && table.size() < 20; ++it) {
        const QString backend = it->backend == 0 ? tr("none")
            : it->context                        ? plain(*it->context)
                                                 : session().objectName(it->backend);
        table.append({shortTime(it->at.time()), Html::linkToLine(it->at.line),
            backend.toHtmlEscaped(), decoded(it->causeText).toHtmlEscaped()});
    }
    return Html::heading(tr("History of the active backend")) + Html::table(table);
}

QString ActionsPage::details(const QString& id) const
{
    const ProxyAction* const found = proxy(id);
    if (!found)
        return {};
    const auto address = reinterpret_cast<Address>(static_cast<const QAction*>(found));
    QStringList contexts;
    for (const QString& context : found->currentContext())
        contexts.append(Html::link(QStringLiteral("context"), context, context));
    return Html::heading(QStringLiteral("%1 (%2)").arg(seen(*found), id))
        + Html::paragraph(Html::strong(why(session(), *found).sentence))
        + Html::paragraph(
            tr("Contexts in force: %1")
                .arg(contexts.isEmpty() ? tr("none") : contexts.join(QLatin1String(", "))))
        + backends(*found, address) + history(address);
}

} // namespace Zentu::Inspect
