#include "xml/xmlelement.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "xml/lexical.h"

namespace tov {

namespace {

constexpr const wchar_t* kXmlNamespace = L"http://www.w3.org/XML/1998/namespace";

using PathStep = const XmlQualifiedName*;

// Depth first, so that a first branch which leads nowhere does not hide a second; as deep as the path is long.
const XmlElement* findBelow(const XmlElement& tElement, PathStep pStep, PathStep pEnd)
{
    if (pStep == pEnd)
        return &tElement;
    for (const XmlElement& tChild : tElement.children())
    {
        if (!tChild.hasName(*pStep))
            continue;
        if (const XmlElement* pFound = findBelow(tChild, pStep + 1, pEnd))
            return pFound;
    }
    return nullptr;
}

const XmlPrefix* findDeclared(const std::vector<XmlPrefix>& vPrefixes, std::wstring_view sPrefix)
{
    for (const XmlPrefix& tPrefix : vPrefixes)
        if (tPrefix.sPrefix == sPrefix)
            return &tPrefix;
    return nullptr;
}

bool sameAttributes(const XmlElement& tLeft, const XmlElement& tRight)
{
    return std::equal(tLeft.attributes().begin(), tLeft.attributes().end(), tRight.attributes().begin(),
                      tRight.attributes().end(),
                      [](const XmlAttribute& tOne, const XmlAttribute& tOther)
                      {
                          return tOne.sLocalName == tOther.sLocalName && tOne.sNamespace == tOther.sNamespace &&
                                 tOne.sValue == tOther.sValue;
                      });
}

bool sameApartFromChildren(const XmlElement& tLeft, const XmlElement& tRight)
{
    return tLeft.localName() == tRight.localName() && tLeft.namespaceUri() == tRight.namespaceUri() &&
           tLeft.text() == tRight.text() && tLeft.children().size() == tRight.children().size() &&
           sameAttributes(tLeft, tRight);
}

}  // namespace

XmlElement::XmlElement(std::wstring_view sNamespace, std::wstring_view sLocalName)
    : XmlElement(std::make_shared<const String>(sNamespace), sLocalName)
{
}

XmlElement::XmlElement(std::shared_ptr<const String> pNamespace, std::wstring_view sLocalName)
    : m_pNamespace(std::move(pNamespace)), m_sLocalName(sLocalName)
{
}

XmlElement::XmlElement(const XmlElement& tOther) : XmlElement(tOther.m_pNamespace, tOther.m_sLocalName)
{
    copyOwn(tOther);
    m_vPrefixes = tOther.prefixesInScope();
    copyChildren(tOther);
}

XmlElement& XmlElement::operator=(const XmlElement& tOther)
{
    // The copy comes first: the other element may be a part of this one.
    XmlElement tCopy(tOther);
    swapContents(tCopy);
    return *this;
}

XmlElement::~XmlElement()
{
    releaseChildren();
}

void XmlElement::copyOwn(const XmlElement& tOther)
{
    m_vAttributes = tOther.m_vAttributes;
    m_vPrefixes = tOther.m_vPrefixes;
    m_sText = tOther.m_sText;
    m_tPlace = tOther.m_tPlace;
}

void XmlElement::copyChildren(const XmlElement& tOther)
{
    struct Pair
    {
        const XmlElement* pFrom;
        XmlElement* pTo;
    };
    std::vector<Pair> vPending = {{&tOther, this}};
    while (!vPending.empty())
    {
        const Pair tPair = vPending.back();
        vPending.pop_back();
        for (const XmlElement& tChild : tPair.pFrom->children())
        {
            std::unique_ptr<XmlElement> pCopy(new XmlElement(tChild.m_pNamespace, tChild.m_sLocalName));
            pCopy->copyOwn(tChild);
            pCopy->m_sTail = tChild.m_sTail;
            pCopy->m_pParent = tPair.pTo;
            vPending.push_back({&tChild, pCopy.get()});
            tPair.pTo->m_vChildren.push_back(std::move(pCopy));
        }
    }
}

// Takes leaf after leaf, the last ones first: no recursion and no memory, however deep the tree is.
void XmlElement::releaseChildren() noexcept
{
    XmlElement* pAt = this;
    for (;;)
    {
        if (!pAt->m_vChildren.empty())
        {
            pAt = pAt->m_vChildren.back().get();
            continue;
        }
        if (pAt == this)
            return;
        pAt = pAt->m_pParent;
        pAt->m_vChildren.pop_back();
    }
}

void XmlElement::swapContents(XmlElement& tOther) noexcept
{
    std::swap(m_pNamespace, tOther.m_pNamespace);
    m_sLocalName.swap(tOther.m_sLocalName);
    m_vAttributes.swap(tOther.m_vAttributes);
    m_vPrefixes.swap(tOther.m_vPrefixes);
    m_vChildren.swap(tOther.m_vChildren);
    m_sText.swap(tOther.m_sText);
    std::swap(m_tPlace, tOther.m_tPlace);
    for (XmlElement& tChild : children())
        tChild.m_pParent = this;
    for (XmlElement& tChild : tOther.children())
        tChild.m_pParent = &tOther;
}

bool XmlElement::hasName(const XmlQualifiedName& tName) const
{
    return m_sLocalName == tName.pLocalName && *m_pNamespace == tName.pNamespace;
}

const XmlAttribute* XmlElement::findAttribute(std::wstring_view sNamespace, std::wstring_view sName) const
{
    for (const XmlAttribute& tAttribute : m_vAttributes)
        if (tAttribute.sLocalName == sName && tAttribute.sNamespace == sNamespace)
            return &tAttribute;
    return nullptr;
}

const String* XmlElement::getAttribute(std::wstring_view sNamespace, std::wstring_view sName) const
{
    const XmlAttribute* pAttribute = findAttribute(sNamespace, sName);
    return pAttribute ? &pAttribute->sValue : nullptr;
}

String XmlElement::getAttributeOr(std::wstring_view sName, std::wstring_view sDefault) const
{
    const String* pValue = getAttribute(sName);
    return pValue ? *pValue : String(sDefault);
}

std::uint32_t XmlElement::getUnsignedAttribute(std::wstring_view sName, std::uint32_t nDefault) const
{
    const String* pValue = getAttribute(sName);
    if (!pValue)
        return nDefault;
    constexpr std::int64_t kMost = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(lexical::parseInteger(*pValue, 0, kMost).value_or(nDefault));
}

std::int32_t XmlElement::getIntAttribute(std::wstring_view sName, std::int32_t nDefault) const
{
    using Limits = std::numeric_limits<std::int32_t>;
    const String* pValue = getAttribute(sName);
    if (!pValue)
        return nDefault;
    return static_cast<std::int32_t>(lexical::parseInteger(*pValue, Limits::min(), Limits::max()).value_or(nDefault));
}

bool XmlElement::getBoolAttribute(std::wstring_view sName, bool bDefault) const
{
    const String* pValue = getAttribute(sName);
    return pValue ? lexical::parseBool(*pValue).value_or(bDefault) : bDefault;
}

void XmlElement::setAttribute(std::wstring_view sNamespace, std::wstring_view sName, std::wstring_view sValue)
{
    for (XmlAttribute& tAttribute : m_vAttributes)
    {
        if (tAttribute.sLocalName != sName || tAttribute.sNamespace != sNamespace)
            continue;
        tAttribute.sValue = sValue;
        tAttribute.tPlace = {};
        return;
    }
    m_vAttributes.push_back({String(sNamespace), String(sName), String(sValue), {}});
}

void XmlElement::setUnsignedAttribute(std::wstring_view sName, std::uint32_t nValue)
{
    setAttribute(sName, std::to_wstring(nValue));
}

void XmlElement::setIntAttribute(std::wstring_view sName, std::int32_t nValue)
{
    setAttribute(sName, std::to_wstring(nValue));
}

void XmlElement::setBoolAttribute(std::wstring_view sName, bool bValue)
{
    setAttribute(sName, bValue ? L"true" : L"false");
}

bool XmlElement::removeAttribute(std::wstring_view sNamespace, std::wstring_view sName)
{
    return std::erase_if(m_vAttributes, [&](const XmlAttribute& tAttribute)
                         { return tAttribute.sLocalName == sName && tAttribute.sNamespace == sNamespace; }) != 0;
}

void XmlElement::declarePrefix(std::wstring_view sPrefix, std::wstring_view sNamespace)
{
    for (XmlPrefix& tPrefix : m_vPrefixes)
    {
        if (tPrefix.sPrefix != sPrefix)
            continue;
        tPrefix.sNamespace = sNamespace;
        return;
    }
    m_vPrefixes.push_back({String(sPrefix), String(sNamespace)});
}

const String* XmlElement::resolvePrefix(std::wstring_view sPrefix) const
{
    static const String s_ksNoNamespace;
    static const String s_ksXmlNamespace = kXmlNamespace;
    if (sPrefix == L"xml")
        return &s_ksXmlNamespace;
    for (const XmlElement* pAt = this; pAt; pAt = pAt->m_pParent)
        if (const XmlPrefix* pDeclared = findDeclared(pAt->m_vPrefixes, sPrefix))
            return &pDeclared->sNamespace;
    return sPrefix.empty() ? &s_ksNoNamespace : nullptr;
}

const String* XmlElement::findPrefix(std::wstring_view sNamespace) const
{
    for (const XmlElement* pAt = this; pAt; pAt = pAt->m_pParent)
    {
        for (const XmlPrefix& tPrefix : pAt->m_vPrefixes)
        {
            // A nearer declaration of the same prefix hides this one.
            if (!tPrefix.sPrefix.empty() && tPrefix.sNamespace == sNamespace &&
                resolvePrefix(tPrefix.sPrefix) == &tPrefix.sNamespace)
                return &tPrefix.sPrefix;
        }
    }
    return nullptr;
}

std::vector<XmlPrefix> XmlElement::prefixesInScope() const
{
    std::vector<XmlPrefix> vPrefixes = m_vPrefixes;
    for (const XmlElement* pAt = m_pParent; pAt; pAt = pAt->m_pParent)
        for (const XmlPrefix& tPrefix : pAt->m_vPrefixes)
            if (!findDeclared(vPrefixes, tPrefix.sPrefix))
                vPrefixes.push_back(tPrefix);
    return vPrefixes;
}

XmlElement* XmlElement::findChild(const XmlQualifiedName& tName)
{
    return const_cast<XmlElement*>(std::as_const(*this).findChild(tName));
}

const XmlElement* XmlElement::findChild(const XmlQualifiedName& tName) const
{
    return findBelow(*this, &tName, &tName + 1);
}

const XmlElement* XmlElement::findPath(std::initializer_list<XmlQualifiedName> vPath) const
{
    return findBelow(*this, vPath.begin(), vPath.end());
}

XmlElement* XmlElement::findPath(std::initializer_list<XmlQualifiedName> vPath)
{
    return const_cast<XmlElement*>(std::as_const(*this).findPath(vPath));
}

XmlElement& XmlElement::addChild(std::wstring_view sNamespace, std::wstring_view sLocalName)
{
    std::shared_ptr<const String> pNamespace =
        *m_pNamespace == sNamespace ? m_pNamespace : std::make_shared<const String>(sNamespace);
    std::unique_ptr<XmlElement> pChild(new XmlElement(std::move(pNamespace), sLocalName));
    pChild->m_pParent = this;
    m_vChildren.push_back(std::move(pChild));
    return *m_vChildren.back();
}

void XmlElement::removeChildren()
{
    releaseChildren();
}

String XmlElement::innerText() const
{
    struct Visit
    {
        const XmlElement* pElement;
        std::size_t nNextChild;
    };
    String sText = m_sText;
    std::vector<Visit> vOpen = {{this, 0}};
    while (!vOpen.empty())
    {
        Visit& tVisit = vOpen.back();
        if (tVisit.nNextChild < tVisit.pElement->m_vChildren.size())
        {
            const XmlElement* pChild = tVisit.pElement->m_vChildren[tVisit.nNextChild++].get();
            sText += pChild->m_sText;
            vOpen.push_back({pChild, 0});
            continue;
        }
        if (tVisit.pElement != this)
            sText += tVisit.pElement->m_sTail;
        vOpen.pop_back();
    }
    return sText;
}

void XmlElement::setInnerText(std::wstring_view sText)
{
    String sCopy(sText);  // the text may be a part of what goes away
    releaseChildren();
    m_sText = std::move(sCopy);
}

void XmlElement::appendText(std::wstring_view sText)
{
    (m_vChildren.empty() ? m_sText : m_vChildren.back()->m_sTail) += sText;
}

bool XmlElement::sameContent(const XmlElement& tLeft, const XmlElement& tRight)
{
    std::vector<std::pair<const XmlElement*, const XmlElement*>> vPending = {{&tLeft, &tRight}};
    while (!vPending.empty())
    {
        const auto [pLeft, pRight] = vPending.back();
        vPending.pop_back();
        if (!sameApartFromChildren(*pLeft, *pRight))
            return false;
        for (std::size_t i = 0; i < pLeft->m_vChildren.size(); ++i)
        {
            if (pLeft->m_vChildren[i]->m_sTail != pRight->m_vChildren[i]->m_sTail)
                return false;
            vPending.emplace_back(pLeft->m_vChildren[i].get(), pRight->m_vChildren[i].get());
        }
    }
    return true;
}

}  // namespace tov
