#pragma once

#include <cstddef>
#include <istream>
#include <string>
#include <vector>

#include "datasource.h"
#include "inputerror.h"

namespace tov {

// Reads comma-separated values.
//
// Example: `a,"b ""c"""` is a record of the cells `a` and `b "c"`.
//
//     file   = [BOM] [record *(eol record) [eol]]
//     record = cell *("," cell)
//     cell   = bare / quoted
//     bare   = *(any character but "," DQUOTE CR LF)
//     quoted = DQUOTE *(any character but DQUOTE / 2DQUOTE) DQUOTE
//     eol    = CRLF / LF
//
// Line ends inside quotes belong to the cell. Errors, thrown as InputError with line and column: a quote inside a bare
// cell, text behind a closing quote, a quote that is never closed, CR without LF outside quotes, bytes that are not
// UTF-8, U+0000, a cell of more than 64 MiB, more than 16,384 cells in a record.
class CsvReader
{
public:
    // Reads from `tInput`, which must outlive the reader; `sName` is the file's name in messages.
    CsvReader(std::istream& tInput, std::string sName);

    // Reads a record into `vCells`: text cells with the place where they start, empty ones null. False at the end. The
    // memory of the cells is used again.
    bool readRecord(DataRow& vCells);

    // The line where the record read last starts.
    std::size_t recordLine() const { return m_nRecordLine; }

    // Bytes consumed so far.
    std::uint64_t bytesRead() const { return m_nBytesRead; }

private:
    int peek();
    int take();
    void fill();
    void skipByteOrderMark();
    void readCell(DataCell& tCell);
    void readBare(DataCell& tCell);
    void readQuoted(DataCell& tCell);
    void appendTo(DataCell& tCell, int nByte);
    void check(const DataCell& tCell) const;
    bool endOfRecord();
    InputPlace here() const { return {m_sName, m_nLine, m_nColumn}; }
    std::string found();

    std::istream& m_tInput;
    std::string m_sName;
    std::vector<char> m_vBuffer;
    std::size_t m_nNext = 0;
    std::size_t m_nFilled = 0;
    std::uint64_t m_nBytesRead = 0;
    std::size_t m_nLine = 1;
    std::size_t m_nColumn = 1;
    std::size_t m_nRecordLine = 1;
};

}  // namespace tov
