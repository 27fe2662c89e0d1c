// Every encoder over every 32-bit character that matters, in every mode, judged by decoders that know nothing of it.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <optional>
#include <random>
#include <string>
#include <vector>

#include "support/decoders.h"
#include "webbedrock/encoding.h"

namespace tov {

namespace {

using Code = std::uint32_t;

// All of Unicode's code space, surrogates included, and what lies outside of it.
const String& allCodes()
{
    static const String s_sCodes = []
    {
        String sCodes;
        for (Code nCode = 0; nCode <= 0x10FFFF; ++nCode)
            sCodes.push_back(static_cast<wchar_t>(nCode));
        for (const Code nCode : {0x110000u, 0x110001u, 0x11FFFFu, 0x200000u, 0x10000026u, 0x7FFFFFFFu, 0x80000000u,
                                 0x80000026u, 0x8000003Cu, 0xFFFFFF80u, 0xFFFFFFFEu, 0xFFFFFFFFu})
            sCodes.push_back(static_cast<wchar_t>(nCode));
        return sCodes;
    }();
    return s_sCodes;
}

String itself(Code nCode)
{
    return String(1, static_cast<wchar_t>(nCode));
}

String markupWithoutQuotes(Code nCode)
{
    switch (nCode)
    {
    case '&': return L"&amp;";
    case '<': return L"&lt;";
    case '>': return L"&gt;";
    default: return isXMLCharacter(nCode) ? itself(nCode) : L"\uFFFD";
    }
}

String markup(Code nCode)
{
    return nCode == '"' ? L"&quot;" : nCode == '\'' ? L"&#39;" : markupWithoutQuotes(nCode);
}

String markupWithoutBreaks(Code nCode)
{
    return nCode == ' ' ? L"&nbsp;" : markup(nCode);
}

String javaLiteral(Code nCode)
{
    const std::string sLetters = "nrtbf";
    const std::size_t nLetter =
        nCode < 0x80 ? std::string("\n\r\t\b\f").find(static_cast<char>(nCode)) : std::string::npos;
    if (nLetter != std::string::npos)
        return String(L"\\") + static_cast<wchar_t>(sLetters[nLetter]);
    if (nCode == '\\')
        return L"\\\\";
    const bool bEscaped = nCode < 0x20 || nCode == '"' || nCode == '\'' || nCode == '<' || nCode == '>' ||
                          nCode == 0x7F || nCode == 0x2028 || nCode == 0x2029;
    if (!bEscaped)
        return itself(nCode);
    char aText[16];
    const int nLength = std::snprintf(aText, sizeof(aText), "\\u%04X", nCode);
    return String(aText, aText + nLength);
}

String javaLiteralInMarkup(Code nCode)
{
    return nCode == '&' ? L"\\u0026" : javaLiteral(nCode);
}

String sqlLiteral(Code nCode)
{
    return nCode == 0 ? L"" : nCode == '\'' ? L"''" : itself(nCode);
}

// What is left of a character once it was encoded and decoded.
String afterMarkup(Code nCode)
{
    return isXMLCharacter(nCode) ? itself(nCode) : L"\uFFFD";
}

String afterSQL(Code nCode)
{
    return nCode == 0 ? String() : itself(nCode);
}

std::optional<String> decodeAttribute(std::wstring_view sText)
{
    return decodeMarkup(sText, true);
}

std::optional<String> decodeContent(std::wstring_view sText)
{
    return decodeMarkup(sText, false);
}

struct Mode
{
    const char* pName;
    std::shared_ptr<const W2WEncoding> pEncoding;
    String (*pExpected)(Code);
    String (*pAfter)(Code);
    std::optional<String> (*pDecode)(std::wstring_view);
};

std::vector<Mode> modes()
{
    const auto tMarkup = [](W2WEncodingSGML::SGMLType eType) { return std::make_shared<W2WEncodingSGML>(eType); };
    return {
        {"XML", tMarkup(W2WEncodingSGML::kXML), &markup, &afterMarkup, &decodeAttribute},
        {"HTML", tMarkup(W2WEncodingSGML::kHTML), &markup, &afterMarkup, &decodeAttribute},
        {"HTMLNoBreakSpaces", tMarkup(W2WEncodingSGML::kHTMLNoBreakSpaces), &markupWithoutBreaks, &afterMarkup,
         &decodeAttribute},
        {"XMLNoQuotes", tMarkup(W2WEncodingSGML::kXMLNoQuotes), &markupWithoutQuotes, &afterMarkup, &decodeContent},
        {"JavaLiteral", std::make_shared<W2WEncodingJavaLiteral>(), &javaLiteral, &itself, &decodeJavaLiteral},
        {"JavaLiteralInMarkup", std::make_shared<W2WEncodingJavaLiteral>(true), &javaLiteralInMarkup, &itself,
         &decodeJavaLiteral},
        {"SQLLiteral", std::make_shared<W2WEncodingSQLLiteral>(), &sqlLiteral, &afterSQL, &decodeSQLLiteral},
    };
}

class EncodingProof : public testing::TestWithParam<Mode>
{
protected:
    static String each(const String& sText, String (*pEach)(Code))
    {
        String sResult;
        for (const wchar_t nChar : sText)
            sResult += pEach(static_cast<Code>(nChar));
        return sResult;
    }

    static String expected(const String& sText) { return each(sText, GetParam().pExpected); }

    static const W2WEncoding& encoding() { return *GetParam().pEncoding; }

    // Encodes into a target of exactly `nCapacity` characters; what stands behind it must stay.
    static std::size_t encode(const String& sText, String& sTarget, std::size_t nCapacity)
    {
        constexpr wchar_t kGuard = 0x5A5A5A5A;
        sTarget.assign(nCapacity + 1, kGuard);
        EncodingState tState;
        tState.nPending = 1;
        const std::size_t nWritten = encoding().encode(sText.data(), sText.size(), sTarget.data(), nCapacity, tState);
        EXPECT_EQ(tState.nPending, 1u);
        EXPECT_EQ(sTarget[nCapacity], kGuard);
        return nWritten;
    }

    // What an 8-character block and its surroundings may meet: each kind of replaced character and its neighbours.
    static const String& interestingCodes()
    {
        static const String s_sCodes =
            L"& <>\"'\\aZ~\t\n\r\b\f\x0B\x1F\x7F\x80\u00E9\u2027\u2028\u2029\u202A\uFFFD\xFFFE"
            L"\xFFFF\xD7FF\xD800\xDBFF\xDC00\xDFFF\xE000\x10000\x10FFFF\x110000\xFFFFFFFF" +
            String(1, L'\0');
        return s_sCodes;
    }
};

TEST_P(EncodingProof, EveryCharacterAloneIsWrittenAsTheTableSays)
{
    String sTarget;
    std::size_t nWrong = 0;
    for (const wchar_t nChar : allCodes())
    {
        const String sText(1, nChar);
        const String sExpected = GetParam().pExpected(static_cast<Code>(nChar));
        const bool bRight = encode(sText, sTarget, sExpected.size()) == sExpected.size() &&
                            sTarget.compare(0, sExpected.size(), sExpected) == 0;
        const bool bRefused =
            sExpected.empty() || encode(sText, sTarget, sExpected.size() - 1) == W2WEncoding::knTooSmall;
        nWrong += bRight && bRefused ? 0 : 1;
        ASSERT_LT(nWrong, 10u) << "U+" << std::hex << static_cast<Code>(nChar);
    }
    EXPECT_EQ(nWrong, 0u);
}

TEST_P(EncodingProof, AllCharactersInOneTextAreReadBackAsTheyWere)
{
    const String sExpected = expected(allCodes());
    const String sAfter = each(allCodes(), GetParam().pAfter);

    StringBufferTemplate<wchar_t, 256> tBuffer;
    encoding().updateToBuffer(tBuffer, allCodes().data(), allCodes().size());
    EXPECT_TRUE(tBuffer.view() == sExpected);
    EXPECT_TRUE(GetParam().pDecode(tBuffer.view()) == sAfter);
    EXPECT_TRUE(encodeAsString(encoding(), allCodes().data(), allCodes().size()) == sExpected);

    String sTarget;
    ASSERT_EQ(encode(allCodes(), sTarget, sExpected.size()), sExpected.size());
    EXPECT_TRUE(sTarget.compare(0, sExpected.size(), sExpected) == 0);
    EXPECT_EQ(encode(allCodes(), sTarget, sExpected.size() - 1), W2WEncoding::knTooSmall);
}

TEST_P(EncodingProof, ACharacterIsWrittenAlikeWhereverItStands)
{
    for (const wchar_t nChar : interestingCodes())
    {
        for (std::size_t nLength = 1; nLength <= 26; ++nLength)
        {
            for (std::size_t nAt = 0; nAt < nLength; ++nAt)
            {
                String sText(nLength, L'x');
                sText[nAt] = nChar;
                StringBufferTemplate<wchar_t, 20> tBuffer;
                encoding().updateToBuffer(tBuffer, sText.data(), sText.size());
                ASSERT_EQ(tBuffer.toString(), expected(sText))
                    << "U+" << std::hex << static_cast<Code>(nChar) << " at " << std::dec << nAt << " of " << nLength;
            }
        }
    }
}

TEST_P(EncodingProof, PiecesWithOneStateAreTheWhole)
{
    const String sText = interestingCodes() + String(30, L'x') + interestingCodes();
    const String sExpected = expected(sText);
    for (std::size_t nPiece = 1; nPiece <= sText.size(); ++nPiece)
    {
        String sResult;
        EncodingState tState;
        for (std::size_t nAt = 0; nAt < sText.size(); nAt += nPiece)
        {
            const std::size_t nLength = std::min(nPiece, sText.size() - nAt);
            wchar_t aTarget[1000];
            const std::size_t nWritten = encoding().encode(sText.data() + nAt, nLength, aTarget, 1000, tState);
            ASSERT_NE(nWritten, W2WEncoding::knTooSmall);
            sResult.append(aTarget, nWritten);
        }
        ASSERT_EQ(sResult, sExpected) << "pieces of " << nPiece;
    }
}

TEST_P(EncodingProof, ATargetIsTooSmallExactlyBelowTheEncodedLength)
{
    const String sText = interestingCodes() + L"and clean text";
    const String sExpected = expected(sText);
    String sTarget;
    for (std::size_t nCapacity = 0; nCapacity < sExpected.size(); ++nCapacity)
        ASSERT_EQ(encode(sText, sTarget, nCapacity), W2WEncoding::knTooSmall) << "capacity " << nCapacity;
    for (std::size_t nCapacity = sExpected.size(); nCapacity < 8 * sText.size(); ++nCapacity)
    {
        ASSERT_EQ(encode(sText, sTarget, nCapacity), sExpected.size()) << "capacity " << nCapacity;
        ASSERT_EQ(sTarget.substr(0, sExpected.size()), sExpected) << "capacity " << nCapacity;
    }
}

template <std::size_t nInline>
String encodedBehind(const W2WEncoding& tEncoding, const String& sText, std::size_t nBefore)
{
    StringBufferTemplate<wchar_t, nInline> tBuffer;
    tBuffer.appendRepeated(L'-', nBefore);
    tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
    EXPECT_EQ(tBuffer.toString().substr(0, nBefore), String(nBefore, L'-'));
    return tBuffer.toString().substr(nBefore);
}

TEST_P(EncodingProof, RandomTextsAreTheSameInBuffersOfAllSizes)
{
    std::mt19937 tRandom(20240229);
    const auto nBelow = [&](std::size_t nLimit) { return static_cast<std::size_t>(tRandom()) % nLimit; };
    for (int nRound = 0; nRound < 1000; ++nRound)
    {
        const std::size_t nClean = 1 + nBelow(20);
        String sText(nBelow(700), L'x');
        for (wchar_t& nChar : sText)
            nChar = nBelow(nClean) == 0 ? interestingCodes()[nBelow(interestingCodes().size())] : L'a' + nBelow(26);
        const String sExpected = expected(sText);
        ASSERT_EQ(encodedBehind<1>(encoding(), sText, 0), sExpected) << "round " << nRound;
        ASSERT_EQ(encodedBehind<256>(encoding(), sText, nBelow(300)), sExpected) << "round " << nRound;
        ASSERT_EQ(encodedBehind<511>(encoding(), sText, nBelow(512)), sExpected) << "round " << nRound;
        ASSERT_EQ(encodedBehind<5000>(encoding(), sText, nBelow(10)), sExpected) << "round " << nRound;
        ASSERT_EQ(GetParam().pDecode(sExpected), each(sText, GetParam().pAfter)) << "round " << nRound;
    }
}

INSTANTIATE_TEST_SUITE_P(AllModes, EncodingProof, testing::ValuesIn(modes()),
                         [](const auto& tInfo) { return std::string(tInfo.param.pName); });

// No encoded character may be a markup one, whatever was encoded for an attribute.
TEST(EncodingProofOfMarkup, NoRawMarkupCharacterIsLeft)
{
    const String sXML = encodeAsString(W2WEncodingSGML(W2WEncodingSGML::kXML), allCodes().data(), allCodes().size());
    EXPECT_EQ(sXML.find_first_of(L"<>\"'"), String::npos);
    const String sScript = encodeAsString(W2WEncodingJavaLiteral(true), allCodes().data(), allCodes().size());
    EXPECT_EQ(sScript.find_first_of(L"<>\"'&"), String::npos);
}

std::vector<unsigned char> someBytes(std::size_t nLength)
{
    std::vector<unsigned char> vBytes;
    for (std::size_t nAt = 0; nAt < nLength; ++nAt)
        vBytes.push_back(static_cast<unsigned char>(nAt * 167 + nLength));
    return vBytes;
}

struct BytesMode
{
    const char* pName;
    std::shared_ptr<const B2WEncoding> pEncoding;
    std::optional<std::vector<unsigned char>> (*pDecode)(std::wstring_view);
    std::size_t (*pLength)(std::size_t);
};

class EncodingProofOfBytes : public testing::TestWithParam<BytesMode>
{
};

TEST_P(EncodingProofOfBytes, EveryLengthIsReadBack)
{
    for (std::size_t nLength = 0; nLength <= 800; ++nLength)
    {
        const std::vector<unsigned char> vBytes = someBytes(nLength);
        const String sText = encodeAsString(*GetParam().pEncoding, vBytes.data(), vBytes.size());
        ASSERT_EQ(sText.size(), GetParam().pLength(nLength)) << nLength;
        ASSERT_EQ(GetParam().pDecode(sText), vBytes) << nLength;
    }
}

TEST_P(EncodingProofOfBytes, EveryTripleOfEdgeBytesIsReadBack)
{
    for (std::uint32_t nBits = 0; nBits < 1u << 24; nBits += 251)
    {
        const unsigned char aBytes[] = {static_cast<unsigned char>(nBits >> 16), static_cast<unsigned char>(nBits >> 8),
                                        static_cast<unsigned char>(nBits)};
        const String sText = encodeAsString(*GetParam().pEncoding, aBytes, 3);
        ASSERT_EQ(GetParam().pDecode(sText), std::vector<unsigned char>(aBytes, aBytes + 3)) << nBits;
    }
}

TEST_P(EncodingProofOfBytes, PiecesWithOneStateAreTheWholeAndTooSmallTargetsLeaveTheState)
{
    const B2WEncoding& tEncoding = *GetParam().pEncoding;
    const std::vector<unsigned char> vBytes = someBytes(100);
    const String sWhole = encodeAsString(tEncoding, vBytes.data(), vBytes.size());
    for (std::size_t nPiece = 1; nPiece <= vBytes.size(); ++nPiece)
    {
        String sResult;
        EncodingState tState;
        wchar_t aTarget[300];
        for (std::size_t nAt = 0; nAt < vBytes.size(); nAt += nPiece)
        {
            const std::size_t nLength = std::min(nPiece, vBytes.size() - nAt);
            std::size_t nCapacity = 0;
            std::size_t nWritten = 0;
            while ((nWritten = tEncoding.encode(&vBytes[nAt], nLength, aTarget, nCapacity, tState)) ==
                   B2WEncoding::knTooSmall)
                ++nCapacity;
            ASSERT_EQ(nWritten, nCapacity);
            sResult.append(aTarget, nWritten);
        }
        sResult.append(aTarget, tEncoding.finish(aTarget, 4, tState));
        ASSERT_EQ(sResult, sWhole) << "pieces of " << nPiece;
    }
}

INSTANTIATE_TEST_SUITE_P(AllModes, EncodingProofOfBytes,
                         testing::Values(BytesMode{"Hex", std::make_shared<B2WEncodingHex>(), &decodeHex,
                                                   [](std::size_t nLength) { return 2 * nLength; }},
                                         BytesMode{"Base64", std::make_shared<B2TEncodingBase64>(), &decodeBase64,
                                                   [](std::size_t nLength) { return (nLength + 2) / 3 * 4; }}),
                         [](const auto& tInfo) { return std::string(tInfo.param.pName); });

}  // namespace

}  // namespace tov
