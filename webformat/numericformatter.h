#pragma once

#include <cstdint>

#include "corefacade/corvidnumber.h"
#include "webformat/valueformatter.h"

namespace tov {

// The settings that all declarative number formats share: grouping, fraction digits, negative style, scale.
class WEBFORMAT_EXPORT WebNumberFormatDefinitionBase : public WebValueFormatDefinition
{
public:
    enum NegativeFormat : int
    {
        kMinus = 0,      // leading minus sign
        kRed = 1,        // red, no sign
        kParens = 2,     // in parentheses
        kRedParens = 3,  // red, in parentheses
        kRedMinus = 4,   // red, with minus sign
        kNegativeFormatEnd_ = 5
    };

    WebNumberFormatDefinitionBase(NegativeFormat eFormat, bool bCommas, std::uint32_t nMinDigits,
                                  std::uint32_t nMaxDigits);

    NegativeFormat GetNegativeFormat() const { return m_eFormat; }
    bool HasCommas() const { return m_bCommas; }
    std::uint32_t MinDigits() const { return m_nMinDigits; }
    std::uint32_t MaxDigits() const { return m_nMaxDigits; }
    void setMinDigits(std::uint32_t nMinDigits) { m_nMinDigits = nMinDigits; }
    void setMaxDigits(std::uint32_t nMaxDigits) { m_nMaxDigits = nMaxDigits; }
    // A scale name such as "million" or "auto"; empty: none. Read from XML, never written back, no part of comparisons.
    const String& getScaleFactor() const { return m_sScaleFactor; }
    void setScaleFactor(String sScaleFactor) { m_sScaleFactor = std::move(sScaleFactor); }
    // The power of ten by which values are multiplied: -3 shows thousands.
    std::int32_t Scale() const { return m_nScale; }
    void setScale(std::int32_t nScale) { m_nScale = nScale; }
    // Magnitudes beyond which a host may want scientific notation; all ones: no limit.
    void setScientificNotationLimits(std::uint32_t nNegativeLimit, std::uint32_t nPositiveLimit);
    std::uint32_t negativeScaleLimit() const { return m_nNegativeScaleLimit; }
    std::uint32_t positiveScaleLimit() const { return m_nPositiveScaleLimit; }

    void readXml(const XmlElement& tElement) override;
    int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const override;
    void populateDataFormat(XmlElement& tElement) const override;
    void writeToStreamImpl(OutputStream& tStream) const override;
    String getMsoStyle(const Locale& tLocale, const KTWUILanguage& tLanguage) const override;
    // The Excel pattern, the same for both kinds: commas, 2 and 2 digits, kParens -> "#,##0.00_);(#,##0.00)".
    String getMsoFormatPatternImpl(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                   FormatPattern ePattern) const override;
    std::vector<FormatDefinitionSetting> settings() const override;

    // Reads the attributes that the definitions share. Digits that are not given are 2 and 2.
    virtual void ReadXMLAttributes(const XmlElement& tElement);
    // Append the positive section of the Excel pattern, and the negative one with its separator; false: there is no
    // pattern.
    virtual bool msoFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                           const KTWUILanguage& tLanguage) const;
    virtual bool msoNegativeFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                                   const KTWUILanguage& tLanguage) const;

    // The style of an XML name or an older spelling ("redParen", "[red]()"); unknown: kMinus. And the name of a style.
    static NegativeFormat negativeFormatFromName(std::wstring_view sName);
    static const wchar_t* negativeFormatName(NegativeFormat eFormat);

protected:
    bool m_bCommas;
    std::uint32_t m_nMinDigits;
    std::uint32_t m_nMaxDigits;
    NegativeFormat m_eFormat;
    std::int32_t m_nScale = 0;
    std::uint32_t m_nNegativeScaleLimit = 0xFFFFFFFF;
    std::uint32_t m_nPositiveScaleLimit = 0xFFFFFFFF;
    String m_sScaleFactor;
};

// A plain number.
class WEBFORMAT_EXPORT WebNumberFormatDefinition : public WebNumberFormatDefinitionBase
{
public:
    using WebNumberFormatDefinitionBase::WebNumberFormatDefinitionBase;

    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
};

// A percentage. Values are in percent already: 45 shows "45%".
class WEBFORMAT_EXPORT WebPercentFormatDefinition : public WebNumberFormatDefinitionBase
{
public:
    using WebNumberFormatDefinitionBase::WebNumberFormatDefinitionBase;

    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
    // Never grouped; the sign stands in front where the locale has it there: 1 and 3 digits -> "0.0##%".
    bool msoFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                   const KTWUILanguage& tLanguage) const override;
};

// An amount in the currency that a tag names ("loc:en-US", "int:EUR", "EUR").
class WEBFORMAT_EXPORT WebCurrencyFormatDefinition : public WebNumberFormatDefinitionBase
{
public:
    WebCurrencyFormatDefinition(const String& sCurrencyTag, NegativeFormat eFormat, bool bCommas,
                                std::uint32_t nMinDigits, std::uint32_t nMaxDigits);

    const String& CurrencyTag() const { return m_sCurrencyTag; }

    void readXml(const XmlElement& tElement) override;
    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
    int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const override;
    void populateDataFormat(XmlElement& tElement) const override;
    void writeToStreamImpl(OutputStream& tStream) const override;
    std::vector<FormatDefinitionSetting> settings() const override;
    // Takes the pattern of the currency's layouts, negative section included; false for a currency without one.
    bool msoFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                   const KTWUILanguage& tLanguage) const override;
    bool msoNegativeFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                           const KTWUILanguage& tLanguage) const override;

protected:
    String m_sCurrencyTag;
};

// An amount whose currency comes from another column of the row.
class WEBFORMAT_EXPORT WebConditionalCurrencyFormatDefinition : public WebCurrencyFormatDefinition
{
public:
    WebConditionalCurrencyFormatDefinition(const String& sCurrencyTag, NegativeFormat eFormat, bool bCommas,
                                           std::uint32_t nMinDigits, std::uint32_t nMaxDigits,
                                           const String& sCurrencyTagColumn);

    void readXml(const XmlElement& tElement) override;
    DefType GetDefType() const override;
    Handle<WebValueFormatDefinition, WebValueFormatDefinition> clone() const override;
    void populateCurrencyTagColumnFormulaIfApplies(String& sFormula) const override;
    int CompareLikeDefinition(const WebValueFormatDefinition& tOther) const override;
    void populateDataFormat(XmlElement& tElement) const override;
    void writeToStreamImpl(OutputStream& tStream) const override;
    std::vector<FormatDefinitionSetting> settings() const override;
    // Always false: the spreadsheet writer asks for the tag column instead.
    bool msoFormat(StringBufferBaseTemplate<wchar_t>& tBuffer, const Locale& tLocale,
                   const KTWUILanguage& tLanguage) const override;

    // The expression of the column that holds each row's currency tag.
    virtual const String& getCurrencyTagColumn() const;

private:
    String m_sCurrencyTagColumn;
};

// The factory of formatters for numbers of type T: double, int, unsigned int, long, unsigned long, CorvidNumber.
//
// Example: NumericFormatter<double>::ParseCustomFormat(L"#,##0.00", Locale::kUSA, kText, language) formats 1234.5 as
// "1,234.50". docs/patterns.md has the pattern language.
//
// Every pattern is accepted; a factory fails only where it says so. Any thread.
template <class T>
class WEBFORMAT_EXPORT NumericFormatter : public WebValueFormatter
{
public:
    enum FormatAs : int  // a caller may hand over any number
    {
        kDisplayAsInteger = 0,
        kDisplayAsReal = 1,
        kDisplayAsRealFullPrecision = 2
    };

    ~NumericFormatter() override;

    // Compiles a pattern; the section for `eOutput` is picked first.
    static WebValueFormatterHandle ParseCustomFormat(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                                                     const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle ParseCustomFormat(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                                                     const KTWUILanguage& tLanguage,
                                                     ExcelEvalauteFormatMask eExcelMask);

    // Turn a definition into a pattern and compile it. The generic one picks by the definition's class, one of the
    // older notation after `WebConvertWhistlerFormat::ConvertNumericFormat`; a null handle is the answer for a class
    // that describes no numbers.
    //
    // A currency that is unknown is a critical error in the log, and its amounts are shown as integers. A conditional
    // currency, and a custom pattern that begins with "[$:currencyTagColumn=", take the overriding currency tag of
    // `tLocale`: the caller hands over the tag of each row with it.
    static WebValueFormatterHandle CreateFormatter(const WebNumberFormatDefinition& tDefinition, const Locale& tLocale,
                                                   OutputType eOutput, const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle CreateFormatter(const WebPercentFormatDefinition& tDefinition, const Locale& tLocale,
                                                   OutputType eOutput, const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle CreateFormatter(const WebCurrencyFormatDefinition& tDefinition,
                                                   const Locale& tLocale, OutputType eOutput,
                                                   const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle CreateFormatter(const WebConditionalCurrencyFormatDefinition& tDefinition,
                                                   const Locale& tLocale, OutputType eOutput,
                                                   const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle CreateFormatter(const WebCustomFormatDefinition& tDefinition, const Locale& tLocale,
                                                   OutputType eOutput, const KTWUILanguage& tLanguage);
    static WebValueFormatterHandle CreateFormatter(const WebValueFormatDefinition& tDefinition, const Locale& tLocale,
                                                   OutputType eOutput, const KTWUILanguage& tLanguage);

    // The formatter of values without a definition: "#0" for integers, "#0.00" for reals up to the type's precision. A
    // value outside FormatAs raises the assertion "not expected" (source webformat/numericformatterimpl), null handle.
    static WebValueFormatterHandle CreateDefaultFormatter(FormatAs eFormatAs, const Locale& tLocale, OutputType eOutput,
                                                          const WebValueFormatDefinition::FormatParameters& tParameters,
                                                          const KTWUILanguage& tLanguage);

    // The most fraction digits that a default formatter shows: for double 0, 2 and 17, the last two capped by the
    // configured significant digits; 38 for decimals, 0 for integers.
    static unsigned getPrecision(FormatAs eFormatAs);
    static SQLDataType::StorageType storageTypeForNumericType();

protected:
    NumericFormatter();
};

extern template class NumericFormatter<double>;
extern template class NumericFormatter<int>;
extern template class NumericFormatter<unsigned int>;
extern template class NumericFormatter<long>;
extern template class NumericFormatter<unsigned long>;
extern template class NumericFormatter<CorvidNumber>;

}  // namespace tov
