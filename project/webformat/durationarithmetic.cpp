#include "project/webformat/durationarithmetic.h"

namespace tov {

CorvidNumber roundedQuotient(const CorvidNumber& tSeconds, unsigned nLength, DurationFormatList::ERoundRule eRule)
{
    CorvidNumber tQuotient = tSeconds / CorvidNumber(nLength);
    switch (eRule)
    {
    case DurationFormatList::kCeil: return math::ceiling(tQuotient);
    case DurationFormatList::kRound: return math::floor(tQuotient + CorvidNumber(0.5));
    default: return tQuotient;
    }
}

CorvidNumber flooredQuotient(const CorvidNumber& tSeconds, unsigned nLength)
{
    const CorvidNumber tLength(nLength);
    CorvidNumber tQuotient = math::wholeQuotient(tSeconds, tLength);
    if (math::modulus(tSeconds, tLength).isNegative())
        tQuotient -= CorvidNumber(1);
    return tQuotient;
}

}  // namespace tov
