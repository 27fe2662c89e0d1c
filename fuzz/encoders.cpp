// The encoders: every text is read back as it was, a whole is what its pieces are, and no target is written past its
// end.

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "support/decoders.h"
#include "webbedrock/assertion.h"
#include "webbedrock/encoding.h"
#include "webbedrock/vectorescaping.h"

namespace {

using namespace tov;

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

void stopAtAssertion(const char*, const char*, int)
{
    std::abort();
}

// Three bytes of choices, then the payload.
struct Choices
{
    std::uint8_t nEncoder;
    std::uint8_t nBefore;  // characters that stand in the buffer before
    std::uint8_t nPiece;   // one less than the length of a piece
};

constexpr std::size_t kChoiceBytes = 3;

// The payload in units of four bytes as they come, or a character a byte, where the upper bytes stand for characters
// with a meaning.
String textOf(const std::uint8_t* pData, std::size_t nSize, bool bFourBytes)
{
    constexpr std::uint32_t kUpper[16] = {0x2027, 0x2028, 0x2029, 0xD7FF, 0xD800,   0xDC00,   0xDFFF, 0xE000,
                                          0xFFFD, 0xFFFE, 0xFFFF, 0x7F,   0x10FFFF, 0x110000, 0xE9,   0xFFFFFFFF};
    String sText;
    if (bFourBytes)
    {
        sText.resize(nSize / sizeof(wchar_t));
        std::copy_n(pData, sText.size() * sizeof(wchar_t), reinterpret_cast<std::uint8_t*>(sText.data()));
        return sText;
    }
    for (std::size_t nAt = 0; nAt < nSize; ++nAt)
        sText.push_back(static_cast<wchar_t>(pData[nAt] < 0xF0 ? pData[nAt] : kUpper[pData[nAt] & 0xF]));
    return sText;
}

// Whole, behind other contents, in pieces and into a target of the exact size: always the same.
template <class Source>
String encodedAtOneLevel(const Encoding<Source, wchar_t>& tEncoding, const Source* pSource, std::size_t nSource,
                         const Choices& tChoices)
{
    const String sWhole = encodeAsString(tEncoding, pSource, nSource);

    StringBufferTemplate<wchar_t, 100> tBuffer;
    tBuffer.appendRepeated(L'-', tChoices.nBefore);
    tEncoding.updateToBuffer(tBuffer, pSource, nSource);
    require(tBuffer.toString() == String(tChoices.nBefore, L'-') + sWhole);

    EncodingState tState;
    std::vector<wchar_t> vTarget(sWhole.size());
    std::size_t nWritten = 0;
    for (std::size_t nAt = 0; nAt < nSource; nAt += tChoices.nPiece + 1u)
    {
        const std::size_t nPiece = std::min<std::size_t>(tChoices.nPiece + 1u, nSource - nAt);
        nWritten +=
            tEncoding.encode(pSource + nAt, nPiece, vTarget.data() + nWritten, vTarget.size() - nWritten, tState);
        require(nWritten <= vTarget.size());
    }
    nWritten += tEncoding.finish(vTarget.data() + nWritten, vTarget.size() - nWritten, tState);
    require(String(vTarget.begin(), vTarget.end()) == sWhole && nWritten == sWhole.size());

    EncodingState tWholeState;
    std::vector<wchar_t> vTooSmall(sWhole.empty() ? 0 : sWhole.size() - 1);
    const std::size_t nResult = tEncoding.encode(pSource, nSource, vTooSmall.data(), vTooSmall.size(), tWholeState);
    const bool bAllButTheEnd = nResult + 4 == sWhole.size();  // base64 without its last group
    require(sWhole.empty() || nResult == W2WEncoding::knTooSmall || bAllButTheEnd);
    return sWhole;
}

// The same with vectors of every width.
template <class Source>
String encodedInAllWays(const Encoding<Source, wchar_t>& tEncoding, const Source* pSource, std::size_t nSource,
                        const Choices& tChoices)
{
    limitVectorLevel(VectorLevel::kPortable);
    const String sPortable = encodedAtOneLevel(tEncoding, pSource, nSource, tChoices);
    for (const VectorLevel eLevel : {VectorLevel::kV2, VectorLevel::kV3})
    {
        limitVectorLevel(eLevel);
        require(encodedAtOneLevel(tEncoding, pSource, nSource, tChoices) == sPortable);
    }
    return sPortable;
}

String withXMLCharactersOnly(String sText)
{
    for (wchar_t& nChar : sText)
        nChar = isXMLCharacter(static_cast<std::uint32_t>(nChar)) ? nChar : 0xFFFD;
    return sText;
}

void checkMarkup(const String& sText, const Choices& tChoices, W2WEncodingSGML::SGMLType eType)
{
    const String sEncoded = encodedInAllWays(W2WEncodingSGML(eType), sText.data(), sText.size(), tChoices);
    require(decodeMarkup(sEncoded, eType != W2WEncodingSGML::kXMLNoQuotes) == withXMLCharactersOnly(sText));
}

void checkJavaLiteral(const String& sText, const Choices& tChoices, bool bMarkup)
{
    const String sEncoded = encodedInAllWays(W2WEncodingJavaLiteral(bMarkup), sText.data(), sText.size(), tChoices);
    require(decodeJavaLiteral(sEncoded) == sText);
    require(sEncoded.find_first_of(bMarkup ? L"<>&\"'" : L"<>\"'") == String::npos);
}

void checkSQLLiteral(String sText, const Choices& tChoices)
{
    const String sEncoded = encodedInAllWays(W2WEncodingSQLLiteral(), sText.data(), sText.size(), tChoices);
    std::erase(sText, L'\0');
    require(decodeSQLLiteral(sEncoded) == sText);
}

void checkBytes(const std::vector<unsigned char>& vBytes, const Choices& tChoices)
{
    require(decodeHex(encodedInAllWays(B2WEncodingHex(), vBytes.data(), vBytes.size(), tChoices)) == vBytes);
    require(decodeBase64(encodedInAllWays(B2TEncodingBase64(), vBytes.data(), vBytes.size(), tChoices)) == vBytes);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < kChoiceBytes)
        return 0;
    Assertion::setHandler(&stopAtAssertion);
    const Choices tChoices{pData[0], pData[1], pData[2]};
    const std::uint8_t* const pPayload = pData + kChoiceBytes;
    const String sText = textOf(pPayload, nSize - kChoiceBytes, (tChoices.nEncoder & 8) != 0);
    switch (tChoices.nEncoder & 7)
    {
    case 4:
    case 5: checkJavaLiteral(sText, tChoices, (tChoices.nEncoder & 1) != 0); break;
    case 6: checkSQLLiteral(sText, tChoices); break;
    case 7: checkBytes(std::vector<unsigned char>(pPayload, pData + nSize), tChoices); break;
    default: checkMarkup(sText, tChoices, static_cast<W2WEncodingSGML::SGMLType>(tChoices.nEncoder & 3));
    }
    return 0;
}
