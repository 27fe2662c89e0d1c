#include "intl/localerecord.h"

#include <unicode/locid.h>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

String tagOfId(const std::string& sId)
{
    UErrorCode eStatus = U_ZERO_ERROR;
    const std::string sTag = icu::Locale(sId.c_str()).toLanguageTag<std::string>(eStatus);
    return fromUtf8(sTag).value_or(String());
}

}  // namespace

std::string idForReading(const std::string& sId)
{
    return sId + "@calendar=gregorian;numbers=latn";
}

LocaleRecord buildLocaleRecord(const std::string& sId, MonthNames eMonths)
{
    LocaleRecord tRecord;
    tRecord.sId = sId;
    tRecord.sTag = tagOfId(sId);
    readNumberSymbols(tRecord);
    readScaleFactors(tRecord);
    readDateNames(tRecord);
    readDatePatterns(tRecord);
    if (eMonths == MonthNames::kInsideDates)
        tRecord.tNames[Locale::kNominitiveMonth] = tRecord.tNames[Locale::kGenetiveMonth];
    return tRecord;
}

}  // namespace tov
