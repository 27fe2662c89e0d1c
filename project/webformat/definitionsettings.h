#pragma once

#include <string_view>

#include "webformat/valueformatdefinition.h"
#include "xml/xmlelement.h"

// What the classes of definitions share.
namespace tov {

using OwnedDefinitionHandle = Handle<WebValueFormatDefinition, WebValueFormatDefinition>;

// -1, 0 or 1 as the left value sorts before, with or behind the right one.
template <class Value>
int threeWay(const Value& tLeft, const Value& tRight)
{
    return tLeft < tRight ? -1 : tRight < tLeft ? 1 : 0;
}

// Writes an attribute that stands only where it says something. An element that is written over keeps no older value.
inline void setOptionalAttribute(XmlElement& tElement, std::wstring_view sName, std::wstring_view sValue)
{
    if (sValue.empty())
        tElement.removeAttribute(sName);
    else
        tElement.setAttribute(sName, sValue);
}

}  // namespace tov
