#pragma once

#include <string>
#include <string_view>
#include <utility>
#include <variant>

#include "corefacade/corvidnumber.h"
#include "corefacade/datetime.h"
#include "corefacade/rawvalue.h"
#include "corefacade/sqldatatype.h"
#include "webbedrock/string.h"

namespace tov {

// A value in the form in which formatters take it: of one storage type, or null.
//
// Example: TypedValue tValue(1234.5);  hFormatter->formatAsString(tValue.pointer());
class TypedValue
{
public:
    TypedValue() = default;  // null
    explicit TypedValue(double fValue) : m_tValue(fValue) {}
    explicit TypedValue(int nValue) : m_tValue(nValue) {}
    explicit TypedValue(unsigned nValue) : m_tValue(nValue) {}
    explicit TypedValue(long nValue) : m_tValue(nValue) {}
    explicit TypedValue(unsigned long nValue) : m_tValue(nValue) {}
    explicit TypedValue(CorvidNumber tValue) : m_tValue(std::move(tValue)) {}
    explicit TypedValue(const DateTime& tValue) : m_tValue(tValue) {}
    explicit TypedValue(String sText) : m_tValue(std::move(sText)) {}  // without U+0000
    static TypedValue ofBytes(std::string sBytes);

    void setNull() { m_tValue.emplace<std::monostate>(); }
    // Makes the value an empty text, to be filled before the next use; where it was a text its memory is used again.
    String& makeText();

    bool isNull() const { return m_tValue.index() == 0; }
    SQLDataType::StorageType storage() const;  // kStorageInvalid for null

    // What a formatter's operations take; null for the null value. Good until the value changes or moves.
    const void* pointer() const;

    // The bytes of a binary value, the text of a text; empty for all others.
    std::string_view bytes() const;
    std::wstring_view text() const;

private:
    struct Bytes
    {
        std::string sBytes;
    };

    std::variant<std::monostate, double, int, unsigned, long, unsigned long, CorvidNumber, DateTime, String, Bytes>
        m_tValue;
    mutable RawValue m_tRaw;  // refers to the bytes where they stand now
};

}  // namespace tov
