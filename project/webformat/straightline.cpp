#include "project/webformat/straightline.h"

#include "project/webformat/numericprogram.h"

namespace tov {

namespace {

using Step = NumericProgram::Step;
using Section = NumericProgram::Section;

constexpr std::uint32_t kMostText = 64;

// Reads the steps of a section one after the other.
class Recogniser
{
public:
    Recogniser(const NumericProgram& tProgram, const Section& tSection)
        : m_tProgram(tProgram),
          m_tSection(tSection),
          m_pStep(tSection.vSteps.data()),
          m_pEnd(m_pStep + tSection.vSteps.size())
    {
    }

    bool recognise(StraightLine& tLine)
    {
        if (m_tSection.bAutoScale || m_tSection.nPower10 != 0 || !m_tSection.vMods.empty() ||
            m_tSection.nMaxFractionDigits > StraightLine::knMostPlaces)
            return false;
        tLine.tPrefix = text();
        if (!wholeDigits(tLine) || !grouping(tLine) || !fractionDigits(tLine))
            return false;
        tLine.tSuffix = text();
        return m_pStep == m_pEnd && tLine.tPrefix.nLength <= kMostText && tLine.tSuffix.nLength <= kMostText;
    }

private:
    bool is(Step::Type eType) const { return m_pStep != m_pEnd && m_pStep->eType == eType; }

    NumericText text()
    {
        if (!is(Step::kText))
            return {};
        const Step& tStep = *m_pStep++;
        return {static_cast<std::uint32_t>(tStep.nFirst), static_cast<std::uint32_t>(tStep.nLast - tStep.nFirst)};
    }

    // All digits that the value has, and at least one or none.
    bool wholeDigits(StraightLine& tLine)
    {
        const bool bRequired = is(Step::kRequired);
        if ((!bRequired && !is(Step::kOptional)) || m_pStep->nFirst > NumericPattern::knLeftmostDigit ||
            m_pStep->nLast != 0 || (bRequired && m_pStep->nRequired != -1))
            return false;
        tLine.nDroppedZero = bRequired ? 0 : 1;
        ++m_pStep;
        return true;
    }

    bool grouping(StraightLine& tLine) const
    {
        tLine.bGrouped = m_tSection.bGrouping;
        if (!tLine.bGrouped)
            return true;
        const std::wstring_view sSeparator = m_tProgram.text(m_tSection.tGroupSeparator);
        if (sSeparator.size() != 1)
            return false;
        tLine.nSeparator = sSeparator.front();
        return true;
    }

    // None, or a point of one character and behind it digits, the required ones first.
    bool fractionDigits(StraightLine& tLine)
    {
        tLine.nPlaces = m_tSection.nMaxFractionDigits;
        tLine.nLeastPlaces = m_tSection.nMinFractionDigits;
        if (tLine.nPlaces == 0)
            return !is(Step::kPoint);
        if (!is(Step::kPoint) || m_pStep->nLast - m_pStep->nFirst != 1)
            return false;
        tLine.nPoint = m_tProgram.sTexts[static_cast<std::size_t>(m_pStep++->nFirst)];
        const std::int32_t nLeast = static_cast<std::int32_t>(tLine.nLeastPlaces);
        const std::int32_t nMost = static_cast<std::int32_t>(tLine.nPlaces);
        return (nLeast == 0 || digits(Step::kRequired, 0, nLeast)) &&
               (nLeast == nMost || digits(Step::kOptional, nLeast, nMost));
    }

    bool digits(Step::Type eType, std::int32_t nFirst, std::int32_t nLast)
    {
        if (!is(eType) || m_pStep->nFirst != nFirst || m_pStep->nLast != nLast)
            return false;
        const bool bAllRequired = eType != Step::kRequired || m_pStep->nRequired == nFirst;
        ++m_pStep;
        return bAllRequired;
    }

    const NumericProgram& m_tProgram;
    const Section& m_tSection;
    const Step* m_pStep;
    const Step* m_pEnd;
};

}  // namespace

constexpr std::array<wchar_t, 4 * 1000 + 4> kDigitGroups = []
{
    std::array<wchar_t, 4 * 1000 + 4> aGroups{};
    for (unsigned n = 0; n < 1000; ++n)
    {
        aGroups[4 * n] = static_cast<wchar_t>(L'0' + n / 100);
        aGroups[4 * n + 1] = static_cast<wchar_t>(L'0' + n / 10 % 10);
        aGroups[4 * n + 2] = static_cast<wchar_t>(L'0' + n % 10);
    }
    return aGroups;
}();

bool StraightLine::recognise(const NumericProgram& tProgram, std::size_t nSection)
{
    *this = StraightLine();
    return Recogniser(tProgram, tProgram.vSections[nSection]).recognise(*this);
}

}  // namespace tov
