#pragma once

#include <array>
#include <string>
#include <vector>

#include "intl/locale.h"

namespace tov {

// Everything a locale says, read once from the locale data and never changed.
struct LocaleRecord
{
    using Names = std::vector<String>;

    std::string sId;  // the identifier in the locale data: "en_US"
    String sTag;
    std::array<String, Locale::kStringInfoEnd_> tInfo;
    std::array<Names, Locale::kNameKindEnd_> tNames;
    String sEra;
    std::vector<Locale::ScaleFactor> vScales;
};

// Which month names a record gives as its nominative ones.
enum class MonthNames
{
    kByThemselves,
    kInsideDates,
    kEnd_
};

// Reads the locale of a known identifier. What the data do not have stays empty.
LocaleRecord buildLocaleRecord(const std::string& sId, MonthNames eMonths);

// The parts of it. Each one fills its fields of `tRecord`, whose `sId` and `sTag` are set. The patterns ask for the
// names.
void readNumberSymbols(LocaleRecord& tRecord);
void readScaleFactors(LocaleRecord& tRecord);
void readDateNames(LocaleRecord& tRecord);
void readDatePatterns(LocaleRecord& tRecord);

// A known identifier with the keywords that every reading uses: Gregorian calendar, ASCII digits.
std::string idForReading(const std::string& sId);

}  // namespace tov
