#pragma once

#include <optional>
#include <string_view>

#include "datasource.h"
#include "outputfile.h"
#include "reportdefinition.h"

namespace tov {

// What becomes of a text cell of a CSV report that a spreadsheet would run as a formula.
enum class CsvFormulas
{
    kKeep,
    kEscape  // an apostrophe in front makes it text
};

// Each writes the whole report, or throws InputError for data that is wrong; then the output is not complete. Those
// that take a number of threads write the same bytes with any number.

// A page with one table: opens on a phone and on a desktop, in light and dark, and in a spreadsheet with typed cells.
void writeHtmlReport(const ReportDefinition& tReport, DataSource& tData, unsigned nThreads, OutputFile& tOutput);

// An aligned table for a fixed-width display, in two passes over the data. Line ends and other controls in cells become
// blanks.
void writeTextReport(const ReportDefinition& tReport, DataSource& tData, unsigned nThreads, OutputFile& tOutput);

// Comma-separated values (RFC 4180, CRLF, no byte order mark) with the names of the columns in the first line.
void writeCsvReport(const ReportDefinition& tReport, DataSource& tData, CsvFormulas eFormulas, unsigned nThreads,
                    OutputFile& tOutput);

// An XSL-FO document (docs/paper.md) that a formatter turns into a PDF: one table with a heading on every page, in two
// passes over the data, on landscape pages as large as the columns need.
void writeFoReport(const ReportDefinition& tReport, DataSource& tData, OutputFile& tOutput);

// A workbook (Office Open XML) of one worksheet: numbers and dates as such under the columns' Excel patterns,
// everything else as text (docs/excel.md). The same report and data give the same bytes; memory does not grow with the
// rows. More columns or rows than a worksheet has are an InputError.
void writeXlsxReport(const ReportDefinition& tReport, DataSource& tData, OutputFile& tOutput);

// The text with an apostrophe in front where a spreadsheet would run it as a formula: it starts with = + - @, their
// full-width forms, a tab or a line end.
String defusedFormula(const String& sText);

// The text as a cell of a CSV file: quoted where it holds a comma, a quotation mark, a line end or a blank at either
// end.
std::string csvCell(std::wstring_view sText);

}  // namespace tov
