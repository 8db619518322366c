// SPDX-License-Identifier: MIT
#pragma once

#include <QMetaMethod>
#include <QMetaObject>

namespace Zentu {

/// A slot by its signature. Looked up once and kept, it gives the same connection as the signature
/// does, without the look-up each time.
template <typename Class>
QMetaMethod slotOf(const char* signature)
{
    const QMetaObject& metaObject = Class::staticMetaObject;
    return metaObject.method(metaObject.indexOfSlot(signature));
}

} // namespace Zentu
