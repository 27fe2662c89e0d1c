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
    // Everything that does, and blanks, comes before the minus sign: most cells need one comparison a character.
    if (std::all_of(sText.begin(), sText.end(), [](wchar_t n) { return n >= L'-'; }))
        return false;
    return sText.front() == L' ' || sText.back() == L' ' || sText.find_first_of(L",\"\r\n") != std::wstring_view::npos;
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
        : m_tRow(tColumns, tData, true), m_vEscape(tColumns.count())
    {
        for (std::size_t nColumn = 0; nColumn < m_vEscape.size(); ++nColumn)
            m_vEscape[nColumn] = eFormulas == CsvFormulas::kEscape && tColumns.isText(nColumn);
    }

    void work(const DataChunk& tChunk, ChunkResult& tResult) override;

private:
    RowFormatter m_tRow;
    std::vector<char> m_vEscape;  // the columns whose formulas are defused
    StringBufferTemplate<wchar_t, 255> m_tCell;
};

void CsvRows::work(const DataChunk& tChunk, ChunkResult& tResult)
{
    std::string& sBytes = tResult.sBytes;
    for (std::size_t nRow = 0; nRow < tChunk.rowCount(); ++nRow)
    {
        m_tRow.setRow(tChunk, nRow, tResult.vUnknownTags);
        for (std::size_t nColumn = 0; nColumn < m_vEscape.size(); ++nColumn)
        {
            m_tCell.clear();
            m_tRow.append(nColumn, m_tCell);
            if (nColumn != 0)
                sBytes += ',';
            if (m_vEscape[nColumn] && isFormula(m_tCell.view()))
                appendCell(sBytes, defusedFormula(m_tCell.toString()));
            else
                appendCell(sBytes, m_tCell.view());
        }
        sBytes += "\r\n";
        tResult.endRow();
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
