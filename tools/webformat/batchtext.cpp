#include "batchtext.h"

#include "batchrequest.h"
#include "inputerror.h"
#include "webformat/textformatter.h"
#include "webformat/truncateformatter.h"
#include "webformat/valueformatterutils.h"

namespace tov {

namespace {

constexpr char kSource[] = "tools/batchtext";

class PlainFormatter final : public WebValueFormatter
{
public:
    explicit PlainFormatter(const SQLDataType& tType) : WebValueFormatter(tType.storageType()), m_tType(tType) {}

    OutputType outputType() const override { return kText; }
    String GetCustomFormatString() const override { return {}; }
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override
    {
        ValueFormatterUtils::valueToBuffer(pValue, m_tType, tBuffer);
    }

private:
    SQLDataType m_tType;
};

class TruncatingFormatter final : public WebValueFormatter
{
public:
    TruncatingFormatter(unsigned long nLength, OutputType eOutput)
        : WebValueFormatter(SQLDataType::kStorageWChar), m_tTruncate(nLength, eOutput), m_eOutput(eOutput)
    {
    }

    OutputType outputType() const override { return m_eOutput; }
    String GetCustomFormatString() const override { return {}; }
    void impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const override
    {
        m_tTruncate.formatValue(tBuffer, static_cast<const wchar_t*>(pValue));
    }

private:
    TruncateFormatter m_tTruncate;
    OutputType m_eOutput;
};

}  // namespace

WebValueFormatterHandle newPlainFormatter(const SQLDataType& tType)
{
    return WEBFORMAT_NEW(kSource) PlainFormatter(tType);
}

WebValueFormatterHandle newTruncatingFormatter(unsigned long nLength, ValueFormatterTypes::OutputType eOutput)
{
    return WEBFORMAT_NEW(kSource) TruncatingFormatter(nLength, eOutput);
}

void answerRemoveHtml(const BatchRequest& tRequest, JsonObject& tResponse)
{
    const String sText = tRequest.requiredWideText("text");
    if (sText.find(L'\0') != String::npos)
        throw InputError("\"text\": found the character U+0000, expected text without it");
    StringBufferTemplate<wchar_t, 255> tBuffer;
    WebTextFormatter::writeToBufferRemoveHtml(tBuffer, sText.c_str());
    tResponse.add("text", tBuffer.view());
}

void answerBracketTags(const BatchRequest& tRequest, JsonObject& tResponse)
{
    String sText = tRequest.requiredWideText("text");
    const bool bConverted = WebTextFormatter::ConvertAnswersTagsToHTMLTags(sText);
    tResponse.add("text", sText).add("converted", bConverted);
}

}  // namespace tov
