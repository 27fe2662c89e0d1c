#pragma once

#include "webformat/textformatter.h"

namespace tov {

// Writes binary values: an image (GIF, JPEG, PNG, TIFF, BMP) as an HTML image element whose source is a base64 data
// URL, anything else as hexadecimal digits.
//
// Example: the bytes 00 FF -> "00FF"; a PNG of 16 by 8 pixels -> `<img width=16 height=8
// src="data:image/png;base64,...">`
//
// The output type does not change what is written. A null value and a value of no bytes write nothing. Values are
// `RawValue` records. Immutable; any number of threads may format through one object.
class WEBFORMAT_EXPORT RawValueFormatter : public WebTextFormatter
{
public:
    explicit RawValueFormatter(OutputType eOutput);

    OutputType outputType() const override;
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override;

private:
    OutputType m_eOutput;
};

}  // namespace tov
