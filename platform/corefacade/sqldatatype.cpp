#include "corefacade/sqldatatype.h"

#include <cstddef>
#include <utility>

namespace tov {

namespace {

using StorageName = std::pair<std::string_view, SQLDataType::StorageType>;

constexpr StorageName kStorageNames[] = {
    {"double", SQLDataType::kStorageDouble},
    {"timestamp", SQLDataType::kStorageTimeStamp},
    {"wchar", SQLDataType::kStorageWChar},
    {"int32", SQLDataType::kStorageInt32},
    {"uint32", SQLDataType::kStorageUInt32},
    {"int64", SQLDataType::kStorageInt64},
    {"uint64", SQLDataType::kStorageUInt64},
    {"rawvalue", SQLDataType::kStorageRawValue},
    {"corvidnumber", SQLDataType::kStorageCorvidNumber},
};

}  // namespace

std::optional<SQLDataType> SQLDataType::fromName(std::string_view sName)
{
    for (int nType = kInvalid; nType < kDataTypeEnd_; ++nType)
    {
        if (ks_aTraits[nType].m_sName == sName)
            return SQLDataType(static_cast<DataType>(nType));
    }
    return std::nullopt;
}

std::optional<SQLDataType::StorageType> SQLDataType::storageTypeFromName(std::string_view sName)
{
    for (const auto& [sKnown, eStorage] : kStorageNames)
    {
        if (sKnown == sName)
            return eStorage;
    }
    return std::nullopt;
}

}  // namespace tov
