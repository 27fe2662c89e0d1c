// The encoders walk over texts in vectors of different widths: all of them write the same, whatever stands where.

#include <gtest/gtest.h>

#include <random>
#include <vector>

#include "webbedrock/encoding.h"
#include "webbedrock/vectorescaping.h"

namespace tov {
namespace {

constexpr VectorLevel kLevels[] = {VectorLevel::kPortable, VectorLevel::kV2, VectorLevel::kV3};

// Puts the level back at the end of a test.
class VectorEscaping : public ::testing::Test
{
protected:
    ~VectorEscaping() override { limitVectorLevel(VectorLevel::kV3); }
};

struct Encoder
{
    const char* pName;
    const W2WEncoding& tEncoding;
};

const W2WEncodingSGML kHTML(W2WEncodingSGML::kHTML);
const W2WEncodingSGML kNoBreaks(W2WEncodingSGML::kHTMLNoBreakSpaces);
const W2WEncodingSGML kNoQuotes(W2WEncodingSGML::kXMLNoQuotes);
const W2WEncodingJavaLiteral kScript;
const W2WEncodingJavaLiteral kScriptInMarkup(true);
const W2WEncodingSQLLiteral kStatement;

const Encoder kEncoders[] = {
    {"HTML", kHTML},
    {"no break", kNoBreaks},
    {"no quotes", kNoQuotes},
    {"script", kScript},
    {"script in markup", kScriptInMarkup},
    {"statement", kStatement},
};

// The encoded text, character by character: what no vector sees.
String oneByOne(const W2WEncoding& tEncoding, std::wstring_view sText)
{
    String sResult;
    for (const wchar_t nChar : sText)
        sResult += encodeAsString(tEncoding, &nChar, 1);
    return sResult;
}

// Behind other contents in a buffer of that much room, which may have to grow.
String appended(const W2WEncoding& tEncoding, std::wstring_view sText, std::size_t nRoom)
{
    StringBufferTemplate<wchar_t, 1> tBuffer;
    tBuffer.append(L'|');
    tBuffer.reserveFree(nRoom);
    tEncoding.updateToBuffer(tBuffer, sText.data(), sText.size());
    return tBuffer.toString().substr(1);
}

void expectSame(std::wstring_view sText)
{
    for (const Encoder& tEncoder : kEncoders)
    {
        const String sExpected = oneByOne(tEncoder.tEncoding, sText);
        for (const VectorLevel eLevel : kLevels)
        {
            limitVectorLevel(eLevel);
            const std::string sWhere = std::string(tEncoder.pName) + ", level " +
                                       std::to_string(static_cast<int>(eLevel)) + ", length " +
                                       std::to_string(sText.size());
            ASSERT_EQ(encodeAsString(tEncoder.tEncoding, sText.data(), sText.size()), sExpected) << sWhere;
            for (const std::size_t nRoom : {std::size_t{0}, sText.size(), sExpected.size(), sExpected.size() + 200})
                ASSERT_EQ(appended(tEncoder.tEncoding, sText, nRoom), sExpected) << sWhere << ", room " << nRoom;
            std::vector<wchar_t> vExact(sExpected.size());
            EncodingState tState;
            ASSERT_EQ(tEncoder.tEncoding.encode(sText.data(), sText.size(), vExact.data(), vExact.size(), tState),
                      sExpected.size())
                << sWhere;
            ASSERT_EQ(String(vExact.begin(), vExact.end()), sExpected) << sWhere;
            if (!sExpected.empty())
            {
                ASSERT_EQ(
                    tEncoder.tEncoding.encode(sText.data(), sText.size(), vExact.data(), vExact.size() - 1, tState),
                    W2WEncoding::knTooSmall)
                    << sWhere;
            }
        }
    }
}

constexpr wchar_t kMarked[] =
    L"&<>\"'\\ \t\n\x7F\x01\x1F\x80\xE9\u2027\u2028\u2029\u202A\xD7FF\xD800\xDFFF\xE000\xFFFD"
    L"\xFFFE\xFFFF\x10FFFF\x110000\x2626\x3C3C3C3C\x7FFFFFFF";

TEST_F(VectorEscaping, WritesEveryMarkAtEveryPlaceTheSameAtAllLevels)
{
    std::wstring sMarks(kMarked);
    sMarks += static_cast<wchar_t>(0xFFFFFFFF);  // negative, where characters are signed
    sMarks += static_cast<wchar_t>(0x80000026);
    sMarks += L'\0';
    for (const wchar_t nMark : sMarks)
    {
        for (const std::size_t nLength : {1U, 16U, 17U, 33U, 49U})
        {
            for (std::size_t nPlace = 0; nPlace < nLength; ++nPlace)
            {
                std::wstring sText(nLength, L'x');
                sText[nPlace] = nMark;
                expectSame(sText);
            }
        }
    }
}

TEST_F(VectorEscaping, WritesTextsOfAllLengthsTheSameAtAllLevels)
{
    std::mt19937 tRandom(20241107);
    const std::wstring sMarks(kMarked);
    for (unsigned nPercent : {0U, 3U, 10U, 50U, 100U})
    {
        for (std::size_t nLength = 0; nLength < 100; ++nLength)
        {
            std::wstring sText;
            for (std::size_t n = 0; n < nLength; ++n)
                sText += tRandom() % 100 < nPercent ? sMarks[tRandom() % sMarks.size()]
                                                    : static_cast<wchar_t>(L'a' + tRandom() % 26);
            expectSame(sText);
        }
    }
}

}  // namespace
}  // namespace tov
