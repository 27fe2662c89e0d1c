#pragma once

#include <string_view>

#include "webbedrock/export.h"
#include "webbedrock/string.h"

namespace tov {

// Where the library writes its few log lines. The default sink is standard error, one line a message.
class WEBFORMAT_EXPORT Logger
{
public:
    enum Severity
    {
        kInformation = 0,
        kWarning = 1,
        kError = 2,
        kCriticalError = 3
    };

    // Called on the thread that logs; must not throw. The text is valid during the call only.
    using Sink = void (*)(Severity eSeverity, std::wstring_view sText);

    // Hands one line to the sink. Any thread.
    static void log(Severity eSeverity, std::wstring_view sText);

    // Replaces the sink for the whole process and returns the one before; null stands for the default. Any thread.
    static Sink setSink(Sink pSink);

    // "information", "warning", "error" or "critical error".
    static const char* severityName(Severity eSeverity);
};

}  // namespace tov
