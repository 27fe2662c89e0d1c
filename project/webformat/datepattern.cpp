#include "webformat/datepattern.h"

#include <algorithm>
#include <map>
#include <optional>

#include "intl/localetaglookup.h"
#include "project/webformat/outputencoders.h"
#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;

// More elements than most patterns have.
constexpr std::size_t knUsualElements = 24;

constexpr std::wstring_view kTokenCharacters = L"\"DHMTY[\\dghmsty";

bool startsToken(wchar_t nChar)
{
    return kTokenCharacters.find(nChar) != std::wstring_view::npos;
}

// Runs are as long as the pattern makes them; past 32 bits they are of no more use.
std::uint32_t padOf(std::size_t nRun)
{
    return static_cast<std::uint32_t>(std::min<std::size_t>(nRun, UINT32_MAX));
}

// One digit for a run of one, two for longer ones: the rule of the numbers.
std::uint32_t twoDigitPad(std::size_t nRun)
{
    return nRun == 1 ? 0 : 2;
}

}  // namespace

// One pass over a pattern's characters, one named function a token. `m_nAt` is the next character.
class DatePatternParser
{
public:
    // What a pattern asks for again and again is found once.
    struct Memory
    {
        std::map<String, std::optional<Locale>, std::less<>> tLocales;
        std::map<String, std::uint32_t> tSecondFormatters;
    };

    DatePatternParser(DatePattern& tPattern, Memory& tMemory, const Locale& tLocale, OutputType eOutput, int nDepth)
        : m_tPattern(tPattern),
          m_tMemory(tMemory),
          m_tFirstLocale(tLocale),
          m_tWorkingLocale(tLocale),
          m_eOutput(eOutput),
          m_nDepth(nDepth)
    {
    }

    void parse(const String& sPattern)
    {
        OutputType eFound = ValueFormatterTypes::kText;
        const String sSection = WebValueFormatter::GetOutputFormatString(sPattern, m_eOutput, eFound);
        m_pEncoder = eFound == m_eOutput ? nullptr : encoderFor(m_eOutput);
        m_sText = sSection;
        const std::size_t nBase = m_tPattern.m_sSource.size();
        if (m_nDepth == 0)
            m_tPattern.m_sSource += sSection;
        while (!atEnd())
        {
            const std::size_t nStart = m_nAt;
            const std::size_t nElements = m_tPattern.m_vElements.size();
            m_bExtended = false;
            parseToken();
            if (m_nDepth == 0)
                place(m_bExtended ? nElements - 1 : nElements, nBase + nStart, nBase + m_nAt);
        }
    }

private:
    bool atEnd() const { return m_nAt >= m_sText.size(); }

    // Says where the elements from `nFirst` on stand; a lengthened one keeps its start.
    void place(std::size_t nFirst, std::size_t nStart, std::size_t nEnd)
    {
        for (std::size_t n = nFirst; n < m_tPattern.m_vElements.size(); ++n)
        {
            DatePattern::Element& tElement = m_tPattern.m_vElements[n];
            if (!m_bExtended)
                tElement.nSourceStart = static_cast<std::uint32_t>(nStart);
            tElement.nSourceEnd = static_cast<std::uint32_t>(nEnd);
        }
    }

    void parseToken()
    {
        const wchar_t nChar = m_sText[m_nAt];
        switch (nChar)
        {
        case L'y':
        case L'Y': m_tPattern.addYear(takeRun()); break;
        case L'M': addMonth(takeRun()); break;
        case L'd':
        case L'D': addDay(takeRun(), nChar == L'D'); break;
        case L'h': m_tPattern.addHour(false, twoDigitPad(takeRun())); break;
        case L'H': m_tPattern.addHour(true, twoDigitPad(takeRun())); break;
        case L'm': m_tPattern.addMinute(twoDigitPad(takeRun())); break;
        case L's': addSecond(takeRun()); break;
        case L't': m_tPattern.addAmPm(false, takeRun() == 2); break;
        case L'g': addEra(takeRun()); break;
        case L'T': addTimeZone(); break;
        case L'"': addQuotedText(); break;
        case L'\\': addEscaped(); break;
        case L'[': addBracket(); break;
        default: addLiteralRun(); break;
        }
    }

    // The length of the run of one character that starts here; behind it.
    std::size_t takeRun()
    {
        const std::size_t nStart = m_nAt;
        m_nAt = std::min(m_sText.find_first_not_of(m_sText[nStart], nStart), m_sText.size());
        return m_nAt - nStart;
    }

    void addMonth(std::size_t nRun)
    {
        if (nRun <= 2)
            m_tPattern.addMonth(twoDigitPad(nRun));
        else
            m_tPattern.addAlphaMonth(false, padOf(nRun));
    }

    // Kept: only the names of three and four letters come in upper case.
    void addDay(std::size_t nRun, bool bUpper)
    {
        if (nRun <= 2)
            m_tPattern.addDay(twoDigitPad(nRun));
        else if (nRun == 5)
            m_tPattern.addAlphaDayOfWeek(false, 1);
        else
            m_tPattern.addAlphaDayOfWeek(bUpper && nRun <= 4, padOf(nRun));
    }

    void addSecond(std::size_t nRun)
    {
        if (atEnd() || m_sText[m_nAt] != L'.')
        {
            m_tPattern.addSecond(twoDigitPad(nRun));
            return;
        }
        const std::size_t nFraction = m_nAt + 1;
        m_nAt = std::min(m_sText.find_first_not_of(L"#0", nFraction), m_sText.size());
        const std::size_t nDigits = m_nAt - nFraction;
        m_tPattern.m_nRoundFractSects =
            static_cast<int>(std::min<std::size_t>(nDigits, DatePattern::knMaxFractionDigits));
        String sNumericPattern(nRun, L'0');
        sNumericPattern += m_sText.substr(nFraction - 1, nDigits + 1);
        addSecondWithDecimal(sNumericPattern);
    }

    void addSecondWithDecimal(const String& sNumericPattern)
    {
        const auto tKnown = m_tMemory.tSecondFormatters.find(sNumericPattern);
        if (tKnown != m_tMemory.tSecondFormatters.end())
        {
            m_tPattern.append(DatePattern::kSecondWDecimal).nResource = tKnown->second;
            m_tPattern.setText(m_tPattern.m_vElements.back(), sNumericPattern);
            return;
        }
        m_tPattern.addSecondWithDecimal(sNumericPattern);
        m_tMemory.tSecondFormatters.emplace(sNumericPattern, m_tPattern.m_vElements.back().nResource);
    }

    void addEra(std::size_t nRun)
    {
        if (nRun == 1)
            m_tPattern.addSeparator(L"g");
        else
            m_tPattern.addEra();
    }

    void addTimeZone()
    {
        if (m_sText.substr(m_nAt, 2) == L"TZ")
            m_nAt += 2;
        else
            addLiteral(1);
    }

    void addLiteralRun()
    {
        const auto tStart = m_sText.begin() + static_cast<std::ptrdiff_t>(m_nAt);
        addLiteral(static_cast<std::size_t>(std::find_if(tStart, m_sText.end(), startsToken) - tStart));
    }

    void addLiteral(std::size_t nLength)
    {
        const std::size_t nElements = m_tPattern.m_vElements.size();
        m_tPattern.extendSeparator(converted(m_sText.substr(m_nAt, nLength)));
        m_bExtended = m_tPattern.m_vElements.size() == nElements;
        m_nAt += nLength;
    }

    // A backslash ends a piece and makes the next character the first of the next one, whatever it is.
    void addQuotedText()
    {
        std::size_t nPiece = ++m_nAt;
        for (; !atEnd() && m_sText[m_nAt] != L'"'; ++m_nAt)
        {
            if (m_sText[m_nAt] != L'\\')
                continue;
            addPiece(nPiece);
            nPiece = ++m_nAt;
        }
        m_nAt = std::min(m_nAt, m_sText.size());
        addPiece(nPiece);
        m_nAt = std::min(m_nAt + 1, m_sText.size());
    }

    void addPiece(std::size_t nStart)
    {
        nStart = std::min(nStart, m_sText.size());
        m_tPattern.addSeparator(converted(m_sText.substr(nStart, m_nAt - nStart)));
    }

    void addEscaped()
    {
        if (++m_nAt < m_sText.size())
            m_tPattern.addSeparator(converted(m_sText.substr(m_nAt++, 1)));
    }

    void addBracket()
    {
        constexpr std::wstring_view kLocale = L"L:";
        constexpr std::wstring_view kFormat = L"FMT:";
        const std::size_t nStart = m_nAt + 1;
        const std::size_t nClose = std::min(m_sText.find(L']', nStart), m_sText.size());
        const std::wstring_view sContent = m_sText.substr(nStart, nClose - nStart);
        m_nAt = std::min(nClose + 1, m_sText.size());
        if (sContent.starts_with(kLocale))
            changeLocale(sContent.substr(kLocale.size()));
        else if (sContent.starts_with(kFormat))
            addPredefined(sContent.substr(kFormat.size()));
    }

    void changeLocale(std::wstring_view sName)
    {
        if (sName.empty())
        {
            m_tPattern.addResetLocale();
            m_tWorkingLocale = m_tFirstLocale;
            return;
        }
        if (const std::optional<Locale>& tFound = localeOf(sName))
        {
            m_tPattern.addSetLocale(*tFound, sName);
            m_tWorkingLocale = *tFound;
        }
    }

    const std::optional<Locale>& localeOf(std::wstring_view sName)
    {
        auto tKnown = m_tMemory.tLocales.find(sName);
        if (tKnown == m_tMemory.tLocales.end())
        {
            const String sText(sName);
            Locale tLocale = m_tWorkingLocale;
            const bool bFound = LocaleTagLookup::getInstance().findLocaleByDefinitionName(sText, tLocale);
            tKnown = m_tMemory.tLocales.emplace(sText, bFound ? std::optional(tLocale) : std::nullopt).first;
        }
        return tKnown->second;
    }

    void addPredefined(std::wstring_view sName)
    {
        if (m_nDepth == DatePattern::knMaxNesting)
            return;
        const auto eType = WebDateFormatDefinition::GetTypeFromString(sName, WebDateFormatDefinition::kShortDate);
        DatePatternParser(m_tPattern, m_tMemory, m_tWorkingLocale, m_eOutput, m_nDepth + 1)
            .parse(WebDateFormatter::GetCustomFormatForType(eType, m_tWorkingLocale, m_eOutput));
    }

    // The text as the output shows it; good until the next one.
    std::wstring_view converted(std::wstring_view sLiteral)
    {
        if (!m_pEncoder)
            return sLiteral;
        m_tConverted.clear();
        m_pEncoder->updateToBuffer(m_tConverted, sLiteral.data(), sLiteral.size());
        return m_tConverted.view();
    }

    DatePattern& m_tPattern;
    Memory& m_tMemory;
    const Locale& m_tFirstLocale;
    Locale m_tWorkingLocale;
    const OutputType m_eOutput;
    const int m_nDepth;
    const W2WEncoding* m_pEncoder = nullptr;
    std::wstring_view m_sText;
    std::size_t m_nAt = 0;
    bool m_bExtended = false;  // the token lengthened the last element
    StringBufferTemplate<wchar_t, 63> m_tConverted;
};

DatePattern::DatePattern(const Locale& tLocale, OutputType eOutput) : m_tLocale(tLocale), m_eOutput(eOutput) {}

void DatePattern::addCustomFormat(const String& sPattern, const Locale& tLocale, OutputType eOutput)
{
    if (m_vElements.empty())
    {
        m_vElements.reserve(std::min(sPattern.size(), knUsualElements));
        m_sTexts.reserve(sPattern.size());
    }
    DatePatternParser::Memory tMemory;
    DatePatternParser(*this, tMemory, tLocale, eOutput, 0).parse(sPattern);
}

DatePattern::Element& DatePattern::append(EDateType eType, std::uint32_t nPad, bool bCaps)
{
    Element& tElement = m_vElements.emplace_back();
    tElement.eType = eType;
    tElement.nPad = nPad;
    tElement.bCaps = bCaps;
    return tElement;
}

void DatePattern::setText(Element& tElement, std::wstring_view sText)
{
    tElement.nTextStart = static_cast<std::uint32_t>(m_sTexts.size());
    tElement.nTextLength = static_cast<std::uint32_t>(sText.size());
    m_sTexts += sText;
}

void DatePattern::addYear(std::size_t nCount)
{
    switch (nCount)
    {
    case 1: append(kYear, 0, true); break;
    case 2: append(kYear, 2); break;
    case 4: append(kYear, 0); break;
    default: append(kYear, 4); break;
    }
}

void DatePattern::addMonth(std::uint32_t nPad)
{
    append(kMonth, nPad);
}

void DatePattern::addDay(std::uint32_t nPad)
{
    append(kDay, nPad);
}

void DatePattern::addHour(bool bIs24, std::uint32_t nPad)
{
    append(bIs24 ? kHour24 : kHour12, nPad);
}

void DatePattern::addMinute(std::uint32_t nPad)
{
    append(kMinute, nPad);
}

void DatePattern::addSecond(std::uint32_t nPad)
{
    append(kSecond, nPad);
}

void DatePattern::addSecondWithDecimal(const String& sNumericPattern)
{
    Element& tElement = append(kSecondWDecimal);
    tElement.nResource = static_cast<std::uint32_t>(m_vSecondFormatters.size());
    setText(tElement, sNumericPattern);
    m_vSecondFormatters.push_back(NumericFormatter<double>::ParseCustomFormat(sNumericPattern, m_tLocale, m_eOutput,
                                                                              KTWUILanguage::kDefaultLanguage));
}

void DatePattern::addAlphaMonth(bool bCaps, std::uint32_t nPad)
{
    append(kMonthAlpha, nPad, bCaps);
}

void DatePattern::addAlphaDayOfWeek(bool bCaps, std::uint32_t nPad)
{
    append(kDOWAlpha, nPad, bCaps);
}

void DatePattern::addDayOfWeek(std::uint32_t nPad)
{
    append(kDOW, nPad);
}

void DatePattern::addAmPm(bool bCaps, bool bTwo)
{
    append(kAMPM, bTwo ? 2 : 1, bCaps);
}

void DatePattern::addEra()
{
    append(kEra);
}

void DatePattern::addSeparator(std::wstring_view sText)
{
    setText(append(kSeparator), sText);
}

void DatePattern::extendSeparator(std::wstring_view sText)
{
    if (m_vElements.empty() || m_vElements.back().eType != kSeparator)
    {
        addSeparator(sText);
        return;
    }
    // Texts are appended in the order of their elements: the last element's is the last one.
    m_vElements.back().nTextLength += static_cast<std::uint32_t>(sText.size());
    m_sTexts += sText;
}

void DatePattern::addSetLocale(const Locale& tLocale, std::wstring_view sName)
{
    Element& tElement = append(kSetLocale);
    tElement.nResource = static_cast<std::uint32_t>(m_vLocales.size());
    setText(tElement, sName);
    m_vLocales.push_back(tLocale);
}

void DatePattern::addResetLocale()
{
    append(kResetLocale);
}

void DatePattern::addElement(const Element& tElement, std::wstring_view sText, const Locale& tLocale,
                             const WebValueFormatterHandle& hSecondFormatter)
{
    switch (tElement.eType)
    {
    case kSeparator: addSeparator(sText); break;
    case kSetLocale: addSetLocale(tLocale, tLocale.tag()); break;
    case kSecondWDecimal:
        append(kSecondWDecimal).nResource = static_cast<std::uint32_t>(m_vSecondFormatters.size());
        m_vSecondFormatters.push_back(hSecondFormatter);
        break;
    default: append(tElement.eType, tElement.nPad, tElement.bCaps); break;
    }
}

const char* DatePattern::typeName(EDateType eType)
{
    static constexpr const char* kNames[] = {
        "kYear",       "kMonth",  "kDay",  "kHour12", "kMinute",   "kSecond", "kSecondWDecimal", "kSeparator",
        "kMonthAlpha", "kHour24", "kAMPM", "kDOW",    "kDOWAlpha", "kEra",    "kSetLocale",      "kResetLocale"};
    const auto n = static_cast<std::size_t>(eType);
    return n < std::size(kNames) ? kNames[n] : "";
}

}  // namespace tov
