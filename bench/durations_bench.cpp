#include <absl/strings/str_format.h>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <fmt/xchar.h>
#include <unicode/decimfmt.h>
#include <unicode/msgfmt.h>

#include <cmath>
#include <memory>

#include "support/contenders.h"
#include "support/contest.h"
#include "support/values.h"
#include "webformat/durationformatters.h"

namespace tov {

namespace {

struct Units
{
    std::int64_t nDays;
    int nHours;
    int nMinutes;
    int nSeconds;
};

Units split(long nSeconds)
{
    return {nSeconds / 86400, static_cast<int>(nSeconds / 3600 % 24), static_cast<int>(nSeconds / 60 % 60),
            static_cast<int>(nSeconds % 60)};
}

// Only the seconds are rounded, up to 60.
Units split(double fSeconds)
{
    const double fMinutes = std::floor(fSeconds / 60);
    Units tUnits = split(static_cast<long>(fMinutes) * 60);
    tUnits.nSeconds = static_cast<int>(std::round(fSeconds - fMinutes * 60));
    return tUnits;
}

std::vector<long> wholeDurations()
{
    std::vector<long> vDurations;
    for (const double fSeconds : durations())
        vDurations.push_back(static_cast<long>(fSeconds));
    return vDurations;
}

template <class T>
Webformat<T> webformat()
{
    return Webformat<T>(DurationFormatter<T>::CreateFormatter(nullptr, Locale::kUSA, ValueFormatterTypes::kText,
                                                              KTWUILanguage::kDefaultLanguage));
}

class FmtLoop
{
public:
    template <class T>
    void write(T tSeconds)
    {
        const Units tUnits = split(tSeconds);
        m_tBuffer.clear();
        fmt::format_to(std::back_inserter(m_tBuffer), FMT_COMPILE(L" {:02}d:{:02}h:{:02}m:{:02}s"), tUnits.nDays,
                       tUnits.nHours, tUnits.nMinutes, tUnits.nSeconds);
    }

    std::wstring text() const { return std::wstring(m_tBuffer.data(), m_tBuffer.size()); }

private:
    fmt::wmemory_buffer m_tBuffer;
};

class AbseilLoop
{
public:
    template <class T>
    void write(T tSeconds)
    {
        const Units tUnits = split(tSeconds);
        m_sText.clear();
        absl::StrAppendFormat(&m_sText, " %02dd:%02dh:%02dm:%02ds", tUnits.nDays, tUnits.nHours, tUnits.nMinutes,
                              tUnits.nSeconds);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    std::string m_sText;
};

class IcuLoop
{
public:
    IcuLoop() { requireSuccess(m_eError); }

    template <class T>
    void write(T tSeconds)
    {
        const Units tUnits = split(tSeconds);
        m_sText.remove().append(u' ');
        m_tFormat.format(tUnits.nDays, m_sText).append(u"d:", 2);
        m_tFormat.format(tUnits.nHours, m_sText).append(u"h:", 2);
        m_tFormat.format(tUnits.nMinutes, m_sText).append(u"m:", 2);
        m_tFormat.format(tUnits.nSeconds, m_sText).append(u's');
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    icu::DecimalFormat m_tFormat{u"00", icu::DecimalFormatSymbols(icu::Locale::getUS(), m_eError), m_eError};
    icu::UnicodeString m_sText;
};

template <class T>
void addDurations(const std::string& sWork, const std::vector<T>& vDurations)
{
    Contest<T> tContest(sWork, vDurations);
    tContest.add("webformat", Agreement::kSameText, &webformat<T>);
    tContest.add("fmt loop", Agreement::kSameText, [] { return FmtLoop(); });
    tContest.add("absl loop", Agreement::kSameText, [] { return AbseilLoop(); });
    tContest.add("ICU DecimalFormat loop", Agreement::kSameText, [] { return IcuLoop(); });
}

constexpr long kSample = 93784;

// One pattern in the language of each contender.
struct Pattern
{
    String sOurs;
    icu::UnicodeString sIcu;
    std::string sPrintf;
};

// Every combination of a text in front, one behind the days and a separator, with the days optional or not, repeated.
std::vector<Pattern> patterns()
{
    constexpr const char* kFronts[] = {"", "up ", "+", "took: "};
    constexpr const char* kDays[] = {" days ", "d:", "d ", "_"};
    constexpr const char* kSeparators[] = {":", ".", " ", "/"};
    std::vector<Pattern> vPatterns;
    for (std::size_t n = 0; n < ChangingOrder::knPlaces; ++n)
    {
        const std::string sFront = kFronts[n % 4];
        const std::string sDays = kDays[n / 4 % 4];
        const std::string sSeparator = kSeparators[n / 16 % 4];
        const bool bOptional = n / 64 % 2;
        const std::string sOurs = (sFront.empty() ? "" : "\"" + sFront + "\"") + (bOptional ? "[opt:" : "") + "dd\"" +
                                  sDays + "\"" + (bOptional ? "]" : "") + "hh" + sSeparator + "mm" + sSeparator + "ss";
        const std::string sIcu = sFront + "{0,number,00}" + sDays + "{1,number,00}" + sSeparator + "{2,number,00}" +
                                 sSeparator + "{3,number,00}";
        vPatterns.push_back({toWide(sOurs), icu::UnicodeString::fromUTF8(sIcu),
                             sFront + "%02d" + sDays + "%02d" + sSeparator + "%02d" + sSeparator + "%02d"});
    }
    return vPatterns;
}

class WebformatPattern
{
public:
    void write(const Pattern& tPattern)
    {
        m_hFormatter = DurationFormatter<long>::ParseCustomFormat(
            tPattern.sOurs, Locale::kUSA, ValueFormatterTypes::kText, KTWUILanguage::kDefaultLanguage);
    }

    std::wstring text() const { return m_hFormatter->formatAsString(&kSample); }

private:
    WebValueFormatterHandle m_hFormatter;
};

class IcuPattern
{
public:
    void write(const Pattern& tPattern)
    {
        m_pFormat = std::make_unique<icu::MessageFormat>(tPattern.sIcu, icu::Locale::getUS(), m_eError);
    }

    std::wstring text() const
    {
        const Units tUnits = split(kSample);
        const icu::Formattable aUnits[] = {tUnits.nDays, tUnits.nHours, tUnits.nMinutes, tUnits.nSeconds};
        icu::UnicodeString sText;
        icu::FieldPosition tPosition;
        UErrorCode eError = U_ZERO_ERROR;
        return toWide(m_pFormat->format(aUnits, 4, sText, tPosition, eError));
    }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    std::unique_ptr<icu::MessageFormat> m_pFormat;
};

class AbseilPattern
{
public:
    using Format = absl::ParsedFormat<'d', 'd', 'd', 'd'>;

    void write(const Pattern& tPattern) { m_pFormat = Format::New(tPattern.sPrintf); }

    std::wstring text() const
    {
        const Units tUnits = split(kSample);
        return toWide(absl::StrFormat(*m_pFormat, tUnits.nDays, tUnits.nHours, tUnits.nMinutes, tUnits.nSeconds));
    }

private:
    std::unique_ptr<Format> m_pFormat;
};

void addDurationPatterns()
{
    Contest<Pattern> tContest("compile a duration pattern", patterns());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatPattern(); });
    tContest.add("ICU MessageFormat", Agreement::kSameText, [] { return IcuPattern(); });
    tContest.add("absl ParsedFormat", Agreement::kSameText, [] { return AbseilPattern(); });
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    tov::addDurations("duration, double", tov::durations());
    tov::addDurations("duration, int64", tov::wholeDurations());
    tov::addDurationPatterns();
    return tov::runBenchmarks(nArguments, ppArguments);
}
