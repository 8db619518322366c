// SPDX-License-Identifier: MIT
#pragma once

#include <QString>
#include <QVariantMap>

/// What the parts of the Workbench tell each other over the bus.
namespace Events {

// Types.
extern const QString DocumentOpened;
extern const QString DocumentFailed;
extern const QString DocumentClosed;
extern const QString DocumentChanged; ///< The file changed on disk.

// Values.
extern const QString Path;
extern const QString Kind;
extern const QString Bytes;
extern const QString Message; ///< Of a failure: what went wrong, for people.

void post(const QString& type, const QVariantMap& values);

// For people, in any direction of reading.
QString pathOf(const QVariantMap& values);
QString sizeOf(const QVariantMap& values);

} // namespace Events
