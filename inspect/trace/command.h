// SPDX-License-Identifier: MIT
#pragma once

#include "program.h"
#include "source.h"

#include <QJsonObject>
#include <QJsonValue>
#include <QStringList>

#include <functional>

namespace Zentu::Inspect {

/// What the command line asks for.
struct Request
{
    QString command;
    QStringList arguments; ///< Behind the command, the files last
    QString at;            ///< A line's number or a time, up to which to read; empty for the end
    QString output;
    bool json = false;
    bool strict = false;

    const QString& file() const { return arguments.last(); }
};

enum Exit { Fine = 0, Found = 1, Failed = 2 };

// The commands. Each writes to the standard output and returns what the process exits with.

int summary(const Request& request);
int why(const Request& request);
int events(const Request& request);
int contexts(const Request& request);
int leaks(const Request& request);
int timeline(const Request& request);
int graph(const Request& request);
int normal(const Request& request);
int diff(const Request& request);
int follow(const Request& request);

/// Goes through the lines of a file up to where the request ends. False if it cannot.
bool readTexts(const Request& request, const std::function<void(std::string_view text)>& use);
/// Likewise, and takes each line apart.
bool readLines(const Request& request, const std::function<void(const Line& line)>& use);
/// Replays the file of the request.
bool replay(const Request& request, Program& program);

// Output, in the encoding of the terminal.

void print(const QString& line);
void printJson(const QJsonValue& value);

/// Writes a list piece by piece, so that it need not be kept.
class JsonList
{
public:
    JsonList();
    ~JsonList();
    Q_DISABLE_COPY(JsonList)

    void add(const QJsonValue& value);

private:
    bool m_isEmpty = true;
};

/// {"line", "time"}; the time is null without one.
QJsonObject json(const Moment& moment);
/// "line 12, 12:03:04.000001".
QString inWords(const Moment& moment);
/// The part of a time that a person looks at.
QString clock(std::string_view time);

/// One of several, by number: "1 post", "2 posts".
QString counted(qint64 number, const char* singular);

/// Writes the text to the file that -o names, or to the standard output.
bool writeOutput(const Request& request, const QByteArray& text);

} // namespace Zentu::Inspect
