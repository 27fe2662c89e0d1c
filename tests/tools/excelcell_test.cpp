#include "tools/webformat/excelcell.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "webbedrock/utf8.h"
#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

TEST(ExcelCell, KnowsWhatMayStandInAWorkbook)
{
    constexpr std::pair<const wchar_t*, bool> aRows[] = {
        {L"", true},
        {L"#,##0.00_);[red](#,##0.00)", true},
        {L"[$-F800]dddd, mmmm dd, yyyy", true},
        {L"m/d/yyyy h:mm:ss AM/PM", true},
        {L"[$\u20AC]0", true},
        {L"0\"a;[b\"\\x", true},
        {L"0;0;0;@", false},
        {L"0;0;0;0;0", false},
        {L"0\"a", false},
        {L"0\\", false},
        {L"[$a", false},
        {L"[$$]0[scale-name:million]", false},
        {L"[blue]0", false},
        {L"[$[]0", false},
        {L"0kg", false},
        {L"0\u20AC", false},
    };
    for (const auto& [pPattern, bExpected] : aRows)
        EXPECT_EQ(isWritableExcelPattern(pPattern), bExpected) << toUtf8(pPattern);
    EXPECT_TRUE(isWritableExcelPattern(String(127, L'0')));
    EXPECT_FALSE(isWritableExcelPattern(String(128, L'0')));
    EXPECT_FALSE(isWritableExcelPattern(L"\"" + String(63, L'\u20AC') + L"\""));  // three bytes each
}

TEST(ExcelCell, CountsDaysWhereAllSpreadsheetsCountAlike)
{
    EXPECT_EQ(excelSerial(DateTime(1900, 3, 1)), 61);
    EXPECT_EQ(excelSerial(DateTime(1970, 1, 1)), 25569);
    EXPECT_EQ(excelSerial(DateTime(2024, 3, 5, 12)), 45356.5);
    EXPECT_EQ(excelSerial(DateTime(9999, 12, 31)), 2958465);
    EXPECT_EQ(excelSerial(DateTime(1900, 2, 28)), std::nullopt);
    EXPECT_EQ(excelSerial(DateTime(1, 1, 1)), std::nullopt);
    EXPECT_EQ(excelSerial(DateTime(10000, 1, 1)), std::nullopt);
    EXPECT_EQ(excelTime(DateTime(1970, 1, 1, 18)), 0.75);
    EXPECT_DOUBLE_EQ(excelTime(DateTime(1970, 1, 1, 0, 0, 0, 500'000'000)), 0.5 / 86400);
}

// A column without data: its cells are made of values and formatters.
class Column
{
public:
    explicit Column(SQLDataType::DataType eType, WebValueFormatDefinitionHandle hDefinition = {}, int nDataOffset = -1)
        : m_tReport{Locale::kUSA, KTWUILanguage::kDefaultLanguage, {}, {}, {}}
    {
        if (nDataOffset >= 0)
            m_tReport.tResolver.setMetaDataOffset(nDataOffset);
        m_tReport.vColumns.push_back({});
        m_tReport.vColumns[0].tType = columnType(SQLDataType(eType));
        m_tReport.vColumns[0].hDefinition = hDefinition;
        m_hFormatter = WebValueFormatter::GetFormatter(m_tReport.vColumns[0].tType, hDefinition, m_tReport.tLocale,
                                                       m_tReport.tResolver, ValueFormatterTypes::kText, 0, 0,
                                                       m_tReport.tLanguage, String());
    }

    // "blank", "number pattern" with 16 digits of the number, or "'text".
    std::string cell(const TypedValue& tValue)
    {
        ExcelColumn tColumn(m_tReport, m_tReport.vColumns[0]);
        const String sText = m_hFormatter->formatAsString(tValue.pointer());
        const ExcelCell tCell = tColumn.cellOf(tValue, m_hFormatter, sText);
        if (tCell.eKind == ExcelCell::kText)
            return "'" + toUtf8(tCell.sText);
        if (tCell.eKind == ExcelCell::kBlank)
            return "blank";
        char aNumber[40];
        std::snprintf(aNumber, sizeof aNumber, "%.16g ", tCell.fNumber);
        if (tColumn.isNumber())
        {
            EXPECT_GE(tColumn.widthOf(tCell), std::min<std::size_t>(sText.size(), 17)) << toUtf8(sText);
        }
        return aNumber + toUtf8(tCell.sPattern);
    }

private:
    ReportDefinition m_tReport;
    WebValueFormatterHandle m_hFormatter;
};

WebValueFormatDefinitionHandle custom(const wchar_t* pPattern)
{
    return new WebCustomFormatDefinition(pPattern);
}

TEST(ExcelCell, HoldsNumbersAsTheFormatterHandsThemOver)
{
    struct Row
    {
        int nLine;
        const wchar_t* pPattern;
        double fValue;
        const char* pCell;
    };
    const double fNaN = std::numeric_limits<double>::quiet_NaN();
    const Row aRows[] = {
        {__LINE__, L"#,##0.00", 1234.5, "1234.5 #,##0.00"},
        {__LINE__, L"0.0%", 12.5, "0.125 0.0%"},
        {__LINE__, L"0,\"K\"", 1234.5, "1234.5 0,\"K\""},
        {__LINE__, L"0[scale-name:million]", 2000000, "2 0\"M\""},
        {__LINE__, L"0.0[scale-name:auto]", 1234.5, "1234.5 "},  // no pattern says the same
        {__LINE__, L"[MMM]", 3, "'Mar"},                         // not valid for a cell
        {__LINE__, L"0", fNaN, "'NAN"},
        {__LINE__, L"0", HUGE_VAL, "'INF"},
        {__LINE__, L"0", -HUGE_VAL, "blank"},  // the formatter shows nothing either
        {__LINE__, L"0", 5e-324, "'0"},        // below what a cell holds
        {__LINE__, L"0", 1e20, "1e+20 0"},
    };
    for (const Row& tRow : aRows)
        EXPECT_EQ(Column(SQLDataType::kDouble, custom(tRow.pPattern)).cell(TypedValue(tRow.fValue)), tRow.pCell)
            << "row at line " << tRow.nLine;
}

TEST(ExcelCell, IsBlankForANullUnlessATextStandsForIt)
{
    EXPECT_EQ(Column(SQLDataType::kDouble).cell(TypedValue()), "blank");
    EXPECT_EQ(Column(SQLDataType::kDouble, custom(L"0;-0;\"n/a\"")).cell(TypedValue()), "'n/a");
    EXPECT_EQ(Column(SQLDataType::kDate).cell(TypedValue()), "blank");
    EXPECT_EQ(Column(SQLDataType::kVarChar).cell(TypedValue()), "blank");
    EXPECT_EQ(Column(SQLDataType::kVarChar).cell(TypedValue(String())), "blank");
    EXPECT_EQ(Column(SQLDataType::kVarChar).cell(TypedValue(String(L"=1"))), "'=1");
}

TEST(ExcelCell, KeepsTheDigitsOfWhatMayBeAnIdentifier)
{
    const TypedValue tLong(*CorvidNumber::fromString(L"9007199254740993"));
    const TypedValue tFifteen(*CorvidNumber::fromString(L"123456789012345000"));
    EXPECT_EQ(Column(SQLDataType::kBigInt).cell(tLong), "'9007199254740993");
    EXPECT_EQ(Column(SQLDataType::kBigInt).cell(tFifteen), "1.23456789012345e+17 ");
    // Under a format it is an amount.
    EXPECT_EQ(Column(SQLDataType::kBigInt, custom(L"0")).cell(tLong), "9007199254740990 0");
}

TEST(ExcelCell, HoldsTheMomentThatIsShown)
{
    const TypedValue tMoment(DateTime(2024, 7, 1, 18, 0, 0, 750'000'000));
    EXPECT_EQ(Column(SQLDataType::kTimeStamp).cell(tMoment), "45474.75000868055 yyyy-mm-dd hh:mm:ss.000");
    // A fraction that does not show is not there: spreadsheets would round to the next second.
    EXPECT_EQ(Column(SQLDataType::kTimeStamp, custom(L"HH:mm:ss")).cell(tMoment), "45474.75 hh:mm:ss");
    EXPECT_EQ(Column(SQLDataType::kTimeStamp, custom(L"yyyy-MM-dd HH:mm[TZ:Asia/Tokyo]"), 0).cell(tMoment),
              "45475.125 yyyy-mm-dd hh:mm");
    const TypedValue tSix(DateTime(1970, 1, 1, 18));
    EXPECT_EQ(Column(SQLDataType::kTime).cell(tSix), "0.75 hh:mm:ss");
    EXPECT_EQ(Column(SQLDataType::kTime, custom(L"yyyy HH:mm")).cell(tSix), "25569.75 yyyy hh:mm");
    const TypedValue tEarly(DateTime(1900, 2, 28, 1, 2, 3));
    EXPECT_EQ(Column(SQLDataType::kTimeStamp, custom(L"d MMM yyyy")).cell(tEarly), "'1900-02-28 01:02:03");
    EXPECT_EQ(Column(SQLDataType::kDate).cell(TypedValue(DateTime(1, 1, 1))), "'0001-01-01");
}

TEST(ExcelCell, CompletesTheHalfOfTheDayOfAPredefinedFormat)
{
    EXPECT_EQ(Column(SQLDataType::kTimeStamp, new WebDateFormatDefinition(WebDateFormatDefinition::kShortTimeStamp))
                  .cell(TypedValue(DateTime(2024, 3, 5, 12))),
              "45356.5 m/d/yyyy h:mm:ss AM/PM");
}

TEST(ExcelCell, TakesTheFormattersOwnPatternWhereTheDefinitionsSaysLess)
{
    const Handle<WebNumberFormatDefinition, WebNumberFormatDefinition> hNumber(
        new WebNumberFormatDefinition(WebNumberFormatDefinition::kMinus, true, 0, 1));
    hNumber->setScaleFactor(L"million");
    EXPECT_EQ(Column(SQLDataType::kDouble, WebValueFormatDefinitionHandle(&*hNumber)).cell(TypedValue(2500000.0)),
              "2.5 #,##0.#\"M\";-#,##0.#\"M\"");
}

}  // namespace

}  // namespace tov
