#include "sqlitereader.h"

#include <sqlite3.h>

#include <algorithm>
#include <cstring>
#include <fstream>
#include <utility>

#include "inputerror.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr int knLongestValue = 64 << 20;

struct CloseDatabase
{
    void operator()(sqlite3* pDatabase) const { sqlite3_close_v2(pDatabase); }
};

struct CloseStatement
{
    void operator()(sqlite3_stmt* pStatement) const { sqlite3_finalize(pStatement); }
};

using Database = std::unique_ptr<sqlite3, CloseDatabase>;
using Statement = std::unique_ptr<sqlite3_stmt, CloseStatement>;

std::string quotedName(const std::string& sName)
{
    std::string sResult = "\"";
    for (const char nByte : sName)
        sResult.append(nByte == '"' ? 2 : 1, nByte);
    return sResult + "\"";
}

class SqliteTable final : public DataSource
{
public:
    SqliteTable(const std::string& sPath, const std::string& sTable);

    const std::vector<std::string>& columnNames() const override { return m_vNames; }
    bool read(DataChunk& tChunk) override;
    void parse(DataChunk& tChunk) const override;
    void rewind() override;
    std::string placeOf(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn) const override;
    double progress() const override;

private:
    [[noreturn]] void fail() const;
    void open();
    void readColumns();
    void countRows();
    Statement prepare(const std::string& sSql) const;
    std::vector<std::string> tableNames() const;
    std::string onlyTable() const;
    void checkTable() const;
    bool readRow(DataChunk& tChunk);
    void readCell(int nColumn, DataChunk& tChunk) const;
    void checkText(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn) const;

    std::string m_sPath;
    std::string m_sTable;
    Database m_hDatabase;
    Statement m_hRows;
    std::vector<std::string> m_vNames;
    std::int64_t m_nRows = 0;
    std::int64_t m_nRow = 0;
    bool m_bEnd = false;
};

SqliteTable::SqliteTable(const std::string& sPath, const std::string& sTable) : m_sPath(sPath), m_sTable(sTable)
{
    open();
    // A read transaction: what others write meanwhile is not seen between the first row and the last.
    sqlite3_exec(m_hDatabase.get(), "BEGIN", nullptr, nullptr, nullptr);
    if (m_sTable.empty())
        m_sTable = onlyTable();
    else
        checkTable();
    countRows();
    m_hRows = prepare("SELECT * FROM main." + quotedName(m_sTable));
    readColumns();
}

void SqliteTable::open()
{
    sqlite3* pDatabase = nullptr;
    const int nResult = sqlite3_open_v2(m_sPath.c_str(), &pDatabase, SQLITE_OPEN_READONLY, nullptr);
    m_hDatabase.reset(pDatabase);
    if (nResult != SQLITE_OK)
        fail();
    // The schema of a database from elsewhere is not to be trusted: its views may call no function with side effects.
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(pDatabase, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    sqlite3_exec(pDatabase, "PRAGMA cell_size_check = ON", nullptr, nullptr, nullptr);
    sqlite3_limit(pDatabase, SQLITE_LIMIT_LENGTH, knLongestValue);
}

void SqliteTable::fail() const
{
    throw InputError({m_sPath}, sqlite3_errmsg(m_hDatabase.get()));
}

Statement SqliteTable::prepare(const std::string& sSql) const
{
    sqlite3_stmt* pStatement = nullptr;
    if (sqlite3_prepare_v2(m_hDatabase.get(), sSql.c_str(), -1, &pStatement, nullptr) != SQLITE_OK)
        fail();
    return Statement(pStatement);
}

std::vector<std::string> SqliteTable::tableNames() const
{
    const Statement hNames = prepare(
        "SELECT name FROM main.sqlite_schema WHERE type IN ('table', 'view') "
        "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY name");
    std::vector<std::string> vNames;
    int nResult = SQLITE_ROW;
    while ((nResult = sqlite3_step(hNames.get())) == SQLITE_ROW)
        if (const unsigned char* pName = sqlite3_column_text(hNames.get(), 0))
            vNames.emplace_back(reinterpret_cast<const char*>(pName));
    if (nResult != SQLITE_DONE)
        fail();
    return vNames;
}

std::string SqliteTable::onlyTable() const
{
    const std::vector<std::string> vNames = tableNames();
    if (vNames.empty())
        throw InputError({m_sPath}, "found no table, expected a database with one");
    if (vNames.size() != 1)
        throw InputError({m_sPath}, "found the tables " + listForMessage(vNames) +
                                        ", expected one of them behind a colon: " + m_sPath + ":TABLE");
    return vNames.front();
}

void SqliteTable::checkTable() const
{
    const std::vector<std::string> vNames = tableNames();
    // As the database itself does, ASCII letters are compared without regard to case.
    const auto sameName = [this](const std::string& sName)
    { return sqlite3_stricmp(sName.c_str(), m_sTable.c_str()) == 0; };
    if (std::none_of(vNames.begin(), vNames.end(), sameName))
        throw InputError(
            {m_sPath}, "found no table " + quotedForMessage(m_sTable) + ", expected one of " + listForMessage(vNames));
}

void SqliteTable::countRows()
{
    const Statement hCount = prepare("SELECT count(*) FROM main." + quotedName(m_sTable));
    if (sqlite3_step(hCount.get()) != SQLITE_ROW)
        fail();
    m_nRows = sqlite3_column_int64(hCount.get(), 0);
}

void SqliteTable::readColumns()
{
    const int nColumns = sqlite3_column_count(m_hRows.get());
    for (int nColumn = 0; nColumn < nColumns; ++nColumn)
        m_vNames.emplace_back(sqlite3_column_name(m_hRows.get(), nColumn));
}

bool SqliteTable::read(DataChunk& tChunk)
{
    constexpr std::size_t knChunkRows = 1024;
    constexpr std::size_t knChunkBytes = std::size_t(1) << 16;
    constexpr std::size_t knChunkCells = std::size_t(1) << 15;
    tChunk.clear();
    tChunk.startRows(m_vNames.size());
    tChunk.nFirst = static_cast<std::uint64_t>(m_nRow) + 1;
    bool bMore = true;
    try
    {
        while (bMore && tChunk.rowCount() < knChunkRows && tChunk.sBytes.size() < knChunkBytes &&
               tChunk.vEntries.size() < knChunkCells)
            bMore = readRow(tChunk);
    }
    catch (const InputError&)
    {
        tChunk.pError = std::current_exception();
    }
    return bMore || tChunk.rowCount() != 0;
}

bool SqliteTable::readRow(DataChunk& tChunk)
{
    if (m_bEnd)
        return false;
    const int nResult = sqlite3_step(m_hRows.get());
    m_bEnd = nResult != SQLITE_ROW;
    if (nResult == SQLITE_DONE)
        return false;
    if (nResult != SQLITE_ROW)
        fail();
    for (std::size_t nColumn = 0; nColumn < m_vNames.size(); ++nColumn)
        readCell(static_cast<int>(nColumn), tChunk);
    ++m_nRow;
    tChunk.endRow();
    return true;
}

void SqliteTable::readCell(int nColumn, DataChunk& tChunk) const
{
    sqlite3_stmt* pRow = m_hRows.get();
    const auto size = [&] { return static_cast<std::size_t>(sqlite3_column_bytes(pRow, nColumn)); };
    switch (sqlite3_column_type(pRow, nColumn))
    {
    case SQLITE_INTEGER: tChunk.addInteger(sqlite3_column_int64(pRow, nColumn)); break;
    case SQLITE_FLOAT: tChunk.addReal(sqlite3_column_double(pRow, nColumn)); break;
    case SQLITE_TEXT:
    {
        const auto* pText = reinterpret_cast<const char*>(sqlite3_column_text(pRow, nColumn));
        if (!pText)
            throw std::bad_alloc();
        tChunk.addText(DataCell::kText, {pText, size()});
        break;
    }
    case SQLITE_BLOB:
    {
        const char* pBytes = static_cast<const char*>(sqlite3_column_blob(pRow, nColumn));
        tChunk.addText(DataCell::kBytes, pBytes ? std::string_view(pBytes, size()) : std::string_view());
        break;
    }
    default: tChunk.addNull(); break;
    }
}

void SqliteTable::parse(DataChunk& tChunk) const
{
    for (std::size_t nRow = 0; nRow < tChunk.rowCount(); ++nRow)
    {
        try
        {
            for (std::size_t nColumn = 0; nColumn < m_vNames.size(); ++nColumn)
                checkText(tChunk, nRow, nColumn);
        }
        catch (const InputError&)
        {
            tChunk.pError = std::current_exception();
            tChunk.dropRowsFrom(nRow);
        }
    }
}

void SqliteTable::checkText(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn) const
{
    const DataCell tCell = tChunk.cell(nRow, nColumn);
    if (tCell.eKind != DataCell::kText)
        return;
    const bool bNull = tCell.sText.find('\0') != std::string_view::npos;
    if (bNull || !isUtf8(tCell.sText))
        throw InputError(placeOf(tChunk, nRow, nColumn) + ", column " + quotedForMessage(m_vNames[nColumn]) + ": " +
                         (bNull ? "found the character U+0000, expected text" : "found bytes that are not UTF-8"));
}

void SqliteTable::rewind()
{
    sqlite3_reset(m_hRows.get());
    m_nRow = 0;
    m_bEnd = false;
}

std::string SqliteTable::placeOf(const DataChunk& tChunk, std::size_t nRow, std::size_t) const
{
    return m_sPath + ": table " + quotedForMessage(m_sTable) + ", row " + std::to_string(tChunk.nFirst + nRow);
}

double SqliteTable::progress() const
{
    return m_nRows == 0 ? 1 : static_cast<double>(m_nRow) / static_cast<double>(m_nRows);
}

}  // namespace

bool isSqliteFile(const std::string& sPath)
{
    constexpr char aMagic[] = "SQLite format 3";
    char aStart[sizeof aMagic] = {};
    std::ifstream tFile(sPath, std::ios::binary);
    return tFile.read(aStart, sizeof aStart) && std::memcmp(aStart, aMagic, sizeof aMagic) == 0;
}

std::unique_ptr<DataSource> openSqliteTable(const std::string& sPath, const std::string& sTable)
{
    return std::make_unique<SqliteTable>(sPath, sTable);
}

}  // namespace tov
