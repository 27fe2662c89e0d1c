#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "datasource.h"
#include "reportcolumns.h"
#include "tagformatters.h"
#include "typedvalue.h"
#include "unknowntags.h"
#include "webbedrock/stringbuffer.h"
#include "webformat/valueformatter.h"

namespace tov {

// Shows the cells of one row after the other. The memory of values is used again, so that most cells need no heap.
//
// Each thread has its own; the columns and the data are shared.
class RowFormatter
{
public:
    // `bImageSizes` shows images as "[image 16x8]". The columns and the data must outlive this.
    RowFormatter(const ReportColumns& tColumns, const DataSource& tData, bool bImageSizes);

    // Goes to a row of a chunk and reads its values. Throws InputError, with the place, for the first cell that is no
    // value of its column's type. Currency tags that are unknown are added to `vUnknownTags` when they
    // are met first, up to 101 of them in all rows.
    void setRow(const DataChunk& tChunk, std::size_t nRow, std::vector<UnknownTag>& vUnknownTags);

    // Appends the text of a cell of the row.
    void append(std::size_t nColumn, StringBufferBaseTemplate<wchar_t>& tBuffer) const;

    // A cell's value, null for a null, and the formatter that shows it, which may be another one in each row. Good
    // until the next row.
    const TypedValue& value(std::size_t nColumn) const { return m_vValues[nColumn]; }
    const WebValueFormatterHandle& formatter(std::size_t nColumn) const { return *m_vFormatters[nColumn]; }

    const ReportColumns& columns() const { return m_tColumns; }

private:
    void readValue(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn);
    const WebValueFormatterHandle* formatterOfRow(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn,
                                                  std::vector<UnknownTag>& vUnknownTags);
    void noteUnknown(const DataChunk& tChunk, std::size_t nRow, std::size_t nTagColumn, std::string_view sTag,
                     std::vector<UnknownTag>& vUnknownTags);

    const ReportColumns& m_tColumns;
    const DataSource& m_tData;
    bool m_bImageSizes;
    TagFormatters m_tTagFormatters;
    UnknownTagFilter m_tUnknownTags;
    std::vector<TypedValue> m_vValues;
    std::vector<const WebValueFormatterHandle*> m_vFormatters;
};

}  // namespace tov
