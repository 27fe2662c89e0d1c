#include <algorithm>
#include <array>

#include "batchrequest.h"
#include "batchtext.h"
#include "batchzones.h"
#include "inputerror.h"
#include "jsonvalues.h"
#include "names.h"
#include "threadcollector.h"
#include "webbedrock/utf8.h"
#include "webformat/compoundformatter.h"
#include "webformat/drillvalueformatters.h"
#include "webformat/durationformatters.h"
#include "webformat/textformatter.h"
#include "webformat/valueformatter.h"

namespace tov {

namespace {

constexpr char kSource[] = "tools/batchformat";

// What the factories need of a request.
struct FormatRequest
{
    const BatchRequest& tRequest;
    const BatchZones& tZones;
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
    return WebValueFormatter::getFormatter(t.tType, t.tRequest.definition("definition"), t.tLocale, t.tZones.tResolver,
                                           t.eOutput, parametersOf(t.tRequest), t.tLanguage, t.tZones.sDisplayTimeZone);
}

WebValueFormatterHandle makeDefault(const FormatRequest& t)
{
    if (t.tZones.bGiven)
        return WebValueFormatter::GetDefaultFormatterTZ(t.tType, t.tLocale, t.tLanguage, t.tZones.tResolver,
                                                        t.tZones.sDisplayTimeZone, t.eOutput);
    return WebValueFormatter::GetDefaultFormatter(t.tType, t.tLocale, t.eOutput, parametersOf(t.tRequest), t.tLanguage);
}

WebValueFormatterHandle makeInput(const FormatRequest& t)
{
    if (t.tZones.bGiven)
        return WebValueFormatter::GetInputFormatterTZ(t.tType, t.tLocale, t.tZones.tResolver, t.tZones.sDisplayTimeZone,
                                                      t.eOutput, t.tLanguage);
    const auto tParameters = parametersOf(t.tRequest);
    return WebValueFormatter::GetInputFormatter(t.tType, t.tLocale, t.eOutput, tParameters.nMinDigit,
                                                tParameters.nMaxDigit, t.tLanguage);
}

WebValueFormatterHandle makeCustom(const FormatRequest& t)
{
    const String sPattern = t.tRequest.requiredWideText("pattern");
    if (t.tZones.bGiven)
        return WebValueFormatter::GetCustomFormatterTZ(t.tType, sPattern, t.tLocale, t.tZones.tResolver, t.eOutput,
                                                       t.tLanguage, t.tZones.sDisplayTimeZone);
    return WebValueFormatter::GetCustomFormatter(t.tType, sPattern, t.tLocale, t.eOutput, t.tLanguage);
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

WebValueFormatterHandle makeSqlLiteral(const FormatRequest& t)
{
    return WEBFORMAT_NEW(kSource) TextSQLLiteralFormatter(t.eOutput);
}

WebValueFormatterHandle makeTruncate(const FormatRequest& t)
{
    return newTruncatingFormatter(t.tRequest.requiredUnsignedNumber("length"), t.eOutput);
}

WebValueFormatterHandle makePlain(const FormatRequest& t)
{
    return newPlainFormatter(t.tType);
}

template <class T>
WebValueFormatterHandle makeDurationOf(const FormatRequest& t)
{
    if (t.tRequest.isGiven("pattern"))
        return DurationFormatter<T>::ParseCustomFormat(t.tRequest.requiredWideText("pattern"), t.tLocale, t.eOutput,
                                                       t.tLanguage);
    return DurationFormatter<T>::CreateFormatter(t.tRequest.definition("definition"), t.tLocale, t.eOutput,
                                                 t.tLanguage);
}

WebValueFormatterHandle makeDuration(const FormatRequest& t)
{
    switch (t.tType.storageType())
    {
    case SQLDataType::kStorageDouble: return makeDurationOf<double>(t);
    case SQLDataType::kStorageInt32: return makeDurationOf<int>(t);
    case SQLDataType::kStorageUInt32: return makeDurationOf<unsigned>(t);
    case SQLDataType::kStorageInt64: return makeDurationOf<long>(t);
    case SQLDataType::kStorageUInt64: return makeDurationOf<unsigned long>(t);
    case SQLDataType::kStorageCorvidNumber: return makeDurationOf<CorvidNumber>(t);
    default:
        throw InputError("found the storage " + quotedForMessage(storageName(t.tType.storageType())) +
                         ", expected that of a number: durations are numbers of seconds");
    }
}

struct Factory
{
    std::string_view sName;
    WebValueFormatterHandle (*pMake)(const FormatRequest&);
    const char* pDefaultType = nullptr;  // null: the request must name the type
};

constexpr std::array<Factory, 12> kaFactories = {{{"format", &makeDisplay},
                                                  {"default", &makeDefault},
                                                  {"input", &makeInput},
                                                  {"custom", &makeCustom},
                                                  {"csv", &makeCsv},
                                                  {"literal", &makeLiteral},
                                                  {"xml", &makeXml},
                                                  {"drill", &makeDrill},
                                                  {"sqlLiteral", &makeSqlLiteral, "varchar"},
                                                  {"truncate", &makeTruncate, "varchar"},
                                                  {"plain", &makePlain},
                                                  {"duration", &makeDuration, "double"}}};

const Factory& factoryOf(const BatchRequest& tRequest)
{
    const std::string sName = tRequest.text("factory", "format");
    std::string sNames;
    for (const Factory& tFactory : kaFactories)
    {
        if (tFactory.sName == sName)
            return tFactory;
        sNames += (sNames.empty() ? "" : ", ") + std::string(tFactory.sName);
    }
    throw InputError("\"factory\": found " + quotedForMessage(sName) + ", expected one of " + sNames);
}

// Null where the factory has none, with a compound format too.
WebValueFormatterHandle formatterOf(const Factory& tFactory, const FormatRequest& t)
{
    const String sCompound = t.tRequest.wideText("compound", {});
    WebValueFormatterHandle hFormatter = tFactory.pMake(t);
    if (!t.tRequest.isGiven("compound") || hFormatter.isNull())
        return hFormatter;
    return WEBFORMAT_NEW(kSource) CompoundFormatter(sCompound, hFormatter, t.eOutput);
}

SQLDataType typeOf(const BatchRequest& tRequest, const Factory& tFactory)
{
    const std::string sType =
        tFactory.pDefaultType ? tRequest.text("type", tFactory.pDefaultType) : tRequest.requiredText("type");
    return typeFromNames(sType, tRequest.text("storage", {}));
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

// A value of "values"; an error says which one, counted from 1.
TypedValue listedValue(const SQLDataType& tType, const JsonValue& tValue, std::size_t nPlace)
{
    try
    {
        return valueFromJson(tType, tValue);
    }
    catch (const InputError& tError)
    {
        throw InputError("value " + std::to_string(nPlace) + ": " + tError.what());
    }
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
        vValues.push_back(listedValue(tType, tValue, vValues.size() + 1));
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
    const unsigned nExtras = extrasOf(tRequest);
    const BatchZones tZones(tRequest);
    const FormatRequest t{tRequest,         tZones, typeOf(tRequest, tFactory), tRequest.locale(), tRequest.language(),
                          tRequest.output()};
    const std::vector<TypedValue> vValues = valuesOf(tRequest, t.tType);
    const WebValueFormatterHandle hFormatter = formatterOf(tFactory, t);
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
