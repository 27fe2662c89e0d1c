// The text of an HTML fragment is what a plain walk over it makes of it, whole and in runs.

#include <cstdint>
#include <cstdlib>

#include "project/webformat/htmlfilter.h"
#include "support/htmlreference.h"
#include "support/textinput.h"
#include "webformat/textformatter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    using namespace tov;
    const String sHtml = textOfBytes(pData, nSize);
    StringBufferTemplate<wchar_t, 100> tBuffer;
    WebTextFormatter::writeToBufferRemoveHtml(tBuffer, sHtml.c_str());
    if (tBuffer.view() != HtmlReference::text(sHtml))
        std::abort();
    StringBufferTemplate<wchar_t, 100> tEncoded;
    WholeTextWriter tWriter(tEncoded);
    writeHtmlText(tWriter, sHtml, W2WEncodingSGML(W2WEncodingSGML::kHTML));
    tWriter.finish();
    if (tEncoded.view() != encodeAsString(W2WEncodingSGML(W2WEncodingSGML::kHTML), tBuffer.data(), tBuffer.length()))
        std::abort();
    return 0;
}
