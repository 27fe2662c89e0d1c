#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "corefacade/sqldatatype.h"
#include "inputerror.h"
#include "intl/locale.h"
#include "webbedrock/string.h"
#include "webformat/outputtypes.h"

namespace tov {

// The names that the command takes and prints. Those that look one up throw InputError for an unknown name: "found the
// output "htm", expected one of ...".

// "text", "html", "xml", "javascript", "pdf", "sql", "sqlliteral", "xlsx".
ValueFormatterTypes::OutputType outputFromName(std::string_view sName);
const char* outputName(ValueFormatterTypes::OutputType eOutput);
std::vector<std::string> outputNames();

std::vector<std::string> typeNames();

// A type by its name, with another storage than its own where `sStorage` is not empty.
SQLDataType typeFromNames(std::string_view sType, std::string_view sStorage);

const char* storageName(SQLDataType::StorageType eStorage);

Locale localeFromTag(const String& sTag);

// Runs a look-up of names that came as arguments: what it says about an unknown one is thrown again with the option's
// name in front.
template <class LookUp>
auto ofArgument(const char* pOption, const LookUp& tLookUp)
{
    try
    {
        return tLookUp();
    }
    catch (const InputError& tError)
    {
        throw InputError(std::string(pOption) + ": " + tError.what());
    }
}

// The characters of an argument; `pWhat` says which one in the message about bytes that are not UTF-8.
String wideArgument(std::string_view sUtf8, const char* pWhat);

}  // namespace tov
