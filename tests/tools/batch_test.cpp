#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/support/batchrows.h"

namespace tov {

TEST(Batch, FormatsValuesWithEveryFactory)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"id":1,"type":"double","value":1234.5})j", R"j({"id":1,"text":"1234.50"})j"},
        {__LINE__, R"j({"type":"double","values":[1,null,"NaN","INF","-INF",-0.0]})j",
         R"j({"texts":["1.00","","NAN","INF","-INF","0.00"]})j"},
        {__LINE__, R"j({"type":"double","values":[]})j", R"j({"texts":[]})j"},
        {__LINE__, R"j({"id":[1.50,{"a":"é"}],"type":"integer","value":-7})j",
         R"j({"id":[1.50,{"a":"é"}],"text":"-7"})j"},
        {__LINE__,
         R"j({"id":null,"type":"double","value":1,"output":"html",)j"
         R"j("definition":"<tov:dataFormat xsi:type='tov:number' negativeType='redParen'/>"})j",
         R"j({"id":null,"text":"1.00"})j"},
        {__LINE__,
         R"j({"type":"double","value":-1,"output":"html",)j"
         R"j("definition":"<tov:dataFormat xsi:type='tov:number' negativeType='redParen'/>"})j",
         R"j({"text":"<font style=\"color:red\">(1.00)</font>"})j"},
        {__LINE__, R"j({"type":"double","value":null,"output":"html"})j", R"j({"text":"&nbsp;"})j"},
        {__LINE__,
         R"j({"type":"double","value":1234.5,"locale":"de-DE",)j"
         R"j("definition":"<tov:dataFormat xsi:type='tov:number' commas='true'/>"})j",
         R"j({"text":"1.234,50"})j"},
        {__LINE__, R"j({"type":"double","value":1.23456,"factory":"default","minDigits":1,"maxDigits":3})j",
         R"j({"text":"1.235"})j"},
        {__LINE__, R"j({"type":"double","value":1.6,"factory":"default","zeroOverride":true})j", R"j({"text":"2"})j"},
        {__LINE__, R"j({"type":"double","value":2500000,"factory":"default","scaleFactor":"million"})j",
         R"j({"text":"2.50M"})j"},
        {__LINE__, R"j({"type":"double","value":1.5,"factory":"input","minDigits":3,"maxDigits":3})j",
         R"j({"text":"1.500"})j"},
        {__LINE__, R"j({"type":"double","value":1234.5,"factory":"custom","pattern":"#,##0.00"})j",
         R"j({"text":"1,234.50"})j"},
        {__LINE__,
         R"j({"type":"integer","storage":"int64","value":"-9223372036854775808","factory":"custom",)j"
         R"j("pattern":"#,##0;(0)"})j",
         R"j({"text":"(9223372036854775808)"})j"},
        {__LINE__, R"j({"type":"unsignedbigint","value":18446744073709551615,"factory":"csv"})j",
         R"j({"text":"18446744073709551615"})j"},
        {__LINE__, R"j({"type":"numeric","value":"0.1234567890123456789012345678901234567","factory":"csv"})j",
         R"j({"text":"0.1234567890123456789012345678901234567"})j"},
        {__LINE__, R"j({"type":"varbinary","value":{"hex":"00ff"}})j", R"j({"text":"00FF"})j"},
        {__LINE__, R"j({"type":"varbinary","value":{"base64":"AP8="},"factory":"csv"})j", R"j({"text":"00FF"})j"},
        {__LINE__, R"j({"type":"varchar","value":"a<b","factory":"drill","output":"html"})j", R"j({"text":"a&lt;b"})j"},
        {__LINE__, R"j({"type":"varchar","values":[null,"x"],"factory":"drill","output":"html"})j",
         R"j({"texts":["*KT_NULL*","x"]})j"},
        {__LINE__, R"j({"type":"double","value":0.25,"factory":"literal","output":"sql"})j", R"j({"text":"0.25"})j"},
        {__LINE__,
         R"j({"type":"double","value":12.5,"factory":"custom","pattern":"0.0%","want":["excelValue",)j"
         R"j("validExcelPattern","customFormat","excelMask"]})j",
         R"j({"text":"12.5%","excelValue":"0.125","validExcelPattern":true,"customFormat":"0.0%",)j"
         R"j("excelMask":{"replaced":false,"mask":"General"}})j"},
        {__LINE__, R"j({"type":"double","values":[1,2],"want":["excelValue"]})j",
         R"j({"texts":["1.00","2.00"],"excelValue":["1","2"]})j"},
        {__LINE__,
         R"j({"type":"double","value":3,"factory":"custom","pattern":"[MMMM]","want":["validExcelPattern"]})j",
         R"j({"text":"March","validExcelPattern":false})j"},
    };
    checkAnswers(aRows);
}

TEST(Batch, TellsWhereNoFormatterAppliesAndWhatWasRaised)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"type":"bigint","value":1})j",
         R"j({"formatter":null,"assertions":[{"expression":"false","source":"webformat/valueformatter"}]})j"},
        {__LINE__, R"j({"type":"unknown","value":null})j",
         R"j({"formatter":null,"assertions":[{"expression":"false","source":"webformat/valueformatter"}]})j"},
        {__LINE__, R"j({"do":"definition","definition":"<tov:dataFormat xsi:type='tov:date'/>","id":7})j",
         R"j({"id":7,"type":"date","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" )j"
         R"j(xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:date\" )j"
         R"j(biFormat=\"predefinedFormat\"/>","msoStyle":"mso-format-number:date",)j"
         R"j("excelPattern":{"normal":"","excel":""},"stream":"040000006461746514","formula":null,)j"
         R"j("fields":{"biFormat":"predefinedFormat","displayTimeZone":"","predefinedFormat":""},)j"
         R"j("assertions":[{"expression":"!sPredefinedFormat.empty()","source":"webformat/dateformatters"}]})j"},
    };
    checkAnswers(aRows);
}

TEST(Batch, SaysWhatIsWrongWithARequest)
{
    const BatchRow aRows[] = {
        {__LINE__, "nonsense",
         R"j({"error":"no JSON at byte 2: syntax error while parsing value - invalid literal; last read: )j"
         R"j('no'","line":1})j"},
        {__LINE__, "[1]", R"j({"error":"found an array, expected an object","line":2})j"},
        {__LINE__, "{\"a\":1,\"a\":2}", R"j({"error":"the key \"a\" stands twice in an object","line":3})j"},
        {__LINE__, R"j({"id":1})j", R"j({"id":1,"error":"found no \"type\", expected a string"})j"},
        {__LINE__, R"j({"do":"dance"})j",
         R"j({"error":"\"do\": found \"dance\", expected one of format, definition, compare, section,)j"
         R"j( encode, explain, convert, removeHtml, bracketTags, offset"})j"},
        {__LINE__, R"j({"type":"number","value":1})j",
         R"j({"error":"found the type \"number\", expected one of invalid, unknown, bit, tinyint, smallint,)j"
         R"j( integer, unsignedinteger, bigint, unsignedbigint, real, float, double, numeric, decimal, char,)j"
         R"j( varchar, longvarchar, date, time, timestamp, binary, varbinary"})j"},
        {__LINE__, R"j({"type":"double","storage":"float","value":1})j",
         R"j({"error":"found the storage \"float\", expected one of double, timestamp, wchar, int32, uint32,)j"
         R"j( int64, uint64, rawvalue, corvidnumber"})j"},
        {__LINE__, R"j({"type":"double","value":1,"output":"HTML"})j",
         R"j({"error":"found the output \"HTML\", expected one of text, html, xml, javascript, pdf, sql,)j"
         R"j( sqlliteral, xlsx"})j"},
        {__LINE__, R"j({"type":"double","value":1,"locale":"xx-YY"})j",
         R"j({"error":"found the locale \"xx-YY\", expected a known one such as en-US (see: webformat list )j"
         R"j(locales)"})j"},
        {__LINE__, R"j({"type":"double","value":1,"factory":"magic"})j",
         R"j({"error":"\"factory\": found \"magic\", expected one of format, default, input, custom, csv,)j"
         R"j( literal, xml, drill, sqlLiteral, truncate, plain, duration"})j"},
        {__LINE__, R"j({"type":"double"})j", R"j({"error":"expected one of \"value\" and \"values\""})j"},
        {__LINE__, R"j({"type":"double","value":1,"values":[1]})j",
         R"j({"error":"expected one of \"value\" and \"values\""})j"},
        {__LINE__, R"j({"type":"double","values":1})j",
         R"j({"error":"\"values\": found a number, expected an array"})j"},
        {__LINE__, R"j({"type":"double","values":[1,"x",3]})j",
         R"j({"error":"value 2: found \"x\", expected a number, NaN, INF or -INF"})j"},
        {__LINE__, R"j({"type":"double","value":"12x"})j",
         R"j({"error":"found \"12x\", expected a number, NaN, INF or -INF"})j"},
        {__LINE__, R"j({"type":"double","value":1,"minDigits":-1})j",
         R"j({"error":"\"minDigits\": found \"-1\", expected a whole number from 0 to 4294967295"})j"},
        {__LINE__, R"j({"type":"double","value":1,"minDigits":"2"})j",
         R"j({"error":"\"minDigits\": found a string, expected a whole number from 0 to 4294967295"})j"},
        {__LINE__, R"j({"type":"double","value":1,"zeroOverride":1})j",
         R"j({"error":"\"zeroOverride\": found a number, expected true or false"})j"},
        {__LINE__, R"j({"type":"double","value":1,"want":["everything"]})j",
         R"j({"error":"\"want\": found \"everything\", expected excelValue, validExcelPattern,)j"
         R"j( customFormat or excelMask"})j"},
        {__LINE__, R"j({"type":"double","value":1,"factory":"custom"})j",
         R"j({"error":"found no \"pattern\", expected a string"})j"},
        {__LINE__, R"j({"type":"double","storage":"int32","value":1,"factory":"drill","definition":7})j",
         R"j({"text":"1"})j"},
        {__LINE__, R"j({"type":"double","value":1,"definition":"<tov:dataFormat"})j",
         R"j({"error":"\"definition\":1:16: found the end of the document, expected an attribute, \"/>\" or \">\""})j"},
        {__LINE__, R"j({"type":"double","value":1,"definition":"<tov:column/>"})j",
         R"j({"error":"\"definition\": found the element \"column\", expected \"tov:dataFormat\""})j"},
        {__LINE__, R"j({"type":"varchar","value":"a\u0000b","factory":"drill"})j",
         R"j({"error":"found the character U+0000, expected text without it"})j"},
        {__LINE__, R"j({"type":"varchar","storage":"rawvalue","value":{"hex":"00"},"factory":"drill"})j",
         R"j({"error":"found a value of the storage \"rawvalue\", expected \"wchar\", which the formatter takes"})j"},
    };
    checkAnswers(aRows);
}

TEST(Batch, RefusesLoneSurrogatesDeepJsonAndBrokenText)
{
    for (const std::string& sLine :
         {std::string(R"j({"type":"varchar","value":"\ud800"})j"),
          std::string(R"j({"type":"varchar","value":"\udc00"})j"), "{\"a\":" + std::string(100000, '['),
          std::string("{\"id\":\"\xFF\"}"), std::string()})
    {
        const std::string sResponse = ask(sLine + "\n{\"type\":\"double\",\"value\":1}\n");
        EXPECT_EQ(sResponse.rfind("{\"error\":\"", 0), 0u) << sLine.substr(0, 40);
        EXPECT_NE(sResponse.find(",\"line\":1}\n{\"text\":\"1.00\"}\n"), std::string::npos) << sResponse.substr(0, 200);
    }
}

TEST(Batch, AnswersTheOtherRequests)
{
    const BatchRow aRows[] = {
        {__LINE__,
         R"j({"do":"definition","definition":"<tov:dataFormat xsi:type='tov:number' commas='1' )j"
         R"j(negativeType='()' scaleFactor='auto'/>"})j",
         R"j({"type":"number","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" )j"
         R"j(xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:number\" )j"
         R"j(minDigits=\"2\" maxDigits=\"2\" commas=\"true\" negativeType=\"paren\"/>",)j"
         R"j("msoStyle":"mso-number-format:'#,##0.00_);(#,##0.00)';","excelPattern":{"normal":"#,)j"
         R"j(##0.00_);(#,##0.00)","excel":"#,##0.00_);(#,##0.00)"},)j"
         R"j("stream":"060000006E756D62657202000000020000000102","formula":null,"fields":{"commas":true,)j"
         R"j("minDigits":2,"maxDigits":2,"negativeType":"paren","scale":0,"scaleFactor":"auto"}})j"},
        {__LINE__, R"j({"do":"definition","definition":"<tov:dataFormat xsi:type='tov:unheard-of'/>"})j",
         R"j({"type":null})j"},
        {__LINE__, R"j({"do":"definition","definition":"<tov:dataFormat/>","id":1})j", R"j({"id":1,"type":null})j"},
        {__LINE__, R"j({"do":"definition"})j", R"j({"error":"found no \"definition\", expected a string"})j"},
        {__LINE__, R"j({"do":"compare","a":null,"b":null})j", R"j({"order":0})j"},
        {__LINE__, R"j({"do":"compare","b":"<tov:dataFormat xsi:type='tov:number'/>"})j", R"j({"order":-1})j"},
        {__LINE__, R"j({"do":"compare","a":1,"b":2})j", R"j({"error":"\"a\": found a number, expected a string"})j"},
        {__LINE__,
         R"j({"do":"compare","a":"<tov:dataFormat xsi:type='tov:number'/>",)j"
         R"j("b":"<tov:dataFormat xsi:type='tov:text'/>"})j",
         R"j({"order":1})j"},
        {__LINE__,
         R"j({"do":"compare","a":"<tov:dataFormat xsi:type='tov:number' minDigits='1'/>",)j"
         R"j("b":"<tov:dataFormat xsi:type='tov:number'/>"})j",
         R"j({"order":-1})j"},
        {__LINE__, R"j({"do":"section","format":"abc[html]b","output":"html"})j", R"j({"text":"b","found":"html"})j"},
        {__LINE__, R"j({"do":"section","format":"abc[html]b","output":"xlsx"})j", R"j({"text":"b","found":"html"})j"},
        {__LINE__, R"j({"do":"section","format":"abc[html]b","output":"sql"})j", R"j({"text":"abc","found":"text"})j"},
        {__LINE__, R"j({"do":"encode","text":"a<b","output":"html"})j", R"j({"text":"a&lt;b"})j"},
        {__LINE__, R"j({"do":"encode","text":"it's\u0000","output":"sqlliteral"})j", R"j({"text":"it''s"})j"},
        {__LINE__, R"j({"do":"encode","text":"a\u0000"})j", R"j({"text":"a\u0000"})j"},
        {__LINE__, R"j({"do":"encode","output":"html"})j", R"j({"error":"found no \"text\", expected a string"})j"},
        {__LINE__, R"j({"do":"explain","kind":"poem","pattern":"d"})j",
         R"j({"error":"\"kind\": found \"poem\", expected numeric, date, duration or text"})j"},
        {__LINE__, R"j({"do":"explain","kind":"numeric","pattern":""})j",
         R"j({"items":[],"flags":{"grouping":false,"currency":false,"percent":false,"power10":0,)j"
         R"j("minFractionDigits":0,"maxFractionDigits":0,"scale":"none","scaleIndicator":"",)j"
         R"j("validExcelPattern":true,"scalingComma":false},"mods":[],"next":null})j"},
        {__LINE__, R"j({"do":"explain","kind":"numeric","pattern":"#,##0.00;'[%60]"})j",
         R"j({"items":[{"type":"kOptional","start":-61444,"end":-3,"text":"","numerator":0,"denominator":1},)j"
         R"j({"type":"kOptional","start":-3,"end":-1,"text":"","numerator":0,"denominator":1},)j"
         R"j({"type":"kRequired","start":-1,"end":0,"text":"","numerator":0,"denominator":1},)j"
         R"j({"type":"kDecimal","start":0,"end":0,"text":"","numerator":1,"denominator":1},)j"
         R"j({"type":"kRequired","start":0,"end":2,"text":"","numerator":0,"denominator":1}],)j"
         R"j("flags":{"grouping":true,"currency":false,"percent":false,"power10":0,"minFractionDigits":2,)j"
         R"j("maxFractionDigits":2,"scale":"none","scaleIndicator":"","validExcelPattern":true,)j"
         R"j("scalingComma":false},"mods":[],"next":{"items":[{"type":"kText","start":0,"end":0,"text":"'",)j"
         R"j("numerator":0,"denominator":1}],"flags":{"grouping":false,"currency":false,"percent":false,)j"
         R"j("power10":0,"minFractionDigits":0,"maxFractionDigits":0,"scale":"none","scaleIndicator":"",)j"
         R"j("validExcelPattern":true,"scalingComma":false},"mods":[{"div":60,"mod":0,"mult":100},{"div":1,)j"
         R"j("mod":60,"mult":1}],"next":null}})j"},
    };
    checkAnswers(aRows);
}

TEST(Batch, KeepsTheOrderWithManyThreadsAndWhatEachOneRaised)
{
    std::string sRequests;
    std::string sExpected;
    for (int nId = 0; nId < 5000; ++nId)
    {
        const std::string sId = std::to_string(nId);
        if (nId % 3 == 0)
        {
            sRequests += "{\"id\":" + sId + ",\"type\":\"bigint\",\"value\":1}\n";
            sExpected += "{\"id\":" + sId +
                         ",\"formatter\":null,\"assertions\":[{\"expression\":\"false\",\"source\":\"webformat/"
                         "valueformatter\"}]}\n";
        }
        else
        {
            sRequests += "{\"id\":" + sId + ",\"type\":\"integer\",\"value\":" + sId + "}\n";
            sExpected += "{\"id\":" + sId + ",\"text\":\"" + sId + "\"}\n";
        }
    }
    EXPECT_TRUE(ask(sRequests, {"--threads", "8"}) == sExpected);
    EXPECT_TRUE(ask(sRequests) == sExpected);
}

// A program that asks, waits for the answer and asks again must never wait in vain.
TEST(Batch, AnswersEachChunkBeforeTheNextOneComes)
{
    int aIn[2];
    int aOut[2];
    ASSERT_EQ(pipe(aIn) | pipe(aOut), 0);
    const pid_t nChild = fork();
    if (nChild == 0)
    {
        dup2(aIn[0], STDIN_FILENO);
        dup2(aOut[1], STDOUT_FILENO);
        for (const int nFile : {aIn[0], aIn[1], aOut[0], aOut[1]})
            close(nFile);
        execl(WEBFORMAT_COMMAND, "webformat", "batch", "--threads", "2", nullptr);
        _exit(127);
    }
    close(aIn[0]);
    close(aOut[1]);
    for (int nTime = 0; nTime < 3; ++nTime)
    {
        const std::string sRequest = "{\"type\":\"integer\",\"value\":" + std::to_string(nTime) + "}\n";
        ASSERT_EQ(write(aIn[1], sRequest.data(), sRequest.size()), static_cast<ssize_t>(sRequest.size()));
        pollfd tPoll = {aOut[0], POLLIN, 0};
        ASSERT_EQ(poll(&tPoll, 1, 30000), 1);
        char aAnswer[256] = {};
        ASSERT_GT(read(aOut[0], aAnswer, sizeof aAnswer - 1), 0);
        EXPECT_EQ(std::string(aAnswer), "{\"text\":\"" + std::to_string(nTime) + "\"}\n");
    }
    close(aIn[1]);
    int nStatus = -1;
    waitpid(nChild, &nStatus, 0);
    EXPECT_EQ(nStatus, 0);
    close(aOut[0]);
}

}  // namespace tov
