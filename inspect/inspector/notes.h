// SPDX-License-Identifier: MIT
#pragma once

#include "record.h"

class QAction;

namespace Zentu::Inspect {

/// Whose action it is: the nearest parent that is more than a QObject without a name. Null if it
/// has no parent.
const QObject* ownerOf(const QAction& action);

/// Adds what a line leaves out, read from the objects that it names: they are alive while it is
/// written, and only then.
void takeNotes(const Line& line, Record& record);

/// Whether a line is written because the host called the library, so that the callers are of
/// interest.
bool isCalledByHost(const Line& line);

} // namespace Zentu::Inspect
