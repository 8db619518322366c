// SPDX-License-Identifier: MIT
#pragma once

#include "line_reader.h"

class QObject;

/**
 * Which lines are the inspector's own: it is built with the library that it looks at, and what it
 * does for itself is none of the host's.
 */
namespace Zentu::Inspect::OwnLines {

/// While one lives, every line of this thread is the inspector's own. They may be nested.
class Scope
{
public:
    Scope();
    ~Scope();
    Scope(const Scope&) = delete;
    Scope& operator=(const Scope&) = delete;
};

/// What @p object says is the inspector's own until the object is gone.
void add(QObject* object);

bool contain(const Line& line);

} // namespace Zentu::Inspect::OwnLines
