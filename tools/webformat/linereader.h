#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace tov {

struct InputLine
{
    std::string sText;        // without its line end
    std::size_t nNumber = 0;  // from 1
    bool bTooLong = false;    // its text was dropped
};

// Reads lines from a file descriptor as they come: a chunk is what one read delivers, so that a writer who waits for an
// answer gets it. A line of more than 64 MiB is marked and its text dropped; the memory used stays below twice that.
class LineReader
{
public:
    static constexpr std::size_t knLongestLine = std::size_t(64) << 20;

    explicit LineReader(int nFile, std::size_t nLongestLine = knLongestLine);

    // Replaces `vLines` by the complete lines of the next chunk, at least one; the last line of the input need not end.
    // False at the end. Throws InputError where the input cannot be read.
    bool readChunk(std::vector<InputLine>& vLines);

private:
    std::size_t readSome();
    void takeLines(std::vector<InputLine>& vLines, std::size_t nBytes);
    void appendToLine(const char* pBytes, std::size_t nBytes);
    void endLine(std::vector<InputLine>& vLines);

    int m_nFile;
    std::size_t m_nLongestLine;
    std::vector<char> m_vBuffer;
    InputLine m_tLine;  // the one that has not ended yet
    bool m_bAtEnd = false;
};

}  // namespace tov
