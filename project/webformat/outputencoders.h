#pragma once

#include "webbedrock/encoding.h"
#include "webformat/outputtypes.h"

namespace tov {

// The encoders of the output types: one set for the process, made on first use, never changed and never destroyed, so
// that values may still be formatted while static objects go away. Any number of threads may share them.
struct OutputEncoders
{
    const W2WEncodingSGML kEncodingHTML{W2WEncodingSGML::kHTML};
    const W2WEncodingSGML kEncodingXML{W2WEncodingSGML::kXML};
    const W2WEncodingJavaLiteral kEncodingJavascriptLiteral;
    const W2WEncodingSQLLiteral kEncodingSQLLiteral;
};

const OutputEncoders& outputEncoders();

inline bool isOutputType(ValueFormatterTypes::OutputType eType)
{
    return eType >= ValueFormatterTypes::kText && eType < ValueFormatterTypes::kLastType;
}

// The encoder of an output type. Null where text is copied unchanged (kText, kSQL) and for values that are no output
// type. A formatter that encodes many values asks once, when it is built.
const W2WEncoding* encoderFor(ValueFormatterTypes::OutputType eType);

}  // namespace tov
