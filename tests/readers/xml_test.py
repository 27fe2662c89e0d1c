"""What is written for XML, XSL-FO and Excel, put into documents: libxml2 reads every text back.

    xml_test.py WEBFORMAT

Every family of formatters.py stands as an element's text and as attributes in either quotes. Where a text has an [html]
section, pages get it in the wrapper lumfo:html2fo, whose attribute is the markup. Three things are not the value to the
letter: characters that XML does not allow are written as U+FFFD by the encoder; every parser of XML reads CR and CR LF
as LF, and in attributes tabs and line ends as blanks.
"""

import re
import sys

import corpus
import libxml2
from command import Command
from formatters import allowed_in_markup, families, quoted, shown_sql_literal, with_html_tags
from tools import Checks

ROOT = '<cases xmlns:fo="http://www.w3.org/1999/XSL/Format" xmlns:lumfo="urn:tov:schemas:lumfo:v1">'
RED = {"pdf": (("fo:inline", ("color", "red")),)}
WRAPPER = ('<lumfo:html2fo src="', '"/>')

# Text definitions with an [html] section: what their markup says in a page.
WRAPPED = {"html": "{0}", "plainNBSP": "<pre>{0}</pre>", "hyperLink": '<a href="{0}">{0}</a>',
           "hyperLinkHTTP": '<a href="http://{0}">{0}</a>', "mailTo": '<a href="mailto:{0}">{0}</a>',
           "imageURL": '<img src="{0}">'}


def read_by_xml(text):
    """Line ends as every parser of XML hands them on."""
    return text.replace("\r\n", "\n").replace("\r", "\n")


def read_in_attribute(text):
    """Attributes are normalised too: a tab or a line end is a blank."""
    return read_by_xml(text).replace("\n", " ").replace("\t", " ")


def read_cases(checks, name, cases):
    """The elements of one document; None, and a failure with the first bad case, where it is not well-formed."""
    try:
        return libxml2.read(ROOT + "\n".join(cases) + "</cases>")
    except libxml2.NotWellFormed as error:
        bad = next((case for case in cases if not is_well_formed(case)), "none by itself")
        checks.fail(f"{name}: {error}; the first that is not: {bad[:500]!a}")
        return None


def is_well_formed(case):
    try:
        return bool(libxml2.read(f"{ROOT}{case}</cases>"))
    except libxml2.NotWellFormed:
        return False


def check_texts(checks, name, texts, meant, inner=(), places=("double", "single")):
    """As content and in attributes (`places`), `inner` being the elements that the template writes around the text."""
    quotes = {"double": '"', "single": "'"}
    cases = []
    for text in texts:
        attributes = "".join(f" {place}={quotes[place]}{text}{quotes[place]}" for place in places)
        cases.append(f"<c{attributes}>{text}</c>")
    elements = read_cases(checks, name, cases) or []
    checks.equal(f"{name}, number of elements", len(elements), len(meant))
    for element, says in zip(elements, meant):
        says = allowed_in_markup(says)
        checks.equal(name, (element.name, element.text, element.inner), ("c", read_by_xml(says), inner))
        value = read_in_attribute(says)
        checks.equal(f"{name}, attributes", element.attributes, [(place, value) for place in places])


def check_wrapped(checks, name, texts, meant):
    """The wrapper is the whole text, and its attribute is what is meant."""
    for text in texts:
        checks.equal(f"{name}, the wrapper", (text[: len(WRAPPER[0])], text[-len(WRAPPER[1]) :]), WRAPPER)
    elements = read_cases(checks, name, [f"<c>{text}</c>" for text in texts]) or []
    checks.equal(f"{name}, number of elements", len(elements), len(meant))
    for element, says in zip(elements, meant):
        wrapper = ("lumfo:html2fo", ("src", read_in_attribute(allowed_in_markup(says))))
        checks.equal(name, (element.text, element.inner), ("", (wrapper,)))


def check_pages(command, checks, texts, output):
    """What only documents of pages have: the wrapper, and images."""
    for name, markup in WRAPPED.items():
        definition = f'<tov:dataFormat xsi:type="tov:text" textFormat="{name}"/>'
        request = {"type": "varchar", "definition": definition, "output": output, "values": texts}
        check_wrapped(checks, f"{output}, text {name}", command.texts([request]),
                      [markup.format(with_html_tags(text)) for text in texts])

    def template(make, value):
        return [{"factory": "custom", "type": "varchar", "output": output, "pattern": make(text), "value": value}
                for text in texts]

    around = template(lambda text: f"[html]{quoted(text)}@", "v")
    check_wrapped(checks, f"{output}, text of a template", command.texts(around), [text + "v" for text in texts])
    empty = template(lambda text: f"[html]@;{quoted(text)}", "")
    check_texts(checks, f"{output}, section for empty values", command.texts(empty), texts)

    # A value with bracket tags is text, not an image.
    images = [text for text in texts if with_html_tags(text) == text]
    request = {"factory": "custom", "type": "varchar", "pattern": "@I(10,20)", "output": output, "values": images}
    elements = read_cases(checks, f"{output}, image", [f"<c>{text}</c>" for text in command.texts([request])]) or []
    checks.equal(f"{output}, images", len(elements), len(images))
    for element, text in zip(elements, images):
        source = f"url('{read_in_attribute(allowed_in_markup(text))}')"
        image = ("fo:external-graphic", ("src", source), ("width", "10"), ("height", "20"))
        checks.equal(f"{output}, image", (element.text, element.inner), ("", (image,)))


def main():
    command, checks = Command(sys.argv[1]), Checks()
    texts = corpus.build()
    for output, some in (("xml", texts), ("pdf", texts), ("xlsx", texts[::3])):  # the last is encoded as pdf is
        for family in families(some):
            inner = RED.get(output, ()) if family.red else ()
            check_texts(checks, f"{output}, {family.name}", family.texts(command, output), family.meant_in(output),
                        inner, () if inner else ("double", "single"))
    wide = corpus.all_characters()
    check_texts(checks, "all characters",
                command.texts([{"do": "encode", "output": "xml", "text": text} for text in wide]), wide)
    # Its quotes are apostrophes: it stands in double quotes only. It copies U+FFFE and U+FFFF: its callers' to keep out.
    shown = [re.sub("[\ufffe\uffff]", "", text) for text in texts]
    literals = command.texts([{"factory": "sqlLiteral", "type": "varchar", "output": "xml", "values": shown}])
    check_texts(checks, "SQL literal", literals, list(map(shown_sql_literal, shown)), places=("double",))
    check_pages(command, checks, texts, "pdf")
    check_pages(command, checks, texts[::3], "xlsx")
    checks.end(f"XML, {len(texts)} hostile texts")


if __name__ == "__main__":
    main()
