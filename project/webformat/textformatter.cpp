#include "webformat/textformatter.h"

#include <utility>

#include "project/webformat/defaultformats.h"
#include "webformat/convertwhistlerformat.h"
#include "webformat/textformatterimpl.h"

namespace tov {

namespace {

constexpr char kSource[] = "webformat/textformatter";

}  // namespace

WebTextFormatter::WebTextFormatter(SQLDataType::StorageType eValueStorageType, String sFormat)
    : WebValueFormatter(eValueStorageType), m_sFormat(std::move(sFormat))
{
}

WebTextFormatter::~WebTextFormatter() = default;

String WebTextFormatter::GetCustomFormatString() const
{
    return m_sFormat;
}

WebValueFormatterHandle WebTextFormatter::CreateTextFormatter(const WebValueFormatDefinitionHandle& hDefinition,
                                                              const Locale& tLocale, OutputType eOutput)
{
    const WebValueFormatDefinition* const pDefinition = hDefinition.getPointer();
    if (const auto* pCustom = dynamic_cast<const WebCustomFormatDefinition*>(pDefinition))
        return ParseCustomFormat(pCustom->GetCustomFormat(), tLocale, eOutput);
    if (const auto* pText = dynamic_cast<const WebTextFormatDefinition*>(pDefinition))
        return CreateTextFormatter(*pText, tLocale, eOutput);
    if (const auto* pWhistler = dynamic_cast<const WebWhistlerFormatDefinition*>(pDefinition))
        return CreateTextFormatter(WebConvertWhistlerFormat::ConvertTextFormat(*pWhistler), tLocale, eOutput);
    return ParseCustomFormat(s_ksSQLVarCharFormat, tLocale, eOutput);
}

WebValueFormatterHandle WebTextFormatter::CreateTextFormatter(const WebTextFormatDefinition& tDefinition,
                                                              const Locale& tLocale, OutputType eOutput)
{
    return ParseCustomFormat(WebTextFormatDefinition::standardPattern(tDefinition.GetFormatType()), tLocale, eOutput);
}

WebValueFormatterHandle WebTextFormatter::ParseCustomFormat(const String& sFormat, const Locale&, OutputType eOutput)
{
    return WEBFORMAT_NEW(kSource) WebTextFormatterImpl(sFormat, eOutput);
}

}  // namespace tov
