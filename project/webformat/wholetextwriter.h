#pragma once

#include <string_view>

#include "project/webformat/bufferguard.h"
#include "webbedrock/encoding.h"

namespace tov {

// Appends a text that is made of many pieces to a buffer, all of it or nothing: where a piece does not fit (the
// buffer's assertion, raised once) or memory runs out (std::bad_alloc), and where `finish` is never called, the buffer
// keeps its old contents.
//
// Example:  WholeTextWriter tWriter(tBuffer);  tWriter.write(L"<b>");  tWriter.write(sText, tEncoding);
//           tWriter.write(L"</b>");  tWriter.finish();
class WholeTextWriter
{
public:
    explicit WholeTextWriter(StringBufferBaseTemplate<wchar_t>& tBuffer) : m_tBuffer(tBuffer), m_tGuard(tBuffer) {}

    void write(std::wstring_view sText)
    {
        if (m_bFits && (m_bFits = m_tBuffer.reserveFree(sText.size())))
            m_tBuffer.append(sText);
    }

    // For encoders that drop nothing.
    void write(std::wstring_view sText, const W2WEncoding& tEncoding)
    {
        if (!m_bFits || sText.empty())
            return;
        const std::size_t nBefore = m_tBuffer.length();
        tEncoding.updateToBuffer(m_tBuffer, sText.data(), sText.size());
        m_bFits = m_tBuffer.length() != nBefore;
    }

    // Whether all pieces fitted so far; the ones behind one that did not are ignored.
    bool fits() const { return m_bFits; }

    void finish()
    {
        if (m_bFits)
            m_tGuard.keep();
    }

private:
    StringBufferBaseTemplate<wchar_t>& m_tBuffer;
    BufferGuard m_tGuard;
    bool m_bFits = true;
};

}  // namespace tov
