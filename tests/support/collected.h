#pragma once

#include <cstddef>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "webbedrock/assertion.h"
#include "webbedrock/logger.h"

namespace tov {

struct CollectedAssertion
{
    std::string sExpression;
    std::string sSource;
    int nLine = 0;
};

// Collects the assertions that any thread raises while it lives, and gives them back to the handler before it at its
// end. Collectors may be nested; the innermost collects.
//
// Example:  const CollectedAssertions tAssertions;  f();  EXPECT_EQ(tAssertions.count(), 0u);
class CollectedAssertions
{
public:
    CollectedAssertions();
    ~CollectedAssertions();
    CollectedAssertions(const CollectedAssertions&) = delete;
    CollectedAssertions& operator=(const CollectedAssertions&) = delete;

    std::size_t count() const;
    std::vector<CollectedAssertion> all() const;

private:
    static void collect(const char* pExpression, const char* pSource, int nLine);

    std::vector<CollectedAssertion> m_vAssertions;
    CollectedAssertions* m_pOuter;
    Assertion::Handler m_pHandlerBefore;
};

struct CollectedLine
{
    Logger::Severity eSeverity = Logger::kInformation;
    String sText;
};

// The same for lines of the log.
class CollectedLog
{
public:
    CollectedLog();
    ~CollectedLog();
    CollectedLog(const CollectedLog&) = delete;
    CollectedLog& operator=(const CollectedLog&) = delete;

    std::size_t count() const;
    std::vector<CollectedLine> all() const;

private:
    static void collect(Logger::Severity eSeverity, std::wstring_view sText);

    std::vector<CollectedLine> m_vLines;
    CollectedLog* m_pOuter;
    Logger::Sink m_pSinkBefore;
};

}  // namespace tov
