#include <gtest/gtest.h>

#include <algorithm>
#include <set>
#include <thread>
#include <vector>

#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "project/webformat/oldnumericformats.h"
#include "support/newprocess.h"
#include "webbedrock/utf8.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using Base = WebNumberFormatDefinitionBase;

const KTWUILanguage& ktLanguage = KTWUILanguage::kDefaultLanguage;

WebValueFormatDefinitionHandle converted(const String& sFormat)
{
    return WebConvertWhistlerFormat::ConvertNumericFormat(WebWhistlerFormatDefinition(sFormat));
}

// "number minus grouped 2 2", "currency loc:en-US ...", "custom 0.00".
String described(const WebValueFormatDefinitionHandle& hDefinition)
{
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(hDefinition.getPointer()))
        return L"custom " + pCustom->GetCustomFormat();
    const auto& tNumber = dynamic_cast<const Base&>(*hDefinition);
    String sText = tNumber.streamableDefinitionName();
    if (const auto* pCurrency = dynamic_cast<const WebCurrencyFormatDefinition*>(hDefinition.getPointer()))
        sText += L" " + pCurrency->CurrencyTag();
    sText += L" " + String(Base::negativeFormatName(tNumber.GetNegativeFormat()));
    sText += tNumber.HasCommas() ? L" grouped " : L" plain ";
    return sText + std::to_wstring(tNumber.MinDigits()) + L" " + std::to_wstring(tNumber.MaxDigits());
}

struct Row
{
    int nLine;
    const wchar_t* pFormat;
    const wchar_t* pExpected;
};

constexpr Row kRows[] = {
    {__LINE__, L"#", L"number minus plain 0 16"},
    {__LINE__, L"#0", L"number minus plain 0 0"},
    {__LINE__, L"#0.0", L"number minus plain 1 1"},
    {__LINE__, L"#0.000000", L"number minus plain 6 6"},
    {__LINE__, L"##.#", L"number minus plain 0 1"},
    {__LINE__, L"##.######", L"number minus plain 0 6"},
    {__LINE__, L"#,###", L"number minus grouped 0 16"},
    {__LINE__, L"#,##0", L"number minus grouped 0 0"},
    {__LINE__, L"#,##0.00", L"number minus grouped 2 2"},
    {__LINE__, L"#,###.##", L"number minus grouped 0 2"},
    {__LINE__, L"#;[red]#", L"number red plain 0 16"},
    {__LINE__, L"#0.00;(#0.00)", L"number paren plain 2 2"},
    {__LINE__, L"#,##0.00;[red](#,##0.00)", L"number redParen grouped 2 2"},
    {__LINE__, L"#0;-#0", L"number minus plain 0 0"},
    {__LINE__, L"#0;[red]-#0", L"number red plain 0 0"},  // kept: the minus is lost
    // The prefix of a currency is never exactly "(", so parentheses are lost; the most digits are the least as well.
    {__LINE__, L"$#,##0.00;($#,##0.00)", L"currency loc:en-US minus grouped 2 2"},
    {__LINE__, L"$#,##0.00;[red]($#,##0.00)", L"currency loc:en-US red grouped 2 2"},
    {__LINE__, L"$#,##0.00;[red]$#,##0.00", L"currency loc:en-US red grouped 2 2"},
    {__LINE__, L"$#,##0.00;[red]-$#,##0.00", L"currency loc:en-US red grouped 2 2"},
    {__LINE__, L"$#0;-$#0", L"currency loc:en-US minus plain 0 0"},
    {__LINE__, L"$#", L"currency loc:en-US minus plain 16 16"},
    {__LINE__, L"$##.##", L"currency loc:en-US minus plain 2 2"},
    // Percentages keep their digits only.
    {__LINE__, L"#0%;[red](#0%)", L"percent minus plain 0 0"},
    {__LINE__, L"#,##0.00%", L"percent minus plain 2 2"},
    {__LINE__, L"#,###.######%;[red]-#,###.######%", L"percent minus plain 0 6"},
    {__LINE__, L"#%", L"percent minus plain 0 16"},
    // Anything else is a pattern of its own.
    {__LINE__, L"0.00", L"custom 0.00"},
    {__LINE__, L"", L"custom "},
    {__LINE__, L"#,##0.00 ", L"custom #,##0.00 "},
    {__LINE__, L" #", L"custom  #"},
    {__LINE__, L"##", L"custom ##"},
    {__LINE__, L"##.", L"custom ##."},
    {__LINE__, L"#0.0000000", L"custom #0.0000000"},
    {__LINE__, L"##.#######", L"custom ##.#######"},
    {__LINE__, L"#,##0;[Red]#,##0", L"custom #,##0;[Red]#,##0"},  // case counts
    {__LINE__, L"#0;#0", L"custom #0;#0"},
    {__LINE__, L"#0;(#0.0)", L"custom #0;(#0.0)"},
    {__LINE__, L"#0;-(#0)", L"custom #0;-(#0)"},
    {__LINE__, L"#0;[red]#0;", L"custom #0;[red]#0;"},
    {__LINE__, L"$#0%", L"custom $#0%"},
    {__LINE__, L"#0$", L"custom #0$"},
    {__LINE__, L"%#0", L"custom %#0"},
    {__LINE__, L"$#0;$(#0)", L"custom $#0;$(#0)"},
    {__LINE__, L"$#0;$-#0", L"custom $#0;$-#0"},
    {__LINE__, L"#0%;(#0)%", L"custom #0%;(#0)%"},
};

TEST(ConvertWhistlerNumeric, KnowsTheFormatsOfTheOlderNotation)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(described(converted(tRow.pFormat)), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(OldNumericFormats, StandInTheOrderOfTheirRule)
{
    const std::vector<OldNumericFormat>& vFormats = oldNumericFormats();
    ASSERT_EQ(vFormats.size(), 504u);
    EXPECT_EQ(vFormats[0].sPattern, L"#");
    EXPECT_EQ(vFormats[1].sPattern, L"#0");
    EXPECT_EQ(vFormats[2].sPattern, L"#0.0");
    EXPECT_EQ(vFormats[13].sPattern, L"##.######");
    EXPECT_EQ(vFormats[14].sPattern, L"#;[red]#");
    EXPECT_EQ(vFormats[28].sPattern, L"#;(#)");
    EXPECT_EQ(vFormats[42].sPattern, L"#;[red](#)");
    EXPECT_EQ(vFormats[56].sPattern, L"#;-#");
    EXPECT_EQ(vFormats[70].sPattern, L"#;[red]-#");
    EXPECT_EQ(vFormats[84].sPattern, L"#,###");
    EXPECT_EQ(vFormats[87].sPattern, L"#,##0.00");
    EXPECT_EQ(vFormats[168].sPattern, L"$#");
    EXPECT_EQ(vFormats[336].sPattern, L"#%");
    EXPECT_EQ(vFormats[503].sPattern, L"#,###.######%;[red]-#,###.######%");
    std::set<String> tPatterns;
    for (const OldNumericFormat& tFormat : vFormats)
        tPatterns.insert(tFormat.sPattern);
    EXPECT_EQ(tPatterns.size(), 504u) << "each one once";
}

TEST(OldNumericFormats, SayWhatStandsAroundNegativeNumbers)
{
    const auto row = [](const wchar_t* pPattern)
    {
        const OldNumericFormat& tFormat = *findOldNumericFormat(pPattern);
        return tFormat.tColour.value_or(L"none") + L"|" + tFormat.tNegativePrefix.value_or(L"none") + L"|" +
               tFormat.tNegativeSuffix.value_or(L"none");
    };
    EXPECT_EQ(row(L"#0"), L"none|none|none");
    EXPECT_EQ(row(L"#0;[red]#0"), L"red||");
    EXPECT_EQ(row(L"#0;(#0)"), L"|(|)");
    EXPECT_EQ(row(L"#0;[red]-#0"), L"red|-|");
    EXPECT_EQ(row(L"$#0;[red]$#0"), L"red|$|");
    EXPECT_EQ(row(L"$#0;($#0)"), L"|($|)");
    EXPECT_EQ(row(L"$#0;-$#0"), L"|-$|");
    EXPECT_EQ(row(L"#0%;[red]#0%"), L"red||%");
    EXPECT_EQ(row(L"#0%;(#0%)"), L"|(|%)");
    EXPECT_EQ(findOldNumericFormat(L"0"), nullptr);
}

// What a string of the older notation says, read off its own characters.
struct Reading
{
    explicit Reading(const String& sFormat)
    {
        const std::size_t nSemicolon = sFormat.find(L';');
        const String sPositive = sFormat.substr(0, nSemicolon);
        const String sNegative = nSemicolon == String::npos ? String() : sFormat.substr(nSemicolon + 1);
        const std::size_t nPoint = sPositive.find(L'.');
        bCurrency = sPositive.starts_with(L"$");
        bPercent = sPositive.ends_with(L"%");
        bCommas = sPositive.find(L',') != String::npos;
        nZeros = nPoint == String::npos ? 0 : std::count(sPositive.begin() + nPoint, sPositive.end(), L'0');
        nHashes = nPoint == String::npos ? 0 : std::count(sPositive.begin() + nPoint, sPositive.end(), L'#');
        // Without a zero or a point there is nothing to limit the digits.
        if (sPositive.find_first_of(L"0.") == String::npos)
            nHashes = 16;
        bRed = sNegative.starts_with(L"[red]");
        bParens = sNegative.find(L'(') != String::npos && !bCurrency;
    }

    bool bCurrency;
    bool bPercent;
    bool bCommas;
    bool bRed;
    bool bParens;
    std::ptrdiff_t nZeros;
    std::ptrdiff_t nHashes;
};

String definitionOf(const Reading& t)
{
    const String sMost = std::to_wstring(t.nZeros + t.nHashes);
    const String sDigits = std::to_wstring(t.nZeros) + L" " + sMost;
    const String sStyle = t.bParens ? (t.bRed ? L"redParen" : L"paren") : (t.bRed ? L"red" : L"minus");
    const String sGroups = t.bCommas ? L" grouped " : L" plain ";
    if (t.bPercent)
        return L"percent minus plain " + sDigits;
    if (t.bCurrency)
        return L"currency loc:en-US " + sStyle + sGroups + sMost + L" " + sMost;
    return L"number " + sStyle + sGroups + sDigits;
}

// 1234567.8912 with the digits that the format shows: the fraction is cut and rounded by hand.
String digitsOf(const Reading& t)
{
    static constexpr const wchar_t* kFractions[] = {L"", L"9", L"89", L"891", L"8912", L"89120", L"891200"};
    const std::ptrdiff_t nPlaces = t.bCurrency ? t.nZeros + t.nHashes : std::max(t.nZeros, t.nHashes);
    String sFraction = nPlaces > 6 ? L"8912" : kFractions[nPlaces];
    const bool bAllShown = t.bCurrency || t.nZeros > 0;
    if (!bAllShown)
        sFraction = sFraction.substr(0, sFraction.find(L'0'));
    else if (nPlaces > 6)
        sFraction.resize(static_cast<std::size_t>(nPlaces), L'0');
    const bool bGroups = t.bCommas && !t.bPercent;
    const String sWhole = nPlaces == 0 ? (bGroups ? L"1,234,568" : L"1234568") : (bGroups ? L"1,234,567" : L"1234567");
    return sFraction.empty() ? sWhole : sWhole + L"." + sFraction;
}

String shownNegative(const Reading& t)
{
    if (t.bPercent)
        return L"-" + digitsOf(t) + L"%";
    const String sAmount = (t.bCurrency ? L"$" : L"") + digitsOf(t);
    if (t.bParens)
        return L"(" + sAmount + L")";
    return t.bRed ? sAmount : L"-" + sAmount;
}

String excelDigits(const Reading& t)
{
    const String sFraction =
        String(static_cast<std::size_t>(t.nZeros), L'0') + String(static_cast<std::size_t>(t.nHashes), L'#');
    const String sWhole = t.bCommas && !t.bPercent ? L"#,##0" : L"0";
    return sFraction.empty() ? sWhole : sWhole + L"." + sFraction;
}

String excelPatternOf(const Reading& t)
{
    if (t.bPercent)
        return excelDigits(t) + L"%";
    if (t.bCurrency)
    {
        const auto nDigits = static_cast<std::size_t>(t.nZeros + t.nHashes);
        const String sAmount =
            String(L"[$$]") + (t.bCommas ? L"#,##0" : L"#0") + (nDigits == 0 ? L"" : L".") + String(nDigits, L'0');
        return sAmount + (t.bRed ? L";[red]" : L";-") + sAmount;
    }
    if (t.bParens)
        return excelDigits(t) + L"_);" + (t.bRed ? L"[red](" : L"(") + excelDigits(t) + L")";
    return excelDigits(t) + (t.bRed ? L";[red]" + excelDigits(t) : L"");
}

TEST(ConvertWhistlerNumeric, ServesEveryFormatThroughDefinitionFormatterAndExcelPattern)
{
    for (const OldNumericFormat& tFormat : oldNumericFormats())
    {
        const Reading tReading(tFormat.sPattern);
        const WebValueFormatDefinitionHandle hDefinition = converted(tFormat.sPattern);
        EXPECT_EQ(described(hDefinition), definitionOf(tReading)) << toUtf8(tFormat.sPattern);
        EXPECT_EQ(
            hDefinition->getFormatPattern(Locale::kUSA, ktLanguage, WebValueFormatDefinition::kFormatPatternNormal),
            excelPatternOf(tReading))
            << toUtf8(tFormat.sPattern);
        const WebValueFormatterHandle hFormatter = NumericFormatter<double>::CreateFormatter(
            WebWhistlerFormatDefinition(tFormat.sPattern), Locale::kUSA, ValueFormatterTypes::kText, ktLanguage);
        const double fValue = -1234567.8912;
        EXPECT_EQ(hFormatter->formatAsString(&fValue), shownNegative(tReading)) << toUtf8(tFormat.sPattern);
    }
}

TEST(ConvertWhistlerNumeric, MakesPatternsOfOtherFormats)
{
    const WebValueFormatterHandle hFormatter = NumericFormatter<int>::CreateFormatter(
        WebWhistlerFormatDefinition(L"0.0;\"less\""), Locale::kUSA, ValueFormatterTypes::kText, ktLanguage);
    for (const int nValue : {5, -5})
        EXPECT_EQ(hFormatter->formatAsString(&nValue), nValue < 0 ? L"less" : L"5.0");
}

// The converted pattern is dispatched again, so an older format may ask for the currency of the row.
TEST(ConvertWhistlerNumeric, PassesConditionalCurrenciesOn)
{
    Locale tLocale;
    tLocale.setOverridingCurrencyTag(L"int:EUR");
    const WebValueFormatterHandle hFormatter = NumericFormatter<int>::CreateFormatter(
        WebWhistlerFormatDefinition(L"[$:currencyTagColumn=X]"), tLocale, ValueFormatterTypes::kText, ktLanguage);
    const int nFive = 5;
    EXPECT_EQ(hFormatter->formatAsString(&nFive), L"EUR 5.00");
}

TEST(ConvertWhistlerNumeric, RemembersItsConversions)
{
    for (const wchar_t* pFormat : {L"#,##0.00", L"$#0", L"#0%", L"0.00 remembered"})
        EXPECT_TRUE(converted(pFormat) == converted(pFormat)) << toUtf8(String(pFormat));
    EXPECT_FALSE(converted(L"#0") == converted(L"#0;-#0"));
}

TEST(ConvertWhistlerNumeric, StopsRememberingBeforeMemoryRunsOut)
{
    expectInNewProcess(
        []
        {
            for (std::size_t n = 0; n < WebConvertWhistlerFormat::knMaxCachedNumericFormats; ++n)
                converted(std::to_wstring(n));
            const auto isKept = [](const wchar_t* pFormat) { return converted(pFormat) == converted(pFormat); };
            return isKept(L"65535") && !isKept(L"65536") && !isKept(L"#0") &&
                   described(converted(L"#0")) == L"number minus plain 0 0";
        });
}

TEST(ConvertWhistlerNumeric, LetsTheFirstOfManyThreadsDecide)
{
    for (int nRound = 0; nRound < 20; ++nRound)
    {
        const String sFormat = L"0.00 \"" + std::to_wstring(nRound) + L"\"";
        std::vector<WebValueFormatDefinitionHandle> vResults(8);
        std::vector<std::thread> vThreads;
        for (WebValueFormatDefinitionHandle& hResult : vResults)
            vThreads.emplace_back([&] { hResult = converted(sFormat); });
        for (std::thread& tThread : vThreads)
            tThread.join();
        for (const WebValueFormatDefinitionHandle& hResult : vResults)
            EXPECT_TRUE(hResult == vResults.front());
        EXPECT_EQ(described(converted(sFormat)), L"custom " + sFormat);
    }
}

}  // namespace

}  // namespace tov
