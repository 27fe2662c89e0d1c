#pragma once

#include <cmath>
#include <cstdint>
#include <type_traits>

#include "corefacade/corvidnumber.h"
#include "webformat/durationpattern.h"

namespace tov {

// How the value types divide a number of seconds by the length of a unit.
//
//   floorQuotient            the quotient rounded down, exactly
//   remainder                what a quotient truncated toward zero leaves; it has the sign of the value
//   calculateWithRounding    the quotient of the smallest unit: up, to nearest (halves up), or with kFloor as it is
//                            (truncated for whole types)
//
// Decimal arithmetic says what the last one gives: a double counts as its shortest decimal, its quotient has 40
// significant digits; the quotient of a whole number is a double, which then counts as its shortest decimal. Where
// doubles and integers provably give the same, they are used.
template <class T>
struct DurationArithmetic;

// The quotient of decimals.
CorvidNumber roundedQuotient(const CorvidNumber& tSeconds, unsigned nLength, DurationFormatList::ERoundRule eRule);
CorvidNumber flooredQuotient(const CorvidNumber& tSeconds, unsigned nLength);

template <>
struct DurationArithmetic<double>
{
    using ERoundRule = DurationFormatList::ERoundRule;

    // Below this magnitude every whole number is a double, and quotients as well as remainders come out exact.
    static constexpr double kExact = 9007199254740992.0;

    static double floorQuotient(double fSeconds, unsigned nLength)
    {
        if (!std::isfinite(fSeconds))
            return fSeconds;
        const double fRemainder = remainder(fSeconds, nLength);
        const double fWhole = truncatedQuotient(fSeconds, fRemainder, nLength);
        return fRemainder < 0 ? fWhole - 1 : fWhole;
    }

    // Below kExact the whole part divides as an integer. What it leaves and the fraction make up a double again: it has
    // no digits behind those of the value.
    static double remainder(double fSeconds, unsigned nLength)
    {
        const double fMagnitude = std::fabs(fSeconds);
        if (!(fMagnitude < kExact))
            return std::fmod(fSeconds, nLength);
        const auto nWhole = static_cast<std::int64_t>(fMagnitude);
        const double fRest = static_cast<double>(nWhole % nLength) + (fMagnitude - static_cast<double>(nWhole));
        return std::copysign(fRest, fSeconds);
    }

    static double calculateWithRounding(double fSeconds, unsigned nLength, ERoundRule eRule)
    {
        if (!std::isfinite(fSeconds))
            return fSeconds;
        if (std::fabs(fSeconds) >= kExact || (eRule == DurationFormatList::kFloor && fSeconds != std::rint(fSeconds)))
            return roundedQuotient(CorvidNumber(fSeconds), nLength, eRule).asDouble();
        return eRule == DurationFormatList::kFloor ? fSeconds / nLength : roundExactly(fSeconds, nLength, eRule);
    }

private:
    // From kExact on the division is exact but for magnitudes far past the digits that are shown, where rounding mends
    // it.
    static double truncatedQuotient(double fSeconds, double fRemainder, unsigned nLength)
    {
        if (std::fabs(fSeconds) < kExact)
            return static_cast<double>(static_cast<std::int64_t>(fSeconds) / static_cast<std::int64_t>(nLength));
        return std::round((fSeconds - fRemainder) / nLength);
    }

    // The places where the result steps are whole numbers of seconds (unit lengths are even), which no shortest decimal
    // crosses, so that the remainder alone decides.
    static double roundExactly(double fSeconds, unsigned nLength, ERoundRule eRule)
    {
        const double fRemainder = remainder(fSeconds, nLength);
        const double fWhole = (fSeconds - fRemainder) / nLength;
        if (eRule == DurationFormatList::kCeil)
            return fRemainder > 0 ? fWhole + 1 : fWhole;
        const double fHalf = nLength / 2;
        if (fRemainder >= fHalf)
            return fWhole + 1;
        return fRemainder < -fHalf ? fWhole - 1 : fWhole;
    }
};

template <>
struct DurationArithmetic<CorvidNumber>
{
    static CorvidNumber floorQuotient(const CorvidNumber& tSeconds, unsigned nLength)
    {
        return flooredQuotient(tSeconds, nLength);
    }

    static CorvidNumber remainder(const CorvidNumber& tSeconds, unsigned nLength)
    {
        return math::modulus(tSeconds, CorvidNumber(nLength));
    }

    static CorvidNumber calculateWithRounding(const CorvidNumber& tSeconds, unsigned nLength,
                                              DurationFormatList::ERoundRule eRule)
    {
        return roundedQuotient(tSeconds, nLength, eRule);
    }
};

// The four whole types.
template <class T>
struct DurationArithmetic
{
    static_assert(std::is_integral_v<T>);

    static T floorQuotient(T nSeconds, unsigned nLength)
    {
        const T nQuotient = nSeconds / static_cast<T>(nLength);
        if constexpr (std::is_signed_v<T>)
            return remainder(nSeconds, nLength) < 0 ? nQuotient - 1 : nQuotient;
        else
            return nQuotient;
    }

    static T remainder(T nSeconds, unsigned nLength) { return nSeconds % static_cast<T>(nLength); }

    // Halves and whole numbers are their own shortest decimals up to 2^53, and past that doubles are whole numbers: the
    // rounding of the decimal is that of the double. Lengths from 60 on keep the result in the type's range.
    static T calculateWithRounding(T nSeconds, unsigned nLength, DurationFormatList::ERoundRule eRule)
    {
        const double fQuotient = static_cast<double>(nSeconds) / nLength;
        if (eRule == DurationFormatList::kCeil)
            return static_cast<T>(std::ceil(fQuotient));
        if (eRule == DurationFormatList::kRound)
        {
            const double fBelow = std::floor(fQuotient);
            return static_cast<T>(fQuotient - fBelow >= 0.5 ? fBelow + 1 : fBelow);
        }
        return static_cast<T>(fQuotient);
    }
};

}  // namespace tov
