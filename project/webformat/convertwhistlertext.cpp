#include <algorithm>
#include <string_view>

#include "webformat/convertwhistlerformat.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/convertwhistlerformat";

struct WhistlerTextFormat
{
    std::wstring_view pFormatString;
    WebTextFormatDefinition::Type eType;
};

constexpr WhistlerTextFormat kpWhistlerTextFormats[] = {
    {L"", WebTextFormatDefinition::kPlainText},
    {L"@", WebTextFormatDefinition::kPlainText},
    {L"@N", WebTextFormatDefinition::kPlainNBSPText},
    {L"@H", WebTextFormatDefinition::kHTML},
    {LR"("<a href=\"http://"@H"\">"@"</a>";;@)", WebTextFormatDefinition::kHypertextLinkPrependHttp},
    {LR"("<a href=\""@H"\">"@"</a>";;@)", WebTextFormatDefinition::kHypertextLink},
    {LR"("<a href=\"mailto:"@H"\">"@"</a>";;@)", WebTextFormatDefinition::kMailToAddress},
    {LR"("<img src=\""@H"\"></img>";;@)", WebTextFormatDefinition::kImageURL},
};

// The section of the older notation that was for text is the third; here it follows its tag.
constexpr std::wstring_view kFirstSection = L"[html]";
constexpr std::wstring_view kSemicolons[] = {L";", L"[text]", L";"};

// The end of the quoted text that starts at `nStart`: behind its closing quote.
std::size_t endOfQuoted(std::wstring_view sFormat, std::size_t nStart)
{
    std::size_t nAt = nStart + 1;
    while (nAt < sFormat.size() && sFormat[nAt] != L'"')
        nAt += sFormat[nAt] == L'\\' ? 2 : 1;
    return std::min(nAt + 1, sFormat.size());
}

std::size_t endOfPiece(std::wstring_view sFormat, std::size_t nStart)
{
    switch (sFormat[nStart])
    {
    case L'"': return endOfQuoted(sFormat, nStart);
    case L'\\': return std::min(nStart + 2, sFormat.size());
    default: return nStart + 1;
    }
}

String converted(std::wstring_view sFormat)
{
    String sResult(kFirstSection);
    std::size_t nSemicolons = 0;
    for (std::size_t nStart = 0, nEnd = 0; nStart < sFormat.size(); nStart = nEnd)
    {
        nEnd = endOfPiece(sFormat, nStart);
        if (sFormat[nStart] != L';')
            sResult += sFormat.substr(nStart, nEnd - nStart);
        else if (nSemicolons < std::size(kSemicolons))
            sResult += kSemicolons[nSemicolons++];
    }
    return sResult;
}

}  // namespace

WebValueFormatDefinitionHandle WebConvertWhistlerFormat::ConvertTextFormat(
    const WebWhistlerFormatDefinition& tDefinition)
{
    const String& sFormat = tDefinition.GetFormatString();
    const auto tKnown = std::find_if(std::begin(kpWhistlerTextFormats), std::end(kpWhistlerTextFormats),
                                     [&](const WhistlerTextFormat& tEntry) { return tEntry.pFormatString == sFormat; });
    if (tKnown != std::end(kpWhistlerTextFormats))
        return WEBFORMAT_NEW(kSource) WebTextFormatDefinition(tKnown->eType);
    return WEBFORMAT_NEW(kSource) WebCustomFormatDefinition(converted(sFormat));
}

}  // namespace tov
