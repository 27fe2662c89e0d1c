#pragma once

#include <string>
#include <string_view>

#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "jsonvalue.h"
#include "typedvalue.h"
#include "webformat/outputtypes.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

// Reads the keys of one request. A value of another kind than asked for throws InputError: `"length": found a string,
// expected a whole number`.
class BatchRequest
{
public:
    explicit BatchRequest(const JsonValue& tRequest) : m_tRequest(tRequest) {}

    const JsonValue* find(const char* pKey) const { return m_tRequest.find(pKey); }
    bool has(const char* pKey) const { return find(pKey) != nullptr; }
    bool isGiven(const char* pKey) const { return has(pKey) && !find(pKey)->isNull(); }

    // A null counts as an absent key. The first form takes a default, the second needs the key.
    std::string text(const char* pKey, std::string_view sDefault) const;
    std::string requiredText(const char* pKey) const;
    String wideText(const char* pKey, std::wstring_view sDefault) const;
    String requiredWideText(const char* pKey) const;
    unsigned unsignedNumber(const char* pKey, unsigned nDefault) const;
    unsigned long requiredUnsignedNumber(const char* pKey) const;
    bool flag(const char* pKey, bool bDefault) const;

    // The keys "output", "locale" with "overridingCurrency", and "language" with their defaults.
    ValueFormatterTypes::OutputType output() const;
    Locale locale() const;
    KTWUILanguage language() const;

    // The definition that a key holds as XML; a null handle where the key is absent or the XML names no known type.
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> definition(const char* pKey) const;

private:
    const JsonValue* findText(const char* pKey) const;
    TypedValue number(const char* pKey, const SQLDataType& tType) const;  // null: not given

    const JsonValue& m_tRequest;
};

// The response to one line of input, itself one line without its end. Never throws but for lack of memory; any thread.
std::string respond(std::string_view sLine, std::size_t nLine);

// The response to a line that is no JSON object: {"error": ..., "line": ...}.
std::string malformedLine(std::string_view sMessage, std::size_t nLine);

// What the requests answer; each adds members to the response and throws InputError for a request that is wrong.
void answerFormat(const BatchRequest& tRequest, JsonObject& tResponse);
void answerDefinition(const BatchRequest& tRequest, JsonObject& tResponse);
void answerCompare(const BatchRequest& tRequest, JsonObject& tResponse);
void answerSection(const BatchRequest& tRequest, JsonObject& tResponse);
void answerEncode(const BatchRequest& tRequest, JsonObject& tResponse);
void answerExplain(const BatchRequest& tRequest, JsonObject& tResponse);
void answerConvert(const BatchRequest& tRequest, JsonObject& tResponse);
void answerRemoveHtml(const BatchRequest& tRequest, JsonObject& tResponse);
void answerBracketTags(const BatchRequest& tRequest, JsonObject& tResponse);
void answerOffset(const BatchRequest& tRequest, JsonObject& tResponse);

}  // namespace tov
