// SPDX-License-Identifier: MIT
#include "ievent_handler.h"

#include "event_mgr.h"
#include "event_mgr_p.h"

#include <QReadLocker>
#include <QReadWriteLock>
#include <QWriteLocker>

namespace Zentu {

/// Whether a handler takes part in deliveries, for all threads.
class _ievent_handler_private
{
public:
    bool receiving = true;
    QReadWriteLock lock;
};

IEventHandler::IEventHandler()
    : d(new _ievent_handler_private)
{
}

IEventHandler::~IEventHandler()
{
    if (!hasEventManagerEnded())
        EventManager::instance()->unsubscribeAll(this);
    delete d;
}

void IEventHandler::subscribe(const QString& type)
{
    EventManager::instance()->subscribe(this, type);
}

void IEventHandler::unsubscribe(const QString& type)
{
    EventManager::instance()->unsubscribe(this, type);
}

void IEventHandler::setReceiving(bool receiving)
{
    const QWriteLocker locker(&d->lock);
    d->receiving = receiving;
}

bool IEventHandler::isReceiving() const
{
    const QReadLocker locker(&d->lock);
    return d->receiving;
}

} // namespace Zentu
