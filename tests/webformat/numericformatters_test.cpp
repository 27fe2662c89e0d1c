#include <gtest/gtest.h>

#include "intl/localetaglookup.h"
#include "project/webformat/numericdefinitionpattern.h"
#include "support/collected.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatters.h"
#include "webformat/formatterconfig.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;
using NegativeFormat = WebNumberFormatDefinitionBase::NegativeFormat;
using Parameters = WebValueFormatDefinition::FormatParameters;
using Doubles = NumericFormatter<double>;

constexpr NegativeFormat kMinus = WebNumberFormatDefinitionBase::kMinus;
constexpr NegativeFormat kRed = WebNumberFormatDefinitionBase::kRed;
constexpr NegativeFormat kParens = WebNumberFormatDefinitionBase::kParens;
constexpr NegativeFormat kRedParens = WebNumberFormatDefinitionBase::kRedParens;
constexpr NegativeFormat kRedMinus = WebNumberFormatDefinitionBase::kRedMinus;
constexpr NegativeFormat kNegativeFormatEnd_ = WebNumberFormatDefinitionBase::kNegativeFormatEnd_;

struct PatternRow
{
    int nLine;
    NegativeFormat eFormat;
    bool bCommas;
    unsigned nMin;
    unsigned nMax;
    int nScale;
    const wchar_t* pScaleFactor;
    const wchar_t* pExpected;
};

constexpr PatternRow kPatternRows[] = {
    {__LINE__, kMinus, false, 0, 0, 0, L"", L"#0;-#0"},
    {__LINE__, kMinus, true, 1, 3, 0, L"", L"#,##0.0##;-#,##0.0##"},
    {__LINE__, kMinus, false, 2, 0, 0, L"", L"#0;-#0"},
    {__LINE__, kMinus, false, 3, 2, 0, L"", L"#0.000;-#0.000"},
    {__LINE__, kMinus, false, 20, 25, 0, L"", L"#0.0000000000000000#####;-#0.0000000000000000#####"},
    {__LINE__, kMinus, false, 0, 40, 0, L"", L"#0.################;-#0.################"},
    {__LINE__, kMinus, false, 0, 0xFFFFFFFF, 0, L"", L"#0.################;-#0.################"},
    {__LINE__, kRed, false, 0, 0, 0, L"", L"#0;[red]#0"},
    {__LINE__, kParens, true, 2, 2, 0, L"", L"#,##0.00;(#,##0.00)"},
    {__LINE__, kRedParens, true, 2, 2, 0, L"", L"#,##0.00;[red](#,##0.00)"},
    {__LINE__, kRedMinus, false, 0, 0, 0, L"", L"#0;[red]-#0"},
    {__LINE__, kMinus, false, 0, 0, -3, L"", L"#0[scale-decimal:-3];-#0[scale-decimal:-3]"},
    {__LINE__, kRed, false, 0, 0, 0, L"million", L"#0[scale-name:million];[red]#0[scale-name:million]"},
    {__LINE__, kRed, false, 0, 0, -3, L"auto", L"#0[scale-name:auto];[red]#0[scale-name:auto]"},  // the name wins
};

WebNumberFormatDefinition definitionOf(const PatternRow& tRow)
{
    WebNumberFormatDefinition tDefinition(tRow.eFormat, tRow.bCommas, tRow.nMin, tRow.nMax);
    tDefinition.setScale(tRow.nScale);
    tDefinition.setScaleFactor(tRow.pScaleFactor);
    return tDefinition;
}

TEST(NumericDefinitionPattern, WritesEachStyle)
{
    for (const PatternRow& tRow : kPatternRows)
        EXPECT_EQ(numberPattern(definitionOf(tRow), Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
}

TEST(NumericDefinitionPattern, MarksTheMinusOfHebrewPages)
{
    const KTWUILanguage tHebrew(L"he");
    const auto patternOf = [&](NegativeFormat eFormat)
    { return numberPattern(WebNumberFormatDefinition(eFormat, false, 0, 0), Locale::kUSA, kHTML, tHebrew); };
    EXPECT_EQ(patternOf(kMinus), L"#0;\"&#x200e;\"-#0");
    EXPECT_EQ(patternOf(kRedMinus), L"#0;[red]\"&#x200e;\"-#0");
    EXPECT_EQ(patternOf(kParens), L"#0;(#0)");
}

TEST(NumericDefinitionPattern, ReportsAStyleThatIsNone)
{
    const CollectedAssertions tAssertions;
    const WebNumberFormatDefinition tDefinition(kNegativeFormatEnd_, false, 0, 0);
    EXPECT_EQ(numberPattern(tDefinition, Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage), L"#0");
    ASSERT_EQ(tAssertions.all().size(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "false");
}

TEST(NumericDefinitionPattern, PutsThePercentSignWhereTheLocaleHasIt)
{
    const WebPercentFormatDefinition tDefinition(kMinus, true, 1, 1);
    const auto patternIn = [&](const wchar_t* pTag) {
        return percentPattern(tDefinition, LocaleTagLookup::lookupOrDefault(pTag), kText,
                              KTWUILanguage::kDefaultLanguage);
    };
    EXPECT_EQ(patternIn(L"en-US"), L"#,##0.0%;-#,##0.0%");
    EXPECT_EQ(patternIn(L"tr-TR"), L"% #,##0.0;-% #,##0.0");
    EXPECT_EQ(patternIn(L"de-DE"), L"#,##0.0%;-#,##0.0%")
        << "a blank before a sign behind the number is not taken over";
}

template <class T>
String formatWith(const WebValueFormatDefinition& tDefinition, const T& tValue, const Locale& tLocale = Locale::kUSA)
{
    return NumericFormatter<T>::CreateFormatter(tDefinition, tLocale, kText, KTWUILanguage::kDefaultLanguage)
        ->formatAsString(&tValue);
}

TEST(NumericFormatter, ShowsValuesAsTheirDefinitionSays)
{
    EXPECT_EQ(formatWith(WebNumberFormatDefinition(kParens, true, 2, 2), -1234.5), L"(1,234.50)");
    EXPECT_EQ(formatWith(WebNumberFormatDefinition(kRed, false, 0, 0), -5.0), L"5");
    EXPECT_EQ(formatWith(WebNumberFormatDefinition(kMinus, false, 2, 2), -0.5), L"-0.50");
    EXPECT_EQ(formatWith(WebPercentFormatDefinition(kMinus, false, 0, 0), 45), L"45%");
    EXPECT_EQ(formatWith(WebCustomFormatDefinition(L"0;n"), -5), L"n");
    const PatternRow tThousands{0, kMinus, false, 0, 1, -3, L"", nullptr};
    EXPECT_EQ(formatWith(definitionOf(tThousands), 2500L), L"2.5");
}

TEST(NumericFormatter, HasNoFormatterForOtherFamilies)
{
    const auto isNull = [](const WebValueFormatDefinition& tDefinition)
    { return Doubles::CreateFormatter(tDefinition, Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage).isNull(); };
    EXPECT_TRUE(isNull(WebTextFormatDefinition(WebTextFormatDefinition::kPlainText)));
    EXPECT_TRUE(isNull(WebDateFormatDefinition(WebDateFormatDefinition::kShortDate)));
    EXPECT_FALSE(isNull(WebCurrencyFormatDefinition(L"EUR", kMinus, true, 2, 2)));
    EXPECT_FALSE(isNull(WebWhistlerFormatDefinition(L"0")));
}

struct DefaultRow
{
    int nLine;
    Doubles::FormatAs eFormatAs;
    Parameters tParameters;
    const wchar_t* pExpected;
};

const DefaultRow kDefaultRows[] = {
    {__LINE__, Doubles::kDisplayAsInteger, {}, L"#0"},
    {__LINE__, Doubles::kDisplayAsInteger, {2, 2, Parameters::kNoZeroOverride, L""}, L"#0"},
    {__LINE__, Doubles::kDisplayAsInteger, {0, 0, Parameters::kNoZeroOverride, L"million"}, L"#0[scale-name:million]"},
    {__LINE__, Doubles::kDisplayAsInteger, {0, 0, Parameters::kNoZeroOverride, L"  "}, L"#0"},
    {__LINE__, Doubles::kDisplayAsReal, {}, L"#0.00;-#0.00"},
    {__LINE__, Doubles::kDisplayAsReal, {0, 0, Parameters::kZeroOverride, L""}, L"#0;-#0"},
    {__LINE__, Doubles::kDisplayAsReal, {1, 3, Parameters::kNoZeroOverride, L""}, L"#0.0##;-#0.0##"},
    {__LINE__, Doubles::kDisplayAsReal, {0, 3, Parameters::kNoZeroOverride, L""}, L"#0.###;-#0.###"},
    {__LINE__,
     Doubles::kDisplayAsReal,
     {0, 0, Parameters::kNoZeroOverride, L"auto"},
     L"#0.00[scale-name:auto];-#0.00[scale-name:auto]"},
    {__LINE__,
     Doubles::kDisplayAsRealFullPrecision,
     {},
     L"#0.0##############;-#0.0##############"},  // 15 significant digits cap the 17
};

TEST(NumericFormatter, HasADefaultForValuesWithoutADefinition)
{
    for (const DefaultRow& tRow : kDefaultRows)
        EXPECT_EQ(Doubles::CreateDefaultFormatter(tRow.eFormatAs, Locale::kUSA, kText, tRow.tParameters,
                                                  KTWUILanguage::kDefaultLanguage)
                      ->GetCustomFormatString(),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
}

template <class T>
String defaultPattern(typename NumericFormatter<T>::FormatAs eFormatAs)
{
    return NumericFormatter<T>::CreateDefaultFormatter(eFormatAs, Locale::kUSA, kText, Parameters(),
                                                       KTWUILanguage::kDefaultLanguage)
        ->GetCustomFormatString();
}

TEST(NumericFormatter, CapsTheDigitsOfADefaultByTheTypesPrecision)
{
    EXPECT_EQ(defaultPattern<int>(NumericFormatter<int>::kDisplayAsReal), L"#0;-#0");
    EXPECT_EQ(defaultPattern<CorvidNumber>(NumericFormatter<CorvidNumber>::kDisplayAsReal),
              L"#0.00################;-#0.00################");
}

TEST(NumericFormatter, ReportsADefaultThatIsNone)
{
    const CollectedAssertions tAssertions;
    EXPECT_TRUE(Doubles::CreateDefaultFormatter(static_cast<Doubles::FormatAs>(3), Locale::kUSA, kText, Parameters(),
                                                KTWUILanguage::kDefaultLanguage)
                    .isNull());
    ASSERT_EQ(tAssertions.all().size(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "not expected");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/numericformatterimpl");
}

TEST(NumericFormatter, KnowsPrecisionAndStorageOfEachType)
{
    using Decimals = NumericFormatter<CorvidNumber>;
    EXPECT_EQ(Doubles::getPrecision(Doubles::kDisplayAsInteger), 0u);
    EXPECT_EQ(Doubles::getPrecision(Doubles::kDisplayAsReal), 2u);
    EXPECT_EQ(Doubles::getPrecision(Doubles::kDisplayAsRealFullPrecision), 15u);
    EXPECT_EQ(Doubles::getPrecision(static_cast<Doubles::FormatAs>(7)), 2u);
    EXPECT_EQ(Decimals::getPrecision(Decimals::kDisplayAsInteger), 38u);
    EXPECT_EQ(NumericFormatter<int>::getPrecision(NumericFormatter<int>::kDisplayAsReal), 0u);
    EXPECT_EQ(NumericFormatter<unsigned long>::getPrecision(NumericFormatter<unsigned long>::kDisplayAsReal), 0u);
    FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(1);
    EXPECT_EQ(Doubles::getPrecision(Doubles::kDisplayAsReal), 1u);
    FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(20);
    EXPECT_EQ(Doubles::getPrecision(Doubles::kDisplayAsRealFullPrecision), 17u);
    FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(15);
    EXPECT_EQ(Doubles::storageTypeForNumericType(), SQLDataType::kStorageDouble);
    EXPECT_EQ(NumericFormatter<int>::storageTypeForNumericType(), SQLDataType::kStorageInt32);
    EXPECT_EQ(NumericFormatter<long>::storageTypeForNumericType(), SQLDataType::kStorageInt64);
    EXPECT_EQ(NumericFormatter<unsigned>::storageTypeForNumericType(), SQLDataType::kStorageUInt32);
    EXPECT_EQ(NumericFormatter<unsigned long>::storageTypeForNumericType(), SQLDataType::kStorageUInt64);
    EXPECT_EQ(Decimals::storageTypeForNumericType(), SQLDataType::kStorageCorvidNumber);
}

}  // namespace

}  // namespace tov
