#include "webbedrock/escaping.h"

namespace tov {

namespace {

constexpr std::uint8_t kReplacementClass = 1;

bool isAllowedFrom128(std::uint32_t nCode)
{
    const bool bSurrogate = (nCode & 0xFFFFF800) == 0xD800;
    const bool bNotCharacter = (nCode | 1) == 0xFFFF;
    return !bSurrogate && !bNotCharacter && nCode <= 0x10FFFF;
}

// What every mode replaces: markup, and the controls that XML does not allow.
constexpr EscapeTable commonTable()
{
    EscapeTable tTable;
    tTable.addText(L"\uFFFD");
    for (std::uint32_t nCode = 0; nCode < 0x20; ++nCode)
        tTable.assign(nCode, kReplacementClass);
    for (const std::uint32_t nCode : {U'\t', U'\n', U'\r'})
        tTable.assign(nCode, EscapeTable::knClean);
    tTable.add(U'&', L"&amp;");
    tTable.add(U'<', L"&lt;");
    tTable.add(U'>', L"&gt;");
    return tTable;
}

constexpr EscapeTable quotesTable()
{
    EscapeTable tTable = commonTable();
    tTable.add(U'"', L"&quot;");
    tTable.add(U'\'', L"&#39;");
    return tTable;
}

constexpr EscapeTable noBreakTable()
{
    EscapeTable tTable = quotesTable();
    tTable.add(U' ', L"&nbsp;");
    return tTable;
}

// Everything from the surrogates on is looked at.
constexpr EscapeMarks marksOf(const EscapeTable& tTable)
{
    return EscapeMarks::of(tTable, 0, 0xD800);
}

struct HighRule
{
    static std::uint8_t classOfHigh(std::uint32_t nCode)
    {
        return isAllowedFrom128(nCode) ? EscapeTable::knClean : kReplacementClass;
    }
};

struct NoQuotesRule : HighRule
{
    static constexpr EscapeTable kTable = commonTable();
    static constexpr EscapeMarks kMarks = marksOf(kTable);
};

struct QuotesRule : HighRule
{
    static constexpr EscapeTable kTable = quotesTable();
    static constexpr EscapeMarks kMarks = marksOf(kTable);
};

struct NoBreakRule : HighRule
{
    static constexpr EscapeTable kTable = noBreakTable();
    static constexpr EscapeMarks kMarks = marksOf(kTable);
};

// Calls `tUse` with the escaper of the mode.
template <class Use>
auto withEscaper(W2WEncodingSGML::SGMLType eType, const Use& tUse)
{
    switch (eType)
    {
    case W2WEncodingSGML::kHTMLNoBreakSpaces: return tUse(Escaper<NoBreakRule>());
    case W2WEncodingSGML::kXMLNoQuotes: return tUse(Escaper<NoQuotesRule>());
    case W2WEncodingSGML::kXML:
    case W2WEncodingSGML::kHTML: break;
    }
    return tUse(Escaper<QuotesRule>());
}

}  // namespace

W2WEncodingSGML::W2WEncodingSGML(SGMLType eType) : m_eType(eType) {}
W2WEncodingSGML::~W2WEncodingSGML() = default;

std::size_t W2WEncodingSGML::estimateEncodingSize(std::size_t nLength) const
{
    return nLength;
}

std::size_t W2WEncodingSGML::encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget,
                                    std::size_t nCapacity, EncodingState&) const
{
    return withEscaper(m_eType, [&](auto tEscaper) { return tEscaper.encode(pSource, nSource, pTarget, nCapacity); });
}

void W2WEncodingSGML::updateToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pSource,
                                     std::size_t nSource) const
{
    withEscaper(m_eType, [&](auto tEscaper) { tEscaper.append(tBuffer, pSource, nSource); });
}

}  // namespace tov
