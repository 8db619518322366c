// SPDX-License-Identifier: MIT
#include <ZentuKit/CmdLineParser>

#include <cstdio>

int main()
{
    Zentu::CmdLineParser parser(QStringLiteral("convert"));
    parser.setBrief(QStringLiteral("Converts files."));
    parser.addHelpOption({QStringLiteral("-h"), QStringLiteral("--help")});
    parser.addOption({QStringLiteral("-o"), QStringLiteral("--output")},
        QStringLiteral("Write the result to this file."), QStringLiteral("file"));
    parser.addOption(QStringLiteral("--only"), QStringLiteral("Convert only these kinds."),
        QStringLiteral("ValueList"));
    parser.addPositionalArgument(QStringLiteral("input"), QStringLiteral("The file to read."));
    parser.printHelpMessage();

    // A real program passes the arguments of main().
    const auto args = [](const char* line) {
        return QString::fromLatin1(line).split(QLatin1Char(' '));
    };
    if (parser.parseB(args("convert a.txt -o b.txt --only png svg")))
        std::printf("to %s, only %s, from %s\n",
            qUtf8Printable(parser.getValue(QStringLiteral("output"))),
            qUtf8Printable(parser.getValue(QStringLiteral("only"))),
            qUtf8Printable(parser.positionalArguments().constFirst()));
    if (!parser.parse(args("convert --fast -o")))
        parser.printErrorMessage();
    return 0;
}
