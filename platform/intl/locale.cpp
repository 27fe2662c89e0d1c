#include "intl/locale.h"

#include <unicode/locid.h>
#include <unicode/unistr.h>

#include "corefacade/datetime.h"
#include "intl/knownlocales.h"
#include "intl/localetext.h"

namespace tov {

namespace {

const String& emptyText()
{
    static const String& s_sEmpty = *new String;
    return s_sEmpty;
}

const LocaleRecord& usaRecord()
{
    static const LocaleRecord& s_tRecord =
        KnownLocales::instance().record(KnownLocales::instance().indexOf("en_US").value());
    return s_tRecord;
}

icu::UnicodeString utf16Text(std::wstring_view sText)
{
    icu::UnicodeString sResult;
    for (const wchar_t tChar : sText)
        sResult.append(static_cast<UChar32>(tChar));
    return sResult;
}

}  // namespace

constinit const Locale Locale::kUSA;

const LocaleRecord& Locale::record() const
{
    return m_pRecord ? *m_pRecord : usaRecord();
}

const String& Locale::tag() const
{
    return record().sTag;
}

const String& Locale::getInfo(StringInfo eInfo) const
{
    const auto nInfo = static_cast<std::size_t>(eInfo);
    return nInfo < kStringInfoEnd_ ? record().tInfo[nInfo] : emptyText();
}

const String& Locale::getName(NameKind eKind, int nIndex) const
{
    const auto nKind = static_cast<std::size_t>(eKind);
    if (nKind >= kNameKindEnd_)
        return emptyText();
    const LocaleRecord::Names& vNames = record().tNames[nKind];
    const auto n = static_cast<std::size_t>(nIndex);
    return n < vNames.size() ? vNames[n] : emptyText();
}

void Locale::getEra(const DateTime&, StringBufferBaseTemplate<wchar_t>& tBuffer) const
{
    tBuffer.append(record().sEra);
}

String Locale::mapString(StringMapping eMapping, std::wstring_view sText) const
{
    if (eMapping != kUpperCase)
        return String(sText);
    icu::UnicodeString sMapped = utf16Text(sText);
    sMapped.toUpper(icu::Locale(record().sId.c_str()));
    return wideText(sMapped);
}

const std::vector<Locale::ScaleFactor>& Locale::getScaleFactors() const
{
    return record().vScales;
}

const String& Locale::overridingCurrencyTag() const
{
    return m_pCurrencyTag ? *m_pCurrencyTag : emptyText();
}

void Locale::setOverridingCurrencyTag(String sTag)
{
    m_pCurrencyTag = sTag.empty() ? nullptr : std::make_shared<const String>(std::move(sTag));
}

}  // namespace tov
