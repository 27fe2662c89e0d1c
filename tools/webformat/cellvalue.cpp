#include "cellvalue.h"

#include <array>
#include <charconv>
#include <cmath>

#include "inputerror.h"
#include "jsonvalues.h"

namespace tov {

namespace {

// The shortest text that reads back as the value.
std::string textOf(double fValue)
{
    std::array<char, 32> aText;
    const auto tEnd = std::to_chars(aText.data(), aText.data() + aText.size(), fValue);
    return std::string(aText.data(), tEnd.ptr);
}

bool isWhole(const SQLDataType& tType)
{
    switch (tType.storageType())
    {
    case SQLDataType::kStorageInt32:
    case SQLDataType::kStorageUInt32:
    case SQLDataType::kStorageInt64:
    case SQLDataType::kStorageUInt64: return true;
    default: return false;
    }
}

TypedValue fromReal(const SQLDataType& tType, double fValue)
{
    if (tType.storageType() == SQLDataType::kStorageDouble)
        return TypedValue(fValue);
    // Every double from here up is whole, but no longer the only neighbour of the integer it was made from.
    constexpr double fExactIntegers = 9007199254740992.0;
    if (isWhole(tType) && std::trunc(fValue) == fValue && std::fabs(fValue) <= fExactIntegers)
        return valueFromText(tType, std::to_string(static_cast<long long>(fValue)));
    if (std::isinf(fValue))
        return valueFromText(tType, fValue < 0 ? "-INF" : "INF");
    return valueFromText(tType, textOf(fValue));
}

}  // namespace

TypedValue valueOfCell(const SQLDataType& tType, const DataCell& tCell)
{
    const bool bNumberFits = tType.category() == SQLDataType::kCatNumber || tType.category() == SQLDataType::kCatText;
    const bool bBinary = tType.category() == SQLDataType::kCatBinary;
    switch (tCell.eKind)
    {
    case DataCell::kText: return valueFromText(tType, tCell.sText);
    case DataCell::kInteger:
        if (bNumberFits)
            return valueFromText(tType, std::to_string(tCell.nInteger));
        throw InputError("found the integer " + std::to_string(tCell.nInteger) + ", expected " + expectedValue(tType));
    case DataCell::kReal:
        if (bNumberFits)
            return fromReal(tType, tCell.fReal);
        throw InputError("found the real " + textOf(tCell.fReal) + ", expected " + expectedValue(tType));
    case DataCell::kBytes:
        if (bBinary)
            return TypedValue::ofBytes(tCell.sText);
        throw InputError("found " + std::to_string(tCell.sText.size()) + " bytes, expected " + expectedValue(tType));
    case DataCell::kNull: break;
    }
    return TypedValue();
}

}  // namespace tov
