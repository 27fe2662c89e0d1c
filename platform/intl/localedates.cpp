#include <unicode/dtfmtsym.h>
#include <unicode/smpdtfmt.h>

#include <memory>

#include "intl/localedatepattern.h"
#include "intl/localerecord.h"
#include "intl/localetext.h"

namespace tov {

namespace {

using Symbols = icu::DateFormatSymbols;

constexpr int kMonths = 12;
constexpr int kDays = 7;
constexpr int kCurrentEra = 1;

LocaleRecord::Names months(const Symbols& tSymbols, Symbols::DtContextType eContext, Symbols::DtWidthType eWidth)
{
    int32_t nCount = 0;
    const icu::UnicodeString* const pNames = tSymbols.getMonths(nCount, eContext, eWidth);
    LocaleRecord::Names vNames;
    for (int n = 0; n < kMonths && n < nCount; ++n)
        vNames.push_back(wideText(pNames[n]));
    return vNames;
}

LocaleRecord::Names days(const Symbols& tSymbols, Symbols::DtContextType eContext, Symbols::DtWidthType eWidth)
{
    int32_t nCount = 0;
    const icu::UnicodeString* const pNames = tSymbols.getWeekdays(nCount, eContext, eWidth);
    LocaleRecord::Names vNames;
    // The data count from Sunday, at 1; the week here begins on Monday.
    for (int n = 0; n < kDays && nCount > kDays; ++n)
        vNames.push_back(wideText(pNames[(n + 1) % kDays + 1]));
    return vNames;
}

void readDayPeriodsAndEra(const Symbols& tSymbols, LocaleRecord& tRecord)
{
    int32_t nCount = 0;
    const icu::UnicodeString* const pPeriods = tSymbols.getAmPmStrings(nCount);
    if (nCount >= 2)
    {
        tRecord.tInfo[Locale::kAM] = withPlainBlanks(wideText(pPeriods[0]));
        tRecord.tInfo[Locale::kPM] = withPlainBlanks(wideText(pPeriods[1]));
    }
    const icu::UnicodeString* const pEras = tSymbols.getEras(nCount);
    if (nCount > kCurrentEra)
        tRecord.sEra = wideText(pEras[kCurrentEra]);
}

// The pattern behind a format of the locale data; deletes the format.
LocaleDatePattern patternOf(icu::DateFormat* pFormat)
{
    const std::unique_ptr<icu::DateFormat> pOwned(pFormat);
    icu::UnicodeString sPattern;
    if (const auto* const pSimple = dynamic_cast<const icu::SimpleDateFormat*>(pFormat))
        pSimple->toPattern(sPattern);
    return LocaleDatePattern(wideText(sPattern));
}

void readTimePatterns(const icu::Locale& tLocale, LocaleRecord& tRecord)
{
    const LocaleDatePattern tTime = patternOf(icu::DateFormat::createTimeInstance(icu::DateFormat::kMedium, tLocale));
    tRecord.tInfo[Locale::kTimeFormat] = tTime.text();
    tRecord.tInfo[Locale::kTimeInputFormat] = tTime.text();
    tRecord.tInfo[Locale::kTimeSeparator] = tTime.hourMinuteSeparator();
}

}  // namespace

void readDateNames(LocaleRecord& tRecord)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const Symbols tSymbols(icu::Locale(idForReading(tRecord.sId).c_str()), eStatus);
    if (U_FAILURE(eStatus))
        return;
    auto& tNames = tRecord.tNames;
    tNames[Locale::kNominitiveMonth] = months(tSymbols, Symbols::STANDALONE, Symbols::WIDE);
    tNames[Locale::kGenetiveMonth] = months(tSymbols, Symbols::FORMAT, Symbols::WIDE);
    tNames[Locale::kAbbreviatedMonth] = months(tSymbols, Symbols::FORMAT, Symbols::ABBREVIATED);
    tNames[Locale::kDay] = days(tSymbols, Symbols::FORMAT, Symbols::WIDE);
    tNames[Locale::kAbbreviatedDay] = days(tSymbols, Symbols::FORMAT, Symbols::ABBREVIATED);
    readDayPeriodsAndEra(tSymbols, tRecord);
}

void readDatePatterns(LocaleRecord& tRecord)
{
    const icu::Locale tLocale(idForReading(tRecord.sId).c_str());
    const LocaleDatePattern tShort = patternOf(icu::DateFormat::createDateInstance(icu::DateFormat::kShort, tLocale));
    tRecord.tInfo[Locale::kDateShortFormat] = tShort.text();
    tRecord.tInfo[Locale::kDateInputFormat] = tShort.inputText();

    const LocaleDatePattern tLong = patternOf(icu::DateFormat::createDateInstance(icu::DateFormat::kFull, tLocale));
    auto& tNames = tRecord.tNames;
    const bool bMonthsDiffer = tNames[Locale::kNominitiveMonth] != tNames[Locale::kGenetiveMonth];
    tRecord.tInfo[Locale::kDateLongFormat] =
        bMonthsDiffer ? tLong.textWithMonthsInsideDates(tRecord.sTag) : tLong.text();
    if (tLong.namesDaysByThemselves())
    {
        UErrorCode eStatus = U_ZERO_ERROR;
        const Symbols tSymbols(tLocale, eStatus);
        tNames[Locale::kDay] = days(tSymbols, Symbols::STANDALONE, Symbols::WIDE);
    }
    readTimePatterns(tLocale, tRecord);
}

}  // namespace tov
