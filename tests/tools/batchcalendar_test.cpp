#include <gtest/gtest.h>

#include "tools/support/batchrows.h"

namespace tov {

namespace {

// A custom format of the moment 2024-07-01 12:00:00 with these keys; summer in Europe and America.
std::string noon(const std::string& sKeys, const std::string& sPattern = "yyyy-MM-dd HH:mm")
{
    return R"j({"type":"timestamp","factory":"custom","value":"2024-07-01 12:00:00","pattern":")j" + sPattern + "\"," +
           sKeys + "}";
}

std::string text(const std::string& sText)
{
    return R"j({"text":")j" + sText + "\"}";
}

}  // namespace

TEST(BatchCalendar, FormatsDatesTimesAndTimestampsWithEveryFactory)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"type":"date","value":"2024-03-05"})j", text("3/5/2024")},
        {__LINE__, R"j({"type":"time","value":"17:08:09.5"})j", text("5:08:09 PM")},
        {__LINE__, R"j({"type":"timestamp","value":"2024-03-05 07:08:09"})j", text("3/5/2024 7:08:09 AM")},
        {__LINE__, R"j({"type":"timestamp","value":"2024-03-05T07:08:09"})j", text("3/5/2024 7:08:09 AM")},
        {__LINE__,
         R"j({"type":"date","value":"2024-03-05","locale":"de-DE",)j"
         R"j("definition":"<tov:dataFormat xsi:type='tov:date' biFormat='dateLong'/>"})j",
         text("Dienstag, 5. März 2024")},
        {__LINE__,
         R"j({"type":"timestamp","value":"2024-03-05 07:08:09","locale":"de-DE",)j"
         R"j("definition":"<tov:dataFormat xsi:type='tov:date' predefinedFormat='MMMM yy'/>"})j",
         text("März 24")},
        {__LINE__,
         R"j({"type":"timestamp","value":"2024-03-05 17:08:09",)j"
         R"j("definition":"<tov:dataFormat xsi:type='tov:whistler' whistlerFormat='d/m/yy h:mm'/>"})j",
         text("5/3/24 17:08")},
        // A definition of another kind.
        {__LINE__, R"j({"type":"time","value":"07:08:09","definition":"<tov:dataFormat xsi:type='tov:number'/>"})j",
         text("01/01/1970 07:08:09")},
        {__LINE__, R"j({"type":"date","factory":"default","values":["2024-03-05",null]})j",
         R"j({"texts":["3/5/2024",""]})j"},
        {__LINE__, R"j({"type":"date","value":null,"output":"html"})j", text("&nbsp;")},
        {__LINE__, R"j({"type":"date","factory":"input","value":"2024-03-05"})j", text("03/05/2024")},
        {__LINE__, R"j({"type":"time","factory":"input","value":"17:08:09"})j", text("5:08:09 PM")},
        {__LINE__, R"j({"type":"timestamp","factory":"input","value":"2024-03-05 07:08:09"})j",
         text("03/05/2024 7:08:09 AM")},
        {__LINE__,
         R"j({"type":"timestamp","factory":"custom","pattern":"yyyy-MM-dd HH:mm:ss.#########",)j"
         R"j("value":"2024-03-05 07:08:09.123456789","want":["excelValue","validExcelPattern","customFormat",)j"
         R"j("excelMask"]})j",
         R"j({"text":"2024-03-05 07:08:09.123456789","excelValue":"1709622489123","validExcelPattern":true,)j"
         R"j("customFormat":"yyyy-MM-dd HH:mm:ss.#########","excelMask":{"replaced":false,"mask":"General"}})j"},
        // The fraction is rounded with its carry.
        {__LINE__,
         R"j({"type":"timestamp","factory":"custom","pattern":"yyyy-MM-dd HH:mm:ss.###",)j"
         R"j("value":"2024-12-31 23:59:59.9996"})j",
         text("2025-01-01 00:00:00")},
        {__LINE__, R"j({"type":"date","factory":"csv","value":"2024-03-05","locale":"de-DE"})j", text("2024-03-05")},
        {__LINE__, R"j({"type":"time","factory":"csv","value":"07:08:09.5"})j", text("07:08:09.5")},
        {__LINE__, R"j({"type":"timestamp","factory":"csv","value":"2024-03-05 07:08:09"})j",
         text("2024-03-05 07:08:09")},
        {__LINE__, R"j({"type":"date","factory":"literal","output":"sql","value":"2024-03-05"})j",
         text("date '2024-03-05'")},
        {__LINE__, R"j({"type":"time","factory":"literal","output":"sql","value":"07:08:09.5"})j",
         text("time '07:08:09.5'")},
        {__LINE__, R"j({"type":"timestamp","factory":"literal","output":"sql","value":"2024-03-05 07:08:09.25"})j",
         text("timestamp '2024-03-05 07:08:09.25'")},
        {__LINE__, R"j({"type":"date","factory":"xml","output":"xml","value":"0800-03-05"})j", text("0800-03-05")},
        {__LINE__, R"j({"type":"time","factory":"xml","output":"xml","value":"07:08:09"})j", text("07:08:09")},
        {__LINE__, R"j({"type":"timestamp","factory":"xml","output":"xml","value":"2024-03-05 07:08:09.125"})j",
         text("2024-03-05T07:08:09.125")},
        {__LINE__, R"j({"type":"timestamp","factory":"drill","output":"sql","value":"2024-03-05 07:08:09"})j",
         text("timestamp '2024-03-05 07:08:09'")},
    };
    checkAnswers(aRows);
}

TEST(BatchCalendar, TakesOnlyDaysAndTimesThatThereAre)
{
    const auto value = [](const char* pType, const char* pValue)
    { return std::string(R"j({"type":")j") + pType + R"j(","factory":"xml","value":")j" + pValue + "\"}"; };
    const auto wrong = [](const char* pValue, const char* pExpected)
    { return std::string(R"j({"error":"found \")j") + pValue + R"j(\", expected )j" + pExpected + "\"}"; };
    constexpr const char* kpDate = "a date such as 2024-03-05";
    constexpr const char* kpTime = "a time such as 07:08:09.5";
    constexpr const char* kpTimestamp = "a timestamp such as 2024-03-05 07:08:09.5";
    std::vector<BatchRow> vRows;
    for (const char* pDate : {"2024-02-29", "2000-02-29", "2024-12-31"})
        vRows.push_back({__LINE__, value("date", pDate), text(pDate)});
    for (const char* pDate : {"", "2024-02-30", "2023-02-29", "1900-02-29", "2024-04-31", "2024-00-05", "2024-13-05",
                              "2024-03-00", "24-03-05", "2024-3-5", "2024-03-05 ", " 2024-03-05", "2024/03/05",
                              "2024-03-05 07:08:09", "20240305", "+2024-03-05"})
        vRows.push_back({__LINE__, value("date", pDate), wrong(pDate, kpDate)});
    for (const char* pTime : {"24:00:00", "23:60:00", "23:59:60", "7:08:09", "07:08", "07:08:09.", "07:08:09,5",
                              "07:08:09.1234567890", "-07:08:09", "07:08:09 AM"})
        vRows.push_back({__LINE__, value("time", pTime), wrong(pTime, kpTime)});
    for (const char* pTimestamp : {"2024-03-05", "07:08:09", "2024-03-05  07:08:09", "2024-02-30 07:08:09",
                                   "2024-03-05 24:00:00", "2024-03-05 07:08:09Z", "2024-03-05t07:08:09"})
        vRows.push_back({__LINE__, value("timestamp", pTimestamp), wrong(pTimestamp, kpTimestamp)});
    vRows.push_back({__LINE__, R"j({"type":"date","value":20240305})j",
                     R"j({"error":"found a number, expected a date such as 2024-03-05"})j"});
    vRows.push_back({__LINE__, R"j({"type":"date","storage":"double","value":1})j",
                     R"j({"error":"found a value of the storage \"double\", expected \"timestamp\", which the )j"
                     R"j(formatter takes"})j"});
    std::string sRequests;
    std::string sExpected;
    for (const BatchRow& tRow : vRows)
    {
        sRequests += tRow.sRequest + "\n";
        sExpected += tRow.sResponse + "\n";
    }
    EXPECT_EQ(ask(sRequests), sExpected);
}

TEST(BatchCalendar, ShowsTimestampsInTheZoneThatCountsFirst)
{
    const BatchRow aRows[] = {
        {__LINE__, noon(R"j("dataOffset":0,"displayTimeZone":"America/New_York")j"), text("2024-07-01 08:00")},
        {__LINE__, noon(R"j("dataOffset":-300,"displayTimeZone":"America/New_York")j"), text("2024-07-01 13:00")},
        {__LINE__, noon(R"j("dataOffset":0,"displayTimeZone":"Asia/Kathmandu")j"), text("2024-07-01 17:45")},
        {__LINE__, noon(R"j("dataOffset":-720,"displayTimeZone":"Asia/Tokyo")j"), text("2024-07-02 09:00")},
        // A resolver's own offset is 0.
        {__LINE__, noon(R"j("displayTimeZone":"asia/tokyo")j"), text("2024-07-01 21:00")},
        // The metadata's offset goes before the session's; one that is none lets the session's count.
        {__LINE__, noon(R"j("dataOffset":60,"session":{"dataOffset":"-300"},"displayTimeZone":"Europe/Paris")j"),
         text("2024-07-01 13:00")},
        {__LINE__,
         noon(R"j("dataOffset":"unknown","session":{"dataOffset":"GMT-05:30"},"displayTimeZone":"Europe/Paris")j"),
         text("2024-07-01 19:30")},
        {__LINE__, noon(R"j("dataOffset":1081,"session":{"dataOffset":"GMT-05:30"},"displayTimeZone":"Europe/Paris")j"),
         text("2024-07-01 19:30")},
        {__LINE__, noon(R"j("dataOffset":"unknown","displayTimeZone":"Europe/Paris")j"), text("2024-07-01 12:00")},
        {__LINE__, noon(R"j("dataOffset":-1081,"displayTimeZone":"Europe/Paris")j"), text("2024-07-01 12:00")},
        // Zones: the argument, the session's, the variable, the user's three.
        {__LINE__, noon(R"j("displayTimeZone":"Europe/Paris","session":{"display":"Asia/Tokyo"})j"),
         text("2024-07-01 14:00")},
        {__LINE__, noon(R"j("displayTimeZone":"default","session":{"display":"Asia/Tokyo"})j"),
         text("2024-07-01 21:00")},
        {__LINE__, noon(R"j("session":{"display":"Asia/Tokyo"},"displayVariable":"Europe/Paris")j"),
         text("2024-07-01 21:00")},
        {__LINE__, noon(R"j("session":{"userPref":"Asia/Tokyo"},"displayVariable":"Europe/Paris")j"),
         text("2024-07-01 14:00")},
        {__LINE__,
         noon(R"j("session":{"userPref":"Asia/Tokyo","userVar":"Europe/Paris","browser":"America/New_York"})j"),
         text("2024-07-01 21:00")},
        {__LINE__, noon(R"j("session":{"userPref":"default","userVar":"Europe/Paris","browser":"America/New_York"})j"),
         text("2024-07-01 14:00")},
        {__LINE__, noon(R"j("session":{"browser":"America/New_York"})j"), text("2024-07-01 08:00")},
        {__LINE__, noon(R"j("session":{"browser":"Tokyo Standard Time"})j"), text("2024-07-01 21:00")},
        {__LINE__, noon(R"j("session":{"browser":"Nowhere"})j"), text("2024-07-01 12:00")},
        {__LINE__, noon(R"j("session":{})j"), text("2024-07-01 12:00")},
        // A variable needs a session.
        {__LINE__, noon(R"j("displayVariable":"Europe/Paris")j"), text("2024-07-01 12:00")},
        {__LINE__, noon(R"j("displayTimeZone":"Europe/Pariss")j"), text("2024-07-01 12:00")},
        {__LINE__, noon(R"j("dataOffset":null,"displayTimeZone":null,"session":null,"displayVariable":null)j"),
         text("2024-07-01 12:00")},
        // The pattern's own zone, and the one before it.
        {__LINE__, noon(R"j("dataOffset":0)j", "HH:mm[TZ: Asia/Tokyo ]"), text("21:00GMT+9")},
        {__LINE__, noon(R"j("dataOffset":0,"displayTimeZone":"Europe/Paris","language":"fr")j", "HH:mm[TZ:Asia/Tokyo]"),
         text("14:00UTC+1")},
        // The zone stands behind the text, and nowhere without an offset.
        {__LINE__, noon(R"j("dataOffset":0,"displayTimeZone":"America/New_York")j", "TZ HH:mm "), text(" 08:00 ET")},
        {__LINE__, noon(R"j("dataOffset":0,"displayTimeZone":"UTC")j", "HH:mm TZ"), text("12:00 UTC")},
        {__LINE__, noon(R"j("dataOffset":"unknown","displayTimeZone":"UTC")j", "HH:mm TZ"), text("12:00 ")},
        {__LINE__, noon(R"j("language":"en-us")j", "HH:mm TZ"), text("12:00 ")},
    };
    checkAnswers(aRows);
}

TEST(BatchCalendar, TakesZonesInEveryFactoryThatKnowsThem)
{
    const std::string sKeys = R"j("dataOffset":0,"displayTimeZone":"America/New_York",)j";
    const std::string sStamp = R"j("type":"timestamp","value":"2024-01-01 03:04:05"})j";
    const BatchRow aRows[] = {
        {__LINE__, "{" + sKeys + sStamp, text("12/31/2023 10:04:05 PM")},
        {__LINE__, R"j({"factory":"default",)j" + sKeys + sStamp, text("12/31/2023 10:04:05 PM")},
        {__LINE__, R"j({"factory":"input",)j" + sKeys + sStamp, text("12/31/2023 10:04:05 PM")},
        {__LINE__, R"j({"factory":"csv",)j" + sKeys + sStamp, text("2024-01-01 03:04:05")},
        {__LINE__, "{" + sKeys + R"j("type":"date","value":"2024-01-01"})j", text("1/1/2024")},
        {__LINE__, R"j({"factory":"default",)j" + sKeys + R"j("type":"time","value":"03:04:05"})j", text("3:04:05 AM")},
        {__LINE__, R"j({"factory":"default",)j" + sKeys + R"j("type":"double","value":1.5})j", text("1.50")},
        {__LINE__, R"j({"factory":"input",)j" + sKeys + R"j("type":"double","value":1.5})j", text("1.50")},
        {__LINE__, R"j({"factory":"custom","pattern":"0.0",)j" + sKeys + R"j("type":"double","value":1.5})j",
         text("1.5")},
        // The argument goes before the definition's zone, which counts without it.
        {__LINE__,
         R"j({"definition":"<tov:dataFormat xsi:type='tov:date' biFormat='dateODBC' displayTimeZone='Asia/Tokyo'/>",)j" +
             sKeys + sStamp,
         text("2023-12-31")},
        {__LINE__,
         R"j({"definition":"<tov:dataFormat xsi:type='tov:date' biFormat='timeHourMin' displayTimeZone='Asia/Tokyo'/>",)j"
         R"j("dataOffset":0,)j" +
             sStamp,
         text("12:04 PM")},
    };
    checkAnswers(aRows);
}

TEST(BatchCalendar, SaysWhatIsWrongWithZoneKeys)
{
    const BatchRow aRows[] = {
        {__LINE__, noon(R"j("dataOffset":"60")j"),
         R"j({"error":"\"dataOffset\": found \"60\", expected a number of minutes or \"unknown\""})j"},
        {__LINE__, noon(R"j("dataOffset":true)j"),
         R"j({"error":"\"dataOffset\": found a boolean, expected a number of minutes or \"unknown\""})j"},
        {__LINE__, noon(R"j("dataOffset":1.5)j"),
         R"j({"error":"found \"1.5\", expected a whole number from -2147483648 to 2147483647"})j"},
        {__LINE__, noon(R"j("displayTimeZone":1)j"),
         R"j({"error":"\"displayTimeZone\": found a number, expected a string"})j"},
        {__LINE__, noon(R"j("displayVariable":[])j"),
         R"j({"error":"\"displayVariable\": found an array, expected a string"})j"},
        {__LINE__, noon(R"j("session":"x")j"), R"j({"error":"\"session\": found a string, expected an object"})j"},
        {__LINE__, noon(R"j("session":{"dataOffset":60})j"),
         R"j({"error":"\"dataOffset\": found a number, expected a string"})j"},
        {__LINE__, noon(R"j("session":{"browser":{}})j"),
         R"j({"error":"\"browser\": found an object, expected a string"})j"},
    };
    checkAnswers(aRows);
}

TEST(BatchCalendar, ReadsOffsets)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"do":"offset","text":"-60"})j", R"j({"offset":-60})j"},
        {__LINE__, R"j({"do":"offset","text":"GMT+05:30"})j", R"j({"offset":330})j"},
        {__LINE__, R"j({"do":"offset","text":"GMT-05:30"})j", R"j({"offset":-330})j"},
        {__LINE__, R"j({"do":"offset","text":"GMT+00:45"})j", R"j({"offset":-45})j"},
        {__LINE__, R"j({"do":"offset","text":"GMT+5"})j", R"j({"offset":0})j"},
        {__LINE__, R"j({"do":"offset","text":"","fallback":"unknown"})j", R"j({"offset":"unknown"})j"},
        {__LINE__, R"j({"do":"offset","text":"Default","fallback":"unknown"})j", R"j({"offset":"unknown"})j"},
        {__LINE__, R"j({"do":"offset","text":"default","fallback":"default"})j", R"j({"offset":"default"})j"},
        {__LINE__, R"j({"do":"offset","text":""})j", R"j({"offset":"default"})j"},
        {__LINE__, R"j({"do":"offset","text":"UNKNOWN","fallback":"unknown"})j", R"j({"offset":"default"})j"},
        {__LINE__, R"j({"do":"offset"})j", R"j({"error":"found no \"text\", expected a string"})j"},
        {__LINE__, R"j({"do":"offset","text":"1","fallback":"0"})j",
         R"j({"error":"\"fallback\": found \"0\", expected unknown or default"})j"},
    };
    checkAnswers(aRows);
}

TEST(BatchCalendar, FormatsDurations)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"factory":"duration","value":93784})j", text(" 01d:02h:03m:04s")},
        {__LINE__, R"j({"factory":"duration","type":"double","values":[93784.5,null]})j",
         R"j({"texts":[" 01d:02h:03m:05s",""]})j"},
        {__LINE__, R"j({"factory":"duration","pattern":null,"value":null,"output":"html"})j", text("&nbsp;")},
        {__LINE__, R"j({"factory":"duration","pattern":"hh:mm","value":5430})j", text("01:31")},
        {__LINE__, R"j({"factory":"duration","type":"integer","pattern":"hh:mm","value":5430})j", text("01:30")},
        {__LINE__, R"j({"factory":"duration","type":"unsignedinteger","pattern":"hh:mmr","value":5430})j",
         text("01:31")},
        {__LINE__, R"j({"factory":"duration","type":"bigint","pattern":"dd","value":"9223372036854775807"})j",
         text("106751991167300")},
        {__LINE__, R"j({"factory":"duration","storage":"uint64","pattern":"ss","value":"18446744073709551615"})j",
         text("18446744073709551615")},
        {__LINE__, R"j({"factory":"duration","type":"numeric","pattern":"[opt:dd\"d \"]hh:mmc","value":"3600.001"})j",
         text("01:01")},
        {__LINE__, R"j({"factory":"duration","pattern":"mm:ss","value":-61})j", text("-02:-01")},
        {__LINE__, R"j({"factory":"duration","pattern":"\"<\"hh","value":3600,"output":"html"})j", text("&lt;01")},
        {__LINE__,
         R"j({"factory":"duration","value":7200,)j"
         R"j("definition":"<tov:dataFormat xsi:type='tov:custom' customFormat='mm'/>"})j",
         text("120")},
        {__LINE__, R"j({"factory":"custom","type":"double","pattern":"[duration(min)]hh:mm","value":90})j",
         text("01:30")},
        {__LINE__, R"j({"factory":"duration","type":"varchar","value":"90"})j",
         R"j({"error":"found the storage \"wchar\", expected that of a number: durations are numbers of seconds"})j"},
        {__LINE__, R"j({"factory":"duration","type":"integer","value":1.5})j",
         R"j({"error":"found \"1.5\", expected a whole number from -2147483648 to 2147483647"})j"},
    };
    checkAnswers(aRows);
}

TEST(BatchCalendar, ConvertsOlderDateFormats)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"do":"convert","kind":"date","format":"d/m/yy h:mm"})j",
         R"j({"type":"custom","xml":"<tov:dataFormat xmlns:tov=\"urn:tov:schemas:report:v1\" )j"
         R"j(xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:type=\"tov:custom\" )j"
         R"j(customFormat=\"d/M/yy H:mm\"/>","msoStyle":"mso-number-format:'d/m/yy h:mm';",)j"
         R"j("excelPattern":{"normal":"d/m/yy h:mm","excel":"d/m/yy h:mm"},)j"
         R"j("stream":"06000000637573746F6D0B000000642F4D2F797920483A6D6D","formula":null,)j"
         R"j("fields":{"customFormat":"d/M/yy H:mm","displayTimeZone":""}})j"},
        {__LINE__, R"j({"do":"convert","kind":"poem","format":"0"})j",
         R"j({"error":"\"kind\": found \"poem\", expected numeric, date or text"})j"},
        {__LINE__, R"j({"do":"convert","kind":"date"})j", R"j({"error":"found no \"format\", expected a string"})j"},
        {__LINE__, R"j({"do":"convert","format":"d"})j", R"j({"error":"found no \"kind\", expected a string"})j"},
    };
    checkAnswers(aRows);
    EXPECT_NE(ask(R"j({"do":"convert","kind":"date","format":"h:mm:ss"})j").find(R"j("customFormat":"H:mmss")j"),
              std::string::npos);
}

TEST(BatchCalendar, ExplainsDateAndDurationPatterns)
{
    const BatchRow aRows[] = {
        {__LINE__, R"j({"do":"explain","kind":"date","pattern":"d/MM"})j",
         R"j({"items":[{"type":"kDay","pad":0,"caps":false,"text":""},)j"
         R"j({"type":"kSeparator","pad":0,"caps":false,"text":"/"},{"type":"kMonth","pad":2,"caps":false,"text":""}]})j"},
        {__LINE__, R"j({"do":"explain","kind":"date","pattern":"yDDDD[L:de-DE]ss.0\\<TZ","output":"html"})j",
         R"j({"items":[{"type":"kYear","pad":0,"caps":true,"text":""},{"type":"kDOWAlpha","pad":4,"caps":true,"text":""},)j"
         R"j({"type":"kSetLocale","pad":0,"caps":false,"text":"de-DE"},)j"
         R"j({"type":"kSecondWDecimal","pad":0,"caps":false,"text":"00.0"},)j"
         R"j({"type":"kSeparator","pad":0,"caps":false,"text":"&lt;"}]})j"},
        {__LINE__, R"j({"do":"explain","kind":"date","pattern":"[FMT:timeHourMin]","locale":"de-DE"})j",
         R"j({"items":[{"type":"kHour24","pad":2,"caps":false,"text":""},)j"
         R"j({"type":"kSeparator","pad":0,"caps":false,"text":":"},{"type":"kMinute","pad":2,"caps":false,"text":""}]})j"},
        {__LINE__, R"j({"do":"explain","kind":"date","pattern":""})j", R"j({"items":[]})j"},
        {__LINE__, R"j({"do":"explain","kind":"duration","pattern":"[opt:dd\"<\"]h:mmr","output":"html"})j",
         R"j({"items":[{"type":"kDay","pad":2,"text":"","basis":"kDayOpt"},)j"
         R"j({"type":"kSeparator","pad":0,"text":"&lt;","basis":"kDayOpt"},)j"
         R"j({"type":"kHour","pad":0,"text":"","basis":"kRequired"},)j"
         R"j({"type":"kText","pad":0,"text":":","basis":"kRequired"},)j"
         R"j({"type":"kMinute","pad":2,"text":"","basis":"kRequired"}]})j"},
        {__LINE__, R"j({"do":"explain","kind":"duration","pattern":""})j", R"j({"items":[]})j"},
        {__LINE__, R"j({"do":"explain","kind":"date"})j", R"j({"error":"found no \"pattern\", expected a string"})j"},
        {__LINE__, R"j({"do":"explain","kind":"duration","pattern":"","locale":"xx"})j",
         R"j({"error":"found the locale \"xx\", expected a known one such as en-US (see: webformat list locales)"})j"},
    };
    checkAnswers(aRows);
}

TEST(BatchCalendar, AnswersTheSameWithManyThreads)
{
    std::string sRequests;
    for (int nMinute = 0; nMinute < 2000; ++nMinute)
        sRequests += noon(R"j("displayTimeZone":"Asia/Tokyo","dataOffset":)j" + std::to_string(nMinute % 1000)) + "\n";
    const std::string sOne = ask(sRequests);
    EXPECT_EQ(std::count(sOne.begin(), sOne.end(), '\n'), 2000);
    EXPECT_TRUE(ask(sRequests, {"--threads", "8"}) == sOne);
}

}  // namespace tov
