#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "utilities/messagetable.h"
#include "webbedrock/export.h"

namespace tov {

// The message files of the process and the table of their texts.
//
// Example, at load:  MessageFilesRegistry::getInstance().registerMessageFiles({"formattermessages.xml"});
//
// A name without "/" is looked for in the directories of `addDirectory`, the last one added first, and then in
// share/webformat/ beside and above the directory of the library itself, up to four levels up; any other name is a
// path. Files are read when the table is first asked for; texts of files registered later win. A file that is missing
// or broken adds nothing: the texts built into the code are used, and the log gets one warning for the file. Any
// thread.
class WEBFORMAT_EXPORT MessageFilesRegistry
{
public:
    static MessageFilesRegistry& getInstance();

    // Remembers the files; reads nothing.
    void registerMessageFiles(const std::vector<std::string>& vFiles);
    // A directory of the host's own message files. Files are looked for again at the next `getMessageTable`.
    void addDirectory(const std::string& sDirectory);

    // The texts of all registered files; never null. Tables handed out before stay as they are.
    MessageTableHandle getMessageTable();

    MessageFilesRegistry(const MessageFilesRegistry&) = delete;
    MessageFilesRegistry& operator=(const MessageFilesRegistry&) = delete;

private:
    MessageFilesRegistry() = default;
    MessageTableHandle loadTable();
    std::string findFile(const std::string& sFile) const;
    void warnOnce(const std::string& sFile, std::wstring_view sText);

    std::mutex m_tMutex;  // guards all members; held while files are read
    std::vector<std::string> m_vFiles;
    std::vector<std::string> m_vDirectories;
    std::vector<std::string> m_vWarned;
    MessageTableHandle m_hTable;  // null: to be loaded
};

}  // namespace tov
