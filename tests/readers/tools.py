"""The programs that read the outputs, and how a test ends."""

import shutil
import sys
from glob import glob

INSTALL = "scripts/install-dependencies --test installs it"
EXAMPLES = 20


def tool(name, *patterns):
    """The path of a program, looked for in PATH and then by the patterns. A missing one fails the test."""
    found = shutil.which(name) or next((path for pattern in patterns for path in sorted(glob(pattern))), None)
    if not found:
        sys.exit(f"{name} is not there: {INSTALL}")
    return found


def excerpt(one, other):
    """A value for people; of a long text the part around its first difference from another."""
    if not isinstance(one, str) or not isinstance(other, str) or len(one) < 200:
        return ascii(one)
    same = next((n for n, (a, b) in enumerate(zip(one, other)) if a != b), min(len(one), len(other)))
    return f"{one[max(0, same - 30) : same + 60]!a} (around character {same} of {len(one)})"


class Checks:
    """Counts what was compared and prints the first differences."""

    def __init__(self):
        self.done = 0
        self.failed = 0

    def fail(self, message):
        self.failed += 1
        if self.failed <= EXAMPLES:
            print("FAILED", message)

    def equal(self, where, found, meant):
        self.done += 1
        if found != meant:
            self.fail(f"{where}:\n    found {excerpt(found, meant)}\n    meant {excerpt(meant, found)}")

    def equal_texts(self, where, found, meant):
        """Two lists of texts; a length of its own is a failure too."""
        self.equal(f"{where}, number of texts", len(found), len(meant))
        for text, says in zip(found, meant):
            self.equal(where, text, says)

    def page(self, report, least):
        """A report of browser.py; `least` is how many texts it must have looked at."""
        self.done += report["places"]
        if report["places"] < least:
            self.fail(f"{report['places']} places were looked at, {least} texts stand in the page")
        for kind, count in report["problems"].items():
            if count:
                self.failed += count - 1
                self.fail(f"{count} problems with {kind}")
        for example in report["examples"]:
            print("   ", ascii(example))

    def end(self, what):
        """Prints the count and ends the program: status 1 when anything failed or nothing was compared."""
        print(f"{what}: {self.done} checks, {self.failed} failed")
        sys.exit(1 if self.failed or not self.done else 0)
