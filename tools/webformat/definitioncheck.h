#pragma once

#include <string>

#include "inputerror.h"
#include "intl/locale.h"
#include "webbedrock/string.h"
#include "xml/xmlelement.h"

namespace tov {

// The place of an element or attribute in its file.
InputPlace placeIn(const std::string& sFile, const XmlPlace& tPlace);

// Throws InputError unless every attribute of the element without a namespace is among `vNames`, "found the attribute
// "x", expected one of ...".
void checkAttributeNames(const XmlElement& tElement, const std::vector<String>& vNames, const std::string& sFile);

// Throws InputError for the first thing in a data-format element that the library would replace by a default: an
// unknown or missing `xsi:type`, an attribute that the type does not have, a name or number that is none, missing
// patterns, a currency that nobody knows. Scale names are those that the locale can show, time zones those of the
// system.
void checkDataFormat(const XmlElement& tElement, const Locale& tLocale, const std::string& sFile);

// Throws InputError about an attribute's value: `type: found "x", expected ...`.
[[noreturn]] void failAttribute(const XmlAttribute& tAttribute, const std::string& sFile, const std::string& sExpected);

// `"a", "b" or "c"`, for messages.
std::string alternatives(const std::vector<String>& vNames);

}  // namespace tov
