#pragma once

#include <memory>
#include <string_view>
#include <vector>

#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

class DateTime;
struct LocaleRecord;

// How a language and region write numbers, dates and times: getInfo(kDecimalSeparator) of "de-DE" -> ",".
//
// A small handle on an immutable record, with a currency tag of the caller's own beside it. Locales come from
// `LocaleTagLookup`; a record is built once (about a millisecond) and lives as long as the process, so that every
// reference and pointer to a text of it stays good. Calendars are Gregorian and digits ASCII in every locale; nothing
// depends on the environment or on the process's default locale. Copies are cheap. Reading: any thread, without a lock.
class WEBFORMAT_EXPORT Locale
{
public:
    enum StringInfo
    {
        kDateShortFormat = 0,  // patterns of the date grammar: "M/d/yyyy"
        kDateLongFormat = 1,   // "dddd, MMMM d, yyyy"
        kTimeFormat = 2,       // "h:mm:ss tt"
        kDateInputFormat = 3,  // the short date with two-digit day and month: "MM/dd/yyyy"
        kTimeInputFormat = 4,  // as kTimeFormat
        kAM = 5,
        kPM = 6,
        kTimeSeparator = 7,  // ":"
        kDecimalSeparator,
        kThousandsSeparator,
        kMonetaryDecimalSeparator,
        kMonetaryThousandsSeparator,
        kNegativeNumberTemplate,  // "-#" everywhere
        kPercentFormat,           // the percent symbol: "%"
        kPercentSymbolLocation,   // "%#", "% #", "#%" or "# %"
        kPrimaryCurrencySymbol,   // the narrow symbol of the region's own currency: "$"; U+00A4 where it has none
        kStringInfoEnd_
    };

    enum NameKind
    {
        kNominitiveMonth = 0,  // a month by itself
        kGenetiveMonth = 1,    // a month inside a date
        kAbbreviatedMonth = 2,
        kDay = 3,
        kAbbreviatedDay = 4,
        kNameKindEnd_
    };

    enum StringMapping
    {
        kUpperCase = 0
    };

    // A power of ten that the locale has a short word for: {"thousand", "K"}. Names go from "thousand" (10^3) to
    // "hundred-trillion" (10^14).
    struct ScaleFactor
    {
        String sName;
        String sIndicator;
    };

    // en-US. Constant-initialised: static objects of other files may use it while they are built.
    static const Locale kUSA;

    // en-US
    constexpr Locale() noexcept = default;

    // The BCP 47 tag of the locale, which is also the name that date patterns may give it: "en-US".
    const String& tag() const;

    // An empty text for a value that is none of the enumeration.
    const String& getInfo(StringInfo eInfo) const;
    String getInfoAsString(StringInfo eInfo) const { return getInfo(eInfo); }

    // Months 0 to 11, days 0 (Monday) to 6 (Sunday); an empty text outside that range.
    const String& getName(NameKind eKind, int nIndex) const;

    // Appends the abbreviation of the current era: "AD". Every date is taken to lie in it.
    void getEra(const DateTime& tDateTime, StringBufferBaseTemplate<wchar_t>& tBuffer) const;

    // The text in the case asked for, by the rules of the language: "istanbul" in Turkish -> "İSTANBUL". Allocates.
    String mapString(StringMapping eMapping, std::wstring_view sText) const;

    // By increasing magnitude; empty where the locale abbreviates no power of ten.
    const std::vector<ScaleFactor>& getScaleFactors() const;

    // The currency that stands in for the one of a definition, of a row for instance. None unless set.
    bool hasOverridingCurrencyTag() const { return m_pCurrencyTag != nullptr; }
    const String& overridingCurrencyTag() const;
    // An empty tag takes the override away. Copies made before keep what they had.
    void setOverridingCurrencyTag(String sTag);

private:
    friend class CurrencyLookup;
    friend class LocaleTagLookup;

    constexpr explicit Locale(const LocaleRecord* pRecord) noexcept : m_pRecord(pRecord) {}
    const LocaleRecord& record() const;

    const LocaleRecord* m_pRecord = nullptr;  // null: en-US, found at first use
    std::shared_ptr<const String> m_pCurrencyTag;
};

}  // namespace tov
