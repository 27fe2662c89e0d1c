#include "webformat/rawvalueformatter.h"

#include <charconv>
#include <limits>

#include "corefacade/imagesizedeterminer.h"
#include "corefacade/rawvalue.h"
#include "webbedrock/encoding.h"

namespace tov {

namespace {

using Buffer = StringBufferBaseTemplate<wchar_t>;

// Indexed by ImageType.
constexpr std::wstring_view kSubtypes[] = {L"gif", L"jpeg", L"png", L"tiff", L"bmp"};
static_assert(std::size(kSubtypes) == ImageSizeDeterminer::kBMP + 1);

void appendNumber(Buffer& tBuffer, unsigned long nNumber)
{
    char aDigits[std::numeric_limits<unsigned long>::digits10 + 1];
    const char* pEnd = std::to_chars(std::begin(aDigits), std::end(aDigits), nNumber).ptr;
    for (const char* pDigit = aDigits; pDigit != pEnd; ++pDigit)
        tBuffer.append(static_cast<wchar_t>(*pDigit));
}

struct ImageHeader
{
    ImageSizeDeterminer::ImageType eType = ImageSizeDeterminer::kGIF;
    unsigned long nWidth = 0;
    unsigned long nHeight = 0;
};

void appendImage(Buffer& tBuffer, const RawValue& tValue, const ImageHeader& tImage)
{
    tBuffer.append(L"<img width=");
    appendNumber(tBuffer, tImage.nWidth);
    tBuffer.append(L" height=");
    appendNumber(tBuffer, tImage.nHeight);
    tBuffer.append(L" src=\"data:image/");
    tBuffer.append(kSubtypes[tImage.eType]);
    tBuffer.append(L";base64,");
    B2TEncodingBase64().updateToBuffer(tBuffer, tValue.pBytes, tValue.nBytes);
    tBuffer.append(L"\">");
}

}  // namespace

RawValueFormatter::RawValueFormatter(OutputType eOutput)
    : WebTextFormatter(SQLDataType::kStorageRawValue, String()), m_eOutput(eOutput)
{
}

ValueFormatterTypes::OutputType RawValueFormatter::outputType() const
{
    return m_eOutput;
}

void RawValueFormatter::impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    const RawValue* pRaw = static_cast<const RawValue*>(pValue);
    // A record without bytes to point to is taken for an empty one, whatever count it states.
    if (!pRaw || pRaw->nBytes == 0 || !pRaw->pBytes)
        return;
    ImageHeader tImage;
    if (ImageSizeDeterminer::determineTypeAndSizesOfBuffer(pRaw->pBytes, pRaw->nBytes, tImage.eType, tImage.nWidth,
                                                           tImage.nHeight))
        appendImage(tBuffer, *pRaw, tImage);
    else
        B2WEncodingHex().updateToBuffer(tBuffer, pRaw->pBytes, pRaw->nBytes);
}

}  // namespace tov
