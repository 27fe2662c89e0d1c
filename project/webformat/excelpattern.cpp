#include "project/webformat/excelpattern.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "project/webformat/exceldatepattern.h"
#include "project/webformat/excelliterals.h"
#include "webformat/numericpattern.h"

namespace tov {

namespace {

using Item = NumericPattern::Item;
using Section = NumericPattern::Section;

// What Excel shows as it stands. The slash is not among them: between digits it makes a fraction.
constexpr std::wstring_view kBareCharacters = L" $-+():";

// A piece of an Excel pattern.
struct Token
{
    enum Kind
    {
        kDigit,        // "#" or "0"
        kComma,        // groups, or behind the last digit divides by a thousand
        kPoint,        // "."
        kPercent,      // "%", multiplies by a hundred
        kBarePercent,  // a percent sign that only shows
        kSymbol,       // a currency symbol
        kLiteral
    };

    Kind eKind;
    wchar_t nDigit = L'\0';
    std::wstring_view sText = {};
};

using Tokens = std::vector<Token>;

bool isDigit(const Token& tToken)
{
    return tToken.eKind == Token::kDigit;
}

// Sub-formatters show nothing that Excel could: none is made.
class NoSubFormatters final : public NumericSubFormatterSource
{
public:
    WebValueFormatterHandle timeFormatter(int, const Locale&, const KTWUILanguage&,
                                          ValueFormatterTypes::OutputType) const override
    {
        return nullptr;
    }
    WebValueFormatterHandle durationFormatter(const String&, const Locale&, const KTWUILanguage&,
                                              ValueFormatterTypes::OutputType,
                                              ValueFormatterTypes::OutputType) const override
    {
        return nullptr;
    }
};

// Reads the items of a section into tokens.
class TokenReader
{
public:
    TokenReader(const NumericPattern& tPattern, const Section& tSection) : m_tPattern(tPattern), m_tSection(tSection) {}

    // No value where the section is too long for Excel: no token is shorter than a character.
    std::optional<Tokens> read()
    {
        for (const Item& tItem : m_tSection.vDigits)
        {
            addItem(tItem);
            if (m_vTokens.size() > kLongestExcelPattern)
                return std::nullopt;
        }
        return std::move(m_vTokens);
    }

private:
    void addItem(const Item& tItem)
    {
        switch (tItem.eType)
        {
        case Item::kOptional:
        case Item::kRequired: addDigits(tItem); break;
        case Item::kDecimal: addPoint(); break;
        case Item::kText: addText(tItem); break;
        case Item::kIndicator: addLiteral(Token::kLiteral, m_tSection.sScaleIndicator); break;
        default: break;  // colours stand at the section's start
        }
    }

    // One token a character; the item that only widens the first run to the left has none.
    void addDigits(const Item& tItem)
    {
        const std::size_t nRun = std::min<std::size_t>(tItem.nSourceEnd - tItem.nSourceStart, kLongestExcelPattern + 1);
        for (std::size_t nAt = 0; nAt < nRun; ++nAt)
            m_vTokens.push_back({Token::kDigit, digitOf(tItem)});
    }

    // A fraction digit is required wherever a later one is.
    wchar_t digitOf(const Item& tItem)
    {
        if (m_bFraction)
            return m_nFractionDigits++ < m_tSection.nMinFractionDigits ? L'0' : L'#';
        return tItem.eType == Item::kRequired ? L'0' : L'#';
    }

    // Excel would show the point of "0." always, the formatter never.
    void addPoint()
    {
        m_bFraction = true;
        if (m_tSection.nMaxFractionDigits > 0)
            m_vTokens.push_back({Token::kPoint});
    }

    void addText(const Item& tItem)
    {
        const std::wstring_view sSource = std::wstring_view(m_tPattern.sourceText()).substr(tItem.nSourceStart);
        const std::wstring_view sText = m_tPattern.text(tItem);
        if (sSource.starts_with(L'%'))
            addLiteral(Token::kBarePercent, sText);
        else if (sSource.starts_with(L'$') || sSource.starts_with(L"[$"))
            addLiteral(Token::kSymbol, sText);
        else
            addLiteral(Token::kLiteral, sText);
    }

    void addLiteral(Token::Kind eKind, std::wstring_view sText)
    {
        if (!sText.empty())
            m_vTokens.push_back({eKind, L'\0', sText});
    }

    const NumericPattern& m_tPattern;
    const Section& m_tSection;
    Tokens m_vTokens;
    bool m_bFraction = false;
    std::uint32_t m_nFractionDigits = 0;
};

// Where the integer part ends.
Tokens::iterator integerEnd(Tokens& vTokens)
{
    return std::find_if(vTokens.begin(), vTokens.end(),
                        [](const Token& tToken) { return tToken.eKind == Token::kPoint; });
}

// The third last digit of the integer part; the end where there are fewer.
Tokens::iterator thousandsPlace(Tokens& vTokens)
{
    int nDigits = 0;
    for (auto tAt = integerEnd(vTokens); tAt != vTokens.begin();)
    {
        if (isDigit(*--tAt) && ++nDigits == 3)
            return tAt;
    }
    return vTokens.end();
}

// Puts a comma between two digits, which is what makes Excel group: before the last three where they follow a digit
// directly. Optional digits in front show nothing of their own, so as many as are missing for that are added.
void groupDigits(Tokens& vTokens)
{
    const auto nIntegerDigits = std::count_if(vTokens.begin(), integerEnd(vTokens), isDigit);
    const auto tFirst = std::find_if(vTokens.begin(), vTokens.end(), isDigit);
    const std::size_t nMissing = nIntegerDigits < 4 ? static_cast<std::size_t>(4 - nIntegerDigits) : 0;
    vTokens.insert(tFirst, nMissing, Token{Token::kDigit, L'#'});
    const auto tThousands = thousandsPlace(vTokens);
    if (isDigit(*std::prev(tThousands)))
    {
        vTokens.insert(tThousands, Token{Token::kComma});
        return;
    }
    // A literal stands there: group further to the left.
    const Token tOptional{Token::kDigit, L'#'};
    vTokens.insert(std::find_if(vTokens.begin(), vTokens.end(), isDigit),
                   {tOptional, Token{Token::kComma}, tOptional, tOptional});
}

// Whether zeros that only fill places would be grouped: Excel groups all the digits that it shows ("0,000" shows 5 as
// 0,005), the formatter those of the number (0005).
bool groupsFillingZeros(Tokens& vTokens)
{
    const auto tEnd = integerEnd(vTokens);
    const auto tFirst = std::find_if(vTokens.begin(), tEnd, [](const Token& tToken) { return tToken.nDigit == L'0'; });
    return std::count_if(tFirst, tEnd, isDigit) > 3;
}

// Makes the section show the cell value times ten to `nPower10`: by percent signs, of which as few as will do take
// effect, and by commas behind the last digit. False where they cannot.
bool scaleDigits(Tokens& vTokens, std::int64_t nPower10)
{
    const auto isPercent = [](const Token& tToken) { return tToken.eKind == Token::kBarePercent; };
    const std::int64_t nSigns = std::count_if(vTokens.begin(), vTokens.end(), isPercent);
    std::int64_t nActive = 0;
    while (nActive <= nSigns && (2 * nActive < nPower10 || (2 * nActive - nPower10) % 3 != 0))
        ++nActive;
    if (nActive > nSigns || 2 * nActive - nPower10 > static_cast<std::int64_t>(3 * kLongestExcelPattern))
        return false;
    const std::size_t nCommas = static_cast<std::size_t>((2 * nActive - nPower10) / 3);
    for (auto tAt = vTokens.begin(); nActive > 0; --nActive)
    {
        tAt = std::find_if(tAt, vTokens.end(), isPercent);
        tAt->eKind = Token::kPercent;
    }
    vTokens.insert(std::find_if(vTokens.rbegin(), vTokens.rend(), isDigit).base(), nCommas, Token{Token::kComma});
    return true;
}

// Writes tokens as Excel reads them; adjacent literals become one.
class TokenWriter
{
public:
    String write(const Tokens& vTokens, bool bRed)
    {
        if (bRed)
            m_sPattern = L"[red]";
        for (const Token& tToken : vTokens)
            add(tToken);
        flushLiteral();
        return std::move(m_sPattern);
    }

private:
    void add(const Token& tToken)
    {
        const bool bLiteral = tToken.eKind == Token::kLiteral || tToken.eKind == Token::kBarePercent ||
                              (tToken.eKind == Token::kSymbol && !fitsBracket(tToken.sText));
        if (bLiteral)
        {
            m_sLiteral += tToken.sText;
            return;
        }
        flushLiteral();
        switch (tToken.eKind)
        {
        case Token::kDigit: m_sPattern += tToken.nDigit; break;
        case Token::kComma: m_sPattern += L','; break;
        case Token::kPoint: m_sPattern += L'.'; break;
        case Token::kPercent: m_sPattern += L'%'; break;
        default: m_sPattern.append(L"[$").append(tToken.sText).append(L"]"); break;
        }
    }

    // In Excel's bracket a minus sign starts a language number.
    static bool fitsBracket(std::wstring_view sSymbol)
    {
        return sSymbol.find_first_of(L"-[]\";\\") == std::wstring_view::npos;
    }

    void flushLiteral()
    {
        appendExcelLiteral(m_sPattern, m_sLiteral, kBareCharacters);
        m_sLiteral.clear();
    }

    String m_sPattern;
    String m_sLiteral;
};

// Makes tokens that hold digits show what the formatter shows for a cell value times ten to `nPower10`; false where
// Excel cannot.
bool fitDigits(Tokens& vTokens, bool bGrouping, std::int64_t nPower10)
{
    // Excel would show an integer part that has no place in the pattern.
    if (std::none_of(vTokens.begin(), integerEnd(vTokens), isDigit))
        return false;
    if (bGrouping)
    {
        if (groupsFillingZeros(vTokens))
            return false;
        groupDigits(vTokens);
    }
    return scaleDigits(vTokens, nPower10);
}

// `nCellPower10`: the cell holds the value times ten to this power.
std::optional<String> sectionPattern(const NumericPattern& tPattern, const Section& tSection, std::int64_t nCellPower10)
{
    if (tSection.eScaleFactor == NumericPattern::kAuto || !tSection.vMods.empty())
        return std::nullopt;
    std::optional<Tokens> tTokens = TokenReader(tPattern, tSection).read();
    if (!tTokens)
        return std::nullopt;
    if (std::any_of(tTokens->begin(), tTokens->end(), isDigit) &&
        !fitDigits(*tTokens, tSection.bGrouping, tSection.nPower10 - nCellPower10))
        return std::nullopt;
    const bool bRed = std::any_of(tSection.vDigits.begin(), tSection.vDigits.end(),
                                  [](const Item& tItem) { return tItem.eType == Item::kColor; });
    return TokenWriter().write(*tTokens, bRed);
}

// What the spreadsheet's cell holds: the value with its scale, a percentage as a fraction of one; the bare value where
// commas in the pattern scale it.
std::int64_t cellPower10(const Section& tFirst)
{
    if (tFirst.bPercent)
        return std::int64_t{tFirst.nPower10} - 2;
    return tFirst.bScalingComma ? 0 : tFirst.nPower10;
}

bool isPlaceholder(const Item& tItem)
{
    return tItem.eType == Item::kOptional || tItem.eType == Item::kRequired;
}

// Whether the text of an item is neither quoted nor escaped nor made by a sign or bracket.
bool isBareText(const NumericPattern& tPattern, const Item& tItem)
{
    return tItem.eType == Item::kText &&
           std::wstring_view(L"\"\\.$%[").find(tPattern.sourceText()[tItem.nSourceStart]) == std::wstring_view::npos;
}

// Whether a pattern that is not one of dates is not one of numbers either: it shows no digits, and holds letters or a
// bracket of the calendar, or the sign for a text's value.
bool isOtherLanguage(const NumericPattern& tPattern)
{
    const std::vector<Item>& vItems = tPattern.sections().front().vDigits;
    if (std::any_of(vItems.begin(), vItems.end(), isPlaceholder))
        return false;
    for (const std::wstring_view sBracket : {L"[FMT:", L"[L:", L"[TZ:"})
    {
        if (tPattern.sourceText().find(sBracket) != String::npos)
            return true;
    }
    return std::any_of(vItems.begin(), vItems.end(),
                       [&](const Item& tItem)
                       {
                           return isBareText(tPattern, tItem) &&
                                  tPattern.text(tItem).find_first_of(L"DHMTYdghmsty@") != std::wstring_view::npos;
                       });
}

}  // namespace

String excelPatternOf(const String& sPattern, const Locale& tLocale, const KTWUILanguage& tLanguage)
{
    const NoSubFormatters tSource;
    const NumericPattern tPattern = NumericPattern::parse(sPattern, tLocale, ValueFormatterTypes::kText, tLanguage,
                                                          ValueFormatterTypes::kLastType, &tSource);
    if (isDatePattern(tPattern.sourceText()))
        return excelDatePatternOf(sPattern, tLocale, tLanguage);
    const std::vector<Section>& vSections = tPattern.sections();
    if (!vSections.front().bValidExcelPattern || isOtherLanguage(tPattern))
        return String();
    const std::int64_t nCellPower10 = cellPower10(vSections.front());
    std::optional<String> tExcel = sectionPattern(tPattern, vSections.front(), nCellPower10);
    if (tExcel && vSections.size() > 1)
    {
        const std::optional<String> tNegative = sectionPattern(tPattern, vSections[1], nCellPower10);
        if (!tNegative)
            return String();
        // An empty section would get Excel's default; an empty literal shows nothing.
        const auto orNothing = [](const String& sSection) { return sSection.empty() ? String(L"\"\"") : sSection; };
        tExcel = orNothing(*tExcel) + L";" + orNothing(*tNegative);
    }
    return tExcel ? checkedExcelPattern(*tExcel).value_or(String()) : String();
}

String escapedForStyle(const String& sExcelPattern)
{
    String sEscaped;
    for (const wchar_t nChar : sExcelPattern)
    {
        switch (nChar)
        {
        case L'&': sEscaped += L"&amp;"; break;
        case L'<': sEscaped += L"&lt;"; break;
        case L'>': sEscaped += L"&gt;"; break;
        case L'"': sEscaped += L"&quot;"; break;
        case L'\'': sEscaped += L"\\&#39;"; break;
        case L'\\': sEscaped += L"\\\\"; break;
        default: sEscaped += nChar; break;
        }
    }
    return sEscaped;
}

}  // namespace tov
