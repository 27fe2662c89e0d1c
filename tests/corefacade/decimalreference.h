#pragma once

// How decimals and doubles are to be rounded, worked out with whole numbers of any length: the oracle of the tests.

#include <boost/multiprecision/cpp_int.hpp>
#include <cmath>
#include <string>

namespace tov::reference {

using Integer = boost::multiprecision::cpp_int;

inline Integer powerOf10(unsigned nPower)
{
    return boost::multiprecision::pow(Integer(10), nPower);
}

// A magnitude as the quotient of two whole numbers.
struct Fraction
{
    Integer m_tNumerator;
    Integer m_tDenominator = 1;

    void shift(int nPower10)
    {
        (nPower10 < 0 ? m_tDenominator : m_tNumerator) *= powerOf10(static_cast<unsigned>(std::abs(nPower10)));
    }
};

inline Fraction exactly(double fMagnitude)
{
    int nExponent = 0;
    const double fMantissa = std::frexp(fMagnitude, &nExponent);
    Fraction tResult{Integer(static_cast<std::int64_t>(std::ldexp(fMantissa, 53)))};
    nExponent -= 53;
    (nExponent < 0 ? tResult.m_tDenominator : tResult.m_tNumerator) <<= std::abs(nExponent);
    return tResult;
}

enum class Ties
{
    kEven,
    kAway
};

inline Integer roundToWhole(const Fraction& tValue, Ties eTies)
{
    Integer tQuotient = tValue.m_tNumerator / tValue.m_tDenominator;
    const Integer tTwice = (tValue.m_tNumerator % tValue.m_tDenominator) * 2;
    const bool bTie = tTwice == tValue.m_tDenominator;
    if (tTwice > tValue.m_tDenominator || (bTie && (eTies == Ties::kAway || tQuotient % 2 != 0)))
        ++tQuotient;
    return tQuotient;
}

// To nearest, ties to even.
inline Fraction roundToSignificant(const Fraction& tValue, int nDigits)
{
    if (tValue.m_tNumerator == 0)
        return tValue;
    const auto digits = [](const Integer& tInteger) { return static_cast<int>(tInteger.str().size()); };
    for (int nShift = nDigits - 1 - digits(tValue.m_tNumerator) + digits(tValue.m_tDenominator);; ++nShift)
    {
        Fraction tScaled = tValue;
        tScaled.shift(nShift);
        const Integer tWhole = tScaled.m_tNumerator / tScaled.m_tDenominator;
        if (tWhole < powerOf10(static_cast<unsigned>(nDigits - 1)))
            continue;
        Fraction tResult{roundToWhole(tScaled, Ties::kEven)};
        tResult.shift(-nShift);
        return tResult;
    }
}

struct Digits
{
    std::string m_sDigits;
    int m_nPoint = 0;

    friend bool operator==(const Digits&, const Digits&) = default;
    friend std::ostream& operator<<(std::ostream& tStream, const Digits& tDigits)
    {
        return tStream << tDigits.m_sDigits << " point " << tDigits.m_nPoint;
    }
};

// Rounded to places after the point, halves away from zero; every place, no zeros before the point.
inline Digits place(Fraction tValue, unsigned nPlaces)
{
    tValue.shift(static_cast<int>(nPlaces));
    const Integer tUnits = roundToWhole(tValue, Ties::kAway);
    std::string sDigits = tUnits == 0 ? std::string() : tUnits.str();
    if (sDigits.size() < nPlaces)
        sDigits.insert(0, nPlaces - sDigits.size(), '0');
    return {sDigits, static_cast<int>(sDigits.size() - nPlaces)};
}

}  // namespace tov::reference
