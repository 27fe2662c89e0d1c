#include <gtest/gtest.h>

#include "definitiontesting.h"
#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "support/collected.h"
#include "webformat/dateformatters.h"

namespace tov {

namespace {

using Date = WebDateFormatDefinition;

struct TypeRow
{
    int nLine;
    int nValue;
    const wchar_t* pName;
    const wchar_t* pExcel;
};

constexpr TypeRow kTypeRows[] = {
    {__LINE__, 0, L"dateShort", L"m/d/yyyy"},
    {__LINE__, 1, L"dateLong", L"[$-F800]dddd, mmmm dd, yyyy"},
    {__LINE__, 2, L"dateInput", L""},
    {__LINE__, 3, L"time", L""},
    {__LINE__, 4, L"timeHourMin", L""},
    {__LINE__, 5, L"timeInput", L""},
    {__LINE__, 6, L"timeInputHourMin", L""},
    {__LINE__, 7, L"timeStampShort", L"m/d/yyyy h:mm:ss AM"},
    {__LINE__, 8, L"timeStampLong", L"dddd, mmmm dd, yyyy h:mm:ss AM"},
    {__LINE__, 9, L"timeStampInput", L""},
    {__LINE__, 10, L"dateODBC", L"yyyy-m-d"},
    {__LINE__, 11, L"timeODBC", L"hh:mm:ss"},
    {__LINE__, 12, L"timeStampODBC", L"yyyy-mm-dd hh:mm:ss"},
    {__LINE__, 13, L"dateTyped", L""},
    {__LINE__, 14, L"timeTyped", L""},
    {__LINE__, 15, L"timeStampTyped", L""},
    {__LINE__, 16, L"timeHour", L""},
    {__LINE__, 17, L"dateYearMonth", L""},
    {__LINE__, 18, L"timeWFracSecs", L""},
    {__LINE__, 19, L"timeStampShortWFracSecs", L""},
    {__LINE__, 20, L"predefinedFormat", L""},
};

TEST(DateFormatDefinition, ReadsAndWritesTheNamesOfItsTypes)
{
    for (const TypeRow& tRow : kTypeRows)
    {
        EXPECT_EQ(Date::GetTypeFromString(tRow.pName, Date::kDateTypeEnd_), tRow.nValue)
            << "row at line " << tRow.nLine;
        const Definition hRead = definitionOf("xsi:type='tov:date' biFormat='" + toUtf8(tRow.pName) + "'/>");
        ASSERT_NE(as<Date>(hRead), nullptr);
        EXPECT_EQ(as<Date>(hRead)->GetFormatType(), tRow.nValue) << "row at line " << tRow.nLine;
        EXPECT_EQ(attributesOf(hRead), String(L"biFormat=") + tRow.pName) << "row at line " << tRow.nLine;
    }
}

struct OlderRow
{
    int nLine;
    const wchar_t* pOlder;
    const wchar_t* pCurrent;
};

constexpr OlderRow kOlderRows[] = {
    {__LINE__, L"ShortDate", L"dateShort"},         {__LINE__, L"date", L"dateShort"},
    {__LINE__, L"LongDate", L"dateLong"},           {__LINE__, L"ShortDateTime", L"timeStampShort"},
    {__LINE__, L"timeStamp", L"timeStampShort"},    {__LINE__, L"LongDateTime", L"timeStampLong"},
    {__LINE__, L"ODBCDate", L"dateODBC"},           {__LINE__, L"ODBCTime", L"timeODBC"},
    {__LINE__, L"ODBCTimeStamp", L"timeStampODBC"}, {__LINE__, L"predefined", L"predefinedFormat"},
};

TEST(DateFormatDefinition, ReadsOlderNamesAndWritesCurrentOnes)
{
    for (const OlderRow& tRow : kOlderRows)
    {
        const Definition hRead = definitionOf("xsi:type='tov:date' biFormat='" + toUtf8(tRow.pOlder) + "'/>");
        EXPECT_EQ(attributesOf(hRead), String(L"biFormat=") + tRow.pCurrent) << "row at line " << tRow.nLine;
    }
}

TEST(DateFormatDefinition, ReadsAnUnknownNameAsAShortDate)
{
    for (const wchar_t* pName : {L"nonsense", L"DateShort", L"shortdate", L" date", L"zzz"})
    {
        EXPECT_EQ(Date::GetTypeFromString(pName, Date::kTimeHour), Date::kTimeHour) << toUtf8(pName);
        const Definition hRead = definitionOf("xsi:type='tov:date' biFormat='" + toUtf8(pName) + "'/>");
        ASSERT_NE(as<Date>(hRead), nullptr);
        EXPECT_EQ(as<Date>(hRead)->GetFormatType(), Date::kShortDate) << toUtf8(pName);
    }
    EXPECT_EQ(Date::GetTypeFromString(L"", Date::kTimeHour), Date::kTimeHour);
}

TEST(DateFormatDefinition, NamesAnUnknownTypeAShortDateWhateverTheDefinitionIsCalled)
{
    const Definition hRead = definitionOf("xsi:type='tov:time' biFormat='nonsense'/>");
    ASSERT_NE(as<Date>(hRead), nullptr);
    EXPECT_EQ(as<Date>(hRead)->GetFormatType(), Date::kShortDate);
}

TEST(DateFormatDefinition, TakesAPatternOfItsOwnWhereNoTypeIsNamed)
{
    const Definition hRead = definitionOf("xsi:type='tov:date' predefinedFormat='dd.MM.yyyy' displayTimeZone='EST'/>");
    ASSERT_NE(as<Date>(hRead), nullptr);
    EXPECT_EQ(as<Date>(hRead)->GetFormatType(), Date::kPredefinedDate);
    EXPECT_EQ(as<Date>(hRead)->getPredefinedFormat(), L"dd.MM.yyyy");
    EXPECT_EQ(as<Date>(hRead)->getDisplayTimeZone(), L"EST");
    EXPECT_EQ(attributesOf(hRead), L"biFormat=predefinedFormat displayTimeZone=EST predefinedFormat=dd.MM.yyyy");
}

// Kept: what is written for a pattern of its own names a type too, and a named type hides the pattern from the reader.
TEST(DateFormatDefinition, LosesItsPatternOnTheWayThroughXml)
{
    const Definition hAgain = throughXml(new Date(Date::kPredefinedDate, L"EST", L"dd.MM.yyyy"));
    ASSERT_NE(as<Date>(hAgain), nullptr);
    EXPECT_EQ(as<Date>(hAgain)->GetFormatType(), Date::kPredefinedDate);
    EXPECT_EQ(as<Date>(hAgain)->getPredefinedFormat(), L"");
    EXPECT_EQ(as<Date>(hAgain)->getDisplayTimeZone(), L"EST");
}

TEST(DateFormatDefinition, DoesNotReadAPatternBesideAType)
{
    const Definition hRead = definitionOf("xsi:type='tov:date' biFormat='dateLong' predefinedFormat='yyyy'/>");
    ASSERT_NE(as<Date>(hRead), nullptr);
    EXPECT_EQ(as<Date>(hRead)->GetFormatType(), Date::kLongDate);
    EXPECT_EQ(as<Date>(hRead)->getPredefinedFormat(), L"");
}

TEST(DateFormatDefinition, SaysThatBothTypeAndPatternAreMissing)
{
    for (const char* pType : {"date", "datetime", "time"})
    {
        const CollectedAssertions tAssertions;
        const Definition hRead = definitionOf("xsi:type='tov:" + std::string(pType) + "' predefinedFormat=''/>");
        ASSERT_NE(as<Date>(hRead), nullptr) << pType;
        EXPECT_EQ(as<Date>(hRead)->GetFormatType(), Date::kPredefinedDate) << pType;
        ASSERT_EQ(tAssertions.count(), 1u) << pType;
        EXPECT_EQ(tAssertions.all()[0].sExpression, "!sPredefinedFormat.empty()");
        EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/dateformatters");
    }
}

TEST(DateFormatDefinition, SaysThatATypeHasNoName)
{
    const CollectedAssertions tAssertions;
    EXPECT_EQ(attributesOf(new Date(Date::kDateTypeEnd_, L"EST", L"")), L"displayTimeZone=EST");
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "!(i == m_mEnumKeyedMap.end())");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/dateformatters");
}

TEST(DateFormatDefinition, LeavesNoOlderTextsInAnElementThatItWritesOver)
{
    XmlElement tColumn(schemas::Report::kqnColumn);
    WebValueFormatDefinition::setDataFormatElement(tColumn,
                                                   Definition(new Date(Date::kPredefinedDate, L"EST", L"yyyy")));
    const XmlElement& tElement =
        WebValueFormatDefinition::setDataFormatElement(tColumn, Definition(new Date(Date::kLongDate)));
    EXPECT_FALSE(tElement.hasAttribute(L"displayTimeZone"));
    EXPECT_FALSE(tElement.hasAttribute(L"predefinedFormat"));
}

// Kept: zone and pattern take no part.
TEST(DateFormatDefinition, IsOrderedByItsTypeAlone)
{
    EXPECT_EQ(Date(Date::kPredefinedDate, L"A", L"yyyy").CompareLikeDefinition(Date(Date::kPredefinedDate, L"B", L"M")),
              0);
    EXPECT_EQ(Date(Date::kShortDate).CompareLikeDefinition(Date(Date::kLongDate)), -1);
    EXPECT_EQ(Date(Date::kLongDate).CompareLikeDefinition(Date(Date::kShortDate)), 1);
}

TEST(DateFormatDefinition, ClonesAllItsFields)
{
    const Definition hClone = Date(Date::kPredefinedDate, L"EST", L"yyyy").clone();
    EXPECT_EQ(settingsOf(hClone), L"biFormat='predefinedFormat' displayTimeZone='EST' predefinedFormat='yyyy'");
    EXPECT_EQ(settingsOf(new Date(Date::kTime)), L"biFormat='time' displayTimeZone='' predefinedFormat=''");
}

TEST(DateFormatDefinition, StreamsItsTypeAsOneByte)
{
    EXPECT_EQ(bytesOf(new Date(Date::kPredefinedDate, L"EST", L"yyyy")), "04 00 00 00 64 61 74 65 14");
    // The type name of timestamps and times is that of dates.
    EXPECT_EQ(bytesOf(definitionOf("xsi:type='tov:time' biFormat='time'/>")), "04 00 00 00 64 61 74 65 03");
}

TEST(DateFormatDefinition, HasAnExcelPatternForTheExportOnly)
{
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    for (const TypeRow& tRow : kTypeRows)
    {
        const Date tDate(static_cast<Date::Type>(tRow.nValue));
        EXPECT_EQ(tDate.getFormatPattern(Locale::kUSA, tLanguage, Date::kFormatPatternExcel), tRow.pExcel)
            << "row at line " << tRow.nLine;
        EXPECT_EQ(tDate.getFormatPattern(Locale::kUSA, tLanguage, Date::kFormatPatternNormal), L"");
        EXPECT_EQ(tDate.getMsoStyle(Locale::kUSA, tLanguage), L"mso-format-number:date");
    }
}

}  // namespace

}  // namespace tov
