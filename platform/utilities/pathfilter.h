#pragma once

#include <string_view>

#include "webbedrock/export.h"

namespace tov {

// The path of an element below the configuration's root: local names with "/" between them.
//
// Example: PathFilter(L"Formatters/NumericFormatter") names <NumericFormatter> in
//     <Config><Formatters><NumericFormatter maxSignificantDigits="15"/></Formatters></Config>
//
// Holds a view: the text must live as long as the filter; constants do.
class WEBFORMAT_EXPORT PathFilter
{
public:
    constexpr explicit PathFilter(std::wstring_view sPath) : m_sPath(sPath) {}
    constexpr std::wstring_view path() const { return m_sPath; }

private:
    std::wstring_view m_sPath;
};

}  // namespace tov
