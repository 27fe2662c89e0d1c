#pragma once

#include <compare>
#include <cstdint>
#include <type_traits>

namespace tov {

// A civil date and time of day as plain fields, without a time zone: 2024-03-05 07:08:09.123456789.
//
// All calendar values are held as one: a date's time is midnight, a time's date is 1970-01-01. The fields are kept as
// given and are not checked against the calendar: 31 April stays 31 April. Month and day count from 1; the hour is 0 to
// 23, the minute and the second 0 to 59, the fraction 0 to 999,999,999 nanoseconds. Month to second are stored in one
// byte each, the year in 32 bits; it may be 0 or negative (0 is the year before 1).
//
// Ordered field by field from the year down. A small value type: copy it freely, any thread.
class DateTime
{
public:
    // 1970-01-01 00:00:00
    constexpr DateTime() = default;

    constexpr DateTime(int nYear, unsigned nMonth, unsigned nDay, unsigned nHour = 0, unsigned nMinute = 0,
                       unsigned nSecond = 0, unsigned nNanoseconds = 0)
    {
        setDate(nYear, nMonth, nDay);
        setTime(nHour, nMinute, nSecond, nNanoseconds);
    }

    constexpr int year() const { return m_nYear; }
    constexpr unsigned month() const { return m_nMonth; }
    constexpr unsigned day() const { return m_nDay; }
    constexpr unsigned hour() const { return m_nHour; }
    constexpr unsigned minute() const { return m_nMinute; }
    constexpr unsigned second() const { return m_nSecond; }
    constexpr unsigned nanoseconds() const { return m_nNanoseconds; }

    constexpr void setYear(int nYear) { m_nYear = nYear; }
    constexpr void setMonth(unsigned nMonth) { m_nMonth = static_cast<std::uint8_t>(nMonth); }
    constexpr void setDay(unsigned nDay) { m_nDay = static_cast<std::uint8_t>(nDay); }
    constexpr void setHour(unsigned nHour) { m_nHour = static_cast<std::uint8_t>(nHour); }
    constexpr void setMinute(unsigned nMinute) { m_nMinute = static_cast<std::uint8_t>(nMinute); }
    constexpr void setSecond(unsigned nSecond) { m_nSecond = static_cast<std::uint8_t>(nSecond); }
    constexpr void setNanoseconds(unsigned nNanoseconds) { m_nNanoseconds = nNanoseconds; }

    constexpr void setDate(int nYear, unsigned nMonth, unsigned nDay)
    {
        setYear(nYear);
        setMonth(nMonth);
        setDay(nDay);
    }

    constexpr void setTime(unsigned nHour, unsigned nMinute, unsigned nSecond, unsigned nNanoseconds = 0)
    {
        setHour(nHour);
        setMinute(nMinute);
        setSecond(nSecond);
        setNanoseconds(nNanoseconds);
    }

    friend constexpr std::strong_ordering operator<=>(const DateTime&, const DateTime&) = default;

private:
    // In the order in which two values are compared.
    std::int32_t m_nYear = 1970;
    std::uint8_t m_nMonth = 1;
    std::uint8_t m_nDay = 1;
    std::uint8_t m_nHour = 0;
    std::uint8_t m_nMinute = 0;
    std::uint8_t m_nSecond = 0;
    std::uint32_t m_nNanoseconds = 0;
};

static_assert(std::is_trivially_copyable_v<DateTime> && sizeof(DateTime) == 16);

}  // namespace tov
