#pragma once

#include <string_view>

#include "intl/ktwuilanguage.h"
#include "webformat/outputtypes.h"

namespace tov {

// What a null value is in HTML, so that its cell keeps its height.
inline constexpr std::wstring_view kNonBreakingSpace = L"&nbsp;";

// Keeps a sign or a date from moving to the other side in a right-to-left page.
inline constexpr std::wstring_view kLeftToRightMark = L"&#x200e;";

inline bool needsLeftToRightMark(ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage)
{
    return eOutput == ValueFormatterTypes::kHTML && tLanguage.isHebrew();
}

}  // namespace tov
