#pragma once

#include <array>
#include <atomic>
#include <cmath>
#include <cstdint>
#include <limits>
#include <type_traits>

#include "corefacade/corvidnumber.h"
#include "corefacade/fastdecimal.h"
#include "corefacade/floatingpointutils.h"
#include "corefacade/sqldatatype.h"
#include "webbedrock/stringbuffer.h"
#include "webformat/numericpattern.h"

namespace tov {

// What the numeric value types do not share: signs, special values, magnitudes and digits. Everything else about
// a number is written once.
//
//   kStorage                     the storage type of the values
//   isNaN, isInfinite, isNegative  of any value; minus zero is not negative
//   parts                        the magnitude rounded to at most 9 places, quickly; false: ask `digits`
//   digits                       the digit string of magnitude x 10^power; returns the place of the point
//   digitsAfterModuli            the same of the value that the modulus steps give
//   reachesPower10               whether the magnitude is at least 10^power
//   asDouble                     the nearest double
//   quotient                     value x numerator / denominator: exact for decimals, in double elsewhere
//   durationOf                   floor(numerator x magnitude) / denominator in the value type
//   precision                    the most fraction digits that a default formatter shows, given those of the predefined
//                                definition and the configured significant digits
template <class T>
struct NumericInfo;

// The decimal arithmetic behind "[%N]" for whole and decimal numbers.
CorvidNumber accumulateModuli(const CorvidNumber& tMagnitude, std::uint32_t nFractionDigits,
                              const std::vector<NumericPattern::Modulus>& vMods);
double accumulateModuli(double fMagnitude, std::uint32_t nFractionDigits,
                        const std::vector<NumericPattern::Modulus>& vMods);

// The digits of a decimal's magnitude x 10^nPower10.
int decimalDigits(StringBufferBaseTemplate<char>& tDigits, const CorvidNumber& tValue, std::uint32_t nFractionDigits,
                  int nPower10);

// 10^nPower; past the range of double infinite or zero.
double powerOfTen(int nPower);

template <>
struct NumericInfo<double>
{
    static constexpr SQLDataType::StorageType kStorage = SQLDataType::kStorageDouble;

    static bool isNaN(double fValue) { return std::isnan(fValue); }
    static bool isInfinite(double fValue) { return std::isinf(fValue); }
    static bool isNegative(double fValue) { return fValue < 0; }

    static bool parts(double fValue, unsigned nPlaces, const std::atomic<int>& nMaxSignificantDigits,
                      DecimalParts& tParts)
    {
        if (nMaxSignificantDigits.load(std::memory_order_relaxed) != kFastSignificantDigits)
            return false;
        const double fMagnitude = std::fabs(fValue);
        return roundToParts(fMagnitude, nPlaces, tParts) || roundLongToParts(fMagnitude, nPlaces, tParts);
    }

    static int digits(StringBufferBaseTemplate<char>& tDigits, double fValue, std::uint32_t nFractionDigits,
                      int nPower10, int nMaxSignificantDigits)
    {
        return FloatingPointUtils::getDoubleDigitsWithMaxSignficantDigits(tDigits, fValue, nFractionDigits, nPower10,
                                                                          nMaxSignificantDigits);
    }

    static int digitsAfterModuli(StringBufferBaseTemplate<char>& tDigits, double fValue,
                                 const std::vector<NumericPattern::Modulus>& vMods, std::uint32_t nFractionDigits,
                                 int nPower10, int nMaxSignificantDigits)
    {
        return digits(tDigits, accumulateModuli(std::fabs(fValue), nFractionDigits, vMods), nFractionDigits, nPower10,
                      nMaxSignificantDigits);
    }

    static bool reachesPower10(double fValue, int nPower) { return std::fabs(fValue) >= powerOfTen(nPower); }
    static double asDouble(double fValue) { return fValue; }

    static double quotient(double fValue, std::uint64_t nNumerator, std::uint64_t nDenominator)
    {
        return fValue * static_cast<double>(nNumerator) / static_cast<double>(nDenominator);
    }

    static double durationOf(double fValue, std::uint64_t nNumerator, std::uint64_t nDenominator)
    {
        return std::floor(static_cast<double>(nNumerator) * std::fabs(fValue)) / static_cast<double>(nDenominator);
    }

    static unsigned precision(unsigned nDigits, unsigned nCap) { return nDigits < nCap ? nDigits : nCap; }
};

template <>
struct NumericInfo<CorvidNumber>
{
    static constexpr SQLDataType::StorageType kStorage = SQLDataType::kStorageCorvidNumber;

    static bool isNaN(const CorvidNumber&) { return false; }
    static bool isInfinite(const CorvidNumber& tValue) { return tValue.isInfinite(); }
    static bool isNegative(const CorvidNumber& tValue) { return tValue.isNegative(); }

    static bool parts(const CorvidNumber&, unsigned, const std::atomic<int>&, DecimalParts&) { return false; }

    static int digits(StringBufferBaseTemplate<char>& tDigits, const CorvidNumber& tValue,
                      std::uint32_t nFractionDigits, int nPower10, int)
    {
        return decimalDigits(tDigits, tValue, nFractionDigits, nPower10);
    }

    static int digitsAfterModuli(StringBufferBaseTemplate<char>& tDigits, const CorvidNumber& tValue,
                                 const std::vector<NumericPattern::Modulus>& vMods, std::uint32_t nFractionDigits,
                                 int nPower10, int)
    {
        return decimalDigits(tDigits, accumulateModuli(math::absolute(tValue), nFractionDigits, vMods), nFractionDigits,
                             nPower10);
    }

    static bool reachesPower10(const CorvidNumber& tValue, int nPower)
    {
        return compareMagnitudeToPower10(tValue, nPower) >= 0;
    }

    static double asDouble(const CorvidNumber& tValue) { return tValue.asDouble(); }

    static CorvidNumber quotient(const CorvidNumber& tValue, std::uint64_t nNumerator, std::uint64_t nDenominator)
    {
        return tValue * CorvidNumber(nNumerator) / CorvidNumber(nDenominator);
    }

    static CorvidNumber durationOf(const CorvidNumber& tValue, std::uint64_t nNumerator, std::uint64_t nDenominator)
    {
        return math::floor(CorvidNumber(nNumerator) * math::absolute(tValue)) / CorvidNumber(nDenominator);
    }

    static unsigned precision(unsigned, unsigned) { return 38; }
};

// The four whole types. Their digits are exact, whatever the configured number of significant digits.
template <class T>
struct WholeNumericInfo
{
    static bool isNaN(T) { return false; }
    static bool isInfinite(T) { return false; }

    static bool isNegative([[maybe_unused]] T nValue)
    {
        if constexpr (std::is_signed_v<T>)
            return nValue < 0;
        else
            return false;
    }

    // The magnitude of the smallest value has no place in the type itself.
    static std::uint64_t magnitude(T nValue)
    {
        const std::uint64_t nBits = static_cast<std::uint64_t>(nValue);
        return isNegative(nValue) ? 0 - nBits : nBits;
    }

    static bool parts(T nValue, unsigned, const std::atomic<int>&, DecimalParts& tParts)
    {
        tParts.nWhole = static_cast<std::int64_t>(magnitude(nValue));
        return true;
    }

    static int digits(StringBufferBaseTemplate<char>& tDigits, T nValue, std::uint32_t nFractionDigits, int nPower10,
                      int)
    {
        return FloatingPointUtils::getIntegerDigits(tDigits, magnitude(nValue), nFractionDigits, nPower10);
    }

    static int digitsAfterModuli(StringBufferBaseTemplate<char>& tDigits, T nValue,
                                 const std::vector<NumericPattern::Modulus>& vMods, std::uint32_t nFractionDigits,
                                 int nPower10, int)
    {
        return decimalDigits(tDigits, accumulateModuli(CorvidNumber(magnitude(nValue)), nFractionDigits, vMods),
                             nFractionDigits, nPower10);
    }

    static bool reachesPower10(T nValue, int nPower)
    {
        return compareMagnitudeToPower10(CorvidNumber(magnitude(nValue)), nPower) >= 0;
    }

    static double asDouble(T nValue) { return static_cast<double>(nValue); }

    static double quotient(T nValue, std::uint64_t nNumerator, std::uint64_t nDenominator)
    {
        return NumericInfo<double>::quotient(asDouble(nValue), nNumerator, nDenominator);
    }

    // A duration past the type's range is as long as the type can say.
    static T durationOf(T nValue, std::uint64_t nNumerator, std::uint64_t nDenominator)
    {
        const double fDuration = NumericInfo<double>::durationOf(asDouble(nValue), nNumerator, nDenominator);
        return fDuration >= static_cast<double>(std::numeric_limits<T>::max()) ? std::numeric_limits<T>::max()
                                                                               : static_cast<T>(fDuration);
    }

    static unsigned precision(unsigned, unsigned) { return 0; }
};

template <>
struct NumericInfo<int> : WholeNumericInfo<int>
{
    static constexpr SQLDataType::StorageType kStorage = SQLDataType::kStorageInt32;
};

template <>
struct NumericInfo<unsigned int> : WholeNumericInfo<unsigned int>
{
    static constexpr SQLDataType::StorageType kStorage = SQLDataType::kStorageUInt32;
};

template <>
struct NumericInfo<long> : WholeNumericInfo<long>
{
    static constexpr SQLDataType::StorageType kStorage = SQLDataType::kStorageInt64;
};

template <>
struct NumericInfo<unsigned long> : WholeNumericInfo<unsigned long>
{
    static constexpr SQLDataType::StorageType kStorage = SQLDataType::kStorageUInt64;
};

}  // namespace tov
