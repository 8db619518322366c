// SPDX-License-Identifier: MIT
#include "lambda_slot.h"

#include <QPointer>

namespace Zentu {

bool LambdaSlotWrapper::connect(
    QObject* sender, const char* signal, const std::function<void()>& func, Qt::ConnectionType type)
{
    auto* wrapper = new LambdaSlotWrapper(sender, func);
    return QObject::connect(sender, signal, wrapper, SLOT(trigger()), type);
}

void LambdaSlotWrapper::trigger()
{
    const QPointer<QObject> alive(this);
    const std::function<void()> held = func;
    held();
    if (alive && autoDelete)
        deleteLater();
}

} // namespace Zentu
