#pragma once

#include "webbedrock/export.h"

namespace tov {

// Reports broken invariants: a failure is told to the process's handler, and the code that found it goes on.
//
// Example: a host that collects failures
//     void remember(const char* pExpression, const char* pSource, int nLine);
//     Assertion::setHandler(&remember);
class WEBFORMAT_EXPORT Assertion
{
public:
    // `pExpression` is the failing expression as written ("false" for an impossible branch), `pSource` the source unit
    // ("webformat/valueformatter"), `nLine` its line. Called on the thread that found the failure; must not throw.
    using Handler = void (*)(const char* pExpression, const char* pSource, int nLine);

    // Calls the handler. The default one writes a line of critical-error severity to the log. Any thread.
    static void handleFailure(const char* pExpression, const char* pSource, int nLine);

    // Replaces the handler for the whole process and returns the one before; null stands for the default. Any thread.
    static Handler setHandler(Handler pHandler);
};

}  // namespace tov

// Reports `expression` for the source unit `source` when it is false; the code goes on either way.
#define WEBFORMAT_ASSERT(source, expression)              \
    (static_cast<bool>(expression) ? static_cast<void>(0) \
                                   : ::tov::Assertion::handleFailure(#expression, source, __LINE__))
