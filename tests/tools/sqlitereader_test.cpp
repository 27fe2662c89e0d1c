#include "tools/webformat/sqlitereader.h"

#include <gtest/gtest.h>

#include "tools/support/command.h"
#include "tools/support/database.h"
#include "tools/webformat/inputerror.h"

namespace tov {

TEST(SqliteReader, TakesFewRowsOfManyColumnsAtATime)
{
    const TemporaryFolder tFolder;
    std::string sColumns = "c0";
    for (int nColumn = 1; nColumn < 1000; ++nColumn)
        sColumns += ", c" + std::to_string(nColumn);
    makeDatabase(tFolder.path("d.db"),
                 "CREATE TABLE t (" + sColumns +
                     "); WITH RECURSIVE n (i) AS (SELECT 1 UNION ALL SELECT i + 1 FROM n WHERE i < 200) "
                     "INSERT INTO t (c0) SELECT i FROM n");
    const std::unique_ptr<DataSource> pData = openSqliteTable(tFolder.path("d.db"), "t");
    std::size_t nRows = 0;
    for (DataChunk tChunk; pData->read(tChunk); nRows += tChunk.rowCount())
    {
        EXPECT_LT(tChunk.vEntries.size(), 34000u);
        EXPECT_EQ(tChunk.cell(0, 0).nInteger, static_cast<std::int64_t>(nRows + 1));
    }
    EXPECT_EQ(nRows, 200u);
}

TEST(SqliteReader, SaysWhereADatabaseHasNoTable)
{
    const TemporaryFolder tFolder;
    makeDatabase(tFolder.path("d.db"), "CREATE TABLE t (a); DROP TABLE t");
    for (const char* pTable : {"", "t"})
    {
        try
        {
            openSqliteTable(tFolder.path("d.db"), pTable);
            ADD_FAILURE() << pTable;
        }
        catch (const InputError& tError)
        {
            const std::string sTail = *pTable ? "found no table \"t\"" : "found no table, expected a database with one";
            EXPECT_NE(std::string(tError.what()).find("d.db: " + sTail), std::string::npos) << tError.what();
        }
    }
}

}  // namespace tov
