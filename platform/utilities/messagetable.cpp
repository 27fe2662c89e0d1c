#include "utilities/messagetable.h"

#include <utility>
#include <vector>

namespace tov {

namespace {

String languageKey(std::wstring_view sTag)
{
    String sKey(sTag);
    for (wchar_t& nChar : sKey)
    {
        if (nChar >= L'A' && nChar <= L'Z')
            nChar += L'a' - L'A';
        else if (nChar == L'_')
            nChar = L'-';
    }
    return sKey;
}

struct Entry
{
    String sLanguage;
    String sId;
    String sText;
};

bool fail(XmlError* pError, const XmlElement& tElement, String sMessage)
{
    if (pError)
        *pError = {std::move(sMessage), tElement.lineNumber(), tElement.columnNumber()};
    return false;
}

bool checkName(const XmlElement& tElement, const wchar_t* pExpected, XmlError* pError)
{
    return tElement.localName() == pExpected ||
           fail(pError, tElement, L"found <" + tElement.localName() + L">, expected <" + pExpected + L">");
}

bool readMessage(const XmlElement& tMessage, const String& sLanguage, std::vector<Entry>& vEntries, XmlError* pError)
{
    if (!checkName(tMessage, L"message", pError))
        return false;
    const String sId = tMessage.getAttributeOr(L"id");
    if (sId.empty())
        return fail(pError, tMessage, L"found a message without an id, expected the attribute \"id\"");
    if (!tMessage.children().empty())
        return fail(pError, tMessage.children()[0], L"found an element in a message, expected text");
    vEntries.push_back({sLanguage, sId, tMessage.text()});
    return true;
}

bool readLanguage(const XmlElement& tLanguage, std::vector<Entry>& vEntries, XmlError* pError)
{
    if (!checkName(tLanguage, L"language", pError))
        return false;
    const String sLanguage = tLanguage.getAttributeOr(L"tag");
    for (const XmlElement& tMessage : tLanguage.children())
        if (!readMessage(tMessage, sLanguage, vEntries, pError))
            return false;
    return true;
}

}  // namespace

MessageTable::~MessageTable() = default;

const String* MessageTable::findText(std::wstring_view sId, std::wstring_view sLanguageTag) const
{
    std::pair<String, String> tKey(languageKey(sLanguageTag), sId);
    for (;;)
    {
        const auto tFound = m_tTexts.find(tKey);
        if (tFound != m_tTexts.end())
            return &tFound->second;
        if (tKey.first.empty())
            return nullptr;
        const std::size_t nCut = tKey.first.rfind(L'-');
        tKey.first.resize(nCut == String::npos ? 0 : nCut);
    }
}

void MessageTable::addText(std::wstring_view sLanguageTag, std::wstring_view sId, std::wstring_view sText)
{
    m_tTexts[{languageKey(sLanguageTag), String(sId)}] = sText;
}

bool MessageTable::addFile(const XmlDocument& tDocument, XmlError* pError)
{
    if (!checkName(tDocument.root(), L"messages", pError))
        return false;
    std::vector<Entry> vEntries;
    for (const XmlElement& tLanguage : tDocument.root().children())
        if (!readLanguage(tLanguage, vEntries, pError))
            return false;
    for (const Entry& tEntry : vEntries)
        addText(tEntry.sLanguage, tEntry.sId, tEntry.sText);
    return true;
}

}  // namespace tov
