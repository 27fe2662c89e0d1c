#include "project/webformat/texttemplateparser.h"

#include <algorithm>

#include "project/webformat/outputencoders.h"
#include "utilities/stringutils.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/texttemplateparser";

constexpr wchar_t kPreformattedStart[] = L"&lt;pre>";
constexpr wchar_t kPreformattedEnd[] = L"&lt;/pre>";
constexpr std::wstring_view kEntity = L"&nbsp;";

}  // namespace

// One pass over a section's characters, one named function a token. `m_nAt` is the next character.
class TextTemplateParser
{
public:
    using OutputType = ValueFormatterTypes::OutputType;

    TextTemplateParser(const String& sFormat, OutputType eOutput)
        : m_eOutput(eOutput),
          m_hMain(WEBFORMAT_NEW(kSource) SubTextFormatter),
          m_hCurrent(m_hMain),
          m_sSource(WebValueFormatter::GetOutputFormatString(sFormat, eOutput, m_eSection)),
          m_sText(m_sSource)
    {
        m_bFoMode = m_eSection == ValueFormatterTypes::kHTML &&
                    (eOutput == ValueFormatterTypes::kPDF || eOutput == ValueFormatterTypes::kXLSX);
        m_bEncodes = m_eSection != eOutput && encoderFor(eOutput) != nullptr;
        m_bPreformatted = sFormat == WebTextFormatDefinition::standardPattern(WebTextFormatDefinition::kPlainNBSPText);
    }

    TextTemplate parse()
    {
        if (m_sText.empty())
            m_hMain->AddTextReference(SubTextFormatter::kText);
        else if (m_bFoMode)
            parseInWrapper();
        else
            parseTokens();
        return {m_sSource, m_hMain, m_hEmpty};
    }

private:
    // The wrapper is the main section's alone: the one for null and empty values stands outside.
    void parseInWrapper()
    {
        m_hMain->AddLiteral(SubTextFormatter::ksHtmlStartTag);
        if (m_bPreformatted)
            m_hMain->AddLiteral(kPreformattedStart);
        parseTokens();
        if (m_bPreformatted)
            m_hMain->AddLiteral(kPreformattedEnd);
        m_hMain->AddLiteral(SubTextFormatter::ksHtmlEndTag);
    }

    void parseTokens()
    {
        while (m_nAt < m_sText.size())
        {
            const std::size_t nStart = m_nAt;
            const std::size_t nFormats = m_hCurrent->m_vFormats.size();
            parseToken();
            place(nFormats, nStart);
        }
    }

    // Says where the elements from `nFirst` on stand.
    void place(std::size_t nFirst, std::size_t nStart)
    {
        std::vector<SubTextFormatter::Format>& vFormats = m_hCurrent->m_vFormats;
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
        case L'"': addQuotedText(); break;
        case L'\\': addEscaped(); break;
        case L'[': skipBracket(); break;
        case L'@': addReference(); break;
        case L'&': addAmpersand(); break;
        case L';': addSemicolon(); break;
        default: addBareCharacter(); break;
        }
    }

    // A backslash ends a piece and makes the next character the first of the next one, whatever it is.
    void addQuotedText()
    {
        std::size_t nPiece = ++m_nAt;
        for (; m_nAt < m_sText.size() && m_sText[m_nAt] != L'"'; ++m_nAt)
        {
            if (m_sText[m_nAt] != L'\\')
                continue;
            addLiteral(nPiece, m_nAt);
            nPiece = ++m_nAt;
        }
        const std::size_t nEnd = std::min(m_nAt, m_sText.size());
        addLiteral(std::min(nPiece, nEnd), nEnd);
        m_nAt = std::min(nEnd + 1, m_sText.size());
    }

    void addEscaped()
    {
        if (++m_nAt < m_sText.size())
            addBareCharacter();
    }

    void skipBracket()
    {
        const std::size_t nClose = m_sText.find(L']', m_nAt);
        m_nAt = nClose == std::wstring_view::npos ? m_sText.size() : nClose + 1;
    }

    void addReference()
    {
        const wchar_t nKind = m_nAt + 1 < m_sText.size() ? m_sText[m_nAt + 1] : L'\0';
        m_nAt += 2;
        switch (nKind)
        {
        case L'H': m_hCurrent->AddTextReference(SubTextFormatter::kHTML); break;
        case L'N': m_hCurrent->AddTextReference(SubTextFormatter::kNoBreakSpaces); break;
        case L'J': m_hCurrent->AddTextReference(SubTextFormatter::kJavaScriptString); break;
        case L'I': m_nAt += m_hCurrent->parseImageFormat(here(), endOfList()); break;
        case L'T': m_nAt += m_hCurrent->parseTruncateFormat(here(), endOfList()); break;
        default:
            m_hCurrent->AddTextReference(SubTextFormatter::kText);
            --m_nAt;
            break;
        }
    }

    const wchar_t* here() const { return m_sText.data() + m_nAt; }

    // Behind the next closing parenthesis; here, where there is none. Found once for all references before it.
    const wchar_t* endOfList()
    {
        if (m_nClosing < m_nAt)
            m_nClosing = std::min(m_sText.find(L')', m_nAt), m_sText.size());
        return m_nClosing == m_sText.size() ? here() : m_sText.data() + m_nClosing + 1;
    }

    void addAmpersand()
    {
        m_bOpenEntity = m_bOpenEntity || StringUtils::startsWithIgnoreCase(m_sText.substr(m_nAt), kEntity);
        addBareCharacter();
    }

    void addSemicolon()
    {
        if (m_bFoMode && !m_bOpenEntity)
            startSection();
        else
            addBareCharacter();
        m_bOpenEntity = false;
    }

    // The sections behind the second are read and never shown.
    void startSection()
    {
        ++m_nAt;
        m_hCurrent = Handle<SubTextFormatter>(WEBFORMAT_NEW(kSource) SubTextFormatter);
        if (m_hEmpty.isNull())
            m_hEmpty = m_hCurrent;
    }

    void addBareCharacter()
    {
        if (m_bEncodes)
            addLiteral(m_nAt, m_nAt + 1);
        else
            m_hCurrent->AddChar(m_sText[m_nAt]);
        ++m_nAt;
    }

    void addLiteral(std::size_t nStart, std::size_t nEnd)
    {
        m_hCurrent->AddLiteral(
            WebValueFormatter::ConvertLiteral(String(m_sText.substr(nStart, nEnd - nStart)), m_eSection, m_eOutput));
    }

    const OutputType m_eOutput;
    OutputType m_eSection = ValueFormatterTypes::kText;
    Handle<SubTextFormatter> m_hMain;
    Handle<SubTextFormatter> m_hEmpty;
    Handle<SubTextFormatter> m_hCurrent;
    const String m_sSource;
    const std::wstring_view m_sText;
    bool m_bFoMode = false;
    bool m_bEncodes = false;
    bool m_bPreformatted = false;
    bool m_bOpenEntity = false;
    std::size_t m_nAt = 0;
    std::size_t m_nClosing = 0;
};

TextTemplate parseTextTemplate(const String& sFormat, ValueFormatterTypes::OutputType eOutput)
{
    return TextTemplateParser(sFormat, eOutput).parse();
}

}  // namespace tov
