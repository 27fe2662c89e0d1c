#pragma once

#include "webformat/valueformatter.h"

namespace tov
{

// How dates, times and timestamps are shown: one of the predefined formats, or a date pattern of its own, and perhaps
// the time zone in which values are displayed.
//
// Example: <tov:dataFormat xsi:type="tov:date" biFormat="dateLong"/> is the locale's long date.
class WEBFORMAT_EXPORT WebDateFormatDefinition : public WebValueFormatDefinition
{
public:
    enum Type
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

// The factory of date, time and timestamp formatters. A null handle means that no formatter applies; while the family
// has none, every answer is a null handle.
class WEBFORMAT_EXPORT WebDateFormatter
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    static WebValueFormatterHandle CreateFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                   const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                   OutputType eOutput);
    static WebValueFormatterHandle CreateFormatterTZ(const WebValueFormatDefinitionHandle& hDefinition,
                                                     const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                     const String& sDisplayTimeZone, const KTWUILanguage& tLanguage,
                                                     OutputType eOutput);
    static WebValueFormatterHandle CreateDefaultDateFormatter(WebDateFormatDefinition::Type eType,
                                                              const Locale& tLocale, const KTWUILanguage& tLanguage,
                                                              OutputType eOutput);
    static WebValueFormatterHandle CreateDefaultDateFormatterTZ(WebDateFormatDefinition::Type eType,
                                                                const Locale& tLocale,
                                                                const TimeZoneResolver& tResolver,
                                                                const String& sDisplayTimeZone,
                                                                const KTWUILanguage& tLanguage, OutputType eOutput);
    static WebValueFormatterHandle ParseCustomFormat(const String& sPattern, const Locale& tLocale,
                                                     const KTWUILanguage& tLanguage, OutputType eOutput);
    static WebValueFormatterHandle ParseCustomFormatTZ(const String& sPattern, const Locale& tLocale,
                                                       const KTWUILanguage& tLanguage,
                                                       const TimeZoneResolver& tResolver,
                                                       const String& sDisplayTimeZone, OutputType eOutput);
};

}  // namespace tov
