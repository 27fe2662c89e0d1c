#include "csvreader.h"

#include <algorithm>
#include <utility>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

constexpr int knEnd = -1;
constexpr std::size_t knBufferBytes = 1 << 16;
constexpr std::size_t knLongestCell = std::size_t(64) << 20;
constexpr std::size_t knMostCells = 16384;

bool isContinuation(int nByte)
{
    return nByte >= 0x80 && nByte < 0xC0;
}

}  // namespace

CsvReader::CsvReader(std::istream& tInput, std::string sName)
    : m_tInput(tInput), m_sName(std::move(sName)), m_vBuffer(knBufferBytes)
{
    skipByteOrderMark();
}

void CsvReader::fill()
{
    m_tInput.read(m_vBuffer.data(), static_cast<std::streamsize>(m_vBuffer.size()));
    m_nFilled = static_cast<std::size_t>(m_tInput.gcount());
    m_nNext = 0;
    if (m_tInput.bad())
        throw InputError(here(), "the file cannot be read");
}

int CsvReader::peek()
{
    if (m_nNext == m_nFilled)
        fill();
    return m_nNext == m_nFilled ? knEnd : static_cast<unsigned char>(m_vBuffer[m_nNext]);
}

int CsvReader::take()
{
    const int nByte = peek();
    if (nByte == knEnd)
        return knEnd;
    ++m_nNext;
    ++m_nBytesRead;
    if (nByte == '\n')
    {
        ++m_nLine;
        m_nColumn = 1;
    }
    else if (!isContinuation(nByte))
    {
        ++m_nColumn;
    }
    return nByte;
}

void CsvReader::skipByteOrderMark()
{
    fill();
    if (m_nFilled >= 3 && std::equal(m_vBuffer.begin(), m_vBuffer.begin() + 3, "\xEF\xBB\xBF"))
    {
        m_nNext = 3;
        m_nBytesRead = 3;
    }
}

bool CsvReader::readRecord(DataRow& vCells)
{
    m_nRecordLine = m_nLine;
    if (peek() == knEnd)
        return false;
    std::size_t nCells = 0;
    do
    {
        if (nCells == knMostCells)
            throw InputError(here(), "found more than 16,384 cells in a record, expected the end of the line");
        if (nCells == vCells.size())
            vCells.emplace_back();
        readCell(vCells[nCells++]);
    } while (!endOfRecord());
    vCells.resize(nCells);
    return true;
}

// Steps over the comma or the line end behind a cell.
bool CsvReader::endOfRecord()
{
    const InputPlace tPlace = here();
    const int nByte = take();
    if (nByte == '\r' && peek() != '\n')
        throw InputError(tPlace, "found a carriage return, expected it only in front of a line feed");
    if (nByte == '\r')
        take();
    return nByte != ',';
}

void CsvReader::readCell(DataCell& tCell)
{
    tCell.sText.clear();
    tCell.nLine = m_nLine;
    tCell.nColumn = m_nColumn;
    if (peek() == '"')
        readQuoted(tCell);
    else
        readBare(tCell);
    tCell.eKind = tCell.sText.empty() ? DataCell::kNull : DataCell::kText;
    check(tCell);
}

void CsvReader::readBare(DataCell& tCell)
{
    for (int nByte = peek(); nByte != knEnd && nByte != ',' && nByte != '\r' && nByte != '\n'; nByte = peek())
    {
        if (nByte == '"')
            throw InputError(here(),
                             "found a quotation mark inside a cell, expected a cell that holds one to be quoted");
        appendTo(tCell, take());
    }
}

void CsvReader::readQuoted(DataCell& tCell)
{
    take();
    for (;;)
    {
        const int nByte = take();
        if (nByte == knEnd)
            throw InputError({m_sName, tCell.nLine, tCell.nColumn},
                             "found the end of the file, expected the quotation mark that closes this cell");
        if (nByte == '"' && peek() != '"')
            break;
        if (nByte == '"')
            take();
        appendTo(tCell, nByte);
    }
    const int nNext = peek();
    if (nNext != knEnd && nNext != ',' && nNext != '\r' && nNext != '\n')
        throw InputError(here(), "found " + found() + ", expected a comma or the end of the line behind a closing " +
                                     "quotation mark");
}

// What stands next, for a message: up to the next comma or line end.
std::string CsvReader::found()
{
    constexpr std::size_t knShown = 20;
    const char* pStart = m_vBuffer.data() + m_nNext;
    const char* pLast = pStart + std::min(knShown, m_nFilled - m_nNext);
    const char* pEnd = std::find_if(pStart, pLast, [](char n) { return n == ',' || n == '\r' || n == '\n'; });
    while (pEnd != m_vBuffer.data() + m_nFilled && isContinuation(static_cast<unsigned char>(*pEnd)))
        ++pEnd;
    return quotedForMessage(std::string_view(pStart, static_cast<std::size_t>(pEnd - pStart)));
}

void CsvReader::appendTo(DataCell& tCell, int nByte)
{
    if (tCell.sText.size() == knLongestCell)
        throw InputError({m_sName, tCell.nLine, tCell.nColumn}, "found a cell of more than 64 MiB");
    tCell.sText += static_cast<char>(nByte);
}

// The line of the faulty byte, which need not be the one on which its cell starts.
void CsvReader::check(const DataCell& tCell) const
{
    std::size_t nBad = tCell.sText.find('\0');
    const bool bNull = nBad != std::string::npos;
    if (!bNull && fromUtf8(tCell.sText, &nBad))
        return;
    const auto tBad = tCell.sText.begin() + static_cast<std::ptrdiff_t>(nBad);
    const auto nLines = std::count(tCell.sText.begin(), tBad, '\n');
    const InputPlace tPlace{m_sName, tCell.nLine + static_cast<std::size_t>(nLines), nLines ? 0 : tCell.nColumn};
    throw InputError(tPlace, bNull ? "found the character U+0000, expected text" : "found bytes that are not UTF-8");
}

}  // namespace tov
