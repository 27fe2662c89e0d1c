#include <algorithm>
#include <limits>
#include <optional>

#include "intl/locale.h"
#include "project/webformat/numericsubformatters.h"
#include "project/webformat/scalenames.h"
#include "utilities/stringutils.h"
#include "webformat/dateformatters.h"
#include "webformat/numericpattern.h"

namespace tov {

namespace {

constexpr std::uint64_t kLargestExponent = 400;

bool isPlaceholder(wchar_t nChar)
{
    return nChar == L'#' || nChar == L'0' || nChar == L'?';
}

// Digits up to the first other character; no value where the number passes 64 bits.
std::optional<std::uint64_t> leadingNumber(std::wstring_view sText)
{
    std::uint64_t nNumber = 0;
    for (const wchar_t nChar : sText)
    {
        if (nChar < L'0' || nChar > L'9')
            break;
        if (__builtin_mul_overflow(nNumber, std::uint64_t{10}, &nNumber) ||
            __builtin_add_overflow(nNumber, static_cast<std::uint64_t>(nChar - L'0'), &nNumber))
            return std::nullopt;
    }
    return nNumber;
}

// A signed exponent; text that is no number reads as 0, one outside -400 to 400 has no value.
std::optional<std::int32_t> exponentOf(std::wstring_view sText)
{
    sText = StringUtils::trim(sText);
    const bool bNegative = sText.starts_with(L'-');
    if (bNegative || sText.starts_with(L'+'))
        sText.remove_prefix(1);
    const std::optional<std::uint64_t> tMagnitude = leadingNumber(sText);
    if (!tMagnitude || *tMagnitude > kLargestExponent)
        return std::nullopt;
    const std::int32_t nMagnitude = static_cast<std::int32_t>(*tMagnitude);
    return bNegative ? -nMagnitude : nMagnitude;
}

// The smallest power of ten above `nNumber`; no value past 64 bits.
std::optional<std::uint64_t> powerOfTenAbove(std::uint64_t nNumber)
{
    std::uint64_t nPower = 1;
    while (nPower <= nNumber)
    {
        if (__builtin_mul_overflow(nPower, std::uint64_t{10}, &nPower))
            return std::nullopt;
    }
    return nPower;
}

// What stands behind the colon of "scale-name:million".
std::wstring_view afterColon(std::wstring_view sContent, std::wstring_view sPrefix)
{
    return sContent.substr(std::min(sPrefix.size() + 1, sContent.size()));
}

}  // namespace

NumericSubFormatterSource::~NumericSubFormatterSource() = default;

// One pass over the pattern's characters, one named function a token. `m_nAt` is the next character.
class NumericPatternParser
{
public:
    using Item = NumericPattern::Item;
    using Section = NumericPattern::Section;
    using OutputType = ValueFormatterTypes::OutputType;

    NumericPatternParser(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                         const KTWUILanguage& tLanguage, const NumericSubFormatterSource& tSource)
        : m_sWholePattern(sPattern), m_tLocale(tLocale), m_eOutput(eOutput), m_tLanguage(tLanguage), m_tSource(tSource)
    {
    }

    NumericPattern parse(OutputType eParseOutput)
    {
        m_eParseOutput = eParseOutput;
        m_eLiteralType = eParseOutput;
        m_tPattern.m_sSource = m_sWholePattern;
        if (eParseOutput == ValueFormatterTypes::kLastType)
            m_tPattern.m_sSource = WebValueFormatter::GetOutputFormatString(m_sWholePattern, m_eOutput, m_eLiteralType);
        m_sText = m_tPattern.m_sSource;
        do
            parseSection();
        while (m_bMoreSections);
        foldExcelValidity();
        return std::move(m_tPattern);
    }

private:
    bool atEnd() const { return m_nAt >= m_sText.size(); }

    void parseSection()
    {
        m_tPattern.m_vSections.emplace_back();
        m_pSection = &m_tPattern.m_vSections.back();
        m_pSection->nSourceStart = static_cast<std::uint32_t>(m_nAt);
        m_vFractionDigits.clear();
        m_nPlaceholders = 0;
        m_nIntegerPlaceholders = 0;
        m_bPlaceholderSeen = false;
        m_bMoreSections = false;
        for (m_bSectionDone = false; !m_bSectionDone && !atEnd();)
            parseToken();
        m_pSection->nSourceEnd = static_cast<std::uint32_t>(m_bMoreSections ? m_nAt - 1 : m_sText.size());
        finishSection();
    }

    void parseToken()
    {
        m_nItemStart = m_nAt;
        switch (m_sText[m_nAt])
        {
        case L'"':
            ++m_nAt;
            addQuotedText();
            break;
        case L'#':
        case L'0':
        case L'?': addPlaceholders(); break;
        case L',': addComma(); break;
        case L'.': addPoint(); break;
        case L'$': addDollar(); break;
        case L'%': addPercent(); break;
        case L'\\': addEscaped(); break;
        case L';': endSection(); break;
        case L'[': addBracket(); break;
        default: addLiteralRun(); break;
        }
    }

    // Items before the decimal point go to the integer part, later ones to the fraction part.
    Item& add(Item::Type eType)
    {
        std::vector<Item>& vDigits = m_pSection->bDecimalSeen ? m_vFractionDigits : m_pSection->vDigits;
        Item& tItem = vDigits.emplace_back();
        tItem.eType = eType;
        tItem.nSourceStart = static_cast<std::uint32_t>(m_nItemStart);
        tItem.nSourceEnd = static_cast<std::uint32_t>(m_nAt);
        return tItem;
    }

    void addText(std::wstring_view sText, Item::Type eType = Item::kText)
    {
        Item& tItem = add(eType);
        tItem.nTextStart = static_cast<std::uint32_t>(m_tPattern.m_sTexts.size());
        tItem.nTextLength = static_cast<std::uint32_t>(sText.size());
        m_tPattern.m_sTexts.append(sText);
    }

    void addConvertedText(std::wstring_view sText)
    {
        addText(WebValueFormatter::ConvertLiteral(String(sText), m_eLiteralType, m_eOutput));
    }

    bool endsLiteralRun(wchar_t nChar) const
    {
        switch (nChar)
        {
        case L'#':
        case L'?':
        case L'%':
        case L'"':
        case L'\\':
        case L'[':
        case L',':
        case L'0':
        case L';': return true;
        case L'.': return !m_pSection->bDecimalSeen;
        default: return false;
        }
    }

    void addLiteralRun()
    {
        const std::size_t nStart = m_nAt++;
        while (!atEnd() && !endsLiteralRun(m_sText[m_nAt]))
            ++m_nAt;
        addConvertedText(m_sText.substr(nStart, m_nAt - nStart));
    }

    // The text up to the next double quote or the end, as it stands.
    void addQuotedText()
    {
        const std::size_t nClose = m_sText.find(L'"', m_nAt);
        const std::size_t nEnd = std::min(nClose, m_sText.size());
        const std::wstring_view sQuoted = m_sText.substr(m_nAt, nEnd - m_nAt);
        m_nAt = std::min(nEnd + 1, m_sText.size());
        addText(sQuoted);
    }

    void addEscaped()
    {
        if (m_nAt + 1 >= m_sText.size())
        {
            m_nAt = m_sText.size();
            return;
        }
        m_nAt += 2;
        addText(m_sText.substr(m_nAt - 1, 1));
    }

    void addPlaceholders()
    {
        const wchar_t nChar = m_sText[m_nAt];
        const std::size_t nStart = m_nAt;
        while (!atEnd() && m_sText[m_nAt] == nChar)
            ++m_nAt;
        const std::int32_t nRun = static_cast<std::int32_t>(m_nAt - nStart);
        const Item::Type eType = nChar == L'#' ? Item::kOptional : Item::kRequired;
        const std::int32_t nFirst = startOfRun(eType);
        Item& tItem = add(eType);
        tItem.nStartDigit = nFirst;
        tItem.nEndDigit = m_nPlaceholders + nRun;
        m_nPlaceholders += nRun;
        if (m_pSection->bDecimalSeen && eType == Item::kRequired)
            m_pSection->nMinFractionDigits = static_cast<std::uint32_t>(m_nPlaceholders);
    }

    // The first run of the integer part reaches far to the left, so that every high-order digit has a place to print: a
    // "#" run itself, a "0" run through an optional item before it.
    std::int32_t startOfRun(Item::Type eType)
    {
        const bool bFirst = !m_bPlaceholderSeen && !m_pSection->bDecimalSeen;
        m_bPlaceholderSeen = true;
        if (!bFirst)
            return m_nPlaceholders;
        if (eType == Item::kOptional)
            return NumericPattern::knLeftmostDigit;
        Item& tLeading = add(Item::kOptional);
        tLeading.nStartDigit = NumericPattern::knLeftmostDigit;
        tLeading.nEndDigit = 0;
        tLeading.nSourceEnd = tLeading.nSourceStart;
        return m_nPlaceholders;
    }

    // A comma before a placeholder groups, wherever it stands; any other divides by a thousand.
    void addComma()
    {
        ++m_nAt;
        if (!atEnd() && isPlaceholder(m_sText[m_nAt]))
        {
            m_pSection->bGrouping = true;
            return;
        }
        m_pSection->bScalingComma = true;
        if (m_pSection->nPower10 > std::numeric_limits<std::int32_t>::min() + 3)
            m_pSection->nPower10 -= 3;
    }

    void addPoint()
    {
        ++m_nAt;
        // Kept: a second point is no text of its own; it opens a quoted text, as a double quote does.
        if (m_pSection->bDecimalSeen)
        {
            addQuotedText();
            return;
        }
        add(Item::kDecimal).nMultiplierNumerator = 1;
        endIntegerPart();
    }

    void endIntegerPart()
    {
        if (m_pSection->bDecimalSeen)
            return;
        m_pSection->bDecimalSeen = true;
        m_nIntegerPlaceholders = m_nPlaceholders;
        m_nPlaceholders = 0;
    }

    void addDollar()
    {
        ++m_nAt;
        m_pSection->bCurrency = true;
        addText(L"$");
    }

    // The value is in percent units already; each further sign of the run multiplies by 100.
    void addPercent()
    {
        for (++m_nAt; !atEnd() && m_sText[m_nAt] == L'%'; ++m_nAt)
        {
            if (m_pSection->nPower10 < std::numeric_limits<std::int32_t>::max() - 2)
                m_pSection->nPower10 += 2;
        }
        m_pSection->bPercent = true;
        addText(L"%");
    }

    void endSection()
    {
        ++m_nAt;
        m_bSectionDone = true;
        m_bMoreSections = true;
    }

    void addBracket()
    {
        const std::size_t nClose = m_sText.find(L']', m_nAt);
        if (nClose == std::wstring_view::npos)
        {
            const std::size_t nStart = m_nAt;
            m_nAt = m_sText.size();
            addConvertedText(m_sText.substr(nStart));
            return;
        }
        const std::wstring_view sContent = m_sText.substr(m_nAt + 1, nClose - m_nAt - 1);
        m_nAt = nClose + 1;
        if (sContent.empty())
            return;
        if (sContent.front() == L'$')
            addCurrency(sContent.substr(1));
        else if (sContent.front() == L'%')
            addModulus(sContent.substr(1));
        else
            addNamedBracket(sContent);
    }

    void addCurrency(std::wstring_view sSymbol)
    {
        m_pSection->bCurrency = true;
        if (sSymbol.starts_with(L':'))
            addText(sSymbol.substr(1));
        else
            addText(m_tLocale.getInfo(Locale::kPrimaryCurrencySymbol));
    }

    // "[%60]" splits off a place of base 60: earlier steps divide by it, a new one takes what remains. A number whose
    // products pass 64 bits is ignored.
    void addModulus(std::wstring_view sNumber)
    {
        const std::optional<std::uint64_t> tNumber = leadingNumber(sNumber);
        const std::optional<std::uint64_t> tPower = tNumber ? powerOfTenAbove(*tNumber) : std::nullopt;
        if (!tPower || *tNumber == 0)
            return;
        std::vector<NumericPattern::Modulus> vMods = m_pSection->vMods;
        if (vMods.empty())
            vMods.push_back({1, 0, 1});
        for (NumericPattern::Modulus& tStep : vMods)
        {
            if (__builtin_mul_overflow(tStep.nDiv, *tNumber, &tStep.nDiv) ||
                __builtin_mul_overflow(tStep.nMult, *tPower, &tStep.nMult))
                return;
        }
        vMods.push_back({1, *tNumber, 1});
        m_pSection->vMods = std::move(vMods);
    }

    void addNamedBracket(std::wstring_view sContent)
    {
        if (sContent == L"red")
            addText(sContent, Item::kColor);
        else if (sContent == L"MMM")
            addName(Item::kMonthAbbrev);
        else if (sContent == L"MMMM")
            addName(Item::kMonth);
        else if (sContent == L"DDD")
            addName(Item::kDOWAbbrev);
        else if (sContent == L"DDDD")
            addName(Item::kDOW);
        else if (StringUtils::startsWithIgnoreCase(sContent, L"FMT:time"))
            addTimeBracket(sContent);
        else if (StringUtils::startsWithIgnoreCase(sContent, L"duration"))
            addDuration(sContent);
        else if (StringUtils::startsWithIgnoreCase(sContent, kScaleName))
            addScaleName(afterColon(sContent, kScaleName));
        else if (StringUtils::startsWithIgnoreCase(sContent, kScaleDecimal))
            setScaleDecimal(afterColon(sContent, kScaleDecimal));
    }

    void addName(Item::Type eType)
    {
        m_pSection->bValidExcelPattern = false;
        add(eType);
    }

    struct Unit
    {
        std::wstring_view sContent;
        std::uint64_t nNumerator;
        std::uint64_t nDenominator;
    };

    template <std::size_t nUnits>
    static void applyUnit(Item& tItem, std::wstring_view sContent, const Unit (&aUnits)[nUnits])
    {
        tItem.nMultiplierNumerator = 1;
        tItem.nMultiplierDenominator = 1;
        for (const Unit& tUnit : aUnits)
        {
            if (!StringUtils::equalsIgnoreCase(sContent, tUnit.sContent))
                continue;
            tItem.nMultiplierNumerator = tUnit.nNumerator;
            tItem.nMultiplierDenominator = tUnit.nDenominator;
        }
    }

    void addTimeBracket(std::wstring_view sContent)
    {
        static constexpr Unit kHourMinUnits[] = {{L"FMT:timeHourMin(hour)", 60, 1}, {L"FMT:timeHourMin(sec)", 1, 60}};
        static constexpr Unit kHourUnits[] = {{L"FMT:timeHour(min)", 1, 60}, {L"FMT:timeHour(sec)", 1, 3600}};
        static constexpr Unit kTimeUnits[] = {{L"FMT:time(min)", 60, 1}, {L"FMT:time(hour)", 3600, 1}};
        if (StringUtils::startsWithIgnoreCase(sContent, L"FMT:timeHourMin"))
            applyUnit(addTime(Item::kHourMin, WebDateFormatDefinition::kTimeHourMin), sContent, kHourMinUnits);
        else if (StringUtils::startsWithIgnoreCase(sContent, L"FMT:timeHour"))
            applyUnit(addTime(Item::kHour, WebDateFormatDefinition::kTimeHour), sContent, kHourUnits);
        else
            applyUnit(addTime(Item::kTime, WebDateFormatDefinition::kTime), sContent, kTimeUnits);
    }

    // A time ends the integer part as a point does.
    Item& addTime(Item::Type eType, int nStyle)
    {
        endIntegerPart();
        m_pSection->bValidExcelPattern = false;
        Item& tItem = add(eType);
        tItem.hSubFormatter = m_tSource.timeFormatter(nStyle, m_tLocale, m_tLanguage, m_eOutput);
        return tItem;
    }

    // The duration owns its whole section: the items before it are dropped and nothing after it is parsed.
    void addDuration(std::wstring_view sContent)
    {
        static constexpr Unit kUnits[] = {
            {L"duration(min)", 60, 1}, {L"duration(hour)", 3600, 1}, {L"duration(day)", 86400, 1}};
        endIntegerPart();
        m_pSection->bValidExcelPattern = false;
        m_pSection->vDigits.clear();
        m_vFractionDigits.clear();
        Item& tItem = add(Item::kDuration);
        tItem.hSubFormatter = durationFormatter();
        applyUnit(tItem, sContent, kUnits);
        m_nAt = m_sText.size();
    }

    // The first section's is made of the pattern as it was given; what stands behind a ";" has been picked already.
    WebValueFormatterHandle durationFormatter() const
    {
        if (m_tPattern.m_vSections.size() == 1)
            return m_tSource.durationFormatter(m_sWholePattern, m_tLocale, m_tLanguage, m_eOutput, m_eParseOutput);
        return m_tSource.durationFormatter(String(m_sText.substr(m_pSection->nSourceStart)), m_tLocale, m_tLanguage,
                                           m_eOutput, m_eLiteralType);
    }

    void addScaleName(std::wstring_view sName)
    {
        add(Item::kIndicator);
        if (sName == L"none")
            m_pSection->eScaleFactor = NumericPattern::kNone;
        else if (sName == L"auto")
            m_pSection->eScaleFactor = NumericPattern::kAuto;
        else if (sName == L"first" || sName == L"second")
            setScaleByPosition(sName == L"first" ? 0 : 1);
        else
            setScaleByName(sName);
    }

    void setScaleByPosition(std::size_t nPosition)
    {
        String sIndicator;
        const int nScale = scaleNumberByPosition(m_tLocale, nPosition, sIndicator);
        if (nScale == 0)
            return;
        setIndicator(sIndicator);
        setFixedScale(nScale);
    }

    void setScaleByName(std::wstring_view sName)
    {
        const String sIndicator = indicatorOfScaleName(m_tLocale, sName);
        if (StringUtils::isBlank(sIndicator))
            return;
        setIndicator(sIndicator);
        if (const int nScale = scaleNumberOfName(sName))
            setFixedScale(nScale);
    }

    void setIndicator(const String& sIndicator)
    {
        m_pSection->sScaleIndicator =
            WebValueFormatter::ConvertLiteral(sIndicator, ValueFormatterTypes::kText, m_eOutput);
    }

    void setFixedScale(int nScale)
    {
        m_pSection->eScaleFactor = NumericPattern::kFixed;
        m_pSection->nPower10 = nScale;
    }

    // Replaces the power of ten; it does not add to it.
    void setScaleDecimal(std::wstring_view sNumber)
    {
        if (sNumber.empty())
            return;
        if (const std::optional<std::int32_t> tExponent = exponentOf(sNumber))
            m_pSection->nPower10 = *tExponent;
    }

    // Turns integer positions into offsets from the decimal point and puts the fraction part behind the integer part.
    void finishSection()
    {
        Section& tSection = *m_pSection;
        if (tSection.bDecimalSeen)
            tSection.nMaxFractionDigits = static_cast<std::uint32_t>(m_nPlaceholders);
        else
            m_nIntegerPlaceholders = m_nPlaceholders;
        for (Item& tItem : tSection.vDigits)
        {
            if (tItem.eType != Item::kOptional && tItem.eType != Item::kRequired)
                continue;
            tItem.nStartDigit -= m_nIntegerPlaceholders;
            tItem.nEndDigit -= m_nIntegerPlaceholders;
        }
        tSection.vDigits.insert(tSection.vDigits.end(), std::make_move_iterator(m_vFractionDigits.begin()),
                                std::make_move_iterator(m_vFractionDigits.end()));
    }

    // A pattern may serve as a spreadsheet's only if every section may: each section answers for those after it, too.
    void foldExcelValidity()
    {
        bool bValid = true;
        for (auto tSection = m_tPattern.m_vSections.rbegin(); tSection != m_tPattern.m_vSections.rend(); ++tSection)
        {
            bValid = bValid && tSection->bValidExcelPattern;
            tSection->bValidExcelPattern = bValid;
        }
    }

    static constexpr std::wstring_view kScaleName = L"scale-name";
    static constexpr std::wstring_view kScaleDecimal = L"scale-decimal";

    const String& m_sWholePattern;
    const Locale& m_tLocale;
    const OutputType m_eOutput;
    const KTWUILanguage& m_tLanguage;
    const NumericSubFormatterSource& m_tSource;

    NumericPattern m_tPattern;
    OutputType m_eParseOutput = ValueFormatterTypes::kLastType;
    OutputType m_eLiteralType = ValueFormatterTypes::kText;
    std::wstring_view m_sText;
    std::size_t m_nAt = 0;
    std::size_t m_nItemStart = 0;

    Section* m_pSection = nullptr;
    std::vector<Item> m_vFractionDigits;
    std::int32_t m_nPlaceholders = 0;
    std::int32_t m_nIntegerPlaceholders = 0;
    bool m_bPlaceholderSeen = false;
    bool m_bSectionDone = false;
    bool m_bMoreSections = false;
};

NumericPattern NumericPattern::parse(const String& sPattern, const Locale& tLocale, OutputType eOutput,
                                     const KTWUILanguage& tLanguage, OutputType eParseOutput,
                                     const NumericSubFormatterSource* pSource)
{
    const NumericSubFormatterSource& tSource = pSource ? *pSource : ownSubFormatters<double>();
    return NumericPatternParser(sPattern, tLocale, eOutput, tLanguage, tSource).parse(eParseOutput);
}

const char* NumericPattern::typeName(Item::Type eType)
{
    static constexpr const char* kNames[] = {"kOptional", "kRequired",    "kText",     "kDecimal",  "kDOWAbbrev",
                                             "kDOW",      "kMonthAbbrev", "kMonth",    "kColor",    "kHour",
                                             "kHourMin",  "kTime",        "kDuration", "kIndicator"};
    return kNames[eType];
}

}  // namespace tov
