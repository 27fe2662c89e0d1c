// Every currency of every locale against direct questions to the locale data's own library, through its C interface,
// with the differences that are decided: no direction marks, plain blanks, "-" as the minus sign.

#include <gtest/gtest.h>
#include <unicode/ucurr.h>
#include <unicode/uloc.h>
#include <unicode/unumberformatter.h>
#include <unicode/ustring.h>

#include <algorithm>
#include <memory>
#include <set>

#include "intl/currencylookup.h"
#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"

namespace tov {
namespace {

String wide(std::u16string_view sText)
{
    std::string sUtf8(sText.size() * 3, '\0');
    int32_t nLength = 0;
    UErrorCode eStatus = U_ZERO_ERROR;
    u_strToUTF8(sUtf8.data(), static_cast<int32_t>(sUtf8.size()), &nLength, sText.data(),
                static_cast<int32_t>(sText.size()), &eStatus);
    return fromUtf8(sUtf8.substr(0, static_cast<std::size_t>(nLength))).value();
}

String unmarked(String sText)
{
    std::erase_if(sText, [](wchar_t t) { return t == 0x61C || t == 0x200E || t == 0x200F; });
    return sText;
}

String normalised(String sText)
{
    for (wchar_t& t : sText)
    {
        if (t == 0xA0 || t == 0x202F)
            t = L' ';
        if (t == 0x2212)
            t = L'-';
    }
    return unmarked(sText);
}

struct FormatterClose
{
    void operator()(UNumberFormatter* p) const { unumf_close(p); }
    void operator()(UFormattedNumber* p) const { unumf_closeResult(p); }
};

String formatted(int nValue, const std::u16string& sCode, const std::string& sId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const std::u16string sSkeleton = u"currency/" + sCode + u" unit-width-narrow precision-integer";
    const std::unique_ptr<UNumberFormatter, FormatterClose> pFormatter(unumf_openForSkeletonAndLocale(
        sSkeleton.c_str(), -1, (sId + "@calendar=gregorian;numbers=latn").c_str(), &eStatus));
    const std::unique_ptr<UFormattedNumber, FormatterClose> pResult(unumf_openResult(&eStatus));
    unumf_formatInt(pFormatter.get(), nValue, pResult.get(), &eStatus);
    char16_t aText[64];
    const int32_t nLength = unumf_resultToString(pResult.get(), aText, 64, &eStatus);
    EXPECT_TRUE(U_SUCCESS(eStatus)) << sId;
    return wide({aText, static_cast<std::size_t>(nLength)});
}

String filledIn(const String& sLayout, const String& sSymbol)
{
    String sResult;
    for (const wchar_t nChar : sLayout)
    {
        if (nChar == L'$')
            sResult += sSymbol;
        else
            sResult += nChar == L'#' ? L'1' : nChar;
    }
    return sResult;
}

struct Subject
{
    std::string sId;
    String sTag;
    std::u16string sCode;  // empty: none
};

// The region's currency, asked for with a language that leaves nothing but the region to decide.
std::vector<Subject> allSubjects()
{
    std::vector<Subject> vSubjects;
    for (int32_t n = 0; n < uloc_countAvailable(); ++n)
    {
        Subject tSubject{uloc_getAvailable(n), {}, {}};
        UErrorCode eStatus = U_ZERO_ERROR;
        char aTag[ULOC_FULLNAME_CAPACITY];
        uloc_toLanguageTag(tSubject.sId.c_str(), aTag, sizeof aTag, true, &eStatus);
        tSubject.sTag = fromUtf8(aTag).value();
        char aRegion[ULOC_COUNTRY_CAPACITY];
        uloc_getCountry(tSubject.sId.c_str(), aRegion, sizeof aRegion, &eStatus);
        char16_t aCode[4] = u"";
        if (*aRegion)
            ucurr_forLocale((std::string("en_") + aRegion).c_str(), aCode, 4, &eStatus);
        if (U_SUCCESS(eStatus))
            tSubject.sCode = aCode;
        vSubjects.push_back(tSubject);
    }
    return vSubjects;
}

TEST(CurrencyOracle, LocalesWriteTheirCurrencyAsTheDataSay)
{
    std::size_t nKnown = 0;
    for (const Subject& tSubject : allSubjects())
    {
        const CurrencyHandle hCurrency = CurrencyLookup::getInstance().lookupCurrencyTag(L"loc:" + tSubject.sTag);
        ASSERT_EQ(hCurrency.isNull(), tSubject.sCode.empty()) << tSubject.sId;
        if (hCurrency.isNull())
            continue;
        ++nKnown;
        UErrorCode eStatus = U_ZERO_ERROR;
        const String& sSymbol = hCurrency->getCurrencySymbol();
        EXPECT_EQ(hCurrency->getDefaultDigits(),
                  static_cast<unsigned>(ucurr_getDefaultFractionDigits(tSubject.sCode.c_str(), &eStatus)))
            << tSubject.sId;
        EXPECT_EQ(toUtf8(normalised(filledIn(hCurrency->getFormat(), sSymbol))),
                  toUtf8(normalised(formatted(1, tSubject.sCode, tSubject.sId))))
            << tSubject.sId;
        EXPECT_EQ(toUtf8(normalised(filledIn(hCurrency->getNegativeFormats().at(L"minus").getFormat(), sSymbol))),
                  toUtf8(normalised(formatted(-1, tSubject.sCode, tSubject.sId))))
            << tSubject.sId;
        EXPECT_EQ(hCurrency->getNegativeFormats().at(L"parens").getFormat(), L"(" + hCurrency->getFormat() + L")");
    }
    EXPECT_GT(nKnown, 500u);
}

// What a pattern is built from has nothing that the layouts do not know, in every locale without exception.
TEST(CurrencyOracle, LayoutsAreMadeOfNumberSymbolBlankAndMinusInEveryLocale)
{
    std::set<String> tLayouts;
    for (const Subject& tSubject : allSubjects())
    {
        const CurrencyHandle hCurrency = CurrencyLookup::getInstance().lookupCurrencyTag(L"loc:" + tSubject.sTag);
        if (hCurrency.isNull())
            continue;
        for (const String& sLayout : {hCurrency->getFormat(), hCurrency->getNegativeFormats().at(L"minus").getFormat()})
        {
            tLayouts.insert(sLayout);
            EXPECT_EQ(sLayout.find_first_not_of(L"#$ -"), String::npos) << tSubject.sId << " " << toUtf8(sLayout);
            EXPECT_EQ(std::count(sLayout.begin(), sLayout.end(), L'#'), 1) << tSubject.sId;
            EXPECT_EQ(std::count(sLayout.begin(), sLayout.end(), L'$'), 1) << tSubject.sId;
        }
    }
    const std::set<String> tExpected = {L"$#",  L"$ #",  L"#$",  L"# $",  L"-$#",  L"-$ #",
                                        L"-#$", L"-# $", L"$-#", L"$ -#", L"$- #", L"$ #-"};
    EXPECT_TRUE(tLayouts == tExpected);
}

// A symbol stands in a bracket of a pattern, raw in markup and between apostrophes in a style.
TEST(CurrencyOracle, NoSymbolHasACharacterThatMeansSomethingAroundIt)
{
    const auto check = [](const String& sTag)
    {
        const String& sSymbol = CurrencyLookup::getInstance().lookupCurrencyTag(sTag)->getCurrencySymbol();
        EXPECT_FALSE(sSymbol.empty()) << toUtf8(sTag);
        EXPECT_EQ(sSymbol.find_first_of(L"&<>\"'[];\\@{}#"), String::npos) << toUtf8(sTag) << " " << toUtf8(sSymbol);
    };
    for (const Subject& tSubject : allSubjects())
    {
        if (!tSubject.sCode.empty())
            check(L"loc:" + tSubject.sTag);
    }
    for (const String& sCode : CurrencyLookup::getInstance().currencyCodes())
    {
        check(sCode);
        check(L"int:" + sCode);
    }
}

TEST(CurrencyOracle, CodesHaveTheDigitsAndNarrowSymbolsOfTheData)
{
    for (const String& sCode : CurrencyLookup::getInstance().currencyCodes())
    {
        const std::u16string sCode16(sCode.begin(), sCode.end());
        UErrorCode eStatus = U_ZERO_ERROR;
        int32_t nLength = 0;
        const char16_t* const pSymbol =
            ucurr_getName(sCode16.c_str(), "en", UCURR_NARROW_SYMBOL_NAME, nullptr, &nLength, &eStatus);
        const CurrencyHandle hCurrency = CurrencyLookup::getInstance().lookupCurrencyTag(sCode);
        EXPECT_EQ(toUtf8(hCurrency->getCurrencySymbol()),
                  toUtf8(unmarked(wide({pSymbol, static_cast<std::size_t>(nLength)}))));
        EXPECT_EQ(hCurrency->getDefaultDigits(),
                  static_cast<unsigned>(ucurr_getDefaultFractionDigits(sCode16.c_str(), &eStatus)))
            << toUtf8(sCode);
        EXPECT_TRUE(U_SUCCESS(eStatus)) << toUtf8(sCode);
    }
}

}  // namespace
}  // namespace tov
