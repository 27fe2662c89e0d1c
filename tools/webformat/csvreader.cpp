#include "csvreader.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <utility>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr std::size_t knLongestCell = std::size_t(64) << 20;
constexpr std::size_t knLongestRecord = std::size_t(128) << 20;
constexpr std::size_t knMostCells = 16384;
constexpr const char* kpLongCell = "found a cell of more than 64 MiB";
constexpr const char* kpLongRecord = "found a record of more than 128 MiB";

bool isContinuation(char nByte)
{
    return (static_cast<unsigned char>(nByte) & 0xC0) == 0x80;
}

// What may end a bare cell, or must not stand in it.
constexpr std::array<bool, 256> kaSpecial = []
{
    std::array<bool, 256> aSpecial{};
    for (const char nByte : {',', '"', '\r', '\n'})
        aSpecial[static_cast<unsigned char>(nByte)] = true;
    return aSpecial;
}();

bool isSpecial(char nByte)
{
    return kaSpecial[static_cast<unsigned char>(nByte)];
}

std::size_t countOf(std::string_view sBytes, char nByte)
{
    std::size_t nCount = 0;
    for (std::size_t nAt = sBytes.find(nByte); nAt != std::string_view::npos; nAt = sBytes.find(nByte, nAt + 1))
        ++nCount;
    return nCount;
}

// Behind the last line end in front of which the quotes are even in number; 0 where there is none. `bOddBefore` says
// whether they are odd in front of the bytes, and then whether they are behind them.
std::size_t endOfLastRecord(std::string_view sBytes, bool& bOddBefore)
{
    bOddBefore = bOddBefore != (countOf(sBytes, '"') % 2 != 0);
    bool bInside = bOddBefore;
    while (const void* pFound = memrchr(sBytes.data(), '\n', sBytes.size()))
    {
        const std::size_t nAt = static_cast<std::size_t>(static_cast<const char*>(pFound) - sBytes.data());
        if (countOf(sBytes.substr(nAt), '"') % 2 != 0)
            bInside = !bInside;
        if (!bInside)
            return nAt + 1;
        sBytes.remove_suffix(sBytes.size() - nAt);
    }
    return 0;
}

}  // namespace

CsvReader::CsvReader(std::istream& tInput, std::string sName, std::size_t nChunkBytes)
    : m_tInput(tInput), m_sName(std::move(sName)), m_nChunkBytes(nChunkBytes)
{
    skipByteOrderMark();
}

void CsvReader::skipByteOrderMark()
{
    constexpr std::string_view ksMark = "\xEF\xBB\xBF";
    fill(m_sRest, ksMark.size());
    if (m_sRest == ksMark)
        m_sRest.clear();
}

// Makes the bytes `nWanted`, or fewer at the end of the file.
void CsvReader::fill(std::string& sBytes, std::size_t nWanted)
{
    const std::size_t nBefore = sBytes.size();
    if (m_bEnd || nBefore >= nWanted)
        return;
    sBytes.resize(nWanted);
    m_tInput.read(sBytes.data() + nBefore, static_cast<std::streamsize>(nWanted - nBefore));
    const std::size_t nRead = static_cast<std::size_t>(m_tInput.gcount());
    if (m_tInput.bad())
        throw InputError({m_sName}, "the file cannot be read");
    sBytes.resize(nBefore + nRead);
    m_nBytesRead += nRead;
    m_bEnd = sBytes.size() < nWanted;
}

bool CsvReader::read(DataChunk& tChunk)
{
    tChunk.clear();
    tChunk.nFirst = m_nLine;
    std::string& sBytes = tChunk.sBytes;
    sBytes.swap(m_sRest);
    std::size_t nEnd = 0;
    std::size_t nSearched = 0;
    bool bOddQuotes = false;
    // What comes along behind a long record is no more than behind a short one: the cells of a chunk take memory, too.
    while (nEnd == 0)
    {
        fill(sBytes, nSearched + m_nChunkBytes);
        if (sBytes.empty())
            return false;
        const std::string_view sNew = std::string_view(sBytes).substr(nSearched);
        const std::size_t nFound = m_bEnd ? 0 : endOfLastRecord(sNew, bOddQuotes);
        tChunk.bWhole = m_bEnd || nFound != 0 || sBytes.size() <= knLongestRecord;
        if (nFound != 0)
            nEnd = nSearched + nFound;
        else if (m_bEnd || !tChunk.bWhole)
            nEnd = sBytes.size();
        nSearched = sBytes.size();
    }
    m_sRest.assign(sBytes, nEnd);
    sBytes.resize(nEnd);
    m_nLine += countOf(sBytes, '\n');
    return true;
}

void CsvReader::putBack(const DataChunk& tChunk, std::size_t nFrom)
{
    const std::string_view sBytes = std::string_view(tChunk.sBytes).substr(nFrom);
    m_nLine -= countOf(sBytes, '\n');
    m_sRest.insert(0, sBytes);
}

CsvRecords::CsvRecords(DataChunk& tChunk, const std::string& sName)
    : m_tChunk(tChunk),
      m_sName(sName),
      m_nEnd(tChunk.sBytes.size()),
      m_bClean(tChunk.sBytes.find('\0') == std::string::npos && isUtf8(tChunk.sBytes))
{
}

std::size_t CsvRecords::next()
{
    if (atEnd())
        return 0;
    std::size_t nCells = 0;
    do
    {
        if (nCells++ == knMostCells)
            fail(m_nAt, "found more than 16,384 cells in a record, expected the end of the line");
        readCell();
    } while (!endOfRecord());
    return nCells;
}

// Steps over the comma or the line end behind a cell.
bool CsvRecords::endOfRecord()
{
    if (atEnd())
    {
        if (!m_tChunk.bWhole)
            fail(m_nAt, kpLongRecord);
        return true;
    }
    const char nByte = m_tChunk.sBytes[m_nAt++];
    if (nByte != '\r')
        return nByte != ',';
    if (atEnd() || peek() != '\n')
        fail(m_nAt - 1, "found a carriage return, expected it only in front of a line feed");
    ++m_nAt;
    return true;
}

void CsvRecords::readCell()
{
    if (!atEnd() && peek() == '"')
        readQuoted();
    else
        readBare();
}

void CsvRecords::readBare()
{
    const std::size_t nStart = m_nAt;
    const char* pBytes = m_tChunk.sBytes.data();
    std::size_t nAt = m_nAt;
    while (nAt != m_nEnd && !isSpecial(pBytes[nAt]))
        ++nAt;
    m_nAt = nAt;
    if (!atEnd() && peek() == '"')
        fail(m_nAt, "found a quotation mark inside a cell, expected a cell that holds one to be quoted");
    addCell(nStart, nStart, m_nAt - nStart);
}

// Text without doubled quotes stays where it is; other text is copied behind the records.
void CsvRecords::readQuoted()
{
    std::string& sBytes = m_tChunk.sBytes;
    const std::size_t nPlace = m_nAt++;
    std::size_t nRun = m_nAt;
    std::size_t nStart = m_nAt;
    bool bCopied = false;
    for (;;)
    {
        const std::size_t nQuote = sBytes.find('"', m_nAt);
        if (nQuote >= m_nEnd)
            failAtEnd(nPlace);
        m_nAt = nQuote + 1;
        const bool bDoubled = !atEnd() && peek() == '"';
        if (bDoubled && !bCopied)
            nStart = sBytes.size();
        if (bDoubled || bCopied)
            sBytes.append(sBytes, nRun, nQuote + (bDoubled ? 1 : 0) - nRun);
        bCopied = bCopied || bDoubled;
        if (!bDoubled)
            break;
        nRun = ++m_nAt;
    }
    if (!atEnd() && !isSpecial(peek()))
        fail(m_nAt, "found " + found() + ", expected a comma or the end of the line behind a closing quotation mark");
    addCell(nPlace, nStart, bCopied ? sBytes.size() - nStart : m_nAt - 1 - nStart);
}

void CsvRecords::failAtEnd(std::size_t nPlace) const
{
    if (m_tChunk.bWhole)
        fail(nPlace, "found the end of the file, expected the quotation mark that closes this cell");
    fail(nPlace, m_nEnd - nPlace > knLongestCell ? kpLongCell : kpLongRecord);
}

void CsvRecords::addCell(std::size_t nPlace, std::size_t nStart, std::size_t nLength)
{
    if (nLength > knLongestCell)
        fail(nPlace, kpLongCell);
    const DataCell::Kind eKind = nLength == 0 ? DataCell::kNull : DataCell::kText;
    m_tChunk.vEntries.push_back({eKind, static_cast<std::uint32_t>(nPlace), nStart, nLength});
    if (!m_bClean)
        check(m_tChunk.vEntries.back());
}

// The line of the faulty byte, which need not be the one on which its cell starts.
void CsvRecords::check(const DataChunk::Entry& tEntry) const
{
    const std::string_view sText = std::string_view(m_tChunk.sBytes).substr(tEntry.nStart, tEntry.nLength);
    std::size_t nBad = sText.find('\0');
    const bool bNull = nBad != std::string_view::npos;
    if (!bNull && isUtf8(sText, &nBad))
        return;
    const auto nLines = std::count(sText.begin(), sText.begin() + static_cast<std::ptrdiff_t>(nBad), '\n');
    InputPlace tPlace = placeInCsv(m_sName, m_tChunk, tEntry.nPlace);
    tPlace.nLine += static_cast<std::size_t>(nLines);
    tPlace.nColumn = nLines ? 0 : tPlace.nColumn;
    throw InputError(tPlace, bNull ? "found the character U+0000, expected text" : "found bytes that are not UTF-8");
}

// What stands next, for a message: up to the next comma or line end.
std::string CsvRecords::found() const
{
    constexpr std::size_t knShown = 20;
    const std::string_view sRest = std::string_view(m_tChunk.sBytes).substr(m_nAt, m_nEnd - m_nAt);
    std::size_t nLength = std::min(sRest.substr(0, knShown).find_first_of(",\r\n"), std::min(knShown, sRest.size()));
    while (nLength < sRest.size() && isContinuation(sRest[nLength]))
        ++nLength;
    return quotedForMessage(sRest.substr(0, nLength));
}

void CsvRecords::fail(std::size_t nPlace, const std::string& sMessage) const
{
    throw InputError(placeInCsv(m_sName, m_tChunk, nPlace), sMessage);
}

InputPlace placeInCsv(const std::string& sName, const DataChunk& tChunk, std::size_t nOffset)
{
    const std::string_view sBefore = std::string_view(tChunk.sBytes).substr(0, nOffset);
    const auto nLines = std::count(sBefore.begin(), sBefore.end(), '\n');
    const std::string_view sLine = sBefore.substr(sBefore.rfind('\n') + 1);
    const auto nBehind = std::count_if(sLine.begin(), sLine.end(), &isContinuation);
    return {sName, static_cast<std::size_t>(tChunk.nFirst) + static_cast<std::size_t>(nLines),
            sLine.size() - static_cast<std::size_t>(nBehind) + 1};
}

}  // namespace tov
