// SPDX-License-Identifier: MIT
#include "stack.h"

#include <QFileInfo>
#include <QHash>
#include <QProcess>

#include <cxxabi.h>
#include <dlfcn.h>
#include <execinfo.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <memory>
#include <string_view>

namespace Zentu::Inspect::Stack {

static std::string demangled(const char* name)
{
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(name, nullptr, nullptr, &status), &std::free);
    return status == 0 && text ? text.get() : name;
}

std::string className(const std::type_info& type)
{
    return demangled(type.name());
}

static bool isOf(std::string_view file, std::string_view part)
{
    return file.find(part) != std::string_view::npos;
}

static bool isOfLibrary(void* frame)
{
    Dl_info info{};
    if (!dladdr(frame, &info) || !info.dli_fname)
        return false;
    const std::string_view file = info.dli_fname;
    return isOf(file, "libwisp") || isOf(file, "libZentuKit");
}

std::vector<void*> capture(int depth)
{
    std::array<void*, 64> frames{};
    const int most = std::min(depth + 12, static_cast<int>(frames.size()));
    const int count = depth > 0 ? backtrace(frames.data(), most) : 0;
    return std::vector<void*>(frames.begin(), frames.begin() + count);
}

/// Without the inspector, which comes first, and the logger and the library after it.
static std::vector<void*> callersIn(const std::vector<void*>& frames)
{
    const auto library = std::find_if(frames.begin(), frames.end(), isOfLibrary);
    return {std::find_if_not(library, frames.end(), isOfLibrary), frames.end()};
}

/// Where a frame is in its file. A return address is behind the call that is meant.
static quintptr offsetOf(void* frame, const Dl_info& info)
{
    return reinterpret_cast<quintptr>(frame) - reinterpret_cast<quintptr>(info.dli_fbase) - 1;
}

static QString nameOf(void* frame)
{
    Dl_info info{};
    if (!dladdr(frame, &info) || !info.dli_fname)
        return QStringLiteral("0x%1").arg(reinterpret_cast<quintptr>(frame), 0, 16);
    if (info.dli_sname)
        return QString::fromStdString(demangled(info.dli_sname));
    return QStringLiteral("%1+0x%2")
        .arg(QFileInfo(QString::fromLocal8Bit(info.dli_fname)).fileName())
        .arg(offsetOf(frame, info), 0, 16);
}

QStringList functions(const std::vector<void*>& frames)
{
    QStringList result;
    for (void* const frame : callersIn(frames))
        result.append(nameOf(frame));
    return result;
}

using Names = QHash<void*, QString>;

/// Adds what addr2line knows of the frames in a file: the function, and its line if there is one.
static void askForLines(const QString& file, const QList<void*>& frames, Names& names)
{
    QStringList arguments{QStringLiteral("-Cfse"), file};
    for (void* const frame : frames) {
        Dl_info info{};
        dladdr(frame, &info);
        arguments.append(QString::number(offsetOf(frame, info), 16));
    }
    QProcess process;
    process.start(QStringLiteral("addr2line"), arguments);
    if (!process.waitForFinished(5000))
        return;
    const QStringList lines =
        QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    for (int i = 0; i < frames.size() && 2 * i + 1 < lines.size(); ++i) {
        const QString& function = lines.at(2 * i);
        const QString& line = lines.at(2 * i + 1);
        if (!function.startsWith(QLatin1Char('?')))
            names[frames.at(i)] =
                line.contains(QLatin1Char('?')) ? function : function + QLatin1String(", ") + line;
    }
}

QStringList describe(const std::vector<void*>& frames)
{
    static Names known;
    const std::vector<void*> callers = callersIn(frames);
    QHash<QString, QList<void*>> unknown;
    for (void* const frame : callers) {
        Dl_info info{};
        if (known.contains(frame))
            continue;
        known.insert(frame, nameOf(frame));
        if (dladdr(frame, &info) && info.dli_fname)
            unknown[QString::fromLocal8Bit(info.dli_fname)].append(frame);
    }
    for (auto it = unknown.cbegin(); it != unknown.cend(); ++it)
        askForLines(it.key(), it.value(), known);
    QStringList result;
    for (void* const frame : callers)
        result.append(known.value(frame));
    return result;
}

} // namespace Zentu::Inspect::Stack
