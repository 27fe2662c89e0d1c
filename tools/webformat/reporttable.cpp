#include "reporttable.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tov {

namespace {

constexpr std::array<std::pair<std::wstring_view, std::wstring_view>, 11> kaRowLabels = {{{L"de", L"Zeilen: "},
                                                                                          {L"es", L"Filas: "},
                                                                                          {L"fr", L"Lignes\u00A0: "},
                                                                                          {L"it", L"Righe: "},
                                                                                          {L"ja", L"行数: "},
                                                                                          {L"ko", L"행 수: "},
                                                                                          {L"nl", L"Rijen: "},
                                                                                          {L"pl", L"Wiersze: "},
                                                                                          {L"pt", L"Linhas: "},
                                                                                          {L"ru", L"Строк: "},
                                                                                          {L"zh", L"行数: "}}};

bool isOfLanguage(std::wstring_view sTag, std::wstring_view sLanguage)
{
    const std::wstring_view sFirst = sTag.substr(0, sTag.find_first_of(L"-_"));
    return std::equal(sFirst.begin(), sFirst.end(), sLanguage.begin(), sLanguage.end(),
                      [](wchar_t nLeft, wchar_t nRight)
                      { return (nLeft >= L'A' && nLeft <= L'Z' ? nLeft + (L'a' - L'A') : nLeft) == nRight; });
}

}  // namespace

ReportTable::ReportTable(const ReportDefinition& tReport, DataSource& tData, const Options& tOptions)
    : m_tData(tData),
      m_tColumns(tReport, tData, tOptions.eOutput, ReportColumns::kDisplay),
      m_tRow(m_tColumns, tData, tOptions.bImageSizes)
{
}

bool ReportTable::nextRow()
{
    while (m_nNext == m_tChunk.rowCount())
    {
        if (m_tChunk.pError)
            std::rethrow_exception(m_tChunk.pError);
        if (!nextChunk())
            return false;
    }
    m_tRow.setRow(m_tChunk, m_nNext++, m_vUnknownTags);
    if (!m_vUnknownTags.empty())
        m_tWarnings.add(m_vUnknownTags);
    m_vUnknownTags.clear();
    ++m_nRows;
    return true;
}

bool ReportTable::nextChunk()
{
    m_nNext = 0;
    if (!m_tData.read(m_tChunk))
    {
        m_tChunk.clear();
        return false;
    }
    m_tData.parse(m_tChunk);
    m_tProgress.update(m_tData.progress());
    return true;
}

bool ReportTable::nextRow(std::vector<String>& vCells)
{
    if (!nextRow())
        return false;
    vCells.resize(columnCount());
    StringBufferTemplate<wchar_t, 255> tBuffer;
    for (std::size_t nColumn = 0; nColumn < vCells.size(); ++nColumn)
    {
        tBuffer.clear();
        m_tRow.append(nColumn, tBuffer);
        vCells[nColumn].assign(tBuffer.data(), tBuffer.length());
    }
    return true;
}

void ReportTable::rewind()
{
    m_tData.rewind();
    m_tChunk.clear();
    m_nNext = 0;
    m_nRows = 0;
}

String rowCountText(std::uint64_t nCount, const Locale& tLocale, const KTWUILanguage& tLanguage)
{
    const WebValueFormatterHandle hFormatter = WebValueFormatter::GetCustomFormatter(
        SQLDataType(SQLDataType::kUnsignedBigInt), L"#,##0", tLocale, ValueFormatterTypes::kText, tLanguage);
    const String sCount = hFormatter->formatAsString(&nCount);
    // A label in front goes with every number.
    for (const auto& [sLanguage, sLabel] : kaRowLabels)
        if (isOfLanguage(tLanguage.GetTag(), sLanguage))
            return String(sLabel) + sCount;
    return sCount + (nCount == 1 ? L" row" : L" rows");
}

}  // namespace tov
