#include "explanation.h"

#include <algorithm>
#include <exception>

#include "webformat/numericformatterimpl.h"
#include "webformat/numericpattern.h"

namespace tov {

namespace {

using Item = NumericPattern::Item;
using Section = NumericPattern::Section;

constexpr std::wstring_view ksPositive = L"positive values and zero";
constexpr std::wstring_view ksNegative = L"negative values, whose sign it writes itself";
constexpr std::wstring_view ksNull = L"nulls, shown as zero";
constexpr std::wstring_view ksUnused = L"no values";

String number(std::int64_t nValue)
{
    return std::to_wstring(nValue);
}

// "integer place 1", "integer places 3 to 1", "fraction places 1 to 2", "integer place 4 upwards".
String placesOf(const Item& tItem)
{
    if (tItem.nStartDigit >= 0)
        return tItem.nEndDigit - tItem.nStartDigit == 1
                   ? L"fraction place " + number(tItem.nEndDigit)
                   : L"fraction places " + number(tItem.nStartDigit + 1) + L" to " + number(tItem.nEndDigit);
    const String sLast = number(-tItem.nEndDigit + 1);
    if (tItem.nStartDigit <= NumericPattern::knLeftmostDigit)
        return L"integer place " + sLast + L" upwards";
    return tItem.nEndDigit - tItem.nStartDigit == 1 ? L"integer place " + sLast
                                                    : L"integer places " + number(-tItem.nStartDigit) + L" to " + sLast;
}

String digitsOf(const Item& tItem)
{
    const bool bOne = tItem.nEndDigit - tItem.nStartDigit == 1;
    const String sKind = tItem.eType == Item::kRequired ? L"required digit" : L"optional digit";
    return sKind + (bOne ? L", " : L"s, ") + placesOf(tItem);
}

String factorOf(const Item& tItem)
{
    String sResult;
    if (tItem.nMultiplierNumerator != 1)
        sResult += L" x " + std::to_wstring(tItem.nMultiplierNumerator);
    if (tItem.nMultiplierDenominator != 1)
        sResult += L" / " + std::to_wstring(tItem.nMultiplierDenominator);
    return sResult;
}

String wordsOf(const NumericPattern& tPattern, const Item& tItem)
{
    switch (tItem.eType)
    {
    case Item::kOptional:
    case Item::kRequired: return digitsOf(tItem);
    case Item::kText: return L"the text \"" + String(tPattern.text(tItem)) + L"\"";
    case Item::kDecimal: return L"decimal separator, where fraction digits follow";
    case Item::kDOWAbbrev: return L"short name of the day of the week, 1 (Sunday) to 7";
    case Item::kDOW: return L"name of the day of the week, 1 (Sunday) to 7";
    case Item::kMonthAbbrev: return L"short name of the month, 1 to 12";
    case Item::kMonth: return L"name of the month, 1 to 12";
    case Item::kColor: return String(tPattern.text(tItem)) + L", in outputs that have colours";
    case Item::kHour: return L"time of day in hours: value" + factorOf(tItem);
    case Item::kHourMin: return L"time of day in minutes: value" + factorOf(tItem);
    case Item::kTime: return L"time of day in seconds: value" + factorOf(tItem);
    case Item::kDuration: return L"duration in seconds: value" + factorOf(tItem) + L"; its units: --kind duration";
    case Item::kIndicator: return L"short name of the scale";
    }
    return String();
}

// What the section does beyond its items.
String summaryOf(const Section& tSection, std::wstring_view sFor)
{
    String sResult = L"for " + String(sFor);
    if (tSection.bGrouping)
        sResult += L"; grouped in thousands";
    if (tSection.nPower10 != 0)
        sResult += L"; value x 10^" + number(tSection.nPower10);
    if (tSection.eScaleFactor == NumericPattern::kAuto)
        sResult += L"; scaled by its magnitude";
    for (const NumericPattern::Modulus& tMod : tSection.vMods)
        if (tMod.nMod != 0)
            sResult += L"; counted in units of " + std::to_wstring(tMod.nMod);
    if (tSection.bPercent)
        sResult += L"; a percentage";
    if (!tSection.bValidExcelPattern)
        sResult += L"; not valid in spreadsheets";
    return sResult;
}

// A value that the section's items have something to show for.
double exampleFor(const Section& tSection)
{
    for (const Item& tItem : tSection.vDigits)
    {
        const double fUnit = static_cast<double>(tItem.nMultiplierDenominator) /
                             static_cast<double>(std::max<std::uint64_t>(tItem.nMultiplierNumerator, 1));
        switch (tItem.eType)
        {
        case Item::kDOWAbbrev:
        case Item::kDOW:
        case Item::kMonthAbbrev:
        case Item::kMonth: return 3;
        case Item::kHour: return 7 * fUnit;
        case Item::kHourMin: return 434 * fUnit;
        case Item::kTime:
        case Item::kDuration: return 26047 * fUnit;
        default: break;
        }
    }
    return 1234567.891;
}

// Explains one section after the other.
class Explainer
{
public:
    Explainer(const NumericPattern& tPattern, const Locale& tLocale, const KTWUILanguage& tLanguage)
        : m_tPattern(tPattern), m_tLocale(tLocale), m_tLanguage(tLanguage)
    {
    }

    void addSection(std::size_t nSection, std::vector<ExplanationLine>& vLines) const;

private:
    String sourceOf(std::uint32_t nStart, std::uint32_t nEnd) const
    {
        return m_tPattern.sourceText().substr(nStart, nEnd - nStart);
    }
    String render(std::size_t nSection, const String& sUpToHere) const;

    const NumericPattern& m_tPattern;
    const Locale& m_tLocale;
    const KTWUILanguage& m_tLanguage;
};

void Explainer::addSection(std::size_t nSection, std::vector<ExplanationLine>& vLines) const
{
    constexpr std::wstring_view aFor[] = {ksPositive, ksNegative, ksNull, ksUnused};
    const Section& tSection = m_tPattern.sections()[nSection];
    for (const Item& tItem : tSection.vDigits)
        vLines.push_back({sourceOf(tItem.nSourceStart, tItem.nSourceEnd), wordsOf(m_tPattern, tItem),
                          render(nSection, sourceOf(tSection.nSourceStart, tItem.nSourceEnd))});
    const String sWhole = sourceOf(tSection.nSourceStart, tSection.nSourceEnd);
    vLines.push_back({sWhole, summaryOf(tSection, aFor[std::min<std::size_t>(nSection, 3)]), render(nSection, sWhole)});
}

// The piece of pattern takes its section's place in a pattern that renders the example with it.
String Explainer::render(std::size_t nSection, const String& sUpToHere) const
{
    if (nSection > 2)
        return String();
    const String sPattern = (nSection == 0 ? L"" : nSection == 1 ? L"0;" : L"0;0;") + sUpToHere;
    const double fExample = exampleFor(m_tPattern.sections()[nSection]) * (nSection == 1 ? -1 : 1);
    const WebValueFormatterHandle hFormatter(
        WEBFORMAT_NEW("webformat-cli/numericexplanation")
            NumericFormatterImpl<double>(sPattern, m_tLocale, ValueFormatterTypes::kText, ValueFormatterTypes::kText,
                                         m_tLanguage, ValueFormatterTypes::kEvaluateFormatGlobal));
    try
    {
        return hFormatter->formatAsString(nSection == 2 ? nullptr : &fExample);
    }
    catch (const InvalidHandleException&)
    {
        // A time bracket whose family of formatters is not there.
        return String();
    }
}

}  // namespace

std::vector<ExplanationLine> explainNumericPattern(const String& sPattern, const Locale& tLocale,
                                                   const KTWUILanguage& tLanguage)
{
    const NumericPattern tPattern = NumericPattern::parse(sPattern, tLocale, ValueFormatterTypes::kText, tLanguage);
    const Explainer tExplainer(tPattern, tLocale, tLanguage);
    std::vector<ExplanationLine> vLines;
    for (std::size_t nSection = 0; nSection < tPattern.sections().size(); ++nSection)
        tExplainer.addSection(nSection, vLines);
    return vLines;
}

}  // namespace tov
