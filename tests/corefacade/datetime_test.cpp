#include "corefacade/datetime.h"

#include <gtest/gtest.h>

#include <limits>

namespace tov {

namespace {

TEST(DateTime, BeginsAtMidnightOfTheFirstOfJanuary1970)
{
    constexpr DateTime tDefault;
    static_assert(tDefault == DateTime(1970, 1, 1));
    EXPECT_EQ(tDefault.year(), 1970);
    EXPECT_EQ(tDefault.month(), 1U);
    EXPECT_EQ(tDefault.day(), 1U);
    EXPECT_EQ(tDefault.hour() + tDefault.minute() + tDefault.second() + tDefault.nanoseconds(), 0U);
}

TEST(DateTime, GivesBackItsFields)
{
    const DateTime tTime(2024, 3, 5, 7, 8, 9, 123456789);
    EXPECT_EQ(tTime.year(), 2024);
    EXPECT_EQ(tTime.month(), 3U);
    EXPECT_EQ(tTime.day(), 5U);
    EXPECT_EQ(tTime.hour(), 7U);
    EXPECT_EQ(tTime.minute(), 8U);
    EXPECT_EQ(tTime.second(), 9U);
    EXPECT_EQ(tTime.nanoseconds(), 123456789U);
}

TEST(DateTime, ChangesOneFieldAtATime)
{
    DateTime tTime;
    tTime.setYear(-44);
    tTime.setMonth(12);
    tTime.setDay(31);
    tTime.setHour(23);
    tTime.setMinute(58);
    tTime.setSecond(59);
    tTime.setNanoseconds(999999999);
    EXPECT_EQ(tTime, DateTime(-44, 12, 31, 23, 58, 59, 999999999));
    tTime.setTime(1, 2, 3);
    EXPECT_EQ(tTime, DateTime(-44, 12, 31, 1, 2, 3, 0));
    tTime.setDate(1999, 11, 30);
    EXPECT_EQ(tTime, DateTime(1999, 11, 30, 1, 2, 3));
}

TEST(DateTime, KeepsDatesThatNoCalendarHas)
{
    const DateTime tTime(std::numeric_limits<int>::min(), 4, 31);
    EXPECT_EQ(tTime.year(), std::numeric_limits<int>::min());
    EXPECT_EQ(tTime.day(), 31U);
}

TEST(DateTime, IsOrderedFromTheYearDown)
{
    const DateTime aAscending[] = {DateTime(-1, 12, 31, 23, 59, 59, 999999999),
                                   DateTime(2024, 1, 31, 23, 59, 59, 999999999),
                                   DateTime(2024, 2, 1, 23, 59, 59, 999999999),
                                   DateTime(2024, 2, 2, 0, 59, 59, 999999999),
                                   DateTime(2024, 2, 2, 1, 0, 59, 999999999),
                                   DateTime(2024, 2, 2, 1, 1, 0, 999999999),
                                   DateTime(2024, 2, 2, 1, 1, 1, 0),
                                   DateTime(2024, 2, 2, 1, 1, 1, 1),
                                   DateTime(2025, 1, 1)};
    for (std::size_t n = 0; n < std::size(aAscending); ++n)
    {
        for (std::size_t m = 0; m < std::size(aAscending); ++m)
            EXPECT_EQ(aAscending[n] <=> aAscending[m], n <=> m) << n << " " << m;
    }
}

}  // namespace

}  // namespace tov
