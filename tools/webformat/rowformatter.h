#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "datasource.h"
#include "reportcolumns.h"
#include "tagformatters.h"
#include "typedvalue.h"
#include "webbedrock/stringbuffer.h"
#include "webformat/valueformatter.h"

namespace tov {

// A row whose currency tag is unknown.
struct UnknownTag
{
    std::string sTag;    // as messages show it
    std::string sPlace;  // of the cell that holds it, with its column
};

// Shows the cells of one row after the other. The memory of values is used again, so that most cells need no heap.
//
// Each thread has its own; the columns and the data are shared.
class RowFormatter
{
public:
    // `bImageSizes` shows images as "[image 16x8]". The columns and the data must outlive this.
    RowFormatter(const ReportColumns& tColumns, const DataSource& tData, bool bImageSizes);

    // Goes to a row of a chunk and reads its values. Throws InputError, with the place, for the first cell that is no
    // value of its column's type. A currency tag that is unknown is added to `vUnknownTags` when it is met first.
    void setRow(const DataChunk& tChunk, std::size_t nRow, std::vector<UnknownTag>& vUnknownTags);

    // Appends the text of a cell of the row.
    void append(std::size_t nColumn, StringBufferBaseTemplate<wchar_t>& tBuffer) const;

    // A cell's value, null for a null, and the formatter that shows it, which may be another one in each row. Good
    // until the next row; the handle is null for values shown as they are stored.
    const TypedValue& value(std::size_t nColumn) const { return m_vValues[nColumn]; }
    const WebValueFormatterHandle& formatter(std::size_t nColumn) const { return *m_vFormatters[nColumn]; }

    const ReportColumns& columns() const { return m_tColumns; }

private:
    void readValue(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn);
    const WebValueFormatterHandle* formatterOfRow(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn,
                                                  std::vector<UnknownTag>& vUnknownTags);

    const ReportColumns& m_tColumns;
    const DataSource& m_tData;
    bool m_bImageSizes;
    TagFormatters m_tTagFormatters;
    std::vector<TypedValue> m_vValues;
    std::vector<const WebValueFormatterHandle*> m_vFormatters;
};

}  // namespace tov
