"""Reads XML with libxml2, the C library, through its reading interface."""

import ctypes
import ctypes.util
import sys
from dataclasses import dataclass

from tools import INSTALL

NO_NETWORK, HUGE, NO_ERRORS, NO_WARNINGS = 1 << 11, 1 << 19, 1 << 5, 1 << 6
ELEMENT, TEXT, CDATA, BLANK, SIGNIFICANT_BLANK, END_ELEMENT = 1, 3, 4, 13, 14, 15
# What a document of the project has; comments, instructions and the like come from a text that broke out.
TEXTS = (TEXT, CDATA, BLANK, SIGNIFICANT_BLANK)


class NotWellFormed(Exception):
    pass


@dataclass
class Element:
    """An element that stands directly in the root: its attributes, all its text, the elements in it."""

    name: str
    attributes: list
    text: str = ""
    inner: tuple = ()


def load():
    name = ctypes.util.find_library("xml2")
    if not name:
        sys.exit(f"libxml2 is not there: {INSTALL}")
    library = ctypes.CDLL(name)
    library.xmlReaderForMemory.restype = ctypes.c_void_p
    library.xmlReaderForMemory.argtypes = [ctypes.c_char_p, ctypes.c_int, ctypes.c_char_p, ctypes.c_char_p,
                                           ctypes.c_int]
    for function in ("xmlTextReaderConstName", "xmlTextReaderConstValue"):
        getattr(library, function).restype = ctypes.c_char_p
        getattr(library, function).argtypes = [ctypes.c_void_p]
    for function in ("xmlTextReaderRead", "xmlTextReaderNodeType", "xmlTextReaderDepth", "xmlFreeTextReader",
                     "xmlTextReaderMoveToFirstAttribute", "xmlTextReaderMoveToNextAttribute",
                     "xmlTextReaderMoveToElement"):
        getattr(library, function).argtypes = [ctypes.c_void_p]
    return library


LIBRARY = load()


def read(document):
    """The elements in the root of a document. Raises NotWellFormed."""
    data = document.encode()
    options = NO_NETWORK | HUGE | NO_ERRORS | NO_WARNINGS
    reader = LIBRARY.xmlReaderForMemory(data, len(data), b"cases.xml", b"UTF-8", options)
    if not reader:
        raise NotWellFormed("libxml2 made no reader")
    try:
        return read_elements(reader)
    finally:
        LIBRARY.xmlFreeTextReader(reader)


def read_elements(reader):
    elements, status = [], LIBRARY.xmlTextReaderRead(reader)
    while status == 1:
        kind, depth = LIBRARY.xmlTextReaderNodeType(reader), LIBRARY.xmlTextReaderDepth(reader)
        if kind == ELEMENT and depth == 1:
            elements.append(Element(name_of(reader), attributes_of(reader)))
        elif kind == ELEMENT and depth > 1:
            elements[-1].inner += ((name_of(reader), *attributes_of(reader)),)
        elif kind in TEXTS and depth > 1:
            elements[-1].text += LIBRARY.xmlTextReaderConstValue(reader).decode()
        elif kind not in (ELEMENT, END_ELEMENT, *TEXTS):
            raise NotWellFormed(f"a node of type {kind}")
        status = LIBRARY.xmlTextReaderRead(reader)
    if status != 0:
        raise NotWellFormed(f"not well-formed behind {len(elements)} elements")
    return elements


def name_of(reader):
    return LIBRARY.xmlTextReaderConstName(reader).decode()


def attributes_of(reader):
    """(name, value) of every attribute but declarations of namespaces, in order."""
    attributes = []
    more = LIBRARY.xmlTextReaderMoveToFirstAttribute(reader)
    while more == 1:
        if not name_of(reader).startswith("xmlns"):
            attributes.append((name_of(reader), LIBRARY.xmlTextReaderConstValue(reader).decode()))
        more = LIBRARY.xmlTextReaderMoveToNextAttribute(reader)
    LIBRARY.xmlTextReaderMoveToElement(reader)
    return attributes
