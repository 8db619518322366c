// SPDX-License-Identifier: MIT
#include "command.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace Zentu::Inspect {

static bool isBehind(const QString& at, const Line& line, qint64 number)
{
    if (at.isEmpty())
        return false;
    bool isNumber = false;
    const qint64 last = at.toLongLong(&isNumber);
    if (isNumber)
        return number > last;
    const QString time = at.contains(QLatin1Char('T')) ? decoded(line.time) : clock(line.time);
    return !line.time.empty() && time.left(at.size()) > at;
}

bool readLines(
    const Request& request, const std::function<void(const Line& line, std::string_view text)>& use)
{
    LineSource source;
    if (!source.open(request.file()))
        return false;
    std::string_view text;
    for (qint64 number = 1; source.next(text); ++number) {
        const Line line = readLine(text);
        if (isBehind(request.at, line, number))
            break;
        use(line, text);
    }
    return true;
}

bool replay(const Request& request, Program& program)
{
    return readLines(
        request, [&](const Line& line, std::string_view /*text*/) { program.feed(line); });
}

static void write(const QByteArray& text)
{
    std::fwrite(text.constData(), 1, static_cast<std::size_t>(text.size()), stdout);
}

void print(const QString& line)
{
    write((line + QLatin1Char('\n')).toLocal8Bit());
}

static QByteArray compact(const QJsonValue& value)
{
    // A value alone is no document for Qt.
    QByteArray text = QJsonDocument(QJsonArray{value}).toJson(QJsonDocument::Compact);
    return text.mid(1, text.size() - 2);
}

void printJson(const QJsonValue& value)
{
    write(compact(value) + '\n');
}

JsonList::JsonList()
{
    write("[");
}

JsonList::~JsonList()
{
    write("]\n");
}

void JsonList::add(const QJsonValue& value)
{
    write((m_isEmpty ? "" : ",\n ") + compact(value));
    m_isEmpty = false;
}

QJsonObject json(const Moment& moment)
{
    const QJsonValue time =
        moment.time().empty() ? QJsonValue() : QJsonValue(decoded(moment.time()));
    return {{QStringLiteral("line"), moment.line}, {QStringLiteral("time"), time}};
}

QString clock(std::string_view time)
{
    const std::size_t separator = time.find('T');
    return decoded(separator == std::string_view::npos ? time : time.substr(separator + 1));
}

QString inWords(const Moment& moment)
{
    const QString line = QStringLiteral("line %1").arg(moment.line);
    return moment.time().empty() ? line : line + QLatin1String(", ") + clock(moment.time());
}

QString counted(qint64 number, const char* singular)
{
    return QStringLiteral("%1 %2%3").arg(number).arg(
        QLatin1String(singular), QLatin1String(number == 1 ? "" : "s"));
}

bool writeOutput(const Request& request, const QByteArray& text)
{
    if (request.output.isEmpty()) {
        write(text);
        return true;
    }
    QFile file(request.output);
    if (file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.flush())
        return true;
    std::fprintf(stderr, "zentu-trace: cannot write %s: %s\n", qPrintable(request.output),
        qPrintable(file.errorString()));
    return false;
}

} // namespace Zentu::Inspect
