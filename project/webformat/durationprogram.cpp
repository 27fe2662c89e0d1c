#include "project/webformat/durationprogram.h"

#include <algorithm>

#include "webformat/formatterconfig.h"

namespace tov {

DurationProgram::DurationProgram() : m_nMaxSignificantDigits(FormatterConfig::maxSignificantDigitsSource()) {}

// Texts are mostly one character long.
void DurationProgram::reserve(std::size_t nFormats)
{
    m_vSteps.reserve(nFormats);
    m_sTexts.reserve(nFormats + knBlock);
}

// Types and bases may be any number: what is no unit is text, what is no unit's basis always appears.
void DurationProgram::append(const DurationFormat& tFormat)
{
    const auto nType = static_cast<unsigned>(tFormat.eType);
    const auto nBasis = std::min<unsigned>(static_cast<unsigned>(tFormat.eOptionalBasedOn), DurationFormat::kRequired);
    if (nType > DurationFormat::kSecond)
        appendText(tFormat, static_cast<std::uint8_t>(nBasis));
    else
        m_vSteps.push_back({false, static_cast<std::uint8_t>(nType), static_cast<std::uint8_t>(nBasis), 0, 0});
}

void DurationProgram::appendText(const DurationFormat& tFormat, std::uint8_t nBasis)
{
    if (tFormat.sText.empty())
        return;
    if (m_vSteps.empty() || !m_vSteps.back().bText || m_vSteps.back().nBasis != nBasis)
        m_vSteps.push_back({true, 0, nBasis, static_cast<std::uint32_t>(m_sTexts.size() - knBlock), 0});
    m_vSteps.back().nTextLength += static_cast<std::uint32_t>(tFormat.sText.size());
    m_sTexts.insert(m_sTexts.size() - knBlock, tFormat.sText);
}

}  // namespace tov
