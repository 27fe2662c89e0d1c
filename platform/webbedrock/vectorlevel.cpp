#include <atomic>

#include "webbedrock/vectorescaping.h"

namespace tov {

namespace {

constinit std::atomic<VectorLevel> s_eMost{VectorLevel::kV3};

VectorLevel levelOfProcessor()
{
#if defined(__x86_64__)
    if (__builtin_cpu_supports("avx2"))
        return VectorLevel::kV3;
    if (__builtin_cpu_supports("ssse3"))
        return VectorLevel::kV2;
#endif
    return VectorLevel::kPortable;
}

}  // namespace

VectorLevel vectorLevel()
{
    return std::min(levelOfProcessor(), s_eMost.load(std::memory_order_relaxed));
}

void limitVectorLevel(VectorLevel eMost)
{
    s_eMost.store(eMost, std::memory_order_relaxed);
}

}  // namespace tov
