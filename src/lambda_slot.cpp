// SPDX-License-Identifier: MIT
#include "lambda_slot.h"

namespace Zentu {

bool LambdaSlotWrapper::connect(
    QObject* sender, const char* signal, const std::function<void()>& func, Qt::ConnectionType type)
{
    auto* wrapper = new LambdaSlotWrapper(sender, func);
    return QObject::connect(sender, signal, wrapper, SLOT(trigger()), type);
}

void LambdaSlotWrapper::trigger()
{
    func();
    if (autoDelete)
        deleteLater();
}

} // namespace Zentu
