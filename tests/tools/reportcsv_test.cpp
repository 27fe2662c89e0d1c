#include <gtest/gtest.h>

#include "tools/webformat/reportwriters.h"

namespace tov {

TEST(ReportCsv, QuotesCellsThatNeedIt)
{
    constexpr std::pair<const wchar_t*, const char*> aRows[] = {
        {L"", ""},
        {L"a b", "a b"},
        {L"a,b", "\"a,b\""},
        {L"a\"b", "\"a\"\"b\""},
        {L"a\nb", "\"a\nb\""},
        {L"a\rb", "\"a\rb\""},
        {L" a", "\" a\""},
        {L"a ", "\"a \""},
        {L"\u00E9", "\xC3\xA9"},
    };
    for (const auto& [pText, pExpected] : aRows)
        EXPECT_EQ(csvCell(pText), pExpected);
}

TEST(ReportCsv, DefusesWhatASpreadsheetWouldRun)
{
    constexpr std::pair<const wchar_t*, const wchar_t*> aRows[] = {
        {L"=1+1", L"'=1+1"}, {L"+1", L"'+1"},     {L"-1", L"'-1"},     {L"@SUM(A1)", L"'@SUM(A1)"},
        {L"\t=1", L"'\t=1"}, {L"\r=1", L"'\r=1"}, {L"\n=1", L"'\n=1"}, {L"\uFF1D1", L"'\uFF1D1"},
        {L"a=1", L"a=1"},    {L"", L""},          {L"'=1", L"'=1"},    {L"1-1", L"1-1"},
    };
    for (const auto& [pText, pExpected] : aRows)
        EXPECT_EQ(defusedFormula(pText), pExpected);
}

}  // namespace tov
