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

/// Frames between a line and the one who caused it: the inspector, the logger and the library.
static bool isInside(void* frame)
{
    Dl_info info{};
    if (!dladdr(frame, &info) || !info.dli_fname)
        return false;
    const std::string_view file = info.dli_fname;
    return isOf(file, "libwisp") || isOf(file, "libZentuKit") || isOf(file, "zentu_inspector");
}

std::vector<void*> capture(int depth)
{
    std::array<void*, 64> frames{};
    const int most = std::min(depth + 12, static_cast<int>(frames.size()));
    const int count = depth > 0 ? backtrace(frames.data(), most) : 0;
    return {frames.begin(), frames.begin() + count};
}

static std::vector<void*> callersIn(const std::vector<void*>& frames)
{
    return {std::find_if_not(frames.begin(), frames.end(), isInside), frames.end()};
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

/// What addr2line knows of one frame: the function and its line, both or none.
static QString lineOf(void* frame)
{
    Dl_info info{};
    if (!dladdr(frame, &info) || !info.dli_fname)
        return {};
    QProcess process;
    process.start(QStringLiteral("addr2line"),
        {QStringLiteral("-Cfse"), QString::fromLocal8Bit(info.dli_fname),
            QString::number(offsetOf(frame, info), 16)});
    if (!process.waitForFinished(2000))
        return {};
    const QStringList lines =
        QString::fromLocal8Bit(process.readAllStandardOutput()).split(QLatin1Char('\n'));
    if (lines.size() < 2 || lines.first().startsWith(QLatin1Char('?')))
        return {};
    const bool hasLine = !lines.at(1).startsWith(QLatin1Char('?'));
    return hasLine ? lines.at(0) + QLatin1String(", ") + lines.at(1) : lines.at(0);
}

QStringList describe(const std::vector<void*>& frames)
{
    static QHash<void*, QString> known;
    QStringList result;
    for (void* const frame : callersIn(frames)) {
        if (!known.contains(frame)) {
            const QString line = lineOf(frame);
            known.insert(frame, line.isEmpty() ? nameOf(frame) : line);
        }
        result.append(known.value(frame));
    }
    return result;
}

} // namespace Zentu::Inspect::Stack
