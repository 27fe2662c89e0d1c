"""Workbooks and pages of the command, opened in LibreOffice: the text that each cell shows is our text output.

    spreadsheet_test.py WEBFORMAT

Reports of all cases of spreadsheet_cases.py, as workbooks and as pages saved for a spreadsheet, in a program of the
report's locale. Where a cell shows something else, the rule that makes it so stands in DIFFERENCES with its reason; a
rule that is not needed any more is a failure. Cells of a column with a pattern must be numbers and dates, not text.
"""

import csv
import html
import re
import subprocess
import sys
import tempfile
from concurrent.futures import ThreadPoolExecutor
from decimal import Context, Decimal, ROUND_HALF_EVEN
from pathlib import Path
from xml.sax.saxutils import quoteattr

from command import Command
from spreadsheet import Spreadsheet
from spreadsheet_cases import ROW_TAGS, VALUES, groups
from tools import Checks

NAMESPACES = ('xmlns:tov="urn:tov:schemas:report:v1" xmlns:tovx="urn:tov:schemas:expression:v1" '
              'xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"')
NUMBERS = ("double", "integer", "numeric", "bigint")
DIGITS = 15

# Dates in other languages have the separators and names of the spreadsheet, not those of the report.
NUMBERS_ALONE = ("numbers", "currencies")

DIFFERENCES = {
    # Rules of ours.
    "general": "without a data format, or where no pattern says the same, numbers are General",
    "digits of an identifier": "without a data format a number of more than 15 digits is text: nothing is lost",
    "ISO date": "without a pattern dates are in ISO form: most predefined formats have none",
    "date out of range": "before March 1900 spreadsheets count days in different ways, after 9999 not at all: ISO text",
    "fixed pattern": "the predefined formats of dates, and scales that each value chooses, have patterns of their own",
    "blank of _)": "the positive section ends in a blank as wide as the parenthesis of the negative one",
    # The spreadsheet's own.
    "15 digits": "a cell holds 15 digits of a number",
    "negative zero": "a negative number that rounds to zero has no sign, unless its section shows one",
    "binary percent": "1.005 is multiplied by 100 before it is rounded: 100.499999999999986",
    "cut second": "59.999 seconds with one digit are 59.9 where the digits are cut; the formatter rounds",
    "blanks of a page": "a page shows several blanks as one, and none at the ends of a line",
    "links and images": "a page shows the text of a link, an image instead of its address, and markup as what it means",
}


def write_report(folder, name, locale, cases, program):
    columns = "".join(f'<tov:column name="{case.type}" heading="c{number}" type="{case.type}">{case.definition}'
                      "</tov:column>\n" for number, case in enumerate(cases))
    report = Path(folder, f"{name}.xml")
    report.write_text(f'<tov:report {NAMESPACES} locale="{locale}" language={quoteattr(locale.lower())}>\n{columns}'
                      "</tov:report>\n", encoding="utf-8")
    data = Path(folder, "data.csv")
    with data.open("w", encoding="utf-8", newline="") as file:
        table = csv.writer(file)
        table.writerow([*VALUES, "tag"])
        for row in range(max(map(len, VALUES.values()))):
            cells = [values[row] if row < len(values) else None for values in VALUES.values()]
            # A last column that is never empty: the tables of all readers are as long.
            table.writerow([*cells, ROW_TAGS[row % len(ROW_TAGS)]])
    for output in ("xlsx", "html"):
        subprocess.run([program, "report", report, "--data", data, "--output", output, "-o",
                        Path(folder, f"{name}.{output}")], check=True)


def our_texts(command, locale, case, values, definition):
    request = {"type": case.type, "locale": locale, "language": locale.lower()}
    if case.type == "bigint":
        request["storage"] = "corvidnumber"
    if definition:
        request["definition"] = definition
    if not case.by_row:
        return command.texts([{**request, "values": values}])
    return command.texts([{**request, "overridingCurrency": ROW_TAGS[row % len(ROW_TAGS)], "values": [value]}
                          for row, value in enumerate(values)])


def in_15_digits(value):
    rounded = Context(prec=DIGITS, rounding=ROUND_HALF_EVEN).create_decimal(str(value))
    return f"{rounded.normalize():f}"


def is_number(value):
    return value is not None and value not in ("NaN", "INF", "-INF")


def significant_digits(value):
    return len(Decimal(str(value)).normalize().as_tuple().digits)


def is_out_of_range(case, value):
    return case.type in ("date", "timestamp") and value < "1900-03-01"


def iso(case, value):
    """As the cell shows it: at most milliseconds, and none where there are none."""
    day_and_second, _, fraction = value.partition(".")
    return f"{day_and_second}.{fraction[:3].ljust(3, '0')}" if fraction[:3].strip("0") else day_and_second


class Expectation:
    """What the cells of a column are to show, and which differences that takes."""

    def __init__(self, command, locale):
        self.command = command
        self.locale = locale
        self.used = set()

    def use(self, difference, text):
        assert difference in DIFFERENCES
        self.used.add(difference)
        return text

    def of_workbook(self, case):
        """A text for each value; a Decimal where any text of that number is right."""
        values = list(case.values)
        texts = our_texts(self.command, self.locale, case, values, case.definition)
        if case.type in NUMBERS:
            held = [in_15_digits(value) if is_number(value) and case.type != "double" else value for value in values]
            instead = case.excel if case.excel not in (None, "general", "text") else case.definition
            shown = our_texts(self.command, self.locale, case, held, instead)
            return [self._number(case, *row) for row in zip(values, texts, shown)]
        if case.type == "varchar":
            return texts
        pattern = case.excel if case.excel not in (None, "iso") else case.definition
        shown = our_texts(self.command, self.locale, case, values, pattern)
        return [self._moment(case, *row) for row in zip(values, texts, shown)]

    def _number(self, case, value, text, shown):
        if not is_number(value) or case.excel == "text":
            return text
        if case.excel == "general":
            if case.type in ("numeric", "bigint") and significant_digits(value) > DIGITS:
                return self.use("digits of an identifier", text)
            return self.use("general", Decimal(in_15_digits(value)))
        if shown != text:
            shown = self.use("15 digits" if case.type == "numeric" else "fixed pattern", shown)
        if value == 1.005 and 'customFormat="0%%"' in case.definition:
            shown = self.use("binary percent", "100%")
        if not case.sign and shown.startswith("-") and not re.search("[1-9]", shown):
            shown = self.use("negative zero", shown[1:])
        if case.blank and not str(value).startswith("-"):
            shown = self.use("blank of _)", shown + " ")
        return shown

    def _moment(self, case, value, text, shown):
        if value is None:
            return text
        if is_out_of_range(case, value):
            return self.use("date out of range", value)
        if case.excel == "iso":
            return self.use("ISO date", iso(case, value))
        if case.definition.count('"ss.0"') and value.endswith("59.999"):
            return self.use("cut second", "59.9")
        return shown if shown == text else self.use("fixed pattern", shown)

    def of_page(self, case):
        """A list of texts that are right, for each value."""
        texts = our_texts(self.command, self.locale, case, list(case.values), case.definition)
        held = [in_15_digits(value) if case.type == "numeric" and is_number(value) else value for value in case.values]
        rounded = our_texts(self.command, self.locale, case, held, case.definition)
        return [self._in_page(case, *row) for row in zip(case.values, texts, rounded)]

    def _in_page(self, case, value, text, rounded):
        if case.type in NUMBERS and is_number(value):
            if case.excel == "general" and not case.definition.count("custom"):
                return [self.use("general", Decimal(in_15_digits(value)))]
            zero = text[1:] if text.startswith("-") and not re.search("[1-9]", text) else text
            return [text, rounded, zero]
        if value is None or case.html == "text":
            said = text
        else:
            said = self.use("links and images", {"link": value, "image": "", "markup": html.unescape(
                re.sub("<[^>]*>", "", value))}[case.html])
        one_line = re.sub("  +", " ", said).strip()
        return [one_line if one_line == said else self.use("blanks of a page", one_line)]


def cell(table, row, column):
    """Tables end with their last row, and rows with their last cell, that is not empty."""
    return table[row][column] if row < len(table) and column < len(table[row]) else ""


def check_texts(checks, where, case, table, column, meant):
    for row, (value, says) in enumerate(zip(case.values, meant)):
        shown = cell(table, row + 1, column)
        checks.done += 1
        right = says if isinstance(says, list) else [says]
        if not any(same(shown, one, isinstance(says, list)) for one in right):
            checks.fail(f"{where}: {case.type} {value!r} {case.definition}: found {shown!a}, meant {says!a}")


def same(shown, meant, in_page):
    if not isinstance(meant, Decimal):
        return (shown.strip() if in_page else shown) == meant
    try:
        return close(shown, meant) if in_page else Decimal(in_15_digits(point(shown))) == meant
    except ArithmeticError:
        return False


def point(shown):
    """A number as General shows it, with a decimal point."""
    return shown.replace(",", ".")


def close(shown, meant):
    """A page's text has as many digits as the formatter shows: two, unless it shows more."""
    return abs(Decimal(point(shown)) - meant) <= max(Decimal("0.005"), abs(meant) / 10 ** (DIGITS - 1))


def check_kinds(checks, cases, kinds):
    """Numbers and dates are such, texts are text: a spreadsheet can calculate with what has a pattern."""
    for column, case in enumerate(cases):
        for row, value in enumerate(case.values):
            kind = cell(kinds, row + 1, column)
            text = case.excel == "text" or case.type == "varchar" or (
                not is_number(value) or is_out_of_range(case, value)
                or (case.excel == "general" and not case.definition and case.type in ("numeric", "bigint")
                    and significant_digits(value) > DIGITS))
            meant = ("string", "") if text else ("float", "percentage", "currency") if case.type in NUMBERS else (
                "date", "time")
            checks.done += 1
            if kind not in meant:
                checks.fail(f"{case.type} {value!r} {case.definition}: a cell of the kind {kind!r}, not one of {meant}")


def table_of_page(rows):
    """The table of a page begins with its headings."""
    return rows[next(number for number, row in enumerate(rows) if row and row[0] == "c0"):]


def main(program):
    checks = Checks()
    command = Command(program)
    cases_of = groups()
    with tempfile.TemporaryDirectory(prefix="spreadsheet") as folder, ThreadPoolExecutor() as pool:
        def files(locale, names, suffix):
            return [Path(folder, f"{name}-{locale}.{suffix}") for name in names]

        def start(profile, locale):
            return Spreadsheet(Path(folder, profile), locale)

        for locale, names in (("en-US", cases_of), ("de-DE", NUMBERS_ALONE)):
            for name in names:
                write_report(folder, f"{name}-{locale}", locale, cases_of[name], program)
        workbooks = pool.submit(start("p1", "en-US").texts_of_workbooks, files("en-US", cases_of, "xlsx"))
        pages = pool.submit(start("p2", "en-US").texts_of_pages, files("en-US", cases_of, "html"))
        kinds = pool.submit(start("p3", "en-US").kinds_of_workbooks, files("en-US", cases_of, "xlsx"))
        german = pool.submit(start("p4", "de-DE").texts_of_workbooks, files("de-DE", NUMBERS_ALONE, "xlsx"))

        expectation = Expectation(command, "en-US")
        for number, cases in enumerate(cases_of.values()):
            workbook, page = workbooks.result()[number], table_of_page(pages.result()[number])
            for column, case in enumerate(cases):
                check_texts(checks, "workbook", case, workbook, column, expectation.of_workbook(case))
                check_texts(checks, "page", case, page, column, expectation.of_page(case))
            check_kinds(checks, cases, kinds.result()[number])
        in_german = Expectation(command, "de-DE")
        for name, workbook in zip(NUMBERS_ALONE, german.result()):
            for column, case in enumerate(cases_of[name]):
                check_texts(checks, "workbook in German", case, workbook, column, in_german.of_workbook(case))
    checks.equal("the differences that were met", sorted(expectation.used), sorted(DIFFERENCES))
    checks.end("spreadsheet")


if __name__ == "__main__":
    main(sys.argv[1])
