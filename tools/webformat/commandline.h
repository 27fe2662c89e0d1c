#pragma once

#include <string>
#include <vector>

namespace tov {

// Runs the command with its arguments, without its own name, and returns the exit status: 0 done, 1 the input was
// wrong, 2 wrong usage. Messages go to standard error.
int runCommandLine(const std::vector<std::string>& vArguments);

// The arguments with every value that starts with a minus sign moved behind a "--", so that it is not taken for an
// option: a minus followed by anything but a letter or another minus, and -INF. Arguments of options stay where they
// are.
//
// Example: {"value", "--type", "double", "-5", "7"} -> {"value", "--type", "double", "--", "-5", "7"}
std::vector<std::string> withSeparatedValues(const std::vector<std::string>& vArguments);

}  // namespace tov
