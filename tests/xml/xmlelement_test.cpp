#include "xml/xmlelement.h"

#include <gtest/gtest.h>

#include <limits>

#include "xml/xmldocument.h"

namespace tov {
namespace {

constexpr int kDeep = 200'000;

XmlElement parsed(std::string_view sBytes)
{
    XmlError tError;
    std::optional<XmlDocument> tDocument = XmlDocument::parse(sBytes, &tError);
    EXPECT_TRUE(tDocument) << "cannot parse " << sBytes;
    return tDocument ? tDocument->root() : XmlElement(L"", L"unparsed");
}

void nest(XmlElement& tRoot, int nDepth)
{
    XmlElement* pAt = &tRoot;
    for (int i = 0; i < nDepth; ++i)
        pAt = &pAt->addChild(L"", L"e");
    pAt->setInnerText(L"deep");
}

TEST(XmlElement, ReadsUnsignedAttributesOrTheDefault)
{
    struct Row
    {
        int nLine;
        const wchar_t* pValue;
        std::uint32_t nExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, L"3", 3},           {__LINE__, L" 3\t", 3},
        {__LINE__, L"+3", 3},          {__LINE__, L"4294967295", 0xFFFFFFFF},
        {__LINE__, L"4294967296", 77}, {__LINE__, L"-1", 77},
        {__LINE__, L"", 77},           {__LINE__, L"three", 77},
        {__LINE__, L"3.0", 77},        {__LINE__, L"0", 0},
    };
    for (const Row& tRow : kRows)
    {
        XmlElement tElement(L"", L"e");
        tElement.setAttribute(L"n", tRow.pValue);
        EXPECT_EQ(tElement.getUnsignedAttribute(L"n", 77), tRow.nExpected) << "row at line " << tRow.nLine;
    }
    EXPECT_EQ(XmlElement(L"", L"e").getUnsignedAttribute(L"n", 77), 77u);
}

TEST(XmlElement, ReadsSignedAttributesOrTheDefault)
{
    struct Row
    {
        int nLine;
        const wchar_t* pValue;
        std::int32_t nExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, L"-4", -4},
        {__LINE__, L" 20 ", 20},
        {__LINE__, L"2147483647", 2147483647},
        {__LINE__, L"2147483648", 15},
        {__LINE__, L"-2147483648", std::numeric_limits<std::int32_t>::min()},
        {__LINE__, L"junk", 15},
        {__LINE__, L"", 15},
        {__LINE__, L"5 5", 15},
    };
    for (const Row& tRow : kRows)
    {
        XmlElement tElement(L"", L"e");
        tElement.setAttribute(L"n", tRow.pValue);
        EXPECT_EQ(tElement.getIntAttribute(L"n", 15), tRow.nExpected) << "row at line " << tRow.nLine;
    }
}

TEST(XmlElement, ReadsBoolAttributesOrTheDefault)
{
    XmlElement tElement(L"", L"e");
    tElement.setAttribute(L"one", L" 1 ");
    tElement.setAttribute(L"no", L"false");
    tElement.setAttribute(L"junk", L"TRUE");
    EXPECT_TRUE(tElement.getBoolAttribute(L"one", false));
    EXPECT_FALSE(tElement.getBoolAttribute(L"no", true));
    EXPECT_TRUE(tElement.getBoolAttribute(L"junk", true));
    EXPECT_FALSE(tElement.getBoolAttribute(L"junk", false));
    EXPECT_TRUE(tElement.getBoolAttribute(L"absent", true));
}

TEST(XmlElement, WritesTypedAttributesAsItReadsThem)
{
    XmlElement tElement(L"", L"e");
    tElement.setUnsignedAttribute(L"u", 4294967295u);
    tElement.setIntAttribute(L"i", std::numeric_limits<std::int32_t>::min());
    tElement.setBoolAttribute(L"b", true);
    tElement.setBoolAttribute(L"c", false);
    EXPECT_EQ(tElement.getAttributeOr(L"u"), L"4294967295");
    EXPECT_EQ(tElement.getAttributeOr(L"i"), L"-2147483648");
    EXPECT_EQ(tElement.getAttributeOr(L"b"), L"true");
    EXPECT_EQ(tElement.getAttributeOr(L"c"), L"false");
}

TEST(XmlElement, AttributesOfDifferentNamespacesAreDifferent)
{
    XmlElement tElement(L"", L"e");
    tElement.setAttribute(L"type", L"plain");
    tElement.setAttribute(L"urn:x", L"type", L"qualified");
    EXPECT_EQ(*tElement.getAttribute(L"type"), L"plain");
    EXPECT_EQ(*tElement.getAttribute(L"urn:x", L"type"), L"qualified");
    EXPECT_EQ(tElement.getAttribute(L"urn:y", L"type"), nullptr);
    EXPECT_EQ(tElement.getAttributeOr(L"none", L"default"), L"default");
}

TEST(XmlElement, SettingAnAttributeAgainKeepsItsPosition)
{
    XmlElement tElement(L"", L"e");
    tElement.setAttribute(L"a", L"1");
    tElement.setAttribute(L"b", L"2");
    tElement.setAttribute(L"a", L"3");
    ASSERT_EQ(tElement.attributes().size(), 2u);
    EXPECT_EQ(tElement.attributes()[0].sLocalName, L"a");
    EXPECT_EQ(tElement.attributes()[0].sValue, L"3");
    EXPECT_TRUE(tElement.removeAttribute(L"a"));
    EXPECT_FALSE(tElement.removeAttribute(L"a"));
    EXPECT_FALSE(tElement.hasAttribute(L"a"));
}

TEST(XmlElement, ChildrenKeepTheirAddresses)
{
    XmlElement tRoot(L"", L"root");
    XmlElement& tFirst = tRoot.addChild(L"", L"first");
    for (int i = 0; i < 1000; ++i)
        tRoot.addChild(L"", L"more");
    EXPECT_EQ(&tRoot.children()[0], &tFirst);
    EXPECT_EQ(tFirst.parent(), &tRoot);
    EXPECT_EQ(tRoot.children().size(), 1001u);
}

TEST(XmlElement, FindsChildrenByNamespaceAndName)
{
    const XmlElement tRoot = parsed("<r xmlns:a='urn:a'><x/><a:x n='1'/><a:x n='2'/></r>");
    ASSERT_NE(tRoot.findChild({L"urn:a", L"x"}), nullptr);
    EXPECT_EQ(tRoot.findChild({L"urn:a", L"x"})->getAttributeOr(L"n"), L"1");
    EXPECT_FALSE(tRoot.findChild({L"", L"x"})->hasAttribute(L"n"));
    EXPECT_EQ(tRoot.findChild({L"urn:b", L"x"}), nullptr);
    EXPECT_EQ(tRoot.findChild({L"urn:a", L"X"}), nullptr);
}

TEST(XmlElement, APathIsFoundBehindABranchThatLeadsNowhere)
{
    const XmlElement tRoot = parsed("<r><a/><a><c/></a><a><b n='1'/></a></r>");
    const XmlElement* pFound = tRoot.findPath({{L"", L"a"}, {L"", L"b"}});
    ASSERT_NE(pFound, nullptr);
    EXPECT_EQ(pFound->getAttributeOr(L"n"), L"1");
    EXPECT_EQ(tRoot.findPath({{L"", L"b"}}), nullptr);
    EXPECT_EQ(tRoot.findPath({{L"", L"a"}, {L"", L"b"}, {L"", L"c"}}), nullptr);
}

TEST(XmlElement, InnerTextRunsThroughAllDescendantsInOrder)
{
    EXPECT_EQ(parsed("<a>1<b>2<c>3</c>4</b>5<d/>6</a>").innerText(), L"123456");
    EXPECT_EQ(parsed("<a>x<![CDATA[<&]]>y<!-- no -->z<?no?>&lt;&#x20AC;</a>").innerText(), L"x<&yz<\x20AC");
    EXPECT_EQ(parsed("<a/>").innerText(), L"");
}

TEST(XmlElement, SettingTheInnerTextReplacesTheChildren)
{
    XmlElement tRoot = parsed("<a>1<b>2</b>3</a>");
    tRoot.setInnerText(tRoot.children()[0].text());
    EXPECT_EQ(tRoot.innerText(), L"2");
    EXPECT_TRUE(tRoot.children().empty());
}

TEST(XmlElement, APrefixIsResolvedWhereItStands)
{
    const XmlElement tRoot = parsed("<r xmlns='urn:d' xmlns:a='urn:1'><x xmlns:a='urn:2'/><y xmlns=''/></r>");
    EXPECT_EQ(*tRoot.resolvePrefix(L"a"), L"urn:1");
    EXPECT_EQ(*tRoot.resolvePrefix(L""), L"urn:d");
    EXPECT_EQ(tRoot.resolvePrefix(L"b"), nullptr);
    EXPECT_EQ(*tRoot.children()[0].resolvePrefix(L"a"), L"urn:2");
    EXPECT_EQ(*tRoot.children()[1].resolvePrefix(L""), L"");
    EXPECT_EQ(*tRoot.resolvePrefix(L"xml"), L"http://www.w3.org/XML/1998/namespace");
    EXPECT_EQ(tRoot.children()[0].findPrefix(L"urn:1"), nullptr) << "hidden by the nearer declaration";
    EXPECT_EQ(*tRoot.children()[1].findPrefix(L"urn:1"), L"a");
    EXPECT_EQ(tRoot.findPrefix(L"urn:d"), nullptr) << "declared as the default only";
    EXPECT_EQ(*XmlElement(L"", L"e").resolvePrefix(L""), L"");
}

TEST(XmlElement, ACopyStandsAloneAndTakesItsPrefixesAlong)
{
    const XmlElement tRoot = parsed("<r xmlns:a='urn:1' xmlns:b='urn:b'><x xmlns:a='urn:2' n='1'>t<y/>u</x>tail</r>");
    const XmlElement tCopy = tRoot.children()[0];
    EXPECT_EQ(tCopy.parent(), nullptr);
    EXPECT_EQ(tCopy.tail(), L"");
    EXPECT_EQ(*tCopy.resolvePrefix(L"a"), L"urn:2");
    EXPECT_EQ(*tCopy.resolvePrefix(L"b"), L"urn:b");
    EXPECT_TRUE(XmlElement::sameContent(tCopy, tRoot.children()[0]));
    EXPECT_EQ(tCopy.children()[0].parent(), &tCopy);
    EXPECT_EQ(tCopy.lineNumber(), 1);
}

TEST(XmlElement, AssignmentTakesTheContentsAndLeavesThePlaceInTheTree)
{
    XmlElement tRoot = parsed("<r><x><y>in</y></x>tail</r>");
    XmlElement& tX = tRoot.children()[0];
    tX = tX.children()[0];  // a part of itself
    EXPECT_EQ(tX.localName(), L"y");
    EXPECT_EQ(tX.innerText(), L"in");
    EXPECT_EQ(tX.tail(), L"tail");
    EXPECT_EQ(tX.parent(), &tRoot);
}

TEST(XmlElement, ContentDiffersByNamesAttributesTextAndOrder)
{
    struct Row
    {
        int nLine;
        const char* pLeft;
        const char* pRight;
        bool bSame;
    };
    constexpr Row kRows[] = {
        {__LINE__, "<a b='1' c='2'/>", "<a  b=\"1\" c=\"2\"></a>", true},
        {__LINE__, "<a xmlns='urn:x'/>", "<p:a xmlns:p='urn:x'/>", true},
        {__LINE__, "<a b='1' c='2'/>", "<a c='2' b='1'/>", false},
        {__LINE__, "<a b='1'/>", "<a b='2'/>", false},
        {__LINE__, "<a/>", "<b/>", false},
        {__LINE__, "<a/>", "<a xmlns='urn:x'/>", false},
        {__LINE__, "<a>x<b/></a>", "<a><b/>x</a>", false},
        {__LINE__, "<a><b/>x<b/></a>", "<a><b/><b/>x</a>", false},
        {__LINE__, "<a><b/></a>", "<a><b/><b/></a>", false},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(XmlElement::sameContent(parsed(tRow.pLeft), parsed(tRow.pRight)), tRow.bSame)
            << "row at line " << tRow.nLine;
}

TEST(XmlElement, DeepTreesAreCopiedComparedReadAndDestroyedWithoutRecursion)
{
    XmlElement tRoot(L"", L"e");
    nest(tRoot, kDeep);
    XmlElement tCopy = tRoot;
    EXPECT_TRUE(XmlElement::sameContent(tRoot, tCopy));
    EXPECT_EQ(tCopy.innerText(), L"deep");
    tCopy.removeChildren();
    EXPECT_TRUE(tCopy.children().empty());
    EXPECT_FALSE(XmlElement::sameContent(tRoot, tCopy));
}

}  // namespace
}  // namespace tov
