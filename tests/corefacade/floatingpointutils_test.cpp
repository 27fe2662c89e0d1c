#include "corefacade/floatingpointutils.h"

#include <gtest/gtest.h>

#include <bit>
#include <charconv>
#include <limits>
#include <random>

#include "corefacade/decimalreference.h"
#include "corefacade/fastdecimal.h"
#include "support/allocationcounter.h"

namespace tov {

namespace {

using reference::Digits;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr int kHuge = std::numeric_limits<int>::max();
constexpr int kTiny = std::numeric_limits<int>::min();

Digits digitsOf(double fValue, unsigned nFraction, int nPower = 0, int nSignificant = 15)
{
    StringBufferTemplate<char, 512> tBuffer;
    const int nPoint =
        FloatingPointUtils::getDoubleDigitsWithMaxSignficantDigits(tBuffer, fValue, nFraction, nPower, nSignificant);
    return {tBuffer.toString(), nPoint};
}

Digits integerDigits(std::uint64_t nValue, unsigned nFraction, int nPower)
{
    StringBufferTemplate<char, 512> tBuffer;
    const int nPoint = FloatingPointUtils::getIntegerDigits(tBuffer, nValue, nFraction, nPower);
    return {tBuffer.toString(), nPoint};
}

Digits expectedDigits(double fValue, unsigned nFraction, int nPower, int nSignificant)
{
    reference::Fraction tValue = reference::roundToSignificant(reference::exactly(std::fabs(fValue)), nSignificant);
    tValue.shift(nPower);
    return reference::place(tValue, nFraction);
}

struct DoubleRow
{
    int nLine;
    double fValue;
    unsigned nFraction;
    int nPower;
    int nSignificant;
    Digits tExpected;
};

const DoubleRow kDoubleRows[] = {
    {__LINE__, 1234.5, 2, 0, 15, {"123450", 4}},
    {__LINE__, 0.5, 2, 0, 15, {"50", 0}},
    {__LINE__, 0.05, 2, 0, 15, {"05", 0}},
    {__LINE__, 0.004, 2, 0, 15, {"00", 0}},
    {__LINE__, 0.005, 2, 0, 15, {"01", 0}},
    {__LINE__, 0.0, 2, 0, 15, {"00", 0}},
    {__LINE__, -0.0, 3, 0, 15, {"000", 0}},
    {__LINE__, 0.0, 0, 0, 15, {"", 0}},
    {__LINE__, 0.4, 0, 0, 15, {"", 0}},
    {__LINE__, 0.5, 0, 0, 15, {"1", 1}},
    {__LINE__, -2.5, 0, 0, 15, {"3", 1}},  // the sign is the caller's
    {__LINE__, 1.5, 0, 0, 15, {"2", 1}},
    // The fifteen digits decide, not the binary value behind them.
    {__LINE__, 1.005, 2, 0, 15, {"101", 1}},
    {__LINE__, 2.675, 2, 0, 15, {"268", 1}},
    {__LINE__, 0.125, 2, 0, 15, {"13", 0}},
    {__LINE__, 1.005, 2, 0, 17, {"100", 1}},
    {__LINE__, 1e15 / 3, 3, 0, 15, {"333333333333333000", 15}},
    {__LINE__, 123456789012345678.0, 0, 0, 15, {"123456789012346000", 18}},
    {__LINE__, 0.1, 20, 0, 15, {"10000000000000000000", 0}},
    {__LINE__, 0.1, 20, 0, 17, {"10000000000000001000", 0}},
    {__LINE__, 999999999999999.0, 0, 0, 15, {"999999999999999", 15}},
    {__LINE__, 9999999999999995.0, 0, 0, 15, {"10000000000000000", 17}},  // a tie: to even, a digit more
    {__LINE__, 0.9999, 2, 0, 15, {"100", 1}},
    {__LINE__, 0.00999, 2, 0, 15, {"01", 0}},
    {__LINE__, 99.995, 2, 0, 15, {"10000", 3}},
    // Ties of the significant digits go to even, on the exact value.
    {__LINE__, 2.5, 0, 0, 1, {"2", 1}},
    {__LINE__, 3.5, 0, 0, 1, {"4", 1}},
    {__LINE__, 1234.5, 2, 0, 3, {"123000", 4}},
    {__LINE__, 1235.0, 0, 0, 3, {"1240", 4}},
    {__LINE__, 7.0, 0, 0, 0, {"7", 1}},  // fewer than one digit count as one
    {__LINE__, 77.0, 0, 0, -5, {"80", 2}},
    // Powers of ten move the point of the rounded digits.
    {__LINE__, 0.07, 0, 2, 15, {"7", 1}},
    {__LINE__, 1.005, 0, 2, 15, {"101", 3}},
    {__LINE__, 1234567.0, 2, -3, 15, {"123457", 4}},
    {__LINE__, 1234500.0, 1, -3, 15, {"12345", 4}},
    {__LINE__, 1250.0, 1, -3, 15, {"13", 1}},
    {__LINE__, 2500000.0, 1, -6, 15, {"25", 1}},
    {__LINE__, 5e-324, 0, 324, 15, {"5", 1}},
    {__LINE__, 5e-324, 0, 324, 1, {"5", 1}},
    {__LINE__, 1.0, 0, -1, 15, {"", 0}},
    {__LINE__, 5.0, 0, -1, 15, {"1", 1}},
    {__LINE__, 4.9999999999999999, 0, -1, 15, {"1", 1}},
    {__LINE__, 1.0, 2, -9000, 15, {"00", 0}},
    // What the caller shows otherwise counts as zero.
    {__LINE__, kInfinity, 2, 0, 15, {"00", 0}},
    {__LINE__, -kInfinity, 0, 0, 400, {"", 0}},
    {__LINE__, std::numeric_limits<double>::quiet_NaN(), 1, 3, 15, {"0", 0}},
};

TEST(FloatingPointUtils, RoundsToSignificantDigitsThenMovesThePointThenRoundsToPlaces)
{
    for (const DoubleRow& tRow : kDoubleRows)
    {
        EXPECT_EQ(digitsOf(tRow.fValue, tRow.nFraction, tRow.nPower, tRow.nSignificant), tRow.tExpected)
            << "row at line " << tRow.nLine;
    }
}

TEST(FloatingPointUtils, AsksForAllDigitsOfADoubleWhenTheLimitIsPastThem)
{
    const Digits tTenth{"1000000000000000055511151231257827021181583404541015625", 0};
    EXPECT_EQ(digitsOf(0.1, 55, 0, 400), tTenth);
    EXPECT_EQ(digitsOf(0.1, 55, 0, kHuge), tTenth);
    const double fLeast = std::numeric_limits<double>::denorm_min();
    EXPECT_EQ(digitsOf(fLeast, 1074, 0, kHuge), reference::place(reference::exactly(fLeast), 1074));
    const double fLongest = std::bit_cast<double>(0x000FFFFFFFFFFFFFULL);  // 767 significant digits
    EXPECT_EQ(digitsOf(fLongest, 1074, 0, 767), reference::place(reference::exactly(fLongest), 1074));
}

struct BoundRow
{
    int nLine;
    double fValue;
    unsigned nFraction;
    int nPower;
    std::size_t nLength;
    int nPoint;
};

const BoundRow kBoundRows[] = {
    {__LINE__, 1.5, 2, 10000, 10003, 10001},
    {__LINE__, 1.5, 0, kHuge, 65537, 65537},
    {__LINE__, 1.5, 3, kTiny, 3, 0},
    {__LINE__, std::numeric_limits<double>::max(), 0, kHuge, 65536 + 309, 65536 + 309},
    {__LINE__, 1.5, std::numeric_limits<unsigned>::max(), 0, 65537, 1},
    {__LINE__, 0.0, std::numeric_limits<unsigned>::max(), 0, 65536, 0},
    {__LINE__, 1.5, std::numeric_limits<unsigned>::max(), kTiny, 65536, 0},
    {__LINE__, 1.5, std::numeric_limits<unsigned>::max(), kHuge, 65537 + 65536, 65537},
};

TEST(FloatingPointUtils, BoundsTheDigitsOfAbsurdPowersAndPlaces)
{
    for (const BoundRow& tRow : kBoundRows)
    {
        for (const int nSignificant : {15, 400})
        {
            const Digits tDigits = digitsOf(tRow.fValue, tRow.nFraction, tRow.nPower, nSignificant);
            EXPECT_EQ(tDigits.m_sDigits.size(), tRow.nLength) << "row at line " << tRow.nLine;
            EXPECT_EQ(tDigits.m_nPoint, tRow.nPoint) << "row at line " << tRow.nLine;
        }
    }
    EXPECT_EQ(integerDigits(7, 1, kHuge).m_nPoint, 65537);
    EXPECT_EQ(integerDigits(7, 1, kTiny), (Digits{"0", 0}));
}

struct IntegerRow
{
    int nLine;
    std::uint64_t nValue;
    unsigned nFraction;
    int nPower;
    Digits tExpected;
};

const IntegerRow kIntegerRows[] = {
    {__LINE__, 0, 0, 0, {"", 0}},
    {__LINE__, 0, 2, 0, {"00", 0}},
    {__LINE__, 7, 0, 0, {"7", 1}},
    {__LINE__, 7, 2, 0, {"700", 1}},
    {__LINE__, 10, 0, 0, {"10", 2}},
    {__LINE__, 1250, 1, -3, {"13", 1}},
    {__LINE__, 1249, 1, -3, {"12", 1}},
    {__LINE__, 5, 0, -1, {"1", 1}},
    {__LINE__, 4, 0, -1, {"", 0}},
    {__LINE__, 99, 0, -1, {"10", 2}},
    {__LINE__, 5, 2, -2, {"05", 0}},
    {__LINE__, 5, 3, -3, {"005", 0}},
    {__LINE__, 96, 2, -3, {"10", 0}},
    {__LINE__, 996, 2, -3, {"100", 1}},
    {__LINE__, 12, 0, 2, {"1200", 4}},
    {__LINE__, 18446744073709551615ULL, 0, 0, {"18446744073709551615", 20}},
    {__LINE__, 18446744073709551615ULL, 1, 1, {"1844674407370955161500", 21}},
    {__LINE__, 18446744073709551615ULL, 0, -20, {"", 0}},
    {__LINE__, 18446744073709551615ULL, 1, -19, {"18", 1}},
    {__LINE__, 10000000000000000000ULL, 0, 0, {"10000000000000000000", 20}},
    {__LINE__, 9999999999999999999ULL, 0, -1, {"1000000000000000000", 19}},
};

TEST(FloatingPointUtils, GivesIntegersAllTheirDigits)
{
    for (const IntegerRow& tRow : kIntegerRows)
        EXPECT_EQ(integerDigits(tRow.nValue, tRow.nFraction, tRow.nPower), tRow.tExpected)
            << "row at line " << tRow.nLine;
}

TEST(FloatingPointUtils, AgreesWithWholeNumberArithmeticOnIntegers)
{
    std::mt19937_64 tRandom(20240305);
    for (int n = 0; n < 20000; ++n)
    {
        const std::uint64_t nValue = tRandom() >> (tRandom() % 64);
        const unsigned nFraction = static_cast<unsigned>(tRandom() % 8);
        const int nPower = static_cast<int>(tRandom() % 40) - 25;
        reference::Fraction tValue{reference::Integer(nValue)};
        tValue.shift(nPower);
        ASSERT_EQ(integerDigits(nValue, nFraction, nPower), reference::place(tValue, nFraction))
            << nValue << " " << nFraction << " " << nPower;
    }
}

// The kinds of doubles that a report shows, and those that it should survive.
class DoubleSource
{
public:
    double amount() { return static_cast<double>(m_tRandom() % 1'000'000'000) / 100.0; }
    double any()
    {
        for (;;)
        {
            const double fValue = std::bit_cast<double>(m_tRandom());
            if (std::isfinite(fValue))
                return fValue;
        }
    }
    double ofSize()
    {
        return std::ldexp(static_cast<double>(m_tRandom() >> 11), -(static_cast<int>(m_tRandom() % 120)));
    }

    // Decimal halves and their neighbours: what rounding gets wrong first.
    double nearHalf()
    {
        double fValue = (static_cast<double>(m_tRandom() >> (m_tRandom() % 48 + 15)) + 0.5) /
                        std::pow(10.0, static_cast<double>(m_tRandom() % 6));
        for (std::uint64_t n = m_tRandom() % 8; n > 0; --n)
            fValue = std::nextafter(fValue, m_tRandom() % 2 ? 0.0 : kInfinity);
        return fValue;
    }
    int below(unsigned nEnd) { return static_cast<int>(m_tRandom() % nEnd); }

private:
    std::mt19937_64 m_tRandom{42};
};

TEST(FloatingPointUtils, AgreesWithWholeNumberArithmeticOnDoubles)
{
    DoubleSource tSource;
    for (int n = 0; n < 40000; ++n)
    {
        const double aValues[] = {tSource.amount(), tSource.any(), tSource.ofSize(), tSource.nearHalf()};
        const double fValue = aValues[n % 4];
        const unsigned nFraction = static_cast<unsigned>(tSource.below(n % 4 == 1 ? 340 : 7));
        const int nPower = n % 3 == 0 ? tSource.below(30) - 15 : 0;
        const int nSignificant = n % 5 == 0 ? tSource.below(40) + 1 : 15;
        ASSERT_EQ(digitsOf(fValue, nFraction, nPower, nSignificant),
                  expectedDigits(fValue, nFraction, nPower, nSignificant))
            << std::hexfloat << fValue << " " << nFraction << " " << nPower << " " << nSignificant;
    }
}

TEST(FloatingPointUtils, AgreesWithTheExactPrinterWhereTheQuickWayIsTaken)
{
    DoubleSource tSource;
    for (int n = 0; n < 400000; ++n)
    {
        const double fValue = n % 2 ? tSource.ofSize() : tSource.nearHalf();
        const int nPlaces = tSource.below(41) - 22;
        std::uint64_t nUnits = 0;
        if (!roundToUnits(fValue, nPlaces, nUnits))
            continue;
        // The exact printer does the first rounding, whole numbers the second.
        // way.
        char aText[32];
        const auto tEnd = std::to_chars(aText, aText + sizeof(aText), fValue, std::chars_format::scientific, 14);
        std::string sDigits(aText, tEnd.ptr);
        const int nExponent = std::stoi(sDigits.substr(sDigits.find('e') + 1));
        reference::Fraction tValue{reference::Integer(sDigits.substr(0, 1)) * reference::powerOf10(14) +
                                   std::stoll(sDigits.substr(2, 14))};
        tValue.shift(nExponent - 14 + nPlaces);
        ASSERT_EQ(reference::roundToWhole(tValue, reference::Ties::kAway), nUnits)
            << std::hexfloat << fValue << " " << nPlaces;
    }
}

// True where the quick way to fifteen digits was sure; then it has said what the exact printer says.
bool agreesOnFifteenDigits(double fValue)
{
    std::uint64_t nDigits = 0;
    int nExponent = 0;
    if (!roundToFifteenDigits(fValue, nDigits, nExponent))
        return false;
    EXPECT_TRUE(nDigits >= 100'000'000'000'000 && nDigits <= 1'000'000'000'000'000) << std::hexfloat << fValue;
    char aText[32];
    const auto tEnd = std::to_chars(aText, aText + sizeof(aText), fValue, std::chars_format::scientific, 14);
    const std::string sPrinted(aText, tEnd.ptr);
    const int nPrintedExponent = std::stoi(sPrinted.substr(sPrinted.find('e') + 1)) - 14;
    const std::uint64_t nPrinted = std::stoull(sPrinted.substr(0, 1) + sPrinted.substr(2, 14));
    const bool bCarried = nDigits == 1'000'000'000'000'000;
    EXPECT_EQ(bCarried ? nDigits / 10 : nDigits, nPrinted) << std::hexfloat << fValue;
    EXPECT_EQ(nExponent + bCarried, nPrintedExponent) << std::hexfloat << fValue;
    return true;
}

TEST(FloatingPointUtils, RoundsToFifteenDigitsLikeTheExactPrinterFromTheLeastDoubleToTheLargest)
{
    for (int nPower = -323; nPower <= 308; ++nPower)
    {
        const double fPower = std::stod("1e" + std::to_string(std::max(nPower, -307))) *
                              (nPower < -307 ? std::pow(10.0, nPower + 307) : 1.0);
        for (const double fFactor : {1.0, 1.1, 1.2, 1.3, 1.79769})
        {
            EXPECT_TRUE(agreesOnFifteenDigits(fPower * fFactor)) << fPower << " " << fFactor;
            agreesOnFifteenDigits(std::nextafter(fPower * fFactor, 0.0));
            agreesOnFifteenDigits(std::nextafter(fPower * fFactor, 1e300));
        }
    }
    for (int nPower = -1074; nPower <= 1023; ++nPower)
        agreesOnFifteenDigits(std::ldexp(1.0, nPower));
    agreesOnFifteenDigits(std::numeric_limits<double>::max());
    agreesOnFifteenDigits(std::bit_cast<double>(0x000FFFFFFFFFFFFFULL));
}

TEST(FloatingPointUtils, NeedsTheExactPrinterOnlyForTiesOfTheFifteenthDigit)
{
    std::mt19937_64 tRandom(11);
    for (int n = 0; n < 200000; ++n)
    {
        const double fValue = std::bit_cast<double>(tRandom() & ~(1ULL << 63));
        if (!std::isfinite(fValue) || fValue == 0.0 || agreesOnFifteenDigits(fValue))
            continue;
        char aText[64];
        std::to_chars(aText, aText + sizeof(aText), fValue, std::chars_format::scientific, 40);
        EXPECT_EQ(std::string_view(aText + 16, 26), "50000000000000000000000000") << std::hexfloat << fValue;
    }
    std::uint64_t nDigits = 0;
    int nExponent = 0;
    EXPECT_FALSE(roundToFifteenDigits(100000000000000.5, nDigits, nExponent));
    EXPECT_FALSE(roundToFifteenDigits(1000000000000005.0, nDigits, nExponent));
    EXPECT_EQ(digitsOf(100000000000000.5, 1), (Digits{"1000000000000000", 15}));
    EXPECT_EQ(digitsOf(100000000000001.5, 1), (Digits{"1000000000000020", 15}));
    EXPECT_EQ(digitsOf(1000000000000015.0, 0), (Digits{"1000000000000020", 16}));
}

TEST(FloatingPointUtils, HardlyEverNeedsTheExactPrinterForAmounts)
{
    DoubleSource tSource;
    int nUnsure = 0;
    for (int n = 0; n < 100000; ++n)
    {
        std::uint64_t nUnits = 0;
        nUnsure += !roundToUnits(tSource.amount(), 2, nUnits);
        nUnsure += !roundToUnits(tSource.amount() + 0.005, 2, nUnits);
        nUnsure += !roundToUnits(tSource.amount(), 4, nUnits);
        nUnsure += !roundToUnits(tSource.amount(), -1, nUnits);
    }
    EXPECT_LT(nUnsure, 400);
}

TEST(FloatingPointUtils, SaysWhenTheQuickWayIsNotSure)
{
    std::uint64_t nUnits = 0;
    EXPECT_FALSE(roundToUnits(1.0, 19, nUnits));
    EXPECT_FALSE(roundToUnits(1.0, -23, nUnits));
    EXPECT_FALSE(roundToUnits(1e14, 0, nUnits));
    EXPECT_FALSE(roundToUnits(1e12, 2, nUnits));
    EXPECT_FALSE(roundToUnits(2.4999999999999991, 0, nUnits));  // between what rounds up for sure and what down
    EXPECT_TRUE(roundToUnits(2.5, 0, nUnits));
    EXPECT_EQ(nUnits, 3U);
    EXPECT_TRUE(roundToUnits(1e22, -22, nUnits));
    EXPECT_EQ(nUnits, 1U);
    EXPECT_TRUE(roundToUnits(1e-18, 18, nUnits));
    EXPECT_EQ(nUnits, 1U);
}

TEST(FloatingPointUtils, NeedsNoHeapWhileTheBufferHolds)
{
    const AllocationCounter tCounter;
    StringBufferTemplate<char, 512> tBuffer;
    for (const double fValue : {0.0, 1.005, 123456.789, 1e300, 5e-324, 2.4999999999999991, kInfinity})
    {
        FloatingPointUtils::getDoubleDigitsWithMaxSignficantDigits(tBuffer, fValue, 17, 0, 15);
        FloatingPointUtils::getDoubleDigitsWithMaxSignficantDigits(tBuffer, fValue, 2, -3, 400);
    }
    FloatingPointUtils::getIntegerDigits(tBuffer, 18446744073709551615ULL, 2, -3);
    EXPECT_EQ(tCounter.count(), 0U);
}

TEST(FloatingPointUtils, ReplacesWhatTheBufferHeld)
{
    StringBufferTemplate<char, 8> tBuffer;
    tBuffer.append("old", 3);
    EXPECT_EQ(FloatingPointUtils::getIntegerDigits(tBuffer, 42, 0, 0), 2);
    EXPECT_EQ(tBuffer.view(), "42");
    EXPECT_EQ(FloatingPointUtils::getDoubleDigitsWithMaxSignficantDigits(tBuffer, 1e20, 0, 0, 15), 21);
    EXPECT_EQ(tBuffer.view(), "100000000000000000000");
}

}  // namespace

}  // namespace tov
