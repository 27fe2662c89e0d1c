#include "webformat/drillvalueformatters.h"

#include <cwchar>

namespace tov {

namespace {

constexpr char kSource[] = "webformat/drillvalueformatters";
constexpr wchar_t ksBlech[] = L"blech";  // there is no pattern; hosts show something

class DrillTextFormatter final : public WebValueFormatter
{
public:
    explicit DrillTextFormatter(OutputType eOutput) : WebValueFormatter(SQLDataType::kStorageWChar), m_eOutput(eOutput)
    {
    }

    OutputType outputType() const override { return m_eOutput; }
    String GetCustomFormatString() const override { return ksBlech; }

    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override
    {
        const wchar_t* pText = static_cast<const wchar_t*>(pValue);
        if (!pText)
        {
            tBuffer.append(WebDrillValueFormatter::ksTextNULL);
            return;
        }
        encodeToBufferOfType(tBuffer, encodingType(), pText, std::wcslen(pText));
    }

private:
    // Kept: a drill request carries SQL literals unencoded; who builds the statement encodes them.
    OutputType encodingType() const { return m_eOutput == kSQLLiteral ? kText : m_eOutput; }

    OutputType m_eOutput;
};

}  // namespace

const wchar_t* const WebDrillValueFormatter::ksTextNULL = L"*KT_NULL*";

WebValueFormatterHandle WebDrillValueFormatter::GetFormatter(const SQLDataType& tType,
                                                             ValueFormatterTypes::OutputType eOutput)
{
    if (tType.IsText())
        return WEBFORMAT_NEW(kSource) DrillTextFormatter(eOutput);
    return WebValueFormatter::GetTypedLiteralFormatter(tType, eOutput);
}

}  // namespace tov
