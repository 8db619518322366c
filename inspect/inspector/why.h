// SPDX-License-Identifier: MIT
#pragma once

#include "session.h"

namespace Zentu::Inspect {

/// Why an entry looks as it does, in one sentence.
struct Reason
{
    QString sentence;
    bool isEnabled = false;
    QString activeContext; ///< Empty if there is none
};

/// Of a proxy that lives.
Reason why(const Session& session, const Zentu::ProxyAction& proxy);

/// Of an action that is no proxy.
Reason why(const QAction& action);

/// Other actions of the program's windows that have one of its keys, and so take it away.
QList<QAction*> actionsWithTheSameKey(const QAction& action);

} // namespace Zentu::Inspect
