#include "project/webformat/textprogram.h"

#include "webformat/truncateformatter.h"

namespace tov {

namespace {

using Format = SubTextFormatter::Format;

constexpr std::wstring_view kImageAddressEnd = L"')\"";
constexpr std::wstring_view kImageElementEnd = L"/>";

bool isWrapper(std::wstring_view sText)
{
    return sText == SubTextFormatter::ksHtmlStartTag || sText == SubTextFormatter::ksHtmlEndTag;
}

String imageAttribute(std::wstring_view sName, std::int32_t nPixels)
{
    return nPixels < 0 ? String() : L" " + String(sName) + L"=\"" + std::to_wstring(nPixels) + L"\" ";
}

String imageEnd(const SubTextFormatter::ImageFormat& tImage)
{
    return String(kImageAddressEnd) + imageAttribute(L"width", tImage.width) +
           imageAttribute(L"height", tImage.height) + String(kImageElementEnd);
}

}  // namespace

void TextProgram::append(const Format& tFormat)
{
    if (!m_vSteps.empty() && m_vSteps.back().eKind == Step::kCutValue)
        return;
    if (tFormat.bLiteral)
        appendLiteral(tFormat.sText);
    else if (tFormat.truncateFormat.bTruncate)
        appendStep(Step::kCutValue, tFormat, {});
    else if (tFormat.eTextType == SubTextFormatter::kImage)
        appendStep(Step::kValue, tFormat, imageEnd(tFormat.imageFormat));
    else
        appendStep(Step::kValue, tFormat, {});
}

void TextProgram::appendLiteral(std::wstring_view sText)
{
    if (isWrapper(sText))
    {
        m_bHasWrapper = true;
        appendStep(Step::kWrapper, Format(), sText);
    }
    else if (m_vSteps.empty() || m_vSteps.back().eKind != Step::kText)
        appendStep(Step::kText, Format(), sText);
    else
    {
        m_vSteps.back().nTextLength += sText.size();
        m_sTexts += sText;
    }
}

void TextProgram::appendStep(Step::Kind eKind, const Format& tFormat, std::wstring_view sText)
{
    m_vSteps.push_back({eKind, tFormat.eTextType, tFormat.truncateFormat.nChars, m_sTexts.size(), sText.size()});
    m_sTexts += sText;
}

void TextProgram::render(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pValue,
                         ValueFormatterTypes::OutputType eOutput, const TextTreatments& tTreatments) const
{
    const bool bInWrapper =
        m_bHasWrapper && tBuffer.view().find(SubTextFormatter::ksHtmlStartTag) != std::wstring_view::npos;
    const std::wstring_view sValue(pValue);
    WholeTextWriter tWriter(tBuffer);
    for (const Step& tStep : m_vSteps)
    {
        switch (tStep.eKind)
        {
        case Step::kText: tWriter.write(text(tStep)); break;
        case Step::kWrapper: tWriter.write(bInWrapper ? std::wstring_view() : text(tStep)); break;
        case Step::kValue: writeTreated(tWriter, sValue, tTreatments.of(tStep.eTextType), text(tStep)); break;
        case Step::kCutValue: TruncateFormatter(tStep.nChars, eOutput).formatValue(tBuffer, pValue); break;
        }
    }
    tWriter.finish();
}

}  // namespace tov
