#pragma once

#include <string>

namespace tov {

// The encoders that are written first: a switch for each character, the result in a string that is reused.

struct AppendMarkup
{
    void operator()(std::wstring& sResult, wchar_t nChar) const
    {
        switch (nChar)
        {
        case L'&': sResult += L"&amp;"; break;
        case L'<': sResult += L"&lt;"; break;
        case L'>': sResult += L"&gt;"; break;
        case L'"': sResult += L"&quot;"; break;
        case L'\'': sResult += L"&#39;"; break;
        default: sResult += nChar; break;
        }
    }
};

struct AppendJavaScript
{
    void operator()(std::wstring& sResult, wchar_t nChar) const
    {
        switch (nChar)
        {
        case L'\\': sResult += L"\\\\"; break;
        case L'\n': sResult += L"\\n"; break;
        case L'\t': sResult += L"\\t"; break;
        case L'"': sResult += L"\\u0022"; break;
        case L'\'': sResult += L"\\u0027"; break;
        case L'<': sResult += L"\\u003C"; break;
        case L'>': sResult += L"\\u003E"; break;
        default: sResult += nChar; break;
        }
    }
};

struct AppendSQL
{
    void operator()(std::wstring& sResult, wchar_t nChar) const
    {
        if (nChar == L'\'')
            sResult += L'\'';
        sResult += nChar;
    }
};

}  // namespace tov
