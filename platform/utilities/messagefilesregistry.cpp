#include "utilities/messagefilesregistry.h"

#include <dlfcn.h>

#include <algorithm>
#include <filesystem>
#include <system_error>

#include "webbedrock/logger.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

namespace fs = std::filesystem;

constexpr int kLevelsUp = 4;  // lib/<architecture>/libwebformat.so is two below share's parent; build trees are deeper

// The directory of the module that this code was linked into; empty where the system does not know it.
fs::path moduleDirectory()
{
    Dl_info tInfo = {};
    if (!dladdr(reinterpret_cast<const void*>(&moduleDirectory), &tInfo) || !tInfo.dli_fname)
        return {};
    std::error_code tError;
    const fs::path tModule = fs::canonical(tInfo.dli_fname, tError);
    return tError ? fs::path() : tModule.parent_path();
}

bool isFile(const fs::path& tPath)
{
    std::error_code tError;
    return fs::is_regular_file(tPath, tError);
}

std::string findInstalled(const std::string& sFile)
{
    fs::path tDirectory = moduleDirectory();
    for (int i = 0; i <= kLevelsUp && !tDirectory.empty(); ++i, tDirectory = tDirectory.parent_path())
    {
        const fs::path tFile = tDirectory / "share" / "webformat" / sFile;
        if (isFile(tFile))
            return tFile.string();
    }
    return {};
}

String describe(const XmlError& tError)
{
    if (tError.nLine == 0)
        return tError.sMessage;
    return L"line " + std::to_wstring(tError.nLine) + L", column " + std::to_wstring(tError.nColumn) + L": " +
           tError.sMessage;
}

}  // namespace

MessageFilesRegistry& MessageFilesRegistry::getInstance()
{
    // Never destroyed: texts may be asked for while static objects of the process go away.
    static MessageFilesRegistry& s_tRegistry = *new MessageFilesRegistry;
    return s_tRegistry;
}

void MessageFilesRegistry::registerMessageFiles(const std::vector<std::string>& vFiles)
{
    const std::lock_guard tLock(m_tMutex);
    for (const std::string& sFile : vFiles)
        if (std::find(m_vFiles.begin(), m_vFiles.end(), sFile) == m_vFiles.end())
            m_vFiles.push_back(sFile);
    m_hTable = nullptr;
}

void MessageFilesRegistry::addDirectory(const std::string& sDirectory)
{
    const std::lock_guard tLock(m_tMutex);
    m_vDirectories.push_back(sDirectory);
    m_hTable = nullptr;
}

MessageTableHandle MessageFilesRegistry::getMessageTable()
{
    const std::lock_guard tLock(m_tMutex);
    if (m_hTable.isNull())
        m_hTable = loadTable();
    return m_hTable;
}

MessageTableHandle MessageFilesRegistry::loadTable()
{
    Handle<MessageTable> hTable(WEBFORMAT_NEW("utilities/messagefilesregistry") MessageTable);
    for (const std::string& sFile : m_vFiles)
    {
        const std::string sPath = findFile(sFile);
        if (sPath.empty())
        {
            warnOnce(sFile, L"not found");
            continue;
        }
        XmlError tError;
        const std::optional<XmlDocument> tDocument = XmlDocument::parseFile(sPath, &tError);
        if (!tDocument || !hTable->addFile(*tDocument, &tError))
            warnOnce(sFile, describe(tError));
    }
    return hTable;
}

// Where the file is, or an empty text.
std::string MessageFilesRegistry::findFile(const std::string& sFile) const
{
    if (sFile.find('/') != std::string::npos)
        return isFile(sFile) ? sFile : std::string();
    for (auto tDirectory = m_vDirectories.rbegin(); tDirectory != m_vDirectories.rend(); ++tDirectory)
    {
        const fs::path tFile = fs::path(*tDirectory) / sFile;
        if (isFile(tFile))
            return tFile.string();
    }
    return findInstalled(sFile);
}

void MessageFilesRegistry::warnOnce(const std::string& sFile, std::wstring_view sText)
{
    if (std::find(m_vWarned.begin(), m_vWarned.end(), sFile) != m_vWarned.end())
        return;
    m_vWarned.push_back(sFile);
    Logger::log(Logger::kWarning, L"message file " + fromUtf8(sFile).value_or(L"?") + L": " + String(sText) +
                                      L"; the built-in texts are used");
}

}  // namespace tov
