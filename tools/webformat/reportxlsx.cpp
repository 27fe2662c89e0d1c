#include <algorithm>
#include <deque>
#include <fstream>
#include <iostream>
#include <string>

#include "eastasianwidth.h"
#include "excelcell.h"
#include "inputerror.h"
#include "reporttable.h"
#include "reportwriters.h"
#include "textdirection.h"
#include "webbedrock/utf8.h"
#include "workbookwriter.h"

namespace tov {

namespace {

// The display width of the longest line of a text.
std::size_t lineWidth(std::wstring_view sText)
{
    std::size_t nWidth = 0;
    for (std::size_t nStart = 0; nStart <= sText.size();)
    {
        const std::size_t nEnd = std::min(sText.find_first_of(L"\r\n", nStart), sText.size());
        nWidth = std::max(nWidth, displayWidth(sText.substr(nStart, nEnd - nStart)));
        nStart = nEnd + 1;
    }
    return nWidth;
}

// The lines that a text takes in a column: the widest column holds what is narrower in one line, and wraps the rest.
// Words leave some room at the ends of lines.
std::size_t linesOf(std::wstring_view sText)
{
    constexpr std::size_t nUsedWidth = WorkbookWriter::knWidest * 9 / 10;
    std::size_t nLines = 0;
    for (std::size_t nStart = 0; nStart <= sText.size(); ++nLines)
    {
        const std::size_t nEnd = std::min(sText.find_first_of(L"\r\n", nStart), sText.size());
        const std::size_t nWidth = displayWidth(sText.substr(nStart, nEnd - nStart));
        nLines += nWidth > WorkbookWriter::knWidest ? (nWidth - 1) / nUsedWidth : 0;
        const bool bPair = sText.substr(nEnd, 2) == L"\r\n";
        nStart = nEnd + (bPair ? 2 : 1);
    }
    return nLines;
}

// Writes the rows of a report into a worksheet.
class Sheet
{
public:
    Sheet(ReportTable& tTable, WorkbookWriter& tWriter);

    void write();

private:
    void writeHeadings();
    void writeRow(const std::vector<String>& vCells);
    void writeCell(std::uint32_t nRow, std::size_t nColumn, const String& sText);
    void widen(std::size_t nColumn, std::size_t nWidth);
    WorkbookWriter::Alignment alignmentOf(std::size_t nColumn) const;

    ReportTable& m_tTable;
    WorkbookWriter& m_tWriter;
    std::deque<ExcelColumn> m_vColumns;
    std::vector<std::size_t> m_vWidths;
    std::size_t m_nLines = 1;  // of the highest cell of the row
};

Sheet::Sheet(ReportTable& tTable, WorkbookWriter& tWriter)
    : m_tTable(tTable), m_tWriter(tWriter), m_vWidths(tTable.columnCount())
{
    for (const ReportColumn& tColumn : tTable.report().vColumns)
        m_vColumns.emplace_back(tTable.report(), tColumn);
}

void Sheet::write()
{
    writeHeadings();
    std::vector<String> vCells;
    while (m_tTable.nextRow(vCells))
    {
        if (m_tTable.rowCount() >= WorkbookWriter::knMostRows)
            throw InputError(m_tTable.place() + ": found more rows than " +
                             std::to_string(WorkbookWriter::knMostRows - 1) +
                             ", expected at most so many: a worksheet has no more");
        writeRow(vCells);
    }
    m_tWriter.finish(m_vWidths);
}

WorkbookWriter::Alignment Sheet::alignmentOf(std::size_t nColumn) const
{
    const ExcelColumn& tColumn = m_vColumns[nColumn];
    return tColumn.isNumber() || tColumn.isCalendar() ? WorkbookWriter::kRight : WorkbookWriter::kLeft;
}

void Sheet::widen(std::size_t nColumn, std::size_t nWidth)
{
    m_vWidths[nColumn] = std::max(m_vWidths[nColumn], nWidth);
}

void Sheet::writeHeadings()
{
    for (std::size_t nColumn = 0; nColumn < m_vColumns.size(); ++nColumn)
    {
        const String& sHeading = m_tTable.report().vColumns[nColumn].sHeading;
        m_tWriter.writeHeading(nColumn, sHeading, alignmentOf(nColumn));
        // Bold letters are wider by a tenth.
        widen(nColumn, lineWidth(sHeading) * 11 / 10 + 1);
    }
}

void Sheet::writeRow(const std::vector<String>& vCells)
{
    const auto nRow = static_cast<std::uint32_t>(m_tTable.rowCount());
    m_nLines = 1;
    for (std::size_t nColumn = 0; nColumn < m_vColumns.size(); ++nColumn)
        writeCell(nRow, nColumn, vCells[nColumn]);
    if (m_nLines > 1)
        m_tWriter.setLines(nRow, m_nLines);
}

void Sheet::writeCell(std::uint32_t nRow, std::size_t nColumn, const String& sText)
{
    ExcelColumn& tColumn = m_vColumns[nColumn];
    const ExcelCell tCell = tColumn.cellOf(m_tTable.value(nColumn), m_tTable.formatterOf(nColumn), sText);
    if (tCell.eKind == ExcelCell::kBlank)
        return;
    if (tCell.eKind == ExcelCell::kNumber && m_tWriter.writeNumber(nRow, nColumn, tCell.fNumber, tCell.sPattern))
    {
        widen(nColumn, std::max(tColumn.widthOf(tCell), displayWidth(sText)));
        return;
    }
    const std::wstring_view sWritten = tCell.eKind == ExcelCell::kText ? tCell.sText : std::wstring_view(sText);
    m_tWriter.writeText(nRow, nColumn, sWritten, alignmentOf(nColumn));
    widen(nColumn, lineWidth(sWritten));
    if (alignmentOf(nColumn) == WorkbookWriter::kLeft)
        m_nLines = std::max(m_nLines, linesOf(sWritten));
}

void copyFile(const std::string& sPath, OutputFile& tOutput)
{
    std::ifstream tInput(sPath, std::ios::binary);
    std::string sChunk(1 << 16, '\0');
    while (tInput.read(sChunk.data(), static_cast<std::streamsize>(sChunk.size())) || tInput.gcount() > 0)
        tOutput.write(std::string_view(sChunk.data(), static_cast<std::size_t>(tInput.gcount())));
    if (tInput.bad())
        throw InputError({sPath}, "cannot be read");
}

// Writes to `sPath`, which messages call `sName`.
void writeWorkbook(ReportTable& tTable, const std::string& sPath, const std::string& sName)
{
    const ReportDefinition& tReport = tTable.report();
    WorkbookWriter tWriter(sPath, sName, {tReport.sTitle, isRightToLeft(tReport.tLocale.tag())});
    Sheet(tTable, tWriter).write();
    if (tWriter.cutTexts() > 0)
        std::cerr << "webformat: " << sName << ": texts cut to the " << WorkbookWriter::knLongestText
                  << " characters that a cell holds: " << tWriter.cutTexts() << "\n";
}

}  // namespace

void writeXlsxReport(const ReportDefinition& tReport, DataSource& tData, OutputFile& tOutput)
{
    if (tReport.vColumns.size() > WorkbookWriter::knMostColumns)
        throw InputError(tReport.vColumns[WorkbookWriter::knMostColumns].tPlace,
                         "found more columns than " + std::to_string(WorkbookWriter::knMostColumns) +
                             ", expected at most so many: a worksheet has no more");
    ReportTable tTable(tReport, tData, {ValueFormatterTypes::kText, true});
    if (!tOutput.temporaryPath().empty())
    {
        writeWorkbook(tTable, tOutput.temporaryPath(), tOutput.name());
        return;
    }
    // A workbook is not written from front to back.
    const OutputFile tScratch = OutputFile::scratch();
    writeWorkbook(tTable, tScratch.temporaryPath(), tScratch.name());
    copyFile(tScratch.temporaryPath(), tOutput);
}

}  // namespace tov
