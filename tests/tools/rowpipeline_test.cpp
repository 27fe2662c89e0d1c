#include "tools/webformat/rowpipeline.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>

#include "tools/support/command.h"
#include "tools/webformat/inputerror.h"

namespace tov {

namespace {

// Chunks of one row of one number each, up to an end or a mistake.
class Numbers final : public DataSource
{
public:
    explicit Numbers(std::int64_t nEnd) : m_nEnd(nEnd) {}

    const std::vector<std::string>& columnNames() const override { return m_vNames; }
    bool read(DataChunk& tChunk) override
    {
        tChunk.clear();
        tChunk.startRows(1);
        if (m_nNext == m_nEnd)
            return false;
        if (m_nNext == nBrokenFrom)
            throw std::runtime_error("the disk is gone");
        tChunk.addInteger(m_nNext++);
        return true;
    }
    void parse(DataChunk& tChunk) const override
    {
        if (tChunk.entry(0, 0).nStart == static_cast<std::uint64_t>(nWrong))
            tChunk.pError = std::make_exception_ptr(InputError("wrong"));
        tChunk.endRow();
    }
    void rewind() override { m_nNext = 0; }
    std::string placeOf(const DataChunk&, std::size_t, std::size_t) const override { return "here"; }
    double progress() const override { return 0; }

    std::int64_t nBrokenFrom = -1;
    std::int64_t nWrong = -1;

private:
    std::vector<std::string> m_vNames = {"n"};
    std::int64_t m_nEnd;
    std::int64_t m_nNext = 0;
};

// Writes the numbers, some of them after more work than others.
class NumberLines final : public RowWorker
{
public:
    explicit NumberLines(std::int64_t nRefused) : m_nRefused(nRefused) {}

    void work(const DataChunk& tChunk, ChunkResult& tResult) override
    {
        const std::int64_t nValue = tChunk.cell(0, 0).nInteger;
        if (nValue == m_nRefused)
            throw std::logic_error("refused");
        for (int nLine = 0; nLine < (nValue % 100 == 99 ? 5 : 1); ++nLine)
        {
            // Some chunks become long enough to be written in pieces.
            tResult.sBytes.append(nValue % 100 == 99 ? 700'000 : nValue % 50 * 20, ' ');
            tResult.sBytes += std::to_string(nValue) + "\n";
            tResult.endRow();
            m_nLongest = std::max(m_nLongest, tResult.sBytes.size());
        }
        if (nValue % 10 == 0)
            tResult.vUnknownTags.push_back(
                {"\"t" + std::to_string(nValue / 20) + "\"", "row " + std::to_string(nValue)});
    }

    std::size_t longest() const { return m_nLongest; }

private:
    std::int64_t m_nRefused;
    std::size_t m_nLongest = 0;
};

struct Outcome
{
    std::string sBytes;
    std::string sError;
    std::string sWarnings;
};

Outcome runPass(Numbers& tData, unsigned nThreads, std::int64_t nRefused = -1)
{
    const TemporaryFolder tFolder;
    Outcome tOutcome;
    testing::internal::CaptureStderr();
    try
    {
        OutputFile tOutput(tFolder.path("out"));
        RowPipeline::run(tData, makeWorkers<NumberLines>(nThreads, nRefused), tOutput);
        tOutput.commit();
        tOutcome.sBytes = readFile(tFolder.path("out"));
    }
    catch (const std::exception& tError)
    {
        tOutcome.sError = tError.what();
    }
    tOutcome.sWarnings = testing::internal::GetCapturedStderr();
    return tOutcome;
}

}  // namespace

TEST(RowPipelineThreads, WriteChunksInTheirOrderAndCountTheirRows)
{
    std::string sExpected;
    for (int nValue = 0; nValue < 3000; ++nValue)
        for (int nLine = 0; nLine < (nValue % 100 == 99 ? 5 : 1); ++nLine)
            sExpected +=
                std::string(nValue % 100 == 99 ? 700'000 : nValue % 50 * 20, ' ') + std::to_string(nValue) + "\n";
    for (const unsigned nThreads : {1U, 2U, 3U, 16U})
    {
        Numbers tData(3000);
        EXPECT_TRUE(runPass(tData, nThreads).sBytes == sExpected) << nThreads;
        // And once more, from the start.
        tData.rewind();
        OutputFile tOutput("/dev/null");
        const auto vWorkers = makeWorkers<NumberLines>(nThreads, -1);
        testing::internal::CaptureStderr();
        EXPECT_EQ(RowPipeline::run(tData, vWorkers, tOutput), 3000u);
        testing::internal::GetCapturedStderr();
        for (const auto& pWorker : vWorkers)
            EXPECT_LT(static_cast<const NumberLines&>(*pWorker).longest(), std::size_t(1) << 20) << nThreads;
        Numbers tNothing(0);
        EXPECT_EQ(runPass(tNothing, nThreads).sBytes, "");
    }
}

TEST(RowPipelineThreads, ThrowWhatComesFirstInTheFile)
{
    struct Row
    {
        int nLine;
        int nBroken;   // the chunk that cannot be read
        int nWrong;    // whose rows end with a mistake
        int nRefused;  // whose rows are refused
        const char* pError;
    };
    const Row aRows[] = {
        {__LINE__, 500, -1, -1, "the disk is gone"},
        {__LINE__, 500, 499, -1, "wrong"},
        {__LINE__, 500, 499, 498, "refused"},
        {__LINE__, -1, 499, 499, "refused"},  // the rows of a chunk come before its mistake
        {__LINE__, 0, -1, -1, "the disk is gone"},
        {__LINE__, -1, 999, -1, "wrong"},
        {__LINE__, 3, 2, 700, "wrong"},
    };
    for (const Row& tRow : aRows)
        for (const unsigned nThreads : {1U, 2U, 7U})
        {
            Numbers tData(1000);
            tData.nBrokenFrom = tRow.nBroken;
            tData.nWrong = tRow.nWrong;
            EXPECT_EQ(runPass(tData, nThreads, tRow.nRefused).sError, tRow.pError)
                << "row at line " << tRow.nLine << ", " << nThreads << " threads";
        }
}

TEST(RowPipelineThreads, WarnOfEachUnknownTagOnceWhereTheFileHasItFirst)
{
    for (const unsigned nThreads : {1U, 2U, 7U})
    {
        Numbers tData(60);
        const std::string sEnd =
            ", expected a currency tag such as \"loc:en-US\", \"int:EUR\" or \"USD\"; its amounts are shown as whole "
            "numbers\n";
        EXPECT_EQ(runPass(tData, nThreads).sWarnings, "webformat: row 0: found \"t0\"" + sEnd +
                                                          "webformat: row 20: found \"t1\"" + sEnd +
                                                          "webformat: row 40: found \"t2\"" + sEnd);
    }
}

}  // namespace tov
