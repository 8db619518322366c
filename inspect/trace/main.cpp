// SPDX-License-Identifier: MIT
#include "command.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QRegularExpression>

#include <cstdio>

using namespace Zentu::Inspect;

namespace {

struct Command
{
    const char* name;
    const char* arguments;
    const char* options; ///< Those that it takes beside --json
    int fewest;
    int most;
    const char* help;
    int (*run)(const Request& request);
};

const Command Commands[] = {
    {"summary", "FILE", "at strict", 1, 1, "what happened: counts, messages, what was left over",
        &summary},
    {"why", "ACTION FILE", "at", 2, 2, "why an action is as it is, and since when", &why},
    {"events", "[TYPE] FILE", "at", 1, 2, "who posted, who was subscribed, what nobody could hear",
        &events},
    {"contexts", "FILE", "at", 1, 1, "the changes of contexts, and what each did", &contexts},
    {"leaks", "FILE", "at", 1, 1, "what was registered, added or opened and never let go", &leaks},
    {"timeline", "FILE -o F.svg", "at output", 1, 1,
        "all of it over time, to look at; or F.html, to zoom and search", &timeline},
    {"graph", "FILE -o F.svg", "at output", 1, 1, "who posts what to whom", &graph},
    {"normal", "FILE", "at", 1, 1, "the lines with stable names, for golden files", &normal},
    {"diff", "A B", "", 2, 2, "what differs in behaviour between two runs", &diff},
    {"follow", "FILE [FILTER]", "", 1, 2, "the lines as they come, those with the text", &follow},
};

} // namespace

static QString commandList()
{
    QString text = QStringLiteral("Answers questions about a program from its trace.\n\nCommands:");
    for (const Command& command : Commands)
        text += QStringLiteral("\n  %1 %2")
                    .arg(QStringLiteral("%1 %2").arg(
                             QLatin1String(command.name), QLatin1String(command.arguments)),
                        -24)
                    .arg(QLatin1String(command.help));
    return text + QLatin1String("\n\nFILE is a trace, or - for the standard input.");
}

static const Command* commandNamed(const QString& name)
{
    for (const Command& command : Commands) {
        if (name == QLatin1String(command.name))
            return &command;
    }
    return nullptr;
}

/// A line's number, or a time with or without its date: 12:03, 12:03:04.5, 2026-11-22T12:03:04.
static bool isPlace(const QString& text)
{
    static const QRegularExpression form(
        QStringLiteral("^([0-9]+|([0-9]{4}-[0-9]{2}-[0-9]{2}T)?[0-9]{2}:[0-9]{2}(:[0-9]{2}"
                       "(\\.[0-9]*)?Z?)?)$"));
    return form.match(text).hasMatch();
}

static int refuse(const QString& what)
{
    std::fprintf(stderr, "zentu-trace: %s; see zentu-trace --help\n", qPrintable(what));
    return Failed;
}

int main(int argc, char** argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("zentu-trace"));
    QCoreApplication::setApplicationVersion(QStringLiteral(ZENTU_TRACE_VERSION));

    QCommandLineParser parser;
    parser.setApplicationDescription(commandList());
    const QCommandLineOption help(
        {QStringLiteral("h"), QStringLiteral("help")}, QStringLiteral("Show this help."));
    const QCommandLineOption version(
        {QStringLiteral("v"), QStringLiteral("version")}, QStringLiteral("Show the version."));
    const QCommandLineOption at(QStringLiteral("at"),
        QStringLiteral("Ask for the state at a line's number or time (12:03:04)."),
        QStringLiteral("LINE|TIME"));
    const QCommandLineOption json(QStringLiteral("json"), QStringLiteral("Answer in JSON."));
    const QCommandLineOption output({QStringLiteral("o"), QStringLiteral("output")},
        QStringLiteral("Write the picture there."), QStringLiteral("FILE"));
    const QCommandLineOption strict(QStringLiteral("strict"),
        QStringLiteral("With summary: exit with 1 where something is amiss."));
    parser.addOptions({help, version, at, json, output, strict});
    parser.addPositionalArgument(
        QStringLiteral("COMMAND"), QStringLiteral("One of the commands above."));

    if (!parser.parse(QCoreApplication::arguments()))
        return refuse(parser.errorText());
    if (parser.isSet(help)) {
        print(parser.helpText().trimmed());
        return Fine;
    }
    if (parser.isSet(version)) {
        print(QStringLiteral("zentu-trace %1").arg(QCoreApplication::applicationVersion()));
        return Fine;
    }

    Request request;
    request.arguments = parser.positionalArguments();
    if (request.arguments.isEmpty())
        return refuse(QStringLiteral("no command"));
    request.command = request.arguments.takeFirst();
    const Command* const command = commandNamed(request.command);
    if (!command)
        return refuse(QStringLiteral("no command %1").arg(request.command));
    if (request.arguments.size() < command->fewest || request.arguments.size() > command->most)
        return refuse(QStringLiteral("usage: zentu-trace %1 %2")
                          .arg(request.command, QLatin1String(command->arguments)));
    for (const QCommandLineOption* const option : {&at, &output, &strict}) {
        const QString name = option->names().last();
        if (parser.isSet(*option) && !QLatin1String(command->options).contains(name))
            return refuse(QStringLiteral("%1 takes no --%2").arg(request.command, name));
    }
    request.at = parser.value(at);
    if (parser.isSet(at) && !isPlace(request.at))
        return refuse(QStringLiteral("%1 is neither a line nor a time").arg(request.at));
    request.output = parser.value(output);
    request.json = parser.isSet(json);
    request.strict = parser.isSet(strict);
    return command->run(request);
}
