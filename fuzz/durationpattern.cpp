// The duration pattern: every text parses, its elements stand in their places, every formatter formats every value,
// twice the same.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "webbedrock/assertion.h"
#include "webformat/durationformatters.h"

namespace {

using namespace tov;

void stopAtAssertion(const char*, const char*, int)
{
    std::abort();
}

struct Input
{
    ValueFormatterTypes::OutputType eOutput;
    double fValue;
    String sPattern;
};

// A byte of choice, eight of value, then the pattern, a character a byte.
Input inputOf(const std::uint8_t* pData, std::size_t nSize)
{
    Input tInput{static_cast<ValueFormatterTypes::OutputType>(pData[0] % 8), 0, String()};
    std::memcpy(&tInput.fValue, pData + 1, sizeof tInput.fValue);
    tInput.sPattern.assign(pData + 9, pData + nSize);
    return tInput;
}

void require(bool bTrue)
{
    if (!bTrue)
        std::abort();
}

// Elements stand one behind the other; those of one quoted text share its place.
void requirePlaces(const DurationPattern& tPattern)
{
    std::uint32_t nLastStart = 0;
    std::uint32_t nLastEnd = 0;
    for (const DurationFormat& tFormat : tPattern.formats().m_vDurationFormats)
    {
        const bool bSamePlace = tFormat.nSourceStart == nLastStart && tFormat.nSourceEnd == nLastEnd;
        require(bSamePlace || tFormat.nSourceStart >= nLastEnd);
        require(tFormat.nSourceStart < tFormat.nSourceEnd && tFormat.nSourceEnd <= tPattern.sourceText().size());
        require(*DurationPattern::typeName(tFormat.eType) != '\0');
        require(*DurationPattern::basisName(tFormat.eOptionalBasedOn) != '\0');
        nLastStart = tFormat.nSourceStart;
        nLastEnd = tFormat.nSourceEnd;
    }
}

template <class T>
void formatTwice(const Input& tInput, const T& tValue)
{
    const WebValueFormatterHandle hFormatter = DurationFormatter<T>::ParseCustomFormat(
        tInput.sPattern, Locale::kUSA, tInput.eOutput, KTWUILanguage::kDefaultLanguage);
    require(hFormatter->formatAsString(&tValue) == hFormatter->formatAsString(&tValue));
    require(hFormatter->formatAsString(nullptr).empty() == (tInput.eOutput != ValueFormatterTypes::kHTML));
}

long wholeOf(double fValue)
{
    return fValue > -9e18 && fValue < 9e18 ? static_cast<long>(fValue) : 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < 9)
        return 0;
    Assertion::setHandler(&stopAtAssertion);
    const Input tInput = inputOf(pData, nSize);
    requirePlaces(DurationPattern::parse(tInput.sPattern, tInput.eOutput));
    const long nWhole = wholeOf(tInput.fValue);
    formatTwice(tInput, tInput.fValue);
    formatTwice(tInput, nWhole);
    formatTwice(tInput, static_cast<int>(nWhole));
    formatTwice(tInput, static_cast<unsigned>(nWhole));
    formatTwice(tInput, static_cast<unsigned long>(nWhole));
    formatTwice(tInput, CorvidNumber(tInput.fValue));
    return 0;
}
