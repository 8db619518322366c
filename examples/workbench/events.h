// SPDX-License-Identifier: MIT
#pragma once

#include <QStringList>
#include <QVariantMap>

/// What the parts of the Workbench tell each other over the bus.
namespace Events {

// Types.
extern const QString DocumentOpened;
extern const QString DocumentFailed;
extern const QString DocumentClosed;
extern const QString DocumentSaved;
extern const QString DocumentChanged; ///< Another program has changed the file.
extern const QString DocumentDeleted; ///< There is no file any more.

// Values.
extern const QString Path;
extern const QString Kind;
extern const QString Bytes;
extern const QString Message; ///< Of a failure: what went wrong, for people.

/// Every type, in the order above.
QStringList types();

void post(const QString& type, const QVariantMap& values);

// For people, in any direction of reading.
QString pathOf(const QVariantMap& values);
QString sizeOf(const QVariantMap& values);

} // namespace Events
