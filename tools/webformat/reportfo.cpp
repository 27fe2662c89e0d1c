#include <cmath>
#include <cstdio>
#include <string>
#include <vector>

#include "focellwriter.h"
#include "folayout.h"
#include "fomarkup.h"
#include "reporttable.h"
#include "reportwriters.h"
#include "textdirection.h"

namespace tov {

namespace {

// In the order in which a processor looks for a character; the configuration that comes along maps each to a file.
constexpr std::wstring_view ksFonts =
    L"DejaVu Sans Condensed, FreeSans, FreeSerif, IPAGothic, WenQuanYi Zen Hei, Symbola, IPAmjMincho";

constexpr const char* kpHead = R"(<?xml version="1.0" encoding="UTF-8"?>
<fo:root xmlns:fo="http://www.w3.org/1999/XSL/Format")";

String escaped(std::wstring_view sText)
{
    StringBufferTemplate<wchar_t, 255> tBuffer;
    ValueFormatterTypes::encodeToBufferOfType(tBuffer, ValueFormatterTypes::kPDF, sText.data(), sText.size());
    return String(tBuffer.view());
}

// "12.50pt"
String points(double fPoints)
{
    char aText[32];
    const int nLength = std::snprintf(aText, sizeof aText, "%.2fpt", fPoints);
    return String(aText, aText + nLength);
}

// Writes one report: measures every cell first, then writes the document from top to bottom.
class Document
{
public:
    Document(ReportTable& tTable, OutputFile& tOutput);

    void write();

private:
    void measure();
    void readCell(std::size_t nColumn, const String& sCell, FoContentSink& tSink) const;
    void writeHead();
    void writeMetadata();
    void writeFooter();
    void writeTable();
    void writeColumns();
    void writeHeadings();
    void writeRow(const std::vector<String>& vCells);
    void writeCell(std::size_t nColumn, const String& sContent);
    FoCellWriter writerOf(std::size_t nColumn) const;
    String title() const;
    String printed(const String& sText) const;

    ReportTable& m_tTable;
    OutputFile& m_tOutput;
    bool m_bRightToLeft;
    FoLayout m_tLayout;
    std::uint64_t m_nRows = 0;
};

Document::Document(ReportTable& tTable, OutputFile& tOutput)
    : m_tTable(tTable), m_tOutput(tOutput), m_bRightToLeft(isRightToLeft(tTable.report().tLocale.tag()))
{
}

void Document::write()
{
    measure();
    m_tTable.rewind();
    writeHead();
    writeMetadata();
    // The document has its language, the text has none: shapes that a font keeps for other languages are no use to
    // values in many scripts, and processors give up joining letters where the font does not know the language.
    m_tOutput.write(L"<fo:page-sequence id=\"report\" master-reference=\"page\" language=\"none\" country=\"none\">\n");
    writeFooter();
    m_tOutput.write(
        L"<fo:flow flow-name=\"xsl-region-body\">\n<fo:block font-size=\"14pt\" font-weight=\"bold\" "
        L"space-after=\"8pt\" keep-with-next=\"always\">" +
        title() + L"</fo:block>\n");
    writeTable();
    m_tOutput.write(L"</fo:flow>\n</fo:page-sequence>\n</fo:root>\n");
}

// What is binary is an HTML element or digits; everything else is encoded for XML.
void Document::readCell(std::size_t nColumn, const String& sCell, FoContentSink& tSink) const
{
    if (m_tTable.isBinary(nColumn))
        readHtmlFragment(sCell, tSink);
    else
        readFoCell(sCell, tSink);
}

void Document::measure()
{
    std::vector<FoCellMeasure> vMeasures(m_tTable.columnCount());
    FoStyle tHeading;
    tHeading.bBold = true;
    for (std::size_t nColumn = 0; nColumn < vMeasures.size(); ++nColumn)
    {
        vMeasures[nColumn].text(m_tTable.report().vColumns[nColumn].sHeading, tHeading);
        vMeasures[nColumn].endCell();
    }
    std::vector<String> vCells;
    for (; m_tTable.nextRow(vCells); ++m_nRows)
        for (std::size_t nColumn = 0; nColumn < vCells.size(); ++nColumn)
        {
            readCell(nColumn, vCells[nColumn], vMeasures[nColumn]);
            vMeasures[nColumn].endCell();
        }
    std::vector<FoColumnNeeds> vNeeds;
    for (std::size_t nColumn = 0; nColumn < vMeasures.size(); ++nColumn)
        vNeeds.push_back({vMeasures[nColumn].longestWord(), vMeasures[nColumn].longestLine(),
                          vMeasures[nColumn].widestPicture(), m_tTable.isText(nColumn) || m_tTable.isBinary(nColumn)});
    m_tLayout = chooseLayout(vNeeds);
}

String Document::title() const
{
    const String& sTitle = m_tTable.report().sTitle;
    return printed(sTitle.empty() ? String(L"Report") : sTitle);
}

// A text of the report itself, as FO.
String Document::printed(const String& sText) const
{
    FoCellWriter tWriter({1000000, 72, m_bRightToLeft ? TextDirection::kRightToLeft : TextDirection::kLeftToRight});
    tWriter.text(sText, FoStyle());
    return tWriter.finish();
}

void Document::writeHead()
{
    m_tOutput.write(kpHead);
    m_tOutput.write(L" xml:lang=\"" + escaped(m_tTable.report().tLocale.tag()) + L"\" font-family=\"" +
                    String(ksFonts) + L"\" font-size=\"" + points(m_tLayout.fFontSize) +
                    L"\" line-height=\"1.35\" color=\"#1d2228\"" + (m_bRightToLeft ? L" writing-mode=\"rl-tb\"" : L"") +
                    L">\n");
    m_tOutput.write(L"<fo:layout-master-set>\n<fo:simple-page-master master-name=\"page\" page-width=\"" +
                    points(m_tLayout.fPageWidth) + L"\" page-height=\"" + points(m_tLayout.fPageHeight) +
                    L"\" margin=\"" + points(m_tLayout.fMargin) +
                    L"\">\n<fo:region-body margin-bottom=\"20pt\"/>\n<fo:region-after extent=\"12pt\"/>\n"
                    L"</fo:simple-page-master>\n</fo:layout-master-set>\n");
}

void Document::writeMetadata()
{
    m_tOutput.write(
        L"<fo:declarations>\n<x:xmpmeta xmlns:x=\"adobe:ns:meta/\">\n"
        L"<rdf:RDF xmlns:rdf=\"http://www.w3.org/1999/02/22-rdf-syntax-ns#\">\n"
        L"<rdf:Description rdf:about=\"\" xmlns:dc=\"http://purl.org/dc/elements/1.1/\" "
        L"xmlns:xmp=\"http://ns.adobe.com/xap/1.0/\">\n<dc:title>" +
        escaped(m_tTable.report().sTitle.empty() ? L"Report" : m_tTable.report().sTitle) +
        L"</dc:title>\n<xmp:CreatorTool>webformat</xmp:CreatorTool>\n"
        L"</rdf:Description>\n</rdf:RDF>\n</x:xmpmeta>\n</fo:declarations>\n");
}

void Document::writeFooter()
{
    const ReportDefinition& tReport = m_tTable.report();
    const String& sLanguage = tReport.tLanguage.GetTag();
    const bool bEnglish = sLanguage.compare(0, 2, L"en") == 0;
    m_tOutput.write(
        L"<fo:static-content flow-name=\"xsl-region-after\">\n<fo:block text-align-last=\"justify\" "
        L"color=\"#56606c\">" +
        printed(rowCountText(m_nRows, tReport.tLocale, tReport.tLanguage)) + L"<fo:leader leader-pattern=\"space\"/>" +
        (bEnglish ? L"Page " : L"") + L"<fo:page-number/>" + (bEnglish ? L" of " : L" / ") +
        L"<fo:page-number-citation-last ref-id=\"report\"/></fo:block>\n</fo:static-content>\n");
}

void Document::writeTable()
{
    if (m_tTable.columnCount() == 0)
        return;
    m_tOutput.write(L"<fo:table table-layout=\"fixed\" width=\"100%\" linefeed-treatment=\"preserve\">\n");
    writeColumns();
    writeHeadings();
    m_tOutput.write(L"<fo:table-body>\n");
    std::vector<String> vCells;
    std::uint64_t nRow = 0;
    for (; m_tTable.nextRow(vCells); ++nRow)
        writeRow(vCells);
    if (nRow == 0)  // a body without a row is not allowed
        m_tOutput.write(L"<fo:table-row><fo:table-cell number-columns-spanned=\"" +
                        std::to_wstring(m_tTable.columnCount()) + L"\"><fo:block/></fo:table-cell></fo:table-row>\n");
    m_tOutput.write(L"</fo:table-body>\n</fo:table>\n");
}

void Document::writeColumns()
{
    // What one width loses in rounding goes to the next: rounded one by one they could be wider than the page.
    double fRest = 0;
    for (const double fWidth : m_tLayout.vWidths)
    {
        const double fRounded = std::round((fWidth + fRest) * 100) / 100;
        fRest += fWidth - fRounded;
        m_tOutput.write(L"<fo:table-column column-width=\"" + points(fRounded) + L"\"/>\n");
    }
}

void Document::writeHeadings()
{
    m_tOutput.write(
        L"<fo:table-header>\n<fo:table-row font-weight=\"bold\" color=\"#56606c\" "
        L"background-color=\"#e7ebf0\" display-align=\"after\">\n");
    FoStyle tBold;
    tBold.bBold = true;
    for (std::size_t nColumn = 0; nColumn < m_tTable.columnCount(); ++nColumn)
    {
        FoCellWriter tWriter = writerOf(nColumn);
        tWriter.text(m_tTable.report().vColumns[nColumn].sHeading, tBold);
        writeCell(nColumn, tWriter.finish());
        m_tOutput.write(L"\n");
    }
    m_tOutput.write(L"</fo:table-row>\n</fo:table-header>\n");
}

FoCellWriter Document::writerOf(std::size_t nColumn) const
{
    const TextDirection eDirection = m_bRightToLeft ? TextDirection::kRightToLeft : TextDirection::kLeftToRight;
    // A sign in front of a number stays there.
    const TextDirection eLines = m_tTable.isNumber(nColumn) ? TextDirection::kLeftToRight : TextDirection::kNeutral;
    return FoCellWriter({m_tLayout.lineWidth(nColumn), m_tLayout.contentWidth(nColumn), eDirection, eLines});
}

void Document::writeRow(const std::vector<String>& vCells)
{
    m_tOutput.write(L"<fo:table-row keep-together.within-column=\"1\">");
    for (std::size_t nColumn = 0; nColumn < vCells.size(); ++nColumn)
    {
        FoCellWriter tWriter = writerOf(nColumn);
        readCell(nColumn, vCells[nColumn], tWriter);
        writeCell(nColumn, tWriter.finish());
    }
    m_tOutput.write(L"</fo:table-row>\n");
}

void Document::writeCell(std::size_t nColumn, const String& sContent)
{
    m_tOutput.write(L"<fo:table-cell padding=\"2pt 3pt\" border-bottom=\"0.4pt solid #d3dae2\"");
    m_tOutput.write(m_tTable.isNumber(nColumn) ? L" text-align=\"right\"><fo:block>" : L"><fo:block>");
    m_tOutput.write(sContent);
    m_tOutput.write(L"</fo:block></fo:table-cell>");
}

}  // namespace

void writeFoReport(const ReportDefinition& tReport, DataSource& tData, OutputFile& tOutput)
{
    ReportTable tTable(tReport, tData, {ValueFormatterTypes::kPDF, false});
    Document(tTable, tOutput).write();
}

}  // namespace tov
