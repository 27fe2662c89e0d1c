// The numbers of durations, which are mostly written without their number formatter, against that formatter.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "webbedrock/utf8.h"
#include "webformat/durationformatters.h"
#include "webformat/formatterconfig.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

constexpr auto kText = ValueFormatterTypes::kText;

// Writes one unit as a duration and as a number.
template <class T>
class UnitWriter
{
public:
    String asDuration(const T& tUnit) const
    {
        Duration<T> tDuration;
        tDuration.m_tSeconds = tUnit;
        StringBufferTemplate<wchar_t, 63> tBuffer;
        dynamic_cast<const DurationFormatter<T>&>(*m_hDuration).FormatValue(tBuffer, tDuration);
        return tBuffer.toString();
    }

    String asNumber(const T& tUnit) const { return m_hNumber->formatAsString(&tUnit); }

private:
    const WebValueFormatterHandle m_hDuration =
        DurationFormatter<T>::ParseCustomFormat(L"ss", Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage);
    const WebValueFormatterHandle m_hNumber =
        NumericFormatter<T>::ParseCustomFormat(L"#00", Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage);
};

// Whole numbers where the number of digits changes, halves, and what lies a little beside both.
std::vector<double> doublesBesideSteps()
{
    std::vector<double> vUnits = {-0.0, std::nan(""), std::numeric_limits<double>::infinity(), 1e300};
    for (double fPower = 1; fPower <= 1e17; fPower *= 10)
        for (const double fStep : {fPower, fPower - 0.5, fPower + 0.5, 6 * fPower - 1})
            for (double fDistance = 1e-17; fDistance < 1; fDistance *= 10)
                for (const double fUnit : {fStep, fStep - fDistance, fStep + fDistance, -fStep - fDistance,
                                           std::nextafter(fStep, 0.0), std::nextafter(fStep, 1e300)})
                    vUnits.push_back(fUnit);
    return vUnits;
}

std::vector<double> randomDoubles()
{
    std::mt19937_64 tRandom(5);
    std::uniform_real_distribution<double> tPower(-3, 12);
    std::vector<double> vUnits;
    for (int n = 0; n < 20000; ++n)
        vUnits.push_back(std::pow(10, tPower(tRandom)) * (n % 8 ? 1 : -1));
    return vUnits;
}

class DurationDigits : public testing::Test
{
protected:
    void TearDown() override { configure(FormatterConfig::knDefaultMaxSignificantDigits); }

    static void configure(int nDigits) { FormatterConfig::getInstance().setMaxSignificantDigitsForTestsOnly(nDigits); }
};

TEST_F(DurationDigits, AreThoseOfTheNumberFormatterForDoubles)
{
    const UnitWriter<double> tWriter;
    std::vector<double> vUnits = doublesBesideSteps();
    const std::vector<double> vRandom = randomDoubles();
    vUnits.insert(vUnits.end(), vRandom.begin(), vRandom.end());
    for (const int nDigits : {1, 2, 9, 14, 15, 16, 17, 40})
    {
        configure(nDigits);
        for (const double fUnit : vUnits)
            ASSERT_EQ(toUtf8(tWriter.asDuration(fUnit)), toUtf8(tWriter.asNumber(fUnit)))
                << fUnit << ", " << nDigits << " significant digits";
    }
}

template <class T>
void expectNumbersOf()
{
    const UnitWriter<T> tWriter;
    std::vector<T> vUnits = {0, std::numeric_limits<T>::min(), std::numeric_limits<T>::max()};
    for (std::uint64_t nPower = 1; nPower < std::numeric_limits<T>::max() / 10; nPower *= 10)
        for (const std::uint64_t nUnit : {nPower - 1, nPower, nPower + 1, 7 * nPower, 0 - nPower})
            vUnits.push_back(static_cast<T>(nUnit));
    for (const T nUnit : vUnits)
        EXPECT_EQ(toUtf8(tWriter.asDuration(nUnit)), toUtf8(tWriter.asNumber(nUnit)));
}

TEST_F(DurationDigits, AreThoseOfTheNumberFormatterForWholeNumbersWhateverIsConfigured)
{
    for (const int nDigits : {1, 15})
    {
        configure(nDigits);
        expectNumbersOf<int>();
        expectNumbersOf<unsigned int>();
        expectNumbersOf<long>();
        expectNumbersOf<unsigned long>();
    }
}

}  // namespace

}  // namespace tov
