#include "project/webformat/exceldatepattern.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "project/webformat/excelliterals.h"
#include "utilities/stringutils.h"
#include "webformat/dateformatters.h"
#include "webformat/datepattern.h"

namespace tov {

namespace {

using Element = DatePattern::Element;

constexpr std::wstring_view kFormatPrefix = L"FMT:";
constexpr std::wstring_view kLocalePrefix = L"L:";

// What Excel shows as it stands in a date.
constexpr std::wstring_view kBareCharacters = L" -/:.,";

// The digits of a second's fraction that Excel can show.
constexpr std::size_t kMostFractionDigits = 3;

// Brackets that mean something to the numeric language alone, or to both. A unit may follow in parentheses.
bool isNumericBracket(std::wstring_view sContent)
{
    static constexpr std::wstring_view kNames[] = {L"MMM",          L"MMMM",     L"DDD", L"DDDD",    L"FMT:timeHourMin",
                                                   L"FMT:timeHour", L"FMT:time", L"red", L"duration"};
    const std::wstring_view sName = sContent.substr(0, sContent.find(L'('));
    return std::find(std::begin(kNames), std::end(kNames), sName) != std::end(kNames) || sContent.starts_with(L"$:") ||
           StringUtils::startsWithIgnoreCase(sContent, L"scale-") || sContent.starts_with(L'%');
}

// Reads a pattern character by character for what tells the languages apart.
class LanguageScan
{
public:
    explicit LanguageScan(std::wstring_view sText) : m_sText(sText) {}

    bool findsDate()
    {
        while (m_nAt < m_sText.size() && !m_bOtherLanguage)
            readToken();
        return m_bDateToken && !m_bOtherLanguage;
    }

private:
    void readToken()
    {
        switch (const wchar_t nChar = m_sText[m_nAt])
        {
        case L'"': skipQuoted(); break;
        case L'\\': m_nAt += 2; break;
        case L'[': readBracket(); break;
        case L'#':
        case L'0':
        case L'?':
        case L'@': m_bOtherLanguage = true; break;
        case L's': readSeconds(); break;
        case L'g': readEra(); break;
        default:
            m_bDateToken = m_bDateToken || std::wstring_view(L"yYMdDhHmt").find(nChar) != std::wstring_view::npos;
            ++m_nAt;
            break;
        }
    }

    void skipQuoted()
    {
        for (++m_nAt; m_nAt < m_sText.size() && m_sText[m_nAt] != L'"'; ++m_nAt)
        {
            if (m_sText[m_nAt] == L'\\')
                ++m_nAt;
        }
        ++m_nAt;
    }

    void readBracket()
    {
        const std::size_t nStart = m_nAt + 1;
        const std::size_t nClose = std::min(m_sText.find(L']', nStart), m_sText.size());
        const std::wstring_view sContent = m_sText.substr(nStart, nClose - nStart);
        m_bOtherLanguage = isNumericBracket(sContent);
        m_bDateToken = m_bDateToken || sContent.starts_with(kFormatPrefix) || sContent.starts_with(kLocalePrefix);
        m_nAt = nClose + 1;
    }

    void readSeconds()
    {
        m_bDateToken = true;
        m_nAt = std::min(m_sText.find_first_not_of(L's', m_nAt), m_sText.size());
        if (m_nAt < m_sText.size() && m_sText[m_nAt] == L'.')
            m_nAt = std::min(m_sText.find_first_not_of(L"#0", m_nAt + 1), m_sText.size());
    }

    void readEra()
    {
        const std::size_t nStart = m_nAt;
        m_nAt = std::min(m_sText.find_first_not_of(L'g', m_nAt), m_sText.size());
        m_bDateToken = m_bDateToken || m_nAt - nStart > 1;
    }

    std::wstring_view m_sText;
    std::size_t m_nAt = 0;
    bool m_bDateToken = false;
    bool m_bOtherLanguage = false;
};

struct Token
{
    enum Kind
    {
        kLiteral,
        kMonth,
        kMinute,
        kHour,
        kSecond,
        kOther
    };

    Kind eKind;
    String sText;
};

// Turns the elements of a pattern into tokens of Excel; stops at one that Excel does not have.
class TokenReader
{
public:
    explicit TokenReader(const DatePattern& tPattern) : m_tPattern(tPattern) {}

    std::optional<std::vector<Token>> read()
    {
        for (const Element& tElement : m_tPattern.elements())
        {
            if (!addElement(tElement) || m_vTokens.size() > kLongestExcelPattern)
                return std::nullopt;
        }
        // Excel's clock has twelve hours where the half of the day is shown, and only there.
        if ((m_bHour12 && !m_bHalfOfDay) || (m_bHour24 && m_bHalfOfDay))
            return std::nullopt;
        return std::move(m_vTokens);
    }

private:
    bool addElement(const Element& tElement)
    {
        switch (tElement.eType)
        {
        case DatePattern::kYear: return addYear(tElement);
        case DatePattern::kMonth: return add(Token::kMonth, tElement.nPad == 2 ? L"mm" : L"m");
        case DatePattern::kMonthAlpha: return addName(tElement, L"mmm");
        case DatePattern::kDay: return add(Token::kOther, tElement.nPad == 2 ? L"dd" : L"d");
        case DatePattern::kDOWAlpha: return addName(tElement, L"ddd");
        case DatePattern::kHour12: m_bHour12 = true; return addHour(tElement);
        case DatePattern::kHour24: m_bHour24 = true; return addHour(tElement);
        case DatePattern::kMinute: return add(Token::kMinute, tElement.nPad == 2 ? L"mm" : L"m");
        case DatePattern::kSecond: return add(Token::kSecond, tElement.nPad == 2 ? L"ss" : L"s");
        case DatePattern::kSecondWDecimal: return addFraction(m_tPattern.text(tElement));
        case DatePattern::kAMPM: m_bHalfOfDay = true; return add(Token::kOther, L"AM/PM");
        case DatePattern::kSeparator: return addLiteral(m_tPattern.text(tElement));
        case DatePattern::kResetLocale: return true;
        default: return false;
        }
    }

    bool add(Token::Kind eKind, const wchar_t* pText)
    {
        m_vTokens.push_back({eKind, pText});
        return true;
    }

    bool addYear(const Element& tElement)
    {
        return !tElement.bCaps && add(Token::kOther, tElement.nPad == 2 ? L"yy" : L"yyyy");
    }

    // `pShort` is Excel's short name; one more letter makes it the full one.
    bool addName(const Element& tElement, const wchar_t* pShort)
    {
        if (tElement.nPad < 3 || tElement.bCaps)
            return false;
        add(Token::kOther, pShort);
        if (tElement.nPad > 3)
            m_vTokens.back().sText += pShort[0];
        return true;
    }

    bool addHour(const Element& tElement) { return add(Token::kHour, tElement.nPad == 2 ? L"hh" : L"h"); }

    // Optional digits past the third are left out; digits that must be shown cannot be.
    bool addFraction(std::wstring_view sNumericPattern)
    {
        const std::size_t nPoint = sNumericPattern.find(L'.');
        if (nPoint > 2)
            return false;
        const std::wstring_view sDigits = sNumericPattern.substr(nPoint + 1);
        if (sDigits.find_last_of(L'0') + 1 > kMostFractionDigits)
            return false;
        add(Token::kSecond, nPoint == 2 ? L"ss" : L"s");
        if (!sDigits.empty())
            m_vTokens.back().sText += L"." + String(std::min(sDigits.size(), kMostFractionDigits), L'0');
        return true;
    }

    bool addLiteral(std::wstring_view sText)
    {
        if (sText.empty())
            return true;
        if (m_vTokens.empty() || m_vTokens.back().eKind != Token::kLiteral)
            m_vTokens.push_back({Token::kLiteral, String()});
        m_vTokens.back().sText += sText;
        return m_vTokens.back().sText.size() <= kLongestExcelPattern;
    }

    const DatePattern& m_tPattern;
    std::vector<Token> m_vTokens;
    bool m_bHour12 = false;
    bool m_bHour24 = false;
    bool m_bHalfOfDay = false;
};

// Whether each "m" means to Excel what it means here.
bool readsMonthsAndMinutesRight(const std::vector<Token>& vTokens)
{
    std::vector<Token::Kind> vKinds;
    for (const Token& tToken : vTokens)
    {
        if (tToken.eKind != Token::kLiteral)
            vKinds.push_back(tToken.eKind);
    }
    for (std::size_t n = 0; n < vKinds.size(); ++n)
    {
        const bool bBehindHour = n > 0 && vKinds[n - 1] == Token::kHour;
        const bool bBeforeSecond = n + 1 < vKinds.size() && vKinds[n + 1] == Token::kSecond;
        const bool bMinute = bBehindHour || bBeforeSecond;
        if (vKinds[n] == (bMinute ? Token::kMonth : Token::kMinute))
            return false;
    }
    return true;
}

String written(const std::vector<Token>& vTokens)
{
    String sExcel;
    Token::Kind eBefore = Token::kLiteral;
    for (const Token& tToken : vTokens)
    {
        // Two fields of one letter would be one: an empty literal keeps them apart.
        if (eBefore != Token::kLiteral && tToken.eKind != Token::kLiteral && sExcel.ends_with(tToken.sText.front()))
            sExcel += L"\"\"";
        // A bare point behind the seconds would begin their fraction.
        const bool bPoint = eBefore == Token::kSecond && tToken.sText.starts_with(L'.');
        if (tToken.eKind == Token::kLiteral)
            appendExcelLiteral(sExcel, tToken.sText, bPoint ? std::wstring_view() : kBareCharacters);
        else
            sExcel += tToken.sText;
        eBefore = tToken.eKind;
    }
    return sExcel;
}

// The Excel pattern of the predefined format whose bracket is the whole pattern.
String ofPredefined(std::wstring_view sSection, const Locale& tLocale, const KTWUILanguage& tLanguage)
{
    if (!sSection.starts_with(L"[FMT:") || sSection.find(L']') != sSection.size() - 1)
        return String();
    const std::wstring_view sName =
        sSection.substr(1 + kFormatPrefix.size(), sSection.size() - kFormatPrefix.size() - 2);
    const auto eType = WebDateFormatDefinition::GetTypeFromString(sName, WebDateFormatDefinition::kShortDate);
    return WebDateFormatDefinition(eType).getFormatPattern(tLocale, tLanguage,
                                                           WebValueFormatDefinition::kFormatPatternExcel);
}

}  // namespace

bool isDatePattern(std::wstring_view sSection)
{
    return LanguageScan(sSection).findsDate();
}

String excelDatePatternOf(const String& sPattern, const Locale& tLocale, const KTWUILanguage& tLanguage)
{
    DatePattern tPattern(tLocale, ValueFormatterTypes::kText);
    tPattern.addCustomFormat(sPattern, tLocale, ValueFormatterTypes::kText);
    const String sPredefined = ofPredefined(tPattern.sourceText(), tLocale, tLanguage);
    if (!sPredefined.empty())
        return sPredefined;
    const std::optional<std::vector<Token>> tTokens = TokenReader(tPattern).read();
    if (!tTokens || !readsMonthsAndMinutesRight(*tTokens))
        return String();
    return checkedExcelPattern(written(*tTokens)).value_or(String());
}

}  // namespace tov
