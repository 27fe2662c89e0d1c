#pragma once

#include <cstdint>

#include "corefacade/sqldatatype.h"
#include "intl/ktwuilanguage.h"
#include "intl/locale.h"
#include "webbedrock/export.h"
#include "webbedrock/handle.h"
#include "webbedrock/outputstream.h"
#include "webbedrock/refcounted.h"
#include "webbedrock/string.h"
#include "webbedrock/stringbuffer.h"
#include "webformat/outputtypes.h"
#include "webformat/timezoneresolver.h"
#include "webformat/valueformatdefinition.h"

namespace tov {

class WebValueFormatter;

using WebValueFormatterHandle = Handle<const WebValueFormatter, const WebValueFormatter>;

// The base of every formatter, and the factory of all of them.
//
// Example: two decimals, grouped
//     const WebValueFormatterHandle hFormatter = WebValueFormatter::GetCustomFormatter(
//         SQLDataType(SQLDataType::kDouble), L"#,##0.00", Locale::kUSA, ValueFormatterTypes::kText,
//         KTWUILanguage::kDefaultLanguage);
//     const double fValue = 1234.5;
//     hFormatter->formatAsString(&fValue);   // "1,234.50"
//
// A formatter is immutable and may be used by any number of threads at once. Values are handed over as a pointer to a
// value of the formatter's storage type (`valueStorageType()`): double, int, unsigned, long, unsigned long,
// CorvidNumber, DateTime, a null-terminated wide string (the pointer itself), RawValue. A null pointer is the null
// value and is always allowed.
class WEBFORMAT_EXPORT WebValueFormatter : public RefCountedBaseTemplate<MemAllocNewdel>, public ValueFormatterTypes
{
public:
    ~WebValueFormatter() override;

    virtual OutputType outputType() const = 0;
    // Formats the value and hands the text to the stream in one write. Up to 511 characters cost no heap allocation.
    virtual void FormatToStream(WebOutputStream& tStream, const void* pValue) const;
    // The pattern that the formatter was built from.
    virtual String GetCustomFormatString() const = 0;
    // Whether the pattern may serve as the format of a spreadsheet cell.
    virtual bool IsValidExcelPattern() const;
    // Appends the value as a spreadsheet cell holds it: numbers bare and unscaled, whatever the display pattern.
    virtual void formatExcelValueToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const;
    // Replaces the Excel format mask where the formatter has one of its own for each row; true if it did.
    virtual bool checkAndReplaceFormatMaskForExcel(String& sMask) const;
    // Appends the formatted value.
    virtual void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const = 0;

    SQLDataType::StorageType valueStorageType() const { return m_eValueStorageType; }

    // Append the formatted value to `tBuffer`; they allocate only if the buffer has to grow.
    void formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
    {
        impl_formatToBuffer(tBuffer, pValue);
    }
    void FormatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
    {
        impl_formatToBuffer(tBuffer, pValue);
    }
    // The same for a value whose storage the caller states: a storage other than `valueStorageType()` raises the
    // assertion "eStorage == m_eValueStorageType" and appends nothing. A null value pointer is formatted as the null
    // value.
    void checkedFormatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue,
                               SQLDataType::StorageType eStorage) const;

    // The formatted value as a new string; up to 256 characters cost no allocation but the string's own.
    String formatAsString(const void* pValue) const;

    // A switch for hosts that defuse spreadsheet formulas; false at start. The library itself does not read it.
    static void setEscapeExcelFormulas(bool bEscape);
    static bool getEscapeExcelFormulas();

    // Factories. Each returns a null handle when no formatter applies; an impossible combination of type and storage
    // also raises the assertion "false" (source webformat/valueformatter). Any thread.

    // A formatter for values of `tType` shown as `hDefinition` says (null: the type's default). `tParameters` adds
    // fraction digits and a scale; the caller's definition is never changed. 64-bit integer storage is not served here.
    static WebValueFormatterHandle getFormatter(const SQLDataType& tType,
                                                const WebValueFormatDefinitionHandle& hDefinition,
                                                const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                OutputType eOutput,
                                                const WebValueFormatDefinition::FormatParameters& tParameters,
                                                const KTWUILanguage& tLanguage, const String& sDisplayTimeZone);
    static WebValueFormatterHandle GetFormatter(const SQLDataType& tType,
                                                const WebValueFormatDefinitionHandle& hDefinition,
                                                const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                OutputType eOutput, unsigned nMinDigit, unsigned nMaxDigit,
                                                const KTWUILanguage& tLanguage, const String& sDisplayTimeZone);

    // The type's default formatter.
    static WebValueFormatterHandle GetDefaultFormatter(const SQLDataType& tType, const Locale& tLocale,
                                                       OutputType eOutput, unsigned nMinDigit, unsigned nMaxDigit,
                                                       const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle GetDefaultFormatter(const SQLDataType& tType, const Locale& tLocale,
                                                       OutputType eOutput,
                                                       const WebValueFormatDefinition::FormatParameters& tParameters,
                                                       const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle GetDefaultFormatterTZ(const SQLDataType& tType, const Locale& tLocale,
                                                         const KTWUILanguage& tLanguage,
                                                         const TimeZoneResolver& tResolver,
                                                         const String& sDisplayTimeZone, OutputType eOutput);

    // A formatter for values that a user has typed in or is about to edit.
    static WebValueFormatterHandle GetInputFormatter(const SQLDataType& tType, const Locale& tLocale,
                                                     OutputType eOutput, unsigned nMinDigit, unsigned nMaxDigit,
                                                     const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle GetInputFormatterTZ(const SQLDataType& tType, const Locale& tLocale,
                                                       const TimeZoneResolver& tResolver,
                                                       const String& sDisplayTimeZone, OutputType eOutput,
                                                       const KTWUILanguage& tLanguage);

    // A formatter for a pattern of the type's pattern language.
    static WebValueFormatterHandle GetCustomFormatterTZ(const SQLDataType& tType, const String& sPattern,
                                                        const Locale& tLocale, const TimeZoneResolver& tResolver,
                                                        OutputType eOutput, const KTWUILanguage& tLanguage,
                                                        const String& sDisplayTimeZone);
    static WebValueFormatterHandle GetCustomFormatter(const SQLDataType& tType, const String& sPattern,
                                                      const Locale& tLocale, OutputType eOutput,
                                                      const KTWUILanguage& tLanguage);

    // Fixed machine-readable patterns for exports: integers "#0", reals "0.################", dates "yyyy-MM-dd".
    static WebValueFormatterHandle GetCSVFormatter(const SQLDataType& tType, const Locale& tLocale, OutputType eOutput);

    // The shared, locale-independent formatter of typed SQL literals, and that of XML values. A type built with another
    // storage than its own gets a formatter of its own, built for that storage.
    static WebValueFormatterHandle GetTypedLiteralFormatter(const SQLDataType& tType, OutputType eOutput);
    static WebValueFormatterHandle getXmlValueFormatter(const SQLDataType& tType, OutputType eOutput);

    // Always a null handle.
    static WebValueFormatDefinitionHandle GetDefaultFormatDefinition(const SQLDataType& tType);

    // The section of a pattern that holds variants for several outputs, and in `eFound` the output whose section it is.
    //
    // Example: "abc[html]b" for kHTML -> "b", found kHTML; for kXLSX -> "b", found kHTML; for kSQL -> "abc", found
    // kText.
    //
    // Tags are [text] [html] [xml] [java] [pdf] in any case; the text before the first tag is a [text] section; an
    // apostrophe makes the next character ordinary. kPDF and kXLSX take a last [html] section. Where no section
    // matches, the [text] sections are the answer.
    static String GetOutputFormatString(const String& sFormat, OutputType eWanted, OutputType& eFound);

    // A copy of `sLiteral` encoded for `eTo`, unchanged where `eFrom` equals `eTo` or `eTo` is no output type.
    //
    // Example: ConvertLiteral("a<b", kText, kHTML) -> "a&lt;b"; ConvertLiteral("<b>", kHTML, kHTML) -> "<b>".
    static String ConvertLiteral(const String& sLiteral, OutputType eFrom, OutputType eTo);

protected:
    explicit WebValueFormatter(SQLDataType::StorageType eValueStorageType);

private:
    const SQLDataType::StorageType m_eValueStorageType;
};

}  // namespace tov
