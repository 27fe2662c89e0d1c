// The older numeric formats and currency tags: every text converts, to what a second reading of the rule makes of it,
// and every tag gives a currency whose amounts keep their digits, or none.

#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <optional>

#include "intl/currencylookup.h"
#include "intl/localetaglookup.h"
#include "project/webformat/currencypattern.h"
#include "webbedrock/assertion.h"
#include "webbedrock/logger.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/numericformatter.h"

namespace {

using namespace tov;

using Base = WebNumberFormatDefinitionBase;

constexpr std::size_t kHeader = 10;

void stopAtAssertion(const char*, const char*, int)
{
    std::abort();
}

void ignoreLine(Logger::Severity, std::wstring_view) {}

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

bool skip(std::wstring_view& sText, std::wstring_view sStart)
{
    if (!sText.starts_with(sStart))
        return false;
    sText.remove_prefix(sStart.size());
    return true;
}

// What a positive part says: the grammar read from left to right.
struct Positive
{
    bool bCurrency = false;
    bool bPercent = false;
    bool bCommas = false;
    std::size_t nMin = 0;
    std::size_t nMax = 0;
};

std::optional<Positive> readPositive(std::wstring_view sText)
{
    Positive t;
    t.bCurrency = skip(sText, L"$");
    t.bPercent = !t.bCurrency && sText.ends_with(L"%");
    if (t.bPercent)
        sText.remove_suffix(1);
    t.bCommas = skip(sText, L"#,##");
    const std::size_t nPoint = sText.find(L'.');
    const std::wstring_view sWhole = sText.substr(0, nPoint);
    const std::wstring_view sFraction = nPoint == sText.npos ? std::wstring_view() : sText.substr(nPoint + 1);
    const std::wstring_view sZero = t.bCommas ? L"0" : L"#0";
    const bool bZero = sWhole == sZero;
    if (nPoint == sText.npos)
    {
        t.nMax = bZero ? 0 : 16;
        return bZero || sWhole == L"#" ? std::optional(t) : std::nullopt;
    }
    const wchar_t nDigit = bZero ? L'0' : L'#';
    const bool bWhole = bZero || sWhole == (t.bCommas ? L"#" : L"##");
    if (!bWhole || sFraction.empty() || sFraction.size() > 6 || sFraction.find_first_not_of(nDigit) != sFraction.npos)
        return std::nullopt;
    t.nMax = sFraction.size();
    t.nMin = bZero ? t.nMax : 0;
    return t;
}

// The negative style where the string is one of the older notation.
std::optional<Base::NegativeFormat> readNegative(std::wstring_view sNegative, std::wstring_view sPositive,
                                                 bool bCurrency)
{
    const bool bRed = skip(sNegative, L"[red]");
    const bool bParens = sNegative.starts_with(L'(') && sNegative.ends_with(L')');
    if (bParens)
        sNegative = sNegative.substr(1, sNegative.size() - 2);
    const bool bSign = bParens || skip(sNegative, L"-");
    if (sNegative != sPositive || !(bRed || bSign))
        return std::nullopt;
    if (bParens && !bCurrency)
        return bRed ? Base::kRedParens : Base::kParens;
    return bRed ? Base::kRed : Base::kMinus;
}

void requireNumber(const Base& tNumber, Base::NegativeFormat eFormat, bool bCommas, std::size_t nMin, std::size_t nMax)
{
    require(tNumber.GetNegativeFormat() == eFormat && tNumber.HasCommas() == bCommas && tNumber.MinDigits() == nMin &&
            tNumber.MaxDigits() == nMax);
}

void requireReading(const WebValueFormatDefinition& tDefinition, const String& sFormat)
{
    const std::size_t nSemicolon = sFormat.find(L';');
    const std::wstring_view sPositive = std::wstring_view(sFormat).substr(0, nSemicolon);
    const std::optional<Positive> t = readPositive(sPositive);
    std::optional<Base::NegativeFormat> tFormat = Base::kMinus;
    if (t && nSemicolon != String::npos)
        tFormat = readNegative(std::wstring_view(sFormat).substr(nSemicolon + 1), sPositive, t->bCurrency);
    if (!t || !tFormat)
        require(dynamic_cast<const WebCustomFormatDefinition&>(tDefinition).GetCustomFormat() == sFormat);
    else if (t->bCurrency)
        requireNumber(dynamic_cast<const WebCurrencyFormatDefinition&>(tDefinition), *tFormat, t->bCommas, t->nMax,
                      t->nMax);
    else if (t->bPercent)
        requireNumber(dynamic_cast<const WebPercentFormatDefinition&>(tDefinition), Base::kMinus, false, t->nMin,
                      t->nMax);
    else
        requireNumber(dynamic_cast<const WebNumberFormatDefinition&>(tDefinition), *tFormat, t->bCommas, t->nMin,
                      t->nMax);
}

void requireConversion(const String& sFormat, double fValue, const Locale& tLocale,
                       ValueFormatterTypes::OutputType eOutput)
{
    const WebWhistlerFormatDefinition tWhistler(sFormat);
    const WebValueFormatDefinitionHandle hConverted = WebConvertWhistlerFormat::ConvertNumericFormat(tWhistler);
    requireReading(*hConverted, sFormat);
    hConverted->getMsoStyle(tLocale, KTWUILanguage::kDefaultLanguage);
    const auto shown = [&](const WebValueFormatDefinition& tDefinition)
    {
        return NumericFormatter<double>::CreateFormatter(tDefinition, tLocale, eOutput, KTWUILanguage::kDefaultLanguage)
            ->formatAsString(&fValue);
    };
    require(shown(tWhistler) == shown(*hConverted));
}

void requireCurrency(const String& sTag, Base::NegativeFormat eFormat, const Locale& tLocale,
                     ValueFormatterTypes::OutputType eOutput)
{
    const CurrencyHandle hCurrency = CurrencyLookup::getInstance().lookupCurrencyTag(sTag);
    require(hCurrency == CurrencyLookup::getInstance().lookupCurrencyTag(sTag));
    const WebCurrencyFormatDefinition tDefinition(sTag, eFormat, true, 2, 2);
    const double fValue = 1234.5;
    const String sShown =
        NumericFormatter<double>::CreateFormatter(tDefinition, tLocale, eOutput, KTWUILanguage::kDefaultLanguage)
            ->formatAsString(&fValue);
    if (hCurrency.isNull())
        require(sShown == L"1235");
    else
        require(sShown.find(hCurrency->getCurrencySymbol()) != String::npos && sShown.find(L"50") != String::npos);
}

const Locale& localeFor(unsigned nChoice)
{
    static const Locale kLocales[] = {Locale::kUSA, LocaleTagLookup::lookupOrDefault(L"de-CH"),
                                      LocaleTagLookup::lookupOrDefault(L"ar-EG"),
                                      LocaleTagLookup::lookupOrDefault(L"pt-CV")};
    return kLocales[nChoice % 4];
}

}  // namespace

// A byte of locale, one of output and style, eight of value; then the format, which serves as a tag as well.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < kHeader)
        return 0;
    Assertion::setHandler(&stopAtAssertion);
    Logger::setSink(&ignoreLine);
    const Locale& tLocale = localeFor(pData[0]);
    const auto eOutput = static_cast<ValueFormatterTypes::OutputType>(pData[1] % 8);
    double fValue = 0;
    std::memcpy(&fValue, pData + 2, sizeof fValue);
    const String sText(pData + kHeader, pData + nSize);
    requireConversion(sText, fValue, tLocale, eOutput);
    requireCurrency(sText, static_cast<Base::NegativeFormat>(pData[1] / 8 % 6), tLocale, eOutput);
    return 0;
}
