#include <algorithm>
#include <string>

#include "eastasianwidth.h"
#include "reporttable.h"
#include "reportwriters.h"

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

// Writes lines of cells in columns of given widths.
class Layout
{
public:
    Layout(ReportTable& tTable, OutputFile& tOutput);

    void writeTable();

private:
    void widen(std::size_t nColumn, const String& sText);
    void writeLine(const std::vector<String>& vCells);
    void appendCell(std::size_t nColumn, const String& sText, bool bLast, String& sLine) const;

    ReportTable& m_tTable;
    OutputFile& m_tOutput;
    std::vector<String> m_vHeadings;
    std::vector<std::size_t> m_vWidths;
};

Layout::Layout(ReportTable& tTable, OutputFile& tOutput)
    : m_tTable(tTable), m_tOutput(tOutput), m_vWidths(tTable.columnCount())
{
    for (const ReportColumn& tColumn : tTable.report().vColumns)
        m_vHeadings.push_back(onOneLine(tColumn.sHeading));
}

void Layout::writeTable()
{
    std::vector<String> vCells = m_vHeadings;
    do
    {
        for (std::size_t nColumn = 0; nColumn < vCells.size(); ++nColumn)
            widen(nColumn, vCells[nColumn]);
    } while (m_tTable.nextRow(vCells));
    writeLine(m_vHeadings);
    std::vector<String> vRules;
    for (const std::size_t nWidth : m_vWidths)
        vRules.emplace_back(nWidth, L'-');
    writeLine(vRules);
    m_tTable.rewind();
    while (m_tTable.nextRow(vCells))
    {
        for (String& sCell : vCells)
            sCell = onOneLine(std::move(sCell));
        writeLine(vCells);
    }
}

void Layout::widen(std::size_t nColumn, const String& sText)
{
    m_vWidths[nColumn] = std::max(m_vWidths[nColumn], displayWidth(sText));
}

void Layout::writeLine(const std::vector<String>& vCells)
{
    String sLine;
    for (std::size_t nColumn = 0; nColumn < vCells.size(); ++nColumn)
        appendCell(nColumn, vCells[nColumn], nColumn + 1 == vCells.size(), sLine);
    m_tOutput.write(sLine + L"\n");
}

void Layout::appendCell(std::size_t nColumn, const String& sText, bool bLast, String& sLine) const
{
    // A file that grew between the passes: its new cells may be wider.
    const std::size_t nWidth = displayWidth(sText);
    const String sPadding(m_vWidths[nColumn] > nWidth ? m_vWidths[nColumn] - nWidth : 0, L' ');
    if (m_tTable.isNumber(nColumn))
        sLine += sPadding + sText;
    else
        sLine += bLast ? sText : sText + sPadding;
    if (!bLast)
        sLine += ksGap;
}

}  // namespace

void writeTextReport(const ReportDefinition& tReport, DataSource& tData, OutputFile& tOutput)
{
    ReportTable tTable(tReport, tData, {ValueFormatterTypes::kText, ReportTable::kDisplay, true});
    if (!tReport.sTitle.empty())
        tOutput.write(onOneLine(tReport.sTitle) + L"\n\n");
    Layout(tTable, tOutput).writeTable();
    tOutput.write(L"\n" + rowCountText(tTable.rowCount(), tReport.tLocale, tReport.tLanguage) + L"\n");
}

}  // namespace tov
