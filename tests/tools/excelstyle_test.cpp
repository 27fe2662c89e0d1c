#include "tools/webformat/excelstyle.h"

#include <gtest/gtest.h>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

struct Row
{
    int nLine;
    const wchar_t* pStyle;
    const char* pExpected;
};

}  // namespace

TEST(ExcelStyle, WritesPatternsAsCssStrings)
{
    constexpr Row aRows[] = {
        {__LINE__, L"mso-number-format:'0';", "mso-number-format:'0'"},
        {__LINE__, L"mso-number-format:'0'", "mso-number-format:'0'"},
        {__LINE__, L"mso-number-format:'#,##0.00';", R"(mso-number-format:'\#\,\#\#0\.00')"},
        {__LINE__, L"mso-number-format:'0&quot;%&quot;';", R"(mso-number-format:'0\"\%\"')"},
        {__LINE__, L"mso-number-format:'&amp;quot;';", R"(mso-number-format:'\&quot\;')"},  // undone once
        {__LINE__, L"mso-number-format:'a';} td { color:red';",
         R"(mso-number-format:'a\0027\;\}\ td\ \{\ color\:red')"},
        {__LINE__, L"mso-number-format:'&#39;;}</style>';", R"(mso-number-format:'\0027\;\}\<\/style\>')"},
        {__LINE__, L"mso-number-format:'0&quot;\\&#39;s&quot;\\\\&quot;';", R"(mso-number-format:'0\"\0027s\"\\\"')"},
        {__LINE__, L"mso-number-format:'a\\';", R"(mso-number-format:'a\\')"},
        {__LINE__, L"mso-number-format:'a\nb';", R"(mso-number-format:'a\000a\0062')"},
        {__LINE__, L"mso-number-format:'[$€]0';", "mso-number-format:'\\[\\$\xE2\x82\xAC\\]0'"},
        {__LINE__, L"mso-number-format:'\\&#39;e0x\\&#39;g';", R"(mso-number-format:'\0027\0065\0030x\0027g')"},
        {__LINE__, L"mso-number-format:'0;[red](0)';", R"(mso-number-format:'0\;\[RED\]\(0\)')"},
        {__LINE__, L"mso-number-format:'&quot;[red]&quot;0';", R"(mso-number-format:'\"\[red\]\"0')"},  // quoted: text
        {__LINE__, L"mso-number-format:'\\\\&quot;[red]0';", R"(mso-number-format:'\\\"\[RED\]0')"},
        {__LINE__, L"mso-format-number:date", "mso-format-number:date"},
        // No declaration of one name and one value: nothing.
        {__LINE__, L"", ""},
        {__LINE__, L"date", ""},
        {__LINE__, L"a}b:'0';", ""},
        {__LINE__, L"mso-number-format:0}", ""},
        {__LINE__, L"mso-number-format:'", ""},
    };
    for (const Row& tRow : aRows)
        EXPECT_EQ(excelDeclaration(tRow.pStyle), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(ExcelStyle, SeesCommasThatDivide)
{
    constexpr std::pair<const wchar_t*, bool> aRows[] = {
        {L"mso-number-format:'0,';", true},
        {L"mso-number-format:'#,##0,,';", true},
        {L"mso-number-format:'0.0,&quot;K&quot;;-0.0,&quot;K&quot;';", true},
        {L"mso-number-format:'0;0,';", true},
        {L"mso-number-format:'#,##0.00_);(#,##0.00)';", false},
        {L"mso-number-format:'0&quot;,&quot;';", false},
        {L"mso-number-format:'0\\\\,0';", false},
        {L"", false},
    };
    for (const auto& [pStyle, bExpected] : aRows)
        EXPECT_EQ(dividesByThousands(pStyle), bExpected) << toUtf8(pStyle);
}

TEST(ExcelStyle, UndoesEntitiesOnce)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> aRows[] = {
        {L"&amp;&lt;&gt;&quot;&apos;", L"&<>\"'"},
        {L"&#39;&#x27;&#X27;", L"'''"},
        {L"&amp;lt;", L"&lt;"},
        {L"& a; &nope; &#; &#x; &#99999999; &#xg;", L"& a; &nope; &#; &#x; &#99999999; &#xg;"},
        {L"&", L"&"},
        {L"&#1114112;", L"&#1114112;"},
        {L"&lt", L"&lt"},
    };
    for (const auto& [pText, pExpected] : aRows)
        EXPECT_EQ(withoutEntities(pText), pExpected);
}

}  // namespace tov
