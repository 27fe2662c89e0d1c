#pragma once

#include <cstddef>

namespace tov {

// Puts functions behind the allocator gateway that count and refuse: while it lives, an allocation of more than the
// limit throws std::bad_alloc. One at a time; objects made before it must outlive it or have no storage of the
// gateway's.
//
// Example:  LimitedAllocator tAllocator(0);  EXPECT_THROW(tBuffer.append(L'x'), std::bad_alloc);
class LimitedAllocator
{
public:
    explicit LimitedAllocator(std::size_t nLimit);
    ~LimitedAllocator();
    LimitedAllocator(const LimitedAllocator&) = delete;
    LimitedAllocator& operator=(const LimitedAllocator&) = delete;

    void setLimit(std::size_t nLimit);

    std::size_t count() const;         // allocations that were granted
    std::size_t largestAsked() const;  // bytes, refused allocations included
};

}  // namespace tov
