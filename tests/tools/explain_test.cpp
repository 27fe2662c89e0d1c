#include <gtest/gtest.h>

#include "tools/support/command.h"

namespace tov {

TEST(Explain, WritesALineForEachItemWithAnExampleUpToThere)
{
    const CommandResult tResult = runCommand({"explain", "--kind", "numeric", "#,##0.0;[red](0)"});
    EXPECT_EQ(tResult.nStatus, 0);
    EXPECT_EQ(tResult.sErrors, "");
    EXPECT_EQ(tResult.sOutput,
              "#         optional digits, integer place 4 upwards            1234568\n"
              "##        optional digits, integer places 3 to 2              1,234,568\n"
              "0         required digit, integer place 1                     1,234,568\n"
              ".         decimal separator, where fraction digits follow     1,234,568\n"
              "0         required digit, fraction place 1                    1,234,567.9\n"
              "#,##0.0   for positive values and zero; grouped in thousands  1,234,567.9\n"
              "[red]     red, in outputs that have colours                   \n"
              "(         the text \"(\"                                        (\n"
              "          optional digits, integer place 2 upwards            (\n"
              "0         required digit, integer place 1                     (1234568\n"
              ")         the text \")\"                                        (1234568)\n"
              "[red](0)  for negative values, whose sign it writes itself    (1234568)\n");
}

TEST(Explain, FindsAnExampleThatTheItemsHaveSomethingToShowFor)
{
    const std::pair<const char*, const char*> aRows[] = {
        {"[MMMM]", "March"},
        {"[DDD]", "Tue"},
        {"0.0%", "1234567.9%"},
        {"0,,", "1"},
        {"0.0[scale-name:auto]", "1.2M"},
        {"0;0;\"none\"", "none"},
        {"0\\:00[%60]", "20576:08"},
    };
    for (const auto& [pPattern, pExample] : aRows)
    {
        const std::string sOutput = runCommand({"explain", "--kind", "numeric", pPattern}).sOutput;
        EXPECT_NE(sOutput.find(std::string("  ") + pExample + "\n"), std::string::npos) << pPattern << "\n" << sOutput;
    }
}

TEST(Explain, UsesTheLocale)
{
    const std::string sOutput = runCommand({"explain", "--kind", "numeric", "--locale", "de-DE", "#,##0.00"}).sOutput;
    EXPECT_NE(sOutput.find("1.234.567,89\n"), std::string::npos) << sOutput;
}

}  // namespace tov
