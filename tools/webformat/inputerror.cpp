#include "inputerror.h"

#include <algorithm>
#include <cstdio>

namespace tov {

namespace {

constexpr std::size_t knLongestQuote = 60;

bool isContinuation(char nByte)
{
    return (static_cast<unsigned char>(nByte) & 0xC0) == 0x80;
}

void appendShown(std::string& sResult, char nByte)
{
    const unsigned nValue = static_cast<unsigned char>(nByte);
    if (nValue >= 0x20 && nValue != 0x7F)
    {
        sResult += nByte;
        return;
    }
    char aEscape[8];
    std::snprintf(aEscape, sizeof aEscape, "\\x%02X", nValue);
    sResult += aEscape;
}

}  // namespace

std::string InputPlace::text() const
{
    std::string sResult = sFile;
    if (nLine != 0)
        sResult += ":" + std::to_string(nLine);
    if (nLine != 0 && nColumn != 0)
        sResult += ":" + std::to_string(nColumn);
    return sResult;
}

InputError::InputError(const InputPlace& tPlace, const std::string& sMessage)
    : std::runtime_error(tPlace.text() + ": " + sMessage)
{
}

InputError::InputError(const std::string& sMessage) : std::runtime_error(sMessage) {}

std::string quotedForMessage(std::string_view sText)
{
    std::string sResult = "\"";
    std::size_t nCharacters = 0;
    for (const char nByte : sText)
    {
        if (!isContinuation(nByte) && ++nCharacters > knLongestQuote)
        {
            sResult += "...";
            break;
        }
        appendShown(sResult, nByte);
    }
    return sResult + "\"";
}

std::string listForMessage(const std::vector<std::string>& vNames)
{
    constexpr std::size_t knMost = 100;
    std::string sResult;
    for (std::size_t nName = 0; nName < std::min(vNames.size(), knMost); ++nName)
        sResult += (nName == 0 ? "" : ", ") + quotedForMessage(vNames[nName]);
    if (vNames.size() > knMost)
        sResult += ", ...";
    return vNames.empty() ? "none" : sResult;
}

}  // namespace tov
