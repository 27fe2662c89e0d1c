#pragma once

#include <unicode/unistr.h>

#include <cstdio>
#include <cstdlib>
#include <string>

#include "webformat/numericformatter.h"

namespace tov {

// The library itself, through its public call into a reused buffer.
template <class T>
class Webformat
{
public:
    explicit Webformat(const WebValueFormatterHandle& hFormatter) : m_hFormatter(hFormatter) {}

    explicit Webformat(const wchar_t* pPattern)
        : Webformat(NumericFormatter<T>::ParseCustomFormat(pPattern, Locale::kUSA, ValueFormatterTypes::kText,
                                                           KTWUILanguage::kDefaultLanguage))
    {
    }

    void write(const T& tValue)
    {
        m_tBuffer.clear();
        m_hFormatter->formatToBuffer(m_tBuffer, &tValue);
    }

    std::wstring text() const { return m_tBuffer.toString(); }

private:
    WebValueFormatterHandle m_hFormatter;
    StringBufferTemplate<wchar_t, 256> m_tBuffer;
};

inline std::wstring toWide(const std::string& sText)
{
    return std::wstring(sText.begin(), sText.end());
}

// Of the characters of the basic plane.
inline std::wstring toWide(const icu::UnicodeString& sText)
{
    return std::wstring(sText.getBuffer(), sText.getBuffer() + sText.length());
}

// Ends the program when the peer could not be set up.
inline void requireSuccess(UErrorCode eError)
{
    if (U_SUCCESS(eError))
        return;
    std::fprintf(stderr, "ICU: %s\n", u_errorName(eError));
    std::exit(1);
}

}  // namespace tov
