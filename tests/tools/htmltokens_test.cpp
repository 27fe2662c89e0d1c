#include "tools/webformat/htmltokens.h"

#include <gtest/gtest.h>

#include <chrono>

namespace tov {

namespace {

// Every token in a form that a row can hold: text as it is, tags as <name a="b">, </name> and <name/>, with "|"
// between.
String tokensOf(std::wstring_view sHtml)
{
    String sResult;
    HtmlTokens tTokens(sHtml);
    while (tTokens.next())
    {
        sResult += sResult.empty() ? L"" : L"|";
        if (!tTokens.isTag())
        {
            sResult += tTokens.text();
            continue;
        }
        const HtmlTag& tTag = tTokens.tag();
        sResult += (tTag.bEnd ? L"</" : L"<") + tTag.sName;
        for (const auto& [sName, sValue] : tTag.vAttributes)
            sResult.append(L" ").append(sName).append(L"=\"").append(sValue).append(L"\"");
        sResult += tTag.bEmpty ? L"/>" : L">";
    }
    return sResult;
}

struct Row
{
    int nLine;
    const wchar_t* pHtml;
    const wchar_t* pExpected;
};

}  // namespace

TEST(HtmlTokens, CutsTagsFromText)
{
    constexpr Row kRows[] = {
        {__LINE__, L"", L""},
        {__LINE__, L"a", L"a"},
        {__LINE__, L"a<b>c</b>", L"a|<b>|c|</b>"},
        {__LINE__, L"<B CLASS=X>", L"<b class=\"X\">"},
        {__LINE__, L"<br/>", L"<br/>"},
        {__LINE__, L"<br / >", L"<br/>"},
        {__LINE__, L"<fo:inline color=\"red\">", L"<fo:inline color=\"red\">"},
        {__LINE__, L"<a href='x>y' b>", L"<a href=\"x>y\" b=\"\">"},
        {__LINE__, L"<a href=x/y>", L"<a href=\"x/y\">"},
        {__LINE__, L"<a href = \"&lt;&amp;\">", L"<a href=\"<&\">"},
        {__LINE__, L"<a/b=c>", L"<a b=\"c\">"},
        {__LINE__, L"<a =b>", L"<a =b=\"\">"},
        {__LINE__, L"<a b=>c", L"<a b=\"\">|c"},
        {__LINE__, L"1 < 2", L"1 < 2"},
        {__LINE__, L"1<2", L"1<2"},
        {__LINE__, L"<", L"<"},
        {__LINE__, L"a<", L"a<"},
        {__LINE__, L"a>b", L"a>b"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(tokensOf(tRow.pHtml), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(HtmlTokens, DropsCommentsAndWhatHasNoEnd)
{
    constexpr Row kRows[] = {
        {__LINE__, L"a<!-- <b> -->c", L"a|c"},
        {__LINE__, L"a<!-- > -->c", L"a|c"},
        {__LINE__, L"a<!doctype html>c", L"a|c"},
        {__LINE__, L"a<?php echo?>c", L"a|c"},
        {__LINE__, L"a</>c", L"a|c"},
        {__LINE__, L"a</ b>c", L"a|c"},
        {__LINE__, L"a<!-- never closed <b>", L"a"},
        {__LINE__, L"a<b", L"a"},
        {__LINE__, L"a<b class=\"x>c</b>", L"a"},
        {__LINE__, L"a<b class", L"a"},
        {__LINE__, L"a<!", L"a"},
        {__LINE__, L"a</", L"a"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(tokensOf(tRow.pHtml), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(HtmlTokens, DecodesCharacterReferencesOnce)
{
    constexpr Row kRows[] = {
        {__LINE__, L"a&lt;b&gt;&amp;&quot;&apos;&#39;", L"a<b>&\"''"},
        {__LINE__, L"&amp;lt;", L"&lt;"},
        {__LINE__, L"&NBSP;", L"\u00A0"},
        {__LINE__, L"&euro;&ndash;&hellip;", L"€–…"},
        {__LINE__, L"&#x41;&#65;&#X1F600;", L"AA😀"},
        {__LINE__, L"&#0;&#xD800;&#x110000;&#99999999;", L"\uFFFD\uFFFD\uFFFD\uFFFD"},
        {__LINE__, L"&#;&#x;&#xg;&#1a;", L"&#;&#x;&#xg;&#1a;"},
        {__LINE__, L"&nothing; & &; &amp", L"&nothing; & &; &amp"},
        {__LINE__, L"a & b; c", L"a & b; c"},
    };
    for (const Row& tRow : kRows)
        EXPECT_EQ(decodedText(tRow.pHtml), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(HtmlTokens, TakesTimeInProportionToTheLength)
{
    // Each of these once made a reader look through the rest again for every character.
    for (const wchar_t* pPiece :
         {L"<", L"<a", L"<a \"", L"<a b='", L"&", L"&#", L"</", L"<!--", L"<a b=", L"<a><b c=\"\">"})
    {
        String sHtml;
        while (sHtml.size() < 200000)
            sHtml += pPiece;
        const auto tStart = std::chrono::steady_clock::now();
        tokensOf(sHtml);
        EXPECT_LT(std::chrono::steady_clock::now() - tStart, std::chrono::seconds(2)) << pPiece;
    }
}

}  // namespace tov
