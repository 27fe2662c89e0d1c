#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <functional>

namespace tov {

// Runs a check in a process of its own, in which the library has been loaded and nobody has used it yet.
//
// Example:  expectInNewProcess([] { return limit() == 15; });
inline void expectInNewProcess(const std::function<bool()>& tCheck)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(std::exit(tCheck() ? 0 : 1), ::testing::ExitedWithCode(0), "");
}

}  // namespace tov
