#pragma once

#include <cstddef>
#include <cstring>
#include <string>
#include <string_view>
#include <type_traits>

#include "webbedrock/export.h"

namespace tov {

// A growable buffer of characters that formatters append to.
//
// The length and the capacity count characters without the terminator; the storage holds capacity + 1. When a needed
// length is above the capacity, the capacity becomes the smallest of 63, 127, 255, 511, ... ((previous + 1) x 2 - 1)
// that holds it, and the contents move to storage from the allocator gateway. A needed length above 0x7FFFFFFF is the
// assertion "nSize < (1ULL << 31)": nothing is appended. Out of memory throws std::bad_alloc. Either way the buffer
// keeps its length and contents.
//
// This base has no inline storage; `StringBufferTemplate` has. One buffer belongs to one thread at a time.
//
// Example:  StringBufferTemplate<wchar_t, 256> tBuffer;  tBuffer.append(L"12", 2);  tBuffer.append(L'%');  -> "12%"
template <class Char>
class WEBFORMAT_EXPORT StringBufferBaseTemplate
{
    static_assert(std::is_trivially_copyable_v<Char>);

public:
    using View = std::basic_string_view<Char>;

    StringBufferBaseTemplate() = default;
    StringBufferBaseTemplate(const StringBufferBaseTemplate&) = delete;
    StringBufferBaseTemplate& operator=(const StringBufferBaseTemplate&) = delete;
    ~StringBufferBaseTemplate() { releaseHeap(); }

    std::size_t length() const { return m_nLength; }
    std::size_t capacity() const { return m_nCapacity; }
    bool empty() const { return m_nLength == 0; }
    const Char* data() const { return m_pData; }
    View view() const { return View(m_pData, m_nLength); }
    std::basic_string<Char> toString() const { return std::basic_string<Char>(m_pData, m_nLength); }
    Char& operator[](std::size_t nAt) { return m_pData[nAt]; }
    const Char& operator[](std::size_t nAt) const { return m_pData[nAt]; }

    // The contents with a terminator behind them; valid until the next change.
    const Char* terminated()
    {
        if (m_nCapacity == 0 && !grow(1))
            return m_pData;
        m_pData[m_nLength] = Char();
        return m_pData;
    }

    void append(Char tChar)
    {
        if (m_nLength < m_nCapacity || grow(1))
            m_pData[m_nLength++] = tChar;
    }

    void append(const Char* pText, std::size_t nLength)
    {
        if (nLength != 0 && reserveFree(nLength))
        {
            std::memcpy(m_pData + m_nLength, pText, nLength * sizeof(Char));
            m_nLength += nLength;
        }
    }

    void append(View sText) { append(sText.data(), sText.size()); }

    void appendRepeated(Char tChar, std::size_t nCount)
    {
        if (nCount == 0 || !reserveFree(nCount))
            return;
        std::char_traits<Char>::assign(m_pData + m_nLength, nCount, tChar);
        m_nLength += nCount;
    }

    // Makes room for `nFree` more characters; false (after the assertion) where the result would be too long.
    bool reserveFree(std::size_t nFree) { return nFree <= m_nCapacity - m_nLength || grow(nFree); }

    // The first free place and, once characters have been written there, the step over them. `nCount` is at most
    // capacity() - length().
    Char* freePlace() { return m_pData + m_nLength; }
    void advance(std::size_t nCount) { m_nLength += nCount; }

    // Shortens the contents to `nLength` characters (not more than length()); the storage stays.
    void truncate(std::size_t nLength) { m_nLength = nLength; }
    void clear() { m_nLength = 0; }

protected:
    StringBufferBaseTemplate(Char* pInline, std::size_t nCapacity)
        : m_pData(pInline), m_pInline(pInline), m_nCapacity(nCapacity)
    {
    }

private:
    // Moves to storage with room for `nFree` more characters, or raises the assertion and returns false.
    bool grow(std::size_t nFree);
    void releaseHeap();

    static inline Char s_tNothing{};

    Char* m_pData = &s_tNothing;
    Char* m_pInline = &s_tNothing;
    std::size_t m_nLength = 0;
    std::size_t m_nCapacity = 0;
};

extern template class StringBufferBaseTemplate<wchar_t>;
extern template class StringBufferBaseTemplate<char>;

// A buffer whose first `nInline` characters need no heap.
template <class Char, std::size_t nInline>
class StringBufferTemplate : public StringBufferBaseTemplate<Char>
{
public:
    StringBufferTemplate() : StringBufferBaseTemplate<Char>(m_aInline, nInline) {}

private:
    Char m_aInline[nInline + 1];
};

}  // namespace tov
