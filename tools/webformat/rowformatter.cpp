#include "rowformatter.h"

#include <utility>

#include "cellvalue.h"
#include "corefacade/imagesizedeterminer.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

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

// A tag as the data holds it; databases may hold anything in its place.
std::string tagOf(const DataCell& tCell)
{
    switch (tCell.eKind)
    {
    case DataCell::kInteger: return std::to_string(tCell.nInteger);
    case DataCell::kReal: return std::to_string(tCell.fReal);
    default: return std::string(tCell.sText);
    }
}

}  // namespace

RowFormatter::RowFormatter(const ReportColumns& tColumns, const DataSource& tData, bool bImageSizes)
    : m_tColumns(tColumns),
      m_tData(tData),
      m_bImageSizes(bImageSizes),
      m_tTagFormatters(tColumns),
      m_vValues(tColumns.count())
{
    for (std::size_t nColumn = 0; nColumn < tColumns.count(); ++nColumn)
        m_vFormatters.push_back(&tColumns[nColumn].hFormatter);
}

void RowFormatter::setRow(const DataChunk& tChunk, std::size_t nRow, std::vector<UnknownTag>& vUnknownTags)
{
    for (std::size_t nColumn = 0; nColumn < m_vValues.size(); ++nColumn)
    {
        readValue(tChunk, nRow, nColumn);
        if (m_tColumns[nColumn].nTagColumn)
            m_vFormatters[nColumn] = formatterOfRow(tChunk, nRow, nColumn, vUnknownTags);
    }
}

void RowFormatter::readValue(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn)
{
    const ReportColumns::Column& tColumn = m_tColumns[nColumn];
    try
    {
        readCellValue(tColumn.pColumn->tType, tChunk.cell(nRow, tColumn.nDataColumn), m_vValues[nColumn]);
    }
    catch (const InputError& tError)
    {
        throw InputError(m_tData.placeOf(tChunk, nRow, tColumn.nDataColumn) + ": column " +
                         quotedForMessage(toUtf8(tColumn.pColumn->sName)) + ": " + tError.what());
    }
}

const WebValueFormatterHandle* RowFormatter::formatterOfRow(const DataChunk& tChunk, std::size_t nRow,
                                                            std::size_t nColumn, std::vector<UnknownTag>& vUnknownTags)
{
    const std::size_t nTagColumn = *m_tColumns[nColumn].nTagColumn;
    const DataCell tCell = tChunk.cell(nRow, nTagColumn);
    const std::string sNumber = tCell.eKind == DataCell::kText ? std::string() : tagOf(tCell);
    const std::string_view sTag = tCell.eKind == DataCell::kText ? tCell.sText : std::string_view(sNumber);
    if (sTag.empty())
        return &m_tColumns[nColumn].hFormatter;
    const TagFormatters::Found tFound = m_tTagFormatters.find(nColumn, sTag);
    if (tFound.bNewUnknown && !m_tUnknownTags.isFull())
        noteUnknown(tChunk, nRow, nTagColumn, sTag, vUnknownTags);
    return tFound.pFormatter;
}

void RowFormatter::noteUnknown(const DataChunk& tChunk, std::size_t nRow, std::size_t nTagColumn, std::string_view sTag,
                               std::vector<UnknownTag>& vUnknownTags)
{
    std::string sShown = quotedForMessage(sTag);
    if (m_tUnknownTags.takes(sShown))
        vUnknownTags.push_back({std::move(sShown), m_tData.placeOf(tChunk, nRow, nTagColumn) + ": column " +
                                                       quotedForMessage(m_tData.columnNames()[nTagColumn])});
}

void RowFormatter::append(std::size_t nColumn, StringBufferBaseTemplate<wchar_t>& tBuffer) const
{
    const TypedValue& tValue = m_vValues[nColumn];
    if (m_bImageSizes && tValue.storage() == SQLDataType::kStorageRawValue)
    {
        const String sSize = imageSizeText(tValue.bytes());
        tBuffer.append(sSize);
        if (!sSize.empty())
            return;
    }
    (*m_vFormatters[nColumn])->formatToBuffer(tBuffer, tValue.pointer());
}

}  // namespace tov
