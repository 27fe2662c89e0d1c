#pragma once

#include <memory>
#include <string>

#include "datasource.h"

namespace tov {

// Whether the file starts as an SQLite database does.
bool isSqliteFile(const std::string& sPath);

// Reads a table or view of an SQLite database in the order of its rows. The database is opened for reading only and
// both passes over it see the same state. An empty `sTable`: the only table that the database has.
//
// Values come as they are stored: integers, reals, text, bytes, nulls. An empty text is a text. Throws InputError for a
// file that is no database or is damaged, an unknown table, text that is not UTF-8 or holds U+0000.
std::unique_ptr<DataSource> openSqliteTable(const std::string& sPath, const std::string& sTable);

}  // namespace tov
