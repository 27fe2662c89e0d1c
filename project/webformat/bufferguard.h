#pragma once

#include <cstddef>

#include "webbedrock/stringbuffer.h"

namespace tov {

// Gives a buffer its old contents back unless all went well.
class BufferGuard
{
public:
    explicit BufferGuard(StringBufferBaseTemplate<wchar_t>& tBuffer) : m_tBuffer(tBuffer), m_nLength(tBuffer.length())
    {
    }
    BufferGuard(const BufferGuard&) = delete;
    BufferGuard& operator=(const BufferGuard&) = delete;
    ~BufferGuard() { m_tBuffer.truncate(m_nLength); }

    void keep() { m_nLength = m_tBuffer.length(); }

private:
    StringBufferBaseTemplate<wchar_t>& m_tBuffer;
    std::size_t m_nLength;
};

}  // namespace tov
