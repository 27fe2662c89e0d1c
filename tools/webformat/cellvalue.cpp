#include "cellvalue.h"

#include <array>
#include <charconv>
#include <cmath>

#include "inputerror.h"
#include "jsonvalues.h"
#include "webbedrock/utf8.h"

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

TypedValue fromInteger(const SQLDataType& tType, std::int64_t nValue)
{
    return valueFromText(tType, std::to_string(nValue));
}

void readText(const SQLDataType& tType, std::string_view sText, TypedValue& tValue)
{
    if (tType.storageType() != SQLDataType::kStorageWChar)
        tValue = valueFromText(tType, sText);
    else
        appendFromUtf8(tValue.makeText(), sText);
}

}  // namespace

void readCellValue(const SQLDataType& tType, const DataCell& tCell, TypedValue& tValue)
{
    const bool bNumberFits = tType.category() == SQLDataType::kCatNumber || tType.category() == SQLDataType::kCatText;
    const bool bBinary = tType.category() == SQLDataType::kCatBinary;
    switch (tCell.eKind)
    {
    case DataCell::kText: readText(tType, tCell.sText, tValue); break;
    case DataCell::kInteger:
        if (!bNumberFits)
            throw InputError("found the integer " + std::to_string(tCell.nInteger) + ", expected " +
                             expectedValue(tType));
        tValue = fromInteger(tType, tCell.nInteger);
        break;
    case DataCell::kReal:
        if (!bNumberFits)
            throw InputError("found the real " + textOf(tCell.fReal) + ", expected " + expectedValue(tType));
        tValue = fromReal(tType, tCell.fReal);
        break;
    case DataCell::kBytes:
        if (!bBinary)
            throw InputError("found " + std::to_string(tCell.sText.size()) + " bytes, expected " +
                             expectedValue(tType));
        tValue = TypedValue::ofBytes(std::string(tCell.sText));
        break;
    case DataCell::kNull: tValue.setNull(); break;
    }
}

}  // namespace tov
