// SPDX-License-Identifier: MIT
#include "lines.h"
#include "measure.h"

#include "cmdline_parser.h"

#include <QCommandLineParser>
#include <QHash>
#include <QMap>
#include <QRegularExpression>

#include <CLI/CLI.hpp>
#include <boost/program_options.hpp>

#include <algorithm>
#include <memory>

namespace Bench {
namespace {

// Every third option is a flag, the others take a value.
bool isFlag(int option)
{
    return option % 3 == 0;
}

std::string formOf(int option)
{
    return "--option-" + std::to_string(option);
}

QString qtFormOf(int option)
{
    return QString::fromStdString(formOf(option));
}

QString descriptionOf(int option)
{
    return QStringLiteral("Sets what number %1 of the many options of this program is good for, in "
                          "two lines or three.")
        .arg(option);
}

// The program and its arguments: options with their values in a mixed order, and a positional
// argument after every other one.
QStringList arguments(int count, int options)
{
    QStringList result(QStringLiteral("program"));
    for (int i = 0; result.size() <= count; ++i) {
        const int option = (i * 7919) % options;
        result << qtFormOf(option);
        if (!isFlag(option))
            result << QStringLiteral("value-%1").arg(i);
        if (i % 2 == 0)
            result << QStringLiteral("file-%1.txt").arg(i);
    }
    while (result.size() > count + 1)
        result.removeLast();
    // No option is left without its value.
    result.last() = QStringLiteral("last.txt");
    return result;
}

/// The parser by hand.
template <typename Line>
class Parser
{
public:
    explicit Parser(int options)
    {
        for (int i = 0; i < options; ++i)
            declared.insert(qtFormOf(i).mid(2), {i, !isFlag(i)});
    }

    bool parse(const QStringList& args)
    {
        Line() << "CmdLineParser"
               << "parse" << args;
        values.clear();
        positional.clear();
        bool good = true;
        for (int i = 1; i < args.size(); ++i) {
            const QString& arg = args.at(i);
            if (!isOption(arg)) {
                positional.append(arg);
                continue;
            }
            const auto it = declared.constFind(keyOf(arg));
            if (it == declared.constEnd()) {
                good = false;
            } else if (!it->takesValue) {
                values.insert(it->id, QStringLiteral("true"));
            } else if (i + 1 < args.size() && !isOption(args.at(i + 1))) {
                values.insert(it->id, args.at(++i));
            } else {
                ++i;
                good = false;
            }
        }
        return good;
    }

private:
    struct Option
    {
        int id;
        bool takesValue;
    };

    static bool isOption(const QString& arg) { return arg.startsWith(QLatin1Char('-')); }

    static QString keyOf(const QString& arg)
    {
        int dashes = 0;
        while (dashes < arg.size() && arg.at(dashes) == QLatin1Char('-'))
            ++dashes;
        return arg.mid(dashes);
    }

    QHash<QString, Option> declared;
    QMap<int, QString> values;
    QStringList positional;
};

/// As one writes it at first: dashes removed by a regular expression, options searched one by one.
class PlainParser
{
public:
    explicit PlainParser(int options)
    {
        for (int i = 0; i < options; ++i)
            keys.append(QStringList(keyOf(qtFormOf(i))));
    }

    bool parse(const QStringList& args)
    {
        PlainLine() << "CmdLineParser"
                    << "parse" << args;
        values.clear();
        positional.clear();
        bool good = true;
        for (int i = 1; i < args.size(); ++i) {
            if (!args.at(i).startsWith(QLatin1Char('-'))) {
                positional.append(args.at(i));
                continue;
            }
            const QString key = keyOf(args.at(i));
            const auto it = std::find_if(keys.cbegin(), keys.cend(),
                [&](const QStringList& each) { return each.contains(key); });
            const int option = static_cast<int>(it - keys.cbegin());
            if (it == keys.cend())
                good = false;
            else if (isFlag(option))
                values.insert(option, QStringLiteral("true"));
            else if (i + 1 < args.size() && !args.at(i + 1).startsWith(QLatin1Char('-')))
                values.insert(option, args.at(++i));
        }
        return good;
    }

private:
    static QString keyOf(QString arg)
    {
        return arg.replace(QRegularExpression(QStringLiteral("^-+")), QString());
    }

    QList<QStringList> keys;
    QMap<int, QString> values;
    QStringList positional;
};

struct ZentuParser : Zentu::CmdLineParser
{
    explicit ZentuParser(int options)
        : CmdLineParser(QStringLiteral("program"))
    {
        for (int i = 0; i < options; ++i)
            addOption(
                qtFormOf(i), descriptionOf(i), isFlag(i) ? QString() : QStringLiteral("value"));
    }
};

struct QtParser : QCommandLineParser
{
    explicit QtParser(int options)
    {
        for (int i = 0; i < options; ++i)
            addOption(QCommandLineOption(qtFormOf(i).mid(2), descriptionOf(i),
                isFlag(i) ? QString() : QStringLiteral("value")));
    }
};

struct CliParser
{
    explicit CliParser(int options)
        : values(static_cast<std::size_t>(options))
        , flags(new bool[static_cast<std::size_t>(options)]())
    {
        for (int i = 0; i < options; ++i) {
            const auto at = static_cast<std::size_t>(i);
            auto* const option = isFlag(i) ? app.add_flag(formOf(i), flags[at])
                                           : app.add_option(formOf(i), values[at]);
            option->multi_option_policy(CLI::MultiOptionPolicy::TakeLast);
        }
        app.add_option("files", files);
    }

    bool parse(std::vector<std::string> args)
    {
        app.parse(std::move(args));
        return true;
    }

    CLI::App app;
    std::vector<std::string> values;
    std::unique_ptr<bool[]> flags;
    std::vector<std::string> files;
};

struct BoostParser
{
    explicit BoostParser(int options)
    {
        namespace po = boost::program_options;
        for (int i = 0; i < options; ++i) {
            const std::string name = formOf(i).substr(2);
            if (isFlag(i))
                description.add_options()(
                    name.c_str(), po::value<std::vector<std::string>>()->zero_tokens(), "");
            else
                description.add_options()(name.c_str(), po::value<std::vector<std::string>>(), "");
        }
        description.add_options()("files", po::value<std::vector<std::string>>(), "");
        positional.add("files", -1);
    }

    bool parse(const std::vector<std::string>& args)
    {
        boost::program_options::variables_map map;
        boost::program_options::store(boost::program_options::command_line_parser(args)
                                          .options(description)
                                          .positional(positional)
                                          .run(),
            map);
        boost::program_options::notify(map);
        return true;
    }

    boost::program_options::options_description description;
    boost::program_options::positional_options_description positional;
};

template <typename P>
void parse(benchmark::State& state)
{
    P parser(static_cast<int>(state.range(1)));
    const QStringList args =
        arguments(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    if (!parser.parse(args))
        state.SkipWithError("the arguments were refused");
    repeat(state, [&] { benchmark::DoNotOptimize(parser.parse(args)); });
}

// The standard library's strings, without the program; CLI11 wants the last one first.
template <typename P, bool LastFirst>
void parseStd(benchmark::State& state)
{
    std::vector<std::string> args;
    const QStringList qtArgs =
        arguments(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (const QString& arg : qtArgs.mid(1))
        args.push_back(arg.toStdString());
    if (LastFirst)
        std::reverse(args.begin(), args.end());
    P parser(static_cast<int>(state.range(1)));
    repeat(state, [&] { benchmark::DoNotOptimize(parser.parse(args)); });
}

void help(benchmark::State& state)
{
    const ZentuParser parser(static_cast<int>(state.range(0)));
    repeat(state, [&] { benchmark::DoNotOptimize(parser.helpMessage()); });
}

void qtHelp(benchmark::State& state)
{
    const QtParser parser(static_cast<int>(state.range(0)));
    repeat(state, [&] { benchmark::DoNotOptimize(parser.helpText()); });
}

template <typename Function>
void addParse(const char* who, const Function& function)
{
    auto* const row =
        benchmark::RegisterBenchmark((std::string("command line/parse/") + who).c_str(), function);
    for (int options : {10, 100, 1000}) {
        for (int args : {10, 100, 1000, 10000})
            row->Args({args, options});
    }
}

} // namespace

void addCommandLineRows()
{
    addParse("zentu", parse<ZentuParser>);
    addParse("core", parse<Parser<NoLine>>);
    addParse("hand", parse<Parser<HandLine>>);
    addParse("plain", parse<PlainParser>);
    addParse("QCommandLineParser", parse<QtParser>);
    addParse("CLI11", parseStd<CliParser, true>);
    addParse("Boost.Program_options", parseStd<BoostParser, false>);

    const std::vector<int> options = {10, 100, 1000};
    add("command line/help", "zentu", options, help);
    add("command line/help", "QCommandLineParser", options, qtHelp);
}

} // namespace Bench
