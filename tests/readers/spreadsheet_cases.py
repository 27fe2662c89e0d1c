"""Formats and values for the spreadsheet test, made by rules: every type of definition with every setting that shows.

A `Case` is a column: a type of data and the XML of a data format. VALUES holds the values of each type.
"""

from dataclasses import dataclass
from itertools import product
from xml.sax.saxutils import quoteattr

VALUES = {
    "double": [0, 1, -1, 0.5, -0.5, 0.25, 12.5, 99.5, 1.005, 2.675, -0.125, 0.001, -0.0004, 7.03, 999.97, 1234.5,
               -1234.5, 12345.678, -98765.43, 1234567.891, -9876543210.125, 123456789012345, 1e15, 1e20, 1e-10, 93784,
               "NaN", "INF", "-INF", None],
    "integer": [0, 1, -1, 7, 42, 999, 1000, -1000, 65536, 2147483647, -2147483648, None],
    "numeric": ["0", "1", "-1", "0.5", "1.005", "-1234.5", "123456789012.345", "0.000001", "12345678901234567890",
                "-98765432109876543210.987654321", None],
    "bigint": ["0", "-7", "1234567890", "999999999999999", "9007199254740993", "9223372036854775807", None],
    "date": ["2024-03-05", "2024-12-31", "2000-02-29", "1999-01-01", "1970-01-01", "1900-03-01", "1900-02-28",
             "1899-12-31", "0001-01-01", "9999-12-31", "2024-09-25", None],
    "time": ["00:00:00", "07:08:09", "12:00:00", "12:34:56", "15:05:00", "23:59:59", "07:08:09.5", "00:59:59.999",
             "23:00:00.25", None],
    "timestamp": ["2024-03-05 07:08:09", "2024-12-31 23:59:59", "2024-12-31 23:59:59.75", "2000-02-29 00:00:00",
                  "1970-01-01 12:00:00", "1900-03-01 00:00:00", "1900-02-28 23:59:59", "1999-12-31 15:16:17.125",
                  "9999-12-31 12:34:56", "2024-07-01 12:00:00.000000001", None],
    "varchar": ["text", "", "=1+1", "+1", "-1", "@SUM(A1)", "007", "1e5", "1/2", "2024-03-05", "TRUE", " blank ",
                "<b>&amp;</b>", "a,b;\"c\"", "'apostrophe", "\u00e9\u20ac", "100%", "$5", "_x0041_",
                "http://a.example/", None],
}

NEGATIVE_TYPES = ("minus", "red", "paren", "redParen", "redMinus")
DIGITS = ((0, 0), (2, 2), (0, 3), (1, 4))

NUMBER_PATTERNS = [
    "0", "#", "00000", "??0.0", "0.00", "#.##", "0.0#", "#,##0", "#,##0.00", "#,###", "0,000", "0;(0)",
    "0.0;[red]-0.0", "#,##0.00;[red](#,##0.00)", "0;;\"none\"", "0;-0;\"n/a\"", "\"up\";\"down\"", "0 kg",
    "0\" m\"\\\"", "(0)", "0-00", "0/0", "0%", "0.0%", "0%%", "%0", "0 %", "0\"%\"", "0,", "0.0,,", "0.0,,\"M\"",
    "0,%", "0[scale-name:million]", "0.##[scale-name:auto]", "0[scale-decimal:-3]", "0.0[scale-decimal:2]",
    "[$]#,##0.00", "$0.00", "[$:EUR] 0.00;-[$:EUR] 0.00", "0 [$:kr.]", "[MMM]", "[DDDD]", "[FMT:timeHourMin]",
    "[duration(sec)]hh:mm:ss", "0\\:00[%60]", ".00", "0\u20ac\u00e9", "0\"a\"\"b\"", "0'&<>", "0E+00",
]

# Patterns that no spreadsheet has an equivalent of: the cells are General. The others are of the calendar and of
# durations, and not valid for a cell: text.
GENERAL_PATTERNS = ("0,000", ".00", "0\\:00[%60]", "0.##[scale-name:auto]")
TEXT_ONLY_PATTERNS = ("[MMM]", "[DDDD]", "[FMT:timeHourMin]", "[duration(sec)]hh:mm:ss")

# The predefined formats of dates, and the pattern that a spreadsheet has for them where that is not the locale's own.
DATE_FORMATS = {"dateShort": "M/d/yyyy", "dateLong": None, "dateInput": "iso", "dateODBC": "yyyy-M-d",
                "dateTyped": "iso", "dateYearMonth": "iso"}
TIME_FORMATS = {"time": "iso", "timeHourMin": "iso", "timeInput": "iso", "timeInputHourMin": "iso",
                "timeODBC": "HH:mm:ss", "timeTyped": "iso", "timeHour": "iso", "timeWFracSecs": "iso"}
TIMESTAMP_FORMATS = {"timeStampShort": "M/d/yyyy h:mm:ss tt", "timeStampLong": "dddd, MMMM dd, yyyy h:mm:ss tt",
                     "timeStampInput": "iso", "timeStampODBC": "yyyy-MM-dd HH:mm:ss", "timeStampTyped": "iso",
                     "timeStampShortWFracSecs": "iso"}

DATE_PATTERNS = ["yyyy-MM-dd", "dd.MM.yyyy", "M/d/yy", "d MMM yyyy", "MMMM d, yyyy", "dddd, MMMM d, yyyy", "ddd dd",
                 "MM/yyyy", "\"Q\" MMMM", "yyyy.MM", "d-MMM-yy", "YYYY", "DDDD", "d/M", "dMyyyy"]
TIME_PATTERNS = ["HH:mm", "HH:mm:ss", "h:mm tt", "h:mm:ss tt", "HH:mm:ss.000", "ss.0", "mm:ss", "HH\"h\"", "hh:mm",
                 "mm", "[FMT:time]"]
TIMESTAMP_PATTERNS = ["yyyy-MM-dd HH:mm:ss", "dd.MM.yyyy HH:mm", "M/d/yyyy h:mm:ss tt", "yyyy-MM-dd HH:mm:ss.000",
                      "MMM d, yyyy \"at\" h:mm tt", "HH:mm MM/dd", "[FMT:dateShort] HH:mm", "yyyy-MM-dd HH:mm TZ"]
# No day in capitals, no minute without an hour or a second, no clock of twelve hours without its half of the day.
ISO_PATTERNS = ("DDDD", "hh:mm", "mm", "[FMT:time]")

TEXT_FORMATS = ("plain", "plainNBSP", "html", "hyperLinkHTTP", "hyperLink", "mailTo", "imageURL")
TEXT_PATTERNS = ["@", "\"<\"@\">\"", "[html]\"<i>\"@H\"</i>\"[text]@"]

CURRENCY_TAGS = ("loc:en-US", "loc:de-DE", "int:EUR", "JPY")
ROW_TAGS = ("EUR", "loc:en-US", "int:CHF", "loc:ja-JP", "USD", "loc:de-DE", "int:BHD")


@dataclass
class Case:
    """A column. `excel` says what a spreadsheet shows in the place of our text:

    None        our text
    "general"   the number alone, as precise as the spreadsheet has it
    "iso"       the date in ISO form
    "text"      our text, in a cell of text
    other       our text under this definition
    """

    type: str
    definition: str = ""      # the data format's XML, or nothing: the type's default
    excel: str = None
    blank: bool = False       # numbers that are not negative are followed by the blank of "_)"
    sign: bool = False        # negative numbers have a section of their own, with all that it shows
    by_row: bool = False      # the currency comes from another column
    html: str = "text"        # the definition's HTML shows "text", "markup" (the value is one), "link" or "image"

    @property
    def values(self):
        return VALUES[self.type]


def data_format(kind, content="", **attributes):
    text = "".join(f" {name}={quoteattr(str(value))}" for name, value in attributes.items())
    return f'<tov:dataFormat xsi:type="tov:{kind}"{text}>{content}</tov:dataFormat>'


def custom(pattern):
    return data_format("custom", customFormat=pattern)


def number_settings():
    for commas, (low, high), negative in product(("false", "true"), DIGITS, NEGATIVE_TYPES):
        yield {"commas": commas, "minDigits": low, "maxDigits": high, "negativeType": negative}


def number_case(kind, element, settings):
    negative = settings["negativeType"]
    return Case(kind, data_format(element, **settings), blank="aren" in negative, sign=negative != "minus")


def grouped(element):
    """The patterns of percentages never group."""
    return "false" if element == "percent" else "true"


def scaled_cases():
    for scale in ({"scale": -3}, {"scale": 2}, {"scaleFactor": "first"}, {"scaleFactor": "million"},
                  {"scaleFactor": "auto"}):
        # The pattern of a definition knows no name of a scale: the formatter's own shows it, without the blank. What
        # scales by itself is shown as it is.
        automatic = "auto" in scale.values()
        for element, negative in (("number", "paren"), ("percent", "minus")):
            settings = {"commas": "true", "minDigits": 1, "maxDigits": 2, "negativeType": negative}
            case = number_case("double", element, {**settings, **scale})
            if automatic:
                case.excel = data_format(element, **{**settings, "commas": grouped(element)})
            elif "scale" in scale:
                case.excel = data_format(element, **{**settings, **scale, "commas": grouped(element)})
            else:
                case.blank, case.sign = False, True
            yield case


def pattern_case(kind, pattern):
    excel = "general" if pattern in GENERAL_PATTERNS else "text" if pattern in TEXT_ONLY_PATTERNS else None
    return Case(kind, custom(pattern), excel=excel, sign=";" in pattern)


def number_cases():
    yield from (Case(kind, excel="general") for kind in ("double", "integer", "numeric", "bigint"))
    yield from (number_case("double", "number", settings) for settings in number_settings())
    yield from (number_case("integer", "number", settings) for settings in list(number_settings())[::7])
    yield from (number_case("numeric", "number", settings) for settings in list(number_settings())[::6])
    yield from (number_case("double", "percent", settings) for settings in number_settings()
                if settings["commas"] == "false")
    yield from scaled_cases()
    yield from (pattern_case("double", pattern) for pattern in NUMBER_PATTERNS)
    yield from (pattern_case("integer", pattern) for pattern in NUMBER_PATTERNS[::5])
    yield Case("double", data_format("whistler", whistlerFormat="#,##0.00"), excel="general")


def currency_cases():
    for tag, settings in product(CURRENCY_TAGS, number_settings()):
        yield Case("double", data_format("currency", currencyTag=tag, **settings), sign=True)
    yield Case("double", data_format("currency", currencyTag="loc:en-US", scaleFactor="million"), sign=True)
    column = ('<tov:currencyTagColumn><tovx:expr xsi:type="tovx:sqlExpression">tag</tovx:expr></tov:currencyTagColumn>')
    for negative in NEGATIVE_TYPES:
        definition = data_format("conditionalcurrency", column, commas="true", negativeType=negative)
        yield Case("double", definition, sign=True, by_row=True)


def calendar_cases():
    for kind, element, formats, patterns in (
            ("date", "date", DATE_FORMATS, DATE_PATTERNS), ("time", "time", TIME_FORMATS, TIME_PATTERNS),
            ("timestamp", "datetime", DATE_FORMATS | TIME_FORMATS | TIMESTAMP_FORMATS,
             DATE_PATTERNS + TIME_PATTERNS + TIMESTAMP_PATTERNS)):
        yield Case(kind, excel="iso")
        for name, pattern in formats.items():
            excel = pattern if pattern in (None, "iso") else custom(pattern)
            yield Case(kind, data_format(element, biFormat=name), excel=excel)
        for pattern in patterns:
            yield Case(kind, custom(pattern), excel="iso" if pattern in ISO_PATTERNS else None)
        yield Case(kind, data_format(element, predefinedFormat="yyyy"), excel="iso")


def text_cases():
    shown = {"html": "markup", "hyperLinkHTTP": "link", "imageURL": "image"}
    yield Case("varchar", excel="text")
    yield from (Case("varchar", data_format("text", textFormat=name), excel="text", html=shown.get(name, "text"))
                for name in TEXT_FORMATS)
    yield from (Case("varchar", custom(pattern), excel="text", html="markup" if "@H" in pattern else "text")
                for pattern in TEXT_PATTERNS)


def groups():
    """The cases in groups that a workbook holds: it takes at most 200 number formats."""
    return {"numbers": list(number_cases()), "currencies": list(currency_cases()),
            "calendar": [*calendar_cases(), *text_cases()]}
