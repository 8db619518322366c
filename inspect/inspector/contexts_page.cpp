// SPDX-License-Identifier: MIT
#include "html.h"
#include "pages.h"

#include <algorithm>

namespace Zentu::Inspect {

ContextsPage::ContextsPage(Session& session)
    : TablePage(session, QStringLiteral("context"), tr("Contexts"),
        {tr("Context"), tr("In force"), tr("Changes"), tr("Last change")})
{
}

/// Every context that was heard of, with its changes, newest last.
static std::map<std::string, std::vector<const Switch*>> changesByName(const Program& program)
{
    std::map<std::string, std::vector<const Switch*>> result;
    for (const auto& [manager, contexts] : program.contextManagers()) {
        for (const std::string& name : contexts.all())
            result[name];
    }
    for (const Switch& change : program.switches())
        result[change.context].push_back(&change);
    return result;
}

static QString place(const Program& program, const std::string& name)
{
    const auto contains = [&](const std::vector<std::string>& list) {
        return std::find(list.begin(), list.end(), name) != list.end();
    };
    for (const auto& [manager, contexts] : program.contextManagers()) {
        if (contains(contexts.ordinary)) {
            const auto it = std::find(contexts.ordinary.begin(), contexts.ordinary.end(), name);
            return ContextsPage::tr("yes, number %1").arg(it - contexts.ordinary.begin() + 1);
        }
        if (contains(contexts.global))
            return ContextsPage::tr("yes, global");
    }
    return ContextsPage::tr("no");
}

static QString nameOf(const Switch& change)
{
    QString name = QString::fromLatin1(
        infoOf(change.what).text.data(), static_cast<int>(infoOf(change.what).text.size()));
    return name.remove(QLatin1Char(':'));
}

std::vector<Row> ContextsPage::rows() const
{
    std::vector<Row> result;
    for (const auto& [name, changes] : changesByName(session().program())) {
        Row row;
        row.id = plain(name);
        const QString inForce = place(session().program(), name);
        row.cells = QStringList{row.id, inForce, QString::number(changes.size()),
            changes.empty() ? QString()
                            : nameOf(*changes.back()) + QLatin1Char(' ')
                    + shortTime(changes.back()->at.time())};
        row.isGrey = inForce == tr("no");
        result.push_back(std::move(row));
    }
    return result;
}

QString ContextsPage::details(const QString& id) const
{
    QString html = Html::heading(id);
    QStringList proxies;
    for (const auto& [address, proxy] : session().program().proxies()) {
        for (const auto& [context, entry] : proxy.backends.entries()) {
            if (plain(context) != id || proxy.ids.empty())
                continue;
            const QString name = plain(proxy.ids.front());
            proxies.append(Html::link(QStringLiteral("action"), name, name));
        }
    }
    proxies.sort();
    if (!proxies.isEmpty())
        html += Html::paragraph(tr("Backends for: %1").arg(proxies.join(QLatin1String(", "))));
    QList<QStringList> table{{Html::strong(tr("when")), Html::strong(tr("what")),
        Html::strong(tr("asked")), Html::strong(tr("came")), Html::strong(tr("gone")),
        Html::strong(tr("changed")), Html::strong(tr("in force after it"))}};
    for (const auto& [name, changes] : changesByName(session().program())) {
        if (plain(name) != id)
            continue;
        for (auto it = changes.rbegin(); it != changes.rend() && table.size() < 30; ++it) {
            QStringList now;
            for (const std::string& context : (*it)->now)
                now.append(plain(context));
            table.append({Html::linkToLine((*it)->at.line), nameOf(**it),
                QString::number((*it)->asked), QString::number((*it)->came),
                QString::number((*it)->gone), QString::number((*it)->changed),
                now.join(QLatin1String(", ")).toHtmlEscaped()});
        }
    }
    return html + Html::table(table);
}

} // namespace Zentu::Inspect
