#include "project/webformat/numericrenderer.h"

#include <algorithm>

#include "corefacade/datetime.h"
#include "webformat/outputtypes.h"

namespace tov {

namespace {

using Item = NumericPattern::Item;
using Step = NumericProgram::Step;

constexpr std::int64_t kHoursOfDay = 24;
constexpr std::int64_t kMinutesOfDay = 1440;
constexpr std::int64_t kSecondsOfDay = 86400;

class SectionWalk
{
public:
    SectionWalk(StringBufferBaseTemplate<wchar_t>& tBuffer, const NumericProgram& tProgram,
                const NumericProgram::Section& tSection, const NumericRendering& tRendering)
        : m_tBuffer(tBuffer),
          m_tProgram(tProgram),
          m_tSection(tSection),
          m_tRendering(tRendering),
          m_nLength(static_cast<std::int64_t>(tRendering.sDigits.size())),
          m_bInfinityDue(tRendering.bInfinite)
    {
    }

    void walk()
    {
        for (const Step& tStep : m_tSection.vSteps)
        {
            switch (tStep.eType)
            {
            case Step::kText: appendText(tStep); break;
            case Step::kPoint: appendPoint(tStep); break;
            case Step::kOptional: appendOptional(tStep); break;
            case Step::kRequired: appendRequired(tStep); break;
            case Step::kIndicator: appendIndicator(tStep); break;
            case Step::kSpecial: appendSpecial(m_tProgram.vSpecials[tStep.nFirst]); break;
            }
        }
    }

private:
    void appendText(const Step& tStep)
    {
        const wchar_t* const pText = m_tProgram.sTexts.data() + tStep.nFirst;
        if (tStep.nLast - tStep.nFirst == 1)
            m_tBuffer.append(*pText);
        else
            m_tBuffer.append(pText, static_cast<std::size_t>(tStep.nLast - tStep.nFirst));
    }

    void appendPoint(const Step& tStep)
    {
        if (m_tRendering.nDecimalPoint < m_nLength)
            appendText(tStep);
    }

    void appendOptional(const Step& tStep)
    {
        if (m_tRendering.bInfinite)
        {
            appendInfinityOnce();
            return;
        }
        const std::int64_t nPoint = m_tRendering.nDecimalPoint;
        const std::int64_t nFirst = std::max<std::int64_t>(nPoint + tStep.nFirst, 0);
        const std::int64_t nLast = std::min(nPoint + tStep.nLast, m_nLength);
        if (nFirst < nLast)
            appendDigits(nFirst, nLast);
    }

    void appendRequired(const Step& tStep)
    {
        if (m_tRendering.bInfinite)
        {
            appendInfinityOnce();
            return;
        }
        const std::int64_t nPoint = m_tRendering.nDecimalPoint;
        const std::int64_t nFirstDigit = std::max<std::int64_t>(nPoint + tStep.nFirst, 0);
        appendDigits(std::min(nFirstDigit, nPoint + tStep.nRequired), nPoint + tStep.nLast);
    }

    void appendInfinityOnce()
    {
        if (m_bInfinityDue)
            m_tBuffer.append(L"INF", 3);
        m_bInfinityDue = false;
    }

    // The digits at [nFirst, nLast), zeros where the value has none, with separators inside the integer digits. Room is
    // made once for all of them.
    void appendDigits(std::int64_t nFirst, std::int64_t nLast)
    {
        const std::size_t nDigits = static_cast<std::size_t>(nLast - nFirst);
        const std::size_t nSeparators = m_tSection.bGrouping ? nDigits / 3 + 1 : 0;
        if (!m_tBuffer.reserveFree(nDigits + nSeparators * m_tSection.tGroupSeparator.nLength))
            return;
        wchar_t* const pStart = m_tBuffer.freePlace();
        wchar_t* pTarget = pStart;
        const std::int64_t nIntegerLast = std::min<std::int64_t>(nLast, m_tRendering.nDecimalPoint);
        if (m_tSection.bGrouping && nFirst < nIntegerLast)
        {
            // No separator stands before the value's first digit: zeros in front of it are not grouped.
            const std::int64_t nGrouped = std::clamp<std::int64_t>(1, nFirst, nIntegerLast);
            pTarget = writePlain(nFirst, nGrouped, pTarget);
            pTarget = writeGrouped(nGrouped, nIntegerLast, pTarget);
            nFirst = nIntegerLast;
        }
        m_tBuffer.advance(static_cast<std::size_t>(writePlain(nFirst, nLast, pTarget) - pStart));
    }

    wchar_t digitAt(std::int64_t nPlace) const
    {
        const bool bThere = nPlace >= 0 && nPlace < m_nLength;
        return static_cast<wchar_t>(bThere ? m_tRendering.sDigits[static_cast<std::size_t>(nPlace)] : '0');
    }

    wchar_t* writePlain(std::int64_t nFirst, std::int64_t nLast, wchar_t* pTarget) const
    {
        for (std::int64_t nPlace = nFirst; nPlace < nLast; ++nPlace)
            *pTarget++ = digitAt(nPlace);
        return pTarget;
    }

    // Integer digits that the value has. A separator stands before each that has a multiple of three digits from it to
    // the point.
    wchar_t* writeGrouped(std::int64_t nFirst, std::int64_t nLast, wchar_t* pTarget) const
    {
        const std::wstring_view sSeparator = m_tProgram.text(m_tSection.tGroupSeparator);
        const char* const pDigits = m_tRendering.sDigits.data();
        std::int64_t nPlace = std::min(nFirst + (m_tRendering.nDecimalPoint - nFirst) % 3, nLast);
        pTarget = std::copy(pDigits + nFirst, pDigits + nPlace, pTarget);
        for (; nLast - nPlace >= 3; nPlace += 3)
            pTarget = std::copy_n(pDigits + nPlace, 3, writeSeparator(sSeparator, pTarget));
        if (nPlace < nLast)
            pTarget = std::copy(pDigits + nPlace, pDigits + nLast, writeSeparator(sSeparator, pTarget));
        return pTarget;
    }

    // Nearly all locales separate by one character, which is not worth a call.
    static wchar_t* writeSeparator(std::wstring_view sSeparator, wchar_t* pTarget)
    {
        if (sSeparator.size() != 1)
            return std::copy(sSeparator.begin(), sSeparator.end(), pTarget);
        *pTarget = sSeparator.front();
        return pTarget + 1;
    }

    void appendIndicator(const Step& tStep)
    {
        if (m_tRendering.pScale)
            m_tBuffer.append(m_tProgram.text(m_tRendering.pScale->tIndicator));
        else
            appendText(tStep);
    }

    void appendSpecial(const NumericProgram::Special& tSpecial)
    {
        switch (tSpecial.eType)
        {
        case Item::kDOWAbbrev: appendDayName(Locale::kAbbreviatedDay); break;
        case Item::kDOW: appendDayName(Locale::kDay); break;
        case Item::kMonthAbbrev: appendMonthName(Locale::kAbbreviatedMonth); break;
        case Item::kMonth: appendMonthName(Locale::kNominitiveMonth); break;
        case Item::kHour: appendHour(tSpecial); break;
        case Item::kHourMin: appendHourAndMinute(tSpecial); break;
        case Item::kTime: appendTime(tSpecial); break;
        default: appendDuration(tSpecial); break;
        }
    }

    std::int64_t wholePartWithin(const NumericProgram::Special& tSpecial, std::int64_t nLeast, std::int64_t nMost) const
    {
        return m_tRendering.pOperations->wholePartWithin(m_tRendering.pValue, tSpecial.nMultiplierNumerator,
                                                         tSpecial.nMultiplierDenominator, nLeast, nMost);
    }

    std::int64_t wholeNumberWithin(std::int64_t nLeast, std::int64_t nMost) const
    {
        return m_tRendering.pOperations->wholePartWithin(m_tRendering.pValue, 1, 1, nLeast, nMost);
    }

    void appendName(Locale::NameKind eKind, std::int64_t nIndex)
    {
        const String& sName = m_tProgram.tLocale.getName(eKind, static_cast<int>(nIndex));
        ValueFormatterTypes::encodeToBufferOfType(m_tBuffer, m_tProgram.eOutput, sName.data(), sName.size());
    }

    // 1 is the last day of the locale's list, 2 its first: the week of the values starts on Sunday, the list's on
    // Monday.
    void appendDayName(Locale::NameKind eKind)
    {
        const std::int64_t nDay = wholeNumberWithin(1, 7);
        if (nDay != NumericValueOperations::knOutside)
            appendName(eKind, (nDay + 5) % 7);
    }

    void appendMonthName(Locale::NameKind eKind)
    {
        const std::int64_t nMonth = wholeNumberWithin(1, 12);
        if (nMonth != NumericValueOperations::knOutside)
            appendName(eKind, nMonth - 1);
    }

    void appendHour(const NumericProgram::Special& tSpecial)
    {
        const std::int64_t nHours = wholePartWithin(tSpecial, 0, kHoursOfDay);
        if (nHours != NumericValueOperations::knOutside)
            appendTimeOfDay(tSpecial, nHours, 0, 0);
    }

    void appendHourAndMinute(const NumericProgram::Special& tSpecial)
    {
        const std::int64_t nMinutes = wholePartWithin(tSpecial, 0, kMinutesOfDay);
        if (nMinutes != NumericValueOperations::knOutside)
            appendTimeOfDay(tSpecial, nMinutes / 60, nMinutes % 60, 0);
    }

    void appendTime(const NumericProgram::Special& tSpecial)
    {
        const std::int64_t nSeconds = wholePartWithin(tSpecial, 0, kSecondsOfDay);
        if (nSeconds != NumericValueOperations::knOutside)
            appendTimeOfDay(tSpecial, nSeconds / 3600, nSeconds / 60 % 60, nSeconds % 60);
    }

    void appendTimeOfDay(const NumericProgram::Special& tSpecial, std::int64_t nHour, std::int64_t nMinute,
                         std::int64_t nSecond)
    {
        DateTime tTime;
        tTime.setTime(static_cast<unsigned>(nHour), static_cast<unsigned>(nMinute), static_cast<unsigned>(nSecond));
        tSpecial.hSubFormatter->formatToBuffer(m_tBuffer, &tTime);
    }

    void appendDuration(const NumericProgram::Special& tSpecial)
    {
        if (m_tRendering.bInfinite)
            appendInfinityOnce();
        else
            m_tRendering.pOperations->formatDuration(m_tBuffer, m_tRendering.pValue, tSpecial);
    }

    StringBufferBaseTemplate<wchar_t>& m_tBuffer;
    const NumericProgram& m_tProgram;
    const NumericProgram::Section& m_tSection;
    const NumericRendering& m_tRendering;
    const std::int64_t m_nLength;
    bool m_bInfinityDue;
};

}  // namespace

void renderNumericSection(StringBufferBaseTemplate<wchar_t>& tBuffer, const NumericProgram& tProgram,
                          const NumericProgram::Section& tSection, const NumericRendering& tRendering)
{
    SectionWalk(tBuffer, tProgram, tSection, tRendering).walk();
}

std::size_t trimmedLength(std::string_view sDigits, int nDecimalPoint, std::uint32_t nMinFractionDigits)
{
    const std::size_t nLeast = static_cast<std::size_t>(nDecimalPoint) + nMinFractionDigits;
    std::size_t nLength = sDigits.size();
    while (nLength > nLeast && sDigits[nLength - 1] == '0')
        --nLength;
    return nLength;
}

}  // namespace tov
