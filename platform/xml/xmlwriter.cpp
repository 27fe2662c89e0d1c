#include <libxml/tree.h>
#include <libxml/xmlstring.h>

#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "webbedrock/assertion.h"
#include "webbedrock/utf8.h"
#include "xml/schemas.h"
#include "xml/xmldocument.h"
#include "xml/xmltext.h"

namespace tov {

namespace {

constexpr const char* kSource = "xml/xmlwriter";

struct DocumentDeleter
{
    void operator()(xmlDoc* pDocument) const { xmlFreeDoc(pDocument); }
};

struct BufferDeleter
{
    void operator()(xmlBuffer* pBuffer) const { xmlBufferFree(pBuffer); }
};

template <class Pointer>
Pointer checked(Pointer pMade)
{
    if (!pMade)
        throw std::bad_alloc();
    return pMade;
}

const xmlChar* asXmlChar(const std::string& sText)
{
    return reinterpret_cast<const xmlChar*>(sText.c_str());
}

// A namespace as the tree holds it: libxml2 prints it just as it is.
std::string xmlUri(std::wstring_view sNamespace)
{
    return xmlQuotedText(sNamespace);
}

std::string xmlName(std::wstring_view sName)
{
    const bool bIsName = isXmlName(sName);
    WEBFORMAT_ASSERT(kSource, bIsName);
    return bIsName ? toUtf8(sName) : "_";
}

bool isXmlPrefix(std::wstring_view sPrefix)
{
    return sPrefix == L"xml" || sPrefix == L"xmlns";
}

// Makes libxml2's tree from ours and prints it.
class Writer
{
public:
    Writer() : m_pDocument(checked(xmlNewDoc(reinterpret_cast<const xmlChar*>("1.0"))))
    {
        // Without it everything above ASCII in attributes would be written as character references.
        m_pDocument->encoding = checked(xmlStrdup(reinterpret_cast<const xmlChar*>("UTF-8")));
    }

    std::string write(const XmlElement& tRoot);

private:
    struct Pair
    {
        const XmlElement* pElement;
        xmlNode* pNode;
    };

    xmlNode* makeRoot(const XmlElement& tRoot);
    xmlNode* makeChild(xmlNode* pParent, const XmlElement& tChild);
    void fill(xmlNode* pNode, const XmlElement& tElement, const std::vector<XmlPrefix>& vPrefixes);
    void declare(xmlNode* pNode, const XmlPrefix& tPrefix, bool bInNamespace);
    void setNamespace(xmlNode* pNode, const String& sNamespace);
    void setAttribute(xmlNode* pNode, const XmlAttribute& tAttribute);
    xmlNs* namespaceFor(xmlNode* pNode, std::wstring_view sNamespace, bool bAttribute);
    xmlNs* findNamespace(xmlNode* pNode, const std::string& sUri, bool bAttribute);
    std::string freePrefix(xmlNode* pNode, std::wstring_view sNamespace);
    bool isFree(xmlNode* pNode, const std::string& sPrefix);
    std::string print(xmlNode* pRoot);

    std::unique_ptr<xmlDoc, DocumentDeleter> m_pDocument;
};

std::string Writer::write(const XmlElement& tRoot)
{
    xmlNode* pRoot = makeRoot(tRoot);
    std::vector<Pair> vPending = {{&tRoot, pRoot}};
    while (!vPending.empty())
    {
        const Pair tPair = vPending.back();
        vPending.pop_back();
        for (const XmlElement& tChild : tPair.pElement->children())
            vPending.push_back({&tChild, makeChild(tPair.pNode, tChild)});
    }
    return print(pRoot);
}

xmlNode* Writer::makeRoot(const XmlElement& tRoot)
{
    const std::string sName = xmlName(tRoot.localName());
    const std::string sText = xmlText(tRoot.text());
    xmlNode* pNode = checked(
        xmlNewDocRawNode(m_pDocument.get(), nullptr, asXmlChar(sName), sText.empty() ? nullptr : asXmlChar(sText)));
    xmlDocSetRootElement(m_pDocument.get(), pNode);
    fill(pNode, tRoot, tRoot.prefixesInScope());
    return pNode;
}

xmlNode* Writer::makeChild(xmlNode* pParent, const XmlElement& tChild)
{
    const std::string sName = xmlName(tChild.localName());
    const std::string sText = xmlText(tChild.text());
    xmlNode* pNode =
        checked(xmlNewTextChild(pParent, nullptr, asXmlChar(sName), sText.empty() ? nullptr : asXmlChar(sText)));
    fill(pNode, tChild, tChild.declaredPrefixes());
    if (!tChild.tail().empty())
    {
        const std::string sTail = xmlText(tChild.tail());
        xmlAddChild(pParent, checked(xmlNewDocText(m_pDocument.get(), asXmlChar(sTail))));
    }
    return pNode;
}

void Writer::fill(xmlNode* pNode, const XmlElement& tElement, const std::vector<XmlPrefix>& vPrefixes)
{
    for (const XmlPrefix& tPrefix : vPrefixes)
        declare(pNode, tPrefix, !tElement.namespaceUri().empty());
    setNamespace(pNode, tElement.namespaceUri());
    for (const XmlAttribute& tAttribute : tElement.attributes())
        setAttribute(pNode, tAttribute);
}

void Writer::declare(xmlNode* pNode, const XmlPrefix& tPrefix, bool bInNamespace)
{
    const std::string sUri = xmlUri(tPrefix.sNamespace);
    if (tPrefix.sPrefix.empty())
    {
        // An element in no namespace cannot declare a default one.
        if (bInNamespace || sUri.empty())
            checked(xmlNewNs(pNode, asXmlChar(sUri), nullptr));
        return;
    }
    if (isXmlPrefix(tPrefix.sPrefix) || sUri.empty())
        return;
    // Null here means that the prefix is declared already: two that are no names were both written as "_".
    xmlNewNs(pNode, asXmlChar(sUri), asXmlChar(xmlName(tPrefix.sPrefix)));
}

void Writer::setNamespace(xmlNode* pNode, const String& sNamespace)
{
    if (!sNamespace.empty())
    {
        xmlSetNs(pNode, namespaceFor(pNode, sNamespace, false));
        return;
    }
    xmlSetNs(pNode, nullptr);
    const xmlNs* pDefault = xmlSearchNs(m_pDocument.get(), pNode, nullptr);
    if (pDefault && pDefault->href && *pDefault->href)
        checked(xmlNewNs(pNode, reinterpret_cast<const xmlChar*>(""), nullptr));
}

void Writer::setAttribute(xmlNode* pNode, const XmlAttribute& tAttribute)
{
    xmlNs* pNamespace = tAttribute.sNamespace.empty() ? nullptr : namespaceFor(pNode, tAttribute.sNamespace, true);
    const std::string sName = xmlName(tAttribute.sLocalName);
    const std::string sValue = xmlText(tAttribute.sValue);
    checked(xmlSetNsProp(pNode, pNamespace, asXmlChar(sName), asXmlChar(sValue)));
}

xmlNs* Writer::namespaceFor(xmlNode* pNode, std::wstring_view sNamespace, bool bAttribute)
{
    const std::string sUri = xmlUri(sNamespace);
    if (xmlNs* pFound = findNamespace(pNode, sUri, bAttribute))
        return pFound;
    return checked(xmlNewNs(pNode, asXmlChar(sUri), asXmlChar(freePrefix(pNode, sNamespace))));
}

// A declaration that is in force at the node: the default one for elements where it fits, so that what is written does
// not change when it is read and written again; attributes need one with a prefix.
xmlNs* Writer::findNamespace(xmlNode* pNode, const std::string& sUri, bool bAttribute)
{
    if (xmlStrEqual(asXmlChar(sUri), XML_XML_NAMESPACE))
        return xmlSearchNs(m_pDocument.get(), pNode, reinterpret_cast<const xmlChar*>("xml"));
    xmlNs* pDefault = bAttribute ? nullptr : xmlSearchNs(m_pDocument.get(), pNode, nullptr);
    if (pDefault && xmlStrEqual(pDefault->href, asXmlChar(sUri)))
        return pDefault;
    for (xmlNode* pAt = pNode; pAt && pAt->type == XML_ELEMENT_NODE; pAt = pAt->parent)
    {
        for (xmlNs* pNs = pAt->nsDef; pNs; pNs = pNs->next)
        {
            if (pNs->prefix && xmlStrEqual(pNs->href, asXmlChar(sUri)) &&
                xmlSearchNs(m_pDocument.get(), pNode, pNs->prefix) == pNs)
                return pNs;
        }
    }
    return nullptr;
}

bool Writer::isFree(xmlNode* pNode, const std::string& sPrefix)
{
    return xmlSearchNs(m_pDocument.get(), pNode, asXmlChar(sPrefix)) == nullptr;
}

std::string Writer::freePrefix(xmlNode* pNode, std::wstring_view sNamespace)
{
    const wchar_t* pUsual = schemas::usualPrefix(sNamespace);
    if (pUsual && isFree(pNode, toUtf8(pUsual)))
        return toUtf8(pUsual);
    for (int i = 1;; ++i)
    {
        std::string sPrefix = "ns" + std::to_string(i);
        if (isFree(pNode, sPrefix))
            return sPrefix;
    }
}

std::string Writer::print(xmlNode* pRoot)
{
    const std::unique_ptr<xmlBuffer, BufferDeleter> pBuffer(checked(xmlBufferCreate()));
    if (xmlNodeDump(pBuffer.get(), m_pDocument.get(), pRoot, 0, 0) < 0)
        throw std::bad_alloc();
    return std::string(reinterpret_cast<const char*>(xmlBufferContent(pBuffer.get())),
                       static_cast<std::size_t>(xmlBufferLength(pBuffer.get())));
}

}  // namespace

std::string XmlDocument::serialize(const XmlElement& tElement)
{
    return Writer().write(tElement);
}

}  // namespace tov
