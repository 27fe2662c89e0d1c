// The factories of text formatters, the predefined formats, and what null and empty values are.

#include <gtest/gtest.h>

#include <thread>
#include <vector>

#include "intl/localetaglookup.h"
#include "support/collected.h"
#include "webformat/textformatterimpl.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;
using OutputType = ValueFormatterTypes::OutputType;
using TextDefinition = WebTextFormatDefinition;
using Buffer = StringBufferTemplate<wchar_t, 256>;

WebValueFormatterHandle formatterOf(const String& sTemplate, OutputType eOutput)
{
    return WebTextFormatter::ParseCustomFormat(sTemplate, Locale::kUSA, eOutput);
}

WebValueFormatterHandle formatterOf(const WebValueFormatDefinitionHandle& hDefinition, OutputType eOutput)
{
    return WebTextFormatter::CreateTextFormatter(hDefinition, Locale::kUSA, eOutput);
}

struct TypeRow
{
    int nLine;
    TextDefinition::Type eType;
    OutputType eOutput;
    const wchar_t* pValue;
    const wchar_t* pExpected;
};

constexpr TypeRow kTypeRows[] = {
    {__LINE__, TextDefinition::kPlainText, kText, L"a <b>", L"a <b>"},
    {__LINE__, TextDefinition::kPlainText, kHTML, L"a <b>", L"a &lt;b&gt;"},
    {__LINE__, TextDefinition::kPlainText, kPDF, L"a <b>", L"a &lt;b&gt;"},
    {__LINE__, TextDefinition::kPlainNBSPText, kText, L"a b", L"a b"},
    {__LINE__, TextDefinition::kPlainNBSPText, kHTML, L"a b", L"a&nbsp;b"},
    {__LINE__, TextDefinition::kPlainNBSPText, kPDF, L"a b", L"<lumfo:html2fo src=\"&lt;pre>a b&lt;/pre>\"/>"},
    {__LINE__, TextDefinition::kHTML, kText, L"<b>x</b>", L"<b>x</b>"},
    {__LINE__, TextDefinition::kHTML, kHTML, L"<b>x</b>", L"<b>x</b>"},
    {__LINE__, TextDefinition::kHTML, kXML, L"<b>x</b>", L"&lt;b&gt;x&lt;/b&gt;"},
    {__LINE__, TextDefinition::kHTML, kXLSX, L"<b>x</b>", L"<lumfo:html2fo src=\"&lt;b&gt;x&lt;/b&gt;\"/>"},
    {__LINE__, TextDefinition::kHypertextLinkPrependHttp, kText, L"example", L"http://example"},
    {__LINE__, TextDefinition::kHypertextLinkPrependHttp, kHTML, L"example", L"<a href=\"http://example\">example</a>"},
    {__LINE__, TextDefinition::kHypertextLinkPrependHttp, kSQLLiteral, L"it's", L"http://it''s"},
    {__LINE__, TextDefinition::kHypertextLink, kText, L"a.example/?x&y", L"a.example/?x&y"},
    {__LINE__, TextDefinition::kHypertextLink, kHTML, L"a.example/?x&y",
     L"<a href=\"a.example/?x&y\">a.example/?x&amp;y</a>"},
    {__LINE__, TextDefinition::kHypertextLink, kPDF, L"a.example",
     L"<lumfo:html2fo src=\"&lt;a href=&quot;a.example&quot;&gt;a.example&lt;/a&gt;\"/>"},
    {__LINE__, TextDefinition::kMailToAddress, kText, L"a@b.example", L"a@b.example"},
    {__LINE__, TextDefinition::kMailToAddress, kHTML, L"a@b.example",
     L"<a href=\"mailto:a@b.example\">a@b.example</a>"},
    {__LINE__, TextDefinition::kImageURL, kText, L"a.png", L"a.png"},
    {__LINE__, TextDefinition::kImageURL, kHTML, L"a.png", L"<img src=\"a.png\">"},
    {__LINE__, TextDefinition::kTextTypeEnd_, kHTML, L"a <b>", L"a &lt;b&gt;"},
    {__LINE__, static_cast<TextDefinition::Type>(-1), kHTML, L"a <b>", L"a &lt;b&gt;"},
};

struct EmptyRow
{
    int nLine;
    const wchar_t* pTemplate;
    OutputType eOutput;
    const wchar_t* pExpected;
};

// What a null and an empty value are.
constexpr EmptyRow kEmptyRows[] = {
    {__LINE__, L"@", kHTML, L"&nbsp;"},
    {__LINE__, L"@", kText, L""},
    {__LINE__, L"@", kXML, L""},
    {__LINE__, L"@", kPDF, L""},
    {__LINE__, L"\"http://\"@", kText, L""},
    {__LINE__, L"\"http://\"@", kHTML, L"&nbsp;"},
    {__LINE__, L"[html]@;-", kHTML, L"&nbsp;"},
    {__LINE__, L"[html]@", kPDF, L""},
    {__LINE__, L"[html]@;\"<none>\"", kPDF, L"&lt;none&gt;"},
    {__LINE__, L"[html]@;\"<none>\"", kXLSX, L"&lt;none&gt;"},
    {__LINE__, L"[html]@;[@];-", kPDF, L""},
    {__LINE__, L"[html]@;", kPDF, L""},
    {__LINE__, L"[html]@;a@b", kPDF, L"ab"},
    {__LINE__, L"[html]@;\"\\\"/>\"", kPDF, L"&quot;/&gt;"},
};

class OtherDefinition final : public WebValueFormatDefinition
{
public:
    void readXml(const XmlElement&) override {}
    DefType GetDefType() const override { return kLastDef; }
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override { return nullptr; }
    String getMsoStyle(const Locale&, const KTWUILanguage&) const override { return {}; }
    int CompareLikeDefinition(const WebValueFormatDefinition&) const override { return 0; }
    void populateDataFormat(XmlElement&) const override {}
    void writeToStreamImpl(OutputStream&) const override {}
    String getMsoFormatPatternImpl(const Locale&, const KTWUILanguage&, FormatPattern) const override { return {}; }
    std::vector<FormatDefinitionSetting> settings() const override { return {}; }
};

}  // namespace

TEST(TextFormatter, ShowsTextsByTheirStandardTypes)
{
    for (const TypeRow& tRow : kTypeRows)
    {
        const WebValueFormatDefinitionHandle hDefinition = new TextDefinition(tRow.eType);
        EXPECT_EQ(formatterOf(hDefinition, tRow.eOutput)->formatAsString(tRow.pValue), tRow.pExpected)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(WebTextFormatter::CreateTextFormatter(TextDefinition(tRow.eType), Locale::kUSA, tRow.eOutput)
                      ->formatAsString(tRow.pValue),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
    }
}

TEST(TextFormatter, IsMadeFromAnyDefinition)
{
    const auto pattern = [](const WebValueFormatDefinitionHandle& hDefinition)
    { return formatterOf(hDefinition, kHTML)->GetCustomFormatString(); };
    EXPECT_EQ(pattern(nullptr), L"@");
    EXPECT_EQ(pattern(new OtherDefinition), L"@");
    EXPECT_EQ(pattern(new WebCustomFormatDefinition(L"a@[TZ:EST]")), L"a@[TZ:EST]");
    EXPECT_EQ(pattern(new WebCustomFormatDefinition), L"");
    EXPECT_EQ(pattern(new TextDefinition(TextDefinition::kHTML)), L"@[html]@H");
    EXPECT_EQ(pattern(new WebWhistlerFormatDefinition(L"@H")), L"@[html]@H");
    EXPECT_EQ(pattern(new WebWhistlerFormatDefinition(L"a@;;@")), L"[html]a@;[text]@");
    EXPECT_EQ(pattern(new WebWhistlerFormatDefinition), L"@");
}

TEST(TextFormatter, DescribesItself)
{
    const CollectedAssertions tAssertions;
    for (int nOutput = -1; nOutput <= kLastType; ++nOutput)
    {
        const WebValueFormatterHandle hFormatter = formatterOf(L"x@", static_cast<OutputType>(nOutput));
        EXPECT_EQ(hFormatter->outputType(), nOutput);
        EXPECT_EQ(hFormatter->valueStorageType(), SQLDataType::kStorageWChar);
        EXPECT_EQ(hFormatter->GetCustomFormatString(), L"x@");
        EXPECT_TRUE(hFormatter->IsValidExcelPattern());
    }
    EXPECT_EQ(tAssertions.count(), 0u);
}

TEST(TextFormatter, WritesNullAndEmptyValuesByTheirSection)
{
    for (const EmptyRow& tRow : kEmptyRows)
    {
        const WebValueFormatterHandle hFormatter = formatterOf(tRow.pTemplate, tRow.eOutput);
        EXPECT_EQ(hFormatter->formatAsString(nullptr), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->formatAsString(L""), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

// What stands in the buffer already decides for values, and not for null and empty ones.
TEST(TextFormatter, FillsACellThatAValueLeftEmpty)
{
    const auto behind = [](const wchar_t* pBefore, const wchar_t* pTemplate, OutputType eOutput, const wchar_t* pValue)
    {
        Buffer tBuffer;
        tBuffer.append(pBefore);
        formatterOf(pTemplate, eOutput)->formatToBuffer(tBuffer, pValue);
        return tBuffer.toString();
    };
    EXPECT_EQ(behind(L"", L"[html][x]", kHTML, L"x"), L"&nbsp;");
    EXPECT_EQ(behind(L"", L"[html]\"\"", kHTML, L"x"), L"&nbsp;");
    EXPECT_EQ(behind(L"<td>", L"[html][x]", kHTML, L"x"), L"<td>");
    EXPECT_EQ(behind(L"", L"[x]", kXML, L"x"), L"");
    EXPECT_EQ(behind(L"<td>", L"@", kHTML, nullptr), L"<td>&nbsp;");
    EXPECT_EQ(behind(L"<td>", L"@", kHTML, L""), L"<td>&nbsp;");
}

TEST(TextFormatter, IsTheSameInEveryLocale)
{
    for (const wchar_t* pTag : {L"de-DE", L"he-IL", L"ar-EG"})
    {
        const Locale tLocale = LocaleTagLookup::lookupOrDefault(pTag);
        EXPECT_EQ(WebTextFormatter::ParseCustomFormat(L"<@>", tLocale, kHTML)->formatAsString(L"x"), L"&lt;x&gt;");
    }
}

TEST(TextFormatter, ServesManyThreadsAtOnce)
{
    const WebValueFormatterHandle hFormatter = formatterOf(L"@[html]@N", kPDF);
    std::vector<std::thread> vThreads;
    std::vector<std::size_t> vWrong(4, 0);
    for (std::size_t& nWrong : vWrong)
    {
        vThreads.emplace_back(
            [&nWrong, &hFormatter]
            {
                for (int n = 0; n < 500; ++n)
                    nWrong +=
                        hFormatter->formatAsString(L"[b]x") == L"<lumfo:html2fo src=\"&lt;pre>&lt;b&gt;x&lt;/pre>\"/>"
                            ? 0
                            : 1;
            });
    }
    for (std::thread& tThread : vThreads)
        tThread.join();
    EXPECT_EQ(vWrong, std::vector<std::size_t>(4, 0));
}

}  // namespace tov
