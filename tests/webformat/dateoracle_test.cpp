// Dates and times of every locale against the locale data's own library, which renders the same moments by itself. What
// is decided differently is undone where its answer is made; a locale that still differs stands in a table with the
// reason.

#include <gtest/gtest.h>
#include <unicode/dtfmtsym.h>
#include <unicode/gregocal.h>
#include <unicode/smpdtfmt.h>

#include <algorithm>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatters.h"

namespace tov {

namespace {

constexpr int kMoments = 50;

struct Exception
{
    const wchar_t* pTag;
    const char* pReason;
};

constexpr const char* kRomanMonths = "the data write the month of the short date in Roman numerals";
constexpr const char* kPartsOfTheDay = "the data name six parts of the day, the date language its two halves";

constexpr Exception kExceptions[] = {
    {L"haw", kRomanMonths},
    {L"haw-US", kRomanMonths},
    {L"zh-Hant", kPartsOfTheDay},
    {L"zh-Hant-TW", kPartsOfTheDay},
};

bool isException(const String& sTag)
{
    return std::any_of(std::begin(kExceptions), std::end(kExceptions),
                       [&](const Exception& tException) { return sTag == tException.pTag; });
}

String wide(const icu::UnicodeString& sText)
{
    String sWide;
    for (int32_t n = 0; n < sText.length(); n = sText.moveIndex32(n, 1))
        sWide += static_cast<wchar_t>(sText.char32At(n));
    return sWide;
}

// Direction marks dropped, no-break blanks plain.
String normalised(const String& sText)
{
    String sResult;
    for (const wchar_t nChar : sText)
    {
        const bool bMark = nChar == 0x200E || nChar == 0x200F || nChar == 0x061C;
        const bool bBlank = nChar == 0x00A0 || nChar == 0x202F;
        if (!bMark)
            sResult += bBlank ? L' ' : nChar;
    }
    return sResult;
}

// The library's own format of one style, in the calendar carried on in both directions.
class Oracle
{
public:
    Oracle(const icu::Locale& tLocale, bool bDate, icu::DateFormat::EStyle eStyle)
        : m_pFormat(bDate ? icu::DateFormat::createDateInstance(eStyle, tLocale)
                          : icu::DateFormat::createTimeInstance(eStyle, tLocale))
    {
        auto& tFormat = dynamic_cast<icu::SimpleDateFormat&>(*m_pFormat);
        UErrorCode eStatus = U_ZERO_ERROR;
        auto pCalendar = std::make_unique<icu::GregorianCalendar>(icu::TimeZone::getGMT()->clone(), tLocale, eStatus);
        pCalendar->setGregorianChange(-8.64e15, eStatus);
        tFormat.adoptCalendar(pCalendar.release());
        widenYear(tFormat);
        EXPECT_TRUE(U_SUCCESS(eStatus));
    }

    String show(const DateTime& tValue)
    {
        UErrorCode eStatus = U_ZERO_ERROR;
        icu::GregorianCalendar tCalendar(icu::TimeZone::getGMT()->clone(), icu::Locale::getRoot(), eStatus);
        tCalendar.setGregorianChange(-8.64e15, eStatus);
        tCalendar.clear();
        tCalendar.set(tValue.year(), static_cast<int>(tValue.month()) - 1, static_cast<int>(tValue.day()),
                      static_cast<int>(tValue.hour()), static_cast<int>(tValue.minute()),
                      static_cast<int>(tValue.second()));
        icu::UnicodeString sText;
        m_pFormat->format(tCalendar.getTime(eStatus), sText);
        EXPECT_TRUE(U_SUCCESS(eStatus));
        return normalised(wide(sText));
    }

private:
    // Years are shown whole.
    static void widenYear(icu::SimpleDateFormat& tFormat)
    {
        icu::UnicodeString sPattern;
        tFormat.toPattern(sPattern);
        bool bQuoted = false;
        icu::UnicodeString sWide;
        for (int32_t n = 0; n < sPattern.length(); ++n)
        {
            bQuoted = bQuoted != (sPattern[n] == u'\'');
            const bool bSecondOfTwo = !bQuoted && sPattern[n] == u'y' && n > 0 && sPattern[n - 1] == u'y' &&
                                      (n < 2 || sPattern[n - 2] != u'y') &&
                                      (n + 1 == sPattern.length() || sPattern[n + 1] != u'y');
            if (!bSecondOfTwo)
                sWide.append(sPattern[n]);
        }
        tFormat.applyPattern(sWide);
    }

    std::unique_ptr<icu::DateFormat> m_pFormat;
};

std::vector<DateTime> moments(std::mt19937& tRandom)
{
    std::vector<DateTime> vMoments;
    for (int n = 0; n < kMoments; ++n)
        vMoments.emplace_back(static_cast<int>(tRandom() % 9999) + 1, tRandom() % 12 + 1, tRandom() % 28 + 1,
                              tRandom() % 24, tRandom() % 60, tRandom() % 60);
    return vMoments;
}

struct Style
{
    WebDateFormatDefinition::Type eType;
    bool bDate;
    icu::DateFormat::EStyle eStyle;
};

constexpr Style kStyles[] = {
    {WebDateFormatDefinition::kShortDate, true, icu::DateFormat::kShort},
    {WebDateFormatDefinition::kLongDate, true, icu::DateFormat::kFull},
    {WebDateFormatDefinition::kTime, false, icu::DateFormat::kMedium},
};

TEST(DateOracle, PredefinedFormatsAreThoseOfTheLocaleDataInEveryLocale)
{
    std::mt19937 tRandom(20240305);
    std::map<String, std::string> tDifferences;
    std::size_t nLocales = 0;
    for (const String& sTag : LocaleTagLookup::allTags())
    {
        UErrorCode eStatus = U_ZERO_ERROR;
        icu::Locale tOracleLocale = icu::Locale::forLanguageTag(toUtf8(sTag), eStatus);
        tOracleLocale.setKeywordValue("calendar", "gregorian", eStatus);
        tOracleLocale.setKeywordValue("numbers", "latn", eStatus);
        ASSERT_TRUE(U_SUCCESS(eStatus)) << toUtf8(sTag);
        const Locale tLocale = LocaleTagLookup::lookupOrDefault(sTag);
        ++nLocales;
        for (const Style& tStyle : kStyles)
        {
            Oracle tOracle(tOracleLocale, tStyle.bDate, tStyle.eStyle);
            const WebValueFormatterHandle hFormatter = WebDateFormatter::CreateDefaultDateFormatter(
                tStyle.eType, tLocale, KTWUILanguage::kDefaultLanguage, ValueFormatterTypes::kText);
            for (const DateTime& tValue : moments(tRandom))
            {
                const String sExpected = tOracle.show(tValue);
                const String sShown = normalised(hFormatter->formatAsString(&tValue));
                if (sShown != sExpected)
                    tDifferences.emplace(sTag, toUtf8(sShown + L"  instead of  " + sExpected));
            }
        }
    }
    EXPECT_GT(nLocales, 700u);
    for (const auto& [sTag, sDifference] : tDifferences)
        EXPECT_TRUE(isException(sTag)) << toUtf8(sTag) << ": " << sDifference;
    for (const Exception& tException : kExceptions)
        EXPECT_TRUE(tDifferences.contains(tException.pTag))
            << toUtf8(String(tException.pTag)) << " differs no more, though " << tException.pReason;
}

}  // namespace

}  // namespace tov
