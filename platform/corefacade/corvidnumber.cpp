#include "corefacade/corvidnumber.h"

#include <algorithm>
#include <bit>
#include <boost/multiprecision/cpp_int.hpp>
#include <cmath>
#include <new>
#include <type_traits>
#include <utility>

#include "corefacade/corvidnumberaccess.h"
#include "corefacade/decimaldigits.h"
#include "corefacade/decimaltext.h"

namespace tov {

namespace {

namespace mp = boost::multiprecision;

// 256 bits inline, the heap behind them.
using Coefficient = mp::number<mp::cpp_int_backend<256, 0, mp::signed_magnitude, mp::unchecked>, mp::et_off>;

static_assert(std::is_same_v<mp::limb_type, unsigned long long>, "limbs are read as 64-bit words");

// The power of ten of a number's first digit is within +-kMaxMagnitude.
constexpr int kMaxMagnitude = 6144;
constexpr int kQuotientDigits = 40;

// Powers of ten below this one, and their inverses, are normal doubles.
constexpr int kDoublePowers = 300;

// Coefficients up to this size with exponents from -kMaxMagnitude to kSafeExponent are within all bounds.
constexpr unsigned kSafeBits = 256;
constexpr int kSafeExponent = kMaxMagnitude - 100;

struct State
{
    Coefficient m_tCoefficient;  // of an infinite number 1 or -1
    int m_nExponent = 0;         // of zero and infinite numbers 0
    bool m_bInfinite = false;
};

static_assert(sizeof(State) <= CorvidNumberAccess::kStorageBytes);
static_assert(alignof(State) <= CorvidNumberAccess::kStorageAlignment);

State& stateOf(CorvidNumber& tNumber)
{
    return *std::launder(static_cast<State*>(CorvidNumberAccess::storage(tNumber)));
}

const State& stateOf(const CorvidNumber& tNumber)
{
    return *std::launder(static_cast<const State*>(CorvidNumberAccess::storage(tNumber)));
}

template <class... Args>
void construct(CorvidNumber& tNumber, Args&&... tArgs)
{
    ::new (CorvidNumberAccess::storage(tNumber)) State{std::forward<Args>(tArgs)...};
}

CorvidNumber make(State&& tState)
{
    CorvidNumber tNumber;
    stateOf(tNumber) = std::move(tState);
    return tNumber;
}

int signOf(const State& tState)
{
    return tState.m_tCoefficient.sign();
}

Coefficient magnitudeOf(const Coefficient& tCoefficient)
{
    return mp::abs(tCoefficient);
}

Coefficient coefficientOf(UInt128 nValue)
{
    Coefficient tCoefficient(static_cast<std::uint64_t>(nValue >> 64));
    tCoefficient <<= 64;
    tCoefficient |= static_cast<std::uint64_t>(nValue);
    return tCoefficient;
}

bool fits128(const Coefficient& tCoefficient)
{
    return tCoefficient.backend().size() <= 2;
}

// The magnitude of a coefficient that fits128.
UInt128 magnitude128(const Coefficient& tCoefficient)
{
    const auto& tBackend = tCoefficient.backend();
    const UInt128 nHigh = tBackend.size() == 2 ? tBackend.limbs()[1] : 0;
    return nHigh << 64 | tBackend.limbs()[0];
}

Coefficient powerOf10(unsigned nPower)
{
    constexpr unsigned kLargest = kMaxDigits128 - 1;
    if (nPower <= kLargest)
        return coefficientOf(kPowersOf10[nPower]);
    // Held without the heap, as the squares on the way of mp::pow are not.
    if (nPower <= 2 * kLargest)
        return coefficientOf(kPowersOf10[kLargest]) * coefficientOf(kPowersOf10[nPower - kLargest]);
    return mp::pow(Coefficient(10), nPower);
}

unsigned bitsOf(const Coefficient& tCoefficient)
{
    const auto& tBackend = tCoefficient.backend();
    const std::uint64_t nTop = tBackend.limbs()[tBackend.size() - 1];
    return (tBackend.size() - 1) * 64 + static_cast<unsigned>(std::bit_width(nTop));
}

// The number of decimal digits; 0 has none.
int digitsOf(const Coefficient& tCoefficient)
{
    if (fits128(tCoefficient))
        return static_cast<int>(countDigits(magnitude128(tCoefficient)));
    // 1,292,913,986 / 2^32 is a little below log10(2): never too many digits, and the loop finds those that are
    // missing.
    unsigned nDigits = static_cast<unsigned>((bitsOf(tCoefficient) - 1) * 1'292'913'986ULL >> 32) + 1;
    const Coefficient tMagnitude = magnitudeOf(tCoefficient);
    for (Coefficient tPower = powerOf10(nDigits); tMagnitude >= tPower; tPower *= 10)
        ++nDigits;
    return static_cast<int>(nDigits);
}

// The power of ten of the first digit; not for zero and infinite numbers.
int leadOf(const State& tState)
{
    return digitsOf(tState.m_tCoefficient) + tState.m_nExponent - 1;
}

State infiniteState(bool bNegative)
{
    return {Coefficient(bNegative ? -1 : 1), 0, true};
}

// Drops the last `nDropped` digits; the exponent stays as it is.
struct Split
{
    Coefficient m_tQuotient;   // of the magnitudes
    Coefficient m_tRemainder;  // of the magnitudes
    Coefficient m_tDivisor;
};

Split splitAt(const Coefficient& tCoefficient, unsigned nDropped)
{
    Split tSplit{Coefficient(), Coefficient(), powerOf10(nDropped)};
    mp::divide_qr(magnitudeOf(tCoefficient), tSplit.m_tDivisor, tSplit.m_tQuotient, tSplit.m_tRemainder);
    return tSplit;
}

void roundHalfEven(Split& tSplit)
{
    tSplit.m_tRemainder *= 2;
    const int nOrder = tSplit.m_tRemainder.compare(tSplit.m_tDivisor);
    if (nOrder > 0 || (nOrder == 0 && mp::bit_test(tSplit.m_tQuotient, 0)))
        ++tSplit.m_tQuotient;
}

Coefficient withSign(Coefficient tMagnitude, bool bNegative)
{
    if (bNegative)
        tMagnitude.backend().negate();
    return tMagnitude;
}

void stripTrailingZeros(State& tState)
{
    Coefficient tQuotient;
    Coefficient tRemainder;
    for (;;)
    {
        mp::divide_qr(tState.m_tCoefficient, Coefficient(10), tQuotient, tRemainder);
        if (!tRemainder.is_zero() || tQuotient.is_zero())
            return;
        tState.m_tCoefficient.swap(tQuotient);
        ++tState.m_nExponent;
    }
}

void roundToMaxDigits(State& tState)
{
    const int nDropped = digitsOf(tState.m_tCoefficient) - static_cast<int>(kMaxCoefficientDigits);
    if (nDropped <= 0)
        return;
    Split tSplit = splitAt(tState.m_tCoefficient, static_cast<unsigned>(nDropped));
    roundHalfEven(tSplit);
    tState.m_tCoefficient = withSign(std::move(tSplit.m_tQuotient), signOf(tState) < 0);
    tState.m_nExponent += nDropped;
    if (digitsOf(tState.m_tCoefficient) > static_cast<int>(kMaxCoefficientDigits))
        stripTrailingZeros(tState);
}

// The number within the bounds that the header promises.
CorvidNumber bounded(State&& tState)
{
    if (tState.m_tCoefficient.is_zero())
        return CorvidNumber();
    if (bitsOf(tState.m_tCoefficient) > kSafeBits || tState.m_nExponent < -kMaxMagnitude ||
        tState.m_nExponent > kSafeExponent)
    {
        roundToMaxDigits(tState);
        const int nLead = leadOf(tState);
        if (nLead > kMaxMagnitude)
            return CorvidNumber::infinity(signOf(tState) < 0);
        if (nLead < -kMaxMagnitude)
            return CorvidNumber();
    }
    return make(std::move(tState));
}

Coefficient coefficientOfDigits(std::string_view sDigits)
{
    constexpr std::size_t kChunk = 19;
    Coefficient tResult;
    while (!sDigits.empty())
    {
        const std::size_t nTake = sDigits.size() % kChunk == 0 ? kChunk : sDigits.size() % kChunk;
        std::uint64_t nChunk = 0;
        for (const char tDigit : sDigits.substr(0, nTake))
            nChunk = nChunk * 10 + static_cast<unsigned>(tDigit - '0');
        tResult *= kTenTo19;
        tResult += nChunk;
        sDigits.remove_prefix(nTake);
    }
    return tResult;
}

// Both coefficients at the smaller of the two exponents.
struct Aligned
{
    Coefficient m_tLeft;
    Coefficient m_tRight;
    int m_nExponent;
};

Aligned align(const State& tLeft, const State& tRight)
{
    Aligned tResult{tLeft.m_tCoefficient, tRight.m_tCoefficient, std::min(tLeft.m_nExponent, tRight.m_nExponent)};
    if (tLeft.m_nExponent > tRight.m_nExponent)
        tResult.m_tLeft *= powerOf10(static_cast<unsigned>(tLeft.m_nExponent - tRight.m_nExponent));
    else if (tRight.m_nExponent > tLeft.m_nExponent)
        tResult.m_tRight *= powerOf10(static_cast<unsigned>(tRight.m_nExponent - tLeft.m_nExponent));
    return tResult;
}

CorvidNumber withSign(const CorvidNumber& tNumber, bool bNegative)
{
    State tState = stateOf(tNumber);
    if (bNegative != (signOf(tState) < 0))
        tState.m_tCoefficient.backend().negate();
    return make(std::move(tState));
}

CorvidNumber sum(const CorvidNumber& tLeft, const CorvidNumber& tRight, bool bSubtract)
{
    const State& tFirst = stateOf(tLeft);
    const State& tSecond = stateOf(tRight);
    const bool bSecondNegative = (signOf(tSecond) < 0) != bSubtract;
    if (tFirst.m_bInfinite && tSecond.m_bInfinite && (signOf(tFirst) < 0) != bSecondNegative)
        return CorvidNumber();
    if (tFirst.m_bInfinite || tRight.isZero())
        return tLeft;
    if (tSecond.m_bInfinite || tLeft.isZero())
        return withSign(tRight, bSecondNegative);
    Aligned tAligned = align(tFirst, tSecond);
    if (bSubtract)
        tAligned.m_tLeft -= tAligned.m_tRight;
    else
        tAligned.m_tLeft += tAligned.m_tRight;
    return bounded({std::move(tAligned.m_tLeft), tAligned.m_nExponent, false});
}

// Of two finite numbers with the same sign, which is not zero.
int compareMagnitudes(const State& tLeft, const State& tRight)
{
    const int nLeads = leadOf(tLeft) - leadOf(tRight);
    if (nLeads != 0)
        return nLeads;
    const Aligned tAligned = align(tLeft, tRight);
    return magnitudeOf(tAligned.m_tLeft).compare(magnitudeOf(tAligned.m_tRight));
}

int compareStates(const State& tLeft, const State& tRight)
{
    const int nSign = signOf(tLeft);
    if (nSign != signOf(tRight) || nSign == 0)
        return nSign - signOf(tRight);
    if (tLeft.m_bInfinite || tRight.m_bInfinite)
        return (tLeft.m_bInfinite - tRight.m_bInfinite) * nSign;
    if (tLeft.m_nExponent == tRight.m_nExponent)
        return tLeft.m_tCoefficient.compare(tRight.m_tCoefficient);
    return compareMagnitudes(tLeft, tRight) * nSign;
}

// The quotient of the magnitudes to 40 significant digits, halves to even; neither is zero or infinite.
State divideMagnitudes(const State& tLeft, const State& tRight)
{
    // So many digits shifted that the quotient has 39 or 40 of them.
    const int nShift = kQuotientDigits - 1 + digitsOf(tRight.m_tCoefficient) - digitsOf(tLeft.m_tCoefficient);
    State tResult{Coefficient(), tLeft.m_nExponent - tRight.m_nExponent - nShift, false};
    Coefficient tNumerator = magnitudeOf(tLeft.m_tCoefficient);
    Split tSplit{Coefficient(), Coefficient(), magnitudeOf(tRight.m_tCoefficient)};
    if (nShift > 0)
        tNumerator *= powerOf10(static_cast<unsigned>(nShift));
    else
        tSplit.m_tDivisor *= powerOf10(static_cast<unsigned>(-nShift));
    mp::divide_qr(tNumerator, tSplit.m_tDivisor, tSplit.m_tQuotient, tSplit.m_tRemainder);
    if (digitsOf(tSplit.m_tQuotient) < kQuotientDigits)
    {
        tNumerator *= 10;
        --tResult.m_nExponent;
        mp::divide_qr(tNumerator, tSplit.m_tDivisor, tSplit.m_tQuotient, tSplit.m_tRemainder);
    }
    roundHalfEven(tSplit);
    tResult.m_tCoefficient = std::move(tSplit.m_tQuotient);
    stripTrailingZeros(tResult);
    return tResult;
}

// The whole part of the magnitude with the sign of the number, and whether a fraction was cut off.
std::pair<Coefficient, bool> truncate(const State& tState)
{
    if (tState.m_tCoefficient.is_zero() || leadOf(tState) < 0)
        return {Coefficient(), !tState.m_tCoefficient.is_zero()};
    Split tSplit = splitAt(tState.m_tCoefficient, static_cast<unsigned>(-tState.m_nExponent));
    return {withSign(std::move(tSplit.m_tQuotient), signOf(tState) < 0), !tSplit.m_tRemainder.is_zero()};
}

}  // namespace

CorvidNumber::CorvidNumber() noexcept
{
    construct(*this);
}
CorvidNumber::CorvidNumber(int nValue) noexcept
{
    construct(*this, Coefficient(nValue));
}
CorvidNumber::CorvidNumber(unsigned nValue) noexcept
{
    construct(*this, Coefficient(nValue));
}
CorvidNumber::CorvidNumber(long nValue) noexcept
{
    construct(*this, Coefficient(nValue));
}
CorvidNumber::CorvidNumber(unsigned long nValue) noexcept
{
    construct(*this, Coefficient(nValue));
}

CorvidNumber::CorvidNumber(const CorvidNumber& tOther)
{
    construct(*this, stateOf(tOther));
}

CorvidNumber::CorvidNumber(CorvidNumber&& tOther) noexcept : CorvidNumber()
{
    swap(tOther);
}

CorvidNumber& CorvidNumber::operator=(const CorvidNumber& tOther)
{
    CorvidNumber tCopy(tOther);
    swap(tCopy);
    return *this;
}

CorvidNumber& CorvidNumber::operator=(CorvidNumber&& tOther) noexcept
{
    CorvidNumber tTaken(std::move(tOther));
    swap(tTaken);
    return *this;
}

CorvidNumber::~CorvidNumber()
{
    stateOf(*this).~State();
}

CorvidNumber CorvidNumber::infinity(bool bNegative) noexcept
{
    return make(infiniteState(bNegative));
}

bool CorvidNumber::isInfinite() const noexcept
{
    return stateOf(*this).m_bInfinite;
}
bool CorvidNumber::isNegative() const noexcept
{
    return signOf(stateOf(*this)) < 0;
}
bool CorvidNumber::isZero() const noexcept
{
    return signOf(stateOf(*this)) == 0;
}

CorvidNumber& CorvidNumber::operator+=(const CorvidNumber& tOther)
{
    return *this = *this + tOther;
}
CorvidNumber& CorvidNumber::operator-=(const CorvidNumber& tOther)
{
    return *this = *this - tOther;
}

void CorvidNumber::swap(CorvidNumber& tOther) noexcept
{
    std::swap(stateOf(*this), stateOf(tOther));
}

CorvidNumber operator+(const CorvidNumber& tLeft, const CorvidNumber& tRight)
{
    return sum(tLeft, tRight, false);
}
CorvidNumber operator-(const CorvidNumber& tLeft, const CorvidNumber& tRight)
{
    return sum(tLeft, tRight, true);
}

CorvidNumber operator*(const CorvidNumber& tLeft, const CorvidNumber& tRight)
{
    const State& tFirst = stateOf(tLeft);
    const State& tSecond = stateOf(tRight);
    if (tLeft.isZero() || tRight.isZero())
        return CorvidNumber();
    if (tFirst.m_bInfinite || tSecond.m_bInfinite)
        return CorvidNumber::infinity(tLeft.isNegative() != tRight.isNegative());
    return bounded({tFirst.m_tCoefficient * tSecond.m_tCoefficient, tFirst.m_nExponent + tSecond.m_nExponent, false});
}

CorvidNumber operator/(const CorvidNumber& tLeft, const CorvidNumber& tRight)
{
    if (tLeft.isZero() || tRight.isInfinite())
        return CorvidNumber();
    const bool bNegative = tLeft.isNegative() != tRight.isNegative();
    if (tLeft.isInfinite() || tRight.isZero())
        return CorvidNumber::infinity(bNegative);
    State tQuotient = divideMagnitudes(stateOf(tLeft), stateOf(tRight));
    tQuotient.m_tCoefficient = withSign(std::move(tQuotient.m_tCoefficient), bNegative);
    return bounded(std::move(tQuotient));
}

std::strong_ordering operator<=>(const CorvidNumber& tLeft, const CorvidNumber& tRight)
{
    return compareStates(stateOf(tLeft), stateOf(tRight)) <=> 0;
}

bool operator==(const CorvidNumber& tLeft, const CorvidNumber& tRight)
{
    return compareStates(stateOf(tLeft), stateOf(tRight)) == 0;
}

int compareMagnitudeToPower10(const CorvidNumber& tValue, int nPower)
{
    const State& tState = stateOf(tValue);
    if (tValue.isZero() || tState.m_bInfinite)
        return tState.m_bInfinite ? 1 : -1;
    const Coefficient& tCoefficient = tState.m_tCoefficient;
    const int nDigits = digitsOf(tCoefficient);
    const std::int64_t nLead = std::int64_t{nDigits} + tState.m_nExponent - 1;
    if (nLead != nPower)
        return nLead < nPower ? -1 : 1;
    const bool bPower = fits128(tCoefficient) ? magnitude128(tCoefficient) == kPowersOf10[nDigits - 1]
                                              : magnitudeOf(tCoefficient) == powerOf10(nDigits - 1);
    return bPower ? 0 : 1;
}

CorvidNumber CorvidNumberAccess::fromDigits(std::string_view sDigits, std::int64_t nExponent, bool bNegative)
{
    const std::int64_t nLead = static_cast<std::int64_t>(sDigits.size()) + nExponent - 1;
    // One below the last power that counts: rounding to the longest coefficient may still reach it.
    if (sDigits.empty() || nLead < -kMaxMagnitude - 1)
        return CorvidNumber();
    if (nLead > kMaxMagnitude)
        return CorvidNumber::infinity(bNegative);
    return bounded({withSign(coefficientOfDigits(sDigits), bNegative), static_cast<int>(nExponent), false});
}

CorvidNumberAccess::Shape CorvidNumberAccess::appendDigits(const CorvidNumber& tNumber,
                                                           StringBufferBaseTemplate<char>& tDigits)
{
    const State& tState = stateOf(tNumber);
    const auto& tBackend = tState.m_tCoefficient.backend();
    if (!tState.m_bInfinite)
        tov::appendDigits(tDigits, tBackend.limbs(), tBackend.size());
    return {tState.m_nExponent, tBackend.sign(), tState.m_bInfinite};
}

namespace math {

CorvidNumber absolute(const CorvidNumber& tValue)
{
    return withSign(tValue, false);
}

CorvidNumber logbase10(const CorvidNumber& tValue)
{
    if (tValue.isZero() || tValue.isInfinite())
        return CorvidNumber::infinity(tValue.isZero());
    const int nLead = leadOf(stateOf(tValue));
    if (compareMagnitudeToPower10(tValue, nLead) == 0)
        return CorvidNumber(nLead);
    // Near 1 the logarithm is small and the digits that make it are far behind the point: take the 1 off exactly.
    const CorvidNumber tAboveOne = absolute(tValue) - CorvidNumber(1);
    if (compareMagnitudeToPower10(tAboveOne, -1) < 0)
        return CorvidNumber(std::log1p(tAboveOne.asDouble()) / std::log(10.0));
    const int nOutside = nLead > -kDoublePowers && nLead < kDoublePowers ? 0 : nLead;
    return CorvidNumber(std::log10(absolute(shiftPower10(tValue, -nOutside)).asDouble()) + nOutside);
}

CorvidNumber floor(const CorvidNumber& tValue)
{
    const State& tState = stateOf(tValue);
    if (tState.m_nExponent >= 0)
        return tValue;
    auto [tWhole, bCut] = truncate(tState);
    if (bCut && tValue.isNegative())
        --tWhole;
    return bounded({std::move(tWhole), 0, false});
}

CorvidNumber ceiling(const CorvidNumber& tValue)
{
    const State& tState = stateOf(tValue);
    if (tState.m_nExponent >= 0)
        return tValue;
    auto [tWhole, bCut] = truncate(tState);
    if (bCut && !tValue.isNegative())
        ++tWhole;
    return bounded({std::move(tWhole), 0, false});
}

CorvidNumber round(const CorvidNumber& tValue, int nPlaces)
{
    const State& tState = stateOf(tValue);
    const std::int64_t nDropped = -(std::int64_t{tState.m_nExponent} + nPlaces);
    if (nDropped <= 0 || tValue.isZero() || tState.m_bInfinite)
        return tValue;
    if (nDropped > digitsOf(tState.m_tCoefficient))
        return CorvidNumber();
    Split tSplit = splitAt(tState.m_tCoefficient, static_cast<unsigned>(nDropped));
    tSplit.m_tRemainder *= 2;
    if (tSplit.m_tRemainder >= tSplit.m_tDivisor)
        ++tSplit.m_tQuotient;
    return bounded({withSign(std::move(tSplit.m_tQuotient), tValue.isNegative()),
                    tState.m_nExponent + static_cast<int>(nDropped), false});
}

CorvidNumber shiftPower10(const CorvidNumber& tValue, int nPower)
{
    const State& tState = stateOf(tValue);
    if (tValue.isZero() || tState.m_bInfinite)
        return tValue;
    const std::int64_t nLead = std::int64_t{leadOf(tState)} + nPower;
    if (nLead > kMaxMagnitude)
        return CorvidNumber::infinity(tValue.isNegative());
    if (nLead < -kMaxMagnitude)
        return CorvidNumber();
    return make({tState.m_tCoefficient, tState.m_nExponent + nPower, false});
}

CorvidNumber wholeQuotient(const CorvidNumber& tValue, const CorvidNumber& tDivisor)
{
    if (tDivisor.isZero() || tDivisor.isInfinite() || tValue.isInfinite())
        return tValue / tDivisor;
    Aligned tAligned = align(stateOf(tValue), stateOf(tDivisor));
    tAligned.m_tLeft /= tAligned.m_tRight;
    return bounded({std::move(tAligned.m_tLeft), 0, false});
}

CorvidNumber modulus(const CorvidNumber& tValue, const CorvidNumber& tDivisor)
{
    if (tDivisor.isZero() || tValue.isInfinite())
        return CorvidNumber();
    if (tDivisor.isInfinite() || tValue.isZero())
        return tValue;
    Aligned tAligned = align(stateOf(tValue), stateOf(tDivisor));
    tAligned.m_tLeft %= tAligned.m_tRight;
    return bounded({std::move(tAligned.m_tLeft), tAligned.m_nExponent, false});
}

}  // namespace math

}  // namespace tov
