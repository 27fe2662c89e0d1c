"""Opens files in LibreOffice, without a screen: what its cells show, and what kind of value each of them holds."""

import csv
import subprocess
import xml.etree.ElementTree as ElementTree
from pathlib import Path

from tools import tool

TIMEOUT = 120

# Comma, quotes, UTF-8, from line 1; the last one: cells as they are shown.
AS_SHOWN = "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true"

# As a page that was saved for a spreadsheet is read: with its formats, numbers and dates as the program's language has
# them.
PAGE_FILTER = "--infilter=calc_HTML_WebQuery:0 true"

SETTINGS = """<?xml version="1.0" encoding="UTF-8"?>
<oor:items xmlns:oor="http://openoffice.org/2001/registry" xmlns:xs="http://www.w3.org/2001/XMLSchema"
           xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance">
<item oor:path="/org.openoffice.Setup/L10N">
<prop oor:name="ooSetupSystemLocale" oor:op="fuse"><value>{}</value></prop></item>
</oor:items>
"""

TABLE = "{urn:oasis:names:tc:opendocument:xmlns:table:1.0}"
OFFICE = "{urn:oasis:names:tc:opendocument:xmlns:office:1.0}"


class Spreadsheet:
    """LibreOffice in the language of a locale, with a profile of its own in `folder`."""

    def __init__(self, folder, locale):
        self.folder = Path(folder)
        self.program = tool("soffice", "/usr/lib/libreoffice/program/soffice")
        settings = self.folder / "user" / "registrymodifications.xcu"
        settings.parent.mkdir(parents=True)
        settings.write_text(SETTINGS.format(locale), encoding="utf-8")

    def _convert(self, options, files):
        target = self.folder / "out"
        run = subprocess.run([self.program, "--headless", f"-env:UserInstallation=file://{self.folder}", *options,
                              "--outdir", target, *files], capture_output=True, timeout=TIMEOUT, check=False)
        converted = [next(iter(target.glob(f"{Path(file).stem}.*")), None) for file in files]
        if run.returncode or None in converted:
            raise SystemExit(f"soffice: status {run.returncode}: {run.stderr.decode(errors='replace')[:500]}")
        return converted

    def _texts(self, options, files):
        tables = []
        for shown in self._convert([*options, "--convert-to", AS_SHOWN], files):
            with shown.open(encoding="utf-8", newline="") as lines:
                tables.append(list(csv.reader(lines)))
            shown.unlink()
        return tables

    def texts_of_workbooks(self, files):
        """The texts that the cells of the first worksheets show: a list of rows for each file."""
        return self._texts([], files)

    def texts_of_pages(self, files):
        """The same of pages that are opened as spreadsheets, whose table is not the only thing on them."""
        return self._texts([PAGE_FILTER], files)

    def kinds_of_workbooks(self, files):
        """What the cells of the first worksheets hold: "float", "percentage", "currency", "date", "time", "string", or
        nothing."""
        return [self._kinds(flat) for flat in self._convert(["--convert-to", "fods"], files)]

    @staticmethod
    def _kinds(flat):
        rows = []
        for row in ElementTree.parse(flat).find(f".//{TABLE}table").iter(f"{TABLE}table-row"):
            kinds = []
            for cell in row:
                kinds += [cell.get(f"{OFFICE}value-type", "")] * int(cell.get(f"{TABLE}number-columns-repeated", "1"))
            rows += [kinds] * min(int(row.get(f"{TABLE}number-rows-repeated", "1")), 1000)
        return rows
