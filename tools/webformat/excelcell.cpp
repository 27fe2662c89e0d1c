#include "excelcell.h"

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cwchar>

#include "eastasianwidth.h"
#include "excelstyle.h"
#include "webbedrock/utf8.h"
#include "webformat/numericformatter.h"
#include "webformat/timestampformatter.h"

namespace tov {

namespace {

constexpr std::size_t knLongestPattern = 127;
constexpr int knMostSectionMarks = 3;
// What stands bare in the patterns of numbers and dates.
constexpr std::wstring_view ksBareCharacters = L"0#?.,%$-+/():_ dmyhsAMP";
constexpr std::wstring_view ksFraction = L".0";
constexpr std::wstring_view ksHalfOfDay = L" AM";
constexpr std::wstring_view ksQuotedPercent = L"\"%\"";

// A formatter a row is a currency a row: there are some 300. More are forgotten all at once.
constexpr std::size_t knMostPatterns = 1000;

constexpr int knFirstYear = 1900;
constexpr unsigned knFirstMonth = 3;
constexpr int knLastYear = 9999;
constexpr double kfSecondsPerDay = 86400;
constexpr double kfNanosecondsPerSecond = 1e9;
constexpr unsigned knNanosecondsPerMillisecond = 1'000'000;

bool isWritableBracket(std::wstring_view sContent)
{
    return sContent == L"red" || (sContent.starts_with(L"$") && sContent.find(L'[') == std::wstring_view::npos);
}

// The place behind the piece of a pattern that starts at `nAt`; npos for one that cannot stand there.
std::size_t pieceEnd(std::wstring_view sPattern, std::size_t nAt)
{
    constexpr std::size_t nNone = std::wstring_view::npos;
    const auto behind = [](std::size_t nFound) { return nFound == nNone ? nNone : nFound + 1; };
    switch (sPattern[nAt])
    {
    case L'"': return behind(sPattern.find(L'"', nAt + 1));
    case L'\\': return nAt + 1 < sPattern.size() ? nAt + 2 : nNone;
    case L'[':
    {
        const std::size_t nClose = sPattern.find(L']', nAt);
        return nClose != nNone && isWritableBracket(sPattern.substr(nAt + 1, nClose - nAt - 1)) ? nClose + 1 : nNone;
    }
    case L';': return nAt + 1;
    default: return ksBareCharacters.find(sPattern[nAt]) == nNone ? nNone : nAt + 1;
    }
}

// Whether a pattern shows the day that a moment is on.
bool showsDate(std::wstring_view sPattern)
{
    for (std::size_t nAt = 0; nAt < sPattern.size(); nAt = pieceEnd(sPattern, nAt))
        if (sPattern[nAt] == L'd' || sPattern[nAt] == L'y' || sPattern.substr(nAt).starts_with(L"mmm"))
            return true;
    return false;
}

DateTime withoutFraction(DateTime tValue)
{
    tValue.setNanoseconds(0);
    return tValue;
}

// Whether the Excel pattern of a number's definition leaves a reader with another number than the formatter does: it
// knows no name of a scale ("17.9M"), and quotes a percent sign in front of the digits, so that it has no effect.
// The formatter's own pattern says both, in Excel's words; so it does where brackets stand in a definition's pattern
// that only formatters read.
bool showsAnotherScale(const WebValueFormatDefinition& tDefinition, std::wstring_view sPattern)
{
    const auto* pNumber = dynamic_cast<const WebNumberFormatDefinitionBase*>(&tDefinition);
    return pNumber && (!pNumber->getScaleFactor().empty() || sPattern.starts_with(ksQuotedPercent));
}

// The columns that the longest date takes under a pattern, whatever the language of the names.
std::size_t dateWidth(std::wstring_view sPattern)
{
    constexpr std::size_t nLongName = 6;
    std::size_t nNames = 0;
    for (const std::wstring_view sName : {L"dddd", L"mmmm"})
        nNames += sPattern.find(sName) == std::wstring_view::npos ? 0 : nLongName;
    // Months, days and hours of one letter may take two digits.
    return displayWidth(sPattern) + nNames + 3;
}

// The columns that a number takes under a pattern of digits, or more: its digits, and what else the section shows.
std::size_t numberWidth(double fNumber, std::wstring_view sPattern)
{
    const auto nPercents = std::count(sPattern.begin(), sPattern.end(), L'%');
    const double fShown = std::fabs(fNumber) * std::pow(100.0, static_cast<double>(nPercents));
    const std::size_t nDigits = fShown < 1 ? 1 : static_cast<std::size_t>(std::log10(fShown)) + 1;
    const std::size_t nSection = fNumber < 0 ? sPattern.find(L';') + 1 : 0;
    const std::wstring_view sRest = sPattern.substr(nSection);
    const std::wstring_view sSection = sRest.substr(0, sRest.find(L';'));
    const std::wstring_view sInteger = sSection.substr(0, sSection.find(L'.'));
    const auto isPlace = [](wchar_t nCharacter) { return nCharacter == L'#' || nCharacter == L'0'; };
    const auto nPlaces = static_cast<std::size_t>(std::count_if(sInteger.begin(), sInteger.end(), isPlace));
    return std::max(nDigits, nPlaces) + nDigits / 3 + displayWidth(sSection) - nPlaces + (fNumber < 0 ? 1 : 0);
}

const wchar_t* isoTextPattern(const SQLDataType& tType)
{
    switch (tType.dataType())
    {
    case SQLDataType::kDate: return L"yyy-MM-dd";
    case SQLDataType::kTime: return L"HH:mm:ss.#########";
    default: return L"yyy-MM-dd HH:mm:ss.#########";
    }
}

}  // namespace

bool isWritableExcelPattern(std::wstring_view sPattern)
{
    if (toUtf8(sPattern).size() > knLongestPattern)
        return false;
    int nMarks = 0;
    std::size_t nAt = 0;
    while (nAt < sPattern.size())
    {
        nMarks += sPattern[nAt] == L';' ? 1 : 0;
        nAt = pieceEnd(sPattern, nAt);
    }
    return nAt == sPattern.size() && nMarks <= knMostSectionMarks;
}

double excelTime(const DateTime& tValue)
{
    const double fSeconds = tValue.hour() * 3600.0 + tValue.minute() * 60.0 + tValue.second();
    return (fSeconds + tValue.nanoseconds() / kfNanosecondsPerSecond) / kfSecondsPerDay;
}

std::optional<double> excelSerial(const DateTime& tValue)
{
    using namespace std::chrono;
    const bool bEarly = tValue.year() < knFirstYear || (tValue.year() == knFirstYear && tValue.month() < knFirstMonth);
    if (bEarly || tValue.year() > knLastYear)
        return std::nullopt;
    const sys_days tDay = year_month_day(year(tValue.year()), month(tValue.month()), day(tValue.day()));
    const sys_days tZero = year_month_day(year(1899), December, day(30));
    return static_cast<double>((tDay - tZero).count()) + excelTime(tValue);
}

ExcelColumn::ExcelColumn(const ReportDefinition& tReport, const ReportColumn& tColumn)
    : m_tReport(tReport), m_tColumn(tColumn), m_eCategory(tColumn.tType.category())
{
    if (isCalendar())
        m_hIso = WebValueFormatter::GetCustomFormatter(tColumn.tType, isoTextPattern(tColumn.tType), Locale::kUSA,
                                                       ValueFormatterTypes::kText, KTWUILanguage::kDefaultLanguage);
}

ExcelCell ExcelColumn::cellOf(const TypedValue& tValue, const WebValueFormatterHandle& hFormatter, const String& sText)
{
    const ExcelCell tText{sText.empty() ? ExcelCell::kBlank : ExcelCell::kText, 0, {}, sText};
    if (tValue.isNull() || hFormatter.isNull() || !(isNumber() || isCalendar()))
        return tText;
    const std::optional<String>& tPattern = patternOf(hFormatter);
    if (!tPattern)
        return tText;
    const ExcelCell tCell =
        isNumber() ? numberCell(tValue, *hFormatter, *tPattern) : calendarCell(tValue, *hFormatter, *tPattern);
    return tCell.eKind == ExcelCell::kBlank ? tText : tCell;
}

const std::optional<String>& ExcelColumn::patternOf(const WebValueFormatterHandle& hFormatter)
{
    const auto tFound = m_vPatterns.find(&*hFormatter);
    if (tFound != m_vPatterns.end())
        return tFound->second.tPattern;
    if (m_vPatterns.size() >= knMostPatterns)
        m_vPatterns.clear();
    // The handle keeps the address from being given to another formatter.
    return m_vPatterns.emplace(&*hFormatter, Pattern{hFormatter, findPattern(*hFormatter)}).first->second.tPattern;
}

String ExcelColumn::excelPatternOf(const WebValueFormatDefinition& tDefinition) const
{
    return withoutEntities(tDefinition.getFormatPattern(m_tReport.tLocale, m_tReport.tLanguage,
                                                        WebValueFormatDefinition::kFormatPatternExcel));
}

std::optional<String> ExcelColumn::findPattern(const WebValueFormatter& tFormatter) const
{
    if (!tFormatter.IsValidExcelPattern())
        return std::nullopt;
    String sPattern;
    if (!tFormatter.checkAndReplaceFormatMaskForExcel(sPattern) && !m_tColumn.hDefinition.isNull())
        sPattern = excelPatternOf(*m_tColumn.hDefinition);
    // Alone it would show an "A" and the month, and leave the clock at 24 hours.
    if (isCalendar() && sPattern.ends_with(ksHalfOfDay))
        sPattern += L"/PM";
    const bool bWritable = isWritableExcelPattern(sPattern);
    if (bWritable && !(!m_tColumn.hDefinition.isNull() && showsAnotherScale(*m_tColumn.hDefinition, sPattern)))
        return sPattern;
    const String sOwn = excelPatternOf(WebCustomFormatDefinition(tFormatter.GetCustomFormatString()));
    if (!sOwn.empty() && isWritableExcelPattern(sOwn))
        return sOwn;
    return bWritable ? std::optional(sPattern) : std::nullopt;
}

ExcelCell ExcelColumn::numberCell(const TypedValue& tValue, const WebValueFormatter& tFormatter, const String& sPattern)
{
    StringBufferTemplate<wchar_t, 63> tBuffer;
    tFormatter.formatExcelValueToBuffer(tBuffer, tValue.pointer());
    wchar_t* pEnd = nullptr;
    const double fNumber = std::wcstod(tBuffer.terminated(), &pEnd);
    const bool bNumber = tBuffer.length() > 0 && *pEnd == L'\0' && (fNumber == 0 || std::isnormal(fNumber));
    if (!bNumber || losesDigits(tValue, tBuffer.view()))
        return {};
    return {ExcelCell::kNumber, fNumber, sPattern, {}};
}

// Without a format a number may be an identifier: its digits are kept where the fifteen of a cell are too few. Under a
// format it is an amount to calculate with.
bool ExcelColumn::losesDigits(const TypedValue& tValue, std::wstring_view sCell) const
{
    if (!m_tColumn.hDefinition.isNull() || tValue.storage() != SQLDataType::kStorageCorvidNumber)
        return false;
    return CorvidNumber::fromString(sCell) != *static_cast<const CorvidNumber*>(tValue.pointer());
}

ExcelCell ExcelColumn::calendarCell(const TypedValue& tValue, const WebValueFormatter& tFormatter,
                                    const String& sPattern)
{
    DateTime tShown = *static_cast<const DateTime*>(tValue.pointer());
    if (const auto* pTimeStamp = dynamic_cast<const TimeStampFormatter*>(&tFormatter))
        tShown = pTimeStamp->displayedTime(tShown);
    const std::wstring_view sUsed = sPattern.empty() ? isoPattern(tShown) : sPattern;
    // A spreadsheet rounds to the seconds that it shows; a fraction that does not show must not change them.
    const DateTime tHeld = sUsed.find(ksFraction) == std::wstring_view::npos ? withoutFraction(tShown) : tShown;
    if (m_tColumn.tType.dataType() == SQLDataType::kTime && !showsDate(sUsed))
        return {ExcelCell::kNumber, excelTime(tHeld), sUsed, {}};
    if (const std::optional<double> tSerial = excelSerial(tHeld))
        return {ExcelCell::kNumber, *tSerial, sUsed, {}};
    m_sText = m_hIso->formatAsString(&tShown);
    return {ExcelCell::kText, 0, {}, m_sText};
}

const String& ExcelColumn::isoPattern(const DateTime& tValue) const
{
    static const String sDate = L"yyyy-mm-dd";
    static const String aTimes[] = {L"hh:mm:ss", L"hh:mm:ss.000"};
    static const String aTimestamps[] = {sDate + L" " + aTimes[0], sDate + L" " + aTimes[1]};
    const int nFraction = tValue.nanoseconds() >= knNanosecondsPerMillisecond ? 1 : 0;
    switch (m_tColumn.tType.dataType())
    {
    case SQLDataType::kDate: return sDate;
    case SQLDataType::kTime: return aTimes[nFraction];
    default: return aTimestamps[nFraction];
    }
}

std::size_t ExcelColumn::widthOf(const ExcelCell& tCell) const
{
    constexpr std::size_t nGeneral = 17;
    switch (tCell.eKind)
    {
    case ExcelCell::kBlank: return 0;
    case ExcelCell::kText: return displayWidth(tCell.sText);
    case ExcelCell::kNumber: break;
    }
    if (isCalendar())
        return dateWidth(tCell.sPattern);
    if (!tCell.sPattern.empty())
        return numberWidth(tCell.fNumber, tCell.sPattern);
    std::array<wchar_t, 40> aText;
    const int nLength = std::swprintf(aText.data(), aText.size(), L"%.15g", tCell.fNumber);
    return std::min(nGeneral, static_cast<std::size_t>(std::max(nLength, 0)));
}

}  // namespace tov
