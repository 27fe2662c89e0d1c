#include "webbedrock/utf8.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

namespace tov {

namespace {

constexpr wchar_t kReplacement = 0xFFFD;

bool isScalarValue(char32_t nCode)
{
    return nCode < 0xD800 || (nCode > 0xDFFF && nCode <= 0x10FFFF);
}

// Writes a scalar value above ASCII at `pTo` and returns the place behind it.
char* writeSequence(char* pTo, char32_t nCode)
{
    const int nTail = nCode < 0x800 ? 1 : nCode < 0x10000 ? 2 : 3;
    constexpr std::array<unsigned char, 4> kLead = {0, 0xC0, 0xE0, 0xF0};
    *pTo++ = static_cast<char>(kLead[nTail] | (nCode >> (6 * nTail)));
    for (int nShift = 6 * (nTail - 1); nShift >= 0; nShift -= 6)
        *pTo++ = static_cast<char>(0x80 | ((nCode >> nShift) & 0x3F));
    return pTo;
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

// The first byte from `nAt` on that is not ASCII.
std::size_t endOfAscii(std::string_view sBytes, std::size_t nAt)
{
    constexpr std::uint64_t knNotAscii = 0x8080808080808080;
    for (std::uint64_t nEight = 0; sBytes.size() - nAt >= sizeof nEight; nAt += sizeof nEight)
    {
        std::memcpy(&nEight, sBytes.data() + nAt, sizeof nEight);
        if (nEight & knNotAscii)
            break;
    }
    while (nAt < sBytes.size() && static_cast<unsigned char>(sBytes[nAt]) < 0x80)
        ++nAt;
    return nAt;
}

// Hands runs of ASCII and other characters to two functions; the offset of the first bad sequence, or the end.
template <class Run, class Character>
std::size_t walk(std::string_view sBytes, const Run& tRun, const Character& tCharacter)
{
    for (std::size_t nAt = 0; nAt < sBytes.size();)
    {
        const std::size_t nEnd = endOfAscii(sBytes, nAt);
        tRun(sBytes.substr(nAt, nEnd - nAt));
        for (nAt = nEnd; nAt < sBytes.size() && static_cast<unsigned char>(sBytes[nAt]) >= 0x80;)
        {
            const std::optional<wchar_t> tCode = readCode(sBytes, nAt);
            if (!tCode)
                return nAt;
            tCharacter(*tCode);
        }
    }
    return sBytes.size();
}

bool isWhole(std::string_view sBytes, std::size_t nEnd, std::size_t* pnBad)
{
    if (nEnd != sBytes.size() && pnBad)
        *pnBad = nEnd;
    return nEnd == sBytes.size();
}

}  // namespace

void appendUtf8(std::string& sBytes, std::wstring_view sText)
{
    constexpr std::size_t knPiece = 64;
    std::array<char, knPiece * 4> aPiece;
    while (!sText.empty())
    {
        const std::wstring_view sPiece = sText.substr(0, knPiece);
        sText.remove_prefix(sPiece.size());
        char* pEnd = aPiece.data();
        for (const wchar_t nChar : sPiece)
        {
            const char32_t nCode = static_cast<char32_t>(nChar);
            if (nCode < 0x80)
                *pEnd++ = static_cast<char>(nCode);
            else
                pEnd = writeSequence(pEnd, isScalarValue(nCode) ? nCode : static_cast<char32_t>(kReplacement));
        }
        sBytes.append(aPiece.data(), static_cast<std::size_t>(pEnd - aPiece.data()));
    }
}

std::string toUtf8(std::wstring_view sText)
{
    std::string sBytes;
    sBytes.reserve(sText.size());
    appendUtf8(sBytes, sText);
    return sBytes;
}

bool isUtf8(std::string_view sBytes, std::size_t* pnBad)
{
    return isWhole(sBytes,
                   walk(
                       sBytes, [](std::string_view) {}, [](wchar_t) {}),
                   pnBad);
}

bool appendFromUtf8(String& sText, std::string_view sBytes, std::size_t* pnBad)
{
    const std::size_t nBefore = sText.size();
    // There are never more characters than bytes.
    sText.resize(nBefore + sBytes.size());
    wchar_t* pTo = sText.data() + nBefore;
    const auto appendRun = [&pTo](std::string_view sRun)
    {
        pTo = std::transform(sRun.begin(), sRun.end(), pTo,
                             [](char nByte) { return static_cast<wchar_t>(static_cast<unsigned char>(nByte)); });
    };
    const std::size_t nEnd = walk(sBytes, appendRun, [&pTo](wchar_t nCharacter) { *pTo++ = nCharacter; });
    const bool bWhole = isWhole(sBytes, nEnd, pnBad);
    sText.resize(bWhole ? static_cast<std::size_t>(pTo - sText.data()) : nBefore);
    return bWhole;
}

std::optional<String> fromUtf8(std::string_view sBytes, std::size_t* pnBad)
{
    String sText;
    if (!appendFromUtf8(sText, sBytes, pnBad))
        return std::nullopt;
    return sText;
}

}  // namespace tov
