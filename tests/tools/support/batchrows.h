#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <string>
#include <vector>

#include "tools/support/command.h"

namespace tov {

// What `webformat batch` answers to these lines.
inline std::string ask(const std::string& sRequests, const std::vector<std::string>& vOptions = {})
{
    std::vector<std::string> vArguments = {"batch"};
    vArguments.insert(vArguments.end(), vOptions.begin(), vOptions.end());
    return runCommand(vArguments, sRequests).sOutput;
}

struct BatchRow
{
    int nLine;
    std::string sRequest;
    std::string sResponse;
};

// Sends all requests at once and compares the answers one by one.
template <std::size_t nRows>
void checkAnswers(const BatchRow (&aRows)[nRows])
{
    std::string sRequests;
    for (const BatchRow& tRow : aRows)
        sRequests += tRow.sRequest + "\n";
    const std::string sResponses = ask(sRequests);
    std::size_t nStart = 0;
    for (const BatchRow& tRow : aRows)
    {
        const std::size_t nEnd = std::min(sResponses.find('\n', nStart), sResponses.size());
        EXPECT_EQ(sResponses.substr(nStart, nEnd - nStart), tRow.sResponse) << "row at line " << tRow.nLine;
        nStart = std::min(nEnd + 1, sResponses.size());
    }
    EXPECT_EQ(nStart, sResponses.size());
}

}  // namespace tov
