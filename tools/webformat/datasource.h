#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace tov {

// One cell of a table of data as its file holds it. Text is UTF-8, already checked, and holds no U+0000.
struct DataCell
{
    enum Kind
    {
        kNull,
        kText,
        kInteger,
        kReal,
        kBytes
    };

    Kind eKind = kNull;
    std::string sText;  // kText: the text; kBytes: the bytes
    std::int64_t nInteger = 0;
    double fReal = 0;
    std::size_t nLine = 0;  // where the cell starts, in a file that has lines
    std::size_t nColumn = 0;
};

using DataRow = std::vector<DataCell>;

// A table of data that is read from front to back: a CSV file or a table of a database.
//
// All operations throw InputError with the place where the file is wrong. One source belongs to one thread.
class DataSource
{
public:
    virtual ~DataSource() = default;

    // The names of the columns, all different.
    virtual const std::vector<std::string>& columnNames() const = 0;

    // Reads the next row, one cell a column; false at the end. The row's memory is used again.
    virtual bool nextRow(DataRow& vRow) = 0;

    // Goes back to the first row; the same rows come again.
    virtual void rewind() = 0;

    // Where the cell of the row read last stands, as messages begin: "orders.csv:12:7" or "orders.db: table "t", row
    // 11".
    virtual std::string placeOf(const DataCell& tCell) const = 0;

    // How much of the data has been read, 0 to 1.
    virtual double progress() const = 0;
};

// Opens `FILE` or, for a database, `FILE:TABLE`. A file that starts as an SQLite database is one, whatever its name;
// anything else is read as CSV. A database without a table's name must hold exactly one.
std::unique_ptr<DataSource> openDataSource(const std::string& sArgument);

}  // namespace tov
