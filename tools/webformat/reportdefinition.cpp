#include "reportdefinition.h"

#include <optional>

#include "definitioncheck.h"
#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"
#include "xml/lexical.h"
#include "xml/schemas.h"
#include "xml/xmldocument.h"
#include "zonesettings.h"

namespace tov {

namespace {

// Reads the elements of a report file, with the file's name for messages.
class Reader
{
public:
    explicit Reader(const std::string& sFile) : m_sFile(sFile) {}

    ReportDefinition readReport(const XmlElement& tRoot) const;

private:
    ReportColumn readColumn(const XmlElement& tElement, const Locale& tLocale) const;
    void readDataFormat(const XmlElement& tElement, const Locale& tLocale, ReportColumn& tColumn) const;
    Locale readLocale(const XmlElement& tRoot) const;
    ZoneSettings readZones(const XmlElement& tRoot) const;
    SQLDataType readType(const XmlElement& tElement) const;
    const XmlAttribute& require(const XmlElement& tElement, const wchar_t* pName) const;
    void checkNoText(const XmlElement& tElement) const;
    void checkName(const XmlElement& tElement, const XmlQualifiedName& tName, const char* pExpected) const;

    const std::string& m_sFile;
};

std::vector<String> valueTypeNames()
{
    std::vector<String> vNames;
    for (int nType = SQLDataType::kBit; nType < SQLDataType::kDataTypeEnd_; ++nType)
        vNames.push_back(*fromUtf8(SQLDataType(static_cast<SQLDataType::DataType>(nType)).name()));
    return vNames;
}

// The name in the simplest of expressions: `currency`, or `"odd ""name"""`.
String columnOfExpression(std::wstring_view sExpression)
{
    const std::wstring_view sName = lexical::trim(sExpression);
    if (sName.size() < 2 || sName.front() != L'"' || sName.back() != L'"')
        return String(sName);
    String sResult;
    for (std::size_t nAt = 1; nAt + 1 < sName.size(); ++nAt)
    {
        sResult += sName[nAt];
        if (sName[nAt] == L'"' && sName[nAt + 1] == L'"' && nAt + 2 < sName.size())
            ++nAt;
    }
    return sResult;
}

ReportDefinition Reader::readReport(const XmlElement& tRoot) const
{
    checkName(tRoot, schemas::Report::kqnReport, "the element \"tov:report\" of the report namespace");
    checkAttributeNames(tRoot, {L"locale", L"language", L"title", L"dataOffset", L"displayTimeZone"}, m_sFile);
    checkNoText(tRoot);
    ReportDefinition tReport;
    tReport.tLocale = readLocale(tRoot);
    if (const String* pLanguage = tRoot.getAttribute(L"language"); pLanguage && !pLanguage->empty())
        tReport.tLanguage = KTWUILanguage(*pLanguage);
    tReport.sTitle = tRoot.getAttributeOr(L"title");
    tReport.tResolver = resolverOf(readZones(tRoot), tReport.tLanguage);
    for (const XmlElement& tChild : tRoot.children())
        tReport.vColumns.push_back(readColumn(tChild, tReport.tLocale));
    if (tReport.vColumns.empty())
        throw InputError(placeIn(m_sFile, tRoot.place()), "found no columns, expected elements \"tov:column\"");
    return tReport;
}

Locale Reader::readLocale(const XmlElement& tRoot) const
{
    const XmlAttribute* pTag = tRoot.findAttribute({}, L"locale");
    if (!pTag)
        return Locale();
    const std::optional<Locale> tLocale = LocaleTagLookup::lookup(pTag->sValue);
    if (!tLocale)
        failAttribute(*pTag, m_sFile, "a known locale such as \"en-US\"");
    return *tLocale;
}

ZoneSettings Reader::readZones(const XmlElement& tRoot) const
{
    ZoneSettings tSettings;
    if (const XmlAttribute* pOffset = tRoot.findAttribute({}, L"dataOffset"))
    {
        tSettings.nDataOffset = dataOffsetFromText(pOffset->sValue);
        if (!tSettings.nDataOffset)
            failAttribute(*pOffset, m_sFile, kpExpectedDataOffset);
    }
    if (const XmlAttribute* pZone = tRoot.findAttribute({}, L"displayTimeZone"))
    {
        tSettings.sDisplayTimeZone = pZone->sValue;
        if (!isZoneOrDefault(pZone->sValue))
            failAttribute(*pZone, m_sFile, kpExpectedZone);
    }
    return tSettings;
}

ReportColumn Reader::readColumn(const XmlElement& tElement, const Locale& tLocale) const
{
    checkName(tElement, schemas::Report::kqnColumn, "the element \"tov:column\"");
    checkAttributeNames(tElement, {L"name", L"heading", L"type"}, m_sFile);
    checkNoText(tElement);
    ReportColumn tColumn;
    tColumn.tPlace = placeIn(m_sFile, tElement.place());
    tColumn.sName = require(tElement, L"name").sValue;
    tColumn.sHeading = tElement.getAttributeOr(L"heading", tColumn.sName);
    tColumn.tType = columnType(readType(tElement));
    const auto tFormats = tElement.children();
    if (tFormats.size() > 1)
        throw InputError(placeIn(m_sFile, tFormats[1].place()), "found a second element, expected one data format");
    if (!tFormats.empty())
        readDataFormat(tFormats[0], tLocale, tColumn);
    return tColumn;
}

void Reader::readDataFormat(const XmlElement& tElement, const Locale& tLocale, ReportColumn& tColumn) const
{
    checkName(tElement, schemas::Report::kqnDataFormat, "the element \"tov:dataFormat\"");
    checkDataFormat(tElement, tLocale, m_sFile);
    tColumn.tFormatPlace = placeIn(m_sFile, tElement.place());
    tColumn.hDefinition = WebValueFormatDefinition::DynamicReadXML(tElement);
    if (tColumn.hDefinition.isNull())
        return;
    String sFormula;
    tColumn.hDefinition->populateCurrencyTagColumnFormulaIfApplies(sFormula);
    if (!sFormula.empty())
        tColumn.sTagColumn = columnOfExpression(sFormula);
}

SQLDataType Reader::readType(const XmlElement& tElement) const
{
    const XmlAttribute& tName = require(tElement, L"type");
    const std::optional<SQLDataType> tType = SQLDataType::fromName(toUtf8(tName.sValue));
    if (!tType || tType->storageType() == SQLDataType::kStorageInvalid)
        failAttribute(tName, m_sFile, alternatives(valueTypeNames()));
    return *tType;
}

const XmlAttribute& Reader::require(const XmlElement& tElement, const wchar_t* pName) const
{
    const XmlAttribute* pAttribute = tElement.findAttribute({}, pName);
    if (!pAttribute || pAttribute->sValue.empty())
        throw InputError(placeIn(m_sFile, tElement.place()),
                         "found no attribute " + quotedForMessage(toUtf8(pName)) + ", expected a column to have one");
    return *pAttribute;
}

void Reader::checkName(const XmlElement& tElement, const XmlQualifiedName& tName, const char* pExpected) const
{
    if (!tElement.hasName(tName))
        throw InputError(
            placeIn(m_sFile, tElement.place()),
            "found the element " + quotedForMessage(toUtf8(tElement.localName())) + ", expected " + pExpected);
}

void Reader::checkNoText(const XmlElement& tElement) const
{
    bool bText = !lexical::trim(tElement.text()).empty();
    for (const XmlElement& tChild : tElement.children())
        bText = bText || !lexical::trim(tChild.tail()).empty();
    if (bText)
        throw InputError(
            placeIn(m_sFile, tElement.place()),
            "found text in the element " + quotedForMessage(toUtf8(tElement.localName())) + ", expected elements only");
}

[[noreturn]] void failAt(const std::string& sFile, const XmlError& tError)
{
    throw InputError(placeIn(sFile, {tError.nLine, tError.nColumn}), toUtf8(tError.sMessage));
}

}  // namespace

ReportDefinition readReportDefinition(const std::string& sPath)
{
    XmlError tError;
    const std::optional<XmlDocument> tDocument = XmlDocument::parseFile(sPath, &tError);
    if (!tDocument)
        failAt(sPath, tError);
    return Reader(sPath).readReport(tDocument->root());
}

WebValueFormatDefinitionHandle readStrictDefinition(const std::string& sXml, const Locale& tLocale,
                                                    const std::string& sName)
{
    XmlError tError;
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(sXml, &tError, XmlParseOptions::reportFragment());
    if (!tDocument)
        failAt(sName, tError);
    if (!tDocument->root().hasName(schemas::Report::kqnDataFormat))
        throw InputError(placeIn(sName, tDocument->root().place()),
                         "found the element " + quotedForMessage(toUtf8(tDocument->root().localName())) +
                             ", expected \"tov:dataFormat\"");
    checkDataFormat(tDocument->root(), tLocale, sName);
    return WebValueFormatDefinition::DynamicReadXML(tDocument->root());
}

SQLDataType columnType(SQLDataType tType)
{
    const bool b64Bit =
        tType.storageType() == SQLDataType::kStorageInt64 || tType.storageType() == SQLDataType::kStorageUInt64;
    return b64Bit ? SQLDataType(tType.dataType(), SQLDataType::kStorageCorvidNumber) : tType;
}

}  // namespace tov
