#include "webbedrock/encoding.h"

#include <algorithm>
#include <type_traits>

namespace tov {

namespace {

constexpr std::size_t kSmallestChunk = 64;
constexpr std::size_t kEndRoom = 4;

bool isLowSurrogate(wchar_t nChar)
{
    return nChar >= 0xDC00 && nChar < 0xE000;
}

// Takes back what was appended unless the text was completed.
template <class Char>
class AppendGuard
{
public:
    explicit AppendGuard(StringBufferBaseTemplate<Char>& tBuffer) : m_tBuffer(tBuffer), m_nStart(tBuffer.length()) {}
    ~AppendGuard()
    {
        if (!m_bComplete)
            m_tBuffer.truncate(m_nStart);
    }
    AppendGuard(const AppendGuard&) = delete;
    AppendGuard& operator=(const AppendGuard&) = delete;

    void complete() { m_bComplete = true; }

private:
    StringBufferBaseTemplate<Char>& m_tBuffer;
    std::size_t m_nStart;
    bool m_bComplete = false;
};

// The next chunk fills about half of the free room, so that one that doubles still fits. It is never empty: only one of
// at least 64 characters can be shortened.
template <class Source, class Target>
std::size_t chunkLength(const StringBufferBaseTemplate<Target>& tBuffer, const Source* pSource, std::size_t nRemaining)
{
    const std::size_t nChunk =
        std::min(nRemaining, std::max((tBuffer.capacity() - tBuffer.length()) / 2, kSmallestChunk));
    if constexpr (std::is_same_v<Source, wchar_t>)
    {
        if (nChunk < nRemaining && isLowSurrogate(pSource[nChunk]))
            return nChunk - 1;
    }
    return nChunk;
}

std::size_t raisedEstimate(std::size_t nEstimate, std::size_t nRemaining)
{
    const bool bTextMayExplain = nRemaining > nEstimate / 2;
    return 2 * (bTextMayExplain ? std::min(nEstimate, nRemaining) : nEstimate);
}

// Appends one chunk; false where the buffer cannot hold it.
template <class Source, class Target>
bool appendChunk(const Encoding<Source, Target>& tEncoding, StringBufferBaseTemplate<Target>& tBuffer,
                 const Source* pSource, std::size_t nChunk, std::size_t nRemaining, EncodingState& tState)
{
    std::size_t nEstimate = std::max<std::size_t>(tEncoding.estimateEncodingSize(nChunk), 1);
    for (; tBuffer.reserveFree(nEstimate); nEstimate = raisedEstimate(nEstimate, nRemaining))
    {
        const std::size_t nFree = tBuffer.capacity() - tBuffer.length();
        const std::size_t nWritten = tEncoding.encode(pSource, nChunk, tBuffer.freePlace(), nFree, tState);
        if (nWritten != Encoding<Source, Target>::knTooSmall)
        {
            tBuffer.advance(nWritten);
            return true;
        }
    }
    return false;
}

// Appends what the end of the text asks for. The buffer grows only where there is something to write.
template <class Source, class Target>
bool appendEnd(const Encoding<Source, Target>& tEncoding, StringBufferBaseTemplate<Target>& tBuffer,
               EncodingState& tState)
{
    const auto tWrite = [&]
    { return tEncoding.finish(tBuffer.freePlace(), tBuffer.capacity() - tBuffer.length(), tState); };
    std::size_t nWritten = tWrite();
    if (nWritten == Encoding<Source, Target>::knTooSmall)
    {
        if (!tBuffer.reserveFree(kEndRoom))
            return false;
        nWritten = tWrite();
    }
    tBuffer.advance(nWritten);
    return true;
}

template <class Source>
String encodedString(const Encoding<Source, wchar_t>& tEncoding, const Source* pSource, std::size_t nSource)
{
    StringBufferTemplate<wchar_t, 511> tBuffer;
    tEncoding.updateToBuffer(tBuffer, pSource, nSource);
    return tBuffer.toString();
}

}  // namespace

template <class Source, class Target>
std::size_t Encoding<Source, Target>::finish(Target*, std::size_t, EncodingState&) const
{
    return 0;
}

template <class Source, class Target>
void Encoding<Source, Target>::updateToBuffer(StringBufferBaseTemplate<Target>& tBuffer, const Source* pSource,
                                              std::size_t nSource) const
{
    AppendGuard<Target> tGuard(tBuffer);
    EncodingState tState;
    const bool bChunks = isChunkable();
    for (std::size_t nRemaining = nSource; nRemaining != 0;)
    {
        const std::size_t nChunk = bChunks ? chunkLength(tBuffer, pSource, nRemaining) : nRemaining;
        if (!appendChunk(*this, tBuffer, pSource, nChunk, nRemaining, tState))
            return;
        pSource += nChunk;
        nRemaining -= nChunk;
    }
    if (appendEnd(*this, tBuffer, tState))
        tGuard.complete();
}

template class Encoding<wchar_t, wchar_t>;
template class Encoding<unsigned char, wchar_t>;

String encodeAsString(const W2WEncoding& tEncoding, const wchar_t* pText, std::size_t nLength)
{
    return encodedString(tEncoding, pText, nLength);
}

String encodeAsString(const B2WEncoding& tEncoding, const unsigned char* pBytes, std::size_t nLength)
{
    return encodedString(tEncoding, pBytes, nLength);
}

}  // namespace tov
