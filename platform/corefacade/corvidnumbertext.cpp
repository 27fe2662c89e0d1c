#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

#include "corefacade/corvidnumberaccess.h"
#include "corefacade/decimaldigits.h"
#include "corefacade/decimaltext.h"

namespace tov {

namespace {

using DigitBuffer = StringBufferTemplate<char, 128>;

CorvidNumber numberOf(const DecimalText& tText)
{
    if (tText.m_bInfinite)
        return CorvidNumber::infinity(tText.m_bNegative);
    return CorvidNumberAccess::fromDigits(tText.m_tDigits.view(), tText.m_nExponent, tText.m_bNegative);
}

template <class Char>
std::optional<CorvidNumber> numberFromText(std::basic_string_view<Char> sText)
{
    DecimalText tText;
    if (!parseDecimalText(sText, tText))
        return std::nullopt;
    return numberOf(tText);
}

void appendNumber(StringBufferBaseTemplate<char>& tText, int nNumber)
{
    char aNumber[16];
    const char* pEnd = std::to_chars(aNumber, aNumber + sizeof(aNumber), nNumber).ptr;
    tText.append(aNumber, static_cast<std::size_t>(pEnd - aNumber));
}

double finiteMagnitude(const CorvidNumber& tNumber)
{
    DigitBuffer tText;
    const int nExponent = CorvidNumberAccess::appendDigits(tNumber, tText).m_nExponent;
    const std::int64_t nLead = static_cast<std::int64_t>(tText.length()) + nExponent - 1;
    tText.append('e');
    appendNumber(tText, nExponent);
    double fMagnitude = 0.0;
    const char* pText = tText.data();
    if (std::from_chars(pText, pText + tText.length(), fMagnitude).ec == std::errc::result_out_of_range)
        return nLead > 0 ? std::numeric_limits<double>::infinity() : 0.0;
    return fMagnitude;
}

}  // namespace

CorvidNumber::CorvidNumber(double fValue) noexcept : CorvidNumber()
{
    if (std::isnan(fValue))
        return;
    if (std::isinf(fValue))
    {
        *this = infinity(std::signbit(fValue));
        return;
    }
    char aText[32];
    const char* pEnd = std::to_chars(aText, aText + sizeof(aText), fValue, std::chars_format::scientific).ptr;
    DecimalText tText;
    parseDecimalText(std::string_view(aText, static_cast<std::size_t>(pEnd - aText)), tText);
    *this = numberOf(tText);
}

std::optional<CorvidNumber> CorvidNumber::fromString(std::wstring_view sText)
{
    return numberFromText(sText);
}
std::optional<CorvidNumber> CorvidNumber::fromString(std::string_view sText)
{
    return numberFromText(sText);
}

double CorvidNumber::asDouble() const
{
    if (isZero())
        return 0.0;
    const double fMagnitude = isInfinite() ? std::numeric_limits<double>::infinity() : finiteMagnitude(*this);
    return isNegative() ? -fMagnitude : fMagnitude;
}

std::string CorvidNumber::toString() const
{
    if (isInfinite())
        return isNegative() ? "-INF" : "INF";
    DigitBuffer tCoefficient;
    const int nExponent = CorvidNumberAccess::appendDigits(*this, tCoefficient).m_nExponent;
    DigitBuffer tDigits;
    const unsigned nPlaces = static_cast<unsigned>(std::max(-nExponent, 0));
    const std::size_t nPoint = static_cast<std::size_t>(placeDigits(tDigits, tCoefficient.view(), nExponent, nPlaces));
    const std::string_view sWhole = tDigits.view().substr(0, nPoint);
    std::string_view sFraction = tDigits.view().substr(nPoint);
    sFraction = sFraction.substr(0, sFraction.find_last_not_of('0') + 1);
    std::string sText(isNegative() ? "-" : "");
    sText += sWhole.empty() ? "0" : sWhole;
    if (!sFraction.empty())
        sText.append(1, '.').append(sFraction);
    return sText;
}

void CorvidNumber::m_fcvt(StringBufferBaseTemplate<char>& tDigits, unsigned nPlaces, int* pnDecimalPoint,
                          bool* pbNegative) const
{
    tDigits.clear();
    const CorvidNumberAccess::Shape tShape = CorvidNumberAccess::appendDigits(*this, tDigits);
    *pbNegative = tShape.m_bNegative;
    *pnDecimalPoint = tShape.m_bInfinite ? 0 : placeDigits(tDigits, tShape.m_nExponent, nPlaces);
}

}  // namespace tov
