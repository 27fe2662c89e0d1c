#include "utilities/configreader.h"

#include <utility>

#include "utilities/configregistry.h"
#include "utilities/stringutils.h"

namespace tov {

namespace {

// Depth first, so that a first branch which leads nowhere does not hide a second; no deeper than the tree.
const XmlElement* findBelow(const XmlElement& tElement, std::wstring_view sPath)
{
    const std::size_t nSlash = sPath.find(L'/');
    const std::wstring_view sName = sPath.substr(0, nSlash);
    for (const XmlElement& tChild : tElement.children())
    {
        if (tChild.localName() != sName)
            continue;
        const XmlElement* pFound =
            nSlash == std::wstring_view::npos ? &tChild : findBelow(tChild, sPath.substr(nSlash + 1));
        if (pFound)
            return pFound;
    }
    return nullptr;
}

std::shared_ptr<const XmlDocument> share(std::optional<XmlDocument> tDocument)
{
    return tDocument ? std::make_shared<const XmlDocument>(std::move(*tDocument)) : nullptr;
}

}  // namespace

std::int32_t ConfigElement::getIntAttribute(std::wstring_view sName, std::int32_t nDefault) const
{
    return m_pElement->getIntAttribute(sName, nDefault);
}

bool ConfigElement::getBoolAttribute(std::wstring_view sName, bool bDefault) const
{
    return m_pElement->getBoolAttribute(sName, bDefault);
}

String ConfigElement::getAttribute(std::wstring_view sName, std::wstring_view sDefault) const
{
    return m_pElement->getAttributeOr(sName, sDefault);
}

String ConfigElement::text() const
{
    return String(StringUtils::trim(m_pElement->innerText()));
}

ConfigReader::ConfigReader(std::string sPath, std::shared_ptr<const XmlDocument> pDocument)
    : m_sPath(std::move(sPath)), m_pDocument(std::move(pDocument))
{
}

std::shared_ptr<ConfigReader> ConfigReader::fromFile(const std::string& sPath, XmlError* pError)
{
    std::shared_ptr<const XmlDocument> pDocument = share(XmlDocument::parseFile(sPath, pError));
    return pDocument ? std::shared_ptr<ConfigReader>(new ConfigReader(sPath, std::move(pDocument))) : nullptr;
}

std::shared_ptr<ConfigReader> ConfigReader::fromText(std::string_view sUtf8Bytes, XmlError* pError)
{
    std::shared_ptr<const XmlDocument> pDocument = share(XmlDocument::parse(sUtf8Bytes, pError));
    return pDocument ? std::shared_ptr<ConfigReader>(new ConfigReader({}, std::move(pDocument))) : nullptr;
}

bool ConfigReader::reload(XmlError* pError)
{
    ConfigRegistry& tRegistry = ConfigRegistry::instance();
    // Also while the file is read: of two reloads the later one must not be overtaken by what the earlier one read.
    const std::lock_guard tLoadLock(tRegistry.loadMutex());
    if (!m_sPath.empty())
    {
        std::shared_ptr<const XmlDocument> pDocument = share(XmlDocument::parseFile(m_sPath, pError));
        if (!pDocument)
            return false;
        const std::lock_guard tLock(m_tMutex);
        m_pDocument.swap(pDocument);
    }
    if (tRegistry.reader().get() == this)
        tRegistry.loadAll(*this, ConfigBase::kReload);
    return true;
}

std::shared_ptr<const XmlDocument> ConfigReader::document() const
{
    const std::lock_guard tLock(m_tMutex);
    return m_pDocument;
}

std::optional<ConfigElement> ConfigReader::findElement(const PathFilter& tPath) const
{
    std::shared_ptr<const XmlDocument> pDocument = document();
    const XmlElement* pElement = findBelow(pDocument->root(), tPath.path());
    if (!pElement)
        return std::nullopt;
    return ConfigElement(std::move(pDocument), *pElement);
}

String ConfigReader::getText(const PathFilter& tPath, std::wstring_view sDefault) const
{
    const std::optional<ConfigElement> tElement = findElement(tPath);
    return tElement ? tElement->text() : String(sDefault);
}

std::int32_t ConfigReader::getIntAttribute(const PathFilter& tPath, std::wstring_view sName,
                                           std::int32_t nDefault) const
{
    const std::optional<ConfigElement> tElement = findElement(tPath);
    return tElement ? tElement->getIntAttribute(sName, nDefault) : nDefault;
}

void ConfigReader::setGlobalInstance(std::shared_ptr<ConfigReader> pReader)
{
    ConfigRegistry& tRegistry = ConfigRegistry::instance();
    const std::lock_guard tLoadLock(tRegistry.loadMutex());
    tRegistry.setReader(pReader);
    if (pReader)
        tRegistry.loadAll(*pReader, ConfigBase::kLoad);
}

std::shared_ptr<ConfigReader> ConfigReader::getGlobalInstance()
{
    return ConfigRegistry::instance().reader();
}

}  // namespace tov
