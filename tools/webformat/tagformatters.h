#pragma once

#include <cstddef>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "reportcolumns.h"

namespace tov {

// The formatters of a report's currencies by row: for each column one a currency tag, made when a row first asks for
// it.
//
// Finding the formatter of the tag that the column's row before had costs one comparison, of another one a search; only
// new tags allocate. At most `knMostTags` are remembered a column, then all are forgotten: the data may be anybody's.
// One thread.
class TagFormatters
{
public:
    static constexpr std::size_t knMostTags = 1024;
    static constexpr std::size_t knLongestTag = 128;  // bytes; what is longer is unknown and not remembered

    explicit TagFormatters(const ReportColumns& tColumns);

    struct Found
    {
        const WebValueFormatterHandle* pFormatter;  // good until the next call for the column
        bool bNewUnknown;  // the tag is none of a currency, and was not asked for before: shown without a currency
    };

    // The formatter for a tag, UTF-8 and not empty. `nColumn` is a column with a currency by row.
    Found find(std::size_t nColumn, std::string_view sTag);

private:
    struct Remembered
    {
        WebValueFormatterHandle hFormatter;
        bool bKnown = false;
    };

    using Tags = std::map<std::string, Remembered, std::less<>>;

    struct ColumnTags
    {
        Tags tTags;
        Tags::const_iterator tLast;  // the end unless a row has been asked for
    };

    Remembered make(std::size_t nColumn, std::string_view sTag) const;

    const ReportColumns& m_tColumns;
    std::vector<ColumnTags> m_vColumns;
};

}  // namespace tov
