#include "project/webformat/texttreatments.h"

#include "project/webformat/htmlfilter.h"
#include "project/webformat/outputencoders.h"

namespace tov {

namespace {

using Types = ValueFormatterTypes;
using Way = TextTreatment::Way;

constexpr std::wstring_view kImageStart = L"<fo:external-graphic src=\"url('";

// Made at the first use and never destroyed: values may be formatted while static objects go away.
struct AllTreatments
{
    AllTreatments()
    {
        const OutputEncoders& tEncoders = outputEncoders();
        fill(Types::kXML, {TextTreatment::kEncoded, &tEncoders.kEncodingXML});
        aByOutput[Types::kXML].aByType[SubTextFormatter::kHTML] = {};
        aByOutput[Types::kXML].aByType[SubTextFormatter::kImage] = {};
        fill(Types::kJavaScript, {TextTreatment::kEncoded, &tEncoders.kEncodingJavascriptLiteral});
        fill(Types::kSQLLiteral, {TextTreatment::kEncoded, &tEncoders.kEncodingSQLLiteral});
        aByOutput[Types::kText].aByType[SubTextFormatter::kHTML] = {TextTreatment::kWithoutHtml, nullptr};
        for (const Types::OutputType eOutput : {Types::kPDF, Types::kXLSX})
        {
            fill(eOutput, {TextTreatment::kWithTags, &tEncoders.kEncodingXML});
            aByOutput[eOutput].aByType[SubTextFormatter::kImage].eWay = TextTreatment::kImageElement;
        }
        aByOutput[Types::kHTML].aByType = {{{TextTreatment::kEncoded, &tEncoders.kEncodingHTML},
                                            {},
                                            {TextTreatment::kEncoded, &kEncodingNoBreakSpaces},
                                            {TextTreatment::kEncoded, &kEncodingMarkupLiteral},
                                            {}}};
    }

    void fill(Types::OutputType eOutput, const TextTreatment& tTreatment)
    {
        aByOutput[eOutput].aByType.fill(tTreatment);
    }

    const W2WEncodingSGML kEncodingNoBreakSpaces{W2WEncodingSGML::kHTMLNoBreakSpaces};
    const W2WEncodingJavaLiteral kEncodingMarkupLiteral{true};
    std::array<TextTreatments, Types::kLastType> aByOutput;
};

void writeWithTags(WholeTextWriter& tWriter, std::wstring_view sValue, const W2WEncoding& tEncoding)
{
    BracketTagReader tReader(sValue);
    for (std::wstring_view sRun = tReader.next(); !sRun.empty(); sRun = tReader.next())
        tWriter.write(sRun, tEncoding);
}

bool hasTag(std::wstring_view sValue)
{
    BracketTagReader tReader(sValue);
    while (!tReader.hasConverted() && !tReader.next().empty())
        continue;
    return tReader.hasConverted();
}

void writeImage(WholeTextWriter& tWriter, std::wstring_view sValue, const W2WEncoding& tEncoding,
                std::wstring_view sImageEnd)
{
    // Kept: a value with a bracket tag is text, not an address.
    if (hasTag(sValue))
    {
        writeWithTags(tWriter, sValue, tEncoding);
        return;
    }
    tWriter.write(kImageStart);
    tWriter.write(sValue, tEncoding);
    tWriter.write(sImageEnd);
}

}  // namespace

const TextTreatments& textTreatments(Types::OutputType eOutput)
{
    static const AllTreatments& s_tTreatments = *new AllTreatments;
    return s_tTreatments.aByOutput[isOutputType(eOutput) ? eOutput : Types::kText];
}

void writeTreated(WholeTextWriter& tWriter, std::wstring_view sValue, const TextTreatment& tTreatment,
                  std::wstring_view sImageEnd)
{
    switch (tTreatment.eWay)
    {
    case TextTreatment::kUnchanged: tWriter.write(sValue); break;
    case TextTreatment::kEncoded: tWriter.write(sValue, *tTreatment.pEncoding); break;
    case TextTreatment::kWithTags: writeWithTags(tWriter, sValue, *tTreatment.pEncoding); break;
    case TextTreatment::kImageElement: writeImage(tWriter, sValue, *tTreatment.pEncoding, sImageEnd); break;
    case TextTreatment::kWithoutHtml: writeHtmlText(tWriter, sValue); break;
    }
}

}  // namespace tov
