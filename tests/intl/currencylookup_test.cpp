#include <gtest/gtest.h>
#include <unicode/uloc.h>

#include <algorithm>
#include <random>
#include <thread>

#include "intl/currencydata.h"
#include "intl/currencylookup.h"
#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"

namespace tov {
namespace {

CurrencyHandle currency(const String& sTag)
{
    return CurrencyLookup::getInstance().lookupCurrencyTag(sTag);
}

// "symbol|digits|layout|minus|parens"; empty for an unknown tag.
String described(const CurrencyHandle& hCurrency)
{
    if (hCurrency.isNull())
        return String();
    String sText = hCurrency->getCurrencySymbol() + L"|" + std::to_wstring(hCurrency->getDefaultDigits()) + L"|" +
                   hCurrency->getFormat();
    for (const wchar_t* pStyle : {L"minus", L"parens"})
        sText += L"|" + hCurrency->getNegativeFormats().at(pStyle).getFormat();
    return sText;
}

struct Row
{
    int nLine;
    const wchar_t* pTag;
    const wchar_t* pExpected;
};

constexpr Row kRows[] = {
    {__LINE__, L"loc:en-US", L"$|2|$#|-$#|($#)"},
    {__LINE__, L"int:EUR", L"EUR|2|$ #|-$ #|($ #)"},
    {__LINE__, L"EUR", L"\u20AC|2|$#|-$#|($#)"},
    // The layouts of the locale.
    {__LINE__, L"loc:de-DE", L"\u20AC|2|# $|-# $|(# $)"},
    {__LINE__, L"loc:en-GB", L"\u00A3|2|$#|-$#|($#)"},
    {__LINE__, L"loc:ja-JP", L"\uFFE5|0|$#|-$#|($#)"},
    {__LINE__, L"loc:de-CH", L"CHF|2|$ #|$-#|($ #)"},
    {__LINE__, L"loc:nl-NL", L"\u20AC|2|$ #|$ -#|($ #)"},
    {__LINE__, L"loc:fy-NL", L"\u20AC|2|$ #|$ #-|($ #)"},
    {__LINE__, L"loc:luy-KE", L"Ksh|2|$ #|$- #|($ #)"},  // a blank behind letters
    {__LINE__, L"loc:bn-BD", L"\u09F3|2|#$|-#$|(#$)"},
    {__LINE__, L"loc:he-IL", L"\u20AA|2|# $|-# $|(# $)"},  // its direction marks are gone
    {__LINE__, L"loc:ar-KW", L"\u062F.\u0643.|3|# $|-# $|(# $)"},
    // The same region in another language.
    {__LINE__, L"loc:fr-CA", L"$|2|# $|-# $|(# $)"},
    {__LINE__, L"loc:en-CA", L"$|2|$#|-$#|($#)"},
    // Digits and symbols of codes.
    {__LINE__, L"USD", L"$|2|$#|-$#|($#)"},
    {__LINE__, L"CAD", L"$|2|$#|-$#|($#)"},
    {__LINE__, L"JPY", L"\u00A5|0|$#|-$#|($#)"},
    {__LINE__, L"int:JPY", L"JPY|0|$ #|-$ #|($ #)"},
    {__LINE__, L"BHD", L"BHD|3|$#|-$#|($#)"},
    {__LINE__, L"CLF", L"CLF|4|$#|-$#|($#)"},
    {__LINE__, L"DEM", L"DEM|2|$#|-$#|($#)"},  // a currency of former times
    {__LINE__, L"XXX", L"\u00A4|2|$#|-$#|($#)"},
    // Either case, however the locale is written.
    {__LINE__, L"eur", L"\u20AC|2|$#|-$#|($#)"},
    {__LINE__, L"int:eUr", L"EUR|2|$ #|-$ #|($ #)"},
    {__LINE__, L"loc:EN-us", L"$|2|$#|-$#|($#)"},
    {__LINE__, L"loc:de_DE.UTF-8@euro", L"\u20AC|2|# $|-# $|(# $)"},
    {__LINE__, L"loc:zh-TW", L"$|2|$#|-$#|($#)"},
    {__LINE__, L"loc:und-FR", L"\u20AC|2|# $|-# $|(# $)"},
};

TEST(CurrencyLookup, KnowsLocalesAndCodes)
{
    for (const Row& tRow : kRows)
        EXPECT_EQ(toUtf8(described(currency(tRow.pTag))), toUtf8(String(tRow.pExpected)))
            << "row at line " << tRow.nLine;
}

TEST(CurrencyLookup, GroupsInThousands)
{
    for (const wchar_t* pTag : {L"loc:en-US", L"int:EUR", L"JPY"})
        EXPECT_TRUE(currency(pTag)->hasGrouping()) << toUtf8(String(pTag));
}

TEST(CurrencyLookup, KnowsNothingElse)
{
    const String aUnknown[] = {L"", L" ", L"$", L"\u20AC", L"EU", L"EURO", L"EUR ", L" EUR", L"E1R", L"ZZZ", L"QQQ",
                               L"LSM", L"loc:", L"int:", L"loc", L"LOC:en-US", L"Int:EUR", L"loc: en-US",
                               L"int:loc:en-US", L"loc:EUR", L"loc:xx-YY", L"en-US", L"loc:und", L"loc:root", L"loc:C",
                               // Without a region, or with one that has no currency of its own.
                               L"loc:en", L"loc:de", L"loc:zh-Hant", L"loc:en-001", L"loc:es-419", L"loc:en-150",
                               L"loc:ar-001", L"loc:en-AQ",
                               // Letters that are none in codes, and texts of which nothing is to be expected.
                               L"\u0130SD", L"EU\u0120", L"int:\u00C9UR", String(L"EUR\0", 4),
                               String(L"loc:en-US\0", 10), String(1'000'000, L'E'), L"loc:" + String(1'000'000, L'e'),
                               L"int:" + String(1'000'000, L'E'), L"\xFFFFFFFF\xFFFFFFFF\xFFFFFFFF"};
    for (const String& sTag : aUnknown)
        EXPECT_TRUE(currency(sTag).isNull()) << toUtf8(sTag.substr(0, 40));
}

TEST(CurrencyLookup, ListsItsCodes)
{
    const std::vector<String> vCodes = CurrencyLookup::getInstance().currencyCodes();
    EXPECT_TRUE(std::is_sorted(vCodes.begin(), vCodes.end()));
    EXPECT_TRUE(std::adjacent_find(vCodes.begin(), vCodes.end()) == vCodes.end());
    EXPECT_GT(vCodes.size(), 250u);
    EXPECT_EQ(vCodes.front(), L"ADP");
    for (const wchar_t* pCode : {L"AED", L"CHF", L"CNY", L"EUR", L"GBP", L"JPY", L"USD", L"XXX"})
        EXPECT_TRUE(std::binary_search(vCodes.begin(), vCodes.end(), pCode)) << toUtf8(String(pCode));
    for (const String& sCode : vCodes)
    {
        EXPECT_FALSE(currency(sCode).isNull()) << toUtf8(sCode);
        EXPECT_EQ(currency(L"int:" + sCode)->getCurrencySymbol(), sCode);
    }
}

// 17,576 texts: those of the list are known and no others.
TEST(CurrencyLookup, KnowsOfAllTextsOfThreeLettersThoseThatItLists)
{
    const std::vector<String> vCodes = CurrencyLookup::getInstance().currencyCodes();
    for (wchar_t n1 = L'A'; n1 <= L'Z'; ++n1)
    {
        for (wchar_t n2 = L'A'; n2 <= L'Z'; ++n2)
        {
            for (wchar_t n3 = L'A'; n3 <= L'Z'; ++n3)
            {
                const String sCode{n1, n2, n3};
                ASSERT_EQ(!currency(sCode).isNull(), std::binary_search(vCodes.begin(), vCodes.end(), sCode))
                    << toUtf8(sCode);
            }
        }
    }
}

TEST(CurrencyLookup, GivesTheSameCurrencyForEverySpelling)
{
    EXPECT_TRUE(currency(L"loc:en-US") == currency(L"loc:EN_us.UTF-8@x"));
    EXPECT_TRUE(currency(L"loc:zh-Hant-TW") == currency(L"loc:zh-TW"));
    EXPECT_TRUE(currency(L"EUR") == currency(L"eur"));
    EXPECT_TRUE(currency(L"int:EUR") == currency(L"int:eur"));
    EXPECT_FALSE(currency(L"int:EUR") == currency(L"EUR"));
    EXPECT_FALSE(currency(L"loc:de-DE") == currency(L"loc:fr-FR"));
}

TEST(CurrencyLookup, RemembersKnownTagsOnlyHoweverTheyAreWritten)
{
    currency(L"loc:en-US");
    currency(L"SEK");
    const std::size_t nBefore = rememberedCurrencies();
    std::mt19937 tRandom(7);
    for (int n = 0; n < 20'000; ++n)
    {
        String sSuffix = L"@";
        for (unsigned nLength = tRandom() % 8; nLength > 0; --nLength)
            sSuffix += static_cast<wchar_t>(L'!' + tRandom() % 90);
        EXPECT_FALSE(currency(L"loc:en-US" + sSuffix).isNull());
        currency(sSuffix);
        currency(L"int:" + sSuffix);
    }
    for (const wchar_t* pTag :
         {L"sek", L"Sek", L"SeK", L"loc:en_us", L"loc:EN-US", L"loc:en-Latn-US", L"QQQ", L"loc:en"})
        currency(pTag);
    EXPECT_EQ(rememberedCurrencies(), nBefore);
}

TEST(CurrencyLookup, SaysTheSameWhateverTheDefaultLocaleOfTheProcess)
{
    const std::string sBefore = uloc_getDefault();
    UErrorCode eStatus = U_ZERO_ERROR;
    const auto everything = []
    {
        String sAll;
        for (const char* pCode : {"EUR", "JPY", "SEK", "INR", "XAF"})
            sAll += described(readCurrency(pCode)) + described(readInternationalCurrency(pCode));
        for (const char* pId : {"en_US", "de_CH", "ar_EG", "hi_IN", "pt_CV"})
            sAll += described(readLocaleCurrency(pId));
        return sAll;
    };
    const String sExpected = everything();
    for (const char* const pDefault : {"ja_JP@calendar=japanese", "ar_EG@numbers=arab", "de_CH@currency=EUR"})
    {
        uloc_setDefault(pDefault, &eStatus);
        EXPECT_EQ(toUtf8(everything()), toUtf8(sExpected)) << pDefault;
    }
    uloc_setDefault(sBefore.c_str(), &eStatus);
    EXPECT_TRUE(U_SUCCESS(eStatus));
}

TEST(CurrencyLookup, LetsTheFirstOfManyThreadsDecide)
{
    // What the locale data's library makes for itself at first use is made: a thread checker does not see how it guards
    // that.
    currency(L"loc:en-US");
    const std::vector<String> vTags = LocaleTagLookup::allTags();
    for (std::size_t n = 0; n < vTags.size(); n += 40)
    {
        std::vector<CurrencyHandle> vFound(6);
        std::vector<std::thread> vThreads;
        for (CurrencyHandle& hFound : vFound)
            vThreads.emplace_back([&] { hFound = currency(L"loc:" + vTags[n]); });
        for (std::thread& tThread : vThreads)
            tThread.join();
        for (const CurrencyHandle& hFound : vFound)
            EXPECT_TRUE(hFound == vFound.front()) << toUtf8(vTags[n]);
    }
}

}  // namespace
}  // namespace tov
