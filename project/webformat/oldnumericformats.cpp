#include "project/webformat/oldnumericformats.h"

#include <algorithm>

#include "webbedrock/handlecache.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/convertwhistlerformat";
constexpr wchar_t kRed[] = L"red";
constexpr std::uint32_t kMostFractionDigits = 6;
constexpr std::uint32_t kUnlimitedDigits = 16;

// What stands around the digits of every number of a kind.
struct KindSigns
{
    OldNumericFormat::Kind eKind;
    const wchar_t* pBefore;
    const wchar_t* pBehind;
};

constexpr KindSigns kKinds[] = {
    {OldNumericFormat::kNumber, L"", L""},
    {OldNumericFormat::kCurrency, L"$", L""},
    {OldNumericFormat::kPercent, L"", L"%"},
};

// Colour and what stands around the positive part. The first style has no negative section.
struct NegativeStyle
{
    bool bSection;
    const wchar_t* pColour;
    const wchar_t* pBefore;
    const wchar_t* pBehind;
};

constexpr NegativeStyle kStyles[] = {
    {false, L"", L"", L""},   {true, kRed, L"", L""}, {true, L"", L"(", L")"},
    {true, kRed, L"(", L")"}, {true, L"", L"-", L""}, {true, kRed, L"-", L""},
};

struct DigitVariant
{
    String sDigits;
    std::uint32_t nMinDigits;
    std::uint32_t nMaxDigits;
};

std::vector<DigitVariant> digitVariants(bool bCommas)
{
    const String sRequired = bCommas ? L"#,##0" : L"#0";
    const String sOptional = bCommas ? L"#,###" : L"##";
    std::vector<DigitVariant> vVariants;
    vVariants.push_back({bCommas ? sOptional : String(L"#"), 0, kUnlimitedDigits});
    vVariants.push_back({sRequired, 0, 0});
    for (std::uint32_t n = 1; n <= kMostFractionDigits; ++n)
        vVariants.push_back({sRequired + L"." + String(n, L'0'), n, n});
    for (std::uint32_t n = 1; n <= kMostFractionDigits; ++n)
        vVariants.push_back({sOptional + L"." + String(n, L'#'), 0, n});
    return vVariants;
}

OldNumericFormat formatOf(const KindSigns& tKind, bool bCommas, const NegativeStyle& tStyle,
                          const DigitVariant& tDigits)
{
    const String sPositive = tKind.pBefore + tDigits.sDigits + tKind.pBehind;
    OldNumericFormat tFormat{sPositive, tKind.eKind, bCommas, tDigits.nMinDigits, tDigits.nMaxDigits, {}, {}, {}};
    if (!tStyle.bSection)
        return tFormat;
    tFormat.tColour = tStyle.pColour;
    tFormat.tNegativePrefix = String(tStyle.pBefore) + tKind.pBefore;
    tFormat.tNegativeSuffix = String(tKind.pBehind) + tStyle.pBehind;
    const String sColour = tFormat.tColour->empty() ? String() : L"[" + *tFormat.tColour + L"]";
    tFormat.sPattern += L";" + sColour + tStyle.pBefore + sPositive + tStyle.pBehind;
    return tFormat;
}

std::vector<OldNumericFormat> madeByRule()
{
    std::vector<OldNumericFormat> vFormats;
    for (const KindSigns& tKind : kKinds)
    {
        for (const bool bCommas : {false, true})
        {
            const std::vector<DigitVariant> vVariants = digitVariants(bCommas);
            for (const NegativeStyle& tStyle : kStyles)
            {
                for (const DigitVariant& tDigits : vVariants)
                    vFormats.push_back(formatOf(tKind, bCommas, tStyle, tDigits));
            }
        }
    }
    return vFormats;
}

// Kept: only a prefix that is exactly "(" makes parentheses, so currencies never get them; and a red minus loses its
// minus.
WebNumberFormatDefinitionBase::NegativeFormat negativeFormatOf(const OldNumericFormat& tFormat)
{
    const bool bRed = tFormat.tColour == kRed;
    if (tFormat.tNegativePrefix == L"(")
        return bRed ? WebNumberFormatDefinitionBase::kRedParens : WebNumberFormatDefinitionBase::kParens;
    return bRed ? WebNumberFormatDefinitionBase::kRed : WebNumberFormatDefinitionBase::kMinus;
}

WebValueFormatDefinitionHandle definitionOf(const OldNumericFormat& tFormat)
{
    switch (tFormat.eKind)
    {
    case OldNumericFormat::kCurrency:
        // Kept: the dollar whatever the locale, and the most digits are the least as well.
        return WEBFORMAT_NEW(kSource) WebCurrencyFormatDefinition(
            L"loc:en-US", negativeFormatOf(tFormat), tFormat.bCommas, tFormat.nMaxDigits, tFormat.nMaxDigits);
    case OldNumericFormat::kPercent:
        // Kept: commas and negative style are not carried over.
        return WEBFORMAT_NEW(kSource) WebPercentFormatDefinition(WebNumberFormatDefinitionBase::kMinus, false,
                                                                 tFormat.nMinDigits, tFormat.nMaxDigits);
    default:
        return WEBFORMAT_NEW(kSource) WebNumberFormatDefinition(negativeFormatOf(tFormat), tFormat.bCommas,
                                                                tFormat.nMinDigits, tFormat.nMaxDigits);
    }
}

WebValueFormatDefinitionHandle converted(const String& sFormat)
{
    if (const OldNumericFormat* pKnown = findOldNumericFormat(sFormat))
        return definitionOf(*pKnown);
    return WEBFORMAT_NEW(kSource) WebCustomFormatDefinition(sFormat);
}

// Made at the first conversion and never destroyed: values may be formatted while static objects go away.
HandleCache<const WebValueFormatDefinition>& cache()
{
    static auto& s_tCache =
        *new HandleCache<const WebValueFormatDefinition>(WebConvertWhistlerFormat::knMaxCachedNumericFormats);
    return s_tCache;
}

}  // namespace

const std::vector<OldNumericFormat>& oldNumericFormats()
{
    static const auto& s_vFormats = *new std::vector<OldNumericFormat>(madeByRule());
    return s_vFormats;
}

const OldNumericFormat* findOldNumericFormat(const String& sPattern)
{
    const std::vector<OldNumericFormat>& vFormats = oldNumericFormats();
    const auto tFound = std::find_if(vFormats.begin(), vFormats.end(),
                                     [&](const OldNumericFormat& tFormat) { return tFormat.sPattern == sPattern; });
    return tFound == vFormats.end() ? nullptr : &*tFound;
}

WebValueFormatDefinitionHandle WebConvertWhistlerFormat::ConvertNumericFormat(
    const WebWhistlerFormatDefinition& tDefinition)
{
    const String& sFormat = tDefinition.GetFormatString();
    if (WebValueFormatDefinitionHandle hKnown = cache().find(sFormat); !hKnown.isNull())
        return hKnown;
    return cache().insert(sFormat, converted(sFormat));
}

}  // namespace tov
