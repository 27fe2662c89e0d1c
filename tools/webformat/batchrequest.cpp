#include "batchrequest.h"

#include <array>
#include <exception>
#include <new>
#include <optional>

#include "corefacade/sqldatatype.h"
#include "definitioncheck.h"
#include "inputerror.h"
#include "jsonvalues.h"
#include "names.h"
#include "threadcollector.h"
#include "webbedrock/utf8.h"
#include "xml/schemas.h"
#include "xml/xmldocument.h"

namespace tov {

namespace {

struct RequestKind
{
    std::string_view sName;
    void (*pAnswer)(const BatchRequest&, JsonObject&);
};

constexpr std::array<RequestKind, 10> kaKinds = {{{"format", &answerFormat},
                                                  {"definition", &answerDefinition},
                                                  {"compare", &answerCompare},
                                                  {"section", &answerSection},
                                                  {"encode", &answerEncode},
                                                  {"explain", &answerExplain},
                                                  {"convert", &answerConvert},
                                                  {"removeHtml", &answerRemoveHtml},
                                                  {"bracketTags", &answerBracketTags},
                                                  {"offset", &answerOffset}}};

std::string quoted(const char* pKey)
{
    return "\"" + std::string(pKey) + "\"";
}

[[noreturn]] void failKey(const char* pKey, const JsonValue& tFound, const char* pExpected)
{
    throw InputError(quoted(pKey) + ": found " + tFound.kindName() + ", expected " + pExpected);
}

const RequestKind& kindOf(const BatchRequest& tRequest)
{
    const std::string sName = tRequest.text("do", "format");
    std::string sNames;
    for (const RequestKind& tKind : kaKinds)
    {
        if (tKind.sName == sName)
            return tKind;
        sNames += (sNames.empty() ? "" : ", ") + std::string(tKind.sName);
    }
    throw InputError("\"do\": found " + quotedForMessage(sName) + ", expected one of " + sNames);
}

// An exception of the library is part of the answer; what is wrong with the request is an error.
void answer(const BatchRequest& tRequest, JsonObject& tMembers)
{
    JsonObject tResult;
    try
    {
        kindOf(tRequest).pAnswer(tRequest, tResult);
        tMembers.addAll(tResult);
    }
    catch (const InputError& tError)
    {
        tMembers.add("error", tError.what());
    }
    catch (const std::bad_alloc&)
    {
        tMembers.add("error", "out of memory");
    }
    catch (const std::exception& tError)
    {
        tMembers.add("exception", tError.what());
    }
}

}  // namespace

std::string malformedLine(std::string_view sMessage, std::size_t nLine)
{
    return JsonObject().add("error", sMessage).add("line", nLine).text();
}

std::string respond(std::string_view sLine, std::size_t nLine)
{
    JsonValue tRequest;
    try
    {
        tRequest = JsonValue::parse(sLine);
    }
    catch (const JsonValue::Error& tError)
    {
        return malformedLine(tError.what(), nLine);
    }
    if (tRequest.kind() != JsonValue::kObject)
        return malformedLine("found " + std::string(tRequest.kindName()) + ", expected an object", nLine);
    JsonObject tResponse;
    if (const JsonValue* pId = tRequest.find("id"))
        tResponse.add("id", *pId);
    const ThreadCollector tCollector;
    answer(BatchRequest(tRequest), tResponse);
    tCollector.addTo(tResponse);
    return tResponse.text();
}

const JsonValue* BatchRequest::findText(const char* pKey) const
{
    const JsonValue* pValue = find(pKey);
    if (!pValue || pValue->isNull())
        return nullptr;
    if (pValue->kind() != JsonValue::kString)
        failKey(pKey, *pValue, "a string");
    return pValue;
}

std::string BatchRequest::text(const char* pKey, std::string_view sDefault) const
{
    const JsonValue* pValue = findText(pKey);
    return pValue ? pValue->text() : std::string(sDefault);
}

std::string BatchRequest::requiredText(const char* pKey) const
{
    const JsonValue* pValue = findText(pKey);
    if (!pValue)
        throw InputError("found no " + quoted(pKey) + ", expected a string");
    return pValue->text();
}

String BatchRequest::wideText(const char* pKey, std::wstring_view sDefault) const
{
    const JsonValue* pValue = findText(pKey);
    return pValue ? wideArgument(pValue->text(), pKey) : String(sDefault);
}

String BatchRequest::requiredWideText(const char* pKey) const
{
    return wideArgument(requiredText(pKey), pKey);
}

TypedValue BatchRequest::number(const char* pKey, const SQLDataType& tType) const
{
    const JsonValue* pValue = find(pKey);
    if (!pValue || pValue->isNull())
        return TypedValue();
    if (pValue->kind() != JsonValue::kNumber)
        failKey(pKey, *pValue, expectedValue(tType));
    return ofArgument(quoted(pKey).c_str(), [&] { return valueFromText(tType, pValue->text()); });
}

unsigned BatchRequest::unsignedNumber(const char* pKey, unsigned nDefault) const
{
    const TypedValue tNumber = number(pKey, SQLDataType(SQLDataType::kUnsignedInteger));
    return tNumber.isNull() ? nDefault : *static_cast<const unsigned*>(tNumber.pointer());
}

unsigned long BatchRequest::requiredUnsignedNumber(const char* pKey) const
{
    const SQLDataType tType(SQLDataType::kUnsignedBigInt);
    const TypedValue tNumber = number(pKey, tType);
    if (tNumber.isNull())
        throw InputError("found no " + quoted(pKey) + ", expected " + expectedValue(tType));
    return *static_cast<const unsigned long*>(tNumber.pointer());
}

bool BatchRequest::flag(const char* pKey, bool bDefault) const
{
    const JsonValue* pValue = find(pKey);
    if (!pValue || pValue->isNull())
        return bDefault;
    if (pValue->kind() != JsonValue::kBoolean)
        failKey(pKey, *pValue, "true or false");
    return pValue->boolean();
}

ValueFormatterTypes::OutputType BatchRequest::output() const
{
    return outputFromName(text("output", "text"));
}

Locale BatchRequest::locale() const
{
    Locale tLocale = localeFromTag(wideText("locale", L"en-US"));
    if (String sCurrency = wideText("overridingCurrency", {}); !sCurrency.empty())
        tLocale.setOverridingCurrencyTag(std::move(sCurrency));
    return tLocale;
}

KTWUILanguage BatchRequest::language() const
{
    return KTWUILanguage(wideText("language", L"en-us"));
}

Handle<WebValueFormatDefinition, WebValueFormatDefinition> BatchRequest::definition(const char* pKey) const
{
    const JsonValue* pXml = findText(pKey);
    if (!pXml)
        return nullptr;
    XmlError tError;
    const std::optional<XmlDocument> tDocument =
        XmlDocument::parse(pXml->text(), &tError, XmlParseOptions::reportFragment());
    if (!tDocument)
        throw InputError(placeIn(quoted(pKey), {tError.nLine, tError.nColumn}), toUtf8(tError.sMessage));
    if (!tDocument->root().hasName(schemas::Report::kqnDataFormat))
        throw InputError(quoted(pKey) + ": found the element " +
                         quotedForMessage(toUtf8(tDocument->root().localName())) + ", expected \"tov:dataFormat\"");
    return WebValueFormatDefinition::DynamicReadXML(tDocument->root());
}

}  // namespace tov
