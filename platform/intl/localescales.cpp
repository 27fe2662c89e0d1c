#include <unicode/numberformatter.h>
#include <unicode/resbund.h>

#include <algorithm>
#include <array>

#include "intl/localerecord.h"
#include "intl/localetext.h"

namespace tov {

namespace {

constexpr int kFirstExponent = 3;
constexpr int kBillion = 9;

// The names of 10^3 to 10^14.
constexpr std::array<const wchar_t*, 12> kNames = {
    L"thousand", L"ten-thousand", L"hundred-thousand", L"million",  L"ten-million",  L"hundred-million",
    L"billion",  L"ten-billion",  L"hundred-billion",  L"trillion", L"ten-trillion", L"hundred-trillion"};

// Where business writes another abbreviation than the locale data have.
struct Override
{
    const char* pId;
    int nExponent;
    const wchar_t* pIndicator;
};

constexpr Override kOverrides[] = {
    {"en_IN", 5, L"L"},
    {"en_IN", 7, L"Cr"},
    {"hi_IN", 5, L"L"},
    {"hi_IN", 7, L"Cr"},
};

const wchar_t* overrideFor(const std::string& sId, int nExponent)
{
    const auto* const pFound = std::find_if(std::begin(kOverrides), std::end(kOverrides),
                                            [&](const Override& tOverride)
                                            { return tOverride.pId == sId && tOverride.nExponent == nExponent; });
    return pFound == std::end(kOverrides) ? nullptr : pFound->pIndicator;
}

// What stands around the digit of "1K": "K". Empty where the power is not written as a single 1 ("10K", "1000").
String indicatorOf(const icu::number::LocalizedNumberFormatter& tFormatter, std::int64_t nPower)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const icu::number::FormattedNumber tNumber = tFormatter.formatInt(nPower, eStatus);
    icu::UnicodeString sText = tNumber.toString(eStatus);
    icu::ConstrainedFieldPosition tField;
    tField.constrainField(UFIELD_CATEGORY_NUMBER, UNUM_INTEGER_FIELD);
    if (!tNumber.nextPosition(tField, eStatus) || U_FAILURE(eStatus))
        return String();
    const int32_t nLength = tField.getLimit() - tField.getStart();
    if (nLength != 1 || sText.charAt(tField.getStart()) != u'1')
        return String();
    sText.remove(tField.getStart(), nLength);
    const String sRest = withoutBidiMarks(wideText(sText));
    return String(trimBlanks(sRest));
}

// Whether the locale has no abbreviation of its own for a billion, so that the root's "G" shows.
bool inheritsBillion(const std::string& sId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    icu::ResourceBundle tBundle(nullptr, icu::Locale(sId.c_str()), eStatus);
    const icu::ResourceBundle tEntry =
        tBundle.getWithFallback("NumberElements/latn/patternsShort/decimalFormat/1000000000", eStatus);
    const icu::Locale tFoundIn = tEntry.getLocale(ULOC_ACTUAL_LOCALE, eStatus);
    return U_SUCCESS(eStatus) && (*tFoundIn.getName() == '\0' || std::string(tFoundIn.getName()) == "root");
}

}  // namespace

void readScaleFactors(LocaleRecord& tRecord)
{
    const icu::Locale tLocale(idForReading(tRecord.sId).c_str());
    const auto tFormatter =
        icu::number::NumberFormatter::withLocale(tLocale).notation(icu::number::Notation::compactShort());
    std::int64_t nPower = 1'000;
    int nExponent = kFirstExponent;
    for (const wchar_t* const pName : kNames)
    {
        const wchar_t* const pOverride = overrideFor(tRecord.sId, nExponent);
        String sIndicator = pOverride ? String(pOverride) : indicatorOf(tFormatter, nPower);
        // Readers of reports know a billion as "B"; "G" is kept only where the language itself says so.
        if (nExponent == kBillion && sIndicator == L"G" && inheritsBillion(tRecord.sId))
            sIndicator = L"B";
        if (!sIndicator.empty())
            tRecord.vScales.push_back({pName, std::move(sIndicator)});
        nPower *= 10;
        ++nExponent;
    }
}

}  // namespace tov
