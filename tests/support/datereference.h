#pragma once

#include <string>

#include "corefacade/dateutils.h"
#include "webformat/datepattern.h"

namespace tov {

// Renders a date pattern element by element, in the plainest way: what the library's own rendering is compared with.
class DateReference
{
public:
    explicit DateReference(const DatePattern& tPattern) : m_tPattern(tPattern) {}

    String show(const DateTime& tGiven)
    {
        const int nDigits = m_tPattern.roundedFractionDigits();
        const bool bRound = nDigits != DatePattern::knNoFraction && tGiven.second() >= 59;
        const DateTime tValue = bRound ? DateUtils::roundSeconds(tGiven, nDigits) : tGiven;
        m_sResult.clear();
        m_tLocale = m_tPattern.locale();
        bool bBehindDay = false;
        for (const DatePattern::Element& tElement : m_tPattern.elements())
        {
            showElement(tElement, tValue, bBehindDay);
            bBehindDay = tElement.eType == DatePattern::kDay;
        }
        return m_sResult;
    }

private:
    void showElement(const DatePattern::Element& tElement, const DateTime& tValue, bool bBehindDay)
    {
        switch (tElement.eType)
        {
        case DatePattern::kYear:
            if (tElement.bCaps)
                m_sResult += std::to_wstring(std::abs(tValue.year() % 100));
            else
                showNumber(tValue.year(), tElement.nPad);
            break;
        case DatePattern::kMonth: showNumber(tValue.month(), tElement.nPad); break;
        case DatePattern::kDay: showNumber(tValue.day(), tElement.nPad); break;
        case DatePattern::kMinute: showNumber(tValue.minute(), tElement.nPad); break;
        case DatePattern::kSecond: showNumber(tValue.second(), tElement.nPad); break;
        case DatePattern::kHour12: showNumber(tValue.hour() % 12 == 0 ? 12 : tValue.hour() % 12, tElement.nPad); break;
        case DatePattern::kHour24: showNumber(tValue.hour() % 24, tElement.nPad); break;
        case DatePattern::kSecondWDecimal: showFraction(tElement, tValue); break;
        case DatePattern::kSeparator: m_sResult += m_tPattern.text(tElement); break;
        case DatePattern::kMonthAlpha: showMonth(tElement, tValue, bBehindDay); break;
        case DatePattern::kAMPM: showText(m_tLocale.getInfo(tValue.hour() > 11 ? Locale::kPM : Locale::kAM)); break;
        case DatePattern::kDOW: showNumber(dayOfWeek(tValue), tElement.nPad); break;
        case DatePattern::kDOWAlpha: showDay(tElement, tValue); break;
        case DatePattern::kEra: showEra(tValue); break;
        case DatePattern::kSetLocale: m_tLocale = m_tPattern.newLocale(tElement); break;
        case DatePattern::kResetLocale: m_tLocale = m_tPattern.locale(); break;
        }
    }

    void showNumber(long nNumber, unsigned nPad)
    {
        const String sDigits = std::to_wstring(nPad == 0 ? nNumber : std::labs(nNumber));
        const String sPadded = String(nPad > sDigits.size() ? nPad - sDigits.size() : 0, L'0') + sDigits;
        m_sResult += nPad == 0 ? sPadded : sPadded.substr(sPadded.size() - nPad);
    }

    void showText(const String& sText)
    {
        m_sResult += WebValueFormatter::ConvertLiteral(sText, ValueFormatterTypes::kText, m_tPattern.outputType());
    }

    void showFraction(const DatePattern::Element& tElement, const DateTime& tValue)
    {
        const double fSeconds = tValue.second() + tValue.nanoseconds() / 1'000'000'000.0;
        m_sResult += m_tPattern.secondFormatter(tElement)->formatAsString(&fSeconds);
    }

    void showMonth(const DatePattern::Element& tElement, const DateTime& tValue, bool bBehindDay)
    {
        const int nMonth = static_cast<int>(tValue.month()) - 1;
        if (tElement.nPad == 3)
            showName(m_tLocale.getName(Locale::kAbbreviatedMonth, nMonth), tElement);
        else if (tElement.nPad > 3 && bBehindDay)
            showName(m_tLocale.getName(Locale::kGenetiveMonth, nMonth), tElement);
        else
            showName(m_tLocale.getName(Locale::kNominitiveMonth, nMonth), tElement);
    }

    void showDay(const DatePattern::Element& tElement, const DateTime& tValue)
    {
        const Locale::NameKind eKind = tElement.nPad > 3 ? Locale::kDay : Locale::kAbbreviatedDay;
        showName(m_tLocale.getName(eKind, dayOfWeek(tValue)), tElement);
    }

    void showName(const String& sName, const DatePattern::Element& tElement)
    {
        if (tElement.nPad <= 2)
            showText(sName.substr(0, 1));
        else
            showText(tElement.bCaps ? m_tLocale.mapString(Locale::kUpperCase, sName) : sName);
    }

    void showEra(const DateTime& tValue)
    {
        StringBufferTemplate<wchar_t, 32> tEra;
        m_tLocale.getEra(tValue, tEra);
        showText(tEra.toString());
    }

    static int dayOfWeek(const DateTime& tValue)
    {
        static constexpr long kDaysBefore[] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
        const auto floorOf = [](long nYears, long nBy) { return nYears / nBy - (nYears % nBy < 0 ? 1 : 0); };
        const long nYear = tValue.year();
        const long nBefore = nYear - 1;
        const bool bLeap = (nYear % 4 == 0 && nYear % 100 != 0) || nYear % 400 == 0;
        const unsigned nMonth = tValue.month();
        const long nDays = static_cast<long>(tValue.day()) - 1 + 365 * nBefore + floorOf(nBefore, 4) -
                           floorOf(nBefore, 100) + floorOf(nBefore, 400) +
                           (nMonth >= 1 && nMonth <= 12 ? kDaysBefore[nMonth - 1] : 0) +
                           (nMonth > 2 && nMonth <= 12 && bLeap ? 1 : 0);
        return static_cast<int>(((nDays % 7) + 7) % 7);
    }

    const DatePattern& m_tPattern;
    Locale m_tLocale;
    String m_sResult;
};

}  // namespace tov
