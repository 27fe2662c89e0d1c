#include <algorithm>
#include <string_view>

#include "bufferguard.h"
#include "outputencoders.h"
#include "webformat/textformatter.h"

namespace tov {

namespace {

constexpr std::size_t knPiece = 64;          // characters of the value that are worked on at a time
constexpr std::size_t knLongestEscape = 10;  // "&#39;&#39;"

using Piece = wchar_t[knPiece * knLongestEscape];

std::size_t encodeForStatement(const wchar_t* pText, std::size_t nText, Piece& aPiece)
{
    EncodingState tState;
    return outputEncoders().kEncodingSQLLiteral.encode(pText, nText, aPiece, std::size(aPiece), tState);
}

// Empty: the character is copied. Kept: so are the ones that XML does not allow, but for the controls, which the
// JavaScript encoding writes in letters.
std::wstring_view entityOf(wchar_t nChar)
{
    switch (nChar)
    {
    case L'"': return L"&quot;";
    case L'&': return L"&amp;";
    case L'\'': return L"&#39;&#39;";  // an apostrophe in SQL is two
    case L'<': return L"&lt;";
    case L'>': return L"&gt;";
    default: return {};
    }
}

std::size_t encodeForMarkup(const wchar_t* pText, std::size_t nText, Piece& aPiece)
{
    wchar_t* pTarget = aPiece;
    for (const wchar_t nChar : std::wstring_view(pText, nText))
    {
        const std::wstring_view sEntity = entityOf(nChar);
        if (sEntity.empty())
            *pTarget++ = nChar;
        else
            pTarget = std::copy(sEntity.begin(), sEntity.end(), pTarget);
    }
    return static_cast<std::size_t>(pTarget - aPiece);
}

std::size_t pieceLength(const wchar_t* pText, std::size_t nText)
{
    if (nText <= knPiece)
        return nText;
    const bool bCutsPair = pText[knPiece] >= 0xDC00 && pText[knPiece] < 0xE000;
    return bCutsPair ? knPiece - 1 : knPiece;
}

// The body of the literal: a first encoding, and the JavaScript encoding of what that gives. The text between the two
// never stands whole in memory, so that no value needs the heap, however long it is.
class BodyEncoding final : public W2WEncoding
{
public:
    using FirstEncoding = std::size_t (*)(const wchar_t* pText, std::size_t nText, Piece& aPiece);

    explicit BodyEncoding(FirstEncoding pFirst) : m_pFirst(pFirst) {}

    std::size_t estimateEncodingSize(std::size_t nLength) const override
    {
        return outputEncoders().kEncodingJavascriptLiteral.estimateEncodingSize(nLength);
    }

    std::size_t encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity,
                       EncodingState& tState) const override
    {
        std::size_t nTotal = 0;
        for (std::size_t nPiece = 0; nSource != 0; pSource += nPiece, nSource -= nPiece)
        {
            nPiece = pieceLength(pSource, nSource);
            Piece aPiece;
            const std::size_t nFirst = m_pFirst(pSource, nPiece, aPiece);
            const std::size_t nWritten = outputEncoders().kEncodingJavascriptLiteral.encode(
                aPiece, nFirst, pTarget + nTotal, nCapacity - nTotal, tState);
            if (nWritten == knTooSmall)
                return knTooSmall;
            nTotal += nWritten;
        }
        return nTotal;
    }

private:
    FirstEncoding m_pFirst;
};

void appendBody(StringBufferBaseTemplate<wchar_t>& tBuffer, std::wstring_view sText,
                ValueFormatterTypes::OutputType eOutput)
{
    switch (eOutput)
    {
    case ValueFormatterTypes::kText:
        BodyEncoding(&encodeForStatement).updateToBuffer(tBuffer, sText.data(), sText.size());
        break;
    case ValueFormatterTypes::kHTML:
    case ValueFormatterTypes::kXML:
        BodyEncoding(&encodeForMarkup).updateToBuffer(tBuffer, sText.data(), sText.size());
        break;
    default: break;  // kept: only the quotes
    }
}

}  // namespace

TextSQLLiteralFormatter::TextSQLLiteralFormatter(OutputType eOutput)
    : WebTextFormatter(SQLDataType::kStorageWChar, String()), m_eOutput(eOutput)
{
}

TextSQLLiteralFormatter::~TextSQLLiteralFormatter() = default;

ValueFormatterTypes::OutputType TextSQLLiteralFormatter::outputType() const
{
    return m_eOutput;
}

void TextSQLLiteralFormatter::impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    const std::wstring_view sQuote = m_eOutput == kHTML ? L"&#39;" : L"'";
    const wchar_t* pText = static_cast<const wchar_t*>(pValue);
    BufferGuard tGuard(tBuffer);
    tBuffer.append(sQuote);
    if (pText)
        appendBody(tBuffer, std::wstring_view(pText), m_eOutput);
    tBuffer.append(sQuote);
    tGuard.keep();
}

}  // namespace tov
