#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "corefacade/corvidnumber.h"

namespace {

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

void checkDigits(const tov::CorvidNumber& tNumber, unsigned nPlaces)
{
    tov::StringBufferTemplate<char, 512> tDigits;
    int nPoint = -1;
    bool bNegative = false;
    tNumber.m_fcvt(tDigits, nPlaces, &nPoint, &bNegative);
    require(bNegative == tNumber.isNegative());
    if (tNumber.isInfinite())
        return;
    require(nPoint >= 0 && tDigits.length() == static_cast<std::size_t>(nPoint) + nPlaces);
    require(nPoint == 0 || tDigits[0] != '0');
    // The digits say what rounding says.
    std::string sText(tDigits.view());
    sText.insert(static_cast<std::size_t>(nPoint), sText.size() == static_cast<std::size_t>(nPoint) ? "" : ".");
    const auto tRead = tov::CorvidNumber::fromString(sText.empty() ? std::string_view("0") : std::string_view(sText));
    require(tRead && *tRead == tov::math::absolute(tov::math::round(tNumber, static_cast<int>(nPlaces))));
}

void checkArithmetic(const tov::CorvidNumber& tNumber)
{
    const tov::CorvidNumber tFloor = tov::math::floor(tNumber);
    require(tFloor <= tNumber && tov::math::ceiling(tNumber) >= tNumber);
    if (tNumber.isInfinite())
        return;
    require((tNumber - tNumber).isZero());
    require(tov::math::modulus(tNumber, tov::CorvidNumber(1)).isZero() == (tFloor == tNumber));
    require(tNumber.isZero() || tNumber / tNumber == tov::CorvidNumber(1));
}

}  // namespace

// Text that may be a decimal number: what is read is written and read back as the same number, by narrow and wide
// characters alike, and its digits and its arithmetic agree with each other.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const std::string_view sText(reinterpret_cast<const char*>(pData), nSize);
    const auto tNumber = tov::CorvidNumber::fromString(sText);
    const auto tWide = tov::CorvidNumber::fromString(std::wstring(pData, pData + nSize));
    require(tNumber == tWide);
    if (!tNumber)
        return 0;
    const auto tAgain = tov::CorvidNumber::fromString(tNumber->toString());
    require(tAgain && *tAgain == *tNumber);
    checkDigits(*tNumber, static_cast<unsigned>(nSize % 41));
    checkArithmetic(*tNumber);
    return 0;
}
