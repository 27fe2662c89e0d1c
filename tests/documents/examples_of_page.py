#!/usr/bin/env python3
"""Makes a test program of the C++ examples of a page.

    examples_of_page.py PAGE OUTPUT

Each block of code that is marked as cpp becomes one test. In it a statement with a comment behind its last line that
is a text, a number or a truth value is checked against that: `f();  // "1"`. Errors and failures name the page's line.
"""

import re
import sys
from pathlib import Path

BLOCK = re.compile(r"^```cpp\n(.*?)^```", re.MULTILINE | re.DOTALL)
EXPECTED = re.compile(r';\s*// ("(?:[^"\\]|\\.)*"|-?\d+|true|false)$')
HEAD = """// Made from a page; changes belong there.
#include <gtest/gtest.h>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

{includes}

namespace {{

// A value as a page shows it: texts without a look at the width of their characters.
template <class T>
const T& shown(const T& tValue)
{{
    return tValue;
}}

inline std::string shown(const std::wstring& sValue)
{{
    return tov::toUtf8(sValue);
}}

}}  // namespace

namespace page {{

using namespace tov;
"""


def body_of(code, first_line, page):
    """The lines of a block with its checks; a statement starts on the line behind the last one that ends."""
    lines, statement = [], []
    for number, line in enumerate(code.splitlines(), first_line):
        if line.startswith("#include"):
            continue
        statement.append((number, line))
        match = EXPECTED.search(line)
        if match:
            text = "\n".join(part for _, part in statement[:-1]) + "\n" + line[: match.start()]
            lines.append(f'#line {statement[0][0]} "{page}"')
            lines.append(f"EXPECT_EQ(shown({text.strip()}), {match.group(1)});")
            statement = []
        elif re.search(r"[;{}]\s*$", line) or not line.strip():
            lines.append(f'#line {statement[0][0]} "{page}"')
            lines += [part for _, part in statement]
            statement = []
    return lines + [part for _, part in statement]


def main():
    page, output = Path(sys.argv[1]), Path(sys.argv[2])
    text = page.read_text(encoding="utf-8")
    includes, tests = ['#include "webbedrock/utf8.h"'], []
    for block in BLOCK.finditer(text):
        code = block.group(1)
        includes += re.findall(r"^#include .*$", code, re.MULTILINE)
        first_line = text.count("\n", 0, block.start(1)) + 1
        tests += [f"TEST(Page, ExampleAtLine{first_line})", "{", *body_of(code, first_line, page), "}", ""]
    if not tests:
        sys.exit(f"{page}: no example found")
    head = HEAD.format(includes="\n".join(dict.fromkeys(includes)))
    output.write_text(head + "\n" + "\n".join(tests) + "\n}  // namespace page\n", encoding="utf-8")


if __name__ == "__main__":
    main()
