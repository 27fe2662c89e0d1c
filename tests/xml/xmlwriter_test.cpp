#include <gtest/gtest.h>

#include <random>
#include <string>

#include "support/collected.h"
#include "webbedrock/utf8.h"
#include "xml/domhelper.h"
#include "xml/schemas.h"
#include "xml/xmldocument.h"

namespace tov {
namespace {

using schemas::Expression;
using schemas::Report;

std::string reread(const char* pXml)
{
    XmlError tError;
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(pXml, &tError);
    return tDocument ? XmlDocument::serialize(tDocument->root()) : toUtf8(tError.sMessage);
}

TEST(XmlWriter, WritesWhatItReads)
{
    const char* kDocuments[] = {
        "<a/>",
        "<a b=\"1\" c=\"2\"/>",
        "<a c=\"2\" b=\"1\"/>",
        "<a>1<b>2</b>3<c/>4</a>",
        "<a xmlns=\"urn:d\"><b/></a>",
        "<a xmlns=\"urn:d\"><b xmlns=\"\"><c/></b></a>",
        "<p:a xmlns:p=\"urn:p\" p:b=\"1\"><p:c/></p:a>",
        "<p:a xmlns:p=\"urn:1\"><p:a xmlns:p=\"urn:2\" xmlns:q=\"urn:1\"><q:b/></p:a></p:a>",
        "<a xmlns=\"urn:d\" xmlns:p=\"urn:d\" p:b=\"1\"/>",
        "<p:a xmlns:p=\"urn:a&amp;b\" p:c=\"1\"><p:d/></p:a>",
        "<a xml:lang=\"de\" xml:id=\"x\"><b xml:id=\"x\"/></a>",
        "<a b=\"&lt;&amp;&quot;'&gt;\">&lt;&amp;\"'&gt;</a>",
        "<a b=\"&#10;&#13;&#9;\">&#13;\n\t</a>",
        "<\xCB\xA9 \xE0\xBF\xBF.1-=\"\"/>",  // names of the fifth edition
        "<a b=\"\xC3\xA9\xF0\x9F\x98\x80\">\xE2\x82\xAC</a>",
    };
    for (const char* pXml : kDocuments)
    {
        EXPECT_EQ(reread(pXml), pXml);
    }
}

TEST(XmlWriter, PutsDeclarationsFirstAndPrefersTheDefaultNamespaceForElements)
{
    EXPECT_EQ(reread("<a b='1' xmlns:p='urn:p'></a>"), "<a xmlns:p=\"urn:p\" b=\"1\"/>");
    EXPECT_EQ(reread("<p:a xmlns:p='urn:d' xmlns='urn:d' p:b='1'/>"),
              "<a xmlns:p=\"urn:d\" xmlns=\"urn:d\" p:b=\"1\"/>");
}

TEST(XmlWriter, GivesTheKnownNamespacesTheirUsualPrefixes)
{
    XmlElement tElement(Report::kqnDataFormat);
    tElement.setAttribute(L"customFormat", L"#,##0 \"&\" <\x20AC>");
    tElement.addChild(Report::kqnCurrencyTagColumn).addChild(Expression::kqnExpr).setInnerText(L"Sales.\"Tag\" & 'x'");
    EXPECT_EQ(XmlDocument::serialize(tElement),
              "<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" customFormat=\"#,##0 &quot;&amp;&quot; "
              "&lt;\xE2\x82\xAC&gt;\"><tov:currencyTagColumn><tovx:expr xmlns:tovx=\"urn:tov:schemas:expression:v1\">"
              "Sales.\"Tag\" &amp; 'x'</tovx:expr></tov:currencyTagColumn></tov:dataFormat>");
}

TEST(XmlWriter, MakesUpPrefixesThatHideNothing)
{
    XmlElement tElement(L"urn:one", L"a");
    tElement.setAttribute(L"urn:two", L"b", L"1");
    tElement.addChild(L"urn:two", L"c").addChild(L"", L"d");
    EXPECT_EQ(XmlDocument::serialize(tElement),
              "<ns1:a xmlns:ns1=\"urn:one\" xmlns:ns2=\"urn:two\" ns2:b=\"1\"><ns2:c><d/></ns2:c></ns1:a>");
    XmlElement tTaken(Report::kqnReport);
    tTaken.declarePrefix(L"tov", L"urn:other");
    EXPECT_EQ(XmlDocument::serialize(tTaken),
              "<ns1:report xmlns:tov=\"urn:other\" xmlns:ns1=\"urn:tov:schemas:report:v1\"/>");
}

TEST(XmlWriter, AnElementInNoNamespaceStaysOutOfTheDefaultOne)
{
    XmlElement tElement(L"urn:d", L"a");
    tElement.declarePrefix(L"", L"urn:d");
    tElement.addChild(L"", L"b").addChild(L"urn:d", L"c");
    EXPECT_EQ(XmlDocument::serialize(tElement),
              "<a xmlns=\"urn:d\"><b xmlns=\"\"><ns1:c xmlns:ns1=\"urn:d\"/></b></a>");
    XmlElement tContradiction(L"", L"a");
    tContradiction.declarePrefix(L"", L"urn:d");
    EXPECT_EQ(XmlDocument::serialize(tContradiction), "<a/>");
}

TEST(XmlWriter, APartOfATreeTakesThePrefixesInScopeAlong)
{
    const std::optional<XmlDocument> tDocument = XmlDocument::parse(
        "<r xmlns:q='urn:q' xmlns:i='http://www.w3.org/2001/XMLSchema-instance'><e i:type='q:x'>t</e>tail</r>");
    ASSERT_TRUE(tDocument);
    const std::string sPart = XmlDocument::serialize(tDocument->root().children()[0]);
    EXPECT_EQ(sPart, "<e xmlns:q=\"urn:q\" xmlns:i=\"http://www.w3.org/2001/XMLSchema-instance\" i:type=\"q:x\">t</e>");
    ASSERT_TRUE(XmlDocument::parse(sPart));
}

TEST(XmlWriter, ReplacesWhatXmlDoesNotAllow)
{
    XmlElement tElement(L"", L"a");
    const wchar_t kBad[] = {L'x', 0, 1, 8, 0xB, 0xC, 0x1F, 0xD800, 0xDFFF, 0xFFFE, 0xFFFF, 0x110000, L'y'};
    const String sBad(std::begin(kBad), std::end(kBad));
    tElement.setAttribute(L"b", sBad);
    tElement.addChild(L"", L"c");
    tElement.appendText(sBad);
    const std::optional<XmlDocument> tRead = XmlDocument::parse(XmlDocument::serialize(tElement));
    ASSERT_TRUE(tRead);
    const String sReplaced = L"x" + String(11, 0xFFFD) + L"y";
    EXPECT_EQ(tRead->root().getAttributeOr(L"b"), sReplaced);
    EXPECT_EQ(tRead->root().innerText(), sReplaced);
}

TEST(XmlWriter, NamesThatAreNoneAreReportedAndWrittenAsAnUnderscore)
{
    XmlElement tElement(L"", L"a b");
    tElement.setAttribute(L"", L"1");
    tElement.setAttribute(L"x='", L"2");
    tElement.addChild(L"", L"p:c");
    const CollectedAssertions tAssertions;
    const std::string sXml = XmlDocument::serialize(tElement);
    EXPECT_EQ(sXml, "<_ _=\"2\"><_/></_>");
    ASSERT_EQ(tAssertions.count(), 4u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "bIsName");
    EXPECT_EQ(tAssertions.all()[0].sSource, "xml/xmlwriter");
}

TEST(XmlWriter, WritesDeepTreesWithoutRecursion)
{
    constexpr int kDepth = 10'000;
    XmlElement tRoot(L"", L"e");
    XmlElement* pAt = &tRoot;
    for (int i = 1; i < kDepth; ++i)
        pAt = &pAt->addChild(L"", L"e");
    std::string sExpected;
    for (int i = 1; i < kDepth; ++i)
        sExpected += "<e>";
    sExpected += "<e/>";
    for (int i = 1; i < kDepth; ++i)
        sExpected += "</e>";
    EXPECT_TRUE(XmlDocument::serialize(tRoot) == sExpected);
}

// Trees of random shape whose texts are made of the characters that give writers trouble.
class TreeMaker
{
public:
    XmlElement make()
    {
        XmlElement tRoot(pick(kNamespaces), pick(kNames));
        fill(tRoot, 0);
        return tRoot;
    }

private:
    static constexpr const wchar_t* kNamespaces[] = {L"", L"urn:a&'", L"urn:b", Report::kTovNamespace};
    static constexpr const wchar_t* kNames[] = {L"a", L"b", L"_c", L"\xE9t\xE9", L"d.e-f"};
    static constexpr const wchar_t* kPrefixes[] = {L"", L"p", L"tov", L"ns1"};
    static constexpr const wchar_t* kTexts[] = {L"",     L"x",      L"<",     L"&amp;",  L"&#38;", L"]]>",     L"\r\n",
                                                L"\t",   L"\"'",    L"<!--",  L"-->",    L"\xE9",  L"\x1F600", L" ",
                                                L"\x85", L"\x2028", L"<?x?>", L"\xFFFD", L"{}",    L"\xA0"};

    template <std::size_t n>
    const wchar_t* pick(const wchar_t* const (&aFrom)[n])
    {
        return aFrom[m_tRandom() % n];
    }

    String text()
    {
        String sText;
        for (unsigned i = m_tRandom() % 4; i > 0; --i)
            sText += pick(kTexts);
        return sText;
    }

    void fill(XmlElement& tElement, int nDepth)
    {
        for (unsigned i = m_tRandom() % 3; i > 0; --i)
            tElement.declarePrefix(pick(kPrefixes), kNamespaces[1 + m_tRandom() % 3]);
        for (unsigned i = m_tRandom() % 4; i > 0; --i)
            tElement.setAttribute(pick(kNamespaces), pick(kNames), text());
        tElement.appendText(text());
        for (unsigned i = nDepth < 5 ? m_tRandom() % 4 : 0; i > 0; --i)
        {
            fill(tElement.addChild(pick(kNamespaces), pick(kNames)), nDepth + 1);
            tElement.appendText(text());
        }
    }

    std::mt19937 m_tRandom{20240305};
};

TEST(XmlWriter, WhatIsWrittenReadsBackAsItWas)
{
    TreeMaker tMaker;
    for (int i = 0; i < 500; ++i)
    {
        const XmlElement tTree = tMaker.make();
        const std::string sXml = XmlDocument::serialize(tTree);
        XmlError tError;
        const std::optional<XmlDocument> tRead = XmlDocument::parse(sXml, &tError);
        ASSERT_TRUE(tRead) << toUtf8(tError.sMessage) << " in " << sXml;
        ASSERT_TRUE(XmlElement::sameContent(tTree, tRead->root())) << sXml;
        ASSERT_EQ(XmlDocument::serialize(tRead->root()), sXml);
    }
}

}  // namespace
}  // namespace tov
