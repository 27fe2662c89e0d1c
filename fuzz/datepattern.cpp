// The date pattern: every text parses, every compiled pattern shows every value as a plain walk over its elements does.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "intl/localetaglookup.h"
#include "support/datereference.h"
#include "webbedrock/assertion.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/dateformatterimpl.h"

namespace {

using namespace tov;

constexpr std::size_t kHeader = 16;

void stopAtAssertion(const char*, const char*, int)
{
    std::abort();
}

struct Input
{
    unsigned nLocale;
    ValueFormatterTypes::OutputType eOutput;
    DateTime tValue;
    String sPattern;
};

// Two bytes of choices, fourteen of value, whose fields need not be in the calendar; then the pattern, a character a
// byte.
Input inputOf(const std::uint8_t* pData, std::size_t nSize)
{
    Input tInput{pData[0], static_cast<ValueFormatterTypes::OutputType>(pData[1] % 8), DateTime(), String()};
    std::int32_t nYear = 0;
    std::uint32_t nNanoseconds = 0;
    std::memcpy(&nYear, pData + 2, sizeof nYear);
    std::memcpy(&nNanoseconds, pData + 6, sizeof nNanoseconds);
    tInput.tValue =
        DateTime(nYear, pData[10], pData[11], pData[12], pData[13], pData[14], nNanoseconds % 1'000'000'000);
    tInput.sPattern.assign(pData + kHeader, pData + nSize);
    return tInput;
}

const Locale& localeFor(unsigned nChoice)
{
    static const Locale kLocales[] = {Locale::kUSA, LocaleTagLookup::lookupOrDefault(L"ru-RU"),
                                      LocaleTagLookup::lookupOrDefault(L"ar-EG"),
                                      LocaleTagLookup::lookupOrDefault(L"ko-KR")};
    return kLocales[nChoice % 4];
}

void requirePlacesInside(const DatePattern& tPattern)
{
    for (const DatePattern::Element& tElement : tPattern.elements())
    {
        if (tElement.nSourceEnd > tPattern.sourceText().size() || tElement.nSourceStart >= tElement.nSourceEnd)
            std::abort();
        static_cast<void>(tPattern.text(tElement));
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < kHeader)
        return 0;
    Assertion::setHandler(&stopAtAssertion);
    const Input tInput = inputOf(pData, nSize);
    StandardDateFormatter tFormatter(localeFor(tInput.nLocale), KTWUILanguage::kDefaultLanguage, tInput.sPattern,
                                     tInput.eOutput);
    tFormatter.addCustomFormat(tInput.sPattern, localeFor(tInput.nLocale), tInput.eOutput);
    requirePlacesInside(tFormatter.pattern());
    if (tFormatter.formatAsString(&tInput.tValue) != DateReference(tFormatter.pattern()).show(tInput.tValue))
        std::abort();
    WebCustomFormatDefinition(tInput.sPattern)
        .getFormatPattern(localeFor(tInput.nLocale), KTWUILanguage::kDefaultLanguage,
                          WebValueFormatDefinition::kFormatPatternExcel);
    WebConvertWhistlerFormat::ConvertDateFormat(tInput.sPattern);
    return 0;
}
