#include "database.h"

#include <gtest/gtest.h>
#include <sqlite3.h>

namespace tov {

void makeDatabase(const std::string& sPath, const std::string& sSql)
{
    sqlite3* pDatabase = nullptr;
    ASSERT_EQ(sqlite3_open(sPath.c_str(), &pDatabase), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(pDatabase, sSql.c_str(), nullptr, nullptr, nullptr), SQLITE_OK) << sqlite3_errmsg(pDatabase);
    sqlite3_close(pDatabase);
}

}  // namespace tov
