"""The layering check must find each kind of broken include, and nothing in a clean tree."""

import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

CHECK = Path(__file__).resolve().parent.parent.parent / "scripts" / "check-layering"

CLEAN = {
    "platform/webbedrock/handle.h": "#include <cstddef>\n",
    "platform/webbedrock/utf8.cpp": "#include <immintrin.h>\n",
    "platform/xml/xmlelement.h": '#include "webbedrock/handle.h"\n',
    "platform/xml/xmlelement.cpp": '#include <libxml/tree.h>\n#include "xml/xmlelement.h"\n',
    "platform/intl/locale.h": '#include "xml/xmlelement.h"\n',
    "platform/intl/locale.cpp": '#include <unicode/locid.h>\n#include "intl/locale.h"\n',
    "webformat/valueformatter.h": '#include "intl/locale.h"\n/*\n#include <unicode/locid.h>\n*/\n',
    "project/webformat/digits.h": "#include <vector>\n",
    "project/webformat/valueformatter.cpp": '#include "project/webformat/digits.h"\n#include "webformat/valueformatter.h"\n',
    "tools/webformat/main.cpp": '#include <CLI/CLI.hpp>\n#include "webformat/valueformatter.h"\n',
    "tests/webformat/digits_test.cpp": '#include <gtest/gtest.h>\n#include "project/webformat/digits.h"\n',
}

# What is wrong, the file that breaks the rule, its text, and a part of the message.
BROKEN = [
    ("a third-party header in the library", "project/webformat/a.cpp", "#include <unicode/locid.h>\n", "<unicode/locid.h>"),
    ("a third-party header in quotes", "project/webformat/a.cpp", '#include "boost/any.hpp"\n', "no file of the project"),
    ("a system header in the library", "project/webformat/a.cpp", "#include <unistd.h>\n", "<unistd.h>"),
    ("a third-party header in a public header", "webformat/a.h", "#  include <boost/any.hpp>\n", "<boost/any.hpp>"),
    ("a third-party header in a platform header", "platform/intl/a.h", "#include <unicode/locid.h>\n", "<unicode/locid.h>"),
    ("another library's third party", "platform/xml/a.cpp", "#include <unicode/locid.h>\n", "<unicode/locid.h>"),
    ("an arrow up within the platform", "platform/xml/a.cpp", '#include "intl/locale.h"\n', "which lies above it"),
    ("an arrow up into the library", "platform/intl/a.cpp", '#include "webformat/valueformatter.h"\n', "which lies above it"),
    ("an arrow up into a tool", "project/webformat/a.cpp", '#include "../../tests/webformat/digits_test.cpp"\n', "which lies above it"),
    ("internals in a public header", "webformat/a.h", '#include "project/webformat/digits.h"\n', "project/ is internal"),
    ("internals in the command", "tools/webformat/a.cpp", '#include "project/webformat/digits.h"\n', "project/ is internal"),
    ("tests in the command", "tools/webformat/a.cpp", '#include "tests/webformat/digits_test.cpp"\n', "must not include tests"),
    ("a header that includes itself", "webformat/a.h", '#include "webformat/a.h"\n', "include cycle"),
    ("a folder of no layer", "platform/extra/a.h", "", "in no layer"),
]


def check(files):
    with tempfile.TemporaryDirectory() as folder:
        for name, text in files.items():
            path = Path(folder) / name
            path.parent.mkdir(parents=True, exist_ok=True)
            path.write_text(text, encoding="utf-8")
        return subprocess.run([sys.executable, CHECK, folder], capture_output=True, text=True)


class LayeringCheck(unittest.TestCase):
    def test_accepts_a_clean_tree(self):
        result = check(CLEAN)
        self.assertEqual(result.returncode, 0, result.stdout)

    def test_finds_each_kind_of_broken_include(self):
        for what, name, text, message in BROKEN:
            with self.subTest(what):
                result = check({**CLEAN, name: text})
                self.assertEqual(result.returncode, 1, result.stdout)
                self.assertIn(message, result.stdout)
                self.assertIn(name, result.stdout)

    def test_finds_a_cycle_by_way_of_another_header(self):
        result = check({**CLEAN, "webformat/a.h": '#include "b.h"\n', "webformat/b.h": '#include "webformat/a.h"\n'})
        self.assertEqual(result.returncode, 1, result.stdout)
        self.assertIn("webformat/a.h > webformat/b.h > webformat/a.h", result.stdout)

    def test_refuses_a_folder_without_sources(self):
        self.assertEqual(check({}).returncode, 1)


if __name__ == "__main__":
    unittest.main()
