"""Test pages in headless Chromium: a page holds every text in its places, and a script in it reports what is wrong."""

import json
import shutil
import subprocess
import tempfile
from dataclasses import dataclass, field
from pathlib import Path

from tools import tool

SWITCHES = ["--headless", "--no-sandbox", "--disable-gpu", "--disable-quic", "--no-first-run",
            "--disable-background-networking", "--disable-component-update", "--disable-sync", "--disable-extensions",
            # Containers have little of it.
            "--disable-dev-shm-usage",
            # No host has an address: a page that tries to reach one cannot.
            "--host-resolver-rules=MAP * ~NOTFOUND",
            # Timers run at once when the page has nothing else to do.
            "--virtual-time-budget=60000", "--dump-dom"]
TIMEOUT = 300

# How a text is put into a place of the page. A parser drops the first line end of a textarea: it gets one more.
PLACES = {"body": '<div id="body{n}">{text}</div>\n',
          "double": '<div id="double{n}" title="{text}"></div>\n',
          "single": "<div id=\"single{n}\" title='{text}'></div>\n",
          "field": '<textarea id="field{n}">\n\n{text}</textarea>\n'}
EVERYWHERE = ("body", "double", "single")


@dataclass
class Page:
    """Collects cases; `report` opens the page and returns {"places", "problems", "examples"}."""

    families: list = field(default_factory=list)
    places: list = field(default_factory=list)
    cases: list = field(default_factory=list)
    scripts: list = field(default_factory=list)
    markup: list = field(default_factory=list)

    def add(self, family, texts, meant, places=EVERYWHERE, elements=""):
        """Texts as a formatter wrote them, and what is to be read; `elements` as in "font style, b"."""
        self.families.append(family)
        self.places.append(places)
        for text, says in zip(texts, meant, strict=True):
            self.markup += [PLACES[place].format(n=len(self.cases), text=text) for place in places]
            self.cases.append([len(self.families) - 1, read_by_html(says), elements])

    def add_scripts(self, markup, meant):
        """Elements that hand their text to got() when they run: a script, or an element with data-run and onclick."""
        self.markup += [piece + "\n" for piece in markup]
        self.scripts += meant

    def report(self):
        test = {"families": self.families, "places": self.places, "cases": self.cases, "scripts": self.scripts}
        with tempfile.TemporaryDirectory(prefix="readers") as folder:
            Path(folder, "cases.js").write_text(f"const pageTest = {json.dumps(test)};", encoding="ascii")
            shutil.copy(Path(__file__).with_name("page.js"), folder)
            page = Path(folder, "page.html")
            # newline="": what the formatters wrote, to the byte.
            with page.open("w", encoding="utf-8", newline="") as file:
                file.write('<!DOCTYPE html>\n<html><head><meta charset="utf-8"><title>Texts</title>\n'
                           '<script src="cases.js"></script><script src="page.js"></script></head><body>\n')
                file.writelines(self.markup)
                file.write("</body></html>\n")
            return read_report(page, Path(folder, "profile"))


def read_by_html(text):
    """What a reader of HTML makes of line ends in a page: the standard turns CR and CR LF into LF before anything."""
    return text.replace("\r\n", "\n").replace("\r", "\n")


def read_report(page, profile):
    command = [tool("chromium"), *SWITCHES, f"--user-data-dir={profile}", page.as_uri()]
    try:
        run = subprocess.run(command, capture_output=True, timeout=TIMEOUT, check=False)
    except subprocess.TimeoutExpired:
        return {"places": 0, "problems": {"answer": 1}, "examples": [f"no answer within {TIMEOUT} seconds"]}
    before, mark, rest = run.stdout.decode(errors="replace").partition("REPORT{")
    if not mark:
        found = f"status {run.returncode}: {before[:300]} {run.stderr.decode(errors='replace')[-300:]}"
        return {"places": 0, "problems": {"answer": 1}, "examples": [f"the page gave no report: {found}"]}
    return json.loads("{" + rest.split("</html>")[0].replace("&gt;", ">"))
