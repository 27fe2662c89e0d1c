// The conversion of patterns to Excel's: whatever the text, what comes out is a pattern that Excel can read, at most
// 255 UTF-16 units long, and comes back out of a page's style as it was.

#include "project/webformat/excelpattern.h"

#include <cstdint>
#include <cstdlib>

#include "intl/ktwuilanguage.h"
#include "intl/localetaglookup.h"
#include "webbedrock/assertion.h"
#include "webformat/valueformatdefinition.h"

namespace {

using namespace tov;

constexpr std::size_t kLongest = 255;

void stopAtAssertion(const char*, const char*, int)
{
    std::abort();
}

void require(bool bTrue)
{
    if (!bTrue)
        std::abort();
}

const Locale& localeFor(unsigned nChoice)
{
    static const Locale kLocales[] = {Locale::kUSA, LocaleTagLookup::lookupOrDefault(L"de-DE"),
                                      LocaleTagLookup::lookupOrDefault(L"ja-JP"),
                                      LocaleTagLookup::lookupOrDefault(L"he-IL")};
    return kLocales[nChoice % 4];
}

// Reads a pattern as Excel does: its quotes and brackets end, a backslash has its character, one ";" at most stands
// between two sections, and letters outside of quotes are those of dates.
void requireReadable(const String& sPattern)
{
    int nMarks = 0;
    std::size_t nUnits = 0;
    for (const wchar_t nCharacter : sPattern)
    {
        require(nCharacter >= 0x20 && nCharacter != 0x7F);
        nUnits += nCharacter > 0xFFFF ? 2 : 1;
    }
    require(nUnits <= kLongest);
    for (std::size_t nAt = 0; nAt < sPattern.size(); ++nAt)
    {
        switch (sPattern[nAt])
        {
        case L'"': nAt = sPattern.find(L'"', nAt + 1); break;
        case L'\\': ++nAt; break;
        case L'[': nAt = sPattern.find(L']', nAt); break;
        case L';': require(++nMarks <= 1); break;
        default: require(String(L"0#.,% $-+():/_dmyhsAMP").find(sPattern[nAt]) != String::npos); break;
        }
        require(nAt < sPattern.size());
    }
}

// What a browser and the reader of a style make of it; an apostrophe or quotation mark would end the style.
String readStyle(const String& sStyle)
{
    String sText;
    for (std::size_t nAt = 0; nAt < sStyle.size(); ++nAt)
    {
        require(String(L"\"<>").find(sStyle[nAt]) == String::npos);
        if (sStyle[nAt] != L'&')
        {
            sText += sStyle[nAt];
            continue;
        }
        const std::size_t nEnd = sStyle.find(L';', nAt);
        const String sEntity = sStyle.substr(nAt, nEnd - nAt + 1);
        constexpr std::pair<const wchar_t*, wchar_t> aEntities[] = {
            {L"&lt;", L'<'}, {L"&gt;", L'>'}, {L"&quot;", L'"'}, {L"&#39;", L'\''}, {L"&amp;", L'&'}};
        bool bKnown = false;
        for (const auto& [pEntity, nCharacter] : aEntities)
            if (sEntity == pEntity)
            {
                sText += nCharacter;
                bKnown = true;
            }
        require(bKnown);
        nAt = nEnd;
    }
    String sPattern;
    for (std::size_t nAt = 0; nAt < sText.size(); ++nAt)
    {
        require(sText[nAt] != L'\'');
        nAt += sText[nAt] == L'\\' ? 1 : 0;
        require(nAt < sText.size());
        sPattern += sText[nAt];
    }
    return sPattern;
}

}  // namespace

// A byte of choice, then the pattern, a character a byte.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* pData, std::size_t nSize)
{
    if (nSize < 1)
        return 0;
    Assertion::setHandler(&stopAtAssertion);
    const Locale& tLocale = localeFor(pData[0]);
    const KTWUILanguage& tLanguage = KTWUILanguage::kDefaultLanguage;
    const String sPattern(pData + 1, pData + nSize);
    const String sExcel = excelPatternOf(sPattern, tLocale, tLanguage);
    // The patterns of predefined formats are given; theirs is not made here.
    if (sPattern.find(L"[FMT:") == String::npos)
        requireReadable(sExcel);
    require(readStyle(escapedForStyle(sExcel)) == sExcel);
    const WebCustomFormatDefinition tDefinition(sPattern);
    const bool bByRow = tDefinition.isConditionalCurrencyFormat();
    require(tDefinition.getFormatPattern(tLocale, tLanguage, WebValueFormatDefinition::kFormatPatternExcel) ==
            (bByRow ? String() : sExcel));
    require(tDefinition.getFormatPattern(tLocale, tLanguage, WebValueFormatDefinition::kFormatPatternNormal) ==
            (bByRow ? String() : escapedForStyle(sExcel)));
    return 0;
}
