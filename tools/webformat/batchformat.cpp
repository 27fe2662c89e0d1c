#include <algorithm>
#include <array>

#include "batchrequest.h"
#include "inputerror.h"
#include "jsonvalues.h"
#include "names.h"
#include "threadcollector.h"
#include "webbedrock/utf8.h"
#include "webformat/drillvalueformatters.h"
#include "webformat/valueformatter.h"

namespace tov {

namespace {

// What the factories need of a request.
struct FormatRequest
{
    const BatchRequest& tRequest;
    SQLDataType tType;
    Locale tLocale;
    KTWUILanguage tLanguage;
    ValueFormatterTypes::OutputType eOutput;
};

WebValueFormatDefinition::FormatParameters parametersOf(const BatchRequest& tRequest)
{
    WebValueFormatDefinition::FormatParameters tParameters;
    tParameters.nMinDigit = tRequest.unsignedNumber("minDigits", 0);
    tParameters.nMaxDigit = tRequest.unsignedNumber("maxDigits", 0);
    tParameters.eMinMaxDigitOverride = tRequest.flag("zeroOverride", false)
                                           ? WebValueFormatDefinition::FormatParameters::kZeroOverride
                                           : WebValueFormatDefinition::FormatParameters::kNoZeroOverride;
    tParameters.sScaleFactor = tRequest.wideText("scaleFactor", {});
    return tParameters;
}

WebValueFormatterHandle makeDisplay(const FormatRequest& t)
{
    return WebValueFormatter::getFormatter(t.tType, t.tRequest.definition("definition"), t.tLocale, TimeZoneResolver(),
                                           t.eOutput, parametersOf(t.tRequest), t.tLanguage, String());
}

WebValueFormatterHandle makeDefault(const FormatRequest& t)
{
    return WebValueFormatter::GetDefaultFormatter(t.tType, t.tLocale, t.eOutput, parametersOf(t.tRequest), t.tLanguage);
}

WebValueFormatterHandle makeInput(const FormatRequest& t)
{
    const auto tParameters = parametersOf(t.tRequest);
    return WebValueFormatter::GetInputFormatter(t.tType, t.tLocale, t.eOutput, tParameters.nMinDigit,
                                                tParameters.nMaxDigit, t.tLanguage);
}

WebValueFormatterHandle makeCustom(const FormatRequest& t)
{
    return WebValueFormatter::GetCustomFormatter(t.tType, t.tRequest.requiredWideText("pattern"), t.tLocale, t.eOutput,
                                                 t.tLanguage);
}

WebValueFormatterHandle makeCsv(const FormatRequest& t)
{
    return WebValueFormatter::GetCSVFormatter(t.tType, t.tLocale, t.eOutput);
}

WebValueFormatterHandle makeLiteral(const FormatRequest& t)
{
    return WebValueFormatter::GetTypedLiteralFormatter(t.tType, t.eOutput);
}

WebValueFormatterHandle makeXml(const FormatRequest& t)
{
    return WebValueFormatter::getXmlValueFormatter(t.tType, t.eOutput);
}

WebValueFormatterHandle makeDrill(const FormatRequest& t)
{
    return WebDrillValueFormatter::GetFormatter(t.tType, t.eOutput);
}

struct Factory
{
    std::string_view sName;
    WebValueFormatterHandle (*pMake)(const FormatRequest&);  // null: not available
};

constexpr std::array<Factory, 12> kaFactories = {{{"format", &makeDisplay},
                                                  {"default", &makeDefault},
                                                  {"input", &makeInput},
                                                  {"custom", &makeCustom},
                                                  {"csv", &makeCsv},
                                                  {"literal", &makeLiteral},
                                                  {"xml", &makeXml},
                                                  {"drill", &makeDrill},
                                                  {"sqlLiteral", nullptr},
                                                  {"truncate", nullptr},
                                                  {"plain", nullptr},
                                                  {"duration", nullptr}}};

const Factory& factoryOf(const BatchRequest& tRequest)
{
    const std::string sName = tRequest.text("factory", "format");
    const auto tFound = std::find_if(kaFactories.begin(), kaFactories.end(),
                                     [&](const Factory& tFactory) { return tFactory.sName == sName; });
    if (tFound == kaFactories.end())
        throw InputError("\"factory\": found " + quotedForMessage(sName) +
                         ", expected one of format, default, input, custom, csv, literal, xml, drill");
    if (!tFound->pMake)
        throw InputError("the factory " + quotedForMessage(sName) + " is not available");
    return *tFound;
}

void refuseUnavailableKeys(const BatchRequest& tRequest)
{
    for (const char* pKey : {"compound", "dataOffset", "displayTimeZone", "session", "displayVariable"})
        if (tRequest.has(pKey))
            throw InputError("the key \"" + std::string(pKey) + "\" is not available");
}

// The extras that a request may ask for.
enum Extra : unsigned
{
    kExcelValue = 1,
    kValidExcelPattern = 2,
    kCustomFormat = 4,
    kExcelMask = 8
};

unsigned extrasOf(const BatchRequest& tRequest)
{
    constexpr std::array<std::pair<std::string_view, Extra>, 4> aNames = {{{"excelValue", kExcelValue},
                                                                           {"validExcelPattern", kValidExcelPattern},
                                                                           {"customFormat", kCustomFormat},
                                                                           {"excelMask", kExcelMask}}};
    const JsonValue* pWant = tRequest.find("want");
    if (!pWant || pWant->isNull())
        return 0;
    if (pWant->kind() != JsonValue::kArray)
        throw InputError("\"want\": found " + std::string(pWant->kindName()) + ", expected an array");
    unsigned nExtras = 0;
    for (const JsonValue& tName : pWant->items())
    {
        const auto tFound = std::find_if(
            aNames.begin(), aNames.end(),
            [&](const auto& tEntry) { return tName.kind() == JsonValue::kString && tEntry.first == tName.text(); });
        if (tFound == aNames.end())
            throw InputError("\"want\": found " + quotedForMessage(tName.text()) +
                             ", expected excelValue, validExcelPattern, customFormat or excelMask");
        nExtras |= tFound->second;
    }
    return nExtras;
}

// The values of a request, one of "value" or all of "values".
std::vector<TypedValue> valuesOf(const BatchRequest& tRequest, const SQLDataType& tType)
{
    std::vector<TypedValue> vValues;
    const JsonValue* pOne = tRequest.find("value");
    const JsonValue* pAll = tRequest.find("values");
    if ((pOne != nullptr) == (pAll != nullptr))
        throw InputError("expected one of \"value\" and \"values\"");
    if (pOne)
    {
        vValues.push_back(valueFromJson(tType, *pOne));
        return vValues;
    }
    if (pAll->kind() != JsonValue::kArray)
        throw InputError("\"values\": found " + std::string(pAll->kindName()) + ", expected an array");
    vValues.reserve(pAll->items().size());
    for (const JsonValue& tValue : pAll->items())
        vValues.push_back(valueFromJson(tType, tValue));
    return vValues;
}

void checkStorage(const WebValueFormatter& tFormatter, const std::vector<TypedValue>& vValues)
{
    for (const TypedValue& tValue : vValues)
        if (!tValue.isNull() && tValue.storage() != tFormatter.valueStorageType())
            throw InputError("found a value of the storage " + quotedForMessage(storageName(tValue.storage())) +
                             ", expected " + quotedForMessage(storageName(tFormatter.valueStorageType())) +
                             ", which the formatter takes");
}

void addTexts(const BatchRequest& tRequest, const char* pOne, const char* pAll, const std::vector<std::string>& vTexts,
              JsonObject& tResponse)
{
    if (tRequest.has("value"))
        tResponse.add(pOne, vTexts.front());
    else
        tResponse.addRaw(pAll, jsonArray(vTexts));
}

void addMask(const WebValueFormatter& tFormatter, JsonObject& tResponse)
{
    String sMask = L"General";
    const bool bReplaced = tFormatter.checkAndReplaceFormatMaskForExcel(sMask);
    tResponse.addRaw("excelMask", JsonObject().add("replaced", bReplaced).add("mask", sMask).text());
}

void addExtras(const BatchRequest& tRequest, unsigned nExtras, const WebValueFormatter& tFormatter,
               const std::vector<TypedValue>& vValues, JsonObject& tResponse)
{
    if (nExtras & kExcelValue)
    {
        std::vector<std::string> vTexts;
        for (const TypedValue& tValue : vValues)
        {
            StringBufferTemplate<wchar_t, 255> tBuffer;
            tFormatter.formatExcelValueToBuffer(tBuffer, tValue.pointer());
            vTexts.push_back(toUtf8(tBuffer.view()));
        }
        addTexts(tRequest, "excelValue", "excelValue", vTexts, tResponse);
    }
    if (nExtras & kValidExcelPattern)
        tResponse.add("validExcelPattern", tFormatter.IsValidExcelPattern());
    if (nExtras & kCustomFormat)
        tResponse.add("customFormat", tFormatter.GetCustomFormatString());
    if (nExtras & kExcelMask)
        addMask(tFormatter, tResponse);
}

}  // namespace

void answerFormat(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const Factory& tFactory = factoryOf(tRequest);
    refuseUnavailableKeys(tRequest);
    const unsigned nExtras = extrasOf(tRequest);
    const FormatRequest t{tRequest, typeFromNames(tRequest.requiredText("type"), tRequest.text("storage", {})),
                          tRequest.locale(), tRequest.language(), tRequest.output()};
    const std::vector<TypedValue> vValues = valuesOf(tRequest, t.tType);
    const WebValueFormatterHandle hFormatter = tFactory.pMake(t);
    if (hFormatter.isNull())
    {
        tResponse.addNull("formatter");
        return;
    }
    checkStorage(*hFormatter, vValues);
    std::vector<std::string> vTexts;
    vTexts.reserve(vValues.size());
    for (const TypedValue& tValue : vValues)
    {
        StringBufferTemplate<wchar_t, 255> tBuffer;
        hFormatter->formatToBuffer(tBuffer, tValue.pointer());
        vTexts.push_back(toUtf8(tBuffer.view()));
    }
    addTexts(tRequest, "text", "texts", vTexts, tResponse);
    addExtras(tRequest, nExtras, *hFormatter, vValues, tResponse);
}

}  // namespace tov
