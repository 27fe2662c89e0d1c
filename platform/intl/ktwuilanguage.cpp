#include "intl/ktwuilanguage.h"

#include <algorithm>

namespace tov {

namespace {

const String& defaultTag()
{
    // Never destroyed: static objects of other files may still ask while the process ends.
    static const String& s_sTag = *new String(L"en-us");
    return s_sTag;
}

wchar_t lowerAscii(wchar_t tChar)
{
    return tChar >= L'A' && tChar <= L'Z' ? tChar - L'A' + L'a' : tChar;
}

bool sameIgnoringCase(wchar_t tLeft, wchar_t tRight)
{
    return lowerAscii(tLeft) == lowerAscii(tRight);
}

}  // namespace

constinit const KTWUILanguage KTWUILanguage::kDefaultLanguage;

KTWUILanguage::KTWUILanguage(String sTag) : m_pTag(std::make_shared<const String>(std::move(sTag))) {}

const String& KTWUILanguage::GetTag() const
{
    return m_pTag ? *m_pTag : defaultTag();
}

bool KTWUILanguage::isHebrew() const
{
    constexpr std::wstring_view sHebrew = L"he";
    const std::wstring_view sStart = std::wstring_view(GetTag()).substr(0, sHebrew.size());
    return std::equal(sStart.begin(), sStart.end(), sHebrew.begin(), sHebrew.end(), sameIgnoringCase);
}

bool operator==(const KTWUILanguage& tLeft, const KTWUILanguage& tRight)
{
    const String& sLeft = tLeft.GetTag();
    const String& sRight = tRight.GetTag();
    return std::equal(sLeft.begin(), sLeft.end(), sRight.begin(), sRight.end(), sameIgnoringCase);
}

}  // namespace tov
