#pragma once

#include "corefacade/timezone.h"
#include "webformat/dateformatterimpl.h"
#include "webformat/timezoneresolver.h"

namespace tov {

// Shows timestamps that are stored with one offset in another zone.
//
// Example: "yyyy-MM-dd HH:mm TZ", data offset 0, display zone America/New_York, language en-us:
//     2024-07-01 12:00:00 -> "2024-07-01 08:00 ET"
//
// The offset, the zone and the zone's text are fixed when the formatter is built. Without a valid data offset, or with
// a display zone that is not known, values are shown as they are stored, without a zone. The zone's short name in the
// resolver's language stands behind the whole text, wherever "TZ" stood in the pattern. The message "zoneShortName/" +
// identifier of the resolver's message table (the library's own where it has none) may replace it.
//
// Immutable; any number of threads may format through one object. A value allocates only if the buffer has to grow.
class WEBFORMAT_EXPORT TimeStampFormatter : public WebDateFormatter
{
public:
    // `sDisplayTimeZone` empty: the zone of the pattern's "[TZ:...]" bracket; either way it goes through the resolver.
    TimeStampFormatter(const Locale& tLocale, const KTWUILanguage& tLanguage, const String& sPattern,
                       const TimeZoneResolver& tResolver, const String& sDisplayTimeZone, OutputType eOutput);
    ~TimeStampFormatter() override;

    OutputType outputType() const override;
    String GetCustomFormatString() const override;
    // The civil time that a value is shown with: in the display zone where it is converted, as it is stored elsewhere.
    DateTime displayedTime(const DateTime& tValue) const;
    void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const DateTime& tValue) const override;
    // The null text is the inner formatter's.
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

private:
    void findDisplayZone(const String& sPattern, const TimeZoneResolver& tResolver, const String& sDisplayTimeZone,
                         bool bZoneAskedFor);
    String zoneText(const TimeZoneResolver& tResolver) const;

    Handle<const StandardDateFormatter, const StandardDateFormatter> m_hFormatter;
    int m_nDataOffset;
    bool m_bConvert = false;
    bool m_bShowTimeZone = false;
    String m_sTimeZoneText;  // encoded for the output
    TimeZone m_tDisplayTimeZone = TimeZone::kUnknown;
};

}  // namespace tov
