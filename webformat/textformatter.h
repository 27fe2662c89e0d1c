#pragma once

#include "webformat/valueformatter.h"

namespace tov {

// The base of formatters whose values are text or bytes: keeps the format string that the formatter was made from.
//
// Its factories make the formatters of text templates. A null handle means that no formatter applies; while the family
// has none, every answer is a null handle.
class WEBFORMAT_EXPORT WebTextFormatter : public WebValueFormatter
{
public:
    ~WebTextFormatter() override;

    String GetCustomFormatString() const override;

    static WebValueFormatterHandle CreateTextFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                       const Locale& tLocale, OutputType eOutput);
    static WebValueFormatterHandle ParseCustomFormat(const String& sFormat, const Locale& tLocale, OutputType eOutput);

protected:
    WebTextFormatter(SQLDataType::StorageType eValueStorageType, String sFormat);

private:
    String m_sFormat;
};

}  // namespace tov
