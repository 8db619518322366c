#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Applies small faults to the library, one at a time, and sees whether a test notices.

The faults are made from the code itself: statements dropped, swapped with their neighbour or moved
over a loop, conditions turned, weakened or made to hold for ever, functions left at once, numbers
off by one, one for many, a neighbouring property, loops over a copy or over the original, texts
changed, lines sent to the wrong channel, order of lists turned round. Each is built in a copy of the
tree and tried against the tests of its family.

    mutate.py --list                   the faults, one a line
    mutate.py --sample 20 --seed 7     a random sample
    mutate.py                          all of them
"""

import argparse
import concurrent.futures
import dataclasses
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import threading
import time

TOP = pathlib.Path(__file__).resolve().parents[2]

# Which tests judge a file. Randomised ones come last: the plain ones are quicker to say no.
TESTS = {
    "include/qlogstream.h": ["qlogstream", "trace_text"],
    "include/ievent.h": ["ievent", "event_mgr"],
    "include/lambda_slot.h": ["lambda_slot", "file_watcher"],
    "src/trace_p.h": ["trace_text", "event_mgr", "mdi_area", "option_dialog", "action_mgr"],
    "src/cmdline_parser_p.h": ["cmdline_parser", "cmdline_parser_private", "cmdline_random"],
    "src/mdi_area_p.h": ["mdi_area"],
    "src/option_dlg_p.h": ["option_dialog"],
    "include/mdi_area.h": ["mdi_sub_window", "mdi_area"],
    "include/option_dlg.h": ["option_dialog", "option_page"],
    "include/ievent_handler.h": ["ievent_handler", "event_mgr"],
    "src/action_mgr.cpp": ["action_mgr", "action_mgr_random", "memory"],
    "src/cmdline_parser.cpp": ["cmdline_parser", "cmdline_parser_private", "cmdline_output",
                               "cmdline_random", "memory"],
    "src/context_mgr.cpp": ["context_mgr", "contexts_random", "memory"],
    "src/event_mgr.cpp": ["event_mgr", "ievent", "ievent_handler", "event_mgr_threads", "event_mgr_random",
                          "memory"],
    "src/file_watcher.cpp": ["file_watcher", "deleted_in_callback", "file_watcher_random"],
    "src/ievent_handler.cpp": ["ievent_handler", "event_mgr", "memory"],
    "src/lambda_slot.cpp": ["lambda_slot", "deleted_in_callback", "file_watcher"],
    "src/mdi_area.cpp": ["mdi_sub_window", "mdi_area", "deleted_in_callback", "mdi_area_random",
                         "memory"],
    "src/object_pool.cpp": ["object_pool", "object_pool_threads", "object_pool_random"],
    "src/option_dlg.cpp": ["option_page", "option_dialog", "deleted_in_callback",
                           "option_dialog_random", "memory"],
    "src/proxy_act.cpp": ["proxy_action", "proxy_action_mgr", "deleted_in_callback",
                          "proxy_action_random", "contexts_random", "memory"],
    "src/trace.cpp": ["trace_text", "ievent", "mdi_sub_window", "option_page", "event_mgr", "mdi_area",
                      "option_dialog", "action_mgr"],
}


@dataclasses.dataclass(frozen=True)
class Fault:
    file: str
    line: int  # of the first changed line, from 1
    kind: str
    before: str
    after: str

    @property
    def name(self):
        return f"{self.file}:{self.kind}:{' '.join(self.before.split())} => {' '.join(self.after.split())}"


# A property of the same type that often has the same value.
NEIGHBOUR = {"text": "iconText", "iconText": "text", "toolTip": "text", "statusTip": "toolTip",
             "whatsThis": "statusTip", "isEnabled": "isVisible", "isVisible": "isEnabled",
             "isChecked": "isCheckable", "isCheckable": "isChecked",
             "windowTitle": "windowIconText", "data": "property(\"data\").value<QVariant>"}

REPLACEMENTS = [
    ("condition", r"==", "!="),
    ("condition", r"!=", "=="),
    ("condition", r" && ", " || "),
    ("condition", r" \|\| ", " && "),
    ("condition", r"(?<=\()!(?=[\w(])", ""),
    ("condition", r"(?<=if )\(([^!].*)\)(?=( \{)?$)", r"(!(\1))"),
    ("condition", r" < ", " <= "),
    ("condition", r" > ", " >= "),
    ("condition", r" >= ", " > "),
    ("condition", r"\btrue\b(?!\")", "false"),
    ("condition", r"\bfalse\b(?!\")", "true"),
    ("number", r"(?<![\w.#\"-])(\d+)(?![\w\"]|\.\d)", lambda m: str(int(m.group(1)) + 1)),
    ("number", r" \+ 1\b", ""),
    ("number", r" - 1\b", ""),
    ("channel", r"\bqWarning\(\)", "qInfo()"),
    ("channel", r"\bqCritical\(\)", "qWarning()"),
    ("channel", r"\bqInfo\(\)", "qWarning()"),
    ("channel", r"\bTrace\(\)", "qInfo()"),
    ("order", r"\.prepend\(", ".append("),
    ("order", r"\.append\(", ".prepend("),
    ("order", r"\bcontexts \+ d->globalContexts", "globalContexts + d->contexts"),
    ("guard", r"(?<=if )\((.*)\)(?=( \{)?$)", r"((\1) && false)"),
    ("guard", r"(?<=if )\((.*)\)(?=( \{)?$)", r"((\1) || true)"),
    ("guard", r"(?<=while )\((.*)\)(?=( \{)?$)", r"((\1) && false)"),
    ("guard", r"(?<=^    return )([^\"]* (?:&&|\|\||==|!=) [^\"]*)(?=;$)", r"(\1) && false"),
    ("one", r"(\w+)->shortcuts\(\)", r"QList<QKeySequence>{\1->shortcut()}"),
    ("one", r"setShortcut\((\w+)->shortcut\(\)\)", r"setShortcuts(\1->shortcuts())"),
    ("one", r"\.(f|constF)irst\(\)", lambda m: ".last()" if m.group(1) == "f" else ".constLast()"),
    ("one", r"\.(l|constL)ast\(\)", lambda m: ".first()" if m.group(1) == "l" else ".constFirst()"),
    ("getter", r"->(text|iconText|toolTip|statusTip|whatsThis|isEnabled|isVisible|isChecked|isCheckable"
     r"|windowTitle|data)\(\)", lambda m: f"->{NEIGHBOUR[m.group(1)]}()"),
    ("copy", r"^( *for \(.* : )(.+)(?=\)( \{)?$)", r"\1std::decay_t<decltype(\2)>(\2)"),
    ("text", r"\"([^\"\\\n]*[a-z>:][^\"\\\n]*)\"", lambda m: f'"{m.group(1)}~"'),
]


def is_code(line):
    text = line.strip()
    return text and not text.startswith(("//", "///", "*", "/*", "#", "namespace", "class ", "using "))


def is_statement(line):
    """Whether a line is one whole statement that can be left out or moved."""
    text = line.strip()
    return (text.endswith(";") and is_code(line) and text.count("(") == text.count(")")
            and re.match(r"(Q_EMIT |delete )?[\w:]+(\(\))?(->|\.|\(| <<| \+?= |\+\+;|;)", text)
            and not re.match(r"(return|break|continue|default|case|static|const|auto)\b", text))


def statements(lines):
    """The statements as (first line, number of lines), those over several lines joined."""
    index = 0
    while index < len(lines):
        length = 1
        while (length < 6 and index + length < len(lines) and is_code(lines[index])
               and not re.search(r"[;{}:]$", lines[index + length - 1].rstrip())
               and lines[index + length].startswith(" ")):
            length += 1
        joined = " ".join(line.strip() for line in lines[index:index + length])
        if is_statement("    " + joined) and lines[index].startswith("    "):
            yield index, length
            index += length
        else:
            index += 1


def bodies(lines, header):
    """For each line, whether it is inside of a function."""
    inside, result = False, []
    for before, line in zip([""] + lines, lines):
        if line.startswith("{"):
            inside = not (header and re.match(r"(class|struct|enum)\b", before))
        elif line.startswith("}"):
            inside = False
        result.append(inside or (header and line.startswith(" " * 8)))
    return result


def loops(lines):
    """The loops as (first line, number of lines)."""
    for index, line in enumerate(lines):
        match = re.match(r"( +)(for|while) \(.*(\{)?$", line)
        if not match:
            continue
        if not line.endswith("{"):
            yield index, 2
            continue
        end = next((i for i in range(index, len(lines)) if lines[i] == match.group(1) + "}"), None)
        if end:
            yield index, end - index + 1


def compiled(lines, qt):
    """For each line, whether it is compiled with that Qt."""
    now, result = True, []
    for line in lines:
        if line == "#if QT_VERSION < QT_VERSION_CHECK(6, 0, 0)":
            now = qt < 6
        elif line == "#else":
            now = not now
        elif line == "#endif":
            now = True
        result.append(now)
    return result


def without_copy(lines):
    """Loops over a copy that was taken the line before, as (line, what goes over the original)."""
    for index, (before, line) in enumerate(zip(lines, lines[1:])):
        taken = re.match(r" +const [\w<>:*& ]+ (\w+)(?: = |\()(.*?)\)?;$", before)
        loop = re.match(r"( +for \(.* : )(\w+)(\).*)$", line)
        if taken and loop and taken.group(1) == loop.group(2):
            yield index, f"{loop.group(1)}{taken.group(2)}{loop.group(3)}"


def faults_of(file, qt):
    lines = (TOP / file).read_text().splitlines()
    header = file.endswith(".h")
    inside = bodies(lines, header)
    here = compiled(lines, qt)
    found = []

    def add(index, length, kind, after):
        before = "\n".join(lines[index:index + length])
        if before != after:
            found.append(Fault(file, index + 1, kind, before, after))

    for index, line in enumerate(lines):
        if not (inside[index] or header) or not is_code(line) or "static const QMetaMethod" in line:
            continue
        for kind, pattern, replacement in REPLACEMENTS:
            for match in re.finditer(pattern, line):
                in_text = line[:match.start()].count('"') % 2 == 1
                if in_text and kind != "text":
                    continue
                changed = match.expand(replacement) if isinstance(replacement, str) \
                    else replacement(match)
                add(index, 1, kind, line[:match.start()] + changed + line[match.end():])

    parts = [(i, n) for i, n in statements(lines) if inside[i]]
    for index, length in parts:
        add(index, length, "drop", "")
    for (first, n), (second, m) in zip(parts, parts[1:]):
        same_block = re.match(r" *", lines[first])[0] == re.match(r" *", lines[second])[0]
        if first + n == second and same_block:
            add(first, n + m, "swap", "\n".join(lines[second:second + m] + lines[first:first + n]))
    for first, n in loops(lines):
        for second, m in parts:
            if re.match(r" *", lines[first])[0] != re.match(r" *", lines[second])[0]:
                continue
            if first + n == second or second + m == first:
                one, other = sorted([(first, n), (second, m)])
                add(one[0], n + m, "loop",
                    "\n".join(lines[other[0]:sum(other)] + lines[one[0]:sum(one)]))
    for index, changed in without_copy(lines):
        add(index, 2, "copy", changed)
    for index, (before, line) in enumerate(zip(lines, lines[1:])):
        if line == "{" and re.match(r"(static )?void |\w+::~?\w+\(", before):
            add(index, 2, "return", f"{before}\n{{\n    return;")
    return [fault for fault in found if here[fault.line - 1]]


def all_faults(qt):
    found = []
    for file in TESTS:
        if (TOP / file).exists():
            found += faults_of(file, qt)
    return found


class Place:
    """A copy of the tree in which faults are built and tried."""

    def __init__(self, folder, qt):
        self.tree = folder / "tree"
        self.build = folder / "build"
        if self.tree.exists():
            shutil.rmtree(self.tree)
        # Files of today: what a run that was broken off has built from a fault is older.
        shutil.copytree(TOP, self.tree, ignore=shutil.ignore_patterns("build", ".git"),
                        copy_function=shutil.copy)
        launcher = ["-DCMAKE_CXX_COMPILER_LAUNCHER=ccache"] if shutil.which("ccache") else []
        linker = [f"-DCMAKE_{kind}_LINKER_FLAGS=-fuse-ld=lld" for kind in ("SHARED", "EXE")] \
            if shutil.which("ld.lld") else []
        self.run(["cmake", "-G", "Ninja", "-S", self.tree, "-B", self.build,
                  f"-DQT_MAJOR_VERSION={qt}",
                  "-DCMAKE_BUILD_TYPE=Debug", "-DCMAKE_CXX_FLAGS_DEBUG=-g0",
                  f"-DCMAKE_PROJECT_INCLUDE={TOP / 'tests/mutation/quick.cmake'}",
                  # A fault changes no interface, so the programs need not be linked again.
                  "-DCMAKE_LINK_DEPENDS_NO_SHARED=ON",
                  "-DZENTU_BUILD_EXAMPLES=OFF", *launcher, *linker], 120)
        self.known = {test for test in re.findall(
            r"tst_(\w+)", self.run(["ninja", "-C", self.build, "-t", "targets", "all"], 60).stdout)}
        self.seconds = {}

    @staticmethod
    def run(command, timeout, **extra):
        return subprocess.run([str(part) for part in command], capture_output=True, text=True,
                              errors="replace", timeout=timeout, **extra)

    def tests_for(self, file):
        return [test for test in TESTS[file] if test in self.known]

    def compile(self, tests, **environment):
        return self.run(["ninja", "-C", self.build, "-j1", *(f"tst_{test}" for test in tests)],
                        600, env=dict(os.environ, **environment)).returncode == 0

    def passes(self, test, seconds):
        # What was freed is overwritten, so that reading it is noticed.
        environment = dict(os.environ, QT_QPA_PLATFORM="offscreen", MALLOC_PERTURB_="165")
        return self.run([self.build / "bin" / f"tst_{test}", "-maxwarnings", "50"], seconds,
                        env=environment, cwd=self.build).returncode == 0

    def try_without_fault(self, file):
        """Faults count only where the tests pass without one; a hang is what takes far longer."""
        tests = self.tests_for(file)
        if not self.compile(tests):
            sys.exit(f"the tests of {file} do not build without a fault")
        for test in tests:
            if test in self.seconds:
                continue
            begin = time.monotonic()
            if not self.passes(test, 300):
                sys.exit(f"{test} fails without a fault")
            self.seconds[test] = 10 + 5 * (time.monotonic() - begin)

    def verdict(self, fault):
        path = self.tree / fault.file
        original = path.read_text()
        lines = original.splitlines()
        length = fault.before.count("\n") + 1
        lines[fault.line - 1:fault.line - 1 + length] = fault.after.splitlines()
        path.write_text("\n".join(lines) + "\n")
        try:
            tests = self.tests_for(fault.file)
            # Nobody builds the same fault twice.
            if not self.compile(tests, CCACHE_DISABLE="1"):
                return "does not build"
            for test in tests:
                try:
                    if not self.passes(test, self.seconds[test]):
                        return f"killed by {test}"
                except subprocess.TimeoutExpired:
                    return f"killed by {test} (it hangs)"
            return "survived"
        finally:
            path.write_text(original)


def equivalents(qt):
    """Faults that change nothing which can be seen with that Qt, each with the reason."""
    known = {}
    path = TOP / "tests/mutation/equivalent.txt"
    for line in path.read_text().splitlines() if path.exists() else []:
        if line and not line.startswith("#"):
            name, _, reason = line.rpartition(" | ")
            only = re.match(r"Only with Qt (\d): ", reason)
            if not only or int(only.group(1)) == qt:
                known[name] = reason
    return known


def main():
    parser = argparse.ArgumentParser(description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--list", action="store_true", help="list the faults and end")
    parser.add_argument("--file", action="append", help="only faults in this file")
    parser.add_argument("--sample", type=int, help="only so many, chosen at random")
    parser.add_argument("--seed", type=int, default=int(time.time()), help="of the choice")
    parser.add_argument("--qt6", dest="qt", action="store_const", const=6, default=5, help="with Qt 6")
    parser.add_argument("--jobs", type=int, default=os.cpu_count())
    parser.add_argument("--folder", type=pathlib.Path, default=TOP / "build/mutation")
    parser.add_argument("--least", type=float, default=97, help="per cent that must be killed")
    options = parser.parse_args()
    options.folder = options.folder.resolve()

    every = all_faults(options.qt)
    faults = [f for f in every if not options.file or f.file in options.file]
    if options.sample and options.sample < len(faults):
        print(f"seed {options.seed}")
        faults = random.Random(options.seed).sample(faults, options.sample)
    if options.list:
        print("\n".join(fault.name for fault in faults))
        return 0

    faults.sort(key=lambda fault: fault.file)
    known = equivalents(options.qt)
    stale = known.keys() - {fault.name for fault in every}
    for name in sorted(stale):
        print(f"listed, but no fault: {name}")
    lock = threading.Lock()
    counts = {"killed": 0, "survived": 0, "equivalent": 0, "does not build": 0}
    survivors = []
    queue = iter(faults)

    def prepare(number):
        place = Place(options.folder / str(number), options.qt)
        for file in sorted({fault.file for fault in faults}):
            place.try_without_fault(file)
        return place

    def work(place):
        while True:
            with lock:
                fault = next(queue, None)
            if fault is None:
                return
            verdict = "equivalent" if fault.name in known else place.verdict(fault)
            with lock:
                counts[verdict.split(" by ")[0]] += 1
                if verdict == "survived":
                    survivors.append(fault)
                print(f"{verdict}: {fault.file}:{fault.line} {fault.name.split(':', 1)[1]}",
                      flush=True)

    with concurrent.futures.ThreadPoolExecutor(options.jobs) as pool:
        list(pool.map(work, list(pool.map(prepare, range(options.jobs)))))

    judged = counts["killed"] + counts["survived"]
    share = 100 * counts["killed"] / judged if judged else 100
    print(", ".join(f"{count} {name}" for name, count in counts.items()))
    for fault in survivors:
        print(f"survivor: {fault.file}:{fault.line} {fault.name}")
    print(f"{share:.1f} % of those that count were killed")
    return 0 if share >= options.least and not stale else 1


if __name__ == "__main__":
    sys.exit(main())
