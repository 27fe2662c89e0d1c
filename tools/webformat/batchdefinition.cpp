#include <variant>

#include "batchrequest.h"
#include "inputerror.h"
#include "names.h"
#include "webbedrock/encoding.h"
#include "webbedrock/utf8.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/valueformatter.h"
#include "xml/schemas.h"
#include "xml/xmldocument.h"

namespace tov {

namespace {

// The data-format element as the library writes it.
std::string xmlOf(const WebValueFormatDefinitionHandle& hDefinition)
{
    XmlElement tParent(schemas::Report::kqnColumn);
    return XmlDocument::serialize(WebValueFormatDefinition::setDataFormatElement(tParent, hDefinition));
}

String streamOf(const WebValueFormatDefinition& tDefinition)
{
    MemoryOutputStream tStream;
    tDefinition.writeToStream(tStream);
    return encodeAsString(B2WEncodingHex(), reinterpret_cast<const unsigned char*>(tStream.bytes().data()),
                          tStream.bytes().size());
}

std::string patternsOf(const WebValueFormatDefinition& tDefinition, const Locale& tLocale,
                       const KTWUILanguage& tLanguage)
{
    return JsonObject()
        .add("normal", tDefinition.getFormatPattern(tLocale, tLanguage, WebValueFormatDefinition::kFormatPatternNormal))
        .add("excel", tDefinition.getFormatPattern(tLocale, tLanguage, WebValueFormatDefinition::kFormatPatternExcel))
        .text();
}

void addFormula(const WebValueFormatDefinition& tDefinition, JsonObject& tResponse)
{
    // Left alone where the definition has no tag column: a text that no XML can hold tells.
    const String sUntouched(1, L'\0');
    String sFormula = sUntouched;
    tDefinition.populateCurrencyTagColumnFormulaIfApplies(sFormula);
    if (sFormula == sUntouched)
        tResponse.addNull("formula");
    else
        tResponse.add("formula", sFormula);
}

std::string fieldsOf(const WebValueFormatDefinition& tDefinition)
{
    JsonObject tFields;
    for (const FormatDefinitionSetting& tSetting : tDefinition.settings())
    {
        const std::string sName = toUtf8(tSetting.sName);
        if (const bool* pFlag = std::get_if<bool>(&tSetting.tValue))
            tFields.add(sName, *pFlag);
        else if (const std::int64_t* pNumber = std::get_if<std::int64_t>(&tSetting.tValue))
            tFields.addRaw(sName, std::to_string(*pNumber));
        else
            tFields.add(sName, std::get<String>(tSetting.tValue));
    }
    return tFields.text();
}

void addDefinition(const BatchRequest& tRequest, const WebValueFormatDefinitionHandle& hDefinition,
                   JsonObject& tResponse)
{
    const Locale tLocale = tRequest.locale();
    const KTWUILanguage tLanguage = tRequest.language();
    if (hDefinition.isNull())
    {
        tResponse.addNull("type");
        return;
    }
    tResponse.add("type", hDefinition->streamableDefinitionName())
        .add("xml", xmlOf(hDefinition))
        .add("msoStyle", hDefinition->getMsoStyle(tLocale, tLanguage))
        .addRaw("excelPattern", patternsOf(*hDefinition, tLocale, tLanguage))
        .add("stream", streamOf(*hDefinition));
    addFormula(*hDefinition, tResponse);
    tResponse.addRaw("fields", fieldsOf(*hDefinition));
}

WebValueFormatDefinitionHandle convertNumeric(const String& sFormat)
{
    return WebConvertWhistlerFormat::ConvertNumericFormat(WebWhistlerFormatDefinition(sFormat));
}

WebValueFormatDefinitionHandle convertText(const String& sFormat)
{
    return WebConvertWhistlerFormat::ConvertTextFormat(WebWhistlerFormatDefinition(sFormat));
}

// The languages of the older notation.
struct LegacyKind
{
    std::string_view sName;
    WebValueFormatDefinitionHandle (*pConvert)(const String& sFormat);
};

constexpr LegacyKind kaLegacyKinds[] = {
    {"numeric", &convertNumeric}, {"date", &WebConvertWhistlerFormat::ConvertDateFormat}, {"text", &convertText}};

const LegacyKind& legacyKindOf(const std::string& sName)
{
    for (const LegacyKind& tKind : kaLegacyKinds)
    {
        if (tKind.sName == sName)
            return tKind;
    }
    throw InputError("\"kind\": found " + quotedForMessage(sName) + ", expected numeric, date or text");
}

}  // namespace

void answerDefinition(const BatchRequest& tRequest, JsonObject& tResponse)
{
    tRequest.requiredText("definition");
    addDefinition(tRequest, tRequest.definition("definition"), tResponse);
}

void answerConvert(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const LegacyKind& tKind = legacyKindOf(tRequest.requiredText("kind"));
    addDefinition(tRequest, tKind.pConvert(tRequest.requiredWideText("format")), tResponse);
}

void answerCompare(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const WebValueFormatDefinitionHandle hA = tRequest.definition("a");
    const WebValueFormatDefinitionHandle hB = tRequest.definition("b");
    const int nOrder = WebValueFormatDefinition::CompareDefinitions(hA, hB);
    tResponse.add("order", nOrder < 0 ? -1 : nOrder > 0 ? 1 : 0);
}

void answerSection(const BatchRequest& tRequest, JsonObject& tResponse)
{
    ValueFormatterTypes::OutputType eFound = ValueFormatterTypes::kText;
    const String sSection =
        WebValueFormatter::GetOutputFormatString(tRequest.requiredWideText("format"), tRequest.output(), eFound);
    tResponse.add("text", sSection).add("found", outputName(eFound));
}

void answerEncode(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const String sText = tRequest.requiredWideText("text");
    StringBufferTemplate<wchar_t, 255> tBuffer;
    ValueFormatterTypes::encodeToBufferOfType(tBuffer, tRequest.output(), sText.data(), sText.size());
    tResponse.add("text", tBuffer.view());
}

}  // namespace tov
