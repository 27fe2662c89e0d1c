"""Reports as XSL-FO: libxml2 reads the document, Apache FOP prints it without a word, and the text of the PDF is ours.

    fop_test.py WEBFORMAT

The texts are the sample's (comments and replies, in a dozen scripts), one for each place where a text can break out of
markup, and broken HTML. Each stands in a plain column and in an HTML column, between cells that hold the row's number,
so that the text of a cell can be told in the text of a page. "Ours" is what the formatters write for text.

Paper differs from text in ways that are counted out here, each with its reason, in `comparable` and `same_on_paper`.
"""

import csv
import os
import re
import subprocess
import sys
import tempfile
import unicodedata
import xml.etree.ElementTree as ElementTree
from collections import Counter

import corpus
from command import Command
from tools import Checks, tool

EXAMPLES = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "examples")
sys.path.insert(0, EXAMPLES)
import sales_texts  # noqa: E402

FO = "{http://www.w3.org/1999/XSL/Format}"
HTML = "@H[html]@H"
REPORT = """<tov:report xmlns:tov="urn:tov:schemas:report:v1" xmlns:xsi="http://www.w3.org/2001/XMLSchema-instance"
    locale="%s" title="%s">
<tov:column name="row" heading="first" type="varchar"><tov:dataFormat xsi:type="tov:custom"
    customFormat="&quot;(&quot;@&quot;,&quot;"/></tov:column>
<tov:column name="text" heading="plain" type="varchar"/>
<tov:column name="row" heading="second" type="varchar"><tov:dataFormat xsi:type="tov:custom"
    customFormat="&quot;,&quot;@&quot;,&quot;"/></tov:column>
<tov:column name="html" heading="markup" type="varchar"><tov:dataFormat xsi:type="tov:custom"
    customFormat="@H[html]@H"/></tov:column>
<tov:column name="row" heading="third" type="varchar"><tov:dataFormat xsi:type="tov:custom"
    customFormat="&quot;,&quot;@&quot;)&quot;"/></tov:column>
<tov:column name="amount" heading="amount" type="double"><tov:dataFormat xsi:type="tov:number" commas="true"
    negativeType="redParen" minDigits="2" maxDigits="2"/></tov:column>
</tov:report>
"""

# Fragments whose text is the same for the library, which drops everything from "<" to ">", and for a reader of HTML.
BROKEN_HTML = [
    "<b>never closed", "</i>never opened", "<b>across<i>each</b>other</i>", "<nobody knows=this>text</nobody>",
    "a<script>alert(1)</script>b", "<style>p{}</style>c", "d<object>e<b>f</object>g", "<a href=javascript:hacked()>h</a>",
    "<a href='https://example.org/?a=1&amp;b=(2)'>i</a>", "<pre>j\n  k</pre>", "<p>l</p><p>m</p>", "&lt;n&gt; &amp;amp; o",
    "<table><tr><td>p</td></tr></table>", "<b><b><b>q</b>r</b>s</b>t", "\"/></fo:block></fo:root>u", "<br><br>v",
]


def texts():
    """Plain texts and fragments, pairs."""
    ways_out = [piece for place in corpus.PIECES.values() for piece in place]
    printable = [text for text in ways_out + corpus.PAYLOADS if not re.search(r"[\x00-\x08\x0b-\x1f]", text)]
    plain = sales_texts.COMMENTS + sales_texts.NOTES + printable
    replies = [greeting + answer + ending for answer in sales_texts.ANSWERS
               for greeting, ending in zip(sales_texts.GREETINGS, sales_texts.ENDINGS)]
    markup = replies + BROKEN_HTML
    return [(text, markup[number % len(markup)]) for number, text in enumerate(plain)]


def write_report(folder, locale, rows):
    report, data = os.path.join(folder, "r.xml"), os.path.join(folder, "d.csv")
    with open(report, "w", encoding="utf-8") as out:
        out.write(REPORT % (locale, "A &amp; B &lt;c&gt;"))
    with open(data, "w", encoding="utf-8", newline="") as out:
        writer = csv.writer(out)
        writer.writerow(["row", "text", "html", "amount"])
        for number, (text, html) in enumerate(rows):
            writer.writerow(["r%03dr" % number, text, html, number * 1000.5 * (-1) ** number])
    return report, data


def comparable(text):
    """The text without what paper does not keep.

    Blanks: lines are broken anew, and tabs and line ends are blanks. What is not seen: joiners, break opportunities,
    marks of direction, variation selectors, soft hyphens, skin tones. Controls are printed as U+FFFD. Forms: fonts hold
    ligatures and Arabic letters in their joined forms (NFKC undoes them).
    """
    text = re.sub("[\u007f-\u0084\u0086-\u009f]", "\ufffd", text)
    text = re.sub("[\u00ad\u034f\u061c\u180b-\u180e\u200b-\u200f\u202a-\u202e\u2060-\u206f\ufe00-\ufe0f\ufeff"
                  "\U0001f3fb-\U0001f3ff\U000e0000-\U000e0fff]", "", text)
    return re.sub(r"\s", "", unicodedata.normalize("NFKC", re.sub(r"\s", "", text)))


RIGHT_TO_LEFT = re.compile("[\u0590-\u08ff\ufb1d-\ufdff\ufe70-\ufefc\u202e]")
REORDERED = re.compile("[\u0900-\u0eff]")
SHAPED = re.compile("[\u0900-\u0dff]")
EMOJI = re.compile("[\U00010000-\U0001ffff]")
BRACKETS = str.maketrans(")]}>»›", "([{<«‹")


def same_on_paper(found, meant, right_to_left):
    """Whether the text of a cell on paper is the text that was meant.

    To the letter, but: where letters run from right to left, by themselves or by an override, or stand in a document
    that does, the PDF holds what is seen from left to right, brackets mirrored, so that the letters are counted; so are
    those of Thai and the scripts of India, whose vowels are printed in another place than they are stored. In the
    latter consonants are joined to glyphs that no character stands for: the PDF may lack letters of theirs, and no
    others. Emoji: FOP notes wrong characters for glyphs outside the basic plane (the glyphs are right), so that only
    the other characters are looked for.
    """
    turned = right_to_left or RIGHT_TO_LEFT.search(meant)
    found, meant = comparable(found), comparable(meant)
    if EMOJI.search(meant):
        return not Counter(EMOJI.sub("", meant)) - Counter(EMOJI.sub("", found))
    if not turned and not REORDERED.search(meant):
        return found == meant
    found, meant = Counter(found.translate(BRACKETS)), Counter(meant.translate(BRACKETS))
    return not found - meant and all(SHAPED.match(letter) for letter in meant - found)


def cells_of(document):
    """The texts of the body's cells, row by row, as the document holds them."""
    body = ElementTree.parse(document).getroot().find(f".//{FO}table-body")
    return [["".join(cell.itertext()) for cell in row.findall(f"{FO}table-cell")] for row in body.findall(f"{FO}table-row")]


def check_document(checks, document, meant):
    run = subprocess.run([tool("xmllint"), "--noout", document], capture_output=True, check=False)
    checks.equal("libxml2", (run.returncode, run.stderr), (0, b""))
    rows = cells_of(document)
    checks.equal("rows of the document", len(rows), len(meant))
    for row, (plain, html) in zip(rows, meant):
        checks.equal("plain text in the document", comparable(row[1]), comparable(plain))
        checks.equal("markup in the document", comparable(row[3]), comparable(html))


def print_document(checks, configuration, document, pdf):
    """FOP says what it does; a warning or an error is a failure."""
    run = subprocess.run([tool("fop"), "-c", configuration, document, pdf], capture_output=True, check=False)
    said = run.stderr.decode(errors="replace") + run.stdout.decode(errors="replace")
    # What Debian's script says of Java before FOP starts is in another form.
    bad = [line for line in said.split("\n") if re.search(r"WARN|ERROR|SEVERE|FATAL|Exception", line)]
    checks.equal("FOP's words", (run.returncode, bad), (0, []))


def check_pdf(checks, pdf, meant, right_to_left):
    run = subprocess.run([tool("pdftotext"), "-raw", pdf, "-"], capture_output=True, check=True)
    text = run.stdout.decode()
    checks.equal("pages with a number", len(re.findall(r"Page \d+ of \d+", text)), text.count("\f"))
    found = {number: (plain, html) for number, plain, html in
             re.findall(r"(?s)\(\s*r(\d{3})r,(.*?),\s*r\1r,(.*?),\s*r\1r\)", text)}
    checks.equal("rows on paper", len(found), len(meant))
    for number, (plain, html) in enumerate(meant):
        for kind, here, ours in zip(("plain", "markup"), found.get("%03d" % number, ("", "")), (plain, html)):
            checks.done += 1
            if not same_on_paper(here, ours, right_to_left):
                checks.fail(f"{kind} on paper, row {number}:\n    found {here!a}\n    meant {ours!a}")


def check_report(command, checks, configuration, locale, rows):
    plain = command.texts([{"factory": "custom", "type": "varchar", "pattern": "@", "values": [a for a, _ in rows]}])
    # Tags in square brackets become tags in angle brackets for the PDF, where no template makes HTML of the text too.
    plain = [re.sub(r"\[(/?[biu]|br/)\]", r"<\1>", text) for text in plain]
    html = command.texts([{"factory": "custom", "type": "varchar", "pattern": HTML, "values": [b for _, b in rows]}])
    with tempfile.TemporaryDirectory() as folder:
        document, pdf = os.path.join(folder, "r.fo"), os.path.join(folder, "r.pdf")
        report, data = write_report(folder, locale, rows)
        subprocess.run([command.program, "report", report, "--data", data, "--output", "fo", "-o", document], check=True)
        check_document(checks, document, list(zip(plain, html)))
        print_document(checks, configuration, document, pdf)
        check_pdf(checks, pdf, list(zip(plain, html)), locale.startswith("he"))


def main():
    command, checks, configuration = Command(sys.argv[1]), Checks(), os.path.join(EXAMPLES, "fop.xconf")
    rows = texts()
    check_report(command, checks, configuration, "en-US", rows)
    check_report(command, checks, configuration, "he-IL", rows[:40])
    checks.end(f"XSL-FO, {len(rows)} rows of texts")


if __name__ == "__main__":
    main()
