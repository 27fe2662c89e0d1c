"""Every formatter that encodes, with the text that a reader must find behind what it writes.

A `Family` is a kind of text on its way into a document: what a pattern holds, what a value holds. `families` makes all
of them from a list of hostile texts; most take every third text, each another third than the one before it. Patterns
are written by the rules of the pattern languages: bare text loses the characters that mean something there, quoted and
escaped text gets its backslashes.
"""

import itertools
import re
from dataclasses import dataclass
from xml.sax.saxutils import quoteattr

NUMERIC_SYNTAX = '#0?%"\\[,;.$'
DATE_SYNTAX = '"DHMTY[\\dghmsty'
DURATION_SYNTAX = 'dhmscr"\\['
TEXT_SYNTAX = '"\\[@'

NUMBER_TYPES = [{"type": "double"}, {"type": "integer"}, {"type": "unsignedinteger"}, {"type": "bigint"},
                {"type": "unsignedbigint"}, {"type": "numeric"}]
CALENDAR_VALUES = [({"type": "date"}, "2024-03-05", "yyyy", "2024"), ({"type": "time"}, "07:08:09", "HH", "07"),
                   ({"type": "timestamp"}, "2024-03-05 07:08:09", "yyyy", "2024"),
                   ({"type": "timestamp", "displayTimeZone": ""}, "2024-03-05 07:08:09", "yyyy", "2024")]

NOT_XML = re.compile("[\x00-\x08\x0b\x0c\x0e-\x1f\ud800-\udfff\ufffe\uffff]")
BRACKET_TAG = re.compile(r"\[(/?[biu]|br/)\]", re.IGNORECASE)


@dataclass
class Family:
    """Requests without their output, and the texts that are meant by them, in order."""

    name: str
    requests: list
    meant: list
    value_reference: bool = False   # the texts are values of a text template: bracket tags count in PDF and XLSX
    no_break_spaces: bool = False   # blanks are no-break spaces in HTML
    red: bool = False               # the template writes an element of its own around the text

    def texts(self, command, output):
        texts = command.texts([{**request, "output": output} for request in self.requests])
        if len(texts) != len(self.meant):
            raise SystemExit(f"{self.name}: {len(texts)} texts to {len(self.meant)} values")
        return texts

    def meant_in(self, output):
        """What the texts are meant to say in an output, before the encoding."""
        meant = self.meant
        if self.no_break_spaces and output == "html":
            meant = [text.replace(" ", "\u00a0") for text in meant]
        if self.value_reference and output in ("pdf", "xlsx"):
            meant = [with_html_tags(text) for text in meant]
        return meant


def with_html_tags(text):
    """The bracket tags of a value as HTML tags: what a value says in the outputs that become pages of a document."""
    return BRACKET_TAG.sub(r"<\1>", text)


def allowed_in_markup(text):
    """Characters that XML does not allow are written as U+FFFD, so that no value makes a document malformed."""
    return NOT_XML.sub("\ufffd", text)


def shown_sql_literal(text):
    """The SQL literal of a text in markup, for people: apostrophes doubled, then what a JavaScript string escapes, but
    for the characters that are entities already."""
    names = {"\\": "\\\\", "\n": "\\n", "\r": "\\r", "\t": "\\t", "\b": "\\b", "\f": "\\f"}
    inner = re.sub("[\\\\\x00-\x1f\x7f\u2028\u2029]",
                   lambda c: names.get(c[0]) or f"\\u{ord(c[0]):04X}", text.replace("'", "''"))
    return f"'{inner}'"


def bare(text, syntax):
    return "".join(c for c in text if c not in syntax)


def quoted(text):
    """In quotes, with the backslashes that " and \\ need, and one more where a tag of a section or a TZ would arise."""
    pieces = [f"\\{c}" if c in '"\\' or before == "[" or before + c == "TZ" else c
              for before, c in zip(" " + text, text)]
    return f'"{"".join(pieces)}"'


def escaped(text):
    return "".join(f"\\{c}" for c in text)


def pattern_family(name, texts, make):
    """One request a text. `make` gives (request, meant text), or None for a text that leaves nothing to test."""
    made = [pair for pair in map(make, range(len(texts)), texts) if pair]
    return Family(name, [request for request, _ in made], [meant for _, meant in made])


def value_family(name, texts, request, **more):
    return Family(name, [{"type": "varchar", **request, "values": texts}], texts, **more)


def number(pattern, value="7", n=0):
    kind = NUMBER_TYPES[n % len(NUMBER_TYPES)]
    number = value if kind["type"] in ("bigint", "unsignedbigint", "numeric") or value is None else int(value)
    return {"factory": "custom", **kind, "pattern": pattern, "value": number}


def numbers(next_texts):
    def with_bare(make):
        return lambda n, text: make(n, bare(text, NUMERIC_SYNTAX)) if bare(text, NUMERIC_SYNTAX) else None

    def family(name, make):
        return pattern_family(f"number, {name}", next_texts(), make)

    def definition(n, text):
        xml = f'<tov:dataFormat xsi:type="tov:custom" customFormat={quoteattr("0" + text, {chr(13): "&#13;"})}/>'
        usable = text and not NOT_XML.search(text)
        return ({"type": "double", "definition": xml, "value": 7}, "7" + text) if usable else None

    def open_bracket(n, text):
        return number("0[:" + text.replace("]", ""), n=n), "7[:" + text.replace("]", "")

    red = family("coloured section", with_bare(lambda n, text: (number(f"0;[red]0{text}", "-7"), "7" + text)))
    red.red = True
    return [
        family("bare text behind", with_bare(lambda n, text: (number("0" + text, n=n), "7" + text))),
        family("bare text before", with_bare(lambda n, text: (number(text + "0", n=n), text + "7"))),
        family("negative section", with_bare(lambda n, text: (number(f"0;{text}0", "-7"), text + "7"))),
        family("section for nulls", with_bare(lambda n, text: (number("0;0;" + text, None, n), text))),
        family("bracket that is not closed", open_bracket),
        family("custom definition", with_bare(definition)),
        red,
    ]


def calendars(next_texts):
    def make(spelled):
        def request(n, text):
            kind, value, field, shown = CALENDAR_VALUES[n % len(CALENDAR_VALUES)]
            meant, pattern = spelled(text)
            return {"factory": "custom", **kind, "pattern": field + pattern, "value": value}, shown + meant
        return request

    return [
        pattern_family("date, bare text", next_texts(), make(lambda text: (bare(text, DATE_SYNTAX),) * 2)),
        pattern_family("date, quoted text", next_texts(), make(lambda text: (text, quoted(text)))),
        pattern_family("date, escaped characters", next_texts(), make(lambda text: (text, escaped(text)))),
    ]


def durations(next_texts):
    def make(spelled):
        def request(n, text):
            meant, pattern = spelled(text)
            kind = NUMBER_TYPES[n % len(NUMBER_TYPES)]
            value = "93784" if kind["type"] in ("bigint", "unsignedbigint", "numeric") else 93784
            return {"factory": "duration", **kind, "pattern": pattern, "value": value}, meant
        return request

    def optional(text):
        text = text.replace("]", "")
        return f"01{text}020304", f"[opt:dd{quoted(text)}]hhmmss"

    def bare_text(text):
        text = bare(text, DURATION_SYNTAX)
        return "26" + text, "hh" + text

    return [
        pattern_family("duration, bare text", next_texts(), make(bare_text)),
        pattern_family("duration, quoted text", next_texts(), make(lambda text: ("26" + text, "hh" + quoted(text)))),
        pattern_family("duration, escaped characters", next_texts(),
                       make(lambda text: ("26" + text, "hh" + escaped(text)))),
        pattern_family("duration, optional section", next_texts(), make(optional)),
    ]


def templates(next_texts):
    def make(spelled):
        def request(n, text):
            meant, pattern = spelled(text)
            return {"factory": "custom", "type": "varchar", "pattern": pattern + "@", "value": "v"}, meant + "v"
        return request

    values = [value_family(f"text, factory {factory}", next_texts(), {"factory": factory, "type": kind},
                           value_reference=True)
              for factory, kind in (("format", "varchar"), ("default", "char"), ("input", "longvarchar"),
                                    ("csv", "varchar"), ("literal", "varchar"), ("xml", "varchar"))]
    definition = {"definition": '<tov:dataFormat xsi:type="tov:text" textFormat="plain"/>'}
    return values + [
        value_family("text, plain definition", next_texts(), definition, value_reference=True),
        value_family("text, template @N", next_texts(), {"factory": "custom", "pattern": "@N"}, value_reference=True,
                     no_break_spaces=True),
        pattern_family("text, bare text", next_texts(), make(lambda text: (bare(text, TEXT_SYNTAX),) * 2)),
        pattern_family("text, quoted text", next_texts(), make(lambda text: (text, quoted(text)))),
        pattern_family("text, escaped characters", next_texts(), make(lambda text: (text, escaped(text)))),
    ]


def compounds(next_texts):
    def quoted_part(n, text):
        literal = text.replace("\\", "\\\\").replace('"', '\\"')
        return {"factory": "custom", "pattern": "0", **NUMBER_TYPES[0], "compound": f'@"{literal}"', "value": 7}, \
            "7" + text

    def bare_part(n, text):
        return {"type": "varchar", "compound": bare(text, '@"') + "@", "value": "v"}, bare(text, '@"') + "v"

    values = next_texts()
    inner = [{"type": "varchar", "compound": "<@>", "values": values}]
    around = Family("compound, value", inner, [f"<{text}>" for text in values], value_reference=True)
    return [
        pattern_family("compound, quoted text", next_texts(), quoted_part),
        pattern_family("compound, bare text", next_texts(), bare_part),
        around,
    ]


def thirds(texts):
    """A function that gives every third text, with each call another third."""
    return itertools.cycle([texts[::3], texts[1::3], texts[2::3]]).__next__


def families(texts):
    """All families over the texts, but those that only one output has."""
    bytes_of = [text.encode() for text in texts]
    take = thirds(texts)
    return numbers(take) + calendars(take) + durations(take) + templates(take) + compounds(take) + [
        value_family("text, template @", texts, {"factory": "custom", "pattern": "@"}, value_reference=True),
        value_family("drill value", texts, {"factory": "drill"}),
        Family("drill value, null", [{"factory": "drill", "type": "varchar", "value": None}], ["*KT_NULL*"]),
        Family("raw value", [{"type": "varbinary", "values": [{"hex": value.hex()} for value in bytes_of]}],
               [value.hex().upper() for value in bytes_of]),
    ]
