// SPDX-License-Identifier: MIT
#pragma once

#include <QIcon>

/// An icon of the desktop's theme, or where there is none a line drawing in the colour of the
/// palette's text, sharp at any scale.
QIcon glyphIcon(const QString& name);
