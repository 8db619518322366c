// SPDX-License-Identifier: MIT
#include "measure.h"

#include "qlogstream.h"

#include <QApplication>

#include <cstdlib>
#include <functional>

// The C library's own allocator under its other names, so that those of the standard can count.
extern "C" {
void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
}

static thread_local std::uint64_t s_allocations = 0;

extern "C" void* malloc(std::size_t size)
{
    ++s_allocations;
    return __libc_malloc(size);
}

extern "C" void* calloc(std::size_t count, std::size_t size)
{
    ++s_allocations;
    return __libc_calloc(count, size);
}

extern "C" void* realloc(void* memory, std::size_t size)
{
    ++s_allocations;
    return __libc_realloc(memory, size);
}

static std::string* s_kept = nullptr;

std::uint64_t Bench::allocationCount()
{
    return s_allocations;
}

std::string Bench::textOf(const std::function<void()>& statement)
{
    std::string text;
    s_kept = &text;
    statement();
    s_kept = nullptr;
    return text;
}

// A logger that does nothing. The program's own comes before that of any library.

wisp::logger* wisp::logger::instance()
{
    static logger instance;
    return &instance;
}

void wisp::logger::log(int /*level*/, const char* text)
{
    if (s_kept)
        *s_kept = text;
    benchmark::DoNotOptimize(text);
}

static void ignoreMessage(
    QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& /*text*/)
{
}

int main(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    qInstallMessageHandler(ignoreMessage);

    Bench::addTraceRows();
    Bench::addEventRows();
    Bench::addContextRows();
    Bench::addCommandLineRows();
    Bench::addDocumentRows();
    Bench::addOptionRows();
    Bench::addPoolRows();
    Bench::addTextRows();
    benchmark::RunSpecifiedBenchmarks();
}
