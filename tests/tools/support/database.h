#pragma once

#include <string>

namespace tov {

// Makes an SQLite database with these statements.
void makeDatabase(const std::string& sPath, const std::string& sSql);

}  // namespace tov
