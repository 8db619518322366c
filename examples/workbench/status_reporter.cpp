// SPDX-License-Identifier: MIT
#include "status_reporter.h"

#include "events.h"
#include "ievent.h"

#include <QStatusBar>

StatusReporter::StatusReporter(QStatusBar* bar)
    : m_bar(bar)
{
    const QStringList types = Events::types();
    for (const QString& type : types)
        subscribe(type);
}

void StatusReporter::handleEvent(Zentu::IEvent* event)
{
    const QVariantMap& values = event->data();
    const QString path = Events::pathOf(values);
    const QString size = Events::sizeOf(values);
    if (event->type() == Events::DocumentOpened)
        m_bar->showMessage(tr("Opened %1 (%2)").arg(path, size));
    else if (event->type() == Events::DocumentFailed)
        m_bar->showMessage(values.value(Events::Message).toString());
    else if (event->type() == Events::DocumentClosed)
        m_bar->showMessage(tr("Closed %1").arg(path));
    else if (event->type() == Events::DocumentSaved)
        m_bar->showMessage(tr("Saved %1").arg(path));
    else if (event->type() == Events::DocumentDeleted)
        m_bar->showMessage(tr("%1 has been deleted on disk").arg(path));
    else
        m_bar->showMessage(tr("%1 has changed on disk").arg(path));
}
