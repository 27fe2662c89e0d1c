#include "webbedrock/assertion.h"

#include <atomic>

#include "webbedrock/logger.h"

namespace tov {

namespace {

String widen(const char* pText)
{
    String sWide;
    for (; *pText != '\0'; ++pText)
        sWide.push_back(static_cast<unsigned char>(*pText));
    return sWide;
}

void logFailure(const char* pExpression, const char* pSource, int nLine)
{
    Logger::log(Logger::kCriticalError, L"Assertion failed: " + widen(pExpression) + L" (" + widen(pSource) +
                                            L", line " + std::to_wstring(nLine) + L")");
}

std::atomic<Assertion::Handler> s_pHandler{&logFailure};

}  // namespace

void Assertion::handleFailure(const char* pExpression, const char* pSource, int nLine)
{
    s_pHandler.load(std::memory_order_acquire)(pExpression, pSource, nLine);
}

Assertion::Handler Assertion::setHandler(Handler pHandler)
{
    const Handler pBefore = s_pHandler.exchange(pHandler ? pHandler : &logFailure, std::memory_order_acq_rel);
    return pBefore == &logFailure ? nullptr : pBefore;
}

}  // namespace tov
