#pragma once

#include <memory>
#include <mutex>
#include <vector>

#include "utilities/config.h"

namespace tov {

// The process's configuration reader and the bindings that load from it.
class ConfigRegistry
{
public:
    // Never destroyed: bindings may end while static objects of the process go away.
    static ConfigRegistry& instance();

    // Held while bindings load and while the global reader or its contents change. A binding's load may make or end
    // other bindings, so one thread may take it repeatedly.
    std::recursive_mutex& loadMutex() { return m_tLoadMutex; }

    void add(ConfigBase& tBinding);
    void remove(ConfigBase& tBinding);

    std::shared_ptr<ConfigReader> reader() const;
    void setReader(std::shared_ptr<ConfigReader> pReader);

    // Loads every binding; what the first of them throws is passed on after all have been loaded.
    void loadAll(const ConfigReader& tReader, EConfig eKind);

private:
    ConfigRegistry() = default;
    bool isBound(const ConfigBase* pBinding) const;
    static void loadOne(ConfigBase& tBinding, const ConfigReader& tReader, EConfig eKind);

    std::recursive_mutex m_tLoadMutex;
    std::vector<ConfigBase*> m_vBindings;  // guarded by m_tLoadMutex
    mutable std::mutex m_tReaderMutex;     // so that asking for the reader waits for no load
    std::shared_ptr<ConfigReader> m_pReader;
};

}  // namespace tov
