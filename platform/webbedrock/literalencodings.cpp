#include "webbedrock/escaping.h"

namespace tov {

namespace {

constexpr std::uint8_t kLineSeparatorClass = 1;
constexpr std::uint8_t kParagraphSeparatorClass = 2;

// The text \uXXXX of a code below 0x10000, in upper-case digits.
constexpr std::array<wchar_t, 6> unicodeEscape(std::uint32_t nCode)
{
    std::array<wchar_t, 6> aText = {L'\\', L'u'};
    for (unsigned nDigit = 0; nDigit < 4; ++nDigit)
        aText[2 + nDigit] = L"0123456789ABCDEF"[(nCode >> (12 - 4 * nDigit)) & 0xF];
    return aText;
}

constexpr std::uint8_t addUnicodeEscape(EscapeTable& tTable, std::uint32_t nCode)
{
    const std::array<wchar_t, 6> aText = unicodeEscape(nCode);
    return tTable.addText(std::wstring_view(aText.data(), aText.size()));
}

constexpr EscapeTable javaLiteralTable(bool bMarkup)
{
    EscapeTable tTable;
    addUnicodeEscape(tTable, 0x2028);
    addUnicodeEscape(tTable, 0x2029);
    for (std::uint32_t nCode = 0; nCode < 0x20; ++nCode)
        tTable.assign(nCode, addUnicodeEscape(tTable, nCode));
    for (const std::uint32_t nCode : {U'"', U'\'', U'<', U'>', U'\x7F'})
        tTable.assign(nCode, addUnicodeEscape(tTable, nCode));
    if (bMarkup)
        tTable.assign(U'&', addUnicodeEscape(tTable, U'&'));
    tTable.add(U'\\', L"\\\\");
    tTable.add(U'\n', L"\\n");
    tTable.add(U'\r', L"\\r");
    tTable.add(U'\t', L"\\t");
    tTable.add(U'\b', L"\\b");
    tTable.add(U'\f', L"\\f");
    return tTable;
}

template <bool bMarkup>
struct JavaLiteralRule
{
    static constexpr EscapeTable kTable = javaLiteralTable(bMarkup);
    static constexpr EscapeMarks kMarks = EscapeMarks::of(kTable, 0x2029, EscapeMarks::knNever);

    static std::uint8_t classOfHigh(std::uint32_t nCode)
    {
        if (nCode == 0x2028)
            return kLineSeparatorClass;
        return nCode == 0x2029 ? kParagraphSeparatorClass : EscapeTable::knClean;
    }
};

constexpr EscapeTable sqlLiteralTable()
{
    EscapeTable tTable;
    tTable.add(0, L"");
    tTable.add(U'\'', L"''");
    return tTable;
}

struct SQLLiteralRule
{
    static constexpr EscapeTable kTable = sqlLiteralTable();
    static constexpr EscapeMarks kMarks = EscapeMarks::of(kTable, 0, EscapeMarks::knNever);

    static std::uint8_t classOfHigh(std::uint32_t) { return EscapeTable::knClean; }
};

}  // namespace

W2WEncodingJavaLiteral::W2WEncodingJavaLiteral(bool bMarkup) : m_bMarkup(bMarkup) {}
W2WEncodingJavaLiteral::~W2WEncodingJavaLiteral() = default;

std::size_t W2WEncodingJavaLiteral::estimateEncodingSize(std::size_t nLength) const
{
    return nLength;
}

std::size_t W2WEncodingJavaLiteral::encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget,
                                           std::size_t nCapacity, EncodingState&) const
{
    return m_bMarkup ? Escaper<JavaLiteralRule<true>>::encode(pSource, nSource, pTarget, nCapacity)
                     : Escaper<JavaLiteralRule<false>>::encode(pSource, nSource, pTarget, nCapacity);
}

W2WEncodingSQLLiteral::W2WEncodingSQLLiteral() = default;
W2WEncodingSQLLiteral::~W2WEncodingSQLLiteral() = default;

std::size_t W2WEncodingSQLLiteral::estimateEncodingSize(std::size_t nLength) const
{
    return nLength;
}

std::size_t W2WEncodingSQLLiteral::encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget,
                                          std::size_t nCapacity, EncodingState&) const
{
    return Escaper<SQLLiteralRule>::encode(pSource, nSource, pTarget, nCapacity);
}

}  // namespace tov
