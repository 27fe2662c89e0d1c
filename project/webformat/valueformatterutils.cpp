#include "webformat/valueformatterutils.h"

#include "webformat/dateformatters.h"
#include "webformat/numericformatter.h"

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

// The fraction digits of real numbers; a limit of one significant digit, which a reload may bring, leaves one.
unsigned realDigits()
{
    return NumericFormatter<double>::getPrecision(NumericFormatter<double>::kDisplayAsReal);
}

// The formatters of all values, made on first use and never destroyed: values are also written while static objects go
// away.
class PlainFormatters
{
public:
    static const PlainFormatters& instance()
    {
        static const PlainFormatters& s_tFormatters = *new PlainFormatters;
        return s_tFormatters;
    }

    // Null for a storage that is not served, and for one whose formatter would be another by now.
    const WebValueFormatter* find(const SQLDataType& tType) const
    {
        const bool bReal = tType.storageType() == Type::kStorageDouble && tType.primaryType() != Type::kPrimaryInteger;
        if (!isKnown(tType) || (bReal && realDigits() != m_nRealDigits))
            return nullptr;
        return m_ahFormatters[tType.primaryType()][tType.storageType()].getPointer();
    }

private:
    PlainFormatters() : m_nRealDigits(realDigits())
    {
        for (const SQLDataType& tType : kaServed)
            m_ahFormatters[tType.primaryType()][tType.storageType()] = newFormatter(tType);
    }

    static bool isKnown(const SQLDataType& tType)
    {
        return tType.storageType() >= Type::kStorageInvalid && tType.storageType() < Type::kStorageTypeEnd_;
    }

    unsigned m_nRealDigits;
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
