#include <iostream>

#include "webformat/valueformatter.h"

int main()
{
    const auto hFormatter = tov::WebValueFormatter::GetCustomFormatter(
        tov::SQLDataType(tov::SQLDataType::kDouble), L"#,##0.00", tov::Locale::kUSA, tov::ValueFormatterTypes::kText,
        tov::KTWUILanguage::kDefaultLanguage);
    const double fValue = 1234.5;
    std::wcout << hFormatter->formatAsString(&fValue) << L'\n';  // 1,234.50
}
