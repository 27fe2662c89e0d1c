"""Prints ratios and allocations out of the JSON results of Google Benchmark programs.

    bench_report.py [--check] GOALS FOLDER

A case is named <work>/<who>; the medians of its repetitions are compared. Times are not printed: they say more about
the machine than about the library, the ratios of one run do not. GOALS is a JSON object
{"<work>": {"<peer>": ratio, "allocations": count}}: how many times faster than the peer the library has to be at least,
and how many allocations a value may cost at most. With --check a missed goal, or one that has no result, makes the exit
status 1.
"""

import json
import re
import statistics
import sys
from pathlib import Path

OWN = "webformat"


def read_results(folder):
    """{work: {who: (median nanoseconds, allocations or None, mebibytes or None)}}, in the order of the programs' cases.

    Times are those of the processor, or those of the clock for cases that ask for them.
    """
    samples = {}
    for file in sorted(Path(folder).glob("*.json")):
        runs = json.loads(file.read_text(encoding="utf-8"))["benchmarks"]
        for run in sorted(runs, key=lambda run: run["family_index"]):
            if run.get("run_type") == "iteration" and not run.get("error_occurred"):
                work, _, who = re.sub(r"/(repeats|min_time|iterations|real_time|process_time).*", "", run["name"]).rpartition("/")
                unit = {"ns": 1, "us": 1e3, "ms": 1e6, "s": 1e9}[run["time_unit"]]
                time = run["real_time" if "/real_time" in run["name"] else "cpu_time"] * unit
                samples.setdefault(work, {}).setdefault(who, []).append((time, run.get("allocations"), run.get("mebibytes")))
    return {
        work: {
            who: (
                statistics.median(time for time, _, _ in runs),
                max((count for _, count, _ in runs if count is not None), default=None),
                max((size for _, _, size in runs if size is not None), default=None),
            )
            for who, runs in contenders.items()
        }
        for work, contenders in samples.items()
    }


def print_work(work, contenders, goals):
    """Prints a block for one kind of work; returns the goals that it misses."""
    missed = []
    own_time, own_allocations = contenders.get(OWN, (None, None, None))[:2]
    print(f"\n{work}")
    for who, (time, allocations, mebibytes) in contenders.items():
        line = f"    {who:<24}"
        line += f"{allocations:>8.2f} allocations" if allocations is not None else " " * 20
        line += f"{mebibytes:7.1f} MiB" if mebibytes is not None else ""
        if who != OWN and own_time:
            ratio, goal = time / own_time, goals.get(who)
            line += f"   {ratio:7.2f} times {OWN}'s time"
            if goal is not None:
                line += f" (goal {goal})"
                if ratio < goal:
                    missed.append(f"{work}: {ratio:.2f} times {who}, goal {goal}")
        print(line.rstrip())
    limit = goals.get("allocations")
    if limit is not None and (own_allocations is None or own_allocations > limit):
        missed.append(f"{work}: {own_allocations or 0:.2f} allocations, goal {limit}")
    return missed


def goals_without_result(goals, results):
    """The goals whose work or peer did not run, as a rename would leave them."""
    return [
        f"{work}: no result for {who}"
        for work, ratios in goals.items()
        for who in [OWN, *(peer for peer in ratios if peer != "allocations")]
        if who not in results.get(work, {})
    ]


def main():
    arguments = [argument for argument in sys.argv[1:] if argument != "--check"]
    goals_file, folder = arguments
    goals = json.loads(Path(goals_file).read_text(encoding="utf-8")) if Path(goals_file).exists() else {}
    results = read_results(folder)
    missed = [goal for work, contenders in results.items() for goal in print_work(work, contenders, goals.get(work, {}))]
    if "--check" in sys.argv:
        missed += goals_without_result(goals, results)
    print(f"\n{len(results)} kinds of work, {len(missed)} goals missed")
    for goal in missed:
        print(f"MISSED {goal}")
    return 1 if not results or (missed and "--check" in sys.argv) else 0


if __name__ == "__main__":
    sys.exit(main())
