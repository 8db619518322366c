// SPDX-License-Identifier: MIT
#include "command_line.h"

#include "cmdline_parser.h"

#include <cstdio>

CommandLine::Outcome CommandLine::parse(const QStringList& arguments)
{
    Zentu::CmdLineParser parser(QStringLiteral("zentu-workbench"));
    parser.setBrief(QStringLiteral("Opens text and image files in one window."));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addVersionOption({QStringLiteral("-v"), QStringLiteral("--version")});
    parser.addOption(QStringLiteral("--trace"),
        QStringLiteral("Append everything that the library traces to this file."),
        QStringLiteral("file"));
    parser.addOption(QStringLiteral("--snapshot"),
        QStringLiteral("Show the window, write its picture to this file, and end."),
        QStringLiteral("png"));
    parser.addOption(QStringLiteral("--open"), QStringLiteral("Open these files too."),
        QStringLiteral("ValueList"));
    parser.addPositionalArgument(QStringLiteral("FILE..."), QStringLiteral("The files to open."));

    if (!parser.parseB(arguments)) {
        parser.printErrorMessage();
        return Outcome::Bad;
    }
    if (parser.isSet(QStringLiteral("help"))) {
        parser.printHelpMessage();
        return Outcome::Done;
    }
    if (parser.isSet(QStringLiteral("version"))) {
        std::puts("zentu-workbench 1.0.0");
        return Outcome::Done;
    }
    traceFile = parser.getValue(QStringLiteral("trace"));
    snapshotFile = parser.getValue(QStringLiteral("snapshot"));
    files = parser.positionalArguments();
    if (parser.isSet(QStringLiteral("open")))
        files += parser.getValue(QStringLiteral("open")).split(QStringLiteral("&&"));
    return Outcome::Run;
}
