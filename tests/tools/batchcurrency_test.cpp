// Batch requests about currencies and the older numeric formats.

#include <gtest/gtest.h>

#include "tools/support/batchrows.h"

namespace tov {
namespace {

// A request for -1234.5 with a currency definition and further keys.
std::string request(const std::string& sDefinition, const std::string& sKeys = {})
{
    return R"j({"type":"double","value":-1234.5,"definition":"<tov:dataFormat xsi:type='tov:)j" + sDefinition +
           R"j(")j" + sKeys + "}";
}

std::string currency(const std::string& sTag, const std::string& sKeys = {}, const char* pStyle = "minus")
{
    return request("currency' commas='true' currencyTag='" + sTag + "' negativeType='" + pStyle + "'/>", sKeys);
}

std::string conditional(const std::string& sKeys)
{
    return request(
        "conditionalcurrency' commas='true'><tov:currencyTagColumn><tovx:expr xsi:type='tovx:sqlExpression'>"
        "Currency</tovx:expr></tov:currencyTagColumn></tov:dataFormat>",
        sKeys);
}

std::string custom(const std::string& sKeys)
{
    return request("custom' customFormat='[$:currencyTagColumn=Currency]'/>", sKeys);
}

TEST(BatchCurrency, FormatsAmounts)
{
    const BatchRow aRows[] = {
        {__LINE__, currency("loc:en-US"), R"j({"text":"-$1,234.50"})j"},
        {__LINE__, currency("loc:en-US", "", "paren"), R"j({"text":"($1,234.50)"})j"},
        {__LINE__, currency("loc:en-US", R"j(,"output":"html")j", "redParen"),
         R"j({"text":"<font style=\"color:red\">($1,234.50)</font>"})j"},
        {__LINE__, currency("int:EUR", R"j(,"output":"html","language":"he")j"),
         R"j({"text":"&#x200e;-EUR&nbsp;1,234.50"})j"},
        {__LINE__, currency("loc:de-DE", R"j(,"locale":"de-DE")j"), "{\"text\":\"-1.234,50 \u20AC\"}"},
        {__LINE__, currency("EUR", R"j(,"minDigits":3,"scaleFactor":"thousand","want":["customFormat"])j"),
         "{\"text\":\"-\u20AC1.23K\",\"customFormat\":\"[$:\u20AC]#,##0.00[scale-name:thousand];-[$:\u20AC]"
         "#,##0.00[scale-name:thousand]\"}"},
    };
    checkAnswers(aRows);
}

TEST(BatchCurrency, TakesTheOverridingCurrencyOfTheRequest)
{
    const BatchRow aRows[] = {
        {__LINE__, conditional(R"j(,"overridingCurrency":"int:EUR")j"), R"j({"text":"-EUR 1,234.50"})j"},
        {__LINE__, conditional(R"j(,"overridingCurrency":"loc:de-DE","locale":"de-DE")j"),
         "{\"text\":\"-1.234,50 \u20AC\"}"},
        {__LINE__, conditional(R"j(,"overridingCurrency":"JPY","output":"xlsx","want":["excelMask"])j"),
         "{\"text\":\"-\u00A51,234.50\",\"excelMask\":{\"replaced\":true,\"mask\":\"[$\u00A5]#,##0.00;-[$\u00A5]"
         "#,##0.00\"}}"},
        {__LINE__, custom(R"j(,"overridingCurrency":"int:JPY","want":["excelMask","excelValue"])j"),
         R"j({"text":"-JPY 1,235","excelValue":"-1234.5","excelMask":)j"
         R"j({"replaced":true,"mask":"[$JPY] #,##0;-[$JPY] #,##0"}})j"},
        {__LINE__, currency("nope", R"j(,"overridingCurrency":"int:EUR")j"), R"j({"text":"-EUR 1,234.50"})j"},
        {__LINE__, currency("int:USD", R"j(,"overridingCurrency":"int:EUR","want":["excelMask"])j"),
         R"j({"text":"-USD 1,234.50","excelMask":{"replaced":false,"mask":"General"}})j"},
        {__LINE__, conditional(R"j(,"overridingCurrency":5)j"),
         R"j({"error":"\"overridingCurrency\": found a number, expected a string"})j"},
    };
    checkAnswers(aRows);
}

TEST(BatchCurrency, TellsUnknownCurrenciesInItsLog)
{
    const BatchRow aRows[] = {
        {__LINE__, currency("nope"), R"j({"text":"-1235","log":["Unknown Currency Tag nope"]})j"},
        {__LINE__, currency("nope", R"j(,"overridingCurrency":"neither")j"),
         R"j({"text":"-1235","log":["Unknown Currency Tag nope"]})j"},
        {__LINE__, conditional(""), R"j({"text":"-1235","log":["Unknown Currency Tag "]})j"},
        {__LINE__, conditional(R"j(,"overridingCurrency":"x","want":["excelMask"])j"),
         R"j({"text":"-1235","excelMask":{"replaced":false,"mask":"General"},"log":["Unknown Currency Tag x"]})j"},
        {__LINE__, custom(R"j(,"overridingCurrency":"")j"), R"j({"text":"-1235","log":["Unknown Currency Tag "]})j"},
        {__LINE__, currency("int:USD"), R"j({"text":"-USD 1,234.50"})j"},
    };
    checkAnswers(aRows);
}

TEST(BatchCurrency, ShowsDefinitionsWithTheirExcelPatterns)
{
    const BatchRow aRows[] = {
        {__LINE__,
         R"j({"do":"definition","definition":"<tov:dataFormat xsi:type='tov:currency' commas='true' )j"
         R"j(currencyTag='int:EUR' negativeType='redParen'/>"})j",
         R"j({"type":"currency","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" )j"
         R"j(xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:currency\" minDigits=\"2\" )j"
         R"j(maxDigits=\"2\" commas=\"true\" negativeType=\"redParen\" currencyTag=\"int:EUR\"/>",)j"
         R"j("msoStyle":"mso-number-format:'[$EUR] #,##0.00;[red]([$EUR] #,##0.00)';","excelPattern":)j"
         R"j({"normal":"[$EUR] #,##0.00;[red]([$EUR] #,##0.00)","excel":"[$EUR] #,##0.00;[red]([$EUR] #,##0.00)"},)j"
         R"j("stream":"0800000063757272656E637902000000020000000103)j"
         R"j(07000000696E743A455552","formula":null,"fields":{"commas":true,"minDigits":2,"maxDigits":2,)j"
         R"j("negativeType":"redParen","scale":0,"scaleFactor":"","currencyTag":"int:EUR"}})j"},
    };
    checkAnswers(aRows);
}

TEST(BatchCurrency, ConvertsOlderNumericFormatsToWhatTheyStandFor)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"do":"convert","kind":"numeric","format":"$#,##0.00;($#,##0.00)"})j",
         R"j({"type":"currency","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" )j"
         R"j(xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:currency\" minDigits=\"2\" )j"
         R"j(maxDigits=\"2\" commas=\"true\" negativeType=\"minus\" currencyTag=\"loc:en-US\"/>",)j"
         R"j("msoStyle":"mso-number-format:'[$$]#,##0.00;-[$$]#,##0.00';","excelPattern":)j"
         R"j({"normal":"[$$]#,##0.00;-[$$]#,##0.00","excel":"[$$]#,##0.00;-[$$]#,##0.00"},)j"
         R"j("stream":"0800000063757272656E637902000000020000000100)j"
         R"j(090000006C6F633A656E2D5553","formula":null,"fields":{"commas":true,"minDigits":2,"maxDigits":2,)j"
         R"j("negativeType":"minus","scale":0,"scaleFactor":"","currencyTag":"loc:en-US"}})j"},
    };
    checkAnswers(aRows);
    const std::string sWhistler = ask(R"j({"type":"double","value":-5,"definition":)j"
                                      R"j("<tov:dataFormat xsi:type='tov:whistler' whistlerFormat='#0.0;(#0.0)'/>"})j");
    EXPECT_EQ(sWhistler, "{\"text\":\"(5.0)\"}\n");
}

}  // namespace
}  // namespace tov
