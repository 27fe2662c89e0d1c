#include "corefacade/corvidnumber.h"

#include <gtest/gtest.h>

#include <bit>
#include <boost/multiprecision/cpp_dec_float.hpp>
#include <chrono>
#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "corefacade/decimalreference.h"
#include "support/allocationcounter.h"

namespace tov {

namespace {

using reference::Digits;
using reference::Integer;

constexpr double kInfinity = std::numeric_limits<double>::infinity();

CorvidNumber number(std::string_view sText)
{
    return CorvidNumber::fromString(sText).value();
}

Digits fcvt(const CorvidNumber& tValue, unsigned nPlaces)
{
    StringBufferTemplate<char, 512> tBuffer;
    bool bNegative = false;
    int nPoint = -1;
    tValue.m_fcvt(tBuffer, nPlaces, &nPoint, &bNegative);
    EXPECT_EQ(bNegative, tValue.isNegative());
    return {tBuffer.toString(), nPoint};
}

std::string repeated(char tDigit, std::size_t nCount)
{
    return std::string(nCount, tDigit);
}

struct TextRow
{
    int nLine;
    std::string sText;
    const char* pExpected;  // null: no value
};

const TextRow kTextRows[] = {
    {__LINE__, "0", "0"},
    {__LINE__, "-0", "0"},
    {__LINE__, "+0.000", "0"},
    {__LINE__, "1234.5", "1234.5"},
    {__LINE__, "+1234.50", "1234.5"},
    {__LINE__, "-1234.5", "-1234.5"},
    {__LINE__, "0017", "17"},  // leading zeros do not make it octal
    {__LINE__, "08", "8"},
    {__LINE__, "5.", "5"},
    {__LINE__, ".5", "0.5"},
    {__LINE__, "-.05", "-0.05"},
    {__LINE__, "1e3", "1000"},
    {__LINE__, "1E+3", "1000"},
    {__LINE__, "12.5e-3", "0.0125"},
    {__LINE__, "0e99999999999999999999999", "0"},
    {__LINE__, "1e99999999999999999999999", "INF"},
    {__LINE__, "-1e99999999999999999999999", "-INF"},
    {__LINE__, "-1e-99999999999999999999999", "0"},
    {__LINE__, "INF", "INF"},
    {__LINE__, "+INF", "INF"},
    {__LINE__, "-INF", "-INF"},
    {__LINE__, "1e6145", "INF"},
    {__LINE__, "-1e6145", "-INF"},
    {__LINE__, "1e-6145", "0"},
    {__LINE__, "-1e-6145", "0"},
    {__LINE__, "99999999999999999999999999999999999999", "99999999999999999999999999999999999999"},
    {__LINE__, "340282366920938463463374607431768211455", "340282366920938463463374607431768211455"},
    {__LINE__, "340282366920938463463374607431768211456", "340282366920938463463374607431768211456"},
    {__LINE__, "", nullptr},
    {__LINE__, "-", nullptr},
    {__LINE__, ".", nullptr},
    {__LINE__, "-.", nullptr},
    {__LINE__, "e5", nullptr},
    {__LINE__, ".e5", nullptr},
    {__LINE__, "1e", nullptr},
    {__LINE__, "1e+", nullptr},
    {__LINE__, "1e5.", nullptr},
    {__LINE__, "1.2.3", nullptr},
    {__LINE__, "--1", nullptr},
    {__LINE__, "+-1", nullptr},
    {__LINE__, " 1", nullptr},
    {__LINE__, "1 ", nullptr},
    {__LINE__, "1,000", nullptr},
    {__LINE__, "0x10", nullptr},
    {__LINE__, "inf", nullptr},
    {__LINE__, "Inf", nullptr},
    {__LINE__, "INFINITY", nullptr},
    {__LINE__, "IN", nullptr},
    {__LINE__, "NAN", nullptr},
    {__LINE__, std::string("1\0", 2), nullptr},
    {__LINE__, "\xD9\xA1", nullptr},
};

TEST(CorvidNumber, ReadsDecimalTextAndNothingElse)
{
    for (const TextRow& tRow : kTextRows)
    {
        const auto tNarrow = CorvidNumber::fromString(std::string_view(tRow.sText));
        const auto tWide = CorvidNumber::fromString(std::wstring(tRow.sText.begin(), tRow.sText.end()));
        ASSERT_EQ(tNarrow.has_value(), tRow.pExpected != nullptr) << "row at line " << tRow.nLine;
        ASSERT_EQ(tWide.has_value(), tRow.pExpected != nullptr) << "row at line " << tRow.nLine;
        if (!tRow.pExpected)
            continue;
        EXPECT_EQ(tNarrow->toString(), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tWide->toString(), tRow.pExpected) << "row at line " << tRow.nLine;
    }
    EXPECT_FALSE(CorvidNumber::fromString(L"\u0661"));
    EXPECT_FALSE(CorvidNumber::fromString(L"\u0131"));  // its low byte is that of "1"
}

TEST(CorvidNumber, KeepsTenThousandDigitsAndRoundsTheRestHalfToEven)
{
    const std::string sKept = "1." + repeated('7', 9999);
    EXPECT_EQ(number(sKept).toString(), sKept);
    EXPECT_EQ(number(sKept + "5").toString(), "1." + repeated('7', 9998) + "8");
    EXPECT_EQ(number(sKept + "4" + repeated('9', 50000)).toString(), sKept);
    const std::string sEven = "1." + repeated('7', 9998) + "2";
    EXPECT_EQ(number(sEven + "5" + repeated('0', 50000)).toString(), sEven);
    EXPECT_EQ(number(sEven + "5" + repeated('0', 50000) + "1").toString(), "1." + repeated('7', 9998) + "3");
    EXPECT_EQ(number("0." + repeated('9', 10001)).toString(), "1");
}

TEST(CorvidNumber, BoundsMagnitudesAtTenToThe6144)
{
    const CorvidNumber tLargest = number(repeated('9', 6145));
    EXPECT_FALSE(tLargest.isInfinite());
    EXPECT_EQ(tLargest, (number("1e6144") - CorvidNumber(1)) * CorvidNumber(10) + CorvidNumber(9));
    EXPECT_TRUE(number("1" + repeated('0', 6145)).isInfinite());
    EXPECT_TRUE((tLargest + CorvidNumber(1)).isInfinite());
    EXPECT_TRUE((number("-1e6144") * CorvidNumber(10)).isInfinite());
    EXPECT_TRUE((number("-1e6144") * CorvidNumber(10)).isNegative());
    const CorvidNumber tSmallest = number("1e-6144");
    EXPECT_FALSE(tSmallest.isZero());
    EXPECT_EQ(tSmallest.toString(), "0." + repeated('0', 6143) + "1");
    EXPECT_TRUE((tSmallest / CorvidNumber(10)).isZero());
    EXPECT_TRUE((tSmallest * tSmallest).isZero());
    EXPECT_FALSE((tSmallest / CorvidNumber(10)).isNegative());
    EXPECT_EQ(number("1e6144") + tSmallest, number("1e6144"));  // 12,289 digits are more than are kept
    EXPECT_TRUE(number("0." + repeated('0', 6144) + "9").isZero());
    EXPECT_EQ(number("0." + repeated('0', 6144) + repeated('9', 10001)), tSmallest);
}

TEST(CorvidNumber, HandlesTheLongestNumbersInMoments)
{
    const auto tStart = std::chrono::steady_clock::now();
    const CorvidNumber tLong = number("1." + repeated('7', 9999));
    const CorvidNumber tHuge = number(repeated('9', 6145)) - number("0." + repeated('3', 3000));
    const CorvidNumber tSmall = number("1e-6144") * tLong;
    for (const CorvidNumber& tLeft : {tLong, tHuge, tSmall})
    {
        for (const CorvidNumber& tRight : {tLong, tHuge, tSmall})
        {
            EXPECT_EQ(tLeft + tRight, tRight + tLeft);
            EXPECT_FALSE((tLeft * tRight).toString().empty());
            EXPECT_FALSE((tLeft / tRight).toString().empty());
            EXPECT_LT(math::modulus(tLeft, tRight), tRight);
            EXPECT_FALSE(math::logbase10(tLeft).isZero());
        }
        EXPECT_FALSE(fcvt(tLeft, 4000000000U).m_sDigits.empty());
    }
    EXPECT_TRUE(CorvidNumber::fromString(repeated('0', 5000000) + "." + repeated('0', 5000000) + "1e5000001"));
    EXPECT_EQ(number("0." + repeated('0', 5000000) + "1e5000001"), CorvidNumber(1));
    EXPECT_TRUE(number(repeated('8', 5000000)).isInfinite());
    EXPECT_EQ(number(repeated('8', 5000000) + "e-4999999"), number("8." + repeated('8', 9998) + "9"));
    EXPECT_LT(std::chrono::steady_clock::now() - tStart, std::chrono::seconds(20));
}

TEST(CorvidNumber, IsMadeFromIntegersExactly)
{
    EXPECT_EQ(CorvidNumber().toString(), "0");
    EXPECT_EQ(CorvidNumber(std::numeric_limits<int>::min()).toString(), "-2147483648");
    EXPECT_EQ(CorvidNumber(std::numeric_limits<unsigned>::max()).toString(), "4294967295");
    EXPECT_EQ(CorvidNumber(std::numeric_limits<long>::min()).toString(), "-9223372036854775808");
    EXPECT_EQ(CorvidNumber(std::numeric_limits<unsigned long>::max()).toString(), "18446744073709551615");
}

struct FromDoubleRow
{
    int nLine;
    double fValue;
    const char* pExpected;
};

const FromDoubleRow kFromDoubleRows[] = {
    {__LINE__, 0.0, "0"},
    {__LINE__, -0.0, "0"},
    {__LINE__, 0.1, "0.1"},
    {__LINE__, -2.675, "-2.675"},
    {__LINE__, 1.0 / 3.0, "0.3333333333333333"},
    {__LINE__, 1e22, "10000000000000000000000"},
    {__LINE__, 123456789012345678.0, "123456789012345680"},
    {__LINE__, 9007199254740993.0, "9007199254740992"},
    {__LINE__, kInfinity, "INF"},
    {__LINE__, -kInfinity, "-INF"},
    {__LINE__, std::numeric_limits<double>::quiet_NaN(), "0"},
};

TEST(CorvidNumber, IsMadeFromTheShortestTextOfADouble)
{
    for (const FromDoubleRow& tRow : kFromDoubleRows)
        EXPECT_EQ(CorvidNumber(tRow.fValue).toString(), tRow.pExpected) << "row at line " << tRow.nLine;
    EXPECT_EQ(CorvidNumber(5e-324).toString(), "0." + repeated('0', 323) + "5");
}

TEST(CorvidNumber, GoesToADoubleAndBackWithoutLoss)
{
    std::mt19937_64 tRandom(7);
    for (int n = 0; n < 20000; ++n)
    {
        const double fValue = std::bit_cast<double>(tRandom());
        if (std::isnan(fValue))
            continue;
        ASSERT_EQ(CorvidNumber(fValue).asDouble(), fValue);
    }
}

TEST(CorvidNumber, RoundsToTheNearestDouble)
{
    EXPECT_EQ(number("9007199254740993").asDouble(), 9007199254740992.0);
    EXPECT_EQ(number("9007199254740993." + repeated('0', 200) + "1").asDouble(), 9007199254740994.0);
    EXPECT_EQ(number("0.1").asDouble(), 0.1);
    EXPECT_EQ(number("1.7976931348623157e308").asDouble(), std::numeric_limits<double>::max());
    EXPECT_EQ(number("1.7976931348623159e308").asDouble(), kInfinity);
    EXPECT_EQ(number("-1e309").asDouble(), -kInfinity);
    EXPECT_EQ(number("-1e6000").asDouble(), -kInfinity);
    EXPECT_EQ(number("2e-324").asDouble(), 0.0);
    EXPECT_EQ(number("3e-324").asDouble(), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(number("1e-6000").asDouble(), 0.0);
    EXPECT_EQ(number("-INF").asDouble(), -kInfinity);
    EXPECT_EQ(number("0").asDouble(), 0.0);
}

struct FcvtRow
{
    int nLine;
    const char* pValue;
    unsigned nPlaces;
    Digits tExpected;
};

const FcvtRow kFcvtRows[] = {
    {__LINE__, "1234.5", 2, {"123450", 4}},
    {__LINE__, "0.05", 2, {"05", 0}},
    {__LINE__, "-0.05", 2, {"05", 0}},
    {__LINE__, "0", 0, {"", 0}},
    {__LINE__, "0", 3, {"000", 0}},
    {__LINE__, "0.004", 2, {"00", 0}},
    {__LINE__, "-0.004", 2, {"00", 0}},
    {__LINE__, "0.005", 2, {"01", 0}},
    {__LINE__, "0.5", 0, {"1", 1}},
    {__LINE__, "-2.5", 0, {"3", 1}},
    {__LINE__, "2.4999999999999999999999999999", 0, {"2", 1}},
    {__LINE__, "999.995", 2, {"100000", 4}},
    {__LINE__, "0.0996", 3, {"100", 0}},
    {__LINE__, "1e3", 1, {"10000", 4}},
    {__LINE__, "1.50", 1, {"15", 1}},
    {__LINE__, "99999999999999999999999999999999999999", 1, {"999999999999999999999999999999999999990", 38}},
    {__LINE__, "340282366920938463463374607431768211455", 0, {"340282366920938463463374607431768211455", 39}},
    {__LINE__, "340282366920938463463374607431768211456", 0, {"340282366920938463463374607431768211456", 39}},
    {__LINE__, "10000000000000000000", 0, {"10000000000000000000", 20}},
    {__LINE__, "100000000000000000000000000000000000000", 0, {"100000000000000000000000000000000000000", 39}},
    {__LINE__, "99999999999999999999", 0, {"99999999999999999999", 20}},
    {__LINE__, "9999999999999999999.5", 0, {"10000000000000000000", 20}},
    {__LINE__, "INF", 2, {"", 0}},
    {__LINE__, "-INF", 2, {"", 0}},
};

TEST(CorvidNumber, WritesEveryPlaceAfterThePointAndRoundsHalvesAway)
{
    for (const FcvtRow& tRow : kFcvtRows)
        EXPECT_EQ(fcvt(number(tRow.pValue), tRow.nPlaces), tRow.tExpected) << "row at line " << tRow.nLine;
    EXPECT_EQ(fcvt(number("1e6144"), 0).m_nPoint, 6145);
    EXPECT_EQ(fcvt(number("1"), std::numeric_limits<unsigned>::max()).m_sDigits.size(), 65537U);
}

// Decimal numbers of the shapes that columns hold, and of those that nobody expects.
struct RandomDecimal
{
    Integer m_tCoefficient;
    int m_nExponent = 0;

    CorvidNumber asNumber() const { return number(m_tCoefficient.str() + "e" + std::to_string(m_nExponent)); }

    reference::Fraction magnitude() const
    {
        reference::Fraction tFraction{boost::multiprecision::abs(m_tCoefficient)};
        tFraction.shift(m_nExponent);
        return tFraction;
    }
};

class DecimalSource
{
public:
    RandomDecimal next(unsigned nMaxDigits)
    {
        RandomDecimal tResult;
        const unsigned nDigits = 1 + static_cast<unsigned>(below(nMaxDigits));
        const bool bNines = below(8) == 0;  // carries
        for (unsigned n = 0; n < nDigits; ++n)
            tResult.m_tCoefficient = tResult.m_tCoefficient * 10 + (bNines ? 9 : below(10));
        if (below(2))
            tResult.m_tCoefficient = -tResult.m_tCoefficient;
        tResult.m_nExponent = below(60) - 40;
        return tResult;
    }
    int below(unsigned nEnd) { return static_cast<int>(m_tRandom() % nEnd); }

private:
    std::mt19937_64 m_tRandom{20240305};
};

TEST(CorvidNumber, WritesTheDigitsThatWholeNumberArithmeticGives)
{
    DecimalSource tSource;
    for (int n = 0; n < 20000; ++n)
    {
        const RandomDecimal tValue = tSource.next(n % 10 == 0 ? 200 : 40);
        const unsigned nPlaces = static_cast<unsigned>(tSource.below(45));
        ASSERT_EQ(fcvt(tValue.asNumber(), nPlaces), reference::place(tValue.magnitude(), nPlaces))
            << tValue.asNumber().toString() << " " << nPlaces;
    }
}

// What whole-number arithmetic says a result is, in the form of toString.
std::string textOf(Integer tCoefficient, int nExponent)
{
    for (; tCoefficient != 0 && tCoefficient % 10 == 0; ++nExponent)
        tCoefficient /= 10;
    std::string sDigits = Integer(boost::multiprecision::abs(tCoefficient)).str();
    if (nExponent > 0 && tCoefficient != 0)
        sDigits.append(static_cast<std::size_t>(nExponent), '0');
    const std::size_t nPlaces = nExponent < 0 && tCoefficient != 0 ? static_cast<std::size_t>(-nExponent) : 0;
    if (sDigits.size() <= nPlaces)
        sDigits.insert(0, nPlaces + 1 - sDigits.size(), '0');
    if (nPlaces != 0)
        sDigits.insert(sDigits.size() - nPlaces, 1, '.');
    return (tCoefficient < 0 ? "-" : "") + sDigits;
}

TEST(CorvidNumber, AddsSubtractsAndMultipliesExactly)
{
    DecimalSource tSource;
    for (int n = 0; n < 10000; ++n)
    {
        const RandomDecimal tLeft = tSource.next(60);
        const RandomDecimal tRight = tSource.next(60);
        const int nExponent = std::min(tLeft.m_nExponent, tRight.m_nExponent);
        const Integer tFirst =
            tLeft.m_tCoefficient * reference::powerOf10(static_cast<unsigned>(tLeft.m_nExponent - nExponent));
        const Integer tSecond =
            tRight.m_tCoefficient * reference::powerOf10(static_cast<unsigned>(tRight.m_nExponent - nExponent));
        const CorvidNumber tA = tLeft.asNumber();
        const CorvidNumber tB = tRight.asNumber();
        ASSERT_EQ((tA + tB).toString(), textOf(tFirst + tSecond, nExponent));
        ASSERT_EQ((tA - tB).toString(), textOf(tFirst - tSecond, nExponent));
        ASSERT_EQ((tA * tB).toString(),
                  textOf(tLeft.m_tCoefficient * tRight.m_tCoefficient, tLeft.m_nExponent + tRight.m_nExponent));
        ASSERT_EQ((tA <=> tB) < 0, tFirst < tSecond);
        ASSERT_EQ(tA == tB, tFirst == tSecond);
        ASSERT_EQ(math::modulus(tA, tB).toString(), tSecond == 0 ? "0" : textOf(tFirst % tSecond, nExponent));
        if (tSecond != 0)
        {
            ASSERT_EQ(math::wholeQuotient(tA, tB).toString(), textOf(tFirst / tSecond, 0));
        }
        CorvidNumber tC = tA;
        tC += tB;
        ASSERT_EQ(tC - tB, tA);
        tC -= tB;
        ASSERT_EQ(tC, tA);
    }
}

TEST(CorvidNumber, TakesTheWholeQuotientAsTheDivisionWhereThereIsNone)
{
    EXPECT_EQ(math::wholeQuotient(number("7.5"), number("2")).toString(), "3");
    EXPECT_EQ(math::wholeQuotient(number("-7"), number("2")).toString(), "-3");
    EXPECT_EQ(math::wholeQuotient(number("-7"), number("0")).toString(), "-INF");
    EXPECT_EQ(math::wholeQuotient(number("0"), number("0")).toString(), "0");
    EXPECT_EQ(math::wholeQuotient(number("7"), number("INF")).toString(), "0");
    EXPECT_EQ(math::wholeQuotient(number("INF"), number("-7")).toString(), "-INF");
}

TEST(CorvidNumber, DividesToFortyDigitsHalvesToEven)
{
    DecimalSource tSource;
    for (int n = 0; n < 5000; ++n)
    {
        const RandomDecimal tLeft = tSource.next(60);
        const RandomDecimal tRight = tSource.next(60);
        if (tRight.m_tCoefficient == 0)
            continue;
        reference::Fraction tQuotient = tLeft.magnitude();
        tQuotient.m_tNumerator *= tRight.magnitude().m_tDenominator;
        tQuotient.m_tDenominator *= tRight.magnitude().m_tNumerator;
        reference::Fraction tRounded = reference::roundToSignificant(tQuotient, 40);
        tRounded.shift(150);  // past the last place of any of these quotients
        Integer tExpected = tRounded.m_tNumerator / tRounded.m_tDenominator;
        if ((tLeft.m_tCoefficient < 0) != (tRight.m_tCoefficient < 0))
            tExpected = -tExpected;
        ASSERT_EQ((tLeft.asNumber() / tRight.asNumber()).toString(), textOf(tExpected, -150));
    }
    EXPECT_EQ((CorvidNumber(6) / CorvidNumber(2)).toString(), "3");
    EXPECT_EQ((number("2e39") / number("2")).toString(), "1" + repeated('0', 39));
    // Ties: an odd fortieth digit goes up, an even one stays.
    EXPECT_EQ((number("1" + repeated('0', 38) + "15") / CorvidNumber(10)).toString(), "1" + repeated('0', 38) + "2");
    EXPECT_EQ((number("1" + repeated('0', 38) + "25") / CorvidNumber(10)).toString(), "1" + repeated('0', 38) + "2");
    EXPECT_EQ((number(repeated('9', 40) + "5") / CorvidNumber(1)).toString(), "1" + repeated('0', 41));
}

struct SpecialRow
{
    int nLine;
    const char* pLeft;
    char tOperator;
    const char* pRight;
    const char* pExpected;
};

constexpr SpecialRow kSpecialRows[] = {
    {__LINE__, "INF", '+', "-INF", "0"},
    {__LINE__, "INF", '-', "INF", "0"},
    {__LINE__, "INF", '+', "INF", "INF"},
    {__LINE__, "-INF", '-', "INF", "-INF"},
    {__LINE__, "5", '-', "INF", "-INF"},
    {__LINE__, "5", '+', "INF", "INF"},
    {__LINE__, "-INF", '+', "5", "-INF"},
    {__LINE__, "0", '-', "5", "-5"},
    {__LINE__, "0", '-', "-5", "5"},
    {__LINE__, "5", '-', "0", "5"},
    {__LINE__, "0", '-', "-INF", "INF"},
    {__LINE__, "INF", '*', "0", "0"},
    {__LINE__, "INF", '*', "-2", "-INF"},
    {__LINE__, "-INF", '*', "-INF", "INF"},
    {__LINE__, "-3", '/', "0", "-INF"},
    {__LINE__, "3", '/', "0", "INF"},
    {__LINE__, "0", '/', "0", "0"},
    {__LINE__, "3", '/', "-INF", "0"},
    {__LINE__, "INF", '/', "INF", "0"},
    {__LINE__, "INF", '/', "-2", "-INF"},
    {__LINE__, "INF", '/', "0", "INF"},
    {__LINE__, "INF", '%', "2", "0"},
    {__LINE__, "7", '%', "INF", "7"},
    {__LINE__, "7", '%', "0", "0"},
    {__LINE__, "-7", '%', "3", "-1"},
    {__LINE__, "7", '%', "-3", "1"},
    {__LINE__, "7.5", '%', "2", "1.5"},
    {__LINE__, "0", '%', "2", "0"},
    {__LINE__, "93784", '%', "86400", "7384"},
};

CorvidNumber apply(const CorvidNumber& tLeft, char tOperator, const CorvidNumber& tRight)
{
    switch (tOperator)
    {
    case '+': return tLeft + tRight;
    case '-': return tLeft - tRight;
    case '*': return tLeft * tRight;
    case '/': return tLeft / tRight;
    default: return math::modulus(tLeft, tRight);
    }
}

TEST(CorvidNumber, CalculatesWithInfiniteValuesAndZeroWithoutAnythingThatIsNoNumber)
{
    for (const SpecialRow& tRow : kSpecialRows)
    {
        EXPECT_EQ(apply(number(tRow.pLeft), tRow.tOperator, number(tRow.pRight)).toString(), tRow.pExpected)
            << "row at line " << tRow.nLine;
    }
}

TEST(CorvidNumber, OrdersAllValues)
{
    const char* const aAscending[] = {"-INF",  "-1e6144", "-1000", "-999.9", "-1", "-0.1", "-1e-6144", "0",
                                      "1e-50", "0.1",     "0.11",  "1",      "9",  "10",   "1e6144",   "INF"};
    for (std::size_t n = 0; n < std::size(aAscending); ++n)
    {
        for (std::size_t m = 0; m < std::size(aAscending); ++m)
            EXPECT_EQ(number(aAscending[n]) <=> number(aAscending[m]), n <=> m)
                << aAscending[n] << " " << aAscending[m];
    }
    EXPECT_EQ(number("1.50"), number("1.5"));
    EXPECT_EQ(number("1000"), number("1e3"));
    EXPECT_EQ(number("-1000"), number("-1e3"));
}

struct RoundRow
{
    int nLine;
    const char* pValue;
    int nPlaces;
    const char* pExpected;
};

constexpr RoundRow kRoundRows[] = {
    {__LINE__, "2.5", 0, "3"},
    {__LINE__, "-2.5", 0, "-3"},
    {__LINE__, "2.4999", 0, "2"},
    {__LINE__, "-0.125", 2, "-0.13"},
    {__LINE__, "0.125", 3, "0.125"},
    {__LINE__, "0.125", 9, "0.125"},
    {__LINE__, "1250", -2, "1300"},
    {__LINE__, "50", -2, "100"},
    {__LINE__, "49", -2, "0"},
    {__LINE__, "5", -2, "0"},
    {__LINE__, "-0.4", 0, "0"},
    {__LINE__, "0.05", 0, "0"},
    {__LINE__, "99.999", 2, "100"},
    {__LINE__, "0", 5, "0"},
    {__LINE__, "INF", 2, "INF"},
    {__LINE__, "-INF", 0, "-INF"},
    {__LINE__, "1e6144", 2147483647, "1" /* followed by 6,144 zeros */},
    {__LINE__, "12345", -2147483647 - 1, "0"},
};

TEST(CorvidNumber, RoundsHalvesAwayFromZeroAtAnyPlace)
{
    for (const RoundRow& tRow : kRoundRows)
    {
        const std::string sExpected =
            tRow.nPlaces == 2147483647 ? tRow.pExpected + repeated('0', 6144) : std::string(tRow.pExpected);
        EXPECT_EQ(math::round(number(tRow.pValue), tRow.nPlaces).toString(), sExpected) << "row at line " << tRow.nLine;
    }
    EXPECT_FALSE(math::round(number("-0.4"), 0).isNegative());
}

struct WholeRow
{
    int nLine;
    const char* pValue;
    const char* pFloor;
    const char* pCeiling;
};

constexpr WholeRow kWholeRows[] = {
    {__LINE__, "2.5", "2", "3"},
    {__LINE__, "-2.5", "-3", "-2"},
    {__LINE__, "2.0", "2", "2"},
    {__LINE__, "-2.0", "-2", "-2"},
    {__LINE__, "0.001", "0", "1"},
    {__LINE__, "-0.001", "-1", "0"},
    {__LINE__, "0", "0", "0"},
    {__LINE__, "0.0", "0", "0"},
    {__LINE__, "1e3", "1000", "1000"},
    {__LINE__, "1e-6144", "0", "1"},
    {__LINE__, "12345678901234567890123456789012345678901234567890.5",
     "12345678901234567890123456789012345678901234567890", "12345678901234567890123456789012345678901234567891"},
    {__LINE__, "INF", "INF", "INF"},
    {__LINE__, "-INF", "-INF", "-INF"},
};

TEST(CorvidNumber, FindsTheWholeNumbersBelowAndAbove)
{
    for (const WholeRow& tRow : kWholeRows)
    {
        EXPECT_EQ(math::floor(number(tRow.pValue)).toString(), tRow.pFloor) << "row at line " << tRow.nLine;
        EXPECT_EQ(math::ceiling(number(tRow.pValue)).toString(), tRow.pCeiling) << "row at line " << tRow.nLine;
    }
}

TEST(CorvidNumber, ShiftsThePointExactlyWithinItsBounds)
{
    EXPECT_EQ(math::shiftPower10(number("1234.5"), -3).toString(), "1.2345");
    EXPECT_EQ(math::shiftPower10(number("-1.2345"), 6).toString(), "-1234500");
    EXPECT_EQ(math::shiftPower10(number("0"), 2147483647).toString(), "0");
    EXPECT_EQ(math::shiftPower10(number("-1"), 2147483647).toString(), "-INF");
    EXPECT_EQ(math::shiftPower10(number("-1"), -2147483647 - 1).toString(), "0");
    EXPECT_EQ(math::shiftPower10(number("INF"), -5).toString(), "INF");
    EXPECT_EQ(math::shiftPower10(number("1"), 6144), number("1e6144"));
    EXPECT_TRUE(math::shiftPower10(number("10"), 6144).isInfinite());
    EXPECT_EQ(math::shiftPower10(number("10"), -6145), number("1e-6144"));
    EXPECT_TRUE(math::shiftPower10(number("1"), -6145).isZero());
    EXPECT_EQ(math::absolute(number("-3.5")).toString(), "3.5");
    EXPECT_EQ(math::absolute(number("3.5")).toString(), "3.5");
    EXPECT_EQ(math::absolute(number("-INF")).toString(), "INF");
    EXPECT_EQ(math::absolute(number("0")).toString(), "0");
}

TEST(CorvidNumber, TakesLogarithmsToThePrecisionOfDouble)
{
    for (int nPower = -6144; nPower <= 6144; nPower += 16)
        EXPECT_EQ(math::logbase10(number("1e" + std::to_string(nPower))), CorvidNumber(nPower));
    EXPECT_EQ(math::logbase10(number("1000.000")), CorvidNumber(3));
    EXPECT_EQ(math::logbase10(number("-1000")), CorvidNumber(3));
    EXPECT_EQ(math::logbase10(number("0")).toString(), "-INF");
    EXPECT_EQ(math::logbase10(number("INF")).toString(), "INF");
    EXPECT_EQ(math::logbase10(number("-INF")).toString(), "INF");
    using Float = boost::multiprecision::cpp_dec_float_50;
    for (const char* pText : {"2", "0.5", "3.16", "999.9", "1.0000001", "0.9999999", "1.05", "1.2", "0.09",
                              "1.0000000000000000000000000001", "0.9999999999999999999999999999", "123456789.123456789",
                              "7e307", "7e-307", "7e3000", "7e-3000"})
    {
        const double fExpected = log10(Float(pText)).convert_to<double>();
        EXPECT_NEAR(math::logbase10(number(pText)).asDouble() / fExpected, 1.0, 4e-16) << pText;
    }
}

struct PowerRow
{
    int nLine;
    const char* pValue;
    int nPower;
    int nExpected;
};

constexpr PowerRow kPowerRows[] = {
    {__LINE__, "1000", 3, 0},
    {__LINE__, "1e3", 3, 0},
    {__LINE__, "1000.00", 3, 0},
    {__LINE__, "-1000", 3, 0},
    {__LINE__, "999.99999999999999999999999999999999999999999999999", 3, -1},
    {__LINE__, "1000.0000000000000000000000000000000000000000000001", 3, 1},
    {__LINE__, "0.001", -3, 0},
    {__LINE__, "0.0011", -3, 1},
    {__LINE__, "0.0009", -3, -1},
    {__LINE__, "0", -6144, -1},
    {__LINE__, "INF", 2147483647, 1},
    {__LINE__, "-INF", 2147483647, 1},
    {__LINE__, "1e6144", 2147483647, -1},
    {__LINE__, "1e-6144", -2147483647 - 1, 1},
    {__LINE__, "1", 0, 0},
    {__LINE__, "100000000000000000000000000000000000000000000000000", 50, 0},
};

TEST(CorvidNumber, ComparesMagnitudesWithPowersOfTenExactly)
{
    for (const PowerRow& tRow : kPowerRows)
    {
        EXPECT_EQ(compareMagnitudeToPower10(number(tRow.pValue), tRow.nPower), tRow.nExpected)
            << "row at line " << tRow.nLine;
    }
}

TEST(CorvidNumber, NeedsNoHeapUpTo128Bits)
{
    StringBufferTemplate<char, 8192> tBuffer;
    int nPoint = 0;
    bool bNegative = false;
    const AllocationCounter tCounter;
    for (const char* pText : {"0", "-12.50", "340282366920938463463374607431768211455", "1e6144", "1e-6144",
                              "0.00000000000000000000000000000000000009999999999999999999999999999999999999"})
    {
        CorvidNumber tValue = *CorvidNumber::fromString(std::string_view(pText));
        CorvidNumber tCopy(tValue);
        tCopy = tValue;
        CorvidNumber tMoved(std::move(tCopy));
        tMoved.swap(tValue);
        for (const double fOther : {1234.5, 1e-300, 1e300, -7.0})
        {
            const CorvidNumber tOther(fOther);
            nPoint += (tOther < tValue) + (tOther == tValue) + compareMagnitudeToPower10(tValue, 5);
        }
        nPoint +=
            tValue == CorvidNumber(7UL) || tValue == *CorvidNumber::fromString(L"340282366920938463463374607431768.2");
        math::shiftPower10(tValue, -3).m_fcvt(tBuffer, 40, &nPoint, &bNegative);
        math::absolute(tValue).m_fcvt(tBuffer, 2, &nPoint, &bNegative);
        tValue.m_fcvt(tBuffer, 2, &nPoint, &bNegative);
    }
    EXPECT_EQ(tCounter.count(), 0U);
}

TEST(CorvidNumber, DividesUpTo64BitsWithoutTheHeap)
{
    StringBufferTemplate<char, 8192> tBuffer;
    int nPoint = 0;
    bool bNegative = false;
    double fSum = 0;
    const AllocationCounter tCounter;
    for (const unsigned long nValue : {1UL, 93784UL, 9007199254740993UL, ~0UL})
    {
        for (const unsigned long nDivisor : {3UL, 7UL, 86400UL, ~0UL - 1})
        {
            const CorvidNumber tValue = math::shiftPower10(CorvidNumber(nValue), -5);
            const CorvidNumber tDivisor(nDivisor);
            const CorvidNumber tQuotient = tValue / tDivisor;
            tQuotient.m_fcvt(tBuffer, 40, &nPoint, &bNegative);
            fSum += tQuotient.asDouble() + math::floor(tQuotient + CorvidNumber(0.5)).asDouble() +
                    math::ceiling(tQuotient).asDouble() + math::wholeQuotient(tValue, tDivisor).asDouble() +
                    math::modulus(tValue, tDivisor).asDouble();
        }
    }
    EXPECT_EQ(tCounter.count(), 0U);
    EXPECT_GT(fSum, 0);
}

TEST(CorvidNumber, MovesAndSwapsLongNumbers)
{
    const std::string sLong = repeated('7', 300);
    CorvidNumber tLong = number(sLong);
    CorvidNumber tTaken = std::move(tLong);
    EXPECT_EQ(tTaken.toString(), sLong);
    EXPECT_TRUE(tLong.isZero());  // NOLINT: the header promises it
    CorvidNumber tOther = number("-3");
    swap(tTaken, tOther);
    EXPECT_EQ(tTaken.toString(), "-3");
    EXPECT_EQ(tOther.toString(), sLong);
    tTaken = tOther;
    tOther = std::move(tTaken);
    EXPECT_EQ(tOther.toString(), sLong);
    CorvidNumber& tSelf = tOther;
    tOther = tSelf;
    EXPECT_EQ(tOther.toString(), sLong);
    tOther = CorvidNumber(1) + tOther;
    EXPECT_EQ(tOther - CorvidNumber(1), number(sLong));
}

}  // namespace

}  // namespace tov
