#pragma once

#include "corefacade/sqldatatype.h"
#include "datasource.h"
#include "typedvalue.h"

namespace tov {

// Sets `tValue` to the value of a cell in the storage of its column's type. Cells of databases count as their text
// where that is a value of the type: the integer 5 in a text column is "5", the real 2.0 in a column of integers is 2.
// Bytes are values of binary columns only. Throws InputError for anything else: `found the real 2.5, expected a whole
// number`. Where one text follows the other their memory is used again.
void readCellValue(const SQLDataType& tType, const DataCell& tCell, TypedValue& tValue);

}  // namespace tov
