#include <gtest/gtest.h>

#include "tools/support/batchrows.h"

namespace tov {

namespace {

std::string text(const std::string& sText)
{
    return R"j({"text":")j" + sText + "\"}";
}

std::string error(const std::string& sMessage)
{
    return R"j({"error":")j" + sMessage + "\"}";
}

}  // namespace

TEST(BatchText, WrapsTheChosenFormatterInACompoundFormat)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"type":"integer","value":12,"compound":"@ kg"})j", text("12 kg")},
        {__LINE__, R"j({"type":"integer","value":12,"compound":"<@>","output":"html"})j", text("&lt;12&gt;")},
        {__LINE__, R"j({"type":"integer","value":12,"compound":"\"a\\\"@\" @"})j", text("a\\\"@ 12")},
        {__LINE__, R"j({"type":"integer","value":12,"compound":""})j", text("")},
        {__LINE__, R"j({"type":"integer","value":12,"compound":null})j", text("12")},
        {__LINE__, R"j({"type":"integer","values":[1,null],"compound":"@-@","output":"html"})j",
         R"j({"texts":["1-1","&nbsp;"]})j"},
        {__LINE__, R"j({"type":"integer","value":null,"compound":"@-@","output":"xml"})j", text("")},
        {__LINE__,
         R"j({"type":"double","value":50,"factory":"custom","pattern":"0%","compound":"@!",)j"
         R"j("want":["customFormat","validExcelPattern","excelValue"]})j",
         R"j({"text":"50%!","excelValue":"50%!","validExcelPattern":true,"customFormat":"@!"})j"},
        {__LINE__, R"j({"type":"date","value":"2024-03-05","factory":"csv","compound":"on @"})j",
         text("on 2024-03-05")},
        {__LINE__, R"j({"value":90,"factory":"duration","pattern":"[duration(sec)]mm:ss","compound":"(@)"})j",
         text("(01:30)")},
        {__LINE__,
         R"j({"type":"varchar","value":"O'Brien","factory":"sqlLiteral","output":"html","compound":"x = @"})j",
         text("x = &#39;O&#39;&#39;Brien&#39;")},
        // Where the factory has no formatter there is nothing to wrap.
        {__LINE__, R"j({"type":"unknown","value":null,"factory":"literal","compound":"@"})j",
         R"j({"formatter":null})j"},
        {__LINE__, R"j({"type":"integer","value":12,"compound":7})j",
         error(R"j(\"compound\": found a number, expected a string)j")},
        {__LINE__, R"j({"type":"integer","value":"twelve","compound":"@"})j",
         error(R"j(found \"twelve\", expected a whole number from -2147483648 to 2147483647)j")},
    };
    checkAnswers(aRows);
}

TEST(BatchText, WritesTextsAsSqlLiterals)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"factory":"sqlLiteral","value":"O'Brien"})j", text(R"j('O\\u0027\\u0027Brien')j")},
        {__LINE__, R"j({"factory":"sqlLiteral","value":"O'Brien","output":"html"})j",
         text("&#39;O&#39;&#39;Brien&#39;")},
        {__LINE__, R"j({"factory":"sqlLiteral","type":"char","values":["<a>",null,""],"output":"xml"})j",
         R"j({"texts":["'&lt;a&gt;'","''","''"]})j"},
        {__LINE__, R"j({"factory":"sqlLiteral","value":"x","output":"pdf"})j", text("''")},
        {__LINE__, R"j({"factory":"sqlLiteral","value":"x","want":["customFormat","excelMask"]})j",
         R"j({"text":"'x'","customFormat":"","excelMask":{"replaced":false,"mask":"General"}})j"},
        // A null of any type is a null text.
        {__LINE__, R"j({"factory":"sqlLiteral","type":"integer","value":null})j", text("''")},
        {__LINE__, R"j({"factory":"sqlLiteral","type":"integer","value":1})j",
         error(R"j(found a value of the storage \"int32\", expected \"wchar\", which the formatter takes)j")},
        {__LINE__, R"j({"factory":"sqlLiteral","value":1})j", error("found a number, expected text")},
        {__LINE__, R"j({"factory":"sqlLiteral","value":"a\u0000"})j",
         error("found the character U+0000, expected text without it")},
        {__LINE__, R"j({"factory":"sqlLiteral"})j", error(R"j(expected one of \"value\" and \"values\")j")},
    };
    checkAnswers(aRows);
}

TEST(BatchText, CutsTexts)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"factory":"truncate","length":5,"value":"abcdefgh"})j", text("abcde...")},
        {__LINE__, R"j({"factory":"truncate","length":0,"values":["","abc",null]})j",
         R"j({"texts":["...","...","..."]})j"},
        {__LINE__, R"j({"factory":"truncate","length":18446744073709551615,"value":"abc"})j", text("abc")},
        {__LINE__, R"j({"factory":"truncate","length":2,"type":"longvarchar","value":"<b>abc</b>"})j", text("ab...")},
        {__LINE__, R"j({"factory":"truncate","length":2,"value":"abc","output":"xml"})j", text("")},
        {__LINE__, R"j({"factory":"truncate","length":2,"value":"abcdef","compound":"[@]"})j", text("[ab...]")},
        {__LINE__, R"j({"factory":"truncate","length":-1,"value":"abc"})j",
         error(R"j(\"length\": found \"-1\", expected a whole number from 0 to 18446744073709551615)j")},
        {__LINE__, R"j({"factory":"truncate","length":18446744073709551616,"value":"abc"})j",
         error(
             R"j(\"length\": found \"18446744073709551616\", expected a whole number from 0 to 18446744073709551615)j")},
        {__LINE__, R"j({"factory":"truncate","length":2.5,"value":"abc"})j",
         error(R"j(\"length\": found \"2.5\", expected a whole number from 0 to 18446744073709551615)j")},
        {__LINE__, R"j({"factory":"truncate","length":"5","value":"abc"})j",
         error(R"j(\"length\": found a string, expected a whole number from 0 to 18446744073709551615)j")},
        {__LINE__, R"j({"factory":"truncate","length":null,"value":"abc"})j",
         error(R"j(found no \"length\", expected a whole number from 0 to 18446744073709551615)j")},
        {__LINE__, R"j({"factory":"truncate","value":"abc"})j",
         error(R"j(found no \"length\", expected a whole number from 0 to 18446744073709551615)j")},
        {__LINE__, R"j({"factory":"truncate","length":5,"type":"double","value":1})j",
         error(R"j(found a value of the storage \"double\", expected \"wchar\", which the formatter takes)j")},
    };
    checkAnswers(aRows);
}

TEST(BatchText, WritesAnyValueInItsPlainForm)
{
    const std::string sInvalidHandle =
        R"j({"exception":"invalid handle","assertions":[{"expression":"false","source":"webformat/valueformatter"}]})j";
    const BatchRow aRows[] = {
        {__LINE__, R"j({"factory":"plain","type":"integer","value":-1234})j", text("-1234")},
        {__LINE__, R"j({"factory":"plain","type":"double","values":[1234.5,null],"locale":"de-DE","output":"html"})j",
         R"j({"texts":["1234.50",""]})j"},
        {__LINE__, R"j({"factory":"plain","type":"integer","storage":"double","value":2.5})j", text("3")},
        {__LINE__, R"j({"factory":"plain","type":"date","value":"2024-03-05","locale":"de-DE"})j", text("2024-03-05")},
        {__LINE__, R"j({"factory":"plain","type":"time","value":"17:08:09.5"})j", text("17:08:09.5")},
        {__LINE__, R"j({"factory":"plain","type":"timestamp","value":"2024-03-05 07:08:09"})j",
         text("2024-03-05 07:08:09")},
        {__LINE__, R"j({"factory":"plain","type":"varchar","value":"a<b","output":"html"})j", text("a<b")},
        {__LINE__, R"j({"factory":"plain","type":"varbinary","values":[{"hex":"00"},null]})j",
         R"j({"texts":["Binary","Binary"]})j"},
        {__LINE__, R"j({"factory":"plain","type":"unknown","value":null})j", text("Unknown")},
        {__LINE__, R"j({"factory":"plain","type":"integer","value":1,"compound":"@ kg"})j", text("1 kg")},
        {__LINE__, R"j({"factory":"plain","type":"bigint","value":1})j", sInvalidHandle},
        {__LINE__, R"j({"factory":"plain","type":"integer","storage":"uint64","value":1})j", sInvalidHandle},
        {__LINE__, R"j({"factory":"plain","type":"date","storage":"double","value":1})j",
         R"j({"exception":"invalid handle"})j"},
        {__LINE__, R"j({"factory":"plain","value":1})j", error(R"j(found no \"type\", expected a string)j")},
        {__LINE__, R"j({"factory":"plain","type":"date","value":"yesterday"})j",
         error(R"j(found \"yesterday\", expected a date such as 2024-03-05)j")},
    };
    checkAnswers(aRows);
}

TEST(BatchText, RemovesHtmlAndTurnsBracketTagsIntoIt)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"do":"removeHtml","text":"x<script>y</script>z &amp;lt;"})j", text("xz &lt;")},
        {__LINE__, R"j({"id":5,"do":"removeHtml","text":""})j", R"j({"id":5,"text":""})j"},
        {__LINE__, R"j({"do":"removeHtml"})j", error(R"j(found no \"text\", expected a string)j")},
        {__LINE__, R"j({"do":"removeHtml","text":["a"]})j", error(R"j(\"text\": found an array, expected a string)j")},
        {__LINE__, R"j({"do":"removeHtml","text":"a\u0000b"})j",
         error(R"j(\"text\": found the character U+0000, expected text without it)j")},
        {__LINE__, R"j({"do":"bracketTags","text":"[b]x[/b] [p]"})j", R"j({"text":"<b>x</b> [p]","converted":true})j"},
        {__LINE__, R"j({"do":"bracketTags","text":"<b>x"})j", R"j({"text":"<b>x","converted":false})j"},
        {__LINE__, R"j({"do":"bracketTags","text":"[b]\u0000"})j", R"j({"text":"<b>\u0000","converted":true})j"},
        {__LINE__, R"j({"do":"bracketTags"})j", error(R"j(found no \"text\", expected a string)j")},
    };
    checkAnswers(aRows);
}

TEST(BatchText, ConvertsOlderTextAndNumericFormats)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"do":"convert","kind":"numeric","format":"0"})j",
         R"j({"type":"custom","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" )j"
         R"j(xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:custom\" )j"
         R"j(customFormat=\"0\"/>","msoStyle":"mso-number-format:'0';",)j"
         R"j("excelPattern":{"normal":"0","excel":"0"},"stream":"06000000637573746F6D0100000030",)j"
         R"j("formula":null,"fields":{"customFormat":"0","displayTimeZone":""}})j"},
        {__LINE__, R"j({"do":"convert","kind":"numeric"})j", error(R"j(found no \"format\", expected a string)j")},
        {__LINE__, R"j({"do":"convert","kind":"text"})j", error(R"j(found no \"format\", expected a string)j")},
    };
    checkAnswers(aRows);
    EXPECT_NE(
        ask(R"j({"do":"convert","kind":"numeric","format":"$#,##0.00;($#,##0.00)"})j").find(R"j("type":"currency")j"),
        std::string::npos);
    EXPECT_NE(ask(R"j({"do":"convert","kind":"text","format":"@N"})j").find(R"j("type":"text")j"), std::string::npos);
    EXPECT_NE(ask(R"j({"do":"convert","kind":"text","format":"\"<b>\"@;\"-\";\"-\""})j")
                  .find(R"j("customFormat":"[html]\"<b>\"@;\"-\"[text]\"-\"")j"),
              std::string::npos);
}

}  // namespace tov
