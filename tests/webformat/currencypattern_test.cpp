#include "project/webformat/currencypattern.h"

#include <gtest/gtest.h>

#include "intl/currencylookup.h"
#include "intl/ktwuilanguage.h"
#include "intl/localetaglookup.h"
#include "support/collected.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;
using NegativeFormat = WebNumberFormatDefinitionBase::NegativeFormat;
using OutputType = ValueFormatterTypes::OutputType;

constexpr NegativeFormat kMinus = WebNumberFormatDefinitionBase::kMinus;
constexpr NegativeFormat kRed = WebNumberFormatDefinitionBase::kRed;
constexpr NegativeFormat kParens = WebNumberFormatDefinitionBase::kParens;
constexpr NegativeFormat kRedParens = WebNumberFormatDefinitionBase::kRedParens;
constexpr NegativeFormat kRedMinus = WebNumberFormatDefinitionBase::kRedMinus;
constexpr NegativeFormat kNegativeFormatEnd_ = WebNumberFormatDefinitionBase::kNegativeFormatEnd_;

const String ksNoScale;
const NumberSettings ktWhole{false, 0, 0, ksNoScale, 0};

String built(const wchar_t* pTag, NegativeFormat eFormat, OutputType eOutput = kText, const wchar_t* pLanguage = L"en",
             const NumberSettings& tNumber = ktWhole)
{
    return buildCurrencyPattern({pTag, tNumber, eFormat}, Locale::kUSA, eOutput, KTWUILanguage(pLanguage));
}

struct StyleRow
{
    int nLine;
    const wchar_t* pTag;
    NegativeFormat eFormat;
    OutputType eOutput;
    const wchar_t* pLanguage;
    const wchar_t* pExpected;
};

constexpr StyleRow kStyleRows[] = {
    {__LINE__, L"loc:en-US", kMinus, kText, L"en", L"[$:$]#0;-[$:$]#0"},
    {__LINE__, L"loc:en-US", kRedMinus, kText, L"en", L"[$:$]#0;[red]-[$:$]#0"},
    {__LINE__, L"loc:en-US", kParens, kText, L"en", L"[$:$]#0;([$:$]#0)"},
    {__LINE__, L"loc:en-US", kRedParens, kText, L"en", L"[$:$]#0;[red]([$:$]#0)"},
    {__LINE__, L"loc:en-US", kRed, kText, L"en", L"[$:$]#0;[red][$:$]#0"},  // no minus sign
    {__LINE__, L"loc:en-US", kNegativeFormatEnd_, kText, L"en", L"[$:$]#0;-[$:$]#0"},
    {__LINE__, L"loc:en-US", static_cast<NegativeFormat>(-1), kText, L"en", L"[$:$]#0;-[$:$]#0"},
    // The layouts of the currency.
    {__LINE__, L"loc:de-DE", kMinus, kText, L"en", L"#0 [$:\u20AC];-#0 [$:\u20AC]"},
    {__LINE__, L"loc:nl-NL", kMinus, kText, L"en", L"[$:\u20AC] #0;[$:\u20AC] -#0"},
    {__LINE__, L"loc:nl-NL", kParens, kText, L"en", L"[$:\u20AC] #0;([$:\u20AC] #0)"},
    {__LINE__, L"loc:fy-NL", kRedMinus, kText, L"en", L"[$:\u20AC] #0;[red][$:\u20AC] #0-"},
    {__LINE__, L"int:EUR", kMinus, kText, L"en", L"[$:EUR] #0;-[$:EUR] #0"},
    {__LINE__, L"EUR", kParens, kText, L"en", L"[$:\u20AC]#0;([$:\u20AC]#0)"},
    // A blank is a quoted entity in HTML and a blank everywhere else.
    {__LINE__, L"int:EUR", kMinus, kHTML, L"en", L"[$:EUR]\"&nbsp;\"#0;-[$:EUR]\"&nbsp;\"#0"},
    {__LINE__, L"int:EUR", kParens, kXML, L"en", L"[$:EUR] #0;([$:EUR] #0)"},
    {__LINE__, L"int:EUR", kParens, kPDF, L"en", L"[$:EUR] #0;([$:EUR] #0)"},
    {__LINE__, L"int:EUR", kParens, kXLSX, L"en", L"[$:EUR] #0;([$:EUR] #0)"},
    // Each section of a Hebrew page begins with the mark, behind the colour.
    {__LINE__, L"loc:en-US", kMinus, kHTML, L"he", L"\"&#x200e;\"[$:$]#0;\"&#x200e;\"-[$:$]#0"},
    {__LINE__, L"loc:en-US", kRedMinus, kHTML, L"he-IL", L"\"&#x200e;\"[$:$]#0;[red]\"&#x200e;\"-[$:$]#0"},
    {__LINE__, L"loc:en-US", kRed, kHTML, L"HE", L"\"&#x200e;\"[$:$]#0;[red]\"&#x200e;\"[$:$]#0"},
    {__LINE__, L"loc:en-US", kRedParens, kHTML, L"he", L"\"&#x200e;\"[$:$]#0;[red]\"&#x200e;\"([$:$]#0)"},
    {__LINE__, L"loc:en-US", kMinus, kText, L"he", L"[$:$]#0;-[$:$]#0"},
    {__LINE__, L"loc:en-US", kMinus, kPDF, L"he", L"[$:$]#0;-[$:$]#0"},
    {__LINE__, L"loc:en-US", kMinus, kHTML, L"ar", L"[$:$]#0;-[$:$]#0"},
};

TEST(CurrencyPattern, WritesEachStyleInTheLayoutsOfTheCurrency)
{
    for (const StyleRow& tRow : kStyleRows)
        EXPECT_EQ(toUtf8(built(tRow.pTag, tRow.eFormat, tRow.eOutput, tRow.pLanguage)), toUtf8(String(tRow.pExpected)))
            << "row at line " << tRow.nLine;
}

struct NumberRow
{
    int nLine;
    bool bCommas;
    std::uint32_t nMin;
    std::uint32_t nMax;
    const wchar_t* pScaleName;
    std::int32_t nScale;
    const wchar_t* pExpected;
};

constexpr NumberRow kNumberRows[] = {
    {__LINE__, false, 0, 0, L"", 0, L"[$:$]#0;-[$:$]#0"},
    {__LINE__, true, 2, 2, L"", 0, L"[$:$]#,##0.00;-[$:$]#,##0.00"},
    {__LINE__, true, 1, 3, L"", 0, L"[$:$]#,##0.0##;-[$:$]#,##0.0##"},
    {__LINE__, false, 2, 0, L"", 0, L"[$:$]#0;-[$:$]#0"},
    {__LINE__, false, 20, 25, L"", 0, L"[$:$]#0.0000000000000000#####;-[$:$]#0.0000000000000000#####"},
    {__LINE__, false, 0, 0, L"million", -3, L"[$:$]#0[scale-name:million];-[$:$]#0[scale-name:million]"},
    {__LINE__, false, 0, 0, L"", -3, L"[$:$]#0[scale-decimal:-3];-[$:$]#0[scale-decimal:-3]"},
};

TEST(CurrencyPattern, WritesTheNumberAsTheDefinitionSays)
{
    for (const NumberRow& tRow : kNumberRows)
    {
        const String sScaleName = tRow.pScaleName;
        const NumberSettings tNumber{tRow.bCommas, tRow.nMin, tRow.nMax, sScaleName, tRow.nScale};
        EXPECT_EQ(built(L"loc:en-US", kMinus, kText, L"en", tNumber), tRow.pExpected) << "row at line " << tRow.nLine;
    }
}

struct TagRow
{
    int nLine;
    const wchar_t* pTag;
    const wchar_t* pOverriding;
    const wchar_t* pExpected;
    const wchar_t* pLogged;  // null: nothing
};

constexpr TagRow kTagRows[] = {
    {__LINE__, L"int:EUR", L"", L"[$:EUR] #0;-[$:EUR] #0", nullptr},
    {__LINE__, L"int:EUR", L"int:USD", L"[$:EUR] #0;-[$:EUR] #0", nullptr},  // a tag that is known comes first
    {__LINE__, L"nope", L"int:USD", L"[$:USD] #0;-[$:USD] #0", nullptr},
    {__LINE__, L"", L"int:USD", L"[$:USD] #0;-[$:USD] #0", nullptr},
    {__LINE__, L"int:EUR", L"nope", L"[$:EUR] #0;-[$:EUR] #0", nullptr},
    {__LINE__, L"nope", L"", L"", L"Unknown Currency Tag nope"},
    {__LINE__, L"", L"", L"", L"Unknown Currency Tag "},
    {__LINE__, L"nope", L"neither", L"", L"Unknown Currency Tag nope"},  // the definition's own
};

TEST(CurrencyPattern, FallsBackToTheOverridingTagAndLogsWhatIsUnknown)
{
    for (const TagRow& tRow : kTagRows)
    {
        const CollectedLog tLog;
        Locale tLocale;
        tLocale.setOverridingCurrencyTag(tRow.pOverriding);
        EXPECT_EQ(buildCurrencyPattern({tRow.pTag, ktWhole, kMinus}, tLocale, kText, KTWUILanguage::kDefaultLanguage),
                  tRow.pExpected)
            << "row at line " << tRow.nLine;
        ASSERT_EQ(tLog.count(), tRow.pLogged ? 1u : 0u) << "row at line " << tRow.nLine;
        if (!tRow.pLogged)
            continue;
        EXPECT_EQ(tLog.all()[0].sText, tRow.pLogged) << "row at line " << tRow.nLine;
        EXPECT_EQ(tLog.all()[0].eSeverity, Logger::kCriticalError) << "row at line " << tRow.nLine;
    }
}

CurrencyHandle madeByHand(const wchar_t* pSymbol, const wchar_t* pFormat, Currency::NegativeFormats tNegative)
{
    return WEBFORMAT_NEW("tests/currencypattern") Currency(pSymbol, 2, true, pFormat, std::move(tNegative));
}

String patternOf(const CurrencyHandle& hCurrency, NegativeFormat eFormat, OutputType eOutput = kText,
                 const wchar_t* pLanguage = L"en")
{
    return patternOfCurrency(hCurrency, ktWhole, eFormat, eOutput, KTWUILanguage(pLanguage));
}

// Kept: the opening parenthesis and the positive layout are overwritten with a closing one.
TEST(CurrencyPattern, ShowsOnlyAClosingParenthesisWhereTheCurrencyHasNoLayoutForIt)
{
    const CurrencyHandle hPlain = madeByHand(L"F", L"$ #", {});
    EXPECT_EQ(patternOf(hPlain, kParens), L"[$:F] #0;)");
    EXPECT_EQ(patternOf(hPlain, kRedParens), L"[$:F] #0;[red])");
    EXPECT_EQ(patternOf(hPlain, kRedParens, kHTML, L"he"), L"\"&#x200e;\"[$:F]\"&nbsp;\"#0;[red]\"&#x200e;\")");
}

TEST(CurrencyPattern, PutsAMinusBeforeThePositiveLayoutWhereTheCurrencyHasNoneForIt)
{
    const CurrencyHandle hPlain = madeByHand(L"F", L"# $", {});
    EXPECT_EQ(patternOf(hPlain, kMinus), L"#0 [$:F];-#0 [$:F]");
    EXPECT_EQ(patternOf(hPlain, kRedMinus), L"#0 [$:F];[red]-#0 [$:F]");
    EXPECT_EQ(patternOf(hPlain, kRed), L"#0 [$:F];[red]#0 [$:F]");
}

TEST(CurrencyPattern, TakesTheNegativeLayoutsOfTheCurrency)
{
    const CurrencyHandle hCurrency = madeByHand(
        L"F", L"$#", {{L"minus", Currency::NegativeFormat(L"#-$")}, {L"parens", Currency::NegativeFormat(L"$(#)")}});
    EXPECT_EQ(patternOf(hCurrency, kMinus), L"[$:F]#0;#0-[$:F]");
    EXPECT_EQ(patternOf(hCurrency, kRedParens), L"[$:F]#0;[red][$:F](#0)");
    EXPECT_EQ(patternOf(hCurrency, kRed), L"[$:F]#0;[red][$:F]#0") << "the colour alone tells";
}

TEST(CurrencyPattern, DropsWhateverElseALayoutHas)
{
    EXPECT_EQ(patternOf(madeByHand(L"F", L"x$0;[red]\"\\.,%\u00A0#y", {}), kMinus), L"[$:F]#0;-[$:F]#0");
    EXPECT_EQ(patternOf(madeByHand(L"F", L"", {}), kRed), L";[red]");
    EXPECT_EQ(patternOf(madeByHand(L"F", L"#$#(-) ", {}), kRed), L"#0[$:F]#0(-) ;[red]#0[$:F]#0(-) ");
}

struct SymbolRow
{
    int nLine;
    const wchar_t* pSymbol;
};

constexpr SymbolRow kSymbolRows[] = {
    {__LINE__, L"]"},      {__LINE__, L"a]b"}, {__LINE__, L"]]"},         {__LINE__, L"["},
    {__LINE__, L"\""},     {__LINE__, L"'"},   {__LINE__, L"a'"},         {__LINE__, L";"},
    {__LINE__, L"\\"},     {__LINE__, L"#0."}, {__LINE__, L"[html]x"},    {__LINE__, L"x][html]y"},
    {__LINE__, L"[red]0"}, {__LINE__, L"$:$"}, {__LINE__, L"\"];[red]0"}, {__LINE__, L"%"},
};

TEST(CurrencyPattern, ShowsAnySymbolAsItIs)
{
    for (const SymbolRow& tRow : kSymbolRows)
    {
        const String sPattern = patternOf(madeByHand(tRow.pSymbol, L"$#", {}), kMinus);
        const WebValueFormatterHandle hFormatter =
            NumericFormatter<double>::ParseCustomFormat(sPattern, Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage);
        const double fPositive = 5;
        const double fNegative = -5;
        EXPECT_EQ(hFormatter->formatAsString(&fPositive), String(tRow.pSymbol) + L"5") << "row at line " << tRow.nLine;
        EXPECT_EQ(hFormatter->formatAsString(&fNegative), L"-" + String(tRow.pSymbol) + L"5")
            << "row at line " << tRow.nLine;
    }
}

TEST(CurrencyPattern, NeedsACurrency)
{
    EXPECT_THROW(patternOf(CurrencyHandle(), kMinus), InvalidHandleException);
}

}  // namespace

}  // namespace tov
