#pragma once

#include <atomic>
#include <cstdint>

#include "webbedrock/assertion.h"
#include "webbedrock/criticalsection.h"
#include "webbedrock/handle.h"
#include "webbedrock/memoryallocator.h"

namespace tov {

// Makes the object of a singleton with its default constructor.
template <class T>
struct StandardFactory
{
    static T* create() { return WEBFORMAT_NEW("webbedrock/dclsingleton") T; }
};

// One object of type T for the process, made on first use.
//
// The first ten calls synchronise on a lock of the singleton's own; after ten completed calls the handle, which never
// changes once set, is read without it. Instantiate it in one source of the shared library, so that every module
// of a process sees the same object. Any thread.
template <class T, template <class> class Factory = StandardFactory>
class DCLSingleton
{
public:
    static const Handle<T, T>& getInstanceHandle()
    {
        State& tState = state();
        // Acquire: whoever sees ten completed calls sees the object that they published.
        if (tState.nCompletedCalls.load(std::memory_order_acquire) > kLastSynchronisedCall)
            return tState.s_hTheT;
        {
            const CriticalSection::Lock tLock(tState.tCreation);
            Handle<T, T>& s_hTheT = tState.s_hTheT;
            if (s_hTheT.isNull())
                s_hTheT = Handle<T, T>(Factory<T>::create());
            WEBFORMAT_ASSERT("webbedrock/dclsingleton", !s_hTheT.isNull());
        }
        tState.nCompletedCalls.fetch_add(1, std::memory_order_acq_rel);
        return tState.s_hTheT;
    }

    // How often the creation lock has been taken; at most a few more than ten, whatever the number of calls.
    static std::uint64_t lockAcquisitions() { return state().tCreation.acquisitions(); }

private:
    static constexpr int kLastSynchronisedCall = 9;

    struct State
    {
        Handle<T, T> s_hTheT;
        CriticalSection tCreation;
        std::atomic<int> nCompletedCalls{0};
    };

    // Never destroyed: formatters may still be used while static objects of the process go away.
    static State& state()
    {
        static State& s_tState = *new State;
        return s_tState;
    }
};

}  // namespace tov
