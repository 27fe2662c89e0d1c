#pragma once

#include "webformat/textformatterimpl.h"

namespace tov {

// What a text template says for one output.
struct TextTemplate
{
    String sSource;  // the section for the output
    Handle<const SubTextFormatter> hMain;
    Handle<const SubTextFormatter> hEmpty;  // for null and empty values; null where the template has none
};

// Reads a template (the grammar: `SubTextFormatter`). Nothing is rejected; linear in the length.
TextTemplate parseTextTemplate(const String& sFormat, ValueFormatterTypes::OutputType eOutput);

}  // namespace tov
