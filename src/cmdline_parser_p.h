// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringView>

namespace Zentu {

/// A declared option; an identity of 0 means that there is no such option.
struct CmdOption
{
    quint32 id = 0;
    QStringList names;
    QStringList keys;
    QString description;
    QString valueName;
};

/// A declared positional argument.
struct PosArgument
{
    QString name;
    QString description;
};

/// Two columns, the second one wrapped.
struct DescriptionTable
{
    QString format() const;

    QStringList names;
    QStringList descriptions;
};

/// The declarations of a command line and the results of the last parse.
class _cmdline_parser_private
{
public:
    CmdOption findOptionDefine(const QString& key) const;
    bool hasOption(const QString& key) const;

    QString appName;
    QString brief;
    QList<CmdOption> options;
    QList<PosArgument> posArguments;
    QMap<unsigned int, QString> values;
    QStringList posValues;
    QStringList unknownOptions;
    QStringList missingValues;

    /// How an option takes a list of values.
    enum class ListMode { FirstOnly, All };

    bool parse(const QStringList& args, ListMode listMode);
    const CmdOption* find(QStringView key) const;
    void declare(const CmdOption& option);

private:
    void addToIndex(int option) const;
    int takeOption(const QStringList& args, int index, ListMode listMode);

    // The first option of each key, and the declarations that it was made of, whose keys it refers
    // to. A list that has changed does not share its items with them any more.
    mutable QHash<QStringView, int> index;
    mutable QList<CmdOption> indexed;
};

} // namespace Zentu
