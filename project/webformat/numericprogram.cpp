#include "project/webformat/numericprogram.h"

#include <algorithm>

#include "project/webformat/scalenames.h"

namespace tov {

namespace {

using Item = NumericPattern::Item;
using Step = NumericProgram::Step;

// The markup that opens and closes a colour; empty for outputs without one. Red is the only colour there is.
struct ColorTags
{
    std::wstring_view sOpen;
    std::wstring_view sClose;
};

ColorTags colorTagsFor(ValueFormatterTypes::OutputType eOutput)
{
    if (eOutput == ValueFormatterTypes::kHTML)
        return {L"<font style=\"color:red\">", L"</font>"};
    if (eOutput == ValueFormatterTypes::kPDF)
        return {L"<fo:inline color=\"red\">", L"</fo:inline>"};
    return {};
}

class Binder
{
public:
    Binder(NumericProgram& tProgram, const NumericPattern& tPattern) : m_tProgram(tProgram), m_tPattern(tPattern) {}

    void bindSection(const NumericPattern::Section& tSource)
    {
        m_pSource = &tSource;
        m_pTarget = &m_tProgram.vSections.emplace_back();
        m_nOpenColors = 0;
        copySettings();
        for (const Item& tItem : tSource.vDigits)
            bindItem(tItem);
        const ColorTags tTags = colorTagsFor(m_tProgram.eOutput);
        for (; m_nOpenColors > 0; --m_nOpenColors)
            addText(tTags.sClose);
    }

    NumericText store(std::wstring_view sText)
    {
        const NumericText tText{static_cast<std::uint32_t>(m_tProgram.sTexts.size()),
                                static_cast<std::uint32_t>(sText.size())};
        m_tProgram.sTexts.append(sText);
        return tText;
    }

    // What comes from the locale is made safe for the output like any other literal.
    NumericText storeEncoded(const String& sText)
    {
        return store(WebValueFormatter::ConvertLiteral(sText, ValueFormatterTypes::kText, m_tProgram.eOutput));
    }

private:
    void copySettings()
    {
        NumericProgram::Section& tTarget = *m_pTarget;
        tTarget.vMods = m_pSource->vMods;
        tTarget.nPower10 = m_pSource->nPower10;
        tTarget.nMinFractionDigits = m_pSource->nMinFractionDigits;
        tTarget.nMaxFractionDigits = m_pSource->nMaxFractionDigits;
        tTarget.bGrouping = m_pSource->bGrouping;
        tTarget.bAutoScale = m_pSource->eScaleFactor == NumericPattern::kAuto;
        tTarget.bPercent = m_pSource->bPercent;
        tTarget.bScalingComma = m_pSource->bScalingComma;
        if (tTarget.bGrouping)
        {
            tTarget.tGroupSeparator = storeEncoded(m_tProgram.tLocale.getInfo(
                m_pSource->bCurrency ? Locale::kMonetaryThousandsSeparator : Locale::kThousandsSeparator));
        }
    }

    void bindItem(const Item& tItem)
    {
        switch (tItem.eType)
        {
        case Item::kText: addText(m_tPattern.text(tItem)); break;
        case Item::kOptional: addStep(Step::kOptional, tItem.nStartDigit, tItem.nEndDigit); break;
        case Item::kRequired: addRequired(tItem.nStartDigit, tItem.nEndDigit); break;
        case Item::kDecimal: addPoint(); break;
        case Item::kColor: addColor(); break;
        case Item::kIndicator: addIndicator(); break;
        default: addSpecial(tItem); break;
        }
    }

    // Neighbours of one kind become one step: "#,##0" has two runs of optional digits, text comes piece by piece.
    void addStep(Step::Type eType, std::int32_t nFirst, std::int32_t nLast)
    {
        std::vector<Step>& vSteps = m_pTarget->vSteps;
        if (nFirst >= nLast)
            return;
        if (!vSteps.empty() && vSteps.back().eType == eType && vSteps.back().nLast == nFirst)
            vSteps.back().nLast = nLast;
        else
            vSteps.push_back({eType, nFirst, nLast});
    }

    // The optional integer digits in front, as in "#,##0", are written in the same step.
    void addRequired(std::int32_t nFirst, std::int32_t nLast)
    {
        std::vector<Step>& vSteps = m_pTarget->vSteps;
        const bool bContinues =
            !vSteps.empty() && vSteps.back().eType == Step::kOptional && vSteps.back().nLast == nFirst;
        if (nFirst < nLast && nLast <= 0 && bContinues)
            vSteps.back() = {Step::kRequired, vSteps.back().nFirst, nLast, nFirst};
        else if (nFirst < nLast)
            vSteps.push_back({Step::kRequired, nFirst, nLast, nFirst});
    }

    void addText(std::wstring_view sText)
    {
        const NumericText tText = store(sText);
        const std::int32_t nStart = static_cast<std::int32_t>(tText.nStart);
        addStep(Step::kText, nStart, nStart + static_cast<std::int32_t>(tText.nLength));
    }

    void addPoint()
    {
        const NumericText tText = storeEncoded(m_tProgram.tLocale.getInfo(
            m_pSource->bCurrency ? Locale::kMonetaryDecimalSeparator : Locale::kDecimalSeparator));
        m_pTarget->vSteps.push_back({Step::kPoint, static_cast<std::int32_t>(tText.nStart),
                                     static_cast<std::int32_t>(tText.nStart + tText.nLength)});
    }

    void addColor()
    {
        const ColorTags tTags = colorTagsFor(m_tProgram.eOutput);
        if (tTags.sOpen.empty())
            return;
        addText(tTags.sOpen);
        ++m_nOpenColors;
    }

    // Where the scale is chosen for each value, the section's own text serves the values that no scale fits.
    void addIndicator()
    {
        if (!m_pTarget->bAutoScale)
        {
            addText(m_pSource->sScaleIndicator);
            return;
        }
        const NumericText tText = store(m_pSource->sScaleIndicator);
        const std::int32_t nStart = static_cast<std::int32_t>(tText.nStart);
        m_pTarget->vSteps.push_back({Step::kIndicator, nStart, nStart + static_cast<std::int32_t>(tText.nLength)});
    }

    void addSpecial(const Item& tItem)
    {
        m_pTarget->vSteps.push_back({Step::kSpecial, static_cast<std::int32_t>(m_tProgram.vSpecials.size()), 0});
        m_tProgram.vSpecials.push_back(
            {tItem.eType, tItem.nMultiplierNumerator, tItem.nMultiplierDenominator, tItem.hSubFormatter});
    }

    NumericProgram& m_tProgram;
    const NumericPattern& m_tPattern;
    const NumericPattern::Section* m_pSource = nullptr;
    NumericProgram::Section* m_pTarget = nullptr;
    int m_nOpenColors = 0;
};

}  // namespace

NumericProgram::NumericProgram(const NumericPattern& tPattern, const Locale& tTheLocale,
                               ValueFormatterTypes::OutputType eTheOutput, std::wstring_view sMinus)
    : tLocale(tTheLocale), eOutput(eTheOutput), bValidExcelPattern(tPattern.sections().front().bValidExcelPattern)
{
    Binder tBinder(*this, tPattern);
    const std::size_t nSections = std::min(knSections, tPattern.sections().size());
    vSections.reserve(nSections);
    bool bAutoScale = false;
    for (std::size_t i = 0; i < nSections; ++i)
    {
        tBinder.bindSection(tPattern.sections()[i]);
        bAutoScale = bAutoScale || vSections.back().bAutoScale;
    }
    if (bAutoScale)
    {
        for (const auto& tScale : tLocale.getScaleFactors())
            vScales.push_back({-scaleNumberOfName(tScale.sName), tBinder.storeEncoded(tScale.sIndicator)});
    }
    findStraightLines(sMinus);
}

void NumericProgram::findStraightLines(std::wstring_view sMinus)
{
    bStraight = aStraight[0].recognise(*this, 0) && (vSections.size() == 1 || aStraight[1].recognise(*this, 1));
    if (!bStraight)
        return;
    if (vSections.size() == 1)
    {
        aStraight[1] = aStraight[0];
        const std::size_t nStart = sTexts.size();
        sTexts.append(sMinus).append(String(text(aStraight[0].tPrefix)));
        aStraight[1].tPrefix = {static_cast<std::uint32_t>(nStart), static_cast<std::uint32_t>(sTexts.size() - nStart)};
    }
    sTexts.append(StraightLine::knBlock, L'\0');
}

}  // namespace tov
