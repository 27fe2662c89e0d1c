#include "project/webformat/numericdefinitionpattern.h"

#include <algorithm>

#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "project/webformat/outputmarkup.h"
#include "webbedrock/assertion.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/numericformatters";
constexpr std::uint32_t kMostDigits = 16;

using NegativeFormat = WebNumberFormatDefinitionBase::NegativeFormat;

// Places the pattern into the locale's template for negative numbers ("-#"). Kept: a template with a parenthesis makes
// the whole pattern one section, the positive pattern twice with a "-" between.
void appendTemplatedSection(String& sPattern, const String& sPositive, const wchar_t* pStart, bool bMark,
                            const String& sTemplate)
{
    if (sTemplate.find(L'(') != String::npos)
    {
        sPattern += L'-';
        sPattern += sPositive;
        return;
    }
    sPattern += pStart;
    if (bMark)
        sPattern.append(L"\"").append(kLeftToRightMark).append(L"\"");
    for (const wchar_t nChar : sTemplate)
    {
        if (nChar == L'#')
            sPattern += sPositive;
        else
            sPattern += nChar;
    }
}

String withNegativeSection(const String& sPositive, NegativeFormat eFormat, const Locale& tLocale,
                           ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage)
{
    const bool bMark = needsLeftToRightMark(eOutput, tLanguage);
    const String& sTemplate = tLocale.getInfo(Locale::kNegativeNumberTemplate);
    String sPattern = sPositive;
    switch (eFormat)
    {
    case WebNumberFormatDefinitionBase::kMinus:
        appendTemplatedSection(sPattern, sPositive, L";", bMark, sTemplate);
        break;
    case WebNumberFormatDefinitionBase::kRedMinus:
        appendTemplatedSection(sPattern, sPositive, L";[red]", bMark, sTemplate);
        break;
    case WebNumberFormatDefinitionBase::kRed: sPattern += L";[red]" + sPositive; break;
    case WebNumberFormatDefinitionBase::kParens: sPattern += L";(" + sPositive + L")"; break;
    case WebNumberFormatDefinitionBase::kRedParens: sPattern += L";[red](" + sPositive + L")"; break;
    default: WEBFORMAT_ASSERT(kSource, false); break;
    }
    return sPattern;
}

}  // namespace

NumberSettings numberSettingsOf(const WebNumberFormatDefinitionBase& tDefinition)
{
    return {tDefinition.HasCommas(), tDefinition.MinDigits(), tDefinition.MaxDigits(), tDefinition.getScaleFactor(),
            tDefinition.Scale()};
}

String positivePattern(const NumberSettings& tSettings)
{
    String sPattern = tSettings.bCommas ? L"#,##0" : L"#0";
    const std::uint32_t nMin = tSettings.nMinDigits;
    const std::uint32_t nMax = tSettings.nMaxDigits;
    if (nMax > 0)
    {
        sPattern += L'.';
        sPattern.append(std::min(nMin, kMostDigits), L'0');
        if (nMax > nMin)
            sPattern.append(std::min(nMax - nMin, kMostDigits), L'#');
    }
    if (!tSettings.sScaleName.empty())
        sPattern += L"[scale-name:" + tSettings.sScaleName + L"]";
    else if (tSettings.nScale != 0)
        sPattern += L"[scale-decimal:" + std::to_wstring(tSettings.nScale) + L"]";
    return sPattern;
}

String numberPattern(const WebNumberFormatDefinitionBase& tDefinition, const Locale& tLocale,
                     ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage)
{
    return withNegativeSection(positivePattern(numberSettingsOf(tDefinition)), tDefinition.GetNegativeFormat(), tLocale,
                               eOutput, tLanguage);
}

String percentPattern(const WebPercentFormatDefinition& tDefinition, const Locale& tLocale,
                      ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage)
{
    String sSymbol = tLocale.getInfoAsString(Locale::kPercentFormat);
    if (sSymbol.empty())
        sSymbol = L"%";
    const bool bLeading = tLocale.getInfo(Locale::kPercentSymbolLocation).starts_with(L"%#");
    const String sNumber = positivePattern(numberSettingsOf(tDefinition));
    const String sPositive = bLeading ? sSymbol + L" " + sNumber : sNumber + sSymbol;
    return withNegativeSection(sPositive, tDefinition.GetNegativeFormat(), tLocale, eOutput, tLanguage);
}

}  // namespace tov
