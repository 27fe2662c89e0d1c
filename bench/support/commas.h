#pragma once

#include <locale>
#include <string>

namespace tov {

// Groups digits in threes, for peers that ask a std::locale.
class Commas : public std::numpunct<wchar_t>
{
protected:
    wchar_t do_thousands_sep() const override { return L','; }
    wchar_t do_decimal_point() const override { return L'.'; }
    std::string do_grouping() const override { return "\3"; }
};

}  // namespace tov
