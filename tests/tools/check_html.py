#!/usr/bin/env python3
"""Reads an HTML page from standard input and prints what is wrong with it, or its table as tab-separated text.

    check_html.py FILE.html

Wrong is: no HTML5 doctype, a missing or repeated element of the head, an end tag that closes nothing or not the
innermost element, a bare "&" or "<", a character reference that does not exist, more than one table, a row of another
number of cells than the headings. Exit status 1 then.
"""

import html.entities
import re
import sys
from html.parser import HTMLParser

VOID = {"meta", "img", "br", "link", "input", "hr"}


class Page(HTMLParser):
    def __init__(self):
        super().__init__(convert_charrefs=False)
        self.open = []
        self.problems = []
        self.seen = {}
        self.rows = []
        self.cell = None
        self.doctype = ""

    def problem(self, text):
        self.problems.append("%d:%d: %s" % (*self.getpos(), text))

    def handle_decl(self, decl):
        self.doctype = decl

    def handle_starttag(self, tag, attributes):
        self.seen[tag] = self.seen.get(tag, 0) + 1
        if len({name for name, _ in attributes}) != len(attributes):
            self.problem("an attribute stands twice")
        if tag not in VOID:
            self.open.append(tag)
        if tag == "tr":
            self.rows.append([])
        if tag in ("td", "th"):
            self.cell = ""
        if tag == "th" and ("scope", "col") not in attributes:
            self.problem("a heading without its scope")
        if tag == "img" and self.cell is not None:
            self.cell += "[img]"

    def handle_endtag(self, tag):
        if not self.open or self.open[-1] != tag:
            self.problem("</%s> does not close <%s>" % (tag, self.open[-1] if self.open else ""))
        else:
            self.open.pop()
        if tag in ("td", "th"):
            self.rows[-1].append(self.cell)
            self.cell = None

    def handle_data(self, data):
        if "style" not in self.open and ("&" in data or "<" in data):
            self.problem("markup characters in the text %r" % data[:40])
        if self.cell is not None:
            self.cell += data

    def handle_entityref(self, name):
        if name not in html.entities.name2codepoint:
            self.problem("&%s; does not exist" % name)
        elif self.cell is not None:
            self.cell += chr(html.entities.name2codepoint[name])

    def handle_charref(self, name):
        if self.cell is not None:
            self.cell += chr(int(name[1:], 16) if name[0] in "xX" else int(name))

    def check(self):
        if self.doctype.lower() != "doctype html":
            self.problem("no HTML5 doctype")
        if self.open:
            self.problem("never closed: %s" % self.open)
        for tag in ("html", "head", "title", "style", "body", "main", "table", "thead", "tbody"):
            if self.seen.get(tag) != 1:
                self.problem("<%s> stands %d times" % (tag, self.seen.get(tag, 0)))
        for row in self.rows[1:]:
            if len(row) != len(self.rows[0]):
                self.problem("a row of %d cells" % len(row))


def main():
    with open(sys.argv[1], encoding="utf-8") as page_file:
        text = page_file.read()
    page = Page()
    page.feed(text)
    page.close()
    page.check()
    for needed in ('<meta charset="utf-8">', '<meta name="viewport"', '<html lang="'):
        if needed not in text:
            page.problem("no %s" % needed)
    # Nothing but declarations and selectors in the style sheet: strings out, braces must pair up.
    style = re.sub(r"'(?:[^'\\]|\\.)*'", "''", re.search(r"<style>(.*?)</style>", text, re.S).group(1), flags=re.S)
    if style.count("{") != style.count("}") or "\\" in style:
        page.problem("a broken style sheet")
    if page.problems:
        print("\n".join(page.problems))
        return 1
    for row in page.rows:
        print("\t".join(row))
    return 0


if __name__ == "__main__":
    sys.exit(main())
