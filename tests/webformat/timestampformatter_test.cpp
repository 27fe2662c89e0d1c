#include "webformat/timestampformatter.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/allocationcounter.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;

const DateTime kNoon(2024, 7, 1, 12, 30, 15);

// Without a session; `nDataOffset` as the request's metadata state it.
TimeZoneResolver resolverWith(int nDataOffset, const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage,
                              const MessageTableHandle& hMessages = MessageTableHandle())
{
    TimeZoneResolver tResolver(SessionTimeZonesHandle(), tLanguage, hMessages);
    tResolver.setMetaDataOffset(nDataOffset);
    return tResolver;
}

WebValueFormatterHandle formatterFor(const String& sPattern, const TimeZoneResolver& tResolver, const String& sZone,
                                     ValueFormatterTypes::OutputType eOutput = kText)
{
    return new TimeStampFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, sPattern, tResolver, sZone, eOutput);
}

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    int nDataOffset;
    const wchar_t* pZone;
    const wchar_t* pExpected;
};

constexpr int kUnknown = TimeZone::knUTCOffsetUnknown;

constexpr Row kRows[] = {
    {__LINE__, L"yyyy-MM-dd HH:mm:ss", 0, L"Europe/Paris", L"2024-07-01 14:30:15"},
    {__LINE__, L"yyyy-MM-dd HH:mm:ss", 120, L"Europe/Paris", L"2024-07-01 12:30:15"},
    {__LINE__, L"yyyy-MM-dd HH:mm:ss", 0, L"asia/kathmandu", L"2024-07-01 18:15:15"},
    {__LINE__, L"yyyy-MM-dd HH:mm:ss", 0, L"GMT+05:30", L"2024-07-01 18:00:15"},
    {__LINE__, L"yyyy-MM-dd HH:mm:ss", -720, L"Pacific/Auckland", L"2024-07-02 12:30:15"},
    // The zone's short name stands behind the whole text, wherever "TZ" stood.
    {__LINE__, L"HH:mm TZ", 0, L"America/New_York", L"08:30 ET"},
    {__LINE__, L"TZ HH:mm", 0, L"America/New_York", L" 08:30ET"},
    {__LINE__, L"HH:mm TZ TZ", 0, L"America/New_York", L"08:30  ET"},
    // No valid offset, no known zone: as it is stored, and no zone.
    {__LINE__, L"HH:mm TZ", kUnknown, L"America/New_York", L"12:30 "},
    {__LINE__, L"HH:mm TZ", 1081, L"America/New_York", L"12:30 "},
    {__LINE__, L"HH:mm TZ", 0, L"nowhere", L"12:30 "},
    {__LINE__, L"HH:mm TZ", 0, L"", L"12:30 "},
    {__LINE__, L"HH:mm TZ", 0, L"default", L"12:30 "},
    {__LINE__, L"HH:mm", 0, L"../UTC", L"12:30"},
    // The pattern may name the zone; the argument goes before it. The bracket's "TZ" asks for the name, too.
    {__LINE__, L"HH:mm[TZ: America/New_York ]", 0, L"", L"08:30ET"},
    {__LINE__, L"HH:mm[TZ:Europe/Paris]", 0, L"America/New_York", L"08:30ET"},
    {__LINE__, L"HH:mm[TZ:nowhere]", 0, L"", L"12:30"},
};

TEST(TimeStampFormatter, ShowsTheValueInTheDisplayZone)
{
    for (const Row& tRow : kRows)
    {
        const WebValueFormatterHandle hFormatter =
            formatterFor(tRow.pPattern, resolverWith(tRow.nDataOffset), tRow.pZone);
        EXPECT_EQ(hFormatter->formatAsString(&kNoon), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(TimeStampFormatter, TellsTheTimeThatItShows)
{
    const auto displayed = [](const wchar_t* pPattern, int nDataOffset, const wchar_t* pZone)
    {
        return TimeStampFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, pPattern, resolverWith(nDataOffset),
                                  pZone, kText)
            .displayedTime(kNoon);
    };
    EXPECT_EQ(displayed(L"HH:mm", 0, L"Asia/Kathmandu"), DateTime(2024, 7, 1, 18, 15, 15));
    EXPECT_EQ(displayed(L"HH:mm[TZ:Europe/Paris]", 0, L""), DateTime(2024, 7, 1, 14, 30, 15));
    EXPECT_EQ(displayed(L"HH:mm", kUnknown, L"Asia/Kathmandu"), kNoon);
    EXPECT_EQ(displayed(L"HH:mm", 0, L"nowhere"), kNoon);
}

TEST(TimeStampFormatter, AsksTheSessionWhereNoZoneIsNamed)
{
    const Handle<SessionTimeZones, SessionTimeZones> hSession(new SessionTimeZones);
    hSession->setUserBrowser(L"Asia/Tokyo");
    const TimeZoneResolver tResolver(hSession, KTWUILanguage::kDefaultLanguage, MessageTableHandle());
    EXPECT_EQ(formatterFor(L"HH:mm", tResolver, L"")->formatAsString(&kNoon), L"21:30");
    EXPECT_EQ(formatterFor(L"HH:mm", tResolver, L"default")->formatAsString(&kNoon), L"21:30");
    EXPECT_EQ(formatterFor(L"HH:mm", tResolver, L"Europe/Paris")->formatAsString(&kNoon), L"14:30");
}

TEST(TimeStampFormatter, LetsTheMessageTableNameTheZoneAndEncodesTheName)
{
    const Handle<MessageTable, MessageTable> hMessages(new MessageTable);
    hMessages->addText(L"", L"zoneShortName/America/New_York", L"<{0}>");
    const TimeZoneResolver tResolver = resolverWith(0, KTWUILanguage::kDefaultLanguage, hMessages);
    EXPECT_EQ(formatterFor(L"HH:mm TZ", tResolver, L"America/New_York")->formatAsString(&kNoon), L"08:30 <ET>");
    EXPECT_EQ(formatterFor(L"HH:mm TZ", tResolver, L"America/New_York", kHTML)->formatAsString(&kNoon),
              L"08:30 &lt;ET&gt;");
    EXPECT_EQ(formatterFor(L"HH:mm TZ", tResolver, L"America/Chicago")->formatAsString(&kNoon), L"07:30 CT");
}

TEST(TimeStampFormatter, NamesTheZoneInTheResolversLanguage)
{
    const String sText =
        formatterFor(L"TZ", resolverWith(0, KTWUILanguage(L"fr")), L"GMT+05:00")->formatAsString(&kNoon);
    EXPECT_EQ(sText, L"UTC+5");
}

TEST(TimeStampFormatter, ForwardsWhatTheInnerFormatterKnows)
{
    const WebValueFormatterHandle hFormatter = formatterFor(L"HH:mm TZ", resolverWith(0), L"Europe/Paris", kHTML);
    EXPECT_EQ(hFormatter->outputType(), kHTML);
    EXPECT_EQ(hFormatter->GetCustomFormatString(), L"HH:mm TZ");
    EXPECT_EQ(hFormatter->valueStorageType(), SQLDataType::kStorageTimeStamp);
    EXPECT_EQ(hFormatter->formatAsString(nullptr), L"&nbsp;") << "a null has no zone";
    EXPECT_EQ(formatterFor(L"HH:mm TZ", resolverWith(0), L"Europe/Paris")->formatAsString(nullptr), L"");
}

TEST(TimeStampFormatter, IsWhatTheFactoriesMakeWhereTheDataOffsetIsKnown)
{
    const SQLDataType tType(SQLDataType::kTimeStamp);
    const auto custom = [&](int nDataOffset)
    {
        return WebValueFormatter::GetCustomFormatterTZ(tType, L"yyyy-MM-dd HH:mm TZ", Locale::kUSA,
                                                       resolverWith(nDataOffset), kText,
                                                       KTWUILanguage::kDefaultLanguage, L"America/New_York")
            ->formatAsString(&kNoon);
    };
    EXPECT_EQ(custom(0), L"2024-07-01 08:30 ET");
    EXPECT_EQ(custom(kUnknown), L"2024-07-01 12:30 ");
    const auto byDefault = [&](int nDataOffset)
    {
        return WebValueFormatter::GetDefaultFormatterTZ(tType, Locale::kUSA, KTWUILanguage::kDefaultLanguage,
                                                        resolverWith(nDataOffset), L"Europe/Paris", kText)
            ->formatAsString(&kNoon);
    };
    EXPECT_EQ(byDefault(0), L"7/1/2024 2:30:15 PM");
    EXPECT_EQ(byDefault(kUnknown), L"7/1/2024 12:30:15 PM");
}

TEST(TimeStampFormatter, AllocatesNothingForAValue)
{
    const WebValueFormatterHandle hFormatter =
        formatterFor(L"dddd, d MMMM yyyy HH:mm:ss TZ", resolverWith(0), L"America/New_York");
    StringBufferTemplate<wchar_t, 256> tBuffer;
    hFormatter->formatToBuffer(tBuffer, &kNoon);
    const AllocationCounter tCounter;
    tBuffer.clear();
    hFormatter->formatToBuffer(tBuffer, &kNoon);
    EXPECT_EQ(tCounter.count(), 0u);
}

TEST(TimeStampFormatter, FormatsTheSameFromManyThreads)
{
    const WebValueFormatterHandle hFormatter =
        formatterFor(L"yyyy-MM-dd HH:mm:ss TZ", resolverWith(0), L"Africa/Casablanca");
    std::vector<String> vExpected;
    for (int nMonth = 1; nMonth <= 12; ++nMonth)
    {
        const DateTime tValue(2025, static_cast<unsigned>(nMonth), 15, 6);
        vExpected.push_back(hFormatter->formatAsString(&tValue));
    }
    std::vector<std::thread> vThreads;
    for (unsigned nThread = 0; nThread < 6; ++nThread)
    {
        vThreads.emplace_back(
            [&, nThread]
            {
                for (unsigned i = 0; i < 600; ++i)
                {
                    const unsigned nMonth = (i * (nThread + 1)) % 12;
                    const DateTime tValue(2025, nMonth + 1, 15, 6);
                    EXPECT_EQ(hFormatter->formatAsString(&tValue), vExpected[nMonth]);
                }
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
}

}  // namespace

}  // namespace tov
