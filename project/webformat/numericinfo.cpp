#include "project/webformat/numericinfo.h"

namespace tov {

namespace {

// Keeps later floor divisions from falling one unit short of a rounded fraction.
constexpr double kNudge = 0.0000001;

double roundForModuli(double fMagnitude, std::uint32_t nFractionDigits)
{
    if (nFractionDigits == 0)
        return std::floor(fMagnitude + 0.5);
    const double fUnit = powerOfTen(static_cast<int>(nFractionDigits));
    return std::floor(fMagnitude * fUnit + 0.5) / fUnit + kNudge;
}

}  // namespace

double accumulateModuli(double fMagnitude, std::uint32_t nFractionDigits,
                        const std::vector<NumericPattern::Modulus>& vMods)
{
    const double fRounded = roundForModuli(fMagnitude, nFractionDigits);
    double fSum = fRounded - std::floor(fRounded);
    for (const NumericPattern::Modulus& tStep : vMods)
    {
        const double fQuotient = std::floor(fRounded / static_cast<double>(tStep.nDiv));
        const double fPlace = tStep.nMod != 0 ? std::fmod(fQuotient, static_cast<double>(tStep.nMod)) : fQuotient;
        fSum += fPlace * static_cast<double>(tStep.nMult);
    }
    return fSum;
}

CorvidNumber accumulateModuli(const CorvidNumber& tMagnitude, std::uint32_t nFractionDigits,
                              const std::vector<NumericPattern::Modulus>& vMods)
{
    const CorvidNumber tRounded = math::round(tMagnitude, static_cast<int>(nFractionDigits));
    const CorvidNumber tWhole = math::floor(tRounded);
    CorvidNumber tSum = tRounded - tWhole;
    for (const NumericPattern::Modulus& tStep : vMods)
    {
        const CorvidNumber tQuotient = math::wholeQuotient(tWhole, CorvidNumber(tStep.nDiv));
        const CorvidNumber tPlace = tStep.nMod != 0 ? math::modulus(tQuotient, CorvidNumber(tStep.nMod)) : tQuotient;
        tSum += tPlace * CorvidNumber(tStep.nMult);
    }
    return tSum;
}

int decimalDigits(StringBufferBaseTemplate<char>& tDigits, const CorvidNumber& tValue, std::uint32_t nFractionDigits,
                  int nPower10)
{
    int nDecimalPoint = 0;
    bool bNegative = false;
    if (nPower10 == 0)
        tValue.m_fcvt(tDigits, nFractionDigits, &nDecimalPoint, &bNegative);
    else
        math::shiftPower10(tValue, nPower10).m_fcvt(tDigits, nFractionDigits, &nDecimalPoint, &bNegative);
    return nDecimalPoint;
}

double powerOfTen(int nPower)
{
    // Exact in double.
    static constexpr double kExact[] = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,  1e8,  1e9,  1e10, 1e11,
                                        1e12, 1e13, 1e14, 1e15, 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
    if (nPower >= 0 && nPower < static_cast<int>(std::size(kExact)))
        return kExact[nPower];
    return std::pow(10.0, nPower);
}

}  // namespace tov
