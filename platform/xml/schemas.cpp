#include "xml/schemas.h"

namespace tov::schemas {

const wchar_t* usualPrefix(std::wstring_view sNamespace)
{
    if (sNamespace == Report::kTovNamespace)
        return Report::kTovPrefixName;
    if (sNamespace == Expression::kTovxNamespace)
        return Expression::kTovxPrefixName;
    if (sNamespace == Instance::kXsiNamespace)
        return Instance::kXsiPrefixName;
    return nullptr;
}

}  // namespace tov::schemas
