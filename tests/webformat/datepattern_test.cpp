#include "webformat/datepattern.h"

#include <gtest/gtest.h>

#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

using Element = DatePattern::Element;
using OutputType = ValueFormatterTypes::OutputType;

Locale localeOf(const wchar_t* pTag)
{
    return LocaleTagLookup::lookupOrDefault(pTag);
}

// "kYear/4 'text' kSecondWDecimal/0'00.#'": the type and the pad of each element, "!" for bCaps, and its text; literal
// text alone.
std::string describe(const DatePattern& tPattern)
{
    std::string sResult;
    for (const Element& tElement : tPattern.elements())
    {
        if (!sResult.empty())
            sResult += ' ';
        if (tElement.eType != DatePattern::kSeparator)
            sResult += DatePattern::typeName(tElement.eType) + ("/" + std::to_string(tElement.nPad));
        if (tElement.bCaps)
            sResult += '!';
        if (tElement.eType == DatePattern::kSeparator || tElement.nTextLength != 0)
            sResult += "'" + toUtf8(tPattern.text(tElement)) + "'";
    }
    return sResult;
}

DatePattern parsed(const String& sPattern, OutputType eOutput = ValueFormatterTypes::kText,
                   const Locale& tLocale = Locale::kUSA)
{
    DatePattern tPattern(tLocale, eOutput);
    tPattern.addCustomFormat(sPattern, tLocale, eOutput);
    return tPattern;
}

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    const char* pExpected;
};

void expectElements(std::initializer_list<Row> tRows)
{
    for (const Row& tRow : tRows)
        EXPECT_EQ(describe(parsed(tRow.pPattern)), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(DatePattern, ReadsYears)
{
    expectElements({
        {__LINE__, L"y", "kYear/0!"},
        {__LINE__, L"yy", "kYear/2"},
        {__LINE__, L"yyy", "kYear/4"},
        {__LINE__, L"yyyy", "kYear/0"},
        {__LINE__, L"yyyyy", "kYear/4"},
        {__LINE__, L"yyyyyyyyyyyy", "kYear/4"},
        {__LINE__, L"Y", "kYear/0!"},
        {__LINE__, L"YYYY", "kYear/0"},
        {__LINE__, L"yY", "kYear/0! kYear/0!"},  // a run is of one case
    });
}

TEST(DatePattern, ReadsMonthsAndDays)
{
    expectElements({
        {__LINE__, L"M", "kMonth/0"},
        {__LINE__, L"MM", "kMonth/2"},
        {__LINE__, L"MMM", "kMonthAlpha/3"},
        {__LINE__, L"MMMM", "kMonthAlpha/4"},
        {__LINE__, L"MMMMM", "kMonthAlpha/5"},
        {__LINE__, L"MMMMMMMM", "kMonthAlpha/8"},
        {__LINE__, L"d", "kDay/0"},
        {__LINE__, L"D", "kDay/0"},
        {__LINE__, L"dd", "kDay/2"},
        {__LINE__, L"DD", "kDay/2"},
        {__LINE__, L"ddd", "kDOWAlpha/3"},
        {__LINE__, L"dddd", "kDOWAlpha/4"},
        {__LINE__, L"DDD", "kDOWAlpha/3!"},
        {__LINE__, L"DDDD", "kDOWAlpha/4!"},
        {__LINE__, L"ddddd", "kDOWAlpha/1"},
        {__LINE__, L"DDDDD", "kDOWAlpha/1"},  // kept: not in upper case
        {__LINE__, L"dddddd", "kDOWAlpha/6"},
        {__LINE__, L"DDDDDDD", "kDOWAlpha/7"},  // kept: not in upper case
        {__LINE__, L"dD", "kDay/0 kDay/0"},
    });
}

TEST(DatePattern, ReadsTimes)
{
    expectElements({
        {__LINE__, L"h", "kHour12/0"},
        {__LINE__, L"hh", "kHour12/2"},
        {__LINE__, L"hhhhh", "kHour12/2"},
        {__LINE__, L"H", "kHour24/0"},
        {__LINE__, L"HH", "kHour24/2"},
        {__LINE__, L"HHH", "kHour24/2"},
        {__LINE__, L"m", "kMinute/0"},
        {__LINE__, L"mm", "kMinute/2"},
        {__LINE__, L"mmmm", "kMinute/2"},  // never a month
        {__LINE__, L"s", "kSecond/0"},
        {__LINE__, L"ss", "kSecond/2"},
        {__LINE__, L"sss", "kSecond/2"},
        {__LINE__, L"t", "kAMPM/1"},
        {__LINE__, L"tt", "kAMPM/2"},
        {__LINE__, L"ttt", "kAMPM/1"},
        {__LINE__, L"tttttt", "kAMPM/1"},
        {__LINE__, L"hH", "kHour12/0 kHour24/0"},
    });
}

TEST(DatePattern, ReadsFractionsOfASecondAsNumericPatterns)
{
    expectElements({
        {__LINE__, L"ss.###", "kSecondWDecimal/0'00.###'"},
        {__LINE__, L"s.0", "kSecondWDecimal/0'0.0'"},
        {__LINE__, L"sss.0#0#", "kSecondWDecimal/0'000.0#0#'"},
        {__LINE__, L"ss.", "kSecondWDecimal/0'00.'"},
        {__LINE__, L"ss.ff", "kSecondWDecimal/0'00.' 'ff'"},
        {__LINE__, L"ss..00", "kSecondWDecimal/0'00.' '.00'"},
        {__LINE__, L"ss.00?", "kSecondWDecimal/0'00.00' '?'"},
        {__LINE__, L"ss.############", "kSecondWDecimal/0'00.############'"},
        {__LINE__, L"ss .00", "kSecond/2 ' .00'"},
        {__LINE__, L"SS.00", "'SS.00'"},
    });
}

TEST(DatePattern, RemembersTheDigitsThatTheLastFractionIsRoundedTo)
{
    EXPECT_EQ(parsed(L"HH:mm:ss").roundedFractionDigits(), -1);
    EXPECT_EQ(parsed(L"ss.").roundedFractionDigits(), 0);
    EXPECT_EQ(parsed(L"ss.0##").roundedFractionDigits(), 3);
    EXPECT_EQ(parsed(L"ss.#########").roundedFractionDigits(), 9);
    EXPECT_EQ(parsed(L"ss.############").roundedFractionDigits(), 9);
    EXPECT_EQ(parsed(L"ss.000 s.0").roundedFractionDigits(), 1);
    EXPECT_EQ(parsed(L"[FMT:timeWFracSecs]").roundedFractionDigits(), 9);
}

TEST(DatePattern, ReadsErasAndSkipsTheTimeZone)
{
    expectElements({
        {__LINE__, L"g", "'g'"},
        {__LINE__, L"gg", "kEra/0"},
        {__LINE__, L"ggggg", "kEra/0"},
        {__LINE__, L"TZ", ""},
        {__LINE__, L"HH:mm TZ", "kHour24/2 ':' kMinute/2 ' '"},
        {__LINE__, L"T", "'T'"},
        {__LINE__, L"yT", "kYear/0! 'T'"},
        {__LINE__, L"TTZ", "'T'"},
        {__LINE__, L"TzZ", "'TzZ'"},
        {__LINE__, L"dTZd", "kDay/0 kDay/0"},
    });
}

TEST(DatePattern, TakesEveryOtherCharacterAsLiteralText)
{
    expectElements({
        {__LINE__, L"", ""},
        {__LINE__, L"/", "'/'"},
        {__LINE__, L"AP aBbCcEeFfGIiJjKkLlNnOoPpQqRrSUuVvWwXxZz", "'AP aBbCcEeFfGIiJjKkLlNnOoPpQqRrSUuVvWwXxZz'"},
        {__LINE__, L"AM/PM", "'A' kMonth/0 '/P' kMonth/0"},  // only "t" is the half of the day
        {__LINE__, L"1234567890#?;,.:%$&'()]{}", "'1234567890#?;,.:%$&'()]{}'"},
        {__LINE__, L"h\x00E9ure", "kHour12/0 'éure'"},
        {__LINE__, L"\U0001F600", "'😀'"},
    });
}

TEST(DatePattern, KeepsPiecesOfLiteralTextApartAsTheyWereWritten)
{
    expectElements({
        {__LINE__, L"\"at\" HH", "'at ' kHour24/2"},  // bare text lengthens a literal
        {__LINE__, L"at", "'a' kAMPM/1"},
        {__LINE__, L"\"\"", "''"},
        {__LINE__, L"\"", "''"},
        {__LINE__, L"d\"\"d", "kDay/0 '' kDay/0"},
        {__LINE__, L"\"a\"\"b\"", "'a' 'b'"},
        {__LINE__, L"\"yMd", "'yMd'"},
        {__LINE__, L"\"a\\\"b\"d", "'a' '\"b' kDay/0"},
        {__LINE__, L"\"a\\\\b\"", "'a' '\\b'"},
        {__LINE__, L"\"a\\", "'a' ''"},
        {__LINE__, L"\"\\\"", "'' '\"'"},
        {__LINE__, L"\"[FMT:time]\"", "'[FMT:time]'"},
        {__LINE__, L"\\d", "'d'"},
        {__LINE__, L"\\d\\M", "'d' 'M'"},
        {__LINE__, L"\\\\d", "'\\' kDay/0"},
        {__LINE__, L"\\\"d", "'\"' kDay/0"},
        {__LINE__, L"d\\", "kDay/0"},
        {__LINE__, L"\\", ""},
        {__LINE__, L"gg g", "kEra/0 ' ' 'g'"},
        {__LINE__, L"g-", "'g-'"},
    });
}

TEST(DatePattern, LetsBareCharactersJoinTheLiteralBeforeThem)
{
    expectElements({
        {__LINE__, L"\"at\"HH", "'at' kHour24/2"},
        {__LINE__, L"\"at\":", "'at:'"},
        {__LINE__, L"\\d:", "'d:'"},
        {__LINE__, L":\"at\"", "':' 'at'"},
        {__LINE__, L":[x];", "':;'"},
    });
}

TEST(DatePattern, IgnoresBracketsThatItDoesNotKnow)
{
    expectElements({
        {__LINE__, L"[$-F800]dddd", "kDOWAlpha/4"},
        {__LINE__, L"[]d", "kDay/0"},
        {__LINE__, L"[d", ""},
        {__LINE__, L"[", ""},
        {__LINE__, L"d[TZ: Europe/Paris ]", "kDay/0"},
        {__LINE__, L"[l:]d", "kDay/0"},  // case counts
        {__LINE__, L"[fmt:time]d", "kDay/0"},
        {__LINE__, L"[[]d]", "kDay/0 ']'"},
        {__LINE__, L"[\"]\"d", "'d'"},  // a quote in a bracket is no quote
    });
}

TEST(DatePattern, ChangesTheLocaleByItsName)
{
    expectElements({
        {__LINE__, L"[L:]", "kResetLocale/0"},
        {__LINE__, L"[L:", "kResetLocale/0"},
        {__LINE__, L"[L:de-DE]MMMM", "kSetLocale/0'de-DE' kMonthAlpha/4"},
        {__LINE__, L"[L:ru-RU;dates]MMMM[L:ru-RU]", "kSetLocale/0'ru-RU;dates' kMonthAlpha/4 kSetLocale/0'ru-RU'"},
        {__LINE__, L"[L:no such place]d", "kDay/0"},
        {__LINE__, L"[L: de-DE]d", "kDay/0"},
    });
    const DatePattern tPattern = parsed(L"[L:de-DE][L:fr-FR]");
    EXPECT_EQ(tPattern.newLocale(tPattern.elements()[0]).tag(), L"de-DE");
    EXPECT_EQ(tPattern.newLocale(tPattern.elements()[1]).tag(), L"fr-FR");
}

TEST(DatePattern, PutsPredefinedFormatsInPlace)
{
    expectElements({
        {__LINE__, L"[FMT:dateShort]", "kMonth/0 '/' kDay/0 '/' kYear/0"},
        {__LINE__, L"[FMT:ShortDate]", "kMonth/0 '/' kDay/0 '/' kYear/0"},
        {__LINE__, L"[FMT:no such format]", "kMonth/0 '/' kDay/0 '/' kYear/0"},
        {__LINE__, L"[FMT:DATESHORT]", "kMonth/0 '/' kDay/0 '/' kYear/0"},
        {__LINE__, L"[FMT:]", "kMonth/0 '/' kDay/0 '/' kYear/0"},
        {__LINE__, L"[FMT:timeHourMin", "kHour12/0 ':' kMinute/2 ' ' kAMPM/2"},
        {__LINE__, L"[FMT:dateYearMonth]", ""},
        {__LINE__, L"[FMT:predefinedFormat]", ""},
        {__LINE__, L"at [FMT:timeHour].", "'a' kAMPM/1 ' ' kHour12/0 '  ' kAMPM/2 '.'"},
        {__LINE__, L"[FMT:dateTyped]", "'date '' kYear/4 '-' kMonth/2 '-' kDay/2 '''"},
        {__LINE__, L"[L:de-DE][FMT:dateShort]", "kSetLocale/0'de-DE' kDay/2 '.' kMonth/2 '.' kYear/0"},
        {__LINE__, L"[L:de-DE][L:][FMT:dateShort]",
         "kSetLocale/0'de-DE' kResetLocale/0 kMonth/0 '/' kDay/0 '/' kYear/0"},
    });
    EXPECT_EQ(describe(parsed(L"[FMT:dateLong]", ValueFormatterTypes::kText, localeOf(L"de-DE"))),
              "kDOWAlpha/4 ', ' kDay/0 '. ' kMonthAlpha/4 ' ' kYear/0");
}

TEST(DatePattern, LeavesTheWorkingLocaleAloneBehindAPredefinedFormat)
{
    // The long date of ru-RU changes the locale itself; the short date behind it is still the one of the pattern.
    const Locale tRussian = localeOf(L"ru-RU");
    const DatePattern tPattern = parsed(L"[FMT:dateLong]|[FMT:dateShort]", ValueFormatterTypes::kText, tRussian);
    const std::string sElements = describe(tPattern);
    EXPECT_NE(sElements.find("kSetLocale/0'ru-RU;dates' kMonthAlpha/4 kSetLocale/0'ru-RU'"), std::string::npos);
    EXPECT_TRUE(sElements.ends_with("' г.|' kDay/2 '.' kMonth/2 '.' kYear/0")) << sElements;
}

struct OutputRow
{
    int nLine;
    const wchar_t* pPattern;
    OutputType eOutput;
    const char* pExpected;
};

TEST(DatePattern, EncodesLiteralTextForTheOutput)
{
    using enum ValueFormatterTypes::OutputType;
    for (const OutputRow& tRow : std::initializer_list<OutputRow>{
             {__LINE__, L"<\"<b>\"\\&", kText, "'<' '<b>' '&'"},
             {__LINE__, L"<\"<b>\"\\&", kHTML, "'&lt;' '&lt;b&gt;' '&amp;'"},
             {__LINE__, L"<\"<b>\"\\&", kXML, "'&lt;' '&lt;b&gt;' '&amp;'"},
             {__LINE__, L"<\"<b>\"\\&", kPDF, "'&lt;' '&lt;b&gt;' '&amp;'"},
             {__LINE__, L"<\"<b>\"\\&", kXLSX, "'&lt;' '&lt;b&gt;' '&amp;'"},
             {__LINE__, L"'<\"'\"\\'", kJavaScript, "'\\u0027\\u003C' '\\u0027' '\\u0027'"},
             {__LINE__, L"'\"'\"\\'", kSQL, "''' ''' '''"},
             {__LINE__, L"'\"'\"\\'", kSQLLiteral, "'''' '''' ''''"},
             // What an [html] section holds is markup already; it encodes nothing for HTML.
             {__LINE__, L"d[html]<b>\"<i>\"\\<", kHTML, "'<b>' '<i>' '<'"},
             {__LINE__, L"d[html]<b>", kText, "kDay/0"},
             {__LINE__, L"d[html]<b>", kXLSX, "'&lt;b&gt;'"},  // found for HTML, shown in XML
             {__LINE__, L"d<[html]<b>", kXML, "kDay/0 '&lt;'"},
             {__LINE__, L"\"[html]\"d", kText, "''"},  // kept: a section's tag counts in quotes, too
         })
        EXPECT_EQ(describe(parsed(tRow.pPattern, tRow.eOutput)), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(DatePattern, KnowsWhereEachElementStands)
{
    const String sPattern = L"yyyy-\"at\"[FMT:time].";
    const DatePattern tPattern = parsed(sPattern);
    ASSERT_EQ(describe(tPattern), "kYear/0 '-' 'at' kHour12/0 ':' kMinute/2 ':' kSecond/2 ' ' kAMPM/2 '.'");
    EXPECT_EQ(tPattern.sourceText(), sPattern);
    const auto sourceOf = [&](std::size_t n)
    {
        const Element& tElement = tPattern.elements()[n];
        return sPattern.substr(tElement.nSourceStart, tElement.nSourceEnd - tElement.nSourceStart);
    };
    EXPECT_EQ(sourceOf(0), L"yyyy");
    EXPECT_EQ(sourceOf(1), L"-");
    EXPECT_EQ(sourceOf(2), L"\"at\"");
    for (std::size_t n = 3; n < 10; ++n)
        EXPECT_EQ(sourceOf(n), L"[FMT:time]") << n;
    EXPECT_EQ(sourceOf(10), L".");
}

TEST(DatePattern, KeepsThePlaceOfATextThatBareCharactersLengthen)
{
    DatePattern tPattern = parsed(L"\"a\"b");
    ASSERT_EQ(tPattern.elements().size(), 1u);
    EXPECT_EQ(tPattern.elements()[0].nSourceStart, 0u);
    EXPECT_EQ(tPattern.elements()[0].nSourceEnd, 4u);
    tPattern.addCustomFormat(L"[html]x[text]M", Locale::kUSA, ValueFormatterTypes::kText);
    EXPECT_EQ(tPattern.sourceText(), L"\"a\"bM");
    EXPECT_EQ(tPattern.elements().back().nSourceStart, 4u);
    EXPECT_EQ(tPattern.elements().back().nSourceEnd, 5u);
}

TEST(DatePattern, NamesItsTypes)
{
    EXPECT_STREQ(DatePattern::typeName(DatePattern::kYear), "kYear");
    EXPECT_STREQ(DatePattern::typeName(DatePattern::kSeparator), "kSeparator");
    EXPECT_STREQ(DatePattern::typeName(DatePattern::kDOW), "kDOW");
    EXPECT_STREQ(DatePattern::typeName(DatePattern::kResetLocale), "kResetLocale");
    EXPECT_STREQ(DatePattern::typeName(static_cast<DatePattern::EDateType>(16)), "");
    EXPECT_STREQ(DatePattern::typeName(static_cast<DatePattern::EDateType>(-1)), "");
    // The numbers of the types are part of what callers rely on.
    EXPECT_EQ(DatePattern::kSecondWDecimal, 6);
    EXPECT_EQ(DatePattern::kHour24, 9);
    EXPECT_EQ(DatePattern::kEra, 13);
    EXPECT_EQ(DatePattern::kResetLocale, 15);
}

TEST(DatePattern, ReadsLongHostilePatternsIntoAsManyElementsAsTheyName)
{
    constexpr std::size_t nRepeats = 30'000;
    for (const wchar_t* pPiece : {L"y", L"[", L"[L:de]", L"[L:xx-nowhere]", L"[FMT:dateLong]", L"\"", L"\\", L"s.0",
                                  L"\"\\", L"[html]", L"T", L"'", L"[FMT:timeStampTyped]"})
    {
        String sPattern;
        for (std::size_t n = 0; n < nRepeats; ++n)
            sPattern += pPiece;
        const DatePattern tPattern = parsed(sPattern, ValueFormatterTypes::kHTML, localeOf(L"ru-RU"));
        EXPECT_LE(tPattern.elements().size(), 13 * nRepeats);
    }
}

}  // namespace

}  // namespace tov
