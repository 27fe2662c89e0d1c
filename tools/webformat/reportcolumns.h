#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "datasource.h"
#include "reportdefinition.h"
#include "webformat/valueformatter.h"

namespace tov {

// The columns of a report file bound to the columns of its data, with a formatter for each. Immutable; any thread.
class ReportColumns
{
public:
    enum Formatters
    {
        kDisplay,         // as the columns' data formats say
        kMachineReadable  // the fixed patterns of exports, the same in every locale
    };

    struct Column
    {
        const ReportColumn* pColumn = nullptr;
        std::size_t nDataColumn = 0;
        // The column of the data that holds each row's currency tag, where the format is a currency by row.
        std::optional<std::size_t> nTagColumn;
        // Of all rows, or of those without a currency. Never null.
        WebValueFormatterHandle hFormatter;
    };

    // The report must outlive this. Throws InputError where the data lacks a column or a data format does not apply to
    // its column.
    ReportColumns(const ReportDefinition& tReport, const DataSource& tData, ValueFormatterTypes::OutputType eOutput,
                  Formatters eFormatters);

    const ReportDefinition& report() const { return m_tReport; }
    std::size_t count() const { return m_vColumns.size(); }
    const Column& operator[](std::size_t nColumn) const { return m_vColumns[nColumn]; }

    // A formatter of the column for rows with that currency tag. Unknown tags are logged by the library.
    WebValueFormatterHandle formatterOfTag(std::size_t nColumn, const String& sTag) const;

    bool isNumber(std::size_t nColumn) const;
    bool isText(std::size_t nColumn) const;
    bool isBinary(std::size_t nColumn) const;
    // Whether a column's text may be the format of a spreadsheet cell.
    bool hasExcelPattern(std::size_t nColumn) const;

private:
    Column bind(const ReportColumn& tColumn, const DataSource& tData) const;
    WebValueFormatterHandle makeFormatter(const ReportColumn& tColumn) const;
    WebValueFormatterHandle displayFormatter(const ReportColumn& tColumn, const Locale& tLocale) const;

    const ReportDefinition& m_tReport;
    ValueFormatterTypes::OutputType m_eOutput;
    Formatters m_eFormatters;
    std::vector<Column> m_vColumns;
};

}  // namespace tov
