#include "datasource.h"

#include <algorithm>
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
    bool nextRow(DataRow& vRow) override;
    void rewind() override;
    std::string placeOf(const DataCell& tCell) const override;
    double progress() const override;

private:
    void readNames();

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
            throw InputError({m_sPath}, "the file cannot be read a second time");
    }
    m_pReader = std::make_unique<CsvReader>(m_tFile, m_sPath);
    readNames();
}

void CsvFile::readNames()
{
    DataRow vHeader;
    if (!m_pReader->readRecord(vHeader))
        throw InputError({m_sPath, 1, 1}, "found an empty file, expected the names of the columns in the first line");
    m_vNames.clear();
    for (const DataCell& tCell : vHeader)
    {
        if (std::find(m_vNames.begin(), m_vNames.end(), tCell.sText) != m_vNames.end())
            throw InputError(
                {m_sPath, tCell.nLine, tCell.nColumn},
                "found the column name " + quotedForMessage(tCell.sText) + " a second time, expected different names");
        m_vNames.push_back(tCell.sText);
    }
}

bool CsvFile::nextRow(DataRow& vRow)
{
    if (!m_pReader->readRecord(vRow))
        return false;
    if (vRow.size() != m_vNames.size())
        throw InputError(
            {m_sPath, m_pReader->recordLine(), 1},
            "found " + std::to_string(vRow.size()) + " cells, expected " + std::to_string(m_vNames.size()));
    return true;
}

std::string CsvFile::placeOf(const DataCell& tCell) const
{
    return InputPlace{m_sPath, tCell.nLine, tCell.nColumn}.text();
}

double CsvFile::progress() const
{
    return m_nBytes == 0 ? 0 : static_cast<double>(m_pReader->bytesRead()) / static_cast<double>(m_nBytes);
}

}  // namespace

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
