#include <fmt/format.h>
#include <fmt/xchar.h>
#include <unicode/numberformatter.h>
#include <unicode/numfmt.h>

#include <cmath>
#include <locale>
#include <memory>

#include "support/commas.h"
#include "support/contenders.h"
#include "support/contest.h"
#include "support/values.h"

namespace tov {

namespace {

constexpr double kSample = 1234567.5;

WebValueFormatterHandle formatterOf(const WebValueFormatDefinition& tDefinition)
{
    return NumericFormatter<double>::CreateFormatter(tDefinition, Locale::kUSA, ValueFormatterTypes::kText,
                                                     KTWUILanguage::kDefaultLanguage);
}

Webformat<double> inParentheses(const wchar_t* pTag)
{
    return Webformat<double>(
        formatterOf(WebCurrencyFormatDefinition(pTag, WebNumberFormatDefinitionBase::kParens, true, 2, 2)));
}

Webformat<double> withMinus(const wchar_t* pTag)
{
    return Webformat<double>(
        formatterOf(WebCurrencyFormatDefinition(pTag, WebNumberFormatDefinitionBase::kMinus, true, 2, 2)));
}

// A format of the locale data's library for amounts in a currency.
class IcuCurrencyFormat
{
public:
    IcuCurrencyFormat(UNumberFormatStyle eStyle, const char* pCode)
        : m_pFormat(icu::NumberFormat::createInstance(icu::Locale::getUS(), eStyle, m_eError))
    {
        m_pFormat->setCurrency(icu::UnicodeString(pCode).getTerminatedBuffer(), m_eError);
        m_pFormat->setMinimumFractionDigits(2);
        m_pFormat->setMaximumFractionDigits(2);
        m_pFormat->setRoundingMode(icu::NumberFormat::kRoundHalfUp);
        requireSuccess(m_eError);
    }

    void write(double fValue)
    {
        m_sText.remove();
        m_pFormat->format(fValue, m_sText);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    std::unique_ptr<icu::NumberFormat> m_pFormat;
    icu::UnicodeString m_sText;
};

class IcuNumberFormatter
{
public:
    IcuNumberFormatter(const char* pCode, UNumberUnitWidth eWidth, UNumberSignDisplay eSign)
        : m_tFormatter(icu::number::NumberFormatter::withLocale(icu::Locale::getUS())
                           .unit(icu::CurrencyUnit(icu::StringPiece(pCode), m_eError))
                           .unitWidth(eWidth)
                           .sign(eSign)
                           .precision(icu::number::Precision::fixedFraction(2))
                           .roundingMode(UNUM_ROUND_HALFUP))
    {
    }

    void write(double fValue)
    {
        m_sText.remove();
        icu::UnicodeStringAppendable tTarget(m_sText);
        m_tFormatter.formatDouble(fValue, m_eError).appendTo(tTarget, m_eError);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    icu::number::LocalizedNumberFormatter m_tFormatter;
    icu::UnicodeString m_sText;
};

// The layouts written out by hand, the digits grouped by a locale.
class FmtCurrency
{
public:
    FmtCurrency(const wchar_t* pPositive, const wchar_t* pNegative) : m_pPositive(pPositive), m_pNegative(pNegative) {}

    void write(double fValue)
    {
        m_tBuffer.clear();
        const double fMagnitude = std::fabs(fValue);
        fmt::vformat_to(std::back_inserter(m_tBuffer), m_tLocale,
                        fmt::wstring_view(fValue < 0 ? m_pNegative : m_pPositive), fmt::make_wformat_args(fMagnitude));
    }

    std::wstring text() const { return std::wstring(m_tBuffer.data(), m_tBuffer.size()); }

private:
    const wchar_t* m_pPositive;
    const wchar_t* m_pNegative;
    std::locale m_tLocale{std::locale::classic(), new Commas};
    fmt::wmemory_buffer m_tBuffer;
};

void addDollars()
{
    Contest<double> tContest("dollars in parentheses", amounts(2));
    tContest.add("webformat", Agreement::kSameText, [] { return inParentheses(L"loc:en-US"); });
    tContest.add("ICU NumberFormat", Agreement::kSameText,
                 [] { return IcuCurrencyFormat(UNUM_CURRENCY_ACCOUNTING, "USD"); });
    tContest.add("ICU NumberFormatter", Agreement::kSameText,
                 [] { return IcuNumberFormatter("USD", UNUM_UNIT_WIDTH_NARROW, UNUM_SIGN_ACCOUNTING); });
    tContest.add("fmt grouped", Agreement::kSameText, [] { return FmtCurrency(L"${:.2Lf}", L"(${:.2Lf})"); });
}

// The locale data write a blank that does not break.
void addInternational()
{
    Contest<double> tContest("amounts with a code", amounts(2));
    tContest.add("webformat", Agreement::kSameText, [] { return withMinus(L"int:EUR"); });
    tContest.add("ICU NumberFormat", Agreement::kSameDigits,
                 [] { return IcuCurrencyFormat(UNUM_CURRENCY_ISO, "EUR"); });
    tContest.add("ICU NumberFormatter", Agreement::kSameDigits,
                 [] { return IcuNumberFormatter("EUR", UNUM_UNIT_WIDTH_ISO_CODE, UNUM_SIGN_AUTO); });
    tContest.add("fmt grouped", Agreement::kSameText, [] { return FmtCurrency(L"EUR {:.2Lf}", L"-EUR {:.2Lf}"); });
}

// One definition, and what the peers need for the same.
struct Amounts
{
    Handle<const WebCurrencyFormatDefinition, const WebCurrencyFormatDefinition> hDefinition;
    icu::UnicodeString sCode;
    int nDigits;
};

std::vector<Amounts> definitions()
{
    constexpr const char* kCodes[] = {"USD", "EUR", "GBP", "JPY", "CHF", "SEK", "INR", "BRL"};
    std::vector<Amounts> vDefinitions;
    for (std::size_t n = 0; n < ChangingOrder::knPlaces; ++n)
    {
        const std::string sCode = kCodes[n % 8];
        const auto eFormat = static_cast<WebNumberFormatDefinitionBase::NegativeFormat>(n / 8 % 5);
        const unsigned nDigits = 1 + static_cast<unsigned>(n / 40 % 6);
        vDefinitions.push_back({WEBFORMAT_NEW("bench/currency") WebCurrencyFormatDefinition(
                                    L"int:" + String(sCode.begin(), sCode.end()), eFormat, true, nDigits, nDigits),
                                icu::UnicodeString::fromUTF8(sCode), static_cast<int>(nDigits)});
    }
    return vDefinitions;
}

class WebformatMade
{
public:
    void write(const Amounts& t) { m_hFormatter = formatterOf(*t.hDefinition); }
    std::wstring text() const { return m_hFormatter->formatAsString(&kSample); }

private:
    WebValueFormatterHandle m_hFormatter;
};

class IcuMade
{
public:
    void write(const Amounts& t)
    {
        m_pFormat.reset(icu::NumberFormat::createInstance(icu::Locale::getUS(), UNUM_CURRENCY_ISO, m_eError));
        m_pFormat->setCurrency(icu::UnicodeString(t.sCode).getTerminatedBuffer(), m_eError);
        m_pFormat->setMinimumFractionDigits(t.nDigits);
        m_pFormat->setMaximumFractionDigits(t.nDigits);
    }

    std::wstring text() const
    {
        icu::UnicodeString sText;
        return toWide(m_pFormat->format(kSample, sText));
    }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    std::unique_ptr<icu::NumberFormat> m_pFormat;
};

// A formatter that has looked everything up; without the first value it is a mere note of what was asked for.
class IcuFirstUse
{
public:
    void write(const Amounts& t)
    {
        const auto tFormatter =
            icu::number::NumberFormatter::withLocale(icu::Locale::getUS())
                .unit(icu::CurrencyUnit(icu::UnicodeString(t.sCode).getTerminatedBuffer(), m_eError))
                .unitWidth(UNUM_UNIT_WIDTH_ISO_CODE)
                .precision(icu::number::Precision::fixedFraction(t.nDigits));
        m_sText = tFormatter.formatDouble(kSample, m_eError).toString(m_eError);
    }

    std::wstring text() const { return toWide(m_sText); }

private:
    UErrorCode m_eError = U_ZERO_ERROR;
    icu::UnicodeString m_sText;
};

void addConstruction()
{
    Contest<Amounts> tContest("make a currency formatter", definitions());
    tContest.add("webformat", Agreement::kSameText, [] { return WebformatMade(); });
    tContest.add("ICU NumberFormat", Agreement::kSameDigits, [] { return IcuMade(); });
    tContest.add("ICU NumberFormatter and first value", Agreement::kSameDigits, [] { return IcuFirstUse(); });
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    tov::addDollars();
    tov::addInternational();
    tov::addConstruction();
    return tov::runBenchmarks(nArguments, ppArguments);
}
