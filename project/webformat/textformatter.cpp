#include "webformat/textformatter.h"

#include <utility>

namespace tov {

WebTextFormatter::WebTextFormatter(SQLDataType::StorageType eValueStorageType, String sFormat)
    : WebValueFormatter(eValueStorageType), m_sFormat(std::move(sFormat))
{
}

WebTextFormatter::~WebTextFormatter() = default;

String WebTextFormatter::GetCustomFormatString() const
{
    return m_sFormat;
}

WebValueFormatterHandle WebTextFormatter::CreateTextFormatter(const WebValueFormatDefinitionHandle&, const Locale&,
                                                              OutputType)
{
    return nullptr;
}

WebValueFormatterHandle WebTextFormatter::ParseCustomFormat(const String&, const Locale&, OutputType)
{
    return nullptr;
}

}  // namespace tov
