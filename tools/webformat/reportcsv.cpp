#include <algorithm>
#include <string>

#include "reporttable.h"
#include "reportwriters.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::wstring_view ksFormulaStarts = L"=+-@\t\r\n\uFF1D\uFF0B\uFF0D\uFF20";

void writeRecord(const std::vector<String>& vCells, OutputFile& tOutput)
{
    for (std::size_t nCell = 0; nCell < vCells.size(); ++nCell)
    {
        if (nCell != 0)
            tOutput.write(",");
        tOutput.write(csvCell(vCells[nCell]));
    }
    tOutput.write("\r\n");
}

}  // namespace

String defusedFormula(const String& sText)
{
    const bool bFormula = !sText.empty() && ksFormulaStarts.find(sText.front()) != std::wstring_view::npos;
    return bFormula ? L"'" + sText : sText;
}

std::string csvCell(std::wstring_view sText)
{
    const bool bBlankEnd = !sText.empty() && (sText.front() == L' ' || sText.back() == L' ');
    if (!bBlankEnd && sText.find_first_of(L",\"\r\n") == std::wstring_view::npos)
        return toUtf8(sText);
    std::string sResult = "\"";
    for (const char nByte : toUtf8(sText))
        sResult.append(nByte == '"' ? 2 : 1, nByte);
    return sResult + "\"";
}

void writeCsvReport(const ReportDefinition& tReport, DataSource& tData, CsvFormulas eFormulas, OutputFile& tOutput)
{
    ReportTable tTable(tReport, tData, {ValueFormatterTypes::kText, ReportTable::kMachineReadable, true});
    const bool bEscape = eFormulas == CsvFormulas::kEscape;
    std::vector<String> vCells;
    for (const ReportColumn& tColumn : tReport.vColumns)
        vCells.push_back(bEscape ? defusedFormula(tColumn.sName) : tColumn.sName);
    writeRecord(vCells, tOutput);
    while (tTable.nextRow(vCells))
    {
        for (std::size_t nCell = 0; bEscape && nCell < vCells.size(); ++nCell)
            if (tTable.isText(nCell))
                vCells[nCell] = defusedFormula(vCells[nCell]);
        writeRecord(vCells, tOutput);
    }
}

}  // namespace tov
