#include "xml/xmldocument.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdio>
#include <string>
#include <thread>
#include <vector>

#include "webbedrock/utf8.h"
#include "xml/schemas.h"

namespace tov {
namespace {

std::string repeated(std::string_view sText, std::size_t nTimes)
{
    std::string sResult;
    for (std::size_t i = 0; i < nTimes; ++i)
        sResult += sText;
    return sResult;
}

std::string withAttributes(std::size_t nCount, const char* pPrefix = "a")
{
    std::string sXml = "<e";
    for (std::size_t i = 0; i < nCount; ++i)
        sXml += std::string(" ") + pPrefix + std::to_string(i) + "='u'";
    return sXml + "/>";
}

std::string nested(std::size_t nDepth)
{
    return repeated("<e>", nDepth) + repeated("</e>", nDepth);
}

// `nTags` elements inside each other with `nEach` declarations each.
std::string nestedDeclarations(std::size_t nTags, std::size_t nEach)
{
    std::string sXml;
    for (std::size_t i = 0; i < nTags; ++i)
    {
        sXml += "<e";
        for (std::size_t j = 0; j < nEach; ++j)
            sXml += " xmlns:p" + std::to_string(i * nEach + j) + "='u'";
        sXml += ">";
    }
    return sXml + repeated("</e>", nTags);
}

std::string documentOf(std::size_t nBytes)
{
    return "<a>" + std::string(nBytes - 7, 'x') + "</a>";
}

struct BadRow
{
    int nTestLine;
    std::string sXml;
    const wchar_t* pMessage;  // part of the message
    int nLine;
    int nColumn;
};

void expectRefused(const BadRow& tRow, const XmlParseOptions& tOptions = {})
{
    XmlError tError;
    EXPECT_FALSE(XmlDocument::parse(tRow.sXml, &tError, tOptions)) << "row at line " << tRow.nTestLine;
    EXPECT_NE(tError.sMessage.find(tRow.pMessage), String::npos)
        << "row at line " << tRow.nTestLine << ": " << toUtf8(tError.sMessage);
    EXPECT_EQ(tError.nLine, tRow.nLine) << "row at line " << tRow.nTestLine;
    EXPECT_EQ(tError.nColumn, tRow.nColumn) << "row at line " << tRow.nTestLine;
    EXPECT_FALSE(XmlDocument::parse(tRow.sXml, nullptr, tOptions)) << "row at line " << tRow.nTestLine;
}

TEST(XmlDocument, RefusesWhatIsNotWellFormedAndSaysWhere)
{
    const BadRow kRows[] = {
        {__LINE__, "", L"the document is empty", 1, 1},
        {__LINE__, "\xEF\xBB\xBF", L"the document is empty", 1, 1},
        {__LINE__, "  ", L"Start tag expected", 1, 3},
        {__LINE__, "x<a/>", L"Start tag expected", 1, 1},
        {__LINE__, "<?xml version='1.0'?>", L"Start tag expected", 1, 22},
        {__LINE__, "  <?xml version='1.0'?><a/>", L"XML declaration allowed only at the start", 1, 8},
        {__LINE__, "<a>", L"Premature end of data in tag a line 1", 1, 4},
        {__LINE__, "<a>\n <b>\n", L"Premature end of data in tag b line 2", 3, 1},
        {__LINE__, "<a>\n  <b></c>\n</a>", L"tag mismatch: b line 2 and c", 2, 10},
        {__LINE__, "<a/><b/>", L"Extra content", 1, 5},
        {__LINE__, "<a></a></a>", L"Extra content", 1, 8},
        {__LINE__, "<a/>x", L"Extra content", 1, 5},
        {__LINE__, "</a>", L"invalid element name", 1, 2},
        {__LINE__, "<1/>", L"invalid element name", 1, 2},
        {__LINE__, "<a b='1'\n b='2'/>", L"Attribute b redefined", 1, 1},
        {__LINE__, "<a>\n<b xmlns:p='u' xmlns:q='u' p:x='' q:x=''/></a>", L"Attribute x in 'u' redefined", 2, 1},
        {__LINE__, "<a 1='2'/>", L"error parsing attribute name", 1, 4},
        {__LINE__, "<a b='1'c='2'/>", L"attributes construct error", 1, 9},
        {__LINE__, "<a>\n<x:b/></a>", L"Namespace prefix x on b is not defined", 2, 1},
        {__LINE__, "<a x:b=''/>", L"Namespace prefix x for b on a is not defined", 1, 1},
        {__LINE__, "<a xmlns:p=''/>", L"Empty XML namespace is not allowed", 1, 1},
        {__LINE__, "<a:b:c xmlns:a='urn:a'/>", L"QName", 1, 1},
        {__LINE__, "<a>&foo;</a>", L"Entity 'foo' not defined", 1, 9},
        {__LINE__, "<a b='&foo;'/>", L"Entity 'foo' not defined", 1, 12},
        {__LINE__, "<a>\n&#0;</a>", L"invalid xmlChar value 0", 2, 5},
        {__LINE__, "<a>&#xD800;</a>", L"invalid xmlChar value 55296", 1, 12},
        {__LINE__, "<a>&amp</a>", L"expecting ';'", 1, 8},
        {__LINE__, "<a>a & b</a>", L"no name", 1, 7},
        {__LINE__, "<a>]]></a>", L"']]>' not allowed", 1, 4},
        {__LINE__, "<a><!-- -- --></a>", L"Double hyphen", 1, 9},
        {__LINE__, "<?xml version='2.0'?><a/>", L"Unsupported version", 1, 20},
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow);
}

TEST(XmlDocument, SaysWhatItFoundAndExpectedInATag)
{
    const BadRow kRows[] = {
        {__LINE__, "<a b>", L"found \">\", expected \"=\"", 1, 5},
        {__LINE__, "<a b=1/>", L"found \"1\", expected a value in quotes", 1, 6},
        {__LINE__, "<a\n b='<'/>", L"found \"<\", expected the quote that ends the value", 2, 5},
        {__LINE__, "<a b='1", L"found the end of the document, expected the quote", 1, 8},
        {__LINE__, "<a b='1'", L"found the end of the document, expected an attribute", 1, 9},
        {__LINE__, "<a / >", L"found \"/\", expected an attribute, \"/>\" or \">\"", 1, 4},
        {__LINE__, "<a b=\xC3\xA9>", L"found \"\x00E9\", expected a value in quotes", 1, 6},
        {__LINE__, "<", L"found the end of the document, expected the name of an element", 1, 2},
        {__LINE__, "<a>< b/></a>", L"found \" \", expected the name of an element", 1, 5},
        {__LINE__, "<a></a", L"the tag does not end", 1, 4},
        {__LINE__, "<a>\n <!-- x </a>", L"the comment does not end", 2, 2},
        {__LINE__, "<a><!--></a>", L"the comment does not end", 1, 4},
        {__LINE__, "<a><![CDATA[ x </a>", L"the CDATA section does not end", 1, 4},
        {__LINE__, "<a><?pi </a>", L"the processing instruction does not end", 1, 4},
        {__LINE__, "<a><!ELEMENT a ANY></a>", L"found \"<!\"", 1, 4},
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow);
}

TEST(XmlDocument, RefusesDocumentTypesAndSoAllEntitiesOfADocument)
{
    const std::string sLaughs =
        "<?xml version='1.0'?>\n<!DOCTYPE l [<!ENTITY a 'ha'><!ENTITY b "
        "'&a;&a;&a;&a;&a;&a;&a;&a;&a;&a;'>]>\n<l>&b;</l>";
    const std::string sExternal = "<!DOCTYPE l [<!ENTITY x SYSTEM 'file:///etc/passwd'>]><l>&x;</l>";
    const BadRow kRows[] = {
        {__LINE__, "<!DOCTYPE html><html/>", L"document type declaration", 1, 1},
        {__LINE__, sLaughs, L"document type declaration", 2, 1},
        {__LINE__, sExternal, L"document type declaration", 1, 1},
        {__LINE__, "<a/>\n<!DOCTYPE a>", L"document type declaration", 2, 1},
        {__LINE__, "<!doctype html><html/>", L"found \"<!\"", 1, 1},
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow);
    EXPECT_TRUE(XmlDocument::parse("<a><!-- <!DOCTYPE x> --><![CDATA[<!DOCTYPE x>]]></a>"));
}

TEST(XmlDocument, RefusesEveryEncodingButUtf8)
{
    using namespace std::string_literals;
    const BadRow kRows[] = {
        {__LINE__, "\xFF\xFE<\0a\0/\0>\0"s, L"UTF-16, expected UTF-8", 1, 1},
        {__LINE__, "\xFE\xFF\0<\0a\0/\0>"s, L"UTF-16, expected UTF-8", 1, 1},
        {__LINE__, "<\0a\0/\0>\0"s, L"U+0000 is not allowed", 1, 2},
        {__LINE__, "<?xml version='1.0' encoding='ISO-8859-1'?><a/>", L"\"ISO-8859-1\", expected \"UTF-8\"", 1, 31},
        {__LINE__, "<?xml version=\"1.0\"\n encoding = \"utf-16\"?><a/>", L"\"utf-16\", expected", 2, 14},
        {__LINE__, "<?xml version='1.0' encoding=''?><a/>", L"expected \"UTF-8\"", 1, 31},
        {__LINE__, "<a>\n\xC3\xA9\xFF</a>", L"not UTF-8", 2, 2},
        {__LINE__, "<a>\xC0\xAF</a>", L"not UTF-8", 1, 4},
        {__LINE__, "<a>\xED\xA0\x80</a>", L"not UTF-8", 1, 4},
        {__LINE__, "<a>\xE2\x82", L"not UTF-8", 1, 4},
        {__LINE__, "<a>x\0y</a>"s, L"U+0000 is not allowed", 1, 5},
        {__LINE__, "<a/>\0"s, L"U+0000 is not allowed", 1, 5},
        {__LINE__, "<a>\n\x1F</a>", L"U+001F is not allowed", 2, 1},
        {__LINE__, "<a>\xEF\xBF\xBE</a>", L"U+FFFE is not allowed", 1, 4},
        {__LINE__, "<a>\xEF\xBF\xBF</a>", L"U+FFFF is not allowed", 1, 4},
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow);
    for (const char* pGood : {"\xEF\xBB\xBF<a/>", "<?xml version='1.0' encoding='utf-8'?><a/>",
                              "\xEF\xBB\xBF<?xml version=\"1.0\" encoding=\"UTF-8\" standalone=\"yes\"?><a/>"})
        EXPECT_TRUE(XmlDocument::parse(pGood)) << pGood;
}

TEST(XmlDocument, ColumnsCountCharactersAndLinesEndAtAnyLineBreak)
{
    const BadRow kRows[] = {
        {__LINE__, "<a>\xF0\x9F\x98\x80\xC3\xA9<b c></a>", L"expected \"=\"", 1, 10},
        {__LINE__, "<a>\r\n\r\n <b c></a>", L"expected \"=\"", 3, 6},
        {__LINE__, "<a>\r\r <b c></a>", L"expected \"=\"", 3, 6},
        {__LINE__, "\xEF\xBB\xBF<b c>", L"expected \"=\"", 1, 5},  // the mark is no column
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow);
}

TEST(XmlDocument, HoldsItsLimitsExactly)
{
    EXPECT_TRUE(XmlDocument::parse(nested(256)));
    EXPECT_TRUE(XmlDocument::parse(repeated("<e>", 255) + "<e/><e/>" + repeated("</e>", 255)));
    EXPECT_TRUE(XmlDocument::parse(withAttributes(1000)));
    EXPECT_TRUE(XmlDocument::parse(withAttributes(1000, "xmlns:a")));
    EXPECT_TRUE(XmlDocument::parse(nestedDeclarations(10, 100)));
    EXPECT_TRUE(XmlDocument::parse("<r>" + withAttributes(900, "xmlns:a") + withAttributes(900, "xmlns:a") + "</r>"));
    EXPECT_TRUE(XmlDocument::parse(documentOf(1024 * 1024)));
    EXPECT_TRUE(XmlDocument::parse("<r>" + nestedDeclarations(1, 900) + nestedDeclarations(1, 900) + "</r>"));
    const BadRow kRows[] = {
        {__LINE__, nested(257), L"nested more than 256 deep", 1, 3 * 256 + 1},
        {__LINE__, repeated("<e>", 100'000), L"nested more than 256 deep", 1, 3 * 256 + 1},
        {__LINE__, repeated("<e>", 256) + "<e/>" + repeated("</e>", 256), L"nested more than 256 deep", 1, 769},
        {__LINE__, withAttributes(1001), L"more than 1000 attributes", 1, 8894},
        {__LINE__, nestedDeclarations(11, 100), L"more than 1000 prefix declarations are in scope", 1, 14921},
        {__LINE__, documentOf(1024 * 1024 + 1), L"1048577 bytes, at most 1048576", 1, 1},
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow);
}

TEST(XmlDocument, ElementsAndAttributeValuesKnowTheirPlaces)
{
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(
        "<?xml version='1.0'?>\n<!-- <x a='1'> -->\n<r xmlns:p='urn:p' a = 'one'>\n  <b/><![CDATA[<c>]]><?pi <d>?>"
        "<e\n   p:f='\xC3\xA9' g=\"2\"/></r>");
    ASSERT_TRUE(tDocument);
    const XmlElement& tRoot = tDocument->root();
    EXPECT_EQ(tRoot.lineNumber(), 3);
    EXPECT_EQ(tRoot.columnNumber(), 1);
    EXPECT_EQ(tRoot.attributes()[0].tPlace.nLine, 3);
    EXPECT_EQ(tRoot.attributes()[0].tPlace.nColumn, 25);
    EXPECT_EQ(tRoot.children()[0].columnNumber(), 3);
    const XmlElement& tLast = tRoot.children()[1];
    EXPECT_EQ(tLast.lineNumber(), 4);
    EXPECT_EQ(tLast.columnNumber(), 32);
    EXPECT_EQ(tLast.attributes()[0].tPlace.nLine, 5);
    EXPECT_EQ(tLast.attributes()[0].tPlace.nColumn, 9);
    EXPECT_EQ(tLast.attributes()[1].tPlace.nColumn, 15);
}

TEST(XmlDocument, ReadsReferencesInAttributesAndText)
{
    struct Row
    {
        int nLine;
        const char* pWritten;
        const wchar_t* pExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, "&lt;&gt;&amp;&quot;&apos;", L"<>&\"'"},
        {__LINE__, "&#60;&#x3C;&#38;&#x26;", L"<<&&"},
        {__LINE__, "&amp;lt;", L"&lt;"},
        {__LINE__, "&#38;lt;", L"&lt;"},
        {__LINE__, "&amp;#38;", L"&#38;"},  // what the parser itself writes for "&" inside an attribute
        {__LINE__, "&#38;#38;#38;", L"&#38;#38;"},
        {__LINE__, "&#x1F600;\xC3\xA9", L"\x1F600\xE9"},
        {__LINE__, "a&#10;&#9;&#13;b", L"a\n\t\rb"},
    };
    for (const Row& tRow : kRows)
    {
        const std::optional<XmlDocument> tDocument =
            XmlDocument::parse(std::string("<a b='") + tRow.pWritten + "'>" + tRow.pWritten + "</a>");
        ASSERT_TRUE(tDocument) << "row at line " << tRow.nLine;
        EXPECT_EQ(tDocument->root().getAttributeOr(L"b"), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tDocument->root().innerText(), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

TEST(XmlDocument, LineBreaksAndBlanksAreNormalisedAsXmlSays)
{
    const std::optional<XmlDocument> tDocument = XmlDocument::parse("<a b='1\n2\t3\r\n4'>1\r\n2\r3</a>");
    ASSERT_TRUE(tDocument);
    EXPECT_EQ(tDocument->root().getAttributeOr(L"b"), L"1 2 3 4");
    EXPECT_EQ(tDocument->root().innerText(), L"1\n2\n3");
}

TEST(XmlDocument, AFragmentOfAReportNeedNotDeclareItsPrefixes)
{
    const XmlParseOptions& tOptions = XmlParseOptions::reportFragment();
    const char* kGood[] = {
        "<tov:dataFormat xsi:type='tov:number'/>",
        "<?xml version='1.0'?>\n<tov:dataFormat xsi:type='tov:number'><tovx:expr/></tov:dataFormat>",
        "<tov:dataFormat xmlns:tov='urn:tov:schemas:report:v1' xsi:type='tov:number'/>",
        "<d:dataFormat\n xmlns:d='urn:tov:schemas:report:v1' xsi:type='d:number'></d:dataFormat>",
        "<tov:dataFormat xmlns:xsi = \"http://www.w3.org/2001/XMLSchema-instance\" xsi:type='tov:number'/>",
    };
    for (const char* pGood : kGood)
    {
        XmlError tError;
        const std::optional<XmlDocument> tDocument = XmlDocument::parse(pGood, &tError, tOptions);
        ASSERT_TRUE(tDocument) << pGood << ": " << toUtf8(tError.sMessage);
        EXPECT_TRUE(tDocument->root().hasName(schemas::Report::kqnDataFormat)) << pGood;
        EXPECT_TRUE(tDocument->root().getAttribute(schemas::Instance::kXsiNamespace, L"type")) << pGood;
        EXPECT_EQ(tDocument->root().attributes().size(), 1u) << pGood;
    }
}

TEST(XmlDocument, PredeclaredPrefixesMoveNoPlace)
{
    const BadRow kRows[] = {
        {__LINE__, "<tov:a><b></tov:a>", L"tag mismatch", 1, 19},
        {__LINE__, "<tov:a x='1' x='2'/>", L"Attribute x redefined", 1, 1},
        {__LINE__, "<tov:a>\n <q:b/></tov:a>", L"prefix q", 2, 2},
        {__LINE__, "<tov:a/>x", L"Extra content", 1, 9},
        {__LINE__, "<tov:a/><tov:b/>", L"Extra content", 1, 9},
        {__LINE__, "<tov:a", L"expected an attribute", 1, 7},
        {__LINE__, "<tov:a &='1'/>", L"error parsing attribute name", 1, 8},
        {__LINE__, "<tov:a xmlns:tov=''/>", L"Empty XML namespace", 1, 1},
        {__LINE__, "text", L"Start tag expected", 1, 1},
        {__LINE__, "<tov:a xsi:type='nope:x'/>", L"prefix \"nope\"", 1, 18},
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow, XmlParseOptions::reportFragment());
}

TEST(XmlDocument, ANamespaceMayHoldAnAmpersand)
{
    const std::optional<XmlDocument> tPredeclared = XmlDocument::parse("<a/>", nullptr, {{{L"", L"urn:a&b"}}});
    ASSERT_TRUE(tPredeclared);
    EXPECT_EQ(tPredeclared->root().namespaceUri(), L"urn:a&b");
    const std::optional<XmlDocument> tDeclared = XmlDocument::parse("<p:a xmlns:p='urn:a&amp;b' p:c='1'/>");
    ASSERT_TRUE(tDeclared);
    EXPECT_EQ(tDeclared->root().namespaceUri(), L"urn:a&b");
    EXPECT_EQ(*tDeclared->root().resolvePrefix(L"p"), L"urn:a&b");
    EXPECT_TRUE(tDeclared->root().getAttribute(L"urn:a&b", L"c"));
}

TEST(XmlDocument, AnUndeclaredPrefixInATypeIsAnErrorWhereverItStands)
{
    const std::string sXsi = "xmlns:i='http://www.w3.org/2001/XMLSchema-instance'";
    const BadRow kRows[] = {
        {__LINE__, "<a " + sXsi + " i:type='q:number'/>", L"the prefix \"q\" of the type is not declared", 1, 64},
        {__LINE__, "<a " + sXsi + "><b xmlns:q='u'/>\n<c i:type=' q:n'/></a>", L"the prefix \"q\"", 2, 12},
        {__LINE__, "<a " + sXsi + " i:type=':n'/>", L"the prefix \"\"", 1, 64},
        {__LINE__, "<a i:type='x'/>", L"Namespace prefix i for type on a is not defined", 1, 1},
    };
    for (const BadRow& tRow : kRows)
        expectRefused(tRow);
    EXPECT_TRUE(XmlDocument::parse("<a " + sXsi + " xmlns:q='u'><b i:type='q:x'/><b i:type='x'/><b i:type=''/></a>"));
    EXPECT_TRUE(XmlDocument::parse("<a type='q:x'/>"));
}

TEST(XmlDocument, ErrorsPrintNothing)
{
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    for (const char* pBad :
         {"<a>", "<a b='1' b='2'/>", "<x:a/>", "<a>&foo;</a>", "<!DOCTYPE a><a/>", "<a xmlns:p='r u'/>"})
        EXPECT_FALSE(XmlDocument::parse(pBad)) << pBad;
    EXPECT_TRUE(XmlDocument::parse("<?xml version='1.1'?><a/>")) << "only a warning";
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(XmlDocument, AFileThatCannotBeReadIsAnErrorWithoutAPlace)
{
    XmlError tError = {L"", 7, 7};
    EXPECT_FALSE(XmlDocument::parseFile("/nonexistent/x.xml", &tError));
    EXPECT_EQ(tError.sMessage, L"cannot read the file: No such file or directory");
    EXPECT_EQ(tError.nLine, 0);
    EXPECT_FALSE(XmlDocument::parseFile("/", &tError));
    EXPECT_EQ(tError.sMessage, L"cannot read the file: Is a directory");
    EXPECT_FALSE(XmlDocument::parseFile("/nonexistent/x.xml"));
}

TEST(XmlDocument, AnEndlessFileIsReadUpToTheLimit)
{
    XmlError tError;
    EXPECT_FALSE(XmlDocument::parseFile("/dev/zero", &tError));
    EXPECT_NE(tError.sMessage.find(L"1048577 bytes"), String::npos);
}

TEST(XmlDocument, ManyThreadsParseAndWriteAtTheSameTime)
{
    constexpr int kThreads = 8;
    std::atomic<int> nRight{0};
    std::vector<std::thread> vThreads;
    for (int i = 0; i < kThreads; ++i)
    {
        vThreads.emplace_back(
            [&nRight, i]
            {
                const std::string sXml = "<a n=\"" + std::to_string(i) + "\"><b>" + std::to_string(i) + "</b></a>";
                for (int j = 0; j < 100; ++j)
                {
                    XmlError tError;
                    const std::optional<XmlDocument> tDocument = XmlDocument::parse(sXml, &tError);
                    if (tDocument && XmlDocument::serialize(tDocument->root()) == sXml &&
                        !XmlDocument::parse("<a>&x;</a>", &tError) && tError.nColumn == 7)
                        ++nRight;
                }
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(nRight, kThreads * 100);
}

}  // namespace
}  // namespace tov
