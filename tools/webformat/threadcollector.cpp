#include "threadcollector.h"

#include "webbedrock/assertion.h"
#include "webbedrock/logger.h"
#include "webbedrock/utf8.h"

namespace tov {

namespace {

thread_local ThreadCollector* s_pCollector = nullptr;
Assertion::Handler s_pHandlerBefore = nullptr;
Logger::Sink s_pSinkBefore = nullptr;

}  // namespace

// What the library calls.
struct CollectorEvents
{
    static void assertion(const char* pExpression, const char* pSource, int nLine)
    {
        if (s_pCollector)
            s_pCollector->m_vAssertions.push_back(JsonObject().add("expression", pExpression).add("source", pSource));
        else if (s_pHandlerBefore)
            s_pHandlerBefore(pExpression, pSource, nLine);
    }

    static void line(Logger::Severity eSeverity, std::wstring_view sText)
    {
        if (s_pCollector)
            s_pCollector->m_vLog.push_back(toUtf8(sText));
        else if (s_pSinkBefore)
            s_pSinkBefore(eSeverity, sText);
    }
};

ThreadCollector::ThreadCollector()
{
    s_pCollector = this;
}

ThreadCollector::~ThreadCollector()
{
    s_pCollector = nullptr;
}

void ThreadCollector::install()
{
    s_pHandlerBefore = Assertion::setHandler(&CollectorEvents::assertion);
    s_pSinkBefore = Logger::setSink(&CollectorEvents::line);
}

void ThreadCollector::addTo(JsonObject& tResponse) const
{
    if (!m_vAssertions.empty())
        tResponse.addRaw("assertions", jsonArray(m_vAssertions));
    if (!m_vLog.empty())
        tResponse.addRaw("log", jsonArray(m_vLog));
}

std::string jsonArray(const std::vector<JsonObject>& vObjects)
{
    std::string sResult = "[";
    for (const JsonObject& tObject : vObjects)
        sResult += (sResult.size() == 1 ? "" : ",") + tObject.text();
    return sResult + "]";
}

std::string jsonArray(const std::vector<std::string>& vTexts)
{
    std::string sResult = "[";
    for (const std::string& sText : vTexts)
    {
        if (sResult.size() != 1)
            sResult += ',';
        appendJsonString(sResult, sText);
    }
    return sResult + "]";
}

}  // namespace tov
