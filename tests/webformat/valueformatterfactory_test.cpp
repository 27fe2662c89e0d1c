#include <gtest/gtest.h>

#include <climits>
#include <memory>
#include <string>
#include <vector>

#include "corefacade/corvidnumber.h"
#include "corefacade/rawvalue.h"
#include "support/allocationcounter.h"
#include "support/collected.h"
#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"
#include "webformat/rawvalueformatter.h"

namespace tov {
namespace {

using Formatter = WebValueFormatter;
using FormatParameters = WebValueFormatDefinition::FormatParameters;
using Type = SQLDataType;

constexpr Formatter::OutputType kText = Formatter::kText;

const KTWUILanguage& language()
{
    return KTWUILanguage::kDefaultLanguage;
}

// Writes the text it is given; long enough texts leave the inline buffers.
class EchoFormatter final : public WebValueFormatter
{
public:
    EchoFormatter() : WebValueFormatter(SQLDataType::kStorageWChar) {}
    OutputType outputType() const override { return kText; }
    String GetCustomFormatString() const override { return L"echo"; }
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override
    {
        tBuffer.append(pValue ? static_cast<const wchar_t*>(pValue) : L"null");
    }
};

WebValueFormatterHandle echo()
{
    return new EchoFormatter;
}

class CollectingStream final : public WebOutputStream
{
public:
    void write(const wchar_t* pStart, std::size_t nLength, const wchar_t* pEnd) override
    {
        m_vTexts.emplace_back(pStart, nLength);
        m_bTerminated = pStart + nLength == pEnd && *pEnd == L'\0';
    }

    std::vector<String> m_vTexts;
    bool m_bTerminated = false;
};

// What the formatter makes of 7, held in its own storage.
String formatSeven(const WebValueFormatterHandle& hFormatter)
{
    const double dSeven = 7;
    const int nSeven = 7;
    const unsigned nUnsigned = 7;
    const long nLong = 7;
    const unsigned long nUnsignedLong = 7;
    const CorvidNumber tSeven(7);
    switch (hFormatter->valueStorageType())
    {
    case Type::kStorageDouble: return hFormatter->formatAsString(&dSeven);
    case Type::kStorageInt32: return hFormatter->formatAsString(&nSeven);
    case Type::kStorageUInt32: return hFormatter->formatAsString(&nUnsigned);
    case Type::kStorageInt64: return hFormatter->formatAsString(&nLong);
    case Type::kStorageUInt64: return hFormatter->formatAsString(&nUnsignedLong);
    case Type::kStorageCorvidNumber: return hFormatter->formatAsString(&tSeven);
    default: return L"no number";
    }
}

// The answers of a factory that finds no formatter: a null handle, and so many assertions of the factory's own.
void expectNone(const WebValueFormatterHandle& hFormatter, const CollectedAssertions& tAssertions,
                std::size_t nAssertions, int nLine)
{
    EXPECT_TRUE(hFormatter.isNull()) << "row at line " << nLine;
    ASSERT_EQ(tAssertions.count(), nAssertions) << "row at line " << nLine;
    for (const CollectedAssertion& tAssertion : tAssertions.all())
    {
        EXPECT_EQ(tAssertion.sExpression, "false") << "row at line " << nLine;
        EXPECT_EQ(tAssertion.sSource, "webformat/valueformatter") << "row at line " << nLine;
        EXPECT_GT(tAssertion.nLine, 0) << "row at line " << nLine;
    }
}

TEST(ValueFormatter, FormatsIntoStringsShortAndLong)
{
    for (const std::size_t nLength : {0u, 1u, 255u, 256u, 257u, 512u, 5000u})
    {
        const String sText(nLength, L'x');
        EXPECT_EQ(echo()->formatAsString(sText.c_str()), sText);
    }
}

TEST(ValueFormatter, FormatsIntoStreamsWithOneTerminatedWrite)
{
    for (const std::size_t nLength : {0u, 1u, 511u, 512u, 5000u})
    {
        const String sText(nLength, L'x');
        CollectingStream tStream;
        echo()->FormatToStream(tStream, sText.c_str());
        EXPECT_EQ(tStream.m_vTexts, std::vector<String>{sText});
        EXPECT_TRUE(tStream.m_bTerminated) << nLength;
    }
}

TEST(ValueFormatter, AllocatesNothingForTextsThatFitItsInlineBuffers)
{
    const WebValueFormatterHandle hFormatter = echo();
    const String sStream(511, L'x');
    const String sString(256, L'x');
    const String sTooLong(257, L'x');
    struct NullStream final : WebOutputStream
    {
        void write(const wchar_t*, std::size_t, const wchar_t*) override {}
    } tStream;

    const AllocationCounter tStreamed;
    hFormatter->FormatToStream(tStream, sStream.c_str());
    EXPECT_EQ(tStreamed.count(), 0u);

    const AllocationCounter tOwn;  // the returned string's
    hFormatter->formatAsString(sString.c_str());
    EXPECT_EQ(tOwn.count(), 1u);

    const AllocationCounter tSpilled;
    hFormatter->formatAsString(sTooLong.c_str());
    EXPECT_EQ(tSpilled.count(), 2u);

    const AllocationCounter tShort;  // short strings live in themselves
    hFormatter->formatAsString(L"ab");
    EXPECT_EQ(tShort.count(), 0u);
}

TEST(ValueFormatter, AppendsThroughEveryEntryPoint)
{
    const WebValueFormatterHandle hFormatter = echo();
    StringBufferTemplate<wchar_t, 64> tBuffer;
    hFormatter->formatToBuffer(tBuffer, L"a");
    hFormatter->FormatToBuffer(tBuffer, L"b");
    hFormatter->checkedFormatToBuffer(tBuffer, L"c", Type::kStorageWChar);
    hFormatter->checkedFormatToBuffer(tBuffer, nullptr, Type::kStorageWChar);
    hFormatter->formatExcelValueToBuffer(tBuffer, L"d");
    EXPECT_EQ(tBuffer.toString(), L"abcnulld");
}

TEST(ValueFormatter, RefusesValuesOfAnotherStorageWhenItIsTold)
{
    const CollectedAssertions tAssertions;
    StringBufferTemplate<wchar_t, 64> tBuffer;
    const int nValue = 7;
    echo()->checkedFormatToBuffer(tBuffer, &nValue, Type::kStorageInt32);
    EXPECT_TRUE(tBuffer.empty());
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "eStorage == m_eValueStorageType");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/valueformatter");
}

TEST(ValueFormatter, IsAValidExcelPatternWithoutAMaskOfItsOwnUnlessAFamilySaysOtherwise)
{
    String sMask = L"#,##0";
    EXPECT_TRUE(echo()->IsValidExcelPattern());
    EXPECT_FALSE(echo()->checkAndReplaceFormatMaskForExcel(sMask));
    EXPECT_EQ(sMask, L"#,##0");
}

TEST(ValueFormatter, KeepsTheHostsSwitchForFormulas)
{
    EXPECT_FALSE(Formatter::getEscapeExcelFormulas());
    Formatter::setEscapeExcelFormulas(true);
    EXPECT_TRUE(Formatter::getEscapeExcelFormulas());
    Formatter::setEscapeExcelFormulas(false);
    EXPECT_FALSE(Formatter::getEscapeExcelFormulas());
}

TEST(ValueFormatter, IsOwnedByItsHandles)
{
    const WebValueFormatterHandle hFirst = echo();
    EXPECT_EQ(hFirst->referenceCount(), 1u);
    {
        const WebValueFormatterHandle hSecond = hFirst;
        EXPECT_EQ(hFirst->referenceCount(), 2u);
    }
    EXPECT_EQ(hFirst->referenceCount(), 1u);
    EXPECT_THROW(static_cast<void>(WebValueFormatterHandle()->outputType()), InvalidHandleException);
}

struct DefaultRow
{
    int nLine;
    Type tType;
    const wchar_t* pPattern;  // null: no formatter
    std::size_t nAssertions;
};

const DefaultRow kDefaults[] = {
    {__LINE__, Type(Type::kInvalid), nullptr, 1},
    {__LINE__, Type(Type::kUnknown), nullptr, 1},
    {__LINE__, Type(Type::kBit), L"#0", 0},
    {__LINE__, Type(Type::kTinyInt), L"#0", 0},
    {__LINE__, Type(Type::kSmallInt), L"#0", 0},
    {__LINE__, Type(Type::kInteger), L"#0", 0},
    {__LINE__, Type(Type::kUnsignedInteger), L"#0", 0},
    {__LINE__, Type(Type::kInteger, Type::kStorageDouble), L"#0", 0},
    {__LINE__, Type(Type::kInteger, Type::kStorageCorvidNumber), L"#0", 0},
    {__LINE__, Type(Type::kDouble, Type::kStorageInt32), L"#0;-#0", 0},  // integers have no fraction digits
    {__LINE__, Type(Type::kReal), L"#0.00;-#0.00", 0},
    {__LINE__, Type(Type::kFloat), L"#0.00;-#0.00", 0},
    {__LINE__, Type(Type::kDouble), L"#0.00;-#0.00", 0},
    {__LINE__, Type(Type::kNumeric), L"#0.00################;-#0.00################", 0},
    {__LINE__, Type(Type::kDecimal), L"#0.00################;-#0.00################", 0},
    // 64-bit integers are for custom formats and exports.
    {__LINE__, Type(Type::kBigInt), nullptr, 1},
    {__LINE__, Type(Type::kUnsignedBigInt), nullptr, 1},
    {__LINE__, Type(Type::kDouble, Type::kStorageInt64), nullptr, 1},
    {__LINE__, Type(Type::kInteger, Type::kStorageWChar), nullptr, 1},
    {__LINE__, Type(Type::kInteger, Type::kStorageInvalid), nullptr, 1},
    {__LINE__, Type(Type::kDecimal, Type::kStorageRawValue), nullptr, 1},
    {__LINE__, Type(Type::kDouble, static_cast<Type::StorageType>(Type::kStorageTypeEnd_)), nullptr, 1},
    {__LINE__, Type(Type::kBinary), L"", 0},
    {__LINE__, Type(Type::kVarBinary), L"", 0},
    {__LINE__, Type(Type::kDate), L"M/d/yyyy", 0},
    {__LINE__, Type(Type::kTime), L"h:mm:ss tt", 0},
    {__LINE__, Type(Type::kTimeStamp), L"M/d/yyyy h:mm:ss tt", 0},
};

TEST(ValueFormatterFactory, GivesEveryTypeItsDefaultFormatter)
{
    for (const DefaultRow& tRow : kDefaults)
    {
        const CollectedAssertions tAssertions;
        const WebValueFormatterHandle hFormatter =
            Formatter::GetDefaultFormatter(tRow.tType, Locale::kUSA, kText, 0, 0, language());
        if (!tRow.pPattern)
        {
            expectNone(hFormatter, tAssertions, tRow.nAssertions, tRow.nLine);
            continue;
        }
        ASSERT_FALSE(hFormatter.isNull()) << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->GetCustomFormatString(), tRow.pPattern) << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->valueStorageType(), tRow.tType.storageType()) << "row at line " << tRow.nLine;
        EXPECT_EQ(tAssertions.count(), 0u) << "row at line " << tRow.nLine;
    }
}

TEST(ValueFormatterFactory, PassesDigitsAndScalesOnToDefaultFormatters)
{
    const Type tDouble(Type::kDouble);
    const auto patternOf = [&](const FormatParameters& tParameters)
    {
        return Formatter::GetDefaultFormatter(tDouble, Locale::kUSA, kText, tParameters, language())
            ->GetCustomFormatString();
    };
    FormatParameters tParameters;
    tParameters.nMinDigit = 1;
    tParameters.nMaxDigit = 3;
    EXPECT_EQ(patternOf(tParameters), L"#0.0##;-#0.0##");
    EXPECT_EQ(Formatter::GetDefaultFormatter(tDouble, Locale::kUSA, kText, 1, 3, language())->GetCustomFormatString(),
              L"#0.0##;-#0.0##");

    tParameters = FormatParameters();
    tParameters.eMinMaxDigitOverride = FormatParameters::kZeroOverride;
    EXPECT_EQ(patternOf(tParameters), L"#0;-#0");

    tParameters = FormatParameters();
    tParameters.sScaleFactor = L"thousand";
    EXPECT_EQ(patternOf(tParameters), L"#0.00[scale-name:thousand];-#0.00[scale-name:thousand]");
}

TEST(ValueFormatterFactory, HandsBinaryColumnsToTheRawFormatterWhateverTheDefinition)
{
    const WebValueFormatDefinitionHandle hDefinition = new WebCustomFormatDefinition(L"@");
    const WebValueFormatterHandle hFormatter =
        Formatter::GetFormatter(Type(Type::kBinary), hDefinition, Locale::kUSA, TimeZoneResolver(), Formatter::kHTML, 0,
                                0, language(), String());
    const unsigned char aBytes[] = {0x00, 0xFF};
    const RawValue tValue{2, aBytes};
    EXPECT_EQ(hFormatter->formatAsString(&tValue), L"00FF");
    EXPECT_EQ(hFormatter->outputType(), Formatter::kHTML);
}

WebValueFormatterHandle withDefinition(const Type& tType, const WebValueFormatDefinitionHandle& hDefinition,
                                       const FormatParameters& tParameters = {},
                                       const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage,
                                       Formatter::OutputType eOutput = kText)
{
    return Formatter::getFormatter(tType, hDefinition, Locale::kUSA, TimeZoneResolver(), eOutput, tParameters,
                                   tLanguage, String());
}

WebValueFormatDefinitionHandle grouped()
{
    return new WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kParens, true, 2, 2);
}

TEST(ValueFormatterFactory, FormatsNumbersAsTheirDefinitionSays)
{
    for (const Type& tType : {Type(Type::kInteger), Type(Type::kUnsignedInteger), Type(Type::kDouble),
                              Type(Type::kDecimal), Type(Type::kDecimal, Type::kStorageDouble)})
    {
        const WebValueFormatterHandle hFormatter = withDefinition(tType, grouped());
        ASSERT_FALSE(hFormatter.isNull());
        EXPECT_EQ(hFormatter->GetCustomFormatString(), L"#,##0.00;(#,##0.00)");
        EXPECT_EQ(formatSeven(hFormatter), L"7.00");
    }
}

TEST(ValueFormatterFactory, Refuses64BitIntegersWithADefinitionToo)
{
    const CollectedAssertions tAssertions;
    expectNone(withDefinition(Type(Type::kBigInt), grouped()), tAssertions, 1, __LINE__);
}

TEST(ValueFormatterFactory, ImposesAScaleOnACopyOfTheDefinitionOnly)
{
    FormatParameters tParameters;
    tParameters.sScaleFactor = L"million";
    const Handle<WebNumberFormatDefinition> hNumber =
        new WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, 0, 0);
    EXPECT_EQ(withDefinition(Type(Type::kDouble), hNumber, tParameters)->GetCustomFormatString(),
              L"#0[scale-name:million];-#0[scale-name:million]");
    EXPECT_EQ(hNumber->getScaleFactor(), L"");

    const Handle<WebCustomFormatDefinition> hCustom = new WebCustomFormatDefinition(L"#0.0");
    EXPECT_EQ(withDefinition(Type(Type::kDouble), hCustom, tParameters)->GetCustomFormatString(), L"#0.0");
    EXPECT_EQ(hCustom->getParameterByName(L"scaleFactor"), L"");
}

TEST(ValueFormatterFactory, LeavesTheScaleOfTheDefinitionWhereTheCallerImposesNone)
{
    Handle<WebNumberFormatDefinition, WebNumberFormatDefinition> hNumber =
        new WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, 0, 0);
    hNumber->setScaleFactor(L"thousand");
    EXPECT_EQ(withDefinition(Type(Type::kDouble), hNumber)->GetCustomFormatString(),
              L"#0[scale-name:thousand];-#0[scale-name:thousand]");
}

// Kept: unsigned columns with a definition are formatted in the default language. A negative section in Hebrew HTML
// holds a direction mark, which tells the languages apart.
TEST(ValueFormatterFactory, ReadsDefinitionsOfUnsignedColumnsInTheDefaultLanguage)
{
    const KTWUILanguage tHebrew(L"he");
    const WebValueFormatDefinitionHandle hDefinition =
        new WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, 0, 0);
    const auto patternOf = [&](Type::DataType eType)
    { return withDefinition(Type(eType), hDefinition, {}, tHebrew, Formatter::kHTML)->GetCustomFormatString(); };
    EXPECT_EQ(patternOf(Type::kInteger), L"#0;\"&#x200e;\"-#0");
    EXPECT_EQ(patternOf(Type::kDouble), L"#0;\"&#x200e;\"-#0");
    EXPECT_EQ(patternOf(Type::kDecimal), L"#0;\"&#x200e;\"-#0");
    EXPECT_EQ(patternOf(Type::kUnsignedInteger), L"#0;-#0");
    // Without a definition the caller's language counts for them too.
    EXPECT_EQ(Formatter::GetDefaultFormatter(Type(Type::kDouble, Type::kStorageUInt32), Locale::kUSA, Formatter::kHTML,
                                             0, 0, tHebrew)
                  ->GetCustomFormatString(),
              L"#0;\"&#x200e;\"-#0");
}

TEST(ValueFormatterFactory, HasNoNumericFormatterForDefinitionsOfOtherKinds)
{
    const CollectedAssertions tAssertions;
    const WebValueFormatDefinitionHandle hText = new WebTextFormatDefinition(WebTextFormatDefinition::kHTML);
    expectNone(withDefinition(Type(Type::kDouble), hText), tAssertions, 0, __LINE__);
}

struct InputRow
{
    int nLine;
    Type::DataType eType;
    const wchar_t* pPattern;  // null: no formatter
    std::size_t nAssertions;
};

constexpr InputRow kInputs[] = {
    {__LINE__, Type::kInvalid, nullptr, 1},
    {__LINE__, Type::kUnknown, nullptr, 1},
    {__LINE__, Type::kInteger, L"#0", 0},
    {__LINE__, Type::kUnsignedInteger, L"#0", 0},
    {__LINE__, Type::kBigInt, nullptr, 1},
    {__LINE__, Type::kDouble, L"#0.0##;-#0.0##", 0},
    {__LINE__, Type::kDecimal, L"#0.0##;-#0.0##", 0},
    {__LINE__, Type::kBinary, L"", 0},
};

TEST(ValueFormatterFactory, MakesInputFormatters)
{
    for (const InputRow& tRow : kInputs)
    {
        const CollectedAssertions tAssertions;
        const WebValueFormatterHandle hFormatter =
            Formatter::GetInputFormatter(Type(tRow.eType), Locale::kUSA, kText, 1, 3, language());
        if (!tRow.pPattern)
        {
            expectNone(hFormatter, tAssertions, tRow.nAssertions, tRow.nLine);
            continue;
        }
        ASSERT_FALSE(hFormatter.isNull()) << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->GetCustomFormatString(), tRow.pPattern) << "row at line " << tRow.nLine;
    }
}

TEST(ValueFormatterFactory, IgnoresTheTimeZoneForTypesWithoutTime)
{
    const TimeZoneResolver tResolver;
    const Type tDouble(Type::kDouble);
    EXPECT_EQ(Formatter::GetDefaultFormatterTZ(tDouble, Locale::kUSA, language(), tResolver, L"EST", kText)
                  ->GetCustomFormatString(),
              L"#0.00;-#0.00");
    EXPECT_EQ(Formatter::GetInputFormatterTZ(tDouble, Locale::kUSA, tResolver, L"EST", kText, language())
                  ->GetCustomFormatString(),
              L"#0.00;-#0.00");
    EXPECT_EQ(Formatter::GetCustomFormatterTZ(tDouble, L"0.0", Locale::kUSA, tResolver, kText, language(), L"EST")
                  ->GetCustomFormatString(),
              L"0.0");
}

TEST(ValueFormatterFactory, ParsesCustomPatternsForAllSixNumericStorages)
{
    for (const Type::StorageType eStorage : {Type::kStorageDouble, Type::kStorageInt32, Type::kStorageUInt32,
                                             Type::kStorageInt64, Type::kStorageUInt64, Type::kStorageCorvidNumber})
    {
        for (const Type::DataType eType : {Type::kInteger, Type::kDouble, Type::kDecimal})
        {
            const WebValueFormatterHandle hFormatter = Formatter::GetCustomFormatter(
                Type(eType, eStorage), L"\"n\"000", Locale::kUSA, Formatter::kHTML, language());
            ASSERT_FALSE(hFormatter.isNull()) << eStorage;
            EXPECT_EQ(hFormatter->valueStorageType(), eStorage);
            EXPECT_EQ(hFormatter->outputType(), Formatter::kHTML);
            EXPECT_EQ(formatSeven(hFormatter), L"n007") << eStorage;
        }
    }
}

TEST(ValueFormatterFactory, RefusesCustomPatternsForOtherStoragesAndUnknownTypes)
{
    for (const Type& tType :
         {Type(Type::kInteger, Type::kStorageInvalid), Type(Type::kInteger, Type::kStorageWChar),
          Type(Type::kDouble, Type::kStorageTimeStamp), Type(Type::kDecimal, Type::kStorageRawValue),
          Type(Type::kInvalid), Type(Type::kUnknown), Type(static_cast<Type::DataType>(Type::kDataTypeEnd_))})
    {
        const CollectedAssertions tAssertions;
        expectNone(Formatter::GetCustomFormatter(tType, L"#0", Locale::kUSA, kText, language()), tAssertions, 1,
                   __LINE__);
    }
}

struct ExportRow
{
    int nLine;
    Type tType;
    const wchar_t* pPattern;  // null: refused
};

constexpr wchar_t kReal[] = L"0.################";
constexpr wchar_t kDecimal[] = L"#0.########################################";

const ExportRow kExports[] = {
    {__LINE__, Type(Type::kBinary), L""},
    {__LINE__, Type(Type::kInteger), L"#0"},
    {__LINE__, Type(Type::kUnsignedInteger), L"#0"},
    {__LINE__, Type(Type::kBigInt), L"#0"},
    {__LINE__, Type(Type::kUnsignedBigInt), L"#0"},
    {__LINE__, Type(Type::kInteger, Type::kStorageDouble), L"#0"},
    {__LINE__, Type(Type::kInteger, Type::kStorageCorvidNumber), L"#0"},
    {__LINE__, Type(Type::kInteger, Type::kStorageWChar), nullptr},
    {__LINE__, Type(Type::kInteger, Type::kStorageInvalid), nullptr},
    {__LINE__, Type(Type::kReal), kReal},
    {__LINE__, Type(Type::kDouble), kReal},
    {__LINE__, Type(Type::kDouble, Type::kStorageInt32), kReal},
    {__LINE__, Type(Type::kDouble, Type::kStorageUInt32), kReal},
    {__LINE__, Type(Type::kDouble, Type::kStorageCorvidNumber), kDecimal},
    {__LINE__, Type(Type::kDouble, Type::kStorageInt64), nullptr},
    {__LINE__, Type(Type::kDouble, Type::kStorageUInt64), nullptr},
    {__LINE__, Type(Type::kDouble, Type::kStorageTimeStamp), nullptr},
    {__LINE__, Type(Type::kNumeric), kDecimal},
    {__LINE__, Type(Type::kDecimal), kDecimal},
    {__LINE__, Type(Type::kDecimal, Type::kStorageDouble), kReal},
    {__LINE__, Type(Type::kDecimal, Type::kStorageInt32), kReal},
    {__LINE__, Type(Type::kDecimal, Type::kStorageUInt32), kReal},
    {__LINE__, Type(Type::kDecimal, Type::kStorageInt64), nullptr},
    {__LINE__, Type(Type::kDecimal, Type::kStorageUInt64), nullptr},
    {__LINE__, Type(Type::kDate), L"yyyy-MM-dd"},
    {__LINE__, Type(Type::kTime), L"HH:mm:ss.#########"},
    {__LINE__, Type(Type::kTimeStamp), L"yyyy-MM-dd HH:mm:ss"},
    {__LINE__, Type(Type::kInvalid), nullptr},
    {__LINE__, Type(Type::kUnknown), nullptr},
};

TEST(ValueFormatterFactory, ExportsEveryTypeInItsFixedPattern)
{
    for (const ExportRow& tRow : kExports)
    {
        const CollectedAssertions tAssertions;
        const WebValueFormatterHandle hFormatter = Formatter::GetCSVFormatter(tRow.tType, Locale::kUSA, kText);
        if (!tRow.pPattern)
        {
            expectNone(hFormatter, tAssertions, 1, tRow.nLine);
            continue;
        }
        ASSERT_FALSE(hFormatter.isNull()) << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->GetCustomFormatString(), tRow.pPattern) << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->valueStorageType(), tRow.tType.storageType()) << "row at line " << tRow.nLine;
        EXPECT_EQ(tAssertions.count(), 0u) << "row at line " << tRow.nLine;
    }
}

TEST(ValueFormatterFactory, ExportsNumbersWithAllTheirDigits)
{
    const double dThird = 1.0 / 3;
    EXPECT_EQ(Formatter::GetCSVFormatter(Type(Type::kDouble), Locale::kUSA, kText)->formatAsString(&dThird),
              L"0.333333333333333");
    const CorvidNumber tLong =
        *CorvidNumber::fromString("12345678901234567890.0123456789012345678901234567890123456789");
    EXPECT_EQ(Formatter::GetCSVFormatter(Type(Type::kDecimal), Locale::kUSA, kText)->formatAsString(&tLong),
              L"12345678901234567890.0123456789012345678901234567890123456789");
    const unsigned long nLargest = ULONG_MAX;
    EXPECT_EQ(Formatter::GetCSVFormatter(Type(Type::kUnsignedBigInt), Locale::kUSA, kText)->formatAsString(&nLargest),
              L"18446744073709551615");
}

// The patterns that the display, input, custom and definition factories take for the calendar types.
TEST(ValueFormatterFactory, GivesCalendarTypesTheirFormatters)
{
    const TimeZoneResolver tResolver;
    const auto patternsOf = [&](Type::DataType eType)
    {
        const Type tType(eType);
        const WebValueFormatDefinitionHandle hLong = new WebDateFormatDefinition(WebDateFormatDefinition::kLongDate);
        String sPatterns;
        for (const WebValueFormatterHandle& hFormatter :
             {withDefinition(tType, nullptr), withDefinition(tType, hLong),
              Formatter::GetDefaultFormatterTZ(tType, Locale::kUSA, language(), tResolver, L"EST", kText),
              Formatter::GetInputFormatter(tType, Locale::kUSA, kText, 0, 0, language()),
              Formatter::GetInputFormatterTZ(tType, Locale::kUSA, tResolver, L"EST", kText, language()),
              Formatter::GetCustomFormatter(tType, L"yy TZ", Locale::kUSA, kText, language())})
        {
            EXPECT_EQ(hFormatter->valueStorageType(), Type::kStorageTimeStamp);
            sPatterns += hFormatter->GetCustomFormatString() + L"|";
        }
        return sPatterns;
    };
    const CollectedAssertions tAssertions;
    EXPECT_EQ(patternsOf(Type::kDate), L"M/d/yyyy|dddd, MMMM d, yyyy|M/d/yyyy|MM/dd/yyyy|MM/dd/yyyy|yy |");
    EXPECT_EQ(patternsOf(Type::kTime), L"h:mm:ss tt|dddd, MMMM d, yyyy|h:mm:ss tt|h:mm:ss tt|h:mm:ss tt|yy |");
    EXPECT_EQ(patternsOf(Type::kTimeStamp),
              L"M/d/yyyy h:mm:ss tt|dddd, MMMM d, yyyy|M/d/yyyy h:mm:ss tt|MM/dd/yyyy h:mm:ss tt|"
              L"MM/dd/yyyy h:mm:ss tt|yy |");
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(ValueFormatterFactory, ServesTextColumnsThroughAllFactories)
{
    const CollectedAssertions tAssertions;
    const TimeZoneResolver tResolver;
    for (const Type::DataType eType : {Type::kChar, Type::kVarChar, Type::kLongVarChar})
    {
        const Type tType(eType);
        const WebValueFormatDefinitionHandle hHtml = new WebTextFormatDefinition(WebTextFormatDefinition::kHTML);
        String sPatterns;
        for (const WebValueFormatterHandle& hFormatter :
             {Formatter::GetDefaultFormatter(tType, Locale::kUSA, kText, 0, 0, language()),
              withDefinition(tType, hHtml),
              Formatter::GetDefaultFormatterTZ(tType, Locale::kUSA, language(), tResolver, L"EST", kText),
              Formatter::GetInputFormatter(tType, Locale::kUSA, kText, 0, 0, language()),
              Formatter::GetInputFormatterTZ(tType, Locale::kUSA, tResolver, L"EST", kText, language()),
              Formatter::GetCustomFormatter(tType, L"<@>", Locale::kUSA, kText, language()),
              Formatter::GetCSVFormatter(tType, Locale::kUSA, kText), Formatter::GetTypedLiteralFormatter(tType, kText),
              Formatter::getXmlValueFormatter(tType, kText)})
        {
            ASSERT_FALSE(hFormatter.isNull()) << eType;
            EXPECT_EQ(hFormatter->valueStorageType(), Type::kStorageWChar);
            EXPECT_EQ(hFormatter->outputType(), kText);
            sPatterns += hFormatter->GetCustomFormatString() + L"|";
        }
        EXPECT_EQ(sPatterns, L"@|@[html]@H|@|@|@|<@>|@|@|@|") << eType;
    }
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(ValueFormatterFactory, HasNoDefaultDefinitions)
{
    for (int nType = 0; nType < Type::kDataTypeEnd_; ++nType)
        EXPECT_TRUE(Formatter::GetDefaultFormatDefinition(Type(static_cast<Type::DataType>(nType))).isNull()) << nType;
}

TEST(ValueFormatterFactory, FormatsNumbersWithoutAllocatingMoreThanTheResult)
{
    const WebValueFormatterHandle hFormatter =
        Formatter::GetCustomFormatter(Type(Type::kDouble), L"#,##0.00", Locale::kUSA, Formatter::kHTML, language());
    StringBufferTemplate<wchar_t, 256> tBuffer;
    const double dValue = -1234567.891;
    hFormatter->formatToBuffer(tBuffer, &dValue);

    const AllocationCounter tAppended;
    hFormatter->formatToBuffer(tBuffer, &dValue);
    EXPECT_EQ(tAppended.count(), 0u);

    const AllocationCounter tReturned;
    const String sText = hFormatter->formatAsString(&dValue);
    EXPECT_LE(tReturned.count(), 1u);
    EXPECT_EQ(sText, L"-1,234,567.89");
}

}  // namespace
}  // namespace tov
