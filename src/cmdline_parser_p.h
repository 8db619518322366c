// SPDX-License-Identifier: MIT
#pragma once

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>

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
    void declare(const CmdOption& option);

    /// The position of each option that was declared, by its keys.
    QHash<QString, int> declared;

private:
    int takeOption(const QStringList& args, int position, ListMode listMode);
};

} // namespace Zentu
