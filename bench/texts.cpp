// SPDX-License-Identifier: MIT
#include "measure.h"

#include "line_ends.h"
#include "text_file.h"

#include <QFile>
#include <QPlainTextEdit>
#include <QTemporaryDir>

#include <memory>

namespace Bench {
namespace {

/// A file and an editor to open it in.
struct Opened
{
    Opened(const QByteArray& line, int lines)
        : path(folder.filePath(QStringLiteral("text")))
    {
        QFile file(path);
        if (file.open(QIODevice::WriteOnly))
            file.write(line.repeated(lines));
    }

    QTemporaryDir folder;
    QString path;
    QPlainTextEdit editor;
};

/// As the Workbench opens it, so that it can be saved byte for byte.
void openExactly(Opened& opened)
{
    TextFile file;
    QString text;
    QString error;
    if (file.read(opened.path, &text, &error))
        LineEnds::fill(&opened.editor, text);
}

/// As one would without that.
void openPlainly(Opened& opened)
{
    QFile file(opened.path);
    if (file.open(QIODevice::ReadOnly))
        opened.editor.setPlainText(QString::fromUtf8(file.readAll()));
}

void addRow(const std::string& row, const QByteArray& line, int lines)
{
    const auto addWho = [&](const std::string& who, void (*open)(Opened&)) {
        add(row, who, {}, [=](benchmark::State& state) {
            const auto prepare = [&] { return std::make_unique<Opened>(line, lines); };
            repeat(state, prepare, [open](auto& opened) { open(*opened); });
        })->UseManualTime();
    };
    addWho("zentu", openExactly);
    addWho("QPlainTextEdit", openPlainly);
}

} // namespace

void addTextRows()
{
    constexpr int Megabyte = 1024 * 1024;
    const QByteArray line = QByteArray(63, 'x') + '\n';
    addRow("texts/open 20 MB", line, 20 * Megabyte / 64);
    addRow("texts/open a line of 1 MB", QByteArray(Megabyte, 'x'), 1);
}

} // namespace Bench
