#include "webformat/valueformatterutils.h"

#include "webformat/dateformatters.h"
#include "webformat/valueformatter.h"

namespace tov {

namespace {

using Type = SQLDataType;

WebValueFormatterHandle odbcFormatter(WebDateFormatDefinition::Type eType)
{
    return WebDateFormatter::CreateDefaultDateFormatter(eType, Locale::kUSA, KTWUILanguage::kDefaultLanguage,
                                                        ValueFormatterTypes::kText);
}

WebValueFormatterHandle newFormatter(const SQLDataType& tType)
{
    switch (tType.primaryType())
    {
    case Type::kPrimaryDate: return odbcFormatter(WebDateFormatDefinition::kODBCDate);
    case Type::kPrimaryTime: return odbcFormatter(WebDateFormatDefinition::kODBCTime);
    case Type::kPrimaryTimeStamp: return odbcFormatter(WebDateFormatDefinition::kODBCTimeStamp);
    default:
        return WebValueFormatter::GetDefaultFormatter(tType, Locale::kUSA, ValueFormatterTypes::kText,
                                                      WebValueFormatDefinition::FormatParameters(),
                                                      KTWUILanguage::kDefaultLanguage);
    }
}

// One type for each primary type and storage that is served.
constexpr SQLDataType kaServed[] = {
    SQLDataType(Type::kVarChar),
    SQLDataType(Type::kDate),
    SQLDataType(Type::kTime),
    SQLDataType(Type::kTimeStamp),
    SQLDataType(Type::kInteger),
    SQLDataType(Type::kUnsignedInteger),
    SQLDataType(Type::kInteger, Type::kStorageDouble),
    SQLDataType(Type::kInteger, Type::kStorageCorvidNumber),
    SQLDataType(Type::kDouble),
    SQLDataType(Type::kDouble, Type::kStorageInt32),
    SQLDataType(Type::kDouble, Type::kStorageUInt32),
    SQLDataType(Type::kDouble, Type::kStorageCorvidNumber),
    SQLDataType(Type::kDecimal),
    SQLDataType(Type::kDecimal, Type::kStorageDouble),
    SQLDataType(Type::kDecimal, Type::kStorageInt32),
    SQLDataType(Type::kDecimal, Type::kStorageUInt32),
};

// The formatters of all values, made on first use and never destroyed: values are also written while static objects go
// away. The limit of significant digits, which a reload may change, is read with each value and is not part of them.
class PlainFormatters
{
public:
    static const PlainFormatters& instance()
    {
        static const PlainFormatters& s_tFormatters = *new PlainFormatters;
        return s_tFormatters;
    }

    // Null for a storage that is not served.
    const WebValueFormatter* find(const SQLDataType& tType) const
    {
        return isKnown(tType) ? m_ahFormatters[tType.primaryType()][tType.storageType()].getPointer() : nullptr;
    }

private:
    PlainFormatters()
    {
        for (const SQLDataType& tType : kaServed)
            m_ahFormatters[tType.primaryType()][tType.storageType()] = newFormatter(tType);
    }

    static bool isKnown(const SQLDataType& tType)
    {
        return tType.storageType() >= Type::kStorageInvalid && tType.storageType() < Type::kStorageTypeEnd_;
    }

    WebValueFormatterHandle m_ahFormatters[Type::kPrimaryTypeEnd_][Type::kStorageTypeEnd_];
};

void appendFormatted(const void* pValue, const SQLDataType& tType, StringBufferBaseTemplate<wchar_t>& tBuffer)
{
    if (const WebValueFormatter* pKept = PlainFormatters::instance().find(tType))
    {
        pKept->impl_formatToBuffer(tBuffer, pValue);
        return;
    }
    WebValueFormatterHandle hFormatter = newFormatter(tType);
    // Texts and dates have one formatter each, which must not read values that are held as anything else.
    if (!hFormatter.isNull() && hFormatter->valueStorageType() != tType.storageType())
        hFormatter = nullptr;
    hFormatter->impl_formatToBuffer(tBuffer, pValue);
}

}  // namespace

void ValueFormatterUtils::valueToBuffer(const void* pValue, const SQLDataType& tType,
                                        StringBufferBaseTemplate<wchar_t>& tBuffer)
{
    switch (tType.primaryType())
    {
    case Type::kPrimaryBinary: tBuffer.append(L"Binary"); break;
    case Type::kPrimaryText:
    case Type::kPrimaryDate:
    case Type::kPrimaryTime:
    case Type::kPrimaryTimeStamp:
    case Type::kPrimaryInteger:
    case Type::kPrimaryFloating:
    case Type::kPrimaryCorvidNumber: appendFormatted(pValue, tType, tBuffer); break;
    default: tBuffer.append(L"Unknown"); break;
    }
}

}  // namespace tov
