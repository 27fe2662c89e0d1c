#include "jsonvalue.h"

#include <algorithm>
#include <nlohmann/json.hpp>

#include "inputerror.h"
#include "webbedrock/utf8.h"

namespace tov {

// Takes the events of the parser and builds the tree with a stack of open arrays and objects.
class JsonBuilder final : public nlohmann::json_sax<nlohmann::json>
{
public:
    explicit JsonBuilder(JsonValue& tRoot) : m_tRoot(tRoot) {}

    bool null() override { return put(JsonValue()); }
    bool boolean(bool bValue) override { return put(JsonValue(bValue)); }
    bool number_integer(number_integer_t nValue) override { return putNumber(std::to_string(nValue)); }
    bool number_unsigned(number_unsigned_t nValue) override { return putNumber(std::to_string(nValue)); }
    bool number_float(number_float_t, const string_t& sText) override { return putNumber(sText); }
    bool string(string_t& sText) override { return put(JsonValue(JsonValue::kString, std::move(sText))); }
    bool binary(binary_t&) override { return false; }
    bool start_object(std::size_t) override { return open(JsonValue::kObject); }
    bool start_array(std::size_t) override { return open(JsonValue::kArray); }
    bool end_object() override { return close(); }
    bool end_array() override { return close(); }

    bool key(string_t& sKey) override
    {
        JsonValue& tObject = *m_vOpen.back();
        if (tObject.m_vKeys.size() == JsonValue::knMaxKeys)
            throw JsonValue::Error("an object has more than " + std::to_string(JsonValue::knMaxKeys) + " keys");
        if (tObject.find(sKey))
            throw JsonValue::Error("the key " + quotedForMessage(sKey) + " stands twice in an object");
        tObject.m_vKeys.push_back(std::move(sKey));
        return true;
    }

    bool parse_error(std::size_t nByte, const std::string&, const nlohmann::detail::exception& tError) override
    {
        throw JsonValue::Error("no JSON at byte " + std::to_string(nByte) + ": " + reasonOf(tError.what()));
    }

private:
    // The parser puts its own identification in front: "[json.exception.parse_error.101] parse error at ...: reason".
    static std::string reasonOf(std::string sMessage)
    {
        const std::size_t nBracket = sMessage.find("] ");
        if (nBracket != std::string::npos)
            sMessage.erase(0, nBracket + 2);
        const std::size_t nColon = sMessage.find(": ");
        if (sMessage.rfind("parse error", 0) == 0 && nColon != std::string::npos)
            sMessage.erase(0, nColon + 2);
        return sMessage;
    }

    bool putNumber(std::string sDigits) { return put(JsonValue(JsonValue::kNumber, std::move(sDigits))); }

    bool put(JsonValue tValue)
    {
        place() = std::move(tValue);
        return true;
    }

    JsonValue& place() { return m_vOpen.empty() ? m_tRoot : m_vOpen.back()->m_vItems.emplace_back(); }

    bool open(JsonValue::Kind eKind)
    {
        if (m_vOpen.size() == static_cast<std::size_t>(JsonValue::knMaxDepth))
            throw JsonValue::Error("values are nested more than " + std::to_string(JsonValue::knMaxDepth) + " deep");
        // The address stays good while the value is open: its siblings come after it is closed.
        JsonValue& tValue = place();
        tValue.m_eKind = eKind;
        m_vOpen.push_back(&tValue);
        return true;
    }

    bool close()
    {
        m_vOpen.pop_back();
        return true;
    }

    JsonValue& m_tRoot;
    std::vector<JsonValue*> m_vOpen;
};

JsonValue JsonValue::parse(std::string_view sUtf8)
{
    JsonValue tRoot;
    JsonBuilder tBuilder(tRoot);
    nlohmann::json::sax_parse(sUtf8.begin(), sUtf8.end(), &tBuilder);
    return tRoot;
}

const JsonValue* JsonValue::find(std::string_view sKey) const
{
    const auto tFound = std::find(m_vKeys.begin(), m_vKeys.end(), sKey);
    const auto nAt = static_cast<std::size_t>(tFound - m_vKeys.begin());
    return nAt < m_vItems.size() ? &m_vItems[nAt] : nullptr;
}

const char* JsonValue::kindName() const
{
    constexpr const char* aNames[] = {"null", "a boolean", "a number", "a string", "an array", "an object"};
    return aNames[m_eKind];
}

void JsonValue::appendTo(std::string& sResult) const
{
    switch (m_eKind)
    {
    case kNull: sResult += "null"; break;
    case kBoolean: sResult += m_bValue ? "true" : "false"; break;
    case kNumber: sResult += m_sText; break;
    case kString: appendJsonString(sResult, m_sText); break;
    case kArray:
    case kObject:
        sResult += m_eKind == kArray ? '[' : '{';
        for (std::size_t nAt = 0; nAt < m_vItems.size(); ++nAt)
        {
            if (nAt != 0)
                sResult += ',';
            if (m_eKind == kObject)
            {
                appendJsonString(sResult, m_vKeys[nAt]);
                sResult += ':';
            }
            m_vItems[nAt].appendTo(sResult);
        }
        sResult += m_eKind == kArray ? ']' : '}';
        break;
    }
}

void appendJsonString(std::string& sResult, std::string_view sUtf8)
{
    constexpr char aHex[] = "0123456789abcdef";
    sResult += '"';
    for (const char nByte : sUtf8)
    {
        switch (nByte)
        {
        case '"': sResult += "\\\""; break;
        case '\\': sResult += "\\\\"; break;
        case '\n': sResult += "\\n"; break;
        case '\r': sResult += "\\r"; break;
        case '\t': sResult += "\\t"; break;
        default:
            if (static_cast<unsigned char>(nByte) < 0x20)
                sResult.append("\\u00").append(1, aHex[nByte >> 4]).append(1, aHex[nByte & 15]);
            else
                sResult += nByte;
        }
    }
    sResult += '"';
}

void JsonObject::addKey(std::string_view sKey)
{
    if (!m_sMembers.empty())
        m_sMembers += ',';
    appendJsonString(m_sMembers, sKey);
    m_sMembers += ':';
}

JsonObject& JsonObject::add(std::string_view sKey, std::string_view sUtf8)
{
    addKey(sKey);
    appendJsonString(m_sMembers, sUtf8);
    return *this;
}

JsonObject& JsonObject::add(std::string_view sKey, std::wstring_view sText)
{
    return add(sKey, toUtf8(sText));
}

JsonObject& JsonObject::add(std::string_view sKey, const JsonValue& tValue)
{
    addKey(sKey);
    tValue.appendTo(m_sMembers);
    return *this;
}

JsonObject& JsonObject::addRaw(std::string_view sKey, std::string_view sJson)
{
    addKey(sKey);
    m_sMembers += sJson;
    return *this;
}

JsonObject& JsonObject::addAll(const JsonObject& tOther)
{
    if (!m_sMembers.empty() && !tOther.m_sMembers.empty())
        m_sMembers += ',';
    m_sMembers += tOther.m_sMembers;
    return *this;
}

}  // namespace tov
