"""What is written for JavaScript, between quotes of either kind, is a string literal: Node reads back the very value.

    javascript_test.py WEBFORMAT

Every character but U+0000 and the surrogates, and the corpus through every family of formatters.py. Nothing is changed
on the way: no character is replaced. Literals inside HTML are read by html_test.py.
"""

import sys

import corpus
from command import Command
from formatters import families
from node import read_literals
from tools import Checks


def check(checks, names, literals, meant):
    """`names` has a name for every literal."""
    scripts, values = read_literals(literals)
    checks.equal("scripts that ran", scripts, 0)
    checks.equal("number of literals", len(values), len(meant))
    for name, literal, (double, single), says in zip(names, literals, values, meant):
        checks.equal(f'{name}, "{literal[:300]!a}"', double, says)
        checks.equal(f"{name}, '{literal[:300]!a}'", single, says)


def main():
    command, checks = Command(sys.argv[1]), Checks()
    texts = corpus.build()

    wide = corpus.all_characters()
    encoded = command.texts([{"do": "encode", "output": "javascript", "text": text} for text in wide])
    check(checks, ["all characters"] * len(wide), encoded, wide)

    names, literals, meant = [], [], []
    for family in families(texts):
        literals += family.texts(command, "javascript")
        meant += family.meant_in("javascript")
        names += [family.name] * len(family.meant)
    check(checks, names, literals, meant)
    checks.end(f"JavaScript, {sum(map(len, wide))} characters, {len(texts)} hostile texts")


if __name__ == "__main__":
    main()
