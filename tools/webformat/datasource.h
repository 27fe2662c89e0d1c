#pragma once

#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

// One cell of a table of data as its file holds it. Text is UTF-8, already checked, and holds no U+0000.
struct DataCell
{
    enum Kind : std::uint32_t
    {
        kNull,
        kText,
        kInteger,
        kReal,
        kBytes
    };

    Kind eKind = kNull;
    std::string_view sText;  // kText: the text; kBytes: the bytes
    std::int64_t nInteger = 0;
    double fReal = 0;
};

// Rows that are read together, and the memory that their cells refer to; used again for other rows.
//
// Rows stand in the chunk in the order of the file. Where something in the file is wrong, the rows in front of it are
// there and `pError` says what follows them.
class DataChunk
{
public:
    std::size_t rowCount() const { return m_nRows; }
    // Good until the chunk is filled anew.
    DataCell cell(std::size_t nRow, std::size_t nColumn) const;

    std::exception_ptr pError;

    // For the sources, which fill it.

    // Where a cell lies: its bytes in `sBytes`; a number in place of their offset.
    struct Entry
    {
        DataCell::Kind eKind = DataCell::kNull;
        std::uint32_t nPlace = 0;  // where in `sBytes` the cell starts as it was written
        std::uint64_t nStart = 0;
        std::size_t nLength = 0;
    };

    void clear();
    void startRows(std::size_t nColumns) { m_nColumns = nColumns; }
    void addText(DataCell::Kind eKind, std::string_view sText);  // a copy of it
    void addNull() { vEntries.emplace_back(); }
    void addInteger(std::int64_t nValue);
    void addReal(double fValue);
    // Counts the entries added last as a row; what belongs to no whole row is dropped.
    void endRow() { ++m_nRows; }
    void dropRowsFrom(std::size_t nRow) { m_nRows = nRow; }
    const Entry& entry(std::size_t nRow, std::size_t nColumn) const { return vEntries[nRow * m_nColumns + nColumn]; }

    std::string sBytes;
    std::vector<Entry> vEntries;
    std::uint64_t nFirst = 1;  // the number of the first row, or of the first line
    bool bWhole = true;        // false: a record that is longer than any may be

private:
    std::size_t m_nColumns = 0;
    std::size_t m_nRows = 0;
};

// A table of data that is read from front to back, in chunks: a CSV file or a table of a database.
//
// `read` takes bytes from the file, quickly and one chunk after the other; `parse` does the rest of the work, for
// several chunks at once on different threads. Where the file is wrong both say so in the chunk.
class DataSource
{
public:
    virtual ~DataSource() = default;

    // The names of the columns, all different.
    virtual const std::vector<std::string>& columnNames() const = 0;

    // Takes the next rows; false at the end. One thread at a time.
    virtual bool read(DataChunk& tChunk) = 0;

    // Makes the rows of a chunk that has been read. Any thread.
    virtual void parse(DataChunk& tChunk) const = 0;

    // Goes back to the first row; the same rows come again. Throws InputError where that is not possible.
    virtual void rewind() = 0;

    // Where a cell stands, as messages begin: "orders.csv:12:7" or "orders.db: table "t", row 11". Any thread.
    virtual std::string placeOf(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn) const = 0;

    // How much of the data has been read, 0 to 1. The thread that reads.
    virtual double progress() const = 0;
};

// Opens `FILE` or, for a database, `FILE:TABLE`. A file that starts as an SQLite database is one, whatever its name;
// anything else is read as CSV. A database without a table's name must hold exactly one. Throws InputError.
std::unique_ptr<DataSource> openDataSource(const std::string& sArgument);

}  // namespace tov
