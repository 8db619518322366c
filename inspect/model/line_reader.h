// SPDX-License-Identifier: MIT
#pragma once

#include "texts.h"

#include <QString>

#include <array>
#include <optional>
#include <string_view>

namespace Zentu::Inspect {

using Address = quint64;

/// One thing that a line names. It points into the line.
struct Item
{
    std::string_view raw;  ///< As it stands in the line
    std::string_view name; ///< Of an object: its class as printed
    std::string_view text; ///< Of a string, escaped, without its quotes; of an object, what stands
                           ///< behind its address
    Address address = 0;   ///< Of an object or an address
    qint64 number = 0;     ///< Of a number

    /// The value behind a label of an object (`text=`, `, name = `), escaped, without quotes. Null
    /// (as opposed to empty) where there is none.
    std::string_view field(std::string_view label) const;
    /// The first quoted string of an object, null if there is none.
    std::string_view quoted() const;
};

/// What could be made of a line.
enum class Reading {
    Understood, ///< One of TextTable
    Damaged,    ///< Begins like one of them, and does not go on like it: cut off or mixed up
    Unknown,    ///< Spoken by a class of the library, with a text that is not in the table
    Foreign,    ///< The host's own, or somebody else's
    Note        ///< What a recording adds to the line before
};

/// What a recording of the inspector adds to a line, below it and indented by four blanks: the
/// class and name of a handler, a value of an event, the state and owner of a backend, a caller.
enum class Note { Handler, Value, Backend, Caller };

/**
 * A line taken apart. Everything points into the text that was read.
 *
 * These forms of lines are read: the text alone, as the logger and Qt's message handler get it;
 * with time, level and thread before it, as the logger writes it to a file; and with the name of a
 * message's type (`warning`) in the place of the level. A note belongs to the line before it.
 */
struct Line
{
    std::string_view time;   ///< As it stands there; empty without
    std::string_view level;  ///< Likewise
    std::string_view thread; ///< Likewise
    std::string_view body;   ///< The text, without the blanks at its end
    Reading reading = Reading::Foreign;
    const TextInfo* info = nullptr; ///< Where it is understood or damaged
    Item speaker;
    std::array<Item, 2> items;
    /// Whether the speaker prints as the library's own class. One of a derived class is understood
    /// by the form of its line alone.
    bool isOwnSpeaker = true;

    Note note = Note::Handler; ///< Of a note; its body is what stands behind the label

    bool is(Text text) const { return reading == Reading::Understood && info->id == text; }
};

/// Takes a line apart, without its line break. Any bytes will do.
Line readLine(std::string_view text);

/// Whether a line adds to the one before it.
bool isNote(std::string_view text);

/// Whether the text stands for the time of a line: 2026-11-22T12:03:04, with what may follow.
bool isTime(std::string_view text);

/// The next string of a list, as Item::text has it; the list gets shorter. None at its end.
std::optional<std::string_view> takeString(std::string_view& list);

/// A string as it was before it was printed. Characters that the trace cannot hold stay question
/// marks.
QString unescaped(std::string_view text);

/// Bytes of a line as text: UTF-8 where they are that, else Latin-1.
QString decoded(std::string_view bytes);

} // namespace Zentu::Inspect
