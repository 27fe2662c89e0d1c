#include "intl/currencydata.h"

#include <unicode/locid.h>
#include <unicode/numberformatter.h>
#include <unicode/ucurr.h>
#include <unicode/uenum.h>

#include <algorithm>
#include <memory>

#include "intl/localerecord.h"
#include "intl/localetext.h"

namespace tov {

namespace {

constexpr char kSource[] = "intl/currencydata";
constexpr char kNoCurrency[] = "XXX";
constexpr wchar_t kMinusStyle[] = L"minus";
constexpr wchar_t kParensStyle[] = L"parens";

icu::UnicodeString utf16Code(const std::string& sCode)
{
    return icu::UnicodeString(sCode.c_str(), static_cast<int32_t>(sCode.size()), US_INV);
}

unsigned defaultDigits(const std::string& sCode)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const int32_t nDigits = ucurr_getDefaultFractionDigits(utf16Code(sCode).getTerminatedBuffer(), &eStatus);
    return U_SUCCESS(eStatus) && nDigits >= 0 ? static_cast<unsigned>(nDigits) : 2;
}

CurrencyHandle newCurrency(const std::string& sCode, String sSymbol, const String& sFormat, const String& sMinus)
{
    Currency::NegativeFormats tNegative;
    tNegative.emplace(kMinusStyle, Currency::NegativeFormat(sMinus));
    tNegative.emplace(kParensStyle, Currency::NegativeFormat(L"(" + sFormat + L")"));
    return WEBFORMAT_NEW(kSource)
        Currency(std::move(sSymbol), defaultDigits(sCode), true, sFormat, std::move(tNegative));
}

// What stands for a field of a formatted amount: "#" for the number, "$" for the symbol, "-" for whatever minus sign
// the locale has.
wchar_t layoutCharacter(int32_t nField)
{
    switch (nField)
    {
    case UNUM_INTEGER_FIELD: return L'#';
    case UNUM_CURRENCY_FIELD: return L'$';
    case UNUM_SIGN_FIELD: return L'-';
    default: return 0;
    }
}

// "1 €" -> "# $". Text between the fields stays.
String layoutOf(const icu::number::FormattedNumber& tAmount, UErrorCode& eStatus)
{
    const icu::UnicodeString sText = tAmount.toTempString(eStatus);
    const auto tBetween = [&](int32_t nFrom, int32_t nTo)
    { return withPlainBlanks(wideText(sText.tempSubStringBetween(nFrom, nTo))); };
    String sLayout;
    int32_t nAt = 0;
    icu::ConstrainedFieldPosition tField;
    tField.constrainCategory(UFIELD_CATEGORY_NUMBER);
    while (tAmount.nextPosition(tField, eStatus))
    {
        const wchar_t nCharacter = layoutCharacter(tField.getField());
        if (nCharacter == 0)
            continue;
        sLayout += tBetween(nAt, tField.getStart());
        sLayout += nCharacter;
        nAt = tField.getLimit();
    }
    return sLayout + tBetween(nAt, sText.length());
}

}  // namespace

std::string regionCurrencyCode(const std::string& sId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    icu::Locale tLikely(sId.c_str());
    tLikely.addLikelySubtags(eStatus);
    // By region alone: variants such as "POSIX" would be taken for variants of the region.
    const std::string sRegion = std::string("und_") + tLikely.getCountry();
    char16_t aCode[4] = {};
    const int32_t nLength = ucurr_forLocale(sRegion.c_str(), aCode, 4, &eStatus);
    if (U_FAILURE(eStatus) || nLength != 3)
        return kNoCurrency;
    return std::string(aCode, aCode + nLength);
}

String narrowCurrencySymbol(const std::string& sCode, const std::string& sId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    int32_t nLength = 0;
    icu::UnicodeString sCode16 = utf16Code(sCode);
    const char16_t* const pSymbol = ucurr_getName(sCode16.getTerminatedBuffer(), sId.c_str(), UCURR_NARROW_SYMBOL_NAME,
                                                  nullptr, &nLength, &eStatus);
    if (U_FAILURE(eStatus))
        return String();
    return withoutBidiMarks(fromUtf16({pSymbol, static_cast<std::size_t>(nLength)}));
}

bool isCurrencyCode(const std::string& sCode)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    return ucurr_isAvailable(utf16Code(sCode).getTerminatedBuffer(), U_DATE_MIN, U_DATE_MAX, &eStatus) &&
           U_SUCCESS(eStatus);
}

std::vector<std::string> allCurrencyCodes()
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const std::unique_ptr<UEnumeration, decltype(&uenum_close)> pCodes(ucurr_openISOCurrencies(UCURR_ALL, &eStatus),
                                                                       &uenum_close);
    std::vector<std::string> vCodes;
    while (const char* const pCode = U_SUCCESS(eStatus) ? uenum_next(pCodes.get(), nullptr, &eStatus) : nullptr)
        vCodes.emplace_back(pCode);
    std::erase_if(vCodes, [](const std::string& sCode) { return !isCurrencyCode(sCode); });
    std::sort(vCodes.begin(), vCodes.end());
    return vCodes;
}

CurrencyHandle readLocaleCurrency(const std::string& sId)
{
    const std::string sCode = regionCurrencyCode(sId);
    if (*icu::Locale(sId.c_str()).getCountry() == 0 || sCode == kNoCurrency)
        return CurrencyHandle();
    UErrorCode eStatus = U_ZERO_ERROR;
    const auto tFormatter = icu::number::NumberFormatter::withLocale(icu::Locale(idForReading(sId).c_str()))
                                .unit(icu::CurrencyUnit(icu::StringPiece(sCode), eStatus))
                                .unitWidth(UNUM_UNIT_WIDTH_NARROW)
                                .precision(icu::number::Precision::integer());
    const String sFormat = layoutOf(tFormatter.formatInt(1, eStatus), eStatus);
    const String sMinus = layoutOf(tFormatter.formatInt(-1, eStatus), eStatus);
    if (U_FAILURE(eStatus))
        return CurrencyHandle();
    return newCurrency(sCode, narrowCurrencySymbol(sCode, sId), sFormat, sMinus);
}

CurrencyHandle readCurrency(const std::string& sCode)
{
    return newCurrency(sCode, narrowCurrencySymbol(sCode, "root"), L"$#", L"-$#");
}

CurrencyHandle readInternationalCurrency(const std::string& sCode)
{
    return newCurrency(sCode, String(sCode.begin(), sCode.end()), L"$ #", L"-$ #");
}

}  // namespace tov
