// SPDX-License-Identifier: MIT
//
// Declares and parses what the input says, and compares every answer and every printed character
// with a model.

#include "fuzz_input.h"

#include "cmdline_parser.h"
#include "cmdline_texts.h"

#include <QByteArray>
#include <QtGlobal>

#include <future>
#include <vector>

#include <unistd.h>

namespace {

using namespace Support;
using Text = CmdLineModel::Text;

int s_criticals = 0;

// The model counts characters, so there are none that take two places.
QString plain(QString string)
{
    for (QChar& c : string) {
        if (c.isSurrogate())
            c = QLatin1Char('?');
    }
    return string;
}

QStringList plainTexts(Fuzz::Input& input, int limit)
{
    QStringList result = input.texts(limit);
    for (QString& each : result)
        each = plain(each);
    return result;
}

QString valueName(Fuzz::Input& input)
{
    switch (input.number(4)) {
    case 0:
        return QString();
    case 1:
        return QStringLiteral("ValueList");
    case 2:
        return QStringLiteral("file");
    default:
        return plain(input.text());
    }
}

// What reaches the standard output while the function runs.
template <typename Function>
QByteArray printedBy(const Function& function)
{
    int ends[2];
    Fuzz::expect(pipe(ends) == 0, "pipe");
    // Reads along, as a pipe holds less than the longest help.
    std::future<QByteArray> reader = std::async(std::launch::async, [from = ends[0]] {
        QByteArray all;
        char chunk[4096];
        for (ssize_t got; (got = read(from, chunk, sizeof chunk)) > 0;)
            all.append(chunk, static_cast<int>(got));
        return all;
    });
    std::fflush(stdout);
    const int standardOutput = dup(STDOUT_FILENO);
    dup2(ends[1], STDOUT_FILENO);
    close(ends[1]);
    function();
    std::fflush(stdout);
    dup2(standardOutput, STDOUT_FILENO);
    close(standardOutput);
    const QByteArray all = reader.get();
    close(ends[0]);
    return all;
}

// A text that serves as a format in which no conversion is to be made.
QByteArray asPrinted(const QString& text)
{
    QByteArray result;
    const QByteArray latin1 = text.toLatin1();
    for (int i = 0; i < latin1.size(); ++i) {
        result += latin1.at(i);
        if (latin1.mid(i, 2) == "%%")
            ++i;
    }
    return result + '\n';
}

void declare(Fuzz::Input& input, Zentu::CmdLineParser& parser, CmdLineModel& model)
{
    const int kind = input.number(8);
    QString description = plain(input.text());
    if (kind < 2) {
        const QString name = plain(input.text());
        parser.addPositionalArgument(name, description);
        model.arguments.emplace_back(text(name), text(description));
        return;
    }
    const QStringList names = plainTexts(input, 4);
    QString value = valueName(input);
    const int before = s_criticals;
    if (kind == 2) {
        description = QStringLiteral("Show this help.");
        value.clear();
        parser.addHelpOption(names);
    } else if (kind == 3) {
        description = QStringLiteral("Show version information.");
        value.clear();
        parser.addVersionOption(names);
    } else if (names.size() == 1)
        parser.addOption(names.first(), description, value);
    else
        parser.addOption(names, description, value);
    const bool accepted = model.addOption(texts(names), text(description), text(value));
    Fuzz::expect(s_criticals == before + (accepted ? 0 : 1), "declaration");
}

bool parse(Fuzz::Input& input, Zentu::CmdLineParser& parser, const QStringList& args, bool lists)
{
    if (lists)
        return parser.parseB(args);
    if (input.flag())
        return parser.parse(args);
    std::vector<QByteArray> utf8;
    std::vector<const char*> argv;
    for (const QString& arg : args)
        utf8.push_back(arg.toUtf8());
    for (const QByteArray& arg : utf8)
        argv.push_back(arg.constData());
    return parser.parse(static_cast<int>(argv.size()), argv.data());
}

void compare(Fuzz::Input& input, const Zentu::CmdLineParser& parser, const CmdLineModel& model)
{
    Fuzz::expect(parser.errorMessage() == string(model.errorMessage()), "error");
    Fuzz::expect(texts(parser.positionalArguments()) == model.positional, "positional");
    for (const CmdLineModel::Option& option : model.options) {
        const QString name = string(option.names.front());
        Fuzz::expect(parser.isSet(name) == option.isSet, "set");
        Fuzz::expect(parser.getValue(name) == string(option.value), "value");
    }
    const QString name = plain(input.text());
    const CmdLineModel::Option* const option = model.find(text(name));
    Fuzz::expect(parser.isSet(name) == (option && option->isSet), "set by any name");
    Fuzz::expect(
        parser.getValue(name) == (option ? string(option->value) : QString()), "value by any name");
}

void countCriticals(QtMsgType type, const QMessageLogContext& /*context*/, const QString& /*text*/)
{
    if (type == QtCriticalMsg)
        ++s_criticals;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* /*argc*/, char*** /*argv*/)
{
    qInstallMessageHandler(countCriticals);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    Fuzz::Input input(data, size);
    const QString appName = QLatin1Char('t') + plain(input.text());
    Zentu::CmdLineParser parser(appName);
    CmdLineModel model;
    model.appName = text(appName);
    const QString brief = plain(input.text());
    parser.setBrief(brief);
    model.brief = text(brief);

    for (int count = input.number(8); count > 0; --count)
        declare(input, parser, model);
    for (int count = 1 + input.number(2); count > 0; --count) {
        const QStringList args = plainTexts(input, 12);
        const bool lists = input.flag();
        Fuzz::expect(
            parse(input, parser, args, lists) == model.parse(texts(args), lists), "result");
        compare(input, parser, model);
    }

    const QString error = parser.errorMessage();
    Fuzz::expect(
        printedBy([&] { parser.printErrorMessage(); }) == asPrinted(error), "printed error");
    const QString help = parser.helpMessage();
    Fuzz::expect(help == string(model.helpMessage()), "help");
    Fuzz::expect(printedBy([&] { parser.printHelpMessage(); }) == asPrinted(help), "printed help");
    return 0;
}
