#include "webformat/durationformatters.h"

#include <cmath>
#include <cstring>
#include <type_traits>
#include <utility>

#include "project/webformat/bufferguard.h"
#include "project/webformat/durationarithmetic.h"
#include "project/webformat/durationprogram.h"
#include "project/webformat/numericinfo.h"
#include "project/webformat/outputmarkup.h"
#include "webbedrock/assertion.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/durationformatters";
constexpr wchar_t kDefaultPattern[] = L"[duration(sec)] dd\"d\":hh\"h\":mm\"m\":ss\"s\"";
constexpr wchar_t kNumberPattern[] = L"#00";

constexpr unsigned kSecondsOfDay = 86400;
constexpr unsigned kSecondsOfHour = 3600;
constexpr unsigned kSecondsOfMinute = 60;

// What a unit of the pattern takes of the seconds that are left.
template <unsigned nLength, class T>
T takeUnit(T& tRest, DurationFormat::EDurationType eUnit, const DurationFormatList& tFormats)
{
    using Arithmetic = DurationArithmetic<T>;
    if (tFormats.needsRoundingRule(eUnit))
        return Arithmetic::calculateWithRounding(tRest, nLength, tFormats.m_eRoundRule);
    T tQuotient = Arithmetic::floorQuotient(tRest, nLength);
    tRest = Arithmetic::remainder(tRest, nLength);
    return tQuotient;
}

template <class T>
Duration<T> split(T tRest, const DurationFormatList& tFormats)
{
    Duration<T> tDuration;
    if (tFormats.m_bHasDay)
        tDuration.m_tDays = takeUnit<kSecondsOfDay>(tRest, DurationFormat::kDay, tFormats);
    if (tFormats.m_bHasHour)
        tDuration.m_tHours = takeUnit<kSecondsOfHour>(tRest, DurationFormat::kHour, tFormats);
    if (tFormats.m_bHasMinute)
        tDuration.m_tMinutes = takeUnit<kSecondsOfMinute>(tRest, DurationFormat::kMinute, tFormats);
    if (tFormats.m_bHasSecond)
        tDuration.m_tSeconds = tRest;
    return tDuration;
}

// Units from 0 to below this are written here, in the digits that kNumberPattern gives them; the others are left to the
// number formatter.
constexpr std::uint32_t kPlainEnd = 1'000'000'000;
constexpr std::size_t kMostPlainDigits = 9;

// From so many significant digits on a plain unit keeps six decimals when the number formatter rounds it: its whole
// number is in doubt only within one unit of the sixth.
constexpr int kFewestExactDigits = 15;
constexpr double kDoubt = 1e-6;

// The whole number that a unit is shown as, or kPlainEnd where only the number formatter can say.
std::uint32_t plainNumber(double fUnit, int nMaxSignificantDigits)
{
    if (!(fUnit >= 0 && fUnit < kPlainEnd - 1) || nMaxSignificantDigits < kFewestExactDigits)
        return kPlainEnd;
    const auto nWhole = static_cast<std::uint32_t>(fUnit);
    const double fAboveHalf = fUnit - nWhole - 0.5;
    if (std::fabs(fAboveHalf) < kDoubt)
        return kPlainEnd;
    return nWhole + (fAboveHalf > 0 ? 1 : 0);
}

std::uint32_t plainNumber(const CorvidNumber&, int)
{
    return kPlainEnd;
}

template <class T>
std::uint32_t plainNumber(T nUnit, int)
{
    const auto nBits = static_cast<std::make_unsigned_t<T>>(nUnit);
    return nBits < kPlainEnd ? static_cast<std::uint32_t>(nBits) : kPlainEnd;
}

// At least two digits of a number below kPlainEnd.
void appendPlain(StringBufferBaseTemplate<wchar_t>& tBuffer, std::uint32_t nNumber)
{
    if (!tBuffer.reserveFree(kMostPlainDigits))
        return;
    std::size_t nDigits = 2;
    for (std::uint32_t nEnd = 100; nNumber >= nEnd; nEnd *= 10)
        ++nDigits;
    wchar_t* const pDigits = tBuffer.freePlace();
    for (std::size_t n = nDigits; n > 0; --n, nNumber /= 10)
        pDigits[n - 1] = static_cast<wchar_t>(L'0' + nNumber % 10);
    tBuffer.advance(nDigits);
}

// In whole blocks, which is not worth a call.
void appendText(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pText, std::size_t nLength)
{
    constexpr std::size_t nBlock = DurationProgram::knBlock;
    if (!tBuffer.reserveFree((nLength + nBlock - 1) & ~(nBlock - 1)))
        return;
    wchar_t* const pTarget = tBuffer.freePlace();
    for (std::size_t nDone = 0; nDone < nLength; nDone += nBlock)
        std::memcpy(pTarget + nDone, pText + nDone, nBlock * sizeof(wchar_t));
    tBuffer.advance(nLength);
}

}  // namespace

template <class T>
Duration<T>::~Duration() = default;

template <class T>
DurationFormatter<T>::DurationFormatter(const Locale& tLocale, OutputType eOutput, const KTWUILanguage& tLanguage)
    : DurationFormatter(eOutput, NumericFormatter<T>::CreateFormatter(WebCustomFormatDefinition(kNumberPattern),
                                                                      tLocale, eOutput, tLanguage))
{
    m_bPlainNumbers = true;
}

template <class T>
DurationFormatter<T>::DurationFormatter(OutputType eOutput, const WebValueFormatterHandle& hDurationNumberFormatter)
    : WebValueFormatter(NumericInfo<T>::kStorage),
      m_eOutput(eOutput),
      m_hDurationNumberFormatter(hDurationNumberFormatter),
      m_pProgram(std::make_unique<DurationProgram>())
{
    WEBFORMAT_ASSERT(kSource, !m_hDurationNumberFormatter.isNull());
}

template <class T>
DurationFormatter<T>::~DurationFormatter() = default;

template <class T>
WebValueFormatterHandle DurationFormatter<T>::ParseCustomFormat(const String& sPattern, const Locale& tLocale,
                                                                OutputType eOutput, const KTWUILanguage& tLanguage,
                                                                OutputType eParseOutput)
{
    const Handle<DurationFormatter> hFormatter(WEBFORMAT_NEW(kSource) DurationFormatter(tLocale, eOutput, tLanguage));
    hFormatter.getPointer()->adopt(DurationPattern::parse(sPattern, eOutput, eParseOutput));
    return hFormatter;
}

template <class T>
WebValueFormatterHandle DurationFormatter<T>::CreateFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                              const Locale& tLocale, OutputType eOutput,
                                                              const KTWUILanguage& tLanguage)
{
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(hDefinition.getPointer()))
        return ParseCustomFormat(pCustom->GetCustomFormat(), tLocale, eOutput, tLanguage);
    return ParseCustomFormat(kDefaultPattern, tLocale, eOutput, KTWUILanguage::kDefaultLanguage);
}

template <class T>
void DurationFormatter<T>::adopt(DurationPattern tPattern)
{
    m_sCustomFormat = tPattern.sourceText();
    m_tFormats = std::move(tPattern).formats();
    m_pProgram->reserve(m_tFormats.m_vDurationFormats.size());
    for (const DurationFormat& tFormat : m_tFormats.m_vDurationFormats)
        m_pProgram->append(tFormat);
}

template <class T>
void DurationFormatter<T>::addFormat(const DurationFormat& tFormat)
{
    m_tFormats.addFormat(tFormat);
    m_pProgram->append(tFormat);
}

template <class T>
void DurationFormatter<T>::addUnit(DurationFormat::EDurationType eUnit, unsigned nPad, EOptionalBasedOn eBasis)
{
    DurationFormat tFormat;
    tFormat.eType = eUnit;
    tFormat.eOptionalBasedOn = eBasis;
    tFormat.nPad = nPad;
    addFormat(tFormat);
}

template <class T>
void DurationFormatter<T>::addText(DurationFormat::EDurationType eType, const String& sText, EOptionalBasedOn eBasis)
{
    DurationFormat tFormat;
    tFormat.eType = eType;
    tFormat.eOptionalBasedOn = eBasis;
    tFormat.sText = sText;
    addFormat(tFormat);
}

template <class T>
void DurationFormatter<T>::addDayDuration(unsigned nPad, EOptionalBasedOn eBasis)
{
    addUnit(DurationFormat::kDay, nPad, eBasis);
}

template <class T>
void DurationFormatter<T>::addHourDuration(unsigned nPad, EOptionalBasedOn eBasis)
{
    addUnit(DurationFormat::kHour, nPad, eBasis);
}

template <class T>
void DurationFormatter<T>::addMinuteDuration(unsigned nPad, EOptionalBasedOn eBasis)
{
    addUnit(DurationFormat::kMinute, nPad, eBasis);
}

template <class T>
void DurationFormatter<T>::addSecondDuration(unsigned nPad, EOptionalBasedOn eBasis)
{
    addUnit(DurationFormat::kSecond, nPad, eBasis);
}

template <class T>
void DurationFormatter<T>::addSeparator(const String& sText, EOptionalBasedOn eBasis)
{
    addText(DurationFormat::kSeparator, sText, eBasis);
}

template <class T>
void DurationFormatter<T>::addChar(wchar_t nChar, EOptionalBasedOn eBasis)
{
    addText(DurationFormat::kText, String(1, nChar), eBasis);
}

template <class T>
typename DurationFormatter<T>::OutputType DurationFormatter<T>::outputType() const
{
    return m_eOutput;
}

template <class T>
String DurationFormatter<T>::GetCustomFormatString() const
{
    return m_sCustomFormat;
}

template <class T>
void DurationFormatter<T>::impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    if (pValue)
        FormatValue(tBuffer, split(*static_cast<const T*>(pValue), m_tFormats));
    else if (m_eOutput == kHTML)
        tBuffer.append(kNonBreakingSpace);
}

template <class T>
void DurationFormatter<T>::FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const Duration<T>& tDuration) const
{
    BufferGuard tGuard(tBuffer);
    // In the order of the units' and the bases' numbers.
    const T* const aUnits[] = {&tDuration.m_tDays, &tDuration.m_tHours, &tDuration.m_tMinutes, &tDuration.m_tSeconds};
    const T tZero = T();
    unsigned nHidden = 0;  // one bit a basis
    for (unsigned nUnit = 0; nUnit < std::size(aUnits); ++nUnit)
    {
        if (*aUnits[nUnit] == tZero)
            nHidden |= 1u << nUnit;
    }
    for (const DurationProgram::Step& tStep : m_pProgram->steps())
    {
        if (nHidden >> tStep.nBasis & 1)
            continue;
        if (tStep.bText)
            appendText(tBuffer, m_pProgram->text(tStep), tStep.nTextLength);
        else
            appendUnit(tBuffer, *aUnits[tStep.nUnit]);
    }
    tGuard.keep();
}

template <class T>
void DurationFormatter<T>::appendUnit(StringBufferBaseTemplate<wchar_t>& tBuffer, const T& tUnit) const
{
    const std::uint32_t nNumber = m_bPlainNumbers ? plainNumber(tUnit, m_pProgram->maxSignificantDigits()) : kPlainEnd;
    if (nNumber < kPlainEnd)
        appendPlain(tBuffer, nNumber);
    else
        m_hDurationNumberFormatter->formatToBuffer(tBuffer, &tUnit);
}

template class Duration<double>;
template class Duration<int>;
template class Duration<unsigned int>;
template class Duration<long>;
template class Duration<unsigned long>;
template class Duration<CorvidNumber>;

template class DurationFormatter<double>;
template class DurationFormatter<int>;
template class DurationFormatter<unsigned int>;
template class DurationFormatter<long>;
template class DurationFormatter<unsigned long>;
template class DurationFormatter<CorvidNumber>;

}  // namespace tov
