#pragma once

#include "webformat/durationformatters.h"

namespace tov {

// The pattern of durations without a definition.
inline constexpr wchar_t kDefaultDuration[] = L"[duration(sec)] dd\"d\":hh\"h\":mm\"m\":ss\"s\"";

template <class T>
WebValueFormatterHandle durationFormatterFor(const String& sPattern,
                                             ValueFormatterTypes::OutputType eOutput = ValueFormatterTypes::kText,
                                             const wchar_t* pLanguage = L"en-us")
{
    return DurationFormatter<T>::ParseCustomFormat(sPattern, Locale::kUSA, eOutput, KTWUILanguage(pLanguage));
}

template <class T>
String formatDuration(const String& sPattern, const T& tValue)
{
    return durationFormatterFor<T>(sPattern)->formatAsString(&tValue);
}

}  // namespace tov
