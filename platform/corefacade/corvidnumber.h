#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "webbedrock/export.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// A decimal number of any precision: a signed whole coefficient and a power of ten, or an infinite value with a sign.
//
// Example:  CorvidNumber tPrice = *CorvidNumber::fromString("1234.5");
//           (tPrice * CorvidNumber(2)).toString()             -> "2469"
//           (CorvidNumber(1) / CorvidNumber(3)).toString()    -> "0.3333333333333333333333333333333333333333"
//
// Bounds. A magnitude of 10^6145 or more is infinite, one below 10^-6144 is zero, and a number keeps at most 10,000
// significant digits; what is longer is rounded to them, halves to even. Within these bounds `+`, `-` and `*` are exact
// and `/` gives 40 significant digits, halves to even. Any operation on any input is done in milliseconds.
//
// Infinite values. They compare beyond every finite one. There is no "not a number": what has no value (infinity minus
// itself, zero times infinity, 0 / 0, infinity / infinity) is zero. A finite non-zero number divided by zero is
// infinite with the number's sign; a finite number divided by infinity is zero. Zero has no sign.
//
// Equal values with different coefficients (1.5 and 1.50) compare equal and give the same text.
//
// Memory. Coefficients up to 256 bits (77 digits) are held inside the object. With coefficients up to 128 bits (38
// digits) construction, copying, comparison, math::shiftPower10 and m_fcvt do not touch the heap; with coefficients up
// to 64 bits (19 digits) nor do quotients, their whole parts, their remainders and the conversions of all these. Out of
// memory throws std::bad_alloc and leaves the operands as they were. A moved-from number is zero. Any number of threads
// may read one object.
class WEBFORMAT_EXPORT CorvidNumber
{
public:
    CorvidNumber() noexcept;  // zero
    explicit CorvidNumber(int nValue) noexcept;
    explicit CorvidNumber(unsigned nValue) noexcept;
    explicit CorvidNumber(long nValue) noexcept;
    explicit CorvidNumber(unsigned long nValue) noexcept;

    // The value of the shortest decimal text that reads back as `fValue`: 0.1 is exactly one tenth. Infinities stay
    // infinite; NaN becomes zero.
    explicit CorvidNumber(double fValue) noexcept;

    CorvidNumber(const CorvidNumber& tOther);
    CorvidNumber(CorvidNumber&& tOther) noexcept;
    CorvidNumber& operator=(const CorvidNumber& tOther);
    CorvidNumber& operator=(CorvidNumber&& tOther) noexcept;
    ~CorvidNumber();

    static CorvidNumber infinity(bool bNegative = false) noexcept;

    // number   = [sign] ( decimal [exponent] / "INF" )
    // decimal  = 1*DIGIT ["." *DIGIT] / "." 1*DIGIT
    // exponent = ( "e" / "E" ) [sign] 1*DIGIT
    // sign     = "+" / "-"
    //
    // ASCII only, no blanks, "INF" in upper case; anything else gives no value. "1E2" -> 100, ".5" -> 0.5, "1e99999" ->
    // infinite, "1e-99999" -> 0. Reads the text once, whatever its length.
    static std::optional<CorvidNumber> fromString(std::wstring_view sText);
    static std::optional<CorvidNumber> fromString(std::string_view sText);

    bool isInfinite() const noexcept;
    bool isNegative() const noexcept;  // below zero; minus infinity too
    bool isZero() const noexcept;

    // The nearest double, ties to even; beyond the range of double an infinite one.
    double asDouble() const;

    // Plain digits without an exponent that fromString reads back as the same value: "-0.05", "2500", "INF", "-INF".
    // No zeros at the end of a fraction and none before the units digit; at most some 16,000 characters.
    std::string toString() const;

    // Replaces the contents of `tDigits` by the digits of the magnitude rounded to `nPlaces` places after the point
    // (halves away from zero), without sign, point or leading zeros before the point. Every fraction place is there, so
    // that `*pnDecimalPoint`, the number of digits left of the point, is never negative: 1234.5 with 2 places ->
    // "123450" and 4; 0.05 with 2 -> "05" and 0; zero with 3 -> "000" and 0. Places above 65,536 count as 65,536.
    // `*pbNegative` is isNegative(), of a number that rounds to zero too. Infinite values write nothing and 0.
    void m_fcvt(StringBufferBaseTemplate<char>& tDigits, unsigned nPlaces, int* pnDecimalPoint, bool* pbNegative) const;

    CorvidNumber& operator+=(const CorvidNumber& tOther);
    CorvidNumber& operator-=(const CorvidNumber& tOther);
    void swap(CorvidNumber& tOther) noexcept;

    friend WEBFORMAT_EXPORT CorvidNumber operator+(const CorvidNumber& tLeft, const CorvidNumber& tRight);
    friend WEBFORMAT_EXPORT CorvidNumber operator-(const CorvidNumber& tLeft, const CorvidNumber& tRight);
    friend WEBFORMAT_EXPORT CorvidNumber operator*(const CorvidNumber& tLeft, const CorvidNumber& tRight);
    friend WEBFORMAT_EXPORT CorvidNumber operator/(const CorvidNumber& tLeft, const CorvidNumber& tRight);
    friend WEBFORMAT_EXPORT std::strong_ordering operator<=>(const CorvidNumber& tLeft, const CorvidNumber& tRight);
    friend WEBFORMAT_EXPORT bool operator==(const CorvidNumber& tLeft, const CorvidNumber& tRight);
    friend void swap(CorvidNumber& tLeft, CorvidNumber& tRight) noexcept { tLeft.swap(tRight); }

private:
    friend struct CorvidNumberAccess;  // the sources' way to what the storage holds

    static constexpr std::size_t kStorageBytes = 64;
    static constexpr std::size_t kStorageAlignment = 16;

    alignas(kStorageAlignment) unsigned char m_aStorage[kStorageBytes];
};

// -1, 0 or 1 as |tValue| is below, equal to or above 10^nPower, exactly. Infinite values are above every power, zero is
// below. No multiplication, no heap for coefficients up to 128 bits.
WEBFORMAT_EXPORT int compareMagnitudeToPower10(const CorvidNumber& tValue, int nPower);

namespace math {

WEBFORMAT_EXPORT CorvidNumber absolute(const CorvidNumber& tValue);

// The decimal logarithm of the magnitude, good to the precision of double and exact for powers of ten: 1000 -> 3. Zero
// gives minus infinity, infinite values plus infinity.
WEBFORMAT_EXPORT CorvidNumber logbase10(const CorvidNumber& tValue);

// The next whole number below or above, or the number itself: floor(-2.5) -> -3, ceiling(-2.5) -> -2.
WEBFORMAT_EXPORT CorvidNumber floor(const CorvidNumber& tValue);
WEBFORMAT_EXPORT CorvidNumber ceiling(const CorvidNumber& tValue);

// Rounds to `nPlaces` places after the point, halves away from zero: 2.5, 0 -> 3; -0.125, 2 -> -0.13. Negative places
// count to the left of the point: 1250, -2 -> 1300.
WEBFORMAT_EXPORT CorvidNumber round(const CorvidNumber& tValue, int nPlaces);

// tValue x 10^nPower, exactly; past the bounds infinite or zero.
WEBFORMAT_EXPORT CorvidNumber shiftPower10(const CorvidNumber& tValue, int nPower);

// The whole part of a quotient, exactly and whatever its length: 7.5, 2 -> 3; -7, 2 -> -3. Where the divisor is zero or
// one of the two infinite, as `/`.
WEBFORMAT_EXPORT CorvidNumber wholeQuotient(const CorvidNumber& tValue, const CorvidNumber& tDivisor);

// The remainder of a division truncated toward zero, exactly; it has the sign of `tValue`: -7, 3 -> -1; 7.5, 2 -> 1.5.
// The remainder by infinity is the number itself; by zero, or of an infinite value, it is zero.
WEBFORMAT_EXPORT CorvidNumber modulus(const CorvidNumber& tValue, const CorvidNumber& tDivisor);

}  // namespace math

}  // namespace tov
