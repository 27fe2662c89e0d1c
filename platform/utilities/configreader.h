#pragma once

#include <cstdint>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>

#include "utilities/pathfilter.h"
#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "xml/xmldocument.h"

namespace tov {

// An element of the configuration as it was when it was asked for; it stays readable after a reload.
class WEBFORMAT_EXPORT ConfigElement
{
public:
    // An attribute as a signed number: decimal digits with an optional sign, blanks around it allowed. Absent,
    // unreadable or out of range: the default.
    std::int32_t getIntAttribute(std::wstring_view sName, std::int32_t nDefault) const;
    bool getBoolAttribute(std::wstring_view sName, bool bDefault) const;  // true, false, 1, 0
    String getAttribute(std::wstring_view sName, std::wstring_view sDefault = {}) const;
    // All text inside the element, without the blanks at both ends.
    String text() const;

private:
    friend class ConfigReader;
    ConfigElement(std::shared_ptr<const XmlDocument> pDocument, const XmlElement& tElement)
        : m_pDocument(std::move(pDocument)), m_pElement(&tElement)
    {
    }

    std::shared_ptr<const XmlDocument> m_pDocument;
    const XmlElement* m_pElement;
};

// The host's configuration, read from an XML file. Settings are found by the path of their element; the root's name and
// the elements' namespaces do not matter.
//
// Example, for <Config><TimeZone><DefaultDataOffset>GMT+01:00</DefaultDataOffset></TimeZone></Config>:
//     XmlError tError;
//     std::shared_ptr<ConfigReader> pReader = ConfigReader::fromFile("config.xml", &tError);
//     ConfigReader::setGlobalInstance(pReader);   // every bound Config<T> loads
//     pReader->getText(PathFilter(L"TimeZone/DefaultDataOffset")) -> "GMT+01:00"
//     pReader->reload(&tError);                   // and loads again
//
// Any thread may read, also during a reload: what one call returns is wholly of the old or the new contents. Bound
// objects are loaded on the thread that sets or reloads, one at a time; while they load, the global reader's contents
// do not change.
class WEBFORMAT_EXPORT ConfigReader
{
public:
    // The reader of a file, or null and the error: a place in the file, or none where it could not be read.
    static std::shared_ptr<ConfigReader> fromFile(const std::string& sPath, XmlError* pError = nullptr);
    // A reader of a text that a host keeps elsewhere; its `reload` changes nothing and loads the bound objects again.
    static std::shared_ptr<ConfigReader> fromText(std::string_view sUtf8Bytes, XmlError* pError = nullptr);

    // Reads the file again and, where this is the global reader, loads every bound object. A file that cannot be read
    // leaves the contents as they were: false and the error.
    bool reload(XmlError* pError = nullptr);

    // The first element at the path, in the order of the file; no value where there is none.
    std::optional<ConfigElement> findElement(const PathFilter& tPath) const;

    // Short forms: an element's text or attribute, or the default where there is no such element.
    String getText(const PathFilter& tPath, std::wstring_view sDefault = {}) const;
    std::int32_t getIntAttribute(const PathFilter& tPath, std::wstring_view sName, std::int32_t nDefault) const;

    // Makes a reader the process's own and loads every bound object from it; null takes the reader away and leaves what
    // was loaded. Any thread.
    static void setGlobalInstance(std::shared_ptr<ConfigReader> pReader);
    // The process's reader, or null.
    static std::shared_ptr<ConfigReader> getGlobalInstance();

    ConfigReader(const ConfigReader&) = delete;
    ConfigReader& operator=(const ConfigReader&) = delete;

private:
    ConfigReader(std::string sPath, std::shared_ptr<const XmlDocument> pDocument);
    std::shared_ptr<const XmlDocument> document() const;

    const std::string m_sPath;  // empty: made from a text
    mutable std::mutex m_tMutex;
    std::shared_ptr<const XmlDocument> m_pDocument;  // guarded by m_tMutex
};

}  // namespace tov
