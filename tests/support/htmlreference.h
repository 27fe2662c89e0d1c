#pragma once

#include <string>
#include <utility>
#include <vector>

#include "webbedrock/string.h"

namespace tov {

// HTML as text, cut HTML and bracket tags, done in the plainest way, character by character and without a thought of
// the time it takes: what the library's own walks are compared with. All texts end at their first U+0000.
class HtmlReference
{
public:
    static String text(const String& sHtml)
    {
        String sResult;
        std::size_t nAt = 0;
        while (nAt < sHtml.size())
        {
            if (sHtml[nAt] == L'<')
                nAt = behindTag(sHtml, nAt);
            else
                nAt = showCharacter(sResult, sHtml, nAt);
        }
        return sResult;
    }

    static String cutText(const String& sHtml, unsigned long nLimit)
    {
        const String sText = text(sHtml);
        if (sHtml.size() < nLimit || sText.size() < nLimit)
            return sText;
        return sText.substr(0, nLimit) + L"...";
    }

    static String cutHtml(const String& sHtml, unsigned long nLimit)
    {
        if (sHtml.size() < nLimit)
            return L"<span title=\"" + encoded(text(sHtml)) + L"\">" + sHtml + L"</span>";
        return L"<span>" + visiblePart(sHtml, nLimit).first +
               L"</span><span class=\"ZoomInEnable\"><span "
               L"onclick=\"rudex.FormFields.CommentField.clickButton(event);\" fullText=\"" +
               encoded(text(sHtml)) + L"\">&nbsp;&nbsp;&nbsp;&nbsp;&nbsp;</span></span>";
    }

    // The part with its dots, and how many characters were counted.
    static std::pair<String, unsigned long> visiblePart(const String& sHtml, unsigned long nLimit)
    {
        String sResult;
        std::vector<String> vOpen;
        unsigned long nCount = 0;
        std::size_t nAt = 0;
        while (nCount < nLimit && nAt < sHtml.size())
        {
            const std::size_t nEnd = behindCopied(vOpen, sHtml, nAt);
            const bool bEntity = sHtml[nAt] == L'&';
            sResult += nEnd != nAt ? sHtml.substr(nAt, nEnd - nAt) : encoded(sHtml.substr(nAt, 1));
            nCount += nEnd == nAt || bEntity ? 1 : 0;
            nAt = nEnd == nAt ? nAt + 1 : nEnd;
        }
        for (; !vOpen.empty(); vOpen.pop_back())
            sResult += L"</" + vOpen.back() + L">";
        return {sResult + L"...", nCount};
    }

    // Whether there was a tag, and the text.
    static std::pair<bool, String> withHtmlTags(String sText)
    {
        bool bFound = false;
        for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
        {
            const std::size_t nEnd = sText.find(L']', nAt);
            if (sText[nAt] != L'[' || nEnd == String::npos)
                continue;
            const String sName = lower(sText.substr(nAt + 1, nEnd - nAt - 1));
            if (sName != L"b" && sName != L"/b" && sName != L"i" && sName != L"/i" && sName != L"u" && sName != L"/u" &&
                sName != L"br/")
                continue;
            sText[nAt] = L'<';
            sText[nEnd] = L'>';
            bFound = true;
        }
        return {bFound, sText};
    }

private:
    static String lower(String sText)
    {
        for (wchar_t& nChar : sText)
            nChar = nChar >= L'A' && nChar <= L'Z' ? nChar - L'A' + L'a' : nChar;
        return sText;
    }

    static bool isBlank(wchar_t nChar)
    {
        return nChar == L' ' || nChar == L'\t' || nChar == L'\n' || nChar == L'\v' || nChar == L'\f' || nChar == L'\r';
    }

    static bool isLetter(wchar_t nChar) { return (nChar >= L'a' && nChar <= L'z') || (nChar >= L'A' && nChar <= L'Z'); }

    static String nameIn(const String& sTag)
    {
        std::size_t nEnd = 0;
        while (nEnd < sTag.size() && !isBlank(sTag[nEnd]) && sTag[nEnd] != L'/')
            ++nEnd;
        return lower(sTag.substr(0, nEnd));
    }

    static bool isSelfClosing(String sTag)
    {
        while (!sTag.empty() && isBlank(sTag.back()))
            sTag.pop_back();
        return !sTag.empty() && sTag.back() == L'/';
    }

    static std::size_t behindTag(const String& sHtml, std::size_t nAt)
    {
        const std::size_t nEnd = sHtml.find(L'>', nAt);
        if (nEnd == String::npos)
            return sHtml.size();
        const String sTag = sHtml.substr(nAt + 1, nEnd - nAt - 1);
        const String sName = nameIn(sTag);
        const bool bHidden = sName == L"script" || sName == L"object" || sName == L"style" || sName == L"embed";
        return bHidden && !isSelfClosing(sTag) ? behindElement(sHtml, nEnd + 1, sName) : nEnd + 1;
    }

    static std::size_t behindElement(const String& sHtml, std::size_t nAt, const String& sName)
    {
        for (; nAt < sHtml.size(); ++nAt)
        {
            const std::size_t nEnd = sHtml.find(L'>', nAt);
            if (nEnd == String::npos)
                break;
            if (sHtml.compare(nAt, 2, L"</") == 0 && nameIn(sHtml.substr(nAt + 2, nEnd - nAt - 2)) == sName)
                return nEnd + 1;
        }
        return sHtml.size();
    }

    static std::size_t showCharacter(String& sResult, const String& sHtml, std::size_t nAt)
    {
        const std::pair<const wchar_t*, wchar_t> kEntities[] = {{L"&nbsp;", L' '}, {L"&lt;", L'<'},
                                                                {L"&gt;", L'>'},   {L"&apos;", L'\''},
                                                                {L"&quot;", L'"'}, {L"&amp;", L'&'}};
        for (const auto& [pName, nChar] : kEntities)
        {
            const String sName = pName;
            if (lower(sHtml.substr(nAt, sName.size())) == sName)
            {
                sResult += nChar;
                return nAt + sName.size();
            }
        }
        sResult += sHtml[nAt];
        return nAt + 1;
    }

    static String encoded(const String& sText)
    {
        String sResult;
        for (const wchar_t nChar : sText)
        {
            const unsigned long nCode = static_cast<unsigned long>(static_cast<unsigned int>(nChar));
            const bool bAllowed = nCode == 9 || nCode == 10 || nCode == 13 || (nCode >= 0x20 && nCode < 0xD800) ||
                                  (nCode > 0xDFFF && nCode < 0xFFFE) || (nCode > 0xFFFF && nCode <= 0x10FFFF);
            sResult += nChar == L'&'    ? L"&amp;"
                       : nChar == L'<'  ? L"&lt;"
                       : nChar == L'>'  ? L"&gt;"
                       : nChar == L'"'  ? L"&quot;"
                       : nChar == L'\'' ? L"&#39;"
                       : bAllowed       ? String(1, nChar)
                                        : String(1, L'\xFFFD');
        }
        return sResult;
    }

    // The end of what is copied unchanged at `nAt`, which is `nAt` where the one character is written encoded.
    static std::size_t behindCopied(std::vector<String>& vOpen, const String& sHtml, std::size_t nAt)
    {
        const wchar_t nNext = nAt + 1 < sHtml.size() ? sHtml[nAt + 1] : L'\0';
        const std::size_t nEnd = sHtml.find(L'>', nAt);
        if (sHtml[nAt] == L'&')
        {
            const std::size_t nSemicolon = sHtml.find(L';', nAt);
            return nSemicolon != String::npos && nSemicolon - nAt <= 5 ? nSemicolon + 1 : nAt;
        }
        if (sHtml[nAt] != L'<')
            return nAt;
        if (nNext == L'!')
        {
            const std::size_t nComment = sHtml.find(L"-->", nAt + 2);
            return nComment == String::npos ? nAt : nComment + 3;
        }
        if (nEnd == String::npos)
            return nAt;
        if (isLetter(nNext))
        {
            if (sHtml[nEnd - 1] != L'/')
                vOpen.push_back(sHtml.substr(nAt + 1, nEnd - nAt - 1));
            return nEnd + 1;
        }
        if (nNext != L'/' || vOpen.empty() || sHtml.substr(nAt + 2, nEnd - nAt - 2) != vOpen.back())
            return nAt;
        vOpen.pop_back();
        return nEnd + 1;
    }
};

}  // namespace tov
