#pragma once

#include <gtest/gtest.h>

#include <string>
#include <utility>

#include "webbedrock/outputstream.h"
#include "webbedrock/utf8.h"
#include "webformat/valueformatdefinition.h"
#include "xml/schemas.h"
#include "xml/xmldocument.h"

// What the tests of definitions share: definitions as XML text, as attributes and as bytes.
namespace tov {

using Definition = Handle<WebValueFormatDefinition, WebValueFormatDefinition>;

// Reads the definition of <tov:dataFormat followed by `sRest`: definitionOf("xsi:type='tov:text'/>").
inline Definition definitionOf(const std::string& sRest)
{
    XmlError tError;
    const std::optional<XmlDocument> tDocument =
        XmlDocument::parse("<tov:dataFormat " + sRest, &tError, XmlParseOptions::reportFragment());
    EXPECT_TRUE(tDocument.has_value()) << toUtf8(tError.sMessage) << " in " << sRest;
    return tDocument ? WebValueFormatDefinition::DynamicReadXML(tDocument->root()) : Definition();
}

// The definition of a class, where the reader made one of it.
template <class Class>
const Class* as(const Definition& hDefinition)
{
    return dynamic_cast<const Class*>(hDefinition.getPointer());
}

// The attributes that a definition is written with, xsi:type apart: L"minDigits=2 maxDigits=3".
inline String attributesOf(const WebValueFormatDefinitionHandle& hDefinition)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    String sAttributes;
    for (const XmlAttribute& tAttribute :
         WebValueFormatDefinition::setDataFormatElement(tColumn, hDefinition).attributes())
    {
        if (tAttribute.sNamespace.empty())
            sAttributes += (sAttributes.empty() ? L"" : L" ") + tAttribute.sLocalName + L"=" + tAttribute.sValue;
    }
    return sAttributes;
}

// The definition after a way through XML text: written, serialised, parsed and read.
inline Definition throughXml(const WebValueFormatDefinitionHandle& hDefinition)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    WebValueFormatDefinition::setDataFormatElement(tColumn, hDefinition);
    const std::string sXml = XmlDocument::serialize(tColumn);
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(sXml);
    const XmlElement* const pElement =
        tDocument ? tDocument->root().findChild(schemas::Report::kqnDataFormat) : nullptr;
    EXPECT_NE(pElement, nullptr) << sXml;
    return pElement ? WebValueFormatDefinition::DynamicReadXML(*pElement) : Definition();
}

// The binary form in hexadecimal digits, the bytes apart: "04 00".
inline std::string bytesOf(const WebValueFormatDefinitionHandle& hDefinition)
{
    MemoryOutputStream tStream;
    hDefinition->writeToStream(tStream);
    std::string sHex;
    for (const char nByte : tStream.bytes())
    {
        constexpr char aDigits[] = "0123456789ABCDEF";
        const auto nValue = static_cast<unsigned char>(nByte);
        sHex += sHex.empty() ? "" : " ";
        sHex += aDigits[nValue >> 4];
        sHex += aDigits[nValue & 15];
    }
    return sHex;
}

// Settings as text: L"commas=true minDigits=2 scaleFactor='million'".
inline String settingsOf(const WebValueFormatDefinitionHandle& hDefinition)
{
    String sSettings;
    for (const FormatDefinitionSetting& tSetting : hDefinition->settings())
    {
        sSettings += (sSettings.empty() ? L"" : L" ") + tSetting.sName + L"=";
        if (const bool* pFlag = std::get_if<bool>(&tSetting.tValue))
            sSettings += *pFlag ? L"true" : L"false";
        else if (const std::int64_t* pNumber = std::get_if<std::int64_t>(&tSetting.tValue))
            sSettings += std::to_wstring(*pNumber);
        else
            sSettings += L"'" + std::get<String>(tSetting.tValue) + L"'";
    }
    return sSettings;
}

}  // namespace tov
