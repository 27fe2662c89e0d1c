#include <algorithm>
#include <iterator>

#include "project/webformat/textprogram.h"
#include "project/webformat/texttreatments.h"
#include "webformat/textformatterimpl.h"

namespace tov {

namespace {

bool isBlank(wchar_t nChar)
{
    return nChar == L' ' || (nChar >= L'\t' && nChar <= L'\r');
}

// number = *blank *DIGIT; 0 without digits, `nMost` for anything larger.
std::uint32_t numberAt(const wchar_t* pFrom, const wchar_t* pEnd, std::uint32_t nMost)
{
    std::uint64_t nNumber = 0;
    for (pFrom = std::find_if_not(pFrom, pEnd, &isBlank); pFrom != pEnd && *pFrom >= L'0' && *pFrom <= L'9'; ++pFrom)
        nNumber = std::min<std::uint64_t>(nNumber * 10 + static_cast<std::uint64_t>(*pFrom - L'0'), nMost);
    return static_cast<std::uint32_t>(nNumber);
}

std::int32_t pixelsAt(const wchar_t* pFrom, const wchar_t* pEnd)
{
    const std::uint32_t nPixels = numberAt(pFrom, pEnd, INT32_MAX);
    return nPixels == 0 ? -1 : static_cast<std::int32_t>(nPixels);
}

// The end is asked first: a template full of lists that share one far parenthesis is not searched for each of them.
bool hasClosing(const wchar_t* pFrom, const wchar_t* pEnd)
{
    return pFrom != pEnd && (pEnd[-1] == L')' || std::find(pFrom, pEnd, L')') != pEnd);
}

// Reads what stands behind "(" up to a ")" that is there; false where a number is not given.
bool readLimits(SubTextFormatter::TruncateFormat& tLimits, const wchar_t* pFrom, const wchar_t* pEnd)
{
    const std::uint32_t nChars = numberAt(pFrom, pEnd, UINT32_MAX);
    if (nChars == 0)
        return false;
    tLimits.nChars = nChars;
    // A comma behind another reference is that one's, so that no text is looked through twice.
    constexpr wchar_t aStops[] = {L',', L')', L'@'};
    const wchar_t* const pStop = std::find_first_of(pFrom, pEnd, std::begin(aStops), std::end(aStops));
    if (*pStop != L',')
        return true;
    const std::uint32_t nToolTip = numberAt(pStop + 1, pEnd, SubTextFormatter::TruncateFormat::knNoToolTip - 1);
    if (nToolTip == 0)
        return false;
    tLimits.nToolTip = nToolTip;
    return true;
}

}  // namespace

const wchar_t* const SubTextFormatter::ksHtmlStartTag = L"<lumfo:html2fo src=\"";
const wchar_t* const SubTextFormatter::ksHtmlEndTag = L"\"/>";

SubTextFormatter::SubTextFormatter() : m_pProgram(std::make_unique<TextProgram>()) {}

SubTextFormatter::~SubTextFormatter() = default;

void SubTextFormatter::AddLiteral(const String& sText)
{
    Format tFormat;
    tFormat.bLiteral = true;
    tFormat.sText = sText;
    AddFormat(std::move(tFormat));
}

void SubTextFormatter::AddChar(wchar_t nChar)
{
    AddLiteral(String(1, nChar));
}

void SubTextFormatter::AddTextReference(TextType eType)
{
    Format tFormat;
    tFormat.eTextType = eType;
    AddFormat(std::move(tFormat));
}

void SubTextFormatter::AddFormat(Format tFormat)
{
    m_pProgram->append(tFormat);
    m_vFormats.push_back(std::move(tFormat));
}

std::size_t SubTextFormatter::parseImageFormat(const wchar_t* pFrom, const wchar_t* pEnd)
{
    Format tFormat;
    tFormat.eTextType = kImage;
    std::size_t nConsumed = 0;
    const wchar_t* const pOpen = std::find_if_not(pFrom, pEnd, &isBlank);
    const wchar_t* const pClose = pOpen != pEnd && *pOpen == L'(' ? std::find(pOpen, pEnd, L')') : pEnd;
    if (pClose != pEnd)
    {
        const wchar_t* const pComma = std::find(pOpen, pClose, L',');
        tFormat.imageFormat.width = pixelsAt(pOpen + 1, pComma);
        if (pComma != pClose)
            tFormat.imageFormat.height = pixelsAt(pComma + 1, pClose);
        nConsumed = static_cast<std::size_t>(pClose + 1 - pFrom);
    }
    AddFormat(std::move(tFormat));
    return nConsumed;
}

std::size_t SubTextFormatter::parseTruncateFormat(const wchar_t* pFrom, const wchar_t* pEnd)
{
    Format tFormat;
    tFormat.truncateFormat.bTruncate = true;
    std::size_t nConsumed = 0;
    // Kept: the letter of a kind is read and means nothing.
    const bool bKind = pFrom != pEnd && (*pFrom == L'H' || *pFrom == L'J' || *pFrom == L'N');
    const wchar_t* const pOpen = bKind ? pFrom + 1 : pFrom;
    if (pOpen != pEnd && *pOpen == L'(' && hasClosing(pOpen, pEnd) &&
        readLimits(tFormat.truncateFormat, pOpen + 1, pEnd))
        nConsumed = static_cast<std::size_t>(std::find(pOpen, pEnd, L')') + 1 - pFrom);
    AddFormat(std::move(tFormat));
    return nConsumed;
}

void SubTextFormatter::FormatValue(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pValue,
                                   OutputType eOutput) const
{
    render(tBuffer, pValue ? pValue : L"", eOutput, textTreatments(eOutput));
}

void SubTextFormatter::render(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pValue, OutputType eOutput,
                              const TextTreatments& tTreatments) const
{
    m_pProgram->render(tBuffer, pValue, eOutput, tTreatments);
}

const char* SubTextFormatter::typeName(TextType eType)
{
    static constexpr const char* kNames[] = {"kText", "kHTML", "kNoBreakSpaces", "kJavaScriptString", "kImage"};
    const auto nType = static_cast<std::size_t>(eType);
    return nType < std::size(kNames) ? kNames[nType] : "";
}

}  // namespace tov
