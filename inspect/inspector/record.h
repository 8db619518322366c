// SPDX-License-Identifier: MIT
#pragma once

#include "line_reader.h"

#include <QByteArray>
#include <QByteArrayList>
#include <QObject>
#include <QPointer>

#include <utility>
#include <vector>

namespace Zentu::Inspect {

/// A line as it came, with what it leaves out.
struct Record
{
    qint64 microseconds = 0; ///< Since 1970, UTC
    qint64 thread = 0;       ///< As the system numbers it
    QByteArray level;        ///< The logger's, or the kind of the message
    QByteArray text;
    QByteArrayList notes; ///< The handler's class, the values of an event, a backend's state
    std::vector<void*> stack;
    /// What the line names and can be looked at later, in the thread of the windows.
    std::vector<std::pair<Address, QPointer<QObject>>> objects;

    /// The line as a file has it: time, level, thread and text.
    QByteArray line() const;
    /// The time alone.
    QByteArray time() const;
};

} // namespace Zentu::Inspect
