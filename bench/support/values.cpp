#include "support/values.h"

#include <cmath>
#include <numeric>

#include "support/changingorder.h"

namespace tov {

namespace {

using Random = std::mt19937_64;

constexpr std::size_t knValues = ChangingOrder::knPlaces;
constexpr unsigned kDecimalDigits = 28;
constexpr unsigned kDecimalPlaces = 2;

template <class Make>
auto makeValues(const Make& tMake)
{
    Random tRandom(20240229);
    std::vector<decltype(tMake(tRandom))> vValues;
    vValues.reserve(knValues);
    for (std::size_t n = 0; n < knValues; ++n)
        vValues.push_back(tMake(tRandom));
    return vValues;
}

bool oneIn(Random& tRandom, unsigned n)
{
    return tRandom() % n == 0;
}

double uniform(Random& tRandom, double fLeast, double fMost)
{
    return std::uniform_real_distribution<double>(fLeast, fMost)(tRandom);
}

}  // namespace

std::vector<double> amounts(unsigned nNegativeIn, unsigned nMaxIntegerDigits)
{
    return makeValues(
        [=](Random& tRandom)
        {
            const double fCents = std::floor(std::pow(10.0, uniform(tRandom, 0.0, nMaxIntegerDigits + 2.0)));
            return (oneIn(tRandom, nNegativeIn) ? -fCents : fCents) / 100;
        });
}

std::vector<double> anyDoubles()
{
    return makeValues(
        [](Random& tRandom)
        {
            const double fMagnitude = std::pow(10.0, uniform(tRandom, -6.0, 21.0));
            return oneIn(tRandom, 2) ? -fMagnitude : fMagnitude;
        });
}

std::vector<std::int64_t> wholeNumbers()
{
    return makeValues(
        [](Random& tRandom)
        {
            const unsigned nBits = static_cast<unsigned>(tRandom() % 63) + 1;
            const std::int64_t nMagnitude = static_cast<std::int64_t>(tRandom() >> (64 - nBits));
            return oneIn(tRandom, 8) ? -nMagnitude : nMagnitude;
        });
}

std::vector<std::string> longDecimals()
{
    return makeValues(
        [](Random& tRandom)
        {
            std::string sText(oneIn(tRandom, 8) ? "-" : "");
            sText += static_cast<char>('1' + tRandom() % 9);
            for (unsigned n = 1; n < kDecimalDigits; ++n)
                sText += static_cast<char>('0' + tRandom() % 10);
            return sText.insert(sText.size() - kDecimalPlaces, ".");
        });
}

std::vector<std::int64_t> moments()
{
    constexpr std::uint64_t kMillisecondsTo2038 = 2145916800ULL * 1000;
    return makeValues([](Random& tRandom) { return static_cast<std::int64_t>(tRandom() % kMillisecondsTo2038); });
}

std::vector<double> durations()
{
    return makeValues([](Random& tRandom) { return std::floor(std::pow(10.0, uniform(tRandom, 3.0, 11.0))) / 1000; });
}

std::wstring markedText(std::size_t nLength, unsigned nPercent, const std::wstring& sMarked)
{
    constexpr std::wstring_view kPlain = L"etaoin shrdlu cmfwyp vbgkjq xz";
    Random tRandom(nPercent);
    std::wstring sText;
    for (std::size_t n = 0; n < knValues + nLength - 1; ++n)
        sText += tRandom() % 100 < nPercent ? sMarked[tRandom() % sMarked.size()] : kPlain[tRandom() % kPlain.size()];
    return sText;
}

std::vector<std::size_t> textPlaces()
{
    std::vector<std::size_t> vPlaces(knValues);
    std::iota(vPlaces.begin(), vPlaces.end(), std::size_t{0});
    return vPlaces;
}

}  // namespace tov
