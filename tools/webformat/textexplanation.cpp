#include "explanation.h"
#include "webformat/textformatterimpl.h"

namespace tov {

namespace {

using OutputType = ValueFormatterTypes::OutputType;
using Format = SubTextFormatter::Format;

// With what outputs encode, tags and blanks in it.
constexpr wchar_t ksExample[] = L"R&D <b>team 7</b>";

String imageWords(const SubTextFormatter::ImageFormat& tImage)
{
    String sWords = L"the value as the address of an image";
    if (tImage.width >= 0)
        sWords += L", " + std::to_wstring(tImage.width) + L" pixels wide";
    if (tImage.height >= 0)
        sWords += L", " + std::to_wstring(tImage.height) + L" pixels high";
    return sWords;
}

String textWords(const String& sText)
{
    return L"the text \"" + sText + L"\"";
}

String wordsOf(const Format& tFormat)
{
    if (tFormat.bLiteral)
        return textWords(tFormat.sText);
    if (tFormat.truncateFormat.bTruncate)
        return L"the value, cut to " + std::to_wstring(tFormat.truncateFormat.nChars) +
               L" characters; nothing behind it is shown";
    switch (tFormat.eTextType)
    {
    case SubTextFormatter::kHTML: return L"the value, which is HTML";
    case SubTextFormatter::kNoBreakSpaces: return L"the value, with blanks that do not break in HTML";
    case SubTextFormatter::kJavaScriptString: return L"the value, as the inside of a JavaScript string in HTML";
    case SubTextFormatter::kImage: return imageWords(tFormat.imageFormat);
    default: return L"the value";
    }
}

// A line for each element that the template asked for, and one for the whole. Bare characters are elements of their
// own; those that stand together share a line.
void addLines(std::vector<ExplanationLine>& vLines, const SubTextFormatter& tFormatter, const String& sSource,
              OutputType eOutput, const wchar_t* pExample, const wchar_t* pWords)
{
    SubTextFormatter tUpToHere;
    const auto example = [&]
    {
        StringBufferTemplate<wchar_t, 256> tBuffer;
        tUpToHere.FormatValue(tBuffer, pExample, eOutput);
        return tBuffer.toString();
    };
    const Format* pBare = nullptr;  // the element before, if it is such a character
    for (const Format& tFormat : tFormatter.formats())
    {
        tUpToHere.AddFormat(tFormat);
        const String sPiece = sSource.substr(tFormat.nSourceStart, tFormat.nSourceEnd - tFormat.nSourceStart);
        const bool bBare = tFormat.bLiteral && sPiece == tFormat.sText;
        if (bBare && pBare && pBare->nSourceEnd == tFormat.nSourceStart)
        {
            ExplanationLine& tLine = vLines.back();
            tLine.sPattern += sPiece;
            tLine.sWords = textWords(tLine.sPattern);
            tLine.sExample = example();
        }
        else
            vLines.push_back({sPiece, wordsOf(tFormat), example()});
        pBare = bBare ? &tFormat : nullptr;
    }
    vLines.push_back({sSource, pWords, example()});
}

}  // namespace

std::vector<ExplanationLine> explainTextPattern(const String& sPattern, const Locale&, const KTWUILanguage&)
{
    const WebTextFormatterImpl tText(sPattern, ValueFormatterTypes::kText);
    const WebTextFormatterImpl tHtml(sPattern, ValueFormatterTypes::kHTML);
    const WebTextFormatterImpl tPdf(sPattern, ValueFormatterTypes::kPDF);
    std::vector<ExplanationLine> vLines;
    addLines(vLines, tText.mainFormatter(), tText.sourceText(), ValueFormatterTypes::kText, ksExample,
             L"in plain text");
    if (tHtml.sourceText() != tText.sourceText())
        addLines(vLines, tHtml.mainFormatter(), tHtml.sourceText(), ValueFormatterTypes::kHTML, ksExample, L"in HTML");
    if (!tPdf.emptyFormatter().isNull())
        addLines(vLines, *tPdf.emptyFormatter(), tPdf.sourceText(), ValueFormatterTypes::kPDF, L"",
                 L"in PDF and XLSX, for null and empty values");
    return vLines;
}

}  // namespace tov
