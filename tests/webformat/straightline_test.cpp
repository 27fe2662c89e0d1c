// Numbers of common shapes are written by a straight line of their own. The walk over the steps is its oracle: a buffer
// without room makes the formatter take it.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "intl/localetaglookup.h"
#include "project/webformat/numericprogram.h"
#include "webformat/numericformatter.h"

namespace tov {
namespace {

using enum ValueFormatterTypes::OutputType;

struct Shape
{
    int nLine;
    const wchar_t* pPattern;
    bool bStraight;
    ValueFormatterTypes::OutputType eOutput = kText;
    const wchar_t* pLocale = L"en-US";
};

constexpr Shape kShapes[] = {
    {__LINE__, L"#,##0.00", true},
    {__LINE__, L"0.00", true},
    {__LINE__, L"#0", true},
    {__LINE__, L"#,##0", true},
    {__LINE__, L"#", true},  // zero is nothing
    {__LINE__, L"#.##", true},
    {__LINE__, L"#,###.0##", true},
    {__LINE__, L"0.######", true},
    {__LINE__, L"#,##0.000000000", true},
    {__LINE__, L"0.#########", true},
    {__LINE__, L"$#,##0.00;[red]($#,##0.00)", true},
    {__LINE__, L"$#,##0.00;[red]($#,##0.00)", true, kHTML},
    {__LINE__, L"\"a rather long text in front \"0.0\" and one behind it\"", true},
    {__LINE__, L"#,##0.00", true, kText, L"de-DE"},
    {__LINE__, L"#,##0.00", true, kText, L"fr-FR"},
    {__LINE__, L"#,##0.00", true, kText, L"de-CH"},
    {__LINE__, L"#,##0.0;(0.000)", true},
    {__LINE__, L"#,##0.0;(0.000);\"none\"", true},
    {__LINE__, L"0.0%", true},
    {__LINE__, L"#,##0.00", true, kHTML, L"de-CH"},
    {__LINE__, L"00.00", false},         // zeros in front
    {__LINE__, L"0.0#0", false},         // an optional digit before a required one
    {__LINE__, L"0.", false},            // a point that never shows
    {__LINE__, L"0.0000000000", false},  // too many places
    {__LINE__, L"0.0%%", false},         // multiplied
    {__LINE__, L"0.0,", false},
    {__LINE__, L"0.0;[duration(sec)]hh:mm", false},
    {__LINE__, L"0-00", false},
    {__LINE__, L"#0[scale-name:auto]", false},
    {__LINE__, L"0.00[%100]", false},
    {__LINE__, L"\"only text\"", false},
};

template <class T>
WebValueFormatterHandle formatterOf(const Shape& tShape)
{
    return NumericFormatter<T>::ParseCustomFormat(tShape.pPattern, LocaleTagLookup::lookupOrDefault(tShape.pLocale),
                                                  tShape.eOutput, KTWUILanguage::kDefaultLanguage);
}

template <class T>
void expectSameTexts(const std::vector<T>& vValues)
{
    for (const Shape& tShape : kShapes)
    {
        const WebValueFormatterHandle hFormatter = formatterOf<T>(tShape);
        StringBufferTemplate<wchar_t, 1024> tStraight;
        for (const T& tValue : vValues)
        {
            StringBufferTemplate<wchar_t, 1> tWalked;
            hFormatter->formatToBuffer(tWalked, &tValue);
            tStraight.clear();
            tStraight.append(L'|');
            hFormatter->formatToBuffer(tStraight, &tValue);
            ASSERT_EQ(L"|" + tWalked.toString(), tStraight.view())
                << "row at line " << tShape.nLine << ", value " << std::hexfloat << static_cast<double>(tValue);
        }
    }
}

// With every value its neighbours and the opposite sign.
class Doubles
{
public:
    void add(double fValue)
    {
        for (const double f : {fValue, std::nextafter(fValue, 0.0), std::nextafter(fValue, HUGE_VAL)})
        {
            m_vValues.push_back(f);
            m_vValues.push_back(-f);
        }
    }

    const std::vector<double>& values() const { return m_vValues; }

private:
    std::vector<double> m_vValues;
};

TEST(StraightLine, ServesTheCommonShapesAndNoOther)
{
    for (const Shape& tShape : kShapes)
    {
        const Locale tLocale = LocaleTagLookup::lookupOrDefault(tShape.pLocale);
        const NumericProgram tProgram(
            NumericPattern::parse(tShape.pPattern, tLocale, tShape.eOutput, KTWUILanguage::kDefaultLanguage), tLocale,
            tShape.eOutput, L"-");
        EXPECT_EQ(tProgram.bStraight, tShape.bStraight) << "row at line " << tShape.nLine;
    }
}

TEST(StraightLine, WritesWhatTheWalkWritesForHardDoubles)
{
    Doubles tDoubles;
    for (int nPower = -25; nPower <= 25; ++nPower)
        for (const double f :
             {1.0, 2.0, 5.0, 9.0, 9.995, 9.9999999995, 1.5, 2.5, 1.005, 0.285, 4.35, 1.0000000000000002})
            tDoubles.add(f * std::pow(10.0, nPower));
    for (int nPower = -1074; nPower < 1024; nPower += 7)
        tDoubles.add(std::ldexp(1.0, nPower));
    for (const double f :
         {0.0, std::ldexp(1.0, 53), 999999999.995, 1e9, 999.995, 999999.5, 1e14, 1e12, 99999999999999.5, 1e18, 1e19,
          std::numeric_limits<double>::denorm_min(), std::numeric_limits<double>::min(),
          std::numeric_limits<double>::max(), std::numeric_limits<double>::infinity()})
        tDoubles.add(f);
    expectSameTexts(tDoubles.values());
}

TEST(StraightLine, WritesWhatTheWalkWritesForRandomDoubles)
{
    std::mt19937_64 tRandom(20241105);
    std::uniform_real_distribution<double> tPower(-12, 20);
    std::vector<double> vValues;
    for (int n = 0; n < 8000; ++n)
    {
        const double fAmount = std::floor(std::pow(10.0, tPower(tRandom))) / std::pow(10.0, tRandom() % 5);
        vValues.push_back(n % 8 == 0 ? -fAmount : fAmount);
        vValues.push_back((fAmount + 0.5) / 100);  // ties
        vValues.push_back(std::pow(10.0, tPower(tRandom)));
    }
    expectSameTexts(vValues);
}

TEST(StraightLine, WritesWhatTheWalkWritesForWholeNumbers)
{
    std::mt19937_64 tRandom(20241106);
    std::vector<long> vLong;
    std::vector<unsigned long> vUnsigned;
    std::vector<int> vInt;
    for (unsigned n = 0; n < 8000; ++n)
    {
        const std::uint64_t nValue = tRandom() >> n % 64;
        vUnsigned.push_back(nValue);
        vLong.push_back(static_cast<long>(nValue));
        vInt.push_back(static_cast<int>(nValue));
    }
    std::uint64_t nPower = 1;
    for (int n = 0; n < 20; ++n, nPower *= 10)
        for (const std::uint64_t nValue : {nPower - 1, nPower, nPower + 1})
        {
            vUnsigned.push_back(nValue);
            vLong.push_back(-static_cast<long>(nValue));
        }
    vUnsigned.push_back(std::numeric_limits<unsigned long>::max());
    vLong.push_back(std::numeric_limits<long>::min());
    vLong.push_back(std::numeric_limits<long>::max());
    vInt.push_back(std::numeric_limits<int>::min());
    expectSameTexts(vUnsigned);
    expectSameTexts(vLong);
    expectSameTexts(vInt);
}

}  // namespace
}  // namespace tov
