#include "webformat/dateformatters.h"

#include <gtest/gtest.h>

#include "intl/localetaglookup.h"
#include "support/collected.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatterimpl.h"
#include "webformat/numericformatter.h"
#include "webformat/timestampformatter.h"

namespace tov {

namespace {

using Definition = WebDateFormatDefinition;
using OutputType = ValueFormatterTypes::OutputType;
using enum ValueFormatterTypes::OutputType;

constexpr DateTime kMorning(2024, 3, 5, 7, 8, 9);

const KTWUILanguage& language()
{
    return KTWUILanguage::kDefaultLanguage;
}

Locale localeOf(const wchar_t* pTag)
{
    return LocaleTagLookup::lookupOrDefault(pTag);
}

String patternOf(int nType, const Locale& tLocale = Locale::kUSA, OutputType eOutput = kText)
{
    return WebDateFormatter::GetCustomFormatForType(static_cast<Definition::Type>(nType), tLocale, eOutput);
}

struct TypeRow
{
    int nLine;
    int nType;
    const wchar_t* pPattern;
};

constexpr TypeRow kTypes[] = {
    {__LINE__, Definition::kShortDate, L"M/d/yyyy"},
    {__LINE__, Definition::kLongDate, L"dddd, MMMM d, yyyy"},
    {__LINE__, Definition::kInputDate, L"MM/dd/yyyy"},
    {__LINE__, Definition::kTime, L"h:mm:ss tt"},
    {__LINE__, Definition::kTimeHourMin, L"h:mm tt"},
    {__LINE__, Definition::kInputTime, L"h:mm:ss tt"},
    {__LINE__, Definition::kInputTimeHourMin, L"h:mm tt"},
    {__LINE__, Definition::kShortTimeStamp, L"M/d/yyyy h:mm:ss tt"},
    {__LINE__, Definition::kLongTimeStamp, L"dddd, MMMM d, yyyy h:mm:ss tt"},
    {__LINE__, Definition::kInputTimeStamp, L"MM/dd/yyyy h:mm:ss tt"},
    {__LINE__, Definition::kODBCDate, L"yyy-MM-dd"},
    {__LINE__, Definition::kODBCTime, L"HH:mm:ss.#########"},
    {__LINE__, Definition::kODBCTimeStamp, L"yyy-MM-dd HH:mm:ss.#########"},
    {__LINE__, Definition::kTypedODBCDate, L"\"date '\"yyy-MM-dd\"'\""},
    {__LINE__, Definition::kTypedODBCTime, L"\"time '\"HH:mm:ss.#########\"'\""},
    {__LINE__, Definition::kTypedODBCTimeStamp, L"\"timestamp '\"yyy-MM-dd HH:mm:ss.#########\"'\""},
    {__LINE__, Definition::kTimeHour, L"h  tt"},  // a blank for what is dropped, and the pattern's own
    {__LINE__, Definition::kDateYearMonth, L""},
    {__LINE__, Definition::kTimeWFractionalSeconds, L"h:mm:ss.######### tt"},
    {__LINE__, Definition::kShortTimeStampWFractionalSeconds, L"M/d/yyyy h:mm:ss.######### tt"},
    {__LINE__, Definition::kPredefinedDate, L""},
    {__LINE__, Definition::kDateTypeEnd_, L""},
    {__LINE__, 22, L""},
    {__LINE__, -1, L""},
};

TEST(WebDateFormatter, KnowsThePatternOfEveryPredefinedFormat)
{
    for (const TypeRow& tRow : kTypes)
    {
        for (const OutputType eOutput : {kText, kHTML, kSQL})
            EXPECT_EQ(patternOf(tRow.nType, Locale::kUSA, eOutput), tRow.pPattern) << "row at line " << tRow.nLine;
    }
}

struct LocaleRow
{
    int nLine;
    const wchar_t* pLocale;
    int nType;
    const wchar_t* pPattern;
};

TEST(WebDateFormatter, DerivesTimesFromTheLocalesOwn)
{
    for (const LocaleRow& tRow : std::initializer_list<LocaleRow>{
             {__LINE__, L"de-DE", Definition::kTime, L"HH:mm:ss"},
             {__LINE__, L"de-DE", Definition::kTimeHourMin, L"HH:mm"},
             {__LINE__, L"de-DE", Definition::kTimeHour, L"HH"},
             {__LINE__, L"de-DE", Definition::kTimeWFractionalSeconds, L"HH:mm:ss.#########"},
             {__LINE__, L"de-DE", Definition::kShortTimeStamp, L"dd.MM.yyyy HH:mm:ss"},
             {__LINE__, L"fi-FI", Definition::kTime, L"H.mm.ss"},
             {__LINE__, L"fi-FI", Definition::kTimeHourMin, L"H.mm"},  // by the separator of the locale
             {__LINE__, L"fi-FI", Definition::kInputTimeHourMin, L"H.mm"},
             {__LINE__, L"ko-KR", Definition::kTime, L"tt h:mm:ss"},
             {__LINE__, L"ko-KR", Definition::kTimeHour, L"tt h"},
             {__LINE__, L"bg-BG", Definition::kTime, L"H:mm:ss ч."},
             {__LINE__, L"bg-BG", Definition::kTimeHour, L"H  "},  // kept: blanks stay, what stands between them goes
         })
        EXPECT_EQ(toUtf8(patternOf(tRow.nType, localeOf(tRow.pLocale))), toUtf8(String(tRow.pPattern)))
            << "row at line " << tRow.nLine;
}

std::string format(const WebValueFormatterHandle& hFormatter, const DateTime& tValue = kMorning)
{
    return hFormatter.isNull() ? "no formatter" : toUtf8(hFormatter->formatAsString(&tValue));
}

TEST(WebDateFormatter, MakesFormattersOfPatterns)
{
    const WebValueFormatterHandle hFormatter =
        WebDateFormatter::ParseCustomFormat(L"<d>[html]<b>d</b>", Locale::kUSA, language(), kHTML);
    EXPECT_EQ(format(hFormatter), "<b>5</b>");
    EXPECT_EQ(hFormatter->GetCustomFormatString(), L"<d>[html]<b>d</b>");
    EXPECT_EQ(hFormatter->outputType(), kHTML);
    EXPECT_EQ(hFormatter->valueStorageType(), SQLDataType::kStorageTimeStamp);
    EXPECT_TRUE(hFormatter->IsValidExcelPattern());
}

TEST(WebDateFormatter, MakesFormattersOfPredefinedFormats)
{
    const auto text = [](Definition::Type eType, const wchar_t* pLocale)
    { return format(WebDateFormatter::CreateDefaultDateFormatter(eType, localeOf(pLocale), language(), kText)); };
    EXPECT_EQ(text(Definition::kLongDate, L"en-US"), "Tuesday, March 5, 2024");
    EXPECT_EQ(text(Definition::kLongDate, L"de-DE"), "Dienstag, 5. März 2024");
    EXPECT_EQ(text(Definition::kTypedODBCTimeStamp, L"de-DE"), "timestamp '2024-03-05 07:08:09'");
    EXPECT_EQ(text(Definition::kTimeHour, L"en-US"), "7  AM");
    EXPECT_EQ(text(Definition::kDateYearMonth, L"en-US"), "");
}

std::string formatBy(WebValueFormatDefinition* pDefinition)
{
    return format(WebDateFormatter::CreateFormatter(WebValueFormatDefinitionHandle(pDefinition), Locale::kUSA,
                                                    language(), kText));
}

TEST(WebDateFormatter, MakesFormattersOfDefinitions)
{
    const CollectedAssertions tAssertions;
    EXPECT_EQ(formatBy(nullptr), "03/05/2024 07:08:09");
    EXPECT_EQ(formatBy(new Definition(Definition::kLongDate)), "Tuesday, March 5, 2024");
    EXPECT_EQ(formatBy(new Definition(Definition::kPredefinedDate, L"", L"dd.MM.")), "05.03.");
    EXPECT_EQ(formatBy(new Definition(Definition::kShortDate, L"", L"dd.MM.")), "3/5/2024");
    EXPECT_EQ(formatBy(new WebCustomFormatDefinition(L"yyyy[TZ:EST]")), "2024");
    EXPECT_EQ(formatBy(new WebWhistlerFormatDefinition(L"d/m/yy h:mm am/pm")), "5/3/24 7:08 AM");
    EXPECT_EQ(formatBy(new WebWhistlerFormatDefinition(L"h:mm AM/PM")), "7:08 TT");
    EXPECT_EQ(formatBy(new WebTextFormatDefinition()), "03/05/2024 07:08:09");
    EXPECT_EQ(formatBy(new WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, 0, 0)),
              "03/05/2024 07:08:09");
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(WebDateFormatter, AssertsThatADefinitionOfItsOwnPatternHasOne)
{
    const CollectedAssertions tAssertions;
    EXPECT_EQ(formatBy(new Definition(Definition::kPredefinedDate)), "");
    TimeZoneResolver tResolver;
    EXPECT_EQ(format(WebDateFormatter::CreateFormatterTZ(new Definition(Definition::kPredefinedDate), Locale::kUSA,
                                                         tResolver, L"", language(), kText)),
              "");
    ASSERT_EQ(tAssertions.count(), 2u);
    for (const CollectedAssertion& tAssertion : tAssertions.all())
    {
        EXPECT_EQ(tAssertion.sExpression, "!sCustomFormatString.empty()");
        EXPECT_EQ(tAssertion.sSource, "webformat/dateformatters");
    }
}

TimeZoneResolver resolverAt(int nDataOffset)
{
    TimeZoneResolver tResolver;
    tResolver.setMetaDataOffset(nDataOffset);
    return tResolver;
}

bool showsZones(const WebValueFormatterHandle& hFormatter)
{
    return dynamic_cast<const TimeStampFormatter*>(hFormatter.getPointer()) != nullptr;
}

TEST(WebDateFormatter, LeavesZonesAloneWithoutADataOffset)
{
    const TimeZoneResolver tResolver;
    const auto parse = [&](const wchar_t* pPattern)
    {
        const WebValueFormatterHandle hFormatter =
            WebDateFormatter::ParseCustomFormatTZ(pPattern, Locale::kUSA, language(), tResolver, L"UTC", kText);
        EXPECT_FALSE(showsZones(hFormatter));
        return hFormatter;
    };
    EXPECT_EQ(format(parse(L"HH:mm TZ")), "07:08 ");
    EXPECT_EQ(parse(L"HH:mm TZ")->GetCustomFormatString(), L"HH:mm ");
    EXPECT_EQ(parse(L"TZ HH TZ")->GetCustomFormatString(), L" HH TZ");  // the first one alone
    EXPECT_EQ(parse(L"HH[TZ:UTC]")->GetCustomFormatString(), L"HH[:UTC]");
    EXPECT_EQ(parse(L"HH")->GetCustomFormatString(), L"HH");
    EXPECT_FALSE(showsZones(WebDateFormatter::CreateDefaultDateFormatterTZ(Definition::kShortTimeStamp, Locale::kUSA,
                                                                           tResolver, L"UTC", language(), kText)));
    EXPECT_FALSE(showsZones(WebDateFormatter::CreateFormatterTZ(new Definition(Definition::kShortTimeStamp),
                                                                Locale::kUSA, tResolver, L"UTC", language(), kText)));
}

constexpr wchar_t kTokyo[] = L"Asia/Tokyo";  // nine hours east of UTC
constexpr wchar_t kDubai[] = L"Asia/Dubai";  // four

std::string formatInZone(WebValueFormatDefinition* pDefinition, const wchar_t* pZone)
{
    const WebValueFormatterHandle hFormatter = WebDateFormatter::CreateFormatterTZ(
        WebValueFormatDefinitionHandle(pDefinition), Locale::kUSA, resolverAt(0), pZone, language(), kText);
    return (showsZones(hFormatter) ? "" : "no zone: ") + format(hFormatter);
}

TEST(WebDateFormatter, ConvertsToTheDisplayZoneWhereTheDataOffsetIsKnown)
{
    const TimeZoneResolver tResolver = resolverAt(0);
    EXPECT_EQ(
        format(WebDateFormatter::ParseCustomFormatTZ(L"HH:mm", Locale::kUSA, language(), tResolver, kTokyo, kText)),
        "16:08");
    EXPECT_EQ(format(WebDateFormatter::CreateDefaultDateFormatterTZ(Definition::kTimeHourMin, Locale::kUSA, tResolver,
                                                                    kTokyo, language(), kText)),
              "4:08 PM");
    EXPECT_TRUE(showsZones(WebDateFormatter::CreateDefaultDateFormatterTZ(Definition::kTime, Locale::kUSA, tResolver,
                                                                          L"", language(), kText)));
}

TEST(WebDateFormatter, TakesTheCallersZoneBeforeTheDefinitions)
{
    EXPECT_EQ(formatInZone(new Definition(Definition::kTimeHourMin, kDubai, L""), L""), "11:08 AM");
    EXPECT_EQ(formatInZone(new Definition(Definition::kTimeHourMin, kDubai, L""), kTokyo), "4:08 PM");
    EXPECT_EQ(formatInZone(new Definition(Definition::kPredefinedDate, kDubai, L"HH"), L""), "11");
    EXPECT_EQ(formatInZone(new Definition(Definition::kPredefinedDate, kDubai, L"HH"), kTokyo), "16");
    EXPECT_EQ(formatInZone(new WebCustomFormatDefinition(L"HH[TZ:Asia/Dubai]"), kTokyo).substr(0, 2), "16");
    EXPECT_EQ(formatInZone(new WebCustomFormatDefinition(L"HH[TZ:Asia/Dubai]"), L"").substr(0, 2), "11");
    // Kept: the caller's zone does not reach the older notation.
    EXPECT_EQ(formatInZone(new WebWhistlerFormatDefinition(L"hh:mm"), kTokyo), "07:08");
    // Kept: what no definition describes is shown without zones.
    EXPECT_EQ(formatInZone(nullptr, kTokyo), "no zone: 03/05/2024 07:08:09");
    EXPECT_EQ(formatInZone(new WebTextFormatDefinition(), kTokyo), "no zone: 03/05/2024 07:08:09");
}

struct CellRow
{
    int nLine;
    DateTime tValue;
    const wchar_t* pExpected;
};

TEST(WebDateFormatter, GivesSpreadsheetsTheMillisecondsSince1970)
{
    const WebValueFormatterHandle hFormatter =
        WebDateFormatter::ParseCustomFormat(L"yyyy", Locale::kUSA, language(), kHTML);
    for (const CellRow& tRow : std::initializer_list<CellRow>{
             {__LINE__, DateTime(1970, 1, 1), L"0"},
             {__LINE__, DateTime(1970, 1, 1, 0, 0, 0, 1'999'999), L"1"},
             {__LINE__, DateTime(1970, 1, 1, 0, 0, 1, 5'000'000), L"1005"},
             {__LINE__, DateTime(2024, 3, 5, 7, 8, 9), L"1709622489000"},
             {__LINE__, DateTime(2024, 3, 5, 7, 8, 9, 123'456'789), L"1709622489123"},
             {__LINE__, DateTime(1969, 12, 31, 23, 59, 59), L"-1000"},
             {__LINE__, DateTime(1969, 12, 31, 23, 59, 59, 500'000'000), L"-500"},
             {__LINE__, DateTime(1969, 12, 31, 23, 59, 59, 999'000'000), L"-1"},
             {__LINE__, DateTime(1969, 12, 31, 23, 59, 58, 999'000'000), L"-1001"},
             {__LINE__, DateTime(1, 1, 1), L"-62135596800000"},
             {__LINE__, DateTime(9999, 12, 31, 23, 59, 59), L"253402300799000"},
             // Past what 64 bits of milliseconds hold.
             {__LINE__, DateTime(2147483647, 1, 1), L"67767976201996800000"},
         })
    {
        StringBufferTemplate<wchar_t, 32> tBuffer;
        hFormatter->formatExcelValueToBuffer(tBuffer, &tRow.tValue);
        EXPECT_EQ(tBuffer.view(), tRow.pExpected) << "row at line " << tRow.nLine;
    }
    StringBufferTemplate<wchar_t, 32> tBuffer;
    hFormatter->formatExcelValueToBuffer(tBuffer, nullptr);
    EXPECT_EQ(tBuffer.view(), L"");
}

struct TimeBracketRow
{
    int nLine;
    const wchar_t* pPattern;
    double fValue;
    const wchar_t* pLocale;
    const char* pExpected;
};

TEST(WebDateFormatter, ShowsTheTimesOfNumericPatterns)
{
    for (const TimeBracketRow& tRow : std::initializer_list<TimeBracketRow>{
             {__LINE__, L"[FMT:time]", 3725.9, L"en-US", "1:02:05 AM"},
             {__LINE__, L"[FMT:time]", 3725.9, L"de-DE", "01:02:05"},
             {__LINE__, L"[FMT:time]", 86400, L"de-DE", "00:00:00"},
             {__LINE__, L"[FMT:time]", 86401, L"de-DE", ""},
             {__LINE__, L"[FMT:time]", -1, L"de-DE", "-"},
             {__LINE__, L"[FMT:time(min)]", 90, L"de-DE", "01:30:00"},
             {__LINE__, L"[FMT:time(hour)]", 13.5, L"en-US", "1:30:00 PM"},
             {__LINE__, L"[FMT:timeHourMin]", 125, L"en-US", "2:05 AM"},
             {__LINE__, L"[FMT:timeHourMin(hour)]", 13.5, L"de-DE", "13:30"},
             {__LINE__, L"[FMT:timeHourMin(sec)]", 150, L"de-DE", "00:02"},
             {__LINE__, L"[FMT:timeHour]", 15, L"en-US", "3  PM"},
             {__LINE__, L"[FMT:timeHour]", 15, L"de-DE", "15"},
             {__LINE__, L"[FMT:timeHour(min)]", 90, L"de-DE", "01"},
             {__LINE__, L"[FMT:timeHour(sec)]", 7200, L"de-DE", "02"},
             {__LINE__, L"at [FMT:timeHourMin]!", 125, L"de-DE", "at 02:05!"},
         })
        EXPECT_EQ(
            toUtf8(NumericFormatter<double>::ParseCustomFormat(tRow.pPattern, localeOf(tRow.pLocale), kText, language())
                       ->formatAsString(&tRow.fValue)),
            tRow.pExpected)
            << "row at line " << tRow.nLine;
}

}  // namespace

}  // namespace tov
