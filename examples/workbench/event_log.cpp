// SPDX-License-Identifier: MIT
#include "event_log.h"

#include "events.h"
#include "ievent.h"

#include <QHeaderView>
#include <QTime>
#include <QTreeWidget>

EventLog::EventLog(QWidget* parent)
    : QDockWidget(tr("Events"), parent)
    , m_list(new QTreeWidget(this))
{
    setObjectName(QStringLiteral("event_log"));
    m_list->setObjectName(QStringLiteral("event_list"));
    m_list->setAccessibleName(tr("Events"));
    m_list->setHeaderLabels({tr("Time"), tr("Event"), tr("Kind"), tr("Size"), tr("File")});
    m_list->setRootIsDecorated(false);
    m_list->setUniformRowHeights(true);
    m_list->setTextElideMode(Qt::ElideMiddle);
    m_list->setFrameShape(QFrame::NoFrame);
    for (int column = 0; column < 4; ++column)
        m_list->header()->setSectionResizeMode(column, QHeaderView::ResizeToContents);
    setWidget(m_list);
    const QStringList types = Events::types();
    for (const QString& type : types)
        subscribe(type);
}

void EventLog::handleEvent(Zentu::IEvent* event)
{
    const QVariantMap& values = event->data();
    const QString path = Events::pathOf(values);
    auto* item = new QTreeWidgetItem(m_list,
        {QTime::currentTime().toString(), event->type(), values.value(Events::Kind).toString(),
            Events::sizeOf(values), path});
    item->setTextAlignment(3, Qt::AlignRight | Qt::AlignVCenter);
    item->setToolTip(4, values.value(Events::Message, path).toString());
    m_list->scrollToItem(item);
}
