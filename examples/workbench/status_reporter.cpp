// SPDX-License-Identifier: MIT
#include "status_reporter.h"

#include "events.h"
#include "ievent.h"

#include <QStatusBar>

StatusReporter::StatusReporter(QStatusBar* bar)
    : m_bar(bar)
{
    for (const QString& type : {Events::DocumentOpened, Events::DocumentFailed,
             Events::DocumentClosed, Events::DocumentChanged})
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
    else
        m_bar->showMessage(tr("%1 has changed on disk").arg(path));
}
