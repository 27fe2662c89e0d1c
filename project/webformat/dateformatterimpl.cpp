#include "webformat/dateformatterimpl.h"

#include "corefacade/dateutils.h"
#include "project/webformat/dateprogram.h"
#include "project/webformat/outputmarkup.h"

namespace tov {

namespace {

using Buffer = StringBufferBaseTemplate<wchar_t>;

// From this second on rounding may carry into the minute.
constexpr unsigned kLastSecond = 59;

}  // namespace

StandardDateFormatter::StandardDateFormatter(const Locale& tLocale, const KTWUILanguage& tLanguage,
                                             const String& sPattern, OutputType eOutput)
    : m_tPattern(tLocale, eOutput),
      m_sCustomFormat(sPattern),
      m_eOutput(eOutput),
      m_bLanguageMark(needsLeftToRightMark(eOutput, tLanguage))
{
    // Without elements there is no program, unless the marks are to be shown.
    if (m_bLanguageMark)
        bind();
}

StandardDateFormatter::~StandardDateFormatter() = default;

void StandardDateFormatter::bind()
{
    m_pProgram =
        std::make_unique<const DateProgram>(m_tPattern, m_bLanguageMark ? kLeftToRightMark : std::wstring_view());
}

void StandardDateFormatter::addCustomFormat(const String& sPattern, const Locale& tLocale, OutputType eOutput)
{
    m_tPattern.addCustomFormat(sPattern, tLocale, eOutput);
    bind();
}

void StandardDateFormatter::AddYear(unsigned nCount)
{
    m_tPattern.addYear(nCount);
    bind();
}

void StandardDateFormatter::AddMonth(unsigned nPad)
{
    m_tPattern.addMonth(nPad);
    bind();
}

void StandardDateFormatter::AddDay(unsigned nPad)
{
    m_tPattern.addDay(nPad);
    bind();
}

void StandardDateFormatter::AddHour(bool bIs24, unsigned nPad)
{
    m_tPattern.addHour(bIs24, nPad);
    bind();
}

void StandardDateFormatter::AddMinute(unsigned nPad)
{
    m_tPattern.addMinute(nPad);
    bind();
}

void StandardDateFormatter::addSecond(unsigned nPad)
{
    m_tPattern.addSecond(nPad);
    bind();
}

void StandardDateFormatter::addSecondWithDecimal(const String& sNumericPattern)
{
    m_tPattern.addSecondWithDecimal(sNumericPattern);
    bind();
}

void StandardDateFormatter::AddAlphaMonth(bool bCaps, unsigned nPad)
{
    m_tPattern.addAlphaMonth(bCaps, nPad);
    bind();
}

void StandardDateFormatter::AddAlphaDOW(bool bCaps, unsigned nPad)
{
    m_tPattern.addAlphaDayOfWeek(bCaps, nPad);
    bind();
}

void StandardDateFormatter::AddAMPM(bool bCaps, bool bTwo)
{
    m_tPattern.addAmPm(bCaps, bTwo);
    bind();
}

void StandardDateFormatter::AddEra()
{
    m_tPattern.addEra();
    bind();
}

void StandardDateFormatter::AddSeparator(const String& sText)
{
    m_tPattern.addSeparator(sText);
    bind();
}

void StandardDateFormatter::AddSeparatorChar(wchar_t nChar)
{
    m_tPattern.extendSeparator(std::wstring_view(&nChar, 1));
    bind();
}

void StandardDateFormatter::SetLocale(const Locale& tLocale)
{
    m_tPattern.addSetLocale(tLocale, tLocale.tag());
    bind();
}

void StandardDateFormatter::ResetLocale()
{
    m_tPattern.addResetLocale();
    bind();
}

void StandardDateFormatter::AddFormat(const DateFormat& tFormat)
{
    DatePattern::Element tElement;
    tElement.eType = tFormat.eType;
    tElement.nPad = tFormat.nPad;
    tElement.bCaps = tFormat.bCaps;
    m_tPattern.addElement(tElement, tFormat.sText, tFormat.tNewLocale, tFormat.hSecondFormatter);
    bind();
}

StandardDateFormatter::OutputType StandardDateFormatter::outputType() const
{
    return m_eOutput;
}

String StandardDateFormatter::GetCustomFormatString() const
{
    return m_sCustomFormat;
}

void StandardDateFormatter::impl_formatToBuffer(Buffer& tBuffer, const void* pValue) const
{
    if (pValue)
        FormatValue(tBuffer, *static_cast<const DateTime*>(pValue));
    else if (m_sNullFormat.empty() && m_eOutput == ValueFormatterTypes::kHTML)
        tBuffer.append(kNonBreakingSpace);
    else
        tBuffer.append(m_sNullFormat);
}

void StandardDateFormatter::FormatValue(Buffer& tBuffer, const DateTime& tValue) const
{
    const int nDigits = m_tPattern.roundedFractionDigits();
    if (nDigits != DatePattern::knNoFraction && tValue.second() >= kLastSecond)
        formatValueImpl(tBuffer, DateUtils::roundSeconds(tValue, nDigits));
    else
        formatValueImpl(tBuffer, tValue);
}

void StandardDateFormatter::formatValueImpl(Buffer& tBuffer, const DateTime& tValue) const
{
    if (m_pProgram)
        m_pProgram->render(tBuffer, tValue);
}

}  // namespace tov
