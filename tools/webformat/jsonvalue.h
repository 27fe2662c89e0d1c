#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace tov {

// A piece of JSON in memory. Numbers keep the text that they were written with, so that no digit is lost.
//
// Example: JsonValue::parse(R"({"a": [1, 2.50]})").find("a")->items()[1].text() -> "2.50"
class JsonValue
{
public:
    enum Kind
    {
        kNull,
        kBoolean,
        kNumber,
        kString,
        kArray,
        kObject
    };

    // Why a text is no JSON; the message names the place.
    class Error : public std::runtime_error
    {
    public:
        using std::runtime_error::runtime_error;
    };

    // Arrays and objects inside each other, the outermost included.
    static constexpr int knMaxDepth = 64;
    // Keys of one object.
    static constexpr std::size_t knMaxKeys = 1000;

    // Reads one JSON value (RFC 8259, UTF-8). Throws Error for anything else, for lone surrogates, for a key that
    // stands twice in an object, for values nested deeper than `knMaxDepth` and objects of more than `knMaxKeys` keys.
    static JsonValue parse(std::string_view sUtf8);

    JsonValue() = default;
    explicit JsonValue(bool bValue) : m_eKind(kBoolean), m_bValue(bValue) {}
    JsonValue(Kind eKind, std::string sText) : m_eKind(eKind), m_sText(std::move(sText)) {}

    Kind kind() const { return m_eKind; }
    bool isNull() const { return m_eKind == kNull; }
    bool boolean() const { return m_bValue; }
    // The text of a string in UTF-8, or the digits of a number as written.
    const std::string& text() const { return m_sText; }
    const std::vector<JsonValue>& items() const { return m_vItems; }
    // The value of an object's key, or null.
    const JsonValue* find(std::string_view sKey) const;

    // Appends the value as JSON, without blanks.
    void appendTo(std::string& sResult) const;

    // "a number", "a string", ...: for messages.
    const char* kindName() const;

private:
    friend class JsonBuilder;

    Kind m_eKind = kNull;
    bool m_bValue = false;
    std::string m_sText;
    std::vector<JsonValue> m_vItems;   // of an array, or the values of an object
    std::vector<std::string> m_vKeys;  // of an object
};

// Appends a JSON string with its quotes; `sUtf8` is well-formed UTF-8.
void appendJsonString(std::string& sResult, std::string_view sUtf8);

// Writes one JSON object, member by member, in the order of the calls.
//
// Example: JsonObject tObject;  tObject.add("id", 7).add("text", "a");  tObject.text() -> {"id":7,"text":"a"}
class JsonObject
{
public:
    JsonObject& add(std::string_view sKey, std::string_view sUtf8);
    JsonObject& add(std::string_view sKey, const char* pUtf8) { return add(sKey, std::string_view(pUtf8)); }
    JsonObject& add(std::string_view sKey, std::wstring_view sText);
    JsonObject& add(std::string_view sKey, const wchar_t* pText) { return add(sKey, std::wstring_view(pText)); }
    JsonObject& add(std::string_view sKey, bool bValue) { return addRaw(sKey, bValue ? "true" : "false"); }
    JsonObject& add(std::string_view sKey, long long nValue) { return addRaw(sKey, std::to_string(nValue)); }
    JsonObject& add(std::string_view sKey, int nValue) { return addRaw(sKey, std::to_string(nValue)); }
    JsonObject& add(std::string_view sKey, unsigned long nValue) { return addRaw(sKey, std::to_string(nValue)); }
    JsonObject& add(std::string_view sKey, const JsonValue& tValue);
    JsonObject& addNull(std::string_view sKey) { return addRaw(sKey, "null"); }
    // A member whose value is JSON already.
    JsonObject& addRaw(std::string_view sKey, std::string_view sJson);
    // Takes over the members of another object.
    JsonObject& addAll(const JsonObject& tOther);

    std::string text() const { return "{" + m_sMembers + "}"; }

private:
    void addKey(std::string_view sKey);

    std::string m_sMembers;
};

}  // namespace tov
