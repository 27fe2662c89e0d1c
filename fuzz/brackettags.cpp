// Bracket tags become HTML tags, in place and in runs, as a plain search for them says.

#include <cstdint>
#include <cstdlib>

#include "project/webformat/htmlfilter.h"
#include "support/htmlreference.h"
#include "support/textinput.h"
#include "webformat/textformatter.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    using namespace tov;
    const String sText = textOfBytes(pData, nSize);
    String sConverted = sText;
    const bool bConverted = WebTextFormatter::ConvertAnswersTagsToHTMLTags(sConverted);
    if (std::make_pair(bConverted, sConverted) != HtmlReference::withHtmlTags(sText))
        std::abort();
    String sInRuns;
    BracketTagReader tReader(sText);
    for (std::wstring_view sRun = tReader.next(); !sRun.empty(); sRun = tReader.next())
        sInRuns += sRun;
    if (sInRuns != sConverted || tReader.hasConverted() != bConverted)
        std::abort();
    return 0;
}
