// The text template: every text parses, its elements stand in their places, the merged form writes what the elements
// write one by one, in all outputs.

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "webbedrock/assertion.h"
#include "webformat/textformatterimpl.h"

namespace {

using namespace tov;

void stopAtAssertion(const char*, const char*, int)
{
    std::abort();
}

void require(bool bTrue)
{
    if (!bTrue)
        std::abort();
}

struct Input
{
    String sTemplate;
    String sValue;
};

// A byte for the length of the template, then the template and the value, a character a byte; bytes from 0xF8 up stand
// for characters that the encoders have rules for.
Input inputOf(const std::uint8_t* pData, std::size_t nSize)
{
    static constexpr wchar_t kWide[] = {0x2028, 0x2029, 0xD83D, 0xDE00, 0x1F600, 0xFFFE, 0x7F, 0x1};
    String sText;
    for (std::size_t n = 1; n < nSize; ++n)
        sText += pData[n] >= 0xF8 ? kWide[pData[n] - 0xF8] : static_cast<wchar_t>(pData[n]);
    const std::size_t nTemplate = std::min<std::size_t>(pData[0], sText.size());
    return {sText.substr(0, nTemplate), String(sText.c_str() + nTemplate)};
}

// Elements stand one behind the other; those of one quoted text share its place.
void requirePlaces(const SubTextFormatter& tFormatter, const String& sSource)
{
    std::uint32_t nLastStart = 0;
    std::uint32_t nLastEnd = 0;
    for (const SubTextFormatter::Format& tFormat : tFormatter.formats())
    {
        if (tFormat.nSourceEnd == 0)
            continue;  // no template asked for it
        const bool bSamePlace = tFormat.nSourceStart == nLastStart && tFormat.nSourceEnd == nLastEnd;
        require(bSamePlace || tFormat.nSourceStart >= nLastEnd);
        require(tFormat.nSourceStart < tFormat.nSourceEnd && tFormat.nSourceEnd <= sSource.size());
        require(*SubTextFormatter::typeName(tFormat.eTextType) != '\0');
        nLastStart = tFormat.nSourceStart;
        nLastEnd = tFormat.nSourceEnd;
    }
}

String writtenOneByOne(const SubTextFormatter& tFormatter, const wchar_t* pValue,
                       ValueFormatterTypes::OutputType eOutput)
{
    StringBufferTemplate<wchar_t, 256> tBuffer;
    for (const SubTextFormatter::Format& tFormat : tFormatter.formats())
    {
        SubTextFormatter tOne;
        tOne.AddFormat(tFormat);
        // An element knows nothing of the wrapper that another one opened: its own buffer, therefore.
        StringBufferTemplate<wchar_t, 256> tOwn;
        tOne.FormatValue(tOwn, pValue, eOutput);
        tBuffer.append(tOwn.view());
        if (tFormat.truncateFormat.bTruncate)
            break;
    }
    return tBuffer.toString();
}

void requireRendering(const Input& tInput, ValueFormatterTypes::OutputType eOutput)
{
    const WebTextFormatterImpl tFormatter(tInput.sTemplate, eOutput);
    requirePlaces(tFormatter.mainFormatter(), tFormatter.sourceText());
    const bool bHtml = eOutput == ValueFormatterTypes::kHTML;
    const auto orNull = [&](const String& sText) { return sText.empty() && bHtml ? String(L"&nbsp;") : sText; };
    if (!tInput.sValue.empty())
        require(tFormatter.formatAsString(tInput.sValue.c_str()) ==
                orNull(writtenOneByOne(tFormatter.mainFormatter(), tInput.sValue.c_str(), eOutput)));
    String sEmpty;
    if (!tFormatter.emptyFormatter().isNull())
    {
        requirePlaces(*tFormatter.emptyFormatter(), tFormatter.sourceText());
        sEmpty = writtenOneByOne(*tFormatter.emptyFormatter(), L"", eOutput);
    }
    require(tFormatter.formatAsString(L"") == orNull(sEmpty));
    require(tFormatter.formatAsString(nullptr) == orNull(sEmpty));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < 1)
        return 0;
    Assertion::setHandler(&stopAtAssertion);
    const Input tInput = inputOf(pData, nSize);
    for (int nOutput = 0; nOutput < ValueFormatterTypes::kLastType; ++nOutput)
        requireRendering(tInput, static_cast<ValueFormatterTypes::OutputType>(nOutput));
    return 0;
}
