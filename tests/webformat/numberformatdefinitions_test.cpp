#include <gtest/gtest.h>

#include <functional>

#include "definitiontesting.h"
#include "intl/ktwuilanguage.h"
#include "intl/localetaglookup.h"
#include "support/collected.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using Base = WebNumberFormatDefinitionBase;
using Number = WebNumberFormatDefinition;
using Percent = WebPercentFormatDefinition;
using Currency = WebCurrencyFormatDefinition;
using Conditional = WebConditionalCurrencyFormatDefinition;

constexpr Base::NegativeFormat kMinus = Base::kMinus;
constexpr Base::NegativeFormat kRed = Base::kRed;
constexpr Base::NegativeFormat kParens = Base::kParens;
constexpr Base::NegativeFormat kRedParens = Base::kRedParens;
constexpr Base::NegativeFormat kRedMinus = Base::kRedMinus;
constexpr Base::NegativeFormat kNegativeFormatEnd_ = Base::kNegativeFormatEnd_;

struct ReadRow
{
    int nLine;
    const char* pAttributes;
    const wchar_t* pWritten;
};

constexpr ReadRow kReadRows[] = {
    {__LINE__, "", L"minDigits=2 maxDigits=2 commas=false negativeType=minus"},
    {__LINE__, "minDigits='1' maxDigits='3' commas='true' negativeType='red'",
     L"minDigits=1 maxDigits=3 commas=true negativeType=red"},
    {__LINE__, "minDigits='0' maxDigits='0'", L"minDigits=0 maxDigits=0 commas=false negativeType=minus"},
    {__LINE__, "minDigits='4294967295'", L"minDigits=4294967295 maxDigits=2 commas=false negativeType=minus"},
    {__LINE__, "minDigits='4294967296' maxDigits='-1'", L"minDigits=2 maxDigits=2 commas=false negativeType=minus"},
    {__LINE__, "minDigits='x' maxDigits='' commas='yes'", L"minDigits=2 maxDigits=2 commas=false negativeType=minus"},
    {__LINE__, "commas='1'", L"minDigits=2 maxDigits=2 commas=true negativeType=minus"},
    {__LINE__, "scale='0'", L"minDigits=2 maxDigits=2 commas=false negativeType=minus"},
    {__LINE__, "scale='-3'", L"minDigits=2 maxDigits=2 commas=false negativeType=minus scale=-3"},
    {__LINE__, "scale='6'", L"minDigits=2 maxDigits=2 commas=false negativeType=minus scale=6"},
    {__LINE__, "scale='3000000000'", L"minDigits=2 maxDigits=2 commas=false negativeType=minus"},
    // Kept: the scale factor is read and never written.
    {__LINE__, "scaleFactor='million'", L"minDigits=2 maxDigits=2 commas=false negativeType=minus"},
};

TEST(NumberFormatDefinitions, ReadAndWriteTheirAttributes)
{
    for (const ReadRow& tRow : kReadRows)
    {
        for (const char* pType : {"number", "percent"})
        {
            const Definition hRead =
                definitionOf(std::string("xsi:type='tov:") + pType + "' " + tRow.pAttributes + "/>");
            EXPECT_EQ(attributesOf(hRead), tRow.pWritten) << "row at line " << tRow.nLine;
        }
    }
}

struct NegativeRow
{
    int nLine;
    const char* pRead;
    int nValue;
    const wchar_t* pWritten;
};

constexpr NegativeRow kNegativeRows[] = {
    {__LINE__, "minus", 0, L"minus"},
    {__LINE__, "-", 0, L"minus"},
    {__LINE__, "red", 1, L"red"},
    {__LINE__, "[red]", 1, L"red"},
    {__LINE__, "paren", 2, L"paren"},
    {__LINE__, "()", 2, L"paren"},
    {__LINE__, "redParen", 3, L"redParen"},
    {__LINE__, "[red]()", 3, L"redParen"},
    {__LINE__, "redMinus", 4, L"redMinus"},
    {__LINE__, "[red]-", 4, L"redMinus"},
    {__LINE__, "", 0, L"minus"},
    {__LINE__, "Red", 0, L"minus"},
    {__LINE__, "parens", 0, L"minus"},
    {__LINE__, "[Red]", 0, L"minus"},
};

TEST(NumberFormatDefinitions, ReadOlderSpellingsOfNegativeStylesAndWriteCurrentOnes)
{
    for (const NegativeRow& tRow : kNegativeRows)
    {
        const Definition hRead = definitionOf("xsi:type='tov:number' negativeType='" + std::string(tRow.pRead) + "'/>");
        ASSERT_NE(as<Number>(hRead), nullptr);
        EXPECT_EQ(as<Number>(hRead)->GetNegativeFormat(), tRow.nValue) << "row at line " << tRow.nLine;
        EXPECT_STREQ(Base::negativeFormatName(as<Number>(hRead)->GetNegativeFormat()), tRow.pWritten)
            << "row at line " << tRow.nLine;
        EXPECT_NE(attributesOf(hRead).find(String(L"negativeType=") + tRow.pWritten), String::npos)
            << "row at line " << tRow.nLine;
    }
    EXPECT_STREQ(Base::negativeFormatName(kNegativeFormatEnd_), L"");
}

TEST(NumberFormatDefinitions, SayThatANegativeStyleHasNoName)
{
    const CollectedAssertions tAssertions;
    EXPECT_EQ(attributesOf(new Number(kNegativeFormatEnd_, false, 0, 0)), L"minDigits=0 maxDigits=0 commas=false");
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "!(i == m_mEnumKeyedMap.end())");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/numericformatters");
}

TEST(NumberFormatDefinitions, HoldWhatTheyAreBuiltWith)
{
    Number tNumber(kRed, true, 1, 3);
    EXPECT_EQ(tNumber.GetNegativeFormat(), kRed);
    EXPECT_TRUE(tNumber.HasCommas());
    EXPECT_EQ(tNumber.MinDigits(), 1u);
    EXPECT_EQ(tNumber.MaxDigits(), 3u);
    EXPECT_EQ(tNumber.Scale(), 0);
    EXPECT_EQ(tNumber.getScaleFactor(), L"");
    EXPECT_EQ(tNumber.negativeScaleLimit(), 0xFFFFFFFF);
    EXPECT_EQ(tNumber.positiveScaleLimit(), 0xFFFFFFFF);
    tNumber.setMinDigits(4);
    tNumber.setMaxDigits(5);
    tNumber.setScale(-6);
    tNumber.setScaleFactor(L"million");
    tNumber.setScientificNotationLimits(7, 8);
    EXPECT_EQ(tNumber.MinDigits(), 4u);
    EXPECT_EQ(tNumber.MaxDigits(), 5u);
    EXPECT_EQ(tNumber.Scale(), -6);
    EXPECT_EQ(tNumber.getScaleFactor(), L"million");
    EXPECT_EQ(tNumber.negativeScaleLimit(), 7u);
    EXPECT_EQ(tNumber.positiveScaleLimit(), 8u);
}

// Each change makes the definition larger and outweighs all the changes that come after it in the list.
TEST(NumberFormatDefinitions, AreOrderedBySettingsFromTheGroupingToTheLimits)
{
    const std::function<Handle<Number, Number>()> aSteps[] = {
        [] { return new Number(kMinus, false, 1, 5); },
        []
        {
            Number* p = new Number(kMinus, false, 1, 5);
            p->setScientificNotationLimits(0xFFFFFFFF, 3);
            return p;
        },
        []
        {
            Number* p = new Number(kMinus, false, 1, 5);
            p->setScientificNotationLimits(2, 0xFFFFFFFF);
            return p;
        },
        []
        {
            Number* p = new Number(kMinus, false, 1, 5);
            p->setScale(-3);
            return p;
        },
    };
    const auto order = [&](std::size_t nLeft, std::size_t nRight)
    { return aSteps[nLeft]()->CompareLikeDefinition(*aSteps[nRight]()); };
    EXPECT_EQ(order(0, 0), 0);
    EXPECT_EQ(order(1, 0), -1);  // positive limit 3 before none
    EXPECT_EQ(order(2, 0), -1);  // negative limit 2 before none
    EXPECT_EQ(order(1, 2), -1);  // the positive limit decides first
    EXPECT_EQ(order(3, 0), -1);  // scales are signed: -3 before 0
    EXPECT_EQ(order(3, 1), -1);  // and decide before the limits
    EXPECT_EQ(Number(kMinus, false, 9, 9).CompareLikeDefinition(Number(kMinus, true, 0, 0)), -1);
    EXPECT_EQ(Number(kMinus, true, 0, 0).CompareLikeDefinition(Number(kRedMinus, false, 0, 0)), 1);
    EXPECT_EQ(Number(kMinus, false, 9, 9).CompareLikeDefinition(Number(kRed, false, 0, 0)), -1);
    EXPECT_EQ(Number(kRed, false, 1, 9).CompareLikeDefinition(Number(kRed, false, 2, 0)), -1);
    EXPECT_EQ(Number(kRed, false, 2, 9).CompareLikeDefinition(Number(kRed, false, 2, 0)), 1);
    EXPECT_EQ(Number(kRed, false, 0x80000000, 0).CompareLikeDefinition(Number(kRed, false, 1, 0)), 1);  // unsigned
}

TEST(NumberFormatDefinitions, CompareEqualWhereOnlyTheScaleFactorDiffers)
{
    Number tNumber(kMinus, false, 0, 0);
    tNumber.setScaleFactor(L"million");
    EXPECT_EQ(tNumber.CompareLikeDefinition(Number(kMinus, false, 0, 0)), 0);
}

TEST(NumberFormatDefinitions, ListEverySettingThatXmlHas)
{
    EXPECT_EQ(settingsOf(definitionOf("xsi:type='tov:number' scaleFactor='million' scale='-3' commas='true'/>")),
              L"commas=true minDigits=2 maxDigits=2 negativeType='minus' scale=-3 scaleFactor='million'");
    EXPECT_EQ(settingsOf(new Percent(kRedMinus, false, 0, 0xFFFFFFFF)),
              L"commas=false minDigits=0 maxDigits=4294967295 negativeType='redMinus' scale=0 scaleFactor=''");
    EXPECT_EQ(settingsOf(new Conditional(L"EUR", kRed, false, 1, 2, L"a.b")),
              L"commas=false minDigits=1 maxDigits=2 negativeType='red' scale=0 scaleFactor='' currencyTag='EUR' "
              L"currencyTagColumn='a.b'");
}

struct PatternRow
{
    int nLine;
    Base::NegativeFormat eFormat;
    bool bCommas;
    unsigned nMin;
    unsigned nMax;
    const wchar_t* pNumber;
};

constexpr PatternRow kNumberPatternRows[] = {
    {__LINE__, kMinus, false, 0, 0, L"0"},
    {__LINE__, kMinus, true, 0, 0, L"#,##0"},
    {__LINE__, kMinus, false, 2, 2, L"0.00"},
    {__LINE__, kMinus, true, 1, 3, L"#,##0.0##"},
    {__LINE__, kMinus, false, 0, 3, L"0.###"},
    {__LINE__, kMinus, false, 3, 1, L"0.000"},  // a maximum below the minimum adds nothing
    {__LINE__, kRed, false, 0, 0, L"0;[red]0"},
    {__LINE__, kParens, true, 2, 2, L"#,##0.00_);(#,##0.00)"},
    {__LINE__, kRedParens, false, 1, 1, L"0.0_);[red](0.0)"},
    {__LINE__, kRedMinus, false, 0, 3, L"0.###;[red]-0.###"},
    {__LINE__, kNegativeFormatEnd_, false, 1, 1, L"0.0"},
};

TEST(NumberFormatDefinitions, HaveTheSameExcelPatternForBothKinds)
{
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    const Locale tGerman = LocaleTagLookup::lookupOrDefault(L"de-DE");  // Excel's separators are always , and .
    for (const PatternRow& tRow : kNumberPatternRows)
    {
        const Number tNumber(tRow.eFormat, tRow.bCommas, tRow.nMin, tRow.nMax);
        EXPECT_EQ(tNumber.getFormatPattern(Locale::kUSA, tLanguage, Number::kFormatPatternNormal), tRow.pNumber)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(tNumber.getFormatPattern(tGerman, tLanguage, Number::kFormatPatternExcel), tRow.pNumber)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(tNumber.getMsoStyle(tGerman, tLanguage), L"mso-number-format:'" + String(tRow.pNumber) + L"';")
            << "row at line " << tRow.nLine;
    }
}

// Digit counts come from outside: a run stops at 255 characters, the longest pattern that Excel takes.
TEST(NumberFormatDefinitions, StopRunsOfDigitsAt255)
{
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    const Number tNumber(kMinus, false, 4000000000, 0xFFFFFFFF);
    EXPECT_EQ(tNumber.getFormatPattern(Locale::kUSA, tLanguage, Number::kFormatPatternExcel),
              L"0." + String(255, L'0') + String(255, L'#'));
    const Number tEdge(kMinus, false, 255, 256);
    EXPECT_EQ(tEdge.getFormatPattern(Locale::kUSA, tLanguage, Number::kFormatPatternExcel),
              L"0." + String(255, L'0') + L"#");
}

struct PercentRow
{
    int nLine;
    Base::NegativeFormat eFormat;
    bool bCommas;
    unsigned nMin;
    unsigned nMax;
    int nScale;
    const wchar_t* pSignBehind;  // en-US
    const wchar_t* pSignBefore;  // tr-TR
};

constexpr PercentRow kPercentRows[] = {
    {__LINE__, kMinus, false, 1, 3, 0, L"0.0##%", L"&quot;%&quot;0.0##"},
    {__LINE__, kMinus, false, 0, 0, 0, L"0%", L"&quot;%&quot;0"},
    {__LINE__, kMinus, true, 0, 0, 0, L"0%", L"&quot;%&quot;0"},  // never grouped
    {__LINE__, kMinus, false, 0, 2, -2, L"0.##%", L"%0.##"},      // with a scale the sign is a bare one
    {__LINE__, kRedParens, false, 2, 2, 0, L"0.00%_);[red](0.00%)", L"&quot;%&quot;0.00_);[red](&quot;%&quot;0.00)"},
    {__LINE__, kRedMinus, false, 0, 0, 1, L"0%;[red]-0%", L"%0;[red]-%0"},
};

TEST(NumberFormatDefinitions, PutThePercentSignWhereTheLocaleHasIt)
{
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    const Locale tTurkish = LocaleTagLookup::lookupOrDefault(L"tr-TR");
    ASSERT_EQ(tTurkish.getInfo(Locale::kPercentSymbolLocation), L"%#");
    for (const PercentRow& tRow : kPercentRows)
    {
        Percent tPercent(tRow.eFormat, tRow.bCommas, tRow.nMin, tRow.nMax);
        tPercent.setScale(tRow.nScale);
        EXPECT_EQ(tPercent.getFormatPattern(Locale::kUSA, tLanguage, Percent::kFormatPatternNormal), tRow.pSignBehind)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(tPercent.getFormatPattern(tTurkish, tLanguage, Percent::kFormatPatternExcel), tRow.pSignBefore)
            << "row at line " << tRow.nLine;
    }
}

TEST(NumberFormatDefinitions, TakeABlankBetweenSignAndNumberForASignBehind)
{
    const Locale tBasque = LocaleTagLookup::lookupOrDefault(L"eu-ES");
    ASSERT_EQ(tBasque.getInfo(Locale::kPercentSymbolLocation), L"% #");
    EXPECT_EQ(Percent(kMinus, false, 0, 0)
                  .getFormatPattern(tBasque, KTWUILanguage::kDefaultLanguage, Percent::kFormatPatternNormal),
              L"0%");
}

// Kept: the difference of a maximum below the minimum wraps; its run stops where every run stops.
TEST(NumberFormatDefinitions, LetTheDigitsOfAPercentageWrap)
{
    EXPECT_EQ(Percent(kMinus, false, 2, 1)
                  .getFormatPattern(Locale::kUSA, KTWUILanguage::kDefaultLanguage, Percent::kFormatPatternNormal),
              L"0.00" + String(255, L'#') + L"%");
}

TEST(NumberFormatDefinitions, StreamDigitsGroupingAndNegativeStyle)
{
    EXPECT_EQ(bytesOf(new Number(kRedParens, true, 2, 0x01020304)),
              "06 00 00 00 6E 75 6D 62 65 72 02 00 00 00 04 03 02 01 01 03");
    Percent* const pPercent = new Percent(kMinus, false, 0, 1);
    pPercent->setScale(-3);  // no part of the binary form, nor are the scale factor and the limits
    pPercent->setScaleFactor(L"million");
    pPercent->setScientificNotationLimits(1, 2);
    EXPECT_EQ(bytesOf(pPercent), "07 00 00 00 70 65 72 63 65 6E 74 00 00 00 00 01 00 00 00 00 00");
}

TEST(NumberFormatDefinitions, StreamTheStringsOfCurrenciesBehindTheNumber)
{
    EXPECT_EQ(bytesOf(new Currency(L"€", kRed, false, 2, 2)),
              "08 00 00 00 63 75 72 72 65 6E 63 79 02 00 00 00 02 00 00 00 00 01 03 00 00 00 E2 82 AC");
    EXPECT_EQ(bytesOf(new Conditional(L"E", kMinus, true, 0, 0, L"a.b")),
              "13 00 00 00 63 6F 6E 64 69 74 69 6F 6E 61 6C 63 75 72 72 65 6E 63 79 "
              "00 00 00 00 00 00 00 00 01 00 01 00 00 00 45 03 00 00 00 61 2E 62");
}

TEST(CurrencyFormatDefinition, ReadsAndWritesItsTagBehindTheNumber)
{
    const Definition hRead = definitionOf("xsi:type='tov:currency' currencyTag='loc:en-US' scale='-3'/>");
    ASSERT_NE(as<Currency>(hRead), nullptr);
    EXPECT_EQ(as<Currency>(hRead)->CurrencyTag(), L"loc:en-US");
    EXPECT_EQ(attributesOf(hRead),
              L"minDigits=2 maxDigits=2 commas=false negativeType=minus scale=-3 currencyTag=loc:en-US");
    EXPECT_EQ(attributesOf(definitionOf("xsi:type='tov:currency'/>")),
              L"minDigits=2 maxDigits=2 commas=false negativeType=minus currencyTag=");
}

TEST(CurrencyFormatDefinition, IsOrderedByNumberAndThenByTag)
{
    const auto order = [](const Currency& tLeft, const Currency& tRight)
    { return tLeft.CompareLikeDefinition(tRight); };
    EXPECT_LT(order(Currency(L"Z", kMinus, false, 0, 0), Currency(L"A", kMinus, true, 0, 0)), 0);
    EXPECT_LT(order(Currency(L"A", kMinus, false, 0, 0), Currency(L"Z", kMinus, false, 0, 0)), 0);
    EXPECT_LT(order(Currency(L"Z", kMinus, false, 0, 0), Currency(L"a", kMinus, false, 0, 0)), 0);  // case counts
    EXPECT_GT(order(Currency(L"AA", kMinus, false, 0, 0), Currency(L"A", kMinus, false, 0, 0)), 0);
    EXPECT_EQ(order(Currency(L"A", kMinus, false, 0, 0), Currency(L"A", kMinus, false, 0, 0)), 0);
}

struct CurrencyExcelRow
{
    int nLine;
    const wchar_t* pTag;
    Base::NegativeFormat eFormat;
    bool bCommas;
    std::uint32_t nDigits;
    const wchar_t* pExpected;
};

// The positive and the negative section come from the currency's layouts; "[$:" is Excel's own "[$".
constexpr CurrencyExcelRow kCurrencyExcelRows[] = {
    {__LINE__, L"loc:en-US", kMinus, true, 2, L"[$$]#,##0.00;-[$$]#,##0.00"},
    {__LINE__, L"loc:en-US", kRed, true, 2, L"[$$]#,##0.00;[red][$$]#,##0.00"},
    {__LINE__, L"loc:en-US", kParens, false, 0, L"[$$]#0;([$$]#0)"},
    {__LINE__, L"loc:en-US", kRedParens, false, 1, L"[$$]#0.0;[red]([$$]#0.0)"},
    {__LINE__, L"loc:de-DE", kRedMinus, true, 2, L"#,##0.00 [$\u20AC];[red]-#,##0.00 [$\u20AC]"},
    {__LINE__, L"int:EUR", kMinus, false, 0, L"[$EUR] #0;-[$EUR] #0"},
    {__LINE__, L"int:EUR", kNegativeFormatEnd_, false, 0, L"[$EUR] #0;-[$EUR] #0"},
};

TEST(CurrencyFormatDefinition, HasTheExcelPatternOfItsLayouts)
{
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    for (const CurrencyExcelRow& tRow : kCurrencyExcelRows)
    {
        const Currency tCurrency(tRow.pTag, tRow.eFormat, tRow.bCommas, tRow.nDigits, tRow.nDigits);
        for (const auto ePattern : {Currency::kFormatPatternNormal, Currency::kFormatPatternExcel})
            EXPECT_EQ(tCurrency.getFormatPattern(Locale::kUSA, tLanguage, ePattern), tRow.pExpected)
                << "row at line " << tRow.nLine;
        EXPECT_EQ(tCurrency.getMsoStyle(Locale::kUSA, tLanguage),
                  L"mso-number-format:'" + String(tRow.pExpected) + L"';")
            << "row at line " << tRow.nLine;
    }
}

TEST(CurrencyFormatDefinition, TakesScaleAndOverridingTagIntoItsExcelPattern)
{
    Currency tCurrency(L"nope", kMinus, false, 0, 0);
    tCurrency.setScale(-3);
    Locale tLocale;
    tLocale.setOverridingCurrencyTag(L"int:JPY");
    EXPECT_EQ(tCurrency.getFormatPattern(tLocale, KTWUILanguage(L"he"), Currency::kFormatPatternNormal),
              L"[$JPY] #0[scale-decimal:-3];-[$JPY] #0[scale-decimal:-3]");
}

TEST(CurrencyFormatDefinition, HasNoExcelPatternForAnUnknownCurrency)
{
    const CollectedLog tLog;
    const Currency tCurrency(L"no such tag", kRedParens, true, 2, 2);
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    EXPECT_EQ(tCurrency.getFormatPattern(Locale::kUSA, tLanguage, Currency::kFormatPatternNormal), L"");
    EXPECT_EQ(tCurrency.getMsoStyle(Locale::kUSA, tLanguage), L"");
    StringBufferTemplate<wchar_t, 16> tBuffer;
    EXPECT_FALSE(tCurrency.msoFormat(tBuffer, Locale::kUSA, tLanguage));
    EXPECT_TRUE(tCurrency.msoNegativeFormat(tBuffer, Locale::kUSA, tLanguage));
    EXPECT_TRUE(tBuffer.empty());
    ASSERT_EQ(tLog.count(), 3u);
    EXPECT_EQ(tLog.all()[0].sText, L"Unknown Currency Tag no such tag");
}

constexpr char kConditionalXml[] =
    "xsi:type='tov:conditionalcurrency' currencyTag='EUR'>"
    "<tov:currencyTagColumn><tovx:expr xsi:type='tovx:sqlExpression'>Sales.<!-- x -->Currency</tovx:expr>"
    "</tov:currencyTagColumn></tov:dataFormat>";

TEST(ConditionalCurrencyFormatDefinition, ReadsTheExpressionOfItsColumn)
{
    const Definition hRead = definitionOf(kConditionalXml);
    ASSERT_NE(as<Conditional>(hRead), nullptr);
    EXPECT_EQ(as<Conditional>(hRead)->CurrencyTag(), L"EUR");
    EXPECT_EQ(as<Conditional>(hRead)->getCurrencyTagColumn(), L"Sales.Currency");
    String sFormula = L"before";
    hRead->populateCurrencyTagColumnFormulaIfApplies(sFormula);
    EXPECT_EQ(sFormula, L"Sales.Currency");
}

TEST(ConditionalCurrencyFormatDefinition, WritesTheExpressionAsATypedChild)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    const XmlElement& tElement = WebValueFormatDefinition::setDataFormatElement(tColumn, definitionOf(kConditionalXml));
    EXPECT_EQ(tElement.getAttributeOr(L"currencyTag"), L"EUR");
    const XmlElement* const pExpression =
        tElement.findPath({schemas::Report::kqnCurrencyTagColumn, schemas::Expression::kqnExpr});
    ASSERT_NE(pExpression, nullptr);
    EXPECT_EQ(pExpression->innerText(), L"Sales.Currency");
    const String* const pType = pExpression->getAttribute(schemas::Instance::kXsiNamespace, schemas::Instance::kType);
    ASSERT_NE(pType, nullptr);
    const String sPrefix = pType->substr(0, pType->find(L':'));
    EXPECT_EQ(*pType, sPrefix + L":sqlExpression");
    ASSERT_NE(pExpression->resolvePrefix(sPrefix), nullptr);
    EXPECT_EQ(*pExpression->resolvePrefix(sPrefix), schemas::Expression::kTovxNamespace);
}

TEST(ConditionalCurrencyFormatDefinition, WritesOverTheExpressionThatIsThere)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    WebValueFormatDefinition::setDataFormatElement(tColumn, definitionOf(kConditionalXml));
    const Definition hOther(new Conditional(L"", kMinus, false, 0, 0, L"b"));
    const XmlElement& tElement = WebValueFormatDefinition::setDataFormatElement(tColumn, hOther);
    EXPECT_EQ(tElement.children().size(), 1u);
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(WebValueFormatDefinition::DynamicReadXML(tElement), hOther),
              0);
}

TEST(ConditionalCurrencyFormatDefinition, SaysThatItsColumnIsMissing)
{
    for (const char* pInside : {"", "<tov:currencyTagColumn/>", "<tovx:expr>x</tovx:expr>",
                                "<tov:currencyTagColumn><tov:expr>x</tov:expr></tov:currencyTagColumn>"})
    {
        const CollectedAssertions tAssertions;
        const Definition hRead =
            definitionOf("xsi:type='tov:conditionalcurrency'>" + std::string(pInside) + "</tov:dataFormat>");
        ASSERT_NE(as<Conditional>(hRead), nullptr) << pInside;
        EXPECT_EQ(as<Conditional>(hRead)->getCurrencyTagColumn(), L"") << pInside;
        ASSERT_EQ(tAssertions.count(), 1u) << pInside;
        EXPECT_EQ(tAssertions.all()[0].sExpression, "pCurrColumnFormat");
        EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/numericformatters");
    }
}

TEST(ConditionalCurrencyFormatDefinition, IsOrderedAsACurrencyAndThenByColumn)
{
    const Conditional tFirst(L"A", kMinus, false, 0, 0, L"b");
    EXPECT_LT(tFirst.CompareLikeDefinition(Conditional(L"B", kMinus, false, 0, 0, L"a")), 0);
    EXPECT_LT(tFirst.CompareLikeDefinition(Conditional(L"A", kMinus, false, 0, 0, L"c")), 0);
    EXPECT_GT(tFirst.CompareLikeDefinition(Conditional(L"A", kMinus, false, 0, 0, L"B")), 0);
    EXPECT_EQ(tFirst.CompareLikeDefinition(tFirst), 0);
}

TEST(ConditionalCurrencyFormatDefinition, HasNoExcelPattern)
{
    const Conditional tConditional(L"loc:en-US", kMinus, true, 2, 2, L"a");
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    EXPECT_EQ(tConditional.getFormatPattern(Locale::kUSA, tLanguage, Conditional::kFormatPatternExcel), L"");
    EXPECT_EQ(tConditional.getMsoStyle(Locale::kUSA, tLanguage), L"");
}

}  // namespace

}  // namespace tov
