// SPDX-License-Identifier: MIT
#include "html.h"
#include "pages.h"
#include "stack.h"

namespace Zentu::Inspect {

EventsPage::EventsPage(Session& session)
    : TablePage(session, QStringLiteral("event"), tr("Events"),
        {tr("Type"), tr("Posts"), tr("Unheard"), tr("Subscribers")})
{
}

void EventsPage::setShowsLines(bool shows)
{
    m_showsLines = shows;
    showDetails();
}

std::vector<Row> EventsPage::rows() const
{
    std::vector<Row> result;
    for (const auto& [bus, types] : session().program().buses()) {
        for (const auto& [name, type] : types) {
            QStringList subscribers;
            for (const Subscription& subscription : type.subscribers)
                subscribers.append(session().handlerName(subscription.handler));
            Row row;
            row.id = plain(name);
            row.cells = QStringList{row.id, QString::number(type.postCount),
                QString::number(type.unheard), subscribers.join(QLatin1String(", "))};
            row.standsOut = type.unheard > 0;
            row.isGrey = type.postCount == 0;
            result.push_back(std::move(row));
        }
    }
    return result;
}

QString EventsPage::subscribers(const EventType& type) const
{
    if (type.subscribers.empty())
        return Html::paragraph(tr("Nobody is subscribed."));
    QList<QStringList> table;
    for (const Subscription& subscription : type.subscribers) {
        table.append({session().handlerName(subscription.handler).toHtmlEscaped(),
            session().isPaused(subscription.handler) ? tr("paused") : QString(),
            shortTime(subscription.since.time()), Html::linkToLine(subscription.since.line)});
    }
    return Html::heading(tr("Subscribers, in the order of delivery")) + Html::table(table);
}

QString EventsPage::posts(const QString& type) const
{
    QString html = Html::heading(tr("Newest posts"));
    int count = 0;
    const auto& events = session().events();
    for (auto it = events.rbegin(); it != events.rend() && count < 10; ++it) {
        if (it->type != type)
            continue;
        ++count;
        QStringList values;
        for (const QString& value : it->values)
            values.append(value.toHtmlEscaped());
        const QString heard = it->heardBy.isEmpty()
            ? Html::strong(tr("nobody heard it"))
            : tr("heard by %1").arg(it->heardBy.join(QLatin1String(", ")).toHtmlEscaped());
        html += Html::paragraph(tr("%1, %2, thread %3; %4")
                                    .arg(Html::linkToLine(it->line), it->mode)
                                    .arg(it->thread)
                                    .arg(heard));
        if (!values.isEmpty())
            html += Html::list(values);
        // Of the others, the line tells.
        if (count > 2)
            continue;
        const QStringList callers =
            m_showsLines ? Stack::describe(it->stack) : Stack::functions(it->stack);
        if (!callers.isEmpty()) {
            QStringList escaped;
            for (const QString& caller : callers)
                escaped.append(caller.toHtmlEscaped());
            html += Html::paragraph(tr("posted by")) + Html::list(escaped);
        }
    }
    return count > 0 ? html : QString();
}

QString EventsPage::details(const QString& id) const
{
    for (const auto& [bus, types] : session().program().buses()) {
        for (const auto& [name, type] : types) {
            if (plain(name) == id)
                return Html::heading(id) + subscribers(type) + posts(id);
        }
    }
    return {};
}

} // namespace Zentu::Inspect
