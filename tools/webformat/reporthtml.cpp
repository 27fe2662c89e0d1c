#include <string>

#include "excelstyle.h"
#include "reporttable.h"
#include "reportwriters.h"
#include "textdirection.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

// The table scrolls inside its own region, in both directions, so that the headings stay in sight and the page itself
// never moves sideways. Text of either direction keeps to the same side of its column.
constexpr std::string_view ksStyleSheet = R"css(
:root {
  color-scheme: light dark;
  --ink: #1d2228; --soft: #56606c; --paper: #ffffff; --head: #f1f4f7; --line: #dde2e8; --hover: #eef4fb; --red: #c4161c;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ink: #e4e8ed; --soft: #9aa5b1; --paper: #14181d; --head: #1f252c; --line: #2e363f; --hover: #1d2732;
    --red: #ff7a75;
  }
}
* { box-sizing: border-box; }
html { -webkit-text-size-adjust: 100%; text-size-adjust: 100%; }
body {
  margin: 0; height: 100vh; height: 100dvh; display: flex; flex-direction: column;
  color: var(--ink); background: var(--paper);
  font: 0.875rem/1.4 system-ui, -apple-system, "Segoe UI", Roboto, "Noto Sans", sans-serif;
}
header, footer { flex: none; padding: 0.75rem; }
header h1 {
  margin: 0; font-size: 1.25rem; font-weight: 600; line-height: 1.25; overflow-wrap: anywhere; text-wrap: balance;
}
footer { padding-block: 0.5rem; color: var(--soft); border-top: 1px solid var(--line); }
footer p { margin: 0; }
main { flex: 1; min-height: 0; overflow: auto; overscroll-behavior: contain; border-top: 1px solid var(--line); }
main:focus-visible { outline: 2px solid Highlight; outline-offset: -2px; }
table {
  border-collapse: separate; border-spacing: 0; width: max-content; min-width: 100%; font-variant-numeric: tabular-nums;
}
th, td { padding: 0.375rem 0.75rem; text-align: start; vertical-align: top; border-bottom: 1px solid var(--line); }
th {
  position: sticky; top: 0; z-index: 1; vertical-align: bottom; white-space: nowrap;
  font-weight: 600; color: var(--soft); background: var(--head);
}
td { white-space: nowrap; }
tbody tr:hover td { background: var(--hover); }
.number { text-align: right; }
td.number { direction: ltr; unicode-bidi: isolate; }
td.text {
  white-space: pre-line; min-width: 8rem; max-width: 18rem; overflow-wrap: break-word; unicode-bidi: plaintext;
}
td.text, th.text { text-align: left; }
[dir="rtl"] td.text, [dir="rtl"] th.text { text-align: right; }
td.data { max-width: 18rem; overflow-wrap: anywhere; white-space: normal; }
td img { display: block; max-width: 12rem; max-height: 6rem; width: auto; height: auto; }
td font[style*="red"] { color: var(--red) !important; }
@media print {
  body { height: auto; display: block; }
  main { overflow: visible; }
  th { position: static; }
}
)css";

std::string escaped(std::wstring_view sText)
{
    StringBufferTemplate<wchar_t, 255> tBuffer;
    ValueFormatterTypes::encodeToBufferOfType(tBuffer, ValueFormatterTypes::kHTML, sText.data(), sText.size());
    return toUtf8(tBuffer.view());
}

// Writes the page of one report from top to bottom.
class Page
{
public:
    Page(ReportTable& tTable, OutputFile& tOutput) : m_tTable(tTable), m_tOutput(tOutput) {}

    void write();

private:
    void writeHead();
    void writeExcelStyles();
    String excelStyle(std::size_t nColumn) const;
    void writeHeadings();
    void writeRow(const std::vector<String>& vCells);
    void writeFoot();
    std::string classesOf(std::size_t nColumn, bool bCell) const;
    std::string title() const;

    ReportTable& m_tTable;
    OutputFile& m_tOutput;
    std::vector<bool> m_vStyled;           // the columns that have a class of their own
    std::vector<std::string> m_vOpenings;  // the start tag of a cell of each column
};

void Page::write()
{
    writeHead();
    writeHeadings();
    for (std::size_t nColumn = 0; nColumn < m_tTable.columnCount(); ++nColumn)
        m_vOpenings.push_back("<td" + classesOf(nColumn, true) + ">");
    std::vector<String> vCells;
    while (m_tTable.nextRow(vCells))
        writeRow(vCells);
    writeFoot();
}

std::string Page::title() const
{
    const String& sTitle = m_tTable.report().sTitle;
    return sTitle.empty() ? "Report" : escaped(sTitle);
}

void Page::writeHead()
{
    const String& sTag = m_tTable.report().tLocale.tag();
    m_tOutput.write("<!DOCTYPE html>\n<html lang=\"" + escaped(sTag) + "\"" +
                    (isRightToLeft(sTag) ? " dir=\"rtl\"" : "") + ">\n<head>\n<meta charset=\"utf-8\">\n" +
                    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" + title() +
                    "</title>\n<style>");
    m_tOutput.write(ksStyleSheet);
    writeExcelStyles();
    m_tOutput.write("</style>\n</head>\n<body>\n<header>\n<h1 id=\"title\">" + title() + "</h1>\n</header>\n");
}

// The cell formats of spreadsheets, one class a column.
void Page::writeExcelStyles()
{
    for (std::size_t nColumn = 0; nColumn < m_tTable.columnCount(); ++nColumn)
    {
        const std::string sDeclaration = excelDeclaration(excelStyle(nColumn));
        m_vStyled.push_back(!sDeclaration.empty());
        if (!sDeclaration.empty())
            m_tOutput.write("td.c" + std::to_string(nColumn + 1) + " { " + sDeclaration + "; }\n");
    }
}

String Page::excelStyle(std::size_t nColumn) const
{
    const ReportDefinition& tReport = m_tTable.report();
    const WebValueFormatDefinitionHandle& hDefinition = tReport.vColumns[nColumn].hDefinition;
    if (!hDefinition.isNull() && m_tTable.hasExcelPattern(nColumn))
        return hDefinition->getMsoStyle(tReport.tLocale, tReport.tLanguage);
    // Text stays text where it looks like a number or a formula.
    return m_tTable.isText(nColumn) ? WebTextFormatDefinition().getMsoStyle(tReport.tLocale, tReport.tLanguage)
                                    : String();
}

std::string Page::classesOf(std::size_t nColumn, bool bCell) const
{
    std::string sClasses;
    if (m_tTable.isNumber(nColumn))
        sClasses = "number";
    else if (m_tTable.isText(nColumn))
        sClasses = "text";
    else if (m_tTable.isBinary(nColumn))
        sClasses = "data";
    if (bCell && m_vStyled[nColumn])
        sClasses += (sClasses.empty() ? "c" : " c") + std::to_string(nColumn + 1);
    return sClasses.empty() ? sClasses : " class=\"" + sClasses + "\"";
}

void Page::writeHeadings()
{
    m_tOutput.write(
        "<main tabindex=\"0\" aria-labelledby=\"title\">\n<table aria-labelledby=\"title\">\n<thead>\n<tr>\n");
    for (std::size_t nColumn = 0; nColumn < m_tTable.columnCount(); ++nColumn)
        m_tOutput.write("<th scope=\"col\"" + classesOf(nColumn, false) + ">" +
                        escaped(m_tTable.report().vColumns[nColumn].sHeading) + "</th>\n");
    m_tOutput.write("</tr>\n</thead>\n<tbody>\n");
}

void Page::writeRow(const std::vector<String>& vCells)
{
    m_tOutput.write("<tr>");
    for (std::size_t nColumn = 0; nColumn < vCells.size(); ++nColumn)
    {
        m_tOutput.write(m_vOpenings[nColumn]);
        m_tOutput.write(vCells[nColumn]);
        m_tOutput.write("</td>");
    }
    m_tOutput.write("</tr>\n");
}

void Page::writeFoot()
{
    const ReportDefinition& tReport = m_tTable.report();
    const std::string sCount = escaped(rowCountText(m_tTable.rowCount(), tReport.tLocale, tReport.tLanguage));
    m_tOutput.write("</tbody>\n</table>\n</main>\n<footer>\n<p dir=\"ltr\">" + sCount +
                    "</p>\n</footer>\n</body>\n</html>\n");
}

}  // namespace

void writeHtmlReport(const ReportDefinition& tReport, DataSource& tData, OutputFile& tOutput)
{
    ReportTable tTable(tReport, tData, {ValueFormatterTypes::kHTML, ReportTable::kDisplay, false});
    Page(tTable, tOutput).write();
}

}  // namespace tov
