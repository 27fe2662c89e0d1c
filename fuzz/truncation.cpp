// Cut values are what a plain walk over them makes of them, and no more characters are counted than the limit allows.

#include <cstdint>
#include <cstdlib>

#include "support/htmlreference.h"
#include "support/textinput.h"
#include "webformat/truncateformatter.h"

namespace {

using namespace tov;

// Limits around the lengths of the inputs, and the ends of their range.
unsigned long limitOf(std::uint8_t nChoice)
{
    return nChoice < 250 ? nChoice : nChoice == 250 ? ~0UL : 1UL << (nChoice - 220);
}

void require(bool bHolds)
{
    if (!bHolds)
        std::abort();
}

void requireCut(const String& sText, unsigned long nLimit, ValueFormatterTypes::OutputType eOutput,
                const String& sExpected)
{
    StringBufferTemplate<wchar_t, 100> tBuffer;
    TruncateFormatter(nLimit, eOutput).formatValue(tBuffer, sText.c_str());
    require(tBuffer.view() == sExpected);
}

}  // namespace

// One byte for the limit; then the value.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize == 0)
        return 0;
    const unsigned long nLimit = limitOf(pData[0]);
    const String sText = textOfBytes(pData + 1, nSize - 1);
    requireCut(sText, nLimit, ValueFormatterTypes::kText, HtmlReference::cutText(sText, nLimit));
    requireCut(sText, nLimit, ValueFormatterTypes::kHTML, HtmlReference::cutHtml(sText, nLimit));
    requireCut(sText, nLimit, ValueFormatterTypes::kXML, String());
    require(HtmlReference::visiblePart(sText, nLimit).second <= nLimit);
    return 0;
}
