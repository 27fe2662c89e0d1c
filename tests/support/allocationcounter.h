#pragma once

#include <cstddef>

namespace tov {

// Counts the allocations of the current thread since its construction, whatever their way: operator new, malloc, calloc
// and realloc, in this program or in a library that it links. Frees are not counted.
//
// Example:  const AllocationCounter tCounter;  formatter.format(buffer, 7);  EXPECT_EQ(tCounter.count(), 0u);
//
// Counters may overlap; each must be asked on the thread that made it. Under the address, thread and memory sanitizers,
// which need malloc for themselves, only operator new is counted (`countsMalloc` is false).
class AllocationCounter
{
public:
    AllocationCounter();

    std::size_t count() const;

    static bool countsMalloc();

private:
    std::size_t m_nStart;
};

}  // namespace tov
