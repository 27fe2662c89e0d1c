#include "intl/localetaglookup.h"

#include <unicode/locid.h>

#include <algorithm>

#include "intl/knownlocales.h"

namespace tov {

namespace {

using Index = std::optional<std::size_t>;

// The longest tags in use have some forty characters.
constexpr std::size_t kMaxTagLength = 100;

bool isTagCharacter(wchar_t tChar)
{
    return (tChar >= L'a' && tChar <= L'z') || (tChar >= L'A' && tChar <= L'Z') || (tChar >= L'0' && tChar <= L'9') ||
           tChar == L'-' || tChar == L'_';
}

// "en_US.UTF-8@euro" -> "en-US". Empty where the rest is too long or has a character that no tag has.
std::string languageTag(std::wstring_view sTag)
{
    sTag = sTag.substr(0, sTag.find_first_of(L".@"));
    if (sTag.size() > kMaxTagLength || !std::all_of(sTag.begin(), sTag.end(), isTagCharacter))
        return std::string();
    std::string sResult(sTag.begin(), sTag.end());
    std::replace(sResult.begin(), sResult.end(), '_', '-');
    return sResult;
}

// The identifier that a whole language tag stands for, in canonical form: "zh-cmn-Hans-CN" -> "cmn_Hans_CN" ->
// "zh_Hans_CN".
std::optional<icu::Locale> canonicalLocale(const std::string& sTag)
{
    char aId[ULOC_FULLNAME_CAPACITY];
    int32_t nParsed = 0;
    UErrorCode eStatus = U_ZERO_ERROR;
    uloc_forLanguageTag(sTag.c_str(), aId, sizeof aId, &nParsed, &eStatus);
    if (U_FAILURE(eStatus) || eStatus == U_STRING_NOT_TERMINATED_WARNING || sTag.empty() ||
        static_cast<std::size_t>(nParsed) != sTag.size())
        return std::nullopt;
    icu::Locale tLocale(aId);
    tLocale.canonicalize(eStatus);
    if (U_FAILURE(eStatus) || tLocale.isBogus())
        return std::nullopt;
    return tLocale;
}

std::string joined(std::initializer_list<std::string_view> tSubtags)
{
    std::string sId;
    for (const std::string_view sSubtag : tSubtags)
    {
        if (!sSubtag.empty())
            sId.append(sId.empty() ? "" : "_").append(sSubtag);
    }
    return sId;
}

// The language, script and region of `sId`, the likely ones where it leaves them out.
icu::Locale likelyLocale(const std::string& sId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    icu::Locale tLocale(sId.c_str());
    tLocale.addLikelySubtags(eStatus);
    return tLocale;
}

// Language and region, where the script goes without saying there.
Index indexWithoutScript(const KnownLocales& tKnown, const icu::Locale& tLikely)
{
    const std::string sId = joined({tLikely.getLanguage(), tLikely.getCountry()});
    const Index tFound = tKnown.indexOf(sId);
    const bool bUsualScript = tFound && std::string_view(likelyLocale(sId).getScript()) == tLikely.getScript();
    return bUsualScript ? tFound : std::nullopt;
}

Index indexByLikelySubtags(const KnownLocales& tKnown, const icu::Locale& tLocale)
{
    const std::string_view sLanguage = tLocale.getLanguage();
    const icu::Locale tLikely =
        likelyLocale(joined({sLanguage.empty() ? "und" : sLanguage, tLocale.getScript(), tLocale.getCountry()}));
    Index tFound = tKnown.indexOf(joined({tLikely.getLanguage(), tLikely.getScript(), tLikely.getCountry()}));
    if (!tFound)
        tFound = indexWithoutScript(tKnown, tLikely);
    // A tag without a language stands for no more than its most likely locale.
    if (!tFound && !sLanguage.empty())
        tFound = tKnown.indexOf(joined({tLikely.getLanguage(), tLikely.getScript()}));
    if (!tFound && !sLanguage.empty())
        tFound = tKnown.indexOf(sLanguage);
    return tFound;
}

Index indexOfTag(std::wstring_view sTag)
{
    const std::optional<icu::Locale> tLocale = canonicalLocale(languageTag(sTag));
    if (!tLocale)
        return std::nullopt;
    const std::string sPlain = joined({tLocale->getLanguage(), tLocale->getScript(), tLocale->getCountry()});
    // "und" says nothing, and filling in the likely subtags would make English of it.
    if (sPlain.empty())
        return std::nullopt;
    const KnownLocales& tKnown = KnownLocales::instance();
    Index tFound = tKnown.indexOf(tLocale->getBaseName());
    if (!tFound)
        tFound = tKnown.indexOf(sPlain);
    return tFound ? tFound : indexByLikelySubtags(tKnown, *tLocale);
}

}  // namespace

const LocaleTagLookup& LocaleTagLookup::getInstance()
{
    static constexpr LocaleTagLookup s_tLookup;
    return s_tLookup;
}

std::optional<Locale> LocaleTagLookup::lookup(std::wstring_view sTag)
{
    const Index tIndex = indexOfTag(sTag);
    if (!tIndex)
        return std::nullopt;
    return Locale(&KnownLocales::instance().record(*tIndex));
}

Locale LocaleTagLookup::lookupOrDefault(std::wstring_view sTag, bool* pbFound)
{
    const std::optional<Locale> tLocale = lookup(sTag);
    if (pbFound)
        *pbFound = tLocale.has_value();
    return tLocale.value_or(Locale::kUSA);
}

bool LocaleTagLookup::findLocaleByDefinitionName(const String& sName, Locale& tLocale) const
{
    constexpr std::wstring_view sDates = L";dates";
    std::wstring_view sTag = sName;
    const bool bDates = sTag.ends_with(sDates);
    if (bDates)
        sTag.remove_suffix(sDates.size());
    const Index tIndex = indexOfTag(sTag);
    if (!tIndex)
        return false;
    const MonthNames eMonths = bDates ? MonthNames::kInsideDates : MonthNames::kByThemselves;
    tLocale = Locale(&KnownLocales::instance().record(*tIndex, eMonths));
    return true;
}

std::vector<String> LocaleTagLookup::allTags()
{
    const KnownLocales& tKnown = KnownLocales::instance();
    std::vector<String> vTags;
    for (std::size_t n = 0; n < tKnown.size(); ++n)
    {
        UErrorCode eStatus = U_ZERO_ERROR;
        const std::string sTag = icu::Locale(tKnown.idAt(n).c_str()).toLanguageTag<std::string>(eStatus);
        vTags.emplace_back(sTag.begin(), sTag.end());
    }
    std::sort(vTags.begin(), vTags.end());
    return vTags;
}

}  // namespace tov
