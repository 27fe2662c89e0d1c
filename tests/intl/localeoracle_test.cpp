// Every locale against direct questions to the locale data's own library, through its C interface, with the differences
// that are decided: no direction marks, plain blanks in patterns, "-" as the minus sign.

#include <gtest/gtest.h>
#include <unicode/ucurr.h>
#include <unicode/udat.h>
#include <unicode/uloc.h>
#include <unicode/unum.h>
#include <unicode/unumberformatter.h>
#include <unicode/ustring.h>

#include <map>
#include <memory>

#include "corefacade/datetime.h"
#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"

namespace tov {
namespace {

using Utf16 = std::u16string;

String wide(const Utf16& sText)
{
    std::string sUtf8(sText.size() * 3 + 1, '\0');
    int32_t nLength = 0;
    UErrorCode eStatus = U_ZERO_ERROR;
    u_strToUTF8(sUtf8.data(), static_cast<int32_t>(sUtf8.size()), &nLength, sText.data(),
                static_cast<int32_t>(sText.size()), &eStatus);
    sUtf8.resize(static_cast<std::size_t>(nLength));
    return fromUtf8(sUtf8).value();
}

template <class Fill>
String filled(Fill tFill)
{
    Utf16 sText(256, u'\0');
    UErrorCode eStatus = U_ZERO_ERROR;
    const int32_t nLength = tFill(sText.data(), static_cast<int32_t>(sText.size()), &eStatus);
    EXPECT_TRUE(U_SUCCESS(eStatus)) << u_errorName(eStatus);
    sText.resize(static_cast<std::size_t>(nLength));
    return wide(sText);
}

String unmarked(String sText)
{
    std::erase_if(sText, [](wchar_t t) { return t == 0x61C || t == 0x200E || t == 0x200F; });
    return sText;
}

String plainBlanks(String sText)
{
    for (wchar_t& t : sText)
    {
        if (t == 0xA0 || t == 0x202F)
            t = L' ';
    }
    return unmarked(sText);
}

struct Subject
{
    std::string sId;  // with the keywords of every reading
    std::string sPlainId;
    Locale tLocale;
};

std::vector<Subject> allSubjects()
{
    std::vector<Subject> vSubjects;
    for (int n = 0; n < uloc_countAvailable(); ++n)
    {
        const std::string sId = uloc_getAvailable(n);
        const std::optional<Locale> tLocale = LocaleTagLookup::lookup(String(sId.begin(), sId.end()));
        EXPECT_TRUE(tLocale) << sId;
        if (tLocale)
            vSubjects.push_back({sId + "@calendar=gregorian;numbers=latn", sId, *tLocale});
    }
    EXPECT_GT(vSubjects.size(), 700U);
    return vSubjects;
}

struct NumberClose
{
    void operator()(UNumberFormat* p) const { unum_close(p); }
};
using NumberFormat = std::unique_ptr<UNumberFormat, NumberClose>;

NumberFormat openNumber(UNumberFormatStyle eStyle, const Subject& tSubject)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    return NumberFormat(unum_open(eStyle, nullptr, 0, tSubject.sId.c_str(), nullptr, &eStatus));
}

String symbol(const NumberFormat& pFormat, UNumberFormatSymbol eSymbol)
{
    return filled([&](UChar* p, int32_t n, UErrorCode* e) { return unum_getSymbol(pFormat.get(), eSymbol, p, n, e); });
}

TEST(LocaleOracle, SeparatorsAreThoseOfTheLocaleDataInEveryLocale)
{
    for (const Subject& tSubject : allSubjects())
    {
        const NumberFormat pFormat = openNumber(UNUM_DECIMAL, tSubject);
        const auto expect = [&](Locale::StringInfo eInfo, UNumberFormatSymbol eSymbol)
        { EXPECT_EQ(tSubject.tLocale.getInfo(eInfo), symbol(pFormat, eSymbol)) << tSubject.sId; };
        expect(Locale::kDecimalSeparator, UNUM_DECIMAL_SEPARATOR_SYMBOL);
        expect(Locale::kThousandsSeparator, UNUM_GROUPING_SEPARATOR_SYMBOL);
        expect(Locale::kMonetaryDecimalSeparator, UNUM_MONETARY_SEPARATOR_SYMBOL);
        expect(Locale::kMonetaryThousandsSeparator, UNUM_MONETARY_GROUPING_SEPARATOR_SYMBOL);
        EXPECT_EQ(tSubject.tLocale.getInfo(Locale::kNegativeNumberTemplate), L"-#") << tSubject.sId;
    }
}

TEST(LocaleOracle, PercentagesLookLikeThoseOfTheLocaleDataInEveryLocale)
{
    for (const Subject& tSubject : allSubjects())
    {
        const NumberFormat pFormat = openNumber(UNUM_PERCENT, tSubject);
        const String sSymbol = tSubject.tLocale.getInfo(Locale::kPercentFormat);
        EXPECT_EQ(sSymbol, unmarked(symbol(pFormat, UNUM_PERCENT_SYMBOL))) << tSubject.sId;
        String sMade = tSubject.tLocale.getInfo(Locale::kPercentSymbolLocation);
        EXPECT_TRUE(sMade == L"%#" || sMade == L"% #" || sMade == L"#%" || sMade == L"# %") << tSubject.sId;
        if (sMade.find(L'%') != String::npos && sMade.find(L'#') != String::npos)
        {
            sMade.replace(sMade.find(L'%'), 1, sSymbol);
            sMade.replace(sMade.find(L'#'), 1, L"42");
        }
        const String sExpected = filled([&](UChar* p, int32_t n, UErrorCode* e)
                                        { return unum_formatDouble(pFormat.get(), 0.42, p, n, nullptr, e); });
        EXPECT_EQ(sMade, plainBlanks(sExpected)) << tSubject.sId;
    }
}

TEST(LocaleOracle, CurrencySymbolsAreTheNarrowOnesOfTheRegionInEveryLocale)
{
    for (const Subject& tSubject : allSubjects())
    {
        char aLikely[ULOC_FULLNAME_CAPACITY];
        char aRegion[ULOC_COUNTRY_CAPACITY];
        UErrorCode eStatus = U_ZERO_ERROR;
        uloc_addLikelySubtags(tSubject.sPlainId.c_str(), aLikely, sizeof aLikely, &eStatus);
        uloc_getCountry(aLikely, aRegion, sizeof aRegion, &eStatus);
        // The number format of the region in that language shows the currency of the region.
        UChar aCode[4] = u"XXX";
        ucurr_forLocale((std::string("en_") + aRegion).c_str(), aCode, 4, &eStatus);
        eStatus = U_ZERO_ERROR;
        UNumberFormatter* const pFormatter = unumf_openForSkeletonAndLocale(
            (u"currency/" + Utf16(aCode) + u" unit-width-narrow").c_str(), -1, tSubject.sId.c_str(), &eStatus);
        UFormattedNumber* const pResult = unumf_openResult(&eStatus);
        unumf_formatInt(pFormatter, 5, pResult, &eStatus);
        const String sShown =
            filled([&](UChar* p, int32_t n, UErrorCode* e) { return unumf_resultToString(pResult, p, n, e); });
        unumf_closeResult(pResult);
        unumf_close(pFormatter);
        const String& sSymbol = tSubject.tLocale.getInfo(Locale::kPrimaryCurrencySymbol);
        EXPECT_FALSE(sSymbol.empty()) << tSubject.sId;
        EXPECT_NE(unmarked(sShown).find(sSymbol), String::npos)
            << tSubject.sId << " " << toUtf8(sSymbol) << " in " << toUtf8(sShown);
    }
}

struct DateClose
{
    void operator()(UDateFormat* p) const { udat_close(p); }
};
using DateFormat = std::unique_ptr<UDateFormat, DateClose>;

DateFormat openDate(UDateFormatStyle eTime, UDateFormatStyle eDate, const Subject& tSubject)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    return DateFormat(udat_open(eTime, eDate, tSubject.sId.c_str(), u"UTC", -1, nullptr, 0, &eStatus));
}

void expectNames(const Subject& tSubject, const DateFormat& pFormat, Locale::NameKind eKind,
                 UDateFormatSymbolType eType)
{
    const bool bDays = eKind == Locale::kDay || eKind == Locale::kAbbreviatedDay;
    for (int n = 0; n < (bDays ? 7 : 12); ++n)
    {
        const int nIndex = bDays ? (n == 6 ? UCAL_SUNDAY : UCAL_MONDAY + n) : n;
        const String sExpected = filled([&](UChar* p, int32_t nSize, UErrorCode* e)
                                        { return udat_getSymbols(pFormat.get(), eType, nIndex, p, nSize, e); });
        EXPECT_EQ(tSubject.tLocale.getName(eKind, n), sExpected) << tSubject.sId << " " << eKind << " " << n;
    }
    EXPECT_EQ(tSubject.tLocale.getName(eKind, bDays ? 7 : 12), L"");
}

TEST(LocaleOracle, NamesAreThoseOfTheLocaleDataInEveryLocale)
{
    for (const Subject& tSubject : allSubjects())
    {
        const DateFormat pFormat = openDate(UDAT_NONE, UDAT_FULL, tSubject);
        const String sPattern =
            filled([&](UChar* p, int32_t n, UErrorCode* e) { return udat_toPattern(pFormat.get(), false, p, n, e); });
        const bool bStandaloneDays = sPattern.find(L"cccc") != String::npos;
        expectNames(tSubject, pFormat, Locale::kNominitiveMonth, UDAT_STANDALONE_MONTHS);
        expectNames(tSubject, pFormat, Locale::kGenetiveMonth, UDAT_MONTHS);
        expectNames(tSubject, pFormat, Locale::kAbbreviatedMonth, UDAT_SHORT_MONTHS);
        expectNames(tSubject, pFormat, Locale::kDay, bStandaloneDays ? UDAT_STANDALONE_WEEKDAYS : UDAT_WEEKDAYS);
        expectNames(tSubject, pFormat, Locale::kAbbreviatedDay, UDAT_SHORT_WEEKDAYS);
        const auto symbolOf = [&](UDateFormatSymbolType eType, int nIndex)
        {
            return filled([&](UChar* p, int32_t n, UErrorCode* e)
                          { return udat_getSymbols(pFormat.get(), eType, nIndex, p, n, e); });
        };
        EXPECT_EQ(tSubject.tLocale.getInfo(Locale::kAM), plainBlanks(symbolOf(UDAT_AM_PMS, 0))) << tSubject.sId;
        EXPECT_EQ(tSubject.tLocale.getInfo(Locale::kPM), plainBlanks(symbolOf(UDAT_AM_PMS, 1))) << tSubject.sId;
        StringBufferTemplate<wchar_t, 32> tEra;
        tSubject.tLocale.getEra(DateTime(), tEra);
        EXPECT_EQ(tEra.view(), symbolOf(UDAT_ERAS, 1)) << tSubject.sId;
    }
}

constexpr int kYear = 2024;
constexpr int kMonth = 9;
constexpr int kDay = 5;
constexpr int kDayOfWeek = 3;  // a Thursday, counted from Monday
constexpr int kHour = 16;
constexpr int kMinute = 7;
constexpr int kSecond = 8;

String padded(int nNumber, std::size_t nDigits)
{
    String sNumber = std::to_wstring(nNumber);
    return sNumber.insert(0, nDigits > sNumber.size() ? nDigits - sNumber.size() : 0, L'0');
}

String field(const Locale& tLocale, wchar_t tLetter, std::size_t nCount)
{
    const bool bShort = nCount == 3;
    switch (tLetter)
    {
    case L'y': return padded(kYear, nCount);
    case L'M':
        return nCount < 3 ? padded(kMonth, nCount)
                          : tLocale.getName(bShort ? Locale::kAbbreviatedMonth : Locale::kNominitiveMonth, kMonth - 1);
    case L'd':
        return nCount < 3 ? padded(kDay, nCount)
                          : tLocale.getName(bShort ? Locale::kAbbreviatedDay : Locale::kDay, kDayOfWeek);
    case L'h': return padded(kHour - 12, nCount);
    case L'H': return padded(kHour, nCount);
    case L'm': return padded(kMinute, nCount);
    case L's': return padded(kSecond, nCount);
    case L't': return tLocale.getInfo(Locale::kPM);
    default:
    {
        StringBufferTemplate<wchar_t, 32> tEra;
        tLocale.getEra(DateTime(), tEra);
        return tEra.toString();
    }
    }
}

// A reading of the date grammar of its own, just enough for the patterns of locales.
String rendered(const Locale& tLocale, const String& sPattern)
{
    Locale tCurrent = tLocale;
    String sResult;
    for (std::size_t n = 0; n < sPattern.size();)
    {
        const wchar_t t = sPattern[n];
        if (t == L'"')
        {
            for (++n; n < sPattern.size() && sPattern[n] != L'"'; ++n)
            {
                n += sPattern[n] == L'\\';
                sResult += sPattern[n];
            }
            ++n;
        }
        else if (t == L'[')
        {
            const std::size_t nEnd = sPattern.find(L']', n);
            EXPECT_TRUE(LocaleTagLookup::getInstance().findLocaleByDefinitionName(sPattern.substr(n + 3, nEnd - n - 3),
                                                                                  tCurrent));
            n = nEnd + 1;
        }
        else if (String(L"yMdhHmstg").find(t) != String::npos)
        {
            const std::size_t nEnd = std::min(sPattern.find_first_not_of(t, n), sPattern.size());
            sResult += field(tCurrent, t, nEnd - n);
            n = nEnd;
        }
        else
        {
            sResult += t;
            ++n;
        }
    }
    return sResult;
}

UDate instantOfTheExample()
{
    UErrorCode eStatus = U_ZERO_ERROR;
    UCalendar* const pCalendar = ucal_open(u"UTC", -1, "en_US", UCAL_GREGORIAN, &eStatus);
    ucal_clear(pCalendar);
    ucal_setDateTime(pCalendar, kYear, kMonth - 1, kDay, kHour, kMinute, kSecond, &eStatus);
    const UDate tInstant = ucal_getMillis(pCalendar, &eStatus);
    ucal_close(pCalendar);
    return tInstant;
}

// The locale data's own text of the example; the short year and flexible day periods are asked for as decided.
String expectedDate(const Subject& tSubject, UDateFormatStyle eTime, UDateFormatStyle eDate)
{
    const DateFormat pFormat = openDate(eTime, eDate, tSubject);
    Utf16 sPattern(256, u'\0');
    UErrorCode eStatus = U_ZERO_ERROR;
    sPattern.resize(static_cast<std::size_t>(udat_toPattern(pFormat.get(), false, sPattern.data(), 256, &eStatus)));
    if (eDate == UDAT_SHORT && sPattern.find(u"yy") != Utf16::npos)
        sPattern.replace(sPattern.find(u"yy"), 2, u"yyyy");
    if (sPattern.find(u'B') != Utf16::npos)
        sPattern.replace(sPattern.find(u'B'), 1, u"a");
    // Opened by pattern: one locale's short dates bring Roman numerals along, where digits are always ASCII here.
    const DateFormat pDecided(udat_open(UDAT_PATTERN, UDAT_PATTERN, tSubject.sId.c_str(), u"UTC", -1, sPattern.data(),
                                        static_cast<int32_t>(sPattern.size()), &eStatus));
    return plainBlanks(filled([&](UChar* p, int32_t n, UErrorCode* e)
                              { return udat_format(pDecided.get(), instantOfTheExample(), p, n, nullptr, e); }));
}

TEST(LocaleOracle, DatesAndTimesReadLikeThoseOfTheLocaleDataInEveryLocale)
{
    for (const Subject& tSubject : allSubjects())
    {
        const auto made = [&](Locale::StringInfo eInfo)
        { return plainBlanks(rendered(tSubject.tLocale, tSubject.tLocale.getInfo(eInfo))); };
        EXPECT_EQ(made(Locale::kDateShortFormat), expectedDate(tSubject, UDAT_NONE, UDAT_SHORT)) << tSubject.sId;
        EXPECT_EQ(made(Locale::kDateLongFormat), expectedDate(tSubject, UDAT_NONE, UDAT_FULL)) << tSubject.sId;
        EXPECT_EQ(made(Locale::kTimeFormat), expectedDate(tSubject, UDAT_MEDIUM, UDAT_NONE)) << tSubject.sId;
        EXPECT_EQ(made(Locale::kTimeInputFormat), made(Locale::kTimeFormat)) << tSubject.sId;
    }
}

String compact(const Subject& tSubject, std::int64_t nValue)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    UNumberFormatter* const pFormatter =
        unumf_openForSkeletonAndLocale(u"compact-short", -1, tSubject.sId.c_str(), &eStatus);
    UFormattedNumber* const pResult = unumf_openResult(&eStatus);
    unumf_formatInt(pFormatter, nValue, pResult, &eStatus);
    const String sText =
        filled([&](UChar* p, int32_t n, UErrorCode* e) { return unumf_resultToString(pResult, p, n, e); });
    unumf_closeResult(pResult);
    unumf_close(pFormatter);
    return plainBlanks(sText);
}

constexpr const wchar_t* kScaleNames[] = {
    L"thousand", L"ten-thousand", L"hundred-thousand", L"million",  L"ten-million",  L"hundred-million",
    L"billion",  L"ten-billion",  L"hundred-billion",  L"trillion", L"ten-trillion", L"hundred-trillion"};

// What the locale data write for a power of ten, without the blanks around the 1; empty where it is not a single 1.
String compactIndicator(const Subject& tSubject, std::int64_t nPower)
{
    String sText = compact(tSubject, nPower);
    const std::size_t nDigit = sText.find_first_of(L"0123456789");
    if (nDigit == String::npos || sText.find_first_of(L"0123456789", nDigit + 1) != String::npos)
        return String();
    if (sText[nDigit] != L'1')
        return String();
    sText.erase(nDigit, 1);
    const std::size_t nFirst = sText.find_first_not_of(L' ');
    return nFirst == String::npos ? String() : sText.substr(nFirst, sText.find_last_not_of(L' ') + 1 - nFirst);
}

TEST(LocaleOracle, ScalesAreTheCompactDecimalsOfTheLocaleDataInEveryLocale)
{
    const std::map<std::pair<std::string, String>, String> tDecided = {
        {{"en_IN", L"hundred-thousand"}, L"L"},
        {{"en_IN", L"ten-million"}, L"Cr"},
        {{"hi_IN", L"hundred-thousand"}, L"L"},
        {{"hi_IN", L"ten-million"}, L"Cr"},
    };
    for (const Subject& tSubject : allSubjects())
    {
        auto tScale = tSubject.tLocale.getScaleFactors().begin();
        const auto tEnd = tSubject.tLocale.getScaleFactors().end();
        std::int64_t nPower = 1;
        for (const wchar_t* const pName : kScaleNames)
        {
            nPower = nPower == 1 ? 1'000 : nPower * 10;
            String sExpected = compactIndicator(tSubject, nPower);
            if (const auto tFound = tDecided.find({tSubject.sPlainId, pName}); tFound != tDecided.end())
                sExpected = tFound->second;
            if (sExpected.empty())
                continue;
            ASSERT_NE(tScale, tEnd) << tSubject.sId << " " << toUtf8(pName);
            EXPECT_EQ(tScale->sName, pName) << tSubject.sId;
            const bool bRootsBillion = sExpected == L"G" && tScale->sIndicator == L"B";
            EXPECT_TRUE(bRootsBillion || plainBlanks(tScale->sIndicator) == sExpected)
                << tSubject.sId << " " << toUtf8(tScale->sIndicator) << " for " << toUtf8(sExpected);
            ++tScale;
        }
        EXPECT_EQ(tScale, tEnd) << tSubject.sId;
    }
}

}  // namespace
}  // namespace tov
