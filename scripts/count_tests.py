"""Prints the failed tests of a ctest run and, as the last line, "N passed, N failed"; exit status 1 unless all passed.

    count_tests.py FOLDER

FOLDER holds ctest.junit and, for each program of GoogleTest cases, <name>.xml with its cases. Such a program counts as
its cases; any other test counts as one. A program that failed without a failed case (it crashed, leaked, or timed out)
counts as one failure more, and so does a case that was skipped.
"""

import sys
import xml.etree.ElementTree as ElementTree
from pathlib import Path


def read_cases(file):
    """Names of the passed and of the failed cases of a GoogleTest program; None where it wrote no results."""
    try:
        root = ElementTree.parse(file).getroot()
    except (OSError, ElementTree.ParseError):
        return None
    passed, failed = [], []
    for case in root.iter("testcase"):
        name = f"{case.get('classname')}.{case.get('name')}"
        if case.get("status") == "notrun":  # not selected by a filter
            continue
        good = case.get("result") == "completed" and case.find("failure") is None
        (passed if good else failed).append(name)
    return passed, failed


def main():
    folder = Path(sys.argv[1])
    try:
        tests = list(ElementTree.parse(folder / "ctest.junit").getroot().iter("testcase"))
    except (OSError, ElementTree.ParseError) as error:
        print(f"no test results: {error}\n0 passed, 1 failed")
        return 1
    passed, failed = 0, []
    for test in tests:
        name, good = test.get("name"), test.get("status") == "run"
        cases = read_cases(folder / f"{name}.xml")
        if cases is None:
            passed += good
            failed += [] if good else [name]
            continue
        passed += len(cases[0])
        failed += [f"{name}: {case}" for case in cases[1]]
        if not good and not cases[1]:
            failed.append(f"{name}: the program failed outside its cases")
    for name in failed:
        print(f"FAILED {name}")
    print(f"{passed} passed, {len(failed)} failed")
    return 1 if failed or not passed else 0


if __name__ == "__main__":
    sys.exit(main())
