#include "project/webformat/dateprogram.h"

#include <algorithm>
#include <map>
#include <optional>
#include <tuple>

#include "project/webformat/outputencoders.h"
#include "webformat/formatterconfig.h"

namespace tov {

namespace {

using Element = DatePattern::Element;
using Step = DateProgram::Step;

constexpr std::size_t kMonths = 12;
constexpr std::size_t kDays = 7;

// From this length of the pad on a name is more than its first character.
constexpr std::uint32_t kShortName = 3;

// Longer fields are left to the formatter.
constexpr std::size_t kMostPlainDigits = 16;

constexpr std::size_t roundedToBlocks(std::size_t nLength)
{
    return (nLength + DateProgram::knBlock - 1) / DateProgram::knBlock * DateProgram::knBlock;
}

enum class NameForm : std::uint8_t
{
    kWhole,
    kUpper,
    kFirstCharacter
};

// The names of a table, made safe for the output; usual ones without the heap.
class EncodedNames
{
public:
    explicit EncodedNames(ValueFormatterTypes::OutputType eOutput) : m_eOutput(eOutput) {}

    void clear()
    {
        m_tTexts.clear();
        m_nCount = 0;
    }

    void add(std::wstring_view sName)
    {
        m_aStarts[m_nCount++] = m_tTexts.length();
        // What is no output type encodes nothing.
        if (isOutputType(m_eOutput))
            ValueFormatterTypes::encodeToBufferOfType(m_tTexts, m_eOutput, sName.data(), sName.size());
        else
            m_tTexts.append(sName);
    }

    std::size_t count() const { return m_nCount; }

    std::wstring_view at(std::size_t n) const
    {
        const std::size_t nEnd = n + 1 < m_nCount ? m_aStarts[n + 1] : m_tTexts.length();
        return m_tTexts.view().substr(m_aStarts[n], nEnd - m_aStarts[n]);
    }

    std::size_t longest() const
    {
        std::size_t nLongest = 0;
        for (std::size_t n = 0; n < m_nCount; ++n)
            nLongest = std::max(nLongest, at(n).size());
        return nLongest;
    }

private:
    const ValueFormatterTypes::OutputType m_eOutput;
    std::size_t m_nCount = 0;
    std::array<std::size_t, DateProgram::NameTable::knNames> m_aStarts{};
    StringBufferTemplate<wchar_t, 255> m_tTexts;
};

}  // namespace

// Turns elements into steps, in one pass.
class DateBinder
{
public:
    DateBinder(DateProgram& tProgram, const DatePattern& tPattern)
        : m_tProgram(tProgram), m_tPattern(tPattern), m_pLocale(&tPattern.locale()), m_tNames(tPattern.outputType())
    {
    }

    void bind(std::wstring_view sMark)
    {
        // Near enough for patterns without names.
        const std::size_t nElements = m_tPattern.elements().size();
        m_tProgram.m_vSteps.reserve(nElements);
        m_tProgram.m_vPatches.reserve(nElements);
        m_tProgram.m_sTexts.reserve(4 * nElements + DateProgram::knBlock);
        if (!sMark.empty())
            addText(sMark);
        bool bBehindDay = false;
        for (const Element& tElement : m_tPattern.elements())
        {
            const bool bDayOfWeek = tElement.eType == DatePattern::kDOW || tElement.eType == DatePattern::kDOWAlpha;
            m_tProgram.m_bShowsDayOfWeek = m_tProgram.m_bShowsDayOfWeek || bDayOfWeek;
            bindElement(tElement, bBehindDay);
            bBehindDay = tElement.eType == DatePattern::kDay;
        }
        if (!sMark.empty())
            addText(sMark);
        finishStep();
        m_tProgram.m_sTexts.append(DateProgram::knBlock, L'\0');
    }

private:
    void bindElement(const Element& tElement, bool bBehindDay)
    {
        switch (tElement.eType)
        {
        case DatePattern::kYear: addYear(tElement); break;
        case DatePattern::kMonth: addNumber(DateProgram::kMonth, tElement.nPad); break;
        case DatePattern::kDay: addNumber(DateProgram::kDay, tElement.nPad); break;
        case DatePattern::kHour12: addNumber(DateProgram::kHour12, tElement.nPad); break;
        case DatePattern::kHour24: addNumber(DateProgram::kHour24, tElement.nPad); break;
        case DatePattern::kMinute: addNumber(DateProgram::kMinute, tElement.nPad); break;
        case DatePattern::kSecond: addNumber(DateProgram::kSecond, tElement.nPad); break;
        case DatePattern::kDOW: addNumber(DateProgram::kDayOfWeek, tElement.nPad); break;
        case DatePattern::kSecondWDecimal: addFraction(tElement); break;
        case DatePattern::kSeparator: addText(m_tPattern.text(tElement)); break;
        case DatePattern::kMonthAlpha: addMonthName(tElement, bBehindDay); break;
        case DatePattern::kDOWAlpha: addDayName(tElement); break;
        case DatePattern::kAMPM: addHalfOfDay(); break;
        case DatePattern::kEra: addEra(); break;
        case DatePattern::kSetLocale: m_pLocale = &m_tPattern.newLocale(tElement); break;
        case DatePattern::kResetLocale: m_pLocale = &m_tPattern.locale(); break;
        }
    }

    void addYear(const Element& tElement)
    {
        if (tElement.bCaps)
            startStep(Step::kNumber, DateProgram::kYearOfCentury);
        else if (tElement.nPad == 0)
            startStep(Step::kYear, DateProgram::kYearOfCentury, kMostYearCharacters);
        else if (tElement.nPad == 2)
            addTwoDigits(DateProgram::kYearOfCentury);
        else if (tElement.nPad == 4)
        {
            addTwoDigits(DateProgram::kCentury);
            addTwoDigits(DateProgram::kYearOfCentury);
        }
        else
            addPadded(Step::kYearPadded, DateProgram::kYearOfCentury, tElement.nPad);
    }

    void addNumber(DateProgram::Field eField, std::uint32_t nPad)
    {
        if (nPad == 0)
            startStep(Step::kNumber, eField);
        else if (nPad == 2)
            addTwoDigits(eField);
        else
            addPadded(Step::kPadded, eField, nPad);
    }

    void addPadded(Step::Type eType, DateProgram::Field eField, std::uint32_t nPad)
    {
        if (nPad > DateProgram::knMaxDigits)
            startStep(Step::kTooLong, eField);
        else
            startStep(eType, eField, nPad).nDigits = static_cast<std::uint8_t>(nPad);
    }

    void addTwoDigits(DateProgram::Field eField)
    {
        Step& tStep = currentStep();
        m_tProgram.m_vPatches.push_back({tStep.nTextLength, eField});
        ++tStep.nPatches;
        addText(L"00");
    }

    void addMonthName(const Element& tElement, bool bBehindDay)
    {
        Locale::NameKind eKind = Locale::kNominitiveMonth;
        if (tElement.nPad == kShortName)
            eKind = Locale::kAbbreviatedMonth;
        else if (tElement.nPad > kShortName && bBehindDay)
            eKind = Locale::kGenetiveMonth;
        addName(DateProgram::kMonthIndex, eKind, kMonths, formOf(tElement));
    }

    void addDayName(const Element& tElement)
    {
        const Locale::NameKind eKind = tElement.nPad > kShortName ? Locale::kDay : Locale::kAbbreviatedDay;
        addName(DateProgram::kDayOfWeek, eKind, kDays, formOf(tElement));
    }

    static NameForm formOf(const Element& tElement)
    {
        if (tElement.nPad < kShortName)
            return NameForm::kFirstCharacter;
        return tElement.bCaps ? NameForm::kUpper : NameForm::kWhole;
    }

    void addName(DateProgram::Field eField, Locale::NameKind eKind, std::size_t nNames, NameForm eForm)
    {
        // A locale's names stay where they are: the first one's place stands for all of them.
        const auto [tFound, bNew] = m_tTables.try_emplace({&m_pLocale->getName(eKind, 0), eKind, eForm}, 0U);
        if (bNew)
        {
            m_tNames.clear();
            for (std::size_t n = 0; n < nNames; ++n)
                addShownName(m_pLocale->getName(eKind, static_cast<int>(n)), eForm);
            tFound->second = addTable();
        }
        startNameStep(eField, tFound->second);
    }

    void addHalfOfDay()
    {
        const String& sAM = m_pLocale->getInfo(Locale::kAM);
        const auto [tFound, bNew] = m_tTables.try_emplace({&sAM, Locale::kNameKindEnd_, NameForm::kWhole}, 0U);
        if (bNew)
        {
            m_tNames.clear();
            addShownName(sAM, NameForm::kWhole);
            addShownName(m_pLocale->getInfo(Locale::kPM), NameForm::kWhole);
            tFound->second = addTable();
        }
        startNameStep(DateProgram::kHalfOfDay, tFound->second);
    }

    void startNameStep(DateProgram::Field eField, std::uint32_t nTable)
    {
        startStep(Step::kName, eField, m_tProgram.m_vNames[nTable].nStride).nIndex = nTable;
    }

    void addShownName(const String& sName, NameForm eForm)
    {
        switch (eForm)
        {
        case NameForm::kUpper: m_tNames.add(m_pLocale->mapString(Locale::kUpperCase, sName)); break;
        case NameForm::kFirstCharacter: m_tNames.add(std::wstring_view(sName).substr(0, 1)); break;
        default: m_tNames.add(sName); break;
        }
    }

    // A table of the names collected.
    std::uint32_t addTable()
    {
        finishStep();
        DateProgram::NameTable& tTable = m_tProgram.m_vNames.emplace_back();
        tTable.nStart = static_cast<std::uint32_t>(m_tProgram.m_sTexts.size());
        tTable.nStride = static_cast<std::uint32_t>(roundedToBlocks(m_tNames.longest()));
        m_tProgram.m_sTexts.resize(tTable.nStart + std::size_t{tTable.nStride} * DateProgram::NameTable::knNames);
        for (std::size_t n = 0; n < m_tNames.count(); ++n)
        {
            const std::wstring_view sName = m_tNames.at(n);
            tTable.aLengths[n] = static_cast<std::uint16_t>(sName.size());
            sName.copy(&m_tProgram.m_sTexts[tTable.nStart + n * tTable.nStride], sName.size());
        }
        return static_cast<std::uint32_t>(m_tProgram.m_vNames.size() - 1);
    }

    // What comes from the locale is made safe for the output like any other literal.
    String encoded(const String& sText) const
    {
        return WebValueFormatter::ConvertLiteral(sText, ValueFormatterTypes::kText, m_tPattern.outputType());
    }

    // Every date lies in the locale's current era.
    void addEra()
    {
        StringBufferTemplate<wchar_t, 32> tEra;
        m_pLocale->getEra(DateTime(), tEra);
        addText(encoded(tEra.toString()));
    }

    void addFraction(const Element& tElement)
    {
        startStep(Step::kFraction, DateProgram::kSecond, 2 * kMostPlainDigits).nIndex =
            static_cast<std::uint32_t>(m_tProgram.m_vFractions.size());
        DateProgram::Fraction& tFraction = m_tProgram.m_vFractions.emplace_back();
        tFraction.hFormatter = m_tPattern.secondFormatter(tElement);
        readPlainPattern(tFraction, m_tPattern.text(tElement));
        if (!tFraction.bPlain)
            return;
        tFraction.sPoint = encoded(m_tPattern.locale().getInfo(Locale::kDecimalSeparator));
        m_pStep->nRoom += static_cast<std::uint32_t>(tFraction.sPoint.size());
    }

    // plain = 1*"0" "." *( "#" / "0" )
    static void readPlainPattern(DateProgram::Fraction& tFraction, std::wstring_view sPattern)
    {
        const std::size_t nPoint = sPattern.find(L'.');
        if (nPoint == std::wstring_view::npos || nPoint == 0 || nPoint > kMostPlainDigits ||
            sPattern.size() - nPoint - 1 > kMostPlainDigits)
            return;
        const std::wstring_view sDigits = sPattern.substr(nPoint + 1);
        if (sPattern.find_first_not_of(L'0') != nPoint || sDigits.find_first_not_of(L"#0") != std::wstring_view::npos)
            return;
        tFraction.bPlain = true;
        tFraction.nIntegerDigits = static_cast<std::uint8_t>(nPoint);
        tFraction.nMaxDigits = static_cast<std::uint8_t>(sDigits.size());
        // Up to the last zero every digit is shown.
        tFraction.nMinDigits = static_cast<std::uint8_t>(sDigits.find_last_of(L'0') + 1);
    }

    void addText(std::wstring_view sText)
    {
        currentStep().nTextLength += static_cast<std::uint32_t>(sText.size());
        m_tProgram.m_sTexts += sText;
    }

    Step& currentStep() { return m_pStep ? *m_pStep : startStep(Step::kText, DateProgram::kCentury); }

    // `nRoom`: the characters that the variable part may touch.
    Step& startStep(Step::Type eType, DateProgram::Field eField, std::size_t nRoom = kMostByteCharacters)
    {
        finishStep();
        m_pStep = &m_tProgram.m_vSteps.emplace_back();
        m_pStep->eType = eType;
        m_pStep->eField = eField;
        m_pStep->nRoom = static_cast<std::uint32_t>(nRoom);
        m_pStep->nTextStart = static_cast<std::uint32_t>(m_tProgram.m_sTexts.size());
        m_pStep->nFirstPatch = static_cast<std::uint32_t>(m_tProgram.m_vPatches.size());
        return *m_pStep;
    }

    void finishStep()
    {
        if (m_pStep)
            m_pStep->nRoom += static_cast<std::uint32_t>(roundedToBlocks(m_pStep->nTextLength));
        m_pStep = nullptr;
    }

    static constexpr std::size_t kMostByteCharacters = 4;   // three digits; two are stored at once
    static constexpr std::size_t kMostYearCharacters = 12;  // ten digits and a sign

    using TableKey = std::tuple<const String*, Locale::NameKind, NameForm>;

    DateProgram& m_tProgram;
    const DatePattern& m_tPattern;
    const Locale* m_pLocale;
    EncodedNames m_tNames;
    Step* m_pStep = nullptr;
    std::map<TableKey, std::uint32_t> m_tTables;
};

DateProgram::DateProgram(const DatePattern& tPattern, std::wstring_view sMark)
    : m_nMaxSignificantDigits(FormatterConfig::maxSignificantDigitsSource())
{
    DateBinder(*this, tPattern).bind(sMark);
}

}  // namespace tov
