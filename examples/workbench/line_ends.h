// SPDX-License-Identifier: MIT
#pragma once

#include <QString>

class QPlainTextEdit;
class QTextDocument;

/// Keeps how each line of a text ends, which an editor forgets. A line that ends unlike most bears
/// it in the format of its block, so that it is moved, removed and undone with the line.
namespace LineEnds {

/// Puts a text into an editor and returns how most of its lines end.
QString fill(QPlainTextEdit* editor, const QString& text);

/// The text of a document. Lines whose end is not known otherwise end with @p usual.
QString text(const QTextDocument* document, const QString& usual);

/// For people: "LF", "CRLF" or "CR".
QString name(const QString& end);

} // namespace LineEnds
