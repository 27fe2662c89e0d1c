#include "webformat/outputtypes.h"

#include "outputencoders.h"
#include "webbedrock/assertion.h"
#include "webformat/valueformatter.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/valueformatter";

}  // namespace

const OutputEncoders& outputEncoders()
{
    static const OutputEncoders& s_tEncoders = *new OutputEncoders;
    return s_tEncoders;
}

const W2WEncoding* encoderFor(ValueFormatterTypes::OutputType eType)
{
    switch (eType)
    {
    case ValueFormatterTypes::kHTML: return &outputEncoders().kEncodingHTML;
    case ValueFormatterTypes::kXML:
    case ValueFormatterTypes::kPDF:
    case ValueFormatterTypes::kXLSX: return &outputEncoders().kEncodingXML;
    case ValueFormatterTypes::kJavaScript: return &outputEncoders().kEncodingJavascriptLiteral;
    case ValueFormatterTypes::kSQLLiteral: return &outputEncoders().kEncodingSQLLiteral;
    case ValueFormatterTypes::kText:
    case ValueFormatterTypes::kSQL:
    case ValueFormatterTypes::kLastType: break;
    }
    return nullptr;
}

void ValueFormatterTypes::encodeToBufferOfType(StringBufferBaseTemplate<wchar_t>& tBuffer, OutputType eType,
                                               const wchar_t* pText, std::size_t nLength)
{
    if (eType == kLastType)
        Assertion::handleFailure("unknown type", kSource, __LINE__);
    if (!isOutputType(eType) || nLength == 0)
        return;
    if (const W2WEncoding* pEncoder = encoderFor(eType))
        pEncoder->updateToBuffer(tBuffer, pText, nLength);
    else
        tBuffer.append(pText, nLength);
}

String WebValueFormatter::ConvertLiteral(const String& sLiteral, OutputType eFrom, OutputType eTo)
{
    const W2WEncoding* pEncoder = eFrom == eTo ? nullptr : encoderFor(eTo);
    return pEncoder ? encodeAsString(*pEncoder, sLiteral.data(), sLiteral.size()) : sLiteral;
}

}  // namespace tov
