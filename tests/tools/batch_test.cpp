#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tools/support/command.h"

namespace tov {

namespace {

std::string ask(const std::string& sRequests, const std::vector<std::string>& vOptions = {})
{
    std::vector<std::string> vArguments = {"batch"};
    vArguments.insert(vArguments.end(), vOptions.begin(), vOptions.end());
    return runCommand(vArguments, sRequests).sOutput;
}

struct Row
{
    int nLine;
    std::string sRequest;
    std::string sResponse;
};

// Sends all requests at once and compares the answers one by one.
template <std::size_t nRows>
void checkAnswers(const Row (&aRows)[nRows])
{
    std::string sRequests;
    for (const Row& tRow : aRows)
        sRequests += tRow.sRequest + "\n";
    const std::string sResponses = ask(sRequests);
    std::size_t nStart = 0;
    for (const Row& tRow : aRows)
    {
        const std::size_t nEnd = std::min(sResponses.find('\n', nStart), sResponses.size());
        EXPECT_EQ(sResponses.substr(nStart, nEnd - nStart), tRow.sResponse) << "row at line " << tRow.nLine;
        nStart = std::min(nEnd + 1, sResponses.size());
    }
    EXPECT_EQ(nStart, sResponses.size());
}

}  // namespace

TEST(Batch, FormatsValuesWithEveryFactory)
{
    const Row aRows[] = {
        {__LINE__, R"({"id":1,"type":"double","value":1234.5})", R"({"id":1,"text":"1234.50"})"},
        {__LINE__, R"({"type":"double","values":[1,null,"NaN","INF","-INF",-0.0]})",
         R"({"texts":["1.00","","NAN","INF","-INF","0.00"]})"},
        {__LINE__, R"({"type":"double","values":[]})", R"({"texts":[]})"},
        {__LINE__, R"({"id":[1.50,{"a":"é"}],"type":"integer","value":-7})", R"({"id":[1.50,{"a":"é"}],"text":"-7"})"},
        {__LINE__, R"({"id":null,"type":"double","value":1,"output":"html","definition":"<tov:dataFormat xsi:type='tov:number' negativeType='redParen'/>"})",
         R"({"id":null,"text":"1.00"})"},
        {__LINE__, R"({"type":"double","value":-1,"output":"html","definition":"<tov:dataFormat xsi:type='tov:number' negativeType='redParen'/>"})",
         R"({"text":"<font style=\"color:red\">(1.00)</font>"})"},
        {__LINE__, R"({"type":"double","value":null,"output":"html"})", R"({"text":"&nbsp;"})"},
        {__LINE__, R"({"type":"double","value":1234.5,"locale":"de-DE","definition":"<tov:dataFormat xsi:type='tov:number' commas='true'/>"})",
         R"({"text":"1.234,50"})"},
        {__LINE__, R"({"type":"double","value":1.23456,"factory":"default","minDigits":1,"maxDigits":3})", R"({"text":"1.235"})"},
        {__LINE__, R"({"type":"double","value":1.6,"factory":"default","zeroOverride":true})", R"({"text":"2"})"},
        {__LINE__, R"({"type":"double","value":2500000,"factory":"default","scaleFactor":"million"})", R"({"text":"2.50M"})"},
        {__LINE__, R"({"type":"double","value":1.5,"factory":"input","minDigits":3,"maxDigits":3})", R"({"text":"1.500"})"},
        {__LINE__, R"({"type":"double","value":1234.5,"factory":"custom","pattern":"#,##0.00"})", R"({"text":"1,234.50"})"},
        {__LINE__, R"({"type":"integer","storage":"int64","value":"-9223372036854775808","factory":"custom","pattern":"#,##0;(0)"})",
         R"({"text":"(9223372036854775808)"})"},
        {__LINE__, R"({"type":"unsignedbigint","value":18446744073709551615,"factory":"csv"})", R"({"text":"18446744073709551615"})"},
        {__LINE__, R"({"type":"numeric","value":"0.1234567890123456789012345678901234567","factory":"csv"})",
         R"({"text":"0.1234567890123456789012345678901234567"})"},
        {__LINE__, R"({"type":"varbinary","value":{"hex":"00ff"}})", R"({"text":"00FF"})"},
        {__LINE__, R"({"type":"varbinary","value":{"base64":"AP8="},"factory":"csv"})", R"({"text":"00FF"})"},
        {__LINE__, R"({"type":"varchar","value":"a<b","factory":"drill","output":"html"})", R"({"text":"a&lt;b"})"},
        {__LINE__, R"({"type":"varchar","values":[null,"x"],"factory":"drill","output":"html"})", R"({"texts":["*KT_NULL*","x"]})"},
        {__LINE__, R"({"type":"double","value":0.25,"factory":"literal","output":"sql"})", R"({"text":"0.25"})"},
        {__LINE__, R"({"type":"double","value":12.5,"factory":"custom","pattern":"0.0%","want":["excelValue","validExcelPattern","customFormat","excelMask"]})",
         R"({"text":"12.5%","excelValue":"0.125","validExcelPattern":true,"customFormat":"0.0%","excelMask":{"replaced":false,"mask":"General"}})"},
        {__LINE__, R"({"type":"double","values":[1,2],"want":["excelValue"]})", R"({"texts":["1.00","2.00"],"excelValue":["1","2"]})"},
        {__LINE__, R"({"type":"double","value":3,"factory":"custom","pattern":"[MMMM]","want":["validExcelPattern"]})",
         R"({"text":"March","validExcelPattern":false})"},
    };
checkAnswers(aRows);
}

TEST(Batch, TellsWhereNoFormatterAppliesAndWhatWasRaised)
{
    const Row aRows[] = {
        {__LINE__, R"({"type":"bigint","value":1})",
         R"({"formatter":null,"assertions":[{"expression":"false","source":"webformat/valueformatter"}]})"},
        {__LINE__, R"({"type":"unknown","value":null})",
         R"({"formatter":null,"assertions":[{"expression":"false","source":"webformat/valueformatter"}]})"},
        {__LINE__, R"({"do":"definition","definition":"<tov:dataFormat xsi:type='tov:date'/>","id":7})",
         R"({"id":7,"type":"date","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:date\" biFormat=\"predefinedFormat\"/>","msoStyle":"mso-format-number:date","excelPattern":{"normal":"","excel":""},"stream":"040000006461746514","formula":null,"fields":{"biFormat":"predefinedFormat","displayTimeZone":"","predefinedFormat":""},"assertions":[{"expression":"!sPredefinedFormat.empty()","source":"webformat/dateformatters"}]})"},
    };
checkAnswers(aRows);
}

TEST(Batch, SaysWhatIsWrongWithARequest)
{
    const Row aRows[] = {
        {__LINE__, "nonsense", R"({"error":"no JSON at byte 2: syntax error while parsing value - invalid literal; last read: 'no'","line":1})"},
        {__LINE__, "[1]", R"({"error":"found an array, expected an object","line":2})"},
        {__LINE__, "{\"a\":1,\"a\":2}", R"({"error":"the key \"a\" stands twice in an object","line":3})"},
        {__LINE__, R"({"id":1})", R"({"id":1,"error":"found no \"type\", expected a string"})"},
        {__LINE__, R"({"do":"dance"})",
         R"({"error":"\"do\": found \"dance\", expected one of format, definition, compare, section, encode, explain, convert, removeHtml, bracketTags, offset"})"},
        {__LINE__, R"({"do":"convert","kind":"numeric","format":"0"})", R"({"error":"the request \"convert\" is not available"})"},
        {__LINE__, R"({"type":"number","value":1})",
         R"({"error":"found the type \"number\", expected one of invalid, unknown, bit, tinyint, smallint, integer, unsignedinteger, bigint, unsignedbigint, real, float, double, numeric, decimal, char, varchar, longvarchar, date, time, timestamp, binary, varbinary"})"},
        {__LINE__, R"({"type":"double","storage":"float","value":1})",
         R"({"error":"found the storage \"float\", expected one of double, timestamp, wchar, int32, uint32, int64, uint64, rawvalue, corvidnumber"})"},
        {__LINE__, R"({"type":"double","value":1,"output":"HTML"})",
         R"({"error":"found the output \"HTML\", expected one of text, html, xml, javascript, pdf, sql, sqlliteral, xlsx"})"},
        {__LINE__, R"({"type":"double","value":1,"locale":"xx-YY"})",
         R"({"error":"found the locale \"xx-YY\", expected a known one such as en-US (see: webformat list locales)"})"},
        {__LINE__, R"({"type":"double","value":1,"factory":"magic"})",
         R"({"error":"\"factory\": found \"magic\", expected one of format, default, input, custom, csv, literal, xml, drill"})"},
        {__LINE__, R"({"type":"varchar","value":"a","factory":"truncate","length":3})", R"({"error":"the factory \"truncate\" is not available"})"},
        {__LINE__, R"({"type":"double","value":1,"compound":"x"})", R"({"error":"the key \"compound\" is not available"})"},
        {__LINE__, R"({"type":"double","value":1,"session":{}})", R"({"error":"the key \"session\" is not available"})"},
        {__LINE__, R"({"type":"double"})", R"({"error":"expected one of \"value\" and \"values\""})"},
        {__LINE__, R"({"type":"double","value":1,"values":[1]})", R"({"error":"expected one of \"value\" and \"values\""})"},
        {__LINE__, R"({"type":"double","values":1})", R"({"error":"\"values\": found a number, expected an array"})"},
        {__LINE__, R"({"type":"double","value":"12x"})", R"({"error":"found \"12x\", expected a number, NaN, INF or -INF"})"},
        {__LINE__, R"({"type":"double","value":1,"minDigits":-1})", R"({"error":"found \"-1\", expected a whole number from 0 to 4294967295"})"},
        {__LINE__, R"({"type":"double","value":1,"minDigits":"2"})", R"({"error":"\"minDigits\": found a string, expected a whole number from 0 to 4294967295"})"},
        {__LINE__, R"({"type":"double","value":1,"zeroOverride":1})", R"({"error":"\"zeroOverride\": found a number, expected true or false"})"},
        {__LINE__, R"({"type":"double","value":1,"want":["everything"]})",
         R"({"error":"\"want\": found \"everything\", expected excelValue, validExcelPattern, customFormat or excelMask"})"},
        {__LINE__, R"({"type":"double","value":1,"factory":"custom"})", R"({"error":"found no \"pattern\", expected a string"})"},
        {__LINE__, R"({"type":"double","storage":"int32","value":1,"factory":"drill","definition":7})", R"({"text":"1"})"},
        {__LINE__, R"({"type":"double","value":1,"definition":"<tov:dataFormat"})",
         R"({"error":"\"definition\":1:16: found the end of the document, expected an attribute, \"/>\" or \">\""})"},
        {__LINE__, R"({"type":"double","value":1,"definition":"<tov:column/>"})",
         R"({"error":"\"definition\": found the element \"column\", expected \"tov:dataFormat\""})"},
        {__LINE__, R"({"type":"varchar","value":"a\u0000b","factory":"drill"})", R"({"error":"found the character U+0000, expected text without it"})"},
        {__LINE__, R"({"type":"varchar","storage":"rawvalue","value":{"hex":"00"},"factory":"drill"})",
         R"({"error":"found a value of the storage \"rawvalue\", expected \"wchar\", which the formatter takes"})"},
    };
    checkAnswers(aRows);
}

TEST(Batch, RefusesLoneSurrogatesDeepJsonAndBrokenText)
{
    for (const std::string& sLine :
         {std::string(R"({"type":"varchar","value":"\ud800"})"), std::string(R"({"type":"varchar","value":"\udc00"})"),
          "{\"a\":" + std::string(100000, '['), std::string("{\"id\":\"\xFF\"}"), std::string()})
    {
        const std::string sResponse = ask(sLine + "\n{\"type\":\"double\",\"value\":1}\n");
        EXPECT_EQ(sResponse.rfind("{\"error\":\"", 0), 0u) << sLine.substr(0, 40);
        EXPECT_NE(sResponse.find(",\"line\":1}\n{\"text\":\"1.00\"}\n"), std::string::npos) << sResponse.substr(0, 200);
    }
}

TEST(Batch, AnswersTheOtherRequests)
{
    const Row aRows[] = {
        {__LINE__, R"({"do":"definition","definition":"<tov:dataFormat xsi:type='tov:number' commas='1' negativeType='()' scaleFactor='auto'/>"})",
         R"({"type":"number","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:number\" minDigits=\"2\" maxDigits=\"2\" commas=\"true\" negativeType=\"paren\"/>","msoStyle":"mso-number-format:'#,##0.00_);(#,##0.00)';","excelPattern":{"normal":"#,##0.00_);(#,##0.00)","excel":"#,##0.00_);(#,##0.00)"},"stream":"060000006E756D62657202000000020000000102","formula":null,"fields":{"commas":true,"minDigits":2,"maxDigits":2,"negativeType":"paren","scale":0,"scaleFactor":"auto"}})"},
        {__LINE__, R"({"do":"definition","definition":"<tov:dataFormat xsi:type='tov:unheard-of'/>"})", R"({"type":null})"},
        {__LINE__, R"({"do":"definition","definition":"<tov:dataFormat/>","id":1})", R"({"id":1,"type":null})"},
        {__LINE__, R"({"do":"definition"})", R"({"error":"found no \"definition\", expected a string"})"},
        {__LINE__, R"({"do":"compare","a":null,"b":null})", R"({"order":0})"},
        {__LINE__, R"({"do":"compare","b":"<tov:dataFormat xsi:type='tov:number'/>"})", R"({"order":-1})"},
        {__LINE__, R"({"do":"compare","a":"<tov:dataFormat xsi:type='tov:number'/>","b":"<tov:dataFormat xsi:type='tov:text'/>"})", R"({"order":1})"},
        {__LINE__, R"({"do":"compare","a":"<tov:dataFormat xsi:type='tov:number' minDigits='1'/>","b":"<tov:dataFormat xsi:type='tov:number'/>"})",
         R"({"order":-1})"},
        {__LINE__, R"({"do":"section","format":"abc[html]b","output":"html"})", R"({"text":"b","found":"html"})"},
        {__LINE__, R"({"do":"section","format":"abc[html]b","output":"xlsx"})", R"({"text":"b","found":"html"})"},
        {__LINE__, R"({"do":"section","format":"abc[html]b","output":"sql"})", R"({"text":"abc","found":"text"})"},
        {__LINE__, R"({"do":"encode","text":"a<b","output":"html"})", R"({"text":"a&lt;b"})"},
        {__LINE__, R"({"do":"encode","text":"it's\u0000","output":"sqlliteral"})", R"({"text":"it''s"})"},
        {__LINE__, R"({"do":"encode","text":"a\u0000"})", R"({"text":"a\u0000"})"},
        {__LINE__, R"({"do":"encode","output":"html"})", R"({"error":"found no \"text\", expected a string"})"},
        {__LINE__, R"({"do":"explain","kind":"date","pattern":"d"})", R"({"error":"the kind \"date\" is not available"})"},
        {__LINE__, R"({"do":"explain","kind":"poem","pattern":"d"})", R"({"error":"\"kind\": found \"poem\", expected numeric"})"},
        {__LINE__, R"({"do":"explain","kind":"numeric","pattern":""})",
         R"({"items":[],"flags":{"grouping":false,"currency":false,"percent":false,"power10":0,"minFractionDigits":0,"maxFractionDigits":0,"scale":"none","scaleIndicator":"","validExcelPattern":true,"scalingComma":false},"mods":[],"next":null})"},
        {__LINE__, R"({"do":"explain","kind":"numeric","pattern":"#,##0.00;'[%60]"})",
         R"({"items":[{"type":"kOptional","start":-61444,"end":-3,"text":"","numerator":0,"denominator":1},{"type":"kOptional","start":-3,"end":-1,"text":"","numerator":0,"denominator":1},{"type":"kRequired","start":-1,"end":0,"text":"","numerator":0,"denominator":1},{"type":"kDecimal","start":0,"end":0,"text":"","numerator":1,"denominator":1},{"type":"kRequired","start":0,"end":2,"text":"","numerator":0,"denominator":1}],"flags":{"grouping":true,"currency":false,"percent":false,"power10":0,"minFractionDigits":2,"maxFractionDigits":2,"scale":"none","scaleIndicator":"","validExcelPattern":true,"scalingComma":false},"mods":[],"next":{"items":[{"type":"kText","start":0,"end":0,"text":"'","numerator":0,"denominator":1}],"flags":{"grouping":false,"currency":false,"percent":false,"power10":0,"minFractionDigits":0,"maxFractionDigits":0,"scale":"none","scaleIndicator":"","validExcelPattern":true,"scalingComma":false},"mods":[{"div":60,"mod":0,"mult":100},{"div":1,"mod":60,"mult":1}],"next":null}})"},
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
