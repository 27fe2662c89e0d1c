#include <array>

#include "explanation.h"
#include "webformat/durationformatters.h"

namespace tov {

namespace {

// A day, two hours, three minutes and four seconds.
constexpr double kfExample = 93784;

bool isUnit(const DurationFormat& tFormat)
{
    return tFormat.eType <= DurationFormat::kSecond;
}

const wchar_t* unitName(int nUnit)
{
    constexpr std::array<const wchar_t*, 4> aNames = {L"days", L"hours", L"minutes", L"seconds"};
    return aNames[static_cast<std::size_t>(nUnit)];
}

const wchar_t* roundingWords(DurationFormatList::ERoundRule eRule)
{
    switch (eRule)
    {
    case DurationFormatList::kCeil: return L", rounded up";
    case DurationFormatList::kRound: return L", rounded to nearest";
    default: return L", rounded when they are written; whole numbers are cut off";
    }
}

String wordsOf(const DurationFormatList& tFormats, const DurationFormat& tFormat)
{
    String sResult = isUnit(tFormat) ? String(unitName(tFormat.eType)) : L"the text \"" + tFormat.sText + L"\"";
    if (isUnit(tFormat) && tFormats.needsRoundingRule(tFormat.eType))
        sResult += roundingWords(tFormats.m_eRoundRule);
    if (tFormat.eOptionalBasedOn != DurationFormat::kRequired)
        sResult += L"; only where there are " + String(unitName(tFormat.eOptionalBasedOn));
    return sResult;
}

}  // namespace

std::vector<ExplanationLine> explainDurationPattern(const String& sPattern, const Locale& tLocale,
                                                    const KTWUILanguage& tLanguage)
{
    const DurationPattern tPattern = DurationPattern::parse(sPattern, ValueFormatterTypes::kText);
    const DurationFormatList& tFormats = tPattern.formats();
    const String& sSource = tPattern.sourceText();
    Handle<DurationFormatter<double>> hUpToHere(WEBFORMAT_NEW(
        "webformat-cli/durationexplanation") DurationFormatter<double>(tLocale, ValueFormatterTypes::kText, tLanguage));
    std::vector<ExplanationLine> vLines;
    for (const DurationFormat& tFormat : tFormats.m_vDurationFormats)
    {
        hUpToHere->addFormat(tFormat);
        vLines.push_back({sSource.substr(tFormat.nSourceStart, tFormat.nSourceEnd - tFormat.nSourceStart),
                          wordsOf(tFormats, tFormat), hUpToHere->formatAsString(&kfExample)});
    }
    const WebValueFormatterHandle hWhole = DurationFormatter<double>::ParseCustomFormat(
        sSource, tLocale, ValueFormatterTypes::kText, tLanguage, ValueFormatterTypes::kText);
    vLines.push_back({sSource, L"for numbers of seconds", hWhole->formatAsString(&kfExample)});
    return vLines;
}

}  // namespace tov
