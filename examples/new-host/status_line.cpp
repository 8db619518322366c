#include "status_line.h"

#include <ZentuKit/IEvent>

#include <QStatusBar>

StatusLine::StatusLine(QStatusBar* bar)
    : m_bar(bar)
{
    subscribe(QStringLiteral("note.added"));
}

void StatusLine::handleEvent(Zentu::IEvent* event)
{
    m_bar->showMessage(
        QStringLiteral("Added: %1").arg(event->data().value(QStringLiteral("title")).toString()));
}
