#include <algorithm>
#include <string>

#include "reportwriters.h"
#include "rowpipeline.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::wstring_view ksFormulaStarts = L"=+-@\t\r\n\uFF1D\uFF0B\uFF0D\uFF20";

bool isFormula(std::wstring_view sText)
{
    return !sText.empty() && ksFormulaStarts.find(sText.front()) != std::wstring_view::npos;
}

bool needsQuotes(std::wstring_view sText)
{
    if (!sText.empty() && (sText.front() == L' ' || sText.back() == L' '))
        return true;
    return std::any_of(sText.begin(), sText.end(),
                       [](wchar_t n) { return n == L',' || n == L'"' || n == L'\r' || n == L'\n'; });
}

void appendCell(std::string& sBytes, std::wstring_view sText)
{
    if (!needsQuotes(sText))
    {
        appendUtf8(sBytes, sText);
        return;
    }
    sBytes += '"';
    for (std::size_t nQuote; (nQuote = sText.find(L'"')) != std::wstring_view::npos; sText.remove_prefix(nQuote + 1))
    {
        appendUtf8(sBytes, sText.substr(0, nQuote));
        sBytes += "\"\"";
    }
    appendUtf8(sBytes, sText);
    sBytes += '"';
}

// Writes the rows of a chunk as records.
class CsvRows final : public RowWorker
{
public:
    CsvRows(const ReportColumns& tColumns, const DataSource& tData, CsvFormulas eFormulas)
        : m_tRow(tColumns, tData, true), m_bEscape(eFormulas == CsvFormulas::kEscape)
    {
    }

    void work(const DataChunk& tChunk, ChunkResult& tResult) override;

private:
    RowFormatter m_tRow;
    bool m_bEscape;
    StringBufferTemplate<wchar_t, 255> m_tCell;
};

void CsvRows::work(const DataChunk& tChunk, ChunkResult& tResult)
{
    const ReportColumns& tColumns = m_tRow.columns();
    std::string& sBytes = tResult.sBytes;
    for (std::size_t nRow = 0; nRow < tChunk.rowCount(); ++nRow)
    {
        m_tRow.setRow(tChunk, nRow, tResult.vUnknownTags);
        for (std::size_t nColumn = 0; nColumn < tColumns.count(); ++nColumn)
        {
            m_tCell.clear();
            m_tRow.append(nColumn, m_tCell);
            if (nColumn != 0)
                sBytes += ',';
            if (m_bEscape && tColumns.isText(nColumn) && isFormula(m_tCell.view()))
                appendCell(sBytes, defusedFormula(m_tCell.toString()));
            else
                appendCell(sBytes, m_tCell.view());
        }
        sBytes += "\r\n";
    }
}

}  // namespace

String defusedFormula(const String& sText)
{
    return isFormula(sText) ? L"'" + sText : sText;
}

std::string csvCell(std::wstring_view sText)
{
    std::string sBytes;
    appendCell(sBytes, sText);
    return sBytes;
}

void writeCsvReport(const ReportDefinition& tReport, DataSource& tData, CsvFormulas eFormulas, unsigned nThreads,
                    OutputFile& tOutput)
{
    const ReportColumns tColumns(tReport, tData, ValueFormatterTypes::kText, ReportColumns::kMachineReadable);
    std::string sNames;
    for (const ReportColumn& tColumn : tReport.vColumns)
        sNames += (sNames.empty() ? "" : ",") +
                  csvCell(eFormulas == CsvFormulas::kEscape ? defusedFormula(tColumn.sName) : tColumn.sName);
    tOutput.write(sNames + "\r\n");
    RowPipeline::run(tData, makeWorkers<CsvRows>(nThreads, tColumns, tData, eFormulas), tOutput);
}

}  // namespace tov
