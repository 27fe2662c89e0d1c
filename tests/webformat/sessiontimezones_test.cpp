#include "webformat/sessiontimezones.h"

#include <gtest/gtest.h>

#include <atomic>
#include <string>
#include <thread>
#include <vector>

#include "utilities/configreader.h"

namespace tov {

namespace {

struct OffsetRow
{
    int nLine;
    const wchar_t* pText;
    int nExpected;
};

constexpr int kFallback = 77;

constexpr OffsetRow kOffsetRows[] = {
    {__LINE__, L"", kFallback},
    {__LINE__, L"default", kFallback},
    {__LINE__, L"DeFault", kFallback},
    {__LINE__, L"unknown", TimeZone::knUTCOffsetUseDefault},
    {__LINE__, L"UNKNOWN", TimeZone::knUTCOffsetUseDefault},
    {__LINE__, L"-60", -60},
    {__LINE__, L"+90", 90},
    {__LINE__, L"90 minutes", 90},
    {__LINE__, L"GMT+5", 0},  // no colon: a text that begins with a letter reads as 0
    {__LINE__, L"x", 0},
    {__LINE__, L"GMT+05:30", 330},
    {__LINE__, L"GMT-05:30", -330},
    {__LINE__, L"GMT-01:00", -60},
    {__LINE__, L"GMT+00:45", -45},  // kept: hours of 0 subtract the minutes
    {__LINE__, L"GMT+00:30", -30},
    {__LINE__, L"05:30", 330},
    {__LINE__, L"-5:30", -330},
    {__LINE__, L"0:15", -15},
    {__LINE__, L":15", -15},
    {__LINE__, L"x GMT+02:00 GMT-09:00", 120},
    {__LINE__, L"5:GMT", -0},  // "GMT" behind the colon leaves no hours
    {__LINE__, L"5:30 GMT", -30},
    {__LINE__, L"1:", 60},
    {__LINE__, L"99999999999999999999", 9999999},  // far from any valid offset, and from the special ones
    {__LINE__, L"-99999999999999999999", -9999999},
};

TEST(SessionTimeZones, ReadsOffsets)
{
    for (const OffsetRow& tRow : kOffsetRows)
        EXPECT_EQ(SessionTimeZones::offsetFromText(tRow.pText, kFallback), tRow.nExpected)
            << "row at line " << tRow.nLine;
}

// Makes a configuration the process's own for a test and takes its values away afterwards.
class Configured
{
public:
    explicit Configured(const std::string& sTimeZone) { set("<c><TimeZone>" + sTimeZone + "</TimeZone></c>"); }
    ~Configured()
    {
        set("<c/>");
        ConfigReader::setGlobalInstance(nullptr);
    }

private:
    static void set(const std::string& sXml) { ConfigReader::setGlobalInstance(ConfigReader::fromText(sXml)); }
};

TEST(SessionTimeZones, HasNothingAtFirst)
{
    const SessionTimeZones tSession;
    EXPECT_EQ(tSession.getUserPreferredTimeZone().getId(), TimeZone::kIDUnknown);
    EXPECT_EQ(tSession.getConsistentDisplayTimeZone(), L"");
    EXPECT_EQ(tSession.getDefaultDataOffset(), TimeZone::knUTCOffsetUnknown);
}

struct PreferredRow
{
    int nLine;
    const wchar_t* pStored;
    const wchar_t* pVariable;
    const wchar_t* pBrowser;
    const char* pConfigured;
    const wchar_t* pExpected;
};

constexpr PreferredRow kPreferredRows[] = {
    {__LINE__, L"Europe/Paris", L"Asia/Tokyo", L"Asia/Kolkata", "America/New_York", L"Europe/Paris"},
    {__LINE__, L"default", L"Asia/Tokyo", L"Asia/Kolkata", "America/New_York", L"Asia/Tokyo"},
    {__LINE__, L"default", L"", L"Asia/Kolkata", "", L"Asia/Kolkata"},
    {__LINE__, L"", L"Asia/Tokyo", L"Asia/Kolkata", "America/New_York", L"Asia/Tokyo"},
    {__LINE__, L"", L"", L"Asia/Kolkata", "America/New_York", L"Asia/Kolkata"},
    {__LINE__, L"", L"", L"", "America/New_York", L"America/New_York"},
    {__LINE__, L"", L"", L"", "", TimeZone::kIDUnknown},
    {__LINE__, L"europe/paris", L"", L"", "", L"Europe/Paris"},
    {__LINE__, L"Tokyo Standard Time", L"", L"", "", L"Asia/Tokyo"},       // a Windows name
    {__LINE__, L"nowhere", L"Asia/Tokyo", L"", "", TimeZone::kIDUnknown},  // the first source counts, known or not
    {__LINE__, L"", L"default", L"Asia/Tokyo", "", TimeZone::kIDUnknown},  // "default" is special as a preference only
    {__LINE__, L"Default", L"Asia/Tokyo", L"", "", TimeZone::kIDUnknown},  // and in that case only
    {__LINE__, L"../../etc/passwd", L"", L"", "", TimeZone::kIDUnknown},
};

TEST(SessionTimeZones, TakesThePreferredZoneFromTheFirstSource)
{
    for (const PreferredRow& tRow : kPreferredRows)
    {
        const Configured tConfigured("<DefaultUserPreferred>" + std::string(tRow.pConfigured) +
                                     "</DefaultUserPreferred>");
        SessionTimeZones tSession;
        tSession.setUserBrowser(tRow.pBrowser);
        tSession.setUserSessionVar(tRow.pVariable);
        tSession.setUserTimeZonePref(tRow.pStored);
        EXPECT_EQ(tSession.getUserPreferredTimeZone().getId(), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(SessionTimeZones, FindsThePreferredZoneAnewWithEverySetter)
{
    SessionTimeZones tSession;
    tSession.setUserBrowser(L"Asia/Tokyo");
    EXPECT_EQ(tSession.getUserPreferredTimeZone().getId(), L"Asia/Tokyo");
    tSession.setUserTimeZonePref(L"Europe/Paris");
    EXPECT_EQ(tSession.getUserPreferredTimeZone().getId(), L"Europe/Paris");
    tSession.setUserTimeZonePref(L"");
    EXPECT_EQ(tSession.getUserPreferredTimeZone().getId(), L"Asia/Tokyo");
}

TEST(SessionTimeZones, PutsItsOwnSettingsBeforeTheConfiguredOnes)
{
    const Configured tConfigured(
        "<DefaultDataOffset>GMT+01:00</DefaultDataOffset><DefaultDataDisplay>Asia/Tokyo</DefaultDataDisplay>");
    SessionTimeZones tSession;
    EXPECT_EQ(tSession.getDefaultDataOffset(), 60);
    EXPECT_EQ(tSession.getConsistentDisplayTimeZone(), L"Asia/Tokyo");
    tSession.setDataOffsetSessionVar(L"-30");
    tSession.setDisplaySessionVar(L"Europe/Paris");
    EXPECT_EQ(tSession.getDefaultDataOffset(), -30);
    EXPECT_EQ(tSession.getConsistentDisplayTimeZone(), L"Europe/Paris");
    for (const wchar_t* pNone : {L"default", L"UNKNOWN", L"", L"5000"})
    {
        tSession.setDataOffsetSessionVar(pNone);
        EXPECT_EQ(tSession.getDefaultDataOffset(), 60) << "no valid offset of its own";
    }
}

TEST(SessionTimeZones, ReadsAnEmptyConfigurationAsNone)
{
    const Configured tConfigured("<DefaultDataOffset/><DefaultDataDisplay/><DefaultUserPreferred/>");
    const SessionTimeZones tSession;
    EXPECT_EQ(tSession.getDefaultDataOffset(), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tSession.getConsistentDisplayTimeZone(), L"");
    EXPECT_EQ(tSession.getUserPreferredTimeZone().getId(), TimeZone::kIDUnknown);
}

TEST(SessionTimeZones, IsReadByManyThreadsDuringAReload)
{
    const Configured tConfigured("<DefaultDataDisplay>Asia/Tokyo</DefaultDataDisplay>");
    const SessionTimeZones tSession;
    std::atomic<bool> bStop{false};
    std::vector<std::thread> vReaders;
    for (int i = 0; i < 4; ++i)
    {
        vReaders.emplace_back(
            [&]
            {
                while (!bStop.load(std::memory_order_relaxed))
                {
                    EXPECT_EQ(tSession.getConsistentDisplayTimeZone(), L"Asia/Tokyo");
                    EXPECT_EQ(tSession.getDefaultDataOffset(), TimeZone::knUTCOffsetUnknown);
                }
            });
    }
    for (int i = 0; i < 50; ++i)
        ConfigReader::getGlobalInstance()->reload();
    bStop = true;
    for (std::thread& tReader : vReaders)
        tReader.join();
}

}  // namespace

}  // namespace tov
