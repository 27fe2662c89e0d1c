#include "webformat/numericpattern.h"

#include <gtest/gtest.h>

#include <string>

#include "intl/localetaglookup.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

using Item = NumericPattern::Item;
using Section = NumericPattern::Section;

NumericPattern parse(const String& sPattern, ValueFormatterTypes::OutputType eOutput = ValueFormatterTypes::kText,
                     const Locale& tLocale = Locale::kUSA)
{
    return NumericPattern::parse(sPattern, tLocale, eOutput, KTWUILanguage::kDefaultLanguage);
}

std::string range(const Item& tItem)
{
    return "[" + std::to_string(tItem.nStartDigit) + "," + std::to_string(tItem.nEndDigit) + ")";
}

std::string describe(const NumericPattern& tPattern, const Item& tItem)
{
    switch (tItem.eType)
    {
    case Item::kOptional: return "#" + range(tItem);
    case Item::kRequired: return "0" + range(tItem);
    case Item::kText: return "'" + toUtf8(tPattern.text(tItem)) + "'";
    case Item::kDecimal: return ".";
    case Item::kColor: return "color:" + toUtf8(tPattern.text(tItem));
    default: return NumericPattern::typeName(tItem.eType);
    }
}

std::string describe(const NumericPattern& tPattern, const Section& tSection)
{
    std::string sItems;
    for (const Item& tItem : tSection.vDigits)
        sItems += (sItems.empty() ? "" : " ") + describe(tPattern, tItem);
    return sItems;
}

// All sections, " ; " between them.
std::string items(const NumericPattern& tPattern)
{
    std::string sAll;
    for (std::size_t i = 0; i < tPattern.sections().size(); ++i)
        sAll += (i == 0 ? "" : " ; ") + describe(tPattern, tPattern.sections()[i]);
    return sAll;
}

struct ItemRow
{
    int nLine;
    const wchar_t* pPattern;
    const char* pExpected;
};

constexpr ItemRow kItemRows[] = {
    {__LINE__, L"", ""},
    {__LINE__, L"#,##0.00", "#[-61444,-3) #[-3,-1) 0[-1,0) . 0[0,2)"},
    // The first run reaches far to the left: a "#" itself, "0" and "?" through an optional item before them.
    {__LINE__, L"#", "#[-61441,0)"},
    {__LINE__, L"0", "#[-61441,-1) 0[-1,0)"},
    {__LINE__, L"?", "#[-61441,-1) 0[-1,0)"},
    {__LINE__, L"00", "#[-61442,-2) 0[-2,0)"},
    // A change of character begins a new run; "?" is exactly "0", but a run of its own.
    {__LINE__, L"##0", "#[-61443,-1) 0[-1,0)"},
    {__LINE__, L"0?", "#[-61442,-2) 0[-2,-1) 0[-1,0)"},
    {__LINE__, L"0#", "#[-61442,-2) 0[-2,-1) #[-1,0)"},
    // Fraction positions count from the point.
    {__LINE__, L"#.0#0", "#[-61441,0) . 0[0,1) #[1,2) 0[2,3)"},
    {__LINE__, L".##", ". #[0,2)"},
    // A second point opens a quoted text and is dropped.
    {__LINE__, L"0.0.0", "#[-61441,-1) 0[-1,0) . 0[0,1) '0'"},
    {__LINE__, L"0.0.ab\"0", "#[-61441,-1) 0[-1,0) . 0[0,1) 'ab' 0[1,2)"},
    // Literal runs end at the characters that mean something, not at "$" or the digits 1 to 9.
    {__LINE__, L"a$19b", "'a$19b'"},
    {__LINE__, L"0 per 100", "#[-61443,-3) 0[-3,-2) ' per 1' 0[-2,0)"},
    {__LINE__, L"a.b", "'a' . 'b'"},
    {__LINE__, L"0.0 a.b", "#[-61441,-1) 0[-1,0) . 0[0,1) ' a.b'"},
    {__LINE__, L"!a%", "'!a' '%'"},
    {__LINE__, L"\u00e9\u4e2d]x", "'\xC3\xA9\xE4\xB8\xAD]x'"},
    // Quoted and escaped text.
    {__LINE__, L"\"#0;[\"0", "'#0;[' #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"0\"abc", "#[-61441,-1) 0[-1,0) 'abc'"},
    {__LINE__, L"\"\"", "''"},
    {__LINE__, L"\\0\\;0", "'0' ';' #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"0\\", "#[-61441,-1) 0[-1,0)"},
    // Commas add no item.
    {__LINE__, L"0,0", "#[-61442,-2) 0[-2,-1) 0[-1,0)"},
    {__LINE__, L"0,,a", "#[-61441,-1) 0[-1,0) 'a'"},
    // Currency and percent signs are text.
    {__LINE__, L"$0", "'$' #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[$]0", "'$' #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[$EUR]0", "'$' #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[$:EUR]0", "'EUR' #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[$:]0", "'' #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"0%%%x", "#[-61441,-1) 0[-1,0) '%' 'x'"},
    {__LINE__, L"0%0%", "#[-61442,-2) 0[-2,-1) '%' 0[-1,0) '%'"},
    // Sections chain; what stands behind the last semicolon is one, too.
    {__LINE__, L"0;(0)", "#[-61441,-1) 0[-1,0) ; '(' #[-61441,-1) 0[-1,0) ')'"},
    {__LINE__, L"0;(0);-", "#[-61441,-1) 0[-1,0) ; '(' #[-61441,-1) 0[-1,0) ')' ; '-'"},
    {__LINE__, L"0;", "#[-61441,-1) 0[-1,0) ; "},
    {__LINE__, L";;;a", " ;  ;  ; 'a'"},
    // Brackets.
    {__LINE__, L"0[abc", "#[-61441,-1) 0[-1,0) '[abc'"},
    {__LINE__, L"0[", "#[-61441,-1) 0[-1,0) '['"},
    {__LINE__, L"[]0", "#[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[red]0", "color:red #[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[Red]0", "#[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[blue][scale][nonsense]0", "#[-61441,-1) 0[-1,0)"},
    {__LINE__, L"[MMM][MMMM][DDD][DDDD]", "kMonthAbbrev kMonth kDOWAbbrev kDOW"},
    {__LINE__, L"[mmm][Dddd]", ""},
    {__LINE__, L"[%60]0", "#[-61441,-1) 0[-1,0)"},
    {__LINE__, L"0[scale-name:million]", "#[-61441,-1) 0[-1,0) kIndicator"},
    {__LINE__, L"0[SCALE-NAME:nonsense]", "#[-61441,-1) 0[-1,0) kIndicator"},
    {__LINE__, L"0[scale-name]", "#[-61441,-1) 0[-1,0) kIndicator"},
    {__LINE__, L"0[scale-decimal:-3]", "#[-61441,-1) 0[-1,0)"},
    // A time ends the integer part as a point does; the placeholders before it stay in front.
    {__LINE__, L"00[FMT:time]0", "#[-61442,-2) 0[-2,0) kTime 0[0,1)"},
    {__LINE__, L"[fmt:TIMEHOUR]", "kHour"},
    {__LINE__, L"[FMT:timeHourMinX]", "kHourMin"},
    // A duration owns its whole section: what stands before it is dropped, nothing after it is parsed.
    {__LINE__, L"a0.0[duration(sec)]hh;x", "kDuration"},
    {__LINE__, L"0;a[Duration]b;c", "#[-61441,-1) 0[-1,0) ; kDuration"},
};

TEST(NumericPattern, TurnsEachTokenIntoItsItems)
{
    for (const ItemRow& tRow : kItemRows)
        EXPECT_EQ(items(parse(tRow.pPattern)), tRow.pExpected) << "row at line " << tRow.nLine;
}

struct FlagRow
{
    int nLine;
    const wchar_t* pPattern;
    bool bGrouping;
    bool bCurrency;
    bool bPercent;
    bool bScalingComma;
    int nPower10;
    unsigned nMinFractionDigits;
    unsigned nMaxFractionDigits;
    bool bValidExcelPattern;
};

constexpr FlagRow kFlagRows[] = {
    {__LINE__, L"", false, false, false, false, 0, 0, 0, true},
    {__LINE__, L"#,##0.00", true, false, false, false, 0, 2, 2, true},
    {__LINE__, L"#,###", true, false, false, false, 0, 0, 0, true},
    {__LINE__, L"#,", false, false, false, true, -3, 0, 0, true},
    {__LINE__, L"0,00,", true, false, false, true, -3, 0, 0, true},
    {__LINE__, L"#,##0,,", true, false, false, true, -6, 0, 0, true},
    {__LINE__, L"0,,0", true, false, false, true, -3, 0, 0, true},
    {__LINE__, L"0.0,0", true, false, false, false, 0, 2, 2, true},  // grouping even from the fraction part
    {__LINE__, L"0,?", true, false, false, false, 0, 0, 0, true},
    {__LINE__, L",a0", false, false, false, true, -3, 0, 0, true},
    {__LINE__, L"#.0#0", false, false, false, false, 0, 3, 3, true},
    {__LINE__, L"#.0#", false, false, false, false, 0, 1, 2, true},
    {__LINE__, L"#.##", false, false, false, false, 0, 0, 2, true},
    {__LINE__, L"#.0a#\\00", false, false, false, false, 0, 3, 3, true},
    {__LINE__, L"$0", false, true, false, false, 0, 0, 0, true},
    {__LINE__, L" $0", false, false, false, false, 0, 0, 0, true},  // inside a literal run the dollar is a letter
    {__LINE__, L"[$:x]0", false, true, false, false, 0, 0, 0, true},
    {__LINE__, L"0%", false, false, true, false, 0, 0, 0, true},
    {__LINE__, L"0%%", false, false, true, false, 2, 0, 0, true},
    {__LINE__, L"0%%%,", false, false, true, true, 1, 0, 0, true},
    {__LINE__, L"0%a%", false, false, true, false, 0, 0, 0, true},  // each run counts by itself
    {__LINE__, L"0[scale-decimal:-6]", false, false, false, false, -6, 0, 0, true},
    {__LINE__, L"0,[scale-decimal:+2]", false, false, false, true, 2, 0, 0, true},  // replaces, does not add
    {__LINE__, L"0,[scale-decimal:x]", false, false, false, true, 0, 0, 0, true},   // no number reads as 0
    {__LINE__, L"0,[scale-decimal:]", false, false, false, true, -3, 0, 0, true},
    {__LINE__, L"0[scale-decimal:400]", false, false, false, false, 400, 0, 0, true},
    {__LINE__, L"0[scale-decimal:401]", false, false, false, false, 0, 0, 0, true},
    {__LINE__, L"0[scale-decimal:-99999999999999999999]", false, false, false, false, 0, 0, 0, true},
    {__LINE__, L"[MMM]", false, false, false, false, 0, 0, 0, false},
    {__LINE__, L"[DDDD]", false, false, false, false, 0, 0, 0, false},
    {__LINE__, L"[FMT:time]", false, false, false, false, 0, 0, 0, false},
    {__LINE__, L"[duration]", false, false, false, false, 0, 0, 0, false},
    {__LINE__, L"0;[MMM]", false, false, false, false, 0, 0, 0, false},  // all sections count
};

TEST(NumericPattern, SetsItsFlags)
{
    for (const FlagRow& tRow : kFlagRows)
    {
        const NumericPattern tPattern = parse(tRow.pPattern);
        const Section& tSection = tPattern.sections().front();
        EXPECT_EQ(tSection.bGrouping, tRow.bGrouping) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.bCurrency, tRow.bCurrency) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.bPercent, tRow.bPercent) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.bScalingComma, tRow.bScalingComma) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.nPower10, tRow.nPower10) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.nMinFractionDigits, tRow.nMinFractionDigits) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.nMaxFractionDigits, tRow.nMaxFractionDigits) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.bValidExcelPattern, tRow.bValidExcelPattern) << "row at line " << tRow.nLine;
    }
}

TEST(NumericPattern, ASectionAnswersForTheExcelValidityOfThoseAfterItOnly)
{
    const NumericPattern tPattern = parse(L"[MMM];0");
    EXPECT_FALSE(tPattern.sections()[0].bValidExcelPattern);
    EXPECT_TRUE(tPattern.sections()[1].bValidExcelPattern);
}

struct ScaleRow
{
    int nLine;
    const wchar_t* pLocale;
    const wchar_t* pPattern;
    NumericPattern::ScaleFactor eScale;
    const wchar_t* pIndicator;
    int nPower10;
};

constexpr ScaleRow kScaleRows[] = {
    {__LINE__, L"en-US", L"0[scale-name:thousand]", NumericPattern::kFixed, L"K", -3},
    {__LINE__, L"en-US", L"0[scale-name:million]", NumericPattern::kFixed, L"M", -6},
    {__LINE__, L"en-US", L"0[Scale-Name:trillion]", NumericPattern::kFixed, L"T", -12},
    {__LINE__, L"en-US", L"0[scale-name:Million]", NumericPattern::kNone, L"", 0},      // names are exact
    {__LINE__, L"en-US", L"0[scale-name:ten-million]", NumericPattern::kNone, L"", 0},  // not in the locale's list
    {__LINE__, L"en-IN", L"0[scale-name:ten-million]", NumericPattern::kFixed, L"Cr", -7},
    {__LINE__, L"en-US", L"0[scale-name:nonsense]", NumericPattern::kNone, L"", 0},
    {__LINE__, L"en-US", L"0[scale-name:auto]", NumericPattern::kAuto, L"", 0},
    {__LINE__, L"en-US", L"0[scale-name:auto][scale-name:none]", NumericPattern::kNone, L"", 0},
    {__LINE__, L"en-US", L"0[scale-name:million][scale-name:none]", NumericPattern::kNone, L"M", -6},
    {__LINE__, L"en-US", L"0[scale-name:first]", NumericPattern::kFixed, L"K", -3},
    {__LINE__, L"en-US", L"0[scale-name:second]", NumericPattern::kFixed, L"M", -6},
    {__LINE__, L"en-US", L"0[scale-name:third]", NumericPattern::kNone, L"", 0},
    {__LINE__, L"en-US", L"0,[scale-name:million]", NumericPattern::kFixed, L"M", -6},  // replaces the comma's power
};

TEST(NumericPattern, ReadsScaleNamesThroughTheLocale)
{
    for (const ScaleRow& tRow : kScaleRows)
    {
        const Locale tLocale = LocaleTagLookup::lookupOrDefault(tRow.pLocale);
        const NumericPattern tPattern = parse(tRow.pPattern, ValueFormatterTypes::kText, tLocale);
        const Section& tSection = tPattern.sections().front();
        EXPECT_EQ(tSection.eScaleFactor, tRow.eScale) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.sScaleIndicator, tRow.pIndicator) << "row at line " << tRow.nLine;
        EXPECT_EQ(tSection.nPower10, tRow.nPower10) << "row at line " << tRow.nLine;
    }
}

// "div/mod/mult" for each step.
std::string moduli(const Section& tSection)
{
    std::string sSteps;
    for (const NumericPattern::Modulus& tStep : tSection.vMods)
        sSteps += (sSteps.empty() ? "" : " ") + std::to_string(tStep.nDiv) + "/" + std::to_string(tStep.nMod) + "/" +
                  std::to_string(tStep.nMult);
    return sSteps;
}

TEST(NumericPattern, BuildsTheModulusSteps)
{
    const ItemRow kRows[] = {
        {__LINE__, L"0[%60]", "60/0/100 1/60/1"},
        {__LINE__, L"0[%60][%60]", "3600/0/10000 60/60/100 1/60/1"},
        {__LINE__, L"0[%24][%60]", "1440/0/10000 60/24/100 1/60/1"},
        {__LINE__, L"0[%9]", "9/0/10 1/9/1"},
        {__LINE__, L"0[%10]", "10/0/100 1/10/1"},
        {__LINE__, L"0[%7x3]", "7/0/10 1/7/1"},
        {__LINE__, L"0[%0]", ""},
        {__LINE__, L"0[%]", ""},
        {__LINE__, L"0[%x]", ""},
        {__LINE__, L"0[%0060]", "60/0/100 1/60/1"},
        {__LINE__, L"0[%9999999999999999999]", "9999999999999999999/0/10000000000000000000 1/9999999999999999999/1"},
        {__LINE__, L"0[%10000000000000000000]", ""},  // the power of ten above it passes 64 bits
        {__LINE__, L"0[%99999999999999999999]", ""},  // the number itself does
        {__LINE__, L"0[%60][%9999999999999999999]", "60/0/100 1/60/1"},
    };
    for (const ItemRow& tRow : kRows)
        EXPECT_EQ(moduli(parse(tRow.pPattern).sections().front()), tRow.pExpected) << "row at line " << tRow.nLine;
}

// Stands in for the date and duration families: remembers what it is asked for.
class StandInFamilies final : public NumericSubFormatterSource
{
public:
    WebValueFormatterHandle timeFormatter(int nStyle, const Locale&, const KTWUILanguage&,
                                          ValueFormatterTypes::OutputType) const override
    {
        m_sAsked += "time " + std::to_string(nStyle) + ";";
        return WebValueFormatterHandle();
    }

    WebValueFormatterHandle durationFormatter(const String& sPattern, const Locale&, const KTWUILanguage&,
                                              ValueFormatterTypes::OutputType,
                                              ValueFormatterTypes::OutputType eParseOutput) const override
    {
        m_sAsked += "duration " + toUtf8(sPattern) + ";";
        m_eParseOutput = eParseOutput;
        return WebValueFormatterHandle();
    }

    mutable std::string m_sAsked;
    mutable ValueFormatterTypes::OutputType m_eParseOutput = ValueFormatterTypes::kText;
};

struct BracketRow
{
    int nLine;
    const wchar_t* pPattern;
    std::uint64_t nNumerator;
    std::uint64_t nDenominator;
    const char* pAsked;
};

constexpr BracketRow kBracketRows[] = {
    {__LINE__, L"[FMT:timeHourMin]", 1, 1, "time 4;"},
    {__LINE__, L"[FMT:timeHourMin(hour)]", 60, 1, "time 4;"},
    {__LINE__, L"[FMT:timeHourMin(sec)]", 1, 60, "time 4;"},
    {__LINE__, L"[FMT:timeHourMin(min)]", 1, 1, "time 4;"},
    {__LINE__, L"[FMT:timeHour]", 1, 1, "time 16;"},
    {__LINE__, L"[FMT:timeHour(min)]", 1, 60, "time 16;"},
    {__LINE__, L"[FMT:timeHour(sec)]", 1, 3600, "time 16;"},
    {__LINE__, L"[FMT:time]", 1, 1, "time 3;"},
    {__LINE__, L"[FMT:time(min)]", 60, 1, "time 3;"},
    {__LINE__, L"[FMT:time(hour)]", 3600, 1, "time 3;"},
    {__LINE__, L"[FMT:timetable]", 1, 1, "time 3;"},
    {__LINE__, L"[duration]h", 1, 1, "duration [duration]h;"},
    {__LINE__, L"x[duration(min)]h", 60, 1, "duration x[duration(min)]h;"},
    {__LINE__, L"[duration(hour)]h;n", 3600, 1, "duration [duration(hour)]h;n;"},
    {__LINE__, L"[duration(day)]h", 86400, 1, "duration [duration(day)]h;"},
    {__LINE__, L"[duration(sec)]h", 1, 1, "duration [duration(sec)]h;"},
    {__LINE__, L"[text][duration]h", 1, 1, "duration [text][duration]h;"},  // the pattern as it was given
};

TEST(NumericPattern, AsksTheOtherFamiliesForTheFormattersOfItsBrackets)
{
    for (const BracketRow& tRow : kBracketRows)
    {
        const StandInFamilies tFamilies;
        const NumericPattern tPattern =
            NumericPattern::parse(tRow.pPattern, Locale::kUSA, ValueFormatterTypes::kText,
                                  KTWUILanguage::kDefaultLanguage, ValueFormatterTypes::kLastType, &tFamilies);
        const Item& tItem = tPattern.sections().front().vDigits.back();
        EXPECT_EQ(tItem.nMultiplierNumerator, tRow.nNumerator) << "row at line " << tRow.nLine;
        EXPECT_EQ(tItem.nMultiplierDenominator, tRow.nDenominator) << "row at line " << tRow.nLine;
        EXPECT_EQ(tFamilies.m_sAsked, tRow.pAsked) << "row at line " << tRow.nLine;
        const bool bDuration = tItem.eType == Item::kDuration;
        EXPECT_EQ(tFamilies.m_eParseOutput, bDuration ? ValueFormatterTypes::kLastType : ValueFormatterTypes::kText)
            << "row at line " << tRow.nLine;
    }
}

TEST(NumericPattern, GivesADurationOfALaterSectionTheRestOfThePattern)
{
    const StandInFamilies tFamilies;
    NumericPattern::parse(L"0;a[duration]h", Locale::kUSA, ValueFormatterTypes::kText, KTWUILanguage::kDefaultLanguage,
                          ValueFormatterTypes::kLastType, &tFamilies);
    EXPECT_EQ(tFamilies.m_sAsked, "duration a[duration]h;");
    EXPECT_EQ(tFamilies.m_eParseOutput, ValueFormatterTypes::kText);
    NumericPattern::parse(L"0[html]0;<b>[duration]h", Locale::kUSA, ValueFormatterTypes::kHTML,
                          KTWUILanguage::kDefaultLanguage, ValueFormatterTypes::kLastType, &tFamilies);
    EXPECT_EQ(tFamilies.m_sAsked, "duration a[duration]h;duration <b>[duration]h;");
    EXPECT_EQ(tFamilies.m_eParseOutput, ValueFormatterTypes::kHTML);
}

TEST(NumericPattern, ItemsThatShowNoPartOfTheValueCarryZeroAndOne)
{
    const NumericPattern tPattern = parse(L"a0.0");
    const std::vector<Item>& vItems = tPattern.sections().front().vDigits;
    EXPECT_EQ(vItems.front().nMultiplierNumerator, 0u);
    EXPECT_EQ(vItems.front().nMultiplierDenominator, 1u);
    ASSERT_EQ(vItems[3].eType, Item::kDecimal);
    EXPECT_EQ(vItems[3].nMultiplierNumerator, 1u);
}

struct OutputRow
{
    int nLine;
    const wchar_t* pPattern;
    ValueFormatterTypes::OutputType eOutput;
    const char* pExpected;
};

constexpr OutputRow kOutputRows[] = {
    // Literal runs are encoded; what is quoted, escaped or a currency's own text is written as it stands.
    {__LINE__, L"<b>", ValueFormatterTypes::kText, "'<b>'"},
    {__LINE__, L"<b>", ValueFormatterTypes::kHTML, "'&lt;b&gt;'"},
    {__LINE__, L"\"<b>\"", ValueFormatterTypes::kHTML, "'<b>'"},
    {__LINE__, L"\\<", ValueFormatterTypes::kHTML, "'<'"},
    {__LINE__, L"[$:<]", ValueFormatterTypes::kHTML, "'<'"},
    {__LINE__, L"<[", ValueFormatterTypes::kXML, "'&lt;' '['"},
    {__LINE__, L"<[<", ValueFormatterTypes::kXML, "'&lt;' '[&lt;'"},
    {__LINE__, L"it's", ValueFormatterTypes::kSQLLiteral, "'it''s'"},
    // Markup of a section for the output stays markup, in its further sections too.
    {__LINE__, L"a[html]<b>;<i>", ValueFormatterTypes::kHTML, "'<b>' ; '<i>'"},
    {__LINE__, L"a[html]<b>;<i>", ValueFormatterTypes::kText, "'a'"},
    {__LINE__, L"<;<[html]b", ValueFormatterTypes::kXML, "'&lt;' ; '&lt;'"},
    {__LINE__, L"a[html]<b>", ValueFormatterTypes::kXLSX, "'&lt;b&gt;'"},
};

TEST(NumericPattern, EncodesLiteralsForTheOutput)
{
    for (const OutputRow& tRow : kOutputRows)
        EXPECT_EQ(items(parse(tRow.pPattern, tRow.eOutput)), tRow.pExpected) << "row at line " << tRow.nLine;
}

TEST(NumericPattern, ParsedForAnOutputAlreadyKeepsItsTagsUnpicked)
{
    const NumericPattern tPattern = NumericPattern::parse(L"<[html]0", Locale::kUSA, ValueFormatterTypes::kHTML,
                                                          KTWUILanguage::kDefaultLanguage, ValueFormatterTypes::kHTML);
    EXPECT_EQ(items(tPattern), "'<' #[-61441,-1) 0[-1,0)");
}

TEST(NumericPattern, KnowsWhereItsItemsStand)
{
    const NumericPattern tPattern = parse(L"a0.0[red];b");
    const Section& tSection = tPattern.sections().front();
    std::string sPlaces;
    for (const Item& tItem : tSection.vDigits)
        sPlaces += std::to_string(tItem.nSourceStart) + "-" + std::to_string(tItem.nSourceEnd) + " ";
    EXPECT_EQ(sPlaces, "0-1 1-1 1-2 2-3 3-4 4-9 ");
    EXPECT_EQ(tSection.nSourceEnd, 9u);
    EXPECT_EQ(tPattern.sections()[1].nSourceStart, 10u);
    EXPECT_EQ(tPattern.sections()[1].nSourceEnd, 11u);
}

TEST(NumericPattern, IsLinearInLongChainsOfSectionsAndBrackets)
{
    String sSections(200000, L';');
    EXPECT_EQ(parse(sSections).sections().size(), 200001u);
    String sBrackets;
    for (int i = 0; i < 100000; ++i)
        sBrackets += L"[%1][red]";
    EXPECT_EQ(parse(sBrackets).sections().front().vDigits.size(), 100000u);
}

TEST(NumericPattern, NamesItsItemTypesInTheirOrder)
{
    EXPECT_STREQ(NumericPattern::typeName(Item::kOptional), "kOptional");
    EXPECT_STREQ(NumericPattern::typeName(Item::kColor), "kColor");
    EXPECT_STREQ(NumericPattern::typeName(Item::kDuration), "kDuration");
    EXPECT_STREQ(NumericPattern::typeName(Item::kIndicator), "kIndicator");
}

}  // namespace

}  // namespace tov
