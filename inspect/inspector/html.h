// SPDX-License-Identifier: MIT
#pragma once

#include "line_reader.h"

#include <QString>
#include <QStringList>

/// What the details of a page are written with. A link names a page and what to select there.
namespace Zentu::Inspect::Html {

QString heading(const QString& text);
QString paragraph(const QString& html);
/// Rows of two cells, which are HTML.
QString table(const QList<QStringList>& rows);
/// Of HTML.
QString list(const QStringList& items);
QString link(const QString& page, const QString& id, const QString& text);
QString linkToLine(qint64 line);
QString strong(const QString& text);

} // namespace Zentu::Inspect::Html
