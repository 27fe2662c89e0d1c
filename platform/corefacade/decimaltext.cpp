#include "corefacade/decimaltext.h"

#include <algorithm>

namespace tov {

namespace {

// Far beyond any length of a text in memory, far below the bounds of 64 bits.
constexpr std::int64_t kExponentBound = 1'000'000'000'000'000;

template <class Char>
class Parser
{
public:
    Parser(std::basic_string_view<Char> sText, DecimalText& tResult) : m_sText(sText), m_tResult(tResult) {}

    bool parse()
    {
        m_tResult.m_bNegative = readSign();
        if (readWord("INF"))
            m_tResult.m_bInfinite = true;
        else if (!readDecimal() || !readExponent())
            return false;
        return m_nAt == m_sText.size();
    }

private:
    bool atDigit() const { return m_nAt < m_sText.size() && m_sText[m_nAt] >= '0' && m_sText[m_nAt] <= '9'; }

    bool readChar(char tChar)
    {
        if (m_nAt == m_sText.size() || m_sText[m_nAt] != static_cast<Char>(tChar))
            return false;
        ++m_nAt;
        return true;
    }

    bool readSign()
    {
        if (readChar('-'))
            return true;
        readChar('+');
        return false;
    }

    bool readWord(std::string_view sWord)
    {
        const auto sRest = m_sText.substr(m_nAt, sWord.size());
        if (!std::equal(sRest.begin(), sRest.end(), sWord.begin(), sWord.end()))
            return false;
        m_nAt += sWord.size();
        return true;
    }

    bool readDecimal()
    {
        const std::size_t nWhole = readDigits();
        std::size_t nFraction = 0;
        if (readChar('.'))
            nFraction = readDigits();
        m_tResult.m_nExponent = m_nDropped - static_cast<std::int64_t>(nFraction);
        if (m_bDroppedNonZero)
        {
            m_tResult.m_tDigits.append('1');
            --m_tResult.m_nExponent;
        }
        return nWhole + nFraction != 0;
    }

    std::size_t readDigits()
    {
        const std::size_t nStart = m_nAt;
        for (; atDigit(); ++m_nAt)
            addDigit(static_cast<char>(m_sText[m_nAt]));
        return m_nAt - nStart;
    }

    void addDigit(char tDigit)
    {
        StringBufferBaseTemplate<char>& tDigits = m_tResult.m_tDigits;
        if (tDigits.length() > kMaxCoefficientDigits)
        {
            ++m_nDropped;
            m_bDroppedNonZero |= tDigit != '0';
        }
        else if (tDigit != '0' || !tDigits.empty())
        {
            tDigits.append(tDigit);
        }
    }

    // Nothing, or "e" with its digits.
    bool readExponent()
    {
        if (!readChar('e') && !readChar('E'))
            return true;
        const bool bNegative = readSign();
        if (!atDigit())
            return false;
        std::int64_t nExponent = 0;
        for (; atDigit(); ++m_nAt)
            nExponent = std::min(nExponent * 10 + static_cast<int>(m_sText[m_nAt] - '0'), kExponentBound);
        m_tResult.m_nExponent += bNegative ? -nExponent : nExponent;
        return true;
    }

    std::basic_string_view<Char> m_sText;
    DecimalText& m_tResult;
    std::size_t m_nAt = 0;
    std::int64_t m_nDropped = 0;
    bool m_bDroppedNonZero = false;
};

}  // namespace

bool parseDecimalText(std::wstring_view sText, DecimalText& tResult)
{
    return Parser(sText, tResult).parse();
}
bool parseDecimalText(std::string_view sText, DecimalText& tResult)
{
    return Parser(sText, tResult).parse();
}

}  // namespace tov
