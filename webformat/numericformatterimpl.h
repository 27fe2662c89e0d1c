#pragma once

#include <atomic>
#include <memory>

#include "webformat/numericformatter.h"
#include "webformat/numericpattern.h"

namespace tov {

struct NumericProgram;

// The numeric engine: a pattern compiled once, rendered for each value of type T. Made by the factories of
// `NumericFormatter<T>`.
//
// A value: NaN is "NAN" and plus infinity "INF". A negative value is rendered by the second section, whose literals
// stand for the sign; without one a "-" is written before the first. Zero and positive values use the first section. A
// null uses the third section (as the value 0); without one it is "&nbsp;" in HTML and nothing elsewhere.
//
// Rendering allocates only if the buffer has to grow or the number has more than 512 digits, and takes no lock.
// Immutable; any number of threads may format through one object.
template <class T>
class WEBFORMAT_EXPORT NumericFormatterImpl final : public NumericFormatter<T>
{
public:
    using OutputType = ValueFormatterTypes::OutputType;
    using ExcelEvalauteFormatMask = ValueFormatterTypes::ExcelEvalauteFormatMask;
    using Digit = NumericPattern::Item;
    using MOD = NumericPattern::Modulus;
    using ScaleFactor = NumericPattern::ScaleFactor;

    // Compiles `sPattern`. `eParseOutput` kLastType: the section for `eOutput` is picked first. `pSource` null: the
    // time and duration brackets get the formatters of their families.
    NumericFormatterImpl(const String& sPattern, const Locale& tLocale, OutputType eOutput, OutputType eParseOutput,
                         const KTWUILanguage& tLanguage, ExcelEvalauteFormatMask eExcelMask,
                         const NumericSubFormatterSource* pSource = nullptr);
    ~NumericFormatterImpl() override;

    OutputType outputType() const override;
    String GetCustomFormatString() const override;
    // False after any day, month, time or duration bracket, in whichever section.
    bool IsValidExcelPattern() const override;
    // Appends the number of the cell, 15 significant digits: the value in percent units divided by 100, scaled as the
    // pattern says unless a scaling comma leaves that to the spreadsheet.
    void formatExcelValueToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;
    // For a row-wise currency: the mask becomes the pattern with every "$:" replaced by "$".
    bool checkAndReplaceFormatMaskForExcel(String& sMask) const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

private:
    bool formatStraight(StringBufferBaseTemplate<wchar_t>& tBuffer, const T& tValue) const;
    void formatNumber(StringBufferBaseTemplate<wchar_t>& tBuffer, const T& tValue) const;
    void formatNumberInternal(StringBufferBaseTemplate<wchar_t>& tBuffer, const T& tValue, std::size_t nSection) const;
    void formatInfinite(StringBufferBaseTemplate<wchar_t>& tBuffer, bool bNegative) const;
    void FormatNull(StringBufferBaseTemplate<wchar_t>& tBuffer, unsigned nSectionIndex) const;

    std::unique_ptr<const NumericProgram> m_pProgram;
    const std::atomic<int>& m_nMaxSignificantDigits;
    String m_sPattern;
    OutputType m_eOutput;
    ExcelEvalauteFormatMask m_eExcelMask;
    bool m_bLanguageMark;  // a left-to-right mark stands before the minus sign
};

extern template class NumericFormatterImpl<double>;
extern template class NumericFormatterImpl<int>;
extern template class NumericFormatterImpl<unsigned int>;
extern template class NumericFormatterImpl<long>;
extern template class NumericFormatterImpl<unsigned long>;
extern template class NumericFormatterImpl<CorvidNumber>;

}  // namespace tov
