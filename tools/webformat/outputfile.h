#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tov {

// Where a sub-command writes its result: a file that appears whole or not at all, or standard output.
//
// A file is written beside its place, with the permissions that a new file there would have or those of the file that
// it replaces, and takes its name in `commit`. Without a commit, and when the process is interrupted, terminated or
// hung up, nothing is left behind and an older file stays as it was. A place that is no regular file (a device, a pipe)
// is written at once.
//
// Errors throw InputError with the system's reason. One thread; one file at a time is guarded against signals.
class OutputFile
{
public:
    // An empty path stands for standard output.
    explicit OutputFile(const std::string& sPath);
    // A file in the folder for temporary files, for one who fills it by its path: nobody else may read it, and it goes
    // away with this object.
    static OutputFile scratch() { return OutputFile(Scratch()); }
    ~OutputFile();
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    void write(std::string_view sBytes);
    void write(std::wstring_view sText);

    // What messages call it: its path, as it was given.
    const std::string& name() const { return m_sPath; }

    // The file beside its place, for one who fills it by its path instead of by `write`; empty where there is none.
    const std::string& temporaryPath() const { return m_sTemporary; }

    // Hands everything over to the system, and gives the file its name.
    void commit();

private:
    struct Scratch
    {
    };

    explicit OutputFile(Scratch);
    void openTemporary();
    void flush();
    [[noreturn]] void fail(const char* pWhat) const;

    std::string m_sPath;       // as it was given
    std::string m_sTarget;     // behind symbolic links
    std::string m_sTemporary;  // empty: written in place
    std::string m_sBuffer;
    int m_nFile = -1;
};

}  // namespace tov
