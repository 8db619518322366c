// SPDX-License-Identifier: MIT
#pragma once

namespace Zentu {

/// Whether the bus of EventManager::instance() is gone, as it is for objects of static storage that
/// were made before it.
bool hasEventManagerEnded();

} // namespace Zentu
