#include "webformat/dateformatters.h"

#include <charconv>

#include "corefacade/dateutils.h"
#include "corefacade/timezone.h"
#include "webbedrock/assertion.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/dateformatterimpl.h"
#include "webformat/timestampformatter.h"

namespace tov {

namespace {

using DateType = WebDateFormatDefinition::Type;
using OutputType = ValueFormatterTypes::OutputType;

constexpr char kSource[] = "webformat/dateformatters";

// Dates, timestamps and typed literals that mean the same in every locale. Three letters ask for the year with at least
// four digits.
constexpr wchar_t ksODBCDate[] = L"yyy-MM-dd";
constexpr wchar_t ksODBCTime[] = L"HH:mm:ss.#########";
constexpr wchar_t ksODBCTimeStamp[] = L"yyy-MM-dd HH:mm:ss.#########";
constexpr wchar_t ksTypedODBCDate[] = L"\"date '\"yyy-MM-dd\"'\"";
constexpr wchar_t ksTypedODBCTime[] = L"\"time '\"HH:mm:ss.#########\"'\"";
constexpr wchar_t ksTypedODBCTimeStamp[] = L"\"timestamp '\"yyy-MM-dd HH:mm:ss.#########\"'\"";

// What shows a value that no definition describes.
constexpr wchar_t ksFallback[] = L"MM/dd/yyyy hh:mm:ss";

constexpr wchar_t ksSeconds[] = L"ss";
constexpr wchar_t ksFractionalSeconds[] = L"ss.#########";
constexpr std::wstring_view ksTimeZone = L"TZ";

String withoutSeconds(String sTime, const String& sSeparator)
{
    const String sSeconds = sSeparator + ksSeconds;
    if (const std::size_t nFound = sTime.find(sSeconds); nFound != String::npos)
        return sTime.erase(nFound, sSeconds.size());
    // Kept: with another separator whatever follows the seconds goes with them.
    std::size_t nCut = sTime.find(L":ss");
    if (nCut == String::npos)
        nCut = sTime.find(ksSeconds);
    return sTime.substr(0, nCut);
}

// Kept: the blank for what is dropped stands beside a blank of the pattern's own.
String reducedToHour(const String& sTime)
{
    String sHour;
    bool bDropped = false;
    for (const wchar_t nChar : sTime)
    {
        const bool bKept = nChar == L'h' || nChar == L'H' || nChar == L't' || nChar == L' ';
        if (bKept && bDropped)
            sHour += L' ';
        if (bKept)
            sHour += nChar;
        bDropped = !bKept;
    }
    return sHour;
}

String withFractionalSeconds(String sTime)
{
    constexpr std::size_t nSeconds = 2;
    const std::size_t nFound = sTime.find(ksSeconds);
    if (nFound == String::npos || sTime.compare(nFound + nSeconds, 1, L".") == 0)
        return sTime;
    return sTime.replace(nFound, nSeconds, ksFractionalSeconds);
}

String dateAndTime(const Locale& tLocale, Locale::StringInfo eDate, const String& sTime)
{
    return tLocale.getInfo(eDate) + L' ' + sTime;
}

// The first mark for the zone's name is gone where no zone applies; the date language ignores further ones.
String withoutTimeZone(String sPattern)
{
    const std::size_t nFound = sPattern.find(ksTimeZone);
    return nFound == String::npos ? sPattern : sPattern.erase(nFound, ksTimeZone.size());
}

const String& firstNotEmpty(const String& sFirst, const String& sSecond)
{
    return sFirst.empty() ? sSecond : sFirst;
}

const String& ownPattern(const WebDateFormatDefinition& tDefinition)
{
    const String& sCustomFormatString = tDefinition.getPredefinedFormat();
    WEBFORMAT_ASSERT(kSource, !sCustomFormatString.empty());
    return sCustomFormatString;
}

WebValueFormatDefinitionHandle convertedDefinition(const WebWhistlerFormatDefinition& tDefinition)
{
    const WebValueFormatDefinitionHandle hConverted =
        WebConvertWhistlerFormat::ConvertDateFormat(tDefinition.GetFormatString());
    if (hConverted.isNull())
        throwInvalidHandle();
    return hConverted;
}

// Whether the resolver knows in which zone values are stored.
bool knowsDataOffset(const TimeZoneResolver& tResolver)
{
    return TimeZone::isValidOffset(tResolver.getDataOffset());
}

WebValueFormatterHandle timeStampFormatter(const String& sPattern, const Locale& tLocale,
                                           const KTWUILanguage& tLanguage, const TimeZoneResolver& tResolver,
                                           const String& sDisplayTimeZone, OutputType eOutput)
{
    return WEBFORMAT_NEW(kSource)
        TimeStampFormatter(tLocale, tLanguage, sPattern, tResolver, sDisplayTimeZone, eOutput);
}

void appendDigits(StringBufferBaseTemplate<wchar_t>& tBuffer, std::uint64_t nNumber, std::ptrdiff_t nLeastDigits)
{
    constexpr std::size_t nMostDigits = 20;
    char aDigits[nMostDigits];
    const char* const pEnd = std::to_chars(aDigits, aDigits + nMostDigits, nNumber).ptr;
    for (std::ptrdiff_t nDigits = pEnd - aDigits; nDigits < nLeastDigits; ++nDigits)
        tBuffer.append(L'0');
    for (const char* pDigit = aDigits; pDigit != pEnd; ++pDigit)
        tBuffer.append(static_cast<wchar_t>(*pDigit));
}

}  // namespace

WebDateFormatter::WebDateFormatter() : WebValueFormatter(SQLDataType::kStorageTimeStamp) {}

WebDateFormatter::~WebDateFormatter() = default;

// The milliseconds of the last years that a value may hold do not fit 64 bits: seconds and thousandths are written one
// after the other.
void WebDateFormatter::formatExcelValueToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    constexpr unsigned nPerSecond = 1000;
    constexpr unsigned nNanosecondsPerMillisecond = 1'000'000;
    if (!pValue)
        return;
    const DateTime& tValue = *static_cast<const DateTime*>(pValue);
    const unsigned nAllMilliseconds = tValue.nanoseconds() / nNanosecondsPerMillisecond;
    const std::int64_t nSeconds = DateUtils::DateTimeToCRTtime(tValue) + nAllMilliseconds / nPerSecond;
    unsigned nMilliseconds = nAllMilliseconds % nPerSecond;
    std::uint64_t nMagnitude = static_cast<std::uint64_t>(nSeconds);
    if (nSeconds < 0)
    {
        tBuffer.append(L'-');
        nMagnitude = 0 - nMagnitude - (nMilliseconds != 0 ? 1 : 0);
        nMilliseconds = nMilliseconds != 0 ? nPerSecond - nMilliseconds : 0;
    }
    if (nMagnitude != 0)
        appendDigits(tBuffer, nMagnitude, 1);
    appendDigits(tBuffer, nMilliseconds, nMagnitude != 0 ? 3 : 1);
}

String WebDateFormatter::GetCustomFormatForType(DateType eType, const Locale& tLocale, OutputType)
{
    const String& sTime = tLocale.getInfo(Locale::kTimeFormat);
    const String& sInputTime = tLocale.getInfo(Locale::kTimeInputFormat);
    const String& sSeparator = tLocale.getInfo(Locale::kTimeSeparator);
    switch (eType)
    {
    case WebDateFormatDefinition::kShortDate: return tLocale.getInfo(Locale::kDateShortFormat);
    case WebDateFormatDefinition::kLongDate: return tLocale.getInfo(Locale::kDateLongFormat);
    case WebDateFormatDefinition::kInputDate: return tLocale.getInfo(Locale::kDateInputFormat);
    case WebDateFormatDefinition::kTime: return sTime;
    case WebDateFormatDefinition::kTimeHourMin: return withoutSeconds(sTime, sSeparator);
    case WebDateFormatDefinition::kInputTime: return sInputTime;
    case WebDateFormatDefinition::kInputTimeHourMin: return withoutSeconds(sInputTime, sSeparator);
    case WebDateFormatDefinition::kShortTimeStamp: return dateAndTime(tLocale, Locale::kDateShortFormat, sTime);
    case WebDateFormatDefinition::kLongTimeStamp: return dateAndTime(tLocale, Locale::kDateLongFormat, sTime);
    case WebDateFormatDefinition::kInputTimeStamp: return dateAndTime(tLocale, Locale::kDateInputFormat, sInputTime);
    case WebDateFormatDefinition::kODBCDate: return ksODBCDate;
    case WebDateFormatDefinition::kODBCTime: return ksODBCTime;
    case WebDateFormatDefinition::kODBCTimeStamp: return ksODBCTimeStamp;
    case WebDateFormatDefinition::kTypedODBCDate: return ksTypedODBCDate;
    case WebDateFormatDefinition::kTypedODBCTime: return ksTypedODBCTime;
    case WebDateFormatDefinition::kTypedODBCTimeStamp: return ksTypedODBCTimeStamp;
    case WebDateFormatDefinition::kTimeHour: return reducedToHour(sTime);
    case WebDateFormatDefinition::kTimeWFractionalSeconds: return withFractionalSeconds(sTime);
    case WebDateFormatDefinition::kShortTimeStampWFractionalSeconds:
        return dateAndTime(tLocale, Locale::kDateShortFormat, withFractionalSeconds(sTime));
    default: return String();
    }
}

WebValueFormatterHandle WebDateFormatter::ParseCustomFormat(const String& sPattern, const Locale& tLocale,
                                                            const KTWUILanguage& tLanguage, OutputType eOutput)
{
    const Handle<StandardDateFormatter, StandardDateFormatter> hFormatter(
        WEBFORMAT_NEW(kSource) StandardDateFormatter(tLocale, tLanguage, sPattern, eOutput));
    hFormatter->addCustomFormat(sPattern, tLocale, eOutput);
    return hFormatter;
}

WebValueFormatterHandle WebDateFormatter::CreateDefaultDateFormatter(DateType eType, const Locale& tLocale,
                                                                     const KTWUILanguage& tLanguage, OutputType eOutput)
{
    return ParseCustomFormat(GetCustomFormatForType(eType, tLocale, eOutput), tLocale, tLanguage, eOutput);
}

WebValueFormatterHandle WebDateFormatter::CreateFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                          const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                          OutputType eOutput)
{
    const WebValueFormatDefinition* const pDefinition = hDefinition.getPointer();
    if (const auto* pDate = dynamic_cast<const WebDateFormatDefinition*>(pDefinition))
    {
        if (pDate->GetFormatType() != WebDateFormatDefinition::kPredefinedDate)
            return CreateDefaultDateFormatter(pDate->GetFormatType(), tLocale, tLanguage, eOutput);
        return ParseCustomFormat(ownPattern(*pDate), tLocale, tLanguage, eOutput);
    }
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(pDefinition))
        return ParseCustomFormat(pCustom->GetCustomFormat(), tLocale, tLanguage, eOutput);
    if (const auto* pWhistler = dynamic_cast<const WebWhistlerFormatDefinition*>(pDefinition))
        return CreateFormatter(convertedDefinition(*pWhistler), tLocale, tLanguage, eOutput);
    return ParseCustomFormat(ksFallback, tLocale, tLanguage, eOutput);
}

WebValueFormatterHandle WebDateFormatter::ParseCustomFormatTZ(const String& sPattern, const Locale& tLocale,
                                                              const KTWUILanguage& tLanguage,
                                                              const TimeZoneResolver& tResolver,
                                                              const String& sDisplayTimeZone, OutputType eOutput)
{
    if (knowsDataOffset(tResolver))
        return timeStampFormatter(sPattern, tLocale, tLanguage, tResolver, sDisplayTimeZone, eOutput);
    return ParseCustomFormat(withoutTimeZone(sPattern), tLocale, tLanguage, eOutput);
}

WebValueFormatterHandle WebDateFormatter::CreateDefaultDateFormatterTZ(DateType eType, const Locale& tLocale,
                                                                       const TimeZoneResolver& tResolver,
                                                                       const String& sDisplayTimeZone,
                                                                       const KTWUILanguage& tLanguage,
                                                                       OutputType eOutput)
{
    const String sPattern = GetCustomFormatForType(eType, tLocale, eOutput);
    if (knowsDataOffset(tResolver))
        return timeStampFormatter(sPattern, tLocale, tLanguage, tResolver, sDisplayTimeZone, eOutput);
    return ParseCustomFormat(sPattern, tLocale, tLanguage, eOutput);
}

WebValueFormatterHandle WebDateFormatter::CreateFormatterTZ(const WebValueFormatDefinitionHandle& hDefinition,
                                                            const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                            const String& sDisplayTimeZone,
                                                            const KTWUILanguage& tLanguage, OutputType eOutput)
{
    const WebValueFormatDefinition* const pDefinition = hDefinition.getPointer();
    if (const auto* pDate = dynamic_cast<const WebDateFormatDefinition*>(pDefinition))
    {
        const String& sZone = firstNotEmpty(sDisplayTimeZone, pDate->getDisplayTimeZone());
        if (pDate->GetFormatType() != WebDateFormatDefinition::kPredefinedDate)
            return CreateDefaultDateFormatterTZ(pDate->GetFormatType(), tLocale, tResolver, sZone, tLanguage, eOutput);
        return ParseCustomFormatTZ(ownPattern(*pDate), tLocale, tLanguage, tResolver, sZone, eOutput);
    }
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(pDefinition))
        return ParseCustomFormatTZ(pCustom->GetCustomFormat(), tLocale, tLanguage, tResolver, sDisplayTimeZone,
                                   eOutput);
    // Kept: the caller's zone does not reach formats of the older notation.
    if (const auto* pWhistler = dynamic_cast<const WebWhistlerFormatDefinition*>(pDefinition))
        return CreateFormatterTZ(convertedDefinition(*pWhistler), tLocale, tResolver, String(), tLanguage, eOutput);
    return ParseCustomFormat(ksFallback, tLocale, tLanguage, eOutput);
}

}  // namespace tov
