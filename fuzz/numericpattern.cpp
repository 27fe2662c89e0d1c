// The numeric pattern: every text parses, every compiled pattern formats every value, twice the same.

#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "intl/localetaglookup.h"
#include "webbedrock/assertion.h"
#include "webformat/numericformatterimpl.h"

namespace {

using namespace tov;

void stopAtAssertion(const char*, const char*, int)
{
    std::abort();
}

// Stands in for the time and duration families: appends one character.
class StandIn final : public WebValueFormatter
{
public:
    StandIn() : WebValueFormatter(SQLDataType::kStorageTimeStamp) {}
    OutputType outputType() const override { return kText; }
    String GetCustomFormatString() const override { return String(); }
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void*) const override
    {
        tBuffer.append(L't');
    }
};

class StandInFamilies final : public NumericSubFormatterSource
{
public:
    WebValueFormatterHandle timeFormatter(int, const Locale&, const KTWUILanguage&,
                                          ValueFormatterTypes::OutputType) const override
    {
        return new StandIn;
    }
    WebValueFormatterHandle durationFormatter(const String&, const Locale&, const KTWUILanguage&,
                                              ValueFormatterTypes::OutputType,
                                              ValueFormatterTypes::OutputType) const override
    {
        return new StandIn;
    }
};

struct Input
{
    unsigned nLocale;
    ValueFormatterTypes::OutputType eOutput;
    double fValue;
    String sPattern;
};

// Two bytes of choices, eight of value, then the pattern, a character a byte.
Input inputOf(const std::uint8_t* pData, std::size_t nSize)
{
    Input tInput{pData[0], static_cast<ValueFormatterTypes::OutputType>(pData[1] % 8), 0, String()};
    std::memcpy(&tInput.fValue, pData + 2, sizeof tInput.fValue);
    tInput.sPattern.assign(pData + 10, pData + nSize);
    return tInput;
}

const Locale& localeFor(unsigned nChoice)
{
    static const Locale kLocales[] = {Locale::kUSA, LocaleTagLookup::lookupOrDefault(L"de-CH"),
                                      LocaleTagLookup::lookupOrDefault(L"ar-EG"),
                                      LocaleTagLookup::lookupOrDefault(L"en-IN")};
    return kLocales[nChoice % 4];
}

void requirePlacesInside(const NumericPattern& tPattern)
{
    for (const NumericPattern::Section& tSection : tPattern.sections())
    {
        if (tSection.nSourceEnd > tPattern.sourceText().size() || tSection.nSourceStart > tSection.nSourceEnd)
            std::abort();
        for (const NumericPattern::Item& tItem : tSection.vDigits)
        {
            if (tItem.nSourceEnd > tSection.nSourceEnd || tItem.nSourceStart < tSection.nSourceStart)
                std::abort();
            static_cast<void>(tPattern.text(tItem));
        }
    }
}

template <class T>
void formatTwice(const Input& tInput, const T& tValue)
{
    const StandInFamilies tFamilies;
    const WebValueFormatterHandle hFormatter = new NumericFormatterImpl<T>(
        tInput.sPattern, localeFor(tInput.nLocale), tInput.eOutput, ValueFormatterTypes::kLastType,
        KTWUILanguage::kDefaultLanguage, ValueFormatterTypes::kEvaluateFormatGlobal, &tFamilies);
    if (hFormatter->formatAsString(&tValue) != hFormatter->formatAsString(&tValue))
        std::abort();
    StringBufferTemplate<wchar_t, 64> tCell;
    hFormatter->formatExcelValueToBuffer(tCell, &tValue);
    hFormatter->formatToBuffer(tCell, nullptr);
}

long wholeOf(double fValue)
{
    return fValue > -9e18 && fValue < 9e18 ? static_cast<long>(fValue) : 0;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < 10)
        return 0;
    Assertion::setHandler(&stopAtAssertion);
    const Input tInput = inputOf(pData, nSize);
    const StandInFamilies tFamilies;
    requirePlacesInside(NumericPattern::parse(tInput.sPattern, localeFor(tInput.nLocale), tInput.eOutput,
                                              KTWUILanguage::kDefaultLanguage, ValueFormatterTypes::kLastType,
                                              &tFamilies));
    const long nWhole = wholeOf(tInput.fValue);
    formatTwice(tInput, tInput.fValue);
    formatTwice(tInput, nWhole);
    formatTwice(tInput, static_cast<int>(nWhole));
    formatTwice(tInput, static_cast<unsigned long>(nWhole));
    formatTwice(tInput, CorvidNumber(tInput.fValue));
    return 0;
}
