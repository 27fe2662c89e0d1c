#pragma once

#include <string_view>

#include "xml/xmlelement.h"

namespace tov {

// The parts of an `xsi:type` value: " tov:number " -> "tov", "number". Views into the value.
struct XsiTypeName
{
    std::wstring_view sPrefix;
    std::wstring_view sLocalName;
    bool bPrefixed;  // there is a colon
};

XsiTypeName splitXsiType(std::wstring_view sValue);

// Whether the name has no prefix, or one that is declared where the element stands.
bool isXsiTypeDeclared(const XmlElement& tElement, const XsiTypeName& tName);

}  // namespace tov
