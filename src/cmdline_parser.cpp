// SPDX-License-Identifier: MIT
#include "cmdline_parser.h"

#include "cmdline_parser_p.h"
#include "trace_p.h"

#include <QCoreApplication>
#include <QDebug>
#include <QFileInfo>
#include <QTextStream>

#include <algorithm>
#include <cstdio>
#include <numeric>

namespace Zentu {

// Name and description share a line of this length, blanks between them not counted.
static constexpr int TableWidth = 70;

static bool isOption(const QString& arg)
{
    return arg.startsWith(QLatin1Char('-'));
}

static QString keyOf(const QString& form)
{
    const auto key =
        std::find_if(form.cbegin(), form.cend(), [](QChar c) { return c != QLatin1Char('-'); });
    return form.mid(static_cast<int>(key - form.cbegin()));
}

namespace {

/// Writes the rows of a table, with the words of each description wrapped.
class TableWriter
{
public:
    TableWriter(int nameWidth, int size)
        : m_nameWidth(nameWidth)
        , m_width(TableWidth - nameWidth)
    {
        m_text.reserve(size);
    }

    void writeRow(const QString& name, QStringView description)
    {
        appendBlanks(2);
        m_text += name;
        appendBlanks(m_nameWidth - static_cast<int>(name.size()));
        m_isFirstLine = true;
        for (;;) {
            const auto end = std::find(description.begin(), description.end(), QLatin1Char('\n'));
            writeParagraph(QStringView(description.begin(), end));
            if (end == description.end())
                break;
            description = QStringView(end + 1, description.end());
        }
        if (m_isFirstLine)
            m_text += QLatin1Char('\n');
    }

    QString text() const { return m_text; }

private:
    void writeParagraph(QStringView paragraph)
    {
        if (paragraph.isEmpty())
            writeLine();
        const auto isSpace = [](QChar c) { return c.isSpace(); };
        const auto end = paragraph.end();
        auto word = std::find_if_not(paragraph.begin(), end, isSpace);
        while (word != end) {
            const auto wordEnd = std::find_if(word, end, isSpace);
            addWord(QStringView(word, wordEnd));
            word = std::find_if_not(wordEnd, end, isSpace);
        }
        if (m_hasPending)
            writeLine();
    }

    // The length of a line counts a separator before its first word, except where an overflowing
    // word began the line.
    void addWord(QStringView word)
    {
        const int size = static_cast<int>(word.size());
        if (size > m_width) {
            const int cut = std::max(0, m_width - m_length - 1);
            append(word.left(cut));
            writeLine();
            append(word.mid(cut));
            m_length = size - cut;
        } else if (m_length + 1 + size > m_width) {
            writeLine();
            append(word);
            m_length = size;
        } else {
            append(word);
            m_length += 1 + size;
            if (m_length >= m_width)
                writeLine();
        }
    }

    void appendBlanks(int count) { m_text.resize(m_text.size() + count, QLatin1Char(' ')); }

    void append(QStringView word)
    {
        if (m_hasPending)
            m_pending += QLatin1Char(' ');
        m_pending.append(word.data(), static_cast<int>(word.size()));
        m_hasPending = true;
    }

    // The pending words become a line, and there are none afterwards.
    void writeLine()
    {
        appendBlanks(m_isFirstLine ? 2 : m_nameWidth + 4);
        m_text += m_pending;
        m_text += QLatin1Char('\n');
        m_isFirstLine = false;
        m_pending.truncate(0);
        m_hasPending = false;
        m_length = 0;
    }

    const int m_nameWidth;
    const int m_width;
    QString m_text;
    QString m_pending;
    bool m_hasPending = false;
    bool m_isFirstLine = true;
    int m_length = 0;
};

} // namespace

QString DescriptionTable::format() const
{
    int nameWidth = 0;
    for (const QString& name : names)
        nameWidth = std::max(nameWidth, static_cast<int>(name.size()));
    // Enough, unless words are broken again and again.
    const int size = std::accumulate(
        descriptions.cbegin(), descriptions.cend(), 0, [=](int sum, const QString& text) {
            return sum + 2 * (nameWidth + 5) + static_cast<int>(text.size());
        });
    TableWriter writer(nameWidth, size);
    for (int row = 0; row < names.size(); ++row)
        writer.writeRow(names.at(row), descriptions.at(row));
    return writer.text();
}

CmdOption _cmdline_parser_private::findOptionDefine(const QString& key) const
{
    const auto it = std::find_if(options.cbegin(), options.cend(),
        [&](const CmdOption& option) { return option.keys.contains(key); });
    return it == options.cend() ? CmdOption() : *it;
}

bool _cmdline_parser_private::hasOption(const QString& key) const
{
    return std::any_of(options.cbegin(), options.cend(),
        [&](const CmdOption& option) { return option.keys.contains(key); });
}

void _cmdline_parser_private::declare(const CmdOption& option)
{
    for (const QString& key : option.keys)
        declared.insert(key, static_cast<int>(options.size()));
    options.append(option);
}

bool _cmdline_parser_private::parse(const QStringList& args, ListMode listMode)
{
    Trace() << "CmdLineParser"
            << "parse" << args;
    unknownOptions.clear();
    missingValues.clear();
    values.clear();
    posValues.clear();

    for (int i = 1; i < args.size();) {
        if (isOption(args.at(i))) {
            i = takeOption(args, i, listMode);
        } else {
            posValues.append(args.at(i));
            ++i;
        }
    }
    return unknownOptions.isEmpty() && missingValues.isEmpty();
}

// Takes the option at a position, and its values; returns the position behind them.
int _cmdline_parser_private::takeOption(const QStringList& args, int position, ListMode listMode)
{
    const QString& arg = args.at(position);
    const auto it = declared.constFind(keyOf(arg));
    if (it == declared.cend()) {
        unknownOptions.append(arg);
        return position + 1;
    }
    const CmdOption& option = options.at(it.value());
    if (option.valueName.isEmpty()) {
        values.insert(option.id, QStringLiteral("true"));
        return position + 1;
    }

    const bool all = listMode == ListMode::All && option.valueName == QLatin1String("ValueList");
    const auto first = args.cbegin() + position + 1;
    const auto end = all ? std::find_if(first, args.cend(), isOption)
                         : first + (first != args.cend() && !isOption(*first));
    if (first == end) {
        // What follows is skipped unseen: it stands where the value should.
        missingValues.append(arg);
        return position + 2;
    }
    const auto count = static_cast<int>(end - first);
    values.insert(option.id,
        all ? args.mid(position + 1, count).join(QStringLiteral("&&")) : args.at(position + 1));
    return position + 1 + count;
}

CmdLineParser::CmdLineParser(const QString& appName)
    : d(new _cmdline_parser_private)
{
    d->appName =
        appName.isEmpty() ? QFileInfo(QCoreApplication::applicationFilePath()).fileName() : appName;
}

CmdLineParser::~CmdLineParser()
{
    delete d;
}

void CmdLineParser::setBrief(const QString& brief)
{
    d->brief = brief;
}

void CmdLineParser::addOption(
    const QStringList& names, const QString& description, const QString& valueName)
{
    const auto refuse = [](const char* reason, const QString& form) {
        qCritical() << "CmdLineParser" << reason << form;
    };

    if (names.isEmpty()) {
        refuse("incorrect option form", QString());
        return;
    }
    CmdOption option;
    option.names = names;
    for (const QString& form : names) {
        const QString key = keyOf(form);
        if (!isOption(form) || key.isEmpty()) {
            refuse("incorrect option form", form);
            return;
        }
        if (d->declared.contains(key)) {
            refuse("duplicated option form", form);
            return;
        }
        option.keys.append(key);
    }
    option.id = static_cast<quint32>(qHash(option.keys.first(), 0));
    option.description = description;
    option.valueName = valueName;
    d->declare(option);
}

void CmdLineParser::addOption(
    const QString& name, const QString& description, const QString& valueName)
{
    addOption(QStringList(name), description, valueName);
}

void CmdLineParser::addHelpOption(const QStringList& names)
{
    addOption(names, QStringLiteral("Show this help."));
}

void CmdLineParser::addVersionOption(const QStringList& names)
{
    addOption(names, QStringLiteral("Show version information."));
}

void CmdLineParser::addPositionalArgument(const QString& name, const QString& description)
{
    d->posArguments.append({name, description});
}

bool CmdLineParser::parse(const QStringList& args)
{
    return d->parse(args, _cmdline_parser_private::ListMode::FirstOnly);
}

bool CmdLineParser::parseB(const QStringList& args)
{
    return d->parse(args, _cmdline_parser_private::ListMode::All);
}

bool CmdLineParser::parse(int argc, const char** argv)
{
    QStringList args;
    for (int i = 0; i < argc; ++i)
        args.append(QString::fromUtf8(argv[i]));
    return parse(args);
}

bool CmdLineParser::isSet(const QString& name) const
{
    const quint32 id = d->findOptionDefine(keyOf(name)).id;
    return id != 0 && d->values.contains(id);
}

QString CmdLineParser::getValue(const QString& name) const
{
    const quint32 id = d->findOptionDefine(keyOf(name)).id;
    return id != 0 ? d->values.value(id) : QString(QLatin1String(""));
}

QStringList CmdLineParser::positionalArguments() const
{
    return d->posValues;
}

QString CmdLineParser::errorMessage() const
{
    const auto part = [](const char* text, const QStringList& arguments) {
        return arguments.isEmpty()
            ? QString()
            : QLatin1String(text) + arguments.join(QLatin1Char(' ')) + QLatin1Char(' ');
    };
    return part("unknown option: ", d->unknownOptions) + part("missing value: ", d->missingValues);
}

// The text serves as its own format, for which there are no arguments: a pair of percent signs
// prints one, and any other conversion prints as it is written.
static void printAsFormat(const QString& text)
{
    std::fputs(text.toLatin1().replace("%%", "%").constData(), stdout);
    std::fputc('\n', stdout);
}

void CmdLineParser::printErrorMessage() const
{
    printAsFormat(errorMessage());
}

QString CmdLineParser::helpMessage() const
{
    QString text;
    QTextStream out(&text);
    if (!d->brief.isEmpty())
        out << "Brief:\n  " << d->brief << '\n';

    out << "Usage:\n  " << d->appName;
    if (!d->options.isEmpty())
        out << " [options]";
    for (const PosArgument& argument : qAsConst(d->posArguments))
        out << ' ' << argument.name;
    out << '\n';

    if (!d->posArguments.isEmpty()) {
        DescriptionTable table;
        for (const PosArgument& argument : qAsConst(d->posArguments)) {
            table.names.append(argument.name);
            table.descriptions.append(argument.description);
        }
        out << "Arguments:\n" << table.format();
    }
    if (!d->options.isEmpty()) {
        DescriptionTable table;
        for (const CmdOption& option : qAsConst(d->options)) {
            QString name = option.names.join(QLatin1String(", "));
            if (!option.valueName.isEmpty()) {
                name += QLatin1String(" <");
                name += option.valueName;
                name += QLatin1Char('>');
            }
            table.names.append(name);
            table.descriptions.append(option.description);
        }
        out << "Options:\n" << table.format();
    }
    out.flush();
    return text;
}

void CmdLineParser::printHelpMessage() const
{
    printAsFormat(helpMessage());
}

} // namespace Zentu
