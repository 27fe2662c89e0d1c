// Text formats of the older notation: every one becomes a definition, custom ones hold its characters in order, and
// what it shows for any output can be made.

#include <algorithm>
#include <cstdint>
#include <cstdlib>

#include "webbedrock/assertion.h"
#include "webformat/convertwhistlerformat.h"
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

bool isNoSemicolon(wchar_t nChar)
{
    return nChar != L';';
}

String withoutSemicolons(const String& sText)
{
    String sResult;
    std::copy_if(sText.begin(), sText.end(), std::back_inserter(sResult), &isNoSemicolon);
    return sResult;
}

// Apart from semicolons and one "[text]" nothing comes or goes.
void requireCopy(const String& sOld, const String& sNew)
{
    constexpr std::wstring_view kHtml = L"[html]";
    constexpr std::wstring_view kText = L"[text]";
    require(sNew.starts_with(kHtml));
    const String sOldKept = withoutSemicolons(sOld);
    const String sNewKept = withoutSemicolons(sNew.substr(kHtml.size()));
    if (sOldKept == sNewKept)
        return;
    require(sNewKept.size() == sOldKept.size() + kText.size());
    const auto tDiffer = std::mismatch(sOldKept.begin(), sOldKept.end(), sNewKept.begin()).first;
    // A "[" of the old text may stand where the new one does: the tag starts there or before.
    for (std::size_t nAt = static_cast<std::size_t>(tDiffer - sOldKept.begin()) + 1; nAt-- > 0;)
    {
        if (String(sNewKept).erase(nAt, kText.size()) == sOldKept && sNewKept.compare(nAt, kText.size(), kText) == 0)
            return;
    }
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    Assertion::setHandler(&stopAtAssertion);
    const String sOld(pData, pData + nSize);
    const Handle<const WebWhistlerFormatDefinition> hOld =
        new ("fuzz/legacytext", __LINE__) WebWhistlerFormatDefinition(sOld);
    const WebValueFormatDefinitionHandle hNew = WebConvertWhistlerFormat::ConvertTextFormat(*hOld);
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(hNew.getPointer()))
        requireCopy(sOld, pCustom->GetCustomFormat());
    else
        require(dynamic_cast<const WebTextFormatDefinition*>(hNew.getPointer()) != nullptr);
    for (int nOutput = 0; nOutput < ValueFormatterTypes::kLastType; ++nOutput)
    {
        const auto eOutput = static_cast<ValueFormatterTypes::OutputType>(nOutput);
        const WebValueFormatterHandle hFormatter = WebTextFormatter::CreateTextFormatter(hOld, Locale::kUSA, eOutput);
        require(hFormatter->formatAsString(L"[b]x") ==
                WebTextFormatter::CreateTextFormatter(hNew, Locale::kUSA, eOutput)->formatAsString(L"[b]x"));
    }
    return 0;
}
