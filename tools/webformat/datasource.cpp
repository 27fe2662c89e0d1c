#include "datasource.h"

#include <algorithm>
#include <bit>
#include <filesystem>
#include <fstream>
#include <utility>

#include "csvreader.h"
#include "sqlitereader.h"

namespace tov {

namespace {

namespace fs = std::filesystem;

class CsvFile final : public DataSource
{
public:
    explicit CsvFile(const std::string& sPath);

    const std::vector<std::string>& columnNames() const override { return m_vNames; }
    bool read(DataChunk& tChunk) override { return m_pReader->read(tChunk); }
    void parse(DataChunk& tChunk) const override;
    void rewind() override;
    std::string placeOf(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn) const override;
    double progress() const override;

private:
    void readNames();
    void addName(const DataChunk& tChunk, std::size_t nColumn);
    void readRows(DataChunk& tChunk) const;

    std::string m_sPath;
    std::ifstream m_tFile;
    std::unique_ptr<CsvReader> m_pReader;
    std::vector<std::string> m_vNames;
    std::uintmax_t m_nBytes = 0;
};

CsvFile::CsvFile(const std::string& sPath) : m_sPath(sPath), m_tFile(sPath, std::ios::binary)
{
    if (!m_tFile)
        throw InputError({sPath}, "the file cannot be opened");
    std::error_code tError;
    m_nBytes = fs::file_size(sPath, tError);
    if (tError)
        m_nBytes = 0;
    rewind();
}

void CsvFile::rewind()
{
    if (m_pReader)
    {
        m_tFile.clear();
        if (!m_tFile.seekg(0))
            throw InputError({m_sPath}, "the file cannot be read a second time, expected one that is no pipe");
    }
    m_pReader = std::make_unique<CsvReader>(m_tFile, m_sPath);
    readNames();
}

void CsvFile::readNames()
{
    DataChunk tChunk;
    if (!m_pReader->read(tChunk))
        throw InputError({m_sPath, 1, 1}, "found an empty file, expected the names of the columns in the first line");
    CsvRecords tRecords(tChunk, m_sPath);
    const std::size_t nRead = tChunk.sBytes.size();
    const std::size_t nNames = tRecords.next();
    m_vNames.clear();
    tChunk.startRows(nNames);
    for (std::size_t nColumn = 0; nColumn < nNames; ++nColumn)
        addName(tChunk, nColumn);
    // Unquoted names stand behind what was read.
    tChunk.sBytes.resize(nRead);
    m_pReader->putBack(tChunk, tRecords.offset());
}

void CsvFile::addName(const DataChunk& tChunk, std::size_t nColumn)
{
    const std::string sName(tChunk.cell(0, nColumn).sText);
    if (std::find(m_vNames.begin(), m_vNames.end(), sName) != m_vNames.end())
        throw InputError(
            placeInCsv(m_sPath, tChunk, tChunk.entry(0, nColumn).nPlace),
            "found the column name " + quotedForMessage(sName) + " a second time, expected different names");
    m_vNames.push_back(sName);
}

void CsvFile::parse(DataChunk& tChunk) const
{
    tChunk.startRows(m_vNames.size());
    try
    {
        readRows(tChunk);
    }
    catch (const InputError&)
    {
        tChunk.pError = std::current_exception();
    }
}

void CsvFile::readRows(DataChunk& tChunk) const
{
    CsvRecords tRecords(tChunk, m_sPath);
    for (std::size_t nStart = 0;; nStart = tRecords.offset())
    {
        const std::size_t nCells = tRecords.next();
        if (nCells == 0)
            return;
        if (nCells != m_vNames.size())
            throw InputError({m_sPath, placeInCsv(m_sPath, tChunk, nStart).nLine, 1},
                             "found " + std::to_string(nCells) + " cells, expected " + std::to_string(m_vNames.size()));
        tChunk.endRow();
    }
}

std::string CsvFile::placeOf(const DataChunk& tChunk, std::size_t nRow, std::size_t nColumn) const
{
    return placeInCsv(m_sPath, tChunk, tChunk.entry(nRow, nColumn).nPlace).text();
}

double CsvFile::progress() const
{
    return m_nBytes == 0 ? 0 : static_cast<double>(m_pReader->bytesRead()) / static_cast<double>(m_nBytes);
}

}  // namespace

DataCell DataChunk::cell(std::size_t nRow, std::size_t nColumn) const
{
    const Entry& tEntry = entry(nRow, nColumn);
    DataCell tCell;
    tCell.eKind = tEntry.eKind;
    if (tEntry.eKind == DataCell::kInteger)
        tCell.nInteger = static_cast<std::int64_t>(tEntry.nStart);
    else if (tEntry.eKind == DataCell::kReal)
        tCell.fReal = std::bit_cast<double>(tEntry.nStart);
    else
        tCell.sText = std::string_view(sBytes.data() + tEntry.nStart, tEntry.nLength);
    return tCell;
}

void DataChunk::clear()
{
    // What one long row took is not kept for all the others.
    constexpr std::size_t knKeptBytes = std::size_t(1) << 20;
    if (sBytes.capacity() > knKeptBytes)
        std::string().swap(sBytes);
    sBytes.clear();
    vEntries.clear();
    m_nRows = 0;
    pError = nullptr;
}

void DataChunk::addText(DataCell::Kind eKind, std::string_view sText)
{
    vEntries.push_back({eKind, 0, sBytes.size(), sText.size()});
    sBytes += sText;
}

void DataChunk::addInteger(std::int64_t nValue)
{
    vEntries.push_back({DataCell::kInteger, 0, static_cast<std::uint64_t>(nValue), 0});
}

void DataChunk::addReal(double fValue)
{
    vEntries.push_back({DataCell::kReal, 0, std::bit_cast<std::uint64_t>(fValue), 0});
}

std::unique_ptr<DataSource> openDataSource(const std::string& sArgument)
{
    std::error_code tError;
    if (fs::is_directory(sArgument, tError))
        throw InputError({sArgument}, "found a folder, expected a CSV file or a database");
    // A pipe must not be looked at: what is read from it is gone.
    if (fs::exists(sArgument, tError))
        return fs::is_regular_file(sArgument, tError) && isSqliteFile(sArgument) ? openSqliteTable(sArgument, "")
                                                                                 : std::make_unique<CsvFile>(sArgument);
    const std::size_t nColon = sArgument.rfind(':');
    if (nColon == std::string::npos || !fs::exists(sArgument.substr(0, nColon), tError))
        throw InputError({sArgument}, "there is no such file");
    const std::string sPath = sArgument.substr(0, nColon);
    if (!isSqliteFile(sPath))
        throw InputError({sPath}, "found a file that is no SQLite database, expected one in front of " +
                                      quotedForMessage(sArgument.substr(nColon)));
    return openSqliteTable(sPath, sArgument.substr(nColon + 1));
}

}  // namespace tov
