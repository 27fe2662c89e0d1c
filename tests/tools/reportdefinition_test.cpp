#include <gtest/gtest.h>

#include "tools/support/report.h"

namespace tov {

TEST(ReportDefinition, SaysWhatIsWrongWithAReportFileAndWhere)
{
    struct Row
    {
        int nLine;
        std::string sXml;
        std::string sMessage;  // behind the file's name
    };
    const auto format = [](const std::string& sAttributes) {
        return reportXml("<tov:column name=\"a\" type=\"double\">\n<tov:dataFormat " + sAttributes + "/></tov:column>");
    };
    const Row aRows[] = {
        {__LINE__, "", ":1:1: "},
        {__LINE__, "<tov:report", ":1:"},
        {__LINE__, "<report/>",
         ":1:1: found the element \"report\", expected the element \"tov:report\" of the report namespace"},
        {__LINE__, "<!DOCTYPE a [<!ENTITY b \"c\">]><a>&b;</a>", ":1:"},
        {__LINE__, reportXml(""), ":1:1: found no columns, expected elements \"tov:column\""},
        {__LINE__, reportXml("<tov:column name='a' type='double'/>", "\n locale=\"xx-YY\""),
         ":2:10: locale: found \"xx-YY\", expected a known locale such as \"en-US\""},
        {__LINE__, reportXml("<tov:column name='a' type='double'/>", "\n colour=\"red\""),
         ":2:10: found the attribute \"colour\", expected \"locale\", \"language\", \"title\", \"dataOffset\" or "
         "\"displayTimeZone\""},
        {__LINE__, reportXml("<tov:column name='a' type='double'/>", "\n dataOffset=\"1081\""),
         ":2:14: dataOffset: found \"1081\", expected a whole number of minutes from -1080 to 1080, or \"unknown\""},
        {__LINE__, reportXml("<tov:column name='a' type='double'/>", "\n dataOffset=\"\""),
         ":2:14: dataOffset: found \"\", expected a whole number"},
        {__LINE__, reportXml("<tov:column name='a' type='double'/>", "\n displayTimeZone=\"Europe/Berlinn\""),
         ":2:19: displayTimeZone: found \"Europe/Berlinn\", expected a known time zone such as \"America/New_York\" "
         "(see: webformat list time-zones)"},
        {__LINE__, reportXml("<tov:row/>"), ":2:1: found the element \"row\", expected the element \"tov:column\""},
        {__LINE__, reportXml("x<tov:column name='a' type='double'/>"),
         ":1:1: found text in the element \"report\", expected elements only"},
        {__LINE__, reportXml("<tov:column type='double'/>"),
         ":2:1: found no attribute \"name\", expected a column to have one"},
        {__LINE__, reportXml("<tov:column name='a'/>"),
         ":2:1: found no attribute \"type\", expected a column to have one"},
        {__LINE__, reportXml("<tov:column name='a' type='real number'/>"),
         ":2:28: type: found \"real number\", expected \"bit\", \"tinyint\","},
        {__LINE__, reportXml("<tov:column name='a' type='unknown'/>"),
         ":2:28: type: found \"unknown\", expected \"bit\""},
        {__LINE__, reportXml("<tov:column name='a' type='double' size='1'/>"),
         ":2:42: found the attribute \"size\", expected \"name\", \"heading\" or \"type\""},
        {__LINE__, reportXml("<tov:column name='a' type='double'><b/></tov:column>"),
         ":2:36: found the element \"b\", expected the element \"tov:dataFormat\""},
        {__LINE__,
         reportXml("<tov:column name='a' type='double'><tov:dataFormat "
                   "xsi:type='tov:number'/>\n<tov:dataFormat/></tov:column>"),
         ":3:1: found a second element, expected one data format"},
        {__LINE__, format("commas='true'"),
         ":3:1: found no attribute \"xsi:type\", expected one that names \"none\", \"custom\","},
        {__LINE__, format("xsi:type='tov:nummer'"),
         ":3:27: type: found \"tov:nummer\", expected \"none\", \"custom\","},
        {__LINE__, format("xsi:type='tov:number' negativeType='redParn'"),
         ":3:53: negativeType: found \"redParn\", expected \"minus\", \"red\", \"paren\", \"redParen\" or "
         "\"redMinus\""},
        {__LINE__, format("xsi:type='tov:number' minDigits='two'"),
         ":3:50: minDigits: found \"two\", expected a whole number from 0 to 4294967295"},
        {__LINE__, format("xsi:type='tov:number' maxDigits='-1'"),
         ":3:50: maxDigits: found \"-1\", expected a whole number from 0 to 4294967295"},
        {__LINE__, format("xsi:type='tov:number' scale='1.5'"),
         ":3:46: scale: found \"1.5\", expected a whole number from -2147483648"},
        {__LINE__, format("xsi:type='tov:number' commas='yes'"),
         ":3:47: commas: found \"yes\", expected true or false"},
        {__LINE__, format("xsi:type='tov:number' scaleFactor='dozen'"),
         ":3:52: scaleFactor: found \"dozen\", expected \"none\", \"auto\", \"first\", \"second\", \"thousand\", "
         "\"million\", \"billion\" or \"trillion\""},
        // Not listed in the locale: the value would be shown as it is.
        {__LINE__, format("xsi:type='tov:number' scaleFactor='hundred-thousand'"),
         ":3:52: scaleFactor: found \"hundred-thousand\", expected \"none\","},
        {__LINE__, format("xsi:type='tov:number' scaleFactor='million]0'"), ":3:52: scaleFactor: found \"million]0\""},
        {__LINE__, format("xsi:type='tov:number' currencyTag='EUR'"),
         ":3:52: found the attribute \"currencyTag\", expected \"minDigits\","},
        {__LINE__, format("xsi:type='tov:custom'"), ":3:1: found no pattern, expected the attribute \"customFormat\""},
        {__LINE__, format("xsi:type='tov:text' textFormat='bold'"),
         ":3:49: textFormat: found \"bold\", expected \"plain\", \"plainNBSP\", \"html\", \"hyperLinkHTTP\", "
         "\"hyperLink\", "
         "\"mailTo\" or \"imageURL\""},
        {__LINE__, format("xsi:type='tov:date' biFormat='shortDate'"),
         ":3:47: biFormat: found \"shortDate\", expected \"dateShort\", \"dateLong\","},
        {__LINE__, format("xsi:type='tov:date' biFormat='dateLong' displayTimeZone='EST5'"),
         ":3:74: displayTimeZone: found \"EST5\", expected a known time zone"},
        {__LINE__, format("xsi:type='tov:date' predefinedFormat='HH[TZ: Nowhere ]'"),
         ":3:55: predefinedFormat: found \"HH[TZ: Nowhere ]\", expected a known time zone"},
        {__LINE__, format("xsi:type='tov:custom' customFormat='HH[TZ:Nowhere]'"),
         ":3:53: customFormat: found \"HH[TZ:Nowhere]\", expected a known time zone"},
        {__LINE__, format("xsi:type='tov:date' biFormat='dateLong'"),
         ":3:1: found a data format that does not apply, expected one for values of the type \"double\""},
        {__LINE__, format("xsi:type='tov:date'"),
         ":3:1: found no pattern, expected the attribute \"biFormat\" or \"predefinedFormat\""},
        {__LINE__, format("xsi:type='tov:whistler'"),
         ":3:1: found no pattern, expected the attribute \"whistlerFormat\""},
        {__LINE__, format("xsi:type='tov:conditionalcurrency' currencyTag='EUR'"),
         ":3:1: found no tag column, expected"},
        {__LINE__,
         reportXml("<tov:column name='a' type='double'><tov:dataFormat xsi:type='tov:conditionalcurrency'>"
                   "<tov:currencyTagColumn><x:expr xmlns:x='urn:tov:schemas:expression:v1'> </x:expr>"
                   "</tov:currencyTagColumn></tov:dataFormat></tov:column>"),
         ":2:36: found no tag column, expected"},
        {__LINE__,
         reportXml("<tov:column name='a' type='double'><tov:dataFormat xsi:type='tov:conditionalcurrency'>"
                   "<tov:currencyTagColumn><x:expr xmlns:x='urn:tov:schemas:expression:v1'>b</x:expr>"
                   "</tov:currencyTagColumn></tov:dataFormat></tov:column>"),
         ":2:36: found the currency tag column \"b\", expected one of the data: \"a\""},
        {__LINE__,
         reportXml("<tov:column name='a' type='varchar'><tov:dataFormat xsi:type='tov:custom' "
                   "customFormat='[$:currencyTagColumn=b]'/></tov:column>"),
         ":2:37: found the currency tag column \"b\", expected one of the data: \"a\""},
        {__LINE__, format("xsi:type='tov:custom' customFormat='[$:currencyTagColumn=]'"),
         ":3:53: customFormat: found \"[$:currencyTagColumn=]\", expected a pattern or"},
        {__LINE__, format("xsi:type='tov:custom' customFormat='[$:currencyTagColumn=a'"),
         ":3:53: customFormat: found \"[$:currencyTagColumn=a\", expected a pattern or"},
        {__LINE__, format("xsi:type='tov:currency' commas='true'"),
         ":3:1: found no currency, expected the attribute \"currencyTag\""},
        {__LINE__, format("xsi:type='tov:currency' currencyTag='loc:xx-YY'"),
         ":3:54: currencyTag: found \"loc:xx-YY\", expected a currency tag such as \"loc:en-US\", \"int:EUR\" or "
         "\"USD\""},
        {__LINE__, format("xsi:type='tov:text' textFormat='plain'"),
         ":3:1: found a data format that does not apply, expected one for values of the type \"double\""},
        {__LINE__, reportXml("<tov:column name='b' type='double'/>"),
         ":2:1: found the column \"b\", expected one of the data: \"a\""},
    };
    const TemporaryFolder tFolder;
    const std::string sData = tFolder.write("d.csv", "a\n1\n");
    for (const Row& tRow : aRows)
    {
        const std::string sReport = tFolder.write("r.xml", tRow.sXml);
        const CommandResult tResult =
            runCommand({"report", sReport, "--data", sData, "--output", "html", "-o", tFolder.path("out.html")});
        const std::string sExpected = "webformat: " + sReport + tRow.sMessage;
        EXPECT_EQ(tResult.nStatus, 1) << "row at line " << tRow.nLine;
        EXPECT_EQ(tResult.sErrors.substr(0, sExpected.size()), sExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tFolder.names(), "d.csv r.xml") << "row at line " << tRow.nLine;
    }
}

TEST(ReportDefinition, TakesOlderAndOptionalSettingsOfReportFiles)
{
    const TemporaryFolder tFolder;
    for (const char* pAttributes :
         {"xsi:type='tov:number' negativeType='[red]()'", "xsi:type='tov:number' negativeType='-'",
          "xsi:type=' tov:number ' commas=' 1 '", "xsi:type='tov:none'", "xsi:type='tov:number' scaleFactor='auto'",
          "xsi:type='tov:number' scaleFactor=''", "xsi:type='tov:percent' scale='-3'"})
    {
        const CommandResult tResult = render(tFolder,
                                             reportXml("<tov:column name='a' type='double'><tov:dataFormat " +
                                                       std::string(pAttributes) + "/></tov:column>"),
                                             "a\n1\n", "text");
        EXPECT_EQ(tResult.nStatus, 0) << pAttributes << tResult.sErrors;
    }
}

}  // namespace tov
