#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Writes docs/performance.md and its plot from the results of the benchmarks.

    report.py RESULTS COUNTS.txt DOCS [RESULTS-WITH-QT6]
"""

import collections
import datetime
import json
import math
import pathlib
import sys

# What each row is held against: other ways of doing it, and the most that ours may cost of each; with
# sizes where it is not meant for all of them.
LIMITS = {
    "trace": {"plain": 0.45},
    "events/post direct": {"plain": (0.45, ("0", "1"))},
    "events/post queued": {"plain": 0.6},
    "events/subscribe and unsubscribe": {"plain": 0.5, "least": 3},
    "events/subscribe and unsubscribe, all of one name": {"plain": 0.5, "least": 3},
    "events/subscribe and end": {"plain": 0.5, "least": 3},
    "events/subscribe and end, all of one name": {"plain": 0.5, "least": 3},
    "events/getSubscribersFor": {"plain": 0.5},
    "contexts/all switch": {"plain": 0.4, "hand": 1.5},
    "contexts/none switches": {"core": 2},
    "command line/parse": {"QCommandLineParser": 1, "CLI11": 1, "Boost.Program_options": 1},
    "command line/help": {"QCommandLineParser": 1},
    "documents/open": {"hand": 1.05},
    "documents/activate": {"hand": 1.05},
    "documents/retitle": {"hand": 1.05},
    "documents/close": {"hand": 1.05},
    "options/build, flat": {"hand": 1.2, "KPageDialog": (0.01, ("1000",))},
    "options/build, deep": {"hand": 1.2, "KPageDialog": (0.01, ("1000",))},
    "pool/add and destroy": {"hand": 1.3},
    "texts/open 20 MB": {"QPlainTextEdit": 1.1},
    "texts/open a line of 1 MB": {"QPlainTextEdit": 1.1},
}

TITLES = {
    "trace": ("One line of the trace",
              "Each composition that the library writes. `stream` is `wisp::qlogstream`, which hosts "
              "use for lines of their own."),
    "events": ("Event bus", "Sizes are handlers, events in the queue, or subscriptions. "
               "`lock and call` is a virtual call and an uncontended read lock for each handler; "
               "`least` is a read lock, a look-up, ten steps and one block of memory for a list; of a "
               "subscription it is two locks and lines, and an entry that goes where it came."),
    "contexts": ("Contexts and actions", "Sizes are proxy actions with two backends each."),
    "command line": ("Command line", "Sizes are arguments × options for parsing, options for help."),
    "documents": ("Document area", "Sizes are open documents."),
    "options": ("Options dialog", "Sizes are pages, in one group or five levels deep."),
    "pool": ("Object pool", "Sizes are objects."),
    "texts": ("Texts of the Workbench", "A file that can be saved byte for byte, beside a bare editor."),
}


def read(folder):
    """{family: {row: {size: {who: (nanoseconds, allocations)}}}}, and what the machine is."""
    families = collections.OrderedDict()
    runs = [json.loads(path.read_text()) for path in sorted(folder.glob("*.json"))]
    # They ran in a mixed order.
    results = [result for run in runs for result in sorted(run["benchmarks"], key=lambda result: (
        result["family_index"], result["per_family_instance_index"]))]
    # The best of each: what else a machine does can only add to a time.
    for result in results:
        if result["run_type"] != "iteration":
            continue
        parts = [part for part in result["run_name"].split("/") if part != "manual_time"]
        family, row, who, *sizes = parts
        size = " × ".join(sizes)
        rows = families.setdefault(family, collections.OrderedDict())
        by_size = rows.setdefault(row, collections.OrderedDict())
        scale = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[result["time_unit"]]
        best = by_size.setdefault(size, collections.OrderedDict())
        best[who] = min(best.get(who, (math.inf, 0)),
                        (result["real_time"] * scale, result.get("allocations", 0)))
    return families, runs[0]["context"]


def time(nanoseconds):
    for limit, unit in ((1e3, "ns"), (1e6, "µs"), (1e9, "ms")):
        if nanoseconds < limit:
            return f"{nanoseconds / limit * 1e3:.3g} {unit}"
    return f"{nanoseconds / 1e9:.3g} s"


def limits(family, row):
    return LIMITS.get(f"{family}/{row}", LIMITS.get(family, {}))


def limit(family, row, who, size):
    """The most that is allowed, or None."""
    value = limits(family, row)[who]
    if isinstance(value, tuple):
        return value[0] if size in value[1] else None
    return value


def ratio(values, other):
    return values["zentu"][0] / values[other][0] if other in values else None


def judge(value, most, form=".3g"):
    """A ratio, with its mark where it is over the limit."""
    if value is None:
        return ""
    return f"{value:{form}}" + (" (!)" if most is not None and value > most else "")


def table(family, row, by_size, on_six):
    names = list(dict.fromkeys(who for values in by_size.values() for who in values))
    judged = [who for who in limits(family, row) if who in names]
    sized = any(by_size)
    heads = (["size"] if sized else []) + names + ["allocations"] + [f"÷ {who}" for who in judged]
    if on_six:
        heads += ["on Qt 6"] + [f"÷ {who}" for who in judged] + ["÷ on Qt 5"]
    lines = ["| " + " | ".join(heads) + " |", "|" + "---|" * len(heads)]
    for size, values in by_size.items():
        cells = [size] if sized else []
        cells += [time(values[who][0]) if who in values else "" for who in names]
        cells.append(f"{values['zentu'][1]:.4g}")
        cells += [judge(ratio(values, who), limit(family, row, who, size)) for who in judged]
        if on_six:
            there = on_six[size]
            cells.append(time(there["zentu"][0]))
            cells += [judge(ratio(there, who), limit(family, row, who, size)) for who in judged]
            cells.append(f"{there['zentu'][0] / values['zentu'][0]:.3g}")
        lines.append("| " + " | ".join(cells) + " |")
    return lines


def trace_table(rows):
    """The lines all in one table, as they have no sizes."""
    lines = ["| line | zentu | allocations | stream | hand | plain | ÷ plain |", "|---|---|---|---|---|---|---|"]
    for row, by_size in rows.items():
        values = by_size[""]
        lines.append("| " + " | ".join(
            [row, time(values["zentu"][0]), f"{values['zentu'][1]:.3g}"]
            + [time(values[who][0]) for who in ("stream", "hand", "plain")]
            + [judge(ratio(values, "plain"), LIMITS["trace"]["plain"], ".2f")]) + " |")
    return lines


def plot(families):
    """For each row the worst ratio to what it is first held against, on a logarithmic scale."""
    bars = []
    for family, rows in families.items():
        worst = {}
        for row, by_size in rows.items():
            for who in limits(family, row):
                values = [r for r in (ratio(v, who) for v in by_size.values()) if r]
                if values:
                    key = (f"trace, {len(rows)} lines" if family == "trace" else f"{family}: {row}", who)
                    worst[key] = max([worst.get(key, 0)] + values)
        bars += worst.items()
    height, left, width = 22, 400, 380
    low, high = 0.001, 10.0

    def x(value):
        part = (math.log10(min(max(value, low), high)) - math.log10(low)) / (
            math.log10(high) - math.log10(low))
        return left + part * width

    total = height * len(bars) + 60
    out = [f'<svg xmlns="http://www.w3.org/2000/svg" width="{left + width + 70}" height="{total}" '
           'font-family="sans-serif" font-size="12">',
           f'<rect width="{left + width + 70}" height="{total}" fill="white"/>',
           f'<text x="{left}" y="16" font-weight="bold">Time of ZentuKit ÷ time of the other, '
           'at the worst size</text>']
    for tick in (0.001, 0.01, 0.1, 1, 10):
        strong = ' stroke-width="1.5"' if tick == 1 else ""
        color = "#444" if tick == 1 else "#ddd"
        out.append(f'<line x1="{x(tick):.0f}" y1="26" x2="{x(tick):.0f}" y2="{total - 24}" '
                   f'stroke="{color}"{strong}/>')
        out.append(f'<text x="{x(tick):.0f}" y="{total - 8}" text-anchor="middle">{tick:g}</text>')
    for index, ((name, who), value) in enumerate(bars):
        top = 30 + index * height
        color = "#2b6cb0" if value <= 1 else "#dd9b3c"
        out.append(f'<text x="{left - 8}" y="{top + 13}" text-anchor="end">{name} ÷ {who}</text>')
        begin, end = sorted((x(low), x(value)))
        out.append(f'<rect x="{begin:.0f}" y="{top}" width="{max(1, end - begin):.0f}" '
                   f'height="{height - 6}" fill="{color}"/>')
        out.append(f'<text x="{end + 5:.0f}" y="{top + 13}">{value:.2g}</text>')
    return "\n".join(out + ["</svg>", ""])


def main():
    results, counts, docs, *six = (pathlib.Path(argument) for argument in sys.argv[1:])
    families, context = read(results)
    families6 = read(six[0])[0] if six and six[0].exists() else {}
    lines = [
        "# Performance", "",
        "Written by `scripts/bench`; run it to have the numbers of your own machine. Those of a table come "
        "from one run in which they take turns, so the ratios tell more than the times.", "",
        f"{datetime.date.today():%d %B %Y}, {context['num_cpus']} cores at {context['mhz_per_cpu']} MHz, "
        "the best of nine, with a logger that does nothing.", "",
        "- `zentu` is the library.",
        "- `core` does the same steps, written by hand, without a line of trace.",
        "- `hand` is `core` with the line put together by hand, character by character.",
        "- `plain` is straightforward code: `QDebug`, connections by name, copies.",
        "- Allocations are those of `zentu`. A mark (!) stands behind a ratio over our own limit.",
        "- What stands behind `on Qt 6` was measured in the same run, with all who are compared built for it.",
        "", "![The worst ratio of each row](images/performance.svg)", ""]
    for family, rows in families.items():
        title, text = TITLES[family]
        lines += [f"## {title}", "", text, ""]
        if family == "trace":
            lines += trace_table(rows) + [""]
            continue
        for row, by_size in rows.items():
            lines += [f"### {row}", ""] + table(
                family, row, by_size, families6.get(family, {}).get(row)) + [""]
    lines += [(pathlib.Path(__file__).parent / "notes.md").read_text().rstrip(), ""]
    if counts.exists():
        lines += ["## Instructions", "",
                  "A hundred times each, counted by callgrind; `scripts/bench --counts` fails when one "
                  "grows by more than 5 %.", "", "| operation | instructions |", "|---|---|"]
        lines += [f"| {name} | {int(count):,} |"
                  for name, count in (line.split() for line in counts.read_text().splitlines())]
        lines.append("")
    (docs / "performance.md").write_text("\n".join(lines))
    (docs / "images").mkdir(exist_ok=True)
    (docs / "images/performance.svg").write_text(plot(families))


if __name__ == "__main__":
    main()
