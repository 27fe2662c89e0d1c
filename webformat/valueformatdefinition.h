#pragma once

#include <cstdint>
#include <map>
#include <variant>
#include <vector>

#include "webbedrock/export.h"
#include "webbedrock/handle.h"
#include "webbedrock/outputstream.h"
#include "webbedrock/refcounted.h"
#include "webbedrock/string.h"
#include "webformat/formatparameters.h"

namespace tov {

class KTWUILanguage;
class Locale;
class WebValueFormatDefinition;
class XmlElement;

using WebValueFormatDefinitionHandle = Handle<const WebValueFormatDefinition, const WebValueFormatDefinition>;

// One setting of a definition under its XML name; the value is a flag, a number or a text.
struct FormatDefinitionSetting
{
    String sName;
    std::variant<bool, std::int64_t, String> tValue;
};

// The stored, declarative description of how a column's values are shown: "thousands separators and two decimals",
// "the pattern yyyy-MM-dd", "a short date in this zone".
//
// Definitions are read from and written to the data-format element of a report, compared, written to a binary stream,
// and turned into Excel number-format patterns. A definition changes only while it is read (`readXml`) and
// right after `clone()`; once shared it is immutable and any number of threads may use it.
//
// Example: <tov:dataFormat xsi:type="tov:number" commas="true" minDigits="2" maxDigits="2" negativeType="paren"/> read
// by `DynamicReadXML` is a WebNumberFormatDefinition whose Excel pattern is "#,##0.00_);(#,##0.00)".
class WEBFORMAT_EXPORT WebValueFormatDefinition : public RefCountedBaseTemplate<MemAllocNewdel>
{
public:
    // The values are fixed; definitions of different types are ordered by them.
    enum DefType : int
    {
        kNone = 0,
        kCustomFormat = 1,
        kTextFormat = 2,
        kNumberFormat = 3,
        kDateFormat = 4,
        kWhistlerFormat = 5,
        kCurrencyFormat = 6,
        kPercentFormat = 7,
        kDatetimeFormat = 8,
        kTimeFormat = 9,
        kConditionalCurrencyFormat = 10,
        kLastDef = 11
    };

    enum FormatPattern : int
    {
        kFormatPatternNormal = 0,  // as a style of an HTML page for Excel carries it
        kFormatPatternExcel = 1    // as the Excel export writes it into a workbook
    };

    using FormatParameters = NumericFormatParameters;

    static const wchar_t* const ksMsoNumberFormat;  // "mso-number-format:'", the start of a style
    static const wchar_t* const ksQuotedPercent;    // "&quot;%&quot;", a percent sign quoted inside a style

    ~WebValueFormatDefinition() override;

    // Fills the object from a data-format element; attributes that are absent or unreadable take their defaults.
    virtual void readXml(const XmlElement& tElement) = 0;
    virtual DefType GetDefType() const = 0;
    // A deep copy in a new object.
    virtual Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const = 0;
    // The CSS declaration that carries the Excel number format in an HTML page for Excel; empty where there is none.
    virtual String getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const = 0;
    // Sets `sFormula` to the expression of the column that holds each row's currency tag, where the definition has one;
    // leaves it alone otherwise.
    virtual void populateCurrencyTagColumnFormulaIfApplies(String& sFormula) const;
    // Compares with a definition of the same DefType: negative, 0 or positive.
    virtual int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const = 0;
    // Writes the settings as attributes and child elements of a data-format element.
    virtual void populateDataFormat(XmlElement& tElement) const = 0;
    // Writes the settings in their binary form.
    virtual void writeToStreamImpl(OutputStream& tStream) const = 0;
    // The Excel number-format pattern; empty where there is none.
    virtual String getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                           FormatPattern ePattern) const = 0;
    // The XML type name: "number", "custom", ...
    virtual String streamableDefinitionNameImpl() const;
    // Every setting under its XML name, those that are never written back included, in the order of the fields.
    virtual std::vector<FormatDefinitionSetting> settings() const = 0;

    // Reads the definition that a data-format element describes. A missing, unknown or "none" `xsi:type` gives a null
    // handle and is no error.
    static Handle<WebValueFormatDefinition, WebValueFormatDefinition> DynamicReadXML(const XmlElement& tElement);

    // Writes `hDefinition` into the data-format child of `tParent`, found or made there, and returns that child. A null
    // handle raises the assertion "!hDef.isNull()" and throws InvalidHandleException.
    static XmlElement& setDataFormatElement(XmlElement& tParent, const WebValueFormatDefinitionHandle& hDef);

    // Total order of definitions: null first, then by type, then by `CompareLikeDefinition`. Negative, 0 or positive;
    // exactly -1, 0 or 1 where nulls or types decide.
    static int CompareDefinitions(const WebValueFormatDefinitionHandle& hLeft,
                                  const WebValueFormatDefinitionHandle& hRight);

    // The type of an XML type name (case counts; unknown: kNone) and the name of a type (L"" for kLastDef and others).
    static DefType typeFromName(std::wstring_view sName);
    static const wchar_t* typeName(DefType eType);

    String getFormatPattern(const Locale& tLocale, const KTWUILanguage& tLanguage, FormatPattern ePattern) const;

    // Writes the type name and then the fields. Example: a text definition of type "plain" is 04 00 00 00 "text" 00.
    void writeToStream(OutputStream& tStream) const;
    String streamableDefinitionName() const;

protected:
    WebValueFormatDefinition() = default;
    WebValueFormatDefinition(const WebValueFormatDefinition&) = default;

    // ksMsoNumberFormat + the normal Excel pattern + "';", or nothing where the pattern is empty.
    String msoStyleOfPattern(const Locale& tLocale, const KTWUILanguage& tLanguage) const;
};

// A format as a pattern of one of the pattern languages, with named extra parameters. The pattern may end in a
// time-zone marker "[TZ:" name "]", which has an XML attribute of its own.
//
// Example: customFormat="yyyy" displayTimeZone="EST" reads as the pattern "yyyy[TZ:EST]".
class WEBFORMAT_EXPORT WebCustomFormatDefinition : public WebValueFormatDefinition
{
public:
    WebCustomFormatDefinition() = default;
    explicit WebCustomFormatDefinition(String sCustomFormat);

    const String& GetCustomFormat() const { return m_sCustomFormat; }

    void readXml(const XmlElement& tElement) override;
    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
    String getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const override;
    void populateCurrencyTagColumnFormulaIfApplies(String& sFormula) const override;
    int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const override;
    void populateDataFormat(XmlElement& tElement) const override;
    void writeToStreamImpl(OutputStream& tStream) const override;
    String getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                   FormatPattern ePattern) const override;
    std::vector<FormatDefinitionSetting> settings() const override;

    // Whether the pattern is "[$:currencyTagColumn=" and an expression: the currency comes from a column of the row.
    virtual bool isConditionalCurrencyFormat() const;
    // The value of an extra parameter, or the empty string.
    virtual String getParameterByName(const String& sName) const;
    // Adds a parameter. One that is there already keeps its value: parameters read first win.
    virtual void setParameter(const String& sName, const String& sValue);
    // For a conditional-currency pattern sets `sFormula` to the expression without its marker and an enclosing pair of
    // apostrophes: "[$:currencyTagColumn='Sales.Currency']" -> "Sales.Currency". Otherwise leaves it alone.
    virtual void checkAndpopulateCurrencyTagColumnFormula(String& sFormula) const;

private:
    String m_sCustomFormat;
    std::map<String, String> m_tExtraParameters;
};

// A format string of the older notation, kept as it was stored.
class WEBFORMAT_EXPORT WebWhistlerFormatDefinition : public WebValueFormatDefinition
{
public:
    WebWhistlerFormatDefinition() = default;
    explicit WebWhistlerFormatDefinition(String sFormat);

    const String& GetFormatString() const { return m_sCustomFormat; }

    void readXml(const XmlElement& tElement) override;
    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
    String getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const override;
    int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const override;
    void populateDataFormat(XmlElement& tElement) const override;
    // Writes nothing: the string is not part of the binary form.
    void writeToStreamImpl(OutputStream& tStream) const override;
    String getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                   FormatPattern ePattern) const override;
    std::vector<FormatDefinitionSetting> settings() const override;

private:
    String m_sCustomFormat;
};

// One of the seven standard ways of showing text.
class WEBFORMAT_EXPORT WebTextFormatDefinition : public WebValueFormatDefinition
{
public:
    enum Type : int
    {
        kPlainText = 0,
        kPlainNBSPText = 1,
        kHTML = 2,
        kHypertextLinkPrependHttp = 3,
        kHypertextLink = 4,
        kMailToAddress = 5,
        kImageURL = 6,
        kTextTypeEnd_ = 7
    };

    explicit WebTextFormatDefinition(Type eType = kPlainText);

    Type GetFormatType() const { return m_eType; }

    void readXml(const XmlElement& tElement) override;
    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
    String getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const override;
    int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const override;
    void populateDataFormat(XmlElement& tElement) const override;
    void writeToStreamImpl(OutputStream& tStream) const override;
    String getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                   FormatPattern ePattern) const override;
    std::vector<FormatDefinitionSetting> settings() const override;

    // A new text definition of the first standard type whose pattern is `sPattern` (exactly; case counts), or a custom
    // definition that holds `sPattern`. Example: "@[html]@H" -> kHTML.
    static WebValueFormatDefinitionHandle LookupStandardFormat(const String& sPattern);

    // The text pattern that a type stands for: kPlainNBSPText -> "@[html]@N". A value at or past the end: that of
    // kPlainText.
    static const wchar_t* standardPattern(Type eType);

private:
    Type m_eType;
};

}  // namespace tov
