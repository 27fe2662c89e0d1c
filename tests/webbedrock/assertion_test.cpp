#include "webbedrock/assertion.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "support/collected.h"

namespace tov {

namespace {

constexpr char kSource[] = "webbedrock/example";

TEST(Assertion, TellsExpressionSourceAndLine)
{
    const CollectedAssertions tAssertions;
    const int nSize = 3;
    WEBFORMAT_ASSERT(kSource, nSize < 3);
    const int nLine = __LINE__ - 1;
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "nSize < 3");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webbedrock/example");
    EXPECT_EQ(tAssertions.all()[0].nLine, nLine);
}

TEST(Assertion, AnImpossibleBranchReportsFalse)
{
    const CollectedAssertions tAssertions;
    WEBFORMAT_ASSERT(kSource, false);
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "false");
}

TEST(Assertion, IsSilentWhereTheExpressionHolds)
{
    const CollectedAssertions tAssertions;
    WEBFORMAT_ASSERT(kSource, 1 + 1 == 2);
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(Assertion, EvaluatesItsExpressionOnceAndGoesOn)
{
    const CollectedAssertions tAssertions;
    int nCalls = 0;
    WEBFORMAT_ASSERT(kSource, ++nCalls > 1);
    EXPECT_EQ(nCalls, 1);
    EXPECT_EQ(tAssertions.count(), 1u);
}

TEST(Assertion, TheDefaultHandlerWritesACriticalErrorToTheLog)
{
    const Assertion::Handler pBefore = Assertion::setHandler(nullptr);
    const CollectedLog tLog;
    Assertion::handleFailure("nLeft == nRight", "webbedrock/example", 42);
    Assertion::setHandler(pBefore);
    ASSERT_EQ(tLog.count(), 1u);
    EXPECT_EQ(tLog.all()[0].eSeverity, Logger::kCriticalError);
    EXPECT_EQ(tLog.all()[0].sText, L"Assertion failed: nLeft == nRight (webbedrock/example, line 42)");
}

void ignore(const char*, const char*, int) {}

TEST(Assertion, SetHandlerReturnsTheOneBeforeAndNullForTheDefault)
{
    EXPECT_EQ(Assertion::setHandler(&ignore), nullptr);
    EXPECT_EQ(Assertion::setHandler(nullptr), &ignore);
    EXPECT_EQ(Assertion::setHandler(nullptr), nullptr);
}

TEST(Assertion, CollectorsNestAndGiveTheHandlerBack)
{
    const CollectedAssertions tOuter;
    {
        const CollectedAssertions tInner;
        WEBFORMAT_ASSERT(kSource, false);
        EXPECT_EQ(tInner.count(), 1u);
    }
    EXPECT_EQ(tOuter.count(), 0u);
    WEBFORMAT_ASSERT(kSource, false);
    EXPECT_EQ(tOuter.count(), 1u);
}

TEST(Assertion, AnyThreadMayFail)
{
    constexpr int kThreads = 4;
    constexpr int kFailures = 250;
    const CollectedAssertions tAssertions;
    std::vector<std::thread> vThreads;
    for (int nThread = 0; nThread < kThreads; ++nThread)
    {
        vThreads.emplace_back(
            []
            {
                for (int nFailure = 0; nFailure < kFailures; ++nFailure)
                    WEBFORMAT_ASSERT(kSource, nFailure < 0);
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(tAssertions.count(), static_cast<std::size_t>(kThreads * kFailures));
}

}  // namespace

}  // namespace tov
