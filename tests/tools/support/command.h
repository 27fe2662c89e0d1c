#pragma once

#include <string>
#include <vector>

namespace tov {

// What a run of the command left behind.
struct CommandResult
{
    int nStatus = -1;  // the exit status; -1 where a signal ended the process
    std::string sOutput;
    std::string sErrors;
};

// How standard input reaches a program.
enum InputKind
{
    kFromFile,
    kFromPipe  // of at most some 60,000 bytes
};

// Runs the built command with these arguments and this text as standard input.
CommandResult runCommand(const std::vector<std::string>& vArguments, const std::string& sInput = std::string(),
                         InputKind eInput = kFromFile);

// Runs any program, looked for as the shell does.
CommandResult runProgram(const std::string& sProgram, const std::vector<std::string>& vArguments,
                         const std::string& sInput = std::string(), InputKind eInput = kFromFile);

// A folder of its own for a test; goes away with everything in it.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder&) = delete;
    TemporaryFolder& operator=(const TemporaryFolder&) = delete;

    std::string path(const std::string& sName) const { return m_sPath + "/" + sName; }
    // Writes a file and returns its path.
    std::string write(const std::string& sName, const std::string& sBytes) const;
    // The names of everything in the folder, sorted and separated by blanks.
    std::string names() const;

private:
    std::string m_sPath;
};

std::string readFile(const std::string& sPath);

// A file of the checkout.
std::string sourcePath(const std::string& sName);

}  // namespace tov
