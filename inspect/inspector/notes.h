// SPDX-License-Identifier: MIT
#pragma once

#include "record.h"

namespace Zentu::Inspect {

/// Adds what a line leaves out, read from the objects that it names: they are alive while it is
/// written, and only then.
void takeNotes(const Line& line, Record& record);

/// Whether a line is written because the host called the library, so that the callers are of
/// interest.
bool isCalledByHost(const Line& line);

} // namespace Zentu::Inspect
