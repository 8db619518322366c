// SPDX-License-Identifier: MIT
#include "command.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <cstdio>

namespace Zentu::Inspect {

namespace {

/// Up to where a request goes.
class Limit
{
public:
    explicit Limit(const QString& at)
        : m_at(at)
    {
        m_line = at.toLongLong(&m_isLine);
    }

    bool isBehind(std::string_view text, qint64 number)
    {
        if (m_at.isEmpty())
            return false;
        if (m_isLine)
            return number > m_line;
        const std::string_view stamp = readLine(text).time;
        if (stamp.empty())
            return false;
        m_sawTime = true;
        const QString time = m_at.contains(QLatin1Char('T')) ? decoded(stamp) : clock(stamp);
        return time.left(m_at.size()) > m_at;
    }

    bool isKnown() const { return m_at.isEmpty() || m_isLine || m_sawTime; }

private:
    QString m_at;
    bool m_isLine = false;
    qint64 m_line = 0;
    bool m_sawTime = false;
};

} // namespace

bool readTexts(const Request& request, const std::function<void(std::string_view text)>& use)
{
    LineSource source;
    if (!source.open(request.file()))
        return false;
    Limit limit(request.at);
    std::string_view text;
    for (qint64 number = 1; source.next(text); ++number) {
        if (limit.isBehind(text, number))
            break;
        use(text);
    }
    if (!limit.isKnown())
        std::fputs("zentu-trace: no line has a time; ask by its number\n", stderr);
    return limit.isKnown();
}

bool readLines(const Request& request, const std::function<void(const Line& line)>& use)
{
    return readTexts(request, [&](std::string_view text) { use(readLine(text)); });
}

bool replay(const Request& request, Program& program)
{
    return readLines(request, [&](const Line& line) { program.feed(line); });
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
