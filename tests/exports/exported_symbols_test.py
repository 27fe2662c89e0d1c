"""The shared library exports the listed names and nothing else.

    exported_symbols_test.py LIBRARY LIST

Each exported symbol must belong to a name of the list (be it, a member of it, or its virtual table or type
information), and each name of the list must have a symbol: a class that lost its export mark is found as well as one
that gained it, and so is a third-party template that slipped out.
"""

import re
import subprocess
import sys

# The part of a mangled name that stands before the nested name, and that says what the symbol is (a virtual table, a
# thunk, a static inside a function); then the nested name itself, without the project's namespace.
NESTED = re.compile(r"^_Z(?:GV|TV|TI|TS|TT|TC|TH|TW|Th\w*?_|Tv\w*?_|Tc\w*?_)?Z*N[VK]*[RO]?3tov(.*)")

OPERATORS = {"pl": "+", "mi": "-", "ng": "-", "ml": "*", "dv": "/", "eq": "==", "ne": "!=", "lt": "<", "ss": "<=>"}


def path_of(symbol):
    """The names that a symbol consists of: _ZN3tov6Locale4kUSAE -> ["Locale", "kUSA"]; None outside the namespace."""
    match = NESTED.match(symbol)
    if not match:
        return None
    rest, names = match.group(1), []
    while length := re.match(r"\d+", rest):
        start = length.end()
        end = start + int(length.group())
        names.append(rest[start:end])
        rest = rest[end:]
    return names or ["operator" + OPERATORS.get(rest[:2], " " + rest[:2])]


def read_list(file_name):
    with open(file_name, encoding="utf-8") as lines:
        names = (line.split("#")[0].strip() for line in lines)
        return [name.removeprefix("tov::").split("::") for name in names if name]


def exported_symbols(library):
    output = subprocess.run(["nm", "-D", "--defined-only", library], check=True, capture_output=True, text=True).stdout
    return sorted(line.split()[-1].split("@")[0] for line in output.splitlines())


def strangers_by_owner(symbols):
    owners = {}
    for symbol in symbols:
        path = path_of(symbol)
        owners.setdefault("outside of tov" if path is None else "tov::" + path[0], []).append(symbol)
    return owners


def demangle(symbol):
    return subprocess.run(["c++filt", symbol], check=True, capture_output=True, text=True).stdout.strip()


def main():
    library, list_file = sys.argv[1:]
    listed = read_list(list_file)
    seen, strangers = set(), []
    for symbol in exported_symbols(library):
        path = path_of(symbol)
        owners = [name for name in listed if path is not None and path[: len(name)] == name]
        seen.update("::".join(name) for name in owners)
        if not owners:
            strangers.append(symbol)
    missing = [name for name in map("::".join, listed) if name not in seen]

    for owner, symbols in sorted(strangers_by_owner(strangers).items()):
        print(f"exported, but not listed: {owner}, {len(symbols)} symbols, the first: {demangle(symbols[0])}")
    for name in missing:
        print(f"listed, but not exported: tov::{name}")
    duplicates = {"::".join(name) for name in listed if listed.count(name) > 1}
    for name in sorted(duplicates):
        print(f"listed twice: tov::{name}")
    print(f"{len(listed)} names listed, {len(strangers)} symbols not listed, {len(missing)} names not exported")
    return 1 if strangers or missing or duplicates or not listed else 0


if __name__ == "__main__":
    sys.exit(main())
