#pragma once

#include <string_view>

#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "xml/xmlelement.h"

namespace tov {

// What the readers and writers of definitions do with elements beyond plain attributes.
class WEBFORMAT_EXPORT DOMHelper
{
public:
    // The local name of the element's `xsi:type`: xsi:type=" tov:number " -> "number", "number" -> "number". No such
    // attribute, or a prefix that is not declared there (a parsed document has none): the default.
    static String getXsiType(const XmlElement& tElement, std::wstring_view sDefault);

    // Sets `xsi:type` to a name of a namespace, with the prefix that the namespace has there; one without a prefix gets
    // its usual one (tov, tovx) or a free one, declared on the element: ("urn:tov:schemas:report:v1", "text") ->
    // "tov:text".
    static void setXsiType(XmlElement& tElement, std::wstring_view sNamespace, std::wstring_view sName);

    // The first child of that name, made at the end of the contents where there is none.
    static XmlElement& forceElement(XmlElement& tParent, const XmlQualifiedName& tName);
};

}  // namespace tov
