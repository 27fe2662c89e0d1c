#include "tools/webformat/unknowntags.h"

#include <gtest/gtest.h>

namespace tov {

TEST(UnknownTags, AreTakenOnceAndAHundredAndOneOfThem)
{
    UnknownTagFilter tFilter;
    for (int nTag = 0; nTag < 101; ++nTag)
    {
        EXPECT_FALSE(tFilter.isFull()) << nTag;
        EXPECT_TRUE(tFilter.takes(std::to_string(nTag))) << nTag;
        EXPECT_FALSE(tFilter.takes(std::to_string(nTag))) << nTag;
    }
    EXPECT_TRUE(tFilter.isFull());
    EXPECT_FALSE(tFilter.takes("101"));
}

}  // namespace tov
