// Amounts in every currency and in every locale against the locale data's own currency formatting.

#include <gtest/gtest.h>
#include <unicode/uchar.h>
#include <unicode/ucurr.h>
#include <unicode/uloc.h>
#include <unicode/unumberformatter.h>
#include <unicode/ustring.h>

#include <cmath>
#include <memory>
#include <set>

#include "intl/currencylookup.h"
#include "intl/ktwuilanguage.h"
#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using Utf16 = std::u16string;

struct ResultClose
{
    void operator()(UNumberFormatter* p) const { unumf_close(p); }
    void operator()(UFormattedNumber* p) const { unumf_closeResult(p); }
};

// The decided differences: no direction marks, plain blanks, "-" as the minus sign. Both sides get the same treatment:
// the blanks that group digits do not break.
String normalised(const String& sText)
{
    String sResult;
    for (const wchar_t nChar : sText)
    {
        if (nChar == 0x200E || nChar == 0x200F || nChar == 0x61C)
            continue;
        if (nChar == 0xA0 || nChar == 0x202F)
            sResult += L' ';
        else
            sResult += nChar == 0x2212 ? L'-' : nChar;
    }
    return sResult;
}

String theirs(double fValue, const Utf16& sSkeleton, const std::string& sId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const std::unique_ptr<UNumberFormatter, ResultClose> pFormatter(
        unumf_openForSkeletonAndLocale((sSkeleton + u" rounding-mode-half-up").c_str(), -1,
                                       (sId + "@calendar=gregorian;numbers=latn").c_str(), &eStatus));
    const std::unique_ptr<UFormattedNumber, ResultClose> pResult(unumf_openResult(&eStatus));
    unumf_formatDouble(pFormatter.get(), fValue, pResult.get(), &eStatus);
    Utf16 sText(128, u'\0');
    sText.resize(static_cast<std::size_t>(unumf_resultToString(pResult.get(), sText.data(), 128, &eStatus)));
    std::string sUtf8(sText.size() * 3, '\0');
    int32_t nLength = 0;
    u_strToUTF8(sUtf8.data(), static_cast<int32_t>(sUtf8.size()), &nLength, sText.data(),
                static_cast<int32_t>(sText.size()), &eStatus);
    EXPECT_TRUE(U_SUCCESS(eStatus)) << sId;
    return normalised(fromUtf8(sUtf8.substr(0, static_cast<std::size_t>(nLength))).value());
}

String ours(double fValue, const String& sTag, const Locale& tLocale)
{
    const unsigned nDigits = CurrencyLookup::getInstance().lookupCurrencyTag(sTag)->getDefaultDigits();
    const WebCurrencyFormatDefinition tDefinition(sTag, WebNumberFormatDefinitionBase::kMinus, true, nDigits, nDigits);
    return normalised(NumericFormatter<double>::CreateFormatter(tDefinition, tLocale, ValueFormatterTypes::kText,
                                                                KTWUILanguage::kDefaultLanguage)
                          ->formatAsString(&fValue));
}

constexpr double kValues[] = {0, 1, -1, 0.07, -0.07, 999.994, 1234.56, 12345.678, -12345.678, 1234567.891, -98765432.1};

TEST(CurrencyFormattingOracle, InternationalCodesMatchInEnglish)
{
    for (const String& sCode : CurrencyLookup::getInstance().currencyCodes())
    {
        const Utf16 sSkeleton = u"currency/" + Utf16(sCode.begin(), sCode.end()) + u" unit-width-iso-code";
        for (const double fValue : kValues)
            EXPECT_EQ(toUtf8(ours(fValue, L"int:" + sCode, Locale::kUSA)), toUtf8(theirs(fValue, sSkeleton, "en_US")))
                << fValue;
    }
}

// A bare code is written without the blank that the locale data put behind a symbol that ends in a letter.
TEST(CurrencyFormattingOracle, BareCodesMatchInEnglishButForTheBlankBehindLetters)
{
    std::size_t nWithBlank = 0;
    for (const String& sCode : CurrencyLookup::getInstance().currencyCodes())
    {
        const String sSymbol = normalised(CurrencyLookup::getInstance().lookupCurrencyTag(sCode)->getCurrencySymbol());
        const Utf16 sSkeleton = u"currency/" + Utf16(sCode.begin(), sCode.end()) + u" unit-width-narrow";
        for (const double fValue : kValues)
        {
            String sTheirs = theirs(fValue, sSkeleton, "en_US");
            const std::size_t nBehind = sTheirs.find(sSymbol) + sSymbol.size();
            if (sTheirs.at(nBehind) == L' ')
            {
                ++nWithBlank;
                EXPECT_TRUE(u_isalpha(static_cast<UChar32>(sSymbol.back()))) << toUtf8(sSymbol);
                sTheirs.erase(nBehind, 1);
            }
            EXPECT_EQ(toUtf8(ours(fValue, sCode, Locale::kUSA)), toUtf8(sTheirs)) << fValue;
        }
    }
    EXPECT_GT(nWithBlank, 0u);
}

struct Subject
{
    std::string sId;
    String sTag;
    Utf16 sCode;
};

// All locales whose region has a currency.
std::vector<Subject> allSubjects()
{
    std::vector<Subject> vSubjects;
    for (int32_t n = 0; n < uloc_countAvailable(); ++n)
    {
        const std::string sId = uloc_getAvailable(n);
        UErrorCode eStatus = U_ZERO_ERROR;
        char aRegion[ULOC_COUNTRY_CAPACITY];
        uloc_getCountry(sId.c_str(), aRegion, sizeof aRegion, &eStatus);
        char16_t aCode[4] = {};
        if (*aRegion)
            ucurr_forLocale((std::string("en_") + aRegion).c_str(), aCode, 4, &eStatus);
        char aTag[ULOC_FULLNAME_CAPACITY];
        if (*aCode && U_SUCCESS(eStatus) && uloc_toLanguageTag(sId.c_str(), aTag, sizeof aTag, true, &eStatus))
            vSubjects.push_back({sId, fromUtf8(aTag).value(), aCode});
    }
    return vSubjects;
}

// A number pattern knows groups of three and whether there are any. Where a locale writes amounts in other groups, in
// none, or groups only from five digits on, that is the one difference: without the separators the texts are the same.
const std::set<std::string> ktGroupsOfTwo = {"as_IN", "bn_BD", "bn_IN", "brx_IN", "ccp_BD",     "ccp_IN",
                                             "dz_BT", "en_IN", "gu_IN", "hi_IN",  "ne_IN",      "ne_NP",
                                             "sa_IN", "ta_IN", "te_IN", "ta_LK",  "hi_Latn_IN", "pa_Guru_IN"};
const std::set<std::string> ktNoGroups = {"ee_GH", "ee_TG", "en_US_POSIX"};
const std::set<std::string> ktGroupsFromFiveDigits = {
    "be_BY", "bg_BG", "es_EA", "es_ES", "es_GQ", "es_IC", "es_PH", "et_EE", "ka_GE", "lv_LV", "pl_PL", "pt_CH", "pt_CV",
    "pt_GQ", "pt_GW", "pt_LU", "pt_MO", "pt_MZ", "pt_PT", "pt_ST", "pt_TL", "ru_UA", "sq_AL", "sq_MK", "sq_XK"};

bool groupsOtherwise(const std::string& sId, double fValue)
{
    if (ktNoGroups.contains(sId))
        return std::abs(fValue) >= 999;
    if (ktGroupsFromFiveDigits.contains(sId))
        return std::abs(fValue) >= 999 && std::abs(fValue) < 10'000;
    return ktGroupsOfTwo.contains(sId) && std::abs(fValue) >= 100'000;
}

String ungrouped(String sText, const Locale& tLocale)
{
    for (const wchar_t nSeparator : normalised(tLocale.getInfo(Locale::kMonetaryThousandsSeparator)))
        std::erase(sText, nSeparator);
    return sText;
}

TEST(CurrencyFormattingOracle, LocalesMatchInTheirOwnCurrencyButForTheirGroups)
{
    std::size_t nSubjects = 0;
    std::set<std::string> tOtherwise;
    for (const Subject& tSubject : allSubjects())
    {
        ++nSubjects;
        const Locale tLocale = LocaleTagLookup::lookupOrDefault(tSubject.sTag);
        for (const double fValue : kValues)
        {
            String sOurs = ours(fValue, L"loc:" + tSubject.sTag, tLocale);
            String sTheirs = theirs(fValue, u"currency/" + tSubject.sCode + u" unit-width-narrow", tSubject.sId);
            if (sOurs != sTheirs && groupsOtherwise(tSubject.sId, fValue))
            {
                tOtherwise.insert(tSubject.sId);
                sOurs = ungrouped(sOurs, tLocale);
                sTheirs = ungrouped(sTheirs, tLocale);
            }
            EXPECT_EQ(toUtf8(sOurs), toUtf8(sTheirs)) << tSubject.sId << " " << fValue;
        }
    }
    EXPECT_GT(nSubjects, 500u);
    for (const std::set<std::string>& tIds : {ktGroupsOfTwo, ktNoGroups, ktGroupsFromFiveDigits})
    {
        for (const std::string& sId : tIds)
            EXPECT_TRUE(tOtherwise.contains(sId)) << sId << " is no exception";
    }
}

}  // namespace

}  // namespace tov
