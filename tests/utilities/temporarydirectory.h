#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <string_view>

namespace tov {

// A directory for one test's files, removed with all it holds at the end.
class TemporaryDirectory
{
public:
    TemporaryDirectory()
    {
        std::string sPattern = (std::filesystem::temp_directory_path() / "webformat-test-XXXXXX").string();
        if (!::mkdtemp(sPattern.data()))
            throw std::runtime_error("cannot make a temporary directory");
        m_tPath = sPattern;
    }
    ~TemporaryDirectory()
    {
        std::error_code tIgnored;
        std::filesystem::remove_all(m_tPath, tIgnored);
    }
    TemporaryDirectory(const TemporaryDirectory&) = delete;
    TemporaryDirectory& operator=(const TemporaryDirectory&) = delete;

    std::string path() const { return m_tPath.string(); }
    std::string pathOf(const char* pName) const { return (m_tPath / pName).string(); }

    // Writes a file beside its name and moves it there, so that a reader sees the old or the new one. Returns its path.
    std::string write(const char* pName, std::string_view sContents) const
    {
        const std::string sPath = pathOf(pName);
        std::ofstream(sPath + ".new", std::ios::binary) << sContents;
        std::filesystem::rename(sPath + ".new", sPath);
        return sPath;
    }

private:
    std::filesystem::path m_tPath;
};

}  // namespace tov
