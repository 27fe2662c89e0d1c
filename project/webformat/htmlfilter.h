#pragma once

#include <cstddef>
#include <string_view>

#include "project/webformat/wholetextwriter.h"

namespace tov {

// The readers hand a changed text over in runs, so that whoever needs it encoded, cut or counted takes it from there
// without a buffer in between. They allocate nothing, refer to the text that they read, and take time linear in it.
//
// Example:  HtmlTextReader tReader(L"a<br>b&amp;c");
//           for (std::wstring_view sRun = tReader.next(); !sRun.empty(); sRun = tReader.next())   // "a", "b", "&", "c"
//               tBuffer.append(sRun);

// The first "<" or "&", or `pEnd`.
const wchar_t* findMarkup(const wchar_t* pText, const wchar_t* pEnd);

// The text of an HTML fragment, in runs (the rules: `WebTextFormatter::writeToBufferRemoveHtml`).
class HtmlTextReader
{
public:
    explicit HtmlTextReader(std::wstring_view sHtml) : m_sRest(sHtml) {}

    // The next run, of at most `nMost` characters (not 0); empty at the end.
    std::wstring_view next(std::size_t nMost = std::wstring_view::npos);

private:
    std::wstring_view takeRun(std::size_t nLength);
    std::wstring_view takeFromAmpersand();
    void skipTag();
    void skipElement(std::wstring_view sName);
    void skipBehind(std::size_t nAt);

    std::wstring_view m_sRest;
};

// Writes the text of an HTML fragment, as it is or encoded.
void writeHtmlText(WholeTextWriter& tWriter, std::wstring_view sHtml);
void writeHtmlText(WholeTextWriter& tWriter, std::wstring_view sHtml, const W2WEncoding& tEncoding);

// How many characters the bracket tag at the start of the text has, 0 if there is none: "[/b] x" -> 4. The tags are
// [b] [/b] [i] [/i] [u] [/u] [br/], in either case.
std::size_t bracketTagLength(std::wstring_view sText);

// A text with its bracket tags as HTML tags, in runs: "x[b]y" -> "x", "<b>", "y".
class BracketTagReader
{
public:
    explicit BracketTagReader(std::wstring_view sText) : m_sRest(sText) {}

    // The next run, valid until the next call; empty at the end.
    std::wstring_view next();

    // Whether a tag has been handed over.
    bool hasConverted() const { return m_bConverted; }

private:
    static constexpr std::size_t knLongestTag = 5;

    std::wstring_view takeTag(std::size_t nLength);

    std::wstring_view m_sRest;
    wchar_t m_aTag[knLongestTag];
    bool m_bConverted = false;
};

}  // namespace tov
