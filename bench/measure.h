// SPDX-License-Identifier: MIT
#pragma once

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <chrono>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace Bench {

/// How often this thread has asked for memory since it began.
std::uint64_t allocationCount();

/// What the logger was last given, while it is told to keep it.
std::string textOf(const std::function<void()>& statement);

/// Measures a step that leaves everything as it found it.
template <typename Step>
void repeat(benchmark::State& state, const Step& step)
{
    const std::uint64_t before = allocationCount();
    for (auto _ : state)
        step();
    state.counters["allocations"] =
        static_cast<double>(allocationCount() - before) / static_cast<double>(state.iterations());
}

/// Measures a step, but not what prepares it. For rows with manual time. Events that are left are
/// sent before, as Qt looks through the queue for those of one object.
template <typename Prepare, typename Step>
void repeat(benchmark::State& state, const Prepare& prepare, const Step& step)
{
    using Clock = std::chrono::steady_clock;
    std::uint64_t allocations = 0;
    for (auto _ : state) {
        auto prepared = prepare();
        QCoreApplication::processEvents();
        const std::uint64_t before = allocationCount();
        const Clock::time_point begin = Clock::now();
        step(prepared);
        state.SetIterationTime(std::chrono::duration<double>(Clock::now() - begin).count());
        allocations += allocationCount() - before;
    }
    state.counters["allocations"] =
        static_cast<double>(allocations) / static_cast<double>(state.iterations());
}

/// Adds "row/who" for each of the sizes; without sizes, once.
template <typename Function>
benchmark::internal::Benchmark* add(const std::string& row, const std::string& who,
    const std::vector<int>& sizes, const Function& function)
{
    auto* const added = benchmark::RegisterBenchmark((row + '/' + who).c_str(), function);
    for (int size : sizes)
        added->Arg(size);
    return added;
}

// The rows of each family.
void addTraceRows();
void addEventRows();
void addContextRows();
void addCommandLineRows();
void addDocumentRows();
void addOptionRows();
void addPoolRows();
void addTextRows();

} // namespace Bench
