#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "datasource.h"
#include "progressbar.h"
#include "reportcolumns.h"
#include "rowformatter.h"
#include "typedvalue.h"
#include "unknowntags.h"

namespace tov {

// The rows of a report as formatted text, one after the other on one thread: for outputs that are written in one piece.
//
// Throws InputError where the data lacks a column, where a data format does not apply to its column, and for cells that
// are no value of their column's type. Unknown currency tags are shown without a currency, with a warning on standard
// error for each.
class ReportTable
{
public:
    struct Options
    {
        ValueFormatterTypes::OutputType eOutput = ValueFormatterTypes::kText;
        bool bImageSizes = false;  // images as "[image 16x8]"
    };

    // Both arguments must outlive the table.
    ReportTable(const ReportDefinition& tReport, DataSource& tData, const Options& tOptions);

    const ReportDefinition& report() const { return m_tColumns.report(); }
    const ReportColumns& columns() const { return m_tColumns; }
    std::size_t columnCount() const { return m_tColumns.count(); }

    // Goes to the next row; false at the end.
    bool nextRow();
    // The same, and formats it, one text a column. The memory of the texts is used again.
    bool nextRow(std::vector<String>& vCells);
    // Of the row: the value of a column, null for a null, and the formatter that shows it, which may be another one in
    // each row. Good until the next row.
    const TypedValue& value(std::size_t nColumn) const { return m_tRow.value(nColumn); }
    const WebValueFormatterHandle& formatterOf(std::size_t nColumn) const { return m_tRow.formatter(nColumn); }
    // Where the row stands, as messages begin.
    std::string place() const { return m_tData.placeOf(m_tChunk, m_nNext - 1, 0); }
    // Starts again at the first row.
    void rewind();
    // Rows read so far.
    std::uint64_t rowCount() const { return m_nRows; }

    bool isNumber(std::size_t nColumn) const { return m_tColumns.isNumber(nColumn); }
    bool isText(std::size_t nColumn) const { return m_tColumns.isText(nColumn); }
    bool isBinary(std::size_t nColumn) const { return m_tColumns.isBinary(nColumn); }

private:
    bool nextChunk();

    DataSource& m_tData;
    ReportColumns m_tColumns;
    RowFormatter m_tRow;
    DataChunk m_tChunk;
    std::size_t m_nNext = 0;  // row of the chunk
    std::uint64_t m_nRows = 0;
    std::vector<UnknownTag> m_vUnknownTags;
    UnknownTagWarnings m_tWarnings;
    ProgressBar m_tProgress;
};

// How many rows there are, in the report's language (English where its words are not known) and as its locale writes
// numbers: 3000 -> L"3,000 rows", L"Zeilen: 3.000".
String rowCountText(std::uint64_t nCount, const Locale& tLocale, const KTWUILanguage& tLanguage);

}  // namespace tov
