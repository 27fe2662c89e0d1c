#pragma once

#include <atomic>
#include <cstdint>

#include "webbedrock/memoryallocator.h"

namespace tov {

// Base of every object that lives behind a `Handle`: a virtual destructor and a 32-bit count that starts at 0.
//
// A count of 0 belongs to one thread alone, so the first reference is a plain increment; later ones are relaxed
// increments, releases are ordered before the deletion. The object deletes itself when the last reference goes.
// `AllocPolicy` brings class-level new and delete.
template <class AllocPolicy>
class RefCountedBaseTemplate : public AllocPolicy
{
public:
    RefCountedBaseTemplate() = default;
    // The count belongs to the object, not to its contents: a copy starts with a count of its own.
    RefCountedBaseTemplate(const RefCountedBaseTemplate&) {}
    RefCountedBaseTemplate& operator=(const RefCountedBaseTemplate&) { return *this; }
    virtual ~RefCountedBaseTemplate() = default;

    void addReference() const
    {
        if (m_nReferences.load(std::memory_order_relaxed) == 0)
            m_nReferences.store(1, std::memory_order_relaxed);
        else
            m_nReferences.fetch_add(1, std::memory_order_relaxed);
    }

    void releaseReference() const
    {
        if (m_nReferences.fetch_sub(1, std::memory_order_release) != 1)
            return;
        // Reads the zero that the release sequence left, so that all other threads' uses come before the deletion.
        static_cast<void>(m_nReferences.load(std::memory_order_acquire));
        delete this;
    }

    std::uint32_t referenceCount() const { return m_nReferences.load(std::memory_order_relaxed); }

private:
    mutable std::atomic<std::uint32_t> m_nReferences{0};
};

}  // namespace tov
