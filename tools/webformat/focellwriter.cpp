#include "focellwriter.h"

#include <algorithm>
#include <cstdio>
#include <string>
#include <utility>

#include "corefacade/imagesizedeterminer.h"
#include "htmltokens.h"
#include "jsonvalues.h"
#include "webbedrock/utf8.h"
#include "webformat/outputtypes.h"

namespace tov {

namespace {

constexpr double kfPointsPerPixel = 0.75;  // 96 pixels to the inch
constexpr double kfTallestPicture = 60;
constexpr double kfUnknownPicture = 48;  // an image on the web whose size nobody knows before it is fetched
constexpr wchar_t knBreakOpportunity = 0x200B;

// The image's own size in pixels; none for what the library does not recognise as an image.
std::optional<FoPictureSize> pixelsOfData(std::wstring_view sUrl)
{
    const std::size_t nComma = std::min(sUrl.find(L','), sUrl.size());
    const std::wstring_view sHead = sUrl.substr(0, nComma);
    constexpr std::wstring_view ksBase64 = L";base64";
    if (sHead.size() < ksBase64.size() || sHead.substr(sHead.size() - ksBase64.size()) != ksBase64)
        return std::nullopt;
    const std::optional<std::string> sBytes = decodeBase64(toUtf8(sUrl.substr(std::min(nComma + 1, sUrl.size()))));
    ImageSizeDeterminer::ImageType eType = ImageSizeDeterminer::kPNG;
    unsigned long nWidth = 0;
    unsigned long nHeight = 0;
    if (!sBytes || !ImageSizeDeterminer::determineTypeAndSizesOfBuffer(
                       reinterpret_cast<const unsigned char*>(sBytes->data()), sBytes->size(), eType, nWidth, nHeight))
        return std::nullopt;
    return FoPictureSize{static_cast<double>(nWidth), static_cast<double>(nHeight)};
}

// "12.5pt"
String points(double fPoints)
{
    char aText[32];
    std::snprintf(aText, sizeof aText, "%.1fpt", fPoints);
    return fromUtf8(aText).value_or(String());
}

// The address as it may stand in url('...'): everything but what a URI is made of as its UTF-8 bytes in hexadecimal.
String uriText(std::wstring_view sAddress)
{
    constexpr std::string_view ksPlain =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789-._~:/?#[]@!$&*+,;=%";
    String sResult;
    for (const char nByte : toUtf8(sAddress))
    {
        if (ksPlain.find(nByte) != std::string_view::npos)
        {
            sResult += static_cast<wchar_t>(nByte);
            continue;
        }
        char aText[8];
        std::snprintf(aText, sizeof aText, "%%%02X", static_cast<unsigned>(static_cast<unsigned char>(nByte)));
        sResult.append(aText, aText + 3);
    }
    return sResult;
}

// The start of the inline for a group of characters, with the fonts to prefer where their order in general will not do.
// Arabic letters are not joined with every font that has them; and where a font prints characters outside the basic
// plane, processors note wrong characters for those that come after it, so that copied text is wrong: such characters
// stay out of the font of the text.
std::wstring_view inlineOf(unsigned nGroup)
{
    switch (nGroup)
    {
    case knArabicFontGroup: return L"<fo:inline font-family=\"FreeSerif, DejaVu Sans Condensed\">";
    case knSupplementaryFontGroup: return L"<fo:inline font-family=\"Symbola, FreeSerif, DejaVu Sans Condensed\">";
    default: return L"<fo:inline>";
    }
}

bool hasLook(const FoStyle& tStyle)
{
    return tStyle.bBold || tStyle.bItalic || tStyle.bUnderline || tStyle.bRed;
}

}  // namespace

std::optional<FoPictureSize> pictureSizeOf(const FoImage& tImage, double fWidest)
{
    const bool bWeb = lowerAscii(std::wstring_view(tImage.sSource).substr(0, 4)) == L"http";
    const std::optional<FoPictureSize> tOwn =
        bWeb ? FoPictureSize{tImage.nWidth == 0 ? kfUnknownPicture : 0.0, 0.0} : pixelsOfData(tImage.sSource);
    if (!tOwn)
        return std::nullopt;
    FoPictureSize tSize = *tOwn;
    // One side that is given takes the other along.
    if (tImage.nWidth != 0 && tOwn->fWidth > 0)
        tSize.fHeight = tOwn->fHeight * tImage.nWidth / tOwn->fWidth;
    if (tImage.nHeight != 0 && tOwn->fHeight > 0 && tImage.nWidth == 0)
        tSize.fWidth = tOwn->fWidth * tImage.nHeight / tOwn->fHeight;
    if (tImage.nWidth != 0)
        tSize.fWidth = tImage.nWidth;
    if (tImage.nHeight != 0)
        tSize.fHeight = tImage.nHeight;
    double fScale = std::min(kfPointsPerPixel, fWidest / std::max(tSize.fWidth, 1.0));
    if (tSize.fHeight > 0)
        fScale = std::min(fScale, kfTallestPicture / tSize.fHeight);
    return FoPictureSize{tSize.fWidth * fScale, tSize.fHeight * fScale};
}

void FoCellMeasure::text(std::wstring_view sText, const FoStyle& tStyle)
{
    constexpr unsigned knEnough = 1000000;  // a thousand times the font size: no page is wider
    for (const wchar_t nCharacter : sText)
    {
        const unsigned nAdvance = advanceOf(nCharacter, tStyle.bBold);
        const bool bEnd = nCharacter == L' ' || nCharacter == knBreakOpportunity || breaksAnywhere(nCharacter);
        m_nWord = std::min(bEnd ? nAdvance : m_nWord + nAdvance, knEnough);
        m_nLine = std::min(m_nLine + nAdvance, knEnough);
        m_nLongestWord = std::max(m_nLongestWord, nCharacter == L' ' ? 0 : m_nWord);
        m_nLongestLine = std::max(m_nLongestLine, m_nLine);
        if (nCharacter == L' ')
            m_nWord = 0;
    }
}

void FoCellMeasure::image(const FoImage& tImage, const FoStyle& tStyle)
{
    constexpr double kfWidestPicture = 144;
    if (const std::optional<FoPictureSize> tSize = pictureSizeOf(tImage, kfWidestPicture))
        m_fWidestPicture = std::max(m_fWidestPicture, tSize->fWidth);
    else
        text(tImage.sAlternative, tStyle);
}

void FoCellMeasure::lineBreak()
{
    m_nWord = 0;
    m_nLine = 0;
}

void FoCellWriter::text(std::wstring_view sText, const FoStyle& tStyle)
{
    if (!(tStyle == m_tStyle))
    {
        closeStyle();
        putBreaks();
        openStyle(tStyle);
    }
    for (const wchar_t nCharacter : sText)
        if (const std::optional<wchar_t> tPrinted = printedCharacter(m_nLast, nCharacter))
            put(*tPrinted);
}

void FoCellWriter::put(wchar_t nCharacter)
{
    if (nCharacter == L'\n')
        return lineBreak();
    putBreaks();
    if (m_eFirst == TextDirection::kNeutral)
        m_eFirst = directionOf(nCharacter);
    if (nCharacter == L' ' || nCharacter == L'\t')
        return putBlank();
    makeRoom(nCharacter);
    enterGroup(nCharacter);
    m_sSegment += nCharacter;
    m_nLast = nCharacter;
}

// Of several blanks in preformatted text all but the first cannot be collapsed; neither can one at a line's start.
void FoCellWriter::putBlank()
{
    const bool bKeep = m_tStyle.bPreformatted && (m_nLast == L' ' || m_nLast == L'\n');
    m_sSegment += bKeep ? L'\u00A0' : L' ';
    m_nPiece = bKeep ? m_nPiece + advanceOf(L' ', false) : 0;
    m_nLast = L' ';
}

void FoCellWriter::putBreaks()
{
    if (m_nBreaks == 0)
        return;
    const FoStyle tStyle = m_tStyle;
    closeStyle();
    endLine();
    m_sContent.append(std::exchange(m_nBreaks, 0), L'\n');
    openStyle(tStyle);
}

void FoCellWriter::endLine()
{
    const TextDirection eLine = m_tOptions.eLines == TextDirection::kNeutral ? m_eFirst : m_tOptions.eLines;
    const bool bEmbed = eLine != TextDirection::kNeutral && eLine != m_tOptions.eDirection && !m_tLine.view().empty();
    if (bEmbed)
        m_sContent.append(L"<fo:bidi-override unicode-bidi=\"embed\" direction=\"")
            .append(eLine == TextDirection::kRightToLeft ? L"rtl" : L"ltr")
            .append(L"\">");
    m_sContent += m_tLine.view();
    if (bEmbed)
        m_sContent += L"</fo:bidi-override>";
    m_tLine.clear();
    m_nPiece = 0;
    m_nLast = L'\n';
    m_eFirst = TextDirection::kNeutral;
}

// Breaks a word before the character that does not fit on a line any more.
void FoCellWriter::makeRoom(wchar_t nCharacter)
{
    const unsigned nAdvance = advanceOf(nCharacter, m_tStyle.bBold);
    if (breaksAnywhere(nCharacter) || nCharacter == knBreakOpportunity)
        m_nPiece = 0;
    else if (m_nPiece != 0 && m_nPiece + nAdvance > m_tOptions.nLineWidth && mayBreakBetween(m_nLast, nCharacter))
    {
        m_sSegment += knBreakOpportunity;
        m_nPiece = 0;
    }
    m_nPiece += nAdvance;
}

void FoCellWriter::enterGroup(wchar_t nCharacter)
{
    const unsigned nGroup = continuesFontGroup(nCharacter) ? m_nGroup : fontGroupOf(nCharacter);
    if (nGroup == m_nGroup)
        return;
    closeGroup();
    m_nGroup = nGroup;
    if (nGroup != 0)
    {
        flushSegment();
        raw(inlineOf(nGroup));
    }
}

void FoCellWriter::closeGroup()
{
    flushSegment();
    if (m_nGroup != 0)
        raw(L"</fo:inline>");
    m_nGroup = 0;
}

void FoCellWriter::openStyle(const FoStyle& tStyle)
{
    m_tStyle = tStyle;
    if (!tStyle.sTarget.empty())
    {
        raw(L"<fo:basic-link color=\"#0b57d0\" text-decoration=\"underline\" external-destination=\"url('");
        encoded(uriText(tStyle.sTarget));
        raw(L"')\">");
    }
    if (!hasLook(tStyle))
        return;
    raw(L"<fo:inline");
    raw(tStyle.bBold ? L" font-weight=\"bold\"" : L"");
    raw(tStyle.bItalic ? L" font-style=\"italic\"" : L"");
    raw(tStyle.bUnderline ? L" text-decoration=\"underline\"" : L"");
    raw(tStyle.bRed ? L" color=\"red\"" : L"");
    raw(L">");
}

void FoCellWriter::closeStyle()
{
    closeGroup();
    if (hasLook(m_tStyle))
        raw(L"</fo:inline>");
    if (!m_tStyle.sTarget.empty())
        raw(L"</fo:basic-link>");
    m_tStyle = FoStyle();
}

void FoCellWriter::flushSegment()
{
    encoded(m_sSegment);
    m_sSegment.clear();
}

void FoCellWriter::encoded(std::wstring_view sText)
{
    ValueFormatterTypes::encodeToBufferOfType(m_tLine, ValueFormatterTypes::kPDF, sText.data(), sText.size());
}

void FoCellWriter::image(const FoImage& tImage, const FoStyle& tStyle)
{
    const std::optional<FoPictureSize> tSize = pictureSizeOf(tImage, m_tOptions.fWidestPicture);
    if (!tSize)
        return text(tImage.sAlternative, tStyle);
    text(std::wstring_view(), tStyle);
    putBreaks();
    closeGroup();
    raw(L"<fo:external-graphic src=\"url('");
    encoded(uriText(tImage.sSource));
    raw(L"')\" content-width=\"");
    raw(points(tSize->fWidth));
    if (tSize->fHeight > 0)
    {
        raw(L"\" content-height=\"");
        raw(points(tSize->fHeight));
        raw(L"\" scaling=\"non-uniform");
    }
    raw(L"\"/>");
    m_nPiece = 0;
    m_nLast = L'x';
}

String FoCellWriter::finish()
{
    closeStyle();
    endLine();
    m_nBreaks = 0;
    return std::exchange(m_sContent, String());
}

}  // namespace tov
