#include <cstring>
#include <string>

#include "support/contest.h"
#include "support/naiveencoding.h"
#include "support/values.h"
#include "webformat/outputtypes.h"

namespace tov {

namespace {

constexpr std::size_t kTextLength = 432;
constexpr std::size_t kMostCharacters = 6 * kTextLength;

class Webformat
{
public:
    Webformat(ValueFormatterTypes::OutputType eType, std::wstring sText) : m_eType(eType), m_sText(std::move(sText)) {}

    void write(std::size_t nPlace)
    {
        m_tBuffer.clear();
        ValueFormatterTypes::encodeToBufferOfType(m_tBuffer, m_eType, m_sText.data() + nPlace, kTextLength);
    }

    std::wstring text() const { return m_tBuffer.toString(); }

private:
    ValueFormatterTypes::OutputType m_eType;
    std::wstring m_sText;
    StringBufferTemplate<wchar_t, kMostCharacters> m_tBuffer;
};

// What no encoder can beat: the text as it is.
class Memcpy
{
public:
    explicit Memcpy(std::wstring sText) : m_sText(std::move(sText)) {}

    void write(std::size_t nPlace) { std::memcpy(m_aText, m_sText.data() + nPlace, sizeof(m_aText)); }
    std::wstring text() const { return std::wstring(m_aText, kTextLength); }

private:
    std::wstring m_sText;
    wchar_t m_aText[kTextLength];
};

// The loop that is written first: a switch for each character, the result in a string that is reused.
template <class Append>
class Loop
{
public:
    explicit Loop(std::wstring sText) : m_sText(std::move(sText)) {}

    void write(std::size_t nPlace)
    {
        m_sResult.clear();
        for (std::size_t n = nPlace; n < nPlace + kTextLength; ++n)
            Append()(m_sResult, m_sText[n]);
    }

    std::wstring text() const { return m_sResult; }

private:
    std::wstring m_sText;
    std::wstring m_sResult;
};

template <class Append>
void addEncoder(const std::string& sLanguage, ValueFormatterTypes::OutputType eType, const std::wstring& sMarked)
{
    for (const unsigned nPercent : {0U, 1U, 10U})
    {
        const std::wstring sText = markedText(kTextLength, nPercent, sMarked);
        const std::string sWork = sLanguage + ", " + std::to_string(nPercent) + " % marked";
        Contest<std::size_t> tContest(sWork, textPlaces());
        tContest.add("webformat", Agreement::kSameText, [=] { return Webformat(eType, sText); });
        tContest.add("memcpy", nPercent == 0 ? Agreement::kSameText : Agreement::kNone, [=] { return Memcpy(sText); });
        tContest.add("loop", Agreement::kSameText, [=] { return Loop<Append>(sText); });
    }
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    tov::addEncoder<tov::AppendMarkup>("HTML", tov::ValueFormatterTypes::kHTML, L"&<>\"'");
    tov::addEncoder<tov::AppendJavaScript>("JavaScript", tov::ValueFormatterTypes::kJavaScript, L"\\\n\t\"'<>");
    tov::addEncoder<tov::AppendSQL>("SQL literal", tov::ValueFormatterTypes::kSQLLiteral, L"'");
    return tov::runBenchmarks(nArguments, ppArguments);
}
