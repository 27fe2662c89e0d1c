#pragma once

#include <cstdint>
#include <vector>

#include "datasource.h"
#include "progressbar.h"
#include "reportdefinition.h"
#include "typedvalue.h"
#include "webbedrock/stringbuffer.h"
#include "webformat/valueformatter.h"

namespace tov {

// The rows of a report as formatted text: the columns of a report file bound to the columns of its data, with a
// formatter for each.
//
// A column whose type has no formatter shows its values as they are stored, encoded for the output. Throws InputError
// where the data lacks a column, where a data format does not apply to its column, and for cells that are no value of
// their column's type.
class ReportTable
{
public:
    enum Formatters
    {
        kDisplay,         // as the columns' data formats say
        kMachineReadable  // the fixed patterns of exports, the same in every locale
    };

    struct Options
    {
        ValueFormatterTypes::OutputType eOutput = ValueFormatterTypes::kText;
        Formatters eFormatters = kDisplay;
        bool bImageSizes = false;  // images as "[image 16x8]"
    };

    // Both arguments must outlive the table.
    ReportTable(const ReportDefinition& tReport, DataSource& tData, const Options& tOptions);

    const ReportDefinition& report() const { return m_tReport; }
    std::size_t columnCount() const { return m_vColumns.size(); }

    // Formats the next row, one text a column; false at the end. The memory of the texts is used again.
    bool nextRow(std::vector<String>& vCells);
    // The row that was formatted last: the value of a column, null for a null, and the formatter that showed it, which
    // may be another one in each row. Good until the next row; the handle is null for values shown as they are stored.
    const TypedValue& value(std::size_t nColumn) const { return m_vValues[nColumn]; }
    const WebValueFormatterHandle& formatterOf(std::size_t nColumn) const { return m_vColumns[nColumn].hFormatter; }
    // Starts again at the first row.
    void rewind();
    // Rows read so far.
    std::uint64_t rowCount() const { return m_nRows; }

    // Whether a column's text may be the format of a spreadsheet cell.
    bool hasExcelPattern(std::size_t nColumn) const;
    bool isNumber(std::size_t nColumn) const;
    bool isText(std::size_t nColumn) const;
    bool isBinary(std::size_t nColumn) const;

private:
    struct Column
    {
        const ReportColumn* pColumn = nullptr;
        std::size_t nDataColumn = 0;
        WebValueFormatterHandle hFormatter;  // null: values as they are stored
    };

    Column bind(const ReportColumn& tColumn) const;
    WebValueFormatterHandle makeFormatter(const ReportColumn& tColumn) const;
    TypedValue valueOf(const Column& tColumn, const DataCell& tCell) const;
    void formatCell(const Column& tColumn, const TypedValue& tValue, const DataCell& tCell, String& sResult) const;
    void appendStored(const TypedValue& tValue, const DataCell& tCell,
                      StringBufferBaseTemplate<wchar_t>& tBuffer) const;

    const ReportDefinition& m_tReport;
    DataSource& m_tData;
    Options m_tOptions;
    std::vector<Column> m_vColumns;
    std::vector<TypedValue> m_vValues;
    DataRow m_vRow;
    std::uint64_t m_nRows = 0;
    ProgressBar m_tProgress;
};

// How many rows there are, in the report's language (English where its words are not known) and as its locale writes
// numbers: 3000 -> L"3,000 rows", L"Zeilen: 3.000".
String rowCountText(std::uint64_t nCount, const Locale& tLocale, const KTWUILanguage& tLanguage);

}  // namespace tov
