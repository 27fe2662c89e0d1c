#pragma once

#include <cstddef>
#include <cstdint>
#include <istream>
#include <string>
#include <string_view>

#include "datasource.h"
#include "inputerror.h"

namespace tov {

// Comma-separated values are read in two steps: `CsvReader` cuts the file into chunks of whole records, `CsvRecords`
// makes cells of a chunk.
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
// UTF-8, U+0000, a cell of more than 64 MiB, a record of more than 128 MiB or 16,384 cells.

// Cuts a file at line ends in front of which the quotes are even in number. In a file that is well-formed these end
// records; in one that is not, everything up to the first mistake is cut rightly and the mistake stands in the next
// chunk.
class CsvReader
{
public:
    static constexpr std::size_t knChunkBytes = std::size_t(1) << 16;

    // Reads from `tInput`, which must outlive the reader; `sName` is the file's name in messages. Chunks are made of at
    // least `nChunkBytes` at a time.
    CsvReader(std::istream& tInput, std::string sName, std::size_t nChunkBytes = knChunkBytes);

    // Fills a chunk with whole records, not parsed yet, and the number of their first line; false at the end. Throws
    // InputError where the file cannot be read.
    bool read(DataChunk& tChunk);

    // Puts back the end of the chunk that was read last, from that offset on.
    void putBack(const DataChunk& tChunk, std::size_t nFrom);

    const std::string& name() const { return m_sName; }
    // Bytes taken from the file so far.
    std::uint64_t bytesRead() const { return m_nBytesRead; }

private:
    void fill(std::string& sBytes, std::size_t nWanted);
    void skipByteOrderMark();

    std::istream& m_tInput;
    std::string m_sName;
    std::size_t m_nChunkBytes;
    std::string m_sRest;  // read, but behind the last whole record
    bool m_bEnd = false;
    std::uint64_t m_nBytesRead = 0;
    std::uint64_t m_nLine = 1;
};

// The records of a chunk from front to back. Different chunks may be parsed on different threads.
class CsvRecords
{
public:
    CsvRecords(DataChunk& tChunk, const std::string& sName);

    // Adds the cells of the next record to the chunk's entries, empty ones null, and returns how many there are; 0 at
    // the end. Throws InputError.
    std::size_t next();

    // Where the next record starts.
    std::size_t offset() const { return m_nAt; }

private:
    void readCell();
    void readBare();
    void readQuoted();
    void addCell(std::size_t nPlace, std::size_t nStart, std::size_t nLength);
    void check(const DataChunk::Entry& tEntry) const;
    bool endOfRecord();
    [[noreturn]] void failAtEnd(std::size_t nPlace) const;
    [[noreturn]] void fail(std::size_t nPlace, const std::string& sMessage) const;
    std::string found() const;
    bool atEnd() const { return m_nAt == m_nEnd; }
    char peek() const { return m_tChunk.sBytes[m_nAt]; }

    DataChunk& m_tChunk;
    const std::string& m_sName;
    std::size_t m_nAt = 0;
    std::size_t m_nEnd;  // of the records; unquoted text stands behind it
    bool m_bClean;       // UTF-8 without U+0000 as a whole: no cell needs to be checked
};

// The line and the column, in characters, of an offset in a chunk.
InputPlace placeInCsv(const std::string& sName, const DataChunk& tChunk, std::size_t nOffset);

}  // namespace tov
