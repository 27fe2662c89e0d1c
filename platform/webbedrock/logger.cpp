#include "webbedrock/logger.h"

#include <atomic>
#include <cstdio>

#include "webbedrock/utf8.h"

namespace tov {

namespace {

void writeToStandardError(Logger::Severity eSeverity, std::wstring_view sText)
{
    std::fprintf(stderr, "webformat: %s: %s\n", Logger::severityName(eSeverity), toUtf8(sText).c_str());
}

std::atomic<Logger::Sink> s_pSink{&writeToStandardError};

}  // namespace

void Logger::log(Severity eSeverity, std::wstring_view sText)
{
    s_pSink.load(std::memory_order_acquire)(eSeverity, sText);
}

Logger::Sink Logger::setSink(Sink pSink)
{
    const Sink pBefore = s_pSink.exchange(pSink ? pSink : &writeToStandardError, std::memory_order_acq_rel);
    return pBefore == &writeToStandardError ? nullptr : pBefore;
}

const char* Logger::severityName(Severity eSeverity)
{
    switch (eSeverity)
    {
    case kInformation: return "information";
    case kWarning: return "warning";
    case kError: return "error";
    case kCriticalError: break;
    }
    return "critical error";
}

}  // namespace tov
