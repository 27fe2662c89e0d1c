#pragma once

#include <cstddef>
#include <map>

#include "webbedrock/criticalsection.h"
#include "webbedrock/handle.h"
#include "webbedrock/string.h"

namespace tov {

// Shared objects by name: HandleCache<const Currency> tCache(1000); tCache.insert(L"EUR", hEuro); tCache.find(L"EUR").
//
// Callers make an object that they do not find outside the lock and insert it; two may make the same one at once, and
// the first to insert wins. At most `nMost` objects are remembered, the first ones; nothing is ever forgotten. Any
// thread; the lock is held for one search of the map.
template <class T>
class HandleCache
{
public:
    using ObjectHandle = Handle<T, T>;

    explicit HandleCache(std::size_t nMost) : m_nMost(nMost) {}

    // A null handle for a name that is not remembered.
    ObjectHandle find(const String& sName) const
    {
        const CriticalSection::Lock tLock(m_tCrit);
        const auto tKnown = m_tObjects.find(sName);
        return tKnown == m_tObjects.end() ? ObjectHandle() : tKnown->second;
    }

    // Remembers `hObject`, and returns it; returns the object that is remembered under the name already, if there is
    // one.
    ObjectHandle insert(const String& sName, const ObjectHandle& hObject)
    {
        const CriticalSection::Lock tLock(m_tCrit);
        if (const auto tKnown = m_tObjects.find(sName); tKnown != m_tObjects.end())
            return tKnown->second;
        if (m_tObjects.size() < m_nMost)
            m_tObjects.emplace(sName, hObject);
        return hObject;
    }

    std::size_t size() const
    {
        const CriticalSection::Lock tLock(m_tCrit);
        return m_tObjects.size();
    }

private:
    const std::size_t m_nMost;
    mutable CriticalSection m_tCrit;
    std::map<String, ObjectHandle> m_tObjects;
};

}  // namespace tov
