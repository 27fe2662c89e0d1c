#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "intl/locale.h"
#include "webbedrock/export.h"

namespace tov {

// Finds the locale that a tag names: lookup(L"de_DE.UTF-8") -> "de-DE", lookup(L"zh-TW") -> "zh-Hant-TW".
//
// The tag is cut at the first "." or "@", "_" counts as "-", and case does not matter. What is left must be a language
// tag as a whole. The first of these that is a known locale is the answer:
//   1. the tag in canonical form, without its extensions;
//   2. the same without variants;
//   3. with the likely subtags filled in: language, script and region; then language and region where the script is the
//      region's usual one;
//   4. language and script; 5. the language.
// Anything else is unknown, and so are "und", "root", "C" and "POSIX". Tags may come from outside: those of more than
// 100 characters and those with characters that no tag has are unknown, and no tag makes a cache grow.
//
// Any thread. The first lookup of a locale builds its record (about a millisecond), later ones take microseconds.
class WEBFORMAT_EXPORT LocaleTagLookup
{
public:
    static const LocaleTagLookup& getInstance();

    static std::optional<Locale> lookup(std::wstring_view sTag);

    // en-US for an unknown tag; `*pbFound`, where given, says whether the tag was known.
    static Locale lookupOrDefault(std::wstring_view sTag, bool* pbFound = nullptr);

    // The locale of a name that a date pattern gives: a tag, or a tag and ";dates". The latter is the same locale with
    // the month names that are used inside dates as its nominative ones: "ru-RU;dates" -> "января" for January. False,
    // and `tLocale` left alone, where the name is unknown.
    bool findLocaleByDefinitionName(const String& sName, Locale& tLocale) const;

    // The tags of all locales, sorted; each one finds its own locale.
    static std::vector<String> allTags();

private:
    constexpr LocaleTagLookup() = default;
};

}  // namespace tov
