// Formatters built element by element, as hosts may do without a pattern.

#include <gtest/gtest.h>

#include "intl/localetaglookup.h"
#include "support/collected.h"
#include "webbedrock/utf8.h"
#include "webformat/dateformatterimpl.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using enum ValueFormatterTypes::OutputType;

constexpr DateTime kMorning(2024, 3, 5, 7, 8, 9);  // a Tuesday

Locale localeOf(const wchar_t* pTag)
{
    return LocaleTagLookup::lookupOrDefault(pTag);
}

TEST(StandardDateFormatterBuilders, IsBuiltElementByElement)
{
    StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"remembered", kText);
    EXPECT_EQ(tFormatter.formatAsString(&kMorning), L"");
    tFormatter.AddAlphaDOW(true, 3);
    tFormatter.AddSeparatorChar(L',');
    tFormatter.AddSeparatorChar(L' ');
    tFormatter.AddYear(4);
    tFormatter.AddSeparator(L"-");
    tFormatter.AddMonth(2);
    tFormatter.AddSeparatorChar(L'-');
    tFormatter.AddDay(0);
    tFormatter.AddAlphaMonth(true, 4);
    tFormatter.AddSeparator(L" ");
    tFormatter.AddHour(false, 0);
    tFormatter.AddHour(true, 2);
    tFormatter.AddMinute(3);
    tFormatter.addSecond(1);
    tFormatter.AddAMPM(false, true);
    tFormatter.AddEra();
    tFormatter.SetLocale(localeOf(L"de-DE"));
    tFormatter.AddAlphaDOW(false, 4);
    tFormatter.ResetLocale();
    tFormatter.AddAlphaDOW(false, 4);
    tFormatter.addSecondWithDecimal(L"0.0");
    tFormatter.addCustomFormat(L"'yy", Locale::kUSA, kText);
    EXPECT_EQ(toUtf8(tFormatter.formatAsString(&kMorning)), "TUE, 2024-03-5MARCH 7070089AMADDienstagTuesday9.0'24");
    EXPECT_EQ(tFormatter.GetCustomFormatString(), L"remembered");
    EXPECT_EQ(tFormatter.pattern().elements().size(), 22u);
}

TEST(StandardDateFormatterBuilders, WritesNumbersWithAsManyDigitsAsAskedFor)
{
    const auto yearWith = [](unsigned nPad, bool bCaps)
    {
        StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", kText);
        StandardDateFormatter::DateFormat tYear;
        tYear.eType = DatePattern::kYear;
        tYear.nPad = nPad;
        tYear.bCaps = bCaps;
        tFormatter.AddFormat(tYear);
        return tFormatter.formatAsString(&kMorning);
    };
    EXPECT_EQ(yearWith(0, false), L"2024");
    EXPECT_EQ(yearWith(1, false), L"4");
    EXPECT_EQ(yearWith(2, false), L"24");
    EXPECT_EQ(yearWith(3, false), L"024");
    EXPECT_EQ(yearWith(6, false), L"002024");
    EXPECT_EQ(yearWith(31, false), String(27, L'0') + L"2024");
    EXPECT_EQ(yearWith(4, true), L"24");
}

TEST(StandardDateFormatterBuilders, AssertsWhereANumberWouldNotFitItsBuffer)
{
    StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", kText);
    tFormatter.AddDay(31);
    tFormatter.AddSeparator(L"|");
    tFormatter.AddMonth(32);
    tFormatter.AddSeparator(L"|");
    const CollectedAssertions tAssertions;
    EXPECT_EQ(tFormatter.formatAsString(&kMorning), String(30, L'0') + L"5||");
    ASSERT_EQ(tAssertions.count(), 1u);
    EXPECT_EQ(tAssertions.all()[0].sExpression, "nPad < tov::BasicStringUtils::knNumberAsCharBase10BufSize");
    EXPECT_EQ(tAssertions.all()[0].sSource, "webformat/dateformatterimpl");
    // Names are no numbers.
    EXPECT_EQ(
        WebDateFormatter::ParseCustomFormat(String(40, L'M'), Locale::kUSA, KTWUILanguage::kDefaultLanguage, kText)
            ->formatAsString(&kMorning),
        L"March");
    EXPECT_EQ(tAssertions.count(), 1u);
}

TEST(StandardDateFormatterBuilders, ThrowsWhereTheSecondsHaveNoFormatter)
{
    StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", kText);
    StandardDateFormatter::DateFormat tSeconds;
    tSeconds.eType = DatePattern::kSecondWDecimal;
    tFormatter.AddSeparator(L"lost");
    tFormatter.AddFormat(tSeconds);
    StringBufferTemplate<wchar_t, 64> tBuffer;
    tBuffer.append(L"kept");
    EXPECT_THROW(tFormatter.FormatValue(tBuffer, kMorning), InvalidHandleException);
    EXPECT_EQ(tBuffer.view(), L"kept");
}

TEST(StandardDateFormatterBuilders, TakesAFormatterOfTheCallersForTheSeconds)
{
    StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", kText);
    StandardDateFormatter::DateFormat tSeconds;
    tSeconds.eType = DatePattern::kSecondWDecimal;
    tSeconds.hSecondFormatter = NumericFormatter<double>::ParseCustomFormat(L"(0.0 [red]s)", Locale::kUSA, kText,
                                                                            KTWUILanguage::kDefaultLanguage);
    tFormatter.AddFormat(tSeconds);
    tFormatter.AddSeparator(String(100, L'-'));
    const DateTime tValue(2024, 3, 5, 7, 8, 9, 250'000'000);
    EXPECT_EQ(tFormatter.formatAsString(&tValue), L"(9.3 s)" + String(100, L'-'));
}

TEST(StandardDateFormatterBuilders, HandsSecondsToNoFormatterOfAnotherType)
{
    StandardDateFormatter tFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", kText);
    StandardDateFormatter::DateFormat tSeconds;
    tSeconds.eType = DatePattern::kSecondWDecimal;
    tSeconds.hSecondFormatter =
        NumericFormatter<int>::ParseCustomFormat(L"0", Locale::kUSA, kText, KTWUILanguage::kDefaultLanguage);
    tFormatter.AddFormat(tSeconds);
    tFormatter.AddSeparator(L".");
    const CollectedAssertions tAssertions;
    EXPECT_EQ(tFormatter.formatAsString(&kMorning), L".");
    EXPECT_EQ(tAssertions.count(), 1u);
}

// A host that derives from the formatter is asked for every value.
TEST(StandardDateFormatterBuilders, HandsEveryValueToTheVirtualOperation)
{
    class Shouting final : public StandardDateFormatter
    {
    public:
        Shouting() : StandardDateFormatter(Locale::kUSA, KTWUILanguage::kDefaultLanguage, L"", kText) {}
        void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const DateTime& tValue) const override
        {
            StandardDateFormatter::FormatValue(tBuffer, tValue);
            tBuffer.append(L'!');
        }
    };
    Shouting tFormatter;
    tFormatter.AddDay(0);
    EXPECT_EQ(tFormatter.formatAsString(&kMorning), L"5!");
}

}  // namespace

}  // namespace tov
