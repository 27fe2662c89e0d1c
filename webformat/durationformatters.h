#pragma once

#include <memory>

#include "corefacade/corvidnumber.h"
#include "webformat/durationpattern.h"
#include "webformat/valueformatter.h"

namespace tov {

class DurationProgram;

// A number of seconds split into units. A unit that the pattern does not show is zero.
template <class T>
class WEBFORMAT_EXPORT Duration
{
public:
    Duration() = default;
    Duration(const Duration&) = default;
    Duration& operator=(const Duration&) = default;
    virtual ~Duration();

    T m_tSeconds = T();
    T m_tMinutes = T();
    T m_tHours = T();
    T m_tDays = T();
};

// Shows a number of seconds as days, hours, minutes and seconds: 93784 with "dd\"d\" hh:mm" -> "01d 02:03". The
// language of patterns is described at `DurationPattern`.
//
// Splitting. The units that the pattern shows are taken from the largest to the smallest, each from what is left of the
// larger ones; what a missing unit would hold goes to the next smaller one: 90000 with "hh:mm" -> "25:00". Seconds keep
// their fraction. Every other unit is the whole quotient below, except that the smallest unit of a pattern without
// seconds is rounded by the pattern's rule: up ("c"), to nearest with halves up ("r"), or, without a rule, not at all:
// whole numbers are cut off, while doubles and decimals keep the fraction. 5430 with "hh:mm" -> "01:31" as a double
// (30.5 is rounded when it is written), "01:30" as an int.
//
// Writing. A unit is a number in at least two digits, rounded to a whole one, halves away from zero: 59.7 with "ss" ->
// "60". Texts are written as they stand. An element of an optional section is left out where its unit is zero; a unit
// that the pattern does not show is zero.
//
// Negative values follow the same steps: quotients are rounded down, remainders have the value's sign, so that -61 with
// "mm:ss" -> "-02:-01". NaN and infinite values go through them, too, each unit as numbers show them: NaN with "hh:mm"
// -> "NAN:NAN"; infinite ones leave NaN behind the largest unit as doubles, zero as decimals. A null is "&nbsp;" in
// HTML and nothing elsewhere.
//
// Quotients are exact: no duration is a minute longer because of binary fractions. The quotient of the smallest unit
// has 40 significant digits for doubles and decimals and is a double for whole numbers.
//
// Formatters that the factories made are immutable; any number of threads may format through one object. Who builds one
// element by element does so before it is shared. Rendering allocates only if the buffer has to grow, or for decimals
// of more than 30 digits.
template <class T>
class WEBFORMAT_EXPORT DurationFormatter : public WebValueFormatter
{
public:
    using EOptionalBasedOn = DurationFormat::EOptionalBasedOn;

    // A formatter without elements: every value is the empty text.
    DurationFormatter(const Locale& tLocale, OutputType eOutput, const KTWUILanguage& tLanguage);
    ~DurationFormatter() override;

    // Compiles a pattern; the section for `eOutput` is picked first, unless `eParseOutput` says that the pattern is
    // such a section, written for that output already.
    static WebValueFormatterHandle ParseCustomFormat(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                                                     const KTWUILanguage& tLanguage,
                                                     OutputType eParseOutput = kLastType);

    // The formatter of a custom definition's pattern. Any other definition and a null one give the default pattern,
    // "[duration(sec)] dd\"d\":hh\"h\":mm\"m\":ss\"s\"", in the default language: 93784 -> " 01d:02h:03m:04s".
    static WebValueFormatterHandle CreateFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                   const Locale& tLocale, OutputType eOutput,
                                                   const KTWUILanguage& tLanguage);

    // Builders; each appends one element. Texts are written as they stand: they are encoded for the output already.
    void addDayDuration(unsigned nPad, EOptionalBasedOn eBasis);
    void addHourDuration(unsigned nPad, EOptionalBasedOn eBasis);
    void addMinuteDuration(unsigned nPad, EOptionalBasedOn eBasis);
    void addSecondDuration(unsigned nPad, EOptionalBasedOn eBasis);
    void addSeparator(const String& sText, EOptionalBasedOn eBasis);
    void addChar(wchar_t nChar, EOptionalBasedOn eBasis);
    void addFormat(const DurationFormat& tFormat);

    const DurationFormatList& getDurationFormatList() const { return m_tFormats; }

    OutputType outputType() const override;
    // The section of the pattern for the output.
    String GetCustomFormatString() const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

    // Appends a duration that is split already.
    void FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const Duration<T>& tDuration) const;

protected:
    // Units are written by `hDurationNumberFormatter`, a formatter of T. Null raises the assertion
    // "!m_hDurationNumberFormatter.isNull()" (source webformat/durationformatters), and writing a unit throws
    // InvalidHandleException.
    DurationFormatter(OutputType eOutput, const WebValueFormatterHandle& hDurationNumberFormatter);

private:
    void addUnit(DurationFormat::EDurationType eUnit, unsigned nPad, EOptionalBasedOn eBasis);
    void addText(DurationFormat::EDurationType eType, const String& sText, EOptionalBasedOn eBasis);
    void adopt(DurationPattern tPattern);
    void appendUnit(StringBufferBaseTemplate<wchar_t>& tBuffer, const T& tUnit) const;

    DurationFormatList m_tFormats;
    String m_sCustomFormat;
    OutputType m_eOutput;
    WebValueFormatterHandle m_hDurationNumberFormatter;
    bool m_bPlainNumbers = false;  // the number formatter is the one that the class makes for itself
    std::unique_ptr<DurationProgram> m_pProgram;
};

extern template class Duration<double>;
extern template class Duration<int>;
extern template class Duration<unsigned int>;
extern template class Duration<long>;
extern template class Duration<unsigned long>;
extern template class Duration<CorvidNumber>;

extern template class DurationFormatter<double>;
extern template class DurationFormatter<int>;
extern template class DurationFormatter<unsigned int>;
extern template class DurationFormatter<long>;
extern template class DurationFormatter<unsigned long>;
extern template class DurationFormatter<CorvidNumber>;

}  // namespace tov
