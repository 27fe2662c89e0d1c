#include "webbedrock/handle.h"

namespace tov {

// Out of line, so that the type has one identity across the shared library and its hosts.
InvalidHandleException::~InvalidHandleException() = default;

const char* InvalidHandleException::what() const noexcept
{
    return "invalid handle";
}

void throwInvalidHandle()
{
    throw InvalidHandleException();
}

}  // namespace tov
