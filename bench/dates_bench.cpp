#include <absl/time/time.h>
#include <fmt/chrono.h>
#include <fmt/compile.h>
#include <fmt/xchar.h>
#include <unicode/dtfmtsym.h>
#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <cstdlib>
#include <ctime>
#include <memory>

#include "corefacade/dateutils.h"
#include "corefacade/timezoneregistry.h"
#include "support/contenders.h"
#include "support/contest.h"
#include "support/values.h"
#include "webformat/dateformatters.h"

namespace tov {

namespace {

constexpr std::int64_t kMillisecondsPerSecond = 1000;
constexpr char kZone[] = "America/New_York";

// One moment in the forms that the contenders take: fields of UTC, and a count.
struct Moment
{
    DateTime tFields;
    std::int64_t nMilliseconds;
    int nDayOfWeek;  // 0 for Sunday

    std::int64_t seconds() const { return nMilliseconds / kMillisecondsPerSecond; }
    int millisecond() const { return static_cast<int>(nMilliseconds % kMillisecondsPerSecond); }
    absl::Time absolute() const { return absl::FromUnixMillis(nMilliseconds); }
};

Moment momentOf(std::int64_t nMilliseconds)
{
    const absl::Time tTime = absl::FromUnixMillis(nMilliseconds);
    const absl::CivilSecond tCivil = absl::ToCivilSecond(tTime, absl::UTCTimeZone());
    const auto nNanoseconds = static_cast<unsigned>(nMilliseconds % kMillisecondsPerSecond * 1'000'000);
    const DateTime tFields(static_cast<int>(tCivil.year()), static_cast<unsigned>(tCivil.month()),
                           static_cast<unsigned>(tCivil.day()), static_cast<unsigned>(tCivil.hour()),
                           static_cast<unsigned>(tCivil.minute()), static_cast<unsigned>(tCivil.second()),
                           nNanoseconds);
    const int nFromMonday = static_cast<int>(absl::GetWeekday(tCivil));
    return {tFields, nMilliseconds, (nFromMonday + 1) % 7};
}

std::vector<Moment> someMoments()
{
    std::vector<Moment> vMoments;
    for (const std::int64_t nMilliseconds : moments())
        vMoments.push_back(momentOf(nMilliseconds));
    return vMoments;
}

std::tm brokenDown(const Moment& tMoment)
{
    std::tm tFields{};
    tFields.tm_year = tMoment.tFields.year() - 1900;
    tFields.tm_mon = static_cast<int>(tMoment.tFields.month()) - 1;
    tFields.tm_mday = static_cast<int>(tMoment.tFields.day());
    tFields.tm_hour = static_cast<int>(tMoment.tFields.hour());
    tFields.tm_min = static_cast<int>(tMoment.tFields.minute());
    tFields.tm_sec = static_cast<int>(tMoment.tFields.second());
    tFields.tm_wday = tMoment.nDayOfWeek;
    return tFields;
}

std::tm brokenDownInZone(const Moment& tMoment)
{
    const std::time_t nSeconds = tMoment.seconds();
    std::tm tFields{};
    localtime_r(&nSeconds, &tFields);
    return tFields;
}

absl::TimeZone absoluteZone()
{
    absl::TimeZone tZone;
    if (!absl::LoadTimeZone(kZone, &tZone))
        std::exit(1);
    return tZone;
}

class WebformatDate
{
public:
    explicit WebformatDate(const wchar_t* pPattern)
        : m_tFormatter(WebDateFormatter::ParseCustomFormat(pPattern, Locale::kUSA, KTWUILanguage::kDefaultLanguage,
                                                           ValueFormatterTypes::kText))
    {
    }

    WebformatDate(const wchar_t* pPattern, const TimeZoneResolver& tResolver, const wchar_t* pZone)
        : m_tFormatter(WebValueFormatter::GetCustomFormatterTZ(SQLDataType(SQLDataType::kTimeStamp), pPattern,
                                                               Locale::kUSA, tResolver, ValueFormatterTypes::kText,
                                                               KTWUILanguage::kDefaultLanguage, pZone))
    {
    }

    void write(const Moment& tMoment) { m_tFormatter.write(tMoment.tFields); }
    std::wstring text() const { return m_tFormatter.text(); }

private:
    Webformat<DateTime> m_tFormatter;
};

class IcuDate
{
public:
    explicit IcuDate(const char16_t* pPattern, const char* pZone = "UTC")
        : m_tFormat(pPattern, icu::Locale::getUS(), m_eError)
    {
        requireSuccess(m_eError);
        m_tFormat.adoptTimeZone(icu::TimeZone::createTimeZone(pZone));
    }

    void write(const Moment& tMoment)
    {
        m_sText.remove();
        m_tFormat.format(static_cast<UDate>(tMoment.nMilliseconds), m_sText);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    icu::SimpleDateFormat m_tFormat;
    icu::UnicodeString m_sText;
};

// `Break` takes a moment apart, `Format` writes the parts into the buffer.
template <class Break, class Format>
class Fmt
{
public:
    Fmt(const Break& tBreak, const Format& tFormat) : m_tBreak(tBreak), m_tFormat(tFormat) {}

    void write(const Moment& tMoment)
    {
        m_tBuffer.clear();
        m_tFormat(std::back_inserter(m_tBuffer), m_tBreak(tMoment), tMoment.millisecond());
    }

    std::wstring text() const { return std::wstring(m_tBuffer.data(), m_tBuffer.size()); }

private:
    Break m_tBreak;
    Format m_tFormat;
    fmt::wmemory_buffer m_tBuffer;
};

auto writeTimestamp()
{
    return [](auto tTarget, const std::tm& tFields, int)
    { fmt::format_to(tTarget, FMT_COMPILE(L"{:%Y-%m-%d %H:%M:%S}"), tFields); };
}

auto writeLongDate()
{
    return [](auto tTarget, const std::tm& tFields, int)
    { fmt::format_to(tTarget, FMT_COMPILE(L"{:%A, %B %e, %Y}"), tFields); };
}

auto writeFraction()
{
    return [](auto tTarget, const std::tm& tFields, int nMillisecond)
    { fmt::format_to(tTarget, FMT_COMPILE(L"{:%Y-%m-%d %H:%M:%S}.{:03}"), tFields, nMillisecond); };
}

// As `Fmt`; `Format` gives the length of the text.
template <class Break, class Format>
class Strftime
{
public:
    Strftime(const Break& tBreak, const Format& tFormat) : m_tBreak(tBreak), m_tFormat(tFormat) {}

    void write(const Moment& tMoment) { m_nLength = m_tFormat(m_aText, sizeof m_aText, m_tBreak(tMoment)); }
    std::wstring text() const { return std::wstring(m_aText, m_aText + m_nLength); }

private:
    Break m_tBreak;
    Format m_tFormat;
    char m_aText[64];
    std::size_t m_nLength = 0;
};

std::size_t strftimeTimestamp(char* pText, std::size_t nRoom, const std::tm& tFields)
{
    return std::strftime(pText, nRoom, "%Y-%m-%d %H:%M:%S", &tFields);
}

std::size_t strftimeLongDate(char* pText, std::size_t nRoom, const std::tm& tFields)
{
    return std::strftime(pText, nRoom, "%A, %B %e, %Y", &tFields);
}

class AbseilTime
{
public:
    AbseilTime(const char* pFormat, const absl::TimeZone& tZone) : m_sFormat(pFormat), m_tZone(tZone) {}

    void write(const Moment& tMoment) { m_sText = absl::FormatTime(m_sFormat, tMoment.absolute(), m_tZone); }
    std::wstring text() const { return toWide(m_sText); }

private:
    std::string m_sFormat;
    absl::TimeZone m_tZone;
    std::string m_sText;
};

// The conversions write nothing while they are timed: the fields that they found are the text.
std::wstring fieldsText(std::int64_t nYear, int nMonth, int nDay, int nHour, int nMinute, int nSecond)
{
    return fmt::format(L"{}-{:02}-{:02} {:02}:{:02}:{:02}", nYear, nMonth, nDay, nHour, nMinute, nSecond);
}

std::wstring fieldsText(const absl::CivilSecond& tCivil)
{
    return fieldsText(tCivil.year(), tCivil.month(), tCivil.day(), tCivil.hour(), tCivil.minute(), tCivil.second());
}

class WebformatConversion
{
public:
    WebformatConversion()
    {
        if (!TimeZoneRegistry::getInstance().findTimeZone(L"America/New_York", TimeZoneRegistry::kIdentifier, m_tZone))
            std::exit(1);
    }

    void write(const Moment& tMoment) { m_tFields = DateUtils::convertTimeZoneTime(tMoment.tFields, 0, m_tZone); }

    std::wstring text() const
    {
        const auto toInt = [](unsigned nField) { return static_cast<int>(nField); };
        return fieldsText(m_tFields.year(), toInt(m_tFields.month()), toInt(m_tFields.day()), toInt(m_tFields.hour()),
                          toInt(m_tFields.minute()), toInt(m_tFields.second()));
    }

private:
    TimeZone m_tZone;
    DateTime m_tFields;
};

class AbseilConversion
{
public:
    void write(const Moment& tMoment) { m_tCivil = m_tZone.At(absl::FromUnixSeconds(tMoment.seconds())).cs; }
    std::wstring text() const { return fieldsText(m_tCivil); }

private:
    absl::TimeZone m_tZone = absoluteZone();
    absl::CivilSecond m_tCivil;
};

class LocaltimeConversion
{
public:
    void write(const Moment& tMoment) { m_tFields = brokenDownInZone(tMoment); }

    std::wstring text() const
    {
        return fieldsText(m_tFields.tm_year + 1900, m_tFields.tm_mon + 1, m_tFields.tm_mday, m_tFields.tm_hour,
                          m_tFields.tm_min, m_tFields.tm_sec);
    }

private:
    std::tm m_tFields{};
};

// The offset alone: taking the result apart is not in its time.
class IcuOffset
{
public:
    void write(const Moment& tMoment)
    {
        m_fMoment = static_cast<UDate>(tMoment.nMilliseconds);
        m_pZone->getOffset(m_fMoment, false, m_nRaw, m_nDaylight, m_eError);
    }

    std::wstring text() const
    {
        const auto nLocal = static_cast<std::int64_t>(m_fMoment) + m_nRaw + m_nDaylight;
        return fieldsText(absl::ToCivilSecond(absl::FromUnixMillis(nLocal), absl::UTCTimeZone()));
    }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    std::unique_ptr<icu::TimeZone> m_pZone{icu::TimeZone::createTimeZone(kZone)};
    UDate m_fMoment = 0;
    std::int32_t m_nRaw = 0;
    std::int32_t m_nDaylight = 0;
};

void addTimestamps()
{
    Contest<Moment> tContest("timestamp", someMoments());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatDate(L"yyyy-MM-dd HH:mm:ss"); });
    tContest.add("ICU SimpleDateFormat", Agreement::kSameText, [] { return IcuDate(u"yyyy-MM-dd HH:mm:ss"); });
    tContest.add("fmt compiled", Agreement::kSameText, [] { return Fmt(&brokenDown, writeTimestamp()); });
    tContest.add("strftime", Agreement::kSameText, [] { return Strftime(&brokenDown, &strftimeTimestamp); });
    tContest.add("absl FormatTime", Agreement::kSameText,
                 [] { return AbseilTime("%Y-%m-%d %H:%M:%S", absl::UTCTimeZone()); });
}

void addLongDates()
{
    Contest<Moment> tContest("long date", someMoments());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatDate(L"dddd, MMMM d, yyyy"); });
    tContest.add("ICU SimpleDateFormat", Agreement::kSameText, [] { return IcuDate(u"EEEE, MMMM d, yyyy"); });
    tContest.add("fmt compiled", Agreement::kSameDigits, [] { return Fmt(&brokenDown, writeLongDate()); });
    tContest.add("strftime", Agreement::kSameDigits, [] { return Strftime(&brokenDown, &strftimeLongDate); });
    tContest.add("absl FormatTime", Agreement::kSameDigits,
                 [] { return AbseilTime("%A, %B %e, %Y", absl::UTCTimeZone()); });
}

void addFractions()
{
    Contest<Moment> tContest("timestamp with fraction", someMoments());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatDate(L"yyyy-MM-dd HH:mm:ss.###"); });
    tContest.add("ICU SimpleDateFormat", Agreement::kSameUpToZeros, [] { return IcuDate(u"yyyy-MM-dd HH:mm:ss.SSS"); });
    tContest.add("fmt compiled", Agreement::kSameUpToZeros, [] { return Fmt(&brokenDown, writeFraction()); });
    tContest.add("absl FormatTime", Agreement::kSameUpToZeros,
                 [] { return AbseilTime("%Y-%m-%d %H:%M:%E3S", absl::UTCTimeZone()); });
}

WebformatDate webformatInZone()
{
    TimeZoneResolver tResolver;
    tResolver.setMetaDataOffset(0);
    return WebformatDate(L"yyyy-MM-dd HH:mm:ss", tResolver, L"America/New_York");
}

void addTimestampsInZone()
{
    Contest<Moment> tContest("timestamp in a zone", someMoments());
    tContest.add("webformat", Agreement::kSameText, &webformatInZone);
    tContest.add("ICU SimpleDateFormat", Agreement::kSameText, [] { return IcuDate(u"yyyy-MM-dd HH:mm:ss", kZone); });
    tContest.add("localtime_r and fmt", Agreement::kSameText, [] { return Fmt(&brokenDownInZone, writeTimestamp()); });
    tContest.add("localtime_r and strftime", Agreement::kSameText,
                 [] { return Strftime(&brokenDownInZone, &strftimeTimestamp); });
    tContest.add("absl FormatTime", Agreement::kSameText,
                 [] { return AbseilTime("%Y-%m-%d %H:%M:%S", absoluteZone()); });
}

void addConversions()
{
    Contest<Moment> tContest("UTC to zone", someMoments());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatConversion(); });
    tContest.add("absl civil time", Agreement::kSameText, [] { return AbseilConversion(); });
    tContest.add("localtime_r", Agreement::kSameText, [] { return LocaltimeConversion(); });
    tContest.add("ICU offset alone", Agreement::kSameText, [] { return IcuOffset(); });
}

// One pattern in the language of each contender.
struct Pattern
{
    String sOurs;
    icu::UnicodeString sIcu;
};

// Every combination of a form of the date, a form of the time, their order and what stands between, repeated.
std::vector<Pattern> patterns()
{
    struct Part
    {
        std::wstring_view sOurs;
        const char16_t* pIcu;
    };
    constexpr Part kDates[] = {{L"yyyy-MM-dd", u"yyyy-MM-dd"},
                               {L"M/d/yyyy", u"M/d/yyyy"},
                               {L"dddd, MMMM d, yyyy", u"EEEE, MMMM d, yyyy"},
                               {L"ddd dd MMM yyyy", u"EEE dd MMM yyyy"},
                               {L"d.M.yy", u"d.M.yy"},
                               {L"MMMM yyyy", u"MMMM yyyy"},
                               {L"yyyyMMdd", u"yyyyMMdd"},
                               {L"dd/MM/yyyy", u"dd/MM/yyyy"}};
    constexpr Part kTimes[] = {
        {L"HH:mm:ss", u"HH:mm:ss"}, {L"h:mm:ss tt", u"h:mm:ss a"}, {L"HH:mm", u"HH:mm"}, {L"h tt", u"h a"}};
    constexpr Part kBetween[] = {{L" ", u" "}, {L", ", u", "}, {L" \"at\" ", u" 'at' "}, {L"  ", u"  "}};
    std::vector<Pattern> vPatterns;
    for (std::size_t n = 0; n < ChangingOrder::knPlaces; ++n)
    {
        const Part& tBetween = kBetween[n / 32 % 4];
        const Part* pFirst = &kDates[n % 8];
        const Part* pSecond = &kTimes[n / 8 % 4];
        if (n / 128 % 2)
            std::swap(pFirst, pSecond);
        vPatterns.push_back({String(pFirst->sOurs) + String(tBetween.sOurs) + String(pSecond->sOurs),
                             icu::UnicodeString(pFirst->pIcu) + tBetween.pIcu + pSecond->pIcu});
    }
    return vPatterns;
}

const Moment& sample()
{
    static const Moment s_tSample = momentOf(1709622489'000);
    return s_tSample;
}

class WebformatPattern
{
public:
    void write(const Pattern& tPattern)
    {
        m_hFormatter = WebDateFormatter::ParseCustomFormat(tPattern.sOurs, Locale::kUSA,
                                                           KTWUILanguage::kDefaultLanguage, ValueFormatterTypes::kText);
    }

    std::wstring text() const { return m_hFormatter->formatAsString(&sample().tFields); }

private:
    WebValueFormatterHandle m_hFormatter;
};

class IcuPattern
{
public:
    void write(const Pattern& tPattern)
    {
        m_pFormat = std::make_unique<icu::SimpleDateFormat>(tPattern.sIcu, m_tSymbols, m_eError);
    }

    std::wstring text() const
    {
        m_pFormat->setTimeZone(*icu::TimeZone::getGMT());
        icu::UnicodeString sText;
        return toWide(m_pFormat->format(static_cast<UDate>(sample().nMilliseconds), sText));
    }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    icu::DateFormatSymbols m_tSymbols{icu::Locale::getUS(), m_eError};
    std::unique_ptr<icu::SimpleDateFormat> m_pFormat;
};

void addDatePatterns()
{
    Contest<Pattern> tContest("compile a date pattern", patterns());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatPattern(); });
    tContest.add("ICU SimpleDateFormat", Agreement::kSameText, [] { return IcuPattern(); });
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    // The zone of localtime_r.
    setenv("TZ", tov::kZone, 1);
    tzset();
    tov::addTimestamps();
    tov::addLongDates();
    tov::addFractions();
    tov::addTimestampsInZone();
    tov::addConversions();
    tov::addDatePatterns();
    return tov::runBenchmarks(nArguments, ppArguments);
}
