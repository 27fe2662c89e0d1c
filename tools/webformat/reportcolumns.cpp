#include "reportcolumns.h"

#include <algorithm>

#include "threadcollector.h"
#include "webbedrock/utf8.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

namespace {

std::size_t findColumn(const DataSource& tData, const String& sName, const InputPlace& tPlace, const char* pWhat)
{
    const std::vector<std::string>& vNames = tData.columnNames();
    const auto tFound = std::find(vNames.begin(), vNames.end(), toUtf8(sName));
    if (tFound != vNames.end())
        return static_cast<std::size_t>(tFound - vNames.begin());
    throw InputError(tPlace, "found the " + std::string(pWhat) + " " + quotedForMessage(toUtf8(sName)) +
                                 ", expected one of the data: " + listForMessage(vNames));
}

}  // namespace

ReportColumns::ReportColumns(const ReportDefinition& tReport, const DataSource& tData,
                             ValueFormatterTypes::OutputType eOutput, Formatters eFormatters)
    : m_tReport(tReport), m_eOutput(eOutput), m_eFormatters(eFormatters)
{
    for (const ReportColumn& tColumn : tReport.vColumns)
        m_vColumns.push_back(bind(tColumn, tData));
}

ReportColumns::Column ReportColumns::bind(const ReportColumn& tColumn, const DataSource& tData) const
{
    Column tBound;
    tBound.pColumn = &tColumn;
    tBound.nDataColumn = findColumn(tData, tColumn.sName, tColumn.tPlace, "column");
    if (tColumn.sTagColumn)
    {
        tBound.nTagColumn = findColumn(tData, *tColumn.sTagColumn, tColumn.tFormatPlace, "currency tag column");
        if (m_eFormatters == kMachineReadable)
            tBound.nTagColumn.reset();
    }
    // Rows without a currency are no news: the library's line about them is not shown.
    std::optional<ThreadCollector> tQuiet;
    if (tColumn.sTagColumn)
        tQuiet.emplace();
    tBound.hFormatter = makeFormatter(tColumn);
    return tBound;
}

WebValueFormatterHandle ReportColumns::makeFormatter(const ReportColumn& tColumn) const
{
    // Machines read "." as the decimal point wherever the report's readers live.
    if (m_eFormatters == kMachineReadable)
        return WebValueFormatter::GetCSVFormatter(tColumn.tType, Locale::kUSA, m_eOutput);
    const WebValueFormatterHandle hFormatter = displayFormatter(tColumn, m_tReport.tLocale);
    if (hFormatter.isNull() || hFormatter->valueStorageType() != tColumn.tType.storageType())
        throw InputError(tColumn.tFormatPlace.sFile.empty() ? tColumn.tPlace : tColumn.tFormatPlace,
                         "found a data format that does not apply, expected one for values of the type " +
                             quotedForMessage(tColumn.tType.name()));
    return hFormatter;
}

WebValueFormatterHandle ReportColumns::displayFormatter(const ReportColumn& tColumn, const Locale& tLocale) const
{
    return WebValueFormatter::GetFormatter(tColumn.tType, tColumn.hDefinition, tLocale, m_tReport.tResolver, m_eOutput,
                                           0, 0, m_tReport.tLanguage, String());
}

WebValueFormatterHandle ReportColumns::formatterOfTag(std::size_t nColumn, const String& sTag) const
{
    Locale tLocale = m_tReport.tLocale;
    tLocale.setOverridingCurrencyTag(sTag);
    return displayFormatter(*m_vColumns[nColumn].pColumn, tLocale);
}

bool ReportColumns::hasExcelPattern(std::size_t nColumn) const
{
    return m_vColumns[nColumn].hFormatter->IsValidExcelPattern();
}

bool ReportColumns::isNumber(std::size_t nColumn) const
{
    return m_vColumns[nColumn].pColumn->tType.category() == SQLDataType::kCatNumber;
}

bool ReportColumns::isText(std::size_t nColumn) const
{
    return m_vColumns[nColumn].pColumn->tType.IsText();
}

bool ReportColumns::isBinary(std::size_t nColumn) const
{
    return m_vColumns[nColumn].pColumn->tType.category() == SQLDataType::kCatBinary;
}

}  // namespace tov
