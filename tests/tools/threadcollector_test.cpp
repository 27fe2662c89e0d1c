#include "tools/webformat/threadcollector.h"

#include <gtest/gtest.h>

#include <thread>

#include "webbedrock/assertion.h"
#include "webbedrock/logger.h"

namespace tov {

TEST(ThreadCollector, KeepsWhatItsOwnThreadRaises)
{
    static const bool s_bInstalled = (ThreadCollector::install(), true);
    ASSERT_TRUE(s_bInstalled);
    std::vector<std::thread> vThreads;
    std::vector<std::string> vFound(8);
    for (std::size_t nThread = 0; nThread < vFound.size(); ++nThread)
        vThreads.emplace_back(
            [&vFound, nThread]
            {
                const ThreadCollector tCollector;
                const std::string sName(1, static_cast<char>('a' + nThread));
                for (int nTime = 0; nTime < 2; ++nTime)
                    Assertion::handleFailure(sName.c_str(), "unit", 1);
                Logger::log(Logger::kError, std::wstring(sName.begin(), sName.end()));
                JsonObject tResponse;
                tCollector.addTo(tResponse);
                vFound[nThread] = tResponse.text();
            });
    for (std::thread& tThread : vThreads)
        tThread.join();
    for (std::size_t nThread = 0; nThread < vFound.size(); ++nThread)
    {
        const std::string sName(1, static_cast<char>('a' + nThread));
        const std::string sOne = R"({"expression":")" + sName + R"(","source":"unit"})";
        EXPECT_EQ(vFound[nThread], "{\"assertions\":[" + sOne + "," + sOne + "],\"log\":[\"" + sName + "\"]}");
    }
}

TEST(ThreadCollector, AddsNothingWhereNothingWasRaised)
{
    const ThreadCollector tCollector;
    JsonObject tResponse;
    tCollector.addTo(tResponse);
    EXPECT_EQ(tResponse.text(), "{}");
}

}  // namespace tov
