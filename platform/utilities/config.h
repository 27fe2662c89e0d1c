#pragma once

#include <cstdint>
#include <string_view>

#include "utilities/configreader.h"
#include "webbedrock/export.h"

namespace tov {

// A binding to the process's configuration: what `ConfigReader::setGlobalInstance` and `reload` load.
class WEBFORMAT_EXPORT ConfigBase
{
public:
    enum EConfig
    {
        kLoad = 0,
        kReload = 1
    };

    ConfigBase(const ConfigBase&) = delete;
    ConfigBase& operator=(const ConfigBase&) = delete;

protected:
    ConfigBase() = default;
    virtual ~ConfigBase();

    // Registers the binding and, where there is a global reader, loads from it at once.
    void bind();
    // Takes the registration back and waits for a load that is under way on another thread. Derived destructors call
    // it.
    void unbind();

private:
    friend class ConfigRegistry;
    virtual bool load(const ConfigReader& tReader, EConfig eKind) = 0;
};

using EConfig = ConfigBase::EConfig;

// Binds an object's `loadConfig` to the process's configuration.
//
// Example:
//     class Limits
//     {
//     public:
//         Limits() { m_tConfig.init(*this, &Limits::loadConfig); }
//     private:
//         bool loadConfig(const ConfigReader& tReader, EConfig eKind);
//         Config<Limits> m_tConfig;
//     };
//
// `loadConfig` runs at once when there is a global reader, and again at every `setGlobalInstance` and `reload`, on the
// thread that calls them, under the lock of the bindings: it must not wait for another thread. Where it returns false a
// warning is logged; where it throws, an error is logged, the other bindings are loaded, and the exception is passed
// on. The binding ends with this object, so it should be the last member of its owner.
template <class T>
class Config final : public ConfigBase
{
public:
    using Loader = bool (T::*)(const ConfigReader&, EConfig);

    Config() = default;
    ~Config() override { unbind(); }

    void init(T& tOwner, Loader pLoader)
    {
        m_pOwner = &tOwner;
        m_pLoader = pLoader;
        bind();
    }

private:
    bool load(const ConfigReader& tReader, EConfig eKind) override { return (m_pOwner->*m_pLoader)(tReader, eKind); }

    T* m_pOwner = nullptr;
    Loader m_pLoader = nullptr;
};

// Reads typed values of one configuration element, each with a default: ConfigValueExtractor(tReader,
// PathFilter(L"Formatters/NumericFormatter")).getInt(L"maxSignificantDigits", 15).
class WEBFORMAT_EXPORT ConfigValueExtractor
{
public:
    ConfigValueExtractor(const ConfigReader& tReader, const PathFilter& tPath) : m_tElement(tReader.findElement(tPath))
    {
    }

    bool hasElement() const { return m_tElement.has_value(); }
    // As ConfigElement's; the default also where there is no element.
    std::int32_t getInt(std::wstring_view sName, std::int32_t nDefault) const;
    bool getBool(std::wstring_view sName, bool bDefault) const;
    String getString(std::wstring_view sName, std::wstring_view sDefault = {}) const;
    // The element's text; the default where there is no element or its text is empty.
    String getText(std::wstring_view sDefault = {}) const;

private:
    std::optional<ConfigElement> m_tElement;
};

}  // namespace tov
