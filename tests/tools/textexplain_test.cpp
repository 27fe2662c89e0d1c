// What the command says about text templates.

#include <gtest/gtest.h>

#include "tools/support/batchrows.h"
#include "tools/support/command.h"

namespace tov {

TEST(TextExplain, WritesALineForEachElementOfTheSections)
{
    const CommandResult tResult = runCommand({"explain", "--kind", "text", "\"~\"@H[html]\"<b>\"@N\"</b>\";\\-"});
    EXPECT_EQ(tResult.nStatus, 0);
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.sOutput,
              "\"~\"               the text \"~\"                                      ~\n"
              "@H                the value, which is HTML                          ~R&D team 7\n"
              "\"~\"@H             in plain text                                     ~R&D team 7\n"
              "\"<b>\"             the text \"<b>\"                                    <b>\n"
              "@N                the value, with blanks that do not break in HTML  "
              "<b>R&amp;D&nbsp;&lt;b&gt;team&nbsp;7&lt;/b&gt;\n"
              "\"</b>\"            the text \"</b>\"                                   "
              "<b>R&amp;D&nbsp;&lt;b&gt;team&nbsp;7&lt;/b&gt;</b>\n"
              ";                 the text \";\"                                      "
              "<b>R&amp;D&nbsp;&lt;b&gt;team&nbsp;7&lt;/b&gt;</b>;\n"
              "\\-                the text \"-\"                                      "
              "<b>R&amp;D&nbsp;&lt;b&gt;team&nbsp;7&lt;/b&gt;</b>;-\n"
              "\"<b>\"@N\"</b>\";\\-  in HTML                                           "
              "<b>R&amp;D&nbsp;&lt;b&gt;team&nbsp;7&lt;/b&gt;</b>;-\n"
              "\\-                the text \"-\"                                      -\n"
              "\"<b>\"@N\"</b>\";\\-  in PDF and XLSX, for null and empty values        -\n");
}

TEST(TextExplain, FindsTheWordsOfEveryReference)
{
    const std::pair<const char*, const char*> aRows[] = {
        {"@", "@  the value      R&D <b>team 7</b>\n@  in plain text  R&D <b>team 7</b>\n"},
        {"@H", "@H  the value, which is HTML  R&D team 7\n"},
        {"@J", "@J  the value, as the inside of a JavaScript string in HTML  "},
        {"@I", "@I  the value as the address of an image  "},
        {"@I(7)", "@I(7)  the value as the address of an image, 7 pixels wide  "},
        {"@I(,5)", "@I(,5)  the value as the address of an image, 5 pixels high  "},
        {"@I(7,5)", "@I(7,5)  the value as the address of an image, 7 pixels wide, 5 pixels high  "},
        {"@TH(3)", "@TH(3)  the value, cut to 3 characters; nothing behind it is shown  R&D...\n"},
        {"@T(30)", "@T(30)  the value, cut to 30 characters; nothing behind it is shown  R&D team 7\n"},
        {"", "  the value      R&D <b>team 7</b>\n"},
        {"No. @ is", "No.       the text \"No. \"  No. \n"},
        {"No. @ is", " is       the text \" is\"   No. R&D <b>team 7</b> is\n"},
        {"a[x]b\\c@", "a         the text \"a\"   a\nb         the text \"b\"   ab\n\\c        the text \"c\"   abc\n"},
    };
    for (const auto& [pTemplate, pExpected] : aRows)
    {
        const std::string sOutput = runCommand({"explain", "--kind", "text", pTemplate}).sOutput;
        EXPECT_NE(sOutput.find(pExpected), std::string::npos) << pTemplate << "\n" << sOutput;
    }
}

TEST(TextExplain, AnswersBatchRequestsWithTheElements)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"do":"explain","kind":"text","pattern":"a@H"})j",
         R"j({"items":[{"type":"kLiteral","text":"a"},{"type":"kReference","textType":"kHTML"}],"empty":null})j"},
        {__LINE__, R"j({"do":"explain","kind":"text","pattern":""})j",
         R"j({"items":[{"type":"kReference","textType":"kText"}],"empty":null})j"},
        {__LINE__, R"j({"do":"explain","kind":"text","pattern":"<@N@J","output":"html"})j",
         R"j({"items":[{"type":"kLiteral","text":"&lt;"},{"type":"kReference","textType":"kNoBreakSpaces"},)j"
         R"j({"type":"kReference","textType":"kJavaScriptString"}],"empty":null})j"},
        {__LINE__, R"j({"do":"explain","kind":"text","pattern":"@I(100)@I(,50)@T(5,40)@T"})j",
         R"j({"items":[{"type":"kReference","textType":"kImage","image":{"width":100,"height":null}},)j"
         R"j({"type":"kReference","textType":"kImage","image":{"width":null,"height":50}},)j"
         R"j({"type":"kReference","textType":"kText","truncate":{"chars":5,"toolTip":40}},)j"
         R"j({"type":"kReference","textType":"kText","truncate":{"chars":20,"toolTip":null}}],"empty":null})j"},
        {__LINE__, R"j({"do":"explain","kind":"text","pattern":"[html]@;-","output":"pdf"})j",
         R"j({"items":[{"type":"kLiteral","text":"<lumfo:html2fo src=\""},{"type":"kReference","textType":"kText"},)j"
         R"j({"type":"kLiteral","text":"\"/>"}],"empty":[{"type":"kLiteral","text":"-"}]})j"},
        {__LINE__, R"j({"do":"explain","kind":"text","pattern":"@","locale":"xx"})j",
         R"j({"error":"found the locale \"xx\", expected a known one such as en-US (see: webformat list locales)"})j"},
        {__LINE__, R"j({"do":"explain","kind":"text"})j", R"j({"error":"found no \"pattern\", expected a string"})j"},
    };
    checkAnswers(aRows);
}

// Text columns of every factory of the protocol.
TEST(TextExplain, StandsBesideWhatBatchRequestsFormat)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"type":"varchar","values":["a<b",null,""],"output":"html"})j",
         R"j({"texts":["a&lt;b","&nbsp;","&nbsp;"]})j"},
        {__LINE__,
         R"j({"type":"char","value":"a b","definition":"<tov:dataFormat xsi:type='tov:text' textFormat='plainNBSP'/>",)j"
         R"j("output":"pdf","want":["customFormat","validExcelPattern","excelValue"]})j",
         R"j({"text":"<lumfo:html2fo src=\"&lt;pre>a b&lt;/pre>\"/>",)j"
         R"j("excelValue":"<lumfo:html2fo src=\"&lt;pre>a b&lt;/pre>\"/>","validExcelPattern":true,)j"
         R"j("customFormat":"@[html]@N"})j"},
        {__LINE__, R"j({"type":"varchar","factory":"custom","pattern":"@T(3)","value":"abcdef"})j",
         R"j({"text":"abc..."})j"},
        {__LINE__, R"j({"type":"varchar","factory":"csv","value":"a,b"})j", R"j({"text":"a,b"})j"},
        {__LINE__, R"j({"type":"varchar","factory":"literal","value":"it's","output":"sqlliteral"})j",
         R"j({"text":"it''s"})j"},
        {__LINE__, R"j({"type":"varchar","factory":"xml","value":"a<b","output":"xml"})j", R"j({"text":"a&lt;b"})j"},
        {__LINE__, R"j({"type":"varchar","factory":"default","value":"a"})j", R"j({"text":"a"})j"},
        {__LINE__, R"j({"type":"varchar","factory":"input","value":"a"})j", R"j({"text":"a"})j"},
    };
    checkAnswers(aRows);
}

}  // namespace tov
