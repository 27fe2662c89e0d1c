#include "textdirection.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace tov {

namespace {

// Languages and scripts that are written from right to left.
constexpr std::array<std::wstring_view, 12> kaRightToLeft = {L"ar", L"he", L"fa", L"ur",  L"ps", L"sd",
                                                             L"ug", L"yi", L"dv", L"ckb", L"iw", L"syr"};
constexpr std::array<std::wstring_view, 6> kaRightToLeftScripts = {L"Arab", L"Hebr", L"Thaa",
                                                                   L"Syrc", L"Nkoo", L"Adlm"};

}  // namespace

bool isRightToLeft(const String& sTag)
{
    const std::wstring_view sLanguage = std::wstring_view(sTag).substr(0, sTag.find(L'-'));
    const bool bScript = std::any_of(kaRightToLeftScripts.begin(), kaRightToLeftScripts.end(),
                                     [&](std::wstring_view sScript) { return sTag.find(sScript) != String::npos; });
    const bool bOther = sTag.find(L"-Latn") != String::npos || sTag.find(L"-Cyrl") != String::npos ||
                        sTag.find(L"-Deva") != String::npos;
    const bool bLanguage = std::find(kaRightToLeft.begin(), kaRightToLeft.end(), sLanguage) != kaRightToLeft.end();
    return bScript || (bLanguage && !bOther);
}

}  // namespace tov
