// Durations of random values against exact arithmetic on fractions.

#include <gtest/gtest.h>

#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "webbedrock/utf8.h"
#include "webformat/durationformatters.h"

namespace tov {

namespace {

__extension__ typedef __int128 Int128;

// The denominator is positive.
struct Fraction
{
    Int128 nNumerator = 0;
    Int128 nDenominator = 1;
};

// How a value type keeps fractions.
enum Kind
{
    kWhole,   // not at all
    kBinary,  // as a double: the shortest decimal is divided, fifteen digits are shown
    kDecimal  // exactly
};

struct Shape
{
    bool bDay;
    bool bHour;
    bool bMinute;
    bool bSecond;
    DurationFormatList::ERoundRule eRule;
};

Int128 magnitudeOf(Int128 nNumber)
{
    return nNumber < 0 ? -nNumber : nNumber;
}

Int128 powerOfTen(int nPower)
{
    return nPower == 0 ? Int128{1} : 10 * powerOfTen(nPower - 1);
}

Int128 floorOf(const Fraction& t)
{
    return t.nNumerator / t.nDenominator - (t.nNumerator % t.nDenominator < 0 ? 1 : 0);
}

Int128 ceilingOf(const Fraction& t)
{
    return -floorOf({-t.nNumerator, t.nDenominator});
}

// To the nearest whole number, halves up.
Int128 nearestOf(const Fraction& t)
{
    return floorOf({2 * t.nNumerator + t.nDenominator, 2 * t.nDenominator});
}

// Of a positive fraction: rounded to fifteen digits, halves to even.
Fraction fifteenDigitsOf(const Fraction& t)
{
    int nPlaces = 15;
    for (Int128 nWhole = floorOf(t); nWhole > 0; nWhole /= 10)
        --nPlaces;
    const Fraction tScaled = {t.nNumerator * powerOfTen(std::max(nPlaces, 0)),
                              t.nDenominator * powerOfTen(std::max(-nPlaces, 0))};
    Int128 nDigits = nearestOf(tScaled);
    const bool bTie = (2 * tScaled.nNumerator) % (2 * tScaled.nDenominator) == tScaled.nDenominator;
    nDigits -= bTie && nDigits % 2 != 0 ? 1 : 0;
    return {nDigits * powerOfTen(std::max(-nPlaces, 0)), powerOfTen(std::max(nPlaces, 0))};
}

std::string textOf(bool bNegative, Int128 nMagnitude)
{
    std::string sDigits;
    for (; nMagnitude > 0; nMagnitude /= 10)
        sDigits.insert(sDigits.begin(), static_cast<char>('0' + static_cast<int>(nMagnitude % 10)));
    return (bNegative ? "-" : "") + std::string(2 - std::min<std::size_t>(sDigits.size(), 2), '0') + sDigits;
}

// A number in at least two digits; its fraction is rounded, halves away from zero.
std::string textOf(const Fraction& t, Kind eKind)
{
    Fraction tMagnitude = {magnitudeOf(t.nNumerator), t.nDenominator};
    if (eKind == kBinary)
        tMagnitude = fifteenDigitsOf(tMagnitude);
    return textOf(t.nNumerator < 0, nearestOf(tMagnitude));
}

std::string textOf(Int128 nNumber)
{
    return textOf(nNumber < 0, magnitudeOf(nNumber));
}

// The shortest decimal text of the double that `t` is, as a fraction again.
Fraction shortestDecimalOf(const Fraction& t)
{
    char aText[64];
    const double fValue = static_cast<double>(t.nNumerator) / static_cast<double>(t.nDenominator);
    const auto tWritten = std::to_chars(aText, aText + sizeof aText, fValue, std::chars_format::scientific);
    const std::string sText(aText, static_cast<std::size_t>(tWritten.ptr - aText));
    const std::size_t nExponentSign = sText.find('e');
    int nExponent = std::atoi(sText.c_str() + nExponentSign + 1);
    Int128 nDigits = 0;
    for (std::size_t n = 0; n < nExponentSign; ++n)
    {
        if (sText[n] >= '0' && sText[n] <= '9')
            nDigits = 10 * nDigits + (sText[n] - '0');
    }
    if (const std::size_t nPoint = sText.find('.'); nPoint != std::string::npos)
        nExponent -= static_cast<int>(nExponentSign - nPoint - 1);
    nDigits = fValue < 0 ? -nDigits : nDigits;
    return {nDigits * powerOfTen(std::max(nExponent, 0)), powerOfTen(std::max(-nExponent, 0))};
}

std::string smallestUnit(Fraction tRest, Int128 nLength, DurationFormatList::ERoundRule eRule, Kind eKind)
{
    if (eKind == kBinary)
        tRest = shortestDecimalOf(tRest);
    const Fraction tQuotient = {tRest.nNumerator, tRest.nDenominator * nLength};
    if (eRule == DurationFormatList::kCeil)
        return textOf(ceilingOf(tQuotient));
    if (eRule == DurationFormatList::kRound)
        return textOf(nearestOf(tQuotient));
    return eKind == kWhole ? textOf(tQuotient.nNumerator / tQuotient.nDenominator) : textOf(tQuotient, eKind);
}

std::string referenceText(Fraction tRest, const Shape& tShape, Kind eKind)
{
    const bool aHas[] = {tShape.bDay, tShape.bHour, tShape.bMinute, tShape.bSecond};
    const int aLengths[] = {86400, 3600, 60};
    std::string sText;
    for (std::size_t nUnit = 0; nUnit < 3; ++nUnit)
    {
        if (!aHas[nUnit])
            continue;
        sText += sText.empty() ? "" : ":";
        const bool bSmallest = !aHas[3] && !(nUnit < 2 && aHas[2]) && !(nUnit < 1 && aHas[1]);
        if (bSmallest)
            return sText + smallestUnit(tRest, aLengths[nUnit], tShape.eRule, eKind);
        const Int128 nLength = tRest.nDenominator * aLengths[nUnit];
        sText += textOf(floorOf({tRest.nNumerator, nLength}));
        tRest.nNumerator %= nLength;
    }
    return aHas[3] ? sText + (sText.empty() ? "" : ":") + textOf(tRest, eKind) : sText;
}

String patternOf(const Shape& tShape)
{
    String sPattern;
    const auto add = [&](bool bHas, const wchar_t* pUnit)
    {
        if (bHas)
            sPattern += (sPattern.empty() ? L"" : L":") + String(pUnit);
    };
    add(tShape.bDay, L"dd");
    add(tShape.bHour, L"hh");
    add(tShape.bMinute, L"mm");
    add(tShape.bSecond, L"ss");
    return sPattern + String(1, L" cr"[tShape.eRule]).substr(tShape.eRule == DurationFormatList::kFloor ? 1 : 0);
}

std::vector<Shape> allShapes()
{
    std::vector<Shape> vShapes;
    for (unsigned n = 1; n < 16; ++n)
    {
        for (const auto eRule : {DurationFormatList::kFloor, DurationFormatList::kCeil, DurationFormatList::kRound})
            vShapes.push_back({(n & 8) != 0, (n & 4) != 0, (n & 2) != 0, (n & 1) != 0, eRule});
    }
    return vShapes;
}

// A random whole number below 2^53, of any length; one in two near a place where rounding changes.
std::int64_t randomWhole(std::mt19937_64& tRandom)
{
    const std::int64_t aSteps[] = {30, 60, 1800, 3600, 43200, 86400};
    const std::int64_t nNumber = static_cast<std::int64_t>(tRandom() >> (11 + tRandom() % 53));
    if (tRandom() % 2 == 0)
        return nNumber;
    const std::int64_t nStep = aSteps[tRandom() % std::size(aSteps)];
    return std::max<std::int64_t>(nNumber / nStep * nStep + static_cast<std::int64_t>(tRandom() % 3) - 1, 0);
}

template <class T, class MakeFraction>
void expectAgreement(Kind eKind, const std::vector<T>& vValues, MakeFraction makeFraction)
{
    for (const Shape& tShape : allShapes())
    {
        const WebValueFormatterHandle hFormatter = DurationFormatter<T>::ParseCustomFormat(
            patternOf(tShape), Locale::kUSA, ValueFormatterTypes::kText, KTWUILanguage::kDefaultLanguage);
        for (std::size_t n = 0; n < vValues.size(); ++n)
        {
            const Fraction tFraction = makeFraction(n);
            ASSERT_EQ(toUtf8(hFormatter->formatAsString(&vValues[n])), referenceText(tFraction, tShape, eKind))
                << toUtf8(patternOf(tShape)) << " of " << textOf(tFraction.nNumerator) << " / "
                << textOf(tFraction.nDenominator);
        }
    }
}

template <class T>
void expectWholeAgreement()
{
    std::mt19937_64 tRandom(20240305);
    std::vector<T> vValues;
    while (vValues.size() < 400)
    {
        const std::int64_t nValue = randomWhole(tRandom);
        if (nValue <= static_cast<std::int64_t>(std::numeric_limits<int>::max()) || sizeof(T) == 8)
            vValues.push_back(static_cast<T>(std::is_signed_v<T> && tRandom() % 3 == 0 ? -nValue : nValue));
    }
    expectAgreement(kWhole, vValues, [&](std::size_t n) { return Fraction{static_cast<Int128>(vValues[n]), 1}; });
}

TEST(DurationProperty, WholeNumbersAgreeWithExactArithmetic)
{
    expectWholeAgreement<int>();
    expectWholeAgreement<unsigned int>();
    expectWholeAgreement<long>();
    expectWholeAgreement<unsigned long>();
}

TEST(DurationProperty, DoublesAgreeWithExactArithmetic)
{
    std::mt19937_64 tRandom(20240306);
    std::vector<double> vValues;
    std::vector<Fraction> vFractions;
    while (vValues.size() < 1200)
    {
        const int nBits = static_cast<int>(tRandom() % 3 == 0 ? 0 : tRandom() % 21);
        std::int64_t nNumerator = randomWhole(tRandom);
        // Fractions next to a whole number of seconds, and any others.
        if (tRandom() % 2 == 0 && nNumerator < std::int64_t{1} << (52 - nBits))
            nNumerator = (nNumerator << nBits) + static_cast<std::int64_t>(tRandom() % 3) - 1;
        nNumerator = tRandom() % 3 == 0 ? -nNumerator : nNumerator;
        vValues.push_back(std::ldexp(static_cast<double>(nNumerator), -nBits));
        vFractions.push_back({nNumerator, Int128{1} << nBits});
    }
    expectAgreement(kBinary, vValues, [&](std::size_t n) { return vFractions[n]; });
}

TEST(DurationProperty, DecimalsAgreeWithExactArithmetic)
{
    std::mt19937_64 tRandom(20240307);
    std::vector<CorvidNumber> vValues;
    std::vector<Fraction> vFractions;
    while (vValues.size() < 400)
    {
        const int nPlaces = static_cast<int>(tRandom() % 13);
        std::int64_t nNumerator = randomWhole(tRandom);
        if (tRandom() % 2 == 0 && nNumerator < 1'000'000)
            nNumerator = nNumerator * static_cast<std::int64_t>(powerOfTen(nPlaces)) +
                         static_cast<std::int64_t>(tRandom() % 3) - 1;
        nNumerator = tRandom() % 3 == 0 ? -nNumerator : nNumerator;
        const std::string sText = std::to_string(nNumerator) + "e-" + std::to_string(nPlaces);
        vValues.push_back(*CorvidNumber::fromString(std::string_view(sText)));
        vFractions.push_back({nNumerator, powerOfTen(nPlaces)});
    }
    expectAgreement(kDecimal, vValues, [&](std::size_t n) { return vFractions[n]; });
}

template <class T>
std::string format(const wchar_t* pPattern, const T& tValue)
{
    return toUtf8(DurationFormatter<T>::ParseCustomFormat(pPattern, Locale::kUSA, ValueFormatterTypes::kText,
                                                          KTWUILanguage::kDefaultLanguage)
                      ->formatAsString(&tValue));
}

struct HugeRow
{
    int nLine;
    const wchar_t* pPattern;
    std::int64_t nStep;  // the result changes at its multiples
    int nBits;           // doubles of this length are too far apart to hold them
};

constexpr HugeRow kHugeRows[] = {
    {__LINE__, L"mmr", 30, 55},     // from 2^54 on four seconds lie between two doubles
    {__LINE__, L"hhr", 1800, 57},   // sixteen
    {__LINE__, L"hhc", 3600, 58},   // thirty-two
    {__LINE__, L"ddr", 43200, 60},  // 128
    {__LINE__, L"ddc", 86400, 61},  // 256
};

// A double is divided as the decimal that it reads as, which may reach a multiple where the double itself stays below.
TEST(DurationProperty, HugeDoublesRoundAsTheirShortestDecimals)
{
    std::mt19937_64 tRandom(20240308);
    for (const HugeRow& tRow : kHugeRows)
    {
        int nParted = 0;
        for (int n = 0; n < 500; ++n)
        {
            const std::int64_t nNear = static_cast<std::int64_t>(tRandom() >> (64 - tRow.nBits));
            const std::int64_t nMultiple = (nNear | std::int64_t{1} << (tRow.nBits - 1)) / tRow.nStep * tRow.nStep;
            const double fValue = static_cast<double>(nMultiple);
            ASSERT_EQ(format(tRow.pPattern, fValue), format(tRow.pPattern, CorvidNumber(fValue)))
                << "row at line " << tRow.nLine << " " << nMultiple;
            nParted += format(tRow.pPattern, fValue) != format(tRow.pPattern, CorvidNumber(static_cast<long>(fValue)));
        }
        EXPECT_GT(nParted, 0) << "row at line " << tRow.nLine;
    }
}

}  // namespace

}  // namespace tov
