#include "utilities/config.h"

#include <algorithm>
#include <exception>
#include <utility>

#include "utilities/configregistry.h"
#include "webbedrock/logger.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

using LoadLock = std::lock_guard<std::recursive_mutex>;

void logFailure(const std::exception_ptr& tException)
{
    String sReason = L"unknown exception";
    try
    {
        std::rethrow_exception(tException);
    }
    catch (const std::exception& tCaught)
    {
        sReason = fromUtf8(tCaught.what()).value_or(sReason);
    }
    catch (...)
    {
    }
    Logger::log(Logger::kError, L"loading the configuration failed: " + sReason);
}

}  // namespace

ConfigRegistry& ConfigRegistry::instance()
{
    static ConfigRegistry& s_tRegistry = *new ConfigRegistry;
    return s_tRegistry;
}

bool ConfigRegistry::isBound(const ConfigBase* pBinding) const
{
    return std::find(m_vBindings.begin(), m_vBindings.end(), pBinding) != m_vBindings.end();
}

void ConfigRegistry::loadOne(ConfigBase& tBinding, const ConfigReader& tReader, EConfig eKind)
{
    try
    {
        if (!tBinding.load(tReader, eKind))
            Logger::log(Logger::kWarning, L"a part of the configuration was not accepted");
    }
    catch (...)
    {
        logFailure(std::current_exception());
        throw;
    }
}

void ConfigRegistry::add(ConfigBase& tBinding)
{
    const LoadLock tLock(m_tLoadMutex);
    if (!isBound(&tBinding))
        m_vBindings.push_back(&tBinding);
    if (const std::shared_ptr<ConfigReader> pReader = reader())
        loadOne(tBinding, *pReader, ConfigBase::kLoad);
}

void ConfigRegistry::remove(ConfigBase& tBinding)
{
    const LoadLock tLock(m_tLoadMutex);
    std::erase(m_vBindings, &tBinding);
}

std::shared_ptr<ConfigReader> ConfigRegistry::reader() const
{
    const std::lock_guard tLock(m_tReaderMutex);
    return m_pReader;
}

void ConfigRegistry::setReader(std::shared_ptr<ConfigReader> pReader)
{
    // The old reader goes away outside the lock.
    const std::lock_guard tLock(m_tReaderMutex);
    m_pReader.swap(pReader);
}

void ConfigRegistry::loadAll(const ConfigReader& tReader, EConfig eKind)
{
    const LoadLock tLock(m_tLoadMutex);
    std::exception_ptr tFirst;
    // A load may end other bindings: go by a copy and ask of each whether it is still there.
    const std::vector<ConfigBase*> vBindings = m_vBindings;
    for (ConfigBase* pBinding : vBindings)
    {
        if (!isBound(pBinding))
            continue;
        try
        {
            loadOne(*pBinding, tReader, eKind);
        }
        catch (...)
        {
            if (!tFirst)
                tFirst = std::current_exception();
        }
    }
    if (tFirst)
        std::rethrow_exception(tFirst);
}

ConfigBase::~ConfigBase() = default;

void ConfigBase::bind()
{
    ConfigRegistry::instance().add(*this);
}

void ConfigBase::unbind()
{
    ConfigRegistry::instance().remove(*this);
}

std::int32_t ConfigValueExtractor::getInt(std::wstring_view sName, std::int32_t nDefault) const
{
    return m_tElement ? m_tElement->getIntAttribute(sName, nDefault) : nDefault;
}

bool ConfigValueExtractor::getBool(std::wstring_view sName, bool bDefault) const
{
    return m_tElement ? m_tElement->getBoolAttribute(sName, bDefault) : bDefault;
}

String ConfigValueExtractor::getString(std::wstring_view sName, std::wstring_view sDefault) const
{
    return m_tElement ? m_tElement->getAttribute(sName, sDefault) : String(sDefault);
}

String ConfigValueExtractor::getText(std::wstring_view sDefault) const
{
    String sText = m_tElement ? m_tElement->text() : String();
    return sText.empty() ? String(sDefault) : sText;
}

}  // namespace tov
