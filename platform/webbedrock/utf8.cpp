#include "webbedrock/utf8.h"

#include <array>

namespace tov {

namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool isScalarValue(char32_t nCode)
{
    return nCode < 0xD800 || (nCode > 0xDFFF && nCode <= 0x10FFFF);
}

void appendUtf8(std::string& sBytes, char32_t nCode)
{
    if (nCode < 0x80)
    {
        sBytes.push_back(static_cast<char>(nCode));
        return;
    }
    const int nTail = nCode < 0x800 ? 1 : nCode < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned char, 4> kLead = {0, 0xC0, 0xE0, 0xF0};
    sBytes.push_back(static_cast<char>(kLead[nTail] | (nCode >> (6 * nTail))));
    for (int nShift = 6 * (nTail - 1); nShift >= 0; nShift -= 6)
        sBytes.push_back(static_cast<char>(0x80 | ((nCode >> nShift) & 0x3F)));
}

struct Lead
{
    int nTail;        // continuation bytes; -1 where no sequence starts so
    char32_t nBits;   // the lead byte's own bits
    char32_t nLeast;  // the smallest code that needs this length
};

Lead leadOf(unsigned char nByte)
{
    if (nByte < 0x80)
        return {0, nByte, 0};
    if (nByte >= 0xC2 && nByte < 0xE0)
        return {1, static_cast<char32_t>(nByte & 0x1F), 0x80};
    if (nByte >= 0xE0 && nByte < 0xF0)
        return {2, static_cast<char32_t>(nByte & 0x0F), 0x800};
    if (nByte >= 0xF0 && nByte < 0xF5)
        return {3, static_cast<char32_t>(nByte & 0x07), 0x10000};
    return {-1, 0, 0};
}

// Reads the sequence at `nAt` and moves behind it; no value where it is not well-formed.
std::optional<wchar_t> readCode(std::string_view sBytes, std::size_t& nAt)
{
    const Lead tLead = leadOf(static_cast<unsigned char>(sBytes[nAt]));
    if (tLead.nTail < 0 || sBytes.size() - nAt <= static_cast<std::size_t>(tLead.nTail))
        return std::nullopt;
    char32_t nCode = tLead.nBits;
    for (int i = 1; i <= tLead.nTail; ++i)
    {
        const unsigned char nByte = static_cast<unsigned char>(sBytes[nAt + i]);
        if ((nByte & 0xC0) != 0x80)
            return std::nullopt;
        nCode = (nCode << 6) | (nByte & 0x3F);
    }
    if (nCode < tLead.nLeast || !isScalarValue(nCode))
        return std::nullopt;
    nAt += 1 + tLead.nTail;
    return static_cast<wchar_t>(nCode);
}

}  // namespace

std::string toUtf8(std::wstring_view sText)
{
    std::string sBytes;
    sBytes.reserve(sText.size());
    for (const wchar_t nChar : sText)
    {
        const char32_t nCode = static_cast<char32_t>(nChar);
        appendUtf8(sBytes, isScalarValue(nCode) ? nCode : static_cast<char32_t>(kReplacement));
    }
    return sBytes;
}

std::optional<String> fromUtf8(std::string_view sBytes, std::size_t* pnBad)
{
    String sText;
    sText.reserve(sBytes.size());
    for (std::size_t nAt = 0; nAt < sBytes.size();)
    {
        const std::size_t nStart = nAt;
        const std::optional<wchar_t> tCode = readCode(sBytes, nAt);
        if (!tCode)
        {
            if (pnBad)
                *pnBad = nStart;
            return std::nullopt;
        }
        sText.push_back(*tCode);
    }
    return sText;
}

}  // namespace tov
