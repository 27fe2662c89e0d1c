#include <gtest/gtest.h>

#include <thread>

#include "intl/ktwuilanguage.h"
#include "intl/localetaglookup.h"
#include "support/allocationcounter.h"
#include "support/collected.h"
#include "webbedrock/criticalsection.h"
#include "webbedrock/utf8.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;
using Base = WebNumberFormatDefinitionBase;
using CurrencyDefinition = WebCurrencyFormatDefinition;
using ConditionalDefinition = WebConditionalCurrencyFormatDefinition;
using OutputType = ValueFormatterTypes::OutputType;

const KTWUILanguage& ktLanguage = KTWUILanguage::kDefaultLanguage;

Locale localeWith(const wchar_t* pTag, const wchar_t* pOverriding)
{
    Locale tLocale = LocaleTagLookup::lookupOrDefault(pTag);
    tLocale.setOverridingCurrencyTag(pOverriding);
    return tLocale;
}

template <class T>
String formatWith(const WebValueFormatDefinition& tDefinition, const T& tValue, const Locale& tLocale = Locale::kUSA,
                  OutputType eOutput = kText)
{
    return NumericFormatter<T>::CreateFormatter(tDefinition, tLocale, eOutput, ktLanguage)->formatAsString(&tValue);
}

struct Row
{
    int nLine;
    const wchar_t* pTag;
    const wchar_t* pLocale;
    Base::NegativeFormat eFormat;
    OutputType eOutput;
    double fValue;
    const wchar_t* pExpected;
};

constexpr Row kRows[] = {
    {__LINE__, L"loc:en-US", L"en-US", Base::kMinus, kText, 1234.5, L"$1,234.50"},
    {__LINE__, L"loc:en-US", L"en-US", Base::kMinus, kText, -1234.5, L"-$1,234.50"},
    {__LINE__, L"loc:en-US", L"en-US", Base::kParens, kText, -1234.5, L"($1,234.50)"},
    {__LINE__, L"loc:en-US", L"en-US", Base::kRed, kText, -1234.5, L"$1,234.50"},
    {__LINE__, L"loc:en-US", L"en-US", Base::kRed, kHTML, -1234.5, L"<font style=\"color:red\">$1,234.50</font>"},
    {__LINE__, L"loc:en-US", L"en-US", Base::kRedParens, kHTML, -1234.5,
     L"<font style=\"color:red\">($1,234.50)</font>"},
    {__LINE__, L"loc:en-US", L"en-US", Base::kRedMinus, kPDF, -1234.5,
     L"<fo:inline color=\"red\">-$1,234.50</fo:inline>"},
    // The layout is the currency's, the separators are the locale's monetary ones.
    {__LINE__, L"loc:de-DE", L"de-DE", Base::kMinus, kText, -1234.5, L"-1.234,50 \u20AC"},
    {__LINE__, L"loc:de-DE", L"en-US", Base::kMinus, kText, -1234.5, L"-1,234.50 \u20AC"},
    {__LINE__, L"loc:de-DE", L"de-DE", Base::kMinus, kHTML, -1234.5, L"-1.234,50&nbsp;\u20AC"},
    {__LINE__, L"loc:de-AT", L"de-AT", Base::kMinus, kText, 1234.5, L"\u20AC 1.234,50"},  // elsewhere 1 234,50
    {__LINE__, L"loc:de-CH", L"de-CH", Base::kMinus, kText, -1234.5, L"CHF-1\u2019234.50"},
    {__LINE__, L"int:EUR", L"en-US", Base::kMinus, kText, 1234.5, L"EUR 1,234.50"},
    {__LINE__, L"int:EUR", L"en-US", Base::kParens, kHTML, -1234.5, L"(EUR&nbsp;1,234.50)"},
    {__LINE__, L"EUR", L"en-US", Base::kMinus, kText, 1234.5, L"\u20AC1,234.50"},
    {__LINE__, L"EUR", L"en-US", Base::kMinus, kText, 0.0, L"\u20AC0.00"},
    {__LINE__, L"EUR", L"en-US", Base::kParens, kText, -0.0, L"\u20AC0.00"},
    // Kept: the section decides by the value as it is, so what rounds to nothing keeps its sign.
    {__LINE__, L"EUR", L"en-US", Base::kParens, kText, -0.001, L"(\u20AC0.00)"},
};

TEST(CurrencyFormatters, ShowAmountsInTheirCurrency)
{
    for (const Row& tRow : kRows)
    {
        const CurrencyDefinition tDefinition(tRow.pTag, tRow.eFormat, true, 2, 2);
        EXPECT_EQ(
            toUtf8(formatWith(tDefinition, tRow.fValue, LocaleTagLookup::lookupOrDefault(tRow.pLocale), tRow.eOutput)),
            toUtf8(String(tRow.pExpected)))
            << "row at line " << tRow.nLine;
    }
}

TEST(CurrencyFormatters, ServeEveryTypeOfNumber)
{
    const CurrencyDefinition tDefinition(L"loc:en-US", Base::kParens, true, 0, 0);
    EXPECT_EQ(formatWith(tDefinition, -1234.0), L"($1,234)");
    EXPECT_EQ(formatWith(tDefinition, -1234), L"($1,234)");
    EXPECT_EQ(formatWith(tDefinition, 1234u), L"$1,234");
    EXPECT_EQ(formatWith(tDefinition, -1234L), L"($1,234)");
    EXPECT_EQ(formatWith(tDefinition, 1234UL), L"$1,234");
    EXPECT_EQ(formatWith(tDefinition, CorvidNumber(-1234)), L"($1,234)");
}

TEST(CurrencyFormatters, ScaleAsTheDefinitionSays)
{
    CurrencyDefinition tDefinition(L"loc:en-US", Base::kMinus, true, 1, 1);
    tDefinition.setScale(-3);
    EXPECT_EQ(formatWith(tDefinition, -1234567.0), L"-$1,234.6");
    tDefinition.setScaleFactor(L"million");
    EXPECT_EQ(formatWith(tDefinition, -1234567.0), L"-$1.2M");
    tDefinition.setScaleFactor(L"auto");
    EXPECT_EQ(formatWith(tDefinition, 12345.0), L"$12.3K");
}

// A definition whose tag nobody knows is still shown, as an integer, and the log says so once a formatter.
TEST(CurrencyFormatters, ShowAmountsOfAnUnknownCurrencyAsIntegers)
{
    const CurrencyDefinition tDefinition(L"nope", Base::kRedParens, true, 2, 2);
    const CollectedLog tLog;
    const WebValueFormatterHandle hFormatter =
        NumericFormatter<double>::CreateFormatter(tDefinition, Locale::kUSA, kHTML, ktLanguage);
    ASSERT_EQ(tLog.count(), 1u);
    EXPECT_EQ(tLog.all()[0].sText, L"Unknown Currency Tag nope");
    EXPECT_EQ(tLog.all()[0].eSeverity, Logger::kCriticalError);
    EXPECT_EQ(hFormatter->GetCustomFormatString(), L"#0");
    for (const double fValue : {1234.5, -1234.5})
        EXPECT_EQ(hFormatter->formatAsString(&fValue), fValue < 0 ? L"-1235" : L"1235");
    EXPECT_EQ(tLog.count(), 1u) << "values log nothing";
}

TEST(CurrencyFormatters, TakeTheLocalesOverridingCurrencyForAnUnknownTag)
{
    const CollectedLog tLog;
    const CurrencyDefinition tUnknown(L"nope", Base::kMinus, true, 2, 2);
    EXPECT_EQ(formatWith(tUnknown, -5.0, localeWith(L"en-US", L"int:EUR")), L"-EUR 5.00");
    const CurrencyDefinition tKnown(L"loc:en-US", Base::kMinus, true, 2, 2);
    EXPECT_EQ(formatWith(tKnown, -5.0, localeWith(L"en-US", L"int:EUR")), L"-$5.00") << "its own tag comes first";
    EXPECT_EQ(tLog.count(), 0u);
}

TEST(ConditionalCurrencyFormatters, TakeTheCurrencyThatComesWithTheLocale)
{
    const ConditionalDefinition tDefinition(L"int:USD", Base::kRedParens, true, 1, 2, L"Sales.Currency");
    EXPECT_EQ(formatWith(tDefinition, -1234.5, localeWith(L"en-US", L"int:EUR")), L"(EUR 1,234.5)");
    EXPECT_EQ(formatWith(tDefinition, 1234.56, localeWith(L"en-US", L"JPY")), L"\u00A51,234.56");
    EXPECT_EQ(formatWith(tDefinition, 1234.56, localeWith(L"de-DE", L"loc:de-DE")), L"1.234,56 \u20AC");
}

// The tag of the definition itself says nothing about a row.
TEST(ConditionalCurrencyFormatters, ShowRowsWithoutACurrencyAsIntegers)
{
    const ConditionalDefinition tDefinition(L"int:USD", Base::kRedParens, true, 2, 2, L"Sales.Currency");
    const CollectedLog tLog;
    EXPECT_EQ(formatWith(tDefinition, -1234.5), L"-1235");
    EXPECT_EQ(formatWith(tDefinition, 1234.4, localeWith(L"en-US", L"nope")), L"1234");
    ASSERT_EQ(tLog.count(), 2u);
    EXPECT_EQ(tLog.all()[0].sText, L"Unknown Currency Tag ");
    EXPECT_EQ(tLog.all()[1].sText, L"Unknown Currency Tag nope");
}

TEST(CustomCurrencyFormatters, TakeTheCurrencyThatComesWithTheLocaleAndItsDigits)
{
    const WebCustomFormatDefinition tDefinition(L"[$:currencyTagColumn='Sales.Currency']");
    EXPECT_EQ(formatWith(tDefinition, -1234.5, localeWith(L"en-US", L"loc:en-US")), L"-$1,234.50");
    EXPECT_EQ(formatWith(tDefinition, -1234.6, localeWith(L"en-US", L"int:JPY")), L"-JPY 1,235");
    EXPECT_EQ(formatWith(tDefinition, 1234.5, localeWith(L"en-US", L"int:BHD")), L"BHD 1,234.500");
    EXPECT_EQ(formatWith(tDefinition, 1234.5, localeWith(L"en-US", L"int:CLF"), kHTML), L"CLF&nbsp;1,234.5000");
}

TEST(CustomCurrencyFormatters, ScaleByTheirParameter)
{
    WebCustomFormatDefinition tDefinition(L"[$:currencyTagColumn=X]");
    tDefinition.setParameter(L"scaleFactor", L"million");
    EXPECT_EQ(formatWith(tDefinition, 2500000.0, localeWith(L"en-US", L"loc:en-US")), L"$2.50M");
}

TEST(CustomCurrencyFormatters, ShowRowsWithoutACurrencyAsIntegers)
{
    const WebCustomFormatDefinition tDefinition(L"[$:currencyTagColumn=X]");
    const CollectedLog tLog;
    EXPECT_EQ(formatWith(tDefinition, -1234.5), L"-1235");
    EXPECT_EQ(formatWith(tDefinition, 1234.4, localeWith(L"en-US", L"nope")), L"1234");
    ASSERT_EQ(tLog.count(), 2u) << "once a formatter";
    EXPECT_EQ(tLog.all()[1].sText, L"Unknown Currency Tag nope");
}

TEST(CustomCurrencyFormatters, AreNoOthers)
{
    EXPECT_EQ(formatWith(WebCustomFormatDefinition(L"[$:F]0.0"), 1.5, localeWith(L"en-US", L"int:EUR")), L"F1.5");
    EXPECT_EQ(formatWith(WebCustomFormatDefinition(L"0 [$:currencyTagColumn=X]"), 2.0, localeWith(L"en-US", L"EUR")),
              L"2 currencyTagColumn=X");
}

struct MaskRow
{
    int nLine;
    WebValueFormatDefinitionHandle hDefinition;
    const wchar_t* pOverriding;
    bool bReplaced;
    const wchar_t* pMask;
};

// Row by row the spreadsheet gets the currency's own pattern; a currency of the whole column is part of the style.
TEST(CurrencyFormatters, GiveTheSpreadsheetAMaskForEachRowOfAConditionalCurrency)
{
    const auto conditional = [](Base::NegativeFormat eFormat) -> WebValueFormatDefinitionHandle
    { return WEBFORMAT_NEW("tests/currencyformatters") ConditionalDefinition(L"", eFormat, true, 2, 2, L"X"); };
    const auto custom = [](const wchar_t* pPattern) -> WebValueFormatDefinitionHandle
    { return WEBFORMAT_NEW("tests/currencyformatters") WebCustomFormatDefinition(pPattern); };
    const WebValueFormatDefinitionHandle hPlain =
        WEBFORMAT_NEW("tests/currencyformatters") CurrencyDefinition(L"loc:en-US", Base::kMinus, true, 2, 2);
    const MaskRow aRows[] = {
        {__LINE__, conditional(Base::kMinus), L"loc:en-US", true, L"[$$]#,##0.00;-[$$]#,##0.00"},
        {__LINE__, conditional(Base::kRedParens), L"loc:de-DE", true, L"#,##0.00 [$\u20AC];[red](#,##0.00 [$\u20AC])"},
        {__LINE__, conditional(Base::kRed), L"int:EUR", true, L"[$EUR] #,##0.00;[red][$EUR] #,##0.00"},
        {__LINE__, custom(L"[$:currencyTagColumn=X]"), L"int:JPY", true, L"[$JPY] #,##0;-[$JPY] #,##0"},
        {__LINE__, conditional(Base::kMinus), L"nope", false, L"General"},
        {__LINE__, custom(L"[$:currencyTagColumn=X]"), L"", false, L"General"},
        {__LINE__, custom(L"[$:F]0"), L"int:JPY", false, L"General"},
        {__LINE__, hPlain, L"int:JPY", false, L"General"},
    };
    for (const MaskRow& tRow : aRows)
    {
        const CollectedLog tLog;
        const WebValueFormatterHandle hFormatter = NumericFormatter<double>::CreateFormatter(
            *tRow.hDefinition, localeWith(L"en-US", tRow.pOverriding), kXLSX, ktLanguage);
        String sMask = L"General";
        EXPECT_EQ(hFormatter->checkAndReplaceFormatMaskForExcel(sMask), tRow.bReplaced) << "row at line " << tRow.nLine;
        EXPECT_EQ(toUtf8(sMask), toUtf8(String(tRow.pMask))) << "row at line " << tRow.nLine;
        EXPECT_TRUE(hFormatter->IsValidExcelPattern()) << "row at line " << tRow.nLine;
    }
}

TEST(CurrencyFormatters, PickConditionalsBeforePlainOnesInTheGenericFactory)
{
    const ConditionalDefinition tConditional(L"int:USD", Base::kMinus, false, 0, 0, L"X");
    const WebCurrencyFormatDefinition& tAsCurrency = tConditional;
    EXPECT_EQ(formatWith(tConditional, 5, localeWith(L"en-US", L"int:EUR")), L"EUR 5");
    const int nFive = 5;
    EXPECT_EQ(NumericFormatter<int>::CreateFormatter(tAsCurrency, localeWith(L"en-US", L"int:EUR"), kText, ktLanguage)
                  ->formatAsString(&nFive),
              L"USD 5")
        << "asked for as a plain currency it is one";
}

TEST(CurrencyFormatters, ImposeTheCallersScaleOnAllCurrencies)
{
    WebValueFormatDefinition::FormatParameters tParameters;
    tParameters.sScaleFactor = L"million";
    const auto shown = [&](const WebValueFormatDefinitionHandle& hDefinition)
    {
        const double fValue = 2500000;
        return WebValueFormatter::getFormatter(SQLDataType(SQLDataType::kDouble), hDefinition,
                                               localeWith(L"en-US", L"loc:en-US"), TimeZoneResolver(), kText,
                                               tParameters, ktLanguage, L"")
            ->formatAsString(&fValue);
    };
    EXPECT_EQ(shown(WEBFORMAT_NEW("t") CurrencyDefinition(L"EUR", Base::kMinus, false, 1, 1)), L"\u20AC2.5M");
    EXPECT_EQ(shown(WEBFORMAT_NEW("t") ConditionalDefinition(L"", Base::kMinus, false, 1, 1, L"X")), L"$2.5M");
    EXPECT_EQ(shown(WEBFORMAT_NEW("t") WebCustomFormatDefinition(L"[$:currencyTagColumn=X]")), L"$2.50M");
    // An older definition has nowhere to put it.
    EXPECT_EQ(shown(WEBFORMAT_NEW("t") WebWhistlerFormatDefinition(L"$#,##0.0")), L"$2,500,000.0");
}

TEST(CurrencyFormatters, AllocateNothingForAValue)
{
    const CurrencyDefinition tDefinition(L"loc:de-DE", Base::kRedParens, true, 2, 2);
    const WebValueFormatterHandle hFormatter = NumericFormatter<double>::CreateFormatter(
        tDefinition, LocaleTagLookup::lookupOrDefault(L"de-DE"), kHTML, ktLanguage);
    StringBufferTemplate<wchar_t, 255> tBuffer;
    const AllocationCounter tCounter;
    for (const double fValue : {0.0, 1.0, -1.0, 1234.5, -1234.5, 1e15, -1e15, 0.005})
    {
        tBuffer.clear();
        hFormatter->formatToBuffer(tBuffer, &fValue);
    }
    EXPECT_EQ(tCounter.count(), 0u);
    EXPECT_EQ(toUtf8(tBuffer.view()), "0,01&nbsp;\xE2\x82\xAC");
}

TEST(CurrencyFormatters, FormatTheSameFromManyThreadsAtOnce)
{
    const CurrencyDefinition tDefinition(L"loc:sv-SE", Base::kRedMinus, true, 2, 2);
    const Locale tLocale = LocaleTagLookup::lookupOrDefault(L"sv-SE");
    const String sExpected = formatWith(tDefinition, -1234.5, tLocale, kHTML);
    std::vector<String> vShown(6);
    std::vector<std::thread> vThreads;
    for (String& sShown : vShown)
        vThreads.emplace_back([&] { sShown = formatWith(tDefinition, -1234.5, tLocale, kHTML); });
    for (std::thread& tThread : vThreads)
        tThread.join();
    for (const String& sShown : vShown)
        EXPECT_EQ(sShown, sExpected);
}

}  // namespace

}  // namespace tov
