#include <absl/strings/str_format.h>
#include <unicode/decimfmt.h>
#include <unicode/numberformatter.h>

#include <memory>

#include "support/contenders.h"
#include "support/contest.h"

namespace tov {

namespace {

constexpr double kSample = 1234567.5;

// One pattern in the language of each contender.
struct Pattern
{
    String sOurs;
    icu::UnicodeString sIcu;
    std::string sPrintf;
};

// Every combination of literals around the number, grouping, decimals and a negative section, repeated.
std::vector<Pattern> patterns()
{
    constexpr const wchar_t* kPrefixes[] = {L"", L"+", L"~ ", L"up "};
    constexpr const wchar_t* kSuffixes[] = {L"", L" t", L" units", L" kg"};
    std::vector<Pattern> vPatterns;
    for (std::size_t n = 0; n < ChangingOrder::knPlaces; ++n)
    {
        const std::size_t nPlaces = 1 + n / 32 % 6;
        const String sNumber = (n / 16 % 2 ? L"#,##0." : L"0.") + String(nPlaces, L'0');
        const String sPositive = kPrefixes[n % 4] + sNumber + kSuffixes[n / 4 % 4];
        const String sPattern = n / 192 % 2 ? sPositive + L";(" + sNumber + L")" : sPositive;
        vPatterns.push_back({sPattern, icu::UnicodeString::fromUTF8(std::string(sPattern.begin(), sPattern.end())),
                             "%." + std::to_string(nPlaces) + "f"});
    }
    return vPatterns;
}

class WebformatPattern
{
public:
    void write(const Pattern& tPattern)
    {
        m_hFormatter = NumericFormatter<double>::ParseCustomFormat(
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
        m_pFormat = std::make_unique<icu::DecimalFormat>(tPattern.sIcu, m_tSymbols, m_eError);
    }

    std::wstring text() const
    {
        icu::UnicodeString sText;
        return toWide(m_pFormat->format(kSample, sText));
    }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    icu::DecimalFormatSymbols m_tSymbols{icu::Locale::getUS(), m_eError};
    std::unique_ptr<icu::DecimalFormat> m_pFormat;
};

class AbseilPattern
{
public:
    void write(const Pattern& tPattern) { m_pFormat = absl::ParsedFormat<'f'>::New(tPattern.sPrintf); }
    std::wstring text() const { return toWide(absl::StrFormat(*m_pFormat, kSample)); }

private:
    std::unique_ptr<absl::ParsedFormat<'f'>> m_pFormat;
};

void addNumberPatterns()
{
    Contest<Pattern> tContest("compile a number pattern", patterns());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatPattern(); });
    tContest.add("ICU DecimalFormat", Agreement::kSameText, [] { return IcuPattern(); });
    tContest.add("absl ParsedFormat", Agreement::kSameDigits, [] { return AbseilPattern(); });
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    tov::addNumberPatterns();
    return tov::runBenchmarks(nArguments, ppArguments);
}
