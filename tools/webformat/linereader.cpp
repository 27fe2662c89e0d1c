#include "linereader.h"

#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <utility>

#include "inputerror.h"

namespace tov {

namespace {

constexpr std::size_t knChunkBytes = 1 << 18;

}  // namespace

LineReader::LineReader(int nFile, std::size_t nLongestLine)
    : m_nFile(nFile), m_nLongestLine(nLongestLine), m_vBuffer(knChunkBytes)
{
    m_tLine.nNumber = 1;
}

bool LineReader::readChunk(std::vector<InputLine>& vLines)
{
    vLines.clear();
    while (vLines.empty() && !m_bAtEnd)
    {
        const std::size_t nBytes = readSome();
        takeLines(vLines, nBytes);
        m_bAtEnd = nBytes == 0;
        if (m_bAtEnd && (!m_tLine.sText.empty() || m_tLine.bTooLong))
            endLine(vLines);
    }
    return !vLines.empty();
}

std::size_t LineReader::readSome()
{
    for (;;)
    {
        const ssize_t nBytes = read(m_nFile, m_vBuffer.data(), m_vBuffer.size());
        if (nBytes >= 0)
            return static_cast<std::size_t>(nBytes);
        if (errno != EINTR)
            throw InputError({"standard input"}, std::string("cannot be read: ") + std::strerror(errno));
    }
}

void LineReader::takeLines(std::vector<InputLine>& vLines, std::size_t nBytes)
{
    const char* pNext = m_vBuffer.data();
    const char* pEnd = pNext + nBytes;
    while (const void* pFound = std::memchr(pNext, '\n', static_cast<std::size_t>(pEnd - pNext)))
    {
        const char* pLineEnd = static_cast<const char*>(pFound);
        appendToLine(pNext, static_cast<std::size_t>(pLineEnd - pNext));
        endLine(vLines);
        pNext = pLineEnd + 1;
    }
    appendToLine(pNext, static_cast<std::size_t>(pEnd - pNext));
}

void LineReader::appendToLine(const char* pBytes, std::size_t nBytes)
{
    m_tLine.bTooLong = m_tLine.bTooLong || nBytes > m_nLongestLine - m_tLine.sText.size();
    if (m_tLine.bTooLong)
        std::string().swap(m_tLine.sText);
    else
        m_tLine.sText.append(pBytes, nBytes);
}

void LineReader::endLine(std::vector<InputLine>& vLines)
{
    const std::size_t nNumber = m_tLine.nNumber;
    vLines.push_back(std::move(m_tLine));
    m_tLine = InputLine();
    m_tLine.nNumber = nNumber + 1;
}

}  // namespace tov
