#include "webbedrock/logger.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/collected.h"

namespace tov {

namespace {

TEST(Logger, HandsSeverityAndTextToTheSink)
{
    const CollectedLog tLog;
    Logger::log(Logger::kWarning, L"Größe 5 €");
    Logger::log(Logger::kInformation, L"");
    ASSERT_EQ(tLog.count(), 2u);
    EXPECT_EQ(tLog.all()[0].eSeverity, Logger::kWarning);
    EXPECT_EQ(tLog.all()[0].sText, L"Größe 5 €");
    EXPECT_EQ(tLog.all()[1].eSeverity, Logger::kInformation);
    EXPECT_EQ(tLog.all()[1].sText, L"");
}

TEST(Logger, NamesItsSeverities)
{
    struct Row
    {
        int nLine;
        Logger::Severity eSeverity;
        const char* pExpected;
    };
    const Row kRows[] = {
        {__LINE__, Logger::kInformation, "information"},
        {__LINE__, Logger::kWarning, "warning"},
        {__LINE__, Logger::kError, "error"},
        {__LINE__, Logger::kCriticalError, "critical error"},
    };
    for (const Row& tRow : kRows)
        EXPECT_STREQ(Logger::severityName(tRow.eSeverity), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(Logger, WritesOneUtf8LineToStandardErrorByDefault)
{
    const Logger::Sink pBefore = Logger::setSink(nullptr);
    testing::internal::CaptureStderr();
    Logger::log(Logger::kCriticalError, L"Größe 100 %d");
    const std::string sWritten = testing::internal::GetCapturedStderr();
    Logger::setSink(pBefore);
    EXPECT_EQ(sWritten,
              "webformat: critical error: Gr\xC3\xB6\xC3\x9F"
              "e 100 %d\n");
}

void ignore(Logger::Severity, std::wstring_view) {}

TEST(Logger, SetSinkReturnsTheOneBeforeAndNullForTheDefault)
{
    EXPECT_EQ(Logger::setSink(&ignore), nullptr);
    EXPECT_EQ(Logger::setSink(nullptr), &ignore);
    EXPECT_EQ(Logger::setSink(nullptr), nullptr);
}

TEST(Logger, AnyThreadMayLog)
{
    constexpr int kThreads = 4;
    constexpr int kLines = 250;
    const CollectedLog tLog;
    std::vector<std::thread> vThreads;
    for (int nThread = 0; nThread < kThreads; ++nThread)
    {
        vThreads.emplace_back(
            []
            {
                for (int nLine = 0; nLine < kLines; ++nLine)
                    Logger::log(Logger::kInformation, L"line");
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(tLog.count(), static_cast<std::size_t>(kThreads * kLines));
}

}  // namespace

}  // namespace tov
