#include <unicode/dcfmtsym.h>
#include <unicode/decimfmt.h>

#include <memory>

#include "intl/currencydata.h"
#include "intl/localerecord.h"
#include "intl/localetext.h"

namespace tov {

namespace {

void readSeparators(const icu::DecimalFormatSymbols& tSymbols, LocaleRecord& tRecord)
{
    using Symbols = icu::DecimalFormatSymbols;
    const auto read = [&](Locale::StringInfo eInfo, Symbols::ENumberFormatSymbol eSymbol)
    { tRecord.tInfo[eInfo] = wideText(tSymbols.getConstSymbol(eSymbol)); };
    read(Locale::kDecimalSeparator, Symbols::kDecimalSeparatorSymbol);
    read(Locale::kThousandsSeparator, Symbols::kGroupingSeparatorSymbol);
    read(Locale::kMonetaryDecimalSeparator, Symbols::kMonetarySeparatorSymbol);
    read(Locale::kMonetaryThousandsSeparator, Symbols::kMonetaryGroupingSeparatorSymbol);
    read(Locale::kPercentFormat, Symbols::kPercentSymbol);
    String& sPercent = tRecord.tInfo[Locale::kPercentFormat];
    sPercent = withoutBidiMarks(sPercent);
}

// "#,##0 %" -> "# %": the sign's side of the digits, and whether a blank stands between.
String percentLocation(std::wstring_view sPattern)
{
    const std::size_t nSign = sPattern.find(L'%');
    const std::size_t nDigits = sPattern.find_first_of(L"#0");
    if (nSign == std::wstring_view::npos || nDigits == std::wstring_view::npos)
        return String();
    if (nSign < nDigits)
        return isBlank(sPattern[nSign + 1]) ? L"% #" : L"%#";
    return isBlank(sPattern[nSign - 1]) ? L"# %" : L"#%";
}

void readPercentLocation(const icu::Locale& tLocale, LocaleRecord& tRecord)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const std::unique_ptr<icu::NumberFormat> pFormat(icu::NumberFormat::createPercentInstance(tLocale, eStatus));
    const auto* const pDecimalFormat = dynamic_cast<const icu::DecimalFormat*>(pFormat.get());
    if (U_FAILURE(eStatus) || !pDecimalFormat)
        return;
    icu::UnicodeString sPattern;
    pDecimalFormat->toPattern(sPattern);
    // Only the positive half says where the sign stands.
    const String sWide = withoutBidiMarks(wideText(sPattern));
    tRecord.tInfo[Locale::kPercentSymbolLocation] =
        percentLocation(std::wstring_view(sWide).substr(0, sWide.find(L';')));
}

}  // namespace

void readNumberSymbols(LocaleRecord& tRecord)
{
    // One sign in front everywhere, whatever minus sign or side the locale prefers.
    tRecord.tInfo[Locale::kNegativeNumberTemplate] = L"-#";
    const icu::Locale tLocale(idForReading(tRecord.sId).c_str());
    UErrorCode eStatus = U_ZERO_ERROR;
    const icu::DecimalFormatSymbols tSymbols(tLocale, eStatus);
    if (U_SUCCESS(eStatus))
        readSeparators(tSymbols, tRecord);
    readPercentLocation(tLocale, tRecord);
    tRecord.tInfo[Locale::kPrimaryCurrencySymbol] = narrowCurrencySymbol(regionCurrencyCode(tRecord.sId), tRecord.sId);
}

}  // namespace tov
