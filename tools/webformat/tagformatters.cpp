#include "tagformatters.h"

#include "intl/currencylookup.h"
#include "threadcollector.h"
#include "webbedrock/utf8.h"

namespace tov {

TagFormatters::TagFormatters(const ReportColumns& tColumns) : m_tColumns(tColumns), m_vColumns(tColumns.count())
{
    for (ColumnTags& tColumn : m_vColumns)
        tColumn.tLast = tColumn.tTags.end();
}

TagFormatters::Found TagFormatters::find(std::size_t nColumn, std::string_view sTag)
{
    if (sTag.size() > knLongestTag)
        return {&m_tColumns[nColumn].hFormatter, true};
    ColumnTags& tColumn = m_vColumns[nColumn];
    if (tColumn.tLast != tColumn.tTags.end() && tColumn.tLast->first == sTag)
        return {&tColumn.tLast->second.hFormatter, false};
    tColumn.tLast = tColumn.tTags.find(sTag);
    const bool bNew = tColumn.tLast == tColumn.tTags.end();
    if (bNew)
    {
        if (tColumn.tTags.size() == knMostTags)
            tColumn.tTags.clear();
        tColumn.tLast = tColumn.tTags.emplace(sTag, make(nColumn, sTag)).first;
    }
    return {&tColumn.tLast->second.hFormatter, bNew && !tColumn.tLast->second.bKnown};
}

TagFormatters::Remembered TagFormatters::make(std::size_t nColumn, std::string_view sTag) const
{
    const String sWide = fromUtf8(sTag).value_or(String());
    // All unknown tags are shown alike; who renders the report hears of them with their places.
    if (CurrencyLookup::getInstance().lookupCurrencyTag(sWide).isNull())
        return {m_tColumns[nColumn].hFormatter, false};
    const ThreadCollector tQuiet;
    return {m_tColumns.formatterOfTag(nColumn, sWide), true};
}

}  // namespace tov
