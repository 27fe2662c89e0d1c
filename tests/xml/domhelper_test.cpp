#include "xml/domhelper.h"

#include <gtest/gtest.h>

#include "xml/schemas.h"
#include "xml/xmldocument.h"

namespace tov {
namespace {

using schemas::Instance;
using schemas::Report;

XmlElement fragment(std::string_view sBytes)
{
    std::optional<XmlDocument> tDocument = XmlDocument::parse(sBytes, nullptr, XmlParseOptions::reportFragment());
    EXPECT_TRUE(tDocument) << sBytes;
    return tDocument ? tDocument->root() : XmlElement(L"", L"unparsed");
}

TEST(DOMHelper, TheTypeIsTheLocalNameOfATrimmedQualifiedName)
{
    struct Row
    {
        int nLine;
        const char* pXml;
        const wchar_t* pExpected;
    };
    constexpr Row kRows[] = {
        {__LINE__, "<e xsi:type='tov:number'/>", L"number"},
        {__LINE__, "<e xsi:type=' tov:number\n'/>", L"number"},
        {__LINE__, "<e xsi:type='number'/>", L"number"},
        {__LINE__, "<e xsi:type='tovx:sqlExpression'/>", L"sqlExpression"},
        {__LINE__, "<e xmlns:q='urn:q' xsi:type='q:x'/>", L"x"},
        {__LINE__, "<e xmlns:i='http://www.w3.org/2001/XMLSchema-instance' i:type='text'/>", L"text"},
        {__LINE__, "<e xsi:type=''/>", L""},
        {__LINE__, "<e xsi:type='tov:'/>", L""},
        {__LINE__, "<e xsi:type='tov:a:b'/>", L"a:b"},
        {__LINE__, "<e/>", L"default"},
        {__LINE__, "<e type='tov:number'/>", L"default"},  // not the instance namespace's attribute
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(DOMHelper::getXsiType(fragment(tRow.pXml), L"default"), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

TEST(DOMHelper, AnUndeclaredPrefixInATreeMadeByCodeIsTheDefault)
{
    XmlElement tElement(L"", L"e");
    tElement.setAttribute(Instance::kXsiNamespace, Instance::kType, L"tov:number");
    EXPECT_EQ(DOMHelper::getXsiType(tElement, L"none"), L"none");
    tElement.declarePrefix(L"tov", Report::kTovNamespace);
    EXPECT_EQ(DOMHelper::getXsiType(tElement, L"none"), L"number");
}

TEST(DOMHelper, SettingTheTypeUsesTheUsualPrefixAndDeclaresIt)
{
    XmlElement tElement(Report::kqnDataFormat);
    DOMHelper::setXsiType(tElement, Report::kTovNamespace, L"custom");
    EXPECT_EQ(*tElement.getAttribute(Instance::kXsiNamespace, Instance::kType), L"tov:custom");
    EXPECT_EQ(*tElement.resolvePrefix(L"tov"), Report::kTovNamespace);
    EXPECT_EQ(XmlDocument::serialize(tElement),
              "<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" "
              "xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:custom\"/>");
}

TEST(DOMHelper, SettingTheTypeTakesThePrefixThatIsThere)
{
    XmlElement tElement = fragment("<r:e xmlns:r='urn:tov:schemas:report:v1' xmlns:tov='urn:other'/>");
    DOMHelper::setXsiType(tElement, Report::kTovNamespace, L"text");
    EXPECT_EQ(*tElement.getAttribute(Instance::kXsiNamespace, Instance::kType), L"r:text");
}

TEST(DOMHelper, SettingTheTypeNeverHidesAPrefix)
{
    XmlElement tElement(L"", L"e");
    tElement.declarePrefix(L"tov", L"urn:other");
    tElement.declarePrefix(L"ns1", L"urn:taken");
    DOMHelper::setXsiType(tElement, Report::kTovNamespace, L"text");
    EXPECT_EQ(*tElement.getAttribute(Instance::kXsiNamespace, Instance::kType), L"ns2:text");
    EXPECT_EQ(*tElement.resolvePrefix(L"ns2"), Report::kTovNamespace);
    EXPECT_EQ(*tElement.resolvePrefix(L"tov"), L"urn:other");
    EXPECT_EQ(DOMHelper::getXsiType(tElement, L"none"), L"text");
}

TEST(DOMHelper, ATypeInNoNamespaceHasNoPrefix)
{
    XmlElement tElement(L"", L"e");
    DOMHelper::setXsiType(tElement, L"", L"text");
    EXPECT_EQ(*tElement.getAttribute(Instance::kXsiNamespace, Instance::kType), L"text");
}

TEST(DOMHelper, ForcingAnElementFindsItOrMakesIt)
{
    XmlElement tParent(L"", L"column");
    XmlElement& tMade = DOMHelper::forceElement(tParent, Report::kqnDataFormat);
    EXPECT_TRUE(tMade.hasName(Report::kqnDataFormat));
    EXPECT_EQ(&DOMHelper::forceElement(tParent, Report::kqnDataFormat), &tMade);
    EXPECT_EQ(tParent.children().size(), 1u);
}

}  // namespace
}  // namespace tov
