#include <libxml/HTMLparser.h>
#include <libxml/tree.h>

#include <cstring>
#include <string>

#include "support/contest.h"
#include "support/htmlreference.h"
#include "support/naiveencoding.h"
#include "support/values.h"
#include "webformat/textformatter.h"
#include "webformat/truncateformatter.h"

namespace tov {

namespace {

using Types = ValueFormatterTypes;

constexpr std::size_t kTextLength = 432;
constexpr std::size_t kDocuments = 64;
constexpr std::size_t kMostCharacters = 8 * kTextLength;
constexpr unsigned long kLimit = 100;

struct Document
{
    std::wstring sText;
    std::string sNarrow;  // the same in UTF-8
};

using Value = const Document*;

// 4,096 values, each one of 64 documents, so that a pass finds them in the processor's cache.
std::vector<Value> valuesOf(std::vector<std::wstring> vTexts)
{
    std::vector<Document>* const pDocuments = new std::vector<Document>;  // as long as the benchmarks: the program
    for (std::wstring& sText : vTexts)
        pDocuments->push_back({sText, std::string(sText.begin(), sText.end())});
    std::vector<Value> vValues;
    for (std::size_t n = 0; n < ChangingOrder::knPlaces; ++n)
        vValues.push_back(&(*pDocuments)[n % pDocuments->size()]);
    return vValues;
}

std::vector<Value> markedValues(unsigned nPercent, const std::wstring& sMarked)
{
    const std::wstring sAll = markedText(kTextLength, nPercent, sMarked);
    std::vector<std::wstring> vTexts;
    for (std::size_t n = 0; n < kDocuments; ++n)
        vTexts.push_back(sAll.substr(n * (ChangingOrder::knPlaces / kDocuments), kTextLength));
    return valuesOf(std::move(vTexts));
}

// A blank at the start is no text to a parser of HTML.
std::vector<Value> plainValues()
{
    const std::wstring sAll = markedText(kTextLength, 0, L"<");
    std::vector<std::wstring> vTexts;
    for (std::size_t n = 0; n < kDocuments; ++n)
        vTexts.push_back(L"x" + sAll.substr(n, kTextLength - 1));
    return valuesOf(std::move(vTexts));
}

// Words in paragraphs, one in four emphasised, a link or an entity: what people write with an editor.
std::vector<Value> markupValues()
{
    static constexpr const wchar_t* kPieces[] = {L"<b>word</b> ", L"<i>word</i> ", L"<a href=\"x.html\">word</a> ",
                                                 L"this &amp; that "};
    const std::wstring sChoices = markedText(kTextLength, 25, L"0123");
    std::vector<std::wstring> vTexts;
    for (std::size_t n = 0; n < kDocuments; ++n)
    {
        std::wstring sText = L"<p>x";
        for (std::size_t nAt = n * 61; sText.size() < kTextLength - 40; ++nAt)
        {
            const wchar_t nChoice = sChoices[nAt];
            sText += nChoice >= L'0' && nChoice <= L'3' ? kPieces[nChoice - L'0'] : L"plain words ";
        }
        vTexts.push_back(sText + L"</p>");
    }
    return valuesOf(std::move(vTexts));
}

class Formatter
{
public:
    explicit Formatter(Types::OutputType eOutput)
        : m_hFormatter(WebTextFormatter::ParseCustomFormat(L"@", Locale::kUSA, eOutput))
    {
    }

    void write(Value pValue)
    {
        m_tBuffer.clear();
        m_hFormatter->formatToBuffer(m_tBuffer, pValue->sText.c_str());
    }

    std::wstring text() const { return m_tBuffer.toString(); }

private:
    WebValueFormatterHandle m_hFormatter;
    StringBufferTemplate<wchar_t, kMostCharacters> m_tBuffer;
};

class HtmlRemoval
{
public:
    void write(Value pValue)
    {
        m_tBuffer.clear();
        WebTextFormatter::writeToBufferRemoveHtml(m_tBuffer, pValue->sText.c_str());
    }

    std::wstring text() const { return m_tBuffer.toString(); }

private:
    StringBufferTemplate<wchar_t, kMostCharacters> m_tBuffer;
};

class Truncation
{
public:
    explicit Truncation(Types::OutputType eOutput) : m_tFormatter(kLimit, eOutput) {}

    void write(Value pValue)
    {
        m_tBuffer.clear();
        m_tFormatter.formatValue(m_tBuffer, pValue->sText.c_str());
    }

    std::wstring text() const { return m_tBuffer.toString(); }

private:
    TruncateFormatter m_tFormatter;
    StringBufferTemplate<wchar_t, kMostCharacters> m_tBuffer;
};

// What nothing can beat: the text as it is.
class Memcpy
{
public:
    void write(Value pValue)
    {
        m_nLength = pValue->sText.size();
        std::memcpy(m_aText, pValue->sText.data(), m_nLength * sizeof(wchar_t));
    }

    std::wstring text() const { return std::wstring(m_aText, m_nLength); }

private:
    wchar_t m_aText[kMostCharacters];
    std::size_t m_nLength = 0;
};

// The loop that is written first: character by character into a string that is reused.
template <class Step>
class Loop
{
public:
    void write(Value pValue)
    {
        m_sResult.clear();
        Step tStep;
        for (const wchar_t* pText = pValue->sText.c_str(); *pText != L'\0'; ++pText)
            tStep(m_sResult, *pText);
    }

    std::wstring text() const { return m_sResult; }

private:
    std::wstring m_sResult;
};

// Drops tags and knows &amp; alone; it hides no element.
struct DropTags
{
    void operator()(std::wstring& sResult, wchar_t nChar)
    {
        static constexpr std::wstring_view kEntity = L"&amp;";
        m_bTag |= nChar == L'<';
        if (!m_bTag)
            sResult += nChar;
        m_bTag &= nChar != L'>';
        if (nChar == L';' && sResult.ends_with(kEntity))
            sResult.resize(sResult.size() - kEntity.size() + 1);
    }

    bool m_bTag = false;
};

// A whole parser of HTML: the text of its tree.
class Libxml2
{
public:
    void write(Value pValue)
    {
        constexpr int kQuiet = HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING | HTML_PARSE_NONET;
        const std::string& sHtml = pValue->sNarrow;
        const htmlDocPtr pDocument =
            htmlReadMemory(sHtml.data(), static_cast<int>(sHtml.size()), nullptr, "UTF-8", kQuiet);
        xmlChar* const pContent = xmlNodeGetContent(xmlDocGetRootElement(pDocument));
        m_sResult = reinterpret_cast<const char*>(pContent);
        xmlFree(pContent);
        xmlFreeDoc(pDocument);
    }

    std::wstring text() const { return std::wstring(m_sResult.begin(), m_sResult.end()); }

private:
    std::string m_sResult;
};

// Step by step, without a thought of the time it takes.
template <String (*pCut)(const String&, unsigned long)>
class PlainWalk
{
public:
    void write(Value pValue) { m_sResult = pCut(pValue->sText, kLimit); }
    std::wstring text() const { return m_sResult; }

private:
    String m_sResult;
};

template <class Step>
void addFormatter(const std::string& sLanguage, Types::OutputType eOutput, const std::wstring& sMarked)
{
    for (const unsigned nPercent : {0U, 1U, 10U})
    {
        const std::string sWork = "text as " + sLanguage + ", " + std::to_string(nPercent) + " % marked";
        Contest<Value> tContest(sWork, markedValues(nPercent, sMarked));
        tContest.add("webformat", Agreement::kSameText, [=] { return Formatter(eOutput); });
        tContest.add("memcpy", nPercent == 0 ? Agreement::kSameText : Agreement::kNone, [] { return Memcpy(); });
        tContest.add("loop", Agreement::kSameText, [] { return Loop<Step>(); });
    }
}

void addRemoval(const std::string& sWork, Agreement eCopy, const std::vector<Value>& vValues)
{
    Contest<Value> tContest(sWork, vValues);
    tContest.add("webformat", Agreement::kSameText, [] { return HtmlRemoval(); });
    tContest.add("memcpy", eCopy, [] { return Memcpy(); });
    tContest.add("loop", Agreement::kSameText, [] { return Loop<DropTags>(); });
    tContest.add("libxml2", Agreement::kSameText, [] { return Libxml2(); });
}

void addTruncation(const std::string& sValues, const std::vector<Value>& vValues)
{
    Contest<Value> tText("truncation of " + sValues + " as text", vValues);
    tText.add("webformat", Agreement::kSameText, [] { return Truncation(Types::kText); });
    tText.add("memcpy", Agreement::kNone, [] { return Memcpy(); });
    tText.add("plain walk", Agreement::kSameText, [] { return PlainWalk<&HtmlReference::cutText>(); });
    Contest<Value> tHtml("truncation of " + sValues + " as HTML", vValues);
    tHtml.add("webformat", Agreement::kSameText, [] { return Truncation(Types::kHTML); });
    tHtml.add("memcpy", Agreement::kNone, [] { return Memcpy(); });
    tHtml.add("plain walk", Agreement::kSameText, [] { return PlainWalk<&HtmlReference::cutHtml>(); });
}

}  // namespace

}  // namespace tov

int main(int nArguments, char** ppArguments)
{
    using namespace tov;
    addFormatter<AppendMarkup>("HTML", Types::kHTML, L"&<>\"'");
    addFormatter<AppendMarkup>("XML", Types::kXML, L"&<>\"'");
    addFormatter<AppendJavaScript>("JavaScript", Types::kJavaScript, L"\\\n\t\"'<>");
    addFormatter<AppendSQL>("SQL literal", Types::kSQLLiteral, L"'");
    addRemoval("HTML removal, plain text", Agreement::kSameText, plainValues());
    addRemoval("HTML removal, markup", Agreement::kNone, markupValues());
    addTruncation("plain text", plainValues());
    addTruncation("markup", markupValues());
    return runBenchmarks(nArguments, ppArguments);
}
