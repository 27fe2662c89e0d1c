#include "webformat/numericformatterimpl.h"

#include "corefacade/fastdecimal.h"
#include "project/webformat/numericinfo.h"
#include "project/webformat/numericprogram.h"
#include "project/webformat/numericrenderer.h"
#include "project/webformat/numericsubformatters.h"
#include "project/webformat/outputmarkup.h"
#include "utilities/stringutils.h"
#include "webformat/formatterconfig.h"

namespace tov {

namespace {

constexpr std::size_t kScratchDigits = 512;
constexpr int kCellSignificantDigits = 15;
constexpr unsigned kNullSection = 2;

using Buffer = StringBufferBaseTemplate<wchar_t>;

template <class T>
struct Operations
{
    static std::int64_t wholePartWithin(const void* pValue, std::uint64_t nNumerator, std::uint64_t nDenominator,
                                        std::int64_t nLeast, std::int64_t nMost)
    {
        const auto tQuotient = NumericInfo<T>::quotient(*static_cast<const T*>(pValue), nNumerator, nDenominator);
        using Quotient = std::remove_const_t<decltype(tQuotient)>;
        if (!(tQuotient >= Quotient(nLeast)) || !(tQuotient <= Quotient(nMost)))
            return NumericValueOperations::knOutside;
        if constexpr (std::is_same_v<Quotient, double>)
            return static_cast<std::int64_t>(tQuotient);
        else
            return static_cast<std::int64_t>(math::floor(tQuotient).asDouble());
    }

    static void formatDuration(Buffer& tBuffer, const void* pValue, const NumericProgram::Special& tSpecial)
    {
        const T tDuration = NumericInfo<T>::durationOf(*static_cast<const T*>(pValue), tSpecial.nMultiplierNumerator,
                                                       tSpecial.nMultiplierDenominator);
        tSpecial.hSubFormatter->formatToBuffer(tBuffer, &tDuration);
    }

    static constexpr NumericValueOperations kTable = {&wholePartWithin, &formatDuration};
};

String minusSign(ValueFormatterTypes::OutputType eOutput, const KTWUILanguage& tLanguage)
{
    return needsLeftToRightMark(eOutput, tLanguage) ? String(kLeftToRightMark) + L'-' : String(1, L'-');
}

// The scale for a magnitude, or null below the first. Halves the list; entry 0 is left to the last question.
template <class T>
const NumericProgram::Scale* chooseScale(const NumericProgram& tProgram, const T& tValue)
{
    if (tProgram.vScales.empty())
        return nullptr;
    std::size_t nLow = 0;
    std::size_t nHigh = tProgram.vScales.size();
    while (nLow + 1 < nHigh)
    {
        const std::size_t nMiddle = (nLow + nHigh) / 2;
        if (NumericInfo<T>::reachesPower10(tValue, tProgram.vScales[nMiddle].nThreshold))
            nLow = nMiddle;
        else
            nHigh = nMiddle;
    }
    const NumericProgram::Scale& tScale = tProgram.vScales[nLow];
    if (nLow == 0 && !NumericInfo<T>::reachesPower10(tValue, tScale.nThreshold))
        return nullptr;
    return &tScale;
}

}  // namespace

template <class T>
NumericFormatterImpl<T>::NumericFormatterImpl(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                                              OutputType eParseOutput, const KTWUILanguage& tLanguage,
                                              ExcelEvalauteFormatMask eExcelMask,
                                              const NumericSubFormatterSource* pSource)
    : m_pProgram(std::make_unique<const NumericProgram>(
          NumericPattern::parse(sPattern, tLocale, eOutput, tLanguage, eParseOutput,
                                pSource ? pSource : &ownSubFormatters<T>()),
          tLocale, eOutput, minusSign(eOutput, tLanguage))),
      m_nMaxSignificantDigits(FormatterConfig::maxSignificantDigitsSource()),
      m_sPattern(sPattern),
      m_eOutput(eOutput),
      m_eExcelMask(eExcelMask),
      m_bLanguageMark(needsLeftToRightMark(eOutput, tLanguage))
{
}

template <class T>
NumericFormatterImpl<T>::~NumericFormatterImpl() = default;

template <class T>
typename NumericFormatterImpl<T>::OutputType NumericFormatterImpl<T>::outputType() const
{
    return m_eOutput;
}

template <class T>
String NumericFormatterImpl<T>::GetCustomFormatString() const
{
    return m_sPattern;
}

template <class T>
bool NumericFormatterImpl<T>::IsValidExcelPattern() const
{
    return m_pProgram->bValidExcelPattern;
}

// Values that need more room than there surely is are left to the walk, which grows the buffer to no more than it must.
template <class T>
[[gnu::always_inline]] inline bool NumericFormatterImpl<T>::formatStraight(Buffer& tBuffer, const T& tValue) const
{
    const StraightLine& tLine = m_pProgram->aStraight[NumericInfo<T>::isNegative(tValue) ? 1 : 0];
    DecimalParts tParts;
    if (tBuffer.capacity() - tBuffer.length() < tLine.mostCharacters() ||
        !NumericInfo<T>::parts(tValue, tLine.nPlaces, m_nMaxSignificantDigits, tParts))
        return false;
    const wchar_t* const pStart = tBuffer.freePlace();
    const wchar_t* const pEnd =
        tLine.write(tBuffer.freePlace(), m_pProgram->sTexts.data(), static_cast<std::uint64_t>(tParts.nWhole),
                    static_cast<std::uint32_t>(tParts.nFraction));
    tBuffer.advance(static_cast<std::size_t>(pEnd - pStart));
    return true;
}

template <class T>
void NumericFormatterImpl<T>::impl_formatToBuffer(Buffer& tBuffer, const void* pValue) const
{
    if (!pValue)
        FormatNull(tBuffer, 0);
    else if (!m_pProgram->bStraight || !formatStraight(tBuffer, *static_cast<const T*>(pValue)))
        formatNumber(tBuffer, *static_cast<const T*>(pValue));
}

template <class T>
void NumericFormatterImpl<T>::formatNumber(Buffer& tBuffer, const T& tValue) const
{
    if (NumericInfo<T>::isNaN(tValue))
    {
        tBuffer.append(L"NAN", 3);
        return;
    }
    const bool bNegative = NumericInfo<T>::isNegative(tValue);
    if (NumericInfo<T>::isInfinite(tValue))
    {
        formatInfinite(tBuffer, bNegative);
        return;
    }
    if (bNegative && m_pProgram->vSections.size() > 1)
    {
        formatNumberInternal(tBuffer, tValue, 1);
        return;
    }
    if (bNegative)
    {
        if (m_bLanguageMark)
            tBuffer.append(kLeftToRightMark);
        tBuffer.append(L'-');
    }
    formatNumberInternal(tBuffer, tValue, 0);
}

// Minus infinity without a section of its own writes nothing.
template <class T>
void NumericFormatterImpl<T>::formatInfinite(Buffer& tBuffer, bool bNegative) const
{
    if (!bNegative)
    {
        tBuffer.append(L"INF", 3);
        return;
    }
    if (m_pProgram->vSections.size() < 2)
        return;
    const T tValue = T();
    NumericRendering tRendering;
    tRendering.bInfinite = true;
    tRendering.pValue = &tValue;
    tRendering.pOperations = &Operations<T>::kTable;
    renderNumericSection(tBuffer, *m_pProgram, m_pProgram->vSections[1], tRendering);
}

template <class T>
void NumericFormatterImpl<T>::formatNumberInternal(Buffer& tBuffer, const T& tValue, std::size_t nSection) const
{
    const NumericProgram::Section& tSection = m_pProgram->vSections[nSection];
    NumericRendering tRendering;
    int nPower10 = tSection.nPower10;
    if (tSection.bAutoScale)
    {
        tRendering.pScale = chooseScale(*m_pProgram, tValue);
        nPower10 = tRendering.pScale ? -tRendering.pScale->nThreshold : 0;
    }
    const int nMaxSignificantDigits = m_nMaxSignificantDigits.load(std::memory_order_relaxed);
    StringBufferTemplate<char, kScratchDigits> tDigits;
    const int nDecimalPoint =
        tSection.vMods.empty()
            ? NumericInfo<T>::digits(tDigits, tValue, tSection.nMaxFractionDigits, nPower10, nMaxSignificantDigits)
            : NumericInfo<T>::digitsAfterModuli(tDigits, tValue, tSection.vMods, tSection.nMaxFractionDigits, nPower10,
                                                nMaxSignificantDigits);
    tRendering.sDigits =
        tDigits.view().substr(0, trimmedLength(tDigits.view(), nDecimalPoint, tSection.nMinFractionDigits));
    tRendering.nDecimalPoint = nDecimalPoint;
    tRendering.pValue = &tValue;
    tRendering.pOperations = &Operations<T>::kTable;
    renderNumericSection(tBuffer, *m_pProgram, tSection, tRendering);
}

// The third section of a pattern shows nulls, as the value 0; a pattern without one has nothing to show.
template <class T>
void NumericFormatterImpl<T>::FormatNull(Buffer& tBuffer, unsigned nSectionIndex) const
{
    const std::size_t nSections = m_pProgram->vSections.size();
    while (nSectionIndex < kNullSection && nSectionIndex + 1 < nSections)
        ++nSectionIndex;
    if (nSectionIndex == kNullSection)
        formatNumberInternal(tBuffer, T(), nSectionIndex);
    else if (m_eOutput == ValueFormatterTypes::kHTML)
        tBuffer.append(kNonBreakingSpace);
}

template <class T>
void NumericFormatterImpl<T>::formatExcelValueToBuffer(Buffer& tBuffer, const void* pValue) const
{
    if (!pValue)
    {
        FormatNull(tBuffer, 0);
        return;
    }
    const NumericProgram::Section& tSection = m_pProgram->vSections.front();
    double fCell = NumericInfo<T>::asDouble(*static_cast<const T*>(pValue));
    // With a scaling comma the spreadsheet's own pattern divides, unless a percent sign asks for its own division.
    int nPower10 = tSection.bScalingComma ? 0 : tSection.nPower10;
    if (tSection.bPercent)
        nPower10 = tSection.nPower10 - 2;
    fCell = nPower10 < 0 ? fCell / powerOfTen(-nPower10) : fCell * powerOfTen(nPower10);
    StringUtils::appendDouble(tBuffer, fCell, kCellSignificantDigits);
}

template <class T>
bool NumericFormatterImpl<T>::checkAndReplaceFormatMaskForExcel(String& sMask) const
{
    if (m_eExcelMask != ValueFormatterTypes::kEvaluateFormatRowWiseCondCurr)
        return false;
    sMask = StringUtils::replaceAll(m_sPattern, L"$:", L"$");
    return true;
}

template class NumericFormatterImpl<double>;
template class NumericFormatterImpl<int>;
template class NumericFormatterImpl<unsigned int>;
template class NumericFormatterImpl<long>;
template class NumericFormatterImpl<unsigned long>;
template class NumericFormatterImpl<CorvidNumber>;

}  // namespace tov
