#include <algorithm>
#include <string>
#include <vector>

#include "excelstyle.h"
#include "reporttable.h"
#include "reportwriters.h"
#include "rowpipeline.h"
#include "textdirection.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

// The table scrolls inside its own region, in both directions, so that the headings stay in sight and the page itself
// never moves sideways. Text of either direction keeps to the same side of its column.
constexpr std::string_view ksStyleSheet = R"css(
:root {
  color-scheme: light dark;
  --ink: #1d2228; --soft: #56606c; --paper: #ffffff; --head: #f1f4f7; --line: #dde2e8; --hover: #eef4fb;
  --red: #c4161c; --link: #0b57d0;
}
@media (prefers-color-scheme: dark) {
  :root {
    --ink: #e4e8ed; --soft: #9aa5b1; --paper: #14181d; --head: #1f252c; --line: #2e363f; --hover: #1d2732;
    --red: #ff7a75; --link: #8ab4f8;
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
th.text { text-align: left; }
[dir="rtl"] th.text { text-align: right; }
td.data { max-width: 18rem; overflow-wrap: anywhere; white-space: normal; }
td img { display: block; max-width: 12rem; max-height: 6rem; width: auto; height: auto; }
td font[style*="red"] { color: var(--red) !important; }
td a { color: var(--link); }
td p, td ul, td ol, td pre { margin-block: 0.25rem; }
td > :first-child { margin-top: 0; }
td > :last-child { margin-bottom: 0; }
.ZoomInEnable > span { cursor: pointer; font-size: 0; }
.ZoomInEnable > span::after { content: " ⊕"; font-size: 1rem; color: var(--link); }
.ZoomInEnable > span.open::after { content: " ⊖"; }
@media print {
  body { height: auto; display: block; }
  main { overflow: visible; }
  th { position: static; }
}
)css";

// What the button behind a cut text does: it shows the whole of it, and the cut text again.
constexpr std::string_view ksScript = R"js(<script>
var rudex = {FormFields: {CommentField: {clickButton: function (event) {
  var button = event.currentTarget, text = button.parentNode.previousSibling;
  if (button.cutText === undefined)
    button.cutText = text.innerHTML;
  if (button.classList.toggle("open"))
    text.textContent = button.getAttribute("fullText");
  else
    text.innerHTML = button.cutText;
}}}};
</script>
)js";

// How the cells of numbers and of texts look.
constexpr std::string_view ksNumberRule = "text-align: right; direction: ltr; unicode-bidi: isolate;";
constexpr std::string_view ksTextRule =
    "white-space: pre-line; min-width: 8rem; max-width: 18rem; overflow-wrap: break-word; unicode-bidi: plaintext;";

std::string escaped(std::wstring_view sText)
{
    StringBufferTemplate<wchar_t, 255> tBuffer;
    ValueFormatterTypes::encodeToBufferOfType(tBuffer, ValueFormatterTypes::kHTML, sText.data(), sText.size());
    return toUtf8(tBuffer.view());
}

// Whether the texts of dates are such that a spreadsheet takes them for numbers: it would show the year 2024 as a day
// of 1905, because serial number 2,024 is one.
bool looksLikeNumber(const WebValueFormatter& tFormatter)
{
    if (tFormatter.valueStorageType() != SQLDataType::kStorageTimeStamp)
        return false;
    const DateTime tSample(2001, 11, 12, 13, 14, 15);
    const String sText = tFormatter.formatAsString(&tSample);
    const auto isPoint = [](wchar_t nCharacter) { return nCharacter == L'.' || nCharacter == L','; };
    const auto isPart = [&](wchar_t nCharacter)
    { return isPoint(nCharacter) || (nCharacter >= L'0' && nCharacter <= L'9'); };
    return std::all_of(sText.begin(), sText.end(), isPart) && std::count_if(sText.begin(), sText.end(), isPoint) <= 1;
}

// Writes the rows of a chunk as rows of the table.
class HtmlRows final : public RowWorker
{
public:
    // `vOpenings` are the start tags of the columns' cells; all must outlive this.
    HtmlRows(const ReportColumns& tColumns, const DataSource& tData, const std::vector<std::string>& vOpenings)
        : m_tRow(tColumns, tData, false), m_vOpenings(vOpenings)
    {
    }

    void work(const DataChunk& tChunk, ChunkResult& tResult) override;

private:
    RowFormatter m_tRow;
    const std::vector<std::string>& m_vOpenings;
    StringBufferTemplate<wchar_t, 255> m_tCell;
};

void HtmlRows::work(const DataChunk& tChunk, ChunkResult& tResult)
{
    std::string& sBytes = tResult.sBytes;
    for (std::size_t nRow = 0; nRow < tChunk.rowCount(); ++nRow)
    {
        m_tRow.setRow(tChunk, nRow, tResult.vUnknownTags);
        sBytes += "<tr>";
        for (std::size_t nColumn = 0; nColumn < m_vOpenings.size(); ++nColumn)
        {
            m_tCell.clear();
            m_tRow.append(nColumn, m_tCell);
            sBytes += m_vOpenings[nColumn];
            appendUtf8(sBytes, m_tCell.view());
            sBytes += "</td>";
        }
        sBytes += "</tr>\n";
        tResult.endRow();
    }
}

// Writes the page of one report from top to bottom.
class Page
{
public:
    Page(const ReportDefinition& tReport, DataSource& tData, OutputFile& tOutput)
        : m_tReport(tReport),
          m_tData(tData),
          m_tColumns(tReport, tData, ValueFormatterTypes::kHTML, ReportColumns::kDisplay),
          m_tOutput(tOutput)
    {
    }

    void write(unsigned nThreads);

private:
    void writeHead();
    void writeExcelStyles();
    void writeCellRules();
    std::string ruleFor(std::string sSelectors, bool (ReportColumns::*pIsOfKind)(std::size_t) const,
                        std::string_view sDeclarations) const;
    String excelStyle(std::size_t nColumn) const;
    bool isText(std::size_t nColumn, const String& sStyle) const;
    void writeHeadings();
    std::uint64_t writeRows(unsigned nThreads);
    void writeFoot(std::uint64_t nRows);
    std::string classOf(std::size_t nColumn, bool bCell) const;
    std::string title() const;

    const ReportDefinition& m_tReport;
    DataSource& m_tData;
    ReportColumns m_tColumns;
    OutputFile& m_tOutput;
    std::vector<bool> m_vStyled;  // the columns that have a class of their own
};

void Page::write(unsigned nThreads)
{
    writeHead();
    writeHeadings();
    writeFoot(writeRows(nThreads));
}

std::uint64_t Page::writeRows(unsigned nThreads)
{
    std::vector<std::string> vOpenings;
    for (std::size_t nColumn = 0; nColumn < m_tColumns.count(); ++nColumn)
        vOpenings.push_back("<td" + classOf(nColumn, true) + ">");
    return RowPipeline::run(m_tData, makeWorkers<HtmlRows>(nThreads, m_tColumns, m_tData, vOpenings), m_tOutput);
}

std::string Page::title() const
{
    const String& sTitle = m_tReport.sTitle;
    return sTitle.empty() ? "Report" : escaped(sTitle);
}

void Page::writeHead()
{
    const String& sTag = m_tReport.tLocale.tag();
    m_tOutput.write("<!DOCTYPE html>\n<html lang=\"" + escaped(sTag) + "\"" +
                    (isRightToLeft(sTag) ? " dir=\"rtl\"" : "") + ">\n<head>\n<meta charset=\"utf-8\">\n" +
                    "<meta name=\"viewport\" content=\"width=device-width, initial-scale=1\">\n<title>" + title() +
                    "</title>\n<style>");
    writeExcelStyles();
    m_tOutput.write(ksStyleSheet);
    writeCellRules();
    m_tOutput.write("</style>\n</head>\n<body>\n<header>\n<h1 id=\"title\">" + title() + "</h1>\n</header>\n");
}

// The cell formats of spreadsheets, one class a column. A cell has that class and no other: spreadsheets know the
// formats of a cell by its whole class. They stand first: some of them read a style sheet up to what they do not know.
void Page::writeExcelStyles()
{
    m_tOutput.write("\n");
    for (std::size_t nColumn = 0; nColumn < m_tColumns.count(); ++nColumn)
    {
        const std::string sDeclaration = excelDeclaration(excelStyle(nColumn));
        m_vStyled.push_back(!sDeclaration.empty());
        if (!sDeclaration.empty())
            m_tOutput.write("td.c" + std::to_string(nColumn + 1) + " { " + sDeclaration + "; }\n");
    }
}

void Page::writeCellRules()
{
    const bool bRightToLeft = isRightToLeft(m_tReport.tLocale.tag());
    m_tOutput.write(ruleFor("td.number", &ReportColumns::isNumber, ksNumberRule) +
                    ruleFor("td.text", &ReportColumns::isText,
                            std::string(ksTextRule) + (bRightToLeft ? " text-align: right;" : " text-align: left;")));
}

// A rule for the cells of some kind: those that have its class, and those that have a class of their own instead.
std::string Page::ruleFor(std::string sSelectors, bool (ReportColumns::*pIsOfKind)(std::size_t) const,
                          std::string_view sDeclarations) const
{
    for (std::size_t nColumn = 0; nColumn < m_vStyled.size(); ++nColumn)
        if (m_vStyled[nColumn] && (m_tColumns.*pIsOfKind)(nColumn))
            sSelectors += ", td.c" + std::to_string(nColumn + 1);
    return sSelectors.append(" { ").append(sDeclarations).append(" }\n");
}

String Page::excelStyle(std::size_t nColumn) const
{
    const WebValueFormatDefinitionHandle& hDefinition = m_tReport.vColumns[nColumn].hDefinition;
    const String sStyle =
        hDefinition.isNull() ? String() : hDefinition->getMsoStyle(m_tReport.tLocale, m_tReport.tLanguage);
    if (isText(nColumn, sStyle))
        return WebTextFormatDefinition().getMsoStyle(m_tReport.tLocale, m_tReport.tLanguage);
    return sStyle;
}

// Text stays text where it looks like a number, a date or a formula. So do numbers and dates under a pattern that no
// spreadsheet has, and those that a pattern would divide a second time: the page shows thousands already.
bool Page::isText(std::size_t nColumn, const String& sStyle) const
{
    if (m_tColumns.isText(nColumn) || !m_tColumns.hasExcelPattern(nColumn) ||
        looksLikeNumber(*m_tColumns[nColumn].hFormatter))
        return true;
    const WebValueFormatDefinitionHandle& hDefinition = m_tReport.vColumns[nColumn].hDefinition;
    if (hDefinition.isNull() || hDefinition->GetDefType() != WebValueFormatDefinition::kCustomFormat)
        return false;
    String sFormula;
    hDefinition->populateCurrencyTagColumnFormulaIfApplies(sFormula);
    // "0E+00" shows 12 as 1E+02, which is a number of its own to a spreadsheet.
    const bool bExponent = sStyle.find(L"E+") != String::npos || sStyle.find(L"E-") != String::npos;
    return sFormula.empty() && (sStyle.empty() || bExponent || dividesByThousands(sStyle));
}

std::string Page::classOf(std::size_t nColumn, bool bCell) const
{
    std::string sClass;
    if (bCell && m_vStyled[nColumn])
        sClass = "c" + std::to_string(nColumn + 1);
    else if (m_tColumns.isNumber(nColumn))
        sClass = "number";
    else if (m_tColumns.isText(nColumn))
        sClass = "text";
    else if (m_tColumns.isBinary(nColumn))
        sClass = "data";
    return sClass.empty() ? sClass : " class=\"" + sClass + "\"";
}

void Page::writeHeadings()
{
    m_tOutput.write(
        "<main tabindex=\"0\" aria-labelledby=\"title\">\n<table aria-labelledby=\"title\">\n<thead>\n<tr>\n");
    for (std::size_t nColumn = 0; nColumn < m_tColumns.count(); ++nColumn)
        m_tOutput.write("<th scope=\"col\"" + classOf(nColumn, false) + ">" +
                        escaped(m_tReport.vColumns[nColumn].sHeading) + "</th>\n");
    m_tOutput.write("</tr>\n</thead>\n<tbody>\n");
}

void Page::writeFoot(std::uint64_t nRows)
{
    const std::string sCount = escaped(rowCountText(nRows, m_tReport.tLocale, m_tReport.tLanguage));
    m_tOutput.write("</tbody>\n</table>\n</main>\n<footer>\n<p dir=\"ltr\">" + sCount + "</p>\n</footer>\n");
    m_tOutput.write(ksScript);
    m_tOutput.write("</body>\n</html>\n");
}

}  // namespace

void writeHtmlReport(const ReportDefinition& tReport, DataSource& tData, unsigned nThreads, OutputFile& tOutput)
{
    Page(tReport, tData, tOutput).write(nThreads);
}

}  // namespace tov
