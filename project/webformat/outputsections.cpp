#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include "utilities/stringutils.h"
#include "webformat/valueformatter.h"

// format  = section *( tag section )
// section = *( any character but "'" and "[" / "'" [any character] / "[" no tag word "]" )
// tag     = "[" word ( "]" / end )
// word    = "text" / "html" / "xml" / "java" / "pdf"     ; any case, no blanks
//
// The first section is a [text] section. A double quote has no meaning here. A "[" without a "]" takes the rest.

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;

struct TagWord
{
    std::wstring_view sWord;
    OutputType eType;
};

constexpr TagWord kTagWords[] = {
    {L"text", ValueFormatterTypes::kText}, {L"html", ValueFormatterTypes::kHTML},
    {L"xml", ValueFormatterTypes::kXML},   {L"java", ValueFormatterTypes::kJavaScript},
    {L"pdf", ValueFormatterTypes::kPDF},
};

std::optional<OutputType> typeOfWord(std::wstring_view sWord)
{
    for (const TagWord& tTag : kTagWords)
    {
        if (StringUtils::equalsIgnoreCase(sWord, tTag.sWord))
            return tTag.eType;
    }
    return std::nullopt;
}

struct Section
{
    OutputType eType;
    std::wstring_view sText;
    bool bLast;
};

// Reads the sections of a format one after the other.
class SectionReader
{
public:
    explicit SectionReader(std::wstring_view sFormat) : m_sFormat(sFormat) {}

    Section next()
    {
        const std::size_t nStart = m_nAt;
        const OutputType eType = m_eType;
        while ((m_nAt = m_sFormat.find_first_of(L"'[", m_nAt)) != std::wstring_view::npos)
        {
            const std::size_t nFound = m_nAt;
            if (m_sFormat[nFound] == L'\'')
                m_nAt = std::min(nFound + 2, m_sFormat.size());
            else if (readTag())
                return {eType, m_sFormat.substr(nStart, nFound - nStart), false};
        }
        return {eType, m_sFormat.substr(nStart), true};
    }

private:
    // Moves from a "[" behind its "]"; true if it was a tag, whose type then is that of the next section.
    bool readTag()
    {
        const std::size_t nWord = m_nAt + 1;
        const std::size_t nEnd = std::min(m_sFormat.find(L']', nWord), m_sFormat.size());
        m_nAt = std::min(nEnd + 1, m_sFormat.size());
        const std::optional<OutputType> tType = typeOfWord(m_sFormat.substr(nWord, nEnd - nWord));
        m_eType = tType.value_or(m_eType);
        return tType.has_value();
    }

    std::wstring_view m_sFormat;
    std::size_t m_nAt = 0;
    OutputType m_eType = ValueFormatterTypes::kText;
};

struct PickedSections
{
    String sText;
    std::optional<OutputType> tFound;  // none: no section matched
};

PickedSections pickSections(std::wstring_view sFormat, OutputType eWanted)
{
    const bool bTakesLastHtml = eWanted == ValueFormatterTypes::kXLSX || eWanted == ValueFormatterTypes::kPDF;
    PickedSections tPicked;
    SectionReader tReader(sFormat);
    for (bool bLast = false; !bLast;)
    {
        const Section tSection = tReader.next();
        bLast = tSection.bLast;
        // Kept: a last [html] section joins the [pdf] sections before it.
        const bool bHtmlInstead = bLast && bTakesLastHtml && tSection.eType == ValueFormatterTypes::kHTML;
        if (!bHtmlInstead && tSection.eType != eWanted)
            continue;
        tPicked.sText += tSection.sText;
        tPicked.tFound = tSection.eType;
    }
    return tPicked;
}

}  // namespace

String WebValueFormatter::GetOutputFormatString(const String& sFormat, OutputType eWanted, OutputType& eFound)
{
    PickedSections tPicked = pickSections(sFormat, eWanted);
    if (!tPicked.tFound)
        tPicked = pickSections(sFormat, kText);
    eFound = tPicked.tFound.value_or(kText);
    return std::move(tPicked.sText);
}

}  // namespace tov
