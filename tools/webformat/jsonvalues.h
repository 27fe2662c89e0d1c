#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "corefacade/sqldatatype.h"
#include "jsonvalue.h"
#include "typedvalue.h"

namespace tov {

// The values of the batch protocol, of data cells and of the command line as typed storage.
//
//     number    = [sign] ( 1*DIGIT ["." *DIGIT] / "." 1*DIGIT ) [ ( "e" / "E" ) [sign] 1*DIGIT ]
//     double    = number / "NaN" / "INF" / "-INF"
//     decimal   = number / "INF" / "-INF"
//     integer   = [sign] 1*DIGIT                     ; within the range of its storage
//     date      = ["-"] 4*9DIGIT "-" 2DIGIT "-" 2DIGIT
//     time      = 2DIGIT ":" 2DIGIT ":" 2DIGIT ["." 1*9DIGIT]
//     timestamp = date " " time                      ; "T" is taken for the blank too
//     base64    = RFC 4648, padded; hex = pairs of digits in either case
//
// Days and months are checked against the calendar, hours up to 23, minutes and seconds up to 59.
//
// A piece of text that is no such value makes these throw InputError: `found "12x", expected a number`.

// A value of the type, in the type's storage. Binary values are base64, text is taken as it stands (U+0000 is an
// error).
//
// Example: valueFromText(SQLDataType(SQLDataType::kDouble), "12.5") -> the double 12.5
TypedValue valueFromText(const SQLDataType& tType, std::string_view sText);

// The same from a JSON value: numbers as JSON numbers or texts, binary as {"hex": "..."} or {"base64": "..."}, null.
TypedValue valueFromJson(const SQLDataType& tType, const JsonValue& tValue);

// What `valueFromText` expects of the type: "a whole number from -2147483648 to 2147483647".
const char* expectedValue(const SQLDataType& tType);

// The bytes, or no value where the text is not of that form.
std::optional<std::string> decodeBase64(std::string_view sText);
std::optional<std::string> decodeHex(std::string_view sText);

}  // namespace tov
