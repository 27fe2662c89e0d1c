#pragma once

#include <benchmark/benchmark.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "support/allocationcounter.h"
#include "support/changingorder.h"

namespace tov {

// How far a contender's text has to agree with the library's for the same value.
enum class Agreement
{
    kSameText,
    kSameDigits,     // digits and minus sign; the peer does not group, or writes no point
    kSameUpToZeros,  // the peer keeps zeros at the end of a fraction that the library leaves out
    kSameValue,  // as numbers, to 14 significant digits or one unit of the second place: the peer rounds by other rules
    kNone        // the peer does another, related work
};

// Ends the program with a message on standard error unless `sTheirs` agrees with `sOurs`.
void checkAgreement(Agreement eAgreement, const std::string& sCase, const std::wstring& sOurs,
                    const std::wstring& sTheirs);

// Runs the registered benchmarks as the command line asks; returns the exit status of the program.
int runBenchmarks(int nArguments, char** ppArguments);

// One kind of work, done by the library and by its peers on the same 4,096 values in changing order. Each contender
// becomes the benchmark <work>/<who> with the counter "allocations", the allocations a value.
//
// Example:
//     Contest<double> tContest("amounts", amounts());
//     tContest.add("webformat", Agreement::kSameText, [] { return Webformat<double>(L"#,##0.00"); });
//     tContest.add("to_chars", Agreement::kSameDigits, [] { return ToCharsFixed(); });
//
// The contender added first is the library. A contender has `void write(const Value&)`, which is what is measured and
// reuses the contender's buffer, and `std::wstring text() const`, the text written last. All of its texts are checked
// when it is added; a disagreement ends the program.
template <class Value>
class Contest
{
public:
    Contest(std::string sWork, std::vector<Value> vValues)
        : m_sWork(std::move(sWork)), m_pValues(std::make_shared<const std::vector<Value>>(std::move(vValues)))
    {
    }

    // `tMake` makes the contender, not counted into its time.
    template <class Make>
    void add(const std::string& sWho, Agreement eAgreement, const Make& tMake)
    {
        const std::string sCase = m_sWork + "/" + sWho;
        check(sCase, eAgreement, tMake);
        benchmark::RegisterBenchmark(
            sCase.c_str(), [pValues = m_pValues, tMake](benchmark::State& tState) { run(tState, *pValues, tMake); });
    }

private:
    static constexpr std::size_t knWarmUp = 256;  // values until a reused buffer has its size

    template <class Make>
    void check(const std::string& sCase, Agreement eAgreement, const Make& tMake)
    {
        const bool bFirst = m_vTexts.empty();
        auto tContender = tMake();
        for (std::size_t n = 0; n < m_pValues->size(); ++n)
        {
            tContender.write((*m_pValues)[n]);
            if (bFirst)
                m_vTexts.push_back(tContender.text());
            else
                checkAgreement(eAgreement, sCase, m_vTexts[n], tContender.text());
        }
    }

    template <class Make>
    static void run(benchmark::State& tState, const std::vector<Value>& vValues, const Make& tMake)
    {
        auto tContender = tMake();
        benchmark::DoNotOptimize(&tContender);
        for (std::size_t n = 0; n < knWarmUp; ++n)
            tContender.write(vValues[n]);
        ChangingOrder tOrder;
        const AllocationCounter tCounter;
        for ([[maybe_unused]] auto tIteration : tState)
        {
            tContender.write(vValues[tOrder.next()]);
            benchmark::ClobberMemory();
        }
        tState.counters["allocations"] =
            static_cast<double>(tCounter.count()) / static_cast<double>(tState.iterations());
    }

    std::string m_sWork;
    std::shared_ptr<const std::vector<Value>> m_pValues;
    std::vector<std::wstring> m_vTexts;  // what the library writes
};

}  // namespace tov
