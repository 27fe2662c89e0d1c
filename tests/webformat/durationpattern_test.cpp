#include "webformat/durationpattern.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;
using enum ValueFormatterTypes::OutputType;

// An element in short: a unit's letter and its pad, a kSeparator in double quotes, a kText in apostrophes; then, where
// it is optional, "?" and the letter of the unit that it depends on.
std::string shortForm(DurationFormat::EDurationType eType, unsigned nPad, const String& sText,
                      DurationFormat::EOptionalBasedOn eBasis)
{
    std::string sShort;
    if (eType == DurationFormat::kSeparator)
        sShort = "\"" + toUtf8(sText) + "\"";
    else if (eType == DurationFormat::kText)
        sShort = "'" + toUtf8(sText) + "'";
    else
        sShort = std::string(1, "dhms"[eType]) + std::to_string(nPad);
    return eBasis == DurationFormat::kRequired ? sShort : sShort + "?" + "dhms"[eBasis];
}

std::string joined(const std::vector<std::string>& vParts)
{
    std::string sAll;
    for (const std::string& sPart : vParts)
        sAll += (sAll.empty() ? "" : " ") + sPart;
    return sAll;
}

std::string elementsOf(const DurationPattern& tPattern)
{
    std::vector<std::string> vParts;
    for (const DurationFormat& tFormat : tPattern.formats().m_vDurationFormats)
        vParts.push_back(shortForm(tFormat.eType, tFormat.nPad, tFormat.sText, tFormat.eOptionalBasedOn));
    return joined(vParts);
}

struct Row
{
    int nLine;
    const wchar_t* pPattern;
    const char* pExpected;
};

constexpr Row kElementRows[] = {
    {__LINE__, L"", ""},
    // Units: the pad is the length of the run, 0 for one letter.
    {__LINE__, L"d", "d0"},
    {__LINE__, L"dd", "d2"},
    {__LINE__, L"ddddd", "d5"},
    {__LINE__, L"hmsd", "h0 m0 s0 d0"},
    {__LINE__, L"hhhmmss", "h3 m2 s2"},
    {__LINE__, L"dhd", "d0 h0 d0"},
    // Bare characters are not merged; upper-case letters and closing brackets are bare characters.
    {__LINE__, L"hh:mm", "h2 ':' m2"},
    {__LINE__, L" ,.", "' ' ',' '.'"},
    {__LINE__, L"DHMSCR", "'D' 'H' 'M' 'S' 'C' 'R'"},
    {__LINE__, L"a]b", "'a' ']' 'b'"},
    {__LINE__, L"\u20ac", "'\xe2\x82\xac'"},
    // Letters of the rounding rule are no elements.
    {__LINE__, L"hhc:mmr", "h2 ':' m2"},
    {__LINE__, L"hours", "h0 'o' 'u' s0"},
    // Quoted text: a backslash splits it and makes the next character literal.
    {__LINE__, L"dd\"days\"", "d2 \"days\""},
    {__LINE__, L"\"\"", "\"\""},
    {__LINE__, L"\"a\"\"b\"", "\"a\" \"b\""},
    {__LINE__, L"\"a\\\"b\"h", "\"a\" \"\"b\" h0"},
    {__LINE__, L"\"a\\\\b\"", "\"a\" \"\\b\""},
    {__LINE__, L"\"\\d\"", "\"\" \"d\""},
    {__LINE__, L"\"a\\b\\c\"", "\"a\" \"b\" \"c\""},
    {__LINE__, L"\"[opt:dd]\"", "\"[opt:dd]\""},
    {__LINE__, L"\"open d", "\"open d\""},
    {__LINE__, L"\"", "\"\""},
    {__LINE__, L"\"a\\", "\"a\" \"\""},
    // Escaped characters.
    {__LINE__, L"\\dd", "\"d\" d0"},
    {__LINE__, L"\\\\\\\"\\[", "\"\\\" \"\"\" \"[\""},
    {__LINE__, L"h\\", "h0"},
    // Brackets: what is no optional section shows nothing.
    {__LINE__, L"[duration(sec)]hh", "h2"},
    {__LINE__, L"[]h[x]m", "h0 m0"},
    {__LINE__, L"h[x", "h0"},
    {__LINE__, L"h[", "h0"},
    {__LINE__, L"[[]h", "h0"},
    {__LINE__, L"[a[b]h]", "h0 ']'"},
    {__LINE__, L"[OPT:dd]h", "h0"},
    {__LINE__, L"[ opt:dd]h", "h0"},
    {__LINE__, L"[opt]h", "h0"},
    // Optional sections: the smallest doubled unit in their text decides.
    {__LINE__, L"[opt:dd]hh", "d2?d h2"},
    {__LINE__, L"[opt:hh]", "h2?h"},
    {__LINE__, L"[opt:mm]", "m2?m"},
    {__LINE__, L"[opt:ss]", "s2?s"},
    {__LINE__, L"[opt:ddhhmmss]", "d2?s h2?s m2?s s2?s"},
    {__LINE__, L"[opt:ssmmhhdd]", "s2?s m2?s h2?s d2?s"},
    {__LINE__, L"[opt:dd:hh:mm]", "d2?m ':'?m h2?m ':'?m m2?m"},
    {__LINE__, L"[opt:dd:hh]", "d2?h ':'?h h2?h"},
    {__LINE__, L"[opt:hh:dd]", "h2?h ':'?h d2?h"},
    {__LINE__, L"[opt:dd:s]", "d2?d ':'?d s0?d"},
    {__LINE__, L"[opt:s]", "s0"},
    {__LINE__, L"[opt:d:h:m:s]", "d0 ':' h0 ':' m0 ':' s0"},
    {__LINE__, L"[opt:sms]", "s0 m0 s0"},
    {__LINE__, L"[opt:sss]", "s3?s"},
    {__LINE__, L"[opt:DD]", "'D' 'D'"},
    {__LINE__, L"[opt:]h", "h0"},
    {__LINE__, L"[opt:x]h", "'x' h0"},
    // The section's text counts, whatever its characters become.
    {__LINE__, L"[opt:\"dd\"]h", "\"dd\"?d h0"},
    {__LINE__, L"[opt:\\ddh]", "\"d\"?d d0?d h0?d"},
    {__LINE__, L"[opt:hh\"dress\"]", "h2?s \"dress\"?s"},
    {__LINE__, L"[opt:dd\"d\\\"\" ]hh", "d2?d \"d\"?d \"\"\"?d ' '?d h2"},
    {__LINE__, L"dd[opt:hh]dd", "d2 h2?h d2"},
    {__LINE__, L"[opt:dd][opt:hh][opt:x]", "d2?d h2?h 'x'"},
    // The section ends at the next "]", even in a quoted text, and what is open in it ends with it.
    {__LINE__, L"[opt:dd\"a]b\"c", "d2?d \"a\"?d 'b' \"c\""},
    {__LINE__, L"[opt:dd\\]h", "d2?d h0"},
    {__LINE__, L"[opt:dd\"a\\]h", "d2?d \"a\"?d \"\"?d h0"},
    {__LINE__, L"[opt:dd", "d2?d"},
    {__LINE__, L"[opt:", ""},
    // A bracket in a section runs to the section's end and chooses anew.
    {__LINE__, L"[opt:dd[opt:hh]mm", "d2?h h2?h m2"},
    {__LINE__, L"[opt:hh[opt:dd]mm", "h2?h d2?d m2"},
    {__LINE__, L"[opt:ss[opt:x]mm", "s2?s 'x' m2"},
    {__LINE__, L"[opt:ssx[opt:s[opt:dd[opt:h", "s2?s 'x'?s s0?d d2?d h0"},
    {__LINE__, L"[opt:dd[note hh]mm", "d2?h m2"},
    {__LINE__, L"[opt:dd[note hh", "d2?h"},
    {__LINE__, L"[opt:[opt:[opt:dd]h", "d2?d h0"},
};

TEST(DurationPattern, ReadsUnitsTextsAndOptionalSections)
{
    for (const Row& tRow : kElementRows)
        EXPECT_EQ(elementsOf(DurationPattern::parse(tRow.pPattern, kText)), tRow.pExpected)
            << "row at line " << tRow.nLine;
}

struct FlagsRow
{
    int nLine;
    const wchar_t* pPattern;
    const char* pUnits;  // those that the pattern has
    DurationFormatList::ERoundRule eRule;
    const char* pRounded;  // those for which no smaller unit is shown
};

constexpr FlagsRow kFlagsRows[] = {
    {__LINE__, L"", "", DurationFormatList::kFloor, "dhm"},
    {__LINE__, L"d", "d", DurationFormatList::kFloor, "dhm"},
    {__LINE__, L"hh", "h", DurationFormatList::kFloor, "hm"},
    {__LINE__, L"m", "m", DurationFormatList::kFloor, "m"},
    {__LINE__, L"s", "s", DurationFormatList::kFloor, ""},
    {__LINE__, L"dd:hh", "dh", DurationFormatList::kFloor, "hm"},
    {__LINE__, L"dd:mm", "dm", DurationFormatList::kFloor, "m"},
    {__LINE__, L"mmdd", "dm", DurationFormatList::kFloor, "m"},
    {__LINE__, L"[opt:dd]h", "dh", DurationFormatList::kFloor, "hm"},
    {__LINE__, L"[opt:s]d", "ds", DurationFormatList::kFloor, ""},
    {__LINE__, L"[duration]", "", DurationFormatList::kFloor, "dhm"},
    {__LINE__, L"\"dhms\"\\d\\h\\m\\s", "", DurationFormatList::kFloor, "dhm"},
    {__LINE__, L"hhc", "h", DurationFormatList::kCeil, "hm"},
    {__LINE__, L"rhh", "h", DurationFormatList::kRound, "hm"},
    {__LINE__, L"chhr", "h", DurationFormatList::kRound, "hm"},
    {__LINE__, L"rhhc", "h", DurationFormatList::kCeil, "hm"},
    {__LINE__, L"[opt:hhr]", "h", DurationFormatList::kRound, "hm"},
    {__LINE__, L"[rc]\"rc\"\\r\\cRC", "", DurationFormatList::kFloor, "dhm"},
};

TEST(DurationPattern, KnowsItsUnitsAndHowTheSmallestIsRounded)
{
    for (const FlagsRow& tRow : kFlagsRows)
    {
        const DurationPattern tPattern = DurationPattern::parse(tRow.pPattern, kText);
        const DurationFormatList& tList = tPattern.formats();
        const bool aHas[] = {tList.m_bHasDay, tList.m_bHasHour, tList.m_bHasMinute, tList.m_bHasSecond};
        std::string sUnits;
        std::string sRounded;
        for (int n = 0; n < 4; ++n)
        {
            sUnits += aHas[n] ? std::string(1, "dhms"[n]) : "";
            const auto eUnit = static_cast<DurationFormat::EDurationType>(n);
            sRounded += tList.needsRoundingRule(eUnit) ? std::string(1, "dhms"[n]) : "";
        }
        EXPECT_EQ(sUnits, tRow.pUnits) << "row at line " << tRow.nLine;
        EXPECT_EQ(sRounded, tRow.pRounded) << "row at line " << tRow.nLine;
        EXPECT_EQ(tList.m_eRoundRule, tRow.eRule) << "row at line " << tRow.nLine;
    }
}

TEST(DurationPattern, RoundsNoText)
{
    EXPECT_FALSE(DurationFormatList().needsRoundingRule(DurationFormat::kSeparator));
    EXPECT_FALSE(DurationFormatList().needsRoundingRule(DurationFormat::kText));
}

struct OutputRow
{
    int nLine;
    const wchar_t* pPattern;
    OutputType eOutput;
    const char* pExpected;
    const wchar_t* pSource;
};

constexpr OutputRow kOutputRows[] = {
    {__LINE__, L"h<\"a&b\"\\>", kText, "h0 '<' \"a&b\" \">\"", L"h<\"a&b\"\\>"},
    {__LINE__, L"h<\"a&b\"\\>", kHTML, "h0 '&lt;' \"a&amp;b\" \"&gt;\"", L"h<\"a&b\"\\>"},
    {__LINE__, L"h'", kSQLLiteral, "h0 ''''", L"h'"},
    {__LINE__, L"h[html]<", kText, "h0", L"h"},
    // Markup that the section for the output writes stays markup.
    {__LINE__, L"h[html]<\"<b>\"", kHTML, "'<' \"<b>\"", L"<\"<b>\""},
    {__LINE__, L"h[HTML]<b>", kXLSX, "'&lt;' 'b' '&gt;'", L"<b>"},
    {__LINE__, L"<[html]<b>", kXML, "'&lt;'", L"<"},
    {__LINE__, L"[text][opt:dd<]h", kHTML, "d2?d '&lt;'?d h0", L"[opt:dd<]h"},
};

TEST(DurationPattern, PicksTheSectionOfTheOutputAndEncodesLiteralText)
{
    for (const OutputRow& tRow : kOutputRows)
    {
        const DurationPattern tPattern = DurationPattern::parse(tRow.pPattern, tRow.eOutput);
        EXPECT_EQ(elementsOf(tPattern), tRow.pExpected) << "row at line " << tRow.nLine;
        EXPECT_EQ(tPattern.sourceText(), tRow.pSource) << "row at line " << tRow.nLine;
    }
}

TEST(DurationPattern, TakesAPickedSectionAsItIs)
{
    EXPECT_EQ(elementsOf(DurationPattern::parse(L"<[html]h", kHTML, kHTML)), "'<' h0");
    EXPECT_EQ(elementsOf(DurationPattern::parse(L"<[html]h", kHTML, kText)), "'&lt;' h0");
}

TEST(DurationPattern, SaysWhereEachElementStands)
{
    const DurationPattern tPattern = DurationPattern::parse(L"h[html]c[x]dd\"a\\b\":[opt:hh\\,[opt:m]s", kHTML);
    const String& sSource = tPattern.sourceText();
    std::vector<std::string> vPlaces;
    for (const DurationFormat& tFormat : tPattern.formats().m_vDurationFormats)
        vPlaces.push_back(toUtf8(sSource.substr(tFormat.nSourceStart, tFormat.nSourceEnd - tFormat.nSourceStart)));
    EXPECT_EQ(joined(vPlaces), "dd \"a\\b\" \"a\\b\" : hh \\, m s");
}

// The same language read by recursion, with a copy of the text for each section.
class ReferenceParser
{
public:
    std::vector<std::string> vParts;
    char nRule = 'f';

    void parse(const String& sText, DurationFormat::EOptionalBasedOn eBasis)
    {
        std::size_t n = 0;
        while (n < sText.size())
        {
            const wchar_t nChar = sText[n];
            const std::size_t nUnit = String(L"dhms").find(nChar);
            if (nUnit != String::npos)
                n = addUnit(sText, n, static_cast<DurationFormat::EDurationType>(nUnit), eBasis);
            else if (nChar == L'c' || nChar == L'r')
                nRule = static_cast<char>(sText[n++]);
            else if (nChar == L'"')
                n = addQuoted(sText, n + 1, eBasis);
            else if (nChar == L'\\')
                n = addEscaped(sText, n + 1, eBasis);
            else if (nChar == L'[')
                n = addBracket(sText, n + 1);
            else
                add(DurationFormat::kText, 0, String(1, sText[n++]), eBasis);
        }
    }

private:
    void add(DurationFormat::EDurationType eType, unsigned nPad, const String& sText,
             DurationFormat::EOptionalBasedOn eBasis)
    {
        vParts.push_back(shortForm(eType, nPad, sText, eBasis));
    }

    std::size_t addUnit(const String& sText, std::size_t n, DurationFormat::EDurationType eUnit,
                        DurationFormat::EOptionalBasedOn eBasis)
    {
        unsigned nRun = 1;
        while (n + nRun < sText.size() && sText[n + nRun] == sText[n])
            ++nRun;
        add(eUnit, nRun > 1 ? nRun : 0, String(), eBasis);
        return n + nRun;
    }

    std::size_t addQuoted(const String& sText, std::size_t n, DurationFormat::EOptionalBasedOn eBasis)
    {
        String sPiece;
        for (; n < sText.size() && sText[n] != L'"'; ++n)
        {
            if (sText[n] == L'\\')
            {
                add(DurationFormat::kSeparator, 0, sPiece, eBasis);
                sPiece.clear();
                if (++n == sText.size())
                    break;
            }
            sPiece += sText[n];
        }
        add(DurationFormat::kSeparator, 0, sPiece, eBasis);
        return n + 1;
    }

    std::size_t addEscaped(const String& sText, std::size_t n, DurationFormat::EOptionalBasedOn eBasis)
    {
        if (n < sText.size())
            add(DurationFormat::kSeparator, 0, sText.substr(n, 1), eBasis);
        return n + 1;
    }

    std::size_t addBracket(const String& sText, std::size_t n)
    {
        const std::size_t nClose = std::min(sText.find(L']', n), sText.size());
        const String sContent = sText.substr(n, nClose - n);
        if (sContent.substr(0, 4) == L"opt:")
            parse(sContent.substr(4), basisOf(sContent.substr(4)));
        return nClose + 1;
    }

    static DurationFormat::EOptionalBasedOn basisOf(const String& sSection)
    {
        if (sSection.find(L"ss") != String::npos)
            return DurationFormat::kSecondOpt;
        if (sSection.find(L"mm") != String::npos)
            return DurationFormat::kMinuteOpt;
        if (sSection.find(L"hh") != String::npos)
            return DurationFormat::kHourOpt;
        return sSection.find(L"dd") != String::npos ? DurationFormat::kDayOpt : DurationFormat::kRequired;
    }
};

TEST(DurationPattern, AgreesWithAParserThatReadsSectionsByRecursion)
{
    const wchar_t* const kPieces[] = {L"d",  L"h",  L"m", L"s", L"dd", L"hh", L"mm", L"ss",    L"c",     L"r",
                                      L"\"", L"\\", L"[", L"]", L":",  L"x",  L"D",  L"[opt:", L"[opt:", L"[opt:"};
    std::mt19937 tRandom(20240305);
    for (int nRun = 0; nRun < 20000; ++nRun)
    {
        String sPattern;
        for (unsigned nLength = tRandom() % 16; nLength > 0; --nLength)
            sPattern += kPieces[tRandom() % std::size(kPieces)];
        ReferenceParser tReference;
        tReference.parse(sPattern, DurationFormat::kRequired);
        const DurationPattern tPattern = DurationPattern::parse(sPattern, kText);
        ASSERT_EQ(elementsOf(tPattern), joined(tReference.vParts)) << toUtf8(sPattern);
        const char nRule = "fcr"[tPattern.formats().m_eRoundRule];
        ASSERT_EQ(nRule, tReference.nRule) << toUtf8(sPattern);
    }
}

String repeated(const String& sPart, std::size_t nCount)
{
    String sAll;
    for (; nCount > 0; --nCount)
        sAll += sPart;
    return sAll;
}

// Work that grew with the square of the length would take hours here, recursion all of the stack.
TEST(DurationPattern, ReadsMillionsOfBracketsInOnePass)
{
    constexpr std::size_t kMany = 1'000'000;
    const String kHostile[] = {repeated(L"[opt:", kMany),       repeated(L"[opt:", kMany) + L"]",
                               repeated(L"[opt:ss", kMany / 8), repeated(L"[opt:]", kMany),
                               repeated(L"[", kMany),           repeated(L"[]", kMany),
                               repeated(L"\"\\", kMany / 8),    repeated(L"[opt:dd\"", kMany / 8)};
    for (const String& sPattern : kHostile)
        EXPECT_LE(DurationPattern::parse(sPattern, kText).formats().m_vDurationFormats.size(), kMany);
}

TEST(DurationPattern, NamesItsTypesBasesAndRules)
{
    EXPECT_STREQ(DurationPattern::typeName(DurationFormat::kDay), "kDay");
    EXPECT_STREQ(DurationPattern::typeName(DurationFormat::kHour), "kHour");
    EXPECT_STREQ(DurationPattern::typeName(DurationFormat::kMinute), "kMinute");
    EXPECT_STREQ(DurationPattern::typeName(DurationFormat::kSecond), "kSecond");
    EXPECT_STREQ(DurationPattern::typeName(DurationFormat::kSeparator), "kSeparator");
    EXPECT_STREQ(DurationPattern::typeName(DurationFormat::kText), "kText");
    EXPECT_STREQ(DurationPattern::typeName(static_cast<DurationFormat::EDurationType>(6)), "");
    EXPECT_STREQ(DurationPattern::typeName(static_cast<DurationFormat::EDurationType>(-1)), "");
    EXPECT_STREQ(DurationPattern::basisName(DurationFormat::kDayOpt), "kDayOpt");
    EXPECT_STREQ(DurationPattern::basisName(DurationFormat::kHourOpt), "kHourOpt");
    EXPECT_STREQ(DurationPattern::basisName(DurationFormat::kMinuteOpt), "kMinuteOpt");
    EXPECT_STREQ(DurationPattern::basisName(DurationFormat::kSecondOpt), "kSecondOpt");
    EXPECT_STREQ(DurationPattern::basisName(DurationFormat::kRequired), "kRequired");
    EXPECT_STREQ(DurationPattern::roundRuleName(DurationFormatList::kFloor), "kFloor");
    EXPECT_STREQ(DurationPattern::roundRuleName(DurationFormatList::kCeil), "kCeil");
    EXPECT_STREQ(DurationPattern::roundRuleName(DurationFormatList::kRound), "kRound");
}

// The numbers are fixed: they index tables.
TEST(DurationPattern, NumbersItsTypesBasesAndRules)
{
    EXPECT_EQ(DurationFormat::kDay, 0);
    EXPECT_EQ(DurationFormat::kHour, 1);
    EXPECT_EQ(DurationFormat::kMinute, 2);
    EXPECT_EQ(DurationFormat::kSecond, 3);
    EXPECT_EQ(DurationFormat::kSeparator, 4);
    EXPECT_EQ(DurationFormat::kText, 5);
    EXPECT_EQ(DurationFormat::kDayOpt, 0);
    EXPECT_EQ(DurationFormat::kHourOpt, 1);
    EXPECT_EQ(DurationFormat::kMinuteOpt, 2);
    EXPECT_EQ(DurationFormat::kSecondOpt, 3);
    EXPECT_EQ(DurationFormat::kRequired, 4);
    EXPECT_EQ(DurationFormatList::kFloor, 0);
    EXPECT_EQ(DurationFormatList::kCeil, 1);
    EXPECT_EQ(DurationFormatList::kRound, 2);
}

}  // namespace

}  // namespace tov
