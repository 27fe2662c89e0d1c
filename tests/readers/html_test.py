"""What the formatters write for HTML, opened in Chromium: no script runs, no element appears that the template did not
write, and the text read back is the value.

    html_test.py WEBFORMAT

Every family of formatters.py stands in the body and in attributes in either quotes, one in text fields too; the
families that only HTML has stand here. Two things are not the value to the letter: characters that XML does not allow
are written as U+FFFD by the encoder, and every parser of HTML reads CR and CR LF as LF.
"""

import re
import sys
from concurrent.futures import ThreadPoolExecutor

import corpus
from browser import EVERYWHERE, Page
from command import Command
from formatters import allowed_in_markup, escaped, families, quoted, shown_sql_literal, thirds
from tools import Checks

PNG = ("89504e470d0a1a0a0000000d4948445200000010000000080806000000f0769f97" + b"<script>hacked()</script>\"'>".hex())

LOCALE_PATTERNS = [
    ({"type": "date"}, "MMM MMMM ddd DDDD gg", [f"2024-{month:02}-{month:02}" for month in range(1, 13)]),
    ({"type": "time"}, "h:mm:ss.### t", ["01:02:03.5", "23:02:03.5"]),
    ({"type": "double"}, "#,##0.00[$] [MMMM][scale-name:auto]", [-1234567.5, 3]),
]


def page_of_families(command, chosen):
    page = Page()
    for family in chosen:
        written = family.texts(command, "html")
        meant = [allowed_in_markup(text) for text in family.meant_in("html")]
        places = ("body",) if family.red else EVERYWHERE
        if family.name == "drill value":
            places += ("field",)
        page.add(family.name, written, meant, places, "font style" if family.red else "")
    return page


def page_of_scripts(command, texts):
    """@J in HTML: in a handler's attribute in either quotes, and in a script; all characters there are, too."""
    page, next_texts = Page(), thirds(texts)
    for before, after in (('<i data-run onclick="got(\'', '\')"></i>'), ("<i data-run onclick='got(\"", "\")'></i>"),
                          ("<script data-value>got('", "')</script>"), ('<script data-value>got("', '")</script>')):
        pattern = f"[html]{quoted(before)}@J{quoted(after)}"
        request = {"factory": "custom", "type": "varchar", "pattern": pattern, "output": "html"}
        values = next_texts() + corpus.all_characters()
        page.add_scripts(command.texts([{**request, "values": values}]), values)
    return page


def as_markup(text):
    """A text as an author of HTML writes it; removeHtml reads it back."""
    for c, entity in (("&", "&amp;"), ("<", "&lt;"), (">", "&gt;"), ('"', "&quot;"), ("'", "&apos;")):
        text = text.replace(c, entity)
    return text


def without_expander(text):
    """The cut text and, in the expander, the attribute with all of it."""
    return re.fullmatch(r'(?s)(<span>.*</span>)<span class="ZoomInEnable"><span onclick="[^"]*" fullText="([^"]*)">'
                        r'(?:&nbsp;){5}</span></span>', text).groups()


def page_of_cut_texts(command, texts):
    """Markup in a value stands as it is by rule, so the values are markup; the attributes hold their encoded text."""
    page = Page()
    meant = [allowed_in_markup(text) for text in texts[::2]]
    values = [as_markup(text) for text in meant]
    short = command.texts([{"factory": "truncate", "length": 100000, "output": "html", "values": values}])
    page.add("short text, shown", short, meant, ("body",), "span title")
    titles = [re.fullmatch(r'(?s)<span title="([^"]*)">.*</span>', text).group(1) for text in short]
    page.add("short text, title", titles, meant, ("double", "single"))
    for limit in (1, 20):
        cut = [(value, says) for value, says in zip(values, meant) if len(value) >= limit]
        written = command.texts([{"factory": "truncate", "length": limit, "output": "html",
                                  "values": [value for value, _ in cut]}])
        pairs = [without_expander(text) for text in written]
        page.add(f"text cut at {limit}, shown", [shown for shown, _ in pairs],
                 [says[:limit] + "..." for _, says in cut], ("body",), "span")
        page.add(f"text cut at {limit}, whole text", [whole for _, whole in pairs], [says for _, says in cut],
                 ("double", "single"))
    return page


def page_of_hostile_tooltips(command, texts):
    """Values that are not markup: what of them is text is for removeHtml to say, and the attribute holds that."""
    page, texts = Page(), texts[1::2]
    plain = command.texts([{"do": "removeHtml", "text": text} for text in texts])
    meant = [allowed_in_markup(text) for text in plain]
    short = command.texts([{"factory": "truncate", "length": 100000, "output": "html", "values": texts}])
    titles = [text.removeprefix('<span title="').split('">')[0] for text in short]
    page.add("hostile short text, title", titles, meant, ("double", "single"))
    cut = command.texts([{"factory": "truncate", "length": 1, "output": "html", "values": texts}])
    whole = [text.rpartition(' fullText="')[2].split('">')[0] for text in cut]
    page.add("hostile text cut, whole text", whole, meant, ("double", "single"))
    return page


def page_of_single_formatters(command, texts):
    """Formatters with elements or quotes of their own."""
    page = Page()
    sql = command.texts([{"factory": "sqlLiteral", "type": "varchar", "output": "html", "values": texts}])
    page.add("SQL literal", sql, [shown_sql_literal(text) for text in texts])

    # The link's target is raw by rule: no value here can close its attribute. The text of the link is encoded.
    linked = [text.replace('"', "") for text in texts if text.replace('"', "")]
    for name in ("hyperLink", "hyperLinkHTTP", "mailTo"):
        definition = f'<tov:dataFormat xsi:type="tov:text" textFormat="{name}"/>'
        written = command.texts([{"type": "varchar", "definition": definition, "output": "html", "values": linked}])
        page.add(f"text of a link, {name}", written, [allowed_in_markup(text) for text in linked], ("body",), "a href")

    images = command.texts([{"type": "varbinary", "output": "html", "value": {"hex": PNG}}])
    page.add("image", images, [""], ("body",), "img width height src")
    return page


def page_of_locales(command):
    """Names, signs and separators of every locale: in HTML they read as they do in plain text."""
    page = Page()
    locales = command.list("locales")
    for kind, pattern, values in LOCALE_PATTERNS:
        requests = [{"factory": "custom", **kind, "pattern": pattern, "locale": locale, "values": values}
                    for locale in locales]
        meant = command.texts([{**request, "output": "text"} for request in requests])
        written = command.texts([{**request, "output": "html"} for request in requests])
        different = dict(zip(written, meant, strict=True))
        page.add(f"locales, {pattern}", different.keys(), different.values())
    return page


def check_locale_data(command, checks):
    """Names and signs of locales are not encoded: none has a character that means something in a document."""
    texts = []
    for kind, pattern, values in LOCALE_PATTERNS:
        texts += command.texts([{"factory": "custom", **kind, "pattern": pattern, "locale": locale, "values": values}
                                for locale in command.list("locales")])
    tags = [f"loc:{locale}" for locale in command.list("locales")]
    tags += [f"int:{code}" for code in command.list("currencies")]
    texts += command.texts([{"type": "double", "value": -1234.5, "definition":
                             f'<tov:dataFormat xsi:type="tov:currency" currencyTag="{tag}"/>'} for tag in tags])
    texts += command.texts([{"factory": "custom", "type": "timestamp", "pattern": "TZ", "value": "2024-03-05 01:02:03",
                             "dataOffset": 0, "displayTimeZone": zone, "language": language}
                            for zone in command.list("time-zones") for language in ("en-us", "fr-fr", "zh-tw")])
    special = [text for text in texts if re.search("[<>&\"'\\\\\u2028\u2029]", text)]
    checks.equal("texts of the locale data", special, [])


def check_what_is_raw(command, checks):
    """What docs/security.md lists as raw: the test says so too, so that the list stays true."""
    markup = "<b title='x'>&amp;</b>"
    rows = [
        ("number, quoted text", {"factory": "custom", "type": "double", "pattern": f'0"{markup}"', "value": 7}, "7"),
        ("number, escaped characters",
         {"factory": "custom", "type": "double", "pattern": "0" + escaped(markup), "value": 7}, "7"),
        ("number, currency bracket",
         {"factory": "custom", "type": "double", "pattern": f"0[$:{markup}]", "value": 7}, "7"),
        ("date, [html] section", {"factory": "custom", "type": "date", "pattern": f"[html]{quoted(markup)}yyyy",
                                  "value": "2024-03-05"}, None),
        ("text, @H", {"factory": "custom", "type": "varchar", "pattern": "@H", "value": markup}, ""),
        ("text, @I", {"factory": "custom", "type": "varchar", "pattern": "@I", "value": markup}, ""),
        ("text, html definition", {"type": "varchar", "value": markup,
                                   "definition": '<tov:dataFormat xsi:type="tov:text" textFormat="html"/>'}, ""),
    ]
    for name, request, before in rows:
        written = command.texts([{**request, "output": "html"}])[0]
        checks.equal(f"raw by rule: {name}", written, markup + "2024" if before is None else before + markup)


def main():
    command, checks = Command(sys.argv[1]), Checks()
    texts = corpus.build()
    chosen = families(texts)
    parts = [chosen[n : n + 6] for n in range(0, len(chosen), 6)]
    makers = [lambda part=part: page_of_families(command, part) for part in parts]
    makers += [lambda make=make: make(command, texts) for make in
               (page_of_scripts, page_of_cut_texts, page_of_hostile_tooltips, page_of_single_formatters)]
    makers.append(lambda: page_of_locales(command))
    with ThreadPoolExecutor(2) as pool:  # one page is made while another is read
        for count, report in pool.map(reported, makers):
            checks.page(report, count)
    check_what_is_raw(command, checks)
    check_locale_data(command, checks)
    checks.end(f"HTML in {len(makers)} pages, {len(texts)} hostile texts")


def reported(make):
    page = make()
    return len(page.cases) + len(page.scripts), page.report()


if __name__ == "__main__":
    main()
