#include "webformat/textformatterimpl.h"

#include <utility>

#include "project/webformat/outputmarkup.h"
#include "project/webformat/texttemplateparser.h"
#include "project/webformat/texttreatments.h"

namespace tov {

WebTextFormatterImpl::WebTextFormatterImpl(const String& sFormat, OutputType eOutput)
    : WebTextFormatter(SQLDataType::kStorageWChar, sFormat), m_eOutput(eOutput), m_tTreatments(textTreatments(eOutput))
{
    TextTemplate tTemplate = parseTextTemplate(sFormat, eOutput);
    m_hMain = std::move(tTemplate.hMain);
    m_hEmpty = std::move(tTemplate.hEmpty);
    m_sSource = std::move(tTemplate.sSource);
}

WebTextFormatterImpl::~WebTextFormatterImpl() = default;

WebTextFormatterImpl::OutputType WebTextFormatterImpl::outputType() const
{
    return m_eOutput;
}

void WebTextFormatterImpl::impl_formatToBuffer(StringBufferBaseTemplate<wchar_t>& tBuffer, const void* pValue) const
{
    const wchar_t* const pText = pValue ? static_cast<const wchar_t*>(pValue) : L"";
    const Handle<const SubTextFormatter>& hFormatter = *pText == L'\0' ? m_hEmpty : m_hMain;
    if (!hFormatter.isNull())
        hFormatter->render(tBuffer, pText, m_eOutput, m_tTreatments);
    if (m_eOutput == kHTML && (hFormatter.isNull() || tBuffer.empty()))
        tBuffer.append(kNonBreakingSpace);
}

}  // namespace tov
