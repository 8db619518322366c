// SPDX-License-Identifier: MIT
#pragma once

#include "zentu_global.h"

#include <QString>
#include <QStringList>

namespace Zentu {

class _cmdline_parser_private;

/**
 * Declares, parses and explains the command line of a program.
 *
 * @code
 * Zentu::CmdLineParser parser;
 * parser.setBrief(QStringLiteral("Converts files."));
 * parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
 * parser.addOption({QStringLiteral("-o"), QStringLiteral("--output")},
 *                  QStringLiteral("Write the result to this file."), QStringLiteral("file"));
 * parser.addPositionalArgument(QStringLiteral("input"), QStringLiteral("The file to read."));
 *
 * if (!parser.parse(QCoreApplication::arguments())) {
 *     parser.printErrorMessage();
 *     return 2;
 * }
 * if (parser.isSet(QStringLiteral("help"))) {
 *     parser.printHelpMessage();
 *     return 0;
 * }
 * @endcode
 *
 * The grammar is small. An argument that starts with a dash is an option, any other is positional.
 * The number of dashes does not matter: `-help` and `--help` are one option. An option that takes a
 * value takes it from the next argument, unless that starts with a dash. There is no
 * `--name=value`, no grouping of short options and no `--` that ends the options.
 *
 * A parser is used from one thread.
 */
class ZENTU_EXPORT CmdLineParser
{
public:
    /// Creates a parser without declarations. @p appName is the program's name in the help text; by
    /// default the file name of the running executable.
    explicit CmdLineParser(const QString& appName = QString());
    /// Destroys the parser with its declarations and values.
    ~CmdLineParser();

    CmdLineParser(const CmdLineParser&) = delete;
    CmdLineParser& operator=(const CmdLineParser&) = delete;

    /// Sets the one line that describes the program in the help text. Empty, and left out, by
    /// default.
    void setBrief(const QString& brief);

    /**
     * Declares an option with all its forms, dashes included.
     *
     * Reported as critical, with nothing declared: "CmdLineParser" "incorrect option form" and the
     * form, if it does not start with a dash or is only dashes, or if @p names is empty (then with
     * an empty form); "CmdLineParser" "duplicated option form" and the form, if it belongs to an
     * option declared before.
     *
     * @param names       the forms, such as `-o` and `--output`
     * @param description the help text; line breaks in it are kept
     * @param valueName   the name of the option's value in the help text; empty for a flag. With
     *                    "ValueList" the option takes a list of values under parseB().
     */
    void addOption(const QStringList& names, const QString& description = QString(),
        const QString& valueName = QString());

    /// Declares an option with a single form, without braces: of those around one text the compiler
    /// cannot tell whether they are a list.
    void addOption(const QString& name, const QString& description = QString(),
        const QString& valueName = QString());

    /// Declares a flag described as "Show this help.". The program tests for it with isSet() and
    /// calls printHelpMessage() itself.
    void addHelpOption(const QStringList& names);

    /// Declares a flag described as "Show version information.". The program tests for it with
    /// isSet().
    void addVersionOption(const QStringList& names);

    /// Declares a positional argument for the help text. Parsing takes any number of them.
    void addPositionalArgument(const QString& name, const QString& description);

    /**
     * Parses a command line, replacing all earlier results.
     *
     * Every argument is looked at, also after an error. Of a repeated option the last occurrence
     * counts. If the value of an option is missing because the next argument starts with a dash,
     * that argument is skipped with it.
     *
     * @param args the arguments; the first one, the program, is skipped
     * @return whether there was neither an unknown option nor a missing value
     */
    bool parse(const QStringList& args);

    /// As parse(), but an option whose value name is "ValueList" takes all arguments up to the next
    /// one that starts with a dash; its value is these joined with "&&".
    bool parseB(const QStringList& args);

    /// As parse(const QStringList&), with @p argc texts in UTF-8. The arguments of main() need a
    /// cast to this type; after the application was made, QCoreApplication::arguments() is simpler.
    bool parse(int argc, const char** argv);

    /// Whether the option was given in the last parse, with its value if it takes one. @p name is
    /// any of its forms, with or without dashes; false for one that is not declared.
    bool isSet(const QString& name) const;

    /// The option's value in the last parse, "true" for a flag that was given. A null string if it
    /// was not given, an empty one if it is not declared. @p name as for isSet().
    QString getValue(const QString& name) const;

    /// The positional arguments of the last parse, in order.
    QStringList positionalArguments() const;

    /// What was wrong in the last parse: "unknown option: " and "missing value: " with the
    /// arguments concerned, each closed by a blank. Empty if nothing was.
    QString errorMessage() const;

    /// Writes errorMessage() and a newline to the standard output, in Latin-1. Of a `%%` in the
    /// text one `%` is printed.
    void printErrorMessage() const;

    /// The help text: brief, usage, arguments and options, wrapped at a fixed width.
    QString helpMessage() const;

    /// Writes helpMessage() and a newline to the standard output, in Latin-1. Of a `%%` in the text
    /// one `%` is printed.
    void printHelpMessage() const;

private:
    _cmdline_parser_private* d;
};

} // namespace Zentu
