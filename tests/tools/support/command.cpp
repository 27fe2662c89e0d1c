#include "tools/support/command.h"

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace tov {

namespace {

namespace fs = std::filesystem;

// The child's side: standard streams to files, then the program.
[[noreturn]] void execute(const std::string& sProgram, const std::vector<std::string>& vArguments,
                          const TemporaryFolder& tFolder, int nInput)
{
    std::vector<char*> vPointers = {const_cast<char*>(sProgram.c_str())};
    for (const std::string& sArgument : vArguments)
        vPointers.push_back(const_cast<char*>(sArgument.c_str()));
    vPointers.push_back(nullptr);
    const int nOutput = open(tFolder.path("out").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    const int nErrors = open(tFolder.path("err").c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    dup2(nInput, STDIN_FILENO);
    dup2(nOutput, STDOUT_FILENO);
    dup2(nErrors, STDERR_FILENO);
    execvp(sProgram.c_str(), vPointers.data());
    _exit(127);
}

// A descriptor from which the text can be read.
int openInput(const std::string& sInput, InputKind eInput, const TemporaryFolder& tFolder)
{
    if (eInput == kFromFile)
        return open(tFolder.write("in", sInput).c_str(), O_RDONLY | O_CLOEXEC);
    int aPipe[2] = {-1, -1};
    if (pipe2(aPipe, O_CLOEXEC) != 0 || write(aPipe[1], sInput.data(), sInput.size()) < 0)
        return -1;
    close(aPipe[1]);
    return aPipe[0];
}

}  // namespace

CommandResult runProgram(const std::string& sProgram, const std::vector<std::string>& vArguments,
                         const std::string& sInput, InputKind eInput)
{
    const TemporaryFolder tFolder;
    const int nInput = openInput(sInput, eInput, tFolder);
    const pid_t nChild = fork();
    if (nChild == 0)
        execute(sProgram, vArguments, tFolder, nInput);
    close(nInput);
    int nStatus = 0;
    waitpid(nChild, &nStatus, 0);
    return {WIFEXITED(nStatus) ? WEXITSTATUS(nStatus) : -1, readFile(tFolder.path("out")),
            readFile(tFolder.path("err"))};
}

CommandResult runCommand(const std::vector<std::string>& vArguments, const std::string& sInput, InputKind eInput)
{
    return runProgram(WEBFORMAT_COMMAND, vArguments, sInput, eInput);
}

TemporaryFolder::TemporaryFolder()
{
    std::string sTemplate = (fs::temp_directory_path() / "webformat-test-XXXXXX").string();
    m_sPath = mkdtemp(sTemplate.data());
}

TemporaryFolder::~TemporaryFolder()
{
    std::error_code tError;
    fs::remove_all(m_sPath, tError);
}

std::string TemporaryFolder::write(const std::string& sName, const std::string& sBytes) const
{
    std::ofstream(path(sName), std::ios::binary) << sBytes;
    return path(sName);
}

std::string TemporaryFolder::names() const
{
    std::vector<std::string> vNames;
    for (const fs::directory_entry& tEntry : fs::directory_iterator(m_sPath))
        vNames.push_back(tEntry.path().filename().string());
    std::sort(vNames.begin(), vNames.end());
    std::string sResult;
    for (const std::string& sName : vNames)
        sResult += (sResult.empty() ? "" : " ") + sName;
    return sResult;
}

std::string readFile(const std::string& sPath)
{
    std::ostringstream tContents;
    tContents << std::ifstream(sPath, std::ios::binary).rdbuf();
    return tContents.str();
}

std::string sourcePath(const std::string& sName)
{
    return std::string(WEBFORMAT_SOURCE_DIR) + "/" + sName;
}

}  // namespace tov
