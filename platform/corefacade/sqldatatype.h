#pragma once

#include <optional>
#include <string_view>

#include "webbedrock/export.h"

namespace tov {

// What a column's values are in SQL and how one of them is held in memory.
//
// Example:  SQLDataType tType(SQLDataType::kInteger);            -> storage int32, category number
//           SQLDataType(SQLDataType::kInteger, SQLDataType::kStorageDouble)   -> an integer column held as double
//           SQLDataType::fromName("varchar")->IsText()           -> true
//
// The numbers of the enumerators index caches and tables and do not change. A small value type: copy it freely, any
// thread.
class WEBFORMAT_EXPORT SQLDataType
{
public:
    enum DataType
    {
        kInvalid = 0,
        kUnknown = 1,
        kBit = 2,
        kTinyInt = 3,
        kSmallInt = 4,
        kInteger = 5,
        kUnsignedInteger = 6,
        kBigInt = 7,
        kUnsignedBigInt = 8,
        kReal = 9,
        kFloat = 10,
        kDouble = 11,
        kNumeric = 12,
        kDecimal = 13,
        kChar = 14,
        kVarChar = 15,
        kLongVarChar = 16,
        kDate = 17,
        kTime = 18,
        kTimeStamp = 19,
        kBinary = 20,
        kVarBinary = 21,
        kDataTypeEnd_ = 22
    };

    enum PrimaryType
    {
        kPrimaryInvalid = 0,
        kPrimaryUnknown = 1,
        kPrimaryBinary = 2,
        kPrimaryText = 3,
        kPrimaryDate = 4,
        kPrimaryTime = 5,
        kPrimaryTimeStamp = 6,
        kPrimaryInteger = 7,
        kPrimaryFloating = 8,
        kPrimaryCorvidNumber = 9,
        kPrimaryTypeEnd_ = 10
    };

    // What an untyped value pointer points to: `double`, `DateTime`, null-terminated `wchar_t` text, `int`,
    // `unsigned int`, `long`, `unsigned long`, `RawValue` or `CorvidNumber`.
    enum StorageType
    {
        kStorageInvalid = 0,
        kStorageDouble = 1,
        kStorageTimeStamp = 2,
        kStorageWChar = 3,
        kStorageInt32 = 4,
        kStorageUInt32 = 5,
        kStorageInt64 = 6,
        kStorageUInt64 = 7,
        kStorageRawValue = 8,
        kStorageCorvidNumber = 9,
        kStorageTypeEnd_ = 10
    };

    enum Category
    {
        kCatInvalid = 0,
        kCatUnknown = 1,
        kCatNumber = 2,
        kCatText = 3,
        kCatBinary = 4,
        kCatCalendar = 5
    };

    // A number outside the enumeration counts as `kInvalid`.
    constexpr explicit SQLDataType(DataType eDataType) : SQLDataType(eDataType, ownStorageOf(eDataType)) {}
    constexpr SQLDataType(DataType eDataType, StorageType eStorage)
        : m_eDataType(isKnown(eDataType) ? eDataType : kInvalid), m_eStorage(eStorage)
    {
    }

    constexpr DataType dataType() const { return m_eDataType; }
    constexpr StorageType storageType() const { return m_eStorage; }
    constexpr PrimaryType primaryType() const { return traitsOf(m_eDataType).m_ePrimary; }
    constexpr Category category() const { return traitsOf(m_eDataType).m_eCategory; }
    constexpr bool IsText() const { return primaryType() == kPrimaryText; }

    // False for a type that was built with a storage other than its data type's usual one.
    constexpr bool hasOwnStorage() const { return m_eStorage == ownStorageOf(m_eDataType); }

    static constexpr StorageType ownStorageOf(DataType eDataType) { return traitsOf(eDataType).m_eStorage; }

    // "bit", "unsignedbigint", "longvarchar", "timestamp", ...: the enumerator in lower case without its k.
    std::string_view name() const { return traitsOf(m_eDataType).m_sName; }

    // The type of that name with its own storage; case matters ("Bit" is no name).
    static std::optional<SQLDataType> fromName(std::string_view sName);

    // "double", "timestamp", "wchar", "int32", "uint32", "int64", "uint64", "rawvalue", "corvidnumber"; case matters.
    static std::optional<StorageType> storageTypeFromName(std::string_view sName);

    friend constexpr bool operator==(const SQLDataType&, const SQLDataType&) = default;

private:
    struct Traits
    {
        PrimaryType m_ePrimary;
        StorageType m_eStorage;
        Category m_eCategory;
        std::string_view m_sName;
    };

    static constexpr Traits ks_aTraits[kDataTypeEnd_] = {
        {kPrimaryInvalid, kStorageInvalid, kCatInvalid, "invalid"},
        {kPrimaryUnknown, kStorageInvalid, kCatUnknown, "unknown"},
        {kPrimaryInteger, kStorageInt32, kCatNumber, "bit"},
        {kPrimaryInteger, kStorageInt32, kCatNumber, "tinyint"},
        {kPrimaryInteger, kStorageInt32, kCatNumber, "smallint"},
        {kPrimaryInteger, kStorageInt32, kCatNumber, "integer"},
        {kPrimaryInteger, kStorageUInt32, kCatNumber, "unsignedinteger"},
        {kPrimaryInteger, kStorageInt64, kCatNumber, "bigint"},
        {kPrimaryInteger, kStorageUInt64, kCatNumber, "unsignedbigint"},
        {kPrimaryFloating, kStorageDouble, kCatNumber, "real"},
        {kPrimaryFloating, kStorageDouble, kCatNumber, "float"},
        {kPrimaryFloating, kStorageDouble, kCatNumber, "double"},
        {kPrimaryCorvidNumber, kStorageCorvidNumber, kCatNumber, "numeric"},
        {kPrimaryCorvidNumber, kStorageCorvidNumber, kCatNumber, "decimal"},
        {kPrimaryText, kStorageWChar, kCatText, "char"},
        {kPrimaryText, kStorageWChar, kCatText, "varchar"},
        {kPrimaryText, kStorageWChar, kCatText, "longvarchar"},
        {kPrimaryDate, kStorageTimeStamp, kCatCalendar, "date"},
        {kPrimaryTime, kStorageTimeStamp, kCatCalendar, "time"},
        {kPrimaryTimeStamp, kStorageTimeStamp, kCatCalendar, "timestamp"},
        {kPrimaryBinary, kStorageRawValue, kCatBinary, "binary"},
        {kPrimaryBinary, kStorageRawValue, kCatBinary, "varbinary"},
    };

    static constexpr bool isKnown(DataType eDataType) { return eDataType >= kInvalid && eDataType < kDataTypeEnd_; }
    static constexpr const Traits& traitsOf(DataType eDataType)
    {
        return ks_aTraits[isKnown(eDataType) ? eDataType : kInvalid];
    }

    DataType m_eDataType;
    StorageType m_eStorage;
};

}  // namespace tov
