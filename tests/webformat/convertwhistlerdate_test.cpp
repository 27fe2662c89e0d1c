#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

#include "support/newprocess.h"
#include "webbedrock/utf8.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/dateformatters.h"

namespace tov {

namespace {

String converted(const String& sFormat)
{
    const WebValueFormatDefinitionHandle hDefinition = WebConvertWhistlerFormat::ConvertDateFormat(sFormat);
    return dynamic_cast<const WebCustomFormatDefinition&>(*hDefinition).GetCustomFormat();
}

struct Row
{
    int nLine;
    const wchar_t* pFormat;
    const wchar_t* pExpected;
};

void expectConversions(std::initializer_list<Row> tRows)
{
    for (const Row& tRow : tRows)
        EXPECT_EQ(toUtf8(converted(tRow.pFormat)), toUtf8(String(tRow.pExpected))) << "row at line " << tRow.nLine;
}

TEST(ConvertWhistlerDate, TellsMonthsFromMinutesByTheirNeighbours)
{
    expectConversions({
        {__LINE__, L"", L""},
        {__LINE__, L"mmmm", L"MMMM"},
        {__LINE__, L"yy/mm", L"yy/MM"},
        {__LINE__, L"yyyy/mm/dd", L"yyyy/MM/dd"},
        {__LINE__, L"mm/yy", L"MM/yy"},
        {__LINE__, L"yy-mm", L"yy-MM"},
        {__LINE__, L"mm-yy", L"MM-yy"},
        {__LINE__, L"m/yy", L"M/yy"},
        {__LINE__, L"yy/m", L"yy/M"},
        {__LINE__, L"d/mm", L"d/MM"},
        {__LINE__, L"mm/d", L"MM/d"},
        {__LINE__, L"d/m", L"d/M"},
        {__LINE__, L"m/d", L"M/d"},
        {__LINE__, L"dd/mm/yyyy", L"dd/MM/yyyy"},
        {__LINE__, L"mm/dd/yyyy", L"MM/dd/yyyy"},
        {__LINE__, L"m/d/yy", L"M/d/yy"},
        {__LINE__, L"yyyy-mm-dd", L"yyyy-MM-dd"},
        {__LINE__, L"d mmmm yyyy", L"d MMMM yyyy"},
        // Every other "m" is a minute.
        {__LINE__, L"mmm", L"mmm"},
        {__LINE__, L"d-m", L"d-m"},
        {__LINE__, L"mm", L"mm"},
        {__LINE__, L"d.m.yy", L"d.m.yy"},
        // Every occurrence counts.
        {__LINE__, L"d/m d/m", L"d/M d/M"},
        {__LINE__, L"mmmmmmmm", L"MMMMMMMM"},
    });
}

// Kept: the rule of four letters leaves nothing for the rule of five.
TEST(ConvertWhistlerDate, MakesOfFiveLettersAMonthAndAMinute)
{
    expectConversions({
        {__LINE__, L"mmmmm", L"MMMMm"},
        {__LINE__, L"mmmmmm", L"MMMMmm"},
        {__LINE__, L"mmmmm/d", L"MMMMM/d"},  // the letter that is left meets a later rule
    });
}

TEST(ConvertWhistlerDate, KeepsTheTwelveHourClockWhereTheHalfOfTheDayIsShown)
{
    expectConversions({
        {__LINE__, L"h:mm am/pm", L"h:mm tt"},
        {__LINE__, L"hh:mm:ss am/pm", L"hh:mm:ss tt"},
        {__LINE__, L"am/pm h am/pm", L"tt h tt"},
        // Kept: the upper-case designator becomes letters that mean nothing.
        {__LINE__, L"h:mm AM/PM", L"h:mm TT"},
        {__LINE__, L"h:mm AM/PM am/pm", L"h:mm TT tt"},
        {__LINE__, L"m/d h:mm am/pm", L"M/d h:mm tt"},
    });
}

TEST(ConvertWhistlerDate, TurnsToTheTwentyFourHourClockOtherwise)
{
    expectConversions({
        {__LINE__, L"hh:mm", L"HH:mm"},
        {__LINE__, L"hh:mm:ss", L"HH:mm:ss"},
        {__LINE__, L"hh:mm hh:mm", L"HH:mm HH:mm"},
        {__LINE__, L"h:mm", L"H:mm"},
        {__LINE__, L"d/m/yy h:mm", L"d/M/yy H:mm"},
        // Kept: "h:mm" is replaced over five characters, so the one behind it is lost.
        {__LINE__, L"h:mm:ss", L"H:mmss"},
        {__LINE__, L"h:mm h:mm h:mm", L"H:mmH:mmH:mm"},
        {__LINE__, L"h:mmh:mm:ss", L"H:mm:mm:ss"},  // the lost one begins the next
        {__LINE__, L"hhh:mm:ss", L"hHH:mm:ss"},
        {__LINE__, L"h", L"h"},
        {__LINE__, L"h:m", L"h:m"},
        {__LINE__, L"am pm h:mm", L"am pm H:mm"},
        {__LINE__, L"Am/Pm h:mm", L"Am/Pm H:mm"},
    });
}

// The rules as they are written down: one after the other, each searching again from the start after each replacement.
String convertedByTheLetter(String sFormat)
{
    const auto replaceEach = [&](const String& sFrom, const String& sTo, std::size_t nOver)
    {
        bool bAny = false;
        for (std::size_t nFound; (nFound = sFormat.find(sFrom)) != String::npos; bAny = true)
            sFormat.replace(nFound, nOver, sTo);
        return bAny;
    };
    for (const auto& [pFrom, pTo] :
         std::initializer_list<std::pair<const wchar_t*, const wchar_t*>>{{L"mmmm", L"MMMM"},
                                                                          {L"mmmmm", L"MMMMM"},
                                                                          {L"yy/mm", L"yy/MM"},
                                                                          {L"mm/yy", L"MM/yy"},
                                                                          {L"yy-mm", L"yy-MM"},
                                                                          {L"mm-yy", L"MM-yy"},
                                                                          {L"yy/mm", L"yy/MM"},
                                                                          {L"m/yy", L"M/yy"},
                                                                          {L"yy/m", L"yy/M"},
                                                                          {L"d/mm", L"d/MM"},
                                                                          {L"mm/d", L"MM/d"},
                                                                          {L"d/m", L"d/M"},
                                                                          {L"m/d", L"M/d"}})
        replaceEach(pFrom, pTo, String(pFrom).size());
    const bool bLower = replaceEach(L"am/pm", L"tt", 5);
    const bool bUpper = replaceEach(L"AM/PM", L"TT", 5);
    if (bLower || bUpper)
        return sFormat;
    replaceEach(L"hh:mm", L"HH:mm", 5);
    replaceEach(L"h:mm", L"H:mm", 5);
    return sFormat;
}

TEST(ConvertWhistlerDate, ReplacesInOnePassWhatSearchingAgainWouldReplace)
{
    static constexpr wchar_t kLetters[] = L"mmmmdyyh:/-ap";
    unsigned nState = 12345;
    const auto next = [&](unsigned nBelow)
    {
        nState = nState * 1103515245 + 12345;
        return (nState >> 16) % nBelow;
    };
    for (int n = 0; n < 20'000; ++n)
    {
        String sFormat;
        for (unsigned nLength = next(14); nLength > 0; --nLength)
            sFormat += next(12) == 0 ? String(next(2) ? L"am/pm" : L"h:mm") : String(1, kLetters[next(13)]);
        EXPECT_EQ(toUtf8(converted(sFormat)), toUtf8(convertedByTheLetter(sFormat))) << toUtf8(sFormat);
    }
}

TEST(ConvertWhistlerDate, RemembersItsConversions)
{
    const WebValueFormatDefinitionHandle hFirst = WebConvertWhistlerFormat::ConvertDateFormat(L"d/m/yyyy remembered");
    EXPECT_TRUE(hFirst == WebConvertWhistlerFormat::ConvertDateFormat(L"d/m/yyyy remembered"));
    EXPECT_FALSE(hFirst == WebConvertWhistlerFormat::ConvertDateFormat(L"d/m/yyyy remembered otherwise"));
}

TEST(ConvertWhistlerDate, StopsRememberingBeforeMemoryRunsOut)
{
    expectInNewProcess(
        []
        {
            for (std::size_t n = 0; n < WebConvertWhistlerFormat::knMaxCachedDateFormats; ++n)
                WebConvertWhistlerFormat::ConvertDateFormat(std::to_wstring(n));
            const auto isKept = [](const wchar_t* pFormat)
            {
                return WebConvertWhistlerFormat::ConvertDateFormat(pFormat) ==
                       WebConvertWhistlerFormat::ConvertDateFormat(pFormat);
            };
            return isKept(L"65535") && !isKept(L"65536") && converted(L"d/m") == L"d/M";
        });
}

TEST(ConvertWhistlerDate, LetsTheFirstOfManyThreadsDecide)
{
    for (int nRound = 0; nRound < 20; ++nRound)
    {
        const String sFormat = L"d/m/yy, " + std::to_wstring(nRound);
        std::vector<WebValueFormatDefinitionHandle> vResults(8);
        std::vector<std::thread> vThreads;
        for (WebValueFormatDefinitionHandle& hResult : vResults)
            vThreads.emplace_back([&] { hResult = WebConvertWhistlerFormat::ConvertDateFormat(sFormat); });
        for (std::thread& tThread : vThreads)
            tThread.join();
        for (const WebValueFormatDefinitionHandle& hResult : vResults)
            EXPECT_TRUE(hResult == vResults.front());
        EXPECT_EQ(converted(sFormat), L"d/M/yy, " + std::to_wstring(nRound));
    }
}

// Searching again from the start after each replacement would take far too long for these.
TEST(ConvertWhistlerDate, ConvertsLongFormatsInOnePassEach)
{
    for (const wchar_t* pPiece : {L"m", L"h:mm", L"d/m", L"am/pm", L"hh:mm"})
    {
        String sFormat;
        while (sFormat.size() < 300'000)
            sFormat += pPiece;
        EXPECT_LE(converted(sFormat).size(), sFormat.size());
    }
}

}  // namespace

}  // namespace tov
