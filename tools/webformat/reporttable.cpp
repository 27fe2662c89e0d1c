#include "reporttable.h"

#include <algorithm>
#include <array>
#include <utility>

#include "cellvalue.h"
#include "corefacade/imagesizedeterminer.h"
#include "webbedrock/utf8.h"
#include "webformat/valueformatdefinition.h"

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

// "[image 16x8]" for the bytes of an image, nothing for others.
String imageSizeText(std::string_view sBytes)
{
    ImageSizeDeterminer::ImageType eType = ImageSizeDeterminer::kPNG;
    unsigned long nWidth = 0;
    unsigned long nHeight = 0;
    if (!ImageSizeDeterminer::determineTypeAndSizesOfBuffer(reinterpret_cast<const unsigned char*>(sBytes.data()),
                                                            sBytes.size(), eType, nWidth, nHeight))
        return String();
    return L"[image " + std::to_wstring(nWidth) + L"x" + std::to_wstring(nHeight) + L"]";
}

}  // namespace

ReportTable::ReportTable(const ReportDefinition& tReport, DataSource& tData, const Options& tOptions)
    : m_tReport(tReport), m_tData(tData), m_tOptions(tOptions)
{
    for (const ReportColumn& tColumn : tReport.vColumns)
        m_vColumns.push_back(bind(tColumn));
}

ReportTable::Column ReportTable::bind(const ReportColumn& tColumn) const
{
    const std::vector<std::string>& vNames = m_tData.columnNames();
    const auto tFound = std::find(vNames.begin(), vNames.end(), toUtf8(tColumn.sName));
    if (tFound == vNames.end())
    {
        std::string sNames;
        for (const std::string& sName : vNames)
            sNames += (sNames.empty() ? "" : ", ") + quotedForMessage(sName);
        throw InputError(tColumn.tPlace, "found the column " + quotedForMessage(toUtf8(tColumn.sName)) +
                                             ", expected one of the data: " + sNames);
    }
    return {&tColumn, static_cast<std::size_t>(tFound - vNames.begin()), makeFormatter(tColumn)};
}

WebValueFormatterHandle ReportTable::makeFormatter(const ReportColumn& tColumn) const
{
    // Machines read "." as the decimal point wherever the report's readers live.
    if (m_tOptions.eFormatters == kMachineReadable)
        return WebValueFormatter::GetCSVFormatter(tColumn.tType, Locale::kUSA, m_tOptions.eOutput);
    const WebValueFormatterHandle hFormatter =
        WebValueFormatter::GetFormatter(tColumn.tType, tColumn.hDefinition, m_tReport.tLocale, m_tReport.tResolver,
                                        m_tOptions.eOutput, 0, 0, m_tReport.tLanguage, String());
    const bool bApplies = hFormatter.isNull() ? tColumn.hDefinition.isNull()
                                              : hFormatter->valueStorageType() == tColumn.tType.storageType();
    if (!bApplies)
        throw InputError(tColumn.tFormatPlace.sFile.empty() ? tColumn.tPlace : tColumn.tFormatPlace,
                         "found a data format that does not apply, expected one for values of the type " +
                             quotedForMessage(tColumn.tType.name()));
    return hFormatter;
}

bool ReportTable::nextRow(std::vector<String>& vCells)
{
    if (!m_tData.nextRow(m_vRow))
        return false;
    ++m_nRows;
    m_tProgress.update(m_tData.progress());
    vCells.resize(m_vColumns.size());
    m_vValues.resize(m_vColumns.size());
    for (std::size_t nColumn = 0; nColumn < m_vColumns.size(); ++nColumn)
    {
        const Column& tColumn = m_vColumns[nColumn];
        const DataCell& tCell = m_vRow[tColumn.nDataColumn];
        m_vValues[nColumn] = valueOf(tColumn, tCell);
        formatCell(tColumn, m_vValues[nColumn], tCell, vCells[nColumn]);
    }
    return true;
}

void ReportTable::rewind()
{
    m_tData.rewind();
    m_nRows = 0;
}

TypedValue ReportTable::valueOf(const Column& tColumn, const DataCell& tCell) const
{
    try
    {
        return valueOfCell(tColumn.pColumn->tType, tCell);
    }
    catch (const InputError& tError)
    {
        throw InputError(m_tData.placeOf(tCell) + ": column " + quotedForMessage(toUtf8(tColumn.pColumn->sName)) +
                         ": " + tError.what());
    }
}

void ReportTable::formatCell(const Column& tColumn, const TypedValue& tValue, const DataCell& tCell,
                             String& sResult) const
{
    if (m_tOptions.bImageSizes && tValue.storage() == SQLDataType::kStorageRawValue)
    {
        sResult = imageSizeText(tValue.bytes());
        if (!sResult.empty())
            return;
    }
    StringBufferTemplate<wchar_t, 255> tBuffer;
    if (tColumn.hFormatter.isNull())
        appendStored(tValue, tCell, tBuffer);
    else
        tColumn.hFormatter->formatToBuffer(tBuffer, tValue.pointer());
    sResult.assign(tBuffer.data(), tBuffer.length());
}

// Text as it is; what is a value of another type has been checked to be one and is shown as it was written.
void ReportTable::appendStored(const TypedValue& tValue, const DataCell& tCell,
                               StringBufferBaseTemplate<wchar_t>& tBuffer) const
{
    if (tValue.isNull())
        return;
    const bool bText = tValue.storage() == SQLDataType::kStorageWChar;
    const String sText = bText ? String(tValue.text()) : fromUtf8(tCell.sText).value_or(String());
    ValueFormatterTypes::encodeToBufferOfType(tBuffer, m_tOptions.eOutput, sText.data(), sText.size());
}

bool ReportTable::hasExcelPattern(std::size_t nColumn) const
{
    const WebValueFormatterHandle& hFormatter = m_vColumns[nColumn].hFormatter;
    return hFormatter.isNull() || hFormatter->IsValidExcelPattern();
}

bool ReportTable::isNumber(std::size_t nColumn) const
{
    return m_vColumns[nColumn].pColumn->tType.category() == SQLDataType::kCatNumber;
}

bool ReportTable::isText(std::size_t nColumn) const
{
    return m_vColumns[nColumn].pColumn->tType.IsText();
}

bool ReportTable::isBinary(std::size_t nColumn) const
{
    return m_vColumns[nColumn].pColumn->tType.category() == SQLDataType::kCatBinary;
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
