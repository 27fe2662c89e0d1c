#include "corefacade/sqldatatype.h"

#include <gtest/gtest.h>

#include <string>

namespace tov {

namespace {

using Type = SQLDataType;

struct TypeRow
{
    int nLine;
    int nNumber;
    Type::DataType eType;
    const char* pName;
    Type::PrimaryType ePrimary;
    Type::StorageType eStorage;
    Type::Category eCategory;
};

constexpr TypeRow kTypeRows[] = {
    {__LINE__, 0, Type::kInvalid, "invalid", Type::kPrimaryInvalid, Type::kStorageInvalid, Type::kCatInvalid},
    {__LINE__, 1, Type::kUnknown, "unknown", Type::kPrimaryUnknown, Type::kStorageInvalid, Type::kCatUnknown},
    {__LINE__, 2, Type::kBit, "bit", Type::kPrimaryInteger, Type::kStorageInt32, Type::kCatNumber},
    {__LINE__, 3, Type::kTinyInt, "tinyint", Type::kPrimaryInteger, Type::kStorageInt32, Type::kCatNumber},
    {__LINE__, 4, Type::kSmallInt, "smallint", Type::kPrimaryInteger, Type::kStorageInt32, Type::kCatNumber},
    {__LINE__, 5, Type::kInteger, "integer", Type::kPrimaryInteger, Type::kStorageInt32, Type::kCatNumber},
    {__LINE__, 6, Type::kUnsignedInteger, "unsignedinteger", Type::kPrimaryInteger, Type::kStorageUInt32,
     Type::kCatNumber},
    {__LINE__, 7, Type::kBigInt, "bigint", Type::kPrimaryInteger, Type::kStorageInt64, Type::kCatNumber},
    {__LINE__, 8, Type::kUnsignedBigInt, "unsignedbigint", Type::kPrimaryInteger, Type::kStorageUInt64,
     Type::kCatNumber},
    {__LINE__, 9, Type::kReal, "real", Type::kPrimaryFloating, Type::kStorageDouble, Type::kCatNumber},
    {__LINE__, 10, Type::kFloat, "float", Type::kPrimaryFloating, Type::kStorageDouble, Type::kCatNumber},
    {__LINE__, 11, Type::kDouble, "double", Type::kPrimaryFloating, Type::kStorageDouble, Type::kCatNumber},
    {__LINE__, 12, Type::kNumeric, "numeric", Type::kPrimaryCorvidNumber, Type::kStorageCorvidNumber, Type::kCatNumber},
    {__LINE__, 13, Type::kDecimal, "decimal", Type::kPrimaryCorvidNumber, Type::kStorageCorvidNumber, Type::kCatNumber},
    {__LINE__, 14, Type::kChar, "char", Type::kPrimaryText, Type::kStorageWChar, Type::kCatText},
    {__LINE__, 15, Type::kVarChar, "varchar", Type::kPrimaryText, Type::kStorageWChar, Type::kCatText},
    {__LINE__, 16, Type::kLongVarChar, "longvarchar", Type::kPrimaryText, Type::kStorageWChar, Type::kCatText},
    {__LINE__, 17, Type::kDate, "date", Type::kPrimaryDate, Type::kStorageTimeStamp, Type::kCatCalendar},
    {__LINE__, 18, Type::kTime, "time", Type::kPrimaryTime, Type::kStorageTimeStamp, Type::kCatCalendar},
    {__LINE__, 19, Type::kTimeStamp, "timestamp", Type::kPrimaryTimeStamp, Type::kStorageTimeStamp, Type::kCatCalendar},
    {__LINE__, 20, Type::kBinary, "binary", Type::kPrimaryBinary, Type::kStorageRawValue, Type::kCatBinary},
    {__LINE__, 21, Type::kVarBinary, "varbinary", Type::kPrimaryBinary, Type::kStorageRawValue, Type::kCatBinary},
};

TEST(SQLDataType, KnowsPrimaryTypeStorageCategoryAndNameOfEachDataType)
{
    ASSERT_EQ(std::size(kTypeRows), static_cast<std::size_t>(Type::kDataTypeEnd_));
    for (const TypeRow& tRow : kTypeRows)
    {
        const Type tType(tRow.eType);
        EXPECT_EQ(tRow.eType, tRow.nNumber) << "row at line " << tRow.nLine;
        EXPECT_EQ(tType.dataType(), tRow.eType) << "row at line " << tRow.nLine;
        EXPECT_EQ(tType.primaryType(), tRow.ePrimary) << "row at line " << tRow.nLine;
        EXPECT_EQ(tType.storageType(), tRow.eStorage) << "row at line " << tRow.nLine;
        EXPECT_EQ(tType.category(), tRow.eCategory) << "row at line " << tRow.nLine;
        EXPECT_EQ(tType.IsText(), tRow.eCategory == Type::kCatText) << "row at line " << tRow.nLine;
        EXPECT_TRUE(tType.hasOwnStorage()) << "row at line " << tRow.nLine;
        EXPECT_EQ(tType.name(), tRow.pName) << "row at line " << tRow.nLine;
        EXPECT_EQ(Type::fromName(tRow.pName), tType) << "row at line " << tRow.nLine;
    }
}

struct NumberRow
{
    int nLine;
    int nEnumerator;
    int nExpected;
};

constexpr NumberRow kNumberRows[] = {
    {__LINE__, Type::kPrimaryInvalid, 0},      {__LINE__, Type::kPrimaryUnknown, 1},
    {__LINE__, Type::kPrimaryBinary, 2},       {__LINE__, Type::kPrimaryText, 3},
    {__LINE__, Type::kPrimaryDate, 4},         {__LINE__, Type::kPrimaryTime, 5},
    {__LINE__, Type::kPrimaryTimeStamp, 6},    {__LINE__, Type::kPrimaryInteger, 7},
    {__LINE__, Type::kPrimaryFloating, 8},     {__LINE__, Type::kPrimaryCorvidNumber, 9},
    {__LINE__, Type::kPrimaryTypeEnd_, 10},    {__LINE__, Type::kStorageInvalid, 0},
    {__LINE__, Type::kStorageDouble, 1},       {__LINE__, Type::kStorageTimeStamp, 2},
    {__LINE__, Type::kStorageWChar, 3},        {__LINE__, Type::kStorageInt32, 4},
    {__LINE__, Type::kStorageUInt32, 5},       {__LINE__, Type::kStorageInt64, 6},
    {__LINE__, Type::kStorageUInt64, 7},       {__LINE__, Type::kStorageRawValue, 8},
    {__LINE__, Type::kStorageCorvidNumber, 9}, {__LINE__, Type::kStorageTypeEnd_, 10},
    {__LINE__, Type::kCatInvalid, 0},          {__LINE__, Type::kCatUnknown, 1},
    {__LINE__, Type::kCatNumber, 2},           {__LINE__, Type::kCatText, 3},
    {__LINE__, Type::kCatBinary, 4},           {__LINE__, Type::kCatCalendar, 5},
    {__LINE__, Type::kDataTypeEnd_, 22},
};

TEST(SQLDataType, NumbersItsEnumeratorsAsTablesAndCallersExpect)
{
    for (const NumberRow& tRow : kNumberRows)
        EXPECT_EQ(tRow.nEnumerator, tRow.nExpected) << "row at line " << tRow.nLine;
}

TEST(SQLDataType, MayBeHeldInAnotherStorageThanItsOwn)
{
    constexpr Type tType(Type::kInteger, Type::kStorageDouble);
    static_assert(tType.storageType() == Type::kStorageDouble && !tType.hasOwnStorage());
    static_assert(tType.primaryType() == Type::kPrimaryInteger && tType.category() == Type::kCatNumber);
    static_assert(Type(Type::kInteger, Type::kStorageInt32) == Type(Type::kInteger));
    EXPECT_NE(tType, Type(Type::kInteger));
}

TEST(SQLDataType, TakesNumbersOutsideTheEnumerationForInvalid)
{
    for (const int nNumber : {22, 31})
    {
        const Type tType(static_cast<Type::DataType>(nNumber));
        EXPECT_EQ(tType, Type(Type::kInvalid)) << nNumber;
    }
    EXPECT_EQ(Type::ownStorageOf(static_cast<Type::DataType>(30)), Type::kStorageInvalid);
}

TEST(SQLDataType, RefusesNamesThatAreNotExact)
{
    for (const char* pName : {"", "Bit", "bits", "int", "varchar ", "unsigned integer", "kbit"})
        EXPECT_FALSE(Type::fromName(pName)) << pName;
}

struct StorageRow
{
    int nLine;
    const char* pName;
    Type::StorageType eStorage;
};

constexpr StorageRow kStorageRows[] = {
    {__LINE__, "double", Type::kStorageDouble},
    {__LINE__, "timestamp", Type::kStorageTimeStamp},
    {__LINE__, "wchar", Type::kStorageWChar},
    {__LINE__, "int32", Type::kStorageInt32},
    {__LINE__, "uint32", Type::kStorageUInt32},
    {__LINE__, "int64", Type::kStorageInt64},
    {__LINE__, "uint64", Type::kStorageUInt64},
    {__LINE__, "rawvalue", Type::kStorageRawValue},
    {__LINE__, "corvidnumber", Type::kStorageCorvidNumber},
};

TEST(SQLDataType, NamesStorages)
{
    for (const StorageRow& tRow : kStorageRows)
        EXPECT_EQ(Type::storageTypeFromName(tRow.pName), tRow.eStorage) << "row at line " << tRow.nLine;
    for (const char* pName : {"", "invalid", "Double", "int", "text"})
        EXPECT_FALSE(Type::storageTypeFromName(pName)) << pName;
}

}  // namespace

}  // namespace tov
