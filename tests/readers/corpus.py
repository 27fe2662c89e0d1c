"""Hostile texts, built by rules from the places where a text can break out of a document.

PIECES lists, for each of these places, what ends it, what runs a script in it and what is read in it as something else.
`build` combines the pieces: each alone, every way out with every payload, every disguise of every payload, the special
characters at the start, in the middle and at the end of a text, and random chains. The seed is fixed: the same corpus
on every run. Every payload that runs calls hacked(), so that a page can count it.

    python3 tests/readers/corpus.py     prints how many texts each rule makes
"""

import html
import random
import re

PAYLOADS = [
    "<script>hacked()</script>",
    "<img src=x onerror=hacked()>",
    "<svg onload=hacked()>",
    "<svg><script>hacked()</script></svg>",
    "<iframe srcdoc='<script>parent.hacked()</script>'></iframe>",
    "<body onload=hacked()>",
    "<details open ontoggle=hacked()>x</details>",
    "<input autofocus onfocus=hacked()>",
    "<style>*{background:red}</style>",
    "<math><mtext></form><form><mglyph><style></math><img src=x onerror=hacked()>",
    "<a href=javascript:hacked()>x</a>",
    "<base href=//evil.example/>",
    "<meta http-equiv=refresh content='0;url=//evil.example'>",
    " onmouseover=hacked() ",
    " autofocus tabindex=0 onfocus=hacked() x=",
    ";hacked();",
    "hacked()",
    "${hacked()}",
    "alert(1)",
]

PIECES = {
    "body": ["<", ">", "&", "</div>", "</td></tr></table>", "<b>", "</b>", "<i", "<!", "<?php hacked() ?>", "</p",
             "<br/>", "<plaintext>", "<xmp>", "</textarea>", "</title>", "<noscript>", "<template>", "<table>",
             "<select>", "[b]", "[/b]", "[br/]", "[html]", "[text]", "[xml]", "[java]", "[pdf]"],
    "double-quoted attribute": ['"', '">', '"/>', '" x="', '"><', '"\n'],
    "single-quoted attribute": ["'", "'>", "'/>", "' x='", "'><", "'\n"],
    "unquoted attribute": [" ", "\t", "/", "=", "`", " x=y ", "\n", "\r", "\r\n"],
    "script": ["</script>", "</script ", "</ScRiPt\t>", "<!--<script>", "');", '");', "`;", "\\", "\\'", '\\"', "\\\\'",
               '\\\\"', "\\x27", "\\u0022", "\u2028", "\u2029", "//", "/*", "*/", "*/hacked()/*", "'-hacked()-'",
               '"-hacked()-"', "${", "}", "`", "\\", "\\u{27}", "\\0"],
    "link": ["javascript:hacked()", "JaVaScRiPt:hacked()", "java\tscript:hacked()",
             "data:text/html,<script>hacked()</script>",
             "vbscript:hacked()", "//evil.example/", "http://a.example/?x=1&y=<2>&copy=3", "%22%3E%3Cscript%3E", "%00",
             "mailto:a@b.example?subject=x&body=y", "\\\\evil.example\\x", "?a=b;c=d#e"],
    "style": ["expression(hacked())", "url(javascript:hacked())", "</style>", "}*{", "@import'//evil.example'", "\\3c",
              "behavior:url(x)", "/**/", "-moz-binding:url(x)", "content:'\\A'"],
    "comment": ["<!--", "-->", "--!>", "<!-->", "<!--->", "--", "<!---", "<![CDATA[", "]]>", "<!DOCTYPE x>", "<?xml?>",
                "<!ENTITY x 'y'>"],
    "entity": ["&lt;", "&LT;", "&lt", "&#60;", "&#x3c;", "&#x3C", "&#0;", "&#128;", "&#xD800;", "&#x110000;", "&quot;",
               "&apos;", "&#39;", "&amp;", "&amp;lt;", "&nbsp;", "&NBSP;", "&copy", "&notin;", "&unknown;", "&;", "&#;",
               "&#x;", "&x;", "&Tab;javascript&colon;", "&lbrace;", "&#000000000060;",
               "&lt;script&gt;hacked()&lt;/script&gt;"],
    "SQL": ["''", "'--", "' OR 1=1 --", "'; DROP TABLE t; --", "\\'", "'' \\''", "E'", "U&'", "$$", "$x$", "/*'*/",
            ":x", ":'x'", "\\!", "\\.", "%s", "?", "$1", "''''", "\\\\", "\\gexec", ";", "' || 'x"],
    "other alphabets of ASCII": ["+ADw-script+AD4-hacked()+ADw-/script+AD4-", "+ACI-", "\uff1cscript\uff1e", "\u02ba",
                                 "\u02b9", "\uff02", "\uff07", "\u2039", "\u203a", "\ufe64", "\u00bc", "\u00be",
                                 "\u2018", "\u2033", "\u00c0\u00bc", "\u00e0\u0080\u00bc", "\u0130", "\u0131", "\u017f",
                                 "\u212a", "%u003c", "~{", "\x1b(J", "\x1b$B"],
    "template of a pattern": ["@", "@H", "@J", "@T(1)", "#", "0", "?", "[", "]", ";", "[red]", "[$:x]",
                              "[duration(sec)]", "[TZ:EST]", "[opt:ss]", "yyyy", "dd", "hh:mm", "%", "$", ",", "."],
}

# Characters that a reader treats in a way of its own: controls, blanks, what is not seen, what changes direction, what
# joins, what is no character, what stands outside the first plane.
SPECIALS = (
    [chr(n) for n in range(1, 0x20)]
    + [chr(n) for n in range(0x7F, 0xA1)]
    + list("\"#$%&'()*+,-./:;<=>?@[\\]^`{|}~")
    + list("\u00a0\u00ad\u034f\u061c\u115f\u1680\u180e\u2000\u2003\u2009\u200b\u200c\u200d\u200e\u200f\u2028\u2029"
           "\u202a\u202b\u202c\u202d\u202e\u202f\u205f\u2060\u2061\u2066\u2067\u2068\u2069\u206a\u3000\u3164\ufe00"
           "\ufe0f\ufeff\uffa0\ufff9\ufffa\ufffb\ufffc\ufffd")
    + list("\u0300\u0301\u0338\u0488\u0591\u064b\u0e33\u0f71\u1ab0\u20d2\u20e3\u302a\u3099\ufb1e\ufe20")
    + list("\ud7ff\ue000\uf8ff\ufdd0\ufdef\ufffe\uffff")
    + list("\U00010000\U0001d11e\U0001f468\U0001f3fd\U0001fffe\U0001ffff\U000e0001\U000e0041\U000e0100\U000f0000"
           "\U0010fffd\U0010fffe\U0010ffff")
)

# What hides a payload from a filter that looks for it, and from nobody else.
DISGUISES = {
    "upper case": str.upper,
    "alternating case": lambda text: "".join(c.upper() if i % 2 else c.lower() for i, c in enumerate(text)),
    "tab in the word": lambda text: text.replace("script", "scr\tipt").replace("hacked", "hac\tked"),
    "nothing to be seen in the word": lambda text: text.replace("s", "s\u200b").replace("<", "<\u2060"),
    "control behind the bracket": lambda text: text.replace("<", "<\x01"),
    "slashes for blanks": lambda text: text.replace(" ", "/"),
    "form feeds for blanks": lambda text: text.replace(" ", "\f"),
    "decimal references": lambda text: "".join(f"&#{ord(c)};" for c in text),
    "hexadecimal references": lambda text: "".join(f"&#x{ord(c):x}" for c in text),
    "entities": html.escape,
    "percent": lambda text: "".join(f"%{ord(c):02X}" for c in text),
    "script escapes": lambda text: "".join(f"\\u{ord(c):04x}" for c in text),
    "short script escapes": lambda text: "".join(f"\\x{ord(c):02x}" for c in text),
    "full width": lambda text: "".join(chr(ord(c) + 0xFEE0) if "!" <= c <= "~" else c for c in text),
    "bytes of an overlong form": lambda text: re.sub("[<>'\"]", lambda c: "\u00c0" + chr(0x80 + ord(c[0]) % 64), text),
    "doubled": lambda text: re.sub("(<|hacked)", r"\1\1", text),
    "right to left": lambda text: "\u202e" + text[::-1],
    "combining": lambda text: "".join(c + "\u0338" for c in text),
    "cut in half": lambda text: text[: len(text) // 2],
    "without the end": lambda text: text[:-1],
}

CHAINS = 1500
SEED = 20160401


def pieces():
    return [piece for place in PIECES.values() for piece in place]


def alone():
    return pieces() + PAYLOADS


def ways_out():
    """Every way out of a place, every payload behind it: "> <script>..., and with text before it."""
    return [f"{start}{way}{payload}" for way in pieces() for payload in PAYLOADS[:6] for start in ("", "x")]


def disguised():
    return [disguise(text) for disguise in DISGUISES.values() for text in PAYLOADS + ['">', "');", "-->", "</div>"]]


def at_every_place():
    return [text for c in SPECIALS for text in (c, c + "a", "a" + c, "a" + c + "b", c + c, c + "<script>", "\\" + c)]


def chains():
    source = random.Random(SEED)
    parts = pieces() + PAYLOADS + SPECIALS + ["a", "Z", " ", "x y", "0", "\u00e4", "\u4e2d", "\u05d0"]
    return ["".join(source.choice(parts) for _ in range(source.randint(2, 8))) for _ in range(CHAINS)]


def long_texts():
    """As long as the buffers that formatters start with, give or take one, the hostile character where they end."""
    lengths = [length + off for length in (63, 64, 127, 255, 256, 511, 512, 1023) for off in (-2, -1, 0, 1)]
    return ["x" * length + c + "y" for length in lengths for c in ("<", "&", "'", '"', "\\", "\U0001f468", "\x01")]


RULES = [alone, ways_out, disguised, at_every_place, chains, long_texts]


def build():
    """The corpus, each text once, in the order of the rules. No text is empty, and none has U+0000 or a surrogate."""
    return list(dict.fromkeys(text for rule in RULES for text in rule() if text))


def all_characters(length=4096):
    """Every character of Unicode but U+0000, in texts of a given length."""
    numbers = [n for n in range(1, 0x110000) if not 0xD800 <= n <= 0xDFFF]
    return ["".join(map(chr, numbers[n : n + length])) for n in range(0, len(numbers), length)]


def main():
    for rule in RULES:
        print(f"{rule.__name__:20} {len(rule()):6}")
    texts = build()
    print(f"{'different texts':20} {len(texts):6}")
    print(f"{'characters':20} {sum(map(len, texts)):6}")


if __name__ == "__main__":
    main()
