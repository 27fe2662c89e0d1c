#include <gtest/gtest.h>

#include "definitiontesting.h"
#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "support/collected.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

namespace {

using Custom = WebCustomFormatDefinition;

TEST(CustomFormatDefinition, IsEmptyUnlessTold)
{
    const Definition hRead = definitionOf("xsi:type='tov:custom'/>");
    ASSERT_NE(as<Custom>(hRead), nullptr);
    EXPECT_EQ(as<Custom>(hRead)->GetCustomFormat(), L"");
    EXPECT_EQ(attributesOf(hRead), L"customFormat=");
}

struct ReadRow
{
    int nLine;
    const char* pAttributes;
    const wchar_t* pPattern;
};

constexpr ReadRow kReadRows[] = {
    {__LINE__, "customFormat='#,##0'", L"#,##0"},
    {__LINE__, "customFormat='yyyy' displayTimeZone='EST'", L"yyyy[TZ:EST]"},
    {__LINE__, "customFormat='yyyy' displayTimeZone=''", L"yyyy"},
    {__LINE__, "displayTimeZone='EST'", L"[TZ:EST]"},
    {__LINE__, "customFormat='yyyy' displayTimeZone=' EST '", L"yyyy[TZ: EST ]"},
    {__LINE__, "customFormat='y[TZ:A]' displayTimeZone='B'", L"y[TZ:A][TZ:B]"},
};

TEST(CustomFormatDefinition, ReadsTheTimeZoneAsAMarkerBehindThePattern)
{
    for (const ReadRow& tRow : kReadRows)
    {
        const Definition hRead = definitionOf(std::string("xsi:type='tov:custom' ") + tRow.pAttributes + "/>");
        ASSERT_NE(as<Custom>(hRead), nullptr) << "row at line " << tRow.nLine;
        EXPECT_EQ(as<Custom>(hRead)->GetCustomFormat(), tRow.pPattern) << "row at line " << tRow.nLine;
    }
}

struct WriteRow
{
    int nLine;
    const wchar_t* pPattern;
    const wchar_t* pAttributes;
};

constexpr WriteRow kWriteRows[] = {
    {__LINE__, L"#,##0", L"customFormat=#,##0"},
    {__LINE__, L"yyyy[TZ:EST]", L"customFormat=yyyy displayTimeZone=EST"},
    {__LINE__, L"[TZ: EST ]", L"customFormat= displayTimeZone=EST"},
    {__LINE__, L"yyyy[TZ:]", L"customFormat=yyyy displayTimeZone="},
    {__LINE__, L"yyyy[TZ:EST]MM", L"customFormat=yyyy displayTimeZone=EST"},  // kept: the rest is dropped
    {__LINE__, L"yyyy[TZ:EST", L"customFormat=yyyy"},                         // kept: so is an open marker
    {__LINE__, L"y[TZ:A][TZ:B]", L"customFormat=y displayTimeZone=A"},        // the first one counts
    {__LINE__, L"]y[TZ:A]", L"customFormat=]y displayTimeZone=A"},
    {__LINE__, L"y[tz:A]", L"customFormat=y[tz:A]"},  // case counts
};

TEST(CustomFormatDefinition, WritesTheTimeZoneMarkerAsAnAttribute)
{
    for (const WriteRow& tRow : kWriteRows)
        EXPECT_EQ(attributesOf(new Custom(tRow.pPattern)), tRow.pAttributes) << "row at line " << tRow.nLine;
}

TEST(CustomFormatDefinition, RoundTripsItsTimeZone)
{
    const Definition hRead = definitionOf("xsi:type='tov:custom' customFormat='yyyy' displayTimeZone='EST'/>");
    EXPECT_EQ(attributesOf(hRead), L"customFormat=yyyy displayTimeZone=EST");
    EXPECT_EQ(WebValueFormatDefinition::CompareDefinitions(hRead, throughXml(hRead)), 0);
}

TEST(CustomFormatDefinition, LeavesNoOlderTimeZoneInAnElementThatItWritesOver)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    WebValueFormatDefinition::setDataFormatElement(tColumn, Definition(new Custom(L"yyyy[TZ:EST]")));
    const XmlElement& tElement = WebValueFormatDefinition::setDataFormatElement(tColumn, Definition(new Custom(L"MM")));
    EXPECT_FALSE(tElement.hasAttribute(L"displayTimeZone"));
}

TEST(CustomFormatDefinition, KeepsTheFirstValueOfAParameter)
{
    Custom tCustom(L"0");
    EXPECT_EQ(tCustom.getParameterByName(L"scaleFactor"), L"");
    tCustom.setParameter(L"scaleFactor", L"million");
    tCustom.setParameter(L"scaleFactor", L"thousand");
    tCustom.setParameter(L"other", L"");
    tCustom.setParameter(L"other", L"x");  // an empty value is a value
    EXPECT_EQ(tCustom.getParameterByName(L"scaleFactor"), L"million");
    EXPECT_EQ(tCustom.getParameterByName(L"other"), L"");
    EXPECT_EQ(tCustom.getParameterByName(L"ScaleFactor"), L"");
}

TEST(CustomFormatDefinition, ClonesItsPatternAndParameters)
{
    const Handle<Custom, Custom> hCustom(new Custom(L"0[TZ:EST]"));
    hCustom->setParameter(L"scaleFactor", L"million");
    const Definition hClone = hCustom->clone();
    Custom* const pClone = dynamic_cast<Custom*>(hClone.getPointer());
    ASSERT_NE(pClone, nullptr);
    pClone->setParameter(L"scaleFactor", L"thousand");
    EXPECT_EQ(pClone->GetCustomFormat(), L"0[TZ:EST]");
    EXPECT_EQ(pClone->getParameterByName(L"scaleFactor"), L"million");
    pClone->setParameter(L"late", L"x");
    EXPECT_EQ(hCustom->getParameterByName(L"late"), L"");
}

TEST(CustomFormatDefinition, ListsItsAttributesAndParameters)
{
    const Handle<Custom, Custom> hCustom(new Custom(L"0[TZ:EST]"));
    hCustom->setParameter(L"scaleFactor", L"million");
    hCustom->setParameter(L"a", L"b");
    EXPECT_EQ(settingsOf(hCustom), L"customFormat='0' displayTimeZone='EST' a='b' scaleFactor='million'");
    EXPECT_EQ(settingsOf(new Custom(L"0")), L"customFormat='0' displayTimeZone=''");
}

TEST(CustomFormatDefinition, IsOrderedByItsPatternAlone)
{
    Custom tOne(L"0");
    tOne.setParameter(L"scaleFactor", L"million");
    EXPECT_EQ(tOne.CompareLikeDefinition(Custom(L"0")), 0);
    EXPECT_EQ(Custom(L"A").CompareLikeDefinition(Custom(L"a")), -1);
    EXPECT_EQ(Custom(L"a").CompareLikeDefinition(Custom(L"A")), 1);
    EXPECT_EQ(Custom(L"a").CompareLikeDefinition(Custom(L"aa")), -1);
    EXPECT_EQ(Custom(L"é").CompareLikeDefinition(Custom(L"😀")), -1);
}

TEST(CustomFormatDefinition, StreamsItsWholePattern)
{
    EXPECT_EQ(bytesOf(new Custom(L"0é[TZ:A]")), "06 00 00 00 63 75 73 74 6F 6D 09 00 00 00 30 C3 A9 5B 54 5A 3A 41 5D");
    EXPECT_EQ(bytesOf(new Custom), "06 00 00 00 63 75 73 74 6F 6D 00 00 00 00");
}

struct FormulaRow
{
    int nLine;
    const wchar_t* pPattern;
    bool bConditional;
    const wchar_t* pFormula;  // "before" where it is left alone
};

constexpr FormulaRow kFormulaRows[] = {
    {__LINE__, L"[$:currencyTagColumn='Sales.Currency']", true, L"Sales.Currency"},
    {__LINE__, L"[$:currencyTagColumn=X]", true, L"X"},
    {__LINE__, L"[$:currencyTagColumn='X]", true, L"'X"},
    {__LINE__, L"[$:currencyTagColumn=X']", true, L"X'"},
    {__LINE__, L"[$:currencyTagColumn='']", true, L""},
    {__LINE__, L"[$:currencyTagColumn=']", true, L"'"},  // one apostrophe is no pair
    {__LINE__, L"[$:currencyTagColumn=]", true, L""},
    {__LINE__, L"[$:currencyTagColumn=", true, L""},
    {__LINE__, L"[$:currencyTagColumn=''X'']", true, L"'X'"},
    {__LINE__, L"[$:currencyTagColumn=X]0", true, L"X]"},  // kept: the last character goes, whatever it is
    {__LINE__, L"[$:CurrencyTagColumn=X]", false, L"before"},
    {__LINE__, L" [$:currencyTagColumn=X]", false, L"before"},
    {__LINE__, L"[$:currencyTagColumn", false, L"before"},
    {__LINE__, L"#,##0", false, L"before"},
    {__LINE__, L"", false, L"before"},
};

TEST(CustomFormatDefinition, TakesTheFormulaOutOfAConditionalCurrencyPattern)
{
    for (const FormulaRow& tRow : kFormulaRows)
    {
        const Custom tCustom(tRow.pPattern);
        EXPECT_EQ(tCustom.isConditionalCurrencyFormat(), tRow.bConditional) << "row at line " << tRow.nLine;
        String sFormula = L"before";
        tCustom.checkAndpopulateCurrencyTagColumnFormula(sFormula);
        EXPECT_EQ(sFormula, tRow.pFormula) << "row at line " << tRow.nLine;
        sFormula = L"before";
        tCustom.populateCurrencyTagColumnFormulaIfApplies(sFormula);
        EXPECT_EQ(sFormula, tRow.pFormula) << "row at line " << tRow.nLine;
    }
}

struct StyleRow
{
    int nLine;
    const wchar_t* pPattern;
    const wchar_t* pNormal;
    const wchar_t* pExcel;
    const wchar_t* pStyle;
};

constexpr StyleRow kStyleRows[] = {
    {__LINE__, L"#,##0.00", L"#,##0.00", L"#,##0.00", L"mso-number-format:'#,##0.00';"},
    {__LINE__, L"0 kg", L"0&quot; kg&quot;", L"0\" kg\"", L"mso-number-format:'0&quot; kg&quot;';"},
    {__LINE__, L"0\"'<&>\"", L"0&quot;\\&#39;&lt;&amp;&gt;&quot;", L"0\"'<&>\"",
     L"mso-number-format:'0&quot;\\&#39;&lt;&amp;&gt;&quot;';"},
    {__LINE__, L"0\\\"", L"0\\\\&quot;", L"0\\\"", L"mso-number-format:'0\\\\&quot;';"},
    {__LINE__, L"[duration]", L"", L"", L""},
    {__LINE__, L"yyyy-MM-dd[TZ:EST]", L"yyyy-mm-dd", L"yyyy-mm-dd", L"mso-number-format:'yyyy-mm-dd';"},
    {__LINE__, L"d \"o'clock\"", L"d&quot; o\\&#39;clock&quot;", L"d\" o'clock\"",
     L"mso-number-format:'d&quot; o\\&#39;clock&quot;';"},
    {__LINE__, L"[L:de-DE]dddd", L"", L"", L""},
    {__LINE__, L"[$:currencyTagColumn=X]", L"", L"", L""},
    {__LINE__, L"", L"", L"", L""},
};

TEST(CustomFormatDefinition, CarriesItsExcelPatternInAStyle)
{
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    for (const StyleRow& tRow : kStyleRows)
    {
        const Custom tCustom(tRow.pPattern);
        EXPECT_EQ(tCustom.getFormatPattern(Locale::kUSA, tLanguage, Custom::kFormatPatternNormal), tRow.pNormal)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(tCustom.getFormatPattern(Locale::kUSA, tLanguage, Custom::kFormatPatternExcel), tRow.pExcel)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(tCustom.getMsoStyle(Locale::kUSA, tLanguage), tRow.pStyle) << "row at line " << tRow.nLine;
    }
}

}  // namespace

}  // namespace tov
