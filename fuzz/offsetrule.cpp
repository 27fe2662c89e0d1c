// The rule that reads offsets: any text gives a number, the same as a second reading of the rule gives.

#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

#include "webformat/sessiontimezones.h"

namespace {

using namespace tov;

constexpr int kFallback = 12345;
constexpr long kLargestNumber = 9'999'999;

bool isWord(const String& sText, const char* pWord)
{
    std::size_t nAt = 0;
    for (; pWord[nAt] != '\0'; ++nAt)
    {
        if (nAt >= sText.size() || (sText[nAt] != pWord[nAt] && sText[nAt] != pWord[nAt] - ('a' - 'A')))
            return false;
    }
    return nAt == sText.size();
}

// A whole number at `nAt`, which does not go past `nEnd`.
long numberAt(const String& sText, std::size_t nAt, std::size_t nEnd)
{
    long nSign = 1;
    if (nAt < nEnd && (sText[nAt] == L'-' || sText[nAt] == L'+'))
        nSign = sText[nAt++] == L'-' ? -1 : 1;
    long nNumber = 0;
    for (; nAt < nEnd && sText[nAt] >= L'0' && sText[nAt] <= L'9'; ++nAt)
    {
        if (nNumber < kLargestNumber)
            nNumber = nNumber * 10 + (sText[nAt] - L'0');
        if (nNumber > kLargestNumber)
            nNumber = kLargestNumber;
    }
    return nSign * nNumber;
}

long expectedOffset(const String& sText)
{
    if (sText.empty() || isWord(sText, "default"))
        return kFallback;
    if (isWord(sText, "unknown"))
        return TimeZone::knUTCOffsetUseDefault;
    std::optional<std::size_t> tColon;
    std::optional<std::size_t> tAfterGMT;
    for (std::size_t nAt = sText.size(); nAt-- > 0;)
    {
        if (sText[nAt] == L':')
            tColon = nAt;
        if (sText.compare(nAt, 3, L"GMT") == 0)
            tAfterGMT = nAt + 3;
    }
    if (!tColon)
        return numberAt(sText, 0, sText.size());
    const long nHours = numberAt(sText, tAfterGMT.value_or(0), *tColon);
    const long nMinutes = numberAt(sText, *tColon + 1, sText.size());
    return nHours * 60 + (nHours > 0 ? nMinutes : -nMinutes);
}

}  // namespace

// A character a byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const String sText(pData, pData + nSize);
    if (SessionTimeZones::offsetFromText(sText, kFallback) != expectedOffset(sText))
        std::abort();
    return 0;
}
