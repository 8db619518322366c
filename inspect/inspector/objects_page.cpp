// SPDX-License-Identifier: MIT
#include "html.h"
#include "pages.h"

#include <algorithm>

namespace Zentu::Inspect {

ObjectsPage::ObjectsPage(Session& session)
    : TablePage(session, QStringLiteral("object"), tr("Objects"),
        {tr("Kind"), tr("Name"), tr("Object"), tr("Since")})
{
}

Row ObjectsPage::row(
    const QString& kind, const QString& name, Address address, const Moment& since) const
{
    Row row;
    row.id = kind + QLatin1Char('/') + name + QLatin1Char('/') + addressText(address);
    const bool isGone = session().isGone(address);
    row.cells = QStringList{kind, name,
        isGone ? tr("gone, and never let go") : session().objectName(address),
        shortTime(since.time()) + QLatin1Char(' ') + tr("line %1").arg(since.line)};
    row.standsOut = isGone;
    return row;
}

void ObjectsPage::addRegistries(std::vector<Row>& rows) const
{
    const QStringList kinds{tr("menu"), tr("menubar"), tr("toolbar")};
    for (const auto& [address, registry] : session().program().registries()) {
        for (int kind = 0; kind < kinds.size(); ++kind) {
            for (const auto& [id, entry] : registry.of(static_cast<WidgetKind>(kind)).entries())
                rows.push_back(row(kinds.at(kind), plain(id), entry.value, entry.since));
        }
    }
}

void ObjectsPage::addPools(std::vector<Row>& rows) const
{
    for (const auto& [address, pool] : session().program().pools()) {
        for (const PoolEntry& entry : pool)
            rows.push_back(row(tr("pooled"), decoded(entry.className), entry.object, entry.since));
    }
}

void ObjectsPage::addDocuments(std::vector<Row>& rows) const
{
    for (const auto& [address, document] : session().program().documents()) {
        Row entry = row(document.isClosed ? tr("document, closed") : tr("document"),
            plain(document.title), address, document.since);
        entry.isGrey = document.isClosed;
        rows.push_back(std::move(entry));
    }
}

void ObjectsPage::addDialogs(std::vector<Row>& rows) const
{
    for (const auto& [address, dialog] : session().program().dialogs()) {
        for (const Page& page : dialog.pages) {
            Row entry = row(page.isFinalized ? tr("page, finalized") : tr("page"),
                plain(page.category), page.page, page.since);
            entry.isGrey = page.isFinalized;
            rows.push_back(std::move(entry));
        }
    }
}

void ObjectsPage::addWatches(std::vector<Row>& rows) const
{
    for (const auto& [address, watches] : session().program().watchers()) {
        for (const auto& [path, watch] : watches)
            rows.push_back(row(watch.isPaused ? tr("watch, waiting") : tr("watch"), plain(path),
                address, watch.since));
    }
}

std::vector<Row> ObjectsPage::rows() const
{
    std::vector<Row> result;
    addRegistries(result);
    addPools(result);
    addDocuments(result);
    addDialogs(result);
    addWatches(result);
    return result;
}

void ObjectsPage::select(const QString& address)
{
    const std::vector<Row> all = rows();
    const auto found = std::find_if(all.begin(), all.end(),
        [&](const Row& row) { return row.id.endsWith(QLatin1Char('/') + address); });
    TablePage::select(found == all.end() ? address : found->id);
}

QString ObjectsPage::details(const QString& id) const
{
    const Address address = id.section(QLatin1Char('/'), -1).toULongLong(nullptr, 16);
    const QObject* const object = session().object(address);
    if (!object)
        return Html::heading(id.section(QLatin1Char('/'), 1, -2))
            + Html::paragraph(tr("There is no object at %1 any more.").arg(addressText(address)));
    QStringList classes;
    for (const QMetaObject* meta = object->metaObject(); meta; meta = meta->superClass())
        classes.append(QString::fromLatin1(meta->className()));
    return Html::heading(session().objectName(address))
        + Html::table({{tr("Address"), addressText(address)},
            {tr("Class"), classes.join(QLatin1String(" : "))},
            {tr("Name"), object->objectName().toHtmlEscaped()},
            {tr("Parent"),
                object->parent() ? session()
                                       .objectName(reinterpret_cast<Address>(object->parent()))
                                       .toHtmlEscaped()
                                 : tr("none")}});
}

} // namespace Zentu::Inspect
