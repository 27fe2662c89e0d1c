#include <algorithm>
#include <string>

#include "eastasianwidth.h"
#include "reporttable.h"
#include "reportwriters.h"
#include "rowpipeline.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::wstring_view ksGap = L"  ";

// C0 and C1 controls and the separators of lines and paragraphs would break the alignment, or drive a terminal.
bool isControl(wchar_t nCharacter)
{
    return nCharacter < 0x20 || (nCharacter >= 0x7F && nCharacter < 0xA0) || nCharacter == 0x2028 ||
           nCharacter == 0x2029;
}

String onOneLine(String sText)
{
    std::replace_if(sText.begin(), sText.end(), &isControl, L' ');
    return sText;
}

using CellBuffer = StringBufferTemplate<wchar_t, 255>;

// The text of a cell, on one line.
std::wstring_view textOf(const RowFormatter& tRow, std::size_t nColumn, CellBuffer& tBuffer)
{
    tBuffer.clear();
    tRow.append(nColumn, tBuffer);
    for (std::size_t nAt = 0; nAt < tBuffer.length(); ++nAt)
        if (isControl(tBuffer[nAt]))
            tBuffer[nAt] = L' ';
    return tBuffer.view();
}

using Widths = std::vector<std::size_t>;

// Appends a cell of a line, padded on the side where its column is not aligned.
void appendCell(std::wstring_view sText, std::size_t nWidth, bool bRight, bool bLast, String& sLine)
{
    const std::size_t nOwn = displayWidth(sText);
    const std::size_t nPadding = nWidth > nOwn ? nWidth - nOwn : 0;
    if (bRight)
        sLine.append(nPadding, L' ');
    sLine += sText;
    if (!bLast)
        sLine.append(bRight ? 0 : nPadding, L' ').append(ksGap);
}

// The first pass: how wide the cells are.
class TextWidths final : public RowWorker
{
public:
    TextWidths(const ReportColumns& tColumns, const DataSource& tData)
        : m_tRow(tColumns, tData, true), m_vWidths(tColumns.count())
    {
    }

    void work(const DataChunk& tChunk, ChunkResult& tResult) override;
    const Widths& widths() const { return m_vWidths; }

private:
    RowFormatter m_tRow;
    Widths m_vWidths;
    CellBuffer m_tCell;
};

void TextWidths::work(const DataChunk& tChunk, ChunkResult& tResult)
{
    for (std::size_t nRow = 0; nRow < tChunk.rowCount(); ++nRow)
    {
        m_tRow.setRow(tChunk, nRow, tResult.vUnknownTags);
        for (std::size_t nColumn = 0; nColumn < m_vWidths.size(); ++nColumn)
            m_vWidths[nColumn] = std::max(m_vWidths[nColumn], displayWidth(textOf(m_tRow, nColumn, m_tCell)));
    }
}

// The second pass: the lines.
class TextLines final : public RowWorker
{
public:
    TextLines(const ReportColumns& tColumns, const DataSource& tData, const Widths& vWidths)
        : m_tRow(tColumns, tData, true), m_vWidths(vWidths)
    {
    }

    void work(const DataChunk& tChunk, ChunkResult& tResult) override;

private:
    RowFormatter m_tRow;
    const Widths& m_vWidths;
    CellBuffer m_tCell;
    String m_sLine;
};

void TextLines::work(const DataChunk& tChunk, ChunkResult& tResult)
{
    // The first pass has named them.
    std::vector<UnknownTag> vUnknownTags;
    for (std::size_t nRow = 0; nRow < tChunk.rowCount(); ++nRow)
    {
        m_tRow.setRow(tChunk, nRow, vUnknownTags);
        m_sLine.clear();
        for (std::size_t nColumn = 0; nColumn < m_vWidths.size(); ++nColumn)
            appendCell(textOf(m_tRow, nColumn, m_tCell), m_vWidths[nColumn], m_tRow.columns().isNumber(nColumn),
                       nColumn + 1 == m_vWidths.size(), m_sLine);
        appendUtf8(tResult.sBytes, m_sLine);
        tResult.sBytes += '\n';
        tResult.endRow();
    }
}

// Writes lines of cells in columns as wide as their widest cell or heading.
class Layout
{
public:
    Layout(const ReportColumns& tColumns, DataSource& tData, OutputFile& tOutput);

    // Returns the number of rows.
    std::uint64_t writeTable(unsigned nThreads);

private:
    void measure(unsigned nThreads);
    void writeHead();

    const ReportColumns& m_tColumns;
    DataSource& m_tData;
    OutputFile& m_tOutput;
    std::vector<String> m_vHeadings;
    Widths m_vWidths;
};

Layout::Layout(const ReportColumns& tColumns, DataSource& tData, OutputFile& tOutput)
    : m_tColumns(tColumns), m_tData(tData), m_tOutput(tOutput)
{
    for (const ReportColumn& tColumn : tColumns.report().vColumns)
        m_vHeadings.push_back(onOneLine(tColumn.sHeading));
}

std::uint64_t Layout::writeTable(unsigned nThreads)
{
    measure(nThreads);
    writeHead();
    m_tData.rewind();
    return RowPipeline::run(m_tData, makeWorkers<TextLines>(nThreads, m_tColumns, m_tData, m_vWidths), m_tOutput);
}

void Layout::measure(unsigned nThreads)
{
    const auto vWorkers = makeWorkers<TextWidths>(nThreads, m_tColumns, m_tData);
    RowPipeline::run(m_tData, vWorkers, m_tOutput);
    for (const String& sHeading : m_vHeadings)
        m_vWidths.push_back(displayWidth(sHeading));
    for (const auto& pWorker : vWorkers)
    {
        const Widths& vWidths = static_cast<const TextWidths&>(*pWorker).widths();
        std::transform(m_vWidths.begin(), m_vWidths.end(), vWidths.begin(), m_vWidths.begin(),
                       [](std::size_t nLeft, std::size_t nRight) { return std::max(nLeft, nRight); });
    }
}

// The headings, and a rule below each.
void Layout::writeHead()
{
    String sHeadings;
    String sRules;
    for (std::size_t nColumn = 0; nColumn < m_vWidths.size(); ++nColumn)
    {
        const bool bLast = nColumn + 1 == m_vWidths.size();
        appendCell(m_vHeadings[nColumn], m_vWidths[nColumn], m_tColumns.isNumber(nColumn), bLast, sHeadings);
        appendCell(String(m_vWidths[nColumn], L'-'), m_vWidths[nColumn], false, bLast, sRules);
    }
    m_tOutput.write(sHeadings + L"\n" + sRules + L"\n");
}

}  // namespace

void writeTextReport(const ReportDefinition& tReport, DataSource& tData, unsigned nThreads, OutputFile& tOutput)
{
    const ReportColumns tColumns(tReport, tData, ValueFormatterTypes::kText, ReportColumns::kDisplay);
    if (!tReport.sTitle.empty())
        tOutput.write(onOneLine(tReport.sTitle) + L"\n\n");
    const std::uint64_t nRows = Layout(tColumns, tData, tOutput).writeTable(nThreads);
    tOutput.write(L"\n" + rowCountText(nRows, tReport.tLocale, tReport.tLanguage) + L"\n");
}

}  // namespace tov
