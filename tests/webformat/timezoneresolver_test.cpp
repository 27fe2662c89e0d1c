#include "webformat/timezoneresolver.h"

#include <gtest/gtest.h>

#include "utilities/configreader.h"
#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using Session = Handle<SessionTimeZones, SessionTimeZones>;

Session newSession()
{
    return Session(new SessionTimeZones);
}

TimeZoneResolver resolverFor(const Session& hSession)
{
    return TimeZoneResolver(hSession, KTWUILanguage::kDefaultLanguage, MessageTableHandle());
}

TEST(TimeZoneResolver, KnowsNothingByDefault)
{
    const TimeZoneResolver tResolver;
    EXPECT_EQ(tResolver.getDataOffset(), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tResolver.getDefaultDataOffset(), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tResolver.resolveDisplayTimeZone(String()), TimeZone::kIDUnknown);
    EXPECT_EQ(tResolver.language().GetTag(), L"en-us");
}

TEST(TimeZoneResolver, TakesTheMetadatasOffsetBeforeTheSessions)
{
    const Session hSession = newSession();
    hSession->setDataOffsetSessionVar(L"120");
    TimeZoneResolver tResolver = resolverFor(hSession);
    EXPECT_EQ(tResolver.getDataOffset(), 0) << "built with a session the metadata's offset is 0";
    tResolver.setMetaDataOffset(-60);
    EXPECT_EQ(tResolver.getDataOffset(), -60);
    tResolver.setMetaDataOffset(TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tResolver.getDataOffset(), 120);
    EXPECT_EQ(tResolver.getDefaultDataOffset(), 120);
}

struct DisplayRow
{
    int nLine;
    const wchar_t* pName;
    const wchar_t* pSessionDisplay;
    const wchar_t* pVariable;
    const wchar_t* pBrowser;
    const wchar_t* pExpected;
};

constexpr DisplayRow kDisplayRows[] = {
    {__LINE__, L"Asia/Tokyo", L"Europe/Paris", L"Asia/Kolkata", L"Asia/Dubai", L"Asia/Tokyo"},
    {__LINE__, L"nowhere", L"Europe/Paris", L"", L"", L"nowhere"},
    {__LINE__, L"default", L"Europe/Paris", L"Asia/Kolkata", L"Asia/Dubai", L"Europe/Paris"},
    {__LINE__, L"Default", L"Europe/Paris", L"", L"", L"Default"},  // the exact word alone is special
    {__LINE__, L"", L"Europe/Paris", L"Asia/Kolkata", L"Asia/Dubai", L"Europe/Paris"},
    {__LINE__, L"", L"", L"Asia/Kolkata", L"Asia/Dubai", L"Asia/Kolkata"},
    {__LINE__, L"default", L"", L"Asia/Kolkata", L"Asia/Dubai", L"Asia/Kolkata"},
    {__LINE__, L"", L"", L"", L"Asia/Dubai", L"Asia/Dubai"},
    {__LINE__, L"", L"", L"", L"", TimeZone::kIDUnknown},
};

TEST(TimeZoneResolver, ResolvesTheDisplayZoneByPrecedence)
{
    for (const DisplayRow& tRow : kDisplayRows)
    {
        const Session hSession = newSession();
        hSession->setDisplaySessionVar(tRow.pSessionDisplay);
        hSession->setUserBrowser(tRow.pBrowser);
        TimeZoneResolver tResolver = resolverFor(hSession);
        tResolver.setDisplayVariable(tRow.pVariable);
        EXPECT_EQ(tResolver.resolveDisplayTimeZone(String(tRow.pName)), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(TimeZoneResolver, PutsTheConfiguredDisplayZoneBeforeTheVariable)
{
    ConfigReader::setGlobalInstance(
        ConfigReader::fromText("<c><TimeZone><DefaultDataDisplay>Asia/Tokyo</DefaultDataDisplay></TimeZone></c>"));
    TimeZoneResolver tResolver = resolverFor(newSession());
    tResolver.setDisplayVariable(L"Asia/Kolkata");
    EXPECT_EQ(tResolver.resolveDisplayTimeZone(String()), L"Asia/Tokyo");
    ConfigReader::setGlobalInstance(ConfigReader::fromText("<c/>"));
    ConfigReader::setGlobalInstance(nullptr);
    EXPECT_EQ(tResolver.resolveDisplayTimeZone(String()), L"Asia/Kolkata");
}

TEST(TimeZoneResolver, IgnoresTheVariableWithoutASession)
{
    TimeZoneResolver tResolver;
    tResolver.setDisplayVariable(L"Asia/Tokyo");
    EXPECT_EQ(tResolver.resolveDisplayTimeZone(L"default"), TimeZone::kIDUnknown);
    EXPECT_EQ(tResolver.resolveDisplayTimeZone(L"Asia/Dubai"), L"Asia/Dubai");
}

TEST(TimeZoneResolver, ReadsTheZoneOfAPattern)
{
    struct Row
    {
        int nLine;
        const wchar_t* pPattern;
        const wchar_t* pExpected;
    };
    const Row kRows[] = {
        {__LINE__, L"yyyy[TZ:EST]", L"EST"}, {__LINE__, L"yyyy[TZ: Europe/Paris ]MM", L"Europe/Paris"},
        {__LINE__, L"[TZ:A][TZ:B]", L"A"},   {__LINE__, L"yyyy TZ", L""},
        {__LINE__, L"yyyy[TZ:EST", L""},     {__LINE__, L"yyyy[tz:EST]", L""},
        {__LINE__, L"[TZ:]", L""},           {__LINE__, L"", L""},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(TimeZoneResolver::getTimeZoneFromFormatString(tRow.pPattern), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

TEST(TimeZoneResolver, ReadsTheZoneOfADefinition)
{
    const TimeZoneResolver tResolver = resolverFor(newSession());
    const auto zoneOf = [&](WebValueFormatDefinition* pDefinition)
    { return tResolver.resolveDisplayTimeZone(WebValueFormatDefinitionHandle(pDefinition)); };
    EXPECT_EQ(zoneOf(new WebDateFormatDefinition(WebDateFormatDefinition::kShortDate, L"Asia/Tokyo", L"")),
              L"Asia/Tokyo");
    EXPECT_EQ(zoneOf(new WebCustomFormatDefinition(L"yyyy[TZ:EST]")), L"EST");
    EXPECT_EQ(zoneOf(new WebNumberFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false, 0, 0)),
              TimeZone::kIDUnknown);
    EXPECT_EQ(zoneOf(nullptr), TimeZone::kIDUnknown);
}

TEST(TimeZoneResolver, GivesOffsetsOfTheDisplayZone)
{
    TimeZoneResolver tResolver = resolverFor(newSession());
    tResolver.setMetaDataOffset(60);
    const DateTime tSummer(2024, 7, 1, 12);
    const DateTime tWinter(2024, 1, 1, 12);
    const String sParis = L"Europe/Paris";
    EXPECT_EQ(tResolver.getDisplayOffset(tSummer, sParis), 120);
    EXPECT_EQ(tResolver.getDisplayOffset(tWinter, sParis), 60);
    EXPECT_EQ(tResolver.getDisplayOffset(TimeZone::kDaylightTime, sParis), 120);
    EXPECT_EQ(tResolver.getDisplayOffset(TimeZone::kStandardTime, sParis), 60);
    EXPECT_EQ(tResolver.getDisplayOffset(tSummer, L"nowhere"), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tResolver.getDisplayOffset(TimeZone::kDaylightTime, L"nowhere"), TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tResolver.getDisplayOffset(tSummer, L"Tokyo Standard Time"), TimeZone::knUTCOffsetUnknown)
        << "display zones are identifiers";
    EXPECT_EQ(tResolver.getDisplayToDataOffset(tSummer, sParis), -60);
    EXPECT_EQ(tResolver.getDisplayToDataOffset(TimeZone::kStandardTime, sParis), 0);
    EXPECT_EQ(tResolver.getDisplayToDataOffset(TimeZone::kDaylightTime, sParis), -60);
    EXPECT_EQ(tResolver.getDisplayToDataOffset(tSummer, L"nowhere"), 0);
    tResolver.setMetaDataOffset(TimeZone::knUTCOffsetUnknown);
    EXPECT_EQ(tResolver.getDisplayToDataOffset(tSummer, sParis), 0);
}

TEST(TimeZoneResolver, FallsBackToTheServersZoneInGeneral)
{
    const Session hSession = newSession();
    TimeZoneResolver tResolver = resolverFor(hSession);
    EXPECT_EQ(TimeZoneResolver().getGeneralDisplayTimeZone(), TimeZone::kServerOS);
    EXPECT_EQ(tResolver.getGeneralDisplayTimeZone(), TimeZone::kServerOS);
    hSession->setUserBrowser(L"Asia/Tokyo");
    EXPECT_EQ(tResolver.getGeneralDisplayTimeZone().getId(), L"Asia/Tokyo");
    tResolver.setDisplayVariable(L"Europe/Paris");
    EXPECT_EQ(tResolver.getGeneralDisplayTimeZone().getId(), L"Europe/Paris");
    tResolver.setDisplayVariable(L"nowhere");
    EXPECT_EQ(tResolver.getGeneralDisplayTimeZone(), TimeZone::kUnknown);
    TimeZoneResolver tWithoutSession;
    tWithoutSession.setDisplayVariable(L"Europe/Paris");
    EXPECT_EQ(tWithoutSession.getGeneralDisplayTimeZone().getId(), L"Europe/Paris");
}

}  // namespace

}  // namespace tov
