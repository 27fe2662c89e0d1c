#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <random>
#include <thread>
#include <vector>

#include "intl/localetaglookup.h"
#include "support/allocationcounter.h"
#include "support/collected.h"
#include "support/datereference.h"
#include "support/limitedallocator.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatterimpl.h"
#include "webformat/formatterconfig.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;
using enum ValueFormatterTypes::OutputType;

constexpr DateTime kMorning(2024, 3, 5, 7, 8, 9);  // a Tuesday

Locale localeOf(const wchar_t* pTag)
{
    return LocaleTagLookup::lookupOrDefault(pTag);
}

std::string format(const String& sPattern, const DateTime& tValue, const wchar_t* pLocale = L"en-US",
                   OutputType eOutput = kText, const wchar_t* pLanguage = L"en-us")
{
    return toUtf8(WebDateFormatter::ParseCustomFormat(sPattern, localeOf(pLocale), KTWUILanguage(pLanguage), eOutput)
                      ->formatAsString(&tValue));
}

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    DateTime tValue;
    const char* pExpected;
    const wchar_t* pLocale = L"en-US";
};

void expectTexts(std::initializer_list<Row> tRows)
{
    for (const Row& tRow : tRows)
        EXPECT_EQ(format(tRow.pPattern, tRow.tValue, tRow.pLocale), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(StandardDateFormatter, WritesYears)
{
    expectTexts({
        {__LINE__, L"y", DateTime(2024, 1, 1), "24"},
        {__LINE__, L"y", DateTime(2005, 1, 1), "5"},
        {__LINE__, L"y", DateTime(2000, 1, 1), "0"},
        {__LINE__, L"yy", DateTime(2024, 1, 1), "24"},
        {__LINE__, L"yy", DateTime(2005, 1, 1), "05"},
        {__LINE__, L"yy", DateTime(7, 1, 1), "07"},
        {__LINE__, L"yyy", DateTime(2024, 1, 1), "2024"},
        {__LINE__, L"yyy", DateTime(800, 1, 1), "0800"},
        {__LINE__, L"yyy", DateTime(1, 1, 1), "0001"},
        {__LINE__, L"yyy", DateTime(12024, 1, 1), "2024"},  // the last four digits
        {__LINE__, L"yyyyy", DateTime(800, 1, 1), "0800"},
        {__LINE__, L"yyyy", DateTime(2024, 1, 1), "2024"},
        {__LINE__, L"yyyy", DateTime(1000, 1, 1), "1000"},
        {__LINE__, L"yyyy", DateTime(9999, 1, 1), "9999"},
        {__LINE__, L"yyyy", DateTime(800, 1, 1), "800"},
        {__LINE__, L"yyyy", DateTime(1, 1, 1), "1"},
        {__LINE__, L"yyyy", DateTime(0, 1, 1), "0"},
        {__LINE__, L"yyyy", DateTime(12024, 1, 1), "12024"},
        {__LINE__, L"yyyy", DateTime(2147483647, 1, 1), "2147483647"},
        // Years before 1 show their sign where the whole year is written.
        {__LINE__, L"yyyy yyy yy y", DateTime(-44, 1, 1), "-44 0044 44 44"},
        {__LINE__, L"yyyy yyy", DateTime(-2147483647 - 1, 1, 1), "-2147483648 3648"},
    });
}

TEST(StandardDateFormatter, WritesMonthsAndDays)
{
    expectTexts({
        {__LINE__, L"M-MM", DateTime(2024, 3, 5), "3-03"},
        {__LINE__, L"M-MM", DateTime(2024, 12, 5), "12-12"},
        {__LINE__, L"MMM", DateTime(2024, 9, 1), "Sep"},
        {__LINE__, L"MMMM", DateTime(2024, 9, 1), "September"},
        {__LINE__, L"MMMMM", DateTime(2024, 9, 1), "September"},
        {__LINE__, L"d-dd-D-DD", DateTime(2024, 3, 5), "5-05-5-05"},
        {__LINE__, L"d-dd", DateTime(2024, 3, 31), "31-31"},
        {__LINE__, L"ddd", kMorning, "Tue"},
        {__LINE__, L"dddd", kMorning, "Tuesday"},
        {__LINE__, L"DDD", kMorning, "TUE"},
        {__LINE__, L"DDDD", kMorning, "TUESDAY"},
        {__LINE__, L"ddddd", kMorning, "T"},
        {__LINE__, L"DDDDD", kMorning, "T"},
        {__LINE__, L"dddddd", kMorning, "Tuesday"},
        {__LINE__, L"DDDDDD", kMorning, "Tuesday"},
        {__LINE__, L"dddd", DateTime(2024, 1, 1), "Monday"},
        {__LINE__, L"dddd", DateTime(2024, 1, 7), "Sunday"},
        {__LINE__, L"[$-F800]dddd, mmmm dd, yyyy", kMorning, "Tuesday, 08 05, 2024"},  // "m" is no month here
    });
}

TEST(StandardDateFormatter, WritesTimes)
{
    expectTexts({
        {__LINE__, L"h:hh:H:HH", DateTime(2024, 3, 5, 0, 30), "12:12:0:00"},
        {__LINE__, L"h:hh:H:HH", DateTime(2024, 3, 5, 1, 30), "1:01:1:01"},
        {__LINE__, L"h:hh:H:HH", DateTime(2024, 3, 5, 12, 30), "12:12:12:12"},
        {__LINE__, L"h:hh:H:HH", DateTime(2024, 3, 5, 13, 30), "1:01:13:13"},
        {__LINE__, L"h:hh:H:HH", DateTime(2024, 3, 5, 23, 30), "11:11:23:23"},
        {__LINE__, L"h:hh:H:HH", DateTime(2024, 3, 5, 24, 0), "12:12:0:00"},  // the end of the day
        {__LINE__, L"m:mm:s:ss", DateTime(2024, 3, 5, 0, 3, 7), "3:03:7:07"},
        {__LINE__, L"m:mm:s:ss", DateTime(2024, 3, 5, 0, 33, 47), "33:33:47:47"},
        {__LINE__, L"t|tt|ttt", DateTime(2024, 3, 5, 11, 59), "AM|AM|AM"},
        {__LINE__, L"t|tt|ttt", DateTime(2024, 3, 5, 12, 0), "PM|PM|PM"},
        {__LINE__, L"yyyy-MM-dd HH:mm:ss", kMorning, "2024-03-05 07:08:09"},
        {__LINE__, L"d/M/yy h:m t", kMorning, "5/3/24 7:8 AM"},
        {__LINE__, L"HH:mm TZ", kMorning, "07:08 "},
        {__LINE__, L"\"at\" HH", kMorning, "at 07"},
        {__LINE__, L"\"say \\\"hi\\\"\" HH", kMorning, "say \"hi\" 07"},
        {__LINE__, L"AM/PM", kMorning, "A3/P3"},
        {__LINE__, L"gg", kMorning, "AD"},
        {__LINE__, L"g", kMorning, "g"},
        {__LINE__, L"", kMorning, ""},
    });
}

TEST(StandardDateFormatter, RendersPredefinedFormats)
{
    expectTexts({
        {__LINE__, L"[FMT:dateShort]", kMorning, "3/5/2024"},
        {__LINE__, L"[FMT:dateLong]", kMorning, "Tuesday, March 5, 2024"},
        {__LINE__, L"[FMT:time]", kMorning, "7:08:09 AM"},
        {__LINE__, L"[FMT:timeStampODBC]", DateTime(24, 3, 5, 7, 8, 9, 500'000'000), "0024-03-05 07:08:09.5"},
        {__LINE__, L"[FMT:timeTyped]", kMorning, "time '07:08:09'"},
        {__LINE__, L"[FMT:dateLong]", kMorning, "Dienstag, 5. März 2024", L"de-DE"},
        {__LINE__, L"[L:de-DE][FMT:dateShort]", kMorning, "05.03.2024"},
    });
}

// Names come from the locale data; the rows are languages whose months inside a date differ from those by themselves.
TEST(StandardDateFormatter, ChoosesTheCaseOfAMonthByTheDayDirectlyBeforeIt)
{
    expectTexts({
        {__LINE__, L"dMMMM", kMorning, "5марта", L"ru-RU"},
        {__LINE__, L"ddMMMM", kMorning, "05марта", L"ru-RU"},
        {__LINE__, L"d MMMM", kMorning, "5 март", L"ru-RU"},    // a literal stands between
        {__LINE__, L"d\"\"MMMM", kMorning, "5март", L"ru-RU"},  // an empty one, too
        {__LINE__, L"dTZMMMM", kMorning, "5марта", L"ru-RU"},
        {__LINE__, L"MMMM", kMorning, "март", L"ru-RU"},
        {__LINE__, L"dMMM", kMorning, "5мар.", L"ru-RU"},
        {__LINE__, L"ddddMMMM", kMorning, "вторникмарт", L"ru-RU"},  // the name of a day is no day
        {__LINE__, L"d[L:ru-RU]MMMM", kMorning, "5март", L"en-US"},  // a change of the locale stands between
        {__LINE__, L"d [L:ru-RU;dates]MMMM[L:ru-RU], MMMM", kMorning, "5 марта, март", L"ru-RU"},
        {__LINE__, L"[FMT:dateLong]", kMorning, "вторник, 5 марта 2024 г.", L"ru-RU"},
        {__LINE__, L"dMMMM", kMorning, "5marca", L"pl-PL"},
        {__LINE__, L"d MMMM", kMorning, "5 marzec", L"pl-PL"},
    });
}

TEST(StandardDateFormatter, TakesNamesFromTheCurrentLocale)
{
    expectTexts({
        {__LINE__, L"dddd [L:de-DE]dddd [L:fr-FR]dddd [L:]dddd", kMorning, "Tuesday Dienstag mardi Tuesday"},
        {__LINE__, L"[L:de-DE]MMMM|MMM|ddd|ddddd|gg", kMorning, "März|März|Di.|D|n. Chr."},
        {__LINE__, L"t [L:ko-KR]t", kMorning, "AM 오전"},
        {__LINE__, L"[L:nowhere]dddd", kMorning, "Tuesday"},
        {__LINE__, L"[L:de-DE][L:nowhere]dddd", kMorning, "Dienstag"},
        {__LINE__, L"DDDD", DateTime(2024, 3, 8), "CUMA", L"tr-TR"},
        {__LINE__, L"DDDD", DateTime(2024, 3, 9), "CUMARTESİ", L"tr-TR"},  // by the rules of the language
        {__LINE__, L"[L:fr-FR]ss.0", DateTime(2024, 3, 8, 0, 0, 1, 500'000'000), "01.5"},  // numbers stay at home
        {__LINE__, L"[L:en-US]ss.0", DateTime(2024, 3, 8, 0, 0, 1, 500'000'000), "01,5", L"fr-FR"},
    });
}

TEST(StandardDateFormatter, WritesFractionsOfASecond)
{
    constexpr DateTime tValue(2024, 3, 5, 7, 8, 9, 123'456'789);
    expectTexts({
        {__LINE__, L"ss.###", tValue, "09.123"},
        {__LINE__, L"s.#", tValue, "9.1"},
        {__LINE__, L"ss.#########", tValue, "09.123456789"},
        {__LINE__, L"ss.############", tValue, "09.123456789"},
        {__LINE__, L"ss.000000000000", tValue, "09.123456789000"},
        {__LINE__, L"sssss.0", tValue, "00009.1"},
        {__LINE__, L"ss.", tValue, "09"},
        {__LINE__, L"ss.###", kMorning, "09"},
        {__LINE__, L"ss.0##", kMorning, "09.0"},
        {__LINE__, L"ss.#0#", kMorning, "09.00"},
        {__LINE__, L"ss.###", DateTime(2024, 3, 5, 7, 8, 9, 120'000'000), "09.12"},
        {__LINE__, L"ss.###", DateTime(2024, 3, 5, 7, 8, 9, 1), "09"},
        {__LINE__, L"ss.#########", DateTime(2024, 3, 5, 7, 8, 9, 1), "09.000000001"},
        {__LINE__, L"ss.00", DateTime(2024, 3, 5, 7, 8, 9, 125'000'000), "09.13"},  // halves up
        {__LINE__, L"ss,00", tValue, "09,00"},                                      // only a point begins a fraction
        {__LINE__, L"ss.##", tValue, "09,12", L"de-DE"},
        {__LINE__, L"s.0000000000000000000000", tValue, "9.1234567890000000000000"},
        {__LINE__, L"ssssssssssssssssssssssssssssssssssss.0", tValue, "000000000000000000000000000000000009.1"},
    });
}

TEST(StandardDateFormatter, CarriesRoundedSecondsAsFarAsTheyGo)
{
    expectTexts({
        {__LINE__, L"HH:mm:ss.###", DateTime(2024, 3, 5, 7, 8, 59, 999'600'000), "07:09:00"},
        {__LINE__, L"HH:mm:ss.###", DateTime(2024, 3, 5, 7, 8, 59, 999'499'999), "07:08:59.999"},
        {__LINE__, L"HH:mm:ss.###", DateTime(2024, 3, 5, 7, 8, 59, 999'500'000), "07:09:00"},
        {__LINE__, L"yyyy-MM-dd HH:mm:ss.0", DateTime(2023, 12, 31, 23, 59, 59, 950'000'000), "2024-01-01 00:00:00.0"},
        {__LINE__, L"yyyy-MM-dd HH:mm:ss.0", DateTime(2024, 2, 28, 23, 59, 59, 950'000'000), "2024-02-29 00:00:00.0"},
        {__LINE__, L"dddd s.", DateTime(2024, 3, 5, 23, 59, 59, 500'000'000), "Wednesday 0"},
        // Below 59 the seconds alone are rounded: they cannot carry into the minute.
        {__LINE__, L"HH:mm:ss.###", DateTime(2024, 3, 5, 7, 8, 58, 999'600'000), "07:08:59"},
        // Without a fraction nothing is rounded.
        {__LINE__, L"HH:mm:ss", DateTime(2024, 3, 5, 7, 8, 59, 999'999'999), "07:08:59"},
        // Kept: the last fraction of the pattern decides.
        {__LINE__, L"ss.000 ss.", DateTime(2024, 3, 5, 7, 8, 59, 600'000'000), "00.000 00"},
    });
}

// The seconds that a formatter of the numeric pattern writes for the same number.
String secondsByFormatter(const String& sPattern, const Locale& tLocale, OutputType eOutput, const DateTime& tValue)
{
    const double fSeconds = tValue.second() + tValue.nanoseconds() / 1'000'000'000.0;
    return NumericFormatter<double>::ParseCustomFormat(sPattern, tLocale, eOutput, KTWUILanguage::kDefaultLanguage)
        ->formatAsString(&fSeconds);
}

DateTime randomSeconds(std::mt19937& tRandom)
{
    // Short fractions and those near a rounding boundary are as frequent as any.
    static constexpr unsigned kUnits[] = {1, 10, 1000, 100'000, 1'000'000, 50'000'000, 500'000'000};
    const unsigned nUnit = kUnits[tRandom() % std::size(kUnits)];
    const unsigned nNanoseconds = (tRandom() % 1'000'000'000) / nUnit * nUnit;
    return DateTime(2024, 3, 5, 7, 8, tRandom() % 59, nNanoseconds);
}

String randomFractionPattern(std::mt19937& tRandom)
{
    String sPattern(tRandom() % 3 + 1, L's');
    sPattern += L'.';
    for (unsigned n = tRandom() % 13; n > 0; --n)
        sPattern += tRandom() % 2 ? L'#' : L'0';
    return sPattern;
}

TEST(StandardDateFormatter, WritesSecondsAsTheNumericPatternDoes)
{
    std::mt19937 tRandom(20240305);
    const Locale aLocales[] = {Locale::kUSA, localeOf(L"de-DE"), localeOf(L"fr-CH"), localeOf(L"ar-EG")};
    for (int n = 0; n < 20'000; ++n)
    {
        const String sPattern = randomFractionPattern(tRandom);
        const Locale& tLocale = aLocales[tRandom() % std::size(aLocales)];
        const OutputType eOutput = tRandom() % 2 ? kText : kHTML;
        const DateTime tValue = randomSeconds(tRandom);
        String sNumeric = sPattern;
        std::replace(sNumeric.begin(), sNumeric.end(), L's', L'0');
        EXPECT_EQ(WebDateFormatter::ParseCustomFormat(sPattern, tLocale, KTWUILanguage::kDefaultLanguage, eOutput)
                      ->formatAsString(&tValue),
                  secondsByFormatter(sNumeric, tLocale, eOutput, tValue))
            << toUtf8(sPattern) << " of " << tValue.second() << " s " << tValue.nanoseconds() << " ns";
    }
}

// Few significant digits round the seconds, many show that the fraction is a binary one: whatever is configured, the
// seconds are those of the numeric pattern.
TEST(StandardDateFormatter, FollowsTheConfiguredSignificantDigits)
{
    FormatterConfig& tConfig = FormatterConfig::getInstance();
    const int nBefore = tConfig.getNumericFormatterMaxSignificantDigits();
    const WebValueFormatterHandle hFormatter =
        WebDateFormatter::ParseCustomFormat(L"ss.############", Locale::kUSA, KTWUILanguage::kDefaultLanguage, kText);
    std::mt19937 tRandom(42);
    for (const int nDigits : {1, 2, 4, 8, 11, 12, 13, 15, 16, 17, 40})
    {
        tConfig.setMaxSignificantDigitsForTestsOnly(nDigits);
        for (int n = 0; n < 300; ++n)
        {
            const DateTime tValue = randomSeconds(tRandom);
            EXPECT_EQ(hFormatter->formatAsString(&tValue),
                      secondsByFormatter(L"00.############", Locale::kUSA, kText, tValue))
                << nDigits << " digits, " << tValue.second() << " s " << tValue.nanoseconds() << " ns";
        }
    }
    tConfig.setMaxSignificantDigitsForTestsOnly(nBefore);
}

int dayOfWeekByFormula(int nYear, int nMonth, int nDay)
{
    static constexpr int kDays[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
    const bool bLeap = (nYear % 4 == 0 && nYear % 100 != 0) || nYear % 400 == 0;
    const long nYears = nYear - 1;
    return static_cast<int>((nDay - 1 + 365 * nYears + nYears / 4 - nYears / 100 + nYears / 400 + kDays[nMonth - 1] +
                             (nMonth > 2 && bLeap ? 1 : 0)) %
                            7);
}

TEST(StandardDateFormatter, FindsTheDayOfTheWeek)
{
    StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", kText);
    StandardDateFormatter::DateFormat tDayOfWeek;
    tDayOfWeek.eType = DatePattern::kDOW;
    tFormatter.AddFormat(tDayOfWeek);
    for (const int nYear : {1, 4, 100, 400, 1582, 1600, 1900, 1999, 2000, 2023, 2024, 2100, 9999, 2'000'000'000})
    {
        for (int nMonth = 1; nMonth <= 12; ++nMonth)
        {
            const DateTime tValue(nYear, static_cast<unsigned>(nMonth), 28);
            EXPECT_EQ(tFormatter.formatAsString(&tValue), std::to_wstring(dayOfWeekByFormula(nYear, nMonth, 28)))
                << nYear << "-" << nMonth;
        }
    }
    // 400 years are a whole number of weeks, before the year 1 too.
    for (const int nYear : {0, -1, -3, -4, -100, -399, -400, -401})
    {
        const DateTime tEarly(nYear, 3, 1);
        EXPECT_EQ(tFormatter.formatAsString(&tEarly), std::to_wstring(dayOfWeekByFormula(nYear + 800, 3, 1))) << nYear;
    }
}

TEST(StandardDateFormatter, WritesNamesOfNoMonthAsNothing)
{
    expectTexts({
        {__LINE__, L"[MMMM]MMMM|MMM|MMMMM|M|MM", DateTime(2024, 0, 1), "|||0|00"},
        {__LINE__, L"MMMM|M|MM", DateTime(2024, 13, 1), "|13|13"},
        {__LINE__, L"MMMM|M|MM", DateTime(2024, 255, 1), "|255|55"},
        {__LINE__, L"d|dd|h|H|m|s", DateTime(2024, 1, 200, 255, 255, 50), "200|00|3|15|255|50"},
    });
    // A month that is none counts as January, a day that is none as its neighbour's neighbour: nothing is out of
    // bounds.
    for (const unsigned nMonth : {0u, 13u, 255u})
        EXPECT_EQ(format(L"dddd", DateTime(2024, nMonth, 0)), "Sunday") << nMonth;
}

TEST(StandardDateFormatter, EncodesLiteralsForTheOutput)
{
    EXPECT_EQ(format(L"\"o'clock\" '", kMorning, L"en-US", kText), "o'clock '");
    EXPECT_EQ(format(L"\"o'clock\" '", kMorning, L"en-US", kSQL), "o'clock '");
    EXPECT_EQ(format(L"\"o'clock\" '", kMorning, L"en-US", kSQLLiteral), "o''clock ''");
    EXPECT_EQ(format(L"\"o'clock\" '", kMorning, L"en-US", kJavaScript), "o\\u0027clock \\u0027");
    EXPECT_EQ(format(L"\"<b>\"&d", kMorning, L"en-US", kHTML), "&lt;b&gt;&amp;5");
    EXPECT_EQ(format(L"\"<b>\"&d", kMorning, L"en-US", kXLSX), "&lt;b&gt;&amp;5");
}

String shown(const wchar_t* pPattern, const Locale& tLocale, OutputType eOutput, const DateTime& tValue)
{
    return WebDateFormatter::ParseCustomFormat(pPattern, tLocale, KTWUILanguage::kDefaultLanguage, eOutput)
        ->formatAsString(&tValue);
}

TEST(StandardDateFormatter, WritesTheNamesOfEveryLocaleEncodedForTheOutput)
{
    for (const String& sTag : LocaleTagLookup::allTags())
    {
        const Locale tLocale = LocaleTagLookup::lookupOrDefault(sTag);
        for (const OutputType eOutput : {kText, kHTML, kSQLLiteral, kJavaScript})
        {
            const auto expected = [&](const String& sName)
            { return WebValueFormatter::ConvertLiteral(sName, kText, eOutput); };
            const int n = static_cast<int>(sTag.size() + sTag.front()) % 12;  // any month, any day
            const DateTime tMonth(2024, static_cast<unsigned>(n) + 1, 1, 13);
            EXPECT_EQ(shown(L"MMMM", tLocale, eOutput, tMonth), expected(tLocale.getName(Locale::kNominitiveMonth, n)));
            EXPECT_EQ(shown(L"MMM", tLocale, eOutput, tMonth), expected(tLocale.getName(Locale::kAbbreviatedMonth, n)));
            EXPECT_EQ(shown(L"dMMMM", tLocale, eOutput, tMonth),
                      L"1" + expected(tLocale.getName(Locale::kGenetiveMonth, n)));
            EXPECT_EQ(shown(L"tt", tLocale, eOutput, tMonth), expected(tLocale.getInfo(Locale::kPM)));
            const DateTime tDay(2024, 1, static_cast<unsigned>(n % 7) + 1);
            EXPECT_EQ(shown(L"dddd", tLocale, eOutput, tDay), expected(tLocale.getName(Locale::kDay, n % 7)));
            EXPECT_EQ(shown(L"ddd", tLocale, eOutput, tDay), expected(tLocale.getName(Locale::kAbbreviatedDay, n % 7)));
        }
    }
}

TEST(StandardDateFormatter, WritesNothingOrABlankForNullValues)
{
    const auto nullText = [](OutputType eOutput)
    {
        return WebDateFormatter::ParseCustomFormat(L"yyyy", Locale::kUSA, KTWUILanguage::kDefaultLanguage, eOutput)
            ->formatAsString(nullptr);
    };
    EXPECT_EQ(nullText(kHTML), L"&nbsp;");
    for (const OutputType eOutput : {kText, kXML, kJavaScript, kPDF, kSQL, kSQLLiteral, kXLSX})
        EXPECT_EQ(nullText(eOutput), L"") << eOutput;
    for (const OutputType eOutput : {kText, kHTML})
    {
        StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", eOutput);
        tFormatter.setNullFormat(L"never");
        EXPECT_EQ(tFormatter.formatAsString(nullptr), L"never");
    }
}

TEST(StandardDateFormatter, MarksTextOfHebrewPages)
{
    EXPECT_EQ(format(L"d", kMorning, L"he-IL", kHTML, L"he-IL"), "&#x200e;5&#x200e;");
    EXPECT_EQ(format(L"d", kMorning, L"en-US", kHTML, L"HE"), "&#x200e;5&#x200e;");
    EXPECT_EQ(format(L"", kMorning, L"en-US", kHTML, L"he"), "&#x200e;&#x200e;");
    EXPECT_EQ(format(L"d", kMorning, L"he-IL", kText, L"he-IL"), "5");
    EXPECT_EQ(format(L"d", kMorning, L"he-IL", kXML, L"he-IL"), "5");
    EXPECT_EQ(format(L"d", kMorning, L"he-IL", kHTML, L"en-us"), "5");
    // The text of a null value stands without marks.
    EXPECT_EQ(
        WebDateFormatter::ParseCustomFormat(L"d", Locale::kUSA, KTWUILanguage(L"he"), kHTML)->formatAsString(nullptr),
        L"&nbsp;");
}

// Patterns and moments at random, moments outside the calendar among them.
TEST(StandardDateFormatter, ShowsWhatAWalkOverTheElementsShows)
{
    static constexpr const wchar_t* kPieces[] = {L"y",
                                                 L"yy",
                                                 L"yyy",
                                                 L"yyyy",
                                                 L"M",
                                                 L"MM",
                                                 L"MMM",
                                                 L"MMMM",
                                                 L"d",
                                                 L"dd",
                                                 L"ddd",
                                                 L"dddd",
                                                 L"DDDD",
                                                 L"ddddd",
                                                 L"h",
                                                 L"hh",
                                                 L"H",
                                                 L"HH",
                                                 L"m",
                                                 L"mm",
                                                 L"s",
                                                 L"ss",
                                                 L"ss.000",
                                                 L"s.#0#####",
                                                 L"t",
                                                 L"gg",
                                                 L"TZ",
                                                 L"-",
                                                 L": ",
                                                 L"\"<literal of more than a block>\"",
                                                 L"\"\"",
                                                 L"[L:ru-RU;dates]",
                                                 L"[L:ko-KR]",
                                                 L"[L:]",
                                                 L"[FMT:dateLong]",
                                                 L"[FMT:timeStampTyped]"};
    std::mt19937 tRandom(99);
    const Locale aLocales[] = {Locale::kUSA, localeOf(L"ru-RU"), localeOf(L"de-DE")};
    for (int n = 0; n < 5'000; ++n)
    {
        String sPattern;
        for (unsigned nPieces = tRandom() % 12; nPieces > 0; --nPieces)
            sPattern += kPieces[tRandom() % std::size(kPieces)];
        const auto eOutput = static_cast<OutputType>(tRandom() % kLastType);
        const Locale& tLocale = aLocales[tRandom() % std::size(aLocales)];
        StandardDateFormatter tFormatter(tLocale, KTWUILanguage::kDefaultLanguage, sPattern, eOutput);
        tFormatter.addCustomFormat(sPattern, tLocale, eOutput);
        const int nYear = tRandom() % 8 ? static_cast<int>(tRandom() % 9999) + 1 : static_cast<int>(tRandom());
        const bool bAnyByte = tRandom() % 8 == 0;
        const DateTime tValue(nYear, tRandom() % (bAnyByte ? 256 : 12) + 1, tRandom() % (bAnyByte ? 256 : 28) + 1,
                              tRandom() % (bAnyByte ? 256 : 24), tRandom() % 60, tRandom() % 60,
                              tRandom() % 1'000'000'000);
        EXPECT_EQ(toUtf8(tFormatter.formatAsString(&tValue)), toUtf8(DateReference(tFormatter.pattern()).show(tValue)))
            << toUtf8(sPattern);
    }
}

constexpr const wchar_t* kManyKinds[] = {
    L"yyyy-MM-dd HH:mm:ss",       L"dddd, MMMM d, yyyy h:mm tt gg",
    L"DDD M/d/y \"<at>\" ss.000", L"[L:de-DE]dddd[L:], d MMM",
    L"[FMT:timeStampTyped]",      L"a long literal text of more than one block of characters, \"quoted, too\" yyyy",
};

TEST(StandardDateFormatter, RendersWithoutAllocating)
{
    for (const wchar_t* pPattern : kManyKinds)
    {
        const WebValueFormatterHandle hFormatter =
            WebDateFormatter::ParseCustomFormat(pPattern, Locale::kUSA, KTWUILanguage::kDefaultLanguage, kHTML);
        StringBufferTemplate<wchar_t, 512> tBuffer;
        const AllocationCounter tCounter;
        hFormatter->formatToBuffer(tBuffer, &kMorning);
        hFormatter->formatToBuffer(tBuffer, nullptr);
        EXPECT_EQ(tCounter.count(), 0u) << toUtf8(String(pPattern));
    }
}

TEST(StandardDateFormatter, WritesTheSameIntoBuffersOfEverySize)
{
    for (const wchar_t* pPattern : kManyKinds)
    {
        const std::string sExpected = format(pPattern, kMorning);
        for (std::size_t nFilled = 0; nFilled < 140; ++nFilled)
        {
            StringBufferBaseTemplate<wchar_t> tBuffer;
            tBuffer.appendRepeated(L'x', nFilled);
            WebDateFormatter::ParseCustomFormat(pPattern, Locale::kUSA, KTWUILanguage::kDefaultLanguage, kText)
                ->formatToBuffer(tBuffer, &kMorning);
            EXPECT_EQ(toUtf8(tBuffer.view()), std::string(nFilled, 'x') + sExpected);
        }
    }
}

TEST(StandardDateFormatter, LeavesTheBufferAsItWasWhereMemoryRunsOut)
{
    for (const wchar_t* pPattern : {L"yyyy-MM-dd HH:mm:ss", L"\"four\" dddd, MMMM d", L"ss.00000000000000000"})
    {
        const WebValueFormatterHandle hFormatter =
            WebDateFormatter::ParseCustomFormat(pPattern, Locale::kUSA, KTWUILanguage(L"he"), kHTML);
        StringBufferTemplate<wchar_t, 16> tBuffer;
        tBuffer.append(L"kept");
        LimitedAllocator tAllocator(0);
        EXPECT_THROW(hFormatter->formatToBuffer(tBuffer, &kMorning), std::bad_alloc) << toUtf8(String(pPattern));
        EXPECT_EQ(tBuffer.view(), L"kept");
    }
}

TEST(StandardDateFormatter, FormatsOnManyThreadsAsOnOne)
{
    const WebValueFormatterHandle hFormatter = WebDateFormatter::ParseCustomFormat(
        L"dddd, [L:de-DE]MMMM ss.0##", Locale::kUSA, KTWUILanguage::kDefaultLanguage, kHTML);
    const String sExpected = hFormatter->formatAsString(&kMorning);
    std::vector<std::thread> vThreads;
    std::atomic<int> nWrong{0};
    for (int nThread = 0; nThread < 4; ++nThread)
        vThreads.emplace_back(
            [&]
            {
                const WebValueFormatterHandle hOwn = hFormatter;
                for (int n = 0; n < 500; ++n)
                    nWrong += hOwn->formatAsString(&kMorning) != sExpected;
            });
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nWrong, 0);
}

}  // namespace

}  // namespace tov
