// Numbers, percentages and scales of every locale against the locale data's own library, which renders the same values
// by itself: groups of three everywhere, halves away from zero, Western digits. What is decided differently is undone
// where its answer is read; a locale that still differs stands in a table with the reason.

#include <gtest/gtest.h>
#include <unicode/numberformatter.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <iterator>
#include <map>
#include <random>
#include <span>

#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"
#include "webformat/numericformatter.h"
#include "webformat/timezoneresolver.h"
#include "webformat/valueformatter.h"

namespace tov {
namespace {

using icu::number::LocalizedNumberFormatter;
using icu::number::NumberFormatter;
using icu::number::Precision;

constexpr const wchar_t* kBlanks = L" \u00A0\u202F";

struct Subject
{
    String sTag;
    Locale tLocale;
    icu::Locale tOracle;
};

std::vector<Subject> allSubjects()
{
    std::vector<Subject> vSubjects;
    for (const String& sTag : LocaleTagLookup::allTags())
    {
        UErrorCode eStatus = U_ZERO_ERROR;
        icu::Locale tOracle = icu::Locale::forLanguageTag(toUtf8(sTag), eStatus);
        tOracle.setKeywordValue("numbers", "latn", eStatus);
        EXPECT_TRUE(U_SUCCESS(eStatus)) << toUtf8(sTag);
        vSubjects.push_back({sTag, LocaleTagLookup::lookupOrDefault(sTag), tOracle});
    }
    EXPECT_GT(vSubjects.size(), 700U);
    return vSubjects;
}

// A value as both sides get it: at most fifteen digits, which the double and the text hold alike.
struct Value
{
    std::string sText;
    double fValue;
};

Value valueOf(const std::string& sText)
{
    return {sText, std::strtod(sText.c_str(), nullptr)};
}

std::string randomDecimal(std::mt19937_64& tRandom)
{
    char aText[40];
    const int nDigits = 1 + static_cast<int>(tRandom() % 15);
    const int nPoint = static_cast<int>(tRandom() % 22) - 7;  // 1e-7 to 1e14
    std::string sDigits(1, static_cast<char>('1' + tRandom() % 9));
    while (static_cast<int>(sDigits.size()) < nDigits)
        sDigits += static_cast<char>('0' + tRandom() % 10);
    std::snprintf(aText, sizeof aText, "%s%c.%se%d", tRandom() % 2 == 0 ? "-" : "", sDigits[0], sDigits.c_str() + 1,
                  nPoint);
    return aText;
}

std::vector<Value> values()
{
    std::vector<Value> vValues;
    for (const char* pText :
         {"0",      "1",       "-1",       "12",      "999",        "1000",       "-1000",
          "1234.5", "99999.5", "-123456",  "1234567", "12345678.9", "0.5",        "-0.5",
          "1.005",  "2.675",   "-0.125",   "0.0005",  "-0.0004",    "0.00049999", "1e-12",
          "1e15",   "-1e20",   "999999.9", "0.9995",  "9999.995",   "1e-300",     "123456789012345"})
        vValues.push_back(valueOf(pText));
    std::mt19937_64 tRandom(20240305);
    for (int n = 0; n < 30; ++n)
        vValues.push_back(valueOf(randomDecimal(tRandom)));
    return vValues;
}

String read(const icu::UnicodeString& sText)
{
    std::string sUtf8;
    sText.toUTF8String(sUtf8);
    return fromUtf8(sUtf8).value();
}

// Without direction marks and with "-" as the minus sign.
String plain(String sText)
{
    std::erase_if(sText, [](wchar_t t) { return t == 0x61C || t == 0x200E || t == 0x200F; });
    std::replace(sText.begin(), sText.end(), wchar_t{0x2212}, L'-');
    return sText;
}

String shown(const LocalizedNumberFormatter& tFormatter, const std::string& sDecimal)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const icu::number::FormattedNumber tNumber = tFormatter.formatDecimal(sDecimal, eStatus);
    const String sText = plain(read(tNumber.toString(eStatus)));
    EXPECT_TRUE(U_SUCCESS(eStatus)) << u_errorName(eStatus) << " " << sDecimal;
    return sText;
}

LocalizedNumberFormatter numbersOf(const Subject& tSubject, bool bGroups, int nMin, int nMax)
{
    return NumberFormatter::withLocale(tSubject.tOracle)
        .grouping(bGroups ? UNUM_GROUPING_THOUSANDS : UNUM_GROUPING_OFF)
        .precision(Precision::minMaxFraction(nMin, nMax))
        .roundingMode(UNUM_ROUND_HALFUP);
}

WebValueFormatterHandle patternFormatter(const Subject& tSubject, const String& sPattern)
{
    return WebValueFormatter::GetCustomFormatter(SQLDataType(SQLDataType::kDouble), sPattern, tSubject.tLocale,
                                                 ValueFormatterTypes::kText, KTWUILanguage::kDefaultLanguage);
}

WebValueFormatterHandle definitionFormatter(const Subject& tSubject, const WebValueFormatDefinition* pDefinition)
{
    return WebValueFormatter::GetFormatter(
        SQLDataType(SQLDataType::kDouble), WebValueFormatDefinitionHandle(pDefinition), tSubject.tLocale,
        TimeZoneResolver(), ValueFormatterTypes::kText, 0, 0, KTWUILanguage::kDefaultLanguage, String());
}

// A locale that differs on purpose; a language stands for all of its locales, a language and script likewise.
struct Exception
{
    const wchar_t* pTag;
    const char* pReason;

    bool covers(const String& sTag) const
    {
        const String sOwn = pTag;
        return sTag == sOwn || sTag.starts_with(sOwn + L"-");
    }
};

// The locales that differ, each with its first difference.
class Differences
{
public:
    void compare(const Subject& tSubject, const Value& tValue, const String& sOurs, const String& sTheirs)
    {
        if (sOurs != sTheirs)
            m_tFirst.try_emplace(tSubject.sTag,
                                 tValue.sText + " as \"" + toUtf8(sOurs) + "\", not \"" + toUtf8(sTheirs) + "\"");
    }

    // Every locale that an exception covers must differ, and no other may.
    void expectJust(std::span<const Exception> vExceptions) const
    {
        for (const Exception& tException : vExceptions)
        {
            for (const String& sTag : LocaleTagLookup::allTags())
                EXPECT_TRUE(!tException.covers(sTag) || m_tFirst.contains(sTag))
                    << toUtf8(sTag) << " is no exception any more: " << tException.pReason;
        }
        for (const auto& [sTag, sDifference] : m_tFirst)
        {
            const auto covers = [&sTag = sTag](const Exception& tException) { return tException.covers(sTag); };
            EXPECT_TRUE(std::any_of(vExceptions.begin(), vExceptions.end(), covers))
                << toUtf8(sTag) << " shows " << sDifference;
        }
    }

private:
    std::map<String, std::string> m_tFirst;
};

using Definition = WebNumberFormatDefinition;

TEST(LocaleOracle, NumbersByPatternAndByDefinitionAreThoseOfTheLocaleDataInEveryLocale)
{
    const std::vector<Value> vValues = values();
    Differences tDifferences;
    for (const Subject& tSubject : allSubjects())
    {
        struct
        {
            WebValueFormatterHandle hOurs;
            LocalizedNumberFormatter tTheirs;
        } const aPairs[] = {
            {patternFormatter(tSubject, L"#,##0.###"), numbersOf(tSubject, true, 0, 3)},
            {patternFormatter(tSubject, L"#,##0.00"), numbersOf(tSubject, true, 2, 2)},
            {patternFormatter(tSubject, L"0.0#####"), numbersOf(tSubject, false, 1, 6)},
            {definitionFormatter(tSubject, new Definition(Definition::kMinus, true, 1, 4)),
             numbersOf(tSubject, true, 1, 4)},
            {definitionFormatter(tSubject, new Definition(Definition::kMinus, false, 0, 0)),
             numbersOf(tSubject, false, 0, 0)},
        };
        for (const auto& tPair : aPairs)
        {
            for (const Value& tValue : vValues)
                tDifferences.compare(tSubject, tValue, tPair.hOurs->formatAsString(&tValue.fValue),
                                     shown(tPair.tTheirs, tValue.sText));
        }
    }
    tDifferences.expectJust({});
}

// A definition has the sign before the number and a blank where the locale has it in front, and right behind the number
// everywhere else: "-%45" -> "-% 45", "45 %" and "% 45" -> "45%".
String percentAsDefined(const String& sShown, const String& sSign)
{
    const std::size_t nSign = sShown.find(sSign);
    String sBefore = sShown.substr(0, nSign);
    String sAfter = sShown.substr(nSign + sSign.size());
    sBefore.erase(sBefore.find_last_not_of(kBlanks) + 1);
    sAfter.erase(0, std::min(sAfter.find_first_not_of(kBlanks), sAfter.size()));
    const bool bBlank = sBefore.size() + sSign.size() + sAfter.size() < sShown.size();
    return sAfter.empty() || bBlank ? sBefore + sAfter + sSign : sBefore + sSign + L" " + sAfter;
}

TEST(LocaleOracle, PercentagesAreThoseOfTheLocaleDataWithTheSignWhereDefinitionsPutIt)
{
    const std::vector<Value> vValues = values();
    Differences tDifferences;
    for (const Subject& tSubject : allSubjects())
    {
        UErrorCode eStatus = U_ZERO_ERROR;
        const icu::DecimalFormatSymbols tSymbols(tSubject.tOracle, eStatus);
        const String sSign = plain(read(tSymbols.getConstSymbol(icu::DecimalFormatSymbols::kPercentSymbol)));
        for (const auto& [nMin, nMax] : {std::pair(0, 0), {1, 1}, {2, 2}, {0, 1}, {0, 2}})
        {
            const auto hOurs = definitionFormatter(
                tSubject, new WebPercentFormatDefinition(Definition::kMinus, nMax == 1, static_cast<unsigned>(nMin),
                                                         static_cast<unsigned>(nMax)));
            const LocalizedNumberFormatter tTheirs =
                numbersOf(tSubject, nMax == 1, nMin, nMax).unit(icu::NoUnit::percent());
            for (const Value& tValue : vValues)
                tDifferences.compare(tSubject, tValue, hOurs->formatAsString(&tValue.fValue),
                                     percentAsDefined(shown(tTheirs, tValue.sText), sSign));
        }
    }
    tDifferences.expectJust({});
}

constexpr const wchar_t* kScaleNames[] = {
    L"thousand", L"ten-thousand", L"hundred-thousand", L"million",  L"ten-million",  L"hundred-million",
    L"billion",  L"ten-billion",  L"hundred-billion",  L"trillion", L"ten-trillion", L"hundred-trillion"};
constexpr int kFirstScale = 3;

// A compact number taken apart: "elfu -2.5" -> "-", "2.5" and "elfu"; "2 Mio." -> "", "2" and "Mio.".
struct Compact
{
    String sSign;
    String sNumber;
    String sIndicator;
};

Compact compactOf(const LocalizedNumberFormatter& tFormatter, const std::string& sDecimal)
{
    String sText = shown(tFormatter, sDecimal);
    Compact tCompact;
    if (const std::size_t nMinus = sText.find(L'-'); nMinus < sText.find_first_of(L"0123456789"))
    {
        tCompact.sSign = L"-";
        sText.erase(nMinus, 1);
    }
    const std::size_t nFirst = sText.find_first_of(L"0123456789");
    const std::size_t nEnd = sText.find_last_of(L"0123456789") + 1;
    tCompact.sNumber = sText.substr(nFirst, nEnd - nFirst);
    const String sAround = sText.substr(0, nFirst) + sText.substr(nEnd);
    const std::size_t nText = std::min(sAround.find_first_not_of(kBlanks), sAround.size());
    tCompact.sIndicator = sAround.substr(nText, sAround.find_last_not_of(kBlanks) + 1 - nText);
    return tCompact;
}

LocalizedNumberFormatter compactFormatter(const Subject& tSubject)
{
    return numbersOf(tSubject, false, 0, 1).notation(icu::number::Notation::compactShort());
}

// The powers of ten that the locale shows as 1 and a text, with the text. It is the text of one for every number, and
// the root's "G" is "B" where the locale has none of the root's texts replaced.
std::map<int, String> scalesOf(const LocalizedNumberFormatter& tCompact)
{
    std::map<int, String> tScales;
    for (int nPower = kFirstScale; nPower < kFirstScale + static_cast<int>(std::size(kScaleNames)); ++nPower)
    {
        const Compact tOne = compactOf(tCompact, "1e" + std::to_string(nPower));
        if (tOne.sNumber == L"1" && !tOne.sIndicator.empty())
            tScales[nPower] = tOne.sIndicator;
    }
    if (tScales == std::map<int, String>{{3, L"K"}, {6, L"M"}, {9, L"G"}, {12, L"T"}})
        tScales[9] = L"B";
    return tScales;
}

// Values whose first two digits decide everything, so that no rounding leads into the next scale.
std::vector<Value> scaledValues()
{
    std::vector<Value> vValues;
    for (int nExponent = -1; nExponent <= 17; ++nExponent)
    {
        for (const char* pDigits : {"1.0", "2.0", "-2.5", "5.04", "7.96", "-3.14159"})
            vValues.push_back(valueOf(std::string(pDigits) + "e" + std::to_string(nExponent)));
    }
    return vValues;
}

// The value as the compact number shows it, with the text of one behind it.
String automaticallyScaled(const Compact& tCompact, const std::map<int, String>& tScales, const Value& tValue)
{
    String sNumber = tCompact.sNumber;
    std::replace(sNumber.begin(), sNumber.end(), L',', L'.');
    const int nPower =
        static_cast<int>(std::lround(std::log10(std::fabs(tValue.fValue) / std::wcstod(sNumber.c_str(), nullptr))));
    const auto tScale = tScales.find(nPower);
    return tCompact.sSign + tCompact.sNumber + (tScale == tScales.end() ? tCompact.sIndicator : tScale->second);
}

// The locale's own data says "G" for a billion, in the root's words otherwise.
constexpr const char* kOwnG = "a billion is G by the locale's own data";

// A number is scaled by the powers of ten that the locale shows as 1 and a text, and by no other.
constexpr const char* kNeverOne = "a scale that the locale never shows as 1 is none of ours";

constexpr Exception kOtherAutomaticScales[] = {
    {L"ast", kOwnG},
    {L"ccp", kOwnG},
    {L"mi", kOwnG},
    {L"qu", kOwnG},
    {L"bn", kNeverOne},       // ten billion: "10শত কো"
    {L"bs-Cyrl", kNeverOne},  // ten thousand: "10хиљ", a thousand: "1000"
    {L"ca", kNeverOne},       // ten billion: "10kM"
    {L"es", kNeverOne},       // ten billion: "10mil M"
    {L"ur", kNeverOne},       // ten trillion: "10ٹریلین"
    {L"hi-IN", "a hundred thousand is L, ten million Cr"},
    {L"hi-Latn", "the locale data shows a hundred trillion as it shows ten trillion"},
    {L"ja", "no scale is above a hundred trillion"},  // 京
};

constexpr Exception kOtherNamedScales[] = {
    {L"ast", kOwnG},
    {L"ccp", kOwnG},
    {L"mi", kOwnG},
    {L"qu", kOwnG},
    {L"hi-IN", "a hundred thousand is L, ten million Cr"},
};

TEST(LocaleOracle, AutomaticScalesAreTheCompactNumbersOfTheLocaleData)
{
    const std::vector<Value> vValues = scaledValues();
    Differences tDifferences;
    for (const Subject& tSubject : allSubjects())
    {
        const auto hOurs = patternFormatter(tSubject, L"0.#[scale-name:auto]");
        const LocalizedNumberFormatter tTheirs = compactFormatter(tSubject);
        const std::map<int, String> tScales = scalesOf(tTheirs);
        for (const Value& tValue : vValues)
            tDifferences.compare(tSubject, tValue, hOurs->formatAsString(&tValue.fValue),
                                 automaticallyScaled(compactOf(tTheirs, tValue.sText), tScales, tValue));
    }
    tDifferences.expectJust(kOtherAutomaticScales);
}

// "-2.5e7" by a scale of 6 -> "-2.5e1".
std::string dividedByPower(const std::string& sDecimal, int nPower)
{
    const std::size_t nExponent = sDecimal.find('e');
    return sDecimal.substr(0, nExponent + 1) + std::to_string(std::stoi(sDecimal.substr(nExponent + 1)) - nPower);
}

TEST(LocaleOracle, NamedScalesShowTheTextThatTheLocaleDataHasForOneOfThemAndOthersDoNotScale)
{
    const std::vector<Value> vValues = scaledValues();
    Differences tDifferences;
    for (const Subject& tSubject : allSubjects())
    {
        const LocalizedNumberFormatter tTheirs = numbersOf(tSubject, false, 0, 1);
        const std::map<int, String> tScales = scalesOf(compactFormatter(tSubject));
        for (int nPower = kFirstScale; nPower < kFirstScale + static_cast<int>(std::size(kScaleNames)); ++nPower)
        {
            const auto tScale = tScales.find(nPower);
            const bool bListed = tScale != tScales.end();
            const auto hOurs =
                patternFormatter(tSubject, String(L"0.#[scale-name:") + kScaleNames[nPower - kFirstScale] + L"]");
            for (const Value& tValue : vValues)
            {
                const std::string sScaled = bListed ? dividedByPower(tValue.sText, nPower) : tValue.sText;
                tDifferences.compare(tSubject, tValue, hOurs->formatAsString(&tValue.fValue),
                                     shown(tTheirs, sScaled) + (bListed ? tScale->second : String()));
            }
        }
    }
    tDifferences.expectJust(kOtherNamedScales);
}

}  // namespace
}  // namespace tov
