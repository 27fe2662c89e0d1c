"""The readers' tests can fail: texts that are not encoded are noticed, by every reader and in every way there is.

    self_test.py
"""

import corpus
import xml_test
from browser import Page
from node import read_literals
from postgres import Postgres
from sql_test import select_with_postgres, select_with_sqlite
from tools import Checks

RAW = "number"  # any name of a family


class Quiet(Checks):
    """Counts failures and prints none."""

    def fail(self, message):
        self.failed += 1


def problems_of(texts, meant, places, elements=""):
    page = Page()
    page.add(RAW, texts, meant, places, elements)
    return page.report()["problems"]


def problems_of_script(markup, meant):
    page = Page()
    page.add_scripts([markup], [meant])
    return page.report()["problems"]


def check_browser(checks):
    good = {"scripts": 0, "elements": 0, "attributes": 0, "texts": 0}
    checks.equal("a page in order", problems_of(["a&lt;b"], ["a<b"], ("body", "double", "single", "field")), good)

    rows = [
        ("a script", ["<script>hacked()</script>"], "body", {"scripts", "elements", "texts"}),
        ("an event", ["<img src=x onerror=hacked()>"], "body", {"scripts", "elements", "texts"}),
        ("an event of an attribute", ['" onfocus=hacked() x="'], "double", {"attributes", "texts"}),
        ("an attribute in apostrophes", ["' x='"], "single", {"attributes", "texts"}),
        ("an element's end", ["</div><p>"], "body", {"elements", "texts"}),
        ("a field's end", ["</textarea><b>"], "field", {"elements", "texts"}),
        ("an entity", ["&lt;"], "body", {"texts"}),
        ("a reference", ["&#39;"], "double", {"texts"}),
        ("a comment", ["<!--"], "body", {"texts"}),
    ]
    for name, texts, place, kinds in rows:
        found = problems_of(texts, texts, (place,))
        checks.equal(f"a browser notices {name}", {kind for kind in kinds if found.get(kind)}, kinds)
    checks.equal("a browser notices a text that differs", problems_of(["a"], ["b"], ("body",)), {**good, "texts": 1})
    checks.equal("a browser notices an element that is missing",
                 bool(problems_of(["a"], ["a"], ("body",), "b").get("elements")), True)

    for markup in ("<script data-value>got('');hacked('')</script>", "<script data-value>got('</script><b>')</script>",
                   "<i data-run onclick=\"got('&#39;);hacked(&#39;')\"></i>"):
        found = problems_of_script(markup, "');hacked('")
        checks.equal(f"a browser notices {markup}", any(found.values()), True)
    everything = corpus.build()
    found = problems_of(everything, everything, ("body", "double", "single"))
    checks.equal("a browser notices the corpus", any(found.values()), True)


def check_node(checks):
    rows = ["\\", "\n", '"-hacked()-"', "'-hacked()-'", '"', "'", "\\u0022", "\\x41"]
    scripts, values = read_literals(rows)
    checks.equal("Node counts scripts", scripts > 0, True)
    for text, found in zip(rows, values, strict=True):
        checks.equal(f"Node notices {text!a}", found != [text, text], True)
    checks.equal("Node reads what is in order", read_literals(["a\\u0022\\\\"]), (0, [['a"\\', 'a"\\']]))


def check_libxml2(checks):
    broken = ["<", "&", "<b/>", "</c>", "<!-- -->", "<![CDATA[x]]>", "&lt;", "&x;", "]]>", "\ufffe", "\x01", "<?x?>"]
    for text in broken:
        quiet = Quiet()
        xml_test.check_texts(quiet, RAW, [text], [text], places=())
        checks.equal(f"libxml2 notices {text!a}", quiet.failed > 0, True)
    for text in ('"', '" x="', "<", "&amp;"):
        quiet = Quiet()
        xml_test.check_texts(quiet, RAW, [text], [text], places=("double",))
        checks.equal(f"libxml2 notices {text!a} in an attribute", quiet.failed > 0, True)
    quiet = Quiet()
    xml_test.check_texts(quiet, RAW, ["a&lt;b"], ["a<b"])
    checks.equal("libxml2 reads what is in order", (quiet.failed, quiet.done > 0), (0, True))


def check_databases(checks):
    rows = ["'", "''", "x' || 'y", "'; DROP TABLE t; --", "' OR 1=1 --"]
    literals = [f"'{text}'" for text in rows]
    with Postgres() as server:
        # One statement each, so that none spoils the next.
        found = [select_with_postgres(server, [literal])[0] for literal in literals]
        checks.equal("PostgreSQL reads what is in order", select_with_postgres(server, ["'a''b\\'"]), ["a'b\\"])
    for text, value in zip(rows, found, strict=True):
        checks.equal(f"PostgreSQL notices {text!a}", value != text, True)
    for text, value in zip(rows, select_with_sqlite(literals), strict=True):
        checks.equal(f"SQLite notices {text!a}", value != text, True)


def main():
    checks = Checks()
    check_browser(checks)
    check_node(checks)
    check_libxml2(checks)
    check_databases(checks)
    checks.end("the readers notice what is not encoded")


if __name__ == "__main__":
    main()
