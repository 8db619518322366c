// SPDX-License-Identifier: MIT
#pragma once

#include "program.h"

#include <QString>
#include <QStringList>

namespace Zentu::Inspect {

/// Why an action is as it is.
struct Why
{
    struct Backend
    {
        QString context;
        Address action = 0;
        bool isCertain = true;
    };

    QString id;
    QStringList contexts; ///< In force, the most important first
    QList<Backend> backends;
    std::optional<Address> active;  ///< Null for none; none where the lines do not tell
    std::optional<QString> context; ///< The active one's
    std::optional<bool> isEnabled;  ///< None where the lines do not tell
    Moment since;                   ///< When the active one became it
    QString reason;                 ///< All that in words
    const Proxy* proxy = nullptr;   ///< In the model, until that is fed more
};

/// None if no proxy is registered under the identifier.
std::optional<Why> whyIsIt(const Program& program, const QString& id);

/// The identifiers that are registered, in order, each once.
QStringList actionIds(const Program& program);
/// Those of the names that are spelled most like the name.
QStringList nearestNames(const QString& name, const QStringList& names);

/// Something that was never let go. Backends are not told: a proxy that goes lets go of them
/// without a line.
struct Leak
{
    enum Kind { Subscription, Menu, Menubar, Toolbar, Object, Watch, Document, Page };
    static constexpr int KindCount = Page + 1;

    Kind kind = Subscription;
    QString name;     ///< The type, context, identifier, path, title or category
    QString holder;   ///< Who has it: an object in words
    Address what = 0; ///< Who is had; a watch has none
    Moment since;
};

/// What the kind is called, in the plural.
QString leakKindName(Leak::Kind kind);

/// All that is still registered, kind by kind, in the order in which it came.
QList<Leak> leaks(const Program& program);

/// 0x and the hexadecimal digits.
QString hex(Address address);

} // namespace Zentu::Inspect
