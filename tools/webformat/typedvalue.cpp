#include "typedvalue.h"

namespace tov {

TypedValue TypedValue::ofBytes(std::string sBytes)
{
    TypedValue tResult;
    tResult.m_tValue = Bytes{std::move(sBytes)};
    return tResult;
}

String& TypedValue::makeText()
{
    String* pText = std::get_if<String>(&m_tValue);
    if (!pText)
        return m_tValue.emplace<String>();
    pText->clear();
    return *pText;
}

SQLDataType::StorageType TypedValue::storage() const
{
    // In the order of the alternatives.
    constexpr SQLDataType::StorageType aStorage[] = {SQLDataType::kStorageInvalid,      SQLDataType::kStorageDouble,
                                                     SQLDataType::kStorageInt32,        SQLDataType::kStorageUInt32,
                                                     SQLDataType::kStorageInt64,        SQLDataType::kStorageUInt64,
                                                     SQLDataType::kStorageCorvidNumber, SQLDataType::kStorageTimeStamp,
                                                     SQLDataType::kStorageWChar,        SQLDataType::kStorageRawValue};
    return aStorage[m_tValue.index()];
}

const void* TypedValue::pointer() const
{
    if (isNull())
        return nullptr;
    if (const String* pText = std::get_if<String>(&m_tValue))
        return pText->c_str();
    if (const Bytes* pBytes = std::get_if<Bytes>(&m_tValue))
    {
        m_tRaw.nBytes = pBytes->sBytes.size();
        m_tRaw.pBytes = reinterpret_cast<const unsigned char*>(pBytes->sBytes.data());
        return &m_tRaw;
    }
    return std::visit([](const auto& tValue) { return static_cast<const void*>(&tValue); }, m_tValue);
}

std::string_view TypedValue::bytes() const
{
    const Bytes* pBytes = std::get_if<Bytes>(&m_tValue);
    return pBytes ? std::string_view(pBytes->sBytes) : std::string_view();
}

std::wstring_view TypedValue::text() const
{
    const String* pText = std::get_if<String>(&m_tValue);
    return pText ? std::wstring_view(*pText) : std::wstring_view();
}

}  // namespace tov
