#include "tools/webformat/jsonvalue.h"

#include <gtest/gtest.h>

namespace tov {

namespace {

std::string rewritten(const std::string& sText)
{
    try
    {
        std::string sResult;
        JsonValue::parse(sText).appendTo(sResult);
        return sResult;
    }
    catch (const JsonValue::Error& tError)
    {
        return "error: " + std::string(tError.what());
    }
}

struct Row
{
    int nLine;
    std::string sInput;
    std::string sExpected;
};

}  // namespace

TEST(JsonValue, KeepsEveryValueAsItWasWritten)
{
    const Row aRows[] = {
        {__LINE__, "null", "null"},
        {__LINE__, " [ true , false ] ", "[true,false]"},
        {__LINE__, "[]", "[]"},
        {__LINE__, "{}", "{}"},
        {__LINE__, "1.50", "1.50"},
        {__LINE__, "123456789012345678901234567890.12", "123456789012345678901234567890.12"},
        {__LINE__, "18446744073709551615", "18446744073709551615"},
        {__LINE__, "-9223372036854775808", "-9223372036854775808"},
        {__LINE__, R"({"b":1,"a":[{"c":null}]})", R"({"b":1,"a":[{"c":null}]})"},
        {__LINE__, R"("a\"\\\/\b\f\n\r\t\u00e9\u0000\ud83c\udfb8")",
         "\"a\\\"\\\\/\\u0008\\u000c\\n\\r\\t\xC3\xA9\\u0000\xF0\x9F\x8E\xB8\""},
    };
    for (const Row& tRow : aRows)
        EXPECT_EQ(rewritten(tRow.sInput), tRow.sExpected) << "row at line " << tRow.nLine;
}

TEST(JsonValue, RefusesWhatIsNoJson)
{
    const char* const aInputs[] = {
        "",    "{",           "[1,]",        "{\"a\":1,}",         "nan",      "01",
        "'a'", "\"\\ud800\"", "\"\\udc00\"", "\"\\ud800\\u0041\"", "\"\xFF\"", "\"\xED\xA0\x80\"",
        "1 2", "\"a\nb\""};
    for (const char* pInput : aInputs)
        EXPECT_EQ(rewritten(pInput).rfind("error: no JSON at byte ", 0), 0u) << pInput;
}

TEST(JsonValue, RefusesAKeyThatStandsTwice)
{
    EXPECT_EQ(rewritten(R"({"a":1,"b":{"a":2},"a":3})"), "error: the key \"a\" stands twice in an object");
}

TEST(JsonValue, BoundsDepthAndKeys)
{
    const auto nested = [](int nDepth)
    { return std::string(static_cast<std::size_t>(nDepth), '[') + std::string(static_cast<std::size_t>(nDepth), ']'); };
    EXPECT_EQ(rewritten(nested(64)), nested(64));
    EXPECT_EQ(rewritten(nested(65)), "error: values are nested more than 64 deep");
    EXPECT_EQ(rewritten(std::string(10000000, '[')), "error: values are nested more than 64 deep");
    std::string sObject = "{";
    for (int nKey = 0; nKey < 1001; ++nKey)
        sObject += "\"" + std::to_string(nKey) + "\":0,";
    EXPECT_EQ(rewritten(sObject), "error: an object has more than 1000 keys");
}

TEST(JsonValue, WritesObjectsMemberByMember)
{
    JsonObject tObject;
    EXPECT_EQ(tObject.text(), "{}");
    tObject.add("a", L"\u00E9\"").add("b", true).add("c", 7).addNull("d").addRaw("e", "[1]");
    EXPECT_EQ(tObject.text(), "{\"a\":\"\xC3\xA9\\\"\",\"b\":true,\"c\":7,\"d\":null,\"e\":[1]}");
    JsonObject tOther;
    tOther.addAll(tObject).addAll(JsonObject()).add("f", "g");
    EXPECT_EQ(tOther.text(), tObject.text().substr(0, tObject.text().size() - 1) + ",\"f\":\"g\"}");
}

}  // namespace tov
