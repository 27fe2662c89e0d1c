#include "utilities/textmessageformatter.h"

#include <cstddef>
#include <utility>

namespace tov {

namespace {

bool isDigit(wchar_t nChar)
{
    return nChar >= L'0' && nChar <= L'9';
}

struct Place
{
    std::size_t nArgument;
    std::size_t nLength;  // of the place's text; 0: no place
};

// place = "{" ("0" / "1"-"9" [DIGIT]) "}"
Place placeAt(std::wstring_view sText)
{
    if (sText.size() < 3 || !isDigit(sText[1]))
        return {0, 0};
    const std::size_t nFirst = static_cast<std::size_t>(sText[1] - L'0');
    if (sText[2] == L'}')
        return {nFirst, 3};
    if (nFirst == 0 || sText.size() < 4 || !isDigit(sText[2]) || sText[3] != L'}')
        return {0, 0};
    return {nFirst * 10 + static_cast<std::size_t>(sText[2] - L'0'), 4};
}

}  // namespace

MessageFormatter::~MessageFormatter() = default;

void MessageFormatter::fillPlaces(StringBufferBaseTemplate<wchar_t>& tBuffer, std::wstring_view sText,
                                  std::initializer_list<std::wstring_view> vArguments)
{
    while (!sText.empty())
    {
        const std::size_t nBrace = sText.find(L'{');
        tBuffer.append(sText.substr(0, nBrace));
        if (nBrace == std::wstring_view::npos)
            return;
        sText.remove_prefix(nBrace);
        const Place tPlace = placeAt(sText);
        const bool bFilled = tPlace.nLength != 0 && tPlace.nArgument < vArguments.size();
        const std::size_t nTaken = bFilled ? tPlace.nLength : 1;
        tBuffer.append(bFilled ? vArguments.begin()[tPlace.nArgument] : sText.substr(0, nTaken));
        sText.remove_prefix(nTaken);
    }
}

TextMessageFormatter::TextMessageFormatter(MessageTableHandle hTable, std::wstring_view sLanguageTag)
    : m_hTable(std::move(hTable)), m_sLanguageTag(sLanguageTag)
{
}

TextMessageFormatter::~TextMessageFormatter() = default;

void TextMessageFormatter::FormatBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, std::wstring_view sId,
                                        std::wstring_view sBuiltIn,
                                        std::initializer_list<std::wstring_view> vArguments) const
{
    const String* pText = m_hTable.isNull() ? nullptr : m_hTable->findText(sId, m_sLanguageTag);
    fillPlaces(tBuffer, pText ? std::wstring_view(*pText) : sBuiltIn, vArguments);
}

}  // namespace tov
