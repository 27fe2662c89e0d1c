#pragma once

#include <map>
#include <optional>
#include <string_view>

#include "corefacade/datetime.h"
#include "reportdefinition.h"
#include "typedvalue.h"
#include "webformat/valueformatter.h"

namespace tov {

// What one cell of a workbook holds: nothing, a number under a number format, or a text.
struct ExcelCell
{
    enum Kind
    {
        kBlank,
        kNumber,  // dates, too: they are serial numbers
        kText
    };

    Kind eKind = kBlank;
    double fNumber = 0;
    std::wstring_view sPattern = {};  // the number format of kNumber; empty: General
    std::wstring_view sText = {};     // of kText
};

// Makes the cells of one column of a report.
//
// Example: an amount of -1234.5 under the definition of two grouped decimals in parentheses is the number -1234.5 with
// the number format "#,##0.00_);(#,##0.00)".
//
// Numbers hold the formatter's Excel value, dates the civil time that the formatter shows; docs/excel.md says which
// values are text. Both must outlive the column. One thread.
class ExcelColumn
{
public:
    ExcelColumn(const ReportDefinition& tReport, const ReportColumn& tColumn);

    // The cell of a value that `hFormatter` shows as `sText`. Its texts are good until the next call, or as long as
    // `sText`. A null is blank, or the text that stands for it.
    ExcelCell cellOf(const TypedValue& tValue, const WebValueFormatterHandle& hFormatter, const String& sText);

    // The columns of the display that the cell takes, or more.
    std::size_t widthOf(const ExcelCell& tCell) const;

    bool isNumber() const { return m_eCategory == SQLDataType::kCatNumber; }
    bool isCalendar() const { return m_eCategory == SQLDataType::kCatCalendar; }

private:
    struct Pattern
    {
        WebValueFormatterHandle hFormatter;
        std::optional<String> tPattern;  // no value: the cells are text
    };

    const std::optional<String>& patternOf(const WebValueFormatterHandle& hFormatter);
    std::optional<String> findPattern(const WebValueFormatter& tFormatter) const;
    String excelPatternOf(const WebValueFormatDefinition& tDefinition) const;
    ExcelCell numberCell(const TypedValue& tValue, const WebValueFormatter& tFormatter, const String& sPattern);
    bool losesDigits(const TypedValue& tValue, std::wstring_view sCell) const;
    ExcelCell calendarCell(const TypedValue& tValue, const WebValueFormatter& tFormatter, const String& sPattern);
    const String& isoPattern(const DateTime& tValue) const;

    const ReportDefinition& m_tReport;
    const ReportColumn& m_tColumn;
    SQLDataType::Category m_eCategory;
    std::map<const WebValueFormatter*, Pattern> m_vPatterns;
    WebValueFormatterHandle m_hIso;  // dates that no serial number stands for
    String m_sText;
};

// Whether a pattern may stand in a workbook: quotes and brackets are closed, brackets hold a currency, a language or
// the colour red, letters outside of quotes are those of dates, there are at most three ";", and it has at most 127
// bytes in UTF-8.
bool isWritableExcelPattern(std::wstring_view sPattern);

// The serial number of a moment: whole days since 1899-12-30 and the time as a fraction of a day. No value before
// 1900-03-01, from where on all spreadsheets count alike, and after 9999.
//
// Example: 2024-03-05 12:00:00 -> 45356.5
std::optional<double> excelSerial(const DateTime& tValue);

// The time alone, as a fraction of a day: 12:00:00 -> 0.5
double excelTime(const DateTime& tValue);

}  // namespace tov
