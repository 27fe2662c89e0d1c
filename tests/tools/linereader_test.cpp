#include "tools/webformat/linereader.h"

#include <gtest/gtest.h>
#include <unistd.h>

#include <thread>

namespace tov {

namespace {

// Everything that a reader makes of the bytes, chunks apart: "1:text 2:text ".
std::string read(const std::string& sBytes, std::size_t nLongestLine = LineReader::knLongestLine)
{
    int aPipe[2] = {-1, -1};
    if (pipe(aPipe) != 0)
        return "no pipe";
    std::thread tWriter(
        [&]
        {
            for (std::size_t nDone = 0; nDone < sBytes.size();)
                nDone += static_cast<std::size_t>(write(aPipe[1], sBytes.data() + nDone, sBytes.size() - nDone));
            close(aPipe[1]);
        });
    std::string sResult;
    LineReader tReader(aPipe[0], nLongestLine);
    std::vector<InputLine> vLines;
    while (tReader.readChunk(vLines))
        for (const InputLine& tLine : vLines)
            sResult += std::to_string(tLine.nNumber) + ":" + (tLine.bTooLong ? "too long" : tLine.sText) + " ";
    tWriter.join();
    close(aPipe[0]);
    return sResult;
}

}  // namespace

TEST(LineReader, NumbersTheLinesAndNeedsNoLastLineEnd)
{
    EXPECT_EQ(read(""), "");
    EXPECT_EQ(read("a\nb"), "1:a 2:b ");
    EXPECT_EQ(read("a\n\nb\n"), "1:a 2: 3:b ");
    EXPECT_EQ(read("\n"), "1: ");
    EXPECT_EQ(read(std::string(1000000, 'x') + "\ny"), "1:" + std::string(1000000, 'x') + " 2:y ");
}

TEST(LineReader, DropsTheTextOfALineThatIsTooLongAndGoesOn)
{
    EXPECT_EQ(read("12345678\n123456789\na\n", 8), "1:12345678 2:too long 3:a ");
    EXPECT_EQ(read("a\n" + std::string(2000000, 'x'), 8), "1:a 2:too long ");
}

}  // namespace tov
