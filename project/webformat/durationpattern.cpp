#include "webformat/durationpattern.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "webformat/valueformatter.h"

namespace tov {

namespace {

using Basis = DurationFormat::EOptionalBasedOn;

constexpr std::wstring_view kOptional = L"opt:";

struct DoubledLetter
{
    std::wstring_view sLetters;
    Basis eBasis;
};

// In the order in which they decide: the smallest unit first.
constexpr DoubledLetter kDoubledLetters[] = {{L"ss", DurationFormat::kSecondOpt},
                                             {L"mm", DurationFormat::kMinuteOpt},
                                             {L"hh", DurationFormat::kHourOpt},
                                             {L"dd", DurationFormat::kDayOpt}};

template <class Name, std::size_t nNames>
const char* nameAt(const Name (&aNames)[nNames], int nValue)
{
    const auto n = static_cast<std::size_t>(nValue);
    return n < nNames ? aNames[n] : "";
}

}  // namespace

DurationFormatList::~DurationFormatList() = default;

void DurationFormatList::addFormat(DurationFormat tFormat)
{
    switch (tFormat.eType)
    {
    case DurationFormat::kDay: m_bHasDay = true; break;
    case DurationFormat::kHour: m_bHasHour = true; break;
    case DurationFormat::kMinute: m_bHasMinute = true; break;
    case DurationFormat::kSecond: m_bHasSecond = true; break;
    default: break;
    }
    m_vDurationFormats.push_back(std::move(tFormat));
}

bool DurationFormatList::needsRoundingRule(DurationFormat::EDurationType eUnit) const
{
    switch (eUnit)
    {
    case DurationFormat::kDay: return !m_bHasHour && !m_bHasMinute && !m_bHasSecond;
    case DurationFormat::kHour: return !m_bHasMinute && !m_bHasSecond;
    case DurationFormat::kMinute: return !m_bHasSecond;
    default: return false;
    }
}

// One pass over a pattern's characters, one named function a token. `m_nAt` is the next character, `m_nEnd` the end of
// the optional section that it stands in, or of the text.
//
// Sections that nest end together, at the "]" of the outermost: one flag tells what a stack would.
class DurationPatternParser
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    explicit DurationPatternParser(OutputType eOutput) : m_eOutput(eOutput) {}

    DurationPattern parse(const String& sPattern, OutputType eParseOutput)
    {
        m_eLiteralType = eParseOutput;
        m_tPattern.m_sSource = sPattern;
        if (eParseOutput == ValueFormatterTypes::kLastType)
            m_tPattern.m_sSource = WebValueFormatter::GetOutputFormatString(sPattern, m_eOutput, m_eLiteralType);
        m_sText = m_tPattern.m_sSource;
        m_nEnd = m_sText.size();
        m_tPattern.m_tFormats.m_vDurationFormats.reserve(std::min(m_sText.size(), kUsualElements));
        parseTokens();
        while (m_bOptional)
        {
            leaveOptional();
            parseTokens();
        }
        return std::move(m_tPattern);
    }

private:
    void parseTokens()
    {
        while (m_nAt < m_nEnd)
        {
            const std::size_t nStart = m_nAt;
            const std::size_t nFormats = m_tPattern.m_tFormats.m_vDurationFormats.size();
            parseToken();
            place(nFormats, nStart);
        }
    }

    // Says where the elements from `nFirst` on stand.
    void place(std::size_t nFirst, std::size_t nStart)
    {
        std::vector<DurationFormat>& vFormats = m_tPattern.m_tFormats.m_vDurationFormats;
        for (std::size_t n = nFirst; n < vFormats.size(); ++n)
        {
            vFormats[n].nSourceStart = static_cast<std::uint32_t>(nStart);
            vFormats[n].nSourceEnd = static_cast<std::uint32_t>(m_nAt);
        }
    }

    void parseToken()
    {
        switch (m_sText[m_nAt])
        {
        case L'd': addUnit(DurationFormat::kDay); break;
        case L'h': addUnit(DurationFormat::kHour); break;
        case L'm': addUnit(DurationFormat::kMinute); break;
        case L's': addUnit(DurationFormat::kSecond); break;
        case L'c': setRoundRule(DurationFormatList::kCeil); break;
        case L'r': setRoundRule(DurationFormatList::kRound); break;
        case L'"': addQuotedText(); break;
        case L'\\': addEscaped(); break;
        case L'[': addBracket(); break;
        default: addLiteral(); break;
        }
    }

    void addUnit(DurationFormat::EDurationType eUnit)
    {
        const std::size_t nStart = m_nAt;
        m_nAt = std::min(m_sText.find_first_not_of(m_sText[nStart], nStart), m_nEnd);
        DurationFormat tFormat;
        tFormat.eType = eUnit;
        tFormat.eOptionalBasedOn = m_eBasis;
        tFormat.nPad = m_nAt - nStart == 1 ? 0 : static_cast<unsigned>(m_nAt - nStart);
        m_tPattern.m_tFormats.addFormat(std::move(tFormat));
    }

    void setRoundRule(DurationFormatList::ERoundRule eRule)
    {
        m_tPattern.m_tFormats.m_eRoundRule = eRule;
        ++m_nAt;
    }

    void addLiteral()
    {
        addText(DurationFormat::kText, m_nAt, m_nAt + 1);
        ++m_nAt;
    }

    // A backslash ends a piece and makes the next character the first of the next one, whatever it is.
    void addQuotedText()
    {
        std::size_t nPiece = ++m_nAt;
        for (; m_nAt < m_nEnd && m_sText[m_nAt] != L'"'; ++m_nAt)
        {
            if (m_sText[m_nAt] != L'\\')
                continue;
            addText(DurationFormat::kSeparator, nPiece, m_nAt);
            nPiece = ++m_nAt;
        }
        addText(DurationFormat::kSeparator, std::min(nPiece, m_nEnd), std::min(m_nAt, m_nEnd));
        m_nAt = std::min(m_nAt + 1, m_nEnd);
    }

    void addEscaped()
    {
        if (++m_nAt == m_nEnd)
            return;
        addText(DurationFormat::kSeparator, m_nAt, m_nAt + 1);
        ++m_nAt;
    }

    void addText(DurationFormat::EDurationType eType, std::size_t nStart, std::size_t nEnd)
    {
        DurationFormat tFormat;
        tFormat.eType = eType;
        tFormat.eOptionalBasedOn = m_eBasis;
        tFormat.sText =
            WebValueFormatter::ConvertLiteral(String(m_sText.substr(nStart, nEnd - nStart)), m_eLiteralType, m_eOutput);
        m_tPattern.m_tFormats.addFormat(std::move(tFormat));
    }

    void addBracket()
    {
        const std::size_t nContent = m_nAt + 1;
        const std::size_t nClose = m_bOptional ? m_nEnd : std::min(m_sText.find(L']', nContent), m_nEnd);
        if (!m_sText.substr(nContent, nClose - nContent).starts_with(kOptional))
        {
            m_nAt = std::min(nClose + 1, m_nEnd);
            return;
        }
        m_nAt = nContent + kOptional.size();
        if (!m_bOptional)
            enterOptional(nClose);
        m_eBasis = basisOfRest();
    }

    void enterOptional(std::size_t nEnd)
    {
        m_bOptional = true;
        m_nEnd = nEnd;
        const std::wstring_view sSection = m_sText.substr(m_nAt, nEnd - m_nAt);
        for (std::size_t n = 0; n < std::size(kDoubledLetters); ++n)
        {
            const std::size_t nLast = sSection.rfind(kDoubledLetters[n].sLetters);
            m_aBehindLast[n] = nLast == std::wstring_view::npos ? 0 : m_nAt + nLast + 1;
        }
    }

    // The text from here to the section's end decides: it holds a doubled letter if the last one is not behind us.
    Basis basisOfRest() const
    {
        for (std::size_t n = 0; n < std::size(kDoubledLetters); ++n)
        {
            if (m_aBehindLast[n] > m_nAt)
                return kDoubledLetters[n].eBasis;
        }
        return DurationFormat::kRequired;
    }

    void leaveOptional()
    {
        m_bOptional = false;
        m_eBasis = DurationFormat::kRequired;
        m_nAt = std::min(m_nEnd + 1, m_sText.size());
        m_nEnd = m_sText.size();
    }

    static constexpr std::size_t kUsualElements = 16;

    const OutputType m_eOutput;
    DurationPattern m_tPattern;
    OutputType m_eLiteralType = ValueFormatterTypes::kText;
    std::wstring_view m_sText;
    std::size_t m_nAt = 0;
    std::size_t m_nEnd = 0;
    Basis m_eBasis = DurationFormat::kRequired;
    bool m_bOptional = false;
    // Of the section: one more than where the last doubled letter of each unit starts, 0 where there is none.
    std::size_t m_aBehindLast[std::size(kDoubledLetters)] = {};
};

DurationPattern DurationPattern::parse(const String& sPattern, OutputType eOutput, OutputType eParseOutput)
{
    return DurationPatternParser(eOutput).parse(sPattern, eParseOutput);
}

const char* DurationPattern::typeName(DurationFormat::EDurationType eType)
{
    static constexpr const char* kNames[] = {"kDay", "kHour", "kMinute", "kSecond", "kSeparator", "kText"};
    return nameAt(kNames, eType);
}

const char* DurationPattern::basisName(DurationFormat::EOptionalBasedOn eBasis)
{
    static constexpr const char* kNames[] = {"kDayOpt", "kHourOpt", "kMinuteOpt", "kSecondOpt", "kRequired"};
    return nameAt(kNames, eBasis);
}

const char* DurationPattern::roundRuleName(DurationFormatList::ERoundRule eRule)
{
    static constexpr const char* kNames[] = {"kFloor", "kCeil", "kRound"};
    return nameAt(kNames, eRule);
}

}  // namespace tov
