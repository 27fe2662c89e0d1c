#pragma once

#include <cstdlib>
#include <string_view>

#include "corefacade/corvidnumber.h"
#include "corefacade/sqldatatype.h"

// What the tests of whole formatters share: numbers of any storage, written as text in their rows.
namespace tov {

// Calls `tUse` with the address of the number in the storage of its type; a null `pValue` is a null value.
template <class Use>
void withValue(SQLDataType::DataType eType, const char* pValue, Use tUse)
{
    const auto use = [&](const auto& tValue) { tUse(static_cast<const void*>(&tValue)); };
    if (pValue == nullptr)
        return tUse(static_cast<const void*>(nullptr));
    switch (SQLDataType(eType).storageType())
    {
    case SQLDataType::kStorageInt32: return use(static_cast<int>(std::strtol(pValue, nullptr, 10)));
    case SQLDataType::kStorageUInt32: return use(static_cast<unsigned>(std::strtoul(pValue, nullptr, 10)));
    case SQLDataType::kStorageInt64: return use(std::strtol(pValue, nullptr, 10));
    case SQLDataType::kStorageUInt64: return use(std::strtoul(pValue, nullptr, 10));
    case SQLDataType::kStorageCorvidNumber: return use(CorvidNumber::fromString(std::string_view(pValue)).value());
    default: return use(std::strtod(pValue, nullptr));
    }
}

}  // namespace tov
