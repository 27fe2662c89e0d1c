#include "support/collected.h"

namespace tov {

namespace {

std::mutex s_tCollecting;  // guards the two innermost collectors and what all collectors hold
CollectedAssertions* s_pAssertions = nullptr;
CollectedLog* s_pLog = nullptr;

using Guard = std::lock_guard<std::mutex>;

}  // namespace

CollectedAssertions::CollectedAssertions()
{
    {
        const Guard tGuard(s_tCollecting);
        m_pOuter = std::exchange(s_pAssertions, this);
    }
    m_pHandlerBefore = Assertion::setHandler(&collect);
}

CollectedAssertions::~CollectedAssertions()
{
    Assertion::setHandler(m_pHandlerBefore);
    const Guard tGuard(s_tCollecting);
    s_pAssertions = m_pOuter;
}

std::size_t CollectedAssertions::count() const
{
    const Guard tGuard(s_tCollecting);
    return m_vAssertions.size();
}

std::vector<CollectedAssertion> CollectedAssertions::all() const
{
    const Guard tGuard(s_tCollecting);
    return m_vAssertions;
}

void CollectedAssertions::collect(const char* pExpression, const char* pSource, int nLine)
{
    const Guard tGuard(s_tCollecting);
    if (s_pAssertions)
        s_pAssertions->m_vAssertions.push_back({pExpression, pSource, nLine});
}

CollectedLog::CollectedLog()
{
    {
        const Guard tGuard(s_tCollecting);
        m_pOuter = std::exchange(s_pLog, this);
    }
    m_pSinkBefore = Logger::setSink(&collect);
}

CollectedLog::~CollectedLog()
{
    Logger::setSink(m_pSinkBefore);
    const Guard tGuard(s_tCollecting);
    s_pLog = m_pOuter;
}

std::size_t CollectedLog::count() const
{
    const Guard tGuard(s_tCollecting);
    return m_vLines.size();
}

std::vector<CollectedLine> CollectedLog::all() const
{
    const Guard tGuard(s_tCollecting);
    return m_vLines;
}

void CollectedLog::collect(Logger::Severity eSeverity, std::wstring_view sText)
{
    const Guard tGuard(s_tCollecting);
    if (s_pLog)
        s_pLog->m_vLines.push_back({eSeverity, String(sText)});
}

}  // namespace tov
