#include "xml/domhelper.h"

#include "xml/lexical.h"
#include "xml/schemas.h"
#include "xml/xsitype.h"

namespace tov {

namespace {

// A prefix for the namespace that hides nothing where the element stands: its usual one, else ns1, ns2, ...
String freePrefix(const XmlElement& tElement, std::wstring_view sNamespace)
{
    const wchar_t* pUsual = schemas::usualPrefix(sNamespace);
    if (pUsual && !tElement.resolvePrefix(pUsual))
        return pUsual;
    for (int i = 1;; ++i)
    {
        String sPrefix = L"ns" + std::to_wstring(i);
        if (!tElement.resolvePrefix(sPrefix))
            return sPrefix;
    }
}

String prefixFor(XmlElement& tElement, std::wstring_view sNamespace)
{
    if (const String* pPrefix = tElement.findPrefix(sNamespace))
        return *pPrefix;
    String sPrefix = freePrefix(tElement, sNamespace);
    tElement.declarePrefix(sPrefix, sNamespace);
    return sPrefix;
}

}  // namespace

XsiTypeName splitXsiType(std::wstring_view sValue)
{
    const std::wstring_view sName = lexical::trim(sValue);
    const std::size_t nColon = sName.find(L':');
    if (nColon == std::wstring_view::npos)
        return {{}, sName, false};
    return {sName.substr(0, nColon), sName.substr(nColon + 1), true};
}

bool isXsiTypeDeclared(const XmlElement& tElement, const XsiTypeName& tName)
{
    return !tName.bPrefixed || (!tName.sPrefix.empty() && tElement.resolvePrefix(tName.sPrefix));
}

String DOMHelper::getXsiType(const XmlElement& tElement, std::wstring_view sDefault)
{
    const String* pValue = tElement.getAttribute(schemas::Instance::kXsiNamespace, schemas::Instance::kType);
    if (!pValue)
        return String(sDefault);
    const XsiTypeName tName = splitXsiType(*pValue);
    return String(isXsiTypeDeclared(tElement, tName) ? tName.sLocalName : sDefault);
}

void DOMHelper::setXsiType(XmlElement& tElement, std::wstring_view sNamespace, std::wstring_view sName)
{
    String sValue(sName);
    if (!sNamespace.empty())
        sValue = prefixFor(tElement, sNamespace) + L":" + sValue;
    tElement.setAttribute(schemas::Instance::kXsiNamespace, schemas::Instance::kType, sValue);
}

XmlElement& DOMHelper::forceElement(XmlElement& tParent, const XmlQualifiedName& tName)
{
    XmlElement* pChild = tParent.findChild(tName);
    return pChild ? *pChild : tParent.addChild(tName);
}

}  // namespace tov
