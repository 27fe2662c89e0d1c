#include "tools/webformat/inputerror.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace tov {

TEST(InputError, ListsAtMostAHundredNames)
{
    EXPECT_EQ(listForMessage({}), "none");
    EXPECT_EQ(listForMessage({"a"}), "\"a\"");
    EXPECT_EQ(listForMessage({"a", "b\n"}), "\"a\", \"b\\x0A\"");
    const std::string sHundred = listForMessage(std::vector<std::string>(100, "n"));
    EXPECT_EQ(std::count(sHundred.begin(), sHundred.end(), 'n'), 100);
    EXPECT_EQ(listForMessage(std::vector<std::string>(101, "n")), sHundred + ", ...");
}

}  // namespace tov
