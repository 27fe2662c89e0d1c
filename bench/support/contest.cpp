#include "support/contest.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cwchar>

namespace tov {

namespace {

constexpr double kRelativeDifference = 1e-14;
constexpr double kAbsoluteDifference = 0.011;  // one unit of the last place, and what double adds

std::wstring only(std::wstring_view sKept, const std::wstring& sText)
{
    std::wstring sResult;
    std::copy_if(sText.begin(), sText.end(), std::back_inserter(sResult),
                 [&](wchar_t nChar) { return sKept.find(nChar) != std::wstring_view::npos; });
    return sResult;
}

double numberIn(const std::wstring& sText)
{
    return std::wcstod(only(L"-.0123456789e", sText).c_str(), nullptr);
}

bool isSameValue(double fOurs, double fTheirs)
{
    return std::fabs(fOurs - fTheirs) <= std::max(std::fabs(fOurs) * kRelativeDifference, kAbsoluteDifference);
}

bool isSameUpToZeros(const std::wstring& sOurs, const std::wstring& sTheirs)
{
    return sTheirs.starts_with(sOurs) && sTheirs.find_first_not_of(L".0", sOurs.size()) == std::wstring::npos;
}

bool agrees(Agreement eAgreement, const std::wstring& sOurs, const std::wstring& sTheirs)
{
    switch (eAgreement)
    {
    case Agreement::kSameText: return sOurs == sTheirs;
    case Agreement::kSameDigits: return only(L"-0123456789", sOurs) == only(L"-0123456789", sTheirs);
    case Agreement::kSameUpToZeros: return isSameUpToZeros(sOurs, sTheirs);
    case Agreement::kSameValue: return isSameValue(numberIn(sOurs), numberIn(sTheirs));
    case Agreement::kNone: break;
    }
    return true;
}

}  // namespace

void checkAgreement(Agreement eAgreement, const std::string& sCase, const std::wstring& sOurs,
                    const std::wstring& sTheirs)
{
    if (agrees(eAgreement, sOurs, sTheirs))
        return;
    std::fprintf(stderr, "%s: the library writes \"%ls\", the peer \"%ls\"\n", sCase.c_str(), sOurs.c_str(),
                 sTheirs.c_str());
    std::exit(1);
}

int runBenchmarks(int nArguments, char** ppArguments)
{
    benchmark::Initialize(&nArguments, ppArguments);
    if (benchmark::ReportUnrecognizedArguments(nArguments, ppArguments))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}

}  // namespace tov
