// The sections of multi-output formats: what is picked is the same as what a reader that goes character by character
// picks.

#include <cstdint>
#include <cstdlib>
#include <string>
#include <vector>

#include "webformat/valueformatter.h"

namespace {

using namespace tov;
using Types = ValueFormatterTypes;

struct Section
{
    int nType;
    String sText;
};

int typeOfTag(String sWord)
{
    for (wchar_t& nChar : sWord)
        nChar = nChar >= L'A' && nChar <= L'Z' ? nChar + 32 : nChar;
    const String aWords[] = {L"text", L"html", L"xml", L"java", L"pdf"};
    for (int nType = 0; nType < 5; ++nType)
    {
        if (sWord == aWords[nType])
            return nType;
    }
    return -1;
}

std::vector<Section> sectionsOf(const String& sFormat)
{
    std::vector<Section> vSections = {{0, L""}};
    for (std::size_t i = 0; i < sFormat.size(); ++i)
    {
        String& sText = vSections.back().sText;
        if (sFormat[i] == L'\'')
        {
            sText += sFormat.substr(i++, 2);
            continue;
        }
        if (sFormat[i] != L'[')
        {
            sText += sFormat[i];
            continue;
        }
        String sWord;
        std::size_t nEnd = i + 1;
        for (; nEnd < sFormat.size() && sFormat[nEnd] != L']'; ++nEnd)
            sWord += sFormat[nEnd];
        if (const int nType = typeOfTag(sWord); nType >= 0)
            vSections.push_back({nType, L""});
        else
            sText += sFormat.substr(i, nEnd + 1 - i);
        i = nEnd;
    }
    return vSections;
}

String expected(const String& sFormat, int nWanted, int& nFound)
{
    const std::vector<Section> vSections = sectionsOf(sFormat);
    const bool bLastHtml =
        (nWanted == Types::kXLSX || nWanted == Types::kPDF) && vSections.back().nType == Types::kHTML;
    String sText;
    bool bMatched = bLastHtml;
    for (const Section& tSection : vSections)
    {
        const bool bMatches = tSection.nType == nWanted || (bLastHtml && &tSection == &vSections.back());
        bMatched |= bMatches;
        if (bMatches)
            sText += tSection.sText;
    }
    nFound = bLastHtml ? Types::kHTML : nWanted;
    return bMatched ? sText : expected(sFormat, Types::kText, nFound);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    const String sFormat(pData, pData + nSize);
    for (int nWanted = Types::kText; nWanted < Types::kLastType; ++nWanted)
    {
        int nExpected = -1;
        const String sExpected = expected(sFormat, nWanted, nExpected);
        Types::OutputType eFound = Types::kLastType;
        if (WebValueFormatter::GetOutputFormatString(sFormat, static_cast<Types::OutputType>(nWanted), eFound) !=
                sExpected ||
            eFound != nExpected)
            std::abort();
    }
    return 0;
}
