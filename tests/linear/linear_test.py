#!/usr/bin/env python3
"""Checks that work on hostile texts grows no faster than the texts: prints the kinds of work that do, exit status 1.

    linear_test.py VALGRIND PROGRAM

PROGRAM (linear_work.cpp) does each kind of work on a text and on one twice as long, under callgrind, which counts
instructions: the result is the same on a busy machine. The kind "control" is a search that is not linear; it must be
found, or else nothing would be.
"""

import os
import re
import subprocess
import sys
import tempfile
from pathlib import Path

MOST = 2.2
CONTROL = "control"


def run(valgrind, program, folder):
    """Runs the program; its dumps land in the folder."""
    command = [
        valgrind,
        "--tool=callgrind",
        "--collect-atstart=no",
        "--dump-line=no",
        "--callgrind-out-file=" + str(folder / "dump"),
        program,
    ]
    # Symbols are resolved at load, not in the midst of the first text.
    environment = os.environ | {"LD_BIND_NOW": "1", "TZ": "Australia/Lord_Howe"}
    result = subprocess.run(command, env=environment, capture_output=True, text=True)
    if result.returncode != 0 or result.stdout.strip() != "done":
        sys.exit(f"{' '.join(command)} ended with status {result.returncode}\n{result.stdout}{result.stderr}")


def read_costs(folder):
    """{(kind, unit): {times: instructions}}"""
    costs = {}
    for file in folder.glob("dump.*"):
        text = file.read_text(encoding="utf-8", errors="replace")
        name = re.search(r"^desc: Trigger: Client Request: (.*)$", text, re.MULTILINE)
        total = re.search(r"^totals: (\d+)", text, re.MULTILINE)
        if name is None or total is None:
            continue
        kind, unit, times = split_name(name[1])
        costs.setdefault((kind, unit), {})[times] = int(total[1])
    return costs


def split_name(name):
    kind, rest = name.split("|", 1)
    unit, times = rest.rsplit("|", 1)
    return kind, unit, int(times)


def main():
    with tempfile.TemporaryDirectory() as folder:
        run(sys.argv[1], sys.argv[2], Path(folder))
        costs = read_costs(Path(folder))
    ratios = {name: cost[2] / cost[1] for name, cost in costs.items()}
    control = [name for name in ratios if name[0] == CONTROL]
    if len(control) != 1 or ratios.pop(control[0]) <= MOST:
        print("the search that is not linear was not found")
        return 1
    found = {name: ratio for name, ratio in ratios.items() if ratio > MOST}
    for (kind, unit), ratio in sorted(found.items(), key=lambda item: -item[1]):
        print(f"{kind}, text of {unit!r}: twice the length costs {ratio:.2f} times as much")
    highest = max(ratios.items(), key=lambda item: item[1])
    print(f"{len(ratios)} kinds of work, {len(found)} too steep; the highest ratio is {highest[1]:.2f} {highest[0]}")
    return 1 if found else 0


if __name__ == "__main__":
    sys.exit(main())
