#include <absl/strings/str_format.h>
#include <absl/strings/substitute.h>
#include <fmt/compile.h>
#include <fmt/format.h>
#include <fmt/xchar.h>
#include <unicode/decimfmt.h>
#include <unicode/numberformatter.h>

#include <boost/multiprecision/cpp_int.hpp>
#include <charconv>
#include <locale>
#include <type_traits>

#include "support/commas.h"
#include "support/contenders.h"
#include "support/contest.h"
#include "support/values.h"

namespace tov {

namespace {

__extension__ typedef __int128 Int128;

using BigInteger = boost::multiprecision::cpp_int;

// One decimal in the form that each contender takes.
struct Decimal
{
    std::string sText;
    CorvidNumber tNumber;
    BigInteger tCoefficient;
    Int128 nCoefficient;
};

std::vector<Decimal> decimals()
{
    std::vector<Decimal> vDecimals;
    for (const std::string& sText : longDecimals())
    {
        std::string sCoefficient = sText;
        sCoefficient.erase(sCoefficient.find('.'), 1);
        const BigInteger tCoefficient(sCoefficient);
        vDecimals.push_back({sText, *CorvidNumber::fromString(sText), tCoefficient, static_cast<Int128>(tCoefficient)});
    }
    return vDecimals;
}

class WebformatDecimal
{
public:
    void write(const Decimal& tValue) { m_tFormatter.write(tValue.tNumber); }
    std::wstring text() const { return m_tFormatter.text(); }

private:
    Webformat<CorvidNumber> m_tFormatter{L"#,##0.00"};
};

class IcuDecimalFormat
{
public:
    explicit IcuDecimalFormat(const char16_t* pPattern)
        : m_tSymbols(icu::Locale::getUS(), m_eError), m_tFormat(pPattern, m_tSymbols, m_eError)
    {
        m_tFormat.setRoundingMode(icu::DecimalFormat::kRoundHalfUp);
        requireSuccess(m_eError);
    }

    template <class T>
    void write(const T& tValue)
    {
        m_sText.remove();
        if constexpr (std::is_same_v<T, Decimal>)
            m_tFormat.format(tValue.sText, m_sText, nullptr, m_eError);
        else
            m_tFormat.format(tValue, m_sText);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    icu::DecimalFormatSymbols m_tSymbols;
    icu::DecimalFormat m_tFormat;
    icu::UnicodeString m_sText;
};

class IcuNumberFormatter
{
public:
    explicit IcuNumberFormatter(int nPlaces)
        : m_tFormatter(icu::number::NumberFormatter::withLocale(icu::Locale::getUS())
                           .precision(icu::number::Precision::fixedFraction(nPlaces))
                           .roundingMode(UNUM_ROUND_HALFUP))
    {
    }

    template <class T>
    void write(const T& tValue)
    {
        m_sText.remove();
        icu::UnicodeStringAppendable tTarget(m_sText);
        format(tValue).appendTo(tTarget, m_eError);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    icu::number::FormattedNumber format(double fValue) { return m_tFormatter.formatDouble(fValue, m_eError); }
    icu::number::FormattedNumber format(std::int64_t nValue) { return m_tFormatter.formatInt(nValue, m_eError); }
    icu::number::FormattedNumber format(const Decimal& tValue)
    {
        return m_tFormatter.formatDecimal(tValue.sText, m_eError);
    }

    UErrorCode m_eError = U_ZERO_ERROR;
    icu::number::LocalizedNumberFormatter m_tFormatter;
    icu::UnicodeString m_sText;
};

class FmtGrouped
{
public:
    void write(double fValue) { write(L"{:.2Lf}", fValue); }
    void write(std::int64_t nValue) { write(L"{:L}", nValue); }

    std::wstring text() const { return std::wstring(m_tBuffer.data(), m_tBuffer.size()); }

private:
    template <class T>
    void write(const wchar_t* pFormat, T tValue)
    {
        m_tBuffer.clear();
        fmt::vformat_to(std::back_inserter(m_tBuffer), m_tLocale, fmt::wstring_view(pFormat),
                        fmt::make_wformat_args(tValue));
    }

    std::locale m_tLocale{std::locale::classic(), new Commas};
    fmt::wmemory_buffer m_tBuffer;
};

class FmtCompiled
{
public:
    void write(double fValue) { write(FMT_COMPILE(L"{:.2f}"), fValue); }
    void write(std::int64_t nValue) { write(FMT_COMPILE(L"{}"), nValue); }
    void write(const Decimal& tValue) { write(FMT_COMPILE(L"{}"), tValue.nCoefficient); }

    std::wstring text() const { return std::wstring(m_tBuffer.data(), m_tBuffer.size()); }

private:
    template <class Format, class T>
    void write(const Format& tFormat, T tValue)
    {
        m_tBuffer.clear();
        fmt::format_to(std::back_inserter(m_tBuffer), tFormat, tValue);
    }

    fmt::wmemory_buffer m_tBuffer;
};

class Abseil
{
public:
    void write(double fValue)
    {
        m_sText.clear();
        absl::StrAppendFormat(&m_sText, "%.2f", fValue);
    }

    void write(std::int64_t nValue)
    {
        m_sText.clear();
        absl::SubstituteAndAppend(&m_sText, "$0", nValue);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    std::string m_sText;
};

class ToChars
{
public:
    void write(double fValue) { end(std::to_chars(m_aText, std::end(m_aText), fValue, std::chars_format::fixed, 2)); }
    void write(std::int64_t nValue) { end(std::to_chars(m_aText, std::end(m_aText), nValue)); }

    std::wstring text() const { return std::wstring(m_aText, m_aText + m_nLength); }

protected:
    void end(std::to_chars_result tResult) { m_nLength = static_cast<std::size_t>(tResult.ptr - m_aText); }

    char m_aText[64];
    std::size_t m_nLength = 0;
};

class ToCharsScientific : public ToChars
{
public:
    void write(double fValue)
    {
        end(std::to_chars(m_aText, std::end(m_aText), fValue, std::chars_format::scientific, 14));
    }
};

class BoostText
{
public:
    void write(const Decimal& tValue) { m_sText = tValue.tCoefficient.str(); }
    std::wstring text() const { return toWide(m_sText); }

private:
    std::string m_sText;
};

void addAmounts()
{
    Contest<double> tContest("double amounts", amounts(8));
    tContest.add("webformat", Agreement::kSameText, [] { return Webformat<double>(L"#,##0.00"); });
    tContest.add("ICU DecimalFormat", Agreement::kSameText, [] { return IcuDecimalFormat(u"#,##0.00"); });
    tContest.add("ICU NumberFormatter", Agreement::kSameText, [] { return IcuNumberFormatter(2); });
    tContest.add("fmt grouped", Agreement::kSameText, [] { return FmtGrouped(); });
    tContest.add("fmt compiled", Agreement::kSameDigits, [] { return FmtCompiled(); });
    tContest.add("absl StrFormat", Agreement::kSameDigits, [] { return Abseil(); });
    tContest.add("to_chars", Agreement::kSameDigits, [] { return ToChars(); });
}

void addAnyDoubles()
{
    Contest<double> tContest("any double", anyDoubles());
    tContest.add("webformat", Agreement::kSameText, [] { return Webformat<double>(L"#,##0.00"); });
    tContest.add("ICU DecimalFormat", Agreement::kSameValue, [] { return IcuDecimalFormat(u"#,##0.00"); });
    tContest.add("ICU NumberFormatter", Agreement::kSameValue, [] { return IcuNumberFormatter(2); });
    tContest.add("fmt grouped", Agreement::kSameValue, [] { return FmtGrouped(); });
    tContest.add("fmt compiled", Agreement::kSameValue, [] { return FmtCompiled(); });
    tContest.add("absl StrFormat", Agreement::kSameValue, [] { return Abseil(); });
    tContest.add("to_chars", Agreement::kSameValue, [] { return ToChars(); });
    tContest.add("to_chars scientific", Agreement::kSameValue, [] { return ToCharsScientific(); });
}

void addSections()
{
    Contest<double> tContest("two sections", amounts(2));
    tContest.add("webformat", Agreement::kSameText, [] { return Webformat<double>(L"#,##0.00;[red](#,##0.00)"); });
    tContest.add("ICU DecimalFormat", Agreement::kSameText, [] { return IcuDecimalFormat(u"#,##0.00;(#,##0.00)"); });
}

void addCurrency()
{
    Contest<double> tContest("currency", amounts(2));
    tContest.add("webformat", Agreement::kSameText, [] { return Webformat<double>(L"$#,##0.00;[red]($#,##0.00)"); });
    tContest.add("ICU DecimalFormat", Agreement::kSameText, [] { return IcuDecimalFormat(u"$#,##0.00;($#,##0.00)"); });
}

void addWholeNumbers()
{
    Contest<std::int64_t> tContest("int64", wholeNumbers());
    tContest.add("webformat", Agreement::kSameText, [] { return Webformat<std::int64_t>(L"#,##0"); });
    tContest.add("ICU DecimalFormat", Agreement::kSameText, [] { return IcuDecimalFormat(u"#,##0"); });
    tContest.add("ICU NumberFormatter", Agreement::kSameText, [] { return IcuNumberFormatter(0); });
    tContest.add("fmt grouped", Agreement::kSameText, [] { return FmtGrouped(); });
    tContest.add("fmt compiled", Agreement::kSameDigits, [] { return FmtCompiled(); });
    tContest.add("absl Substitute", Agreement::kSameDigits, [] { return Abseil(); });
    tContest.add("to_chars", Agreement::kSameDigits, [] { return ToChars(); });
}

void addDecimals()
{
    Contest<Decimal> tContest("decimal of 28 digits", decimals());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatDecimal(); });
    tContest.add("ICU DecimalFormat", Agreement::kSameText, [] { return IcuDecimalFormat(u"#,##0.00"); });
    tContest.add("ICU NumberFormatter", Agreement::kSameText, [] { return IcuNumberFormatter(2); });
    tContest.add("fmt __int128", Agreement::kSameDigits, [] { return FmtCompiled(); });
    tContest.add("Boost cpp_int", Agreement::kSameDigits, [] { return BoostText(); });
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    tov::addAmounts();
    tov::addAnyDoubles();
    tov::addSections();
    tov::addCurrency();
    tov::addWholeNumbers();
    tov::addDecimals();
    return tov::runBenchmarks(nArguments, ppArguments);
}
