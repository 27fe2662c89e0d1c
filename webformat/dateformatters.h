#pragma once

#include "corefacade/datetime.h"
#include "webformat/valueformatter.h"

namespace tov {

// How dates, times and timestamps are shown: one of the predefined formats, or a date pattern of its own, and perhaps
// the time zone in which values are displayed.
//
// Example: <tov:dataFormat xsi:type="tov:date" biFormat="dateLong"/> is the locale's long date.
class WEBFORMAT_EXPORT WebDateFormatDefinition : public WebValueFormatDefinition
{
public:
    enum Type : int
    {
        kShortDate = 0,
        kLongDate = 1,
        kInputDate = 2,
        kTime = 3,
        kTimeHourMin = 4,
        kInputTime = 5,
        kInputTimeHourMin = 6,
        kShortTimeStamp = 7,
        kLongTimeStamp = 8,
        kInputTimeStamp = 9,
        kODBCDate = 10,
        kODBCTime = 11,
        kODBCTimeStamp = 12,
        kTypedODBCDate = 13,
        kTypedODBCTime = 14,
        kTypedODBCTimeStamp = 15,
        kTimeHour = 16,
        kDateYearMonth = 17,
        kTimeWFractionalSeconds = 18,
        kShortTimeStampWFractionalSeconds = 19,
        kPredefinedDate = 20,  // the definition's own pattern
        kDateTypeEnd_ = 21
    };

    explicit WebDateFormatDefinition(Type eType);
    WebDateFormatDefinition(Type eType, String sDisplayTimeZone, String sPredefinedFormat);

    Type GetFormatType() const { return m_eType; }
    const String& getDisplayTimeZone() const { return m_sDisplayTimeZone; }
    const String& getPredefinedFormat() const { return m_sPredefinedFormat; }

    void readXml(const XmlElement& tElement) override;
    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
    String getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const override;
    // Compares the types only: two definitions with different patterns of their own compare equal.
    int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const override;
    // A definition with a pattern of its own is written with both biFormat="predefinedFormat" and the pattern; read
    // back, the pattern is not taken.
    void populateDataFormat(XmlElement& tElement) const override;
    void writeToStreamImpl(OutputStream& tStream) const override;
    String getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                   FormatPattern ePattern) const override;
    std::vector<FormatDefinitionSetting> settings() const override;

    // The type of an XML name, current or older (case counts), or `eDefault`.
    static Type GetTypeFromString(std::wstring_view sName, Type eDefault);

private:
    Type m_eType;
    String m_sDisplayTimeZone;
    String m_sPredefinedFormat;
};

// The base of the formatters of dates, times and timestamps, and their factory. Values are `DateTime`s.
//
// Example: the locale's long date
//     const WebValueFormatterHandle hFormatter = WebDateFormatter::CreateDefaultDateFormatter(
//         WebDateFormatDefinition::kLongDate, Locale::kUSA, KTWUILanguage::kDefaultLanguage,
//         ValueFormatterTypes::kText);
//     const DateTime tValue(2024, 3, 5);
//     hFormatter->formatAsString(&tValue);   // "Tuesday, March 5, 2024"
//
// Formatters are immutable; any number of threads may format through one. The factories keep no state but the cache of
// converted older formats (see `WebConvertWhistlerFormat`); any thread may call them.
class WEBFORMAT_EXPORT WebDateFormatter : public WebValueFormatter
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    ~WebDateFormatter() override;

    // Appends the value as text. Never a null value: `impl_formatToBuffer` has dealt with those.
    virtual void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const DateTime& tValue) const = 0;

    // Appends the milliseconds since 1970-01-01 00:00:00, the value read as UTC: 1969-12-31 23:59:59.5 -> "-500". The
    // part of a millisecond is cut off. A null value appends nothing.
    void formatExcelValueToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

    // The date pattern of a predefined format in the locale; empty for kDateYearMonth and from kPredefinedDate on.
    // `eOutput` makes no difference.
    //
    // Example (en-US): kShortTimeStamp -> "M/d/yyyy h:mm:ss tt"; kTimeHourMin -> "h:mm tt"; kTimeHour -> "h  tt" (two
    // blanks); kTimeWFractionalSeconds -> "h:mm:ss.######### tt"; kODBCDate -> "yyy-MM-dd" everywhere.
    static String GetCustomFormatForType(WebDateFormatDefinition::Type eType, const Locale& tLocale,
                                         OutputType eOutput);

    // A formatter for a date pattern (see `DatePattern`).
    static WebValueFormatterHandle ParseCustomFormat(const String& sPattern, const Locale& tLocale,
                                                     const KTWUILanguage& tLanguage, OutputType eOutput);

    // A formatter for a predefined format.
    static WebValueFormatterHandle CreateDefaultDateFormatter(WebDateFormatDefinition::Type eType,
                                                              const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                              OutputType eOutput);

    // A formatter for a date definition, a custom definition or one of the older notation; for any other and for none
    // the pattern "MM/dd/yyyy hh:mm:ss". A date definition with an empty pattern of its own raises the assertion
    // "!sCustomFormatString.empty()" and shows nothing.
    static WebValueFormatterHandle CreateFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                   const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                   OutputType eOutput);

    // The same for values that may be shown in another zone than the one they are stored in. Where the resolver knows
    // the offset of the stored values the result is a `TimeStampFormatter` for the zone `sDisplayTimeZone` (for
    // CreateFormatterTZ, where that is empty, the definition's); otherwise zones play no part, and the first "TZ" of a
    // pattern is dropped.
    static WebValueFormatterHandle ParseCustomFormatTZ(const String& sPattern, const Locale& tLocale,
                                                       const KTWUILanguage& tLanguage,
                                                       const TimeZoneResolver& tResolver,
                                                       const String& sDisplayTimeZone, OutputType eOutput);
    static WebValueFormatterHandle CreateDefaultDateFormatterTZ(WebDateFormatDefinition::Type eType,
                                                                const Locale& tLocale,
                                                                const TimeZoneResolver& tResolver,
                                                                const String& sDisplayTimeZone,
                                                                const KTWUILanguage& tLanguage, OutputType eOutput);
    static WebValueFormatterHandle CreateFormatterTZ(const WebValueFormatDefinitionHandle& hDefinition,
                                                     const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                     const String& sDisplayTimeZone, const KTWUILanguage& tLanguage,
                                                     OutputType eOutput);

protected:
    WebDateFormatter();
};

}  // namespace tov
