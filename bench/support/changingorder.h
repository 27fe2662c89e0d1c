#pragma once

#include <cstddef>
#include <cstdint>

namespace tov {

// The order in which a benchmark visits its values: all 4,096 places once a pass, in a new order each pass, so that the
// processor's branch prediction cannot learn the values by heart.
//
// Example:  ChangingOrder tOrder;  for (auto _ : tState)  write(vValues[tOrder.next()]);
//
// One multiplication a value; the same orders in every run.
class ChangingOrder
{
public:
    static constexpr std::size_t knPlaces = 4096;

    std::size_t next()
    {
        if (m_nLeft-- == 0)
            startPass();
        // Visits every place once: the step is odd and the multiplier 1 above a multiple of four.
        m_nPlace = (m_nPlace * m_nMultiplier + m_nStep) & kMask;
        return static_cast<std::size_t>(m_nPlace);
    }

private:
    static constexpr std::uint64_t kMask = knPlaces - 1;

    void startPass()
    {
        m_nSeed = m_nSeed * 6364136223846793005ULL + 1442695040888963407ULL;
        m_nMultiplier = (m_nSeed >> 32 & kMask & ~std::uint64_t{3}) | 1;
        m_nStep = (m_nSeed >> 48 & kMask) | 1;
        m_nLeft = knPlaces - 1;
    }

    std::uint64_t m_nSeed = 1;
    std::uint64_t m_nMultiplier = 1;
    std::uint64_t m_nStep = 1;
    std::uint64_t m_nPlace = 0;
    std::size_t m_nLeft = 0;
};

}  // namespace tov
