#include "project/webformat/currencypattern.h"

#include "intl/currencylookup.h"
#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "project/webformat/outputmarkup.h"
#include "utilities/stringutils.h"
#include "webbedrock/logger.h"

namespace tov {

namespace {

using NegativeFormat = WebNumberFormatDefinitionBase::NegativeFormat;
using OutputType = ValueFormatterTypes::OutputType;

constexpr wchar_t kRedBracket[] = L"[red]";

CurrencyHandle findCurrency(const String& sTag, const Locale& tLocale)
{
    const CurrencyLookup& tLookup = CurrencyLookup::getInstance();
    CurrencyHandle hCurrency = tLookup.lookupCurrencyTag(sTag);
    if (hCurrency.isNull() && tLocale.hasOverridingCurrencyTag())
        hCurrency = tLookup.lookupCurrencyTag(tLocale.overridingCurrencyTag());
    return hCurrency;
}

// A "]" in a symbol would end the bracket, so it stands between two brackets, escaped.
String symbolMarker(const String& sSymbol)
{
    return L"[$:" + StringUtils::replaceAll(sSymbol, L"]", L"]\\][$:") + L"]";
}

String quoted(std::wstring_view sMarkup)
{
    return String(L"\"").append(sMarkup).append(L"\"");
}

// Writes the layouts of one currency: "$#" -> "[$:€]#,##0.00".
//
//   layout = *( "#" / "$" / " " / "(" / ")" / "-" / other )    ; number, symbol, blank, themselves, nothing
class LayoutWriter
{
public:
    LayoutWriter(const Currency& tCurrency, const NumberSettings& tNumber, OutputType eOutput,
                 const KTWUILanguage& tLanguage)
        : m_sSymbol(symbolMarker(tCurrency.getCurrencySymbol())),
          m_sNumber(positivePattern(tNumber)),
          m_sBlank(eOutput == ValueFormatterTypes::kHTML ? quoted(kNonBreakingSpace) : L" "),
          m_sMark(needsLeftToRightMark(eOutput, tLanguage) ? quoted(kLeftToRightMark) : String())
    {
    }

    void append(String& sPattern, std::wstring_view sLayout) const
    {
        sPattern += m_sMark;
        for (const wchar_t nChar : sLayout)
        {
            switch (nChar)
            {
            case L' ': sPattern += m_sBlank; break;
            case L'#': sPattern += m_sNumber; break;
            case L'$': sPattern += m_sSymbol; break;
            case L'(':
            case L')':
            case L'-': sPattern += nChar; break;
            default: break;
            }
        }
    }

private:
    const String m_sSymbol;
    const String m_sNumber;
    const String m_sBlank;
    const String m_sMark;
};

// The layout that the currency has for a style, or `sInstead`.
String namedLayout(const Currency& tCurrency, const wchar_t* pStyle, const String& sInstead)
{
    const auto tLayout = tCurrency.getNegativeFormats().find(pStyle);
    return tLayout == tCurrency.getNegativeFormats().end() ? sInstead : tLayout->second.getFormat();
}

String negativeLayout(const Currency& tCurrency, NegativeFormat eFormat)
{
    switch (eFormat)
    {
    case WebNumberFormatDefinitionBase::kRed: return tCurrency.getFormat();
    case WebNumberFormatDefinitionBase::kParens:
    case WebNumberFormatDefinitionBase::kRedParens:
        // Kept: without a layout of its own a negative amount shows a closing parenthesis and nothing else.
        return namedLayout(tCurrency, L"parens", L")");
    default: return namedLayout(tCurrency, L"minus", L"-" + tCurrency.getFormat());
    }
}

bool isRed(NegativeFormat eFormat)
{
    return eFormat == WebNumberFormatDefinitionBase::kRed || eFormat == WebNumberFormatDefinitionBase::kRedParens ||
           eFormat == WebNumberFormatDefinitionBase::kRedMinus;
}

}  // namespace

String patternOfCurrency(const CurrencyHandle& hCurrency, const NumberSettings& tNumber, NegativeFormat eNegativeFormat,
                         OutputType eOutput, const KTWUILanguage& tLanguage)
{
    const Currency& tCurrency = *hCurrency;
    const LayoutWriter tWriter(tCurrency, tNumber, eOutput, tLanguage);
    String sPattern;
    tWriter.append(sPattern, tCurrency.getFormat());
    sPattern += L';';
    if (isRed(eNegativeFormat))
        sPattern += kRedBracket;
    tWriter.append(sPattern, negativeLayout(tCurrency, eNegativeFormat));
    return sPattern;
}

String buildCurrencyPattern(const CurrencyPatternSettings& tSettings, const Locale& tLocale, OutputType eOutput,
                            const KTWUILanguage& tLanguage)
{
    const CurrencyHandle hCurrency = findCurrency(tSettings.sCurrencyTag, tLocale);
    if (hCurrency.isNull())
    {
        Logger::log(Logger::kCriticalError, L"Unknown Currency Tag " + tSettings.sCurrencyTag);
        return String();
    }
    return patternOfCurrency(hCurrency, tSettings.tNumber, tSettings.eNegativeFormat, eOutput, tLanguage);
}

}  // namespace tov
