#include "intl/locale.h"

#include <gtest/gtest.h>

#include "corefacade/datetime.h"
#include "intl/localetaglookup.h"
#include "support/allocationcounter.h"

namespace tov {
namespace {

Locale localeOf(std::wstring_view sTag)
{
    bool bFound = false;
    const Locale tLocale = LocaleTagLookup::lookupOrDefault(sTag, &bFound);
    EXPECT_TRUE(bFound);
    return tLocale;
}

// Built while static objects are built, in no known order with the library's own.
const String s_sTagAtLoad = Locale::kUSA.tag();
const Locale s_tCopyAtLoad = Locale::kUSA;

TEST(Locale, IsReadyWhileStaticObjectsAreBuilt)
{
    EXPECT_EQ(s_sTagAtLoad, L"en-US");
    EXPECT_EQ(s_tCopyAtLoad.getInfo(Locale::kDecimalSeparator), L".");
    EXPECT_EQ(Locale().tag(), L"en-US");
}

struct InfoRow
{
    int nLine;
    const wchar_t* pTag;
    Locale::StringInfo eInfo;
    const wchar_t* pExpected;
};

void expectInfos(std::initializer_list<InfoRow> tRows)
{
    for (const InfoRow& tRow : tRows)
    {
        const Locale tLocale = localeOf(tRow.pTag);
        EXPECT_EQ(tLocale.getInfo(tRow.eInfo), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tLocale.getInfoAsString(tRow.eInfo), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(Locale, WritesAmericanEnglishAsAmericansDo)
{
    expectInfos({
        {__LINE__, L"en-US", Locale::kDateShortFormat, L"M/d/yyyy"},
        {__LINE__, L"en-US", Locale::kDateLongFormat, L"dddd, MMMM d, yyyy"},
        {__LINE__, L"en-US", Locale::kTimeFormat, L"h:mm:ss tt"},
        {__LINE__, L"en-US", Locale::kDateInputFormat, L"MM/dd/yyyy"},
        {__LINE__, L"en-US", Locale::kTimeInputFormat, L"h:mm:ss tt"},
        {__LINE__, L"en-US", Locale::kAM, L"AM"},
        {__LINE__, L"en-US", Locale::kPM, L"PM"},
        {__LINE__, L"en-US", Locale::kTimeSeparator, L":"},
        {__LINE__, L"en-US", Locale::kDecimalSeparator, L"."},
        {__LINE__, L"en-US", Locale::kThousandsSeparator, L","},
        {__LINE__, L"en-US", Locale::kMonetaryDecimalSeparator, L"."},
        {__LINE__, L"en-US", Locale::kMonetaryThousandsSeparator, L","},
        {__LINE__, L"en-US", Locale::kNegativeNumberTemplate, L"-#"},
        {__LINE__, L"en-US", Locale::kPercentFormat, L"%"},
        {__LINE__, L"en-US", Locale::kPercentSymbolLocation, L"#%"},
        {__LINE__, L"en-US", Locale::kPrimaryCurrencySymbol, L"$"},
    });
}

TEST(Locale, SeparatesDigitsAsTheRegionDoes)
{
    expectInfos({
        {__LINE__, L"de-DE", Locale::kDecimalSeparator, L","},
        {__LINE__, L"de-DE", Locale::kThousandsSeparator, L"."},
        {__LINE__, L"fr-FR", Locale::kThousandsSeparator, L"\u202F"},
        {__LINE__, L"fr-CA", Locale::kThousandsSeparator, L"\u00A0"},
        {__LINE__, L"ru-RU", Locale::kThousandsSeparator, L"\u00A0"},
        {__LINE__, L"de-CH", Locale::kThousandsSeparator, L"\u2019"},
        {__LINE__, L"de-AT", Locale::kThousandsSeparator, L"\u00A0"},
        {__LINE__, L"de-AT", Locale::kMonetaryThousandsSeparator, L"."},  // money apart from other numbers
        {__LINE__, L"ar-EG", Locale::kDecimalSeparator, L"."},            // with ASCII digits
        {__LINE__, L"sv-SE", Locale::kNegativeNumberTemplate, L"-#"},     // not the locale's own U+2212
        {__LINE__, L"he-IL", Locale::kNegativeNumberTemplate, L"-#"},
    });
}

TEST(Locale, PlacesThePercentSign)
{
    expectInfos({
        {__LINE__, L"de-DE", Locale::kPercentSymbolLocation, L"# %"},
        {__LINE__, L"fr-FR", Locale::kPercentSymbolLocation, L"# %"},
        {__LINE__, L"tr-TR", Locale::kPercentSymbolLocation, L"%#"},
        {__LINE__, L"eu-ES", Locale::kPercentSymbolLocation, L"% #"},
        {__LINE__, L"he-IL", Locale::kPercentSymbolLocation, L"#%"},
        {__LINE__, L"ar-EG", Locale::kPercentSymbolLocation, L"#%"},
        {__LINE__, L"ar-EG", Locale::kPercentFormat, L"%"},  // without direction marks
        {__LINE__, L"fa-IR", Locale::kPercentFormat, L"%"},
    });
}

TEST(Locale, NamesTheCurrencyOfTheRegion)
{
    expectInfos({
        {__LINE__, L"de-DE", Locale::kPrimaryCurrencySymbol, L"\u20AC"},
        {__LINE__, L"de", Locale::kPrimaryCurrencySymbol, L"\u20AC"},
        {__LINE__, L"en-GB", Locale::kPrimaryCurrencySymbol, L"\u00A3"},
        {__LINE__, L"en-CA", Locale::kPrimaryCurrencySymbol, L"$"},
        {__LINE__, L"ru-RU", Locale::kPrimaryCurrencySymbol, L"\u20BD"},
        {__LINE__, L"de-CH", Locale::kPrimaryCurrencySymbol, L"CHF"},
        {__LINE__, L"hi-IN", Locale::kPrimaryCurrencySymbol, L"\u20B9"},
        {__LINE__, L"he-IL", Locale::kPrimaryCurrencySymbol, L"\u20AA"},
        {__LINE__, L"en-001", Locale::kPrimaryCurrencySymbol, L"\u00A4"},  // the world has no currency
    });
}

TEST(Locale, WritesDatesAndTimesAsTheRegionDoes)
{
    expectInfos({
        {__LINE__, L"de-DE", Locale::kDateShortFormat, L"dd.MM.yyyy"},
        {__LINE__, L"de-DE", Locale::kTimeFormat, L"HH:mm:ss"},
        {__LINE__, L"de-DE", Locale::kDateLongFormat, L"dddd, d. MMMM yyyy"},
        {__LINE__, L"es-ES", Locale::kDateLongFormat, L"dddd, d \"de\" MMMM \"de\" yyyy"},
        {__LINE__, L"ru-RU", Locale::kDateLongFormat, L"dddd, d [L:ru-RU;dates]MMMM[L:ru-RU] yyyy \u0433."},
        {__LINE__, L"fi-FI", Locale::kDateLongFormat, L"dddd d. [L:fi-FI;dates]MMMM[L:fi-FI] yyyy"},
        {__LINE__, L"ja-JP", Locale::kDateLongFormat, L"yyyy\u5E74M\u6708d\u65E5dddd"},
        {__LINE__, L"ar-EG", Locale::kDateShortFormat, L"d/M/yyyy"},  // without direction marks
        {__LINE__, L"ar-EG", Locale::kDateInputFormat, L"dd/MM/yyyy"},
        {__LINE__, L"fr-CA", Locale::kTimeFormat, L"HH \"h\" mm \"min\" ss \"s\""},
        {__LINE__, L"fr-CA", Locale::kTimeSeparator, L":"},
        {__LINE__, L"fi-FI", Locale::kTimeSeparator, L"."},
        {__LINE__, L"fi-FI", Locale::kTimeInputFormat, L"H.mm.ss"},
        {__LINE__, L"es-US", Locale::kAM, L"a. m."},  // U+00A0 in the locale data
        {__LINE__, L"ja-JP", Locale::kPM, L"\u5348\u5F8C"},
    });
}

TEST(Locale, NamesMonthsByThemselvesAndInsideDates)
{
    struct NameRow
    {
        int nLine;
        const wchar_t* pTag;
        Locale::NameKind eKind;
        int nIndex;
        const wchar_t* pExpected;
    };
    constexpr NameRow kRows[] = {
        {__LINE__, L"ru-RU", Locale::kNominitiveMonth, 0, L"\u044F\u043D\u0432\u0430\u0440\u044C"},
        {__LINE__, L"ru-RU", Locale::kGenetiveMonth, 0, L"\u044F\u043D\u0432\u0430\u0440\u044F"},
        {__LINE__, L"fi-FI", Locale::kNominitiveMonth, 11, L"joulukuu"},
        {__LINE__, L"fi-FI", Locale::kGenetiveMonth, 11, L"joulukuuta"},
        {__LINE__, L"en-US", Locale::kNominitiveMonth, 11, L"December"},
        {__LINE__, L"en-US", Locale::kGenetiveMonth, 11, L"December"},
        {__LINE__, L"de-DE", Locale::kAbbreviatedMonth, 0, L"Jan."},
        {__LINE__, L"en-US", Locale::kDay, 0, L"Monday"},
        {__LINE__, L"en-US", Locale::kDay, 6, L"Sunday"},
        {__LINE__, L"en-US", Locale::kAbbreviatedDay, 6, L"Sun"},
        {__LINE__, L"de-DE", Locale::kAbbreviatedDay, 0, L"Mo."},
        {__LINE__, L"en-US", Locale::kNominitiveMonth, 12, L""},
        {__LINE__, L"en-US", Locale::kNominitiveMonth, -1, L""},
        {__LINE__, L"en-US", Locale::kDay, 7, L""},
        {__LINE__, L"en-US", Locale::kAbbreviatedDay, 2'147'483'647, L""},
        {__LINE__, L"en-US", Locale::kNameKindEnd_, 0, L""},
    };
    for (const NameRow& tRow : kRows)
        EXPECT_EQ(localeOf(tRow.pTag).getName(tRow.eKind, tRow.nIndex), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(Locale, HasNoTextForAnUnknownItem)
{
    EXPECT_EQ(Locale::kUSA.getInfo(Locale::kStringInfoEnd_), L"");
    EXPECT_EQ(Locale::kUSA.getInfo(static_cast<Locale::StringInfo>(31)), L"");
}

TEST(Locale, AbbreviatesPowersOfTenByIncreasingMagnitude)
{
    struct ScaleRow
    {
        int nLine;
        const wchar_t* pTag;
        const wchar_t* pExpected;
    };
    constexpr ScaleRow kRows[] = {
        {__LINE__, L"en-US", L"thousand K;million M;billion B;trillion T;"},
        {__LINE__, L"de-DE", L"million Mio.;billion Mrd.;trillion Bio.;"},
        {__LINE__, L"es-ES", L"thousand mil;million M;trillion B;"},  // no word for a billion
        {__LINE__, L"ja-JP", L"ten-thousand \u4E07;hundred-million \u5104;trillion \u5146;"},
        {__LINE__, L"zh-CN", L"ten-thousand \u4E07;hundred-million \u4EBF;trillion \u4E07\u4EBF;"},
        {__LINE__, L"ko-KR", L"thousand \uCC9C;ten-thousand \uB9CC;hundred-million \uC5B5;trillion \uC870;"},
        {__LINE__, L"sw-KE", L"thousand elfu;million M;billion B;trillion T;"},  // in front of the digit
        {__LINE__, L"he-IL", L"thousand K;million M;billion B;trillion T;"},     // without direction marks
        {__LINE__, L"en-IN", L"thousand T;hundred-thousand L;ten-million Cr;ten-billion TCr;trillion LCr;"},
        {__LINE__, L"ak-GH", L"thousand K;million M;billion B;trillion T;"},  // has none of its own
        {__LINE__, L"fr-CA", L"thousand k;million M;billion G;trillion T;"},  // its own G
    };
    for (const ScaleRow& tRow : kRows)
    {
        String sScales;
        for (const Locale::ScaleFactor& tScale : localeOf(tRow.pTag).getScaleFactors())
            sScales += tScale.sName + L" " + tScale.sIndicator + L";";
        EXPECT_EQ(sScales, tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(Locale, CountsInLakhsAndCroresInHindi)
{
    String sScales;
    for (const Locale::ScaleFactor& tScale : localeOf(L"hi-IN").getScaleFactors())
    {
        if (tScale.sName == L"hundred-thousand" || tScale.sName == L"ten-million")
            sScales += tScale.sName + L" " + tScale.sIndicator + L";";
    }
    EXPECT_EQ(sScales, L"hundred-thousand L;ten-million Cr;");
}

TEST(Locale, UpperCasesByTheRulesOfTheLanguage)
{
    EXPECT_EQ(Locale::kUSA.mapString(Locale::kUpperCase, L"monday i"), L"MONDAY I");
    EXPECT_EQ(localeOf(L"tr-TR").mapString(Locale::kUpperCase, L"istanbul"), L"\u0130STANBUL");
    EXPECT_EQ(localeOf(L"de-DE").mapString(Locale::kUpperCase, L"stra\u00DFe"), L"STRASSE");
    EXPECT_EQ(Locale::kUSA.mapString(Locale::kUpperCase, L"\U00010428"), L"\U00010400");
    EXPECT_EQ(Locale::kUSA.mapString(Locale::kUpperCase, L""), L"");
}

TEST(Locale, AppendsTheCurrentEra)
{
    StringBufferTemplate<wchar_t, 32> tBuffer;
    tBuffer.append(L"2024 ", 5);
    Locale::kUSA.getEra(DateTime(2024, 3, 5), tBuffer);
    EXPECT_EQ(tBuffer.view(), L"2024 AD");
    tBuffer.clear();
    localeOf(L"de-DE").getEra(DateTime(), tBuffer);
    EXPECT_EQ(tBuffer.view(), L"n. Chr.");
}

TEST(Locale, CarriesACurrencyOfTheCaller)
{
    Locale tLocale = Locale::kUSA;
    EXPECT_FALSE(tLocale.hasOverridingCurrencyTag());
    EXPECT_EQ(tLocale.overridingCurrencyTag(), L"");
    tLocale.setOverridingCurrencyTag(L"loc:de-DE");
    const Locale tCopy = tLocale;
    tLocale.setOverridingCurrencyTag(L"int:USD");
    EXPECT_EQ(tCopy.overridingCurrencyTag(), L"loc:de-DE");
    EXPECT_EQ(tLocale.overridingCurrencyTag(), L"int:USD");
    EXPECT_EQ(tLocale.tag(), L"en-US");
    tLocale.setOverridingCurrencyTag(L"");
    EXPECT_FALSE(tLocale.hasOverridingCurrencyTag());
    EXPECT_FALSE(Locale::kUSA.hasOverridingCurrencyTag());
}

TEST(Locale, IsReadWithoutAllocating)
{
    const Locale tLocale = localeOf(L"fr-FR");
    std::size_t nLengths = Locale::kUSA.tag().size();
    const AllocationCounter tCounter;
    const Locale tCopy = tLocale;
    nLengths += tCopy.getInfo(Locale::kThousandsSeparator).size() + tCopy.getName(Locale::kDay, 0).size() +
                tCopy.getName(Locale::kDay, 99).size() + tCopy.getScaleFactors().size() + tCopy.tag().size() +
                Locale::kUSA.getInfo(Locale::kDecimalSeparator).size() + tCopy.overridingCurrencyTag().size();
    EXPECT_EQ(tCounter.count(), 0U);
    EXPECT_GT(nLengths, 0U);
}

TEST(Locale, KeepsItsTextsWhereTheyAre)
{
    const String* const pFirst = &localeOf(L"pt-BR").getInfo(Locale::kDecimalSeparator);
    EXPECT_EQ(&localeOf(L"pt_br").getInfo(Locale::kDecimalSeparator), pFirst);
    EXPECT_EQ(&Locale::kUSA.tag(), &localeOf(L"en-US").tag());
}

}  // namespace
}  // namespace tov
