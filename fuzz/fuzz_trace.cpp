// SPDX-License-Identifier: MIT
//
// Replays a made-up trace and asks every question about it.

#include "fuzz_input.h"

#include "answers.h"
#include "zentu_trace_normal.h"

#include <algorithm>
#include <numeric>
#include <string_view>

using namespace Zentu::Inspect;

static void readItems(const Line& line)
{
    for (const Item& item : line.items) {
        unescaped(item.text);
        item.field("type = ");
        item.quoted();
    }
    decoded(line.body);
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    std::string_view rest(reinterpret_cast<const char*>(data), size);
    Program program;
    Zentu::TraceNormalizer normalizer;
    while (!rest.empty()) {
        const std::string_view text = rest.substr(0, rest.find('\n'));
        rest.remove_prefix(std::min(text.size() + 1, rest.size()));
        const Line line = readLine(text);
        readItems(line);
        program.feed(line);
        normalizer.normalized(text);
    }
    const QStringList ids = actionIds(program);
    for (const QString& id : ids)
        Fuzz::expect(whyIsIt(program, id).has_value(), "an action has an answer");
    leaks(program);
    const Counts& counts = program.counts();
    Fuzz::expect(
        std::accumulate(counts.readings.begin(), counts.readings.end(), qint64(0)) == counts.lines,
        "each line is read once");
    return 0;
}
