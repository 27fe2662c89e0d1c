#include "webformat/valueformatterutils.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <optional>
#include <thread>
#include <vector>

#include "corefacade/corvidnumber.h"
#include "corefacade/datetime.h"
#include "corefacade/rawvalue.h"
#include "support/allocationcounter.h"
#include "support/collected.h"
#include "webbedrock/handle.h"
#include "webformat/formatterconfig.h"

namespace tov {
namespace {

using Type = SQLDataType;

String plain(const void* pValue, const SQLDataType& tType)
{
    StringBufferTemplate<wchar_t, 256> tBuffer;
    ValueFormatterUtils::valueToBuffer(pValue, tType, tBuffer);
    return tBuffer.toString();
}

struct Values
{
    double fReal = 1234.5;
    double fWhole = 1234.5;
    int nInt = -1234;
    unsigned nUnsigned = 4000000000u;
    CorvidNumber tDecimal = *CorvidNumber::fromString("1234.5678901234567890123456789");
    DateTime tMoment{2024, 3, 5};
    const wchar_t* pText = L"a<b & 'c'";
    Values() { tMoment.setTime(7, 8, 9, 123456789); }
};

TEST(ValueFormatterUtils, WritesValuesTheSameEverywhere)
{
    const Values t;
    struct Row
    {
        int nLine;
        SQLDataType tType;
        const void* pValue;
        const wchar_t* pExpected;
    };
    const Row aRows[] = {
        {__LINE__, Type(Type::kInteger), &t.nInt, L"-1234"},
        {__LINE__, Type(Type::kBit), &t.nInt, L"-1234"},
        {__LINE__, Type(Type::kUnsignedInteger), &t.nUnsigned, L"4000000000"},
        {__LINE__, Type(Type::kDouble), &t.fReal, L"1234.50"},
        {__LINE__, Type(Type::kReal), &t.fReal, L"1234.50"},
        // Two digits and sixteen more: the most that the default pattern of decimals has.
        {__LINE__, Type(Type::kDecimal), &t.tDecimal, L"1234.567890123456789012"},
        {__LINE__, Type(Type::kNumeric), &t.tDecimal, L"1234.567890123456789012"},
        {__LINE__, Type(Type::kVarChar), t.pText, L"a<b & 'c'"},
        {__LINE__, Type(Type::kChar), L"", L""},
        {__LINE__, Type(Type::kDate), &t.tMoment, L"2024-03-05"},
        {__LINE__, Type(Type::kTime), &t.tMoment, L"07:08:09.123456789"},
        {__LINE__, Type(Type::kTimeStamp), &t.tMoment, L"2024-03-05 07:08:09.123456789"},
        {__LINE__, Type(Type::kVarBinary), t.pText, L"Binary"},
        {__LINE__, Type(Type::kInvalid), t.pText, L"Unknown"},
        {__LINE__, Type(Type::kUnknown), t.pText, L"Unknown"},
        {__LINE__, Type(Type::kUnknown), nullptr, L"Unknown"},
    };
    for (const Row& tRow : aRows)
        EXPECT_EQ(plain(tRow.pValue, tRow.tType), tRow.pExpected) << "row at line " << tRow.nLine;
}

// Whoever asks the factories with the same words gets the same text.
TEST(ValueFormatterUtils, WritesNumbersAsTheirDefaultFormatterDoes)
{
    const Values t;
    for (const SQLDataType& tType : {Type(Type::kDecimal), Type(Type::kDouble, Type::kStorageCorvidNumber)})
        EXPECT_EQ(plain(&t.tDecimal, tType),
                  WebValueFormatter::GetDefaultFormatter(tType, Locale::kUSA, ValueFormatterTypes::kText, 0, 0,
                                                         KTWUILanguage::kDefaultLanguage)
                      ->formatAsString(&t.tDecimal));
}

TEST(ValueFormatterUtils, ReadsTypesThatAreHeldInAnotherStorage)
{
    const Values t;
    EXPECT_EQ(plain(&t.fWhole, Type(Type::kInteger, Type::kStorageDouble)), L"1235");
    EXPECT_EQ(plain(&t.tDecimal, Type(Type::kBigInt, Type::kStorageCorvidNumber)), L"1235");
    EXPECT_EQ(plain(&t.nInt, Type(Type::kDouble, Type::kStorageInt32)), L"-1234");
    EXPECT_EQ(plain(&t.nUnsigned, Type(Type::kNumeric, Type::kStorageUInt32)), L"4000000000");
    EXPECT_EQ(plain(&t.fReal, Type(Type::kNumeric, Type::kStorageDouble)), L"1234.50");
}

TEST(ValueFormatterUtils, WritesNullsAsNothingButForTheWordsOfTypesThatAreNotRead)
{
    for (const Type::DataType eType : {Type::kInteger, Type::kUnsignedInteger, Type::kDouble, Type::kDecimal,
                                       Type::kVarChar, Type::kDate, Type::kTime, Type::kTimeStamp})
        EXPECT_EQ(plain(nullptr, Type(eType)), L"") << eType;
    EXPECT_EQ(plain(nullptr, Type(Type::kBinary)), L"Binary");
}

TEST(ValueFormatterUtils, DoesNotReadBinaryValues)
{
    RawValue tBroken;
    tBroken.nBytes = 1000;
    EXPECT_EQ(plain(&tBroken, Type(Type::kBinary)), L"Binary");
    EXPECT_EQ(plain(&tBroken, Type(Type::kVarBinary, Type::kStorageDouble)), L"Binary");
}

TEST(ValueFormatterUtils, ThrowsForAStorageThatNoFormatterReads)
{
    const CollectedAssertions tAssertions;
    const long nValue = 1;
    for (const SQLDataType& tType :
         {Type(Type::kBigInt), Type(Type::kUnsignedBigInt), Type(Type::kInteger, Type::kStorageInt64),
          Type(Type::kDouble, Type::kStorageWChar), Type(Type::kDouble, Type::kStorageTypeEnd_),
          Type(Type::kDouble, static_cast<Type::StorageType>(15))})
    {
        StringBufferTemplate<wchar_t, 64> tBuffer;
        tBuffer.append(L"kept");
        EXPECT_THROW(ValueFormatterUtils::valueToBuffer(&nValue, tType, tBuffer), InvalidHandleException)
            << tType.name();
        EXPECT_THROW(ValueFormatterUtils::valueToBuffer(nullptr, tType, tBuffer), InvalidHandleException)
            << tType.name();
        EXPECT_EQ(tBuffer.toString(), L"kept") << tType.name();
    }
    ASSERT_EQ(tAssertions.count(), 12u);
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/valueformatter");
}

// There is one formatter for texts and one for dates; they would read a number as what they know.
TEST(ValueFormatterUtils, ThrowsForTextsAndDatesThatAreHeldAsSomethingElse)
{
    const double fValue = 1;
    for (const SQLDataType& tType :
         {Type(Type::kVarChar, Type::kStorageDouble), Type(Type::kDate, Type::kStorageWChar),
          Type(Type::kTimeStamp, Type::kStorageDouble), Type(Type::kTime, Type::kStorageInvalid)})
        EXPECT_THROW(plain(&fValue, tType), InvalidHandleException) << tType.name();
}

TEST(ValueFormatterUtils, FollowsTheConfiguredSignificantDigits)
{
    const Values t;
    EXPECT_EQ(plain(&t.fReal, Type(Type::kDouble)), L"1234.50");
    FormatterConfig& tConfig = FormatterConfig::getInstance();
    const int nBefore = tConfig.getNumericFormatterMaxSignificantDigits();
    for (const int nDigits : {1, 2, 4, 5})
    {
        tConfig.setMaxSignificantDigitsForTestsOnly(nDigits);
        for (const SQLDataType& tType : {Type(Type::kDouble), Type(Type::kInteger, Type::kStorageDouble)})
            EXPECT_EQ(plain(&t.fReal, tType),
                      WebValueFormatter::GetDefaultFormatter(tType, Locale::kUSA, ValueFormatterTypes::kText, 0, 0,
                                                             KTWUILanguage::kDefaultLanguage)
                          ->formatAsString(&t.fReal))
                << nDigits;
    }
    tConfig.setMaxSignificantDigitsForTestsOnly(nBefore);
    EXPECT_EQ(plain(&t.fReal, Type(Type::kDouble)), L"1234.50");
}

TEST(ValueFormatterUtils, WritesIntoFreeRoomWithoutAllocating)
{
    const Values t;
    StringBufferTemplate<wchar_t, 256> tBuffer;
    ValueFormatterUtils::valueToBuffer(&t.nInt, Type(Type::kInteger), tBuffer);
    const AllocationCounter tCounter;
    ValueFormatterUtils::valueToBuffer(&t.nInt, Type(Type::kInteger), tBuffer);
    ValueFormatterUtils::valueToBuffer(&t.fReal, Type(Type::kDouble), tBuffer);
    ValueFormatterUtils::valueToBuffer(t.pText, Type(Type::kVarChar), tBuffer);
    ValueFormatterUtils::valueToBuffer(&t.tMoment, Type(Type::kTimeStamp), tBuffer);
    ValueFormatterUtils::valueToBuffer(&t.tMoment, Type(Type::kBinary), tBuffer);
    EXPECT_EQ(tCounter.count(), 0u);
}

TEST(ValueFormatterUtils, WritesTheSameFromManyThreadsAtOnce)
{
    const Values t;
    std::vector<int> vWrong(8);
    std::vector<std::thread> vThreads;
    for (int& nWrong : vWrong)
    {
        vThreads.emplace_back(
            [&t, &nWrong]
            {
                for (int nTime = 0; nTime < 2000; ++nTime)
                    nWrong += plain(&t.nInt, Type(Type::kInteger)) != L"-1234" ||
                              plain(&t.tMoment, Type(Type::kDate)) != L"2024-03-05";
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(vWrong, std::vector<int>(8));
}

}  // namespace
}  // namespace tov
