#include "webbedrock/encoding.h"

#include <gtest/gtest.h>

#include <string>
#include <string_view>

namespace tov {

namespace {

struct TextRow
{
    int nLine;
    std::wstring_view sText;
    std::wstring_view sExpected;
};

template <std::size_t nRows>
void expectEncoded(const W2WEncoding& tEncoding, const TextRow (&aRows)[nRows])
{
    for (const TextRow& tRow : aRows)
    {
        EXPECT_EQ(encodeAsString(tEncoding, tRow.sText.data(), tRow.sText.size()), tRow.sExpected)
            << "row at line " << tRow.nLine;
    }
}

String bytesEncoded(const B2WEncoding& tEncoding, std::string_view sBytes)
{
    return encodeAsString(tEncoding, reinterpret_cast<const unsigned char*>(sBytes.data()), sBytes.size());
}

// What XML and HTML write alike.
constexpr TextRow kMarkupRows[] = {
    {__LINE__, L"", L""},
    {__LINE__, L"a<b", L"a&lt;b"},
    {__LINE__, L"& < > \" '", L"&amp; &lt; &gt; &quot; &#39;"},
    {__LINE__, L"&amp;", L"&amp;amp;"},  // nothing is taken for encoded already
    {__LINE__, L"<<<<<<<<<", L"&lt;&lt;&lt;&lt;&lt;&lt;&lt;&lt;&lt;"},
    {__LINE__, L"1234567<", L"1234567&lt;"},
    {__LINE__, L"12345678<", L"12345678&lt;"},
    {__LINE__, L"plain text, of more than one block", L"plain text, of more than one block"},
    {__LINE__, L"\t\n\r ", L"\t\n\r "},
    {__LINE__, std::wstring_view(L"\0", 1), L"\uFFFD"},
    {__LINE__, L"\x08\x0B\x0C\x0E\x1F", L"\uFFFD\uFFFD\uFFFD\uFFFD\uFFFD"},
    {__LINE__, L"\x7F\x80\x9F\xA0", L"\x7F\x80\x9F\xA0"},
    {__LINE__, L"\u2028\u2029", L"\u2028\u2029"},
    {__LINE__, L"\xD7FF\xD800\xDFFF\xE000", L"\xD7FF\uFFFD\uFFFD\xE000"},
    {__LINE__, L"\xD83D\xDE00", L"\uFFFD\uFFFD"},  // two surrogates are two characters that XML does not have
    {__LINE__, L"\xFFFD\xFFFE\xFFFF\x10000", L"\uFFFD\uFFFD\uFFFD\x10000"},
    {__LINE__, L"\x1FFFE\x1FFFF\x10FFFF", L"\x1FFFE\x1FFFF\x10FFFF"},
    {__LINE__, L"\x110000\x7FFFFFFF\x80000000\xFFFFFFFF", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
    {__LINE__, L"Größe 日本語 😀", L"Größe 日本語 😀"},
};

TEST(Encodings, XMLReplacesMarkupAndWhatXMLDoesNotAllow)
{
    expectEncoded(W2WEncodingSGML(W2WEncodingSGML::kXML), kMarkupRows);
}

TEST(Encodings, HTMLIsEncodedAsXMLIs)
{
    expectEncoded(W2WEncodingSGML(W2WEncodingSGML::kHTML), kMarkupRows);
}

TEST(Encodings, HTMLWithoutBreaksTurnsBlanksAndOnlyThoseIntoNoBreakSpaces)
{
    constexpr TextRow kRows[] = {
        {__LINE__, L"a b  c", L"a&nbsp;b&nbsp;&nbsp;c"},
        {__LINE__, L"\t\n\r\xA0\u2003", L"\t\n\r\xA0\u2003"},
        {__LINE__, L"&<>\"'\x01\xD800", L"&amp;&lt;&gt;&quot;&#39;\uFFFD\uFFFD"},
    };
    expectEncoded(W2WEncodingSGML(W2WEncodingSGML::kHTMLNoBreakSpaces), kRows);
}

TEST(Encodings, XMLWithoutQuotesKeepsTheTwoQuotes)
{
    constexpr TextRow kRows[] = {
        {__LINE__, L"\"it's\" <b> & co", L"\"it's\" &lt;b&gt; &amp; co"},
        {__LINE__, L"\x01\xFFFE\xD800", L"\uFFFD\uFFFD\uFFFD"},
    };
    expectEncoded(W2WEncodingSGML(W2WEncodingSGML::kXMLNoQuotes), kRows);
}

TEST(Encodings, TheModesOfMarkupHaveTheirNumbers)
{
    EXPECT_EQ(W2WEncodingSGML::kXML, 0);
    EXPECT_EQ(W2WEncodingSGML::kHTML, 1);
    EXPECT_EQ(W2WEncodingSGML::kHTMLNoBreakSpaces, 2);
    EXPECT_EQ(W2WEncodingSGML::kXMLNoQuotes, 3);
}

TEST(Encodings, JavaLiteralsEscapeWhatEndsThemOrTheirScript)
{
    constexpr TextRow kRows[] = {
        {__LINE__, L"", L""},
        {__LINE__, L"\\", L"\\\\"},
        {__LINE__, L"\n\r\t\b\f", L"\\n\\r\\t\\b\\f"},
        {__LINE__, L"\"'", L"\\u0022\\u0027"},
        {__LINE__, L"</script>", L"\\u003C/script\\u003E"},
        {__LINE__, L"a & b", L"a & b"},
        {__LINE__, std::wstring_view(L"\0\x01\x0B\x1A\x1F", 5), L"\\u0000\\u0001\\u000B\\u001A\\u001F"},
        {__LINE__, L"\x7E\x7F\x80", L"\x7E\\u007F\x80"},
        {__LINE__, L"\u2027\u2028\u2029\u202A", L"\u2027\\u2028\\u2029\u202A"},
        {__LINE__, L"/ ` $ %", L"/ ` $ %"},
        {__LINE__, L"😀\xD800\xDFFF\xFFFE\x110000", L"😀\xD800\xDFFF\xFFFE\x110000"},
    };
    expectEncoded(W2WEncodingJavaLiteral(), kRows);
}

TEST(Encodings, JavaLiteralsInMarkupEscapeTheAmpersandToo)
{
    constexpr TextRow kRows[] = {
        {__LINE__, L"a & b", L"a \\u0026 b"},
        {__LINE__, L"&quot;", L"\\u0026quot;"},
        {__LINE__, L"\\\"'<>\n\u2028\x7F", L"\\\\\\u0022\\u0027\\u003C\\u003E\\n\\u2028\\u007F"},
    };
    expectEncoded(W2WEncodingJavaLiteral(true), kRows);
}

TEST(Encodings, SQLLiteralsDoubleTheApostropheAndDropNull)
{
    constexpr TextRow kRows[] = {
        {__LINE__, L"", L""},
        {__LINE__, L"O'Brien", L"O''Brien"},
        {__LINE__, L"'", L"''"},
        {__LINE__, L"''", L"''''"},
        {__LINE__, std::wstring_view(L"a\0b\0", 4), L"ab"},
        {__LINE__, std::wstring_view(L"\0", 1), L""},
        {__LINE__, L"\" \\ \n % _ \x7F", L"\" \\ \n % _ \x7F"},
        {__LINE__, L"\u2019\uFF07\xD800\x110000", L"\u2019\uFF07\xD800\x110000"},  // only look like one
    };
    expectEncoded(W2WEncodingSQLLiteral(), kRows);
}

struct BytesRow
{
    int nLine;
    std::string_view sBytes;
    std::wstring_view sExpected;
};

TEST(Encodings, HexWritesTwoUpperCaseDigitsAByte)
{
    constexpr BytesRow kRows[] = {
        {__LINE__, "", L""},
        {__LINE__, std::string_view("\x00\xFF", 2), L"00FF"},
        {__LINE__, "\x09\x0A\x9A\xAB\xF0", L"090A9AABF0"},
    };
    for (const BytesRow& tRow : kRows)
        EXPECT_EQ(bytesEncoded(B2WEncodingHex(), tRow.sBytes), tRow.sExpected) << "row at line " << tRow.nLine;
}

TEST(Encodings, Base64WritesTheVectorsOfItsStandard)
{
    constexpr BytesRow kRows[] = {
        {__LINE__, "", L""},
        {__LINE__, "f", L"Zg=="},
        {__LINE__, "fo", L"Zm8="},
        {__LINE__, "foo", L"Zm9v"},
        {__LINE__, "foob", L"Zm9vYg=="},
        {__LINE__, "fooba", L"Zm9vYmE="},
        {__LINE__, "foobar", L"Zm9vYmFy"},
        {__LINE__, "\xFB\xFF\xBF", L"+/+/"},
        {__LINE__, std::string_view("\x00\xFF", 2), L"AP8="},
        {__LINE__, std::string_view("\x00", 1), L"AA=="},
    };
    for (const BytesRow& tRow : kRows)
        EXPECT_EQ(bytesEncoded(B2TEncodingBase64(), tRow.sBytes), tRow.sExpected) << "row at line " << tRow.nLine;
}

TEST(Encodings, Base64BreaksNoLines)
{
    String sExpected;
    for (int nGroup = 0; nGroup < 1000; ++nGroup)
        sExpected += L"YWJj";
    std::string sBytes;
    for (int nGroup = 0; nGroup < 1000; ++nGroup)
        sBytes += "abc";
    EXPECT_EQ(bytesEncoded(B2TEncodingBase64(), sBytes), sExpected);
}

TEST(Encodings, AnOpenBase64GroupIsCarriedInTheState)
{
    const B2TEncodingBase64 tEncoding;
    const unsigned char aBytes[] = {'f', 'o', 'o', 'b'};
    wchar_t aTarget[4];
    EncodingState tState;
    EXPECT_EQ(tEncoding.encode(aBytes, 2, aTarget, 0, tState), 0u);
    EXPECT_EQ(tState.nPending, 2u);
    EXPECT_EQ(tEncoding.encode(aBytes + 2, 1, aTarget, 3, tState), W2WEncoding::knTooSmall);
    EXPECT_EQ(tState.nPending, 2u);
    EXPECT_EQ(tEncoding.encode(aBytes + 2, 2, aTarget, 4, tState), 4u);
    EXPECT_EQ(std::wstring_view(aTarget, 4), L"Zm9v");
    EXPECT_EQ(tState.nPending, 1u);
    EXPECT_EQ(tEncoding.finish(aTarget, 3, tState), W2WEncoding::knTooSmall);
    EXPECT_EQ(tState.nPending, 1u);
    EXPECT_EQ(tEncoding.finish(aTarget, 4, tState), 4u);
    EXPECT_EQ(std::wstring_view(aTarget, 4), L"Yg==");
    EXPECT_EQ(tEncoding.finish(aTarget, 0, tState), 0u);  // a text has one end
}

TEST(Encodings, OfTextAndHexHaveNoEnd)
{
    EncodingState tState;
    EXPECT_EQ(W2WEncodingSGML(W2WEncodingSGML::kHTML).finish(nullptr, 0, tState), 0u);
    EXPECT_EQ(W2WEncodingJavaLiteral().finish(nullptr, 0, tState), 0u);
    EXPECT_EQ(W2WEncodingSQLLiteral().finish(nullptr, 0, tState), 0u);
    EXPECT_EQ(B2WEncodingHex().finish(nullptr, 0, tState), 0u);
}

TEST(Encodings, AllTakePieces)
{
    EXPECT_TRUE(W2WEncodingSGML(W2WEncodingSGML::kXML).isChunkable());
    EXPECT_TRUE(W2WEncodingJavaLiteral().isChunkable());
    EXPECT_TRUE(W2WEncodingSQLLiteral().isChunkable());
    EXPECT_TRUE(B2WEncodingHex().isChunkable());
    EXPECT_TRUE(B2TEncodingBase64().isChunkable());
}

// Texts that need no escape fit into the estimate at once: a value costs one call.
TEST(Encodings, EstimatesHoldOrdinaryTextAndAllBytes)
{
    for (const std::size_t nLength :
         {std::size_t{1}, std::size_t{2}, std::size_t{3}, std::size_t{64}, std::size_t{999}})
    {
        EXPECT_GE(W2WEncodingSGML(W2WEncodingSGML::kXML).estimateEncodingSize(nLength), nLength);
        EXPECT_GE(W2WEncodingJavaLiteral().estimateEncodingSize(nLength), nLength);
        EXPECT_GE(W2WEncodingSQLLiteral().estimateEncodingSize(nLength), nLength);
        EXPECT_GE(B2WEncodingHex().estimateEncodingSize(nLength), 2 * nLength);
        EXPECT_GE(B2TEncodingBase64().estimateEncodingSize(nLength), (nLength + 2) / 3 * 4);
    }
}

}  // namespace

}  // namespace tov
