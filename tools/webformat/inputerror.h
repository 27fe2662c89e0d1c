#pragma once

#include <cstddef>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tov {

// Where something stands in an input file; lines and columns count from 1, columns in characters. 0: not known.
struct InputPlace
{
    std::string sFile;
    std::size_t nLine = 0;
    std::size_t nColumn = 0;

    // "orders.csv:12:7", "orders.csv:12" or "orders.csv".
    std::string text() const;
};

// Says that what was handed to the command is wrong. The message names the place, what was found and what was expected:
// "orders.csv:12:7: column "amount": found "12x", expected a number". The command ends with exit status 1.
class InputError : public std::runtime_error
{
public:
    InputError(const InputPlace& tPlace, const std::string& sMessage);
    explicit InputError(const std::string& sMessage);
};

// A piece of input as messages show it: between double quotes, controls as \xNN, at most 60 characters and then "...".
//
// Example: quotedForMessage("a\tb") -> "\"a\\x09b\""
std::string quotedForMessage(std::string_view sText);

// Names as messages list them: up to 100 of them, and then "...".
//
// Example: listForMessage({"a", "b"}) -> "\"a\", \"b\"";  listForMessage({}) -> "none"
std::string listForMessage(const std::vector<std::string>& vNames);

}  // namespace tov
