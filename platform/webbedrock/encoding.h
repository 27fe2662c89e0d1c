#pragma once

#include <cstddef>
#include <string>

#include "webbedrock/export.h"
#include "webbedrock/string.h"
#include "webbedrock/stringbuffer.h"

namespace tov {

// What an encoder carries from one chunk of a text to the next; a fresh one starts a text.
struct EncodingState
{
    unsigned char aPending[2] = {0, 0};  // bytes that do not yet fill a group (base64)
    unsigned nPending = 0;
};

// Turns a run of `Source` into text that is safe somewhere. Encoders are stateless and may be shared by all threads:
// what a text carries from chunk to chunk is in the caller's `EncodingState`.
//
// Example:  encodeAsString(W2WEncodingSGML(W2WEncodingSGML::kHTML), L"a<b", 3) -> "a&lt;b"
template <class Source, class Target>
class WEBFORMAT_EXPORT Encoding
{
public:
    static constexpr std::size_t knTooSmall = static_cast<std::size_t>(-1);

    virtual ~Encoding() = default;

    // A guess at the number of characters that `nLength` items encode to; `encode` says when it was too low.
    virtual std::size_t estimateEncodingSize(std::size_t nLength) const = 0;

    // Encodes `nSource` items into at most `nCapacity` characters and returns how many it wrote, or `knTooSmall` when
    // they do not fit: then the state is as before and what stands in the target is of no use. Behind what it wrote, up
    // to the capacity, the target may be overwritten too.
    virtual std::size_t encode(const Source* pSource, std::size_t nSource, Target* pTarget, std::size_t nCapacity,
                               EncodingState& tState) const = 0;

    // Writes what the end of the text still asks for (padding); at most 4 characters. Returns as `encode`.
    virtual std::size_t finish(Target* pTarget, std::size_t nCapacity, EncodingState& tState) const;

    // Whether a text may be handed over in pieces with one state.
    virtual bool isChunkable() const { return true; }

    // Appends the whole encoded text, its end included; the buffer grows as it must. The default goes in chunks, never
    // cuts a surrogate pair, and asks again with more room where the estimate was too low: a chunk is half of the free
    // room, 64 items at least. An empty text never grows the buffer. Where the result would be too long (the buffer's
    // assertion) or memory runs out (std::bad_alloc), the buffer keeps its old length and contents.
    virtual void updateToBuffer(StringBufferBaseTemplate<Target>& tBuffer, const Source* pSource,
                                std::size_t nSource) const;
};

extern template class Encoding<wchar_t, wchar_t>;
extern template class Encoding<unsigned char, wchar_t>;

using W2WEncoding = Encoding<wchar_t, wchar_t>;
using B2WEncoding = Encoding<unsigned char, wchar_t>;

// The encoded text as a new string.
WEBFORMAT_EXPORT String encodeAsString(const W2WEncoding& tEncoding, const wchar_t* pText, std::size_t nLength);
WEBFORMAT_EXPORT String encodeAsString(const B2WEncoding& tEncoding, const unsigned char* pBytes, std::size_t nLength);

// Markup: & < > " ' become entities (&amp; &lt; &gt; &quot; &#39;). Characters that XML 1.0 does not allow (U+0000 to
// U+0008, U+000B, U+000C, U+000E to U+001F, U+FFFE, U+FFFF, surrogates, above U+10FFFF) become U+FFFD in every mode, so
// that no value can make a document malformed.
class WEBFORMAT_EXPORT W2WEncodingSGML final : public W2WEncoding
{
public:
    enum SGMLType
    {
        kXML = 0,
        kHTML = 1,
        kHTMLNoBreakSpaces = 2,  // as kHTML, and U+0020 becomes &nbsp;
        kXMLNoQuotes = 3         // as kXML, but " and ' stay
    };

    explicit W2WEncodingSGML(SGMLType eType);
    ~W2WEncodingSGML() override;

    std::size_t estimateEncodingSize(std::size_t nLength) const override;
    std::size_t encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity,
                       EncodingState& tState) const override;
    void updateToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const wchar_t* pSource,
                        std::size_t nSource) const override;

private:
    SGMLType m_eType;
};

// The inside of a JavaScript string literal; no quotes are added. \ becomes \\, the usual controls \n \r \t \b \f; the
// quotes, < and >, U+2028, U+2029, U+007F and the other characters below U+0020 become \uXXXX in upper-case digits. &
// stays, except where the literal stands inside markup (`bMarkup`): there it becomes \u0026, so that it is safe in an
// attribute too.
class WEBFORMAT_EXPORT W2WEncodingJavaLiteral final : public W2WEncoding
{
public:
    explicit W2WEncodingJavaLiteral(bool bMarkup = false);
    ~W2WEncodingJavaLiteral() override;

    std::size_t estimateEncodingSize(std::size_t nLength) const override;
    std::size_t encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity,
                       EncodingState& tState) const override;

private:
    bool m_bMarkup;
};

// The inside of an SQL string literal; no quotes are added. ' becomes '', U+0000 is dropped.
class WEBFORMAT_EXPORT W2WEncodingSQLLiteral final : public W2WEncoding
{
public:
    W2WEncodingSQLLiteral();
    ~W2WEncodingSQLLiteral() override;

    std::size_t estimateEncodingSize(std::size_t nLength) const override;
    std::size_t encode(const wchar_t* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity,
                       EncodingState& tState) const override;
};

// Two upper-case hexadecimal digits a byte: 00 FF -> "00FF".
class WEBFORMAT_EXPORT B2WEncodingHex final : public B2WEncoding
{
public:
    B2WEncodingHex();
    ~B2WEncodingHex() override;

    std::size_t estimateEncodingSize(std::size_t nLength) const override;
    std::size_t encode(const unsigned char* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity,
                       EncodingState& tState) const override;
};

// Base64 as in RFC 4648, padded, no line breaks: 00 FF -> "AP8=". `finish` writes the last group and its padding.
class WEBFORMAT_EXPORT B2TEncodingBase64 final : public B2WEncoding
{
public:
    B2TEncodingBase64();
    ~B2TEncodingBase64() override;

    std::size_t estimateEncodingSize(std::size_t nLength) const override;
    std::size_t encode(const unsigned char* pSource, std::size_t nSource, wchar_t* pTarget, std::size_t nCapacity,
                       EncodingState& tState) const override;
    std::size_t finish(wchar_t* pTarget, std::size_t nCapacity, EncodingState& tState) const override;
};

}  // namespace tov
