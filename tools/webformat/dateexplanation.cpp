#include "explanation.h"
#include "webformat/dateformatterimpl.h"
#include "webformat/timezoneresolver.h"

namespace tov {

namespace {

using Element = DatePattern::Element;

// In the afternoon, with different numbers in all places.
constexpr DateTime ktExample(2024, 3, 5, 17, 8, 9, 123456789);

String quoted(std::wstring_view sText)
{
    return L"\"" + String(sText) + L"\"";
}

String numberWords(const wchar_t* pUnit, const Element& tElement)
{
    return tElement.nPad == 0 ? String(pUnit) : String(pUnit) + L", two digits";
}

String yearWords(const Element& tElement)
{
    if (tElement.bCaps)
        return L"year of the century, without a leading zero";
    return tElement.nPad == 2   ? L"year of the century, two digits"
           : tElement.nPad == 0 ? L"year"
                                : L"year, four digits";
}

String monthNameWords(const Element& tElement, bool bBehindDay)
{
    if (tElement.nPad == 3)
        return L"short name of the month";
    return bBehindDay ? L"name of the month, as it stands behind a day" : L"name of the month";
}

String dayNameWords(const Element& tElement)
{
    const String sWords = tElement.nPad < 3    ? L"first letter of the day of the week"
                          : tElement.nPad == 3 ? L"short name of the day of the week"
                                               : L"name of the day of the week";
    return tElement.bCaps ? sWords + L", in capitals" : sWords;
}

String wordsOf(const DatePattern& tPattern, std::size_t nAt)
{
    const Element& tElement = tPattern.elements()[nAt];
    switch (tElement.eType)
    {
    case DatePattern::kYear: return yearWords(tElement);
    case DatePattern::kMonth: return numberWords(L"month", tElement);
    case DatePattern::kDay: return numberWords(L"day", tElement);
    case DatePattern::kHour12: return numberWords(L"hour, 1 to 12", tElement);
    case DatePattern::kHour24: return numberWords(L"hour, 0 to 23", tElement);
    case DatePattern::kMinute: return numberWords(L"minute", tElement);
    case DatePattern::kSecond: return numberWords(L"second", tElement);
    case DatePattern::kSecondWDecimal:
        return L"second with its fraction, as the number " + quoted(tPattern.text(tElement));
    case DatePattern::kSeparator: return L"the text " + quoted(tPattern.text(tElement));
    case DatePattern::kMonthAlpha:
        return monthNameWords(tElement, nAt > 0 && tPattern.elements()[nAt - 1].eType == DatePattern::kDay);
    case DatePattern::kAMPM: return L"half of the day";
    case DatePattern::kDOW: return L"number of the day of the week, 0 (Monday) to 6";
    case DatePattern::kDOWAlpha: return dayNameWords(tElement);
    case DatePattern::kEra: return L"era";
    case DatePattern::kSetLocale: return L"from here on the names of " + quoted(tPattern.text(tElement));
    case DatePattern::kResetLocale: return L"from here on the names of the first locale again";
    }
    return String();
}

StandardDateFormatter::DateFormat formatOf(const DatePattern& tPattern, const Element& tElement)
{
    StandardDateFormatter::DateFormat tFormat;
    tFormat.eType = tElement.eType;
    tFormat.nPad = tElement.nPad;
    tFormat.bCaps = tElement.bCaps;
    tFormat.sText = String(tPattern.text(tElement));
    if (tElement.eType == DatePattern::kSetLocale)
        tFormat.tNewLocale = tPattern.newLocale(tElement);
    if (tElement.eType == DatePattern::kSecondWDecimal)
        tFormat.hSecondFormatter = tPattern.secondFormatter(tElement);
    return tFormat;
}

// What a pattern says about zones stands in none of its elements.
void addZoneLines(const String& sPattern, std::vector<ExplanationLine>& vLines)
{
    const String sZone = TimeZoneResolver::getTimeZoneFromFormatString(sPattern);
    if (!sZone.empty())
        vLines.push_back({L"[TZ:" + sZone + L"]", L"the zone to show timestamps in", String()});
    if (sPattern.find(L"TZ") != String::npos)
        vLines.push_back({L"TZ", L"behind a timestamp, the short name of its zone", String()});
}

}  // namespace

std::vector<ExplanationLine> explainDatePattern(const String& sPattern, const Locale& tLocale,
                                                const KTWUILanguage& tLanguage)
{
    DatePattern tPattern(tLocale, ValueFormatterTypes::kText);
    tPattern.addCustomFormat(sPattern, tLocale, ValueFormatterTypes::kText);
    const String& sSource = tPattern.sourceText();
    Handle<StandardDateFormatter> hUpToHere(WEBFORMAT_NEW("webformat-cli/dateexplanation") StandardDateFormatter(
        tLocale, tLanguage, String(), ValueFormatterTypes::kText));
    std::vector<ExplanationLine> vLines;
    for (std::size_t nAt = 0; nAt < tPattern.elements().size(); ++nAt)
    {
        const Element& tElement = tPattern.elements()[nAt];
        hUpToHere->AddFormat(formatOf(tPattern, tElement));
        vLines.push_back({sSource.substr(tElement.nSourceStart, tElement.nSourceEnd - tElement.nSourceStart),
                          wordsOf(tPattern, nAt), hUpToHere->formatAsString(&ktExample)});
    }
    addZoneLines(sSource, vLines);
    vLines.push_back({sSource, L"for dates, times and timestamps", hUpToHere->formatAsString(&ktExample)});
    return vLines;
}

}  // namespace tov
