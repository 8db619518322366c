#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Tells which branches of the library no test takes: branches.py COVERAGE.json

Left out are those that only an exception takes, and those that the compiler adds: for memory that runs
out, for `delete` of null, for a static that two threads make at once. Fails if fewer than 95 % of the
others are taken, if one is missed on a line that unreached.txt does not name with its reason, or if a
line is named of which none is missed.
"""

import json
import pathlib
import re
import sys

TOP = pathlib.Path(__file__).resolve().parents[2]
COMPILERS = re.compile(r"\bnew \w|\bdelete \w|^static \w")


def reasons():
    lines = (TOP / "tests/coverage/unreached.txt").read_text().splitlines()
    return dict(line.split(" | ") for line in lines if line and not line.startswith("#"))


def main():
    taken = missed = 0
    known, named = reasons(), set()
    for file in json.loads(pathlib.Path(sys.argv[1]).read_text())["files"]:
        source = (TOP / file["file"]).read_text().splitlines()
        for line in file["lines"]:
            text = source[line["line_number"] - 1].strip()
            counts = [branch["count"] for branch in line["branches"] if not branch["throw"]]
            taken += sum(count > 0 for count in counts)
            if all(counts) or COMPILERS.search(text):
                continue
            missed += counts.count(0)
            named.add(f"{file['file']}: {text}")
    share = 100 * taken / (taken + missed)
    print(f"{taken} of {taken + missed} branches are taken, {share:.1f} %")
    for name in sorted(named - known.keys()):
        print(f"without a reason: {name}")
    for name in sorted(known.keys() - named):
        print(f"not missed: {name}")
    return 1 if named != known.keys() or share < 95 else 0


if __name__ == "__main__":
    sys.exit(main())
