// SPDX-License-Identifier: MIT
#include "events.h"

#include "event_mgr.h"

namespace Events {

const QString DocumentOpened = QStringLiteral("document.opened");
const QString DocumentFailed = QStringLiteral("document.failed");
const QString DocumentClosed = QStringLiteral("document.closed");
const QString DocumentChanged = QStringLiteral("document.changed");

const QString Path = QStringLiteral("path");
const QString Kind = QStringLiteral("kind");
const QString Bytes = QStringLiteral("bytes");
const QString Message = QStringLiteral("message");

void post(const QString& type, const QVariantMap& values)
{
    auto* event = new Zentu::IEvent(type);
    event->data() = values;
    Zentu::EventManager::instance()->postEvent(event);
}

} // namespace Events
